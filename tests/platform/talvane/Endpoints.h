// A requester and a replier for the test types, and the topics that they meet on.
#ifndef ZUV_TESTS_PLATFORM_TALVANE_ENDPOINTS_H
#define ZUV_TESTS_PLATFORM_TALVANE_ENDPOINTS_H

#include "platform/dds/DomainParticipant.h"
#include "platform/dds/Topic.h"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/talvane/Replier.h"
#include "platform/talvane/Requester.h"
#include "types/TestTypes.h"

namespace zuv_test
{

inline constexpr char kRequestTopic[] = "test/question";
inline constexpr char kReplyTopic[] = "test/answer";
inline constexpr char kFilteredTopic[] = "test/question_filtered";

// QoS as the administration's: reliable, keeping all, at most 32 samples.
template <typename Qos>
void makeReliable(Qos &qos)
{
    qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    qos.reliability.max_blocking_time = {5, 0};
    qos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    qos.resource_limits.max_samples = 32;
}

struct EndpointQos {
    DDS_DataWriterQos writer;
    DDS_DataReaderQos reader;

    EndpointQos()
    {
        DDS_DataWriterQos_initialize(&writer);
        DDS_DataReaderQos_initialize(&reader);
        makeReliable(writer);
        makeReliable(reader);
        reader.protocol.rtps_reliable_reader.max_heartbeat_response_delay = {0, 0};
        DDS_PropertyQosPolicyHelper_assert_property(
            &reader.property,
            "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size", "32768",
            DDS_BOOLEAN_FALSE);
        reader.reader_resource_limits.dynamically_allocate_fragmented_samples = 1;
    }
    ~EndpointQos()
    {
        DDS_DataWriterQos_finalize(&writer);
        DDS_DataReaderQos_finalize(&reader);
    }
    EndpointQos(const EndpointQos &) = delete;
    EndpointQos &operator=(const EndpointQos &) = delete;
};

// As a typed requester or replier does.
inline void reportAllocation()
{
    ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API,
                     &ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE, "test endpoint");
}

inline ZUV_Talvane_Requester *createRequester(DDS_DomainParticipant *participant)
{
    const EndpointQos qos;
    ZUV_Talvane_RequesterParams params = {};
    params.participant = participant;
    params.request_topic_name = kRequestTopic;
    params.reply_topic_name = kReplyTopic;
    params.datawriter_qos = &qos.writer;
    params.datareader_qos = &qos.reader;
    auto *const requester = static_cast<ZUV_Talvane_Requester *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(ZUV_Talvane_Requester), "test requester"));
    if (requester == nullptr) {
        reportAllocation();
        return nullptr;
    }
    requester->_impl = ZUV_Talvane_RequesterUntypedImpl_create(
        &params, Test_QuestionTypeSupport_register_type, Test_QuestionTypeSupport_get_type_name(),
        Test_AnswerTypeSupport_register_type, Test_AnswerTypeSupport_get_type_name(),
        sizeof(Test_Answer));
    if (requester->_impl == nullptr) {
        ZUV_Talvane_Requester_delete(requester);
        return nullptr;
    }
    return requester;
}

// A replier; with a filter expression it reads through a filtered topic.
inline ZUV_Talvane_Replier *createReplier(DDS_DomainParticipant *participant,
                                          const char *filter = nullptr,
                                          const ZUV_Talvane_ReplierListener *listener = nullptr)
{
    const EndpointQos qos;
    ZUV_Talvane_ReplierParams params = {};
    params.participant = participant;
    params.request_topic_name = kRequestTopic;
    params.reply_topic_name = kReplyTopic;
    params.datawriter_qos = &qos.writer;
    params.datareader_qos = &qos.reader;
    if (filter != nullptr) {
        Test_QuestionTypeSupport_register_type(participant,
                                               Test_QuestionTypeSupport_get_type_name());
        DDS_Topic *const topic = DDS_DomainParticipant_create_topic(
            participant, kRequestTopic, Test_QuestionTypeSupport_get_type_name(),
            &DDS_TOPIC_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
        if (DDS_DomainParticipant_create_contentfilteredtopic(participant, kFilteredTopic, topic,
                                                              filter, nullptr) == nullptr) {
            return nullptr;
        }
        params.request_topic_name = kFilteredTopic;
    }
    auto *const replier = static_cast<ZUV_Talvane_Replier *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(ZUV_Talvane_Replier), "test replier"));
    if (replier == nullptr) {
        reportAllocation();
        return nullptr;
    }
    replier->_impl = ZUV_Talvane_ReplierUntypedImpl_create();
    DDS_DataReaderListener readerListener = {};
    if (listener != nullptr) {
        replier->listener = *listener;
        readerListener.listener_data = replier;
        readerListener.on_data_available = ZUV_Talvane_Replier_on_data_available;
    }
    ZUV_Talvane_EntityParams entityParams = {};
    ZUV_Talvane_ReplierParams_toEntityParams(&params, &entityParams);
    if (replier->_impl == nullptr ||
        ZUV_Talvane_ReplierUntypedImpl_initialize(
            replier->_impl, &entityParams, Test_QuestionTypeSupport_register_type,
            Test_QuestionTypeSupport_get_type_name(), Test_AnswerTypeSupport_register_type,
            Test_AnswerTypeSupport_get_type_name(), sizeof(Test_Question),
            listener == nullptr ? nullptr : &readerListener) != DDS_RETCODE_OK) {
        if (ZUV_Talvane_Replier_delete(replier) != DDS_RETCODE_OK) {
            ZUVOsapiFault_disarm(); // a fault that goes on makes the deletion fail too
            ZUV_Talvane_Replier_delete(replier);
        }
        return nullptr;
    }
    return replier;
}

} // namespace zuv_test

#endif
