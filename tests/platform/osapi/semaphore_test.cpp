#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Semaphore.h"
#include "support/HeapCheck.h"

namespace
{

constexpr ZUVOsapiSemaphoreStatus kOk = ZUV_OSAPI_SEMAPHORE_STATUS_OK;
constexpr ZUVOsapiSemaphoreStatus kTimeout = ZUV_OSAPI_SEMAPHORE_STATUS_TIMEOUT;
constexpr ZUVOsapiSemaphoreStatus kError = ZUV_OSAPI_SEMAPHORE_STATUS_ERROR;
constexpr ZUVNtpTime kTenMilliseconds = {0, 42'949'673};

struct Delete {
    void operator()(ZUVOsapiSemaphore *self) const { ZUVOsapiSemaphore_delete(self); }
};
using Semaphore = std::unique_ptr<ZUVOsapiSemaphore, Delete>;

Semaphore newBinary()
{
    return Semaphore(ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_BINARY, nullptr));
}

Semaphore newMutex()
{
    return Semaphore(ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_MUTEX, nullptr));
}

ZUVOsapiSemaphoreStatus tryToTake(const Semaphore &semaphore)
{
    return ZUVOsapiSemaphore_take(semaphore.get(), &ZUV_NTP_TIME_ZERO);
}

// On a thread of its own.
ZUVOsapiSemaphoreStatus elsewhere(const Semaphore &semaphore,
                                  ZUVOsapiSemaphoreStatus (*operation)(const Semaphore &))
{
    ZUVOsapiSemaphoreStatus status = kError;
    std::thread([&] { status = operation(semaphore); }).join();
    return status;
}

TEST(BinarySemaphore, isEmptyAtFirst)
{
    EXPECT_EQ(tryToTake(newBinary()), kTimeout);
}

TEST(BinarySemaphore, severalGivesFillItOnce)
{
    const Semaphore semaphore = newBinary();
    EXPECT_EQ(ZUVOsapiSemaphore_give(semaphore.get()), kOk);
    EXPECT_EQ(ZUVOsapiSemaphore_give(semaphore.get()), kOk);
    EXPECT_EQ(tryToTake(semaphore), kOk);
    EXPECT_EQ(tryToTake(semaphore), kTimeout);
}

TEST(BinarySemaphore, anyThreadMayGive)
{
    const Semaphore semaphore = newBinary();
    EXPECT_EQ(elsewhere(semaphore,
                        [](const Semaphore &given) { return ZUVOsapiSemaphore_give(given.get()); }),
              kOk);
    EXPECT_EQ(tryToTake(semaphore), kOk);
}

TEST(BinarySemaphore, aTakeWaitsForTheGive)
{
    const Semaphore semaphore = newBinary();
    std::atomic<bool> wasGiven = false;
    std::thread giver([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        wasGiven = true;
        ZUVOsapiSemaphore_give(semaphore.get());
    });
    EXPECT_EQ(ZUVOsapiSemaphore_take(semaphore.get(), nullptr), kOk);
    EXPECT_TRUE(wasGiven);
    giver.join();
}

TEST(BinarySemaphore, aTakeWaitsNoLongerThanItsTimeout)
{
    const Semaphore semaphore = newBinary();
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(ZUVOsapiSemaphore_take(semaphore.get(), &kTenMilliseconds), kTimeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::microseconds(9999));
}

TEST(BinarySemaphore, aNegativeTimeoutDoesNotWait)
{
    const Semaphore semaphore = newBinary();
    const ZUVNtpTime past = {-5, 0};
    EXPECT_EQ(ZUVOsapiSemaphore_take(semaphore.get(), &past), kTimeout);
    ZUVOsapiSemaphore_give(semaphore.get());
    EXPECT_EQ(ZUVOsapiSemaphore_take(semaphore.get(), &past), kOk);
}

TEST(BinarySemaphore, aFullOneIsTakenWithAnyTimeout)
{
    const Semaphore semaphore = newBinary();
    for (const ZUVNtpTime &timeout : {ZUV_NTP_TIME_INFINITE, ZUVNtpTime{0xFFFFFFFE, 0}}) {
        ZUVOsapiSemaphore_give(semaphore.get());
        EXPECT_EQ(ZUVOsapiSemaphore_take(semaphore.get(), &timeout), kOk);
    }
}

TEST(MutexSemaphore, isFreeAtFirst)
{
    EXPECT_EQ(tryToTake(newMutex()), kOk);
}

TEST(MutexSemaphore, keepsOthersOutUntilItsOwnerHasGivenItAsOftenAsTaken)
{
    const Semaphore mutex = newMutex();
    ASSERT_EQ(tryToTake(mutex), kOk);
    ASSERT_EQ(tryToTake(mutex), kOk);
    EXPECT_EQ(elsewhere(mutex, tryToTake), kTimeout);
    EXPECT_EQ(ZUVOsapiSemaphore_give(mutex.get()), kOk);
    EXPECT_EQ(elsewhere(mutex, tryToTake), kTimeout);
    EXPECT_EQ(ZUVOsapiSemaphore_give(mutex.get()), kOk);
    EXPECT_EQ(elsewhere(mutex, tryToTake), kOk);
}

TEST(MutexSemaphore, onlyItsOwnerMayGiveIt)
{
    const Semaphore mutex = newMutex();
    EXPECT_EQ(ZUVOsapiSemaphore_give(mutex.get()), kError);
    ASSERT_EQ(tryToTake(mutex), kOk);
    EXPECT_EQ(elsewhere(mutex,
                        [](const Semaphore &taken) { return ZUVOsapiSemaphore_give(taken.get()); }),
              kError);
    EXPECT_EQ(ZUVOsapiSemaphore_give(mutex.get()), kOk);
}

TEST(MutexSemaphore, guardsWhatEightThreadsChange)
{
    constexpr int kThreads = 8;
    constexpr int kRounds = 2000;
    const Semaphore mutex = newMutex();
    int count = 0;
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&] {
            for (int round = 0; round < kRounds; ++round) {
                ZUVOsapiSemaphore_take(mutex.get(), nullptr);
                ++count;
                ZUVOsapiSemaphore_give(mutex.get());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(count, kThreads * kRounds);
}

TEST(SemaphoreFailure, anUnknownKindOrAnySettingIsRefused)
{
    EXPECT_EQ(ZUVOsapiSemaphore_new(2, nullptr), nullptr);
    const auto *property = reinterpret_cast<const ZUVOsapiSemaphoreProperty *>(&kTenMilliseconds);
    EXPECT_EQ(ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_BINARY, property), nullptr);
}

TEST(SemaphoreFailure, eachStepCanBeMadeToFail)
{
    const zuv_test::HeapCheck heap;
    for (const char *point : {"semaphore.new", ZUV_OSAPI_FAULT_POINT_HEAP}) {
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(newBinary(), nullptr) << point;
    }
    {
        const Semaphore semaphore = newBinary();
        ZUVOsapiFault_arm("semaphore.give", 1, 0);
        EXPECT_EQ(ZUVOsapiSemaphore_give(semaphore.get()), kError); // and is given nevertheless
        ZUVOsapiFault_arm("semaphore.take", 1, 0);
        EXPECT_EQ(tryToTake(semaphore), kError);
        EXPECT_EQ(tryToTake(semaphore), kOk);
    }
    ZUVOsapiSemaphore_delete(nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

} // namespace
