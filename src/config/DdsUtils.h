/* Small operations on records of the DDS API. */
#ifndef ZUV_CONFIG_DDS_UTILS_H
#define ZUV_CONFIG_DDS_UTILS_H

#include "common/ServiceCommon.h"
#include "platform/dds/AllocationSettings.h"
#include "platform/dds/InstanceHandleSeq.h"
#include "platform/osapi/PoolGrowth.h"

#ifdef __cplusplus
extern "C" {
#endif

/* 1 if both have the same texts in the same order; two NULL elements are equal. Neither sequence may be NULL:
 * 0 after a report. */
int BRELUtils_StringSeq_equals(const DDS_StringSeq *a, const DDS_StringSeq *b);

/* 1 if the handle is an element of the sequence. Neither may be NULL: 0 after a report. */
int BRELUtils_isHandleInSequence(const DDS_InstanceHandleSeq *handleSeq,
                                 const DDS_InstanceHandle_t *handle);

/* The four words of a built-in topic's key, from the GUID of its entity: each is the number that four octets
 * spell, the most significant first. Neither may be NULL; nothing happens after the report of one that is. */
void BRELUtils_guidToBuiltinTopicKey(ZUV_Service_BuiltinTopicKey *out, const DDS_GUID_t *in);

/* Let a pool grow as `settings` say; no limit there is none here. Neither may be NULL; nothing happens after
 * the report of one that is. */
void BRELUtils_allocationSettingsToGrowthProperty(ZUVOsapiPoolGrowthProperty *growth,
                                                  const DDS_AllocationSettings_t *settings);

#ifdef __cplusplus
}
#endif

#endif
