#include "platform/mavo/InlineList.h"

#include "platform/log/DDSLog.h"

extern "C" {

void MAVOInlineList_initialize(MAVOInlineList *list)
{
    *list = {};
}

void MAVOInlineList_addNodeToBackEA(MAVOInlineList *list, MAVOInlineListNode *node)
{
    if (ZUV_PRECONDITION(DDS, DDS_SUBMODULE_CONCURRENCY, node->_list != nullptr,
                         "node->_list != ((void *)0)")) {
        return;
    }
    *node = {list, list->_last, nullptr};
    (list->_last != nullptr ? list->_last->_next : list->_first) = node;
    list->_last = node;
    ++list->_size;
}

void MAVOInlineList_removeNodeEA(MAVOInlineList *list, MAVOInlineListNode *node)
{
    if (ZUV_PRECONDITION(DDS, DDS_SUBMODULE_CONCURRENCY, node->_list != list,
                         "node->_list != list")) {
        return;
    }
    (node->_previous != nullptr ? node->_previous->_next : list->_first) = node->_next;
    (node->_next != nullptr ? node->_next->_previous : list->_last) = node->_previous;
    *node = {};
    --list->_size;
}

MAVOInlineListNode *MAVOInlineList_getFirst(const MAVOInlineList *list)
{
    return list->_first;
}

MAVOInlineListNode *MAVOInlineList_getLast(const MAVOInlineList *list)
{
    return list->_last;
}

int32_t MAVOInlineList_getSize(const MAVOInlineList *list)
{
    return list->_size;
}

MAVOInlineListNode *MAVOInlineListNode_getNext(const MAVOInlineListNode *node)
{
    return node->_next;
}
}
