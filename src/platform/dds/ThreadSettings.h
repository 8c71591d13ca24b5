/* What is asked of the threads that the middleware makes. */
#ifndef ZUV_PLATFORM_DDS_THREAD_SETTINGS_H
#define ZUV_PLATFORM_DDS_THREAD_SETTINGS_H

#include "platform/typesys/PrimitiveSequences.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef DDS_UnsignedLong DDS_ThreadSettingsKindMask;

#define DDS_THREAD_SETTINGS_FLOATING_POINT 1u
#define DDS_THREAD_SETTINGS_STDIO 2u
#define DDS_THREAD_SETTINGS_REALTIME_PRIORITY 8u
#define DDS_THREAD_SETTINGS_PRIORITY_ENFORCE 16u
#define DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT 0u

/* "Whatever the system gives." */
#define DDS_THREAD_PRIORITY_DEFAULT (-9999999)
#define DDS_THREAD_STACK_SIZE_DEFAULT (-1)

typedef enum DDS_ThreadSettingsCpuRotationKind {
    DDS_THREAD_SETTINGS_CPU_NO_ROTATION = 0, /* each thread may run on all processors of the list */
    DDS_THREAD_SETTINGS_CPU_RR_ROTATION = 1  /* one processor a thread, taking turns */
} DDS_ThreadSettingsCpuRotationKind;

/* How the threads of a pool are made. A priority is asked of the system with the bit REALTIME_PRIORITY alone, as
 * that of a thread scheduled first in, first out; when the system refuses, the thread is made without one, or with
 * the bit PRIORITY_ENFORCE not at all. The bits FLOATING_POINT and STDIO ask for nothing here: every thread has
 * both. The sequence belongs to the record. */
typedef struct DDS_ThreadSettings_t {
    DDS_ThreadSettingsKindMask mask;
    DDS_Long priority;     /* or DDS_THREAD_PRIORITY_DEFAULT */
    DDS_Long stack_size;   /* in bytes, or DDS_THREAD_STACK_SIZE_DEFAULT */
    DDS_LongSeq cpu_list;  /* numbers of processors; empty: all */
    DDS_Long cpu_rotation; /* a DDS_ThreadSettingsCpuRotationKind */
} DDS_ThreadSettings_t;

#ifdef __cplusplus
}
#endif

#endif
