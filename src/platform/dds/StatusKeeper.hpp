// Keeps the communication statuses of an endpoint and calls the user's listener. Statuses are counted here because
// the middleware forgets a change as soon as a listener has seen it.
#ifndef ZUV_PLATFORM_DDS_STATUS_KEEPER_HPP
#define ZUV_PLATFORM_DDS_STATUS_KEEPER_HPP

#include <mutex>
#include <utility>

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
        std::unique_lock lock(mutex_);
        status.total_count = static_cast<DDS_Long>(fast.total_count);
        status.total_count_change += static_cast<DDS_Long>(fast.total_count_change);
        if constexpr (kIsMatched<Status>) {
            status.current_count = fast.current_count;
            status.current_count_change += fast.current_count_change;
        }
        noteRest(status);
        call(std::move(lock), status, bit, callback);
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
        call(std::unique_lock(mutex_), bit, callback);
    }

    // The endpoint is whole. Up to here the listener is not called, as it may ask the endpoint; what it has missed it
    // is told by the calls below.
    void open()
    {
        const std::lock_guard lock(mutex_);
        isOpen_ = true;
    }

    template <typename Status>
    void tellMissed(Status &status, DDS_StatusMask bit,
                    void (*Listener::*callback)(void *, Endpoint *, const Status *))
    {
        std::unique_lock lock(mutex_);
        if ((missed_ & bit) != 0) {
            call(std::move(lock), status, bit, callback);
        }
    }

    void tellMissed(DDS_StatusMask bit, void (*Listener::*callback)(void *, Endpoint *))
    {
        std::unique_lock lock(mutex_);
        if ((missed_ & bit) != 0) {
            call(std::move(lock), bit, callback);
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

    // Whether the listener is to be called now; if only later, that is noted.
    bool mayCall(DDS_StatusMask bit, bool hasCallback)
    {
        const bool isWanted = (mask_ & bit) != 0 && hasCallback;
        missed_ = isWanted && !isOpen_ ? missed_ | bit : missed_ & ~bit;
        return isWanted && isOpen_;
    }

    template <typename Status>
    void call(std::unique_lock<std::mutex> lock, Status &status, DDS_StatusMask bit,
              void (*Listener::*callback)(void *, Endpoint *, const Status *))
    {
        if (!mayCall(bit, listener_.*callback != nullptr)) {
            return;
        }
        const Listener user = listener_;
        const Status seen = status;
        forgetChanges(status);
        lock.unlock();
        (user.*callback)(user.listener_data, &endpoint_, &seen);
    }

    void call(std::unique_lock<std::mutex> lock, DDS_StatusMask bit,
              void (*Listener::*callback)(void *, Endpoint *))
    {
        if (!mayCall(bit, listener_.*callback != nullptr)) {
            return;
        }
        const Listener user = listener_;
        lock.unlock();
        (user.*callback)(user.listener_data, &endpoint_);
    }

    Endpoint &endpoint_;
    std::mutex mutex_;
    Listener listener_ = {};
    DDS_StatusMask mask_ = DDS_STATUS_MASK_NONE;
    DDS_StatusMask missed_ = DDS_STATUS_MASK_NONE;
    bool isOpen_ = false;
};

} // namespace zuv::dds

#endif
