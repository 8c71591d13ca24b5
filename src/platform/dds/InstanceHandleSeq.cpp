#include "platform/dds/InstanceHandleSeq.h"

extern "C" {
ZUV_SEQUENCE_DEFINE(DDS_InstanceHandleSeq, DDS_InstanceHandle_t, NULL)
}
