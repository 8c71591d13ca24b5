// The options, as the operator and the calling process see them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

// What main() calls -1.
constexpr int kRefused = 255;

constexpr const char *kHelp = "Usage: zuvbsh [options]...\n"
                              "\n"
                              "Options:\n"
                              " -domainId  <integer>   Domain ID for the remote configuration\n"
                              " -timeout   <seconds>   Max time to wait for a remote response\n"
                              " -cmdFile   <file>      Run commands in this file\n"
                              " -help                  Displays this information\n";

class HelpRequest : public testing::TestWithParam<std::vector<std::string>>
{
};

TEST_P(HelpRequest, printsTheHelpAndNothingElse)
{
    const ProcessResult result = runProcess(shellCommand(GetParam()));
    EXPECT_EQ(result.status, kRefused);
    const std::size_t end = result.output.find('\n') + 1;
    EXPECT_THAT(result.output, StartsWith("ZUV Brel Service Shell "));
    EXPECT_EQ(result.output.substr(end), kHelp);
    EXPECT_THAT(result.errors, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Anywhere, HelpRequest,
                         testing::Values(std::vector<std::string>{"-help"},
                                         std::vector<std::string>{"-h"},
                                         std::vector<std::string>{"-HELP"},
                                         std::vector<std::string>{"-H"},
                                         std::vector<std::string>{"-foo", "bar", "-h"},
                                         std::vector<std::string>{"-domainId", "-Help"}));

struct BadCommandLine {
    std::vector<std::string> arguments;
    std::string named; // in the log
};

class BadOption : public testing::TestWithParam<BadCommandLine>
{
};

TEST_P(BadOption, isNamedOnTheStandardErrorAndRefused)
{
    const ProcessResult result = runProcess(shellCommand(GetParam().arguments));
    EXPECT_EQ(result.status, kRefused);
    EXPECT_THAT(result.errors, HasSubstr(GetParam().named));
    EXPECT_THAT(result.errors, HasSubstr("get command-line parameters"));
    EXPECT_THAT(result.output, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Each, BadOption,
    testing::Values(BadCommandLine{{"foo"}, "bad command-line parameter 'foo'"},
                    BadCommandLine{{"-foo"}, "bad command-line parameter 'foo'"},
                    BadCommandLine{{"-helpme"}, "bad command-line parameter 'helpme'"},
                    BadCommandLine{{"-he"}, "bad command-line parameter 'he'"},
                    BadCommandLine{{"-domainId"}, "bad command-line parameter 'domainId'"},
                    BadCommandLine{{"-timeout", "5", "-d"}, "bad command-line parameter 'd'"},
                    BadCommandLine{{"-domainId", "abc"}, "bad command-line parameter 'domainId'"},
                    BadCommandLine{{"-cmdFile", "/nowhere/at/all"},
                                   "Could not open file /nowhere/at/all"}));

TEST(CommandLine, anImpossibleDomainIsTheMiddlewaresToRefuse)
{
    const ProcessResult result = runProcess(shellCommand({"-domainId", "-5"}));
    EXPECT_EQ(result.status, kRefused);
    EXPECT_EQ(result.output, "Domain id -5, timeout 15\n");
    EXPECT_THAT(result.errors, HasSubstr("participant"));
    EXPECT_THAT(result.errors, HasSubstr("initialize remote configuration client"));
    EXPECT_THAT(result.errors, HasSubstr("initialize shell"));
}

TEST(CommandLine, takesPrefixesInAnyCaseAndTheLastValueOfAnOption)
{
    const std::string domain = std::to_string(loopbackDomainId());
    Process shell(shellCommand({"-D", "1000", "-TIME", "3x", "-t", "7", "-dom", domain}));
    EXPECT_TRUE(shell.waitForOutput(kPrompt));
    EXPECT_THAT(shell.output(), StartsWith(startLine(loopbackDomainId(), 7)));
    shell.write("exit\n");
    EXPECT_EQ(shell.wait(), 0);
}

} // namespace
