#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <numeric>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/mavo/WorkerPerThread.h"
#include "platform/osapi/Fault.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::LogCapture;

class Worker : public testing::Test
{
protected:
    Worker() : factory_(MAVOWorkerFactory_new(2)) {}
    ~Worker() override
    {
        ZUVOsapiFault_disarm();
        for (MAVOExclusiveArea *area : areas_) {
            MAVOWorkerFactory_destroyExclusiveArea(factory_, area);
        }
        MAVOWorkerFactory_delete(factory_);
    }

    MAVOExclusiveArea *area(int level, const char *name)
    {
        areas_.push_back(MAVOWorkerFactory_createExclusiveAreaEx(factory_, level, name));
        return areas_.back();
    }

    MAVOWorker *worker(const char *name) { return MAVOWorkerFactory_createWorker(factory_, name); }

    static bool enter(MAVOWorker *worker, MAVOExclusiveArea *area)
    {
        return MAVOWorker_enterExclusiveArea(worker, nullptr, area) != 0;
    }

    static bool leave(MAVOWorker *worker, MAVOExclusiveArea *area)
    {
        return MAVOWorker_leaveExclusiveArea(worker, nullptr, area) != 0;
    }

    // On a thread of its own another worker tries to get in, and leaves again. It is waited for at the end.
    void letOtherTry(MAVOExclusiveArea *area)
    {
        isOtherIn_ = false;
        others_.emplace_back([this, area] {
            MAVOWorker *stranger = worker("stranger");
            isOtherIn_ = enter(stranger, area);
            leave(stranger, area);
            MAVOWorkerFactory_destroyWorker(factory_, stranger);
        });
    }

    bool letsOthersIn(MAVOExclusiveArea *area)
    {
        letOtherTry(area);
        joinOthers();
        return isOtherIn_;
    }

    // It gets in when the area is left, before joinOthers() returns.
    bool keepsOthersOut(MAVOExclusiveArea *area)
    {
        letOtherTry(area);
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        return !isOtherIn_;
    }

    void joinOthers()
    {
        for (std::thread &thread : others_) {
            thread.join();
        }
        others_.clear();
    }

    MAVOWorkerFactory *factory_;
    std::vector<MAVOExclusiveArea *> areas_;
    std::vector<std::thread> others_;
    std::atomic<bool> isOtherIn_ = false;
};

TEST_F(Worker, startsInNoArea)
{
    MAVOWorker *self = worker("main");
    EXPECT_STREQ(self->_name, "main");
    EXPECT_EQ(MAVOInlineList_getSize(&self->_inEA), 0);
    EXPECT_EQ(self->_inEaMaxLevelPtr, nullptr);
}

TEST_F(Worker, aLongNameIsCut)
{
    EXPECT_EQ(worker(std::string(100, 'n').c_str())->_name,
              std::string(MAVO_WORKER_NAME_SIZE - 1, 'n'));
}

TEST_F(Worker, anAreaKeepsItsLevelAndName)
{
    MAVOExclusiveArea *session = area(30, "session");
    EXPECT_EQ(MAVOExclusiveArea_getLevel(session), 30);
    EXPECT_STREQ(MAVOExclusiveArea_getName(session), "session");
    EXPECT_EQ(MAVOExclusiveArea_getLevel(area(-7, "below zero")), -7);
}

TEST_F(Worker, entersAreasOfRisingLevels)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    MAVOExclusiveArea *inner = area(20, "inner");
    EXPECT_TRUE(enter(self, outer));
    EXPECT_EQ(self->_inEaMaxLevelPtr, outer);
    EXPECT_TRUE(enter(self, inner));
    EXPECT_EQ(self->_inEaMaxLevelPtr, inner);
    EXPECT_EQ(MAVOInlineList_getSize(&self->_inEA), 2);
    EXPECT_TRUE(leave(self, inner));
    EXPECT_EQ(self->_inEaMaxLevelPtr, outer);
    EXPECT_TRUE(leave(self, outer));
    EXPECT_EQ(self->_inEaMaxLevelPtr, nullptr);
}

TEST_F(Worker, anEntryAgainstTheOrderIsRefusedAndReported)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *connection = area(20, "connection");
    MAVOExclusiveArea *session = area(30, "session");
    MAVOExclusiveArea *other = area(30, "other session");
    ASSERT_TRUE(enter(self, session));
    const LogCapture log;
    EXPECT_FALSE(enter(self, connection));
    EXPECT_FALSE(enter(self, other));
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                                "!enter exclusive area 'connection' of level 20: worker 'main' is "
                                "in 'session' of level 30"},
                               {&ZUV_LOG_FAILURE_TEMPLATE,
                                "!enter exclusive area 'other session' of level 30: worker 'main' "
                                "is in 'session' of level 30"}}));
    EXPECT_EQ(self->_inEaMaxLevelPtr, session);
    EXPECT_EQ(MAVOInlineList_getSize(&self->_inEA), 1);
    EXPECT_TRUE(letsOthersIn(connection));
    EXPECT_TRUE(leave(self, session));
    EXPECT_TRUE(enter(self, connection));
    EXPECT_TRUE(leave(self, connection));
}

TEST_F(Worker, anAreaThatItIsInMayBeEnteredAgainFromAnywhere)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    MAVOExclusiveArea *inner = area(20, "inner");
    ASSERT_TRUE(enter(self, outer));
    ASSERT_TRUE(enter(self, inner));
    EXPECT_TRUE(enter(self, outer));
    EXPECT_TRUE(enter(self, inner));
    EXPECT_EQ(self->_inEaMaxLevelPtr, inner);
    EXPECT_EQ(MAVOInlineList_getSize(&self->_inEA), 2);

    EXPECT_TRUE(leave(self, outer));
    EXPECT_TRUE(keepsOthersOut(outer)); // one entry is left
    EXPECT_TRUE(leave(self, inner));
    EXPECT_TRUE(leave(self, inner));
    EXPECT_TRUE(leave(self, outer));
    joinOthers();
}

TEST_F(Worker, areasMayBeLeftInAnyOrder)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    MAVOExclusiveArea *middle = area(15, "middle");
    MAVOExclusiveArea *inner = area(20, "inner");
    ASSERT_TRUE(enter(self, outer));
    ASSERT_TRUE(enter(self, inner));
    EXPECT_TRUE(leave(self, outer));
    EXPECT_EQ(self->_inEaMaxLevelPtr, inner);
    const LogCapture log;
    EXPECT_FALSE(enter(self, middle)); // the level of the inner one still counts
    EXPECT_TRUE(leave(self, inner));
    EXPECT_TRUE(enter(self, middle));
    EXPECT_TRUE(leave(self, middle));
}

TEST_F(Worker, leavingWhatItIsNotInIsReported)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    MAVOWorker *other = worker("other");
    ASSERT_TRUE(enter(other, outer));
    const LogCapture log;
    EXPECT_FALSE(leave(self, outer));
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                        "!leave exclusive area 'outer' of level 10: worker 'main' is not in it"}}));
    EXPECT_TRUE(keepsOthersOut(outer));
    EXPECT_TRUE(leave(other, outer));
    joinOthers();
}

TEST_F(Worker, keepsOthersOut)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    ASSERT_TRUE(enter(self, outer));
    EXPECT_TRUE(keepsOthersOut(outer));
    EXPECT_TRUE(leave(self, outer));
    joinOthers();
    EXPECT_TRUE(letsOthersIn(outer));
}

TEST_F(Worker, theStandInForNoneMayEnterNothing)
{
    MAVOExclusiveArea *outer = area(10, "outer");
    const LogCapture log;
    EXPECT_FALSE(enter(&MAVOWorker_g_none, outer));
    EXPECT_FALSE(leave(&MAVOWorker_g_none, outer));
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE,
          "!enter exclusive area 'outer' of level 10: worker '(no worker)' may enter none"},
         {&ZUV_LOG_FAILURE_TEMPLATE,
          "!leave exclusive area 'outer' of level 10: worker '(no worker)' is not in it"}}));
}

TEST_F(Worker, missingArgumentsAreReported)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    const LogCapture log;
    EXPECT_FALSE(enter(nullptr, outer));
    EXPECT_FALSE(enter(self, nullptr));
    EXPECT_FALSE(MAVOWorker_enterExclusiveArea(self, self, outer) != 0);
    EXPECT_FALSE(leave(nullptr, outer));
    EXPECT_FALSE(leave(self, nullptr));
    const zuv_test::LogLink noSelf = {&ZUV_LOG_PRECONDITION_FAILURE_s,
                                      "!meet precondition: self == ((void *)0)"};
    const zuv_test::LogLink noArea = {&ZUV_LOG_PRECONDITION_FAILURE_s,
                                      "!meet precondition: ea == ((void *)0)"};
    EXPECT_TRUE(log.isExactly(
        {noSelf,
         noArea,
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: reserved != ((void *)0)"},
         noSelf,
         noArea}));
}

TEST_F(Worker, aRefusalOfTheSystemLeavesItWhereItWas)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    const LogCapture log;
    ZUVOsapiFault_arm("exclusive_area.enter", 1, 0);
    EXPECT_FALSE(enter(self, outer));
    EXPECT_EQ(self->_inEaMaxLevelPtr, nullptr);
    EXPECT_TRUE(enter(self, outer));
    ZUVOsapiFault_arm("exclusive_area.leave", 1, 0);
    EXPECT_FALSE(leave(self, outer));
    EXPECT_EQ(self->_inEaMaxLevelPtr, outer);
    EXPECT_TRUE(leave(self, outer));
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE,
          "!enter exclusive area 'outer' of level 10: worker 'main' is refused by the system"},
         {&ZUV_LOG_FAILURE_TEMPLATE,
          "!leave exclusive area 'outer' of level 10: worker 'main' is refused by the system"}}));
}

TEST_F(Worker, anAreaIsNotDestroyedWhileAWorkerIsInIt)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    ASSERT_TRUE(enter(self, outer));
    const LogCapture log;
    MAVOWorkerFactory_destroyExclusiveArea(factory_, outer);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                                "!delete exclusive area 'outer' of level 10: a worker is in it"}}));
    EXPECT_TRUE(leave(self, outer));
}

TEST_F(Worker, aWorkerThatGoesLeavesItsAreas)
{
    MAVOWorker *self = worker("main");
    MAVOExclusiveArea *outer = area(10, "outer");
    MAVOExclusiveArea *inner = area(20, "inner");
    ASSERT_TRUE(enter(self, outer));
    ASSERT_TRUE(enter(self, outer));
    ASSERT_TRUE(enter(self, inner));
    const LogCapture log;
    MAVOWorkerFactory_destroyWorker(factory_, self);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE,
          "!leave exclusive area 'inner' of level 20 before the end of worker 'main'"},
         {&ZUV_LOG_FAILURE_TEMPLATE,
          "!leave exclusive area 'outer' of level 10 before the end of worker 'main'"}}));
    EXPECT_TRUE(letsOthersIn(outer));
    EXPECT_TRUE(letsOthersIn(inner));
}

TEST(WorkerFactory, theFirstWorkersNeedNoMoreMemory)
{
    MAVOWorkerFactory *factory = MAVOWorkerFactory_new(2);
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    MAVOWorker *first = MAVOWorkerFactory_createWorker(factory, "first");
    EXPECT_NE(first, nullptr);
    EXPECT_NE(MAVOWorkerFactory_createWorker(factory, "second"), nullptr);
    {
        const LogCapture log;
        EXPECT_EQ(MAVOWorkerFactory_createWorker(factory, "third"), nullptr);
        EXPECT_EQ(log.lines().size(), 1u);
    }
    MAVOWorkerFactory_destroyWorker(factory, first); // its room serves the next one
    EXPECT_STREQ(MAVOWorkerFactory_createWorker(factory, "third")->_name, "third");
    ZUVOsapiFault_disarm();
    MAVOWorkerFactory_delete(factory);
}

TEST(WorkerFactory, reportsAndReleasesAreasThatOutliveIt)
{
    const zuv_test::HeapCheck heap;
    MAVOWorkerFactory *factory = MAVOWorkerFactory_new(0);
    MAVOWorkerFactory_createExclusiveAreaEx(factory, 10, "forgotten");
    const LogCapture log;
    MAVOWorkerFactory_delete(factory);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                                "!delete exclusive area 'forgotten' before its worker factory"}}));
    EXPECT_TRUE(heap.isBalanced());
}

TEST(WorkerFactory, missingArgumentsAreReported)
{
    const LogCapture log;
    EXPECT_EQ(MAVOWorkerFactory_createWorker(nullptr, "name"), nullptr);
    EXPECT_EQ(MAVOWorkerFactory_createExclusiveAreaEx(nullptr, 1, "name"), nullptr);
    MAVOWorkerFactory_destroyWorker(nullptr, &MAVOWorker_g_none);
    MAVOWorkerFactory_destroyExclusiveArea(nullptr, nullptr);
    MAVOWorkerFactory_delete(nullptr);
    EXPECT_EQ(MAVOWorkerPerThread_new(nullptr), nullptr);
    EXPECT_EQ(MAVOWorkerPerThread_createWorker(nullptr, "name"), nullptr);
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(nullptr), &MAVOWorker_g_none);
    MAVOWorkerPerThread_deleteWorker(nullptr);
    MAVOWorkerPerThread_delete(nullptr);
    EXPECT_EQ(log.lines().size(), 10u);
}

class WorkerPerThread : public testing::Test
{
protected:
    WorkerPerThread()
        : factory_(MAVOWorkerFactory_new(2)), perThread_(MAVOWorkerPerThread_new(factory_))
    {
    }
    ~WorkerPerThread() override
    {
        ZUVOsapiFault_disarm();
        MAVOWorkerPerThread_delete(perThread_);
        MAVOWorkerFactory_delete(factory_);
    }

    MAVOWorkerFactory *factory_;
    MAVOWorkerPerThread *perThread_;
};

TEST_F(WorkerPerThread, aThreadWithoutAWorkerHasTheStandIn)
{
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), &MAVOWorker_g_none);
    MAVOWorkerPerThread_deleteWorker(perThread_); // done already
}

TEST_F(WorkerPerThread, eachThreadHasItsOwn)
{
    MAVOWorker *mine = MAVOWorkerPerThread_createWorker(perThread_, "mine");
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), mine);
    std::thread([&] {
        EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), &MAVOWorker_g_none);
        MAVOWorker *other = MAVOWorkerPerThread_createWorker(perThread_, "other");
        EXPECT_NE(other, mine);
        EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), other);
        MAVOWorkerPerThread_deleteWorker(perThread_);
        EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), &MAVOWorker_g_none);
    }).join();
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), mine);
}

TEST_F(WorkerPerThread, aSecondWorkerIsRefused)
{
    MAVOWorker *first = MAVOWorkerPerThread_createWorker(perThread_, "first");
    const LogCapture log;
    EXPECT_EQ(MAVOWorkerPerThread_createWorker(perThread_, "second"), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "!create worker 'second': the thread has 'first'"}}));
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), first);
}

TEST_F(WorkerPerThread, aThreadThatEndsGivesItsWorkerBack)
{
    MAVOExclusiveArea *area = MAVOWorkerFactory_createExclusiveAreaEx(factory_, 10, "area");
    const LogCapture log;
    std::thread([&] {
        MAVOWorker *forgetful = MAVOWorkerPerThread_createWorker(perThread_, "forgetful");
        MAVOWorker_enterExclusiveArea(forgetful, nullptr, area);
    }).join();
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE,
          "!leave exclusive area 'area' of level 10 before the end of worker 'forgetful'"}}));
    MAVOWorkerFactory_destroyExclusiveArea(factory_, area); // nobody is in it
    EXPECT_EQ(log.lines().size(), 1u);
}

TEST_F(WorkerPerThread, aFailedStoreIsReported)
{
    const LogCapture log;
    ZUVOsapiFault_arm("thread.store", 1, 0);
    EXPECT_EQ(MAVOWorkerPerThread_createWorker(perThread_, "mine"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ASSERT_FAILURE_s, "!set worker of the thread"}}));
    EXPECT_EQ(MAVOWorkerPerThread_getWorker(perThread_), &MAVOWorker_g_none);
}

TEST(WorkerFaults, everyStepOfTheMakingMayFail)
{
    zuv_test::sweepFaults([] {
        MAVOWorkerFactory *factory = MAVOWorkerFactory_new(0);
        if (factory == nullptr) {
            return false;
        }
        MAVOWorkerPerThread *perThread = MAVOWorkerPerThread_new(factory);
        bool isGood = perThread != nullptr;
        if (isGood) {
            MAVOWorker *worker = MAVOWorkerPerThread_createWorker(perThread, "worker");
            MAVOExclusiveArea *area = MAVOWorkerFactory_createExclusiveAreaEx(factory, 10, "area");
            isGood = worker != nullptr && area != nullptr;
            if (isGood && MAVOWorker_enterExclusiveArea(worker, nullptr, area) != 0) {
                isGood = MAVOWorker_leaveExclusiveArea(worker, nullptr, area) != 0;
            } else {
                isGood = false;
            }
            MAVOWorkerPerThread_delete(perThread);
        }
        MAVOWorkerFactory_delete(factory); // with the area that is left
        return isGood;
    });
}

// Eight threads enter random areas in random orders, as their workers permit. Nobody gets stuck, and what an area
// guards is only changed by who is in it.
TEST(WorkerThreads, nobodyGetsStuckWhateverTheOrder)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 2000;
    constexpr int kAreas = 6;
    ZUVOsapiFault_disarm();
    const LogCapture log; // refusals are expected
    MAVOWorkerFactory *factory = MAVOWorkerFactory_new(2);
    MAVOWorkerPerThread *perThread = MAVOWorkerPerThread_new(factory);
    std::array<MAVOExclusiveArea *, kAreas> areas;
    for (int index = 0; index < kAreas; ++index) {
        areas[index] = MAVOWorkerFactory_createExclusiveAreaEx(factory, 10 + index / 2, "area");
    }
    std::array<long, kAreas> guarded = {};
    std::array<std::array<long, kAreas>, kThreads> entered = {};

    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(number);
            MAVOWorkerPerThread_createWorker(perThread, "worker");
            MAVOWorker *self = MAVOWorkerPerThread_getWorker(perThread);
            for (int round = 0; round < kRounds; ++round) {
                std::vector<int> inside;
                for (int step = 0; step < 3; ++step) {
                    const int index = static_cast<int>(random() % kAreas);
                    if (MAVOWorker_enterExclusiveArea(self, nullptr, areas[index]) != 0) {
                        inside.push_back(index);
                        ++guarded[index];
                        ++entered[number][index];
                    }
                }
                std::shuffle(inside.begin(), inside.end(), random);
                for (const int index : inside) {
                    EXPECT_EQ(MAVOWorker_leaveExclusiveArea(self, nullptr, areas[index]), 1);
                }
                EXPECT_EQ(self->_inEaMaxLevelPtr, nullptr);
            }
            MAVOWorkerPerThread_deleteWorker(perThread);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (int index = 0; index < kAreas; ++index) {
        const long sum = std::accumulate(
            entered.begin(), entered.end(), 0L,
            [index](long partial, const auto &ofThread) { return partial + ofThread[index]; });
        EXPECT_EQ(guarded[index], sum);
        EXPECT_GT(sum, 0);
        MAVOWorkerFactory_destroyExclusiveArea(factory, areas[index]);
    }
    EXPECT_FALSE(log.lines().empty());
    MAVOWorkerPerThread_delete(perThread);
    MAVOWorkerFactory_delete(factory);
}

} // namespace
