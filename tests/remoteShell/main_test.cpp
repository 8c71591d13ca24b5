#include <csignal>
#include <string>
#include <vector>

#include <pthread.h>

#include <gtest/gtest.h>

#include "FakeClient.h"
#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/osapi/Fault.h"
#include "remoteShell/Shell.h"
#include "support/Files.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

// The program's own main, compiled under another name.
int shellMain(int argc, char **argv);

namespace
{

using zuv_test::fakeClient;

constexpr int kHandled[] = {SIGTERM, SIGHUP, SIGINT, SIGABRT, SIGPIPE};

class Main : public testing::Test
{
protected:
    Main()
    {
        fakeClient() = {};
        pthread_sigmask(SIG_SETMASK, nullptr, &mask_);
        for (const int number : kHandled) {
            actions_.emplace_back();
            sigaction(number, nullptr, &actions_.back());
        }
    }
    ~Main() override
    {
        ZUVOsapiFault_disarm();
        BRELProductInfo_reset();
        pthread_sigmask(SIG_SETMASK, &mask_, nullptr);
        for (std::size_t index = 0; index < actions_.size(); ++index) {
            sigaction(kHandled[index], &actions_[index], nullptr);
        }
    }

    int run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), "zuvbsh");
        std::vector<char *> argv;
        for (std::string &argument : arguments) {
            argv.push_back(argument.data());
        }
        argv.push_back(nullptr);
        testing::internal::CaptureStdout();
        const int status = shellMain(static_cast<int>(arguments.size()), argv.data());
        output_ = testing::internal::GetCapturedStdout();
        return status;
    }

    // The product and the shell have these names until the end of the test.
    static void rename(const char *product, const char *shell)
    {
        ZUV_BrelServiceProductInfo names = {};
        names.product_name = product;
        names.shell_executable_name = shell;
        BRELProductInfo_set(&names);
    }

    // A run in which a fault point fails at its `count`-th pass.
    int runWithFault(const char *point, unsigned count)
    {
        ZUVOsapiFault_arm(point, count, 0);
        const int status = run({"-cmdFile", "/dev/null"});
        ZUVOsapiFault_disarm();
        return status;
    }

    zuv_test::LogCapture log_;
    std::string output_;
    sigset_t mask_;
    std::vector<struct sigaction> actions_;
};

TEST_F(Main, runsASessionFromStartToEnd)
{
    EXPECT_EQ(run({"-d", "7", "-t", "2", "-cmdFile", "/dev/null"}), 0);
    EXPECT_EQ(output_, "Domain id 7, timeout 2\n"
                       "ZUV Brel Service > Stopping...\n");
    EXPECT_EQ(fakeClient().domainId, 7);
    EXPECT_EQ(fakeClient().timeout, 2);
    EXPECT_EQ(fakeClient().finalizeCount, 1);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Main, startsTheMiddlewareWithAllSignalsBlockedAndTakesThemAfterwards)
{
    EXPECT_EQ(run({"-cmdFile", "/dev/null"}), 0);
    EXPECT_TRUE(fakeClient().areSignalsBlocked);
    sigset_t now;
    pthread_sigmask(SIG_SETMASK, nullptr, &now);
    EXPECT_EQ(sigismember(&now, SIGINT), sigismember(&mask_, SIGINT));
    EXPECT_EQ(sigismember(&now, SIGTERM), sigismember(&mask_, SIGTERM));
    for (const int number : kHandled) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        EXPECT_EQ(action.sa_handler, BRELShell_terminateWithSignal) << number;
    }
}

TEST_F(Main, answersARequestForHelpBeforeAnythingElse)
{
    for (const std::vector<std::string> &arguments :
         {std::vector<std::string>{"-help"}, {"-H"}, {"-nonsense", "-h"}, {"nonsense", "-HELP"}}) {
        EXPECT_EQ(run(arguments), -1);
        EXPECT_TRUE(
            output_.starts_with("ZUV Brel Service Shell 7.7.0\nUsage: zuvbsh [options]...\n"))
            << output_;
        EXPECT_EQ(fakeClient().domainId, -1);
    }
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Main, namesAnotherProductInTheHelpOfItsOptions)
{
    rename("Other Service", "othersh");
    EXPECT_EQ(run({"-help"}), -1);
    EXPECT_TRUE(output_.starts_with("Other Service Shell 7.7.0\nUsage: othersh [options]...\n"))
        << output_;
}

TEST_F(Main, namesAnotherProductInItsPromptAndInTheHelpOfItsCommands)
{
    rename("Other Service", "othersh");
    const zuv_test::TemporaryFolder folder;
    EXPECT_EQ(run({"-cmdFile", folder.write("commands", "help\n")}), 0);
    EXPECT_TRUE(output_.starts_with("Domain id 0, timeout 15\n"
                                    "Other Service > help \n"
                                    "\n"
                                    "Other Service Shell\n"))
        << output_;
    for (const char *line : {"\nload     - Load Other Service XML configuration\n",
                             "\nunload   - Unload current Other Service configuration\n",
                             "\nsave     - Save Other Service configuration to file\n",
                             "\nget      - Get  Other Service configuration as a string\n"}) {
        EXPECT_NE(output_.find(line), std::string::npos) << line << output_;
    }
    EXPECT_TRUE(output_.ends_with("\nOther Service > Stopping...\n")) << output_;
}

TEST_F(Main, releasesTheParticipantFactoryAtItsEnd)
{
    const zuv_test::HeapCheck heap;
    ASSERT_NE(DDS_DomainParticipantFactory_get_instance(), nullptr);
    ASSERT_GT(heap.liveBlocks(), 0);
    EXPECT_EQ(run({"-cmdFile", "/dev/null"}), 0);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(Main, failsWhenTheSignalsCannotBeBlocked)
{
    EXPECT_EQ(runWithFault("shell.signal_mask", 1), 1);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!signal handlers"}}));
    EXPECT_EQ(output_, "");
    EXPECT_EQ(fakeClient().domainId, -1);
}

TEST_F(Main, failsWhenAHandlerCannotBeInstalled)
{
    for (unsigned count = 1; count <= 5; ++count) {
        log_.clear();
        EXPECT_EQ(runWithFault("shell.set_signal", count), -1);
        EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!signal handlers"}}));
    }
    EXPECT_EQ(runWithFault("shell.set_signal", 6), 0);
}

TEST_F(Main, failsForACommandLineThatCannotBeUsed)
{
    EXPECT_EQ(run({"-foo"}), -1);
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'foo'"},
         {&ZUV_LOG_INIT_FAILURE_s, "!initialize parameter manager"},
         {&ZUV_LOG_CREATION_FAILURE_s, "!create parameter manager"},
         {&ZUV_LOG_ANY_FAILURE_s, "!get command-line parameters"}}));
    const std::uint32_t submodules[] = {0x4000, 0x4000, 0x2000, 0x2000};
    for (std::size_t index = 0; index < std::size(submodules); ++index) {
        const zuv_test::LogLine line = log_.lines()[index];
        EXPECT_EQ(line.level, ZUV_LOG_BIT_EXCEPTION);
        EXPECT_EQ(line.moduleId, 0x1c0000U);
        EXPECT_EQ(line.submodule, submodules[index]);
    }
    EXPECT_EQ(output_, "");
    EXPECT_EQ(fakeClient().domainId, -1);
}

TEST_F(Main, failsWhenTheClientCannotStart)
{
    fakeClient().initializeResult = 0;
    EXPECT_EQ(run({"-cmdFile", "/dev/null"}), -1);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!initialize remote configuration client"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!initialize shell"}}));
    EXPECT_EQ(output_, "Domain id 0, timeout 15\n");
    EXPECT_EQ(fakeClient().finalizeCount, 0);
}

TEST_F(Main, failsInSilenceWhenTheSignalsCannotBeTakenAgain)
{
    // The log of the service is silent between the start of the client and the session.
    EXPECT_EQ(runWithFault("shell.signal_mask", 2), 1);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(output_, "Domain id 0, timeout 15\n");
}

} // namespace
