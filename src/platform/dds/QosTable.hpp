// The QoS records as data: each policy is one table of fields, each record one table of policies. Defaults,
// copies, release and comparison all run from these tables; a new field is a new row.
#ifndef ZUV_PLATFORM_DDS_QOS_TABLE_HPP
#define ZUV_PLATFORM_DDS_QOS_TABLE_HPP

#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/osapi/Time.h"

namespace zuv::dds
{

// What lies in memory at a field's offset.
enum class QosFieldKind {
    kBoolean,         // DDS_Boolean
    kLong,            // DDS_Long
    kEnum,            // an enumeration of 32 bits
    kDuration,        // DDS_Duration_t
    kText,            // char *, a DDS string or NULL
    kOctets,          // DDS_OctetSeq
    kTexts,           // DDS_StringSeq
    kRepresentations, // DDS_DataRepresentationIdSeq
    kProperties       // DDS_PropertySeq
};

struct QosEnumerator {
    const char *name;
    std::int32_t value;
};

struct QosField {
    const char *tag; // members of a nested structure are joined by a dot
    QosFieldKind kind;
    std::size_t offset; // in the policy
    std::int32_t defaultNumber = 0;
    DDS_Duration_t defaultDuration = {0, 0};
    std::span<const QosEnumerator> enumerators = {};
};

struct QosPolicy {
    const char *tag;
    std::span<const QosField> fields;
};

// A default that differs in one record.
struct QosDefault {
    const char *fieldTag;
    std::int32_t number;
};

struct QosMember {
    const QosPolicy *policy;
    std::size_t offset; // in the record
    std::span<const QosDefault> defaults = {};
};

struct QosRecord {
    const char *name;
    std::size_t size;
    std::span<const QosMember> members;
};

extern const QosRecord kDomainParticipantQosRecord;
extern const QosRecord kTopicQosRecord;
extern const QosRecord kPublisherQosRecord;
extern const QosRecord kSubscriberQosRecord;
extern const QosRecord kDataWriterQosRecord;
extern const QosRecord kDataReaderQosRecord;

// The greatest size of a record, for a temporary one.
constexpr std::size_t kMaxQosRecordSize = 2048;

} // namespace zuv::dds

#endif
