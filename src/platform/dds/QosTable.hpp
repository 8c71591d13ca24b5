// The QoS records as data: each policy is one table of fields, each record one table of policies. Defaults, copies,
// release and comparison all run from these tables, and so do reading a record from XML, printing it, the text of the
// schema and the reference in docs/qos.md. A new field is a new row.
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
    kMask,            // DDS_UnsignedLong, bits with names
    kDuration,        // DDS_Duration_t
    kText,            // char *, a DDS string or NULL
    kOctets,          // DDS_OctetSeq
    kTexts,           // DDS_StringSeq
    kRepresentations, // DDS_DataRepresentationIdSeq
    kProperties       // DDS_PropertySeq
};

// What becomes of a field's value.
enum class QosEffect {
    kMiddleware, // set in the middleware, which acts on it
    kAnnounced,  // set in the middleware, which does not act on it; told once
    kSystem,     // this system acts on it, or holds to it in any case
    kKept        // the middleware has no such thing: kept in the record, and told once
};

struct QosEnumerator {
    const char *name;
    std::int32_t value;
};

// The names of an enumeration's values, or of a mask's bits; those of value 0 stand for no bit.
struct QosNames {
    const char *schemaType; // null for a mask, whose type stands where it is used
    std::span<const QosEnumerator> enumerators;
};

// The numbers that a field may have, and the type of the schema for them.
struct QosRange {
    const char *schemaType;
    std::int32_t least;
    bool mayBeUnlimited; // DDS_LENGTH_UNLIMITED, too
};

struct QosField {
    const char *tag; // a member of a nested structure has that one's tag and a dot in front
    QosFieldKind kind;
    std::size_t offset; // in the policy
    QosEffect effect;
    const char *note; // what a user should know of it, or ""
    std::int32_t defaultNumber = 0;
    DDS_Duration_t defaultDuration = {0, 0};
    const QosNames *names = nullptr; // of kEnum and kMask, and for the elements of kRepresentations
    const QosRange *range = nullptr; // of kLong
    const char *unit = "";           // of kLong, where the number counts something
};

struct QosPolicy {
    const char *tag;
    const char *schemaType;
    bool mayChange; // on an entity that is enabled (OMG DDS 1.4, 2.2.3)
    std::span<const QosField> fields;
    const char *nestedSchemaType = nullptr; // of the one nested structure, if there is one
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
    const char *tag; // of its element
    std::size_t size;
    std::span<const QosMember> members;
};

extern const QosRecord kDomainParticipantQosRecord;
extern const QosRecord kTopicQosRecord;
extern const QosRecord kPublisherQosRecord;
extern const QosRecord kSubscriberQosRecord;
extern const QosRecord kDataWriterQosRecord;
extern const QosRecord kDataReaderQosRecord;

// All of them, in this order.
extern const std::span<const QosRecord *const> kQosRecords;

// The greatest size of a record, for a temporary one.
constexpr std::size_t kMaxQosRecordSize = 2048;

// ---- The table at work ----
//
// `table` says what `record` is; `record` is valid, see Qos.h.

void setQosDefaults(const QosRecord &table, void *record);
// False when there is no memory; then `record` is as it was.
bool copyQos(const QosRecord &table, void *record, const void *source);
void finalizeQos(const QosRecord &table, void *record);
bool qosEquals(const QosRecord &table, const void *left, const void *right);

// The number that a field has by default in a record, for kBoolean, kLong, kEnum and kMask.
std::int32_t defaultNumberOf(const QosMember &member, const QosField &field);
// Whether the field of a record has its default value.
bool isQosDefault(const void *record, const QosMember &member, const QosField &field);

// Where a field's value lies in a record.
inline void *qosValueAt(void *record, const QosMember &member, const QosField &field)
{
    return static_cast<char *>(record) + member.offset + field.offset;
}
inline const void *qosValueAt(const void *record, const QosMember &member, const QosField &field)
{
    return static_cast<const char *>(record) + member.offset + field.offset;
}

} // namespace zuv::dds

#endif
