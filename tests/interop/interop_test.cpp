// Another implementation of DDS, which knows the IDL and nothing else of this system, reads what we write and
// writes what we read.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;
using testing::HasSubstr;

class Peer : public Process
{
public:
    Peer(const std::string &mode, const std::vector<std::string> &arguments)
        : Process(command(mode, arguments), options())
    {
    }

    static std::vector<std::string> command(const std::string &mode,
                                            const std::vector<std::string> &arguments)
    {
        std::vector<std::string> command = {CYCLONE_PEER, mode, std::to_string(loopbackDomainId())};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return command;
    }

    static ProcessOptions options()
    {
        ProcessOptions options;
        options.environment = {"CYCLONEDDS_URI=file://" CYCLONE_PROFILE};
        return options;
    }
};

// Sends one request and waits for a reply, with `seconds` for all of it.
ProcessResult ask(int seconds, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), std::to_string(seconds));
    return runProcess(Peer::command("ask", arguments), "", Peer::options());
}

TEST(Stranger, serializesAsTheVectorsSay)
{
    const ProcessResult result = runProcess({CYCLONE_PEER, "vectors"}, "", Peer::options());
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, contentOf(VECTORS));
}

TEST(Stranger, readsTheRequestsOfTheShell)
{
    Peer peer("read", {"4", "30"});
    ASSERT_TRUE(peer.waitForOutput("ready\n"));
    Session shell(1);
    shell.letDiscover();
    shell.run("enable S1 domain_route.dr1");
    shell.run("get service");
    shell.run("update S1 topic_route.a=x<y");
    shell.run("add_peer S1 p1 127.0.0.1");
    EXPECT_EQ(peer.wait(), 0) << peer.errors();
    EXPECT_EQ(
        peer.output(),
        "ready\n"
        "instance_id=0 application_name=S1 action=2 resource_identifier=domain_route.dr1\n"
        " string_body=ENABLED octet_body=resource://state\\00\n"
        "instance_id=0 application_name=service action=1 resource_identifier= string_body= "
        "octet_body=\n"
        "instance_id=0 application_name=S1 action=2 resource_identifier= "
        "string_body=str://\"<topic_route><a>x&lt;y\n</a></topic_route>\" octet_body=\n"
        "instance_id=0 application_name=S1 action=2 resource_identifier=p1 string_body=127.0.0.1 "
        "octet_body=resource://add_peer\\00\n");
}

TEST(Stranger, getsAnswersToItsRequests)
{
    Responder service({"-name", "S1"});
    const ProcessResult result =
        ask(15, {"S1", "2", "domain_route.dr1", "ENABLED", "resource://state"});
    EXPECT_EQ(result.status, 0) << result.errors << service.output() << service.errors();
    EXPECT_EQ(result.output,
              "retcode=0 native_retcode=0 string_body=S1 got UPDATE_ACTION for 'S1', resource "
              "'domain_route.dr1', body 'ENABLED', tag 'resource://state' octet_body=\n");
}

TEST(Stranger, whoNamesNoServiceIsAnsweredToo)
{
    Responder service({"-name", "S1", "-error"});
    const ProcessResult result = ask(15, {"-", "1", "", "", "-"});
    EXPECT_EQ(result.status, 0) << result.errors << service.output() << service.errors();
    EXPECT_EQ(result.output,
              "retcode=1 native_retcode=0 string_body=S1 got GET_ACTION for nobody by name, "
              "resource '', body '', no octets octet_body=\n");
}

TEST(Stranger, whoNamesAnotherServiceIsNotHeard)
{
    Responder service({"-name", "S1"});
    const ProcessResult result = ask(3, {"S2", "1", "", "", "-"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(service.output(), "ready\n");
}

TEST(Stranger, sendsAndGetsBodiesOfManyFragments)
{
    const std::string body(100000, 'b');
    Responder service({"-replySize", "300000"});
    const ProcessResult result = ask(15, {"S1", "0", "r", body, "-"});
    EXPECT_EQ(result.status, 0) << result.errors << service.errors();
    EXPECT_EQ(result.output.size(),
              std::string("retcode=0 native_retcode=0 string_body= octet_body=\n").size() +
                  300000U);
    service.watch(Process::Duration{100});
    EXPECT_THAT(service.output(), HasSubstr("body 100000 characters"));
}

} // namespace
