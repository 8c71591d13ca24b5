#include "WriterAdapter.hpp"

#include <algorithm>
#include <chrono>
#include <cstring>

#include <fastdds/dds/core/status/IncompatibleQosStatus.hpp>
#include <fastdds/dds/core/status/PublicationMatchedStatus.hpp>
#include <fastdds/dds/publisher/DataWriterListener.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "StatusKeeper.hpp"

namespace zuv::dds
{

namespace fast = eprosima::fastdds::dds;

class WriterAdapter::Listener : public fast::DataWriterListener
{
public:
    explicit Listener(DDS_DataWriter &writer) : keeper(writer) {}

    void on_publication_matched(fast::DataWriter *,
                                const fast::PublicationMatchedStatus &status) override
    {
        keeper.count(matched, status, DDS_PUBLICATION_MATCHED_STATUS,
                     &DDS_DataWriterListener::on_publication_matched,
                     [&](DDS_PublicationMatchedStatus &noted) {
                         noted.last_subscription_handle = toOurs(status.last_subscription_handle);
                         noteReader(noted.last_subscription_handle, status.current_count_change);
                         changed.notify_all();
                     });
    }

    void on_offered_incompatible_qos(fast::DataWriter *,
                                     const fast::OfferedIncompatibleQosStatus &status) override
    {
        keeper.countIncompatible(incompatible, status, DDS_OFFERED_INCOMPATIBLE_QOS_STATUS,
                                 &DDS_DataWriterListener::on_offered_incompatible_qos);
    }

    bool hasReaderOf(const DDS_GUID_t &guid) const
    {
        return std::any_of(readers.begin(), readers.end(), [&](const DDS_GUID_t &reader) {
            return hasSameParticipant(reader, guid);
        });
    }

    StatusKeeper<DDS_DataWriter, DDS_DataWriterListener> keeper;
    // Under the keeper's mutex:
    std::condition_variable changed; // a reader matched or left
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
    listener_->keeper.setListener(listener, mask);
}

void WriterAdapter::open()
{
    auto &keeper = listener_->keeper;
    keeper.open();
    keeper.tellMissed(listener_->matched, DDS_PUBLICATION_MATCHED_STATUS,
                      &DDS_DataWriterListener::on_publication_matched);
    keeper.tellMissed(listener_->incompatible, DDS_OFFERED_INCOMPATIBLE_QOS_STATUS,
                      &DDS_DataWriterListener::on_offered_incompatible_qos);
}

DDS_PublicationMatchedStatus WriterAdapter::takeMatchedStatus()
{
    return listener_->keeper.take(listener_->matched);
}

DDS_OfferedIncompatibleQosStatus WriterAdapter::takeIncompatibleStatus()
{
    return listener_->keeper.take(listener_->incompatible);
}

bool WriterAdapter::waitForReaderOf(const DDS_GUID_t &guid, const DDS_Duration_t *maxWait)
{
    std::unique_lock lock(listener_->keeper.mutex());
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
