// The tour that a newcomer sees, from its first byte to its last.
#include <regex>

#include <gtest/gtest.h>

#include "Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;

const std::string kRoot = ZUV_ROOT;

std::string expectedTranscript()
{
    return contentOf(kRoot + "/tests/shell/tour_transcript.txt");
}

TEST(Tour, printsTheTranscript)
{
    Responder service({"-name", "S1"});
    ProcessOptions options;
    options.directory = kRoot;
    const ProcessResult result =
        runProcess(shellCommand({"-domainId", std::to_string(loopbackDomainId()), "-timeout", "5",
                                 "-cmdFile", "examples/tour.txt"}),
                   "", options);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    // The domain is whichever was free.
    EXPECT_EQ(std::regex_replace(result.output, std::regex("^Domain id \\d+"), "Domain id 7"),
              expectedTranscript());
}

TEST(Tour, standsInTheReadmeAsItIs)
{
    const std::string readme = contentOf(kRoot + "/README.md");
    EXPECT_NE(readme.find("```\n" + expectedTranscript() + "```\n"), std::string::npos)
        << "scripts/update-transcript.sh brings it there";
}

} // namespace
