// The server of a service's administration: what it makes of its settings, and who handles what it admits.
#include "ServerTest.h"

namespace zuv_test
{
namespace
{

constexpr const char *kPoolProperty =
    "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size";

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

TEST_F(RemoteConfigServer, aDisposalAmongCommandsIsNoCommand)
{
    Host host("disposed");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("disposed", "first"), "done");
    // All at once, when the dispatcher goes on.
    ASSERT_EQ(DDS_AsyncWaitSet_stop(host.server->_aws), DDS_RETCODE_OK);
    post("disposed", "before");
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestDataWriter_dispose(requestWriter(), client->_request,
                                                                 &DDS_HANDLE_NIL),
              DDS_RETCODE_OK);
    post("disposed", "after");
    awaitAcknowledgments();
    ASSERT_EQ(DDS_AsyncWaitSet_start(host.server->_aws), DDS_RETCODE_OK);
    EXPECT_EQ(send("disposed", "last"), "done");
    EXPECT_EQ(host.interceptor.identifiers(), (Lines{"first", "before", "after", "last"}));
}

TEST_F(RemoteConfigServer, aClientIsThereWhenBothOfItsEndpointsAre)
{
    Host host("both");
    host.make();
    ASSERT_EQ(host.start(), 1);
    const auto requestWriters = [&] {
        DDS_SubscriptionMatchedStatus status = {};
        DDS_DataReader_get_subscription_matched_status(
            ZUV_Service_Admin_CommandRequestDataReader_as_datareader(
                ZUV_BrelServiceAdminReplier_get_request_datareader(
                    BRELRemoteConfigServer_getReplier(host.server))),
            &status);
        return status.current_count;
    };
    const auto isThere = [&] { return BRELRemoteConfigServer_hasMatchingClient(host.server) != 0; };
    Stranger stranger;
    stranger.writeRequests();
    ASSERT_TRUE(eventually([&] { return requestWriters() == 1; }));
    EXPECT_FALSE(isThere());
    {
        Stranger other;
        other.readReplies();
        EXPECT_TRUE(eventually(isThere)) << "which endpoints belong together is not asked";
    }
    EXPECT_TRUE(eventually([&] { return !isThere(); }));
    ZUVOsapiFault_arm("dds.get_matched_status", 1, 1);
    const LogCapture log;
    EXPECT_FALSE(isThere()) << "what cannot be told is no match";
    ZUVOsapiFault_disarm();
}

TEST_F(RemoteConfigServer, itsDispatchersAreaHasTheLevelOfTheAdministration)
{
    Host host("level");
    host.make();
    const LogCapture log;
    ZUVOsapiFault_arm("exclusive_area.enter", 1, 0);
    ASSERT_EQ(host.start(), 1);
    EXPECT_TRUE(eventually([] { return ZUVOsapiFault_getInjectedCount() == 1; }));
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(eventually([&] {
        return log.texts() == Lines{"!enter exclusive area 'zBsAdmin' of level 11: worker "
                                    "'zBsAdmin0' is refused by the system"};
    })) << testing::PrintToString(log.texts());
}

TEST_F(RemoteConfigServer, endpointsThatDoNotFitAreNoted)
{
    Host host("noted");
    host.make();
    BRELLog_g_instrumentationMask |= ZUV_LOG_BIT_INFORMATION;
    const LogCapture log;
    ASSERT_EQ(host.start(), 1);
    // A reader that wants replies of the past, and a writer that may lose requests.
    Stranger stranger;
    stranger.readReplies(DDS_TRANSIENT_LOCAL_DURABILITY_QOS);
    stranger.writeRequests(DDS_BEST_EFFORT_RELIABILITY_QOS);
    const auto isNoted = [&log](const char *text) {
        return eventually([&] {
            for (const LogLine &line : log.lines()) {
                if (line.text == text) {
                    return line.level == ZUV_LOG_BIT_INFORMATION &&
                           line.submodule == BREL_SUBMODULE_REMOTE;
                }
            }
            return false;
        });
    };
    EXPECT_TRUE(isNoted("BRELCommandHandler_onOfferedIncompatibleQos: AdministrationDataWriter "
                        "(Topic: zuv/service/admin/command_reply) received "
                        "onOfferedIncompatibleQos -> lastPolicyId=2 "
                        "lastPolicy=DURABILITY_QOS_POLICY"));
    EXPECT_TRUE(isNoted("BRELCommandHandler_onRequestedIncompatibleQos: AdministrationDataReader "
                        "(Topic: RequestTopic_CFT) received onRequestedIncompatibleQos -> "
                        "lastPolicyId=11 lastPolicy=RELIABILITY_QOS_POLICY"))
        << testing::PrintToString(log.texts());
    EXPECT_EQ(BRELRemoteConfigServer_hasMatchingClient(host.server), 0);
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
        &host.factory, "the shared one", loopbackDomainId(), &host.cfg.participantQos);
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

} // namespace
} // namespace zuv_test
