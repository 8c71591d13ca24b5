#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <thread>

#include <pthread.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/GlobalLock.h"
#include "platform/osapi/Thread.h"
#include "support/HeapCheck.h"

namespace
{

struct Seen {
    std::string name;
    uint64_t id = 0;
};

void look(void *seen)
{
    auto *self = static_cast<Seen *>(seen);
    char name[16];
    pthread_getname_np(pthread_self(), name, sizeof(name));
    self->name = name;
    self->id = ZUVOsapiThread_getCurrentThreadID();
}

TEST(Thread, runsItsRoutineUnderItsName)
{
    Seen seen;
    ZUVOsapiThread *thread = ZUVOsapiThread_new("zBsEvent", look, &seen);
    ASSERT_NE(thread, nullptr);
    EXPECT_FALSE(ZUVOsapiThread_isCurrent(thread));
    ZUVOsapiThread_delete(thread);
    EXPECT_EQ(seen.name, "zBsEvent");
    EXPECT_NE(seen.id, ZUVOsapiThread_getCurrentThreadID());
}

TEST(Thread, aLongNameIsCut)
{
    Seen seen;
    ZUVOsapiThread_delete(ZUVOsapiThread_new("0123456789abcdefghij", look, &seen));
    EXPECT_EQ(seen.name, "0123456789abcde");
}

TEST(Thread, theIdentityIsThatOfTheSystem)
{
    // On its first thread a process and its thread have the same number.
    EXPECT_EQ(ZUVOsapiThread_getCurrentThreadID(), static_cast<uint64_t>(getpid()));
}

TEST(Thread, isCurrentOnItself)
{
    struct Self {
        std::atomic<ZUVOsapiThread *> thread = nullptr;
        bool isCurrent = false;
    } self;
    ZUVOsapiThread *thread = ZUVOsapiThread_new(
        "self",
        [](void *data) {
            auto *mine = static_cast<Self *>(data);
            while (mine->thread == nullptr) {
                std::this_thread::yield();
            }
            mine->isCurrent = ZUVOsapiThread_isCurrent(mine->thread) != 0;
        },
        &self);
    ASSERT_NE(thread, nullptr);
    self.thread = thread;
    ZUVOsapiThread_delete(thread);
    EXPECT_TRUE(self.isCurrent);
}

TEST(Thread, aRefusedOneLeavesNothingBehind)
{
    const zuv_test::HeapCheck heap;
    for (const char *point : {"thread.create", ZUV_OSAPI_FAULT_POINT_HEAP}) {
        ZUVOsapiFault_arm(point, 1, 0);
        Seen seen;
        EXPECT_EQ(ZUVOsapiThread_new("never", look, &seen), nullptr) << point;
        EXPECT_EQ(seen.name, "");
    }
    ZUVOsapiThread_delete(nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

TEST(GlobalLock, keepsOthersOut)
{
    ASSERT_EQ(ZUVOsapi_global_lock(), 0);
    std::atomic<bool> isIn = false;
    std::thread other([&] {
        EXPECT_EQ(ZUVOsapi_global_lock(), 0);
        isIn = true;
        EXPECT_EQ(ZUVOsapi_global_unlock(), 0);
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_FALSE(isIn);
    EXPECT_EQ(ZUVOsapi_global_unlock(), 0);
    other.join();
    EXPECT_TRUE(isIn);
}

TEST(GlobalLock, isNotTakenTwiceByOneThread)
{
    ASSERT_EQ(ZUVOsapi_global_lock(), 0);
    EXPECT_EQ(ZUVOsapi_global_lock(), EDEADLK);
    EXPECT_EQ(ZUVOsapi_global_unlock(), 0);
    EXPECT_EQ(ZUVOsapi_global_unlock(), EPERM);
}

TEST(GlobalLock, canBeMadeToFail)
{
    ZUVOsapiFault_arm("global_lock.take", 1, 0);
    EXPECT_NE(ZUVOsapi_global_lock(), 0);
    ASSERT_EQ(ZUVOsapi_global_lock(), 0);
    ZUVOsapiFault_arm("global_lock.give", 1, 0);
    EXPECT_NE(ZUVOsapi_global_unlock(), 0);
    EXPECT_EQ(ZUVOsapi_global_lock(), 0); // it was given nevertheless
    EXPECT_EQ(ZUVOsapi_global_unlock(), 0);
}

} // namespace
