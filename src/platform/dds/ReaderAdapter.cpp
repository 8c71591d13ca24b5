#include "ReaderAdapter.hpp"

#include <fastdds/dds/core/status/IncompatibleQosStatus.hpp>
#include <fastdds/dds/core/status/SubscriptionMatchedStatus.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "StatusKeeper.hpp"

namespace zuv::dds
{

namespace fast = eprosima::fastdds::dds;

class ReaderAdapter::Listener : public fast::DataReaderListener
{
public:
    explicit Listener(DDS_DataReader &reader) : keeper(reader), reader_(reader) {}

    void on_data_available(fast::DataReader *) override
    {
        {
            const std::lock_guard lock(observerMutex);
            if (observer != nullptr) {
                observer->onDataAvailable(reader_);
            }
        }
        keeper.tell(DDS_DATA_AVAILABLE_STATUS, &DDS_DataReaderListener::on_data_available);
    }

    void on_subscription_matched(fast::DataReader *,
                                 const fast::SubscriptionMatchedStatus &status) override
    {
        keeper.count(matched, status, DDS_SUBSCRIPTION_MATCHED_STATUS,
                     &DDS_DataReaderListener::on_subscription_matched,
                     [&](DDS_SubscriptionMatchedStatus &noted) {
                         noted.last_publication_handle = toOurs(status.last_publication_handle);
                     });
    }

    void on_requested_incompatible_qos(fast::DataReader *,
                                       const fast::RequestedIncompatibleQosStatus &status) override
    {
        keeper.countIncompatible(incompatible, status, DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS,
                                 &DDS_DataReaderListener::on_requested_incompatible_qos);
    }

    std::mutex observerMutex; // held while the observer is called
    ReaderObserver *observer = nullptr;
    StatusKeeper<DDS_DataReader, DDS_DataReaderListener> keeper;
    DDS_SubscriptionMatchedStatus matched = {}; // under the keeper's mutex, like the next one
    DDS_RequestedIncompatibleQosStatus incompatible = {};

private:
    DDS_DataReader &reader_;
};

ReaderAdapter::ReaderAdapter(DDS_DataReader &reader, const DDS_DataReaderListener *listener,
                             DDS_StatusMask mask)
    : listener_(std::make_unique<Listener>(reader))
{
    setListener(listener, mask);
}

ReaderAdapter::~ReaderAdapter() = default;

fast::DataReaderListener *ReaderAdapter::fastListener()
{
    return listener_.get();
}

void ReaderAdapter::setListener(const DDS_DataReaderListener *listener, DDS_StatusMask mask)
{
    listener_->keeper.setListener(listener, mask);
}

void ReaderAdapter::open()
{
    auto &keeper = listener_->keeper;
    keeper.open();
    keeper.tellMissed(listener_->matched, DDS_SUBSCRIPTION_MATCHED_STATUS,
                      &DDS_DataReaderListener::on_subscription_matched);
    keeper.tellMissed(listener_->incompatible, DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS,
                      &DDS_DataReaderListener::on_requested_incompatible_qos);
    keeper.tellMissed(DDS_DATA_AVAILABLE_STATUS, &DDS_DataReaderListener::on_data_available);
}

void ReaderAdapter::setObserver(ReaderObserver *observer)
{
    const std::lock_guard lock(listener_->observerMutex);
    listener_->observer = observer;
}

DDS_SubscriptionMatchedStatus ReaderAdapter::takeMatchedStatus()
{
    return listener_->keeper.take(listener_->matched);
}

DDS_RequestedIncompatibleQosStatus ReaderAdapter::takeIncompatibleStatus()
{
    return listener_->keeper.take(listener_->incompatible);
}

} // namespace zuv::dds
