// A participant of its own for each test, with the entities that tests use most.
#ifndef ZUV_TESTS_PLATFORM_DDS_DOMAIN_H
#define ZUV_TESTS_PLATFORM_DDS_DOMAIN_H

#include <functional>
#include <string>

#include <gtest/gtest.h>

#include "platform/dds/DomainParticipant.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/dds/Topic.h"
#include "platform/typesys/String.h"
#include "support/Eventually.h"
#include "support/Loopback.h"
#include "types/TestTypes.h"

namespace zuv_test
{

inline DDS_DomainParticipant *
joinDomain(const DDS_DomainParticipantQos &qos = DDS_PARTICIPANT_QOS_DEFAULT)
{
    return DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), loopbackDomainId(), &qos, nullptr,
        DDS_STATUS_MASK_NONE);
}

inline void leaveDomain(DDS_DomainParticipant *participant)
{
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(
                  DDS_DomainParticipantFactory_get_instance(), participant),
              DDS_RETCODE_OK);
}

// A writer and a reader of one topic, reliable and keeping all, matched.
template <typename Type>
class Link
{
public:
    // `configure` may change both QoS, `configureGroups` those of the publisher and subscriber; `filter` is an expression
    // for the reader, or NULL.
    explicit Link(
        const std::function<void(DDS_DataWriterQos &, DDS_DataReaderQos &)> &configure = {},
        const char *filter = nullptr,
        const std::function<void(DDS_PublisherQos &, DDS_SubscriberQos &)> &configureGroups = {})
    {
        participant = joinDomain();
        EXPECT_EQ(Type::registerType(participant, Type::name()), DDS_RETCODE_OK);
        topic = DDS_DomainParticipant_create_topic(participant, "test topic", Type::name(),
                                                   &DDS_TOPIC_QOS_DEFAULT, nullptr,
                                                   DDS_STATUS_MASK_NONE);
        DDS_TopicDescription *description = DDS_Topic_as_topicdescription(topic);
        if (filter != nullptr) {
            description = DDS_ContentFilteredTopic_as_topicdescription(
                DDS_DomainParticipant_create_contentfilteredtopic(participant, "filtered", topic,
                                                                  filter, nullptr));
        }
        DDS_DataWriterQos writerQos;
        DDS_DataReaderQos readerQos;
        DDS_DataWriterQos_initialize(&writerQos);
        DDS_DataReaderQos_initialize(&readerQos);
        writerQos.history.kind = readerQos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
        readerQos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        if (configure) {
            configure(writerQos, readerQos);
        }
        DDS_PublisherQos publisherQos;
        DDS_SubscriberQos subscriberQos;
        DDS_PublisherQos_initialize(&publisherQos);
        DDS_SubscriberQos_initialize(&subscriberQos);
        if (configureGroups) {
            configureGroups(publisherQos, subscriberQos);
        }
        publisher = DDS_DomainParticipant_create_publisher(participant, &publisherQos, nullptr,
                                                           DDS_STATUS_MASK_NONE);
        subscriber = DDS_DomainParticipant_create_subscriber(participant, &subscriberQos, nullptr,
                                                             DDS_STATUS_MASK_NONE);
        DDS_PublisherQos_finalize(&publisherQos);
        DDS_SubscriberQos_finalize(&subscriberQos);
        reader = DDS_Subscriber_create_datareader(subscriber, description, &readerQos, nullptr,
                                                  DDS_STATUS_MASK_NONE);
        writer = DDS_Publisher_create_datawriter(publisher, topic, &writerQos, nullptr,
                                                 DDS_STATUS_MASK_NONE);
        DDS_DataWriterQos_finalize(&writerQos);
        DDS_DataReaderQos_finalize(&readerQos);
    }
    ~Link() { leaveDomain(participant); }
    Link(const Link &) = delete;
    Link &operator=(const Link &) = delete;

    bool isMatched()
    {
        DDS_PublicationMatchedStatus written = {};
        DDS_SubscriptionMatchedStatus read = {};
        DDS_DataWriter_get_publication_matched_status(writer, &written);
        DDS_DataReader_get_subscription_matched_status(reader, &read);
        return written.current_count > 0 && read.current_count > 0;
    }
    bool waitForMatch()
    {
        return eventually([this] { return isMatched(); });
    }
    bool waitForData()
    {
        DDS_StatusCondition *const condition =
            DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader));
        DDS_StatusCondition_set_enabled_statuses(condition, DDS_DATA_AVAILABLE_STATUS);
        return eventually([&] { return DDS_StatusCondition_get_trigger_value(condition) != 0; });
    }

    DDS_DomainParticipant *participant = nullptr;
    DDS_Topic *topic = nullptr;
    DDS_Publisher *publisher = nullptr;
    DDS_Subscriber *subscriber = nullptr;
    DDS_DataWriter *writer = nullptr;
    DDS_DataReader *reader = nullptr;
};

struct QuestionType {
    static DDS_ReturnCode_t registerType(DDS_DomainParticipant *participant, const char *name)
    {
        return Test_QuestionTypeSupport_register_type(participant, name);
    }
    static const char *name() { return Test_QuestionTypeSupport_get_type_name(); }
};
struct AnswerType {
    static DDS_ReturnCode_t registerType(DDS_DomainParticipant *participant, const char *name)
    {
        return Test_AnswerTypeSupport_register_type(participant, name);
    }
    static const char *name() { return Test_AnswerTypeSupport_get_type_name(); }
};

// Samples that release themselves.
struct Question {
    Test_Question value;
    explicit Question(DDS_Long id = 0, const char *text = "", const char *addressee = nullptr)
    {
        Test_Question_initialize(&value);
        value.id = id;
        DDS_String_replace(&value.text, text);
        DDS_String_replace(&value.addressee, addressee);
    }
    ~Question() { Test_Question_finalize(&value); }
    Question(const Question &) = delete;
    Question &operator=(const Question &) = delete;
};
struct Answer {
    Test_Answer value;
    explicit Answer(DDS_Long number = 0, const char *text = "")
    {
        Test_Answer_initialize(&value);
        value.number = number;
        DDS_String_replace(&value.text, text);
    }
    ~Answer() { Test_Answer_finalize(&value); }
    Answer(const Answer &) = delete;
    Answer &operator=(const Answer &) = delete;
};

inline DDS_ReturnCode_t write(DDS_DataWriter *writer, const Question &sample)
{
    return Test_QuestionDataWriter_write(Test_QuestionDataWriter_narrow(writer), &sample.value,
                                         nullptr);
}
inline DDS_ReturnCode_t write(DDS_DataWriter *writer, const Answer &sample)
{
    return Test_AnswerDataWriter_write(Test_AnswerDataWriter_narrow(writer), &sample.value,
                                       nullptr);
}

} // namespace zuv_test

#endif
