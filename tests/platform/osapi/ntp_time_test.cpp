#include <cstdint>
#include <limits>
#include <ostream>

#include <gtest/gtest.h>

#include "platform/osapi/NtpTime.h"

bool operator==(const ZUVNtpTime &left, const ZUVNtpTime &right)
{
    return left.sec == right.sec && left.frac == right.frac;
}

std::ostream &operator<<(std::ostream &stream, const ZUVNtpTime &time)
{
    return stream << time.sec << " s + " << time.frac << "/2^32";
}

namespace
{

constexpr uint32_t kFracMax = UINT32_MAX;
constexpr int64_t kInfinite = 0xFFFFFFFF;
constexpr int64_t kLast = 0xFFFFFFFE;

ZUVNtpTime sumOf(ZUVNtpTime time, ZUVNtpTime span)
{
    ZUVNtpTime sum;
    ZUVNtpTime_add(&sum, &time, &span);
    return sum;
}

ZUVNtpTime fromNanoseconds(int64_t nanoseconds)
{
    ZUVNtpTime time;
    ZUVNtpTime_fromNanoseconds(&time, nanoseconds);
    return time;
}

int64_t between(ZUVNtpTime from, ZUVNtpTime to)
{
    return ZUVNtpTime_getNanosecondsBetween(&from, &to);
}

int compare(ZUVNtpTime left, ZUVNtpTime right)
{
    return ZUVNtpTime_compare(&left, &right);
}

TEST(NtpTime, fromTheLastFiniteSecondOnItIsInfinite)
{
    EXPECT_TRUE(ZUVNtpTime_isInfinite(&ZUV_NTP_TIME_INFINITE));
    EXPECT_FALSE(ZUVNtpTime_isInfinite(&ZUV_NTP_TIME_ZERO));
    const ZUVNtpTime first = {kInfinite, 0};
    const ZUVNtpTime beyond = {kInfinite + 1, 7};
    const ZUVNtpTime last = {kLast, kFracMax};
    EXPECT_TRUE(ZUVNtpTime_isInfinite(&first));
    EXPECT_TRUE(ZUVNtpTime_isInfinite(&beyond));
    EXPECT_FALSE(ZUVNtpTime_isInfinite(&last));
}

TEST(NtpTime, isOrderedBySecondsAndThenByFraction)
{
    EXPECT_EQ(compare({1, 5}, {1, 5}), 0);
    EXPECT_LT(compare({1, 5}, {1, 6}), 0);
    EXPECT_GT(compare({2, 0}, {1, kFracMax}), 0);
    EXPECT_LT(compare({-2, kFracMax}, {-1, 0}), 0);
}

TEST(NtpTimeSum, addsBothParts)
{
    EXPECT_EQ(sumOf({10, 3}, {5, 4}), (ZUVNtpTime{15, 7}));
}

TEST(NtpTimeSum, carriesAFractionThatOverflows)
{
    EXPECT_EQ(sumOf({10, 0x80000000}, {5, 0x80000001}), (ZUVNtpTime{16, 1}));
    EXPECT_EQ(sumOf({10, kFracMax}, {5, 1}), (ZUVNtpTime{16, 0}));
    EXPECT_EQ(sumOf({10, kFracMax}, {5, 0}), (ZUVNtpTime{15, kFracMax}));
}

TEST(NtpTimeSum, aNegativeSpanLeadsBack)
{
    EXPECT_EQ(sumOf({10, 7}, {-3, 0}), (ZUVNtpTime{7, 7}));
    EXPECT_EQ(sumOf({10, 0}, {-1, 0x80000000}), (ZUVNtpTime{9, 0x80000000}));
    EXPECT_EQ(sumOf({1, 0}, {-3, 0}), (ZUVNtpTime{-2, 0}));
}

TEST(NtpTimeSum, anInfiniteSpanStandsWhateverTheTimeIs)
{
    EXPECT_EQ(sumOf({10, 5}, {kInfinite, 3}), (ZUVNtpTime{kInfinite, 3}));
    EXPECT_EQ(sumOf({kInfinite, 9}, {kInfinite + 8, 3}), (ZUVNtpTime{kInfinite + 8, 3}));
}

TEST(NtpTimeSum, anInfiniteTimeMakesTheLastTime)
{
    EXPECT_EQ(sumOf({kInfinite, 0}, {-5, 3}), (ZUVNtpTime{kInfinite, kFracMax}));
}

TEST(NtpTimeSum, secondsAreCutToTheirRange)
{
    EXPECT_EQ(sumOf({kLast, 1}, {5, 2}), (ZUVNtpTime{kInfinite, 3}));
    EXPECT_EQ(sumOf({-kLast, 1}, {-5, 2}), (ZUVNtpTime{-kInfinite, 3}));
    constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
    EXPECT_EQ(sumOf({kLowest, 0}, {kLowest, 0}), (ZUVNtpTime{-kInfinite, 0}));
}

TEST(NtpTimeSum, aCarryAtTheEndOfTheRangeFillsTheFraction)
{
    EXPECT_EQ(sumOf({kLast, kFracMax}, {1, 2}), (ZUVNtpTime{kInfinite, kFracMax}));
    EXPECT_EQ(sumOf({kLast, kFracMax}, {0, 2}), (ZUVNtpTime{kInfinite, 1}));
    EXPECT_EQ(sumOf({-kLast, kFracMax}, {-5, 2}), (ZUVNtpTime{-kInfinite + 1, 1}));
}

TEST(NtpTimeSum, mayReplaceAnAddend)
{
    ZUVNtpTime time = {1, kFracMax};
    ZUVNtpTime_add(&time, &time, &time);
    EXPECT_EQ(time, (ZUVNtpTime{3, kFracMax - 1}));
}

TEST(NtpTimeNanoseconds, becomeSecondsAndFraction)
{
    EXPECT_EQ(fromNanoseconds(0), (ZUVNtpTime{0, 0}));
    EXPECT_EQ(fromNanoseconds(1'500'000'000), (ZUVNtpTime{1, 0x80000000}));
    EXPECT_EQ(fromNanoseconds(-500'000'000), (ZUVNtpTime{-1, 0x80000000}));
    EXPECT_EQ(fromNanoseconds(999'999'999).sec, 0);
}

TEST(NtpTimeNanoseconds, surviveTheWayThereAndBack)
{
    for (const int64_t nanoseconds :
         {int64_t{0}, int64_t{1}, int64_t{999'999'999}, int64_t{1'000'000'001}, int64_t{-1},
          int64_t{-1'000'000'001}, int64_t{4'000'000'000'000'000'000}}) {
        EXPECT_EQ(between(ZUV_NTP_TIME_ZERO, fromNanoseconds(nanoseconds)), nanoseconds);
    }
}

TEST(NtpTimeNanoseconds, aWaitIsNeverTooShort)
{
    EXPECT_EQ(between({5, 0}, {5, 1}), 1); // less than a nanosecond
    EXPECT_EQ(between({5, 1}, {5, 1}), 0);
    EXPECT_EQ(between({5, 1}, {5, 0}), 0);
    EXPECT_EQ(between({5, 0x80000000}, {7, 0}), 1'500'000'000);
    EXPECT_EQ(between({7, 0}, {5, 0x80000000}), -1'500'000'000);
}

TEST(NtpTimeNanoseconds, staySaturatedBeyondTheirRange)
{
    constexpr int64_t kLowest = std::numeric_limits<int64_t>::min();
    constexpr int64_t kHighest = std::numeric_limits<int64_t>::max();
    EXPECT_EQ(between({0, 0}, {kHighest, 0}), kHighest);
    EXPECT_EQ(between({-5, 0}, {kHighest, 0}), kHighest);
    EXPECT_EQ(between({kHighest, 0}, {0, 0}), kLowest);
    EXPECT_EQ(between({kHighest, 0}, {kLowest, 0}), kLowest);
    EXPECT_EQ(between({5, kFracMax}, {kLowest + 5, 0}), kLowest);
}

} // namespace
