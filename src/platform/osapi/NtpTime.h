/* Points and spans of time in the form of the Network Time Protocol (RFC 5905, 6): whole seconds and a
 * binary fraction. A time is `sec` + `frac` / 2^32 seconds, so that a span below zero has a negative `sec`
 * and a fraction that still counts upwards.
 *
 * A `sec` of 0xFFFFFFFF or more is infinite. No argument may be NULL; everything may be called from any
 * thread. */
#ifndef ZUV_PLATFORM_OSAPI_NTP_TIME_H
#define ZUV_PLATFORM_OSAPI_NTP_TIME_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUVNtpTime {
    int64_t sec;
    uint32_t frac;
} ZUVNtpTime;

#define ZUV_NTP_TIME_SEC_INFINITE INT64_C(0xFFFFFFFF)

extern const ZUVNtpTime ZUV_NTP_TIME_ZERO;
extern const ZUVNtpTime ZUV_NTP_TIME_INFINITE; /* both members 0xFFFFFFFF */

int ZUVNtpTime_isInfinite(const ZUVNtpTime *time);

/* Below, at or above 0 as `left` is before, at or behind `right`. Infinite times follow their numbers like
 * all others. */
int ZUVNtpTime_compare(const ZUVNtpTime *left, const ZUVNtpTime *right);

/* Store `time` + `span` in `*sum`, which may be one of the two. An infinite span is the sum as it stands; with
 * an infinite time the sum is ZUV_NTP_TIME_INFINITE. A sum stays between -0xFFFFFFFF and 0xFFFFFFFF seconds:
 * seconds beyond that are cut before the fractions are added, and a carry of the fractions that would pass the
 * upper end makes the fraction 0xFFFFFFFF instead. */
void ZUVNtpTime_add(ZUVNtpTime *sum, const ZUVNtpTime *time, const ZUVNtpTime *span);

/* Store the time that is `nanoseconds` from zero, cut down to the fraction below. */
void ZUVNtpTime_fromNanoseconds(ZUVNtpTime *time, int64_t nanoseconds);

/* The nanoseconds from `from` to `to`, cut up to the next whole one; negative when `to` comes first. What does
 * not fit is INT64_MAX or INT64_MIN. */
int64_t ZUVNtpTime_getNanosecondsBetween(const ZUVNtpTime *from, const ZUVNtpTime *to);

#ifdef __cplusplus
}
#endif

#endif
