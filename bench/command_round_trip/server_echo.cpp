// A service that is nothing but its server, which sends back the body of each command: server_echo DOMAIN NAME. Until its
// standard input ends.
#include <cstdio>
#include <cstdlib>

#include "platform/dds/DomainParticipantFactory.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigServer.h"
#include "support/Ratio.h"

namespace
{

// One reply for all commands: they come one after the other.
void echo(void *reply, const ZUV_Service_Admin_CommandRequest *request, const DDS_SampleInfo *info,
          ZUV_BrelServiceAdminReplier *replier)
{
    auto *const answer = static_cast<ZUV_Service_Admin_CommandReply *>(reply);
    if (DDS_String_replace(&answer->string_body, request->string_body) == nullptr ||
        ZUV_BrelServiceAdminReplier_send_reply(replier, answer, &info->sample_identity) !=
            DDS_RETCODE_OK) {
        bench::giveUp("the server cannot answer");
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        bench::giveUp("server_echo DOMAIN NAME");
    }
    BRELCfgFileAdministration settings;
    BRELServiceParticipantFactory participants;
    ZUV_Service_Admin_CommandReply reply;
    if (!BRELCfgFileAdministration_initialize(&settings) ||
        !BRELServiceParticipantFactory_initialize(&participants,
                                                  DDS_DomainParticipantFactory_get_instance()) ||
        !ZUV_Service_Admin_CommandReply_initialize(&reply)) {
        bench::giveUp("no settings");
    }
    settings.domainId = std::atoi(argv[1]);
    BRELRemoteConfigServer *const server = BRELRemoteConfigServer_new(
        argv[2], DDS_BREL_SERVICE_QOS, &settings, &participants, nullptr);
    const ZUV_BrelServiceConfigInterceptor interceptor = {&reply, echo};
    if (server == nullptr) {
        bench::giveUp("no server");
    }
    BRELRemoteConfigServer_setRequestInterceptor(server, &interceptor);
    if (!BRELRemoteConfigServer_start(server)) {
        bench::giveUp("the server does not start");
    }
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    BRELRemoteConfigServer_delete(server);
    ZUV_Service_Admin_CommandReply_finalize(&reply);
    BRELServiceParticipantFactory_finalize(&participants);
    BRELCfgFileAdministration_finalize(&settings);
    return EXIT_SUCCESS;
}
