#include "TestService.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/dds/DomainParticipantFactory.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace zuv_test
{
namespace
{

constexpr DDS_Duration_t kPatience = {0, 50000000};

void require(bool condition, const char *what)
{
    if (!condition) {
        std::fprintf(stderr, "test service: could not %s\n", what);
        std::abort();
    }
}

} // namespace

ReceivedRequest received(const ZUV_Service_Admin_CommandRequest &request)
{
    ReceivedRequest result;
    result.instanceId = request.instance_id;
    if (request.application_name != nullptr) {
        result.applicationName = request.application_name;
    }
    result.action = request.action;
    result.identifier = request.resource_identifier;
    result.body = request.string_body;
    const DDS_Long count = DDS_OctetSeq_get_length(&request.octet_body);
    if (count > 0) {
        result.octets.assign(
            reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&request.octet_body)),
            static_cast<std::size_t>(count));
    }
    return result;
}

DDS_DomainParticipant *joinDomain(const char *name, int domainId)
{
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    DDS_DomainParticipantQos qos = {};
    require(DDS_DomainParticipantFactory_get_default_participant_qos(factory, &qos) ==
                DDS_RETCODE_OK,
            "get the participant's QoS");
    DDS_String_replace(&qos.participant_name.name, name);
    DDS_DomainParticipant *const participant = DDS_DomainParticipantFactory_create_participant(
        factory, domainId, &qos, nullptr, DDS_STATUS_MASK_NONE);
    require(participant != nullptr, "join the domain");
    DDS_DomainParticipantQos_finalize(&qos);
    return participant;
}

void leaveDomain(DDS_DomainParticipant *participant)
{
    require(DDS_DomainParticipant_delete_contained_entities(participant) == DDS_RETCODE_OK,
            "delete contained entities");
    require(DDS_DomainParticipantFactory_delete_participant(
                DDS_DomainParticipantFactory_get_instance(), participant) == DDS_RETCODE_OK,
            "leave the domain");
}

ZUV_BrelServiceAdminReplier *createReplier(DDS_DomainParticipant *participant,
                                           const ZUV_Talvane_ReplierListener *listener)
{
    ZUV_Talvane_ReplierParams params = {};
    params.participant = participant;
    params.request_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME;
    params.reply_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME;
    params.listener = listener;
    return ZUV_BrelServiceAdminReplier_create_w_params(&params);
}

TestService::TestService(Answering answering, int domainId)
    : answering_(std::move(answering)), participant_(joinDomain("test service", domainId)),
      replier_(createReplier(participant_)), thread_([this] { serve(); })
{
}

TestService::~TestService()
{
    isStopping_ = true;
    thread_.join();
    ZUV_Talvane_Replier_delete(&replier_->parent);
    leaveDomain(participant_);
}

std::vector<ReceivedRequest> TestService::requests() const
{
    const std::lock_guard lock(mutex_);
    return requests_;
}

std::size_t TestService::requestCount() const
{
    const std::lock_guard lock(mutex_);
    return requests_.size();
}

void TestService::forget()
{
    const std::lock_guard lock(mutex_);
    requests_.clear();
}

void TestService::serve()
{
    require(replier_ != nullptr, "create the replier");
    ZUV_Service_Admin_CommandRequest request;
    ZUV_Service_Admin_CommandReply reply;
    require(ZUV_Service_Admin_CommandRequest_initialize(&request), "make a request");
    require(ZUV_Service_Admin_CommandReply_initialize(&reply), "make a reply");
    DDS_String_replace(&reply.string_body, "done");
    DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    while (!isStopping_) {
        const DDS_ReturnCode_t code =
            ZUV_BrelServiceAdminReplier_receive_request(replier_, &request, &info, &kPatience);
        if (code == DDS_RETCODE_OK && info.valid_data) {
            answer(request, info, reply);
        }
    }
    ZUV_Service_Admin_CommandReply_finalize(&reply);
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

void TestService::answer(const ZUV_Service_Admin_CommandRequest &request,
                         const DDS_SampleInfo &info, ZUV_Service_Admin_CommandReply &reply)
{
    if (!isTerse_) {
        const ReceivedRequest copy = received(request);
        const Answer answer = answering_(copy);
        {
            const std::lock_guard lock(mutex_);
            requests_.push_back(copy);
        }
        std::this_thread::sleep_for(answer.delay);
        if (answer.isSilent) {
            return;
        }
        reply.retcode = answer.isError ? ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE
                                       : ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE;
        DDS_String_replace(&reply.string_body, answer.text.c_str());
    }
    ZUV_BrelServiceAdminReplier_send_reply(replier_, &reply, &info.sample_identity);
}

} // namespace zuv_test
