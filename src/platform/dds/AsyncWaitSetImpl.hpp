// The pool behind an asynchronous wait set.
//
// The threads take turns as the leader: being in the exclusive area makes one of them wait in the middleware's wait set.
// What is triggered it takes out of that set, so that nobody else is woken by it, and queues; then it takes one from the
// queue, leaves the area to the next leader, and handles it. What has been handled goes back into the wait set, where it
// wakes the leader at once if it is triggered again.
#ifndef ZUV_PLATFORM_DDS_ASYNC_WAIT_SET_IMPL_HPP
#define ZUV_PLATFORM_DDS_ASYNC_WAIT_SET_IMPL_HPP

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/dds/AsyncWaitSet.h"
#include "platform/mavo/WorkerFactory.h"
#include "platform/osapi/Thread.h"

namespace eprosima::fastdds::dds
{
class Condition;
}

struct DDS_AsyncWaitSet {
    DDS_AsyncWaitSet();
    ~DDS_AsyncWaitSet();
    DDS_AsyncWaitSet(const DDS_AsyncWaitSet &) = delete;
    DDS_AsyncWaitSet &operator=(const DDS_AsyncWaitSet &) = delete;

    // Once, before all else. False after a report.
    bool prepare(const DDS_AsyncWaitSetProperty_t &property,
                 const DDS_AsyncWaitSetListener *listener);

    DDS_ReturnCode_t start();
    DDS_ReturnCode_t stop();
    bool isStarted();
    DDS_ReturnCode_t attach(DDS_Condition &condition);
    DDS_ReturnCode_t detach(DDS_Condition &condition);

private:
    using Clock = std::chrono::steady_clock;
    using FastCondition = eprosima::fastdds::dds::Condition;

    enum class State {
        kWaiting,   // in the middleware's wait set
        kTriggered, // collected, or in the queue
        kHandled    // by a thread, at this moment
    };
    struct Attachment {
        DDS_Condition *condition = nullptr;
        const FastCondition *fast = nullptr;
        State state = State::kWaiting;
        bool isLeaving = false; // goes as soon as it is not handled any more
    };
    struct PoolThread {
        DDS_AsyncWaitSet *pool = nullptr;
        ZUVOsapiThread *thread = nullptr;
        MAVOWorker *worker = nullptr;
    };

    static void runThread(void *poolThread);
    void run(PoolThread &self);
    Attachment *lead(PoolThread &self);
    Attachment *nextTriggered();
    bool collect(std::unique_lock<std::mutex> &lock, std::optional<Clock::time_point> deadline);
    bool isBatchComplete(std::optional<Clock::time_point> deadline) const;
    void handle(Attachment &attachment);
    void remove(Attachment &attachment);
    bool watch(Attachment &attachment);
    bool pauseAfterFailure(std::unique_lock<std::mutex> &lock);

    static thread_local DDS_AsyncWaitSet *poolOfThisThread_;
    static thread_local Attachment *handledHere_;

    bool startThread(std::size_t index);
    ZUVOsapiThread *makeThread(PoolThread &self, std::size_t index);
    void endThreads();

    DDS_AsyncWaitSetProperty_t property_ = {};
    DDS_AsyncWaitSetListener listener_ = {};
    MAVOWorkerFactory *workerFactory_ = nullptr;
    MAVOExclusiveArea *leadership_ = nullptr;
    struct Middleware; // the middleware's own part
    std::unique_ptr<Middleware> middleware_;

    std::mutex controlMutex_;         // one start or stop at a time; taken before the other one
    std::vector<PoolThread> threads_; // of its full size while they run; under that mutex

    std::mutex mutex_; // guards what follows
    std::condition_variable handled_;
    std::condition_variable stopping_;
    bool isStopping_ = false;
    bool isStarted_ = false;
    std::unordered_map<const FastCondition *, Attachment> attachments_;
    // Both have room for all that are attached.
    std::vector<Attachment *> collected_; // until the batch is complete
    std::vector<Attachment *> queue_;     // to be handled, the last one first
};

#endif
