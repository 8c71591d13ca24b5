/* Spans of time, in the form that DDS gives them (OMG DDS 1.4, 2.3.3). */
#ifndef ZUV_PLATFORM_OSAPI_TIME_H
#define ZUV_PLATFORM_OSAPI_TIME_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* `sec` seconds plus `nanosec` nanoseconds; nanosec is below 1 000 000 000 except in the infinite span. */
typedef struct DDS_Duration_t {
    int32_t sec;
    uint32_t nanosec;
} DDS_Duration_t;

#define DDS_DURATION_INFINITE_SEC 0x7fffffff
#define DDS_DURATION_INFINITE_NSEC 0x7fffffffu
#define DDS_DURATION_ZERO_SEC 0
#define DDS_DURATION_ZERO_NSEC 0u

extern const DDS_Duration_t DDS_DURATION_INFINITE;
extern const DDS_Duration_t DDS_DURATION_ZERO;

/* 1 for the infinite span, which is one with either member at its infinite value; NULL is not allowed. */
int DDS_Duration_is_infinite(const DDS_Duration_t *duration);

/* 1 if both members are 0; NULL is not allowed. */
int DDS_Duration_is_zero(const DDS_Duration_t *duration);

/* The span in nanoseconds: INT64_MAX for the infinite one, 0 for a negative one. NULL is not allowed. */
int64_t DDS_Duration_to_nanoseconds(const DDS_Duration_t *duration);

#ifdef __cplusplus
}
#endif

#endif
