#include "WriterAdapter.hpp"

#include <algorithm>
#include <chrono>
#include <cstring>

#include <fastdds/dds/core/status/IncompatibleQosStatus.hpp>
#include <fastdds/dds/core/status/PublicationMatchedStatus.hpp>
#include <fastdds/dds/publisher/DataWriterListener.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"

namespace zuv::dds
{

namespace fast = eprosima::fastdds::dds;

class WriterAdapter::Listener : public fast::DataWriterListener
{
public:
    explicit Listener(DDS_DataWriter &writer) : writer_(writer) {}

    void on_publication_matched(fast::DataWriter *,
                                const fast::PublicationMatchedStatus &status) override
    {
        const DDS_InstanceHandle_t reader = toOurs(status.last_subscription_handle);
        DDS_PublicationMatchedStatus seen;
        DDS_DataWriterListener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex);
            matched.total_count = status.total_count;
            matched.total_count_change += status.total_count_change;
            matched.current_count = status.current_count;
            matched.current_count_change += status.current_count_change;
            matched.last_subscription_handle = reader;
            noteReader(reader, status.current_count_change);
            user = listener;
            isCalled = (mask & DDS_PUBLICATION_MATCHED_STATUS) != 0 &&
                       user.on_publication_matched != nullptr;
            seen = matched;
            if (isCalled) {
                matched.total_count_change = matched.current_count_change = 0;
            }
        }
        changed.notify_all();
        if (isCalled) {
            user.on_publication_matched(user.listener_data, &writer_, &seen);
        }
    }

    void on_offered_incompatible_qos(fast::DataWriter *,
                                     const fast::OfferedIncompatibleQosStatus &status) override
    {
        DDS_OfferedIncompatibleQosStatus seen;
        DDS_DataWriterListener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex);
            incompatible.total_count = static_cast<DDS_Long>(status.total_count);
            incompatible.total_count_change += static_cast<DDS_Long>(status.total_count_change);
            incompatible.last_policy_id = static_cast<DDS_QosPolicyId_t>(status.last_policy_id);
            user = listener;
            isCalled = (mask & DDS_OFFERED_INCOMPATIBLE_QOS_STATUS) != 0 &&
                       user.on_offered_incompatible_qos != nullptr;
            seen = incompatible;
            if (isCalled) {
                incompatible.total_count_change = 0;
            }
        }
        if (isCalled) {
            user.on_offered_incompatible_qos(user.listener_data, &writer_, &seen);
        }
    }

    bool hasReaderOf(const DDS_GUID_t &guid) const
    {
        return std::any_of(readers.begin(), readers.end(), [&](const DDS_GUID_t &reader) {
            return hasSameParticipant(reader, guid);
        });
    }

    std::mutex mutex;
    std::condition_variable changed; // a reader matched or left
    DDS_DataWriterListener listener = {};
    DDS_StatusMask mask = DDS_STATUS_MASK_NONE;
    DDS_PublicationMatchedStatus matched = {};
    DDS_OfferedIncompatibleQosStatus incompatible = {};
    std::vector<DDS_GUID_t> readers;

private:
    void noteReader(const DDS_InstanceHandle_t &handle, DDS_Long change)
    {
        DDS_GUID_t guid;
        std::memcpy(guid.value, handle.value, sizeof(guid.value));
        if (change > 0) {
            readers.push_back(guid);
        } else if (change < 0) {
            std::erase_if(readers, [&](const DDS_GUID_t &known) {
                return std::memcmp(known.value, guid.value, sizeof(guid.value)) == 0;
            });
        }
    }

    DDS_DataWriter &writer_;
};

WriterAdapter::WriterAdapter(DDS_DataWriter &writer, const DDS_DataWriterListener *listener,
                             DDS_StatusMask mask)
    : listener_(std::make_unique<Listener>(writer))
{
    setListener(listener, mask);
}

WriterAdapter::~WriterAdapter() = default;

fast::DataWriterListener *WriterAdapter::fastListener()
{
    return listener_.get();
}

void WriterAdapter::setListener(const DDS_DataWriterListener *listener, DDS_StatusMask mask)
{
    const std::lock_guard lock(listener_->mutex);
    listener_->listener = listener == nullptr ? DDS_DataWriterListener{} : *listener;
    listener_->mask = listener == nullptr ? DDS_STATUS_MASK_NONE : mask;
}

DDS_PublicationMatchedStatus WriterAdapter::takeMatchedStatus()
{
    const std::lock_guard lock(listener_->mutex);
    const DDS_PublicationMatchedStatus status = listener_->matched;
    listener_->matched.total_count_change = listener_->matched.current_count_change = 0;
    return status;
}

DDS_OfferedIncompatibleQosStatus WriterAdapter::takeIncompatibleStatus()
{
    const std::lock_guard lock(listener_->mutex);
    const DDS_OfferedIncompatibleQosStatus status = listener_->incompatible;
    listener_->incompatible.total_count_change = 0;
    return status;
}

bool WriterAdapter::waitForReaderOf(const DDS_GUID_t &guid, const DDS_Duration_t *maxWait)
{
    std::unique_lock lock(listener_->mutex);
    const auto isMatched = [&] { return listener_->hasReaderOf(guid); };
    if (maxWait == nullptr || isMatched()) {
        return isMatched();
    }
    if (DDS_Duration_is_infinite(maxWait)) {
        listener_->changed.wait(lock, isMatched);
        return true;
    }
    return listener_->changed.wait_for(
        lock, std::chrono::nanoseconds(DDS_Duration_to_nanoseconds(maxWait)), isMatched);
}

} // namespace zuv::dds
