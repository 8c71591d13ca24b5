// Values for the fields of QoS records, found by name.
#ifndef ZUV_TESTS_PLATFORM_DDS_QOS_VALUES_H
#define ZUV_TESTS_PLATFORM_DDS_QOS_VALUES_H

#include <cstring>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "platform/dds/Qos.h"
#include "platform/dds/QosTable.hpp"
#include "platform/typesys/String.h"

namespace zuv_test
{

constexpr char kPropertyName[] = "test.property";

// "policy.field", or "policy.structure.field".
inline std::string nameOf(const zuv::dds::QosMember &member, const zuv::dds::QosField &field)
{
    return std::string(member.policy->tag) + "." + field.tag;
}

inline void setTexts(DDS_StringSeq &texts, std::initializer_list<const char *> values)
{
    DDS_StringSeq_set_length(&texts, static_cast<DDS_Long>(values.size()));
    DDS_Long index = 0;
    for (const char *const value : values) {
        DDS_String_replace(DDS_StringSeq_get_reference(&texts, index++), value);
    }
}

// Give a field a value: `number` itself, or that many seconds and 5 nanoseconds, or a list with it alone; texts,
// octets and properties have one value each.
inline void setField(void *record, const zuv::dds::QosMember &member,
                     const zuv::dds::QosField &field, std::int32_t number)
{
    using zuv::dds::QosFieldKind;
    void *const place = zuv::dds::qosValueAt(record, member, field);
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        *static_cast<DDS_Boolean *>(place) = static_cast<DDS_Boolean>(number);
        break;
    case QosFieldKind::kLong:
    case QosFieldKind::kEnum:
    case QosFieldKind::kMask:
        *static_cast<DDS_Long *>(place) = number;
        break;
    case QosFieldKind::kDuration:
        *static_cast<DDS_Duration_t *>(place) = {number, 5};
        break;
    case QosFieldKind::kText:
        DDS_String_replace(static_cast<char **>(place), "a name");
        break;
    case QosFieldKind::kOctets: {
        const DDS_Octet octets[] = {1, 2, 3};
        DDS_OctetSeq_from_array(static_cast<DDS_OctetSeq *>(place), octets, 3);
        break;
    }
    case QosFieldKind::kTexts:
        setTexts(*static_cast<DDS_StringSeq *>(place), {"one", "two"});
        break;
    case QosFieldKind::kRepresentations: {
        const auto id = static_cast<DDS_DataRepresentationId_t>(number);
        DDS_DataRepresentationIdSeq_from_array(static_cast<DDS_DataRepresentationIdSeq *>(place),
                                               &id, 1);
        break;
    }
    case QosFieldKind::kProperties:
        DDS_PropertyQosPolicyHelper_assert_property(static_cast<DDS_PropertyQosPolicy *>(place),
                                                    kPropertyName, "value", DDS_BOOLEAN_TRUE);
        break;
    }
}

inline void setField(const zuv::dds::QosRecord &table, void *record, const std::string &name,
                     std::int32_t number)
{
    for (const zuv::dds::QosMember &member : table.members) {
        for (const zuv::dds::QosField &field : member.policy->fields) {
            if (nameOf(member, field) == name) {
                setField(record, member, field, number);
                return;
            }
        }
    }
    throw std::logic_error("no field " + name);
}

} // namespace zuv_test

#endif
