#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <pthread.h>

#include <gtest/gtest.h>

#include "platform/event/ActiveGenerator.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::LogCapture;

// A clock that stands until it is set, or follows another; tests can wait until it was read.
struct TestClock {
    ZUVClock base = {&TestClock::getTime};
    ZUVClock *followed = nullptr;
    std::mutex mutex;
    std::condition_variable wasRead;
    ZUVNtpTime time = {1000, 0};
    bool isBroken = false;
    bool isRead = false;

    static int getTime(ZUVClock *self, ZUVNtpTime *now)
    {
        auto *clock = reinterpret_cast<TestClock *>(self);
        const std::lock_guard lock(clock->mutex);
        clock->isRead = true;
        clock->wasRead.notify_all();
        if (clock->followed != nullptr) {
            return clock->followed->getTime(clock->followed, now);
        }
        *now = clock->time;
        return clock->isBroken ? 0 : 1;
    }

    void set(int64_t sec)
    {
        const std::lock_guard lock(mutex);
        time = {sec, 0};
    }

    void setBroken(bool broken)
    {
        const std::lock_guard lock(mutex);
        isBroken = broken;
    }

    void forgetReading()
    {
        const std::lock_guard lock(mutex);
        isRead = false;
    }

    bool waitForReading()
    {
        std::unique_lock lock(mutex);
        return wasRead.wait_for(lock, std::chrono::seconds(20), [&] { return isRead; });
    }
};

// What ran, in order; and a place to wait for it.
class Journal
{
public:
    void add(int64_t entry)
    {
        const std::lock_guard lock(mutex_);
        entries_.push_back(entry);
        changed_.notify_all();
    }

    std::vector<int64_t> waitFor(size_t count)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::seconds(20), [&] { return entries_.size() >= count; });
        return entries_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<int64_t> entries_;
};

using Entries = std::vector<int64_t>;

// A listener that does what a function says.
struct Action {
    using Function = std::function<int(ZUVNtpTime *nextTime, const ZUVNtpTime *now,
                                       const ZUVNtpTime *time, const ZUVNtpTime *snoozeTime,
                                       ZUVEventGeneratorListenerStorage *, MAVOWorker *)>;

    explicit Action(Function wanted) : function(std::move(wanted)) {}

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *nextTime,
                       const ZUVNtpTime *now, const ZUVNtpTime *time, const ZUVNtpTime *snoozeTime,
                       ZUVEventGeneratorListenerStorage *storage, MAVOWorker *worker)
    {
        const auto *action = reinterpret_cast<const Action *>(self);
        return action->function(nextTime, now, time, snoozeTime, storage, worker);
    }

    ZUVEventGeneratorListener base = {&Action::onEvent};
    Function function;
};

class Generator : public testing::Test
{
protected:
    Generator() : Generator(nullptr) {}

    explicit Generator(ZUVClock *followed)
        : factory_(MAVOWorkerFactory_new(2)), timer_(ZUVEventSmartTimer_new()),
          noting_([this](ZUVNtpTime *, const ZUVNtpTime *, const ZUVNtpTime *, const ZUVNtpTime *,
                         ZUVEventGeneratorListenerStorage *storage, MAVOWorker *) {
              clock_.forgetReading();
              journal_.add(static_cast<int64_t>(reinterpret_cast<intptr_t>(storage->field[0])));
              return 0;
          })
    {
        clock_.followed = followed;
        generator_ = start({});
    }

    ~Generator() override
    {
        ZUVOsapiFault_disarm();
        if (generator_ != nullptr) {
            EXPECT_EQ(ZUVEventActiveGenerator_delete(generator_, nullptr), 1);
        }
        ZUVEventSmartTimer_delete(timer_);
        MAVOWorkerFactory_delete(factory_);
    }

    ZUVEventActiveGenerator *start(const ZUVEventActiveGeneratorListener &listener)
    {
        return ZUVEventActiveGenerator_new("events", factory_, &clock_.base, timer_, &listener,
                                           nullptr, nullptr, nullptr, nullptr);
    }

    // Replace the generator by one with this listener.
    void restart(const ZUVEventActiveGeneratorListener &listener)
    {
        ZUVEventActiveGenerator_delete(generator_, nullptr);
        generator_ = start(listener);
    }

    bool post(int64_t sec, const Action &action, intptr_t number = 0, int bytesToCompare = 0)
    {
        ZUVEventGeneratorListenerStorage storage = {};
        storage.field[0] = reinterpret_cast<void *>(number);
        const ZUVNtpTime time = {sec, 0};
        return ZUVEventActiveGenerator_postEvent(generator_, &time, &time, &action.base, &storage,
                                                 bytesToCompare, 0) != 0;
    }

    bool note(int64_t sec, intptr_t number, int bytesToCompare = 0)
    {
        return post(sec, noting_, number, bytesToCompare);
    }

    // Until the generator has compared the clock with what is left, and so sleeps by what the clock says now: behind the
    // noted event that ran last, or the post of the only one.
    void letFallAsleep() { ASSERT_TRUE(clock_.waitForReading()); }

    TestClock clock_;
    MAVOWorkerFactory *factory_;
    ZUVEventTimer *timer_;
    Journal journal_;
    Action noting_;
    ZUVEventActiveGenerator *generator_;
};

TEST_F(Generator, runsWhatIsDueInTheOrderOfTime)
{
    // Whatever is posted while an event runs is there when it is over.
    const Action poster([this](auto...) {
        note(1000, 5);
        note(30, 3);
        note(-7, 1);
        note(999, 4);
        note(1000, 6);
        note(20, 2);
        return 0;
    });
    post(1000, poster);
    EXPECT_EQ(journal_.waitFor(6), (Entries{1, 2, 3, 4, 5, 6}));
}

TEST_F(Generator, anEventWaitsForItsTime)
{
    note(1001, 2);
    note(1000, 1);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
    letFallAsleep();
    clock_.set(1001);
    note(1000, 3); // lets the thread look at the clock
    EXPECT_EQ(journal_.waitFor(3), (Entries{1, 3, 2}));
}

TEST_F(Generator, aJumpOfTheClockIsNoticedWithAnEarlierEvent)
{
    note(5000, 1);
    letFallAsleep();
    note(6000, 2);
    clock_.set(5500);
    note(4000, 0);
    EXPECT_EQ(journal_.waitFor(2), (Entries{0, 1}));
}

TEST_F(Generator, anInfiniteTimeIsNeverReached)
{
    note(0xFFFFFFFF, 1);
    note(0x1FFFFFFFF, 2);
    clock_.set(0x2FFFFFFFF);
    note(0xFFFFFFFE, 3);
    EXPECT_EQ(journal_.waitFor(1), (Entries{3}));
    note(0xFFFFFFFE, 4); // behind the others, had they been due
    EXPECT_EQ(journal_.waitFor(2), (Entries{3, 4}));
}

TEST_F(Generator, theCallbackIsToldAllItsTimes)
{
    const ZUVNtpTime time = {990, 5};
    const ZUVNtpTime snooze = {-3, 7};
    const Action action([&](ZUVNtpTime *next, const ZUVNtpTime *now, const ZUVNtpTime *due,
                            const ZUVNtpTime *snoozeTime, auto *, MAVOWorker *worker) {
        EXPECT_EQ(ZUVNtpTime_compare(next, &time), 0);
        EXPECT_EQ(now->sec, 1000);
        EXPECT_EQ(ZUVNtpTime_compare(due, &time), 0);
        EXPECT_EQ(ZUVNtpTime_compare(snoozeTime, &snooze), 0);
        EXPECT_STREQ(worker->_name, "events");
        journal_.add(1);
        return 0;
    });
    ZUVEventActiveGenerator_postEvent(generator_, &time, &snooze, &action.base, nullptr, 0, 0);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
}

TEST_F(Generator, noStorageIsOneOfZeros)
{
    const Action action(
        [&](auto, auto, auto, auto, ZUVEventGeneratorListenerStorage *storage, auto) {
            for (void *field : storage->field) {
                EXPECT_EQ(field, nullptr);
            }
            journal_.add(1);
            return 0;
        });
    const ZUVNtpTime time = {1, 0};
    ZUVEventActiveGenerator_postEvent(generator_, &time, &time, &action.base, nullptr, 0, 0);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
}

TEST_F(Generator, anEventMayAskToRunAgain)
{
    const Action counting([&](ZUVNtpTime *nextTime, auto, const ZUVNtpTime *time, auto,
                              ZUVEventGeneratorListenerStorage *storage, auto) {
        const auto number = reinterpret_cast<intptr_t>(storage->field[0]);
        journal_.add(time->sec * 10 + number);
        storage->field[0] = reinterpret_cast<void *>(number + 1);
        nextTime->sec += 5;
        return number < 3 ? 1 : 0;
    });
    post(100, counting);
    EXPECT_EQ(journal_.waitFor(4), (Entries{1000, 1051, 1102, 1153}));
}

TEST_F(Generator, equalEventsThatWaitRunOnce)
{
    const Action poster([this](auto...) {
        note(900, 7, sizeof(void *));
        note(950, 8, sizeof(void *));
        note(800, 8, sizeof(void *));
        note(700, 8, 1000); // as many bytes as there are
        note(990, 7, -1);   // none
        note(991, 7, 0);
        return 0;
    });
    post(1000, poster);
    EXPECT_EQ(journal_.waitFor(5), (Entries{8, 8, 7, 7, 7}));
}

TEST_F(Generator, anEventMayPostAndShutDownItsOwnGenerator)
{
    const Action last([this](auto...) {
        note(1, 1);
        EXPECT_EQ(ZUVEventActiveGenerator_shutdown(generator_, nullptr), 1);
        const LogCapture log;
        EXPECT_EQ(ZUVEventActiveGenerator_delete(generator_, nullptr), 0);
        EXPECT_TRUE(log.isExactly(
            {{&ZUV_LOG_DESTRUCTION_FAILURE_s, "!delete event generator on its own thread"}}));
        journal_.add(9);
        return 1;
    });
    post(2, last);
    EXPECT_EQ(journal_.waitFor(1), (Entries{9}));
    EXPECT_EQ(ZUVEventActiveGenerator_delete(std::exchange(generator_, nullptr), nullptr), 1);
    EXPECT_EQ(journal_.waitFor(1), (Entries{9}));
}

TEST_F(Generator, aStoppedOneTakesNoMoreEvents)
{
    EXPECT_EQ(ZUVEventActiveGenerator_isRunning(generator_), 1);
    EXPECT_EQ(ZUVEventActiveGenerator_shutdown(generator_, nullptr), 1);
    EXPECT_EQ(ZUVEventActiveGenerator_shutdown(generator_, nullptr), 1);
    const LogCapture log;
    EXPECT_FALSE(note(1, 1));
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_ADD_FAILURE_s, "!add event: the generator is shut down"}}));
}

TEST_F(Generator, tellsTheStartAndTheEndOfItsThread)
{
    struct Told {
        std::vector<std::string> calls;
        pthread_t thread = {};
        ZUVEventActiveGenerator *generator = nullptr;
    } told;
    ZUVEventActiveGeneratorListener listener = {};
    listener.onStarted = [](void *param, MAVOWorker *worker) {
        auto *self = static_cast<Told *>(param);
        self->calls.push_back(std::string("started ") + worker->_name);
        self->thread = pthread_self();
    };
    listener.onStartedParam = &told;
    listener.parent.onStopped = [](void *param, MAVOWorker *worker) {
        auto *self = static_cast<Told *>(param);
        EXPECT_TRUE(pthread_equal(self->thread, pthread_self()));
        EXPECT_EQ(ZUVEventActiveGenerator_isRunning(self->generator), 0);
        self->calls.push_back(std::string("stopped ") + worker->_name);
    };
    listener.parent.onStoppedParam = &told;
    restart(listener);
    listener = {}; // it was copied
    told.generator = generator_;
    note(1, 1);
    journal_.waitFor(1);
    EXPECT_EQ(ZUVEventActiveGenerator_delete(std::exchange(generator_, nullptr), nullptr), 1);
    EXPECT_EQ(told.calls, (std::vector<std::string>{"started events", "stopped events"}));
    EXPECT_FALSE(pthread_equal(told.thread, pthread_self()));
}

TEST_F(Generator, aClockThatFailsIsAskedAgain)
{
    const LogCapture log;
    clock_.setBroken(true);
    note(1, 1);
    while (log.lines().empty()) {
        std::this_thread::yield();
    }
    clock_.setBroken(false);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
    EXPECT_TRUE(log.holds({{&ZUV_LOG_GET_FAILURE_s, "!get time of the event generator's clock"}}));
}

TEST_F(Generator, aPostWithoutMemoryLosesOnlyThatEvent)
{
    const LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_FALSE(note(1, 1));
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ADD_FAILURE_s, "!add event: out of memory"}}));
    EXPECT_TRUE(note(1, 2));
    EXPECT_EQ(journal_.waitFor(1), (Entries{2}));
}

TEST_F(Generator, aShutdownThatFailsChangesNothing)
{
    const LogCapture log;
    ZUVOsapiFault_arm("event_generator.shutdown", 1, 0);
    EXPECT_EQ(ZUVEventActiveGenerator_shutdown(generator_, nullptr), 0);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!shut down event generator"}}));
    EXPECT_TRUE(note(1, 1));
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
}

TEST_F(Generator, missingArgumentsAreReported)
{
    const LogCapture log;
    const ZUVEventActiveGeneratorListener listener = {};
    const auto make = [&](const char *name, MAVOWorkerFactory *factory, ZUVClock *clock,
                          ZUVEventTimer *timer, const ZUVEventActiveGeneratorListener *told,
                          const void *reserved) {
        return ZUVEventActiveGenerator_new(name, factory, clock, timer, told, reserved, nullptr,
                                           nullptr, nullptr);
    };
    EXPECT_EQ(make(nullptr, factory_, &clock_.base, timer_, &listener, nullptr), nullptr);
    EXPECT_EQ(make("x", nullptr, &clock_.base, timer_, &listener, nullptr), nullptr);
    EXPECT_EQ(make("x", factory_, nullptr, timer_, &listener, nullptr), nullptr);
    EXPECT_EQ(make("x", factory_, &clock_.base, nullptr, &listener, nullptr), nullptr);
    EXPECT_EQ(make("x", factory_, &clock_.base, timer_, nullptr, nullptr), nullptr);
    EXPECT_EQ(make("x", factory_, &clock_.base, timer_, &listener, "reserved"), nullptr);
    const ZUVNtpTime time = {};
    const auto *base = &noting_.base;
    EXPECT_EQ(ZUVEventActiveGenerator_postEvent(nullptr, &time, &time, base, nullptr, 0, 0), 0);
    EXPECT_EQ(ZUVEventActiveGenerator_postEvent(generator_, nullptr, &time, base, nullptr, 0, 0),
              0);
    EXPECT_EQ(ZUVEventActiveGenerator_postEvent(generator_, &time, nullptr, base, nullptr, 0, 0),
              0);
    EXPECT_EQ(ZUVEventActiveGenerator_postEvent(generator_, &time, &time, nullptr, nullptr, 0, 0),
              0);
    EXPECT_EQ(ZUVEventActiveGenerator_postEvent(generator_, &time, &time, base, nullptr, 0, 1), 0);
    EXPECT_EQ(ZUVEventActiveGenerator_shutdown(nullptr, nullptr), 0);
    EXPECT_EQ(ZUVEventActiveGenerator_isRunning(nullptr), 0);
    EXPECT_EQ(ZUVEventActiveGenerator_delete(nullptr, nullptr), 0);
    const auto lines = log.lines();
    EXPECT_EQ(lines.size(), 14u);
    for (const auto &line : lines) {
        EXPECT_EQ(line.message, &ZUV_LOG_PRECONDITION_FAILURE_s) << line.text;
    }
}

TEST(GeneratorFaults, eachRefusalIsReported)
{
    MAVOWorkerFactory *factory = MAVOWorkerFactory_new(0);
    ZUVEventTimer *timer = ZUVEventSmartTimer_new();
    const auto start = [&] {
        const ZUVEventActiveGeneratorListener listener = {};
        return ZUVEventActiveGenerator_new("events", factory, ZUVClock_getMonotonic(), timer,
                                           &listener, nullptr, nullptr, nullptr, nullptr);
    };
    {
        const LogCapture log;
        ZUVOsapiFault_arm("thread.create", 1, 0);
        EXPECT_EQ(start(), nullptr);
        EXPECT_TRUE(log.isExactly(
            {{&ZUV_LOG_CREATION_FAILURE_s, "!create thread of the event generator"}}));
    }
    for (const char *point : {"timer.new", ZUV_OSAPI_FAULT_POINT_HEAP}) {
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(ZUVEventSmartTimer_new(), nullptr);
    }
    ZUVEventSmartTimer_delete(nullptr);
    zuv_test::sweepFaults([&] {
        ZUVEventActiveGenerator *generator = start();
        return generator != nullptr && ZUVEventActiveGenerator_delete(generator, nullptr) != 0;
    });
    ZUVEventSmartTimer_delete(timer);
    MAVOWorkerFactory_delete(factory);
}

class GeneratorInRealTime : public Generator
{
protected:
    GeneratorInRealTime() : Generator(ZUVClock_getMonotonic()) {}

    ZUVNtpTime in(int64_t nanoseconds)
    {
        ZUVNtpTime now;
        ZUVNtpTime span;
        ZUVClock *const clock = ZUVClock_getMonotonic();
        clock->getTime(clock, &now);
        ZUVNtpTime_fromNanoseconds(&span, nanoseconds);
        ZUVNtpTime_add(&now, &now, &span);
        return now;
    }
};

TEST_F(GeneratorInRealTime, anEventRunsAtItsTimeAndNotBefore)
{
    const Action action([&](auto, const ZUVNtpTime *now, const ZUVNtpTime *time, auto, auto, auto) {
        EXPECT_GE(ZUVNtpTime_compare(now, time), 0);
        journal_.add(1);
        return 0;
    });
    const ZUVNtpTime time = in(20'000'000);
    ZUVEventActiveGenerator_postEvent(generator_, &time, &time, &action.base, nullptr, 0, 0);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
    const ZUVNtpTime now = in(0);
    EXPECT_LE(ZUVNtpTime_compare(&time, &now), 0);
}

TEST_F(GeneratorInRealTime, anEarlierEventCutsTheSleepShort)
{
    note(in(3'600'000'000'000).sec, 2);
    letFallAsleep();
    note(in(0).sec, 1);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
}

TEST_F(GeneratorInRealTime, theLastFiniteTimeDoesNotOverflowTheSleep)
{
    note(0xFFFFFFFE, 2);
    letFallAsleep();
    note(0, 1);
    EXPECT_EQ(journal_.waitFor(1), (Entries{1}));
}

// Eight threads post at random near times; every event runs once, on one thread.
TEST_F(GeneratorInRealTime, eightThreadsPostAtOnce)
{
    constexpr int kThreads = 8;
    constexpr int kPosts = 500;
    std::vector<int> runs(kThreads * kPosts);
    const Action action(
        [&](auto, auto, auto, auto, ZUVEventGeneratorListenerStorage *storage, auto) {
            ++runs[reinterpret_cast<uintptr_t>(storage->field[0])];
            journal_.add(1);
            return 0;
        });
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(number);
            for (int index = 0; index < kPosts; ++index) {
                const ZUVNtpTime time = in(static_cast<int64_t>(random() % 20'000'000));
                ZUVEventGeneratorListenerStorage storage = {};
                storage.field[0] =
                    reinterpret_cast<void *>(static_cast<uintptr_t>(number * kPosts + index));
                EXPECT_EQ(ZUVEventActiveGenerator_postEvent(generator_, &time, &time, &action.base,
                                                            &storage, 0, 0),
                          1);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(journal_.waitFor(runs.size()).size(), runs.size());
    EXPECT_EQ(runs, std::vector<int>(runs.size(), 1));
}

TEST_F(GeneratorInRealTime, stopsWhilePostersAndSleepAreUnderWay)
{
    for (int round = 0; round < 50; ++round) {
        const ZUVNtpTime far = in(3'600'000'000'000);
        ZUVEventActiveGenerator_postEvent(generator_, &far, &far, &noting_.base, nullptr, 0, 0);
        const ZUVNtpTime near = in(round * 1000);
        ZUVEventActiveGenerator_postEvent(generator_, &near, &near, &noting_.base, nullptr, 0, 0);
        restart({});
    }
}

} // namespace
