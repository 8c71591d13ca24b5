// Services that are there, are not, come, go, are slow, and answer much.
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"

namespace
{

using namespace zuv_test;
using testing::AllOf;
using testing::EndsWith;
using testing::Eq;
using testing::HasSubstr;
using testing::Not;
using testing::Optional;
using testing::StartsWith;

constexpr const char *kNoResponse = "No response received\n";
constexpr std::size_t kEightMebibytes = 8U << 20U;

std::string account(const std::string &name, const std::string &identifier)
{
    return "Result: " + name + " got GET_ACTION for '" + name + "', resource '" + identifier + "'";
}

TEST(Service, thatIsAbsentIsToldAfterTheTimeoutAndTheNextCommandWorks)
{
    Session shell(1);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THAT(shell.run("get S1"), Optional(Eq(kNoResponse)));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(950));
    EXPECT_TRUE(shell.waitForError("wait for reply"));
    EXPECT_TRUE(shell.waitForError("send command request and wait for reply"));

    Responder service;
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1 now"), Optional(StartsWith(account("S1", "now"))));
}

TEST(Service, thatAnswersWithAnErrorIsShownSo)
{
    Responder service({"-error"});
    Session shell(5);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1"), Optional(StartsWith("Error: S1 got GET_ACTION")));
    EXPECT_THAT(shell.run("get S1 again"), Optional(StartsWith("Error: ")));
}

TEST(Service, thatIsKilledDuringARequestLeavesTheShellToItsTimeoutAndMayComeBack)
{
    Session shell(2);
    {
        Responder service({"-delay", "60000"});
        shell.letDiscover();
        shell.write("get S1 lost\n");
        ASSERT_TRUE(service.waitForOutput("'lost'"));
        service.signal(SIGKILL);
        EXPECT_EQ(service.wait(), 128 + SIGKILL);
    }
    EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq(kNoResponse)));

    Responder service;
    shell.letDiscover();
    // On a busy machine it takes longer until both have found each other.
    std::optional<std::string> outcome;
    for (int attempt = 0; attempt < 5 && (!outcome || *outcome == kNoResponse); ++attempt) {
        outcome = shell.run("get S1 back");
    }
    EXPECT_THAT(outcome, Optional(StartsWith(account("S1", "back"))));
}

TEST(Service, servesOnWhenAShellIsKilledDuringItsWait)
{
    Responder service({"-delay", "700", "-first", "1"});
    {
        Session shell(10);
        shell.letDiscover();
        shell.write("get S1 lost\n");
        ASSERT_TRUE(service.waitForOutput("'lost'"));
        shell.signal(SIGKILL);
        EXPECT_EQ(shell.wait(), 128 + SIGKILL);
    }
    Session shell(10);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1 next"), Optional(StartsWith(account("S1", "next"))));
}

TEST(Service, stopsCleanlyOnASignal)
{
    for (const int number : {SIGTERM, SIGINT}) {
        Responder service;
        service.signal(number);
        EXPECT_EQ(service.wait(), 0);
        EXPECT_EQ(service.errors(), "");
    }
}

TEST(Service, leavesTheControlCOfItsTerminalToTheShellWhenItIsToldTo)
{
    ProcessOptions options;
    options.ignoredSignals = {SIGINT};
    Process service(responderCommand(), options);
    ASSERT_TRUE(service.waitForOutput("ready\n"));
    service.signal(SIGINT);
    EXPECT_EQ(service.wait(Process::Duration{500}), std::nullopt);
    service.signal(SIGTERM);
    EXPECT_EQ(service.wait(), 0);
}

TEST(Service, namesTheOptionThatItCannotUse)
{
    const ProcessResult unknown = runProcess({RESPONDER, "-foo"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.errors, StartsWith("responder: unknown option -foo\n"));
    for (const std::vector<std::string> &bad :
         {std::vector<std::string>{"-delay", "soon"}, {"-delay"}, {"-delay", "-1"}}) {
        std::vector<std::string> command = {RESPONDER};
        command.insert(command.end(), bad.begin(), bad.end());
        const ProcessResult result = runProcess(command);
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.errors, StartsWith("responder: bad value for option -delay\n"));
        EXPECT_EQ(result.output, "");
    }
    const ProcessResult help = runProcess({RESPONDER, "-help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, StartsWith("Usage: responder [options]..."));
}

TEST(Service, thatIsSilentActsAndIsNotHeard)
{
    Responder service({"-silent", "-first", "1"});
    Session shell(1);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1 first"), Optional(Eq(kNoResponse)));
    EXPECT_TRUE(service.waitForOutput("resource 'first'"));
    EXPECT_THAT(shell.run("get S1 second"), Optional(StartsWith(account("S1", "second"))));
}

TEST(Services, ofDifferentNamesActOnlyWhenNamed)
{
    Responder first({"-name", "S1"});
    Responder second({"-name", "S2"});
    Session shell(2);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S2 a"), Optional(StartsWith(account("S2", "a"))));
    EXPECT_THAT(shell.run("get S1 b"), Optional(StartsWith(account("S1", "b"))));
    EXPECT_THAT(shell.run("get S3 c"), Optional(Eq(kNoResponse)));
    EXPECT_THAT(shell.run("get s1 d"), Optional(Eq(kNoResponse)));
    first.watch(Process::Duration{100});
    second.watch(Process::Duration{100});
    EXPECT_THAT(first.output(),
                AllOf(HasSubstr("'b'"), Not(HasSubstr("'a'")), Not(HasSubstr("'c'"))));
    EXPECT_THAT(second.output(),
                AllOf(HasSubstr("'a'"), Not(HasSubstr("'b'")), Not(HasSubstr("'c'"))));
}

TEST(Services, aNameOfAServiceMayBeAPattern)
{
    Responder service({"-name", "S*"});
    Session shell(1);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1 a"), Optional(StartsWith("Result: S* got GET_ACTION for 'S1'")));
    EXPECT_THAT(shell.run("get S27 b"),
                Optional(StartsWith("Result: S* got GET_ACTION for 'S27'")));
    EXPECT_THAT(shell.run("get T1 c"), Optional(Eq(kNoResponse)));
}

TEST(Services, areNotReachedByAPatternInARequest)
{
    Responder service({"-name", "S1"});
    Session shell(1);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S* a"), Optional(Eq(kNoResponse)));
    EXPECT_THAT(shell.run("get S[1] b"), Optional(Eq(kNoResponse)));
    EXPECT_THAT(shell.run("get S1 c"), Optional(StartsWith(account("S1", "c"))));
    EXPECT_THAT(service.output(), AllOf(Not(HasSubstr("'a'")), Not(HasSubstr("'b'"))));
}

TEST(Services, thatShareANameAllActAndTheFirstReplyCounts)
{
    Responder quick;
    Responder slow({"-delay", "25", "-error"});
    Session shell(5);
    shell.letDiscover();
    // More commands than a shell keeps replies.
    for (int count = 0; count < 40; ++count) {
        const std::string name = "n" + std::to_string(count);
        ASSERT_THAT(shell.run("get S1 " + name), Optional(StartsWith(account("S1", name))));
    }
    EXPECT_TRUE(slow.waitForOutput("'n39'"));
}

TEST(Replies, thatComeTooLateAreNotTakenForLaterOnes)
{
    Responder service({"-delay", "1500", "-first", "1"});
    Session shell(1);
    shell.letDiscover();
    EXPECT_THAT(shell.run("get S1 first"), Optional(Eq(kNoResponse)));
    EXPECT_THAT(shell.run("get S1 second"), Optional(StartsWith(account("S1", "second"))));
    EXPECT_THAT(shell.run("get S1 third"), Optional(StartsWith(account("S1", "third"))));
}

TEST(Replies, ofEightMebibytesArriveWhole)
{
    Responder service({"-replySize", std::to_string(kEightMebibytes), "-first", "2"});
    Session shell(20);
    shell.letDiscover();
    std::string expected = "Result: ";
    for (std::size_t index = 0; index < kEightMebibytes; ++index) {
        expected += static_cast<char>('0' + index % 10);
    }
    expected += '\n';
    for (int round = 0; round < 2; ++round) {
        const auto answer = shell.run("get S1");
        ASSERT_TRUE(answer.has_value());
        EXPECT_TRUE(*answer == expected) << answer->size() << " characters";
    }
    EXPECT_THAT(shell.run("get S1 small"), Optional(StartsWith(account("S1", "small"))));
}

// FNV-1a, as the example service computes it over long texts.
std::string checksum(const std::string &text)
{
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const char character : text) {
        sum = (sum ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    char buffer[17];
    std::snprintf(buffer, sizeof buffer, "%016llx", static_cast<unsigned long long>(sum));
    return buffer;
}

std::string bodyAccount(const std::string &fileContent)
{
    const std::string body = "str://\"" + fileContent + "\"";
    return "body " + std::to_string(body.size()) + " characters with checksum " + checksum(body);
}

TEST(LocalFile, ofEightMebibytesTravelsWhole)
{
    std::string content;
    while (content.size() < kEightMebibytes) {
        content += "<element number='" + std::to_string(content.size()) + "'/>\n";
    }
    content.resize(kEightMebibytes);
    const TemporaryFile file(content);
    Responder service;
    Session shell(20);
    shell.letDiscover();
    const std::string line = "load S1 c1 file://" + file.path() + " local";
    EXPECT_THAT(shell.run(line), Optional(HasSubstr(bodyAccount(content))));
    EXPECT_THAT(shell.run("load S1 c1 file://" + file.path()),
                Optional(HasSubstr("body 'file://" + file.path() + "'")));
    EXPECT_THAT(shell.run(line), Optional(HasSubstr(bodyAccount(content))));
}

TEST(LocalFile, thatIsEmptyTravelsAsTwoQuotes)
{
    const TemporaryFile file("");
    Responder service;
    Session shell(5);
    shell.letDiscover();
    EXPECT_THAT(shell.run("load S1 c1 file://" + file.path() + " local"),
                Optional(HasSubstr("body 'str://\"\"'")));
}

TEST(LocalFile, thatCannotBeReadIsNotSent)
{
    Responder service;
    Session shell(5);
    shell.letDiscover();
    EXPECT_THAT(shell.run("load S1 c1 file:///nowhere/at/all local"), Optional(Eq(kNoResponse)));
    EXPECT_TRUE(shell.waitForError("Can't open local file"));
    EXPECT_THAT(shell.run("get S1 next"), Optional(StartsWith(account("S1", "next"))));
    service.watch(Process::Duration{100});
    EXPECT_THAT(service.output(), Not(HasSubstr("CREATE_ACTION")));
}

} // namespace
