// What becomes of a server when a step of its start, of its stop or of a dispatch fails.
#include <set>

#include "ServerTest.h"

namespace zuv_test
{
namespace
{

class RemoteConfigServerFaults : public RemoteConfigServer
{
protected:
    // Start with that pass through the point failing; the reports of remote configuration.
    static Lines startFailing(Host &host, const char *point, std::uint32_t pass)
    {
        const LogCapture log;
        ZUVOsapiFault_arm(point, pass, 0);
        EXPECT_EQ(host.start(), 0);
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
        ZUVOsapiFault_disarm();
        return serviceLines(log);
    }
    static Lines finalizeFailing(Host &host, const char *point)
    {
        const LogCapture log;
        ZUVOsapiFault_arm(point, 1, 0);
        BRELRemoteConfigServer_finalize(host.server);
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
        ZUVOsapiFault_disarm();
        return serviceLines(log);
    }
    static void remove(Host &host)
    {
        BRELRemoteConfigServer_delete(host.server);
        host.server = nullptr;
    }
};

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

// -- Start -----------------------------------------------------------------------------------------------------

const std::vector<FailingStep> &failingSteps()
{
    static const std::vector<FailingStep> steps = {
        {"dds.qos_default", 1, {"!initialize Participant QoS"}},
        {"dds.qos_default", 2, {"!initialize participant QoS", "!create participant"}},
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
    return steps;
}

TEST_F(RemoteConfigServerFaults, aStartThatFailsAtAnyStepIsUndoneAndMayBeRepeated)
{
    Host host("steps");
    host.make();
    for (const FailingStep &step : failingSteps()) {
        SCOPED_TRACE(step.point);
        const HeapCheck heap;
        EXPECT_EQ(startFailing(host, step.point, step.pass), step.lines);
        EXPECT_TRUE(host.isStopped());
        EXPECT_TRUE(heap.isBalanced());
    }
    startAndMeet(host);
    EXPECT_EQ(send("steps"), "done");
}

TEST_F(RemoteConfigServerFaults, afterAFailedStartItMayBeFinalizedOrDeleted)
{
    for (const FailingStep &step : failingSteps()) {
        SCOPED_TRACE(step.point);
        Host host("steps");
        const HeapCheck heap;
        host.make();
        EXPECT_EQ(startFailing(host, step.point, step.pass), step.lines);
        {
            const LogCapture log;
            BRELRemoteConfigServer_finalize(host.server);
            BRELRemoteConfigServer_finalize(host.server);
            EXPECT_TRUE(log.isEmpty());
        }
        EXPECT_EQ(host.server->_aws, nullptr);
        EXPECT_TRUE(host.isStopped());
        remove(host);

        host.make();
        EXPECT_EQ(startFailing(host, step.point, step.pass), step.lines);
        remove(host);
        EXPECT_TRUE(heap.isBalanced());
    }
}

TEST_F(RemoteConfigServerFaults, aServerThatWasFinalizedDoesNotStart)
{
    Host host("final");
    host.make();
    BRELRemoteConfigServer_finalize(host.server);
    const LogCapture log;
    EXPECT_EQ(host.start(), 0);
    EXPECT_EQ(serviceLines(log), (Lines{"!start administration dispatcher thread"}));
    EXPECT_TRUE(host.isStopped());
}

TEST_F(RemoteConfigServerFaults, aSharedParticipantThatCannotBeHadIsToldAsItsQos)
{
    Host host("shared");
    DDS_String_replace(&host.cfg.sharedParticipantRef, "the shared one");
    host.make();
    const Lines lines = {"!configure admin participant QoS"};
    EXPECT_EQ(startFailing(host, "dds.create_participant", 1), lines);
    EXPECT_TRUE(host.isStopped());
    EXPECT_EQ(startFailing(host, "dds.create_contentfilteredtopic", 1),
              ofHandler("!create CFT on request topic"));
    EXPECT_TRUE(host.isStopped());
    EXPECT_EQ(BRELServiceParticipantFactory_lookUpParticipant(&host.factory, "the shared one"),
              nullptr)
        << "nobody else holds it";
    startAndMeet(host);
    EXPECT_EQ(send("shared"), "done");
}

TEST_F(RemoteConfigServerFaults, aReaderThatCannotBeEnabledByHandIsNoFailure)
{
    Host host("unnoticed");
    host.make();
    makeClient(); // it enables entities as well
    ZUVOsapiFault_arm("dds.enable", 2, 0);
    const LogCapture log;
    startAndMeet(host);
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(serviceLines(log), Lines{});
    EXPECT_EQ(send("unnoticed"), "done") << "its subscriber has enabled it";
}

// Give each record of QoS something that takes memory to be copied.
void fill(BRELCfgFileAdministration &cfg)
{
    for (DDS_PropertyQosPolicy *policy :
         {&cfg.participantQos.property, &cfg.dataWriterQos.property, &cfg.dataReaderQos.property}) {
        DDS_PropertyQosPolicyHelper_assert_property(policy, "name", "value", DDS_BOOLEAN_FALSE);
    }
    for (DDS_StringSeq *names :
         {&cfg.publisherQos.partition.name, &cfg.subscriberQos.partition.name}) {
        DDS_StringSeq_ensure_length(names, 1, 1);
        DDS_String_replace(DDS_StringSeq_get_reference(names, 0), "partition");
    }
}

class RemoteConfigServerMemory : public RemoteConfigServer, public testing::WithParamInterface<bool>
{
protected:
    // Start with one allocation after the other failing, each time as a new server; all reports that came.
    std::set<std::string> sweep(Host &host)
    {
        std::set<std::string> told;
        for (std::uint32_t count = 1;; ++count) {
            SCOPED_TRACE(count);
            const HeapCheck heap;
            host.make();
            bool isInjected;
            {
                const LogCapture log;
                ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
                const bool isStarted = host.start() != 0;
                isInjected = ZUVOsapiFault_getInjectedCount() != 0;
                ZUVOsapiFault_disarm();
                const Lines lines = serviceLines(log);
                EXPECT_EQ(isStarted, lines.empty());
                told.insert(lines.begin(), lines.end());
                const bool stays = lines == Lines{"!set Memory manager fast pool property"};
                EXPECT_EQ(host.isStopped(), !isStarted && !stays);
                if (stays) {
                    EXPECT_EQ(BRELRemoteConfigServer_isStarted(host.server), 0);
                    // The next start does not add to what this one left.
                    EXPECT_EQ(host.start(), 1);
                }
            }
            BRELRemoteConfigServer_finalize(host.server);
            EXPECT_TRUE(host.isStopped());
            BRELRemoteConfigServer_delete(host.server);
            host.server = nullptr;
            EXPECT_TRUE(heap.isBalanced());
            if (!isInjected) {
                return told;
            }
        }
    }
};

TEST_P(RemoteConfigServerMemory, aStartThatLacksItIsUndoneButForThePropertyOfThePool)
{
    Host host("memory");
    fill(host.cfg);
    if (GetParam()) {
        DDS_String_replace(&host.cfg.sharedParticipantRef, "the shared one");
    }
    const std::set<std::string> told = sweep(host);
    for (const char *line :
         {"!copy participant qos - Return code = 5", "!set participant name",
          "!set service version", "!set up participant QoS",
          "!copy publisher qos - Return code = 5", "!copy subscriber qos - Return code = 5",
          "!copy dataWriter qos - Return code = 5", "!copy dataReader qos - Return code = 5",
          "!set Memory manager fast pool property"}) {
        EXPECT_EQ(told.count(line), 1U) << line << " of " << testing::PrintToString(told);
    }
    EXPECT_EQ(told.count("!configure participant QoS"), GetParam() ? 0U : 1U);
    EXPECT_EQ(told.count("!configure admin participant QoS"), GetParam() ? 1U : 0U);
}
INSTANTIATE_TEST_SUITE_P(ParticipantOfItsOwnOrShared, RemoteConfigServerMemory, testing::Bool());

// -- Stop ------------------------------------------------------------------------------------------------------

const std::vector<FailingStep> &failingStopSteps()
{
    static const std::vector<FailingStep> steps = {
        {"dds.stop_async_waitset", 1, {"!DDS_AsyncWaitSet_stop"}},
        {"dds.detach_condition", 1, {"!detach command handler"}},
        {"dds.delete_publisher", 1, {"!delete CommandResponse publisher"}},
        {"dds.delete_subscriber", 1, {"!delete CommandRequest subscriber"}},
        {"dds.delete_contained_entities", 1, {"!delete participant contained entities"}},
        {"dds.delete_participant", 1, {"!delete participant"}},
    };
    return steps;
}

Lines ofStop(Lines lines)
{
    lines.push_back("!BRELRemoteConfigServer_stop");
    return lines;
}

TEST_F(RemoteConfigServerFaults, aStopThatFailsGoesOnFromThereTheNextTime)
{
    for (const FailingStep &step : failingStopSteps()) {
        SCOPED_TRACE(step.point);
        Host host("stops");
        const HeapCheck heap;
        host.make();
        ASSERT_EQ(host.start(), 1);
        EXPECT_EQ(finalizeFailing(host, step.point), ofStop(step.lines));
        EXPECT_NE(host.server->_aws, nullptr);
        EXPECT_FALSE(host.isStopped());
        BRELRemoteConfigServer_finalize(host.server);
        EXPECT_TRUE(host.isStopped());
        remove(host);
        EXPECT_TRUE(heap.isBalanced());
    }
}

TEST_F(RemoteConfigServerFaults, aStopThatFailedIsMadeUpForByTheNextStart)
{
    for (const FailingStep &step : failingStopSteps()) {
        SCOPED_TRACE(step.point);
        Host host("again");
        const HeapCheck heap;
        host.make();
        ASSERT_EQ(host.start(), 1);
        EXPECT_EQ(finalizeFailing(host, step.point), ofStop(step.lines));
        if (BRELRemoteConfigServer_isStarted(host.server) == 0) {
            startAndMeet(host);
        } else {
            makeClient();
        }
        EXPECT_TRUE(eventually([&] {
            return met().requests > 0 && met().replies > 0 &&
                   BRELRemoteConfigServer_hasMatchingClient(host.server) != 0;
        }));
        EXPECT_EQ(send("again"), "done");
        remove(host);
        client.reset();
        EXPECT_TRUE(heap.isBalanced());
    }
}

TEST_F(RemoteConfigServerFaults, aStopThatFailedDoesNotKeepTheRecord)
{
    for (const FailingStep &step : failingStopSteps()) {
        SCOPED_TRACE(step.point);
        Host host("deleted");
        const HeapCheck heap;
        host.make();
        ASSERT_EQ(host.start(), 1);
        // What the record knew, so that it can be cleared away.
        BRELRemoteConfigServer left = *host.server;
        {
            const LogCapture log;
            ZUVOsapiFault_arm(step.point, 1, 0);
            remove(host);
            EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
            ZUVOsapiFault_disarm();
            EXPECT_EQ(serviceLines(log), ofStop(step.lines));
        }
        // The steps before the failing one are done.
        const std::string point = step.point;
        if (point != "dds.stop_async_waitset" && point != "dds.detach_condition") {
            left._commandHandler = nullptr;
            left._ddsContext._publisher =
                point == "dds.delete_publisher" ? left._ddsContext._publisher : nullptr;
            if (point != "dds.delete_publisher" && point != "dds.delete_subscriber") {
                left._ddsContext._subscriber = nullptr;
            }
        }
        BRELRemoteConfigServer_finalize(&left);
        EXPECT_TRUE(heap.isBalanced());
    }
}

TEST_F(RemoteConfigServerFaults, endpointsOfOthersThatCannotBeDeletedKeepTheStopWaiting)
{
    Host host("groups");
    const HeapCheck heap;
    host.make(false);
    ASSERT_EQ(host.start(), 1);
    const BRELRemoteConfigDdsContext &context = host.context();
    const char *const type = ZUV_Service_Admin_CommandReplyTypeSupport_get_type_name();
    ZUV_Service_Admin_CommandReplyTypeSupport_register_type(context._participant, type);
    DDS_Topic *const topic = DDS_DomainParticipant_create_topic(context._participant, "topic", type,
                                                                &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
    ASSERT_NE(DDS_Publisher_create_datawriter(context._publisher, topic,
                                              &DDS_DATAWRITER_QOS_DEFAULT, nullptr, 0),
              nullptr);
    ASSERT_NE(DDS_Subscriber_create_datareader(context._subscriber,
                                               DDS_Topic_as_topicdescription(topic),
                                               &DDS_DATAREADER_QOS_DEFAULT, nullptr, 0),
              nullptr);
    EXPECT_EQ(finalizeFailing(host, "dds.delete_datawriter"),
              ofStop({"!delete publisher's contained entities"}));
    EXPECT_NE(context._publisher, nullptr);
    EXPECT_EQ(finalizeFailing(host, "dds.delete_datareader"),
              ofStop({"!delete publisher's contained entities"}));
    EXPECT_EQ(context._publisher, nullptr);
    EXPECT_NE(context._subscriber, nullptr);
    BRELRemoteConfigServer_finalize(host.server);
    EXPECT_TRUE(host.isStopped());
    remove(host);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(RemoteConfigServerFaults, aReplierThatCannotBeDeletedStaysBehindAndItsEndpointsGo)
{
    for (const char *point : {"talvane.delete_replier", "dds.delete_datawriter"}) {
        SCOPED_TRACE(point);
        Host host("replier");
        host.make();
        startAndMeet(host);
        EXPECT_EQ(send("replier"), "done");
        // It has no owner afterwards; who asked for it may still hold it.
        static auto *const repliers = new std::vector<ZUV_BrelServiceAdminReplier *>;
        repliers->push_back(BRELRemoteConfigServer_getReplier(host.server));
        EXPECT_EQ(finalizeFailing(host, point),
                  (Lines{"!delete ZUV_BrelServiceAdminReplier", "!delete DDS entities"}));
        EXPECT_TRUE(host.isStopped());
        EXPECT_EQ(host.server->_aws, nullptr);
        remove(host);
        host.make();
        client.reset();
        startAndMeet(host);
        EXPECT_EQ(send("replier"), "done");
        client.reset();
    }
}

// -- Dispatch --------------------------------------------------------------------------------------------------

TEST_F(RemoteConfigServerFaults, aLoanThatIsReturnedWithAFailureIsReturned)
{
    Host host("loan");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("loan", "before"), "done");
    {
        const LogCapture log;
        // No reply: the client returns loans, too.
        ZUVOsapiFault_arm("dds.return_loan", 1, 0);
        post("loan", "silent");
        EXPECT_TRUE(eventually([] { return ZUVOsapiFault_getInjectedCount() == 1; }));
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(eventually([&] { return serviceLines(log) == Lines{"!return loan"}; }))
            << testing::PrintToString(log.texts());
    }
    EXPECT_EQ(send("loan", "after"), "done");
    EXPECT_EQ(host.interceptor.identifiers(), (Lines{"before", "silent", "after"}));
    const LogCapture log;
    BRELRemoteConfigServer_finalize(host.server);
    EXPECT_TRUE(log.isEmpty()) << testing::PrintToString(log.texts());
    EXPECT_TRUE(host.isStopped());
}

TEST_F(RemoteConfigServerFaults, aTriggerWithoutRequestsTakesNoLoan)
{
    Host host("idle");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("idle"), "done");
    const DDS_ConditionHandler &handler = host.server->_commandHandler->_conditionHandler;
    EXPECT_EQ(handler.handler_data, host.server->_commandHandler);
    DDS_Condition *const condition =
        DDS_StatusCondition_as_condition(host.server->_commandHandler->_requestCondition);
    // The answer may be here before its request's loan has gone back.
    EXPECT_TRUE(eventually([&] {
        const LogCapture log;
        ZUVOsapiFault_arm("dds.return_loan", 1, 0);
        handler.on_condition_triggered(handler.handler_data, condition);
        const bool isUntouched = ZUVOsapiFault_getInjectedCount() == 0;
        ZUVOsapiFault_disarm();
        return isUntouched && log.isEmpty();
    }));
    const LogCapture log;
    handler.on_condition_triggered(nullptr, condition);
    handler.on_condition_triggered(handler.handler_data, nullptr);
    EXPECT_EQ(log.texts(), (Lines{"!meet precondition: handlerData == ((void *)0)",
                                  "!meet precondition: condition == ((void *)0)"}));
}

TEST_F(RemoteConfigServerFaults, whatCannotBeTakenIsTakenTheNextTime)
{
    Host host("takes");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("takes"), "done");
    const LogCapture log;
    ZUVOsapiFault_arm("dds.read_or_take", 1, 0);
    EXPECT_EQ(send("takes", "a"), "done");
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(host.interceptor.commands().size(), 2U);
    EXPECT_EQ(serviceLines(log), Lines{"!take"});
}

TEST_F(RemoteConfigServerFaults, nullIsAFailedPrecondition)
{
    Host host("null");
    BRELRemoteConfigServer server = {};
    const LogCapture log;
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
} // namespace zuv_test
