#include "Reply.h"

#include "platform/typesys/String.h"

namespace service
{

bool sendReply(bool isDone, const std::string &text, const DDS_SampleInfo &info,
               ZUV_BrelServiceAdminReplier *replier)
{
    ZUV_Service_Admin_CommandReply reply;
    if (!ZUV_Service_Admin_CommandReply_initialize(&reply)) {
        return false;
    }
    reply.retcode = isDone ? ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE
                           : ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE;
    const bool isSent = DDS_String_replace(&reply.string_body, text.c_str()) != nullptr &&
                        ZUV_BrelServiceAdminReplier_send_reply(
                            replier, &reply, &info.sample_identity) == DDS_RETCODE_OK;
    ZUV_Service_Admin_CommandReply_finalize(&reply);
    return isSent;
}

void waitUntilReceived(ZUV_BrelServiceAdminReplier *replier)
{
    constexpr DDS_Duration_t kPatience = {1, 0};
    DDS_DataWriter_wait_for_acknowledgments(
        ZUV_Service_Admin_CommandReplyDataWriter_as_datawriter(
            ZUV_BrelServiceAdminReplier_get_reply_datawriter(replier)),
        &kPatience);
}

} // namespace service
