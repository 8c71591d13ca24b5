#include <algorithm>
#include <array>
#include <atomic>
#include <cinttypes>
#include <cstdio>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "common/Concurrency.h"
#include "common/ServiceLog.h"
#include "platform/mavo/WorkerPerThread.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/GlobalLock.h"
#include "platform/osapi/Thread.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::HeapCheck;
using zuv_test::LogCapture;
using zuv_test::LogLink;
using zuv_test::ServiceLog;

constexpr std::uint32_t kTrace = 0x40;

std::string ownSuffix()
{
    char text[32];
    std::snprintf(text, sizeof(text), "_0x%" PRIx64, ZUVOsapiThread_getCurrentThreadID());
    return text;
}

LogLink precondition(const char *text)
{
    return {&ZUV_LOG_PRECONDITION_FAILURE_s, text};
}

class Concurrency : public testing::Test
{
protected:
    Concurrency() : self_(BRELConcurrency_new()) {}
    ~Concurrency() override
    {
        ZUVOsapiFault_disarm();
        for (MAVOExclusiveArea *area : areas_) {
            BRELConcurrency_deleteExclusiveArea(self_, area);
        }
        BRELConcurrency_delete(self_);
    }

    MAVOExclusiveArea *area(int level, const char *name = "area")
    {
        areas_.push_back(BRELConcurrency_createExclusiveArea(self_, level, name));
        return areas_.back();
    }

    BRELConcurrency *self_;
    std::vector<MAVOExclusiveArea *> areas_;
};

TEST(ConcurrencyLevels, runFromTheOutermostObjectToTheInnermost)
{
    EXPECT_EQ(BRELConcurrency_SERVICE_EA_LEVEL, 10);
    EXPECT_EQ(BRELConcurrency_ADMINISTRATION_WSR_EA_LEVEL, 11);
    EXPECT_EQ(BRELConcurrency_MONITORING_EA_LEVEL, 12);
    EXPECT_EQ(BRELConcurrency_MONITORABLE_EA_LEVEL, 13);
    EXPECT_EQ(BRELConcurrency_DISCOVERY_EA_LEVEL, 14);
    EXPECT_EQ(BRELConcurrency_CONNECTION_EA_LEVEL, 20);
    EXPECT_EQ(BRELConcurrency_SESSION_WSR_EA_LEVEL, 30);
    EXPECT_EQ(BRELConcurrency_DDS_CONNECTION_INPUT_STREAM_EA_LEVEL, 130);
    EXPECT_EQ(BRELConcurrency_DDS_CONNECTION_OUTPUT_STREAM_EA_LEVEL, 131);
    EXPECT_EQ(BRELConcurrency_DDS_FILTER_EVENT_TRACKER_EA_LEVEL, 132);
    EXPECT_EQ(BRELConcurrency_DDS_ADAPTER_EA_LEVEL, 133);
}

TEST_F(Concurrency, aWorkerIsNamedAfterItsBaseAndItsThread)
{
    MAVOWorker *worker = BRELConcurrency_createWorker(self_, "events");
    ASSERT_NE(worker, nullptr);
    EXPECT_EQ(worker->_name, "events" + ownSuffix());
    EXPECT_EQ(BRELConcurrency_getWorker(self_), worker);
    BRELConcurrency_deleteWorker(self_);
    EXPECT_EQ(BRELConcurrency_getWorker(self_), &MAVOWorker_g_none);
}

TEST_F(Concurrency, threadsWithOneBaseNameHaveDifferentNames)
{
    const std::string mine = BRELConcurrency_createWorker(self_, "pool")->_name;
    std::string other;
    std::thread([&] {
        other = BRELConcurrency_createWorker(self_, "pool")->_name;
        BRELConcurrency_deleteWorker(self_);
    }).join();
    EXPECT_NE(mine, other);
    EXPECT_EQ(other.substr(0, 7), "pool_0x");
}

TEST_F(Concurrency, aLongBaseNameLeavesNoRoomForTheThread)
{
    const std::string base(63, 'b');
    EXPECT_EQ(BRELConcurrency_createWorker(self_, base.c_str())->_name, base);
    BRELConcurrency_deleteWorker(self_);
    EXPECT_EQ(BRELConcurrency_createWorker(self_, (base + "more").c_str())->_name, base);
    BRELConcurrency_deleteWorker(self_);
    EXPECT_EQ(BRELConcurrency_createWorker(self_, base.substr(1).c_str())->_name,
              base.substr(1) + "_");
}

TEST_F(Concurrency, anEmptyBaseNameMakesNoWorker)
{
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_createWorker(self_, ""), nullptr);
    EXPECT_TRUE(log.isExactly({precondition("!meet precondition: strlen(workerBaseName) == 0")}));
    EXPECT_EQ(BRELConcurrency_getWorker(self_), &MAVOWorker_g_none);
}

TEST_F(Concurrency, aNameThatCannotBeFormattedMakesNoWorker)
{
    const ServiceLog on;
    const LogCapture log;
    ZUVOsapiFault_arm("utility.snprintf", 1, 0);
    EXPECT_EQ(BRELConcurrency_createWorker(self_, "events"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!generate worker name"}}));
    EXPECT_EQ(BRELConcurrency_getWorker(self_), &MAVOWorker_g_none);
}

TEST_F(Concurrency, aLevelBelowOneIsRefused)
{
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_createExclusiveArea(self_, 0, "zero"), nullptr);
    EXPECT_EQ(BRELConcurrency_createExclusiveArea(self_, -1, "negative"), nullptr);
    const LogLink line = precondition("!meet precondition: level < 1");
    EXPECT_TRUE(log.isExactly({line, line}));
    EXPECT_NE(area(1), nullptr);
}

TEST_F(Concurrency, anAreaThatCannotBeMadeIsReportedByItsName)
{
    const ServiceLog on(false);
    const LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELConcurrency_createExclusiveArea(self_, 20, "connection::c1"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_CREATION_FAILURE_s, "!create connection::c1"}}));
}

TEST_F(Concurrency, areasAreEnteredInTheOrderOfTheLevels)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *session = area(BRELConcurrency_SESSION_WSR_EA_LEVEL, "session");
    MAVOExclusiveArea *service = area(BRELConcurrency_SERVICE_EA_LEVEL, "service");
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, session), 1);
    {
        const ServiceLog on;
        const LogCapture log;
        EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, service), 0);
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE,
                                    "!enter exclusive area 'service' of level 10: worker 'main" +
                                        ownSuffix() + "' is in 'session' of level 30"},
                                   {&ZUV_LOG_ANY_FAILURE_s, "!MAVOWorker_enterExclusiveArea"}}));
        EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, service), 0);
        EXPECT_TRUE(log.holds({{&ZUV_LOG_ANY_FAILURE_s, "!MAVOWorker_leaveExclusiveArea"}}));
    }
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, session), 1); // the same again
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, session), 1);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, session), 1);
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, service), 1);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, service), 1);
}

TEST_F(Concurrency, aThreadWithoutAWorkerEntersNothing)
{
    MAVOExclusiveArea *connection = area(20, "connection");
    const ServiceLog on(true, kTrace);
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, connection), 0);
    EXPECT_TRUE(log.isExactly(
        {{nullptr, "[SERVICE|CONCURRENCY] worker (no worker): entering EA level 20"},
         {&ZUV_LOG_FAILURE_TEMPLATE,
          "!enter exclusive area 'connection' of level 20: worker '(no worker)' may enter none"},
         {&ZUV_LOG_ANY_FAILURE_s, "!MAVOWorker_enterExclusiveArea"}}));
}

TEST_F(Concurrency, entriesAndExitsAreTraced)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *connection = area(20);
    const std::string worker = "[SERVICE|CONCURRENCY] worker main" + ownSuffix();
    const ServiceLog on(true, kTrace);
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, connection), 1);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, connection), 1);
    EXPECT_TRUE(log.isExactly({{nullptr, worker + ": entering EA level 20"},
                               {nullptr, worker + ": leaving EA level 20"}}));
    EXPECT_EQ(log.lines().front().level, kTrace);
    EXPECT_EQ(log.lines().front().submodule, 0x1000u);
}

TEST_F(Concurrency, withoutTheTraceBitNothingIsPrinted)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *connection = area(20);
    const ServiceLog on(true, ~kTrace);
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, connection), 1);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, connection), 1);
    BRELLog_g_instrumentationMask = UINT32_MAX;
    BRELLog_g_submoduleMask = ~0x1000u;
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, connection), 1);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, connection), 1);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Concurrency, aGuardEntersAndLeavesWithoutATrace)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *connection = area(20);
    const ServiceLog on(true, kTrace);
    const LogCapture log;
    BRELExclusiveAreaGuard guard = {};
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(&guard, connection, self_), 1);
    EXPECT_EQ(guard._ea, connection);
    EXPECT_EQ(guard._isInEA, 1);
    EXPECT_EQ(BRELConcurrency_getWorker(self_)->_inEaMaxLevelPtr, connection);
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self_), 1);
    EXPECT_EQ(guard._ea, connection); // not cleared
    EXPECT_EQ(guard._isInEA, 0);
    EXPECT_EQ(BRELConcurrency_getWorker(self_)->_inEaMaxLevelPtr, nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Concurrency, aGuardThatNeverEnteredLeavesNothing)
{
    const ServiceLog on;
    const LogCapture log;
    BRELExclusiveAreaGuard guard = {};
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self_), 1);
    guard._ea = area(20);
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self_), 1);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Concurrency, aGuardThatMayNotEnterRemembersTheAreaAlone)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *session = area(30);
    MAVOExclusiveArea *service = area(10);
    BRELExclusiveAreaGuard outer = {};
    ASSERT_EQ(BRELExclusiveAreaGuard_enter(&outer, session, self_), 1);
    const ServiceLog on(false);
    const LogCapture log;
    BRELExclusiveAreaGuard guard = {};
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(&guard, service, self_), 0);
    EXPECT_EQ(guard._ea, service);
    EXPECT_EQ(guard._isInEA, 0);
    // The same with a guard that is in an area: it holds one, and does not count.
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(&outer, service, self_), 0);
    EXPECT_EQ(outer._ea, service);
    EXPECT_EQ(outer._isInEA, 1);
    const LogLink line = {&ZUV_LOG_ANY_FAILURE_s, "!MAVOWorker_enterExclusiveArea"};
    EXPECT_TRUE(log.isExactly({line, line}));
    outer._ea = session;
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&outer, self_), 1);
}

TEST_F(Concurrency, aFailedLeaveOfAGuardMayBeRepeated)
{
    BRELConcurrency_createWorker(self_, "main");
    MAVOExclusiveArea *connection = area(20);
    BRELExclusiveAreaGuard guard = {};
    ASSERT_EQ(BRELExclusiveAreaGuard_enter(&guard, connection, self_), 1);
    const ServiceLog on(false);
    const LogCapture log;
    ZUVOsapiFault_arm("exclusive_area.leave", 1, 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self_), 0);
    EXPECT_EQ(guard._isInEA, 1);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!MAVOWorker_leaveExclusiveArea"}}));
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self_), 1);
    EXPECT_EQ(guard._isInEA, 0);
}

TEST_F(Concurrency, missingArgumentsAreReported)
{
    MAVOExclusiveArea *connection = area(20);
    BRELExclusiveAreaGuard guard = {};
    const ServiceLog on;
    const LogCapture log;
    BRELConcurrency_delete(nullptr);
    EXPECT_EQ(BRELConcurrency_getWorker(nullptr), nullptr);
    EXPECT_EQ(BRELConcurrency_createWorker(nullptr, "w"), nullptr);
    EXPECT_EQ(BRELConcurrency_createWorker(self_, nullptr), nullptr);
    BRELConcurrency_deleteWorker(nullptr);
    EXPECT_EQ(BRELConcurrency_createExclusiveArea(nullptr, 1, "a"), nullptr);
    EXPECT_EQ(BRELConcurrency_createExclusiveArea(self_, 1, nullptr), nullptr);
    BRELConcurrency_deleteExclusiveArea(nullptr, connection);
    BRELConcurrency_deleteExclusiveArea(self_, nullptr);
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(nullptr, connection), 0);
    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self_, nullptr), 0);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(nullptr, connection), 0);
    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self_, nullptr), 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(nullptr, connection, self_), 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(&guard, nullptr, self_), 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_enter(&guard, connection, nullptr), 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(nullptr, self_), 0);
    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, nullptr), 0);
    const LogLink noSelf = precondition("!meet precondition: self == ((void *)0)");
    const LogLink noName = precondition("!meet precondition: name == ((void *)0)");
    const LogLink noArea = precondition("!meet precondition: ea == ((void *)0)");
    const LogLink noConcurrency = precondition("!meet precondition: concurrency == ((void *)0)");
    EXPECT_TRUE(
        log.isExactly({precondition("!meet precondition: instance == ((void *)0)"), noSelf, noSelf,
                       precondition("!meet precondition: workerBaseName == ((void *)0)"), noSelf,
                       noSelf, noName, noSelf, noArea, noSelf, noArea, noSelf, noArea, noSelf,
                       noArea, noConcurrency, noSelf, noConcurrency}));
    for (const auto &line : log.lines()) {
        EXPECT_EQ(line.level, ZUV_LOG_BIT_FATAL);
        EXPECT_EQ(line.submodule, 0x1000u);
    }
}

// As it is between the two steps of its making.
TEST_F(Concurrency, withoutItsStorageItHasNoWorkers)
{
    struct {
        MAVOWorkerFactory *workerFactory;
        MAVOWorkerPerThread *workerPerThread;
    } halfMade = {};
    auto *self = reinterpret_cast<BRELConcurrency *>(&halfMade);
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(BRELConcurrency_createWorker(self, "main"), nullptr);
    BRELConcurrency_deleteWorker(self);
    const LogLink line = precondition("!meet precondition: self->_workerPerThread == ((void *)0)");
    EXPECT_TRUE(log.isExactly({line, line}));
}

class ConcurrencyFailure : public testing::Test
{
protected:
    ~ConcurrencyFailure() override
    {
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(heap_.isBalanced());
    }

    const HeapCheck heap_;
    const ServiceLog on_{false};
    const LogCapture log_;
};

TEST_F(ConcurrencyFailure, withoutTheGlobalLockNothingIsMade)
{
    ZUVOsapiFault_arm("global_lock.take", 1, 0);
    EXPECT_EQ(BRELConcurrency_new(), nullptr);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!take global lock"}}));
    EXPECT_EQ(heap_.allocations(), 0u);
}

TEST_F(ConcurrencyFailure, aLockThatCannotBeGivenChangesNothing)
{
    ZUVOsapiFault_arm("global_lock.give", 1, 0);
    BRELConcurrency *self = BRELConcurrency_new();
    ASSERT_NE(self, nullptr);
    ZUVOsapiFault_arm("global_lock.give", 1, 0);
    BRELConcurrency_delete(self);
    const LogLink line = {&ZUV_LOG_ANY_FAILURE_s, "!give global lock"};
    EXPECT_TRUE(log_.isExactly({line, line}));
}

TEST_F(ConcurrencyFailure, withoutTheGlobalLockTheObjectStays)
{
    BRELConcurrency *self = BRELConcurrency_new();
    ZUVOsapiFault_arm("global_lock.take", 1, 0);
    BRELConcurrency_delete(self);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!take global lock"}}));
    EXPECT_NE(BRELConcurrency_createWorker(self, "still there"), nullptr);
    BRELConcurrency_delete(self);
}

TEST_F(ConcurrencyFailure, eachStepOfTheMakingHasItsReport)
{
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELConcurrency_new(), nullptr);
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_EQ(BRELConcurrency_new(), nullptr);
    ZUVOsapiFault_arm("thread.create_storage", 1, 0);
    EXPECT_EQ(BRELConcurrency_new(), nullptr);
    EXPECT_TRUE(log_.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                                 "!allocate object of 16 bytes: out of memory"},
                                {&ZUV_LOG_CREATION_FAILURE_s, "!create MAVOWorkerFactory"},
                                {&ZUV_LOG_CREATION_FAILURE_s, "!create MAVOWorkerPerThread"}}));
    // The lock is free again.
    EXPECT_EQ(ZUVOsapi_global_lock(), 0);
    EXPECT_EQ(ZUVOsapi_global_unlock(), 0);
}

TEST(ConcurrencyFaults, everyStepMayFail)
{
    const ServiceLog on;
    zuv_test::sweepFaults([] {
        BRELConcurrency *self = BRELConcurrency_new();
        if (self == nullptr) {
            return false;
        }
        MAVOExclusiveArea *area = BRELConcurrency_createExclusiveArea(self, 20, "connection");
        const bool hasWorker = BRELConcurrency_createWorker(self, "main") != nullptr;
        BRELExclusiveAreaGuard guard = {};
        const bool wasIn = area != nullptr && hasWorker &&
                           BRELConcurrency_enterExclusiveArea(self, area) != 0 &&
                           BRELExclusiveAreaGuard_enter(&guard, area, self) != 0 &&
                           BRELExclusiveAreaGuard_leave(&guard, self) != 0 &&
                           BRELConcurrency_leaveExclusiveArea(self, area) != 0;
        ZUVOsapiFault_disarm();
        BRELConcurrency_deleteWorker(self);
        if (area != nullptr) {
            BRELConcurrency_deleteExclusiveArea(self, area);
        }
        BRELConcurrency_delete(self);
        return wasIn;
    });
}

// Eight threads take workers and guards in every order, while others make and delete objects of their own.
TEST(ConcurrencyThreads, eightThreadsEnterAndLeave)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 500;
    const LogCapture log; // refusals are expected
    BRELConcurrency *self = BRELConcurrency_new();
    std::array<MAVOExclusiveArea *, 4> areas;
    for (std::size_t index = 0; index < areas.size(); ++index) {
        areas[index] =
            BRELConcurrency_createExclusiveArea(self, 10 + static_cast<int>(index), "area");
    }
    std::array<long, 4> guarded = {};
    std::array<std::atomic<long>, 4> entered = {};
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&, number] {
            std::mt19937 random(number);
            for (int life = 0; life < 5; ++life) {
                EXPECT_NE(BRELConcurrency_createWorker(self, "pool"), nullptr);
                for (int round = 0; round < kRounds / 5; ++round) {
                    const std::size_t first = random() % areas.size();
                    const std::size_t second = random() % areas.size();
                    EXPECT_EQ(BRELConcurrency_enterExclusiveArea(self, areas[first]), 1);
                    BRELExclusiveAreaGuard guard = {};
                    const bool isIn =
                        BRELExclusiveAreaGuard_enter(&guard, areas[second], self) != 0;
                    EXPECT_EQ(isIn, second >= first);
                    if (isIn) {
                        ++guarded[second];
                        ++entered[second];
                    }
                    EXPECT_EQ(BRELExclusiveAreaGuard_leave(&guard, self), 1);
                    EXPECT_EQ(BRELConcurrency_leaveExclusiveArea(self, areas[first]), 1);
                }
                BRELConcurrency_deleteWorker(self);
                BRELConcurrency_delete(BRELConcurrency_new());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    for (std::size_t index = 0; index < areas.size(); ++index) {
        EXPECT_EQ(guarded[index], entered[index]);
        BRELConcurrency_deleteExclusiveArea(self, areas[index]);
    }
    BRELConcurrency_delete(self);
}

} // namespace
