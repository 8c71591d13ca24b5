// The tour that a newcomer sees, from its first byte to its last.
#include <filesystem>
#include <regex>

#include "ServiceTest.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;

const std::string kRoot = ZUV_ROOT;

std::string expectedTranscript()
{
    return contentOf(kRoot + "/tests/service/tour_transcript.txt");
}

// In a folder where the paths of the tour lead to the same as in that of the repository.
TEST(Tour, printsTheTranscript)
{
    const TemporaryFolder folder;
    std::filesystem::create_directories(folder.path("build/tour"));
    std::filesystem::create_directory_symlink(kRoot + "/examples", folder.path("examples"));
    RunningService service(folder, {"-cfgFile", "examples/configurations/bridge.xml", "-appName",
                                    "S1", "-D", "STATE_FOLDER=build/tour"});
    ProcessOptions options;
    options.directory = folder.path();
    const ProcessResult result =
        runProcess(shellCommand({"-domainId", std::to_string(loopbackDomainId()), "-timeout", "5",
                                 "-cmdFile", "examples/tour.txt"}),
                   "", options);
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.errors, "");
    const std::string saved = "build/tour/bridge_saved.xml";
    // The domain is whichever was free.
    EXPECT_EQ(std::regex_replace(result.output, std::regex("^Domain id \\d+"), "Domain id 7") +
                  "\n" + saved + ":\n" + folder.read(saved),
              expectedTranscript());
    EXPECT_EQ(service.wait(), 0);
}

TEST(Tour, standsInTheReadmeAsItIs)
{
    const std::string readme = contentOf(kRoot + "/README.md");
    EXPECT_NE(readme.find("```\n" + expectedTranscript() + "```\n"), std::string::npos)
        << "scripts/update-transcript.sh brings it there";
}

} // namespace
