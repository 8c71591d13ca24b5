// The most memory that a piece of code holds at a time.
#ifndef ZUV_TESTS_SUPPORT_PEAK_CHECK_H
#define ZUV_TESTS_SUPPORT_PEAK_CHECK_H

#include <cstddef>
#include <cstdint>

#include "platform/osapi/Heap.h"

namespace zuv_test
{

// The process only knows its highest mark so far. While one of these lives, a block as large as what is missing to
// that mark is allocated and not used, so that whatever is allocated moves the mark.
class PeakCheck
{
public:
    PeakCheck()
    {
        const ZUVOsapiHeapStatistics now = statistics();
        ballast_ = ZUVOsapiHeap_allocate(
            static_cast<std::size_t>(now.peakByteCount - now.liveByteCount) + kAccuracy, "ballast");
        before_ = statistics().liveByteCount;
    }
    ~PeakCheck() { ZUVOsapiHeap_free(ballast_); }
    PeakCheck(const PeakCheck &) = delete;
    PeakCheck &operator=(const PeakCheck &) = delete;

    // Bytes more than at the construction, at the worst moment since, to within `kAccuracy`.
    std::int64_t bytes() const
    {
        return static_cast<std::int64_t>(statistics().peakByteCount - before_);
    }

private:
    static constexpr std::size_t kAccuracy = 64 * 1024;

    static ZUVOsapiHeapStatistics statistics()
    {
        ZUVOsapiHeapStatistics now;
        ZUVOsapiHeap_getStatistics(&now);
        return now;
    }

    void *ballast_;
    std::uint64_t before_;
};

} // namespace zuv_test

#endif
