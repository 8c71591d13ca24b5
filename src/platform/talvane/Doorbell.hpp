// Tells a replier's waiting thread that requests have come, and knows whom a reply can reach.
#ifndef ZUV_PLATFORM_TALVANE_DOORBELL_HPP
#define ZUV_PLATFORM_TALVANE_DOORBELL_HPP

#include <vector>

#include "EntityImpl.hpp"

namespace zuv::talvane
{

class Doorbell final : public zuv::dds::ReaderObserver
{
public:
    explicit Doorbell(DDS_DataReader &reader);
    ~Doorbell() override;

    void onDataAvailable(DDS_DataReader &reader) override;

    // Wait until so many requests that were not read are in the reader, at some moment of the call.
    bool wait(DDS_Long minCount, const Deadline &deadline);

    // Before a reply: let the requester's reader match, if it has not yet. A requester that did not within the time is
    // not waited for again.
    void awaitRequester(DDS_DataWriter &writer, const DDS_GUID_t &requestWriter,
                        const DDS_Duration_t &maxWait);

private:
    static constexpr std::size_t kMaxUnreachable = 64;

    bool isUnreachable(const DDS_GUID_t &requestWriter);
    void noteUnreachable(const DDS_GUID_t &requestWriter);

    DDS_DataReader &reader_;
    // Taken while the middleware holds the reader's lock: the reader is never called with this one held.
    std::mutex mutex_;
    std::condition_variable rung_;
    std::uint64_t rings_ = 0;
    std::uint64_t unreadAtRing_ = 0;
    std::vector<DDS_GUID_t> unreachable_; // request writers, oldest first
};

} // namespace zuv::talvane

#endif
