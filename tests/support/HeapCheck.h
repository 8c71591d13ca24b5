// Balance of the system's heap between two points of a test.
#ifndef ZUV_TESTS_SUPPORT_HEAP_CHECK_H
#define ZUV_TESTS_SUPPORT_HEAP_CHECK_H

#include <cstdint>

#include <gtest/gtest.h>

namespace zuv_test
{

// Remembers the heap's counters at its construction.
class HeapCheck
{
public:
    HeapCheck();

    // Blocks handed out since the construction, released ones included.
    std::uint64_t allocations() const;
    // Blocks alive now less those alive at the construction.
    std::int64_t liveBlocks() const;

    // Use with EXPECT_TRUE: every block allocated since the construction is released. A failure lists the
    // tags under which blocks live.
    testing::AssertionResult isBalanced() const;

private:
    std::uint64_t allocationCount_;
    std::uint64_t liveBlockCount_;
};

} // namespace zuv_test

#endif
