#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/mavo/InlineList.h"
#include "support/LogCapture.h"

namespace
{

struct Record {
    MAVOInlineListNode node;
    int number;
};

std::vector<int> numbersOf(const MAVOInlineList &list)
{
    std::vector<int> numbers;
    for (const MAVOInlineListNode *node = MAVOInlineList_getFirst(&list); node != nullptr;
         node = MAVOInlineListNode_getNext(node)) {
        numbers.push_back(reinterpret_cast<const Record *>(node)->number);
    }
    return numbers;
}

using Numbers = std::vector<int>;

class InlineList : public testing::Test
{
protected:
    InlineList()
    {
        MAVOInlineList_initialize(&list_);
        for (int number = 0; number < 3; ++number) {
            records_[number] = {{}, number};
            MAVOInlineList_addNodeToBackEA(&list_, &records_[number].node);
        }
    }

    void remove(int number) { MAVOInlineList_removeNodeEA(&list_, &records_[number].node); }
    void add(int number) { MAVOInlineList_addNodeToBackEA(&list_, &records_[number].node); }

    MAVOInlineList list_;
    Record records_[3];
};

TEST_F(InlineList, isEmptyAfterInitialize)
{
    MAVOInlineList_initialize(&list_);
    EXPECT_EQ(MAVOInlineList_getFirst(&list_), nullptr);
    EXPECT_EQ(MAVOInlineList_getLast(&list_), nullptr);
    EXPECT_EQ(MAVOInlineList_getSize(&list_), 0);
}

TEST_F(InlineList, keepsTheOrderOfAdding)
{
    EXPECT_EQ(numbersOf(list_), (Numbers{0, 1, 2}));
    EXPECT_EQ(MAVOInlineList_getLast(&list_), &records_[2].node);
    EXPECT_EQ(MAVOInlineList_getSize(&list_), 3);
}

TEST_F(InlineList, removesFromEveryPlace)
{
    remove(1);
    EXPECT_EQ(numbersOf(list_), (Numbers{0, 2}));
    remove(0);
    EXPECT_EQ(numbersOf(list_), (Numbers{2}));
    EXPECT_EQ(MAVOInlineList_getLast(&list_), &records_[2].node);
    remove(2);
    EXPECT_EQ(numbersOf(list_), (Numbers{}));
    EXPECT_EQ(MAVOInlineList_getLast(&list_), nullptr);
    EXPECT_EQ(MAVOInlineList_getSize(&list_), 0);
}

TEST_F(InlineList, aRemovedNodeMayBeAddedAgain)
{
    remove(2);
    remove(0);
    add(0);
    add(2);
    EXPECT_EQ(numbersOf(list_), (Numbers{1, 0, 2}));
}

TEST_F(InlineList, aNodeIsInOneListAtMost)
{
    const zuv_test::LogCapture log;
    add(1);
    MAVOInlineList other = {};
    MAVOInlineList_addNodeToBackEA(&other, &records_[1].node);
    MAVOInlineList_removeNodeEA(&other, &records_[1].node);
    EXPECT_EQ(numbersOf(list_), (Numbers{0, 1, 2}));
    EXPECT_EQ(MAVOInlineList_getSize(&other), 0);
    const zuv_test::LogLink listed = {&ZUV_LOG_PRECONDITION_FAILURE_s,
                                      "!meet precondition: node->_list != ((void *)0)"};
    EXPECT_TRUE(log.isExactly(
        {listed,
         listed,
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: node->_list != list"}}));
}

} // namespace
