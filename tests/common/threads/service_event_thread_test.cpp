#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstring>
#include <functional>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <dirent.h>
#include <pthread.h>

#include <gtest/gtest.h>

#include "common/ServiceEventThread.h"
#include "common/ServiceLog.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::HeapCheck;
using zuv_test::LogCapture;
using zuv_test::LogLink;
using zuv_test::ServiceLog;

constexpr uint32_t kFracMax = UINT32_MAX;

// A clock that stands until it is set.
struct StandingClock {
    ZUVClock base = {&StandingClock::getTime};
    std::mutex mutex;
    ZUVNtpTime time = {1000, 0x80000000};
    bool isBroken = false;

    static int getTime(ZUVClock *self, ZUVNtpTime *now)
    {
        auto *clock = reinterpret_cast<StandingClock *>(self);
        const std::lock_guard lock(clock->mutex);
        *now = clock->time;
        return clock->isBroken ? 0 : 1;
    }

    void set(const ZUVNtpTime &now)
    {
        const std::lock_guard lock(mutex);
        time = now;
    }
};

// A listener that does what a function says. It is told the event's time.
struct Action {
    using Function =
        std::function<void(const ZUVNtpTime &, const ZUVEventGeneratorListenerStorage &)>;

    explicit Action(Function wanted) : function(std::move(wanted)) {}

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *,
                       const ZUVNtpTime *time, const ZUVNtpTime *,
                       ZUVEventGeneratorListenerStorage *storage, MAVOWorker *)
    {
        reinterpret_cast<const Action *>(self)->function(*time, *storage);
        return 0;
    }

    ZUVEventGeneratorListener base = {&Action::onEvent};
    Function function;
};

// Counts down to nothing.
class Latch
{
public:
    explicit Latch(int count) : count_(count) {}

    void arrive()
    {
        const std::lock_guard lock(mutex_);
        --count_;
        changed_.notify_all();
    }

    bool wait()
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, std::chrono::seconds(20), [this] { return count_ <= 0; });
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_;
};

int countThreads()
{
    int count = 0;
    DIR *folder = opendir("/proc/self/task");
    while (const dirent *entry = readdir(folder)) {
        count += entry->d_name[0] != '.' ? 1 : 0;
    }
    closedir(folder);
    return count;
}

class EventThread : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        // What the middleware makes once stays outside of what a test counts.
        DDS_DomainParticipantFactory_get_worker_factoryI(
            DDS_DomainParticipantFactory_get_instance(), 0);
    }

    EventThread() : concurrency_(BRELConcurrency_new()) {}
    ~EventThread() override
    {
        ZUVOsapiFault_disarm();
        EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
        BRELConcurrency_delete(concurrency_);
    }

    int initialize(ZUVClock *clock, int bytesToCompare = 0)
    {
        return BRELServiceEventThread_initialize(&self_, concurrency_, clock, bytesToCompare,
                                                 "zBsEvent");
    }

    // The time for which an event is posted with this delay, at the clock's present time. The event runs because the
    // clock is set behind it; one that never runs has the time {-1, 0} here.
    ZUVNtpTime timeFor(const ZUVNtpTime &deltaTime)
    {
        ZUVNtpTime time = {-1, 0};
        Latch done(1);
        const Action action([&](const ZUVNtpTime &due, const auto &) { time = due; });
        const Action last([&](const auto &, const auto &) { done.arrive(); });
        EXPECT_EQ(BRELServiceEventThread_postEvent(&self_, &deltaTime, &action.base, nullptr), 1);
        clock_.set({0xFFFFFFFE, 0});
        EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &last.base, nullptr), 1);
        EXPECT_TRUE(done.wait());
        return time;
    }

    StandingClock clock_;
    BRELConcurrency *concurrency_;
    BRELServiceEventThread self_ = {};
};

void expectTime(const ZUVNtpTime &time, int64_t sec, uint32_t frac)
{
    EXPECT_EQ(time.sec, sec);
    EXPECT_EQ(time.frac, frac);
}

TEST_F(EventThread, runsAnImmediateEventOnItsThread)
{
    ASSERT_EQ(initialize(ZUVClock_getMonotonic()), 1);
    Latch done(1);
    std::string threadName;
    std::string workerName;
    const Action action([&](const auto &, const ZUVEventGeneratorListenerStorage &storage) {
        char name[16];
        pthread_getname_np(pthread_self(), name, sizeof(name));
        threadName = name;
        workerName = BRELConcurrency_getWorker(concurrency_)->_name;
        EXPECT_EQ(storage.field[7], &done);
        done.arrive();
    });
    ZUVEventGeneratorListenerStorage storage = {};
    storage.field[7] = &done;
    EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &action.base, &storage), 1);
    EXPECT_TRUE(done.wait());
    EXPECT_EQ(threadName, "zBsEvent");
    EXPECT_EQ(workerName.substr(0, 11), "zBsEvent_0x");
}

TEST_F(EventThread, eventsMayEnterExclusiveAreas)
{
    ASSERT_EQ(initialize(ZUVClock_getMonotonic()), 1);
    MAVOExclusiveArea *area = BRELConcurrency_createExclusiveArea(
        concurrency_, BRELConcurrency_CONNECTION_EA_LEVEL, "connection");
    Latch done(1);
    const Action action([&](const auto &, const auto &) {
        EXPECT_EQ(BRELConcurrency_enterExclusiveArea(concurrency_, area), 1);
        EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(concurrency_, area), 1);
        done.arrive();
    });
    BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr);
    EXPECT_TRUE(done.wait());
    BRELConcurrency_deleteExclusiveArea(concurrency_, area);
}

TEST_F(EventThread, eventsRunInTheOrderOfTheirTimes)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    std::vector<int> order;
    Latch done(5);
    const auto noting = [&](int number) {
        return Action([&order, &done, number](const auto &, const auto &) {
            order.push_back(number);
            done.arrive();
        });
    };
    const Action late = noting(3), early = noting(1), now = noting(2), again = noting(4);
    // All of them wait behind the event that posts them.
    const Action poster([&](const auto &, const auto &) {
        const ZUVNtpTime behind = {5, 0};
        const ZUVNtpTime before = {-5, 0};
        BRELServiceEventThread_postEvent(&self_, &behind, &late.base, nullptr);
        BRELServiceEventThread_postEvent(&self_, &behind, &again.base, nullptr);
        BRELServiceEventThread_postImmediateEvent(&self_, &now.base, nullptr);
        BRELServiceEventThread_postEvent(&self_, &before, &early.base, nullptr);
        clock_.set({2000, 0});
        done.arrive();
    });
    BRELServiceEventThread_postImmediateEvent(&self_, &poster.base, nullptr);
    EXPECT_TRUE(done.wait());
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3, 4}));
}

TEST_F(EventThread, aDelayIsAddedToTheTime)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    expectTime(timeFor({5, 1}), 1005, 0x80000001);
}

TEST_F(EventThread, aFractionThatOverflowsIsCarried)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    expectTime(timeFor({5, 0x80000003}), 1006, 3);
}

TEST_F(EventThread, aNegativeDelayIsATimeBeforeNow)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    expectTime(timeFor({-7, 0}), 993, 0x80000000);
}

TEST_F(EventThread, anInfiniteDelayStaysInfinite)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    expectTime(timeFor({0xFFFFFFFF, 0}), -1, 0);
    clock_.set({0xFFFFFFFF, 0}); // whatever the clock reads
    expectTime(timeFor({0x100000005, 7}), -1, 0);
}

TEST_F(EventThread, delaysAreCutToTheRangeOfTimes)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    expectTime(timeFor({0xFFFFFFFE, 0}), -1, 0); // becomes infinite
    clock_.set({-0xFFFFFFFELL, 9});
    expectTime(timeFor({-5, 1}), -0xFFFFFFFFLL, 10);
    clock_.set({0xFFFFFFFD, kFracMax});
    expectTime(timeFor({0, 1}), 0xFFFFFFFE, 0);
}

TEST_F(EventThread, equalEventsThatWaitRunOnce)
{
    ASSERT_EQ(initialize(&clock_.base, sizeof(void *)), 1);
    EXPECT_EQ(self_._storageBytesToCompare, static_cast<int>(sizeof(void *)));
    int runs = 0;
    Latch done(1);
    const Action counted([&](const auto &, const auto &) { ++runs; });
    const Action last([&](const auto &, const auto &) { done.arrive(); });
    const Action poster([&](const auto &, const auto &) {
        ZUVEventGeneratorListenerStorage storage = {};
        for (int number = 0; number < 6; ++number) {
            storage.field[0] = reinterpret_cast<void *>(static_cast<intptr_t>(number % 2));
            storage.field[1] = reinterpret_cast<void *>(static_cast<intptr_t>(number));
            BRELServiceEventThread_postImmediateEvent(&self_, &counted.base, &storage);
        }
        BRELServiceEventThread_postImmediateEvent(&self_, &last.base, nullptr);
    });
    BRELServiceEventThread_postImmediateEvent(&self_, &poster.base, nullptr);
    EXPECT_TRUE(done.wait());
    EXPECT_EQ(runs, 2);
}

TEST_F(EventThread, initializingTwiceStartsNoSecondThread)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    EXPECT_EQ(self_._init, 29508);
    const BRELServiceEventThread before = self_;
    const int threads = countThreads();
    EXPECT_EQ(BRELServiceEventThread_initialize(&self_, concurrency_, nullptr, 5, "other"), 1);
    EXPECT_EQ(std::memcmp(&before, &self_, sizeof(self_)), 0);
    EXPECT_EQ(countThreads(), threads);
}

TEST_F(EventThread, finalizeEndsTheThread)
{
    std::thread([] {}).join(); // a sanitizer's own thread starts with the first one of ours
    const int threads = countThreads();
    ASSERT_EQ(initialize(&clock_.base), 1);
    EXPECT_EQ(countThreads(), threads + 1);
    EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
    EXPECT_EQ(self_._init, 29509);
    EXPECT_EQ(self_._generator, nullptr);
    EXPECT_EQ(self_._workerFactory, nullptr);
    EXPECT_EQ(countThreads(), threads);
    EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
    ASSERT_EQ(initialize(&clock_.base), 1); // it may start over
}

TEST_F(EventThread, finalizeOfARecordThatNeverRanDoesNothing)
{
    const ServiceLog on;
    const LogCapture log;
    BRELServiceEventThread zeroed = {};
    EXPECT_EQ(BRELServiceEventThread_finalize(&zeroed), 1);
    EXPECT_EQ(zeroed._init, 0);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(EventThread, finalizeDropsWhatHasNotBegun)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    Latch hasBegun(1);
    Latch mayEnd(1);
    int runs = 0;
    const Action slow([&](const auto &, const auto &) {
        hasBegun.arrive();
        mayEnd.wait();
        ++runs;
    });
    BRELServiceEventThread_postImmediateEvent(&self_, &slow.base, nullptr);
    BRELServiceEventThread_postImmediateEvent(&self_, &slow.base, nullptr);
    ASSERT_TRUE(hasBegun.wait());
    std::thread releaser([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        mayEnd.arrive();
    });
    EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1); // waits for the one that has
    EXPECT_EQ(runs, 1);
    releaser.join();
}

TEST_F(EventThread, missingArgumentsAreReported)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    const ServiceLog on;
    const LogCapture log;
    const Action action([](const auto &, const auto &) {});
    ZUVClock *clock = &clock_.base;
    BRELServiceEventThread other = {};
    EXPECT_EQ(BRELServiceEventThread_initialize(nullptr, concurrency_, clock, 0, "t"), 0);
    EXPECT_EQ(BRELServiceEventThread_initialize(&other, nullptr, clock, 0, "t"), 0);
    EXPECT_EQ(BRELServiceEventThread_initialize(&other, concurrency_, clock, 0, nullptr), 0);
    EXPECT_EQ(BRELServiceEventThread_postEvent(nullptr, &ZUV_NTP_TIME_ZERO, &action.base, nullptr),
              0);
    EXPECT_EQ(BRELServiceEventThread_postEvent(&self_, nullptr, &action.base, nullptr), 0);
    EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, nullptr, nullptr), 0);
    EXPECT_EQ(BRELServiceEventThread_finalize(nullptr), 0);
    EXPECT_EQ(BRELServiceEventThread_delete(nullptr), 0);
    const auto precondition = [](const char *text) {
        return LogLink{&ZUV_LOG_PRECONDITION_FAILURE_s, text};
    };
    const LogLink noSelf = precondition("!meet precondition: self == ((void *)0)");
    EXPECT_TRUE(log.isExactly(
        {noSelf, precondition("!meet precondition: concurrency == ((void *)0)"),
         precondition("!meet precondition: threadName == ((void *)0)"), noSelf,
         precondition("!meet precondition: deltaTime == ((void *)0)"),
         precondition("!meet precondition: eventListener == ((void *)0)"), noSelf, noSelf}));
    EXPECT_EQ(other._init, 0);
}

class EventThreadFailure : public EventThread
{
protected:
    BRELServiceEventThread *make(ZUVClock *clock)
    {
        return BRELServiceEventThread_new(concurrency_, clock, 0, "zBsEvent");
    }

    // Making a thread fails with this one line before that of the whole; nothing is left.
    void expectFailure(const char *point, std::uint32_t count, const LogLink &line, ZUVClock *clock)
    {
        const ServiceLog on(false);
        const LogCapture log;
        const HeapCheck heap;
        const int threads = countThreads();
        if (point != nullptr) {
            ZUVOsapiFault_arm(point, count, 0);
        }
        EXPECT_EQ(make(clock), nullptr) << line.text;
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(
            log.isExactly({line, {&ZUV_LOG_INIT_FAILURE_s, "!initialize service event thread"}}));
        for (const auto &logged : log.lines()) {
            EXPECT_EQ(logged.level, ZUV_LOG_BIT_EXCEPTION);
            EXPECT_EQ(logged.submodule, 0x1000u);
        }
        EXPECT_TRUE(heap.isBalanced());
        EXPECT_EQ(countThreads(), threads);
    }
};

TEST_F(EventThreadFailure, aMissingClockIsOneThatCouldNotBeMade)
{
    expectFailure(nullptr, 0, {&ZUV_LOG_CREATION_FAILURE_s, "!create clock"}, nullptr);
}

TEST_F(EventThreadFailure, eachStepOfTheMakingHasItsReport)
{
    ZUVClock *clock = ZUVClock_getMonotonic();
    expectFailure(ZUV_OSAPI_FAULT_POINT_HEAP, 2,
                  {&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                   "!allocate string of 8 characters: out of memory"},
                  clock);
    expectFailure("timer.new", 1, {&ZUV_LOG_CREATION_FAILURE_s, "!create timer"}, clock);
    expectFailure("semaphore.new", 1,
                  {&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "!create binary semaphore"}, clock);
    expectFailure("thread.create", 1, {&ZUV_LOG_CREATION_FAILURE_s, "!create event generator"},
                  clock);
}

TEST_F(EventThreadFailure, withoutARecordNothingElseIsTried)
{
    const ServiceLog on(false);
    const LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(make(ZUVClock_getMonotonic()), nullptr);
    const std::string text = "!allocate object of " +
                             std::to_string(sizeof(BRELServiceEventThread)) +
                             " bytes: out of memory";
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d, text}}));
}

TEST_F(EventThreadFailure, withoutAWorkerTheThreadGoesOn)
{
    MAVOExclusiveArea *area = BRELConcurrency_createExclusiveArea(concurrency_, 20, "connection");
    const LogCapture log;
    ZUVOsapiFault_arm("thread.store", 1, 0);
    ASSERT_EQ(initialize(ZUVClock_getMonotonic()), 1);
    Latch done(1);
    const Action action([&](const auto &, const auto &) {
        EXPECT_EQ(BRELConcurrency_enterExclusiveArea(concurrency_, area), 0);
        done.arrive();
    });
    BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr);
    EXPECT_TRUE(done.wait());
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_ASSERT_FAILURE_s, "!set worker of the thread"},
         {&ZUV_LOG_FAILURE_TEMPLATE,
          "!enter exclusive area 'connection' of level 20: worker '(no worker)' may enter none"}}));
    BRELConcurrency_deleteExclusiveArea(concurrency_, area);
}

TEST_F(EventThreadFailure, aFailedPostLosesOnlyItsEvent)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    Latch done(1);
    const Action action([&](const auto &, const auto &) { done.arrive(); });
    {
        const ServiceLog on(false);
        const LogCapture log;
        clock_.isBroken = true; // the thread has nothing to ask it for
        EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr), 0);
        clock_.isBroken = false;
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
        EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr), 0);
        EXPECT_TRUE(log.isExactly(
            {{&ZUV_LOG_ANY_FAILURE_s, "!getTime"}, {&ZUV_LOG_ADD_FAILURE_s, "!add event"}}));
    }
    EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr), 1);
    EXPECT_TRUE(done.wait());
}

TEST_F(EventThreadFailure, aRefusedShutdownLeavesTheThreadRunning)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    {
        const ServiceLog on(false);
        const LogCapture log;
        ZUVOsapiFault_arm("event_generator.shutdown", 1, 0);
        EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 0);
        EXPECT_TRUE(
            log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE, "!shutdown active event generator"}}));
    }
    EXPECT_EQ(self_._init, 29508);
    Latch done(1);
    const Action action([&](const auto &, const auto &) { done.arrive(); });
    EXPECT_EQ(BRELServiceEventThread_postImmediateEvent(&self_, &action.base, nullptr), 1);
    EXPECT_TRUE(done.wait());
}

TEST_F(EventThreadFailure, aFailedWaitMayBeRepeatedHoweverFarTheThreadHasCome)
{
    for (const int millisecondsLater : {0, 20}) {
        ASSERT_EQ(initialize(&clock_.base), 1);
        const ServiceLog on(false);
        const LogCapture log;
        ZUVOsapiFault_arm("semaphore.take", 2, 0); // the first one clears the semaphore
        EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 0);
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILED_TO_LOCK_TEMPLATE, "!lock binary semaphore"}}));
        EXPECT_EQ(self_._init, 29508);
        EXPECT_NE(self_._generator, nullptr);
        // The thread ends meanwhile, and gives the semaphore once and for all.
        std::this_thread::sleep_for(std::chrono::milliseconds(millisecondsLater));
        EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
        EXPECT_EQ(self_._generator, nullptr);
    }
}

TEST_F(EventThreadFailure, aFailedGiveIsReported)
{
    ASSERT_EQ(initialize(&clock_.base), 1);
    const ServiceLog on(false);
    const LogCapture log;
    ZUVOsapiFault_arm("semaphore.give", 1, 0);
    EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_SEMAPHORE_GIVE_FAILURE, "!give semaphore"}}));
}

TEST_F(EventThreadFailure, aRecordThatCannotBeFinalizedIsNotReleased)
{
    BRELServiceEventThread *made = make(&clock_.base);
    ASSERT_NE(made, nullptr);
    const LogCapture log;
    ZUVOsapiFault_arm("event_generator.shutdown", 1, 0);
    EXPECT_EQ(BRELServiceEventThread_delete(made), 0);
    EXPECT_EQ(made->_init, 29508);
    EXPECT_EQ(BRELServiceEventThread_delete(made), 1);
}

TEST_F(EventThreadFailure, aMiddlewareWithoutAWorkerFactoryIsReported)
{
    ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    DDS_DomainParticipantFactory_get_instance();
    expectFailure("dds.get_worker_factory", 1, {&ZUV_LOG_GET_FAILURE_s, "!get worker factory"},
                  ZUVClock_getMonotonic());
    SetUpTestSuite();
}

TEST_F(EventThreadFailure, everyStepMayFail)
{
    const ServiceLog on;
    zuv_test::sweepFaults([this] {
        BRELServiceEventThread *made = make(ZUVClock_getMonotonic());
        if (made == nullptr) {
            return false;
        }
        const ZUVNtpTime never = ZUV_NTP_TIME_INFINITE;
        const Action action([](const auto &, const auto &) {});
        const bool isPosted =
            BRELServiceEventThread_postEvent(made, &never, &action.base, nullptr) != 0;
        const bool isDeleted = BRELServiceEventThread_delete(made) != 0;
        if (!isDeleted) {
            ZUVOsapiFault_disarm();
            EXPECT_EQ(BRELServiceEventThread_delete(made), 1);
        }
        return isPosted && isDeleted;
    });
}

// Eight threads, each with an event thread of its own for a while, post to it and to one that all share; the events
// enter and leave areas.
TEST_F(EventThread, eightThreadsPostEnterLeaveAndFinalize)
{
    constexpr int kThreads = 8;
    constexpr int kLives = 5;
    constexpr int kPosts = 50;
    ASSERT_EQ(initialize(ZUVClock_getMonotonic()), 1);
    MAVOExclusiveArea *outer = BRELConcurrency_createExclusiveArea(concurrency_, 10, "outer");
    MAVOExclusiveArea *inner = BRELConcurrency_createExclusiveArea(concurrency_, 20, "inner");
    long guarded = 0; // by the inner area
    Latch done(kThreads * kLives * kPosts);
    const Action action([&](const auto &, const auto &) {
        EXPECT_EQ(BRELConcurrency_enterExclusiveArea(concurrency_, outer), 1);
        BRELExclusiveAreaGuard guard = {};
        EXPECT_EQ(BRELExclusiveAreaGuard_enter(&guard, inner, concurrency_), 1);
        ++guarded;
        EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, concurrency_), 1);
        EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(concurrency_, outer), 1);
        done.arrive();
    });
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(number);
            EXPECT_NE(BRELConcurrency_createWorker(concurrency_, "poster"), nullptr);
            for (int life = 0; life < kLives; ++life) {
                BRELServiceEventThread *own =
                    BRELServiceEventThread_new(concurrency_, ZUVClock_getMonotonic(), 0, "own");
                ASSERT_NE(own, nullptr);
                for (int post = 0; post < kPosts; ++post) {
                    const ZUVNtpTime soon = {0, static_cast<uint32_t>(random()) / 512};
                    const ZUVNtpTime late = {60, 0};
                    EXPECT_EQ(
                        BRELServiceEventThread_postEvent(&self_, &soon, &action.base, nullptr), 1);
                    EXPECT_EQ(BRELServiceEventThread_postEvent(own, &late, &action.base, nullptr),
                              1);
                    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(concurrency_, inner), 1);
                    ++guarded;
                    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(concurrency_, inner), 1);
                }
                EXPECT_EQ(BRELServiceEventThread_delete(own), 1);
            }
            BRELConcurrency_deleteWorker(concurrency_);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_TRUE(done.wait());
    EXPECT_EQ(BRELServiceEventThread_finalize(&self_), 1);
    EXPECT_EQ(guarded, 2L * kThreads * kLives * kPosts);
    BRELConcurrency_deleteExclusiveArea(concurrency_, inner);
    BRELConcurrency_deleteExclusiveArea(concurrency_, outer);
}

} // namespace
