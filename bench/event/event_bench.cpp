// What the event thread costs. First, how long an immediate event from another thread takes until it runs, beside a
// bare hand-over with a condition variable, both in turns. Second, how the cost of a post grows with the number of
// events that wait, beside the logarithm of that number; and what post and run cost beside a balanced tree, which
// neither compares nor hands over to a thread. Both in processor time of the thread that does it, so that other
// programs do not count. The events are checked to run in order.
// event_bench [ROUNDS]; fails when a ratio is above its limit.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <cmath>
#include <condition_variable>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <map>
#include <mutex>
#include <random>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include <malloc.h>
#include <sched.h>

#include "common/ServiceEventThread.h"
#include "support/Ratio.h"

namespace
{

using bench::giveUp;
using bench::median;
using bench::printRatio;
using Clock = std::chrono::steady_clock;

constexpr double kHandOverLimit = 1.5;
constexpr double kTreeLimit = 1.0;
constexpr int64_t kFarAway = 1'000'000'000; // seconds

// An event thread with a concurrency of its own.
class EventThread
{
public:
    EventThread(ZUVClock *clock, int bytesToCompare)
        : concurrency_(BRELConcurrency_new()),
          self_(BRELServiceEventThread_new(concurrency_, clock, bytesToCompare, "bench"))
    {
        if (self_ == nullptr) {
            giveUp("no event thread");
        }
    }
    ~EventThread()
    {
        BRELServiceEventThread_delete(self_);
        BRELConcurrency_delete(concurrency_);
    }
    EventThread(const EventThread &) = delete;
    EventThread &operator=(const EventThread &) = delete;

    void post(const ZUVNtpTime &delay, const ZUVEventGeneratorListener &listener, uintptr_t number)
    {
        ZUVEventGeneratorListenerStorage storage = {};
        storage.field[0] = reinterpret_cast<void *>(number);
        if (BRELServiceEventThread_postEvent(self_, &delay, &listener, &storage) == 0) {
            giveUp("an event is lost");
        }
    }

    void postImmediate(const ZUVEventGeneratorListener &listener)
    {
        if (BRELServiceEventThread_postImmediateEvent(self_, &listener, nullptr) == 0) {
            giveUp("an event is lost");
        }
    }

private:
    BRELConcurrency *concurrency_;
    BRELServiceEventThread *self_;
};

// When the other side ran, and that it did.
struct Arrival {
    Clock::time_point time;
    std::binary_semaphore done{0};

    void arrive()
    {
        time = Clock::now();
        done.release();
    }
};

// A thread that sleeps on a condition variable until it is told to run.
class BareThread
{
public:
    explicit BareThread(Arrival &arrival) : thread_([this, &arrival] { run(arrival); }) {}
    ~BareThread()
    {
        set(isEnding_);
        thread_.join();
    }

    void handOver() { set(mustRun_); }

private:
    void set(bool &flag)
    {
        {
            const std::lock_guard lock(mutex_);
            flag = true;
        }
        changed_.notify_one();
    }

    void run(Arrival &arrival)
    {
        std::unique_lock lock(mutex_);
        for (;;) {
            changed_.wait(lock, [this] { return mustRun_ || isEnding_; });
            if (isEnding_) {
                return;
            }
            mustRun_ = false;
            lock.unlock();
            arrival.arrive();
            lock.lock();
        }
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    bool mustRun_ = false;
    bool isEnding_ = false;
    std::thread thread_; // last: it uses the others
};

// An event that tells of its run.
struct ArrivalEvent {
    ZUVEventGeneratorListener base = {&ArrivalEvent::onEvent};
    Arrival *arrival;

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *,
                       const ZUVNtpTime *, const ZUVNtpTime *, ZUVEventGeneratorListenerStorage *,
                       MAVOWorker *)
    {
        reinterpret_cast<const ArrivalEvent *>(self)->arrival->arrive();
        return 0;
    }
};

// Microseconds from the call to the run on the other thread, which is given the time to fall asleep before.
template <typename HandOver>
double timeHandOver(Arrival &arrival, HandOver handOver)
{
    std::this_thread::sleep_for(std::chrono::microseconds(100));
    const auto start = Clock::now();
    handOver();
    arrival.done.acquire();
    return std::chrono::duration<double, std::micro>(arrival.time - start).count();
}

// Keep the calling thread, and those that it starts from now on, on one of the processors that it may use, counted
// from the first one on and round again.
void moveTo(const cpu_set_t &permitted, int number)
{
    int left = number % CPU_COUNT(&permitted);
    for (int processor = 0; processor < CPU_SETSIZE; ++processor) {
        if (CPU_ISSET(processor, &permitted) && left-- == 0) {
            cpu_set_t one;
            CPU_ZERO(&one);
            CPU_SET(processor, &one);
            sched_setaffinity(0, sizeof(one), &one);
        }
    }
}

// Both threads sit on one processor and the caller on another: where a thread is woken decides more about the time than
// anything else.
bool compareHandOver(int rounds)
{
    cpu_set_t permitted;
    sched_getaffinity(0, sizeof(permitted), &permitted);
    moveTo(permitted, 1);
    Arrival arrival;
    BareThread bare(arrival);
    EventThread events(ZUVClock_getMonotonic(), 0);
    moveTo(permitted, 0);
    ArrivalEvent event;
    event.arrival = &arrival;
    std::vector<double> bareTimes;
    std::vector<double> eventTimes;
    for (int round = 0; round < rounds; ++round) {
        bareTimes.push_back(timeHandOver(arrival, [&] { bare.handOver(); }));
        eventTimes.push_back(timeHandOver(arrival, [&] { events.postImmediate(event.base); }));
    }
    sched_setaffinity(0, sizeof(permitted), &permitted);
    return printRatio("immediate event / condition variable", "us", median(eventTimes),
                      median(bareTimes), kHandOverLimit);
}

// A clock that stands at one time until it is set to another.
struct StandingClock {
    ZUVClock base = {&StandingClock::getTime};
    std::atomic<int64_t> sec = 0;

    static int getTime(ZUVClock *self, ZUVNtpTime *now)
    {
        *now = {reinterpret_cast<StandingClock *>(self)->sec, 0};
        return 1;
    }
};

// Nanoseconds that the calling thread has been running for.
double processorTime()
{
    timespec time;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e9 + static_cast<double>(time.tv_nsec);
}

// Takes the processor time on the thread of the events.
struct TimeEvent {
    ZUVEventGeneratorListener base = {&TimeEvent::onEvent};
    mutable double time = 0;
    mutable std::binary_semaphore done{0};

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *,
                       const ZUVNtpTime *, const ZUVNtpTime *, ZUVEventGeneratorListenerStorage *,
                       MAVOWorker *)
    {
        const auto *event = reinterpret_cast<const TimeEvent *>(self);
        event->time = processorTime();
        event->done.release();
        return 0;
    }
};

// Counts the runs and looks at their order.
struct Witness {
    ZUVEventGeneratorListener base = {&Witness::onEvent};
    mutable ZUVNtpTime last = {INT64_MIN, 0};
    mutable size_t count = 0;
    mutable bool isInOrder = true;

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *,
                       const ZUVNtpTime *time, const ZUVNtpTime *,
                       ZUVEventGeneratorListenerStorage *, MAVOWorker *)
    {
        const auto *witness = reinterpret_cast<const Witness *>(self);
        witness->isInOrder = witness->isInOrder && ZUVNtpTime_compare(&witness->last, time) <= 0;
        witness->last = *time;
        ++witness->count;
        return 0;
    }
};

// The least cost of an event, in nanoseconds, over several measurements.
struct Cost {
    double post = HUGE_VAL;
    double run = HUGE_VAL;
};

// A number of events that wait at the same time.
class Crowd
{
public:
    Crowd(size_t count, int bytesToCompare)
        : random_(count), delays_(count), bytesToCompare_(bytesToCompare)
    {
    }

    size_t size() const { return delays_.size(); }
    const Cost &cost() const { return cost_; }

    // Post them at random times to a new event thread, and let them run.
    void measure()
    {
        for (ZUVNtpTime &delay : delays_) {
            delay = {1 + static_cast<int64_t>(random_() % kFarAway),
                     static_cast<uint32_t>(random_())};
        }
        StandingClock clock;
        Witness witness;
        TimeEvent first;
        TimeEvent last;
        EventThread events(&clock.base, bytesToCompare_);
        const double start = processorTime();
        for (size_t number = 0; number < size(); ++number) {
            events.post(delays_[number], witness.base, number);
        }
        const double posted = processorTime();
        events.post({2 * kFarAway, 0}, last.base, 0);
        clock.sec = 3 * kFarAway;
        events.post({-4 * kFarAway, 0}, first.base, 0); // wakes the thread
        last.done.acquire();
        if (witness.count != size() || !witness.isInOrder) {
            giveUp("the events did not run once each in the order of their times");
        }
        const auto count = static_cast<double>(size());
        cost_.post = std::min(cost_.post, (posted - start) / count);
        cost_.run = std::min(cost_.run, (last.time - first.time) / count);
    }

private:
    std::mt19937_64 random_;
    std::vector<ZUVNtpTime> delays_;
    int bytesToCompare_;
    Cost cost_;
};

// The same events in the order of a balanced tree, which is known to grow with the logarithm.
Cost measureTree(size_t count)
{
    struct Payload {
        const ZUVEventGeneratorListener *listener;
        ZUVNtpTime snoozeTime;
        ZUVEventGeneratorListenerStorage storage;
    };
    const auto isBefore = [](const ZUVNtpTime &left, const ZUVNtpTime &right) {
        return ZUVNtpTime_compare(&left, &right) < 0;
    };
    std::mt19937_64 random(count);
    std::mutex mutex;
    std::multimap<ZUVNtpTime, Payload, decltype(isBefore)> tree(isBefore);
    const double start = processorTime();
    for (size_t number = 0; number < count; ++number) {
        const ZUVNtpTime time = {static_cast<int64_t>(random() % kFarAway),
                                 static_cast<uint32_t>(random())};
        const std::lock_guard lock(mutex);
        tree.emplace(time, Payload{});
    }
    const double posted = processorTime();
    while (!tree.empty()) {
        const std::lock_guard lock(mutex);
        tree.erase(tree.begin());
    }
    const auto divisor = static_cast<double>(count);
    return {(posted - start) / divisor, (processorTime() - posted) / divisor};
}

bool compareGrowth(const char *kind, int bytesToCompare, int rounds)
{
    Crowd few(1000, bytesToCompare);
    Crowd many(10'000, bytesToCompare);
    Crowd most(100'000, bytesToCompare);
    Cost tree;
    // In turns, so that all meet the same machine.
    for (int round = 0; round < rounds; ++round) {
        for (Crowd *crowd : {&few, &many, &most}) {
            crowd->measure();
        }
        const Cost again = measureTree(most.size());
        tree = {std::min(tree.post, again.post), std::min(tree.run, again.run)};
    }
    bool isGood = true;
    for (const Crowd *crowd : {&many, &most}) {
        const double limit = std::log2(static_cast<double>(crowd->size())) /
                             std::log2(static_cast<double>(few.size()));
        const std::string what =
            std::string(kind) + ", post " + std::to_string(crowd->size()) + " / 1000";
        isGood = printRatio(what, "ns", crowd->cost().post, few.cost().post, limit) && isGood;
    }
    const double ours = most.cost().post + most.cost().run;
    return printRatio(std::string(kind) + ", post and run 100000 / tree", "ns", ours,
                      tree.post + tree.run, kTreeLimit) &&
           isGood;
}

} // namespace

int main(int argc, char **argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 21;
    // Memory stays with the process once it has been used: what the system takes for new pages is not measured.
    mallopt(M_MMAP_MAX, 0);
    mallopt(M_TRIM_THRESHOLD, INT_MAX);
    const bool isFast = compareHandOver(100 * rounds);
    const bool isPlainGood = compareGrowth("events", 0, rounds);
    const bool isComparedGood = compareGrowth("compared events", sizeof(void *), rounds);
    return isFast && isPlainGood && isComparedGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
