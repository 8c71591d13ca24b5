/* The type support, writer and reader of the shared types that can be the type of a topic. */
#ifndef ZUV_COMMON_SERVICE_COMMON_SUPPORT_H
#define ZUV_COMMON_SERVICE_COMMON_SUPPORT_H

#include "common/ServiceCommon.h"
#include "platform/dds/TypedEndpoints.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_TYPED_ENDPOINTS_DECLARE(ZUV_Service_EntityState, ZUV_Service_EntityStateSeq)

#ifdef __cplusplus
}
#endif

#endif
