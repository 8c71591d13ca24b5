/* The type supports, writers and readers of the administration protocol. */
#ifndef ZUV_REMOTE_CONFIG_SERVICE_ADMIN_SUPPORT_H
#define ZUV_REMOTE_CONFIG_SERVICE_ADMIN_SUPPORT_H

#include "platform/dds/TypedEndpoints.h"
#include "remoteConfig/ServiceAdmin.h"

#ifdef __cplusplus
extern "C" {
#endif

DDS_TYPED_ENDPOINTS_DECLARE(ZUV_Service_Admin_CommandRequest, ZUV_Service_Admin_CommandRequestSeq)
DDS_TYPED_ENDPOINTS_DECLARE(ZUV_Service_Admin_CommandReply, ZUV_Service_Admin_CommandReplySeq)

#ifdef __cplusplus
}
#endif

#endif
