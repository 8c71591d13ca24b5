// What ./run does beside showing the tour: with wrong arguments, when it is interrupted, and when its terminal goes away.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "ServiceTest.h"
#include "support/Eventually.h"
#include "support/Loopback.h"

namespace zuv_test
{
namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

const std::string kRoot = ZUV_ROOT;

// A process and all that it has started, itself included.
void addFamily(pid_t process, std::vector<pid_t> &family)
{
    family.push_back(process);
    const std::string id = std::to_string(process);
    std::istringstream children(contentOf("/proc/" + id + "/task/" + id + "/children"));
    for (pid_t child = 0; children >> child;) {
        addFamily(child, family);
    }
}

// One that has ended may wait for somebody to ask for its status.
bool isAlive(pid_t process)
{
    std::ifstream file("/proc/" + std::to_string(process) + "/stat");
    std::string line;
    std::getline(file, line);
    const std::size_t name = line.rfind(')');
    return name != line.npos && line.compare(name, 3, ") Z") != 0;
}

// The script in a folder that looks like that of the repository, with the programs of this build: nothing is built, and
// nothing installed.
class Run : public testing::Test
{
protected:
    Run()
    {
        namespace files = std::filesystem;
        // The script chooses a domain of its own, and its programs stay on this machine.
        static_cast<void>(loopbackDomainId());
        files::create_symlink(kRoot + "/run", folder_.path("run"));
        files::create_directory_symlink(kRoot + "/examples", folder_.path("examples"));
        files::create_directories(folder_.path("scripts"));
        files::create_symlink(kRoot + "/scripts/reserve-domain.sh",
                              folder_.path("scripts/reserve-domain.sh"));
        files::create_symlink(kRoot + "/scripts/steps.sh", folder_.path("scripts/steps.sh"));
        files::create_symlink("/bin/true", folder_.path("scripts/install-packages.sh"));
        files::create_directories(folder_.path("path"));
        files::create_symlink("/bin/true", folder_.path("path/cmake"));
        files::create_directories(folder_.path("build/release/bin"));
        files::create_symlink(ZUVBSH, folder_.path("build/release/bin/zuvbsh"));
        files::create_symlink(BREL_SERVICE, folder_.path("build/release/bin/brel_service"));
        options_.onTerminal = true;
        options_.environment = {"PATH=" + folder_.path("path") + ":" + std::getenv("PATH")};
    }

    std::vector<std::string> command(std::vector<std::string> arguments = {}) const
    {
        arguments.insert(arguments.begin(), folder_.path("run"));
        return arguments;
    }

    // Whatever happens, they do not outlive the test.
    ~Run() override
    {
        for (const pid_t process : family_) {
            if (isAlive(process)) {
                kill(process, SIGKILL);
            }
        }
    }

    // The script and all that it has started by now.
    std::size_t meetFamily(const Process &process)
    {
        addFamily(process.id(), family_);
        return family_.size();
    }
    bool isFamilyGone() const
    {
        return eventually([&] { return std::none_of(family_.begin(), family_.end(), isAlive); });
    }

    std::vector<pid_t> family_;
    TemporaryFolder folder_;
    ProcessOptions options_;
};

TEST_F(Run, refusesAnOptionThatItDoesNotKnow)
{
    options_.onTerminal = false;
    const ProcessResult result = runProcess(command({"-tour"}), "", options_);
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errors, StartsWith("Unknown option: -tour\nUsage: ./run [--tour]"));
    EXPECT_FALSE(std::filesystem::exists(folder_.path("build/run-configure.log")))
        << "it has begun all the same";
}

TEST_F(Run, leavesControlCToTheShellAndEndsAllWithIt)
{
    Process run(command(), options_);
    ASSERT_TRUE(run.waitForOutput(kPrompt)) << run.errors();
    EXPECT_EQ(meetFamily(run), 3U) << "the script, the service and the shell";
    ASSERT_TRUE(run.write("get S1 nothing"));
    // The prompt is seen a moment before the shell awaits input, and only what awaits is interrupted.
    bool isAbandoned = false;
    for (int tries = 0; tries < 20 && !isAbandoned; ++tries) {
        run.watch(Process::Duration{100});
        ASSERT_TRUE(run.typeControl(3));
        isAbandoned = run.waitForOutput(kPrompt, Process::Duration{1000});
    }
    ASSERT_TRUE(isAbandoned) << "the session goes on";
    // A shell sends at once, whether or not it has found the service yet.
    bool isAnswered = false;
    for (int tries = 0; tries < 3 && !isAnswered; ++tries) {
        ASSERT_TRUE(run.write("get S1 dr1::s1::all\n"));
        ASSERT_TRUE(run.waitForOutput(kPrompt)) << run.output();
        isAnswered =
            run.output().find("Result: <auto_topic_route name=\"all\">") != std::string::npos;
    }
    EXPECT_TRUE(isAnswered) << run.output();
    ASSERT_TRUE(run.write("exit\n"));
    EXPECT_EQ(run.wait(), 0);
    EXPECT_TRUE(isFamilyGone());
}

TEST_F(Run, endsAllAtControlCBeforeTheSession)
{
    // A service that never gets ready.
    std::filesystem::remove(folder_.path("build/release/bin/brel_service"));
    folder_.write("build/release/bin/brel_service", "#!/bin/sh\necho begun\nexec sleep 60\n");
    std::filesystem::permissions(folder_.path("build/release/bin/brel_service"),
                                 std::filesystem::perms::owner_all);
    Process run(command(), options_);
    ASSERT_TRUE(
        eventually([&] { return folder_.read("build/run-service.log").starts_with("begun"); }));
    EXPECT_GE(meetFamily(run), 2U);
    ASSERT_TRUE(run.typeControl(3));
    EXPECT_EQ(run.wait(), 128 + SIGINT);
    EXPECT_TRUE(isFamilyGone());
}

TEST_F(Run, endsAllWhenItsTerminalGoesAway)
{
    Process run(command(), options_);
    ASSERT_TRUE(run.waitForOutput(kPrompt)) << run.errors();
    EXPECT_EQ(meetFamily(run), 3U);
    run.hangUp();
    EXPECT_EQ(run.wait(), 128 + SIGHUP);
    EXPECT_TRUE(isFamilyGone());
}

TEST_F(Run, endsAllWhenItIsEnded)
{
    Process run(command({"--", "-timeout", "4"}), options_);
    ASSERT_TRUE(run.waitForOutput(kPrompt)) << run.errors();
    EXPECT_EQ(meetFamily(run), 3U);
    run.signal(SIGTERM);
    EXPECT_EQ(run.wait(), 128 + SIGTERM);
    EXPECT_TRUE(isFamilyGone());
}

TEST_F(Run, passesArgumentsOnToTheShellInATourToo)
{
    options_.onTerminal = false;
    const ProcessResult result = runProcess(command({"--", "-timeout", "4"}), "", options_);
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_THAT(result.output, HasSubstr(", timeout 4\n"));
    EXPECT_THAT(result.output, HasSubstr("shutdown S1"));
    EXPECT_THAT(result.output, HasSubstr("bridge_saved.xml:\n"));

    std::ofstream(folder_.path("own.txt")) << "get S1\nexit\n";
    const ProcessResult own =
        runProcess(command({"--tour", "--", "-cmdFile", "own.txt"}), "", options_);
    EXPECT_EQ(own.status, 0) << own.errors;
    EXPECT_THAT(own.output, HasSubstr("get S1"));
    EXPECT_THAT(own.output, Not(HasSubstr("bridge_saved.xml:")));
}

} // namespace
} // namespace zuv_test
