#include "ReaderAdapter.hpp"

#include <fastdds/dds/core/status/IncompatibleQosStatus.hpp>
#include <fastdds/dds/core/status/SubscriptionMatchedStatus.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"

namespace zuv::dds
{

namespace fast = eprosima::fastdds::dds;

class ReaderAdapter::Listener : public fast::DataReaderListener
{
public:
    explicit Listener(DDS_DataReader &reader) : reader_(reader) {}

    void on_data_available(fast::DataReader *) override
    {
        {
            const std::lock_guard lock(observerMutex);
            if (observer != nullptr) {
                observer->onDataAvailable(reader_);
            }
        }
        DDS_DataReaderListener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex);
            user = listener;
            isCalled = (mask & DDS_DATA_AVAILABLE_STATUS) != 0 && user.on_data_available != nullptr;
        }
        if (isCalled) {
            user.on_data_available(user.listener_data, &reader_);
        }
    }

    void on_subscription_matched(fast::DataReader *,
                                 const fast::SubscriptionMatchedStatus &status) override
    {
        DDS_SubscriptionMatchedStatus seen;
        DDS_DataReaderListener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex);
            matched.total_count = status.total_count;
            matched.total_count_change += status.total_count_change;
            matched.current_count = status.current_count;
            matched.current_count_change += status.current_count_change;
            matched.last_publication_handle = toOurs(status.last_publication_handle);
            user = listener;
            isCalled = (mask & DDS_SUBSCRIPTION_MATCHED_STATUS) != 0 &&
                       user.on_subscription_matched != nullptr;
            seen = matched;
            if (isCalled) {
                matched.total_count_change = matched.current_count_change = 0;
            }
        }
        if (isCalled) {
            user.on_subscription_matched(user.listener_data, &reader_, &seen);
        }
    }

    void on_requested_incompatible_qos(fast::DataReader *,
                                       const fast::RequestedIncompatibleQosStatus &status) override
    {
        DDS_RequestedIncompatibleQosStatus seen;
        DDS_DataReaderListener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex);
            incompatible.total_count = static_cast<DDS_Long>(status.total_count);
            incompatible.total_count_change += static_cast<DDS_Long>(status.total_count_change);
            incompatible.last_policy_id = static_cast<DDS_QosPolicyId_t>(status.last_policy_id);
            user = listener;
            isCalled = (mask & DDS_REQUESTED_INCOMPATIBLE_QOS_STATUS) != 0 &&
                       user.on_requested_incompatible_qos != nullptr;
            seen = incompatible;
            if (isCalled) {
                incompatible.total_count_change = 0;
            }
        }
        if (isCalled) {
            user.on_requested_incompatible_qos(user.listener_data, &reader_, &seen);
        }
    }

    std::mutex observerMutex; // held while the observer is called
    ReaderObserver *observer = nullptr;
    std::mutex mutex;
    DDS_DataReaderListener listener = {};
    DDS_StatusMask mask = DDS_STATUS_MASK_NONE;
    DDS_SubscriptionMatchedStatus matched = {};
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
    const std::lock_guard lock(listener_->mutex);
    listener_->listener = listener == nullptr ? DDS_DataReaderListener{} : *listener;
    listener_->mask = listener == nullptr ? DDS_STATUS_MASK_NONE : mask;
}

void ReaderAdapter::setObserver(ReaderObserver *observer)
{
    const std::lock_guard lock(listener_->observerMutex);
    listener_->observer = observer;
}

DDS_SubscriptionMatchedStatus ReaderAdapter::takeMatchedStatus()
{
    const std::lock_guard lock(listener_->mutex);
    const DDS_SubscriptionMatchedStatus status = listener_->matched;
    listener_->matched.total_count_change = listener_->matched.current_count_change = 0;
    return status;
}

DDS_RequestedIncompatibleQosStatus ReaderAdapter::takeIncompatibleStatus()
{
    const std::lock_guard lock(listener_->mutex);
    const DDS_RequestedIncompatibleQosStatus status = listener_->incompatible;
    listener_->incompatible.total_count_change = 0;
    return status;
}

} // namespace zuv::dds
