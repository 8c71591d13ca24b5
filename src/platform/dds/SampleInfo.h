/* What a reader tells about a sample beside its data, and the identities that tie a reply to its request
 * (OMG DDS 1.4, 2.2.2.5.5; DDSI-RTPS 2.5, 8.3.5.4 and 8.7.9). */
#ifndef ZUV_PLATFORM_DDS_SAMPLE_INFO_H
#define ZUV_PLATFORM_DDS_SAMPLE_INFO_H

#include "platform/typesys/Sequence.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A point in time, counted from the start of 1970. */
typedef struct DDS_Time_t {
    DDS_Long sec;
    DDS_UnsignedLong nanosec;
} DDS_Time_t;

#define DDS_TIME_INVALID_SEC (-1)
#define DDS_TIME_INVALID_NSEC 0xffffffffu
extern const DDS_Time_t DDS_TIME_INVALID;

/* An entity or an instance, as the middleware knows it. A handle that is not valid is DDS_HANDLE_NIL. */
typedef struct DDS_InstanceHandle_t {
    DDS_Octet value[16];
    DDS_Boolean isValid;
} DDS_InstanceHandle_t;

extern const DDS_InstanceHandle_t DDS_HANDLE_NIL;

/* 1 if both are the same entity or instance, or both are nil. Neither may be NULL. */
DDS_Boolean DDS_InstanceHandle_equals(const DDS_InstanceHandle_t *left,
                                      const DDS_InstanceHandle_t *right);

typedef struct DDS_GUID_t {
    DDS_Octet value[16]; /* participant prefix (12), entity id (4) */
} DDS_GUID_t;

typedef struct DDS_SequenceNumber_t {
    DDS_Long high;
    DDS_UnsignedLong low;
} DDS_SequenceNumber_t;

/* Names one sample in the whole domain: who wrote it, and its number there. All zero: unknown. */
typedef struct DDS_SampleIdentity_t {
    DDS_GUID_t writer_guid;
    DDS_SequenceNumber_t sequence_number;
} DDS_SampleIdentity_t;

extern const DDS_SampleIdentity_t DDS_UNKNOWN_SAMPLE_IDENTITY;

/* 1 if both name the same sample. Neither may be NULL. */
DDS_Boolean DDS_SampleIdentity_equals(const DDS_SampleIdentity_t *left,
                                      const DDS_SampleIdentity_t *right);

typedef DDS_UnsignedLong DDS_SampleStateKind;
typedef DDS_UnsignedLong DDS_SampleStateMask;
#define DDS_READ_SAMPLE_STATE 0x1u
#define DDS_NOT_READ_SAMPLE_STATE 0x2u
#define DDS_ANY_SAMPLE_STATE 0xffffu

typedef DDS_UnsignedLong DDS_ViewStateKind;
typedef DDS_UnsignedLong DDS_ViewStateMask;
#define DDS_NEW_VIEW_STATE 0x1u
#define DDS_NOT_NEW_VIEW_STATE 0x2u
#define DDS_ANY_VIEW_STATE 0xffffu

typedef DDS_UnsignedLong DDS_InstanceStateKind;
typedef DDS_UnsignedLong DDS_InstanceStateMask;
#define DDS_ALIVE_INSTANCE_STATE 0x1u
#define DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE 0x2u
#define DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE 0x4u
#define DDS_ANY_INSTANCE_STATE 0xffffu

typedef struct DDS_SampleInfo {
    DDS_SampleStateKind sample_state;
    DDS_ViewStateKind view_state;
    DDS_InstanceStateKind instance_state;
    DDS_Time_t source_timestamp;
    DDS_InstanceHandle_t instance_handle;
    DDS_InstanceHandle_t publication_handle;
    DDS_Long disposed_generation_count;
    DDS_Long no_writers_generation_count;
    DDS_Long sample_rank;
    DDS_Long generation_rank;
    DDS_Long absolute_generation_rank;
    DDS_Boolean
        valid_data; /* 0: the sample tells of an instance's state only, its data mean nothing */
    DDS_Time_t reception_timestamp;
    DDS_SampleIdentity_t sample_identity;         /* of this sample; a reply names it */
    DDS_SampleIdentity_t related_sample_identity; /* of the request that this sample answers */
} DDS_SampleInfo;

/* Everything zero, nil or invalid. */
extern const DDS_SampleInfo DDS_SAMPLEINFO_DEFAULT;

/* Copy an identity out of `self`. Neither may be NULL. */
void DDS_SampleInfo_get_sample_identity(const DDS_SampleInfo *self, DDS_SampleIdentity_t *identity);
void DDS_SampleInfo_get_related_sample_identity(const DDS_SampleInfo *self,
                                                DDS_SampleIdentity_t *identity);

ZUV_SEQUENCE_DECLARE(DDS_SampleInfoSeq, DDS_SampleInfo)

/* What a write may set or learn beside the data. */
typedef struct DDS_WriteParams_t {
    DDS_Boolean replace_auto;                     /* leave in `identity` what the write assigned */
    DDS_SampleIdentity_t identity;                /* out, with replace_auto */
    DDS_SampleIdentity_t related_sample_identity; /* in: the request that this sample answers */
    DDS_Time_t source_timestamp;                  /* in: DDS_TIME_INVALID takes the clock's */
    DDS_InstanceHandle_t handle; /* in: the instance, or nil to find it by the key */
} DDS_WriteParams_t;

/* No identity, no relation, the clock's time. */
extern const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT;

#ifdef __cplusplus
}
#endif

#endif
