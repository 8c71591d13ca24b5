#include <csignal>
#include <cstdio>
#include <string>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "FakeClient.h"
#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "remoteShell/Shell.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::fakeClient;

constexpr const char *kPrompt = "ZUV Brel Service > ";

// A command file that is gone with the object.
class CommandFile
{
public:
    explicit CommandFile(const std::string &content) : file_(std::tmpfile())
    {
        std::fwrite(content.data(), 1, content.size(), file_);
        std::rewind(file_);
    }
    ~CommandFile() { std::fclose(file_); }
    CommandFile(const CommandFile &) = delete;
    CommandFile &operator=(const CommandFile &) = delete;
    FILE *get() const { return file_; }

private:
    FILE *file_;
};

// While an instance lives the standard input has this content.
class StandardInput
{
public:
    explicit StandardInput(const std::string &content) : file_(content), former_(dup(STDIN_FILENO))
    {
        dup2(fileno(file_.get()), STDIN_FILENO);
        std::clearerr(stdin);
    }
    ~StandardInput()
    {
        dup2(former_, STDIN_FILENO);
        close(former_);
        std::clearerr(stdin);
    }
    StandardInput(const StandardInput &) = delete;
    StandardInput &operator=(const StandardInput &) = delete;

private:
    CommandFile file_;
    int former_;
};

class Session : public testing::Test
{
protected:
    Session()
    {
        BRELLog_setUp();
        fakeClient() = {};
        fakeClient().reply = "ok";
    }

    // Everything that a session with this command file prints.
    std::string play(const std::string &content)
    {
        const CommandFile file(content);
        return play(file.get());
    }

    std::string play(FILE *input)
    {
        BRELShell shell = {};
        shell.input = input;
        testing::internal::CaptureStdout();
        BRELShell_main(&shell);
        return testing::internal::GetCapturedStdout();
    }

    zuv_test::LogCapture log_;
};

std::string lines(std::initializer_list<const char *> texts)
{
    std::string all;
    for (const char *text : texts) {
        all += kPrompt;
        all += text;
    }
    return all;
}

TEST_F(Session, runsEveryLineOfACommandFileThatEndsInANewLine)
{
    EXPECT_EQ(play("get S1\nbogus\n\n   \nhello\n"),
              lines({"get S1 \nResult: ok\n", "bogus \nUnknown command: bogus\n", "", "",
                     "hello \n", ""}));
    EXPECT_EQ(BRELShell_g_terminate, 1);
    EXPECT_EQ(fakeClient().sent.size(), 1u);
}

TEST_F(Session, leavesTimeForDiscoveryBeforeACommandFile)
{
    play("hello\nhello\n");
    EXPECT_EQ(zuv_test::fakeClient().pauses, (std::vector<int64_t>{3000000000}));
}

TEST_F(Session, promptsOnTheStandardInputWithoutAPauseAndWithoutAnEcho)
{
    const StandardInput input("hello\nget S1\nq\n");
    EXPECT_EQ(play(stdin), lines({"", "Result: ok\n", ""}));
    EXPECT_TRUE(fakeClient().pauses.empty());
}

TEST_F(Session, dropsALastLineWithoutANewLine)
{
    EXPECT_EQ(play("hello\nget S1"), lines({"hello \n", ""}));
    EXPECT_TRUE(fakeClient().sent.empty());
}

TEST_F(Session, stopsAtExit)
{
    EXPECT_EQ(play("q\nget S1\n"), lines({"q \n"}));
    EXPECT_TRUE(fakeClient().sent.empty());
}

TEST_F(Session, echoesARestOfLineTokenWithItsNewLine)
{
    EXPECT_EQ(play("enable S1 domain_route.a b\n"),
              lines({"enable S1 domain_route.a b\n \nResult: ok\n", ""}));
}

TEST_F(Session, readsALineUpToAByteOfZero)
{
    using namespace std::string_literals;
    EXPECT_EQ(play("\0get S1\nget S2\0 x\n"s), lines({"", "get S2 \nResult: ok\n", ""}));
    ASSERT_EQ(fakeClient().sent.size(), 1u);
    EXPECT_EQ(fakeClient().sent[0].identifier, "");
}

TEST_F(Session, refusesOverlongLinesAndReadsTheirRest)
{
    const std::string longest(4093 - 4, 'x');
    const std::string whole = "get " + longest;
    // 4093 characters and a new line are accepted, one more is not.
    EXPECT_EQ(play("hello " + longest.substr(2) + "\n"),
              lines({("hello " + longest.substr(2) + " \n").c_str(), ""}));
    EXPECT_EQ(play(whole + "x\nhello\n"), lines({"Line too long\n", "hello \n", ""}));
    // What was left unread comes in as a line of its own.
    EXPECT_EQ(play(whole + "xx\nhello\n"), lines({"Line too long\n", "", "hello \n", ""}));
    EXPECT_EQ(play(whole + "xxbogus\n"),
              lines({"Line too long\n", "bogus \nUnknown command: bogus\n", ""}));
}

TEST_F(Session, refusesALineOfTooManyWords)
{
    std::string line = "get S1";
    for (int count = 2; count < BREL_SHELL_MAX_TOKENS; ++count) {
        line += " x";
    }
    const std::string refused = "Too many words in line: 257, at most 256 are accepted\n";
    EXPECT_EQ(play(line + " x\nget S2\n"), lines({refused.c_str(), "get S2 \nResult: ok\n", ""}));
    ASSERT_EQ(fakeClient().sent.size(), 1u);
    EXPECT_EQ(fakeClient().sent[0].target, "S2");
    EXPECT_TRUE(log_.isEmpty());
    // The greatest line that fits.
    EXPECT_EQ(play(line + "\n"), lines({(line + " \nResult: ok\n").c_str(), ""}));
}

TEST_F(Session, endsWithoutMemoryForTheNextCommand)
{
    const zuv_test::HeapCheck heap;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    const std::string output = play("hello\nhello\n");
    ZUVOsapiFault_disarm();
    EXPECT_EQ(output, lines({"hello \n"}));
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_ANY_FAILURE_s, "!initialize reply object"}}));
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(Session, letsErrorsBeLoggedAgain)
{
    BRELLog_g_instrumentationMask = 0;
    play("q\n");
    EXPECT_EQ(BRELLog_g_instrumentationMask, 3u);
}

// The command line.

class CommandLine : public Session
{
protected:
    int parse(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "zuvbsh");
        std::vector<char *> argv;
        for (std::string &argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        shell_ = {};
        return BRELShell_getCommandLineParameters(&shell_, static_cast<int>(arguments.size()),
                                                  argv.data());
    }

    BRELShell shell_ = {};
};

TEST_F(CommandLine, hasDefaults)
{
    EXPECT_EQ(parse({}), 1);
    EXPECT_EQ(shell_.domainId, 0);
    EXPECT_EQ(shell_.timeout, 15);
    EXPECT_EQ(shell_.input, stdin);
}

TEST_F(CommandLine, givesDomainTimeoutAndCommandFile)
{
    EXPECT_EQ(parse({"-d", "7", "-t", "2", "-c", "/dev/null"}), 1);
    EXPECT_EQ(shell_.domainId, 7);
    EXPECT_EQ(shell_.timeout, 2);
    ASSERT_NE(shell_.input, nullptr);
    EXPECT_NE(shell_.input, stdin);
    std::fclose(shell_.input);
}

TEST_F(CommandLine, reportsABadOption)
{
    EXPECT_EQ(parse({"-domainId"}), 0);
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'domainId'"},
         {&ZUV_LOG_INIT_FAILURE_s, "!initialize parameter manager"},
         {&ZUV_LOG_CREATION_FAILURE_s, "!create parameter manager"}}));
}

TEST_F(CommandLine, reportsABadValue)
{
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(parse({"-timeout", "soon"}), 0);
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'timeout'"},
         {&ZUV_LOG_ANY_FAILURE_s, "!get parameter"}}));
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(CommandLine, reportsACommandFileThatCannotBeOpened)
{
    EXPECT_EQ(parse({"-cmdFile", "/nonexistent/commands"}), 0);
    EXPECT_TRUE(log_.isExactly({{nullptr, "Could not open file /nonexistent/commands"}}));
}

// Start and stop.

TEST_F(CommandLine, startsTheClientWithDomainAndTimeout)
{
    ASSERT_EQ(parse({"-d", "7", "-t", "2"}), 1);
    testing::internal::CaptureStdout();
    EXPECT_EQ(BRELShell_initialize(&shell_), 1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Domain id 7, timeout 2\n");
    EXPECT_EQ(fakeClient().domainId, 7);
    EXPECT_EQ(fakeClient().timeout, 2);
    BRELShell_finalize(&shell_);
    EXPECT_EQ(fakeClient().finalizeCount, 1);
}

TEST_F(CommandLine, reportsAClientThatCannotStart)
{
    fakeClient().initializeResult = 0;
    ASSERT_EQ(parse({}), 1);
    testing::internal::CaptureStdout();
    EXPECT_EQ(BRELShell_initialize(&shell_), 0);
    testing::internal::GetCapturedStdout();
    EXPECT_TRUE(
        log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!initialize remote configuration client"}}));
}

// Signals.

class Signals : public testing::Test
{
protected:
    Signals() { sigaction(SIGUSR1, nullptr, &old_); }
    ~Signals() override
    {
        sigaction(SIGUSR1, &old_, nullptr);
        ZUVOsapiFault_disarm();
    }
    struct sigaction present()
    {
        struct sigaction action = {};
        sigaction(SIGUSR1, nullptr, &action);
        return action;
    }

    struct sigaction old_ = {};
};

TEST_F(Signals, areHandledWithAllSignalsMaskedAndInterruptReads)
{
    EXPECT_EQ(BRELShell_setSignalHandler(SIGUSR1, BRELShell_terminateWithSignal), 0);
    const struct sigaction action = present();
    EXPECT_EQ(action.sa_handler, BRELShell_terminateWithSignal);
    EXPECT_EQ(action.sa_flags & SA_RESTART, 0);
    EXPECT_EQ(sigismember(&action.sa_mask, SIGINT), 1);
    EXPECT_EQ(sigismember(&action.sa_mask, SIGTERM), 1);
}

TEST_F(Signals, stayIgnored)
{
    signal(SIGUSR1, SIG_IGN);
    EXPECT_EQ(BRELShell_setSignalHandler(SIGUSR1, BRELShell_terminateWithSignal), 0);
    EXPECT_EQ(present().sa_handler, SIG_IGN);
}

TEST_F(Signals, failWhenTheDispositionCannotBeReadOrSet)
{
    EXPECT_EQ(BRELShell_setSignalHandler(-1, BRELShell_terminateWithSignal), -1);
    EXPECT_EQ(BRELShell_setSignalHandler(SIGKILL, BRELShell_terminateWithSignal), -1);
    ZUVOsapiFault_arm("shell.read_signal", 1, 0);
    EXPECT_EQ(BRELShell_setSignalHandler(SIGUSR1, BRELShell_terminateWithSignal), -1);
    ZUVOsapiFault_arm("shell.set_signal", 1, 0);
    EXPECT_EQ(BRELShell_setSignalHandler(SIGUSR1, BRELShell_terminateWithSignal), -1);
}

TEST_F(Signals, printOneNewLineAndEndNothing)
{
    BRELShell_g_terminate = 0;
    errno = 7;
    testing::internal::CaptureStdout();
    BRELShell_terminateWithSignal(SIGTERM);
    const int errorAfterwards = errno;
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "\n");
    EXPECT_EQ(errorAfterwards, 7);
    EXPECT_EQ(BRELShell_g_terminate, 0);
}

} // namespace
