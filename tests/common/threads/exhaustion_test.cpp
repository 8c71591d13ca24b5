// A process that has run out of something reports it, keeps what it has, and goes on once there is some again.
#include <cstdio>
#include <string>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "common/ServiceEventThread.h"
#include "common/ServiceLog.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::HeapCheck;
using zuv_test::LogCapture;
using zuv_test::LogLink;
using zuv_test::ServiceLog;

// Permits the process so many bytes of address space beyond what it has.
class AddressSpaceLimit
{
public:
    explicit AddressSpaceLimit(rlim_t more)
    {
        unsigned long pages = 0;
        std::FILE *file = std::fopen("/proc/self/statm", "r");
        EXPECT_EQ(std::fscanf(file, "%lu", &pages), 1);
        std::fclose(file);
        getrlimit(RLIMIT_AS, &before_);
        const rlimit now = {pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + more,
                            before_.rlim_max};
        setrlimit(RLIMIT_AS, &now);
    }
    ~AddressSpaceLimit() { setrlimit(RLIMIT_AS, &before_); }
    AddressSpaceLimit(const AddressSpaceLimit &) = delete;
    AddressSpaceLimit &operator=(const AddressSpaceLimit &) = delete;

private:
    rlimit before_;
};

// An event that wakes whoever waits for it.
struct Signal {
    Signal() : semaphore(ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_BINARY, nullptr)) {}
    ~Signal() { ZUVOsapiSemaphore_delete(semaphore); }
    Signal(const Signal &) = delete;
    Signal &operator=(const Signal &) = delete;

    static int onEvent(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *,
                       const ZUVNtpTime *, const ZUVNtpTime *, ZUVEventGeneratorListenerStorage *,
                       MAVOWorker *)
    {
        ZUVOsapiSemaphore_give(reinterpret_cast<const Signal *>(self)->semaphore);
        return 0;
    }

    ZUVEventGeneratorListener base = {&Signal::onEvent};
    ZUVOsapiSemaphore *semaphore;
};

class Exhaustion : public testing::Test
{
protected:
    Exhaustion() : concurrency_(BRELConcurrency_new()), running_(make())
    {
        EXPECT_TRUE(runs(running_));
    }
    ~Exhaustion() override
    {
        ZUVOsapiFault_disarm();
        EXPECT_EQ(BRELServiceEventThread_delete(running_), 1);
        BRELConcurrency_delete(concurrency_);
    }

    BRELServiceEventThread *make()
    {
        return BRELServiceEventThread_new(concurrency_, ZUVClock_getMonotonic(), 0, "events");
    }

    // Whether the thread still does its work.
    bool runs(BRELServiceEventThread *thread)
    {
        const ZUVNtpTime patience = {20, 0};
        return BRELServiceEventThread_postImmediateEvent(thread, &signal_.base, nullptr) != 0 &&
               ZUVOsapiSemaphore_take(signal_.semaphore, &patience) ==
                   ZUV_OSAPI_SEMAPHORE_STATUS_OK;
    }

    void expectRecovery()
    {
        BRELServiceEventThread *another = make();
        ASSERT_NE(another, nullptr);
        EXPECT_TRUE(runs(another));
        EXPECT_EQ(BRELServiceEventThread_delete(another), 1);
    }

    Signal signal_;
    BRELConcurrency *concurrency_;
    BRELServiceEventThread *running_;
};

const LogLink kWholeThread = {&ZUV_LOG_INIT_FAILURE_s, "!initialize service event thread"};

// A sanitizer needs its address space.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// No fault is injected here: the system has no room for the stack of one more thread.
TEST_F(Exhaustion, ofThreadsIsReportedAndPasses)
{
    std::vector<BRELServiceEventThread *> threads;
    {
        const ServiceLog on;
        const LogCapture log;
        const AddressSpaceLimit limit(24 * 1024 * 1024);
        BRELServiceEventThread *made = nullptr;
        while (threads.size() < 100 && (made = make()) != nullptr) {
            threads.push_back(made);
        }
        EXPECT_EQ(made, nullptr);
        EXPECT_TRUE(
            log.isExactly({{&ZUV_LOG_CREATION_FAILURE_s, "!create thread of the event generator"},
                           {&ZUV_LOG_CREATION_FAILURE_s, "!create event generator"},
                           kWholeThread}));
        EXPECT_TRUE(runs(running_));
        for (BRELServiceEventThread *thread : threads) {
            EXPECT_TRUE(runs(thread));
        }
    }
    expectRecovery();
    for (BRELServiceEventThread *thread : threads) {
        EXPECT_EQ(BRELServiceEventThread_delete(thread), 1);
    }
}

#endif

TEST_F(Exhaustion, ofMemoryIsReportedAndPasses)
{
    {
        const ServiceLog on(false);
        const LogCapture log;
        const HeapCheck heap;
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
        EXPECT_EQ(make(), nullptr);
        EXPECT_EQ(BRELConcurrency_new(), nullptr);
        EXPECT_EQ(BRELConcurrency_createExclusiveArea(concurrency_, 20, "connection"), nullptr);
        EXPECT_TRUE(runs(running_)); // its queue has room
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(log.isExactly(
            {{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
              "!allocate object of " + std::to_string(sizeof(BRELServiceEventThread)) +
                  " bytes: out of memory"},
             {&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
              "!allocate object of 16 bytes: out of memory"},
             {&ZUV_LOG_CREATION_FAILURE_s, "!create connection"}}));
        EXPECT_TRUE(heap.isBalanced());
    }
    expectRecovery();
}

TEST_F(Exhaustion, ofSemaphoresIsReportedAndPasses)
{
    {
        const ServiceLog on;
        const LogCapture log;
        const HeapCheck heap;
        ZUVOsapiFault_arm("semaphore.new", 1, 1);
        EXPECT_EQ(make(), nullptr);
        EXPECT_TRUE(runs(running_));
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(log.isExactly(
            {{&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "!create binary semaphore"}, kWholeThread}));
        EXPECT_TRUE(heap.isBalanced());
    }
    expectRecovery();
}

} // namespace
