/* How a pool of buffers or objects grows. */
#ifndef ZUV_PLATFORM_OSAPI_POOL_GROWTH_H
#define ZUV_PLATFORM_OSAPI_POOL_GROWTH_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#define ZUV_OSAPI_POOL_UNLIMITED (-1)

/* In elements; the last two may be ZUV_OSAPI_POOL_UNLIMITED, which for the increment means doubling. */
typedef struct ZUVOsapiPoolGrowthProperty {
    int32_t initial;
    int32_t maximal;
    int32_t increment;
} ZUVOsapiPoolGrowthProperty;

#ifdef __cplusplus
}
#endif

#endif
