#include "AsyncWaitSetImpl.hpp"

#include <algorithm>
#include <string>

#include <fastdds/dds/core/condition/GuardCondition.hpp>
#include <fastdds/dds/core/condition/StatusCondition.hpp>
#include <fastdds/dds/core/condition/WaitSet.hpp>
#include <fastdds/rtps/common/Time_t.h>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "Report.hpp"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::toOurs;

namespace
{

constexpr const char *kDefaultPrefix = "zAsyncWaitSet";
constexpr std::size_t kThreadNameLength = 15; // the system keeps no more
constexpr std::chrono::milliseconds kPauseAfterFailure{100};

const fast::Condition &fastOf(const DDS_Condition &condition)
{
    return static_cast<const DDS_StatusCondition &>(condition)
        .entity->fastEntity->get_statuscondition();
}

eprosima::fastrtps::Duration_t
timeUntil(const std::optional<std::chrono::steady_clock::time_point> &deadline)
{
    if (!deadline) {
        return eprosima::fastrtps::c_TimeInfinite;
    }
    const std::chrono::nanoseconds left =
        std::max<std::chrono::nanoseconds>(*deadline - std::chrono::steady_clock::now(), {});
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    return {static_cast<std::int32_t>(seconds.count()),
            static_cast<std::uint32_t>((left - seconds).count())};
}

// A name that keeps its number whatever the length of the prefix.
std::string threadName(const char *prefix, std::size_t index)
{
    const std::string number = std::to_string(index);
    std::string name = prefix != nullptr ? prefix : kDefaultPrefix;
    name.resize(std::min(name.size(), kThreadNameLength - number.size()));
    return name + number;
}

} // namespace

thread_local DDS_AsyncWaitSet *DDS_AsyncWaitSet::poolOfThisThread_ = nullptr;
thread_local DDS_AsyncWaitSet::Attachment *DDS_AsyncWaitSet::handledHere_ = nullptr;

struct DDS_AsyncWaitSet::Middleware {
    fast::WaitSet waitSet;
    fast::GuardCondition wakeUp; // triggered while the pool stops
    fast::ConditionSeq active;   // the leader's alone
};

// -- Making and ending -----------------------------------------------------------------------------------------

DDS_AsyncWaitSet::DDS_AsyncWaitSet() : middleware_(std::make_unique<Middleware>()) {}

bool DDS_AsyncWaitSet::prepare(const DDS_AsyncWaitSetProperty_t &property,
                               const DDS_AsyncWaitSetListener *listener)
{
    if (DDS_AsyncWaitSetProperty_t_copy(&property_, &property) != DDS_RETCODE_OK) {
        return false;
    }
    listener_ = listener != nullptr ? *listener : DDS_AsyncWaitSetListener{};
    workerFactory_ = DDS_DomainParticipantFactory_get_worker_factoryI(
        DDS_DomainParticipantFactory_get_instance(), 0);
    if (workerFactory_ == nullptr) {
        return false;
    }
    leadership_ = MAVOWorkerFactory_createExclusiveAreaEx(
        workerFactory_, property_.level,
        property_.thread_name_prefix != nullptr ? property_.thread_name_prefix : kDefaultPrefix);
    return leadership_ != nullptr &&
           toOurs(middleware_->waitSet.attach_condition(middleware_->wakeUp)) == DDS_RETCODE_OK;
}

DDS_AsyncWaitSet::~DDS_AsyncWaitSet()
{
    for (auto &[fast, attachment] : attachments_) {
        middleware_->waitSet.detach_condition(*fast);
        attachment.condition->dispatcher = nullptr;
    }
    middleware_->waitSet.detach_condition(middleware_->wakeUp);
    if (leadership_ != nullptr) {
        MAVOWorkerFactory_destroyExclusiveArea(workerFactory_, leadership_);
    }
    DDS_AsyncWaitSetProperty_t_finalize(&property_);
}

DDS_ReturnCode_t DDS_AsyncWaitSet::start()
{
    if (poolOfThisThread_ == this) {
        return DDS_RETCODE_OK;
    }
    const std::lock_guard control(controlMutex_);
    if (isStarted()) {
        return DDS_RETCODE_OK;
    }
    const auto count = static_cast<std::size_t>(property_.thread_pool_size);
    threads_.resize(count);
    for (std::size_t i = 0; i < count; ++i) {
        if (ZUV_OSAPI_FAULT("dds.start_async_waitset") || !startThread(i)) {
            ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "thread of an asynchronous wait set");
            endThreads();
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
    }
    const std::lock_guard lock(mutex_);
    isStarted_ = true;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_AsyncWaitSet::stop()
{
    if (poolOfThisThread_ == this) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "stop an asynchronous wait set on its own thread");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const std::lock_guard control(controlMutex_);
    if (ZUV_OSAPI_FAULT("dds.stop_async_waitset")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "stop asynchronous wait set");
        return DDS_RETCODE_ERROR;
    }
    endThreads();
    return DDS_RETCODE_OK;
}

bool DDS_AsyncWaitSet::isStarted()
{
    const std::lock_guard lock(mutex_);
    return isStarted_;
}

bool DDS_AsyncWaitSet::startThread(std::size_t index)
{
    PoolThread &self = threads_[index];
    self.pool = this;
    self.worker = MAVOWorkerFactory_createWorker(
        workerFactory_, threadName(property_.thread_name_prefix, index).c_str());
    if (self.worker == nullptr) {
        return false;
    }
    self.thread = makeThread(self, index);
    if (self.thread == nullptr) {
        MAVOWorkerFactory_destroyWorker(workerFactory_, self.worker);
    }
    return self.thread != nullptr;
}

ZUVOsapiThread *DDS_AsyncWaitSet::makeThread(PoolThread &self, std::size_t index)
{
    const DDS_ThreadSettings_t &wanted = property_.thread_settings;
    ZUVOsapiThreadSettings settings = {};
    settings.stackSize = wanted.stack_size > 0 ? static_cast<std::size_t>(wanted.stack_size) : 0;
    settings.processors = DDS_LongSeq_get_contiguous_buffer(&wanted.cpu_list);
    settings.processorCount = static_cast<std::size_t>(DDS_LongSeq_get_length(&wanted.cpu_list));
    if (settings.processorCount > 0 && wanted.cpu_rotation == DDS_THREAD_SETTINGS_CPU_RR_ROTATION) {
        settings.processors += index % settings.processorCount;
        settings.processorCount = 1;
    }
    if ((wanted.mask & DDS_THREAD_SETTINGS_REALTIME_PRIORITY) != 0 &&
        wanted.priority != DDS_THREAD_PRIORITY_DEFAULT) {
        settings.realtimePriority = wanted.priority;
    }
    const std::string name = threadName(property_.thread_name_prefix, index);
    ZUVOsapiThread *thread =
        ZUVOsapiThread_newWithSettings(name.c_str(), runThread, &self, &settings);
    if (thread == nullptr && settings.realtimePriority != 0 &&
        (wanted.mask & DDS_THREAD_SETTINGS_PRIORITY_ENFORCE) == 0) {
        settings.realtimePriority = 0;
        thread = ZUVOsapiThread_newWithSettings(name.c_str(), runThread, &self, &settings);
    }
    return thread;
}

// Those that could be started; their conditions wait for the next start.
void DDS_AsyncWaitSet::endThreads()
{
    {
        const std::lock_guard lock(mutex_);
        isStopping_ = true;
    }
    stopping_.notify_all();
    middleware_->wakeUp.set_trigger_value(true);
    for (const PoolThread &each : threads_) {
        ZUVOsapiThread_delete(each.thread);
    }
    threads_.clear();
    middleware_->wakeUp.set_trigger_value(false);
    const std::lock_guard lock(mutex_);
    isStopping_ = false;
    isStarted_ = false;
    queue_.insert(queue_.end(), collected_.begin(), collected_.end());
    collected_.clear();
    // What the middleware does not take back now stays in the queue.
    std::erase_if(queue_, [this](Attachment *attachment) { return watch(*attachment); });
}

// -- Conditions ------------------------------------------------------------------------------------------------

DDS_ReturnCode_t DDS_AsyncWaitSet::attach(DDS_Condition &condition)
{
    if (condition.handler.on_condition_triggered == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "attach a condition without a handler");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    DDS_AsyncWaitSet *none = nullptr;
    if (!condition.dispatcher.compare_exchange_strong(none, this)) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "attach a condition that is attached");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const fast::Condition *const fast = &fastOf(condition);
    const bool isAttached = guarded("attach condition", false, [&] {
        const std::lock_guard lock(mutex_);
        collected_.reserve(attachments_.size() + 1);
        queue_.reserve(attachments_.size() + 1);
        Attachment &attachment = attachments_[fast];
        attachment.condition = &condition;
        attachment.fast = fast;
        if (!watch(attachment)) {
            attachments_.erase(fast);
            return false;
        }
        return true;
    });
    if (!isAttached) {
        condition.dispatcher = nullptr;
        return DDS_RETCODE_ERROR;
    }
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_AsyncWaitSet::detach(DDS_Condition &condition)
{
    if (condition.dispatcher == nullptr) {
        return DDS_RETCODE_OK;
    }
    std::unique_lock lock(mutex_);
    const auto known =
        condition.dispatcher == this ? attachments_.find(&fastOf(condition)) : attachments_.end();
    if (known == attachments_.end() || known->second.isLeaving) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "detach a condition that is attached elsewhere");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (ZUV_OSAPI_FAULT("dds.detach_condition")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "detach condition");
        return DDS_RETCODE_ERROR;
    }
    Attachment &attachment = known->second;
    if (handledHere_ == &attachment) {
        handledHere_ = nullptr; // the handler's return finds nothing to do
    } else {
        attachment.isLeaving = true;
        handled_.wait(lock, [&] { return attachment.state != State::kHandled; });
    }
    remove(attachment);
    return DDS_RETCODE_OK;
}

void DDS_AsyncWaitSet::remove(Attachment &attachment)
{
    middleware_->waitSet.detach_condition(*attachment.fast);
    std::erase(collected_, &attachment);
    std::erase(queue_, &attachment);
    attachment.condition->dispatcher = nullptr;
    attachments_.erase(attachment.fast);
}

// Let the middleware's wait set wake the leader for it. False after a report.
bool DDS_AsyncWaitSet::watch(Attachment &attachment)
{
    const DDS_ReturnCode_t code =
        ZUV_OSAPI_FAULT("dds.attach_condition")
            ? DDS_RETCODE_ERROR
            : guarded("attach condition", DDS_RETCODE_OUT_OF_RESOURCES, [&] {
                  return toOurs(middleware_->waitSet.attach_condition(*attachment.fast));
              });
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "attach condition");
        return false;
    }
    attachment.state = State::kWaiting;
    return true;
}

// -- The threads of the pool -----------------------------------------------------------------------------------

void DDS_AsyncWaitSet::runThread(void *poolThread)
{
    auto &self = *static_cast<PoolThread *>(poolThread);
    poolOfThisThread_ = self.pool;
    self.pool->run(self);
}

void DDS_AsyncWaitSet::run(PoolThread &self)
{
    if (listener_.on_thread_spawned != nullptr) {
        listener_.on_thread_spawned(listener_.listener_data);
    }
    for (bool goesOn = true; goesOn;) {
        Attachment *const attachment = lead(self);
        if (attachment != nullptr) {
            handle(*attachment);
        }
        const std::lock_guard lock(mutex_);
        goesOn = !isStopping_;
    }
    if (listener_.on_thread_deleted != nullptr) {
        listener_.on_thread_deleted(listener_.listener_data);
    }
    // Leaves the area too, should the worker still be in it.
    MAVOWorkerFactory_destroyWorker(workerFactory_, self.worker);
}

// Be the leader until there is something to handle. Null when the pool stops, or after a failure.
DDS_AsyncWaitSet::Attachment *DDS_AsyncWaitSet::lead(PoolThread &self)
{
    if (MAVOWorker_enterExclusiveArea(self.worker, nullptr, leadership_) == 0) {
        std::unique_lock lock(mutex_);
        pauseAfterFailure(lock);
        return nullptr;
    }
    Attachment *const attachment = nextTriggered();
    while (MAVOWorker_leaveExclusiveArea(self.worker, nullptr, leadership_) == 0) {
        std::unique_lock lock(mutex_);
        if (!pauseAfterFailure(lock)) {
            break;
        }
    }
    return attachment;
}

DDS_AsyncWaitSet::Attachment *DDS_AsyncWaitSet::nextTriggered()
{
    std::optional<Clock::time_point> deadline; // of the batch
    const DDS_Duration_t &delay = property_.waitset_property.max_event_delay;
    std::unique_lock lock(mutex_);
    while (!isStopping_ && queue_.empty()) {
        if (isBatchComplete(deadline)) {
            queue_.assign(collected_.rbegin(), collected_.rend());
            collected_.clear();
        } else if (!collect(lock, deadline)) {
            pauseAfterFailure(lock);
        }
        if (collected_.empty()) {
            deadline.reset();
        } else if (!deadline && DDS_Duration_is_infinite(&delay) == 0) {
            deadline = Clock::now() + std::chrono::nanoseconds(DDS_Duration_to_nanoseconds(&delay));
        }
    }
    if (isStopping_) {
        return nullptr;
    }
    Attachment *const next = queue_.back();
    queue_.pop_back();
    next->state = State::kHandled;
    return next;
}

bool DDS_AsyncWaitSet::isBatchComplete(std::optional<Clock::time_point> deadline) const
{
    const DDS_Long count = property_.waitset_property.max_event_count;
    return !collected_.empty() && ((count != DDS_LENGTH_UNLIMITED &&
                                    collected_.size() >= static_cast<std::size_t>(count)) ||
                                   (deadline && Clock::now() >= *deadline));
}

// Wait, and take out of the wait set what is triggered. False after a report.
bool DDS_AsyncWaitSet::collect(std::unique_lock<std::mutex> &lock,
                               std::optional<Clock::time_point> deadline)
{
    lock.unlock();
    const DDS_ReturnCode_t code = ZUV_OSAPI_FAULT("dds.wait")
                                      ? DDS_RETCODE_ERROR
                                      : guarded("wait", DDS_RETCODE_OUT_OF_RESOURCES, [&] {
                                            return toOurs(middleware_->waitSet.wait(
                                                middleware_->active, timeUntil(deadline)));
                                        });
    lock.lock();
    if (code != DDS_RETCODE_OK) {
        if (code != DDS_RETCODE_TIMEOUT) {
            ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "wait for conditions");
        }
        return code == DDS_RETCODE_TIMEOUT;
    }
    for (const fast::Condition *fast : middleware_->active) {
        // One that was detached meanwhile is not known any more; neither is what wakes the leader up.
        const auto known = attachments_.find(fast);
        if (known != attachments_.end() && known->second.state == State::kWaiting &&
            !known->second.isLeaving) {
            middleware_->waitSet.detach_condition(*fast);
            known->second.state = State::kTriggered;
            collected_.push_back(&known->second);
        }
    }
    if (!isStopping_) {
        middleware_->wakeUp.set_trigger_value(false);
    }
    return true;
}

void DDS_AsyncWaitSet::handle(Attachment &attachment)
{
    handledHere_ = &attachment;
    const DDS_ConditionHandler handler = attachment.condition->handler;
    handler.on_condition_triggered(handler.handler_data, attachment.condition);
    if (handledHere_ == nullptr) {
        return;
    }
    handledHere_ = nullptr;
    {
        const std::lock_guard lock(mutex_);
        if (attachment.isLeaving) {
            attachment.state = State::kWaiting;
        } else if (!watch(attachment)) {
            // To be handled once more without being triggered rather than never again.
            attachment.state = State::kTriggered;
            queue_.insert(queue_.begin(), &attachment);
            middleware_->wakeUp.set_trigger_value(true);
        }
    }
    handled_.notify_all();
}

// So that a failure that lasts does not take a whole processor. False when the pool stops.
bool DDS_AsyncWaitSet::pauseAfterFailure(std::unique_lock<std::mutex> &lock)
{
    return !stopping_.wait_for(lock, kPauseAfterFailure, [this] { return isStopping_; });
}
