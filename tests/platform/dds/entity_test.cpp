// Making, finding, enabling and deleting entities, their statuses and their listeners.
#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/log/Log.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/DataReaderListener.hpp>
#include <fastdds/dds/subscriber/qos/DataReaderQos.hpp>

#include "Domain.h"
#include "platform/dds/EntityImpl.hpp"
#include "platform/dds/ReaderAdapter.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::Answer;
using zuv_test::AnswerType;
using zuv_test::eventually;
using zuv_test::Link;
using zuv_test::Question;
using zuv_test::QuestionType;

namespace fast = eprosima::fastdds::dds;

constexpr DDS_Duration_t kPatience = {5, 0};

// -- The factory -----------------------------------------------------------------------------------------------

TEST(ParticipantFactory, isOneAndGoesWhenItIsEmpty)
{
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    EXPECT_EQ(DDS_DomainParticipantFactory_get_instance(), factory);
    DDS_DomainParticipant *const participant = zuv_test::joinDomain();
    ASSERT_NE(participant, nullptr);
    zuv_test::LogCapture log;
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(log.lines().size(), 1U);
    zuv_test::leaveDomain(participant);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
}

TEST(ParticipantFactory, refusesWhatItCannotJoin)
{
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    zuv_test::LogCapture log;
    for (const DDS_Long domain : {-1, 233}) {
        EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(
                      factory, domain, &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, 0),
                  nullptr);
    }
    EXPECT_EQ(DDS_DomainParticipantFactory_create_participant(factory, 1, nullptr, nullptr, 0),
              nullptr);
    EXPECT_EQ(log.lines().size(), 3U);
    for (const zuv_test::LogLine &line : log.lines()) {
        EXPECT_EQ(line.message, &DDS_LOG_BAD_PARAMETER_s);
    }
}

TEST(ParticipantFactory, leavesNothingBehind)
{
    zuv_test::joinDomain(); // whatever is made once in a process
    {
        const zuv_test::HeapCheck heap;
        DDS_DomainParticipant *const participant = zuv_test::joinDomain();
        zuv_test::leaveDomain(participant);
        EXPECT_TRUE(heap.isBalanced());
    }
}

// Peers look for a participant at the first ports of its domain only.
TEST(ParticipantFactory, makesParticipantsThatAreFoundHoweverManyWentBefore)
{
    for (int count = 0; count < 100; ++count) {
        zuv_test::leaveDomain(zuv_test::joinDomain());
    }
    Link<AnswerType> link;
    DDS_DomainParticipant *const other = zuv_test::joinDomain();
    // The first one is the participant itself.
    EXPECT_TRUE(eventually([&] { return other->fast->get_participant_names().size() > 1; }));
    zuv_test::leaveDomain(other);
}

TEST(Participant, tellsOthersItsNameAndPropagatedProperties)
{
    DDS_DomainParticipantQos qos;
    ASSERT_EQ(DDS_DomainParticipantQos_initialize(&qos), DDS_RETCODE_OK);
    qos.participant_name.name = DDS_String_dup("someone");
    DDS_PropertyQosPolicyHelper_assert_property(&qos.property, "seen", "yes", DDS_BOOLEAN_TRUE);
    DDS_PropertyQosPolicyHelper_assert_property(&qos.property, "unseen", "yes", DDS_BOOLEAN_FALSE);
    DDS_DomainParticipant *const participant = zuv_test::joinDomain(qos);
    ASSERT_NE(participant, nullptr);
    EXPECT_EQ(std::string(participant->fast->get_qos().name()), "someone");
    int found = 0;
    for (const auto &property : participant->fast->get_qos().properties().properties()) {
        if (property.value() == "yes") {
            EXPECT_EQ(property.propagate(), property.name() == "seen");
            ++found;
        }
    }
    EXPECT_EQ(found, 2);
    DDS_DomainParticipantQos read = {};
    EXPECT_EQ(DDS_DomainParticipant_get_qos(participant, &read), DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_DomainParticipantQos_equals(&qos, &read));
    DDS_DomainParticipantQos_finalize(&qos);
    DDS_DomainParticipantQos_finalize(&read);
    zuv_test::leaveDomain(participant);
}

// -- Topics and types --------------------------------------------------------------------------------------------

TEST(Types, areCountedByName)
{
    DDS_DomainParticipant *const participant = zuv_test::joinDomain();
    zuv_test::LogCapture log;
    EXPECT_EQ(Test_AnswerTypeSupport_register_type(participant, "name"), DDS_RETCODE_OK);
    EXPECT_EQ(Test_AnswerTypeSupport_register_type(participant, "name"), DDS_RETCODE_OK);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(Test_QuestionTypeSupport_register_type(participant, "name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Test_AnswerTypeSupport_unregister_type(participant, "name"), DDS_RETCODE_OK);
    EXPECT_EQ(Test_AnswerTypeSupport_unregister_type(participant, "name"), DDS_RETCODE_OK);
    EXPECT_EQ(Test_AnswerTypeSupport_unregister_type(participant, "name"),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Test_AnswerTypeSupport_register_type(nullptr, "name"), DDS_RETCODE_ERROR);
    zuv_test::leaveDomain(participant);
}

TEST(Types, stayWhileATopicUsesThem)
{
    Link<AnswerType> link;
    zuv_test::LogCapture log;
    EXPECT_EQ(Test_AnswerTypeSupport_unregister_type(link.participant, AnswerType::name()),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(log.lines().size(), 1U);
}

TEST(Topics, areFoundByNameAndMadeOnce)
{
    Link<AnswerType> link;
    zuv_test::LogCapture log;
    DDS_TopicDescription *const found =
        DDS_DomainParticipant_lookup_topicdescription(link.participant, "test topic");
    EXPECT_EQ(DDS_Topic_narrow(found), link.topic);
    EXPECT_STREQ(DDS_TopicDescription_get_name(found), "test topic");
    EXPECT_EQ(DDS_TopicDescription_get_participant(found), link.participant);
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(link.participant, "none"), nullptr);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(DDS_DomainParticipant_create_topic(link.participant, "test topic", AnswerType::name(),
                                                 &DDS_TOPIC_QOS_DEFAULT, nullptr, 0),
              nullptr);
    EXPECT_EQ(DDS_DomainParticipant_create_topic(link.participant, "other", "unknown type",
                                                 &DDS_TOPIC_QOS_DEFAULT, nullptr, 0),
              nullptr);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{
                               "!make a second topic named test topic", "!create topic",
                               "!find the registered type unknown type", "!create topic"}));
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(link.participant, link.topic),
              DDS_RETCODE_PRECONDITION_NOT_MET)
        << "it has a reader and a writer";
}

TEST(Topics, takeTheParticipantsDefault)
{
    DDS_DomainParticipant *const participant = zuv_test::joinDomain();
    Test_AnswerTypeSupport_register_type(participant, "type");
    DDS_TopicQos qos = {};
    ASSERT_EQ(DDS_DomainParticipant_get_default_topic_qos(participant, &qos), DDS_RETCODE_OK);
    qos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    ASSERT_EQ(DDS_DomainParticipant_set_default_topic_qos(participant, &qos), DDS_RETCODE_OK);
    DDS_Topic *const topic = DDS_DomainParticipant_create_topic(participant, "topic", "type",
                                                                &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
    ASSERT_NE(topic, nullptr);
    DDS_TopicQos read = {};
    EXPECT_EQ(DDS_Topic_get_qos(topic, &read), DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_TopicQos_equals(&qos, &read));
    DDS_TopicQos_finalize(&qos);
    DDS_TopicQos_finalize(&read);
    zuv_test::leaveDomain(participant);
}

// -- Enabling ------------------------------------------------------------------------------------------------------

TEST(Enabling, isLeftToTheCallerWhenThePublisherSaysSo)
{
    Link<AnswerType> link;
    DDS_PublisherQos qos;
    DDS_PublisherQos_initialize(&qos);
    qos.entity_factory.autoenable_created_entities = DDS_BOOLEAN_FALSE;
    DDS_Publisher *const publisher =
        DDS_DomainParticipant_create_publisher(link.participant, &qos, nullptr, 0);
    DDS_PublisherQos_finalize(&qos);
    ASSERT_NE(publisher, nullptr);
    DDS_DataWriter *const writer = DDS_Publisher_create_datawriter(
        publisher, link.topic, &DDS_DATAWRITER_QOS_DEFAULT, nullptr, 0);
    ASSERT_NE(writer, nullptr);
    DDS_Entity *const entity = DDS_DataWriter_as_entity(writer);
    EXPECT_FALSE(DDS_Entity_is_enabled(entity));
    {
        zuv_test::LogCapture log;
        EXPECT_EQ(zuv_test::write(writer, Answer(1)), DDS_RETCODE_NOT_ENABLED);
    }
    EXPECT_EQ(DDS_Entity_enable(entity), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Entity_enable(entity), DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_Entity_is_enabled(entity));
    EXPECT_EQ(zuv_test::write(writer, Answer(1)), DDS_RETCODE_OK);
}

TEST(Enabling, reportsWhatItCannotDo)
{
    zuv_test::LogCapture log;
    EXPECT_EQ(DDS_Entity_enable(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_Entity_get_statuscondition(nullptr), nullptr);
    EXPECT_EQ(DDS_StatusCondition_set_enabled_statuses(nullptr, 0), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(log.lines().size(), 3U);
    EXPECT_EQ(log.texts().front(), "!accept parameter self");
}

// -- Statuses and listeners ------------------------------------------------------------------------------------------

TEST(Matching, isCountedOnBothSides)
{
    Link<AnswerType> link;
    DDS_PublicationMatchedStatus written = {};
    DDS_SubscriptionMatchedStatus read = {};
    EXPECT_TRUE(eventually([&] {
        DDS_DataWriter_get_publication_matched_status(link.writer, &written);
        return written.current_count == 1;
    }));
    EXPECT_EQ(written.total_count, 1);
    EXPECT_EQ(written.current_count_change, 1);
    const DDS_InstanceHandle_t reader =
        DDS_Entity_get_instance_handle(DDS_DataReader_as_entity(link.reader));
    EXPECT_TRUE(DDS_InstanceHandle_equals(&written.last_subscription_handle, &reader));
    DDS_DataWriter_get_publication_matched_status(link.writer, &written);
    EXPECT_EQ(written.current_count, 1);
    EXPECT_EQ(written.current_count_change, 0) << "read once already";
    EXPECT_EQ(DDS_DataReader_get_subscription_matched_status(link.reader, &read), DDS_RETCODE_OK);
    EXPECT_EQ(read.current_count, 1);

    EXPECT_EQ(DDS_Publisher_delete_datawriter(link.publisher, link.writer), DDS_RETCODE_OK);
    EXPECT_TRUE(eventually([&] {
        DDS_DataReader_get_subscription_matched_status(link.reader, &read);
        return read.current_count == 0;
    }));
    EXPECT_EQ(read.total_count, 1);
}

struct Heard {
    std::atomic<int> matched{0};
    std::atomic<int> incompatible{0};
    std::atomic<int> lastPolicy{0};
    std::atomic<int> data{0};
};

DDS_DataWriterListener writerListener(Heard &heard)
{
    DDS_DataWriterListener listener = {};
    listener.listener_data = &heard;
    listener.on_publication_matched = [](void *data, DDS_DataWriter *,
                                         const DDS_PublicationMatchedStatus *) {
        ++static_cast<Heard *>(data)->matched;
    };
    listener.on_offered_incompatible_qos = [](void *data, DDS_DataWriter *,
                                              const DDS_OfferedIncompatibleQosStatus *status) {
        static_cast<Heard *>(data)->lastPolicy = status->last_policy_id;
        ++static_cast<Heard *>(data)->incompatible;
    };
    return listener;
}

DDS_DataReaderListener readerListener(Heard &heard)
{
    DDS_DataReaderListener listener = {};
    listener.listener_data = &heard;
    listener.on_subscription_matched = [](void *data, DDS_DataReader *,
                                          const DDS_SubscriptionMatchedStatus *) {
        ++static_cast<Heard *>(data)->matched;
    };
    listener.on_requested_incompatible_qos = [](void *data, DDS_DataReader *,
                                                const DDS_RequestedIncompatibleQosStatus *status) {
        static_cast<Heard *>(data)->lastPolicy = status->last_policy_id;
        ++static_cast<Heard *>(data)->incompatible;
    };
    listener.on_data_available = [](void *data, DDS_DataReader *) {
        ++static_cast<Heard *>(data)->data;
    };
    return listener;
}

TEST(Listeners, hearOfTheStatusesInTheirMask)
{
    Heard all, some; // the readers, which go with the link, tell them of that too
    Link<AnswerType> link;
    const DDS_DataReaderListener everything = readerListener(all);
    const DDS_DataReaderListener matchesOnly = readerListener(some);
    DDS_TopicDescription *const description = DDS_Topic_as_topicdescription(link.topic);
    DDS_DataReader *const first =
        DDS_Subscriber_create_datareader(link.subscriber, description, &DDS_DATAREADER_QOS_DEFAULT,
                                         &everything, DDS_STATUS_MASK_ALL);
    DDS_Subscriber_create_datareader(link.subscriber, description, &DDS_DATAREADER_QOS_DEFAULT,
                                     &matchesOnly, DDS_SUBSCRIPTION_MATCHED_STATUS);
    EXPECT_TRUE(eventually([&] { return all.matched == 1 && some.matched == 1; }));
    EXPECT_EQ(zuv_test::write(link.writer, Answer(1)), DDS_RETCODE_OK);
    EXPECT_TRUE(eventually([&] { return all.data == 1; }));
    EXPECT_EQ(some.data, 0);

    EXPECT_EQ(DDS_DataReader_set_listener(first, nullptr, DDS_STATUS_MASK_ALL), DDS_RETCODE_OK);
    EXPECT_EQ(zuv_test::write(link.writer, Answer(2)), DDS_RETCODE_OK);
    EXPECT_TRUE(link.waitForData());
    EXPECT_EQ(all.data, 1);
}

// What a listener learned when it asked the endpoint that it was called for.
struct Asked {
    std::atomic<int> calls{0};
    std::atomic<int> failures{0};

    void note(DDS_ReturnCode_t code, DDS_Boolean isEnabled)
    {
        failures += code != DDS_RETCODE_OK || !isEnabled;
        ++calls;
    }
};

// Endpoints of one participant match while the second of them is being made.
TEST(Listeners, areCalledForAnEndpointThatIsWhole)
{
    Asked reading, writing;
    Link<AnswerType> link;
    DDS_DataReaderListener ofReader = {};
    ofReader.listener_data = &reading;
    ofReader.on_subscription_matched = [](void *data, DDS_DataReader *reader,
                                          const DDS_SubscriptionMatchedStatus *) {
        DDS_SubscriptionMatchedStatus status = {};
        static_cast<Asked *>(data)->note(
            DDS_DataReader_get_subscription_matched_status(reader, &status),
            DDS_Entity_is_enabled(DDS_DataReader_as_entity(reader)));
    };
    DDS_Subscriber_create_datareader(link.subscriber, DDS_Topic_as_topicdescription(link.topic),
                                     &DDS_DATAREADER_QOS_DEFAULT, &ofReader, DDS_STATUS_MASK_ALL);
    EXPECT_TRUE(eventually([&] { return reading.calls == 1; }));

    DDS_DataWriterListener ofWriter = {};
    ofWriter.listener_data = &writing;
    ofWriter.on_publication_matched = [](void *data, DDS_DataWriter *writer,
                                         const DDS_PublicationMatchedStatus *) {
        DDS_PublicationMatchedStatus status = {};
        static_cast<Asked *>(data)->note(
            DDS_DataWriter_get_publication_matched_status(writer, &status),
            DDS_Entity_is_enabled(DDS_DataWriter_as_entity(writer)));
    };
    DDS_Publisher_create_datawriter(link.publisher, link.topic, &DDS_DATAWRITER_QOS_DEFAULT,
                                    &ofWriter, DDS_STATUS_MASK_ALL);
    EXPECT_TRUE(eventually([&] { return writing.calls >= 1; }));
    EXPECT_EQ(reading.failures, 0);
    EXPECT_EQ(writing.failures, 0);
}

// What a reader's listener is told of when it came while the reader was being made: once, and then of each.
TEST(Listeners, hearOfDataThatCameBeforeTheReaderWasWhole)
{
    Heard heard;
    const DDS_DataReaderListener listener = readerListener(heard);
    DDS_DataReader reader;
    zuv::dds::ReaderAdapter adapter(reader, &listener, DDS_STATUS_MASK_ALL);
    adapter.fastListener()->on_data_available(nullptr);
    adapter.fastListener()->on_data_available(nullptr);
    EXPECT_EQ(heard.data, 0);
    adapter.open();
    EXPECT_EQ(heard.data, 1);
    adapter.fastListener()->on_data_available(nullptr);
    EXPECT_EQ(heard.data, 2);
}

TEST(Listeners, hearWhichPolicyDoesNotFit)
{
    Link<AnswerType> link([](DDS_DataWriterQos &writer, DDS_DataReaderQos &) {
        writer.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    });
    DDS_OfferedIncompatibleQosStatus offered = {};
    EXPECT_TRUE(eventually([&] {
        DDS_DataWriter_get_offered_incompatible_qos_status(link.writer, &offered);
        return offered.total_count > 0;
    }));
    EXPECT_EQ(offered.last_policy_id, DDS_RELIABILITY_QOS_POLICY_ID);
    EXPECT_STREQ(DDS_QosPolicyId_to_string(offered.last_policy_id), "RELIABILITY_QOS_POLICY");
    DDS_RequestedIncompatibleQosStatus requested = {};
    EXPECT_TRUE(eventually([&] {
        DDS_DataReader_get_requested_incompatible_qos_status(link.reader, &requested);
        return requested.total_count > 0;
    }));
    EXPECT_EQ(requested.last_policy_id, DDS_RELIABILITY_QOS_POLICY_ID);

    Heard heard;
    const DDS_DataWriterListener listener = writerListener(heard);
    DDS_DataWriterQos qos;
    DDS_DataWriterQos_initialize(&qos);
    qos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    DDS_Publisher_create_datawriter(link.publisher, link.topic, &qos, &listener,
                                    DDS_OFFERED_INCOMPATIBLE_QOS_STATUS);
    DDS_DataWriterQos_finalize(&qos);
    EXPECT_TRUE(eventually([&] { return heard.incompatible > 0; }));
    EXPECT_EQ(heard.lastPolicy, DDS_RELIABILITY_QOS_POLICY_ID);
    EXPECT_EQ(heard.matched, 0);
}

TEST(PolicyNames, areToldForAnyNumber)
{
    EXPECT_STREQ(DDS_QosPolicyId_to_string(DDS_DURABILITY_QOS_POLICY_ID), "DURABILITY_QOS_POLICY");
    EXPECT_STREQ(DDS_QosPolicyId_to_string(DDS_TYPE_CONSISTENCY_ENFORCEMENT_QOS_POLICY_ID),
                 "TYPE_CONSISTENCY_ENFORCEMENT_QOS_POLICY");
    EXPECT_STREQ(DDS_QosPolicyId_to_string(static_cast<DDS_QosPolicyId_t>(25)),
                 "UNKNOWN_QOS_POLICY");
    EXPECT_STREQ(DDS_QosPolicyId_to_string(static_cast<DDS_QosPolicyId_t>(-1)),
                 "UNKNOWN_QOS_POLICY");
}

TEST(StatusConditions, areTriggeredByTheStatusesChosen)
{
    Link<AnswerType> link;
    ASSERT_TRUE(link.waitForMatch());
    DDS_StatusCondition *const condition =
        DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(link.reader));
    ASSERT_NE(condition, nullptr);
    EXPECT_EQ(DDS_StatusCondition_get_entity(condition), DDS_DataReader_as_entity(link.reader));
    EXPECT_EQ(DDS_StatusCondition_set_enabled_statuses(condition, DDS_DATA_AVAILABLE_STATUS),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_StatusCondition_get_enabled_statuses(condition), DDS_DATA_AVAILABLE_STATUS);
    EXPECT_FALSE(DDS_StatusCondition_get_trigger_value(condition));
    EXPECT_EQ(zuv_test::write(link.writer, Answer(1)), DDS_RETCODE_OK);
    EXPECT_TRUE(eventually([&] { return DDS_StatusCondition_get_trigger_value(condition) != 0; }));
    Test_AnswerSeq samples = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    Test_AnswerDataReader *const reader = Test_AnswerDataReader_narrow(link.reader);
    EXPECT_EQ(Test_AnswerDataReader_take(reader, &samples, &infos, 1, DDS_ANY_SAMPLE_STATE,
                                         DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE),
              DDS_RETCODE_OK);
    EXPECT_EQ(Test_AnswerDataReader_return_loan(reader, &samples, &infos), DDS_RETCODE_OK);
    EXPECT_FALSE(DDS_StatusCondition_get_trigger_value(condition));
}

// -- Writing -----------------------------------------------------------------------------------------------------------

TEST(Writing, namesTheSampleAndCarriesItsRelation)
{
    Link<AnswerType> link;
    ASSERT_TRUE(link.waitForMatch());
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    params.replace_auto = DDS_BOOLEAN_TRUE;
    params.related_sample_identity.writer_guid.value[3] = 7;
    params.related_sample_identity.sequence_number.low = 42;
    params.source_timestamp = {1000, 500};
    const Answer answer(1);
    ASSERT_EQ(Test_AnswerDataWriter_write_w_params(Test_AnswerDataWriter_narrow(link.writer),
                                                   &answer.value, &params),
              DDS_RETCODE_OK);
    ASSERT_TRUE(link.waitForData());
    Answer taken;
    DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    ASSERT_EQ(Test_AnswerDataReader_take_next_sample(Test_AnswerDataReader_narrow(link.reader),
                                                     &taken.value, &info),
              DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_SampleIdentity_equals(&info.sample_identity, &params.identity));
    EXPECT_TRUE(
        DDS_SampleIdentity_equals(&info.related_sample_identity, &params.related_sample_identity));
    EXPECT_EQ(info.source_timestamp.sec, 1000);
    EXPECT_EQ(params.identity.sequence_number.low, 1U);

    DDS_WriteParams_t plain = DDS_WRITEPARAMS_DEFAULT;
    ASSERT_EQ(Test_AnswerDataWriter_write_w_params(Test_AnswerDataWriter_narrow(link.writer),
                                                   &answer.value, &plain),
              DDS_RETCODE_OK);
    EXPECT_TRUE(DDS_SampleIdentity_equals(&plain.identity, &DDS_UNKNOWN_SAMPLE_IDENTITY));
}

TEST(Writing, refusesASampleThatBreaksItsType)
{
    Link<QuestionType> link;
    zuv_test::LogCapture log;
    const Question question(1, "text", std::string(256, 'x').c_str());
    EXPECT_EQ(zuv_test::write(link.writer, question), DDS_RETCODE_ERROR);
    EXPECT_TRUE(log.holds({{&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize Test::Question"},
                           {&ZUV_LOG_FAILURE_TEMPLATE, "!write - Return code = 1"}}));
    EXPECT_EQ(zuv_test::write(link.writer, Question(1, "text", std::string(255, 'x').c_str())),
              DDS_RETCODE_OK);
}

TEST(Writing, waitsForRoomAndNoLongerThanAllowed)
{
    Link<AnswerType> link([](DDS_DataWriterQos &writer, DDS_DataReaderQos &reader) {
        writer.resource_limits.max_samples = 4;
        writer.protocol.rtps_reliable_writer.max_send_window_size = 3;
        writer.reliability.max_blocking_time = {0, 50000000};
        reader.resource_limits.max_samples = 2;
    });
    ASSERT_TRUE(link.waitForMatch());
    zuv_test::LogCapture log;
    int written = 0;
    const auto start = std::chrono::steady_clock::now();
    DDS_ReturnCode_t code = DDS_RETCODE_OK;
    while (written < 20 && (code = zuv_test::write(link.writer, Answer(written))) == 0) {
        ++written;
    }
    const auto elapsed = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(code, DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(written, 2 + 3) << "what the reader holds, and the window";
    EXPECT_GE(elapsed, std::chrono::milliseconds(45));
    EXPECT_LT(elapsed, std::chrono::milliseconds(500));
}

TEST(Writing, lendsSamples)
{
    Link<AnswerType> link;
    ASSERT_TRUE(link.waitForMatch());
    Test_AnswerDataWriter *const writer = Test_AnswerDataWriter_narrow(link.writer);
    Test_Answer *sample = nullptr;
    ASSERT_EQ(Test_AnswerDataWriter_get_loan(writer, &sample), DDS_RETCODE_OK);
    sample->number = 9;
    EXPECT_EQ(Test_AnswerDataWriter_write(writer, sample, nullptr), DDS_RETCODE_OK);
    zuv_test::LogCapture log;
    EXPECT_EQ(Test_AnswerDataWriter_discard_loan(writer, sample), DDS_RETCODE_PRECONDITION_NOT_MET);
    ASSERT_EQ(Test_AnswerDataWriter_get_loan(writer, &sample), DDS_RETCODE_OK);
    EXPECT_EQ(Test_AnswerDataWriter_discard_loan(writer, sample), DDS_RETCODE_OK);
    ASSERT_EQ(Test_AnswerDataWriter_get_loan(writer, &sample), DDS_RETCODE_OK); // left behind
}

// -- Instances -----------------------------------------------------------------------------------------------------------

class Instances : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(link_.waitForMatch());
        writer_ = Test_QuestionDataWriter_narrow(link_.writer);
        reader_ = Test_QuestionDataReader_narrow(link_.reader);
    }
    void settle()
    {
        ASSERT_EQ(DDS_DataWriter_wait_for_acknowledgments(link_.writer, &kPatience),
                  DDS_RETCODE_OK);
    }

    Link<QuestionType> link_;
    Test_QuestionDataWriter *writer_ = nullptr;
    Test_QuestionDataReader *reader_ = nullptr;
    Test_QuestionSeq samples_ = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos_ = DDS_SEQUENCE_INITIALIZER;
};

TEST_F(Instances, areKnownByTheirKey)
{
    const Question one(1, "one"), two(2, "two"), zero(0, "zero");
    const DDS_InstanceHandle_t first =
        Test_QuestionDataWriter_register_instance(writer_, &one.value);
    EXPECT_TRUE(first.isValid);
    const DDS_InstanceHandle_t again = Test_QuestionDataWriter_lookup_instance(writer_, &one.value);
    EXPECT_TRUE(DDS_InstanceHandle_equals(&first, &again));
    EXPECT_TRUE(Test_QuestionDataWriter_register_instance(writer_, &zero.value).isValid)
        << "a key of zeros is a key";
    Question read;
    EXPECT_EQ(Test_QuestionDataWriter_get_key_value(writer_, &read.value, &first), DDS_RETCODE_OK);
    EXPECT_EQ(read.value.id, 1);
    EXPECT_EQ(Test_QuestionDataWriter_write(writer_, &one.value, &first), DDS_RETCODE_OK);
    zuv_test::LogCapture log;
    EXPECT_EQ(Test_QuestionDataWriter_write(writer_, &two.value, &first),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Test_QuestionDataWriter_get_key_value(writer_, &read.value, &DDS_HANDLE_NIL),
              DDS_RETCODE_BAD_PARAMETER);
}

TEST_F(Instances, areReadOneByOne)
{
    for (DDS_Long id : {1, 2, 1, 3}) {
        EXPECT_EQ(zuv_test::write(link_.writer, Question(id, "text")), DDS_RETCODE_OK);
    }
    settle();
    const Question one(1);
    const DDS_InstanceHandle_t handle =
        Test_QuestionDataReader_lookup_instance(reader_, &one.value);
    ASSERT_TRUE(handle.isValid);
    ASSERT_EQ(Test_QuestionDataReader_read_instance(
                  reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED, &handle, DDS_ANY_SAMPLE_STATE,
                  DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE),
              DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionSeq_get_length(&samples_), 2);
    Question key;
    EXPECT_EQ(
        Test_QuestionDataReader_get_key_value(
            reader_, &key.value, &DDS_SampleInfoSeq_get_reference(&infos_, 0)->instance_handle),
        DDS_RETCODE_OK);
    EXPECT_EQ(key.value.id, 1);
    EXPECT_EQ(Test_QuestionDataReader_return_loan(reader_, &samples_, &infos_), DDS_RETCODE_OK);

    DDS_Long taken = 0;
    DDS_InstanceHandle_t last = DDS_HANDLE_NIL;
    int instances = 0;
    while (Test_QuestionDataReader_take_next_instance(
               reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED, &last, DDS_ANY_SAMPLE_STATE,
               DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE) == DDS_RETCODE_OK) {
        taken += Test_QuestionSeq_get_length(&samples_);
        last = DDS_SampleInfoSeq_get_reference(&infos_, 0)->instance_handle;
        ++instances;
        EXPECT_EQ(Test_QuestionDataReader_return_loan(reader_, &samples_, &infos_), DDS_RETCODE_OK);
    }
    EXPECT_EQ(taken, 4);
    EXPECT_EQ(instances, 3);
}

TEST_F(Instances, comeToTheirEndWithASampleWithoutData)
{
    const Question one(1, "one"), two(2, "two");
    EXPECT_EQ(zuv_test::write(link_.writer, one), DDS_RETCODE_OK);
    EXPECT_EQ(zuv_test::write(link_.writer, two), DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionDataWriter_dispose(writer_, &one.value, nullptr), DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionDataWriter_unregister_instance(writer_, &two.value, nullptr),
              DDS_RETCODE_OK);
    settle();
    ASSERT_EQ(Test_QuestionDataReader_take(reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED,
                                           DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                           DDS_ANY_INSTANCE_STATE),
              DDS_RETCODE_OK);
    int valid = 0, invalid = 0;
    for (DDS_Long index = 0; index < DDS_SampleInfoSeq_get_length(&infos_); ++index) {
        const DDS_SampleInfo &info = *DDS_SampleInfoSeq_get_reference(&infos_, index);
        ++(info.valid_data ? valid : invalid);
        EXPECT_NE(Test_QuestionSeq_get_reference(&samples_, index), nullptr);
        EXPECT_NE(info.instance_state, DDS_ALIVE_INSTANCE_STATE);
    }
    EXPECT_EQ(valid, 2);
    EXPECT_EQ(invalid, 2);
    EXPECT_EQ(Test_QuestionDataReader_return_loan(reader_, &samples_, &infos_), DDS_RETCODE_OK);
}

TEST_F(Instances, needAKey)
{
    Link<AnswerType> keyless;
    const Answer answer(1);
    zuv_test::LogCapture log;
    Test_AnswerDataWriter *const writer = Test_AnswerDataWriter_narrow(keyless.writer);
    EXPECT_FALSE(Test_AnswerDataWriter_register_instance(writer, &answer.value).isValid);
    EXPECT_EQ(Test_AnswerDataWriter_dispose(writer, &answer.value, nullptr),
              DDS_RETCODE_PRECONDITION_NOT_MET);
}

// -- Concurrency -----------------------------------------------------------------------------------------------------------------

TEST(Entities, areMadeFromSeveralThreadsAtOnce)
{
    Link<AnswerType> link;
    std::vector<std::thread> threads;
    std::atomic<int> failures{0};
    for (int index = 0; index < 8; ++index) {
        threads.emplace_back([&] {
            for (int round = 0; round < 5; ++round) {
                DDS_Publisher *const publisher = DDS_DomainParticipant_create_publisher(
                    link.participant, &DDS_PUBLISHER_QOS_DEFAULT, nullptr, 0);
                DDS_DataWriter *const writer = DDS_Publisher_create_datawriter(
                    publisher, link.topic, &DDS_DATAWRITER_QOS_DEFAULT, nullptr, 0);
                failures += zuv_test::write(writer, Answer(1)) != DDS_RETCODE_OK;
                failures += DDS_Publisher_delete_contained_entities(publisher) != DDS_RETCODE_OK;
                failures += DDS_DomainParticipant_delete_publisher(link.participant, publisher) !=
                            DDS_RETCODE_OK;
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(failures, 0);
}

// -- Faults ------------------------------------------------------------------------------------------------------------------------

// Everything from joining to leaving, with the step that fails last told by the result.
bool liveOnce()
{
    DDS_DomainParticipant *const participant = zuv_test::joinDomain();
    if (participant == nullptr) {
        return false;
    }
    bool success = Test_QuestionTypeSupport_register_type(participant, "type") == DDS_RETCODE_OK;
    DDS_Topic *const topic =
        success ? DDS_DomainParticipant_create_topic(participant, "topic", "type",
                                                     &DDS_TOPIC_QOS_DEFAULT, nullptr, 0)
                : nullptr;
    DDS_ContentFilteredTopic *const filtered =
        topic != nullptr ? DDS_DomainParticipant_create_contentfilteredtopic(
                               participant, "filtered", topic, "addressee = NULL", nullptr)
                         : nullptr;
    DDS_Publisher *const publisher =
        filtered != nullptr ? DDS_DomainParticipant_get_implicit_publisher(participant) : nullptr;
    DDS_Subscriber *const subscriber =
        publisher != nullptr ? DDS_DomainParticipant_get_implicit_subscriber(participant) : nullptr;
    DDS_DataReader *const reader =
        subscriber != nullptr
            ? DDS_Subscriber_create_datareader(
                  subscriber, DDS_ContentFilteredTopic_as_topicdescription(filtered),
                  &DDS_DATAREADER_QOS_DEFAULT, nullptr, 0)
            : nullptr;
    DDS_DataWriter *const writer =
        reader != nullptr ? DDS_Publisher_create_datawriter(publisher, topic,
                                                            &DDS_DATAWRITER_QOS_DEFAULT, nullptr, 0)
                          : nullptr;
    success = writer != nullptr && zuv_test::write(writer, Question(1, "text")) == DDS_RETCODE_OK;
    success =
        DDS_DomainParticipant_delete_contained_entities(participant) == DDS_RETCODE_OK && success;
    ZUVOsapiFault_disarm(); // what failed to go goes now
    zuv_test::leaveDomain(participant);
    return success;
}

class EveryFault : public testing::TestWithParam<int>
{
};

INSTANTIATE_TEST_SUITE_P(OnceAndOnward, EveryFault, testing::Values(0, 1));

TEST_P(EveryFault, isReportedAndLeavesNothingBehind)
{
    ASSERT_TRUE(liveOnce());
    bool isDone = false;
    for (unsigned count = 1; !isDone; ++count) {
        ASSERT_LT(count, 1000U);
        const zuv_test::HeapCheck heap;
        zuv_test::LogCapture log;
        ZUVOsapiFault_arm(nullptr, count, GetParam());
        const bool success = liveOnce();
        ZUVOsapiFault_disarm();
        isDone = ZUVOsapiFault_getInjectedCount() == 0;
        if (isDone) {
            EXPECT_TRUE(success);
        } else if (!success) {
            EXPECT_FALSE(log.lines().empty()) << "fault " << count;
        }
        EXPECT_TRUE(heap.isBalanced()) << "fault " << count;
    }
}

// -- The middleware's own log --------------------------------------------------------------------------------------------------------

TEST(MiddlewareLog, comesOutUnderOurSwitches)
{
    DDS_DomainParticipantFactory_get_instance();
    zuv_test::LogCapture log;
    EPROSIMA_LOG_ERROR(TEST_CATEGORY, "something happened");
    fast::Log::Flush();
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_EQ(log.lines().front().moduleId, DDS_LOG_MODULE_ID);
    EXPECT_EQ(log.lines().front().level, ZUV_LOG_BIT_EXCEPTION);
    EXPECT_EQ(log.texts().front(), "middleware: TEST_CATEGORY: something happened");
}

} // namespace
