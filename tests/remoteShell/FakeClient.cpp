#include "FakeClient.h"

#include <csignal>

#include <pthread.h>

#include "platform/osapi/Time.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigClient.h"

namespace zuv_test
{

FakeClient &fakeClient()
{
    static FakeClient instance;
    return instance;
}

namespace
{

int answer(ZUV_Service_Admin_CommandReply *reply)
{
    reply->retcode = fakeClient().retcode;
    DDS_String_replace(&reply->string_body, fakeClient().reply.c_str());
    return fakeClient().ok;
}

std::string octetsOf(const DDS_OctetSeq &octets)
{
    const char *const buffer =
        reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&octets));
    return buffer == nullptr
               ? std::string()
               : std::string(buffer, static_cast<std::size_t>(DDS_OctetSeq_get_length(&octets)));
}

} // namespace
} // namespace zuv_test

using zuv_test::fakeClient;

int BRELRemoteConfigClient_initialize(BRELRemoteConfigClient *, int domainId,
                                      int responseTimeoutSec)
{
    fakeClient().domainId = domainId;
    fakeClient().timeout = responseTimeoutSec;
    sigset_t blocked;
    fakeClient().areSignalsBlocked = pthread_sigmask(SIG_SETMASK, nullptr, &blocked) == 0 &&
                                     sigismember(&blocked, SIGINT) == 1 &&
                                     sigismember(&blocked, SIGTERM) == 1 &&
                                     sigismember(&blocked, SIGUSR1) == 1;
    return fakeClient().initializeResult;
}

void BRELRemoteConfigClient_finalize(BRELRemoteConfigClient *)
{
    ++fakeClient().finalizeCount;
}

int BRELRemoteConfigClient_sendCommandRequest(BRELRemoteConfigClient *,
                                              ZUV_Service_Admin_CommandReply *reply,
                                              const char *targetService,
                                              const ZUV_Service_Admin_CommandRequest *request,
                                              int remote)
{
    fakeClient().sent.push_back({false, targetService, request->action,
                                 request->resource_identifier, request->string_body,
                                 zuv_test::octetsOf(request->octet_body), remote});
    return zuv_test::answer(reply);
}

int BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
    BRELRemoteConfigClient *, ZUV_Service_Admin_CommandReply *reply, const char *targetService,
    ZUV_Service_Admin_CommandActionKind actionKind, const char *entityName, const char *xmlUrl,
    int remote)
{
    fakeClient().sent.push_back({true, targetService, actionKind, entityName, xmlUrl, "", remote});
    return zuv_test::answer(reply);
}

extern "C" void __wrap_KOLM_Utility_sleep(const DDS_Duration_t *duration)
{
    fakeClient().pauses.push_back(DDS_Duration_to_nanoseconds(duration));
}
