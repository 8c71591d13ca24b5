/* A doubly linked list whose links stand in the listed records, so that adding never needs memory.
 *
 * The names that end in EA say that the caller holds whatever protects the list; so do the callers of the
 * others. A list or a node of zero bytes is an empty list or a node in no list. No argument may be NULL. */
#ifndef ZUV_PLATFORM_MAVO_INLINE_LIST_H
#define ZUV_PLATFORM_MAVO_INLINE_LIST_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

struct MAVOInlineList;

/* The first member of a record that is listed, so that a pointer to the node is one to the record. */
typedef struct MAVOInlineListNode {
    struct MAVOInlineList *_list; /* the list that holds it, or NULL */
    struct MAVOInlineListNode *_previous;
    struct MAVOInlineListNode *_next;
} MAVOInlineListNode;

typedef struct MAVOInlineList {
    MAVOInlineListNode *_first;
    MAVOInlineListNode *_last;
    int32_t _size;
} MAVOInlineList;

/* Make `list` an empty one, whatever it held. */
void MAVOInlineList_initialize(MAVOInlineList *list);

/* Add `node` behind the last one. A node that is in a list already is a failed precondition, and nothing is
 * done. */
void MAVOInlineList_addNodeToBackEA(MAVOInlineList *list, MAVOInlineListNode *node);

/* Take `node` out of `list`; it may then be added again. A node that is not in this list is a failed
 * precondition, and nothing is done. */
void MAVOInlineList_removeNodeEA(MAVOInlineList *list, MAVOInlineListNode *node);

/* The first and the last node, or NULL in an empty list. */
MAVOInlineListNode *MAVOInlineList_getFirst(const MAVOInlineList *list);
MAVOInlineListNode *MAVOInlineList_getLast(const MAVOInlineList *list);

/* How many nodes there are. */
int32_t MAVOInlineList_getSize(const MAVOInlineList *list);

/* The node behind `node`, or NULL behind the last one. */
MAVOInlineListNode *MAVOInlineListNode_getNext(const MAVOInlineListNode *node);

#ifdef __cplusplus
}
#endif

#endif
