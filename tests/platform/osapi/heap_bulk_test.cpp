#include <algorithm>
#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include <malloc.h>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/HeapBulk.hpp"
#include "support/HeapCheck.h"

namespace
{

using zuv_heap::BulkScope;

constexpr std::size_t kMany = 20000;
constexpr std::size_t kExpected = 8 * 1024 * 1024;

// Of all sizes about the borders of what is carved, each filled with the low byte of its number.
std::size_t sizeOf(std::size_t number)
{
    return number % 97 == 0 ? 8192 + number % 3 : number % 700;
}

std::vector<unsigned char *> makeBlocks(std::size_t expectedSize)
{
    const BulkScope bulk(expectedSize);
    std::vector<unsigned char *> blocks;
    for (std::size_t number = 0; number < kMany; ++number) {
        auto *block =
            static_cast<unsigned char *>(ZUVOsapiHeap_allocate(sizeOf(number), "bulk test"));
        std::memset(block, static_cast<int>(number & 0xff), sizeOf(number));
        blocks.push_back(block);
    }
    return blocks;
}

void expectContent(const std::vector<unsigned char *> &blocks)
{
    for (std::size_t number = 0; number < kMany; ++number) {
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(blocks[number]) % 16, 0u);
        ASSERT_EQ(ZUVOsapiHeap_getBlockSize(blocks[number]), sizeOf(number));
        for (std::size_t at = 0; at < sizeOf(number); ++at) {
            ASSERT_EQ(blocks[number][at], number & 0xff);
        }
    }
}

void freeAll(const std::vector<unsigned char *> &blocks)
{
    for (unsigned char *block : blocks) {
        ZUVOsapiHeap_free(block);
    }
}

class HeapBulk : public testing::TestWithParam<std::size_t>
{
};

TEST_P(HeapBulk, itsBlocksAreBlocksAsAnyOthers)
{
    const zuv_test::HeapCheck check;
    const std::vector<unsigned char *> blocks = makeBlocks(GetParam());
    expectContent(blocks);
    EXPECT_EQ(check.liveBlocks(), static_cast<std::int64_t>(kMany));
    EXPECT_EQ(check.allocations(), kMany);
    freeAll(blocks);
    EXPECT_TRUE(check.isBalanced());
}

TEST_P(HeapBulk, itsBlocksGrowAndShrinkAfterItsEnd)
{
    const zuv_test::HeapCheck check;
    const std::vector<unsigned char *> blocks = makeBlocks(GetParam());
    for (std::size_t number = 0; number < kMany; number += 7) {
        void *block = blocks[number];
        for (const std::size_t size : {std::size_t{4000}, sizeOf(number)}) {
            ASSERT_EQ(ZUVOsapiHeap_reallocate(&block, size, "moved"), 1);
            EXPECT_EQ(ZUVOsapiHeap_getBlockSize(block), size);
        }
        const auto *octets = static_cast<unsigned char *>(block);
        for (std::size_t at = 0; at < std::min<std::size_t>(sizeOf(number), 4000); ++at) {
            ASSERT_EQ(octets[at], number & 0xff);
        }
        ZUVOsapiHeap_free(block);
        const_cast<unsigned char *&>(blocks[number]) = nullptr;
    }
    freeAll(blocks);
    EXPECT_TRUE(check.isBalanced());
}

TEST_P(HeapBulk, itsBlocksMayGoByOtherThreads)
{
    const zuv_test::HeapCheck check;
    const std::vector<unsigned char *> blocks = makeBlocks(GetParam());
    std::vector<std::thread> threads;
    for (std::size_t first = 0; first < 3; ++first) {
        threads.emplace_back([&blocks, first] {
            for (std::size_t number = first; number < kMany; number += 3) {
                ZUVOsapiHeap_free(blocks[number]);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(check.isBalanced());
}

// The sanitizers' malloc does not tell how much it has given.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SKIP_WITHOUT_MALLINFO() GTEST_SKIP() << "the sanitizer's malloc does not tell"
#else
#define SKIP_WITHOUT_MALLINFO() static_cast<void>(0)
#endif

std::size_t usedBytes()
{
    const struct mallinfo2 heap = mallinfo2();
    return heap.uordblks + heap.hblkhd;
}

// More than a thread keeps for its next demands.
constexpr std::size_t kWaiting = 1024 * 1024;

TEST_P(HeapBulk, itsMemoryGoesWithItsLastBlock)
{
    SKIP_WITHOUT_MALLINFO();
    freeAll(makeBlocks(GetParam()));
    const std::size_t before = usedBytes();
    std::vector<unsigned char *> blocks = makeBlocks(GetParam());
    EXPECT_GT(usedBytes(), before + 6 * kWaiting);
    freeAll(blocks);
    EXPECT_LT(usedBytes(), before + kWaiting);
}

TEST_P(HeapBulk, blocksThatWaitDoNotKeepItsMemory)
{
    SKIP_WITHOUT_MALLINFO();
    freeAll(makeBlocks(GetParam()));
    const std::size_t before = usedBytes();
    {
        const BulkScope bulk(GetParam());
        freeAll(makeBlocks(GetParam()));
    }
    EXPECT_LT(usedBytes(), before + kWaiting / 4);
}

TEST(HeapThreads, whatAThreadKeptGoesWithIt)
{
    SKIP_WITHOUT_MALLINFO();
    const auto run = [] {
        std::thread([] {
            std::vector<void *> blocks;
            for (int number = 0; number < 16; ++number) {
                blocks.push_back(ZUVOsapiHeap_allocate(500, "test"));
            }
            for (void *block : blocks) {
                ZUVOsapiHeap_free(block);
            }
        }).join();
    };
    run();
    const std::size_t before = usedBytes();
    for (int number = 0; number < 300; ++number) {
        run();
    }
    EXPECT_LT(usedBytes(), before + kWaiting);
}

INSTANTIATE_TEST_SUITE_P(Sizes, HeapBulk, testing::Values(0, 1000, kExpected, 10 * kExpected));

TEST(HeapBulkScope, mayStandInAnother)
{
    const zuv_test::HeapCheck check;
    std::vector<unsigned char *> outer;
    {
        const BulkScope bulk(kExpected);
        outer.push_back(static_cast<unsigned char *>(ZUVOsapiHeap_allocate(100, "outer")));
        freeAll(makeBlocks(kExpected));
        outer.push_back(static_cast<unsigned char *>(ZUVOsapiHeap_allocate(100, "outer")));
    }
    freeAll(outer);
    EXPECT_TRUE(check.isBalanced());
}

TEST(HeapBulkScope, allocationInItIsAFaultPoint)
{
    const BulkScope bulk(kExpected);
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    void *const first = ZUVOsapiHeap_allocate(100, "test");
    EXPECT_NE(first, nullptr);
    EXPECT_EQ(ZUVOsapiHeap_allocate(100, "test"), nullptr);
    ZUVOsapiFault_disarm();
    ZUVOsapiHeap_free(first);
}

} // namespace
