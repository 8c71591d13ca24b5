#include "QosField.hpp"

#include <cstring>

#include "platform/dds/QosPolicies.h"
#include "platform/typesys/String.h"

ZUV_SEQUENCE_DEFINE(DDS_PropertySeq, DDS_Property_t, nullptr)
ZUV_SEQUENCE_DEFINE(DDS_DataRepresentationIdSeq, DDS_DataRepresentationId_t, nullptr)

namespace zuv::dds
{

static_assert(sizeof(DDS_PropertySeq) <= kMaxQosFieldSize);

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

} // namespace

void finalizeProperty(DDS_Property_t &property)
{
    DDS_String_free(property.name);
    DDS_String_free(property.value);
    property = {};
}

void setDefault(void *policy, const QosField &field, std::int32_t number)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        valueAt<DDS_Boolean>(policy, field) = static_cast<DDS_Boolean>(number);
        break;
    case QosFieldKind::kLong:
    case QosFieldKind::kEnum:
    case QosFieldKind::kMask:
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
    case QosFieldKind::kMask:
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
    case QosFieldKind::kMask:
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

} // namespace zuv::dds
