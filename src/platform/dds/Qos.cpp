#include "platform/dds/Qos.h"

#include <cstring>

#include "QosField.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"

namespace zuv::dds
{
namespace
{

void *policyAt(void *record, const QosMember &member)
{
    return static_cast<char *>(record) + member.offset;
}

const void *policyAt(const void *record, const QosMember &member)
{
    return static_cast<const char *>(record) + member.offset;
}

} // namespace

std::int32_t defaultNumberOf(const QosMember &member, const QosField &field)
{
    for (const QosDefault &special : member.defaults) {
        if (std::strcmp(special.fieldTag, field.tag) == 0) {
            return special.number;
        }
    }
    return field.defaultNumber;
}

bool isQosDefault(const void *record, const QosMember &member, const QosField &field)
{
    alignas(std::max_align_t) char value[kMaxQosFieldSize] = {};
    QosField alone = field;
    alone.offset = 0;
    setDefault(value, alone, defaultNumberOf(member, field));
    return fieldEquals(qosValueAt(record, member, field), value, alone);
}

void finalizeQos(const QosRecord &table, void *record)
{
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            finalizeField(policyAt(record, member), field);
        }
    }
    std::memset(record, 0, table.size);
}

void setQosDefaults(const QosRecord &table, void *record)
{
    finalizeQos(table, record);
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            setDefault(policyAt(record, member), field, defaultNumberOf(member, field));
        }
    }
}

bool copyQos(const QosRecord &table, void *record, const void *source)
{
    if (record == source) {
        return true;
    }
    // Into a record of its own first, so that `record` is whole whatever happens.
    alignas(std::max_align_t) char fresh[kMaxQosRecordSize] = {};
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            if (!copyField(policyAt(fresh, member), policyAt(source, member), field)) {
                finalizeQos(table, fresh);
                ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY,
                                 &ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "%s %s.%s", table.name,
                                 member.policy->tag, field.tag);
                return false;
            }
        }
    }
    finalizeQos(table, record);
    std::memcpy(record, fresh, table.size);
    return true;
}

bool qosEquals(const QosRecord &table, const void *left, const void *right)
{
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            if (!fieldEquals(policyAt(left, member), policyAt(right, member), field)) {
                return false;
            }
        }
    }
    return true;
}

} // namespace zuv::dds

using namespace zuv::dds;

namespace
{

bool isNull(const void *argument, const char *name)
{
    if (argument == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, &DDS_LOG_BAD_PARAMETER_s, name);
        return true;
    }
    return false;
}

DDS_ReturnCode_t initialize(const QosRecord &table, void *self)
{
    if (isNull(self, "self")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    std::memset(self, 0, table.size);
    if (ZUV_OSAPI_FAULT("dds.qos_default")) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, &ZUV_LOG_INIT_FAILURE_s,
                table.name);
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    setQosDefaults(table, self);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t getDefault(const QosRecord &table, void *self)
{
    if (isNull(self, "self")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.qos_default")) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, &ZUV_LOG_GET_FAILURE_s,
                table.name);
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    setQosDefaults(table, self);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t copy(const QosRecord &table, void *self, const void *source)
{
    if (isNull(self, "self") || isNull(source, "source")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return copyQos(table, self, source) ? DDS_RETCODE_OK : DDS_RETCODE_OUT_OF_RESOURCES;
}

DDS_ReturnCode_t finalize(const QosRecord &table, void *self)
{
    if (isNull(self, "self")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    finalizeQos(table, self);
    return DDS_RETCODE_OK;
}

DDS_Boolean equals(const QosRecord &table, const void *left, const void *right)
{
    const bool isEqual =
        left == nullptr || right == nullptr ? left == right : qosEquals(table, left, right);
    return isEqual ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_Long indexOfProperty(const DDS_PropertyQosPolicy &policy, const char *name)
{
    for (DDS_Long index = 0; index < DDS_PropertySeq_get_length(&policy.value); ++index) {
        const char *known = DDS_PropertySeq_get_reference(&policy.value, index)->name;
        if (known != nullptr && std::strcmp(known, name) == 0) {
            return index;
        }
    }
    return -1;
}

} // namespace

#define DDS_QOS_DEFINE(NAME)                                                                       \
    DDS_ReturnCode_t DDS_##NAME##_initialize(DDS_##NAME *self)                                     \
    {                                                                                              \
        return initialize(k##NAME##Record, self);                                                  \
    }                                                                                              \
    DDS_ReturnCode_t DDS_##NAME##_get_defaultI(DDS_##NAME *self)                                   \
    {                                                                                              \
        return getDefault(k##NAME##Record, self);                                                  \
    }                                                                                              \
    DDS_ReturnCode_t DDS_##NAME##_copy(DDS_##NAME *self, const DDS_##NAME *source)                 \
    {                                                                                              \
        return copy(k##NAME##Record, self, source);                                                \
    }                                                                                              \
    DDS_ReturnCode_t DDS_##NAME##_finalize(DDS_##NAME *self)                                       \
    {                                                                                              \
        return finalize(k##NAME##Record, self);                                                    \
    }                                                                                              \
    DDS_Boolean DDS_##NAME##_equals(const DDS_##NAME *left, const DDS_##NAME *right)               \
    {                                                                                              \
        return equals(k##NAME##Record, left, right);                                               \
    }

DDS_QOS_DEFINE(DomainParticipantQos)
DDS_QOS_DEFINE(TopicQos)
DDS_QOS_DEFINE(PublisherQos)
DDS_QOS_DEFINE(SubscriberQos)
DDS_QOS_DEFINE(DataWriterQos)
DDS_QOS_DEFINE(DataReaderQos)

#undef DDS_QOS_DEFINE

const DDS_TopicQos DDS_TOPIC_QOS_DEFAULT = {};
const DDS_DomainParticipantQos DDS_PARTICIPANT_QOS_DEFAULT = {};
const DDS_PublisherQos DDS_PUBLISHER_QOS_DEFAULT = {};
const DDS_SubscriberQos DDS_SUBSCRIBER_QOS_DEFAULT = {};
const DDS_DataWriterQos DDS_DATAWRITER_QOS_DEFAULT = {};
const DDS_DataReaderQos DDS_DATAREADER_QOS_DEFAULT = {};

DDS_ReturnCode_t DDS_PropertyQosPolicyHelper_assert_property(DDS_PropertyQosPolicy *policy,
                                                             const char *name, const char *value,
                                                             DDS_Boolean propagate)
{
    if (isNull(policy, "policy") || isNull(name, "name") || isNull(value, "value")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    char *const newValue = DDS_String_dup(value);
    DDS_Long index = indexOfProperty(*policy, name);
    bool success = newValue != nullptr;
    if (success && index < 0) {
        char *const newName = DDS_String_dup(name);
        index = DDS_PropertySeq_get_length(&policy->value);
        success = newName != nullptr && DDS_PropertySeq_set_length(&policy->value, index + 1);
        if (success) {
            *DDS_PropertySeq_get_reference(&policy->value, index) = {newName, nullptr, 0};
        } else {
            DDS_String_free(newName);
        }
    }
    if (!success) {
        DDS_String_free(newValue);
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, &ZUV_LOG_ASSERT_FAILURE_s, name);
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    DDS_Property_t &property = *DDS_PropertySeq_get_reference(&policy->value, index);
    DDS_String_free(property.value);
    property.value = newValue;
    property.propagate = propagate;
    return DDS_RETCODE_OK;
}

const DDS_Property_t *
DDS_PropertyQosPolicyHelper_lookup_property(const DDS_PropertyQosPolicy *policy, const char *name)
{
    if (policy == nullptr || name == nullptr) {
        return nullptr;
    }
    const DDS_Long index = indexOfProperty(*policy, name);
    return index < 0 ? nullptr : DDS_PropertySeq_get_reference(&policy->value, index);
}

DDS_ReturnCode_t DDS_PropertyQosPolicyHelper_remove_property(DDS_PropertyQosPolicy *policy,
                                                             const char *name)
{
    if (isNull(policy, "policy") || isNull(name, "name")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_Long index = indexOfProperty(*policy, name);
    if (index < 0) {
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    const DDS_Long length = DDS_PropertySeq_get_length(&policy->value);
    finalizeProperty(*DDS_PropertySeq_get_reference(&policy->value, index));
    for (DDS_Long next = index + 1; next < length; ++next) {
        *DDS_PropertySeq_get_reference(&policy->value, next - 1) =
            *DDS_PropertySeq_get_reference(&policy->value, next);
    }
    *DDS_PropertySeq_get_reference(&policy->value, length - 1) = {};
    DDS_PropertySeq_set_length(&policy->value, length - 1);
    return DDS_RETCODE_OK;
}
