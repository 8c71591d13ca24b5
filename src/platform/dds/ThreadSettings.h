/* What is asked of the threads that the middleware makes. */
#ifndef ZUV_PLATFORM_DDS_THREAD_SETTINGS_H
#define ZUV_PLATFORM_DDS_THREAD_SETTINGS_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef DDS_UnsignedLong DDS_ThreadSettingsKindMask;

#define DDS_THREAD_SETTINGS_FLOATING_POINT 1u
#define DDS_THREAD_SETTINGS_STDIO 2u
#define DDS_THREAD_SETTINGS_REALTIME_PRIORITY 8u
#define DDS_THREAD_SETTINGS_PRIORITY_ENFORCE 16u
#define DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT 0u

#ifdef __cplusplus
}
#endif

#endif
