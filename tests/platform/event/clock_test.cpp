#include <gtest/gtest.h>

#include "platform/event/Clock.h"
#include "platform/osapi/Fault.h"

namespace
{

TEST(MonotonicClock, neverGoesBack)
{
    ZUVClock *clock = ZUVClock_getMonotonic();
    ZUVNtpTime before;
    ASSERT_NE(clock->getTime(clock, &before), 0);
    for (int round = 0; round < 1000; ++round) {
        ZUVNtpTime now;
        ASSERT_NE(clock->getTime(clock, &now), 0);
        ASSERT_LE(ZUVNtpTime_compare(&before, &now), 0);
        before = now;
    }
}

TEST(MonotonicClock, canBeMadeToFail)
{
    ZUVClock *clock = ZUVClock_getMonotonic();
    ZUVNtpTime now;
    ZUVOsapiFault_arm("clock.get_time", 1, 0);
    EXPECT_EQ(clock->getTime(clock, &now), 0);
    EXPECT_NE(clock->getTime(clock, &now), 0);
}

} // namespace
