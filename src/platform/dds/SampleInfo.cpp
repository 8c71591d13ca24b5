#include "platform/dds/SampleInfo.h"

#include <cstring>

ZUV_SEQUENCE_DEFINE(DDS_SampleInfoSeq, DDS_SampleInfo, nullptr)

const DDS_Time_t DDS_TIME_INVALID = {DDS_TIME_INVALID_SEC, DDS_TIME_INVALID_NSEC};
const DDS_InstanceHandle_t DDS_HANDLE_NIL = {};
const DDS_SampleIdentity_t DDS_UNKNOWN_SAMPLE_IDENTITY = {};

const DDS_SampleInfo DDS_SAMPLEINFO_DEFAULT = [] {
    DDS_SampleInfo info = {};
    info.source_timestamp = {DDS_TIME_INVALID_SEC, DDS_TIME_INVALID_NSEC};
    info.reception_timestamp = {DDS_TIME_INVALID_SEC, DDS_TIME_INVALID_NSEC};
    return info;
}();

const DDS_WriteParams_t DDS_WRITEPARAMS_DEFAULT = [] {
    DDS_WriteParams_t params = {};
    params.source_timestamp = {DDS_TIME_INVALID_SEC, DDS_TIME_INVALID_NSEC};
    return params;
}();

DDS_Boolean DDS_InstanceHandle_equals(const DDS_InstanceHandle_t *left,
                                      const DDS_InstanceHandle_t *right)
{
    if (!left->isValid || !right->isValid) {
        return left->isValid == right->isValid;
    }
    return std::memcmp(left->value, right->value, sizeof(left->value)) == 0;
}

DDS_Boolean DDS_SampleIdentity_equals(const DDS_SampleIdentity_t *left,
                                      const DDS_SampleIdentity_t *right)
{
    return left->sequence_number.low == right->sequence_number.low &&
           left->sequence_number.high == right->sequence_number.high &&
           std::memcmp(left->writer_guid.value, right->writer_guid.value,
                       sizeof(left->writer_guid.value)) == 0;
}

void DDS_SampleInfo_get_sample_identity(const DDS_SampleInfo *self, DDS_SampleIdentity_t *identity)
{
    *identity = self->sample_identity;
}

void DDS_SampleInfo_get_related_sample_identity(const DDS_SampleInfo *self,
                                                DDS_SampleIdentity_t *identity)
{
    *identity = self->related_sample_identity;
}
