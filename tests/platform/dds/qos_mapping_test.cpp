// Each field of a QoS is looked for in the middleware's own entity: those that it has, and what is told of the others.
#include <chrono>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>
#include <fastdds/dds/publisher/qos/PublisherQos.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/subscriber/qos/DataReaderQos.hpp>
#include <fastdds/dds/subscriber/qos/SubscriberQos.hpp>
#include <fastdds/dds/topic/Topic.hpp>
#include <fastdds/dds/topic/qos/TopicQos.hpp>
#include <fastdds/rtps/flowcontrol/FlowControllerDescriptor.hpp>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>

#include "Domain.h"
#include "QosValues.h"
#include "platform/dds/EntityImpl.hpp"
#include "platform/dds/QosMapping.hpp"
#include "platform/dds/QosNotice.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "support/LogCapture.h"

namespace
{

namespace fast = eprosima::fastdds::dds;
namespace transport = eprosima::fastdds::rtps;
using zuv::dds::QosEffect;
using zuv::dds::QosField;
using zuv::dds::QosMember;
using zuv::dds::QosRecord;
using zuv_test::QuestionType;

// -- What the middleware's records say, as texts ---------------------------------------------------------------

template <typename Number>
std::string textOf(Number number)
{
    return std::to_string(static_cast<long long>(number));
}
std::string textOf(const eprosima::fastrtps::Duration_t &duration)
{
    return std::to_string(duration.seconds) + "." + std::to_string(duration.nanosec);
}
std::string octetsOf(const std::vector<eprosima::fastrtps::rtps::octet> &octets)
{
    std::string text;
    for (const auto octet : octets) {
        text += std::to_string(octet) + " ";
    }
    return text;
}
template <typename Partition>
std::string namesOf(const Partition &partition)
{
    std::string text;
    for (const std::string &name : partition.names()) {
        text += name + " ";
    }
    return text;
}
std::string idsOf(const std::vector<fast::DataRepresentationId_t> &ids)
{
    std::string text;
    for (const auto id : ids) {
        text += std::to_string(id) + " ";
    }
    return text;
}
// Of the properties, the one that tests set.
std::string propertyOf(const eprosima::fastrtps::rtps::PropertyPolicy &policy)
{
    for (const auto &property : policy.properties()) {
        if (property.name() == zuv_test::kPropertyName) {
            return property.value() + (property.propagate() ? " propagated" : "");
        }
    }
    return "";
}
// Those with a port of their own, and the addresses of the others, of which each may stand for many ports.
std::string peersOf(const eprosima::fastrtps::rtps::LocatorList_t &peers)
{
    constexpr std::uint32_t kOwnPortMax = 7411; // below the ports of the tests' domains
    std::string withPort;
    std::set<std::string> others;
    for (const auto &peer : peers) {
        const std::string address = eprosima::fastrtps::rtps::IPLocator::toIPv4string(peer);
        if (peer.port > 0 && peer.port < kOwnPortMax) {
            withPort += address + ":" + std::to_string(peer.port) + " ";
        } else {
            others.insert(address);
        }
    }
    for (const std::string &address : others) {
        withPort += address;
    }
    return withPort;
}
std::string transportsOf(const fast::DomainParticipantQos &qos)
{
    std::string text;
    for (const auto &one : qos.transport().user_transports) {
        if (dynamic_cast<const transport::UDPv4TransportDescriptor *>(one.get()) != nullptr) {
            text += "UDPv4 ";
        }
        if (dynamic_cast<const transport::SharedMemTransportDescriptor *>(one.get()) != nullptr) {
            text += "SHMEM ";
        }
    }
    return text;
}

// -- A kind of entity, made with a QoS -------------------------------------------------------------------------

// A field, a value for it (seconds of a duration, see QosValues.h), and what the middleware's record then says.
template <typename Qos, typename FastQos>
struct Row {
    const char *field;
    std::int32_t value;
    std::string expected;
    std::string (*read)(const FastQos &);
    void (*alsoSet)(Qos &) = nullptr;
};

class QosMapping : public testing::Test
{
protected:
    QosMapping()
    {
        EXPECT_EQ(QuestionType::registerType(participant_, QuestionType::name()), DDS_RETCODE_OK);
        topic_ = makeTopic("test topic", DDS_TOPIC_QOS_DEFAULT);
    }
    ~QosMapping() override { zuv_test::leaveDomain(participant_); }

    DDS_Topic *makeTopic(const char *name, const DDS_TopicQos &qos)
    {
        return DDS_DomainParticipant_create_topic(participant_, name, QuestionType::name(), &qos,
                                                  nullptr, DDS_STATUS_MASK_NONE);
    }

    // Entities of the middleware, made with the record and gone again.
    fast::DomainParticipantQos made(const DDS_DomainParticipantQos &qos)
    {
        DDS_DomainParticipant *const participant = zuv_test::joinDomain(qos);
        EXPECT_NE(participant, nullptr);
        fast::DomainParticipantQos result;
        if (participant != nullptr) {
            result = participant->fast->get_qos();
            zuv_test::leaveDomain(participant);
        }
        return result;
    }
    fast::TopicQos made(const DDS_TopicQos &qos)
    {
        DDS_Topic *const topic = makeTopic("another topic", qos);
        EXPECT_NE(topic, nullptr);
        fast::TopicQos result;
        if (topic != nullptr) {
            result = topic->fast->get_qos();
            EXPECT_EQ(DDS_DomainParticipant_delete_topic(participant_, topic), DDS_RETCODE_OK);
        }
        return result;
    }
    fast::PublisherQos made(const DDS_PublisherQos &qos)
    {
        DDS_Publisher *const publisher = DDS_DomainParticipant_create_publisher(
            participant_, &qos, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_NE(publisher, nullptr);
        return publisher == nullptr ? fast::PublisherQos() : publisher->fast->get_qos();
    }
    fast::SubscriberQos made(const DDS_SubscriberQos &qos)
    {
        DDS_Subscriber *const subscriber = DDS_DomainParticipant_create_subscriber(
            participant_, &qos, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_NE(subscriber, nullptr);
        return subscriber == nullptr ? fast::SubscriberQos() : subscriber->fast->get_qos();
    }
    fast::DataWriterQos made(const DDS_DataWriterQos &qos)
    {
        DDS_DataWriter *const writer = DDS_Publisher_create_datawriter(
            DDS_DomainParticipant_get_implicit_publisher(participant_), topic_, &qos, nullptr,
            DDS_STATUS_MASK_NONE);
        EXPECT_NE(writer, nullptr);
        return writer == nullptr ? fast::DataWriterQos() : writer->fast->get_qos();
    }
    fast::DataReaderQos made(const DDS_DataReaderQos &qos)
    {
        DDS_DataReader *const reader = DDS_Subscriber_create_datareader(
            DDS_DomainParticipant_get_implicit_subscriber(participant_),
            DDS_Topic_as_topicdescription(topic_), &qos, nullptr, DDS_STATUS_MASK_NONE);
        EXPECT_NE(reader, nullptr);
        return reader == nullptr ? fast::DataReaderQos() : reader->fast->get_qos();
    }

    // Each row, and that the rows are those fields of the record that the middleware has.
    template <typename Qos, typename FastQos>
    void checkRows(const QosRecord &table, const std::vector<Row<Qos, FastQos>> &rows)
    {
        Qos defaults = {};
        zuv::dds::setQosDefaults(table, &defaults);
        const FastQos usual = made(defaults);
        std::set<std::string> missing = fieldsOf(table);
        for (const Row<Qos, FastQos> &row : rows) {
            SCOPED_TRACE(row.field);
            missing.erase(row.field);
            EXPECT_NE(row.read(usual), row.expected) << "the row shows nothing";
            Qos qos = {};
            zuv::dds::setQosDefaults(table, &qos);
            zuv_test::setField(table, &qos, row.field, row.value);
            if (row.alsoSet != nullptr) {
                row.alsoSet(qos);
            }
            EXPECT_EQ(row.read(made(qos)), row.expected);
            zuv::dds::finalizeQos(table, &qos);
        }
        EXPECT_EQ(missing, std::set<std::string>()) << "fields without a row";
    }

    static std::set<std::string> fieldsOf(const QosRecord &table)
    {
        std::set<std::string> names;
        for (const QosMember &member : table.members) {
            for (const QosField &field : member.policy->fields) {
                if (field.effect == QosEffect::kMiddleware ||
                    field.effect == QosEffect::kAnnounced) {
                    names.insert(zuv_test::nameOf(member, field));
                }
            }
        }
        return names;
    }

    DDS_DomainParticipant *participant_ = zuv_test::joinDomain();
    DDS_Topic *topic_ = nullptr;
};

TEST_F(QosMapping, setsWhatAParticipantHas)
{
    using Fast = fast::DomainParticipantQos;
    checkRows<DDS_DomainParticipantQos, Fast>(
        zuv::dds::kDomainParticipantQosRecord,
        {
            {"user_data.value", 0, "1 2 3 ",
             [](const Fast &qos) { return octetsOf(qos.user_data().data_vec()); }},
            {"entity_factory.autoenable_created_entities", 0, "0",
             [](const Fast &qos) {
                 return textOf(qos.entity_factory().autoenable_created_entities);
             }},
            {"property.value", 0, "value propagated",
             [](const Fast &qos) { return propertyOf(qos.properties()); }},
            {"participant_name.name", 0, "a name",
             [](const Fast &qos) { return std::string(qos.name().c_str()); }},
            {"discovery.initial_peers", 0, "127.0.0.2:7410 127.0.0.1",
             [](const Fast &qos) { return peersOf(qos.wire_protocol().builtin.initialPeersList); },
             [](DDS_DomainParticipantQos &qos) {
                 zuv_test::setTexts(qos.discovery.initial_peers,
                                    {"127.0.0.1", "udpv4://127.0.0.2:7410"});
             }},
            {"transport_builtin.mask", DDS_TRANSPORTBUILTIN_SHMEM, "SHMEM ",
             [](const Fast &qos) { return transportsOf(qos); }},
        });
}

// What topics, writers and readers have alike.
template <typename Qos, typename Fast>
std::vector<Row<Qos, Fast>> commonRows()
{
    return {
        {"durability.kind", DDS_TRANSIENT_LOCAL_DURABILITY_QOS,
         textOf(fast::TRANSIENT_LOCAL_DURABILITY_QOS),
         [](const Fast &qos) { return textOf(qos.durability().kind); }},
        {"deadline.period", 7, "7.5",
         [](const Fast &qos) { return textOf(qos.deadline().period); }},
        {"latency_budget.duration", 7, "7.5",
         [](const Fast &qos) { return textOf(qos.latency_budget().duration); }},
        {"liveliness.kind", DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS,
         textOf(fast::MANUAL_BY_TOPIC_LIVELINESS_QOS),
         [](const Fast &qos) { return textOf(qos.liveliness().kind); }},
        {"liveliness.lease_duration", 7, "7.5",
         [](const Fast &qos) { return textOf(qos.liveliness().lease_duration); }},
        {"reliability.max_blocking_time", 7, "7.5",
         [](const Fast &qos) { return textOf(qos.reliability().max_blocking_time); }},
        {"history.kind", DDS_KEEP_ALL_HISTORY_QOS, textOf(fast::KEEP_ALL_HISTORY_QOS),
         [](const Fast &qos) { return textOf(qos.history().kind); }},
        {"history.depth", 7, "7", [](const Fast &qos) { return textOf(qos.history().depth); }},
        {"resource_limits.max_samples", 7, "7",
         [](const Fast &qos) { return textOf(qos.resource_limits().max_samples_per_instance); }},
        {"resource_limits.max_instances", 7, "7",
         [](const Fast &qos) { return textOf(qos.resource_limits().max_instances); }},
        {"resource_limits.max_samples_per_instance", 7, "7",
         [](const Fast &qos) { return textOf(qos.resource_limits().max_samples_per_instance); }},
        {"ownership.kind", DDS_EXCLUSIVE_OWNERSHIP_QOS, textOf(fast::EXCLUSIVE_OWNERSHIP_QOS),
         [](const Fast &qos) { return textOf(qos.ownership().kind); },
         [](Qos &qos) { qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS; }},
    };
}

template <typename Qos, typename Fast>
void addDurabilityService(std::vector<Row<Qos, Fast>> &rows)
{
    rows.insert(
        rows.end(),
        {
            {"durability_service.service_cleanup_delay", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.durability_service().service_cleanup_delay);
             }},
            {"durability_service.history_kind", DDS_KEEP_ALL_HISTORY_QOS,
             textOf(fast::KEEP_ALL_HISTORY_QOS),
             [](const Fast &qos) { return textOf(qos.durability_service().history_kind); }},
            {"durability_service.history_depth", 7, "7",
             [](const Fast &qos) { return textOf(qos.durability_service().history_depth); }},
            {"durability_service.max_samples", 7, "7",
             [](const Fast &qos) { return textOf(qos.durability_service().max_samples); }},
            {"durability_service.max_instances", 7, "7",
             [](const Fast &qos) { return textOf(qos.durability_service().max_instances); }},
            {"durability_service.max_samples_per_instance", 7, "7",
             [](const Fast &qos) {
                 return textOf(qos.durability_service().max_samples_per_instance);
             }},
            {"transport_priority.value", 7, "7",
             [](const Fast &qos) { return textOf(qos.transport_priority().value); }},
            {"lifespan.duration", 7, "7.5",
             [](const Fast &qos) { return textOf(qos.lifespan().duration); }},
        });
}

TEST_F(QosMapping, setsWhatATopicHas)
{
    using Fast = fast::TopicQos;
    auto rows = commonRows<DDS_TopicQos, Fast>();
    addDurabilityService(rows);
    rows.insert(rows.end(),
                {
                    {"topic_data.value", 0, "1 2 3 ",
                     [](const Fast &qos) { return octetsOf(qos.topic_data().data_vec()); }},
                    {"reliability.kind", DDS_RELIABLE_RELIABILITY_QOS,
                     textOf(fast::RELIABLE_RELIABILITY_QOS),
                     [](const Fast &qos) { return textOf(qos.reliability().kind); }},
                    {"representation.value", DDS_XCDR_DATA_REPRESENTATION, "0 ",
                     [](const Fast &qos) { return idsOf(qos.representation().m_value); }},
                });
    checkRows(zuv::dds::kTopicQosRecord, rows);
}

// What publishers and subscribers have, which is the same.
template <typename Qos, typename Fast>
std::vector<Row<Qos, Fast>> groupRows()
{
    return {
        {"presentation.access_scope", DDS_TOPIC_PRESENTATION_QOS,
         textOf(fast::TOPIC_PRESENTATION_QOS),
         [](const Fast &qos) { return textOf(qos.presentation().access_scope); }},
        {"presentation.coherent_access", 1, "1",
         [](const Fast &qos) { return textOf(qos.presentation().coherent_access); }},
        {"presentation.ordered_access", 1, "1",
         [](const Fast &qos) { return textOf(qos.presentation().ordered_access); }},
        {"partition.name", 0, "one two ", [](const Fast &qos) { return namesOf(qos.partition()); }},
        {"group_data.value", 0, "1 2 3 ",
         [](const Fast &qos) { return octetsOf(qos.group_data().data_vec()); }},
        {"entity_factory.autoenable_created_entities", 0, "0",
         [](const Fast &qos) { return textOf(qos.entity_factory().autoenable_created_entities); }},
    };
}

TEST_F(QosMapping, setsWhatAPublisherHas)
{
    checkRows(zuv::dds::kPublisherQosRecord, groupRows<DDS_PublisherQos, fast::PublisherQos>());
}

TEST_F(QosMapping, setsWhatASubscriberHas)
{
    checkRows(zuv::dds::kSubscriberQosRecord, groupRows<DDS_SubscriberQos, fast::SubscriberQos>());
}

TEST_F(QosMapping, setsWhatAWriterHas)
{
    using Fast = fast::DataWriterQos;
    auto rows = commonRows<DDS_DataWriterQos, Fast>();
    addDurabilityService(rows);
    rows.insert(
        rows.end(),
        {
            {"reliability.kind", DDS_BEST_EFFORT_RELIABILITY_QOS,
             textOf(fast::BEST_EFFORT_RELIABILITY_QOS),
             [](const Fast &qos) { return textOf(qos.reliability().kind); }},
            {"user_data.value", 0, "1 2 3 ",
             [](const Fast &qos) { return octetsOf(qos.user_data().data_vec()); }},
            {"ownership_strength.value", 7, "7",
             [](const Fast &qos) { return textOf(qos.ownership_strength().value); }},
            {"writer_data_lifecycle.autodispose_unregistered_instances", 0, "0",
             [](const Fast &qos) {
                 return textOf(qos.writer_data_lifecycle().autodispose_unregistered_instances);
             }},
            {"representation.value", DDS_XCDR_DATA_REPRESENTATION, "0 ",
             [](const Fast &qos) { return idsOf(qos.representation().m_value); }},
            {"property.value", 0, "value propagated",
             [](const Fast &qos) { return propertyOf(qos.properties()); }},
            {"protocol.rtps_reliable_writer.heartbeat_period", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reliable_writer_qos().times.heartbeatPeriod);
             }},
            {"protocol.rtps_reliable_writer.max_nack_response_delay", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reliable_writer_qos().times.nackResponseDelay);
             }},
            {"protocol.rtps_reliable_writer.nack_suppression_duration", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reliable_writer_qos().times.nackSupressionDuration);
             }},
            {"protocol.rtps_reliable_writer.max_send_window_size", 7, "7",
             [](const Fast &qos) { return textOf(qos.resource_limits().max_samples_per_instance); },
             [](DDS_DataWriterQos &qos) { qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS; }},
        });
    checkRows(zuv::dds::kDataWriterQosRecord, rows);
}

TEST_F(QosMapping, setsWhatAReaderHas)
{
    using Fast = fast::DataReaderQos;
    auto rows = commonRows<DDS_DataReaderQos, Fast>();
    rows.insert(
        rows.end(),
        {
            {"reliability.kind", DDS_RELIABLE_RELIABILITY_QOS,
             textOf(fast::RELIABLE_RELIABILITY_QOS),
             [](const Fast &qos) { return textOf(qos.reliability().kind); }},
            {"user_data.value", 0, "1 2 3 ",
             [](const Fast &qos) { return octetsOf(qos.user_data().data_vec()); }},
            {"time_based_filter.minimum_separation", 7, "7.5",
             [](const Fast &qos) { return textOf(qos.time_based_filter().minimum_separation); }},
            {"reader_data_lifecycle.autopurge_nowriter_samples_delay", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reader_data_lifecycle().autopurge_no_writer_samples_delay);
             }},
            {"reader_data_lifecycle.autopurge_disposed_samples_delay", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reader_data_lifecycle().autopurge_disposed_samples_delay);
             }},
            {"representation.value", DDS_XCDR_DATA_REPRESENTATION, "0 ",
             [](const Fast &qos) { return idsOf(qos.type_consistency().representation.m_value); }},
            {"property.value", 0, "value propagated",
             [](const Fast &qos) { return propertyOf(qos.properties()); }},
            {"reader_resource_limits.dynamically_allocate_fragmented_samples", 1,
             textOf(eprosima::fastrtps::rtps::DYNAMIC_RESERVE_MEMORY_MODE),
             [](const Fast &qos) { return textOf(qos.endpoint().history_memory_policy); }},
            {"reader_resource_limits.max_samples_per_read", 7, "7",
             [](const Fast &qos) {
                 return textOf(qos.reader_resource_limits().max_samples_per_read);
             }},
            {"protocol.rtps_reliable_reader.max_heartbeat_response_delay", 7, "7.5",
             [](const Fast &qos) {
                 return textOf(qos.reliable_reader_qos().times.heartbeatResponseDelay);
             }},
        });
    checkRows(zuv::dds::kDataReaderQosRecord, rows);
}

// -- What the middleware does not have -------------------------------------------------------------------------

class QosNotices : public QosMapping
{
protected:
    QosNotices() { DDSLog_g_instrumentationMask |= ZUV_LOG_BIT_WARNING; }
    ~QosNotices() override { DDSLog_g_instrumentationMask = maskBefore_; }

    static std::vector<std::string> warningsIn(const zuv_test::LogCapture &log)
    {
        std::vector<std::string> texts;
        for (const auto &line : log.lines()) {
            if (line.level == ZUV_LOG_BIT_WARNING &&
                line.text.find(" is kept, ") != std::string::npos) {
                texts.push_back(line.text);
            }
        }
        return texts;
    }

private:
    const std::uint32_t maskBefore_ = DDSLog_g_instrumentationMask;
};

TEST_F(QosNotices, areToldOnceForEachField)
{
    DDS_DataWriterQos qos = {};
    zuv::dds::setQosDefaults(zuv::dds::kDataWriterQosRecord, &qos);
    {
        zuv_test::LogCapture log;
        made(qos);
        EXPECT_EQ(warningsIn(log), std::vector<std::string>()) << "defaults are not worth a line";
    }
    qos.batch.enable = DDS_BOOLEAN_TRUE;
    qos.latency_budget.duration.sec = 1;
    {
        zuv_test::LogCapture log;
        made(qos);
        EXPECT_EQ(warningsIn(log),
                  (std::vector<std::string>{
                      "datawriter_qos: latency_budget.duration is kept, and the middleware does "
                      "not act on it",
                      "datawriter_qos: batch.enable is kept, and the middleware has no such "
                      "field. Each sample is sent by itself."}));
    }
    {
        zuv_test::LogCapture log;
        made(qos);
        EXPECT_EQ(warningsIn(log), std::vector<std::string>()) << "once is enough";
    }

    // All the others, each by its name.
    std::set<std::string> told;
    std::set<std::string> expected;
    for (const QosRecord *const table : zuv::dds::kQosRecords) {
        alignas(std::max_align_t) char record[zuv::dds::kMaxQosRecordSize] = {};
        zuv::dds::setQosDefaults(*table, record);
        for (const QosMember &member : table->members) {
            for (const QosField &field : member.policy->fields) {
                if (field.effect == QosEffect::kKept || field.effect == QosEffect::kAnnounced) {
                    expected.insert(table->tag + (": " + zuv_test::nameOf(member, field)));
                }
                zuv_test::setField(record, member, field,
                                   zuv::dds::defaultNumberOf(member, field) ^ 1);
            }
        }
        for (int round = 0; round < 2; ++round) {
            zuv_test::LogCapture log;
            zuv::dds::tellWhatHasNoEffect(*table, record);
            for (const std::string &text : warningsIn(log)) {
                EXPECT_TRUE(told.insert(text.substr(0, text.find(" is kept"))).second) << text;
            }
        }
        zuv::dds::finalizeQos(*table, record);
    }
    told.insert({"datawriter_qos: latency_budget.duration", "datawriter_qos: batch.enable"});
    EXPECT_EQ(told, expected);
}

// What the table says the middleware does not act on. When a later one does, the table is to be changed.
class WithoutEffect : public testing::Test
{
protected:
    static DDS_Long readableCount(zuv_test::Link<QuestionType> &link)
    {
        Test_QuestionSeq samples = DDS_SEQUENCE_INITIALIZER;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        Test_QuestionDataReader *const reader = Test_QuestionDataReader_narrow(link.reader);
        Test_QuestionDataReader_read(reader, &samples, &infos, DDS_LENGTH_UNLIMITED,
                                     DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                     DDS_ANY_INSTANCE_STATE);
        const DDS_Long count = Test_QuestionSeq_get_length(&samples);
        Test_QuestionDataReader_return_loan(reader, &samples, &infos);
        return count;
    }
};

TEST_F(WithoutEffect, isATimeBetweenSamples)
{
    zuv_test::Link<QuestionType> link([](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
        reader.time_based_filter.minimum_separation = {100, 0};
    });
    ASSERT_TRUE(link.waitForMatch());
    EXPECT_EQ(zuv_test::write(link.writer, zuv_test::Question(1, "one")), DDS_RETCODE_OK);
    EXPECT_EQ(zuv_test::write(link.writer, zuv_test::Question(1, "two")), DDS_RETCODE_OK);
    EXPECT_TRUE(zuv_test::eventually([&] { return readableCount(link) == 2; }));
}

TEST_F(WithoutEffect, isATimeAfterWhichSamplesGo)
{
    zuv_test::Link<QuestionType> link([](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
        reader.reader_data_lifecycle.autopurge_nowriter_samples_delay = {0, 1};
        reader.reader_data_lifecycle.autopurge_disposed_samples_delay = {0, 1};
    });
    ASSERT_TRUE(link.waitForMatch());
    const zuv_test::Question one(1, "one");
    EXPECT_EQ(zuv_test::write(link.writer, one), DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionDataWriter_dispose(Test_QuestionDataWriter_narrow(link.writer),
                                              &one.value, nullptr),
              DDS_RETCODE_OK);
    EXPECT_TRUE(zuv_test::eventually([&] { return readableCount(link) == 2; }));
    EXPECT_EQ(DDS_Publisher_delete_datawriter(link.publisher, link.writer), DDS_RETCODE_OK);
    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // far more than the delay
    EXPECT_GE(readableCount(link), 2);
}

// A service that keeps samples beyond the writer's life would have to be named by properties.
TEST_F(QosMapping, refusesADurabilityThatNobodyProvides)
{
    DDS_DataWriterQos qos = {};
    zuv::dds::setQosDefaults(zuv::dds::kDataWriterQosRecord, &qos);
    for (const auto kind : {DDS_TRANSIENT_DURABILITY_QOS, DDS_PERSISTENT_DURABILITY_QOS}) {
        zuv_test::LogCapture log;
        qos.durability.kind = kind;
        EXPECT_EQ(DDS_Publisher_create_datawriter(
                      DDS_DomainParticipant_get_implicit_publisher(participant_), topic_, &qos,
                      nullptr, DDS_STATUS_MASK_NONE),
                  nullptr)
            << kind;
        EXPECT_FALSE(log.isEmpty());
    }
}

// -- Transports, peers and flow controllers --------------------------------------------------------------------

class ParticipantTraffic : public QosMapping
{
protected:
    ParticipantTraffic() { zuv::dds::setQosDefaults(zuv::dds::kDomainParticipantQosRecord, &qos_); }
    ~ParticipantTraffic() override { DDS_DomainParticipantQos_finalize(&qos_); }

    void set(const char *name, const char *value)
    {
        EXPECT_EQ(DDS_PropertyQosPolicyHelper_assert_property(&qos_.property, name, value, 0),
                  DDS_RETCODE_OK);
    }

    zuv_test::LogCapture log_;
    DDS_DomainParticipantQos qos_ = {};
};

TEST_F(ParticipantTraffic, losesTheAddressesOfATransportThatIsTakenAway)
{
    qos_.transport_builtin.mask = DDS_TRANSPORTBUILTIN_SHMEM;
    const fast::DomainParticipantQos made = QosMapping::made(qos_);
    EXPECT_EQ(transportsOf(made), "SHMEM ");
    EXPECT_FALSE(made.transport().use_builtin_transports);
    for (const auto &locator : made.wire_protocol().builtin.metatrafficUnicastLocatorList) {
        EXPECT_NE(locator.kind, LOCATOR_KIND_UDPv4);
    }
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(ParticipantTraffic, reachesOthersThroughTheTransportThatIsLeft)
{
    for (const DDS_TransportBuiltinKindMask mask :
         {DDS_TRANSPORTBUILTIN_SHMEM, DDS_TRANSPORTBUILTIN_UDPv4}) {
        qos_.transport_builtin.mask = mask;
        DDS_DomainParticipant *const one = zuv_test::joinDomain(qos_);
        DDS_DomainParticipant *const other = zuv_test::joinDomain(qos_);
        // The first one is the participant itself.
        const bool haveMet = zuv_test::eventually([&] {
            return one->fast->get_participant_names().size() > 1 &&
                   other->fast->get_participant_names().size() > 1;
        });
        EXPECT_TRUE(haveMet) << mask;
        zuv_test::leaveDomain(one);
        zuv_test::leaveDomain(other);
    }
}

TEST_F(ParticipantTraffic, reportsATransportThatTheProfileDoesNotHave)
{
    qos_.transport_builtin.mask = DDS_TRANSPORTBUILTIN_UDPv4 | DDS_TRANSPORTBUILTIN_UDPv6;
    EXPECT_EQ(transportsOf(made(qos_)), "UDPv4 ");
    ASSERT_EQ(log_.lines().size(), 1U);
    EXPECT_NE(log_.lines()[0].text.find("use UDPv6"), std::string::npos);
}

TEST_F(ParticipantTraffic, hasTheSizesOfTheProperties)
{
    set("dds.transport.UDPv4.send_socket_buffer_size", "100000");
    set("dds.transport.UDPv4.recv_socket_buffer_size", "200000");
    set("dds.transport.UDPv4.message_size_max", "30000");
    set("dds.transport.shmem.segment_size", "1000000");
    set("dds.transport.shmem.message_size_max", "40000");
    bool sawUdp = false, sawSharedMemory = false;
    const fast::DomainParticipantQos made = QosMapping::made(qos_);
    for (const auto &one : made.transport().user_transports) {
        if (auto *udp = dynamic_cast<transport::UDPv4TransportDescriptor *>(one.get())) {
            sawUdp = true;
            EXPECT_EQ(udp->sendBufferSize, 100000U);
            EXPECT_EQ(udp->receiveBufferSize, 200000U);
            EXPECT_EQ(udp->max_message_size(), 30000U);
        }
        if (auto *shared = dynamic_cast<transport::SharedMemTransportDescriptor *>(one.get())) {
            sawSharedMemory = true;
            EXPECT_EQ(shared->segment_size(), 1000000U);
            EXPECT_EQ(shared->max_message_size(), 40000U);
        }
    }
    EXPECT_TRUE(sawUdp && sawSharedMemory);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(ParticipantTraffic, reportsWhatIsNoNumberAndWhatIsNoAddress)
{
    set("dds.transport.UDPv4.message_size_max", "much");
    set("dds.flow_controller.slow.max_bytes_per_period", "-1");
    zuv_test::setTexts(qos_.discovery.initial_peers, {"127.0.0.1:0", "localhost", "127.0.0.300",
                                                      "tcp://127.0.0.1", "127.0.0.1:7"});
    const fast::DomainParticipantQos made = QosMapping::made(qos_);
    EXPECT_EQ(peersOf(made.wire_protocol().builtin.initialPeersList), "127.0.0.1:7 ");
    EXPECT_TRUE(made.flow_controllers().empty());
    EXPECT_EQ(log_.lines().size(), 6U);
}

TEST_F(ParticipantTraffic, passesTheFlowControllerOfTheWriter)
{
    set("dds.flow_controller.slow.max_bytes_per_period", "1000");
    set("dds.flow_controller.slow.period_ms", "20");
    DDS_DomainParticipant *const participant = zuv_test::joinDomain(qos_);
    ASSERT_NE(participant, nullptr);
    const auto controllers = participant->fast->get_qos().flow_controllers();
    ASSERT_EQ(controllers.size(), 1U);
    EXPECT_STREQ(controllers[0]->name, "slow");
    EXPECT_EQ(controllers[0]->max_bytes_per_period, 1000);
    EXPECT_EQ(controllers[0]->period_ms, 20U);

    ASSERT_EQ(QuestionType::registerType(participant, QuestionType::name()), DDS_RETCODE_OK);
    DDS_Topic *const topic =
        DDS_DomainParticipant_create_topic(participant, "slow topic", QuestionType::name(),
                                           &DDS_TOPIC_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataWriterQos writerQos = {};
    zuv::dds::setQosDefaults(zuv::dds::kDataWriterQosRecord, &writerQos);
    DDS_PropertyQosPolicyHelper_assert_property(&writerQos.property,
                                                "dds.publish_mode.flow_controller_name", "slow", 0);
    DDS_DataWriter *const writer =
        DDS_Publisher_create_datawriter(DDS_DomainParticipant_get_implicit_publisher(participant),
                                        topic, &writerQos, nullptr, DDS_STATUS_MASK_NONE);
    DDS_DataWriterQos_finalize(&writerQos);
    ASSERT_NE(writer, nullptr);
    EXPECT_EQ(writer->fast->get_qos().publish_mode().kind, fast::ASYNCHRONOUS_PUBLISH_MODE);
    EXPECT_STREQ(writer->fast->get_qos().publish_mode().flow_controller_name, "slow");
    zuv_test::leaveDomain(participant);
    EXPECT_TRUE(log_.isEmpty());
}

// -- Two endpoints that do not fit -----------------------------------------------------------------------------

struct Mismatch {
    const char *name;
    DDS_QosPolicyId_t policy;
    void (*set)(DDS_DataWriterQos &, DDS_DataReaderQos &);
};

// Each policy of request and offer that the middleware compares (OMG DDS 1.4, 2.2.3).
const Mismatch kMismatches[] = {
    {"Reliability", DDS_RELIABILITY_QOS_POLICY_ID,
     [](DDS_DataWriterQos &writer, DDS_DataReaderQos &) {
         writer.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
     }},
    {"Durability", DDS_DURABILITY_QOS_POLICY_ID,
     [](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
         reader.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
     }},
    {"Deadline", DDS_DEADLINE_QOS_POLICY_ID,
     [](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
         writer.deadline.period = {1, 1};
         reader.deadline.period = {1, 0};
     }},
    {"DeadlineOfNone", DDS_DEADLINE_QOS_POLICY_ID,
     [](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
         reader.deadline.period = {1, 0};
     }},
    {"OwnershipOfTheReader", DDS_OWNERSHIP_QOS_POLICY_ID,
     [](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
         reader.ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS;
     }},
    {"OwnershipOfTheWriter", DDS_OWNERSHIP_QOS_POLICY_ID,
     [](DDS_DataWriterQos &writer, DDS_DataReaderQos &) {
         writer.ownership.kind = DDS_EXCLUSIVE_OWNERSHIP_QOS;
     }},
    {"LivelinessByParticipant", DDS_LIVELINESS_QOS_POLICY_ID,
     [](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
         reader.liveliness.kind = DDS_MANUAL_BY_PARTICIPANT_LIVELINESS_QOS;
     }},
    {"LivelinessByTopic", DDS_LIVELINESS_QOS_POLICY_ID,
     [](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
         writer.liveliness.kind = DDS_MANUAL_BY_PARTICIPANT_LIVELINESS_QOS;
         reader.liveliness.kind = DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS;
     }},
    {"LivelinessLease", DDS_LIVELINESS_QOS_POLICY_ID,
     [](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
         writer.liveliness.lease_duration = {5, 0};
         reader.liveliness.lease_duration = {4, 0};
     }},
};

class IncompatibleQos : public testing::TestWithParam<Mismatch>
{
};

INSTANTIATE_TEST_SUITE_P(Policies, IncompatibleQos, testing::ValuesIn(kMismatches),
                         [](const auto &test) { return std::string(test.param.name); });

TEST_P(IncompatibleQos, namesThePolicyOnBothSides)
{
    zuv_test::Link<QuestionType> link(GetParam().set);
    DDS_OfferedIncompatibleQosStatus offered = {};
    DDS_RequestedIncompatibleQosStatus requested = {};
    EXPECT_TRUE(zuv_test::eventually([&] {
        DDS_DataWriter_get_offered_incompatible_qos_status(link.writer, &offered);
        return offered.total_count > 0;
    }));
    EXPECT_TRUE(zuv_test::eventually([&] {
        DDS_DataReader_get_requested_incompatible_qos_status(link.reader, &requested);
        return requested.total_count > 0;
    }));
    EXPECT_EQ(offered.last_policy_id, GetParam().policy);
    EXPECT_EQ(requested.last_policy_id, GetParam().policy);
    EXPECT_FALSE(link.isMatched());
}

class CompatibleQos : public testing::Test
{
protected:
    static void expectNoIncompatibility(zuv_test::Link<QuestionType> &link)
    {
        DDS_OfferedIncompatibleQosStatus offered = {};
        DDS_RequestedIncompatibleQosStatus requested = {};
        DDS_DataWriter_get_offered_incompatible_qos_status(link.writer, &offered);
        DDS_DataReader_get_requested_incompatible_qos_status(link.reader, &requested);
        EXPECT_EQ(offered.total_count, 0) << DDS_QosPolicyId_to_string(offered.last_policy_id);
        EXPECT_EQ(requested.total_count, 0) << DDS_QosPolicyId_to_string(requested.last_policy_id);
    }
};

TEST_F(CompatibleQos, offersAsMuchAsIsRequestedOrMore)
{
    zuv_test::Link<QuestionType> link([](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
        reader.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
        writer.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
        writer.deadline.period = reader.deadline.period = {60, 0};
        writer.liveliness.kind = DDS_MANUAL_BY_TOPIC_LIVELINESS_QOS;
        writer.liveliness.lease_duration = reader.liveliness.lease_duration = {60, 0};
    });
    EXPECT_TRUE(link.waitForMatch());
    expectNoIncompatibility(link);
}

// The middleware compares neither of these. When a later one does, they are for the table above.
TEST_F(CompatibleQos, isWhatTheMiddlewareDoesNotActOn)
{
    zuv_test::Link<QuestionType> link(
        [](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
            writer.latency_budget.duration = {1, 0};
            reader.destination_order.kind = DDS_BY_SOURCE_TIMESTAMP_DESTINATIONORDER_QOS;
            const DDS_DataRepresentationId_t id = DDS_XCDR_DATA_REPRESENTATION;
            DDS_DataRepresentationIdSeq_from_array(&reader.representation.value, &id, 1);
        },
        nullptr,
        [](DDS_PublisherQos &, DDS_SubscriberQos &subscriber) {
            subscriber.presentation = {DDS_GROUP_PRESENTATION_QOS, DDS_BOOLEAN_TRUE,
                                       DDS_BOOLEAN_TRUE};
        });
    EXPECT_TRUE(link.waitForMatch());
    expectNoIncompatibility(link);
}

// Endpoints in different partitions do not know of each other, which is no fault of their QoS.
TEST_F(CompatibleQos, mayStillBeApartByItsPartition)
{
    const auto linked = [](const char *ofReader) {
        return std::make_unique<zuv_test::Link<QuestionType>>(
            nullptr, nullptr,
            [ofReader](DDS_PublisherQos &publisher, DDS_SubscriberQos &subscriber) {
                zuv_test::setTexts(publisher.partition.name, {"one", "two"});
                zuv_test::setTexts(subscriber.partition.name, {ofReader});
            });
    };
    const auto together = linked("t*");
    const auto apart = linked("three");
    EXPECT_TRUE(together->waitForMatch());
    expectNoIncompatibility(*together);
    EXPECT_FALSE(apart->isMatched());
    expectNoIncompatibility(*apart);
}

} // namespace
