// Every command from its line to the sample that a service receives, over DDS.
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>

#include <unistd.h>

#include <gtest/gtest.h>

#include "TestService.h"
#include "log/Log.h"
#include "remoteShell/Shell.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"

namespace
{

using namespace std::chrono_literals;

constexpr auto kCreate = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
constexpr auto kGet = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
constexpr auto kUpdate = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
constexpr auto kDelete = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;

std::string tag(const std::string &name)
{
    return "resource://" + name + '\0';
}

std::string run(BRELShell &shell, std::string line)
{
    char *argv[BREL_SHELL_MAX_TOKENS] = {};
    int argc = 0;
    BRELShell_createArgv(line.data(), argv, &argc);
    testing::internal::CaptureStdout();
    BRELShell_parseCommand(&shell, argv, argc);
    return testing::internal::GetCapturedStdout();
}

TEST(CommandRoad, carriesEveryCommandToTheService)
{
    BRELLog_setUp();
    zuv_test::LogCapture log;
    zuv_test::TestService service([](const zuv_test::ReceivedRequest &request) {
        return zuv_test::Answer{.text = "seen " + request.body};
    });
    BRELShell shell = {};
    shell.domainId = zuv_test::loopbackDomainId();
    shell.timeout = 10;
    testing::internal::CaptureStdout();
    ASSERT_EQ(BRELShell_initialize(&shell), 1);
    testing::internal::GetCapturedStdout();
    for (int round = 0; !BRELRemoteConfigClient_hasMatchingServer(&shell.remoteConfig); ++round) {
        ASSERT_LT(round, 1000) << "no service was found";
        std::this_thread::sleep_for(10ms);
    }
    char path[] = "/tmp/command_road_XXXXXX";
    const int descriptor = mkstemp(path);
    ASSERT_EQ(write(descriptor, "<a/>", 4), 4);
    close(descriptor);
    const std::string url = "file://" + std::string(path);

    const struct {
        std::string line;
        ZUV_Service_Admin_CommandActionKind action;
        std::string identifier;
        std::string body;
        std::string octets;
    } rows[] = {
        {"enable S1 domain_route.dr1\n", kUpdate, "domain_route.dr1\n", "ENABLED", tag("state")},
        {"disable S1", kUpdate, "", "DISABLED", tag("state")},
        {"pause S1 e", kUpdate, "e", "PAUSED", tag("state")},
        {"resume S1 e", kUpdate, "e", "RUNNING", tag("state")},
        {"update S1 . topic_route.a.b=1\n", kUpdate, "",
         "str://\"<topic_route><a><b>1\n</b></a></topic_route>\"", ""},
        {"update S1 e " + url + " local", kUpdate, "e", "str://\"<a/>\"", ""},
        {"update S1 e " + url, kUpdate, "e", url, ""},
        {"unload S1", kDelete, "", "", tag("config")},
        {"load S1 c1 " + url + " remote", kCreate, "c1", url, tag("state")},
        {"load S1 c1 " + url + " local", kCreate, "c1", "str://\"<a/>\"", tag("state")},
        {"create S1 session p1 u1", kCreate, "p1", "", ""},
        {"create S1 domain_route u1 local", kCreate, "", "", ""},
        {"delete S1 e", kDelete, "e", "", ""},
        {"save S1", kCreate, "", "", tag("config")},
        {"get S1 e", kGet, "e", "", ""},
        {"add_peer S1 p1 udpv4://host", kUpdate, "p1", "udpv4://host", tag("add_peer")},
        {"shutdown S1", kDelete, "", "", ""},
    };
    for (const auto &row : rows) {
        service.forget();
        EXPECT_EQ(run(shell, row.line), "Result: seen " + row.body + "\n") << row.line;
        const auto requests = service.requests();
        ASSERT_EQ(requests.size(), 1u) << row.line;
        EXPECT_EQ(requests[0].instanceId, 0) << row.line;
        EXPECT_EQ(requests[0].applicationName, "S1") << row.line;
        EXPECT_EQ(requests[0].action, row.action) << row.line;
        EXPECT_EQ(requests[0].identifier, row.identifier) << row.line;
        EXPECT_EQ(requests[0].body, row.body) << row.line;
        EXPECT_EQ(requests[0].octets, row.octets) << row.line;
    }
    EXPECT_TRUE(log.isEmpty());

    // What cannot be read or named is not sent.
    service.forget();
    EXPECT_EQ(run(shell, "load S1 c1 file:///nonexistent/x local"), "No response received\n");
    EXPECT_EQ(run(shell, "get " + std::string(255, 't')), "No response received\n");
    EXPECT_TRUE(
        log.isExactly({{nullptr, "BRELRemoteConfigClient_sendCommandRequest: Can't open local file "
                                 "file:///nonexistent/x"},
                       {&ZUV_LOG_ANY_FAILURE_s, "!target service name too long"}}));
    EXPECT_EQ(service.requestCount(), 0u);
    EXPECT_EQ(run(shell, "get S1"), "Result: seen \n");

    std::remove(path);
    BRELShell_finalize(&shell);
}

} // namespace
