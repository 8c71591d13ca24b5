/* Sequences of handles. */
#ifndef ZUV_PLATFORM_DDS_INSTANCE_HANDLE_SEQ_H
#define ZUV_PLATFORM_DDS_INSTANCE_HANDLE_SEQ_H

#include "platform/dds/SampleInfo.h"

#ifdef __cplusplus
extern "C" {
#endif

ZUV_SEQUENCE_DECLARE(DDS_InstanceHandleSeq, DDS_InstanceHandle_t)

#ifdef __cplusplus
}
#endif

#endif
