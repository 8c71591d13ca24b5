// The server of a service's administration: its start and stop step by step, what it admits, and who handles it.
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
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
#include "remoteConfig/RemoteConfigServer.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"

namespace
{

constexpr DDS_ServiceQosPolicyKind kKind = DDS_BREL_SERVICE_QOS;
constexpr const char *kPoolProperty =
    "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size";

// What an engine makes of commands: it remembers them and answers "done".
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
        cfg.domainId = zuv_test::loopbackDomainId();
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
        client.reset(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), 10));
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
            ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(
                ZUV_BrelServiceAdminRequester_get_request_datawriter(client->_requester)),
            &requests);
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
            client.reset(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), 10));
        }
    }

    // Start, and wait until the client can reach the server and the server the client.
    static void startAndMeet(Host &host)
    {
        makeClient();
        ASSERT_NE(client, nullptr);
        const Met before = met();
        ASSERT_EQ(host.start(), 1);
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (met().requests == before.requests || met().replies == before.replies ||
               BRELRemoteConfigServer_hasMatchingClient(host.server) == 0) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }

    // The lines of remote configuration; what is reported below them is other tests' concern.
    static std::vector<std::string> serviceLines(const zuv_test::LogCapture &log)
    {
        std::vector<std::string> lines;
        for (const zuv_test::LogLine &line : log.lines()) {
            if (line.moduleId == BREL_LOG_MODULE_ID && line.submodule == BREL_SUBMODULE_REMOTE) {
                EXPECT_EQ(line.level, ZUV_LOG_BIT_EXCEPTION);
                lines.push_back(line.text);
            }
        }
        return lines;
    }

    static std::unique_ptr<BRELRemoteConfigClient, ClientDeleter> client;
};
std::unique_ptr<BRELRemoteConfigClient, ClientDeleter> RemoteConfigServer::client;

using Lines = std::vector<std::string>;

// -- Commands --------------------------------------------------------------------------------------------------

TEST_F(RemoteConfigServer, handsCommandsToItsInterceptorOnTheDispatchersThread)
{
    Host host("S");
    host.make();
    EXPECT_EQ(BRELRemoteConfigServer_isStarted(host.server), 0);
    startAndMeet(host);
    EXPECT_EQ(BRELRemoteConfigServer_isStarted(host.server), 1);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(send("S", "route" + std::to_string(i)), "done");
    }
    EXPECT_EQ(BRELRemoteConfigServer_hasMatchingClient(host.server), 1);
    const auto commands = host.interceptor.commands();
    ASSERT_EQ(commands.size(), 20U);
    for (std::size_t i = 0; i < commands.size(); ++i) {
        EXPECT_EQ(commands[i].identifier, "route" + std::to_string(i));
        EXPECT_EQ(commands[i].body, "ENABLED");
        EXPECT_EQ(commands[i].thread, "zBsAdmin0");
    }
    EXPECT_EQ(BRELRemoteConfigServer_getReplier(host.server),
              host.server->_commandHandler->_replier);
}

TEST_F(RemoteConfigServer, eachServiceAdmitsWhatIsMeantForIt)
{
    Host first("one");
    Host second("two");
    Host pattern("tw*,x[0-9]");
    for (Host *host : {&first, &second, &pattern}) {
        host->make();
        startAndMeet(*host);
    }
    EXPECT_EQ(send("one", "a"), "done");
    EXPECT_EQ(send("twin", "b"), "done");
    EXPECT_EQ(send("x7", "c"), "done");
    EXPECT_EQ(send("two", "d"), "done");
    EXPECT_EQ(first.interceptor.commands().size(), 1U);
    EXPECT_EQ(send("one", "e"), "done");
    const auto isHandled = [](Host &host, const std::string &identifier) {
        for (const auto &command : host.interceptor.commands()) {
            if (command.identifier == identifier) {
                return true;
            }
        }
        return false;
    };
    EXPECT_TRUE(isHandled(pattern, "b"));
    EXPECT_TRUE(isHandled(pattern, "c"));
    EXPECT_FALSE(isHandled(first, "b") || isHandled(second, "b"));
    EXPECT_FALSE(isHandled(pattern, "a") || isHandled(second, "a"));
    EXPECT_TRUE(isHandled(second, "d") || isHandled(pattern, "d"));
}

TEST_F(RemoteConfigServer, aNameThatMakesNoFilterIsRefusedWithoutHarmToOthers)
{
    Host neighbour("neighbour");
    neighbour.make();
    startAndMeet(neighbour);
    const std::string longest(203, 'n');
    for (const std::string &name : {std::string("it's"), longest + "n"}) {
        SCOPED_TRACE(name);
        Host host(name);
        host.make();
        {
            const zuv_test::LogCapture log;
            EXPECT_EQ(host.start(), 0);
            EXPECT_EQ(serviceLines(log),
                      (Lines{"!create CFT on request topic", "!create DDS entities",
                             "!initialize BRELCommandHandler", "!create BRELCommandHandler"}));
        }
        EXPECT_TRUE(host.isStopped());
        EXPECT_EQ(send("neighbour"), "done");
    }
    Host host(longest);
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send(longest.c_str()), "done");
}

TEST_F(RemoteConfigServer, withoutAnInterceptorItHasEntitiesAndAnswersNothing)
{
    Host host("silent");
    host.make(false);
    ASSERT_EQ(host.start(), 1);
    EXPECT_EQ(BRELRemoteConfigServer_isStarted(host.server), 1);
    EXPECT_NE(host.context()._participant, nullptr);
    EXPECT_EQ(BRELRemoteConfigServer_getReplier(host.server), nullptr);
    EXPECT_EQ(BRELRemoteConfigServer_hasMatchingClient(host.server), 0);
    EXPECT_EQ(BRELCommandHandler_hasMatchingClientI(nullptr), 0);
}

TEST_F(RemoteConfigServer, itsDispatcherTellsTheListenerOfItsThreads)
{
    std::atomic<int> alive = 0;
    DDS_AsyncWaitSetListener listener = {};
    listener.listener_data = &alive;
    listener.on_thread_spawned = [](void *data) { ++*static_cast<std::atomic<int> *>(data); };
    listener.on_thread_deleted = [](void *data) { --*static_cast<std::atomic<int> *>(data); };
    Host host("listened");
    host.make(true, &listener);
    EXPECT_EQ(alive, 0);
    startAndMeet(host);
    EXPECT_EQ(send("listened"), "done");
    EXPECT_EQ(alive, 1);
    BRELRemoteConfigServer_finalize(host.server);
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(host.server->_aws, nullptr);
}

TEST_F(RemoteConfigServer, aDisposalIsNoCommand)
{
    Host host("disposed");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("disposed", "before"), "done");
    ZUV_Service_Admin_CommandRequestDataWriter *const writer =
        ZUV_BrelServiceAdminRequester_get_request_datawriter(client->_requester);
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestDataWriter_dispose(writer, client->_request,
                                                                 &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);
    EXPECT_EQ(send("disposed", "after"), "done");
    const auto commands = host.interceptor.commands();
    ASSERT_EQ(commands.size(), 2U);
    EXPECT_EQ(commands[1].identifier, "after");
}

TEST_F(RemoteConfigServer, endpointsThatDoNotFitAreNoted)
{
    Host host("noted");
    host.make();
    BRELLog_g_instrumentationMask |= ZUV_LOG_BIT_INFORMATION;
    const zuv_test::LogCapture log;
    ASSERT_EQ(host.start(), 1);
    // A reader that wants replies of the past, and a writer that may lose requests.
    DDS_DomainParticipantFactory *const factory = DDS_DomainParticipantFactory_get_instance();
    DDS_DomainParticipant *const stranger = DDS_DomainParticipantFactory_create_participant(
        factory, zuv_test::loopbackDomainId(), &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, 0);
    ASSERT_NE(stranger, nullptr);
    const char *const replyType = ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name();
    const char *const requestType = ZUV_Service_Admin_CommandRequestTypeSupport_get_type_name();
    ZUV_Service_Admin_CommandReplyTypeSupport_register_type(stranger, replyType);
    ZUV_Service_Admin_CommandRequestTypeSupport_register_type(stranger, requestType);
    DDS_Topic *const replies = DDS_DomainParticipant_create_topic(
        stranger, host.context().replyTopicName, replyType, &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
    DDS_Topic *const requests = DDS_DomainParticipant_create_topic(
        stranger, host.context().requesTopicName, requestType, &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
    DDS_DataReaderQos readerQos = {};
    DDS_DataReaderQos_get_defaultI(&readerQos);
    readerQos.reliability.kind = DDS_RELIABLE_RELIABILITY_QOS;
    readerQos.durability.kind = DDS_TRANSIENT_LOCAL_DURABILITY_QOS;
    DDS_DataWriterQos writerQos = {};
    DDS_DataWriterQos_get_defaultI(&writerQos);
    writerQos.reliability.kind = DDS_BEST_EFFORT_RELIABILITY_QOS;
    DDS_Subscriber_create_datareader(DDS_DomainParticipant_get_implicit_subscriber(stranger),
                                     DDS_Topic_as_topicdescription(replies), &readerQos, nullptr,
                                     0);
    DDS_Publisher_create_datawriter(DDS_DomainParticipant_get_implicit_publisher(stranger),
                                    requests, &writerQos, nullptr, 0);
    DDS_DataReaderQos_finalize(&readerQos);
    DDS_DataWriterQos_finalize(&writerQos);
    const auto isNoted = [&log](const char *text) {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
        while (std::chrono::steady_clock::now() < end) {
            for (const std::string &line : log.texts()) {
                if (line == text) {
                    return true;
                }
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return false;
    };
    EXPECT_TRUE(isNoted("BRELCommandHandler_onOfferedIncompatibleQos: AdministrationDataWriter "
                        "(Topic: zuv/service/admin/command_reply) received "
                        "onOfferedIncompatibleQos -> lastPolicyId=2 "
                        "lastPolicy=DURABILITY_QOS_POLICY"));
    EXPECT_TRUE(isNoted("BRELCommandHandler_onRequestedIncompatibleQos: AdministrationDataReader "
                        "(Topic: RequestTopic_CFT) received onRequestedIncompatibleQos -> "
                        "lastPolicyId=11 lastPolicy=RELIABILITY_QOS_POLICY"))
        << testing::PrintToString(log.texts());
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(stranger), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory, stranger), DDS_RETCODE_OK);
    BRELLog_g_instrumentationMask &= ~ZUV_LOG_BIT_INFORMATION;
}

// -- What is made of the settings ------------------------------------------------------------------------------

TEST_F(RemoteConfigServer, endpointsAndNamesAreAsTheSettingsSay)
{
    Host host("settings");
    host.make();
    ASSERT_EQ(host.start(), 1);
    const BRELRemoteConfigDdsContext &context = host.context();
    EXPECT_STREQ(context.requesTopicName, "zuv/service/admin/command_request");
    EXPECT_STREQ(context.replyTopicName, "zuv/service/admin/command_reply");
    EXPECT_EQ(context._writerQos.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_EQ(context._readerQos.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_EQ(context._writerQos.service.kind, kKind);
    EXPECT_EQ(context._readerQos.service.kind, kKind);
    EXPECT_STREQ(
        DDS_PropertyQosPolicyHelper_lookup_property(&context._readerQos.property, kPoolProperty)
            ->value,
        "32768");
    EXPECT_EQ(context._readerQos.reader_resource_limits.dynamically_allocate_fragmented_samples, 1);
    DDS_PublisherQos publisher = {};
    DDS_Publisher_get_qos(context._publisher, &publisher);
    EXPECT_EQ(publisher.entity_factory.autoenable_created_entities, 0);
    DDS_PublisherQos_finalize(&publisher);
    DDS_DomainParticipantQos participant = {};
    DDS_DomainParticipant_get_qos(context._participant, &participant);
    EXPECT_STREQ(participant.participant_name.name, "ZUV Brel Service: settings");
    EXPECT_EQ(participant.service.kind, kKind);
    const DDS_Property_t *const version =
        DDS_PropertyQosPolicyHelper_lookup_property(&participant.property, "zuv.service.version");
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version->propagate, 1);
    DDS_DomainParticipantQos_finalize(&participant);
}

TEST_F(RemoteConfigServer, namesAndBuffersOfTheConfigurationGoBeforeTheDefaults)
{
    Host host("named");
    DDS_String_replace(&host.cfg.requestTopicName, "ask");
    DDS_String_replace(&host.cfg.replyTopicName, "answer");
    DDS_String_replace(&host.cfg.requestTypeName, "A");
    DDS_String_replace(&host.cfg.replyTypeName, "B");
    DDS_String_replace(&host.cfg.participantQos.participant_name.name, "mine");
    host.cfg.sampleBufferMinSize = DDS_LENGTH_UNLIMITED;
    host.make();
    ASSERT_EQ(host.start(), 1);
    const BRELRemoteConfigDdsContext &context = host.context();
    EXPECT_STREQ(context.requesTopicName, "ask");
    EXPECT_STREQ(context.replyTopicName, "answer");
    EXPECT_STREQ(context.requesTypeName, "A");
    EXPECT_STREQ(context.replyTypeName, "B");
    EXPECT_STREQ(
        DDS_PropertyQosPolicyHelper_lookup_property(&context._readerQos.property, kPoolProperty)
            ->value,
        "DDS_LENGTH_UNLIMITED");
    EXPECT_EQ(context._readerQos.reader_resource_limits.dynamically_allocate_fragmented_samples, 0);
    DDS_DomainParticipantQos participant = {};
    DDS_DomainParticipant_get_qos(context._participant, &participant);
    EXPECT_STREQ(participant.participant_name.name, "mine");
    DDS_DomainParticipantQos_finalize(&participant);
    EXPECT_NE(DDS_DomainParticipant_lookup_topicdescription(context._participant, "ask"), nullptr);
}

TEST_F(RemoteConfigServer, aSharedParticipantGoesBackToThoseWhoShareIt)
{
    Host host("sharing");
    DDS_String_replace(&host.cfg.sharedParticipantRef, "the shared one");
    DDS_DomainParticipant *const shared = BRELServiceParticipantFactory_assertParticipant(
        &host.factory, "the shared one", zuv_test::loopbackDomainId(), &host.cfg.participantQos);
    ASSERT_NE(shared, nullptr);
    host.make();
    startAndMeet(host);
    EXPECT_EQ(host.context()._participant, shared);
    EXPECT_EQ(send("sharing"), "done");
    BRELRemoteConfigServer_finalize(host.server);
    EXPECT_EQ(BRELServiceParticipantFactory_lookUpParticipant(&host.factory, "the shared one"),
              shared);
    // What the server made in there is gone but for its topics.
    EXPECT_NE(DDS_DomainParticipant_lookup_topicdescription(shared, "RequestTopic_CFT"), nullptr);
    EXPECT_EQ(BRELServiceParticipantFactory_deleteParticipant(&host.factory, "the shared one"), 1);
    EXPECT_EQ(BRELServiceParticipantFactory_lookUpParticipant(&host.factory, "the shared one"),
              nullptr);
}

// -- Failures --------------------------------------------------------------------------------------------------

struct FailingStep {
    const char *point;
    std::uint32_t pass;
    Lines lines;
};

Lines ofHandler(const char *cause)
{
    return {cause, "!create DDS entities", "!initialize BRELCommandHandler",
            "!create BRELCommandHandler"};
}

TEST_F(RemoteConfigServer, aStartThatFailsAtAnyStepIsUndoneAndMayBeRepeated)
{
    const FailingStep steps[] = {
        {"dds.create_participant", 1, {"!create participant", "!create participant"}},
        {"dds.set_default_topic_qos", 1, {"!set default Topic QoS"}},
        {"dds.create_publisher", 1, {"!create publisher"}},
        {"dds.create_subscriber", 1, {"!create subscriber"}},
        {"dds.start_async_waitset", 1, {"!start administration dispatcher thread"}},
        {"thread.create", 1, {"!start administration dispatcher thread"}},
        {"dds.register_type", 1, ofHandler("!register request type")},
        {"dds.create_topic", 1, ofHandler("!create request topic")},
        {"dds.create_contentfilteredtopic", 1, ofHandler("!create CFT on request topic")},
        {"talvane.create_replier", 1, ofHandler("!create ZUV_BrelServiceAdminReplier")},
        {"dds.set_writer_listener", 1, ofHandler("!set reply writer listener")},
        {"dds.enable", 1, ofHandler("!enable reply DataWriter")},
        {"dds.set_reader_listener", 1, ofHandler("!set request reader listener - Return code = 1")},
        {"dds.get_statuscondition", 1, ofHandler("!set enabled statuses - Return code = 3")},
        {"dds.set_enabled_statuses", 1, ofHandler("!set enabled statuses - Return code = 1")},
        {"dds.set_handler",
         1,
         {"!set condition handler", "!initialize BRELCommandHandler",
          "!create BRELCommandHandler"}},
        {"dds.attach_condition", 1, {"attach command handler to AWS"}},
    };
    Host host("steps");
    host.make();
    for (const FailingStep &step : steps) {
        SCOPED_TRACE(step.point);
        const zuv_test::HeapCheck heap;
        {
            const zuv_test::LogCapture log;
            ZUVOsapiFault_arm(step.point, step.pass, 0);
            EXPECT_EQ(host.start(), 0);
            EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
            ZUVOsapiFault_disarm();
            EXPECT_EQ(serviceLines(log), step.lines);
        }
        EXPECT_TRUE(host.isStopped());
        EXPECT_TRUE(heap.isBalanced());
    }
    startAndMeet(host);
    EXPECT_EQ(send("steps"), "done");
}

TEST_F(RemoteConfigServer, aReaderThatCannotBeEnabledByHandIsNoFailure)
{
    Host host("unnoticed");
    host.make();
    makeClient(); // it enables entities as well
    ZUVOsapiFault_arm("dds.enable", 2, 0);
    const zuv_test::LogCapture log;
    startAndMeet(host);
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(serviceLines(log), Lines{});
    EXPECT_EQ(send("unnoticed"), "done") << "its subscriber has enabled it";
}

TEST_F(RemoteConfigServer, aStartThatLacksMemoryIsUndoneButForThePropertyOfThePool)
{
    Host host("memory");
    host.make();
    bool hasStayed = false;
    for (std::uint32_t count = 1;; ++count) {
        SCOPED_TRACE(count);
        const zuv_test::HeapCheck heap;
        bool isInjected;
        {
            const zuv_test::LogCapture log;
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
            const bool isStarted = host.start() != 0;
            isInjected = ZUVOsapiFault_getInjectedCount() != 0;
            ZUVOsapiFault_disarm();
            const Lines lines = serviceLines(log);
            if (!isStarted) {
                EXPECT_FALSE(lines.empty());
                const bool stays = lines == Lines{"!set Memory manager fast pool property"};
                EXPECT_EQ(host.isStopped(), !stays);
                hasStayed = hasStayed || stays;
            }
        }
        BRELRemoteConfigServer_finalize(host.server);
        EXPECT_TRUE(host.isStopped());
        BRELRemoteConfigServer_delete(host.server);
        host.make();
        EXPECT_TRUE(heap.isBalanced());
        if (!isInjected) {
            break;
        }
    }
    EXPECT_TRUE(hasStayed);
}

TEST_F(RemoteConfigServer, aStopThatFailsGoesOnFromThereTheNextTime)
{
    const FailingStep steps[] = {
        {"dds.stop_async_waitset", 1, {"!DDS_AsyncWaitSet_stop"}},
        {"dds.detach_condition", 1, {"!detach command handler"}},
        {"dds.delete_publisher", 1, {"!delete CommandResponse publisher"}},
        {"dds.delete_subscriber", 1, {"!delete CommandRequest subscriber"}},
        {"dds.delete_contained_entities", 1, {"!delete participant contained entities"}},
        {"dds.delete_participant", 1, {"!delete participant"}},
    };
    for (const FailingStep &step : steps) {
        SCOPED_TRACE(step.point);
        Host host("stops");
        const zuv_test::HeapCheck heap;
        host.make();
        ASSERT_EQ(host.start(), 1);
        {
            const zuv_test::LogCapture log;
            ZUVOsapiFault_arm(step.point, step.pass, 0);
            BRELRemoteConfigServer_finalize(host.server);
            EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
            ZUVOsapiFault_disarm();
            Lines expected = step.lines;
            expected.push_back("!BRELRemoteConfigServer_stop");
            EXPECT_EQ(serviceLines(log), expected);
        }
        EXPECT_NE(host.server->_aws, nullptr);
        EXPECT_FALSE(host.isStopped());
        BRELRemoteConfigServer_finalize(host.server);
        EXPECT_TRUE(host.isStopped());
        BRELRemoteConfigServer_delete(host.server);
        host.server = nullptr;
        EXPECT_TRUE(heap.isBalanced());
    }
}

TEST_F(RemoteConfigServer, whatCannotBeTakenIsTakenTheNextTime)
{
    Host host("takes");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("takes"), "done");
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("dds.read_or_take", 1, 0);
    EXPECT_EQ(send("takes", "a"), "done");
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(host.interceptor.commands().size(), 2U);
    EXPECT_EQ(serviceLines(log), Lines{"!take"});
}

TEST_F(RemoteConfigServer, nullIsAFailedPrecondition)
{
    Host host("null");
    BRELRemoteConfigServer server = {};
    const zuv_test::LogCapture log;
    EXPECT_EQ(
        BRELRemoteConfigServer_initialize(nullptr, "n", kKind, &host.cfg, &host.factory, nullptr),
        0);
    EXPECT_EQ(BRELRemoteConfigServer_new(nullptr, kKind, &host.cfg, &host.factory, nullptr),
              nullptr);
    EXPECT_EQ(
        BRELRemoteConfigServer_initialize(&server, "n", kKind, nullptr, &host.factory, nullptr), 0);
    EXPECT_EQ(BRELRemoteConfigServer_initialize(&server, "n", kKind, &host.cfg, nullptr, nullptr),
              0);
    EXPECT_EQ(BRELCommandHandler_new(nullptr, &server), nullptr);
    EXPECT_EQ(BRELCommandHandler_new(&server._ddsContext, nullptr), nullptr);
    BRELRemoteConfigServer_delete(nullptr);
    EXPECT_EQ(log.texts(),
              (Lines{"!meet precondition: self == ((void *)0)",
                     "!meet precondition: brelName == ((void *)0)",
                     "!initialize BRELRemoteConfigServer object",
                     "!meet precondition: cfg == ((void *)0)",
                     "!meet precondition: serviceParticipantFactory == ((void *)0)",
                     "!meet precondition: ddsContext == ((void *)0)",
                     "!initialize BRELCommandHandler", "!meet precondition: server == ((void *)0)",
                     "!initialize BRELCommandHandler", "bad parameter self"}));
}

} // namespace
