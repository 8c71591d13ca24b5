#include "QosPolicyTable.hpp"

#include "platform/dds/QosPolicies.h"

namespace zuv::dds
{
namespace
{

constexpr DDS_Duration_t kInfinite = {DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC};
constexpr DDS_Duration_t kZero = {0, 0};
constexpr DDS_Duration_t kMaxBlockingTime = {0, 100'000'000};
// A lost sample or acknowledgement is noticed within one period.
constexpr DDS_Duration_t kHeartbeatPeriod = {0, 100'000'000};
// Readers also ask for pieces of a large sample that are on their way. Answered rarely, most of them have come by then.
constexpr DDS_Duration_t kResponseDelay = {0, 20'000'000};
constexpr std::int32_t kUnlimited = DDS_LENGTH_UNLIMITED;

using enum QosEffect;

// ---- Numbers ----

constexpr QosRange kAnyNumber = {"long", INT32_MIN, false};
constexpr QosRange kNotNegative = {"nonNegativeLong", 0, false};
constexpr QosRange kPositive = {"positiveLong", 1, false};
constexpr QosRange kPositiveOrUnlimited = {"positiveIntegerUnlimited", 1, true};
constexpr QosRange kNotNegativeOrUnlimited = {"nonNegativeIntegerUnlimited", 0, true};

// ---- Names of values ----

#define ENUMERATOR(name)                                                                           \
    {                                                                                              \
#name, DDS_##name                                                                          \
    }

constexpr QosEnumerator kDurabilityEnumerators[] = {
    ENUMERATOR(VOLATILE_DURABILITY_QOS),
    ENUMERATOR(TRANSIENT_LOCAL_DURABILITY_QOS),
    ENUMERATOR(TRANSIENT_DURABILITY_QOS),
    ENUMERATOR(PERSISTENT_DURABILITY_QOS),
};
constexpr QosEnumerator kHistoryEnumerators[] = {
    ENUMERATOR(KEEP_LAST_HISTORY_QOS),
    ENUMERATOR(KEEP_ALL_HISTORY_QOS),
};
constexpr QosEnumerator kReliabilityEnumerators[] = {
    ENUMERATOR(BEST_EFFORT_RELIABILITY_QOS),
    ENUMERATOR(RELIABLE_RELIABILITY_QOS),
};
constexpr QosEnumerator kLivelinessEnumerators[] = {
    ENUMERATOR(AUTOMATIC_LIVELINESS_QOS),
    ENUMERATOR(MANUAL_BY_PARTICIPANT_LIVELINESS_QOS),
    ENUMERATOR(MANUAL_BY_TOPIC_LIVELINESS_QOS),
};
constexpr QosEnumerator kOwnershipEnumerators[] = {
    ENUMERATOR(SHARED_OWNERSHIP_QOS),
    ENUMERATOR(EXCLUSIVE_OWNERSHIP_QOS),
};
constexpr QosEnumerator kDestinationOrderEnumerators[] = {
    ENUMERATOR(BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS),
    ENUMERATOR(BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS),
};
constexpr QosEnumerator kAccessScopeEnumerators[] = {
    ENUMERATOR(INSTANCE_PRESENTATION_QOS),
    ENUMERATOR(TOPIC_PRESENTATION_QOS),
    ENUMERATOR(GROUP_PRESENTATION_QOS),
};
constexpr QosEnumerator kServiceEnumerators[] = {
    ENUMERATOR(NO_SERVICE_QOS),
    ENUMERATOR(BREL_SERVICE_QOS),
};
constexpr QosEnumerator kRepresentationEnumerators[] = {
    ENUMERATOR(AUTO_DATA_REPRESENTATION),
    ENUMERATOR(XCDR_DATA_REPRESENTATION),
    ENUMERATOR(XML_DATA_REPRESENTATION),
    ENUMERATOR(XCDR2_DATA_REPRESENTATION),
};
constexpr QosEnumerator kTransportBits[] = {
    {"NONE", DDS_TRANSPORTBUILTIN_MASK_NONE},
    {"UDPv4", DDS_TRANSPORTBUILTIN_UDPv4},
    {"UDPv6", DDS_TRANSPORTBUILTIN_UDPv6},
    {"SHMEM", DDS_TRANSPORTBUILTIN_SHMEM},
};

#undef ENUMERATOR

constexpr QosNames kDurabilityKinds = {"durabilityKind", kDurabilityEnumerators};
constexpr QosNames kHistoryKinds = {"historyKind", kHistoryEnumerators};
constexpr QosNames kReliabilityKinds = {"reliabilityKind", kReliabilityEnumerators};
constexpr QosNames kLivelinessKinds = {"livelinessKind", kLivelinessEnumerators};
constexpr QosNames kOwnershipKinds = {"ownershipKind", kOwnershipEnumerators};
constexpr QosNames kDestinationOrderKinds = {"destinationOrderKind", kDestinationOrderEnumerators};
constexpr QosNames kAccessScopeKinds = {"presentationAccessScopeKind", kAccessScopeEnumerators};
constexpr QosNames kServiceKinds = {"serviceKind", kServiceEnumerators};
constexpr QosNames kRepresentationKinds = {"dataRepresentationKind", kRepresentationEnumerators};
constexpr QosNames kTransportKinds = {nullptr, kTransportBits};

// ---- Rows ----

constexpr QosField boolean(const char *tag, std::size_t offset, bool value, QosEffect effect,
                           const char *note = "")
{
    return {tag, QosFieldKind::kBoolean, offset, effect, note, value ? 1 : 0};
}

constexpr QosField number(const char *tag, std::size_t offset, const QosRange &range,
                          const char *unit, std::int32_t value, QosEffect effect,
                          const char *note = "")
{
    return {tag, QosFieldKind::kLong, offset, effect, note, value, kZero, nullptr, &range, unit};
}

constexpr QosField duration(const char *tag, std::size_t offset, DDS_Duration_t value,
                            QosEffect effect, const char *note = "")
{
    return {tag, QosFieldKind::kDuration, offset, effect, note, 0, value};
}

constexpr QosField enumeration(const char *tag, std::size_t offset, const QosNames &names,
                               std::int32_t value, QosEffect effect, const char *note = "")
{
    return {tag, QosFieldKind::kEnum, offset, effect, note, value, kZero, &names};
}

constexpr QosField mask(const char *tag, std::size_t offset, const QosNames &names,
                        std::uint32_t value, QosEffect effect, const char *note)
{
    return {
        tag,   QosFieldKind::kMask, offset, effect, note, static_cast<std::int32_t>(value), kZero,
        &names};
}

// Everything whose default is to be empty.
constexpr QosField empty(const char *tag, QosFieldKind kind, std::size_t offset, QosEffect effect,
                         const char *note = "", const QosNames *names = nullptr)
{
    return {tag, kind, offset, effect, note, 0, kZero, names};
}

#define AT(policy, field) offsetof(DDS_##policy##QosPolicy, field)

constexpr QosField kUserDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(UserData, value), kMiddleware),
};
constexpr QosField kTopicDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(TopicData, value), kMiddleware),
};
constexpr QosField kGroupDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(GroupData, value), kMiddleware),
};
constexpr QosField kDurabilityFields[] = {
    enumeration("kind", AT(Durability, kind), kDurabilityKinds, DDS_VOLATILE_DURABILITY_QOS,
                kMiddleware,
                "TRANSIENT needs a persistence service of the middleware, which the properties "
                "`dds.persistence.plugin` and `dds.persistence.guid` name; without one, and with "
                "PERSISTENT, the endpoint is refused."),
};
constexpr QosField kDurabilityServiceFields[] = {
    duration("service_cleanup_delay", AT(DurabilityService, service_cleanup_delay), kZero,
             kAnnounced),
    enumeration("history_kind", AT(DurabilityService, history_kind), kHistoryKinds,
                DDS_KEEP_LAST_HISTORY_QOS, kAnnounced),
    number("history_depth", AT(DurabilityService, history_depth), kPositive, "samples", 1,
           kAnnounced),
    number("max_samples", AT(DurabilityService, max_samples), kPositiveOrUnlimited, "samples",
           kUnlimited, kAnnounced),
    number("max_instances", AT(DurabilityService, max_instances), kPositiveOrUnlimited, "instances",
           kUnlimited, kAnnounced),
    number("max_samples_per_instance", AT(DurabilityService, max_samples_per_instance),
           kPositiveOrUnlimited, "samples", kUnlimited, kAnnounced),
};
constexpr QosField kPresentationFields[] = {
    enumeration("access_scope", AT(Presentation, access_scope), kAccessScopeKinds,
                DDS_INSTANCE_PRESENTATION_QOS, kAnnounced),
    boolean("coherent_access", AT(Presentation, coherent_access), false, kAnnounced),
    boolean("ordered_access", AT(Presentation, ordered_access), false, kAnnounced),
};
constexpr QosField kDeadlineFields[] = {
    duration("period", AT(Deadline, period), kInfinite, kMiddleware),
};
constexpr QosField kLatencyBudgetFields[] = {
    duration("duration", AT(LatencyBudget, duration), kZero, kAnnounced),
};
constexpr QosField kOwnershipFields[] = {
    enumeration("kind", AT(Ownership, kind), kOwnershipKinds, DDS_SHARED_OWNERSHIP_QOS,
                kMiddleware),
};
constexpr QosField kOwnershipStrengthFields[] = {
    number("value", AT(OwnershipStrength, value), kNotNegative, "", 0, kMiddleware),
};
constexpr QosField kLivelinessFields[] = {
    enumeration("kind", AT(Liveliness, kind), kLivelinessKinds, DDS_AUTOMATIC_LIVELINESS_QOS,
                kMiddleware),
    duration("lease_duration", AT(Liveliness, lease_duration), kInfinite, kMiddleware,
             "A finite lease is renewed after 0.6 of it."),
};
constexpr QosField kTimeBasedFilterFields[] = {
    duration("minimum_separation", AT(TimeBasedFilter, minimum_separation), kZero, kAnnounced),
};
constexpr QosField kPartitionFields[] = {
    empty("name", QosFieldKind::kTexts, AT(Partition, name), kMiddleware,
          "Names and patterns; none is the partition with the empty name."),
};
constexpr QosField kReliabilityFields[] = {
    enumeration("kind", AT(Reliability, kind), kReliabilityKinds, DDS_BEST_EFFORT_RELIABILITY_QOS,
                kMiddleware),
    duration("max_blocking_time", AT(Reliability, max_blocking_time), kMaxBlockingTime, kMiddleware,
             "The longest that a write waits for room."),
};
constexpr QosField kTransportPriorityFields[] = {
    number("value", AT(TransportPriority, value), kAnyNumber, "", 0, kAnnounced),
};
constexpr QosField kLifespanFields[] = {
    duration("duration", AT(Lifespan, duration), kInfinite, kMiddleware),
};
constexpr QosField kDestinationOrderFields[] = {
    enumeration("kind", AT(DestinationOrder, kind), kDestinationOrderKinds,
                DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS, kKept,
                "Samples come in the order of reception."),
};
constexpr QosField kHistoryFields[] = {
    enumeration("kind", AT(History, kind), kHistoryKinds, DDS_KEEP_LAST_HISTORY_QOS, kMiddleware),
    number("depth", AT(History, depth), kPositive, "samples", 1, kMiddleware,
           "Of each instance, with KEEP_LAST."),
};
constexpr QosField kResourceLimitsFields[] = {
    number("max_samples", AT(ResourceLimits, max_samples), kPositiveOrUnlimited, "samples",
           kUnlimited, kMiddleware, "Of a type with a key the limit holds for each instance."),
    number("max_instances", AT(ResourceLimits, max_instances), kPositiveOrUnlimited, "instances",
           kUnlimited, kMiddleware, "4096 when samples are limited and instances are not."),
    number("max_samples_per_instance", AT(ResourceLimits, max_samples_per_instance),
           kPositiveOrUnlimited, "samples", kUnlimited, kMiddleware),
};
constexpr QosField kEntityFactoryFields[] = {
    boolean("autoenable_created_entities", AT(EntityFactory, autoenable_created_entities), true,
            kMiddleware),
};
constexpr QosField kWriterDataLifecycleFields[] = {
    boolean("autodispose_unregistered_instances",
            AT(WriterDataLifecycle, autodispose_unregistered_instances), true, kMiddleware),
};
constexpr QosField kReaderDataLifecycleFields[] = {
    duration("autopurge_nowriter_samples_delay",
             AT(ReaderDataLifecycle, autopurge_nowriter_samples_delay), kInfinite, kAnnounced),
    duration("autopurge_disposed_samples_delay",
             AT(ReaderDataLifecycle, autopurge_disposed_samples_delay), kInfinite, kAnnounced),
};
constexpr QosField kRepresentationFields[] = {
    empty("value", QosFieldKind::kRepresentations, AT(DataRepresentation, value), kAnnounced,
          "Samples travel in XCDR2 whatever it says; empty means that.", &kRepresentationKinds),
};
constexpr QosField kPropertyFields[] = {
    empty("value", QosFieldKind::kProperties, AT(Property, value), kMiddleware,
          "All of them reach the middleware, among them those of DDS security and of "
          "persistence; see below for those that this system reads."),
};
constexpr QosField kParticipantNameFields[] = {
    empty("name", QosFieldKind::kText, AT(EntityName, name), kMiddleware),
};
constexpr QosField kServiceFields[] = {
    enumeration("kind", AT(Service, kind), kServiceKinds, DDS_NO_SERVICE_QOS, kKept),
};
constexpr QosField kParticipantResourceLimitsFields[] = {
    number("type_code_max_serialized_length",
           AT(DomainParticipantResourceLimits, type_code_max_serialized_length),
           kNotNegativeOrUnlimited, "octets", 2048, kSystem,
           "Types are not announced, so any limit holds."),
    number("participant_property_string_max_length",
           AT(DomainParticipantResourceLimits, participant_property_string_max_length),
           kNotNegativeOrUnlimited, "octets", 2048, kKept,
           "Properties of any length are announced."),
};
constexpr QosField kDiscoveryFields[] = {
    empty("initial_peers", QosFieldKind::kTexts, AT(Discovery, initial_peers), kMiddleware,
          "`[udpv4://]ADDRESS[:PORT]`, an IPv4 address in numbers. They replace those of the "
          "middleware's profile."),
};
constexpr QosField kTransportBuiltinFields[] = {
    mask("mask", AT(TransportBuiltin, mask), kTransportKinds, DDS_TRANSPORTBUILTIN_MASK_DEFAULT,
         kMiddleware,
         "Other than the default, it takes away those transports of the middleware's profile that "
         "it does not name."),
};
constexpr QosField kWriterResourceLimitsFields[] = {
    boolean("autoregister_instances", AT(DataWriterResourceLimits, autoregister_instances), false,
            kSystem, "A write registers the instance in any case."),
};
constexpr QosField kReaderResourceLimitsFields[] = {
    boolean("dynamically_allocate_fragmented_samples",
            AT(DataReaderResourceLimits, dynamically_allocate_fragmented_samples), false,
            kMiddleware, "Memory for each payload as it comes, in place of memory that is kept."),
    number("max_samples_per_read", AT(DataReaderResourceLimits, max_samples_per_read), kPositive,
           "samples", 1024, kMiddleware),
};
constexpr char kLowerBound[] = "The middleware always takes the upper bound of the pair.";
constexpr QosField kWriterProtocolFields[] = {
    boolean("disable_inline_keyhash", AT(DataWriterProtocol, disable_inline_keyhash), false, kKept),
    boolean("serialize_key_with_dispose", AT(DataWriterProtocol, serialize_key_with_dispose), false,
            kKept),
    duration("rtps_reliable_writer.heartbeat_period",
             AT(DataWriterProtocol, rtps_reliable_writer.heartbeat_period), kHeartbeatPeriod,
             kMiddleware),
    duration("rtps_reliable_writer.fast_heartbeat_period",
             AT(DataWriterProtocol, rtps_reliable_writer.fast_heartbeat_period), kHeartbeatPeriod,
             kKept, "There is one period, heartbeat_period."),
    duration("rtps_reliable_writer.late_joiner_heartbeat_period",
             AT(DataWriterProtocol, rtps_reliable_writer.late_joiner_heartbeat_period),
             kHeartbeatPeriod, kKept, "There is one period, heartbeat_period."),
    number("rtps_reliable_writer.max_heartbeat_retries",
           AT(DataWriterProtocol, rtps_reliable_writer.max_heartbeat_retries), kPositiveOrUnlimited,
           "heartbeats", kUnlimited, kKept,
           "A reader that does not answer is dropped when its lease ends."),
    number("rtps_reliable_writer.heartbeats_per_max_samples",
           AT(DataWriterProtocol, rtps_reliable_writer.heartbeats_per_max_samples), kNotNegative,
           "heartbeats", 0, kKept, "The middleware decides when a heartbeat rides on a sample."),
    duration("rtps_reliable_writer.min_nack_response_delay",
             AT(DataWriterProtocol, rtps_reliable_writer.min_nack_response_delay), kZero, kSystem,
             kLowerBound),
    duration("rtps_reliable_writer.max_nack_response_delay",
             AT(DataWriterProtocol, rtps_reliable_writer.max_nack_response_delay), kResponseDelay,
             kMiddleware),
    duration("rtps_reliable_writer.nack_suppression_duration",
             AT(DataWriterProtocol, rtps_reliable_writer.nack_suppression_duration), kZero,
             kMiddleware),
    number("rtps_reliable_writer.min_send_window_size",
           AT(DataWriterProtocol, rtps_reliable_writer.min_send_window_size), kPositiveOrUnlimited,
           "samples", kUnlimited, kSystem,
           "The window does not shrink below the upper bound of the pair."),
    number("rtps_reliable_writer.max_send_window_size",
           AT(DataWriterProtocol, rtps_reliable_writer.max_send_window_size), kPositiveOrUnlimited,
           "samples", kUnlimited, kMiddleware,
           "Limits max_samples of a reliable writer with KEEP_ALL: a sample counts until all "
           "readers have it."),
};
constexpr QosField kReaderProtocolFields[] = {
    duration("rtps_reliable_reader.min_heartbeat_response_delay",
             AT(DataReaderProtocol, rtps_reliable_reader.min_heartbeat_response_delay), kZero,
             kSystem, kLowerBound),
    duration("rtps_reliable_reader.max_heartbeat_response_delay",
             AT(DataReaderProtocol, rtps_reliable_reader.max_heartbeat_response_delay), kZero,
             kMiddleware),
    duration("rtps_reliable_reader.heartbeat_suppression_duration",
             AT(DataReaderProtocol, rtps_reliable_reader.heartbeat_suppression_duration), kZero,
             kKept),
};
constexpr QosField kBatchFields[] = {
    boolean("enable", AT(Batch, enable), false, kKept, "Each sample is sent by itself."),
};
constexpr QosField kTopicQueryDispatchFields[] = {
    boolean("enable", AT(TopicQueryDispatch, enable), false, kKept),
};

#undef AT

} // namespace

const QosPolicy kUserData = {"user_data", "octetDataQosPolicy", true, kUserDataFields};
const QosPolicy kTopicData = {"topic_data", "octetDataQosPolicy", true, kTopicDataFields};
const QosPolicy kGroupData = {"group_data", "octetDataQosPolicy", true, kGroupDataFields};
const QosPolicy kDurability = {"durability", "durabilityQosPolicy", false, kDurabilityFields};
const QosPolicy kDurabilityService = {"durability_service", "durabilityServiceQosPolicy", false,
                                      kDurabilityServiceFields};
const QosPolicy kPresentation = {"presentation", "presentationQosPolicy", false,
                                 kPresentationFields};
const QosPolicy kDeadline = {"deadline", "deadlineQosPolicy", true, kDeadlineFields};
const QosPolicy kLatencyBudget = {"latency_budget", "latencyBudgetQosPolicy", true,
                                  kLatencyBudgetFields};
const QosPolicy kOwnership = {"ownership", "ownershipQosPolicy", false, kOwnershipFields};
const QosPolicy kOwnershipStrength = {"ownership_strength", "ownershipStrengthQosPolicy", true,
                                      kOwnershipStrengthFields};
const QosPolicy kLiveliness = {"liveliness", "livelinessQosPolicy", false, kLivelinessFields};
const QosPolicy kTimeBasedFilter = {"time_based_filter", "timeBasedFilterQosPolicy", true,
                                    kTimeBasedFilterFields};
const QosPolicy kPartition = {"partition", "partitionQosPolicy", true, kPartitionFields};
const QosPolicy kReliability = {"reliability", "reliabilityQosPolicy", false, kReliabilityFields};
const QosPolicy kTransportPriority = {"transport_priority", "transportPriorityQosPolicy", true,
                                      kTransportPriorityFields};
const QosPolicy kLifespan = {"lifespan", "lifespanQosPolicy", true, kLifespanFields};
const QosPolicy kDestinationOrder = {"destination_order", "destinationOrderQosPolicy", false,
                                     kDestinationOrderFields};
const QosPolicy kHistory = {"history", "historyQosPolicy", false, kHistoryFields};
const QosPolicy kResourceLimits = {"resource_limits", "resourceLimitsQosPolicy", false,
                                   kResourceLimitsFields};
const QosPolicy kEntityFactory = {"entity_factory", "entityFactoryQosPolicy", true,
                                  kEntityFactoryFields};
const QosPolicy kWriterDataLifecycle = {"writer_data_lifecycle", "writerDataLifecycleQosPolicy",
                                        true, kWriterDataLifecycleFields};
const QosPolicy kReaderDataLifecycle = {"reader_data_lifecycle", "readerDataLifecycleQosPolicy",
                                        true, kReaderDataLifecycleFields};
const QosPolicy kRepresentation = {"representation", "dataRepresentationQosPolicy", false,
                                   kRepresentationFields};

const QosPolicy kProperty = {"property", "property", false, kPropertyFields};
const QosPolicy kParticipantName = {"participant_name", "entityNameQosPolicy", false,
                                    kParticipantNameFields};
const QosPolicy kService = {"service", "serviceQosPolicy", false, kServiceFields};
const QosPolicy kParticipantResourceLimits = {"resource_limits",
                                              "participantResourceLimitsQosPolicy", false,
                                              kParticipantResourceLimitsFields};
const QosPolicy kDiscovery = {"discovery", "discoveryQosPolicy", false, kDiscoveryFields};
const QosPolicy kTransportBuiltin = {"transport_builtin", "transportBuiltinQosPolicy", false,
                                     kTransportBuiltinFields};
const QosPolicy kWriterResourceLimits = {"writer_resource_limits", "writerResourceLimitsQosPolicy",
                                         false, kWriterResourceLimitsFields};
const QosPolicy kReaderResourceLimits = {"reader_resource_limits", "readerResourceLimitsQosPolicy",
                                         false, kReaderResourceLimitsFields};
const QosPolicy kWriterProtocol = {"protocol", "writerProtocolQosPolicy", false,
                                   kWriterProtocolFields, "rtpsReliableWriterProtocol"};
const QosPolicy kReaderProtocol = {"protocol", "readerProtocolQosPolicy", false,
                                   kReaderProtocolFields, "rtpsReliableReaderProtocol"};
const QosPolicy kBatch = {"batch", "batchQosPolicy", false, kBatchFields};
const QosPolicy kTopicQueryDispatch = {"topic_query_dispatch", "topicQueryDispatchQosPolicy", false,
                                       kTopicQueryDispatchFields};

} // namespace zuv::dds
