// Keeps the communication statuses of an endpoint and calls the user's listener. Statuses are counted here because
// the middleware forgets a change as soon as a listener has seen it.
#ifndef ZUV_PLATFORM_DDS_STATUS_KEEPER_HPP
#define ZUV_PLATFORM_DDS_STATUS_KEEPER_HPP

#include <mutex>

#include "platform/dds/Status.h"

namespace zuv::dds
{

// Endpoint is the first argument of each of the listener's callbacks after its data.
template <typename Endpoint, typename Listener>
class StatusKeeper
{
public:
    explicit StatusKeeper(Endpoint &endpoint) : endpoint_(endpoint) {}
    StatusKeeper(const StatusKeeper &) = delete;
    StatusKeeper &operator=(const StatusKeeper &) = delete;

    void setListener(const Listener *listener, DDS_StatusMask mask)
    {
        const std::lock_guard lock(mutex_);
        listener_ = listener == nullptr ? Listener{} : *listener;
        mask_ = listener == nullptr ? DDS_STATUS_MASK_NONE : mask;
    }

    // Take over what the middleware has counted; `noteRest` gets the status for what is left.
    template <typename Status, typename FastStatus, typename NoteRest>
    void count(Status &status, const FastStatus &fast, DDS_StatusMask bit,
               void (*Listener::*callback)(void *, Endpoint *, const Status *), NoteRest &&noteRest)
    {
        Status seen;
        Listener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex_);
            status.total_count = static_cast<DDS_Long>(fast.total_count);
            status.total_count_change += static_cast<DDS_Long>(fast.total_count_change);
            if constexpr (kIsMatched<Status>) {
                status.current_count = fast.current_count;
                status.current_count_change += fast.current_count_change;
            }
            noteRest(status);
            user = listener_;
            isCalled = (mask_ & bit) != 0 && user.*callback != nullptr;
            seen = status;
            if (isCalled) {
                forgetChanges(status);
            }
        }
        if (isCalled) {
            (user.*callback)(user.listener_data, &endpoint_, &seen);
        }
    }

    // The same for two endpoints that do not fit each other.
    template <typename Status, typename FastStatus>
    void countIncompatible(Status &status, const FastStatus &fast, DDS_StatusMask bit,
                           void (*Listener::*callback)(void *, Endpoint *, const Status *))
    {
        count(status, fast, bit, callback, [&](Status &noted) {
            noted.last_policy_id = static_cast<DDS_QosPolicyId_t>(fast.last_policy_id);
        });
    }

    // Call the listener for something that is not counted.
    void tell(DDS_StatusMask bit, void (*Listener::*callback)(void *, Endpoint *))
    {
        Listener user;
        bool isCalled;
        {
            const std::lock_guard lock(mutex_);
            user = listener_;
            isCalled = (mask_ & bit) != 0 && user.*callback != nullptr;
        }
        if (isCalled) {
            (user.*callback)(user.listener_data, &endpoint_);
        }
    }

    // The status as it is; its changes count from here on again.
    template <typename Status>
    Status take(Status &status)
    {
        const std::lock_guard lock(mutex_);
        const Status seen = status;
        forgetChanges(status);
        return seen;
    }

    // Guards the statuses and what else the listener's owner puts under it.
    std::mutex &mutex() { return mutex_; }

private:
    template <typename Status>
    static constexpr bool kIsMatched = requires(Status status)
    {
        status.current_count;
    };

    template <typename Status>
    static void forgetChanges(Status &status)
    {
        status.total_count_change = 0;
        if constexpr (kIsMatched<Status>) {
            status.current_count_change = 0;
        }
    }

    Endpoint &endpoint_;
    std::mutex mutex_;
    Listener listener_ = {};
    DDS_StatusMask mask_ = DDS_STATUS_MASK_NONE;
};

} // namespace zuv::dds

#endif
