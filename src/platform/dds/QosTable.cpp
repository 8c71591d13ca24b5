#include "QosTable.hpp"

#include "platform/dds/Qos.h"
#include "platform/dds/QosPolicyTable.hpp"

namespace zuv::dds
{
namespace
{

// OMG DDS 1.4, 2.2.3: a writer offers reliability where a reader does not ask for it.
constexpr QosDefault kWriterReliability[] = {{"kind", DDS_RELIABLE_RELIABILITY_QOS}};

#define IN(record, field) offsetof(DDS_##record##Qos, field)

constexpr QosMember kDomainParticipantMembers[] = {
    {&kUserData, IN(DomainParticipant, user_data)},
    {&kEntityFactory, IN(DomainParticipant, entity_factory)},
    {&kProperty, IN(DomainParticipant, property)},
    {&kParticipantName, IN(DomainParticipant, participant_name)},
    {&kService, IN(DomainParticipant, service)},
    {&kParticipantResourceLimits, IN(DomainParticipant, resource_limits)},
    {&kDiscovery, IN(DomainParticipant, discovery)},
    {&kTransportBuiltin, IN(DomainParticipant, transport_builtin)},
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
    {&kBatch, IN(DataWriter, batch)},
    {&kTopicQueryDispatch, IN(DataWriter, topic_query_dispatch)},
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

} // namespace

#define RECORD(name, tag)                                                                          \
    const QosRecord k##name##QosRecord = {#name "Qos", tag, sizeof(DDS_##name##Qos),               \
                                          k##name##Members};                                       \
    static_assert(sizeof(DDS_##name##Qos) <= kMaxQosRecordSize)

RECORD(DomainParticipant, "domain_participant_qos");
RECORD(Topic, "topic_qos");
RECORD(Publisher, "publisher_qos");
RECORD(Subscriber, "subscriber_qos");
RECORD(DataWriter, "datawriter_qos");
RECORD(DataReader, "datareader_qos");

#undef RECORD

namespace
{

constexpr const QosRecord *kRecords[] = {
    &kDomainParticipantQosRecord, &kTopicQosRecord,      &kPublisherQosRecord,
    &kSubscriberQosRecord,        &kDataWriterQosRecord, &kDataReaderQosRecord,
};

} // namespace

const std::span<const QosRecord *const> kQosRecords = kRecords;

} // namespace zuv::dds
