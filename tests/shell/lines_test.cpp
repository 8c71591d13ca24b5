// Lines that are long, crowded or cut short.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;
using testing::AllOf;
using testing::EndsWith;
using testing::Eq;
using testing::Optional;
using testing::StartsWith;

constexpr const char *kTooLong = "Line too long\n";

std::string unknown(const std::string &word)
{
    return "Unknown command: " + word + "\n";
}

bool isOneLine(const std::string &text)
{
    return text.find('\n') == text.size() - 1 && text.size() > 1;
}

TEST(Lines, aLineOf4093CharactersIsAccepted)
{
    Session shell(1);
    const std::string word(4093, 'x');
    EXPECT_THAT(shell.run(word), Optional(Eq(unknown(word))));
}

TEST(Lines, aLineOf4094CharactersIsTooLong)
{
    Session shell(1);
    EXPECT_THAT(shell.run(std::string(4094, 'x')), Optional(Eq(kTooLong)));
    EXPECT_THAT(shell.run("word"), Optional(Eq(unknown("word"))));
}

TEST(Lines, theRestOfALineThatIsTooLongComesInAsAFollowingLine)
{
    Session shell(1);
    EXPECT_THAT(shell.run(std::string(4095, 'x') + "tail"), Optional(Eq(kTooLong)));
    EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq(unknown("tail"))));
    EXPECT_THAT(shell.run("word"), Optional(Eq(unknown("word"))));
}

TEST(Lines, twoHundredFiftySixTokensAreRead)
{
    Session shell(1);
    std::string line = "word";
    for (int count = 1; count < 256; ++count) {
        line += " a";
    }
    EXPECT_THAT(shell.run(line), Optional(Eq(unknown("word"))));
}

TEST(Lines, moreTokensAreRefusedWithOneLineAndNothingIsSent)
{
    Responder service;
    Session shell(1);
    shell.letDiscover();
    for (const int tokens : {257, 2000}) {
        std::string line = "get S1";
        for (int count = 2; count < tokens; ++count) {
            line += " a";
        }
        const auto answer = shell.run(line);
        ASSERT_TRUE(answer.has_value());
        EXPECT_TRUE(isOneLine(*answer)) << *answer;
        EXPECT_THAT(*answer, StartsWith("Too many words"));
    }
    EXPECT_THAT(shell.run("get S1 next"), Optional(StartsWith("Result: ")));
    EXPECT_TRUE(service.waitForOutput("S1 got GET_ACTION for 'S1', resource 'next'"));
    EXPECT_THAT(service.output(),
                AllOf(StartsWith("ready\nS1 got GET_ACTION for 'S1', resource 'next'"),
                      testing::Not(testing::HasSubstr("'a'"))));
}

TEST(Lines, aResourceIdentifierOf2048CharactersTravels)
{
    Responder service;
    Session shell(5);
    shell.letDiscover();
    EXPECT_THAT(
        shell.run("get S1 " + std::string(2048, 'r')),
        Optional(StartsWith("Result: S1 got GET_ACTION for 'S1', resource 2048 characters")));
}

TEST(Lines, aLongerResourceIdentifierIsRefusedWithOneLineAndNothingIsSent)
{
    Responder service;
    Session shell(5);
    shell.letDiscover();
    for (const std::size_t size : {2049U, 4000U}) {
        const auto answer = shell.run("get S1 " + std::string(size, 'r'));
        ASSERT_TRUE(answer.has_value());
        EXPECT_TRUE(isOneLine(*answer)) << *answer;
    }
    EXPECT_THAT(shell.run("get S1 next"), Optional(StartsWith("Result: ")));
    service.watch(Process::Duration{200});
    EXPECT_THAT(service.output(), StartsWith("ready\nS1 got GET_ACTION for 'S1', resource 'next'"));
}

TEST(CommandFile, isEchoedAndPlayedToItsEnd)
{
    const std::string prompt(kPrompt);
    const ProcessResult result = runCommandFile(
        "hello\n\n   \nenable\nunload S1 x\nbogus \"a b\" session.x y\nHELLO \"\n", 1);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, startLine(loopbackDomainId(), 1) + //
                                 prompt + "hello \n" +          //
                                 prompt + prompt +              //
                                 prompt + "enable \n" +         //
                                 "Command syntax: enable <target_brel> [<entity_name>]\n" + prompt +
                                 "unload S1 x \n" +                         //
                                 "Command syntax: unload <target_brel>\n" + //
                                 prompt + "bogus a b session.x y\n \n" +    //
                                 unknown("bogus") +                         //
                                 prompt + "HELLO \n \n" +                   //
                                 prompt + "Stopping...\n");
    EXPECT_EQ(result.errors, "");
}

TEST(CommandFile, aLastLineWithoutItsEndIsDropped)
{
    const ProcessResult result = runCommandFile("hello\nbogus", 1);
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.output, EndsWith("hello \n" + std::string(kPrompt) + "Stopping...\n"));
}

TEST(CommandFile, whatStandsBehindExitIsNotPlayed)
{
    const ProcessResult result = runCommandFile("exit\nbogus\n", 1);
    EXPECT_EQ(result.status, 0);
    std::string end(kPrompt);
    EXPECT_THAT(result.output, EndsWith(end.append("exit \nStopping...\n")));
}

} // namespace
