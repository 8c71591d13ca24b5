// The tour that a newcomer sees, from its first byte to its last.
#include <filesystem>
#include <regex>
#include <sstream>

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

// The words of the list that "help" prints.
std::vector<std::string> commandsOfHelp(const std::string &transcript)
{
    std::vector<std::string> words;
    std::istringstream lines(transcript.substr(transcript.find("Commands:\n")));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line) && !line.empty()) {
        words.push_back(line.substr(0, line.find(' ')));
    }
    return words;
}

TEST(Tour, showsEveryCommand)
{
    const std::string tour = "\n" + contentOf(kRoot + "/examples/tour.txt");
    const std::vector<std::string> commands = commandsOfHelp(expectedTranscript());
    EXPECT_EQ(commands.size(), 14U);
    for (const std::string &command : commands) {
        EXPECT_TRUE(tour.find("\n" + command + " ") != std::string::npos ||
                    tour.find("\n" + command + "\n") != std::string::npos)
            << command;
    }
}

TEST(Tour, standsInTheReadmeAsItIs)
{
    const std::string readme = contentOf(kRoot + "/README.md");
    EXPECT_NE(readme.find("```\n" + expectedTranscript() + "```\n"), std::string::npos)
        << "scripts/update-transcript.sh brings it there";
}

} // namespace
