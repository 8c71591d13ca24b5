#include "HeapCheck.h"

#include <sstream>

#include "platform/osapi/Heap.h"

namespace zuv_test
{
namespace
{

ZUVOsapiHeapStatistics statistics()
{
    ZUVOsapiHeapStatistics now;
    ZUVOsapiHeap_getStatistics(&now);
    return now;
}

void printTag(void *stream, const char *tag, std::uint64_t blockCount, std::uint64_t byteCount)
{
    *static_cast<std::ostream *>(stream) << "\n  " << (tag != nullptr ? tag : "(no tag)") << ": "
                                         << blockCount << " blocks, " << byteCount << " bytes";
}

} // namespace

HeapCheck::HeapCheck()
    : allocationCount_(statistics().allocationCount), liveBlockCount_(statistics().liveBlockCount)
{
}

std::uint64_t HeapCheck::allocations() const
{
    return statistics().allocationCount - allocationCount_;
}

std::int64_t HeapCheck::liveBlocks() const
{
    return static_cast<std::int64_t>(statistics().liveBlockCount) -
           static_cast<std::int64_t>(liveBlockCount_);
}

testing::AssertionResult HeapCheck::isBalanced() const
{
    const std::int64_t balance = liveBlocks();
    if (balance == 0) {
        return testing::AssertionSuccess();
    }
    std::ostringstream tags;
    ZUVOsapiHeap_visitTags(&printTag, static_cast<std::ostream *>(&tags));
    return testing::AssertionFailure()
           << balance << " blocks more than before; alive in all:" << tags.str();
}

} // namespace zuv_test
