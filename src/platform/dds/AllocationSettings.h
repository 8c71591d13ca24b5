/* How many objects of a kind the middleware sets aside. */
#ifndef ZUV_PLATFORM_DDS_ALLOCATION_SETTINGS_H
#define ZUV_PLATFORM_DDS_ALLOCATION_SETTINGS_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_AllocationSettings_t {
    DDS_Long initial_count;
    DDS_Long max_count;         /* DDS_LENGTH_UNLIMITED: no limit */
    DDS_Long incremental_count; /* DDS_LENGTH_UNLIMITED: doubles */
} DDS_AllocationSettings_t;

#ifdef __cplusplus
}
#endif

#endif
