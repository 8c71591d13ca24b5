#include "Service.h"

#include <cstdio>
#include <cstring>
#include <thread>
#include <utility>

#include "Account.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Topic.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "remoteConfig/ServiceAdmin.h"

namespace responder
{
namespace
{

constexpr const char *kFilteredTopicName = "RequestTopic_CFT";

// Admits requests to nobody by name, and those whose target matches this instance's name. Written without a
// blank behind NULL, as every instance writes it.
constexpr const char *kFilterTemplate = "application_name = NULLOR application_name MATCH '%s'";

DDS_Duration_t toDuration(std::chrono::milliseconds span)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(span);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(span - seconds);
    return {static_cast<std::int32_t>(seconds.count()), static_cast<std::uint32_t>(rest.count())};
}

std::string textOfSize(std::size_t size)
{
    std::string text(size, '\0');
    for (std::size_t index = 0; index < size; ++index) {
        text[index] = static_cast<char>('0' + index % 10);
    }
    return text;
}

// For many large replies in a row: so many that are not acknowledged are kept, as of the commands on their way.
struct WriterQos {
    DDS_DataWriterQos value = {};

    bool fill(DDS_DomainParticipant *participant)
    {
        constexpr DDS_Long kMaxSamples = 32;
        if (DDS_DomainParticipant_get_default_datawriter_qos(participant, &value) !=
            DDS_RETCODE_OK) {
            return false;
        }
        value.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        value.reliability.max_blocking_time = {10, 0};
        value.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
        value.resource_limits.max_samples = kMaxSamples;
        value.protocol.rtps_reliable_writer.max_send_window_size = kMaxSamples;
        value.protocol.rtps_reliable_writer.min_send_window_size = kMaxSamples;
        return true;
    }
    WriterQos() = default;
    ~WriterQos() { DDS_DataWriterQos_finalize(&value); }
    WriterQos(const WriterQos &) = delete;
    WriterQos &operator=(const WriterQos &) = delete;
};

} // namespace

Service::~Service()
{
    if (replier_ != nullptr) {
        ZUV_Talvane_Replier_delete(&replier_->parent);
    }
    if (request_ != nullptr) {
        ZUV_Service_Admin_CommandRequestTypeSupport_delete_data(request_);
    }
    if (reply_ != nullptr) {
        ZUV_Service_Admin_CommandReplyTypeSupport_delete_data(reply_);
    }
    if (participant_ != nullptr) {
        DDS_DomainParticipant_delete_contained_entities(participant_);
        DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory_get_instance(),
                                                        participant_);
    }
}

bool Service::start()
{
    request_ = ZUV_Service_Admin_CommandRequestTypeSupport_create_data();
    reply_ = ZUV_Service_Admin_CommandReplyTypeSupport_create_data();
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    if (request_ == nullptr || reply_ == nullptr || factory == nullptr) {
        return false;
    }
    participant_ = DDS_DomainParticipantFactory_create_participant(
        factory, options_.domainId, &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (participant_ == nullptr || createFilteredTopic() == nullptr) {
        return false;
    }
    // Without QoS of our own both endpoints are reliable and keep everything.
    WriterQos echoQos;
    ZUV_Talvane_ReplierParams params = {};
    params.participant = participant_;
    params.request_topic_name = kFilteredTopicName;
    params.reply_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME;
    if (options_.isEcho) {
        if (!echoQos.fill(participant_)) {
            return false;
        }
        params.datawriter_qos = &echoQos.value;
    }
    replier_ = ZUV_BrelServiceAdminReplier_create_w_params(&params);
    return replier_ != nullptr;
}

DDS_ContentFilteredTopic *Service::createFilteredTopic()
{
    const char *const typeName = ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name();
    if (ZUV_Service_Admin_CommandRequestTypeSupport_register_type(participant_, typeName) !=
        DDS_RETCODE_OK) {
        return nullptr;
    }
    DDS_Topic *const topic = DDS_DomainParticipant_create_topic(
        participant_, ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME, typeName,
        &DDS_TOPIC_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
    if (topic == nullptr) {
        return nullptr;
    }
    char expression[255];
    std::snprintf(expression, sizeof expression, kFilterTemplate, options_.name.c_str());
    return DDS_DomainParticipant_create_contentfilteredtopic(participant_, kFilteredTopicName,
                                                             topic, expression, nullptr);
}

bool Service::serve(std::chrono::milliseconds patience)
{
    const DDS_Duration_t wait = toDuration(patience);
    switch (ZUV_BrelServiceAdminReplier_receive_request(replier_, request_, &requestInfo_, &wait)) {
    case DDS_RETCODE_OK:
        return !requestInfo_.valid_data || (options_.isEcho ? echo() : treat());
    case DDS_RETCODE_TIMEOUT:
    case DDS_RETCODE_NO_DATA:
        return true;
    default:
        return false;
    }
}

bool Service::treat()
{
    const std::string account = options_.name + " got " + describe(*request_);
    std::puts(account.c_str());
    if (requestCount_++ >= options_.treatedCount) {
        return reply(account, false);
    }
    std::this_thread::sleep_for(options_.delay);
    if (options_.isSilent) {
        return true;
    }
    return reply(options_.replySize ? textOfSize(*options_.replySize) : account, options_.isError);
}

bool Service::echo()
{
    // Without a copy: the next request goes where the last reply was.
    std::swap(reply_->string_body, request_->string_body);
    return sendReply();
}

bool Service::reply(const std::string &text, bool isError)
{
    reply_->retcode = isError ? ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE
                              : ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE;
    return DDS_String_replace(&reply_->string_body, text.c_str()) != nullptr && sendReply();
}

bool Service::sendReply()
{
    return ZUV_BrelServiceAdminReplier_send_reply(replier_, reply_,
                                                  &requestInfo_.sample_identity) == DDS_RETCODE_OK;
}

} // namespace responder
