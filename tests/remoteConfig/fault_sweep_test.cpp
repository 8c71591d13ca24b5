// Every fault point and every allocation that the client passes fails once, in turn, and once more with all
// behind it. Each run ends in success or in a report, leaves nothing behind, and the next command works.
#include <chrono>
#include <cstdio>
#include <functional>
#include <initializer_list>
#include <set>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "TestService.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"
#include "support/Process.h"

namespace
{

using namespace std::chrono_literals;

constexpr unsigned kMostFaults = 3000;

// The parameter: 0 for one fault, 1 for that and all behind it.
class FaultSweep : public testing::TestWithParam<int>
{
protected:
    FaultSweep()
    {
        BRELLog_setUp();
        EXPECT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
    }
    ~FaultSweep() override
    {
        ZUVOsapiFault_disarm();
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
    }

    int initialize(int timeoutSec = 1)
    {
        return BRELRemoteConfigClient_initialize(&client_, zuv_test::loopbackDomainId(),
                                                 timeoutSec);
    }

    // Run `operation` with the `count`-th pass through any point failing. The number of faults that it met.
    template <typename Operation>
    unsigned underFault(unsigned count, Operation operation)
    {
        log_.clear();
        ZUVOsapiFault_arm(nullptr, count, GetParam());
        operation();
        const unsigned injected = ZUVOsapiFault_getInjectedCount();
        ZUVOsapiFault_disarm();
        return injected;
    }

    // All texts of the reports of a sweep: each step is to have failed once, and to have said so.
    void noteTexts()
    {
        for (const std::string &text : log_.texts()) {
            noted_.insert(text);
        }
    }

    void expectNoted(std::initializer_list<std::string> texts)
    {
        for (const std::string &text : texts) {
            EXPECT_TRUE(noted_.contains(text)) << text;
        }
    }

    std::string report(unsigned count)
    {
        std::string text = "fault " + std::to_string(count) + ":";
        for (const std::string &line : log_.texts()) {
            text += "\n  " + line;
        }
        return text;
    }

    BRELRemoteConfigClient client_ = {};
    ZUV_Service_Admin_CommandReply reply_;
    zuv_test::LogCapture log_;
    std::set<std::string> noted_;
};

TEST_P(FaultSweep, initializeSucceedsOrReportsAndLeavesNothing)
{
    // What the process keeps after its first use of the types is made here.
    ASSERT_EQ(initialize(), 1);
    BRELRemoteConfigClient_finalize(&client_);
    ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);

    unsigned failures = 0;
    for (unsigned count = 1;; ++count) {
        ASSERT_LT(count, kMostFaults);
        const zuv_test::HeapCheck heap;
        int result = -1;
        const unsigned injected = underFault(count, [&] { result = initialize(); });
        noteTexts();
        if (result == 0) {
            ++failures;
            ASSERT_FALSE(log_.lines().empty()) << "fault " << count;
            const std::string last = log_.texts().back();
            EXPECT_TRUE(last == "!create requester" || last == "!create request buffer" ||
                        last == "!create request's string body buffer" ||
                        last == "!delete connection")
                << report(count);
        }
        // With a fault that stays, the clean-up may have failed as well; now it works.
        BRELRemoteConfigClient_finalize(&client_);
        ASSERT_EQ(client_._request, nullptr) << report(count);
        ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK)
            << report(count);
        ASSERT_TRUE(heap.isBalanced()) << report(count);
        if (injected == 0) {
            EXPECT_EQ(result, 1);
            break;
        }
    }
    EXPECT_GT(failures, 10u);
    expectNoted(
        {"!create request buffer", "!create request's string body buffer",
         "!get default participant qos - Return code = 5", "!set participant name",
         "!set service version", "!create participant",
         "!get default dataReader qos - Return code = 5", "!set Memory manager fast pool property",
         "!get default dataWriter qos - Return code = 5", "!create publisher", "!create subscriber",
         "!create ZUV_BrelServiceAdminRequester", "!enable participant", "!create requester"});
}

TEST_P(FaultSweep, finalizeSucceedsOrReportsAndCanBeRepeated)
{
    for (unsigned count = 1;; ++count) {
        ASSERT_LT(count, kMostFaults);
        ASSERT_EQ(initialize(), 1);
        const unsigned injected =
            underFault(count, [&] { BRELRemoteConfigClient_finalize(&client_); });
        noteTexts();
        if (client_._request != nullptr) {
            EXPECT_EQ(log_.texts().back(), "!delete connection") << report(count);
            EXPECT_GE(log_.lines().size(), 2u);
        }
        BRELRemoteConfigClient_finalize(&client_);
        ASSERT_EQ(client_._request, nullptr) << report(count);
        ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK)
            << report(count);
        if (injected == 0) {
            EXPECT_TRUE(log_.isEmpty());
            break;
        }
    }
    expectNoted({"!delete ZUV_BrelServiceAdminRequester", "!delete participant contained entities",
                 "!delete participant", "!delete connection"});
}

TEST_P(FaultSweep, everyCommandSucceedsOrReportsAndTheNextOneWorks)
{
    zuv_test::Process service({TEST_SERVICE, std::to_string(zuv_test::loopbackDomainId())});
    ASSERT_TRUE(service.waitForOutput("ready\n")) << service.errors();
    // What the process keeps after its first use of the types is made here.
    ASSERT_EQ(initialize(1), 1);
    BRELRemoteConfigClient_finalize(&client_);
    ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    // The reply is the test's own; it grows with the first answers.
    ZUV_Service_Admin_CommandReply_finalize(&reply_);
    const zuv_test::HeapCheck heap;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
    ASSERT_EQ(initialize(1), 1);
    for (int round = 0; !BRELRemoteConfigClient_hasMatchingServer(&client_); ++round) {
        ASSERT_LT(round, 1000) << "no service was found";
        std::this_thread::sleep_for(10ms);
    }

    char path[] = "/tmp/fault_sweep_test_XXXXXX";
    const int descriptor = mkstemp(path);
    FILE *const file = fdopen(descriptor, "wb");
    const std::string content(40000, 'f');
    std::fwrite(content.data(), 1, content.size(), file);
    std::fclose(file);

    const auto send = [&](std::string body) {
        ZUV_Service_Admin_CommandRequest request = {};
        request.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
        request.string_body = body.data();
        return BRELRemoteConfigClient_sendCommandRequest(&client_, &reply_, "S1", &request, 0);
    };
    const std::function<int()> commands[] = {
        [&] { return send("ENABLED"); },
        [&] { return send(content); },
        [&] { return send("file://" + std::string(path)); },
        [&] {
            return BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
                &client_, &reply_, "S1", ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION, "e",
                "route.a=1", 1);
        },
    };
    for (const auto &command : commands) {
        for (unsigned count = 1;; ++count) {
            ASSERT_LT(count, kMostFaults);
            int result = -1;
            const unsigned injected = underFault(count, [&] { result = command(); });
            noteTexts();
            if (result == 0) {
                EXPECT_FALSE(log_.lines().empty()) << "fault " << count;
            }
            EXPECT_EQ(client_._request->string_body[0], '\0') << report(count);
            ASSERT_EQ(send("next"), 1) << report(count);
            ASSERT_EQ(ZUVOsapiHeap_getBlockSize(client_._request->string_body), 32769u)
                << report(count);
            if (injected == 0) {
                EXPECT_EQ(result, 1) << report(count);
                break;
            }
        }
    }
    expectNoted({"!send request", "!wait for reply", "!receive reply",
                 "!send command request and wait for reply", "!error reading local file",
                 "!allocate string body buffer", "!error allocating string body buffer",
                 "!trim string body buffer",
                 "BRELRemoteConfigClient_sendCommandRequest: Can't open local file file://" +
                     std::string(path)});
    std::remove(path);
    log_.clear();
    BRELRemoteConfigClient_finalize(&client_);
    EXPECT_EQ(client_._request, nullptr);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    ZUV_Service_Admin_CommandReply_finalize(&reply_);
    EXPECT_TRUE(heap.isBalanced());
    service.closeInput();
    EXPECT_EQ(service.wait(), 0) << service.errors();
}

INSTANTIATE_TEST_SUITE_P(Mode, FaultSweep, testing::Values(0, 1), [](const auto &parameter) {
    return parameter.param == 0 ? "once" : "onward";
});

} // namespace
