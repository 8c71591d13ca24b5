#include "platform/dds/Qos.h"

#include <cstring>

#include "QosTable.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"

ZUV_SEQUENCE_DEFINE(DDS_PropertySeq, DDS_Property_t, nullptr)
ZUV_SEQUENCE_DEFINE(DDS_DataRepresentationIdSeq, DDS_DataRepresentationId_t, nullptr)

namespace zuv::dds
{
namespace
{

template <typename Value>
Value &valueAt(void *policy, const QosField &field)
{
    return *reinterpret_cast<Value *>(static_cast<char *>(policy) + field.offset);
}

template <typename Value>
const Value &valueAt(const void *policy, const QosField &field)
{
    return *reinterpret_cast<const Value *>(static_cast<const char *>(policy) + field.offset);
}

// Texts: both absent, or both there and equal.
bool textEquals(const char *left, const char *right)
{
    return (left == nullptr || right == nullptr) ? left == right : std::strcmp(left, right) == 0;
}

bool copyText(char *&self, const char *source)
{
    if (source == nullptr) {
        DDS_String_free(self);
        self = nullptr;
        return true;
    }
    return DDS_String_replace(&self, source) != nullptr;
}

void finalizeProperty(DDS_Property_t &property)
{
    DDS_String_free(property.name);
    DDS_String_free(property.value);
    property = {};
}

void finalizeProperties(DDS_PropertySeq &properties)
{
    for (DDS_Long index = 0; index < DDS_PropertySeq_get_length(&properties); ++index) {
        finalizeProperty(*DDS_PropertySeq_get_reference(&properties, index));
    }
    DDS_PropertySeq_finalize(&properties);
}

bool copyProperties(DDS_PropertySeq &self, const DDS_PropertySeq &source)
{
    const DDS_Long length = DDS_PropertySeq_get_length(&source);
    if (!DDS_PropertySeq_ensure_length(&self, length, length)) {
        return false;
    }
    for (DDS_Long index = 0; index < length; ++index) {
        const DDS_Property_t &from = *DDS_PropertySeq_get_reference(&source, index);
        DDS_Property_t &to = *DDS_PropertySeq_get_reference(&self, index);
        to = {};
        if (!copyText(to.name, from.name) || !copyText(to.value, from.value)) {
            return false;
        }
        to.propagate = from.propagate;
    }
    return true;
}

bool propertiesEqual(const DDS_PropertySeq &left, const DDS_PropertySeq &right)
{
    const DDS_Long length = DDS_PropertySeq_get_length(&left);
    if (length != DDS_PropertySeq_get_length(&right)) {
        return false;
    }
    for (DDS_Long index = 0; index < length; ++index) {
        const DDS_Property_t &one = *DDS_PropertySeq_get_reference(&left, index);
        const DDS_Property_t &other = *DDS_PropertySeq_get_reference(&right, index);
        if (!textEquals(one.name, other.name) || !textEquals(one.value, other.value) ||
            one.propagate != other.propagate) {
            return false;
        }
    }
    return true;
}

bool textsEqual(const DDS_StringSeq &left, const DDS_StringSeq &right)
{
    const DDS_Long length = DDS_StringSeq_get_length(&left);
    if (length != DDS_StringSeq_get_length(&right)) {
        return false;
    }
    for (DDS_Long index = 0; index < length; ++index) {
        if (!textEquals(DDS_StringSeq_get(&left, index), DDS_StringSeq_get(&right, index))) {
            return false;
        }
    }
    return true;
}

// Sequences of plain values: equal lengths and bytes.
template <typename Seq>
bool plainEquals(const Seq &left, const Seq &right)
{
    if (left._length != right._length) {
        return false;
    }
    return left._length == 0 || std::memcmp(left._contiguous_buffer, right._contiguous_buffer,
                                            left._length * sizeof(*left._contiguous_buffer)) == 0;
}

// The operations on one field of a policy. Copies go into empty fields.
void setDefault(void *policy, const QosField &field, std::int32_t number)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        valueAt<DDS_Boolean>(policy, field) = static_cast<DDS_Boolean>(number);
        break;
    case QosFieldKind::kLong:
    case QosFieldKind::kEnum:
        valueAt<DDS_Long>(policy, field) = number;
        break;
    case QosFieldKind::kDuration:
        valueAt<DDS_Duration_t>(policy, field) = field.defaultDuration;
        break;
    default: // everything else is empty by default
        break;
    }
}

bool copyField(void *policy, const void *source, const QosField &field)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        valueAt<DDS_Boolean>(policy, field) = valueAt<DDS_Boolean>(source, field);
        return true;
    case QosFieldKind::kLong:
    case QosFieldKind::kEnum:
        valueAt<DDS_Long>(policy, field) = valueAt<DDS_Long>(source, field);
        return true;
    case QosFieldKind::kDuration:
        valueAt<DDS_Duration_t>(policy, field) = valueAt<DDS_Duration_t>(source, field);
        return true;
    case QosFieldKind::kText:
        return copyText(valueAt<char *>(policy, field), valueAt<char *>(source, field));
    case QosFieldKind::kOctets:
        return DDS_OctetSeq_copy(&valueAt<DDS_OctetSeq>(policy, field),
                                 &valueAt<DDS_OctetSeq>(source, field)) != nullptr;
    case QosFieldKind::kTexts:
        return DDS_StringSeq_copy(&valueAt<DDS_StringSeq>(policy, field),
                                  &valueAt<DDS_StringSeq>(source, field)) != nullptr;
    case QosFieldKind::kRepresentations:
        return DDS_DataRepresentationIdSeq_copy(
                   &valueAt<DDS_DataRepresentationIdSeq>(policy, field),
                   &valueAt<DDS_DataRepresentationIdSeq>(source, field)) != nullptr;
    case QosFieldKind::kProperties:
        return copyProperties(valueAt<DDS_PropertySeq>(policy, field),
                              valueAt<DDS_PropertySeq>(source, field));
    }
    return false;
}

void finalizeField(void *policy, const QosField &field)
{
    switch (field.kind) {
    case QosFieldKind::kText:
        DDS_String_free(valueAt<char *>(policy, field));
        valueAt<char *>(policy, field) = nullptr;
        break;
    case QosFieldKind::kOctets:
        DDS_OctetSeq_finalize(&valueAt<DDS_OctetSeq>(policy, field));
        break;
    case QosFieldKind::kTexts:
        DDS_StringSeq_finalize(&valueAt<DDS_StringSeq>(policy, field));
        break;
    case QosFieldKind::kRepresentations:
        DDS_DataRepresentationIdSeq_finalize(&valueAt<DDS_DataRepresentationIdSeq>(policy, field));
        break;
    case QosFieldKind::kProperties:
        finalizeProperties(valueAt<DDS_PropertySeq>(policy, field));
        break;
    default: // plain values own nothing
        break;
    }
}

bool fieldEquals(const void *left, const void *right, const QosField &field)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        return (valueAt<DDS_Boolean>(left, field) != 0) ==
               (valueAt<DDS_Boolean>(right, field) != 0);
    case QosFieldKind::kLong:
    case QosFieldKind::kEnum:
        return valueAt<DDS_Long>(left, field) == valueAt<DDS_Long>(right, field);
    case QosFieldKind::kDuration: {
        const DDS_Duration_t &one = valueAt<DDS_Duration_t>(left, field);
        const DDS_Duration_t &other = valueAt<DDS_Duration_t>(right, field);
        return one.sec == other.sec && one.nanosec == other.nanosec;
    }
    case QosFieldKind::kText:
        return textEquals(valueAt<char *>(left, field), valueAt<char *>(right, field));
    case QosFieldKind::kOctets:
        return plainEquals(valueAt<DDS_OctetSeq>(left, field), valueAt<DDS_OctetSeq>(right, field));
    case QosFieldKind::kTexts:
        return textsEqual(valueAt<DDS_StringSeq>(left, field),
                          valueAt<DDS_StringSeq>(right, field));
    case QosFieldKind::kRepresentations:
        return plainEquals(valueAt<DDS_DataRepresentationIdSeq>(left, field),
                           valueAt<DDS_DataRepresentationIdSeq>(right, field));
    case QosFieldKind::kProperties:
        return propertiesEqual(valueAt<DDS_PropertySeq>(left, field),
                               valueAt<DDS_PropertySeq>(right, field));
    }
    return false;
}

std::int32_t defaultNumber(const QosMember &member, const QosField &field)
{
    for (const QosDefault &special : member.defaults) {
        if (std::strcmp(special.fieldTag, field.tag) == 0) {
            return special.number;
        }
    }
    return field.defaultNumber;
}

void *policyAt(void *record, const QosMember &member)
{
    return static_cast<char *>(record) + member.offset;
}

const void *policyAt(const void *record, const QosMember &member)
{
    return static_cast<const char *>(record) + member.offset;
}

void finalizeRecord(const QosRecord &table, void *record)
{
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            finalizeField(policyAt(record, member), field);
        }
    }
    std::memset(record, 0, table.size);
}

// Fill an empty record.
void setDefaults(const QosRecord &table, void *record)
{
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            setDefault(policyAt(record, member), field, defaultNumber(member, field));
        }
    }
}

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
    setDefaults(table, self);
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
    finalizeRecord(table, self);
    setDefaults(table, self);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t copy(const QosRecord &table, void *self, const void *source)
{
    if (isNull(self, "self") || isNull(source, "source")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self == source) {
        return DDS_RETCODE_OK;
    }
    // Into a record of its own first, so that `self` is whole whatever happens.
    alignas(std::max_align_t) char fresh[kMaxQosRecordSize] = {};
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            if (!copyField(policyAt(fresh, member), policyAt(source, member), field)) {
                finalizeRecord(table, fresh);
                ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY,
                                 &ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "%s %s.%s", table.name,
                                 member.policy->tag, field.tag);
                return DDS_RETCODE_OUT_OF_RESOURCES;
            }
        }
    }
    finalizeRecord(table, self);
    std::memcpy(self, fresh, table.size);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t finalize(const QosRecord &table, void *self)
{
    if (isNull(self, "self")) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    finalizeRecord(table, self);
    return DDS_RETCODE_OK;
}

DDS_Boolean equals(const QosRecord &table, const void *left, const void *right)
{
    if (left == nullptr || right == nullptr) {
        return left == right ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    }
    for (const QosMember &member : table.members) {
        for (const QosField &field : member.policy->fields) {
            if (!fieldEquals(policyAt(left, member), policyAt(right, member), field)) {
                return DDS_BOOLEAN_FALSE;
            }
        }
    }
    return DDS_BOOLEAN_TRUE;
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
} // namespace zuv::dds

using namespace zuv::dds;

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
