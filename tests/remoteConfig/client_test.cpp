#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "TestService.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "support/Eventually.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"
#include "support/Process.h"

namespace
{

using namespace std::chrono_literals;
using zuv_test::Answer;
using zuv_test::ReceivedRequest;
using zuv_test::TestService;

constexpr int kTimeoutSec = 10;
constexpr std::size_t kRestingSize = 32769;

// A file of the test that is gone with the object.
class LocalFile
{
public:
    explicit LocalFile(const std::string &content)
        : path_(testing::TempDir() + "client_test_XXXXXX")
    {
        const int descriptor = mkstemp(path_.data());
        FILE *const file = fdopen(descriptor, "wb");
        std::fwrite(content.data(), 1, content.size(), file);
        std::fclose(file);
    }
    ~LocalFile() { std::remove(path_.c_str()); }
    LocalFile(const LocalFile &) = delete;
    LocalFile &operator=(const LocalFile &) = delete;
    std::string url() const { return "file://" + path_; }

private:
    std::string path_;
};

// A description of a command, as the shell makes one.
class Description
{
public:
    Description(ZUV_Service_Admin_CommandActionKind action, const std::string &identifier,
                const std::string &body, const std::string &octets = "")
        : identifier_(identifier), body_(body)
    {
        request.action = action;
        request.resource_identifier = identifier_.data();
        request.string_body = body_.data();
        if (!octets.empty()) {
            DDS_OctetSeq_from_array(&request.octet_body,
                                    reinterpret_cast<const DDS_Octet *>(octets.data()),
                                    static_cast<DDS_Long>(octets.size()));
        }
    }
    ~Description() { DDS_OctetSeq_finalize(&request.octet_body); }
    Description(const Description &) = delete;
    Description &operator=(const Description &) = delete;

    ZUV_Service_Admin_CommandRequest request = {};

private:
    std::string identifier_;
    std::string body_;
};

class Client : public testing::Test
{
protected:
    Client()
    {
        BRELLog_setUp();
        EXPECT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
    }
    ~Client() override
    {
        ZUVOsapiFault_disarm();
        if (isStarted_) {
            BRELRemoteConfigClient_finalize(&client_);
        }
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
    }

    void start(int timeoutSec = kTimeoutSec)
    {
        ASSERT_EQ(
            BRELRemoteConfigClient_initialize(&client_, zuv_test::loopbackDomainId(), timeoutSec),
            1);
        isStarted_ = true;
    }

    void startWithService(int timeoutSec = kTimeoutSec)
    {
        ASSERT_NO_FATAL_FAILURE(start(timeoutSec));
        for (int round = 0; !BRELRemoteConfigClient_hasMatchingServer(&client_); ++round) {
            ASSERT_LT(round, 1000) << "no service was found";
            std::this_thread::sleep_for(10ms);
        }
    }

    int send(const std::string &body, int remote = 1, const std::string &identifier = "",
             const std::string &octets = "", const std::string &target = "S1")
    {
        const Description description(ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION, identifier,
                                      body, octets);
        return BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, target.c_str(),
                                                         &description.request, remote);
    }

    // The reused sample is as it is to be between commands.
    void expectAtRest()
    {
        ASSERT_NE(client_._request, nullptr);
        EXPECT_EQ(ZUVOsapiHeap_getBlockSize(client_._request->string_body), kRestingSize);
        EXPECT_EQ(client_._request->string_body[0], '\0');
    }

    BRELRemoteConfigClient client_ = {};
    ZUV_Service_Admin_CommandReply reply_;
    bool isStarted_ = false;
    zuv_test::LogCapture log_;
};

// The service of a process of its own: what this process's heap does is the client's doing.
class ServiceProcess : public zuv_test::Process
{
public:
    ServiceProcess() : Process({TEST_SERVICE, std::to_string(zuv_test::loopbackDomainId())})
    {
        EXPECT_TRUE(waitForOutput("ready\n")) << errors();
    }
};

// Start and end.

TEST_F(Client, hasARequestSampleWithRoomForEverything)
{
    ASSERT_NO_FATAL_FAILURE(start(7));
    expectAtRest();
    EXPECT_GE(ZUVOsapiHeap_getBlockSize(client_._request->application_name), 256u);
    EXPECT_GE(ZUVOsapiHeap_getBlockSize(client_._request->resource_identifier), 2049u);
    EXPECT_EQ(client_._replyWaitTimeout.sec, 7);
    EXPECT_EQ(client_._replyWaitTimeout.nanosec, 0u);
    EXPECT_EQ(client_.domainId, zuv_test::loopbackDomainId());
    EXPECT_EQ(client_._ignoreReply, 0);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Client, isNamedAndVersionedForDiscovery)
{
    ASSERT_NO_FATAL_FAILURE(start());
    DDS_DomainParticipantQos qos = {};
    ASSERT_EQ(DDS_DomainParticipant_get_qos(client_._ddsContext._participant, &qos),
              DDS_RETCODE_OK);
    EXPECT_STREQ(qos.participant_name.name, "ZUV Brel Service: Shell");
    const DDS_Property_t *const version =
        DDS_PropertyQosPolicyHelper_lookup_property(&qos.property, "zuv.service.version");
    ASSERT_NE(version, nullptr);
    EXPECT_STREQ(version->value, "7.7.0.0");
    EXPECT_TRUE(version->propagate);
    DDS_DomainParticipantQos_finalize(&qos);
}

void expectReplyReaderQos(const DDS_DataReaderQos &reader)
{
    EXPECT_EQ(reader.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(reader.resource_limits.max_samples, 32);
    EXPECT_EQ(reader.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_TRUE(
        DDS_Duration_is_zero(&reader.protocol.rtps_reliable_reader.max_heartbeat_response_delay));
    EXPECT_TRUE(
        DDS_Duration_is_zero(&reader.protocol.rtps_reliable_reader.min_heartbeat_response_delay));
    EXPECT_TRUE(reader.reader_resource_limits.dynamically_allocate_fragmented_samples);
    const DDS_Property_t *const pool = DDS_PropertyQosPolicyHelper_lookup_property(
        &reader.property, "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size");
    ASSERT_NE(pool, nullptr);
    EXPECT_STREQ(pool->value, "32768");
    EXPECT_FALSE(pool->propagate);
}

void expectRequestWriterQos(const DDS_DataWriterQos &writer)
{
    EXPECT_EQ(writer.history.kind, DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(writer.resource_limits.max_samples, 32);
    EXPECT_EQ(writer.resource_limits.max_instances, 1);
    EXPECT_EQ(writer.protocol.rtps_reliable_writer.max_send_window_size, 32);
    EXPECT_EQ(writer.protocol.rtps_reliable_writer.min_send_window_size, 32);
    EXPECT_EQ(writer.reliability.kind, DDS_RELIABLE_RELIABILITY_QOS);
    EXPECT_EQ(writer.reliability.max_blocking_time.sec, 7);
    EXPECT_EQ(writer.reliability.max_blocking_time.nanosec, 0u);
}

TEST_F(Client, hasReliableEndpointsThatKeepAll)
{
    ASSERT_NO_FATAL_FAILURE(start(7));
    expectReplyReaderQos(client_._ddsContext._readerQos);
    expectRequestWriterQos(client_._ddsContext._writerQos);

    DDS_DataReaderQos reader = {};
    DDS_DataWriterQos writer = {};
    ASSERT_EQ(DDS_DataReader_get_qos(
                  ZUV_Service_Admin_CommandReplyDataReader_as_datareader(
                      ZUV_BrelServiceAdminRequester_get_reply_datareader(client_._requester)),
                  &reader),
              DDS_RETCODE_OK);
    ASSERT_EQ(DDS_DataWriter_get_qos(
                  ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(
                      ZUV_BrelServiceAdminRequester_get_request_datawriter(client_._requester)),
                  &writer),
              DDS_RETCODE_OK);
    expectReplyReaderQos(reader);
    expectRequestWriterQos(writer);
    DDS_DataReaderQos_finalize(&reader);
    DDS_DataWriterQos_finalize(&writer);
}

TEST_F(Client, leavesNothingBehind)
{
    DDS_DomainParticipantFactory_finalize_instance(); // of an earlier test
    const zuv_test::HeapCheck heap;
    ASSERT_NO_FATAL_FAILURE(start());
    BRELRemoteConfigClient_finalize(&client_);
    EXPECT_EQ(client_._request, nullptr);
    EXPECT_EQ(client_._requester, nullptr);
    EXPECT_EQ(client_._ddsContext._participant, nullptr);
    EXPECT_EQ(client_._ddsContext._publisher, nullptr);
    EXPECT_EQ(client_._ddsContext._subscriber, nullptr);
    BRELRemoteConfigClient_finalize(&client_); // once more does no harm
    isStarted_ = false;
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_TRUE(heap.isBalanced());
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Client, comesAsAHeapFormToo)
{
    DDS_DomainParticipantFactory_finalize_instance(); // of an earlier test
    const zuv_test::HeapCheck heap;
    BRELRemoteConfigClient *const client =
        BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), kTimeoutSec);
    ASSERT_NE(client, nullptr);
    BRELRemoteConfigClient_delete(client);

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), kTimeoutSec), nullptr);
    ZUVOsapiFault_disarm();
    ASSERT_EQ(log_.lines().size(), 1u);
    EXPECT_EQ(log_.lines()[0].message, &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d);
    EXPECT_NE(log_.lines()[0].text.find(std::to_string(sizeof(BRELRemoteConfigClient))),
              std::string::npos);
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_EQ(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), kTimeoutSec), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(
        log_.holds({{&ZUV_LOG_CREATION_FAILURE_s, "!create request buffer"},
                    {&ZUV_LOG_INIT_FAILURE_s, "!initialize BRELRemoteConfigClient object"}}));
    log_.clear();

    BRELRemoteConfigClient_delete(nullptr);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_s, "bad parameter self"}}));
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(Client, reportsADomainThatDoesNotExist)
{
    DDS_DomainParticipantFactory_finalize_instance(); // of an earlier test
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(BRELRemoteConfigClient_initialize(&client_, -5, kTimeoutSec), 0);
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_CREATION_FAILURE_s, "!create participant"},
                            {&ZUV_LOG_ANY_FAILURE_s, "!create requester"}}));
    DDS_DomainParticipantFactory_finalize_instance();
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(Client, givesJustARequester)
{
    DDS_DomainParticipantFactory_finalize_instance(); // of an earlier test
    const zuv_test::HeapCheck heap;
    ZUV_BrelServiceAdminRequester *const requester =
        BRELRemoteConfigClient_createRequester(zuv_test::loopbackDomainId(), kTimeoutSec);
    ASSERT_NE(requester, nullptr);
    BRELRemoteConfigClient_deleteRequester(requester);
    EXPECT_EQ(BRELRemoteConfigClient_createRequester(-5, kTimeoutSec), nullptr);
    // No participant is left, or the factory would stay.
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_TRUE(heap.isBalanced());
    log_.clear();
    BRELRemoteConfigClient_deleteRequester(nullptr);
    ASSERT_EQ(log_.lines().size(), 1u);
    EXPECT_EQ(log_.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
}

TEST_F(Client, givesARequesterThatIsAnswered)
{
    TestService service([](const ReceivedRequest &request) { return Answer{request.body + "!"}; });
    ZUV_BrelServiceAdminRequester *const requester =
        BRELRemoteConfigClient_createRequester(zuv_test::loopbackDomainId(), kTimeoutSec);
    ASSERT_NE(requester, nullptr);
    Description description(ZUV_Service_Admin_CommandActionKind_GET_ACTION, "", "hello");
    DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    constexpr DDS_Duration_t wait = {0, 100000000};
    // Volatile endpoints: a request before the match is lost, so it is repeated.
    EXPECT_TRUE(zuv_test::eventually([&] {
        return ZUV_BrelServiceAdminRequester_send_request(requester, &description.request) ==
                   DDS_RETCODE_OK &&
               ZUV_BrelServiceAdminRequester_receive_reply(requester, &reply_, &info, &wait) ==
                   DDS_RETCODE_OK;
    }));
    EXPECT_STREQ(reply_.string_body, "hello!");
    BRELRemoteConfigClient_deleteRequester(requester);
}

TEST_F(Client, needsItsArguments)
{
    const Description description(ZUV_Service_Admin_CommandActionKind_GET_ACTION, "", "");
    const auto expectPrecondition = [&](const std::string &condition) {
        ASSERT_EQ(log_.lines().size(), 1u);
        EXPECT_EQ(log_.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
        EXPECT_NE(log_.lines()[0].text.find("\"" + condition + "\""), std::string::npos);
        EXPECT_EQ(log_.lines()[0].level, ZUV_LOG_BIT_FATAL);
        EXPECT_EQ(log_.lines()[0].submodule, BREL_SUBMODULE_REMOTE);
        log_.clear();
    };
    EXPECT_EQ(
        BRELRemoteConfigClient_sendCommandRequest(nullptr, &reply_, "S1", &description.request, 1),
        0);
    expectPrecondition("self == ((void *)0)");
    EXPECT_EQ(
        BRELRemoteConfigClient_sendCommandRequest(&client_, nullptr, "S1", &description.request, 1),
        0);
    expectPrecondition("reply == ((void *)0)");
    EXPECT_EQ(BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, nullptr,
                                                        &description.request, 1),
              0);
    expectPrecondition("targetService == ((void *)0)");
    EXPECT_EQ(BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, "S1", nullptr, 1), 0);
    expectPrecondition("request == ((void *)0)");
    BRELRemoteConfigClient_finalize(nullptr);
    expectPrecondition("self == ((void *)0)");
    EXPECT_EQ(BRELRemoteConfigClient_initialize(nullptr, 0, 1), 0);
    expectPrecondition("self == ((void *)0)");
    EXPECT_EQ(BRELRemoteConfigClient_hasMatchingServer(nullptr), 0);
    expectPrecondition("self == ((void *)0)");
    BRELRemoteConfigClient_deleteRequester(nullptr);
    expectPrecondition("requester == ((void *)0)");
}

// Commands.

TEST_F(Client, carriesEveryPartOfARequestAndTheReply)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string tag = std::string("resource://state") + '\0';
    EXPECT_EQ(send("ENABLED", 1, "domain_route.dr1 x\n", tag), 1);
    EXPECT_EQ(reply_.retcode, ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE);
    EXPECT_STREQ(reply_.string_body, "done");
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].instanceId, 0);
    EXPECT_EQ(requests[0].applicationName, "S1");
    EXPECT_EQ(requests[0].action, ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION);
    EXPECT_EQ(requests[0].identifier, "domain_route.dr1 x\n");
    EXPECT_EQ(requests[0].body, "ENABLED");
    EXPECT_EQ(requests[0].octets, tag);
    expectAtRest();
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Client, leavesNothingOfACommandInTheNext)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    ASSERT_EQ(send("a long body", 1, "an identifier", "octets", "a long target"), 1);
    ASSERT_EQ(send("", 1, "", "", "T"), 1);
    ZUV_Service_Admin_CommandRequest nothing = {};
    ASSERT_EQ(BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, "T", &nothing, 0), 1);
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 3u);
    for (const std::size_t index : {1u, 2u}) {
        EXPECT_EQ(requests[index].applicationName, "T");
        EXPECT_EQ(requests[index].identifier, "");
        EXPECT_EQ(requests[index].body, "");
        EXPECT_EQ(requests[index].octets, "");
    }
}

TEST_F(Client, sendsTheTextThatItsSampleHoldsAlready)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    std::strcpy(client_._request->string_body, "held");
    EXPECT_EQ(send("another"), 1);
    EXPECT_EQ(service.requests().at(0).body, "held");
    expectAtRest();
    EXPECT_EQ(send("another"), 1);
    EXPECT_EQ(service.requests().at(1).body, "another");
}

TEST_F(Client, countsAnErrorReplyForAReply)
{
    TestService service(
        [](const ReceivedRequest &) { return Answer{.text = "no", .isError = true}; });
    ASSERT_NO_FATAL_FAILURE(startWithService());
    EXPECT_EQ(send("x"), 1);
    EXPECT_EQ(reply_.retcode, ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE);
    EXPECT_STREQ(reply_.string_body, "no");
}

TEST_F(Client, takesATargetOf254Characters)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string longest(254, 't');
    EXPECT_EQ(send("x", 1, "", "", longest), 1);
    EXPECT_EQ(service.requests().at(0).applicationName, longest);
    EXPECT_EQ(send("x", 1, "", "", longest + "t"), 0);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!target service name too long"}}));
    EXPECT_EQ(send("x"), 1);
    EXPECT_EQ(service.requestCount(), 2u);
}

TEST_F(Client, takesAnIdentifierOf2048Characters)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string longest(2048, 'i');
    EXPECT_EQ(send("x", 1, longest), 1);
    EXPECT_EQ(service.requests().at(0).identifier, longest);
    EXPECT_EQ(send("x", 1, longest + "i"), 0);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!resource identifier too long"}}));
    EXPECT_EQ(send("x"), 1);
    EXPECT_EQ(service.requestCount(), 2u);
}

TEST_F(Client, growsForABodyAboveTheRestingLengthOnly)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const char *const before = client_._request->string_body;
    EXPECT_EQ(send(std::string(32768, 'b')), 1);
    EXPECT_EQ(client_._request->string_body, before);
    expectAtRest();
    for (const std::size_t length : {std::size_t{32769}, std::size_t{8} << 20}) {
        EXPECT_EQ(send(std::string(length, 'b')), 1);
        expectAtRest();
    }
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].body, std::string(32768, 'b'));
    EXPECT_EQ(requests[1].body, std::string(32769, 'b'));
    EXPECT_EQ(requests[2].body, std::string(std::size_t{8} << 20, 'b'));
}

TEST_F(Client, receivesALongReply)
{
    const std::string text(std::size_t{8} << 20, 'r');
    TestService service([&](const ReceivedRequest &) { return Answer{.text = text}; });
    ASSERT_NO_FATAL_FAILURE(startWithService());
    ASSERT_EQ(send("x"), 1);
    EXPECT_EQ(reply_.string_body, text);
}

TEST_F(Client, streamsCommandsWithoutStandingStill)
{
    const ServiceProcess service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    // Ten windows: if room in one came with the clock, ten commands would take about 100 ms each.
    int slowCount = 0;
    for (int count = 0; count < 10 * 32; ++count) {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(send("x"), 1);
        slowCount += std::chrono::steady_clock::now() - start > 50ms ? 1 : 0;
    }
    EXPECT_LT(slowCount, 5);
}

TEST_F(Client, takesNoMemoryForACommandUpToTheRestingLength)
{
    const ServiceProcess service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string tag = std::string("resource://add_peer") + '\0';
    const Description description(ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION,
                                  std::string(2048, 'i'), std::string(32768, 'b'), tag);
    const auto sendOnce = [&] {
        return BRELRemoteConfigClient_sendCommandRequest(
            &client_, &reply_, std::string(254, 't').c_str(), &description.request, 1);
    };
    // The reply, which the caller keeps, grows with the first one.
    ASSERT_EQ(sendOnce(), 1);
    const zuv_test::HeapCheck heap;
    for (int count = 0; count < 50; ++count) {
        ASSERT_EQ(sendOnce(), 1);
    }
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST_F(Client, takesNoMemoryForItsFirstCommandEither)
{
    ASSERT_NO_FATAL_FAILURE(start());
    client_._ignoreReply = 1;
    const std::string tag = std::string("resource://add_peer") + '\0';
    const Description description(ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION,
                                  std::string(2048, 'i'), std::string(32768, 'b'), tag);
    const void *const body = client_._request->string_body;
    const void *const octets = DDS_OctetSeq_get_contiguous_buffer(&client_._request->octet_body);
    ASSERT_EQ(
        BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, "S1", &description.request, 1),
        1);
    EXPECT_EQ(client_._request->string_body, body);
    EXPECT_EQ(DDS_OctetSeq_get_contiguous_buffer(&client_._request->octet_body), octets);
}

TEST_F(Client, waitsForNoReplyThatItIsToIgnore)
{
    ASSERT_NO_FATAL_FAILURE(start());
    client_._ignoreReply = 1;
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(send("x"), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 2s);
}

// Local files.

TEST_F(Client, sendsALocalFileAsInlineText)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const LocalFile file("<a b=\"1\">\n</a>\n");
    EXPECT_EQ(send(file.url(), 0), 1);
    EXPECT_EQ(service.requests().at(0).body, "str://\"<a b=\"1\">\n</a>\n\"");
    EXPECT_EQ(send(file.url(), 1), 1);
    EXPECT_EQ(service.requests().at(1).body, file.url());
    EXPECT_EQ(send(" \t" + file.url(), 0), 1);
    EXPECT_EQ(service.requests().at(2).body, "str://\"<a b=\"1\">\n</a>\n\"");
    expectAtRest();
}

TEST_F(Client, sendsAnEmptyLocalFileAsTwoQuotes)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    EXPECT_EQ(send(LocalFile("").url(), 0), 1);
    EXPECT_EQ(service.requests().at(0).body, "str://\"\"");
}

TEST_F(Client, readsOnlyFilesLocally)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    for (const char *body : {"str://\"<a/>\"", "word", "service://x", "FILE:///etc/hostname"}) {
        service.forget();
        EXPECT_EQ(send(body, 0), 1);
        EXPECT_EQ(service.requests().at(0).body, body);
    }
}

TEST_F(Client, sendsLocalFilesOfEverySizeAroundTheRestingLength)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    for (const std::size_t size :
         {1u, 254u, 255u, 256u, 32758u, 32759u, 32760u, 32761u, 32767u, 32768u, 32769u, 8u << 20}) {
        std::string content(size, 'f');
        content.back() = 'e';
        service.forget();
        ASSERT_EQ(send(LocalFile(content).url(), 0), 1) << size;
        ASSERT_EQ(service.requests().at(0).body, "str://\"" + content + "\"") << size;
        expectAtRest();
    }
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Client, sendsNothingForALocalFileThatCannotBeRead)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    EXPECT_EQ(send("file:///nonexistent/a.xml", 0), 0);
    EXPECT_TRUE(
        log_.isExactly({{nullptr, "BRELRemoteConfigClient_sendCommandRequest: Can't open local "
                                  "file file:///nonexistent/a.xml"}}));
    expectAtRest();
    log_.clear();

    // A directory has no content, however it opens.
    EXPECT_EQ(send("file:///tmp", 0), 0);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!error reading local file"}}));
    expectAtRest();
    log_.clear();

    // This one has no size and no end.
    EXPECT_EQ(send("file:///dev/zero", 0), 0);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!error reading local file"}}));
    expectAtRest();
    log_.clear();

    const LocalFile file("<a/>");
    for (const char *point : {"file.seek", "file.tell", "file.read"}) {
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(send(file.url(), 0), 0) << point;
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!error reading local file"}}))
            << point;
        expectAtRest();
        log_.clear();
    }
    EXPECT_EQ(send(file.url(), 0), 1);
    EXPECT_EQ(service.requestCount(), 1u);
}

// Want of memory during a command.

TEST_F(Client, sendsNothingWithoutMemoryForALongBody)
{
    const ServiceProcess service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string body(40000, 'b');
    const LocalFile file(body);
    const auto expectReport = [&](const char *text, const std::string &content, int remote) {
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
        EXPECT_EQ(send(content, remote), 0);
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, text}}));
        expectAtRest();
        log_.clear();
        EXPECT_EQ(send(content, remote), 1);
    };
    expectReport("!error allocating string body buffer", body, 1);
    expectReport("!allocate string body buffer", file.url(), 0);
}

TEST_F(Client, failsWhenTheBodyCannotBeTrimmedAndRecovers)
{
    const ServiceProcess service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const std::string body(40000, 'b');
    ASSERT_EQ(send(body), 1);
    // The first allocation is the growth of the body; which one trims it, the middleware's share decides.
    bool seen = false;
    for (unsigned count = 2; count < 20 && !seen; ++count) {
        log_.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const int result = send(body);
        ZUVOsapiFault_disarm();
        seen = log_.texts().size() == 1 && log_.texts()[0] == "!trim string body buffer";
        if (seen) {
            EXPECT_EQ(result, 0);
            EXPECT_EQ(client_._request->string_body[0], '\0');
        }
    }
    EXPECT_TRUE(seen);
    EXPECT_EQ(send("x"), 1);
    expectAtRest();
}

// No reply.

TEST_F(Client, givesUpAfterItsTimeout)
{
    ASSERT_NO_FATAL_FAILURE(start(1));
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(send("x"), 0);
    const auto elapsed = std::chrono::steady_clock::now() - before;
    EXPECT_GE(elapsed, 1s);
    EXPECT_LT(elapsed, 3s);
    EXPECT_TRUE(
        log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!wait for reply"},
                        {&ZUV_LOG_ANY_FAILURE_s, "!send command request and wait for reply"}}));
    for (const zuv_test::LogLine &line : log_.lines()) {
        EXPECT_EQ(line.level, ZUV_LOG_BIT_EXCEPTION);
        EXPECT_EQ(line.submodule, 0x4000U);
    }
    expectAtRest();
}

TEST_F(Client, isAnsweredOnceAServiceIsThere)
{
    ASSERT_NO_FATAL_FAILURE(start(1));
    EXPECT_EQ(BRELRemoteConfigClient_hasMatchingServer(&client_), 0);
    EXPECT_EQ(send("x"), 0);
    {
        TestService service;
        for (int round = 0; !BRELRemoteConfigClient_hasMatchingServer(&client_) && round < 500;
             ++round) {
            std::this_thread::sleep_for(10ms);
        }
        EXPECT_EQ(BRELRemoteConfigClient_hasMatchingServer(&client_), 1);
        EXPECT_EQ(send("y"), 1);
    }
    for (int round = 0; BRELRemoteConfigClient_hasMatchingServer(&client_) && round < 500;
         ++round) {
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(BRELRemoteConfigClient_hasMatchingServer(&client_), 0);
}

TEST_F(Client, neverTakesALateReplyForThatOfALaterCommand)
{
    TestService service([](const ReceivedRequest &request) {
        return Answer{.text = "to " + request.body,
                      .delay = request.body == "slow" ? std::chrono::milliseconds(1500) : 0ms};
    });
    ASSERT_NO_FATAL_FAILURE(startWithService(1));
    EXPECT_EQ(send("slow"), 0);
    std::this_thread::sleep_for(1s); // the late reply has arrived
    for (int count = 0; count < 40; ++count) {
        ASSERT_EQ(send("quick"), 1);
        ASSERT_STREQ(reply_.string_body, "to quick");
    }
}

// URLs and assignments.

TEST_F(Client, sendsAnAssignmentAsXml)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
                  &client_, &reply_, "S1", ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION, "e1",
                  "topic_route.a.b=1", 1),
              1);
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].body, "str://\"<topic_route><a><b>1</b></a></topic_route>\"");
    EXPECT_EQ(requests[0].identifier, "e1");
    EXPECT_EQ(requests[0].octets, "");
    EXPECT_EQ(requests[0].action, ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION);
}

TEST_F(Client, sendsAnyOtherTextAsItIs)
{
    TestService service;
    ASSERT_NO_FATAL_FAILURE(startWithService());
    const LocalFile file("<a/>");
    const auto update = [&](const std::string &text, int remote) {
        return BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
            &client_, &reply_, "S1", ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION, nullptr,
            text.c_str(), remote);
    };
    EXPECT_EQ(update("route.x", 1), 1);
    EXPECT_EQ(update(file.url(), 1), 1);
    EXPECT_EQ(update(file.url(), 0), 1);
    const auto requests = service.requests();
    ASSERT_EQ(requests.size(), 3u);
    EXPECT_EQ(requests[0].body, "route.x");
    EXPECT_EQ(requests[0].identifier, "");
    EXPECT_EQ(requests[1].body, file.url());
    EXPECT_EQ(requests[2].body, "str://\"<a/>\"");
}

} // namespace
