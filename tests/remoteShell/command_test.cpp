#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FakeClient.h"
#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "remoteShell/Shell.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::fakeClient;
using zuv_test::SentCommand;

constexpr auto kCreate = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
constexpr auto kGet = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
constexpr auto kUpdate = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
constexpr auto kDelete = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;

// A resource tag as it travels, its terminator included.
std::string tag(const std::string &name)
{
    return "resource://" + name + '\0';
}

class Command : public testing::Test
{
protected:
    Command()
    {
        BRELLog_setUp();
        fakeClient() = {};
        BRELShell_g_terminate = 0;
    }
    ~Command() override { ZUVOsapiFault_disarm(); }

    // What the shell prints for a line.
    std::string run(std::string line)
    {
        char *argv[BREL_SHELL_MAX_TOKENS] = {};
        int argc = 0;
        BRELShell_createArgv(line.data(), argv, &argc);
        testing::internal::CaptureStdout();
        BRELShell_parseCommand(&shell_, argv, argc);
        return testing::internal::GetCapturedStdout();
    }

    void expectSent(const std::string &line, const SentCommand &command)
    {
        fakeClient().sent.clear();
        EXPECT_EQ(run(line), "Result: done\n") << line;
        ASSERT_EQ(fakeClient().sent.size(), 1u) << line;
        const SentCommand &sent = fakeClient().sent[0];
        EXPECT_EQ(sent.asUriOrAssignment, command.asUriOrAssignment) << line;
        EXPECT_EQ(sent.target, command.target) << line;
        EXPECT_EQ(sent.action, command.action) << line;
        EXPECT_EQ(sent.identifier, command.identifier) << line;
        EXPECT_EQ(sent.body, command.body) << line;
        EXPECT_EQ(sent.octets, command.octets) << line;
        EXPECT_EQ(sent.remote, command.remote) << line;
    }

    // The last reports of a line while each pass through a fault point fails in turn. Lines that find no
    // request or reply to work on do not count.
    std::set<std::string> textsUnderFault(const char *point, const std::string &line)
    {
        std::set<std::string> texts;
        unsigned injected = 1;
        for (unsigned count = 1; injected != 0; ++count) {
            log_.clear();
            BRELShell_g_terminate = 0;
            ZUVOsapiFault_arm(point, count, 0);
            run(line);
            injected = ZUVOsapiFault_getInjectedCount();
            ZUVOsapiFault_disarm();
            if (BRELShell_g_terminate == 0 && !log_.lines().empty()) {
                const zuv_test::LogLine last = log_.lines().back();
                texts.insert(last.text);
                EXPECT_EQ(last.message, &ZUV_LOG_ANY_FAILURE_s) << line;
                EXPECT_EQ(last.level, ZUV_LOG_BIT_EXCEPTION) << line;
                EXPECT_EQ(last.submodule, BREL_SUBMODULE_SHELL) << line;
            }
        }
        return texts;
    }

    void expectSyntax(const std::string &line, const std::string &syntax)
    {
        fakeClient().sent.clear();
        EXPECT_EQ(run(line), "Command syntax: " + syntax + "\n") << line;
        EXPECT_TRUE(fakeClient().sent.empty()) << line;
    }

    BRELShell shell_ = {};
    zuv_test::LogCapture log_;
};

// The mapping, row by row.

TEST_F(Command, changesTheStateOfAnEntityByAWordAndATag)
{
    const struct {
        const char *command;
        const char *word;
    } rows[] = {
        {"enable", "ENABLED"}, {"disable", "DISABLED"}, {"pause", "PAUSED"}, {"resume", "RUNNING"}};
    for (const auto &row : rows) {
        const std::string command = row.command;
        expectSent(command + " S1", {false, "S1", kUpdate, "", row.word, tag("state"), 1});
        expectSent(command + " S1 x", {false, "S1", kUpdate, "x", row.word, tag("state"), 1});
        expectSent(command + " S1 a b c", {false, "S1", kUpdate, "a", row.word, tag("state"), 1});
        expectSyntax(command, command + " <target_brel> [<entity_name>]");
    }
}

TEST_F(Command, passesAnEntitysNameOnWithTheNewLineThatTheTokenizerLeaves)
{
    expectSent("enable S1 domain_route.a b\n",
               {false, "S1", kUpdate, "domain_route.a b\n", "ENABLED", tag("state"), 1});
}

TEST_F(Command, unloadsWithExactlyOneArgument)
{
    const std::string syntax = "unload <target_brel>";
    expectSent("unload S1", {false, "S1", kDelete, "", "", tag("config"), 1});
    expectSyntax("unload", syntax);
    expectSyntax("unload S1 x", syntax);
}

TEST_F(Command, loadsAConfigurationFromHereOrThere)
{
    const std::string syntax = "load <target_brel> <cfg_name> <xml_url> [remote|local]";
    expectSent("load S1 c1 file.xml", {false, "S1", kCreate, "c1", "file.xml", tag("state"), 1});
    expectSent("load S1 c1 file.xml remote",
               {false, "S1", kCreate, "c1", "file.xml", tag("state"), 1});
    expectSent("load S1 c1 file.xml LOCAL",
               {false, "S1", kCreate, "c1", "file.xml", tag("state"), 0});
    expectSent("load S1 c1 file.xml local x",
               {false, "S1", kCreate, "c1", "file.xml", tag("state"), 0});
    expectSyntax("load S1 c1 file.xml later", syntax);
    expectSyntax("load S1 c1", syntax);
    expectSyntax("load", syntax);
}

TEST_F(Command, refusesALoadWhosePathHoldsAnEntitysPrefix)
{
    expectSyntax("load S1 cfg /tmp/session.xml\n",
                 "load <target_brel> <cfg_name> <xml_url> [remote|local]");
}

TEST_F(Command, updatesAnEntityOrTheServiceItself)
{
    const std::string syntax = "update <target_brel> [<entity_name>] <xml_url> [remote|local]";
    expectSent("update S1 x1", {true, "S1", kUpdate, "", "x1", "", 1});
    expectSent("update S1 . x1", {true, "S1", kUpdate, "", "x1", "", 1});
    expectSent("update S1 e1 u1", {true, "S1", kUpdate, "e1", "u1", "", 1});
    expectSent("update S1 e1 u1 local", {true, "S1", kUpdate, "e1", "u1", "", 0});
    expectSent("update S1 . u1 Remote", {true, "S1", kUpdate, "", "u1", "", 1});
    expectSent("update S1 e1 u1 remote extra", {true, "S1", kUpdate, "e1", "u1", "", 1});
    expectSyntax("update S1 e1 u1 other", syntax);
    expectSyntax("update S1", syntax);
    expectSyntax("update", syntax);
}

TEST_F(Command, takesANameWithAPrefixAndAnAssignmentForOneBody)
{
    expectSent("update S1 route.r1 route.a=1\n",
               {true, "S1", kUpdate, "", "route.r1 route.a=1\n", "", 1});
}

TEST_F(Command, createsOnTheParentAlone)
{
    const std::string syntax = "create <target_brel> domain_route|session|topic_route|auto_route "
                               "[<parent_entity_name>] <xml_url> [remote|local]";
    expectSent("create S1 domain_route u1", {false, "S1", kCreate, "", "", "", 1});
    expectSent("create S1 DOMAIN_ROUTE u1 local", {false, "S1", kCreate, "", "", "", 0});
    expectSent("create S1 session p1 u1", {false, "S1", kCreate, "p1", "", "", 1});
    expectSent("create S1 session p1 u1 local", {false, "S1", kCreate, "p1", "", "", 0});
    expectSent("create S1 topic_route p1 u1 remote", {false, "S1", kCreate, "p1", "", "", 1});
    expectSent("create S1 auto_route p1 u1", {false, "S1", kCreate, "p1", "", "", 1});
    expectSent("create S1 auto_route p1 u1 local x", {false, "S1", kCreate, "p1", "", "", 0});
    expectSyntax("create", syntax);
    expectSyntax("create S1", syntax);
    expectSyntax("create S1 domain_route", syntax);
    expectSyntax("create S1 domain_route u1 later", syntax);
    expectSyntax("create S1 session u1", syntax);
    expectSyntax("create S1 session p1 u1 later", syntax);
    expectSyntax("create S1 route p1 u1", syntax);
    expectSyntax("create S1 auto_topic_route p1 u1", syntax);
}

TEST_F(Command, deletesAnEntityAndShutsTheServiceDownByTheSameRequest)
{
    expectSent("delete S1", {false, "S1", kDelete, "", "", "", 1});
    expectSent("delete S1 e1", {false, "S1", kDelete, "e1", "", "", 1});
    expectSent("delete S1 e1 x", {false, "S1", kDelete, "e1", "", "", 1});
    expectSent("shutdown S1", {false, "S1", kDelete, "", "", "", 1});
    expectSent("shutdown S1 e1", {false, "S1", kDelete, "", "", "", 1});
    expectSyntax("delete", "delete <target_brel> [<entity_name>]");
    expectSyntax("shutdown", "shutdown <target_brel>");
}

TEST_F(Command, savesByACreateOfTheConfiguration)
{
    expectSent("save S1", {false, "S1", kCreate, "", "", tag("config"), 1});
    expectSent("save S1 x", {false, "S1", kCreate, "", "", tag("config"), 1});
    expectSyntax("save", "save <target_brel>");
}

TEST_F(Command, getsTheServiceOrAnEntity)
{
    expectSent("get S1", {false, "S1", kGet, "", "", "", 1});
    expectSent("get S1 e1", {false, "S1", kGet, "e1", "", "", 1});
    expectSent("get S1 e1 x", {false, "S1", kGet, "e1", "", "", 1});
    expectSyntax("get", "get <target_brel>");
}

TEST_F(Command, addsAPeer)
{
    expectSent("add_peer S1 p1 udpv4://host",
               {false, "S1", kUpdate, "p1", "udpv4://host", tag("add_peer"), 1});
    expectSent("add_peer S1 p1 udpv4://host x",
               {false, "S1", kUpdate, "p1", "udpv4://host", tag("add_peer"), 1});
    expectSyntax("add_peer S1 p1", "add_peer <target_brel> <participant> <peer_list>");
    expectSyntax("add_peer", "add_peer <target_brel> <participant> <peer_list>");
}

TEST_F(Command, comparesCommandWordsWithoutCase)
{
    expectSent("ENABLE \"my service\" x",
               {false, "my service", kUpdate, "x", "ENABLED", tag("state"), 1});
}

// The outcome.

TEST_F(Command, printsAnErrorReply)
{
    fakeClient().retcode = ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE;
    fakeClient().reply = "no such entity";
    EXPECT_EQ(run("get S1 x"), "Error: no such entity\n");
    fakeClient().reply = "";
    EXPECT_EQ(run("get S1 x"), "Error: \n");
    EXPECT_EQ(run("update S1 x"), "Error: \n");
    EXPECT_EQ(BRELShell_g_terminate, 0);
}

TEST_F(Command, saysWhenNoReplyCame)
{
    fakeClient().ok = 0;
    EXPECT_EQ(run("get S1"), "No response received\n");
    EXPECT_EQ(run("update S1 x"), "No response received\n");
    EXPECT_EQ(BRELShell_g_terminate, 0);
    EXPECT_TRUE(log_.isEmpty());
}

// The shell's own commands.

TEST_F(Command, endsTheSessionOnThreeWords)
{
    for (const char *word : {"exit", "quit", "q", "EXIT", "Quit", "Q"}) {
        BRELShell_g_terminate = 0;
        EXPECT_EQ(run(word), "") << word;
        EXPECT_EQ(BRELShell_g_terminate, 1) << word;
    }
}

TEST_F(Command, ignoresSomeWords)
{
    for (const char *word : {"history", "clear", "hello", "Hello there"}) {
        EXPECT_EQ(run(word), "") << word;
    }
    EXPECT_EQ(BRELShell_g_terminate, 0);
    EXPECT_TRUE(fakeClient().sent.empty());
}

TEST_F(Command, refusesUnknownWords)
{
    EXPECT_EQ(run("start S1"), "Unknown command: start\n");
    EXPECT_EQ(run("session.x\n"), "Unknown command: session.x\n");
    EXPECT_EQ(run("enabled S1"), "Unknown command: enabled\n");
    EXPECT_EQ(BRELShell_g_terminate, 0);
}

TEST_F(Command, printsTheHelp)
{
    EXPECT_EQ(run("Help"), "\n"
                           "ZUV Brel Service Shell\n"
                           "--------------------------------------------\n"
                           "Commands:\n"
                           "load     - Load ZUV Brel Service XML configuration\n"
                           "unload   - Unload current ZUV Brel Service configuration\n"
                           "enable   - Enable an entity\n"
                           "disable  - Disable an entity\n"
                           "pause    - Pause an entity\n"
                           "resume   - Resume an entity\n"
                           "update   - Update the configuration of an entity\n"
                           "create   - Create an entity\n"
                           "delete   - Delete an entity\n"
                           "save     - Save ZUV Brel Service configuration to file\n"
                           "get      - Get  ZUV Brel Service configuration as a string\n"
                           "add_peer - Add discovery peer for domain participant\n"
                           "shutdown - Shutdowns the service process\n"
                           "exit     - Exit the shell\n"
                           "\n");
}

// Limits.

TEST_F(Command, refusesAnIdentifierAboveTheLimitOfTheType)
{
    const std::string longest(2048, 'e');
    expectSent("get S1 " + longest, {false, "S1", kGet, longest, "", "", 1});
    expectSent("update S1 " + longest + " x", {true, "S1", kUpdate, longest, "x", "", 1});
    fakeClient().sent.clear();
    const std::string line = "Entity name too long: 2049 characters, at most 2048 are accepted\n";
    for (const char *command : {"get S1 %", "enable S1 %", "delete S1 %", "load S1 % u",
                                "add_peer S1 % p", "create S1 session % u", "update S1 % u"}) {
        std::string text = command;
        text.replace(text.find('%'), 1, longest + "e");
        EXPECT_EQ(run(text), line) << command;
    }
    EXPECT_TRUE(fakeClient().sent.empty());
    EXPECT_TRUE(log_.isEmpty());
    expectSent("get S1", {false, "S1", kGet, "", "", "", 1});
}

TEST_F(Command, takesALongBodyWithoutALimit)
{
    const std::string body(3900, 'u');
    expectSent("update S1 " + body, {true, "S1", kUpdate, "", body, "", 1});
}

// Failures. Each leaves a report and nothing else, and the next command works.

TEST_F(Command, endsTheSessionWithoutMemoryForARequestOrReply)
{
    const zuv_test::HeapCheck heap;
    // The reply is made first. Which allocation is the first of the request, the type decides.
    std::vector<std::string> reports;
    for (unsigned count = 1;; ++count) {
        log_.clear();
        BRELShell_g_terminate = 0;
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        EXPECT_EQ(run("hello"), "");
        const unsigned injected = ZUVOsapiFault_getInjectedCount();
        ZUVOsapiFault_disarm();
        if (injected == 0) {
            break;
        }
        EXPECT_EQ(BRELShell_g_terminate, 1);
        reports.push_back(log_.texts().back());
    }
    EXPECT_EQ(BRELShell_g_terminate, 0);
    ASSERT_GE(reports.size(), 2u);
    EXPECT_EQ(reports.front(), "!initialize reply object");
    EXPECT_EQ(reports.back(), "!initialize request object");
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(Command, reportsAResourceTagThatCannotBeFormatted)
{
    ZUVOsapiFault_arm("shell.format_resource_tag", 1, 1);
    EXPECT_EQ(run("enable S1"), "");
    EXPECT_EQ(run("unload S1"), "");
    EXPECT_EQ(run("add_peer S1 p l"), "");
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!snprintf in request octet body"},
         {&ZUV_LOG_ANY_FAILURE_s, "!build octet body based on resource kind name"},
         {&ZUV_LOG_ANY_FAILURE_s, "!snprintf in request octet body"},
         {&ZUV_LOG_ANY_FAILURE_s, "!build octet body based on resource kind name"},
         {&ZUV_LOG_ANY_FAILURE_s, "!prepare resource content in request octet body"}}));
    EXPECT_TRUE(fakeClient().sent.empty());
    expectSent("get S1", {false, "S1", kGet, "", "", "", 1});
}

TEST_F(Command, reportsAPeerTagThatIsTooLarge)
{
    ZUVOsapiFault_arm("shell.resource_size", 1, 0);
    EXPECT_EQ(run("add_peer S1 p l"), "");
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!convert resource content actual size to int32"}}));
    EXPECT_TRUE(fakeClient().sent.empty());
}

// Every allocation of every command fails once, in turn: the command is sent whole, or not at all after a
// report. A pause may go without its word.
TEST_F(Command, sendsWholeRequestsOrNoneWithoutMemory)
{
    for (const char *line : {"enable S1 e", "disable S1", "pause S1 e", "resume S1 e", "unload S1",
                             "load S1 c u", "create S1 session p u", "delete S1 e", "save S1",
                             "get S1 e", "add_peer S1 p l", "shutdown S1", "update S1 e u"}) {
        const zuv_test::HeapCheck heap;
        fakeClient() = {};
        run(line);
        ASSERT_EQ(fakeClient().sent.size(), 1u) << line;
        const SentCommand whole = fakeClient().sent[0];
        for (unsigned count = 1;; ++count) {
            ASSERT_LT(count, 100u);
            fakeClient().sent.clear();
            log_.clear();
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
            const std::string output = run(line);
            const unsigned injected = ZUVOsapiFault_getInjectedCount();
            ZUVOsapiFault_disarm();
            if (injected == 0) {
                break;
            }
            if (fakeClient().sent.empty()) {
                EXPECT_EQ(output, "") << line << count;
                EXPECT_FALSE(log_.lines().empty()) << line << count;
            } else if (!(fakeClient().sent[0] == whole)) {
                SentCommand wordless = whole;
                wordless.body = "";
                EXPECT_TRUE(std::string(line).starts_with("pause")) << line << count;
                EXPECT_TRUE(fakeClient().sent[0] == wordless) << line << count;
                EXPECT_TRUE(log_.isEmpty());
            }
        }
        EXPECT_TRUE(heap.isBalanced()) << line;
    }
}

TEST_F(Command, sendsAPauseWithoutItsWordWhenThereIsNoMemoryForIt)
{
    bool seen = false;
    for (unsigned count = 1; count < 30 && !seen; ++count) {
        fakeClient().sent.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        run("pause S1 e");
        ZUVOsapiFault_disarm();
        seen = !fakeClient().sent.empty() && fakeClient().sent[0].body.empty();
    }
    EXPECT_TRUE(seen);
}

TEST_F(Command, reportsEachPartOfARequestThatFindsNoMemoryByAText)
{
    using Texts = std::set<std::string>;
    const std::string duplicate = "!duplicate resource identifier";
    const std::string replace = "!replace resource identifier";
    const std::string body = "!duplicate string body";
    const std::string resource = "!build octet body based on resource kind name";
    const struct {
        const char *line;
        Texts texts;
    } rows[] = {
        {"enable S1 e", {duplicate, body, resource}},
        {"disable S1 e", {duplicate, body, resource}},
        {"pause S1 e", {duplicate, resource}},
        {"resume S1 e", {duplicate, body, resource}},
        {"unload S1", {resource}},
        {"load S1 c u", {replace, body, resource}},
        {"create S1 session p u", {replace}},
        {"delete S1 e", {duplicate}},
        {"save S1", {resource}},
        {"get S1 e", {duplicate}},
        {"add_peer S1 p l", {replace, body, "!ensure octet body length"}},
        {"shutdown S1", {}},
    };
    for (const auto &row : rows) {
        Texts seen = textsUnderFault("shell.copy_text", row.line);
        // An identifier finds room in the request as it is; bodies and octets take memory.
        seen.merge(textsUnderFault(ZUV_OSAPI_FAULT_POINT_HEAP, row.line));
        EXPECT_EQ(seen, row.texts) << row.line;
    }
}

// BRELShell_buildOctetBody by itself.

class OctetBody : public Command
{
protected:
    OctetBody() { EXPECT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request_)); }
    ~OctetBody() override { ZUV_Service_Admin_CommandRequest_finalize(&request_); }

    std::string octets() const
    {
        return {reinterpret_cast<const char *>(
                    DDS_OctetSeq_get_contiguous_buffer(&request_.octet_body)),
                static_cast<std::size_t>(DDS_OctetSeq_get_length(&request_.octet_body))};
    }

    ZUV_Service_Admin_CommandRequest request_;
};

TEST_F(OctetBody, holdsATagWithItsTerminator)
{
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, "state"), 1);
    EXPECT_EQ(octets(), tag("state"));
    EXPECT_EQ(DDS_OctetSeq_get_length(&request_.octet_body), 17);
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, ""), 1);
    EXPECT_EQ(octets(), tag(""));
}

TEST_F(OctetBody, staysAsItIsWithoutAResource)
{
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, "state"), 1);
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, nullptr), 1);
    EXPECT_EQ(octets(), tag("state"));
}

TEST_F(OctetBody, takesATagOfAtMost254Characters)
{
    const std::string longest(254 - 11, 'r');
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, longest.c_str()), 1);
    EXPECT_EQ(octets(), tag(longest));
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, (longest + "r").c_str()), 0);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!snprintf in request octet body"}}));
    EXPECT_EQ(octets(), tag(longest));
}

TEST_F(OctetBody, reportsWantOfMemory)
{
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELShell_buildOctetBody(&request_, "state"), 0);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_ANY_FAILURE_s, "!ensure length in request octet body"}}));
}

} // namespace
