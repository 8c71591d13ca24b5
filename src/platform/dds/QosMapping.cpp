#include "QosMapping.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>
#include <fastdds/dds/publisher/qos/PublisherQos.hpp>
#include <fastdds/dds/subscriber/qos/DataReaderQos.hpp>
#include <fastdds/dds/subscriber/qos/SubscriberQos.hpp>
#include <fastdds/dds/topic/qos/TopicQos.hpp>
#include <fastdds/rtps/flowcontrol/FlowControllerDescriptor.hpp>

#include "QosNotice.hpp"
#include "QosTransport.hpp"
#include "Report.hpp"

namespace zuv::dds
{
namespace
{

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
using eprosima::fastdds::rtps::FlowControllerDescriptor;
using eprosima::fastrtps::Duration_t;

constexpr char kPoolBufferMaxSize[] =
    "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size";

// On a participant, with the name of the controller and ".max_bytes_per_period" or ".period_ms" behind it.
constexpr std::string_view kFlowControllerPrefix = "dds.flow_controller.";
// On a writer: the name of the controller that its samples pass.
constexpr char kFlowControllerOfWriter[] = "dds.publish_mode.flow_controller_name";

Duration_t durationOf(const DDS_Duration_t &from)
{
    return DDS_Duration_is_infinite(&from) ? eprosima::fastrtps::c_TimeInfinite
                                           : Duration_t(from.sec, from.nanosec);
}

template <typename Policy>
void mapOctets(const DDS_OctetSeq &from, Policy &to)
{
    const DDS_Octet *const octets = DDS_OctetSeq_get_contiguous_buffer(&from);
    to.data_vec({octets, octets + DDS_OctetSeq_get_length(&from)});
}

void mapProperties(const DDS_PropertyQosPolicy &from, rtps::PropertyPolicy &to)
{
    for (DDS_Long index = 0; index < DDS_PropertySeq_get_length(&from.value); ++index) {
        const DDS_Property_t &ours = *DDS_PropertySeq_get_reference(&from.value, index);
        if (ours.name == nullptr || ours.value == nullptr) {
            continue;
        }
        auto &list = to.properties();
        const auto known = std::find_if(list.begin(), list.end(), [&](const rtps::Property &one) {
            return one.name() == ours.name;
        });
        rtps::Property property(ours.name, ours.value, ours.propagate != 0);
        if (known != list.end()) {
            *known = property;
        } else {
            list.push_back(property);
        }
    }
}

const char *propertyOf(const DDS_PropertyQosPolicy &properties, const char *name)
{
    const DDS_Property_t *const found =
        DDS_PropertyQosPolicyHelper_lookup_property(&properties, name);
    return found == nullptr ? nullptr : found->value;
}

// A flow controller has its name from a text that must outlive it.
struct FlowController : FlowControllerDescriptor {
    explicit FlowController(std::string_view given) : ownName(given) { name = ownName.c_str(); }

    const std::string ownName;
};

void mapFlowControllers(const DDS_PropertyQosPolicy &from,
                        std::vector<std::shared_ptr<FlowControllerDescriptor>> &to)
{
    constexpr std::string_view kRate = ".max_bytes_per_period";
    for (DDS_Long index = 0; index < DDS_PropertySeq_get_length(&from.value); ++index) {
        const DDS_Property_t &property = *DDS_PropertySeq_get_reference(&from.value, index);
        std::string_view name = property.name == nullptr ? "" : property.name;
        if (!name.starts_with(kFlowControllerPrefix) || !name.ends_with(kRate)) {
            continue;
        }
        name.remove_prefix(kFlowControllerPrefix.size());
        name.remove_suffix(std::min(kRate.size(), name.size()));
        auto controller = std::make_shared<FlowController>(name);
        controller->max_bytes_per_period =
            static_cast<std::int32_t>(positiveNumber(property.value));
        const std::string period =
            std::string(kFlowControllerPrefix) + std::string(name) + ".period_ms";
        if (const char *const text = propertyOf(from, period.c_str())) {
            controller->period_ms = positiveNumber(text);
        }
        if (controller->max_bytes_per_period == 0 || controller->period_ms == 0) {
            ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE,
                                    "make the flow controller \"%s\": no positive number",
                                    controller->name);
        } else {
            to.push_back(controller);
        }
    }
}

// The name belongs to the writer's record, which lives as long as the writer.
void useFlowController(const DDS_PropertyQosPolicy &from, fast::PublishModeQosPolicy &to)
{
    if (const char *const name = propertyOf(from, kFlowControllerOfWriter)) {
        to.kind = fast::ASYNCHRONOUS_PUBLISH_MODE;
        to.flow_controller_name = name;
    }
}

template <typename Policy>
void mapPartition(const DDS_PartitionQosPolicy &from, Policy &to)
{
    to.clear();
    for (DDS_Long index = 0; index < DDS_StringSeq_get_length(&from.name); ++index) {
        const char *const name = DDS_StringSeq_get(&from.name, index);
        to.push_back(name == nullptr ? "" : name);
    }
}

fast::DurabilityQosPolicyKind durabilityOf(DDS_DurabilityQosPolicyKind kind)
{
    switch (kind) {
    case DDS_TRANSIENT_LOCAL_DURABILITY_QOS:
        return fast::TRANSIENT_LOCAL_DURABILITY_QOS;
    case DDS_TRANSIENT_DURABILITY_QOS:
        return fast::TRANSIENT_DURABILITY_QOS;
    case DDS_PERSISTENT_DURABILITY_QOS:
        return fast::PERSISTENT_DURABILITY_QOS;
    case DDS_VOLATILE_DURABILITY_QOS:
        break;
    }
    return fast::VOLATILE_DURABILITY_QOS;
}

fast::HistoryQosPolicyKind historyOf(DDS_HistoryQosPolicyKind kind)
{
    return kind == DDS_KEEP_ALL_HISTORY_QOS ? fast::KEEP_ALL_HISTORY_QOS
                                            : fast::KEEP_LAST_HISTORY_QOS;
}

fast::LivelinessQosPolicyKind livelinessOf(DDS_LivelinessQosPolicyKind kind)
{
    switch (kind) {
    case DDS_MANUAL_BY_PARTICIPANT_LIVELINESS_QOS:
        return fast::MANUAL_BY_PARTICIPANT_LIVELINESS_QOS;
    case DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS:
        return fast::MANUAL_BY_TOPIC_LIVELINESS_QOS;
    case DDS_AUTOMATIC_LIVELINESS_QOS:
        break;
    }
    return fast::AUTOMATIC_LIVELINESS_QOS;
}

// Caches that a history makes beforehand; more are made when needed.
constexpr std::int32_t kInitialCaches = 16;
// Instances of a keyed type when nobody limits them but the samples are limited.
constexpr std::int32_t kInstancesForLimitedSamples = 4096;

// The middleware wants max_samples to cover max_instances times max_samples_per_instance, and all three limited or
// none. A type without a key has one instance, so its limit is exact. With a key the limit on samples holds for
// each instance, and in total for as many instances as may be.
fast::ResourceLimitsQosPolicy limitsOf(const DDS_ResourceLimitsQosPolicy &from,
                                       const DDS_HistoryQosPolicy &history, std::int32_t window,
                                       bool hasKey)
{
    const auto smallest = [](std::int32_t one, std::int32_t other) {
        return one <= 0 ? other : other <= 0 ? one : std::min(one, other);
    };
    fast::ResourceLimitsQosPolicy to;
    const std::int32_t samples = smallest(from.max_samples, window);
    if (samples <= 0) {
        to.max_samples = 0;
        to.max_instances = std::max(from.max_instances, 0);
        to.max_samples_per_instance = std::max(from.max_samples_per_instance, 0);
    } else if (!hasKey) {
        to.max_instances = 1;
        to.max_samples_per_instance = smallest(samples, from.max_samples_per_instance);
        to.max_samples = to.max_samples_per_instance;
    } else {
        to.max_instances =
            from.max_instances > 0 ? from.max_instances : kInstancesForLimitedSamples;
        to.max_samples_per_instance = smallest(samples, from.max_samples_per_instance);
        const std::int64_t total = std::int64_t{to.max_instances} * to.max_samples_per_instance;
        to.max_samples = static_cast<std::int32_t>(std::min<std::int64_t>(total, INT32_MAX));
    }
    to.allocated_samples = smallest(kInitialCaches, to.max_samples);
    if (history.kind == DDS_KEEP_LAST_HISTORY_QOS) {
        to.allocated_samples = std::min(to.allocated_samples, std::max(history.depth, 1));
    }
    return to;
}

// The policies that topics, writers and readers share.
template <typename From, typename To>
void mapCommon(const From &from, To &to)
{
    to.durability().kind = durabilityOf(from.durability.kind);
    to.deadline().period = durationOf(from.deadline.period);
    to.latency_budget().duration = durationOf(from.latency_budget.duration);
    to.liveliness().kind = livelinessOf(from.liveliness.kind);
    to.liveliness().lease_duration = durationOf(from.liveliness.lease_duration);
    if (!DDS_Duration_is_infinite(&from.liveliness.lease_duration)) {
        // The middleware wants it below the lease.
        to.liveliness().announcement_period = Duration_t(
            static_cast<long double>(DDS_Duration_to_nanoseconds(&from.liveliness.lease_duration)) *
            0.6e-9L);
    }
    to.reliability().kind = from.reliability.kind == DDS_RELIABLE_RELIABILITY_QOS
                                ? fast::RELIABLE_RELIABILITY_QOS
                                : fast::BEST_EFFORT_RELIABILITY_QOS;
    to.reliability().max_blocking_time = durationOf(from.reliability.max_blocking_time);
    to.history().kind = historyOf(from.history.kind);
    to.history().depth = from.history.depth;
    to.ownership().kind = from.ownership.kind == DDS_EXCLUSIVE_OWNERSHIP_QOS
                              ? fast::EXCLUSIVE_OWNERSHIP_QOS
                              : fast::SHARED_OWNERSHIP_QOS;
}

void mapDurabilityService(const DDS_DurabilityServiceQosPolicy &from,
                          fast::DurabilityServiceQosPolicy &to)
{
    to.service_cleanup_delay = durationOf(from.service_cleanup_delay);
    to.history_kind = historyOf(from.history_kind);
    to.history_depth = from.history_depth;
    to.max_samples = from.max_samples;
    to.max_instances = from.max_instances;
    to.max_samples_per_instance = from.max_samples_per_instance;
}

void mapPresentation(const DDS_PresentationQosPolicy &from, fast::PresentationQosPolicy &to)
{
    to.access_scope = static_cast<fast::PresentationQosPolicyAccessScopeKind>(from.access_scope);
    to.coherent_access = from.coherent_access != 0;
    to.ordered_access = from.ordered_access != 0;
}

// An empty list means what the types of this system have.
void mapRepresentation(const DDS_DataRepresentationQosPolicy &from,
                       std::vector<fast::DataRepresentationId_t> &to)
{
    to.clear();
    for (DDS_Long index = 0; index < DDS_DataRepresentationIdSeq_get_length(&from.value); ++index) {
        to.push_back(static_cast<fast::DataRepresentationId_t>(
            DDS_DataRepresentationIdSeq_get(&from.value, index)));
    }
    if (to.empty()) {
        to.push_back(fast::XCDR2_DATA_REPRESENTATION);
    }
}

// A payload keeps its memory for the next one, unless large ones are to come and go.
rtps::MemoryManagementPolicy_t memoryPolicy(bool dynamic)
{
    return dynamic ? rtps::DYNAMIC_RESERVE_MEMORY_MODE
                   : rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
}

} // namespace

void mapQos(const DDS_DomainParticipantQos &from, fast::DomainParticipantQos &to)
{
    if (from.participant_name.name != nullptr) {
        to.name(from.participant_name.name);
    }
    if (DDS_OctetSeq_get_length(&from.user_data.value) > 0) {
        mapOctets(from.user_data.value, to.user_data());
    }
    to.entity_factory().autoenable_created_entities =
        from.entity_factory.autoenable_created_entities != 0;
    mapProperties(from.property, to.properties());
    mapFlowControllers(from.property, to.flow_controllers());
    mapTransports(from.transport_builtin, to);
    mapTransportProperties(from.property, to);
    mapPeers(from.discovery, to);
    tellWhatHasNoEffect(kDomainParticipantQosRecord, &from);
}

void mapQos(const DDS_TopicQos &from, bool hasKey, fast::TopicQos &to)
{
    mapCommon(from, to);
    mapDurabilityService(from.durability_service, to.durability_service());
    mapOctets(from.topic_data.value, to.topic_data());
    to.transport_priority().value = static_cast<std::uint32_t>(from.transport_priority.value);
    to.lifespan().duration = durationOf(from.lifespan.duration);
    to.resource_limits() = limitsOf(from.resource_limits, from.history, 0, hasKey);
    mapRepresentation(from.representation, to.representation().m_value);
    tellWhatHasNoEffect(kTopicQosRecord, &from);
}

void mapQos(const DDS_PublisherQos &from, fast::PublisherQos &to)
{
    mapPresentation(from.presentation, to.presentation());
    mapPartition(from.partition, to.partition());
    mapOctets(from.group_data.value, to.group_data());
    to.entity_factory().autoenable_created_entities =
        from.entity_factory.autoenable_created_entities != 0;
    tellWhatHasNoEffect(kPublisherQosRecord, &from);
}

void mapQos(const DDS_SubscriberQos &from, fast::SubscriberQos &to)
{
    mapPresentation(from.presentation, to.presentation());
    mapPartition(from.partition, to.partition());
    mapOctets(from.group_data.value, to.group_data());
    to.entity_factory().autoenable_created_entities =
        from.entity_factory.autoenable_created_entities != 0;
    tellWhatHasNoEffect(kSubscriberQosRecord, &from);
}

void mapQos(const DDS_DataWriterQos &from, bool hasKey, fast::DataWriterQos &to)
{
    mapCommon(from, to);
    mapDurabilityService(from.durability_service, to.durability_service());
    to.transport_priority().value = static_cast<std::uint32_t>(from.transport_priority.value);
    to.lifespan().duration = durationOf(from.lifespan.duration);
    mapOctets(from.user_data.value, to.user_data());
    to.ownership_strength().value = static_cast<std::uint32_t>(from.ownership_strength.value);
    to.writer_data_lifecycle().autodispose_unregistered_instances =
        from.writer_data_lifecycle.autodispose_unregistered_instances != 0;
    mapRepresentation(from.representation, to.representation().m_value);
    mapProperties(from.property, to.properties());
    useFlowController(from.property, to.publish_mode());

    const DDS_RtpsReliableWriterProtocol_t &protocol = from.protocol.rtps_reliable_writer;
    auto &times = to.reliable_writer_qos().times;
    times.heartbeatPeriod = durationOf(protocol.heartbeat_period);
    times.nackResponseDelay = durationOf(protocol.max_nack_response_delay);
    times.nackSupressionDuration = durationOf(protocol.nack_suppression_duration);

    // A window of unacknowledged samples is what a history that keeps all of them can hold.
    const bool isWindowed = from.history.kind == DDS_KEEP_ALL_HISTORY_QOS &&
                            from.reliability.kind == DDS_RELIABLE_RELIABILITY_QOS;
    to.resource_limits() = limitsOf(from.resource_limits, from.history,
                                    isWindowed ? protocol.max_send_window_size : 0, hasKey);
    to.endpoint().history_memory_policy = memoryPolicy(false);
    to.data_sharing().off();
    // Filters are evaluated where the samples are read, whoever wrote them.
    to.writer_resource_limits().reader_filters_allocation =
        eprosima::fastrtps::ResourceLimitedContainerConfig::fixed_size_configuration(0);
    tellWhatHasNoEffect(kDataWriterQosRecord, &from);
}

void mapQos(const DDS_DataReaderQos &from, bool hasKey, fast::DataReaderQos &to)
{
    mapCommon(from, to);
    mapOctets(from.user_data.value, to.user_data());
    to.time_based_filter().minimum_separation =
        durationOf(from.time_based_filter.minimum_separation);
    to.reader_data_lifecycle().autopurge_no_writer_samples_delay =
        durationOf(from.reader_data_lifecycle.autopurge_nowriter_samples_delay);
    to.reader_data_lifecycle().autopurge_disposed_samples_delay =
        durationOf(from.reader_data_lifecycle.autopurge_disposed_samples_delay);
    mapRepresentation(from.representation, to.type_consistency().representation.m_value);
    mapProperties(from.property, to.properties());

    const DDS_RtpsReliableReaderProtocol_t &protocol = from.protocol.rtps_reliable_reader;
    auto &times = to.reliable_reader_qos().times;
    times.heartbeatResponseDelay = durationOf(protocol.max_heartbeat_response_delay);

    to.resource_limits() = limitsOf(from.resource_limits, from.history, 0, hasKey);
    to.endpoint().history_memory_policy =
        memoryPolicy(from.reader_resource_limits.dynamically_allocate_fragmented_samples != 0);
    to.data_sharing().off();
    // Samples are handed over in memory of ours, so no loans of the middleware are needed.
    auto &limits = to.reader_resource_limits();
    limits.max_samples_per_read = from.reader_resource_limits.max_samples_per_read > 0
                                      ? from.reader_resource_limits.max_samples_per_read
                                      : INT32_MAX;
    limits.outstanding_reads_allocation.initial = 0;
    limits.sample_infos_allocation.initial = 0;
    tellWhatHasNoEffect(kDataReaderQosRecord, &from);
}

DDS_Long poolBufferMaxSize(const DDS_PropertyQosPolicy &properties)
{
    const char *const text = propertyOf(properties, kPoolBufferMaxSize);
    if (text == nullptr) {
        return DDS_LENGTH_UNLIMITED;
    }
    DDS_Long size = 0;
    const char *const end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, size);
    return result.ec == std::errc() && result.ptr == end && size >= 0 ? size : DDS_LENGTH_UNLIMITED;
}

} // namespace zuv::dds
