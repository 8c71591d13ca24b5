// The shell on a pseudo terminal: prompts, signals, end of file.
#include <csignal>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;
using testing::Eq;
using testing::Optional;
using testing::StartsWith;

constexpr char kControlC = 3;
constexpr char kControlD = 4;

ProcessOptions terminal(std::vector<int> ignoredSignals = {})
{
    ProcessOptions options;
    options.onTerminal = true;
    options.ignoredSignals = std::move(ignoredSignals);
    return options;
}

void expectGoodEnd(Session &shell)
{
    shell.write("exit\n");
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_TRUE(shell.waitForOutput("Stopping...\n")) << shell.output();
}

TEST(Terminal, showsThePromptBeforeInputIsAwaited)
{
    Session shell(1, terminal());
    EXPECT_EQ(shell.output(), startLine(loopbackDomainId(), 1) + std::string(kPrompt));
    expectGoodEnd(shell);
}

TEST(Terminal, wordsOfTheShellWorkInAnyCase)
{
    Session shell(1, terminal());
    EXPECT_THAT(shell.run("hello"), Optional(Eq("")));
    EXPECT_THAT(shell.run("History"), Optional(Eq("")));
    EXPECT_THAT(shell.run("CLEAR"), Optional(Eq("")));
    EXPECT_THAT(shell.run(""), Optional(Eq("")));
    EXPECT_THAT(shell.run("  \t "), Optional(Eq("")));
    EXPECT_THAT(shell.run("Help"), Optional(StartsWith("\n")));
    EXPECT_THAT(shell.run("dance now"), Optional(Eq("Unknown command: dance\n")));
    EXPECT_THAT(shell.run("session.x"), Optional(Eq("Unknown command: session.x\n")));
    expectGoodEnd(shell);
}

class EndWord : public testing::TestWithParam<const char *>
{
};

TEST_P(EndWord, endsTheSession)
{
    Session shell(1, terminal());
    shell.write(std::string(GetParam()) + "\n");
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_EQ(shell.output(),
              startLine(loopbackDomainId(), 1) + std::string(kPrompt) + "Stopping...\n");
}

INSTANTIATE_TEST_SUITE_P(Each, EndWord, testing::Values("exit", "quit", "q", "EXIT", "Quit", "Q"));

TEST(Terminal, controlCAbandonsTheLineAndPromptsAgain)
{
    Session shell(1, terminal());
    shell.write("enable S1");
    shell.watch(Process::Duration{100});
    shell.typeControl(kControlC);
    EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq("\n")));
    EXPECT_THAT(shell.run("word"), Optional(Eq("Unknown command: word\n")));
    expectGoodEnd(shell);
}

TEST(Terminal, anOverlongLineIsRefusedAndTheNextOneIsRead)
{
    Session shell(1, terminal());
    const std::string longest(4093, 'x');
    EXPECT_THAT(shell.run(longest), Optional(Eq("Unknown command: " + longest + "\n")));
    EXPECT_THAT(shell.run(std::string(4094, 'x')), Optional(Eq("Line too long\n")));
    EXPECT_THAT(shell.run("word"), Optional(Eq("Unknown command: word\n")));
    for (const std::size_t size : {4095U, 10000U}) {
        EXPECT_THAT(shell.run(std::string(size, 'x')), Optional(Eq("Line too long\n")));
        // A terminal keeps 4095 characters of a line and its end, which then is a line of its own.
        EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq("")));
        EXPECT_THAT(shell.run("word"), Optional(Eq("Unknown command: word\n")));
    }
    expectGoodEnd(shell);
}

class HandledSignal : public testing::TestWithParam<int>
{
};

TEST_P(HandledSignal, endsNothingAndGivesAFreshPrompt)
{
    Session shell(1, terminal());
    for (int round = 0; round < 3; ++round) {
        shell.signalWhileReading(GetParam());
        EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq("\n")));
    }
    EXPECT_THAT(shell.run("word"), Optional(Eq("Unknown command: word\n")));
    expectGoodEnd(shell);
}

INSTANTIATE_TEST_SUITE_P(Each, HandledSignal,
                         testing::Values(SIGTERM, SIGHUP, SIGINT, SIGABRT, SIGPIPE));

TEST(Terminal, aSignalDuringAWaitEndsNeitherTheWaitNorTheSession)
{
    Responder service({"-delay", "1500"});
    Session shell(10, terminal());
    shell.letDiscover();
    shell.write("get S1\n");
    ASSERT_TRUE(service.waitForOutput("got GET_ACTION"));
    shell.typeControl(kControlC);
    EXPECT_THAT(shell.outputUntil(kPrompt), Optional(StartsWith("\nResult: S1 got GET_ACTION")));
    expectGoodEnd(shell);
}

TEST(Terminal, aSignalThatWasIgnoredAtTheStartStaysIgnored)
{
    Session shell(1, terminal({SIGINT, SIGHUP}));
    const std::string before = shell.output();
    shell.signalWhileReading(SIGINT);
    shell.signalWhileReading(SIGHUP);
    shell.watch(Process::Duration{300});
    EXPECT_EQ(shell.output(), before);
    shell.signalWhileReading(SIGTERM);
    EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq("\n")));
    expectGoodEnd(shell);
}

TEST(Terminal, endOfFileGivesAFreshPromptAndFurtherLinesAreRead)
{
    Session shell(1, terminal());
    for (int round = 0; round < 3; ++round) {
        shell.typeControl(kControlD);
        EXPECT_THAT(shell.outputUntil(kPrompt), Optional(Eq("")));
    }
    EXPECT_THAT(shell.run("word"), Optional(Eq("Unknown command: word\n")));
    expectGoodEnd(shell);
}

TEST(Terminal, endOfFileBehindAnUnfinishedLineDropsTheLineAndEndsTheSession)
{
    Session shell(1, terminal());
    shell.write("bogus");
    // The first hands the line over as it is, the second is the end behind it.
    shell.typeControl(kControlD);
    shell.watch(Process::Duration{100});
    shell.typeControl(kControlD);
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_TRUE(shell.output().ends_with("Stopping...\n")) << shell.output();
    EXPECT_EQ(shell.output().find("Unknown command"), std::string::npos);
}

TEST(Pipe, aLastLineWithoutItsEndIsDroppedAndEndsTheSession)
{
    Session shell(1);
    shell.write("hello\nbogus");
    shell.closeInput();
    EXPECT_EQ(shell.wait(), 0);
    EXPECT_EQ(shell.output(), startLine(loopbackDomainId(), 1) + std::string(kPrompt) +
                                  std::string(kPrompt) + "Stopping...\n");
    EXPECT_EQ(shell.errors(), "");
}

TEST(Pipe, endOfFileDoesNotEndTheShell)
{
    Session shell(1);
    shell.closeInput();
    EXPECT_TRUE(shell.waitForOutput(kPrompt));
    EXPECT_TRUE(shell.waitForOutput(kPrompt));
    EXPECT_TRUE(shell.isRunning());
}

TEST(Pipe, anOutputThatNobodyReadsDoesNotKillTheShell)
{
    Session shell(1);
    shell.closeOutput();
    shell.write("help\nexit\n");
    EXPECT_EQ(shell.wait(), 0);
}

} // namespace
