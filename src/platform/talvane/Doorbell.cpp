#include "Doorbell.hpp"

#include <algorithm>
#include <cstring>

namespace zuv::talvane
{

Doorbell::Doorbell(DDS_DataReader &reader) : reader_(reader)
{
    unreachable_.reserve(kMaxUnreachable); // so that no reply fails for want of memory
    zuv::dds::setObserver(reader_, this);
}

Doorbell::~Doorbell()
{
    zuv::dds::setObserver(reader_, nullptr);
}

void Doorbell::onDataAvailable(DDS_DataReader &reader)
{
    // Counted here, where the reader's lock is held anyway: the thread that is woken would wait for it otherwise.
    const std::uint64_t unread = zuv::dds::unreadSampleCount(reader);
    {
        const std::lock_guard lock(mutex_);
        ++rings_;
        unreadAtRing_ = unread;
    }
    rung_.notify_all();
}

bool Doorbell::wait(DDS_Long minCount, const Deadline &deadline)
{
    const auto isEnough = [minCount](std::uint64_t unread) {
        return static_cast<std::int64_t>(unread) >= minCount;
    };
    std::unique_lock lock(mutex_);
    for (;;) {
        const std::uint64_t heard = rings_;
        lock.unlock();
        const std::uint64_t unread = zuv::dds::unreadSampleCount(reader_);
        lock.lock();
        if (isEnough(unread)) {
            return true;
        }
        if (!waitUntil(rung_, lock, deadline, [&] { return rings_ != heard; })) {
            return false;
        }
        if (isEnough(unreadAtRing_)) {
            return true;
        }
    }
}

bool Doorbell::isUnreachable(const DDS_GUID_t &requestWriter)
{
    const std::lock_guard lock(mutex_);
    return std::any_of(unreachable_.begin(), unreachable_.end(), [&](const DDS_GUID_t &known) {
        return std::memcmp(known.value, requestWriter.value, sizeof(known.value)) == 0;
    });
}

void Doorbell::noteUnreachable(const DDS_GUID_t &requestWriter)
{
    const std::lock_guard lock(mutex_);
    if (unreachable_.size() == kMaxUnreachable) {
        unreachable_.erase(unreachable_.begin());
    }
    unreachable_.push_back(requestWriter);
}

void Doorbell::awaitRequester(DDS_DataWriter &writer, const DDS_GUID_t &requestWriter,
                              const DDS_Duration_t &maxWait)
{
    if (DDS_DataWriter_wait_for_reader_of_participantI(&writer, &requestWriter, nullptr) ||
        isUnreachable(requestWriter)) {
        return;
    }
    if (!DDS_DataWriter_wait_for_reader_of_participantI(&writer, &requestWriter, &maxWait)) {
        noteUnreachable(requestWriter);
    }
}

} // namespace zuv::talvane
