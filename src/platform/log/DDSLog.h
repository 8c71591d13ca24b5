/* The log switches of the middleware: types, entities, request/reply and the typed endpoints use
 * ZUV_LOG(DDS, level, DDS_SUBMODULE_..., ...). */
#ifndef ZUV_PLATFORM_LOG_DDS_LOG_H
#define ZUV_PLATFORM_LOG_DDS_LOG_H

#include "platform/log/Log.h"

#ifdef __cplusplus
extern "C" {
#endif

#define DDS_LOG_MODULE_ID 0xf0000u

#define DDS_SUBMODULE_TYPES 0x1u        /* type descriptions, samples and their serialized form */
#define DDS_SUBMODULE_SEQUENCE 0x2u     /* sequences and strings */
#define DDS_SUBMODULE_ENTITY 0x4u       /* entities, QoS, conditions */
#define DDS_SUBMODULE_FILTER 0x8u       /* content filters */
#define DDS_SUBMODULE_API 0x10u         /* typed endpoints */
#define DDS_SUBMODULE_TALVANE 0x20u     /* untyped request/reply */
#define DDS_SUBMODULE_CONCURRENCY 0x40u /* workers, exclusive areas, events */

/* At first fatal messages and exceptions of every submodule pass. Store to them with a single aligned
 * write; a log site on another thread may see the old value for a moment. */
extern uint32_t DDSLog_g_instrumentationMask;
extern uint32_t DDSLog_g_submoduleMask;

#ifdef __cplusplus
}
#endif

#endif
