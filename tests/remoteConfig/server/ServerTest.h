// A server with all that it borrows, an interceptor that remembers what it is given, and a client to send with.
#ifndef ZUV_TESTS_REMOTE_CONFIG_SERVER_TEST_H
#define ZUV_TESTS_REMOTE_CONFIG_SERVER_TEST_H

#include <atomic>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include <pthread.h>

#include <gtest/gtest.h>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipant.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/dds/Topic.h"
#include "platform/log/DDSLog.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "remoteConfig/RemoteConfigServer.h"
#include "support/Eventually.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"

namespace zuv_test
{

using Lines = std::vector<std::string>;

inline constexpr DDS_ServiceQosPolicyKind kKind = DDS_BREL_SERVICE_QOS;
// What an engine makes of commands: it remembers them and answers "done", but for those of the identifier "silent".
class Interceptor
{
public:
    struct Command {
        std::string identifier;
        std::string body;
        std::string thread;
    };

    ZUV_BrelServiceConfigInterceptor record()
    {
        return {this, [](void *self, const ZUV_Service_Admin_CommandRequest *request,
                         const DDS_SampleInfo *info, ZUV_BrelServiceAdminReplier *replier) {
                    static_cast<Interceptor *>(self)->handle(*request, *info, replier);
                }};
    }
    std::vector<Command> commands()
    {
        const std::lock_guard lock(mutex_);
        return commands_;
    }
    Lines identifiers()
    {
        Lines all;
        for (const Command &command : commands()) {
            all.push_back(command.identifier);
        }
        return all;
    }

private:
    void handle(const ZUV_Service_Admin_CommandRequest &request, const DDS_SampleInfo &info,
                ZUV_BrelServiceAdminReplier *replier)
    {
        char thread[16] = "";
        pthread_getname_np(pthread_self(), thread, sizeof(thread));
        {
            const std::lock_guard lock(mutex_);
            commands_.push_back({request.resource_identifier, request.string_body, thread});
        }
        if (commands().back().identifier == "silent") {
            return;
        }
        ZUV_Service_Admin_CommandReply reply;
        ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply));
        DDS_String_replace(&reply.string_body, "done");
        EXPECT_EQ(ZUV_BrelServiceAdminReplier_send_reply(replier, &reply, &info.sample_identity),
                  DDS_RETCODE_OK);
        ZUV_Service_Admin_CommandReply_finalize(&reply);
    }

    std::mutex mutex_;
    std::vector<Command> commands_;
};

// A server with all that it borrows.
class Host
{
public:
    explicit Host(std::string name) : name_(std::move(name))
    {
        EXPECT_EQ(BRELCfgFileAdministration_initialize(&cfg), 1);
        cfg.domainId = loopbackDomainId();
        EXPECT_EQ(BRELServiceParticipantFactory_initialize(
                      &factory, DDS_DomainParticipantFactory_get_instance()),
                  1);
    }
    ~Host()
    {
        if (server != nullptr) {
            BRELRemoteConfigServer_delete(server);
        }
        BRELServiceParticipantFactory_finalize(&factory);
        BRELCfgFileAdministration_finalize(&cfg);
    }
    Host(const Host &) = delete;
    Host &operator=(const Host &) = delete;

    void make(bool hasInterceptor = true, const DDS_AsyncWaitSetListener *listener = nullptr)
    {
        server = BRELRemoteConfigServer_new(name_.c_str(), kKind, &cfg, &factory, listener);
        ASSERT_NE(server, nullptr);
        if (hasInterceptor) {
            const ZUV_BrelServiceConfigInterceptor record = interceptor.record();
            BRELRemoteConfigServer_setRequestInterceptor(server, &record);
        }
    }
    int start() { return BRELRemoteConfigServer_start(server); }
    const BRELRemoteConfigDdsContext &context() const { return server->_ddsContext; }
    bool isStopped() const
    {
        const BRELRemoteConfigDdsContext &all = context();
        const bool isRunning =
            server->_aws != nullptr && BRELRemoteConfigServer_isStarted(server) != 0;
        return !isRunning && server->_commandHandler == nullptr && all._publisher == nullptr &&
               all._subscriber == nullptr && all._participant == nullptr;
    }

    BRELCfgFileAdministration cfg;
    BRELServiceParticipantFactory factory;
    Interceptor interceptor;
    BRELRemoteConfigServer *server = nullptr;

private:
    std::string name_;
};

// A participant that is neither a service nor a client, with single endpoints of the protocol's topics.
class Stranger
{
public:
    Stranger()
        : participant_(DDS_DomainParticipantFactory_create_participant(
              DDS_DomainParticipantFactory_get_instance(), loopbackDomainId(),
              &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, 0))
    {
        const char *const request = ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name();
        const char *const reply = ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name();
        ZUV_Service_Admin_CommandRequestTypeSupport_register_type(participant_, request);
        ZUV_Service_Admin_CommandReplyTypeSupport_register_type(participant_, reply);
        requests_ = makeTopic(ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME, request);
        replies_ = makeTopic(ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME, reply);
    }
    ~Stranger()
    {
        EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant_), DDS_RETCODE_OK);
        EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(
                      DDS_DomainParticipantFactory_get_instance(), participant_),
                  DDS_RETCODE_OK);
    }
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    void writeRequests(DDS_ReliabilityQosPolicyKind reliability = DDS_RELIABLE_RELIABILITY_QOS)
    {
        DDS_DataWriterQos qos = {};
        DDS_DataWriterQos_get_defaultI(&qos);
        qos.reliability.kind = reliability;
        EXPECT_NE(DDS_Publisher_create_datawriter(
                      DDS_DomainParticipant_get_implicit_publisher(participant_), requests_, &qos,
                      nullptr, 0),
                  nullptr);
        DDS_DataWriterQos_finalize(&qos);
    }
    void readReplies(DDS_DurabilityQosPolicyKind durability = DDS_VOLATILE_DURABILITY_QOS)
    {
        DDS_DataReaderQos qos = {};
        DDS_DataReaderQos_get_defaultI(&qos);
        qos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
        qos.durability.kind = durability;
        EXPECT_NE(DDS_Subscriber_create_datareader(
                      DDS_DomainParticipant_get_implicit_subscriber(participant_),
                      DDS_Topic_as_topicdescription(replies_), &qos, nullptr, 0),
                  nullptr);
        DDS_DataReaderQos_finalize(&qos);
    }

private:
    DDS_Topic *makeTopic(const char *name, const char *type)
    {
        return DDS_DomainParticipant_create_topic(participant_, name, type, &DDS_TOPIC_QOS_DEFAULT,
                                                  nullptr, 0);
    }

    DDS_DomainParticipant *participant_;
    DDS_Topic *requests_ = nullptr;
    DDS_Topic *replies_ = nullptr;
};

struct ClientDeleter {
    void operator()(BRELRemoteConfigClient *client) const { BRELRemoteConfigClient_delete(client); }
};

class RemoteConfigServer : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        BRELLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
        BRELLog_g_submoduleMask = UINT32_MAX;
        // What is made once in a process.
        Host host("first");
        host.make();
        EXPECT_EQ(host.start(), 1);
        client.reset(BRELRemoteConfigClient_new(loopbackDomainId(), 10));
        client.reset();
    }
    static void TearDownTestSuite()
    {
        client.reset();
        BRELLog_g_instrumentationMask = BRELLog_g_submoduleMask = 0;
    }

    void TearDown() override { client.reset(); }

    // The answer to a command for that service; "(none)" without one.
    static std::string send(const char *target, std::string identifier = "",
                            std::string body = "ENABLED")
    {
        ZUV_Service_Admin_CommandReply reply;
        EXPECT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply));
        ZUV_Service_Admin_CommandRequest request = {};
        request.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
        request.resource_identifier = identifier.data();
        request.string_body = body.data();
        const int isAnswered =
            BRELRemoteConfigClient_sendCommandRequest(client.get(), &reply, target, &request, 1);
        const std::string text = isAnswered ? reply.string_body : "(none)";
        ZUV_Service_Admin_CommandReply_finalize(&reply);
        return text;
    }

    // The same, without waiting for an answer. The client has sent something before.
    static void post(const char *target, const char *identifier)
    {
        ZUV_Service_Admin_CommandRequest &request = *client->_request;
        std::strcpy(request.application_name, target);
        std::strcpy(request.resource_identifier, identifier);
        EXPECT_EQ(ZUV_Service_Admin_CommandRequestDataWriter_write(requestWriter(), &request,
                                                                   &DDS_HANDLE_NIL),
                  DDS_RETCODE_OK);
    }
    static ZUV_Service_Admin_CommandRequestDataWriter *requestWriter()
    {
        return ZUV_BrelServiceAdminRequester_get_request_datawriter(client->_requester);
    }
    // Until all readers have what was written.
    static void awaitAcknowledgments()
    {
        const DDS_Duration_t wait = {10, 0};
        EXPECT_EQ(
            DDS_DataWriter_wait_for_acknowledgments(
                ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(requestWriter()), &wait),
            DDS_RETCODE_OK);
    }

    // How many services the client has met since it was made, as to requests and as to replies.
    struct Met {
        DDS_Long requests;
        DDS_Long replies;
    };
    static Met met()
    {
        DDS_PublicationMatchedStatus requests = {};
        DDS_SubscriptionMatchedStatus replies = {};
        DDS_DataWriter_get_publication_matched_status(
            ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(requestWriter()), &requests);
        DDS_DataReader_get_subscription_matched_status(
            ZUV_Service_Admin_CommandReplyDataReader_as_datareader(
                ZUV_BrelServiceAdminRequester_get_reply_datareader(client->_requester)),
            &replies);
        return {requests.total_count, replies.total_count};
    }

    // Each test has its own, which knows nothing of earlier servers.
    static void makeClient()
    {
        if (client == nullptr) {
            client.reset(BRELRemoteConfigClient_new(loopbackDomainId(), 10));
        }
    }

    // Start, and wait until the client can reach the server and the server the client.
    static void startAndMeet(Host &host)
    {
        makeClient();
        ASSERT_NE(client, nullptr);
        const Met before = met();
        ASSERT_EQ(host.start(), 1);
        ASSERT_TRUE(eventually([&] {
            return met().requests != before.requests && met().replies != before.replies &&
                   BRELRemoteConfigServer_hasMatchingClient(host.server) != 0;
        }));
    }

    // The lines of remote configuration; what is reported below them is other tests' concern.
    static std::vector<std::string> serviceLines(const LogCapture &log)
    {
        std::vector<std::string> lines;
        for (const LogLine &line : log.lines()) {
            if (line.moduleId == BREL_LOG_MODULE_ID && line.submodule == BREL_SUBMODULE_REMOTE) {
                EXPECT_EQ(line.level, ZUV_LOG_BIT_EXCEPTION);
                lines.push_back(line.text);
            }
        }
        return lines;
    }

    static std::unique_ptr<BRELRemoteConfigClient, ClientDeleter> client;
};
inline std::unique_ptr<BRELRemoteConfigClient, ClientDeleter> RemoteConfigServer::client;

} // namespace zuv_test

#endif
