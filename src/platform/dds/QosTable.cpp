#include "QosTable.hpp"

#include "platform/dds/Qos.h"

namespace zuv::dds
{
namespace
{

constexpr DDS_Duration_t kInfinite = {DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC};
constexpr DDS_Duration_t kZero = {0, 0};
constexpr DDS_Duration_t kMaxBlockingTime = {0, 100'000'000};
// A lost sample or acknowledgement is noticed within one period.
constexpr DDS_Duration_t kHeartbeatPeriod = {0, 100'000'000};
constexpr DDS_Duration_t kResponseDelay = {0, 5'000'000};

constexpr QosField boolean(const char *tag, std::size_t offset, bool value)
{
    return {tag, QosFieldKind::kBoolean, offset, value ? 1 : 0};
}

constexpr QosField number(const char *tag, std::size_t offset, std::int32_t value)
{
    return {tag, QosFieldKind::kLong, offset, value};
}

constexpr QosField duration(const char *tag, std::size_t offset, DDS_Duration_t value)
{
    return {tag, QosFieldKind::kDuration, offset, 0, value};
}

constexpr QosField enumeration(const char *tag, std::size_t offset, std::int32_t value,
                               std::span<const QosEnumerator> enumerators)
{
    return {tag, QosFieldKind::kEnum, offset, value, kZero, enumerators};
}

constexpr QosField empty(const char *tag, QosFieldKind kind, std::size_t offset)
{
    return {tag, kind, offset};
}

#define ENUMERATOR(name)                                                                           \
    {                                                                                              \
#name, DDS_##name                                                                          \
    }
#define AT(policy, field) offsetof(DDS_##policy##QosPolicy, field)

constexpr QosEnumerator kDurabilityKinds[] = {
    ENUMERATOR(VOLATILE_DURABILITY_QOS),
    ENUMERATOR(TRANSIENT_LOCAL_DURABILITY_QOS),
    ENUMERATOR(TRANSIENT_DURABILITY_QOS),
    ENUMERATOR(PERSISTENT_DURABILITY_QOS),
};
constexpr QosEnumerator kHistoryKinds[] = {
    ENUMERATOR(KEEP_LAST_HISTORY_QOS),
    ENUMERATOR(KEEP_ALL_HISTORY_QOS),
};
constexpr QosEnumerator kReliabilityKinds[] = {
    ENUMERATOR(BEST_EFFORT_RELIABILITY_QOS),
    ENUMERATOR(RELIABLE_RELIABILITY_QOS),
};
constexpr QosEnumerator kLivelinessKinds[] = {
    ENUMERATOR(AUTOMATIC_LIVELINESS_QOS),
    ENUMERATOR(MANUAL_BY_PARTICIPANT_LIVELINESS_QOS),
    ENUMERATOR(MANUAL_BY_TOPIC_LIVELINESS_QOS),
};
constexpr QosEnumerator kOwnershipKinds[] = {
    ENUMERATOR(SHARED_OWNERSHIP_QOS),
    ENUMERATOR(EXCLUSIVE_OWNERSHIP_QOS),
};
constexpr QosEnumerator kDestinationOrderKinds[] = {
    ENUMERATOR(BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS),
    ENUMERATOR(BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS),
};
constexpr QosEnumerator kAccessScopeKinds[] = {
    ENUMERATOR(INSTANCE_PRESENTATION_QOS),
    ENUMERATOR(TOPIC_PRESENTATION_QOS),
    ENUMERATOR(GROUP_PRESENTATION_QOS),
};
constexpr QosEnumerator kServiceKinds[] = {
    ENUMERATOR(NO_SERVICE_QOS),
    ENUMERATOR(BREL_SERVICE_QOS),
};

constexpr QosField kDurabilityFields[] = {
    enumeration("kind", AT(Durability, kind), DDS_VOLATILE_DURABILITY_QOS, kDurabilityKinds),
};
constexpr QosField kHistoryFields[] = {
    enumeration("kind", AT(History, kind), DDS_KEEP_LAST_HISTORY_QOS, kHistoryKinds),
    number("depth", AT(History, depth), 1),
};
constexpr QosField kResourceLimitsFields[] = {
    number("max_samples", AT(ResourceLimits, max_samples), DDS_LENGTH_UNLIMITED),
    number("max_instances", AT(ResourceLimits, max_instances), DDS_LENGTH_UNLIMITED),
    number("max_samples_per_instance", AT(ResourceLimits, max_samples_per_instance),
           DDS_LENGTH_UNLIMITED),
};
constexpr QosField kReliabilityFields[] = {
    enumeration("kind", AT(Reliability, kind), DDS_BEST_EFFORT_RELIABILITY_QOS, kReliabilityKinds),
    duration("max_blocking_time", AT(Reliability, max_blocking_time), kMaxBlockingTime),
};
constexpr QosField kDurabilityServiceFields[] = {
    duration("service_cleanup_delay", AT(DurabilityService, service_cleanup_delay), kZero),
    enumeration("history_kind", AT(DurabilityService, history_kind), DDS_KEEP_LAST_HISTORY_QOS,
                kHistoryKinds),
    number("history_depth", AT(DurabilityService, history_depth), 1),
    number("max_samples", AT(DurabilityService, max_samples), DDS_LENGTH_UNLIMITED),
    number("max_instances", AT(DurabilityService, max_instances), DDS_LENGTH_UNLIMITED),
    number("max_samples_per_instance", AT(DurabilityService, max_samples_per_instance),
           DDS_LENGTH_UNLIMITED),
};
constexpr QosField kDeadlineFields[] = {
    duration("period", AT(Deadline, period), kInfinite),
};
constexpr QosField kLatencyBudgetFields[] = {
    duration("duration", AT(LatencyBudget, duration), kZero),
};
constexpr QosField kLivelinessFields[] = {
    enumeration("kind", AT(Liveliness, kind), DDS_AUTOMATIC_LIVELINESS_QOS, kLivelinessKinds),
    duration("lease_duration", AT(Liveliness, lease_duration), kInfinite),
};
constexpr QosField kOwnershipFields[] = {
    enumeration("kind", AT(Ownership, kind), DDS_SHARED_OWNERSHIP_QOS, kOwnershipKinds),
};
constexpr QosField kOwnershipStrengthFields[] = {
    number("value", AT(OwnershipStrength, value), 0),
};
constexpr QosField kDestinationOrderFields[] = {
    enumeration("kind", AT(DestinationOrder, kind), DDS_BY_RECEPTION_TIMESTAMP_DESTINATIONORDER_QOS,
                kDestinationOrderKinds),
};
constexpr QosField kPresentationFields[] = {
    enumeration("access_scope", AT(Presentation, access_scope), DDS_INSTANCE_PRESENTATION_QOS,
                kAccessScopeKinds),
    boolean("coherent_access", AT(Presentation, coherent_access), false),
    boolean("ordered_access", AT(Presentation, ordered_access), false),
};
constexpr QosField kPartitionFields[] = {
    empty("name", QosFieldKind::kTexts, AT(Partition, name)),
};
constexpr QosField kLifespanFields[] = {
    duration("duration", AT(Lifespan, duration), kInfinite),
};
constexpr QosField kTimeBasedFilterFields[] = {
    duration("minimum_separation", AT(TimeBasedFilter, minimum_separation), kZero),
};
constexpr QosField kTransportPriorityFields[] = {
    number("value", AT(TransportPriority, value), 0),
};
constexpr QosField kWriterDataLifecycleFields[] = {
    boolean("autodispose_unregistered_instances",
            AT(WriterDataLifecycle, autodispose_unregistered_instances), true),
};
constexpr QosField kReaderDataLifecycleFields[] = {
    duration("autopurge_nowriter_samples_delay",
             AT(ReaderDataLifecycle, autopurge_nowriter_samples_delay), kInfinite),
    duration("autopurge_disposed_samples_delay",
             AT(ReaderDataLifecycle, autopurge_disposed_samples_delay), kInfinite),
};
constexpr QosField kEntityFactoryFields[] = {
    boolean("autoenable_created_entities", AT(EntityFactory, autoenable_created_entities), true),
};
constexpr QosField kUserDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(UserData, value)),
};
constexpr QosField kTopicDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(TopicData, value)),
};
constexpr QosField kGroupDataFields[] = {
    empty("value", QosFieldKind::kOctets, AT(GroupData, value)),
};
constexpr QosField kDataRepresentationFields[] = {
    empty("value", QosFieldKind::kRepresentations, AT(DataRepresentation, value)),
};
constexpr QosField kPropertyFields[] = {
    empty("value", QosFieldKind::kProperties, AT(Property, value)),
};
constexpr QosField kEntityNameFields[] = {
    empty("name", QosFieldKind::kText, AT(EntityName, name)),
};
constexpr QosField kServiceFields[] = {
    enumeration("kind", AT(Service, kind), DDS_NO_SERVICE_QOS, kServiceKinds),
};
constexpr QosField kReaderProtocolFields[] = {
    duration("rtps_reliable_reader.min_heartbeat_response_delay",
             AT(DataReaderProtocol, rtps_reliable_reader.min_heartbeat_response_delay), kZero),
    duration("rtps_reliable_reader.max_heartbeat_response_delay",
             AT(DataReaderProtocol, rtps_reliable_reader.max_heartbeat_response_delay),
             kResponseDelay),
    duration("rtps_reliable_reader.heartbeat_suppression_duration",
             AT(DataReaderProtocol, rtps_reliable_reader.heartbeat_suppression_duration), kZero),
};
constexpr QosField kWriterProtocolFields[] = {
    duration("rtps_reliable_writer.heartbeat_period",
             AT(DataWriterProtocol, rtps_reliable_writer.heartbeat_period), kHeartbeatPeriod),
    duration("rtps_reliable_writer.min_nack_response_delay",
             AT(DataWriterProtocol, rtps_reliable_writer.min_nack_response_delay), kZero),
    duration("rtps_reliable_writer.max_nack_response_delay",
             AT(DataWriterProtocol, rtps_reliable_writer.max_nack_response_delay), kResponseDelay),
    duration("rtps_reliable_writer.nack_suppression_duration",
             AT(DataWriterProtocol, rtps_reliable_writer.nack_suppression_duration), kZero),
    number("rtps_reliable_writer.min_send_window_size",
           AT(DataWriterProtocol, rtps_reliable_writer.min_send_window_size), DDS_LENGTH_UNLIMITED),
    number("rtps_reliable_writer.max_send_window_size",
           AT(DataWriterProtocol, rtps_reliable_writer.max_send_window_size), DDS_LENGTH_UNLIMITED),
};
constexpr QosField kReaderResourceLimitsFields[] = {
    boolean("dynamically_allocate_fragmented_samples",
            AT(DataReaderResourceLimits, dynamically_allocate_fragmented_samples), false),
    number("max_samples_per_read", AT(DataReaderResourceLimits, max_samples_per_read), 1024),
};
constexpr QosField kWriterResourceLimitsFields[] = {
    boolean("autoregister_instances", AT(DataWriterResourceLimits, autoregister_instances), false),
};

constexpr QosPolicy kDurability = {"durability", kDurabilityFields};
constexpr QosPolicy kHistory = {"history", kHistoryFields};
constexpr QosPolicy kResourceLimits = {"resource_limits", kResourceLimitsFields};
constexpr QosPolicy kReliability = {"reliability", kReliabilityFields};
constexpr QosPolicy kDurabilityService = {"durability_service", kDurabilityServiceFields};
constexpr QosPolicy kDeadline = {"deadline", kDeadlineFields};
constexpr QosPolicy kLatencyBudget = {"latency_budget", kLatencyBudgetFields};
constexpr QosPolicy kLiveliness = {"liveliness", kLivelinessFields};
constexpr QosPolicy kOwnership = {"ownership", kOwnershipFields};
constexpr QosPolicy kOwnershipStrength = {"ownership_strength", kOwnershipStrengthFields};
constexpr QosPolicy kDestinationOrder = {"destination_order", kDestinationOrderFields};
constexpr QosPolicy kPresentation = {"presentation", kPresentationFields};
constexpr QosPolicy kPartition = {"partition", kPartitionFields};
constexpr QosPolicy kLifespan = {"lifespan", kLifespanFields};
constexpr QosPolicy kTimeBasedFilter = {"time_based_filter", kTimeBasedFilterFields};
constexpr QosPolicy kTransportPriority = {"transport_priority", kTransportPriorityFields};
constexpr QosPolicy kWriterDataLifecycle = {"writer_data_lifecycle", kWriterDataLifecycleFields};
constexpr QosPolicy kReaderDataLifecycle = {"reader_data_lifecycle", kReaderDataLifecycleFields};
constexpr QosPolicy kEntityFactory = {"entity_factory", kEntityFactoryFields};
constexpr QosPolicy kUserData = {"user_data", kUserDataFields};
constexpr QosPolicy kTopicData = {"topic_data", kTopicDataFields};
constexpr QosPolicy kGroupData = {"group_data", kGroupDataFields};
constexpr QosPolicy kRepresentation = {"representation", kDataRepresentationFields};
constexpr QosPolicy kProperty = {"property", kPropertyFields};
constexpr QosPolicy kParticipantName = {"participant_name", kEntityNameFields};
constexpr QosPolicy kService = {"service", kServiceFields};
constexpr QosPolicy kReaderProtocol = {"protocol", kReaderProtocolFields};
constexpr QosPolicy kWriterProtocol = {"protocol", kWriterProtocolFields};
constexpr QosPolicy kReaderResourceLimits = {"reader_resource_limits", kReaderResourceLimitsFields};
constexpr QosPolicy kWriterResourceLimits = {"writer_resource_limits", kWriterResourceLimitsFields};

// OMG DDS 1.4, 2.2.3: a writer offers reliability where a reader does not ask for it.
constexpr QosDefault kWriterReliability[] = {{"kind", DDS_RELIABLE_RELIABILITY_QOS}};

#define IN(record, field) offsetof(DDS_##record##Qos, field)

constexpr QosMember kDomainParticipantMembers[] = {
    {&kUserData, IN(DomainParticipant, user_data)},
    {&kEntityFactory, IN(DomainParticipant, entity_factory)},
    {&kProperty, IN(DomainParticipant, property)},
    {&kParticipantName, IN(DomainParticipant, participant_name)},
    {&kService, IN(DomainParticipant, service)},
};
constexpr QosMember kTopicMembers[] = {
    {&kTopicData, IN(Topic, topic_data)},
    {&kDurability, IN(Topic, durability)},
    {&kDurabilityService, IN(Topic, durability_service)},
    {&kDeadline, IN(Topic, deadline)},
    {&kLatencyBudget, IN(Topic, latency_budget)},
    {&kLiveliness, IN(Topic, liveliness)},
    {&kReliability, IN(Topic, reliability)},
    {&kDestinationOrder, IN(Topic, destination_order)},
    {&kHistory, IN(Topic, history)},
    {&kResourceLimits, IN(Topic, resource_limits)},
    {&kTransportPriority, IN(Topic, transport_priority)},
    {&kLifespan, IN(Topic, lifespan)},
    {&kOwnership, IN(Topic, ownership)},
    {&kRepresentation, IN(Topic, representation)},
};
constexpr QosMember kPublisherMembers[] = {
    {&kPresentation, IN(Publisher, presentation)},
    {&kPartition, IN(Publisher, partition)},
    {&kGroupData, IN(Publisher, group_data)},
    {&kEntityFactory, IN(Publisher, entity_factory)},
};
constexpr QosMember kSubscriberMembers[] = {
    {&kPresentation, IN(Subscriber, presentation)},
    {&kPartition, IN(Subscriber, partition)},
    {&kGroupData, IN(Subscriber, group_data)},
    {&kEntityFactory, IN(Subscriber, entity_factory)},
};
constexpr QosMember kDataWriterMembers[] = {
    {&kDurability, IN(DataWriter, durability)},
    {&kDurabilityService, IN(DataWriter, durability_service)},
    {&kDeadline, IN(DataWriter, deadline)},
    {&kLatencyBudget, IN(DataWriter, latency_budget)},
    {&kLiveliness, IN(DataWriter, liveliness)},
    {&kReliability, IN(DataWriter, reliability), kWriterReliability},
    {&kDestinationOrder, IN(DataWriter, destination_order)},
    {&kHistory, IN(DataWriter, history)},
    {&kResourceLimits, IN(DataWriter, resource_limits)},
    {&kTransportPriority, IN(DataWriter, transport_priority)},
    {&kLifespan, IN(DataWriter, lifespan)},
    {&kUserData, IN(DataWriter, user_data)},
    {&kOwnership, IN(DataWriter, ownership)},
    {&kOwnershipStrength, IN(DataWriter, ownership_strength)},
    {&kWriterDataLifecycle, IN(DataWriter, writer_data_lifecycle)},
    {&kRepresentation, IN(DataWriter, representation)},
    {&kWriterResourceLimits, IN(DataWriter, writer_resource_limits)},
    {&kWriterProtocol, IN(DataWriter, protocol)},
    {&kProperty, IN(DataWriter, property)},
    {&kService, IN(DataWriter, service)},
};
constexpr QosMember kDataReaderMembers[] = {
    {&kDurability, IN(DataReader, durability)},
    {&kDeadline, IN(DataReader, deadline)},
    {&kLatencyBudget, IN(DataReader, latency_budget)},
    {&kLiveliness, IN(DataReader, liveliness)},
    {&kReliability, IN(DataReader, reliability)},
    {&kDestinationOrder, IN(DataReader, destination_order)},
    {&kHistory, IN(DataReader, history)},
    {&kResourceLimits, IN(DataReader, resource_limits)},
    {&kUserData, IN(DataReader, user_data)},
    {&kOwnership, IN(DataReader, ownership)},
    {&kTimeBasedFilter, IN(DataReader, time_based_filter)},
    {&kReaderDataLifecycle, IN(DataReader, reader_data_lifecycle)},
    {&kRepresentation, IN(DataReader, representation)},
    {&kReaderResourceLimits, IN(DataReader, reader_resource_limits)},
    {&kReaderProtocol, IN(DataReader, protocol)},
    {&kProperty, IN(DataReader, property)},
    {&kService, IN(DataReader, service)},
};

#undef IN
#undef AT
#undef ENUMERATOR

} // namespace

#define RECORD(name)                                                                               \
    const QosRecord k##name##QosRecord = {#name "Qos", sizeof(DDS_##name##Qos), k##name##Members}; \
    static_assert(sizeof(DDS_##name##Qos) <= kMaxQosRecordSize)

RECORD(DomainParticipant);
RECORD(Topic);
RECORD(Publisher);
RECORD(Subscriber);
RECORD(DataWriter);
RECORD(DataReader);

#undef RECORD

} // namespace zuv::dds
