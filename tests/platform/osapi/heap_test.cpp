#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"

namespace
{

// The sanitizers' allocators end the process at an absurd size; the system's returns.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSystemMayRefuse = false;
#else
constexpr bool kSystemMayRefuse = true;
#endif

struct Holding {
    std::uint64_t blockCount = 0;
    std::uint64_t byteCount = 0;
};

std::map<std::string, Holding> holdings()
{
    std::map<std::string, Holding> found;
    ZUVOsapiHeap_visitTags(
        [](void *data, const char *tag, std::uint64_t blockCount, std::uint64_t byteCount) {
            auto &map = *static_cast<std::map<std::string, Holding> *>(data);
            EXPECT_EQ(map.count(tag), 0u) << "visited twice: " << tag;
            map[tag] = {blockCount, byteCount};
        },
        &found);
    return found;
}

ZUVOsapiHeapStatistics statistics()
{
    ZUVOsapiHeapStatistics now;
    ZUVOsapiHeap_getStatistics(&now);
    return now;
}

TEST(Heap, blocksAreAlignedForAnyTypeAndKnowTheirSize)
{
    for (const std::size_t size : {0, 1, 7, 16, 17, 4096, 1000000}) {
        void *block = ZUVOsapiHeap_allocate(size, "test");
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(block) % 16, 0u);
        EXPECT_EQ(ZUVOsapiHeap_getBlockSize(block), size);
        std::memset(block, 0xa5, size);
        ZUVOsapiHeap_free(block);
    }
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(nullptr), 0u);
}

TEST(Heap, twoBlocksOfSizeZeroAreTwoBlocks)
{
    const zuv_test::HeapCheck check;
    void *one = ZUVOsapiHeap_allocate(0, "test");
    void *other = ZUVOsapiHeap_allocate(0, "test");
    EXPECT_NE(one, other);
    EXPECT_EQ(check.liveBlocks(), 2);
    ZUVOsapiHeap_free(one);
    ZUVOsapiHeap_free(other);
    EXPECT_TRUE(check.isBalanced());
}

TEST(Heap, zeroedBlocksAreZeroEvenWhereOldContentLay)
{
    for (int round = 0; round < 20; ++round) {
        auto *dirty = static_cast<char *>(ZUVOsapiHeap_allocate(200, "test"));
        std::memset(dirty, 0xff, 200);
        ZUVOsapiHeap_free(dirty);
        auto *zeroed = static_cast<char *>(ZUVOsapiHeap_allocateZeroed(200, "test"));
        EXPECT_EQ(std::count(zeroed, zeroed + 200, 0), 200);
        ZUVOsapiHeap_free(zeroed);
    }
}

TEST(Heap, freeOfNullDoesNothing)
{
    const zuv_test::HeapCheck check;
    ZUVOsapiHeap_free(nullptr);
    ZUVOsapiHeap_freeBufferAligned(nullptr);
    EXPECT_TRUE(check.isBalanced());
}

TEST(Heap, countsBlocksAndBytesAsAskedFor)
{
    const ZUVOsapiHeapStatistics before = statistics();
    void *block = ZUVOsapiHeap_allocate(1000, "test");
    ZUVOsapiHeapStatistics now = statistics();
    EXPECT_EQ(now.allocationCount, before.allocationCount + 1);
    EXPECT_EQ(now.liveBlockCount, before.liveBlockCount + 1);
    EXPECT_EQ(now.liveByteCount, before.liveByteCount + 1000);
    ZUVOsapiHeap_free(block);
    now = statistics();
    EXPECT_EQ(now.allocationCount, before.allocationCount + 1);
    EXPECT_EQ(now.liveBlockCount, before.liveBlockCount);
    EXPECT_EQ(now.liveByteCount, before.liveByteCount);
}

TEST(Heap, remembersItsPeak)
{
    const std::size_t size = statistics().peakByteCount + 1;
    void *block = ZUVOsapiHeap_allocate(size, "test");
    const std::uint64_t peak = statistics().peakByteCount;
    EXPECT_EQ(peak, statistics().liveByteCount);
    ZUVOsapiHeap_free(block);
    EXPECT_EQ(statistics().peakByteCount, peak);
}

TEST(Heap, aMovedBlockDoesNotCountTwiceForThePeak)
{
    const std::size_t size = statistics().peakByteCount + 1000;
    void *block = ZUVOsapiHeap_allocate(size, "test");
    ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, size + 1, "test"), 1);
    EXPECT_EQ(statistics().peakByteCount, statistics().liveByteCount);
    ZUVOsapiHeap_free(block);
}

TEST(Heap, reallocationKeepsTheContentUpToTheSmallerSize)
{
    const zuv_test::HeapCheck check;
    void *block = nullptr;
    ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, 5, "test"), 1);
    std::memcpy(block, "12345", 5);
    ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, 100000, "test"), 1);
    EXPECT_EQ(std::memcmp(block, "12345", 5), 0);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(block), 100000u);
    ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, 3, "test"), 1);
    EXPECT_EQ(std::memcmp(block, "123", 3), 0);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(block), 3u);
    EXPECT_EQ(check.allocations(), 3u);
    EXPECT_EQ(check.liveBlocks(), 1);
    ZUVOsapiHeap_free(block);
    EXPECT_TRUE(check.isBalanced());
}

TEST(Heap, reallocationMovesABlockToItsNewTag)
{
    void *block = ZUVOsapiHeap_allocate(10, "first home");
    ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, 20, "second home"), 1);
    EXPECT_EQ(holdings().count("first home"), 0u);
    EXPECT_EQ(holdings()["second home"].byteCount, 20u);
    ZUVOsapiHeap_free(block);
}

TEST(Heap, reallocationWithoutMemoryLeavesTheOldBlock)
{
    void *block = ZUVOsapiHeap_allocate(4, "test");
    void *const before = block;
    std::memcpy(block, "kept", 4);
    const ZUVOsapiHeapStatistics old = statistics();
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUVOsapiHeap_reallocate(&block, 8, "test"), 0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(ZUVOsapiHeap_reallocate(&block, SIZE_MAX, "test"), 0);
    if (kSystemMayRefuse) {
        EXPECT_EQ(ZUVOsapiHeap_reallocate(&block, SIZE_MAX / 4, "test"), 0);
    }
    EXPECT_EQ(block, before);
    EXPECT_EQ(std::memcmp(block, "kept", 4), 0);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(block), 4u);
    EXPECT_EQ(statistics().liveByteCount, old.liveByteCount);
    ZUVOsapiHeap_free(block);
}

TEST(Heap, aSizeThatOverflowsIsNoMemory)
{
    const zuv_test::HeapCheck check;
    EXPECT_EQ(ZUVOsapiHeap_allocate(SIZE_MAX, "test"), nullptr);
    EXPECT_EQ(ZUVOsapiHeap_allocate(SIZE_MAX - 15, "test"), nullptr);
    EXPECT_EQ(ZUVOsapiHeap_allocateZeroed(SIZE_MAX - 31, "test"), nullptr);
    EXPECT_TRUE(check.isBalanced());
}

TEST(Heap, everyAllocationIsAFaultPoint)
{
    void *block = nullptr;
    for (int operation = 0; operation < 4; ++operation) {
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
        switch (operation) {
        case 0:
            EXPECT_EQ(ZUVOsapiHeap_allocate(1, "test"), nullptr);
            break;
        case 1:
            EXPECT_EQ(ZUVOsapiHeap_allocateZeroed(1, "test"), nullptr);
            break;
        case 2:
            EXPECT_EQ(ZUVOsapiHeap_reallocate(&block, 1, "test"), 0);
            break;
        default:
            EXPECT_EQ(ZUVOsapiHeap_allocateBufferAligned(1, 8), nullptr);
        }
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1u);
    }
    ZUVOsapiFault_disarm();
    EXPECT_EQ(block, nullptr);
}

TEST(Heap, alignedBuffersTakePowersOfTwoUpToSixteen)
{
    for (const std::size_t alignment : {1, 2, 4, 8, 16}) {
        void *buffer = ZUVOsapiHeap_allocateBufferAligned(3, alignment);
        ASSERT_NE(buffer, nullptr) << alignment;
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(buffer) % alignment, 0u);
        ZUVOsapiHeap_freeBufferAligned(buffer);
    }
    for (const std::size_t alignment : {0, 3, 12, 32}) {
        EXPECT_EQ(ZUVOsapiHeap_allocateBufferAligned(3, alignment), nullptr) << alignment;
    }
}

TEST(Heap, visitsTheTagsThatHoldBlocksAndOneTextOnce)
{
    static const char sameText[] = "a tag of the test";
    static const char sameTextElsewhere[] = "a tag of the test";
    void *one = ZUVOsapiHeap_allocate(10, sameText);
    void *other = ZUVOsapiHeap_allocate(20, sameTextElsewhere);
    void *untagged = ZUVOsapiHeap_allocate(5, nullptr);
    EXPECT_EQ(holdings()[sameText].blockCount, 2u);
    EXPECT_EQ(holdings()[sameText].byteCount, 30u);
    EXPECT_EQ(holdings()["(no tag)"].byteCount, 5u);
    ZUVOsapiHeap_free(one);
    ZUVOsapiHeap_free(other);
    ZUVOsapiHeap_free(untagged);
    EXPECT_EQ(holdings().count(sameText), 0u);
}

TEST(Heap, countsRightlyWhenThreadsAllocateAtOnce)
{
    const zuv_test::HeapCheck check;
    std::vector<std::thread> threads;
    for (int number = 0; number < 4; ++number) {
        threads.emplace_back([] {
            for (int round = 0; round < 5000; ++round) {
                void *block = ZUVOsapiHeap_allocate(round % 100, "thread");
                ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, round % 50, "other tag"), 1);
                ZUVOsapiHeap_free(block);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(check.allocations(), 40000u);
    EXPECT_TRUE(check.isBalanced());
    EXPECT_EQ(holdings().count("thread"), 0u);
}

TEST(Heap, aBlockMayBeReleasedByAnotherThread)
{
    const zuv_test::HeapCheck check;
    void *block = nullptr;
    std::thread([&] { block = ZUVOsapiHeap_allocate(100, "handed over"); }).join();
    EXPECT_EQ(check.liveBlocks(), 1);
    EXPECT_EQ(holdings()["handed over"].byteCount, 100u);
    std::thread([&] { ZUVOsapiHeap_free(block); }).join();
    EXPECT_TRUE(check.isBalanced());
    EXPECT_EQ(holdings().count("handed over"), 0u);
}

TEST(Heap, countsBlocksThatAThreadReleasesAtItsVeryEnd)
{
    struct Keeper {
        void *block = nullptr;
        ~Keeper() { ZUVOsapiHeap_free(block); }
    };
    const zuv_test::HeapCheck check;
    std::thread([] {
        // Made before the thread's first block, and so destroyed behind the thread's account.
        static thread_local Keeper keeper;
        Keeper &mine = keeper;
        mine.block = ZUVOsapiHeap_allocate(100000, "test");
    }).join();
    EXPECT_TRUE(check.isBalanced());
    EXPECT_EQ(check.allocations(), 1u);
}

TEST(Heap, thePeakIsSeenThoughNobodyAsksAtThatTime)
{
    const std::uint64_t before = statistics().peakByteCount;
    std::vector<std::thread> threads;
    std::atomic<int> holding{0};
    const std::size_t size = before / 2 + 100000;
    for (int number = 0; number < 2; ++number) {
        threads.emplace_back([&] {
            void *block = ZUVOsapiHeap_allocate(size, "test");
            for (++holding; holding < 2;) {
                std::this_thread::yield();
            }
            ZUVOsapiHeap_free(block);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_GE(statistics().peakByteCount + 3 * 4096, 2 * size);
    EXPECT_GT(statistics().peakByteCount, before);
}

TEST(Heap, thePeakCountsWhatEndedThreadsLeft)
{
    constexpr std::size_t kSmall = 4000; // too little for a thread to tell before it ends
    std::vector<void *> left;
    for (int number = 0; number < 100; ++number) {
        std::thread([&] { left.push_back(ZUVOsapiHeap_allocate(kSmall, "test")); }).join();
    }
    const std::size_t size = statistics().peakByteCount;
    const std::size_t expected = statistics().liveByteCount + size;
    ZUVOsapiHeap_free(ZUVOsapiHeap_allocate(size, "test"));
    EXPECT_GE(statistics().peakByteCount + 2 * 4096, expected);
    for (void *block : left) {
        ZUVOsapiHeap_free(block);
    }
}

TEST(HeapDeathTest, whatIsNoBlockEndsTheProcess)
{
    alignas(16) static char foreign[64] = "";
    EXPECT_DEATH(ZUVOsapiHeap_free(foreign + 32), "");
    EXPECT_DEATH(ZUVOsapiHeap_getBlockSize(foreign + 32), "");
}

TEST(HeapDeathTest, aBlockIsReleasedOnce)
{
    EXPECT_DEATH(
        {
            void *block = ZUVOsapiHeap_allocate(24, "test");
            ZUVOsapiHeap_free(block);
            ZUVOsapiHeap_free(block);
        },
        "");
}

TEST(Heap, blocksOfOneSizeDoNotOverlapHoweverOftenTheyComeAndGo)
{
    const zuv_test::HeapCheck check;
    std::vector<unsigned char *> blocks;
    for (std::size_t size = 0; size < 600; ++size) {
        for (int turn = 0; turn < 40; ++turn) {
            blocks.push_back(static_cast<unsigned char *>(ZUVOsapiHeap_allocate(size, "test")));
            std::memset(blocks.back(), turn, size);
        }
        for (int turn = 0; turn < 40; ++turn) {
            EXPECT_EQ(std::count(blocks[turn], blocks[turn] + size, turn),
                      static_cast<std::ptrdiff_t>(size));
            ZUVOsapiHeap_free(blocks[turn]);
        }
        blocks.clear();
    }
    EXPECT_TRUE(check.isBalanced());
}

// The last test of the file: the table stays full.
TEST(Heap, bearsMoreTagsThanItsTableHas)
{
    static char tags[2000][24];
    const zuv_test::HeapCheck check;
    std::vector<void *> blocks;
    for (std::size_t index = 0; index < std::size(tags); ++index) {
        std::snprintf(tags[index], sizeof(tags[index]), "t%zu", index);
        blocks.push_back(ZUVOsapiHeap_allocate(1, tags[index]));
    }
    EXPECT_EQ(check.liveBlocks(), 2000);
    EXPECT_GT(holdings()["(other tags)"].blockCount, 1000u);
    for (void *block : blocks) {
        ZUVOsapiHeap_free(block);
    }
    EXPECT_TRUE(check.isBalanced());
}

} // namespace
