// The service as a process: its options, how it ends, what it leaves.
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>

#include "ServiceTest.h"
#include "support/Eventually.h"
#include "support/Loopback.h"

namespace zuv_test
{
namespace
{

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

// What of the shared memory the process uses.
std::vector<std::string> segmentsOf(pid_t id)
{
    std::vector<std::string> paths;
    std::ifstream maps("/proc/" + std::to_string(id) + "/maps");
    for (std::string line; std::getline(maps, line);) {
        const std::size_t place = line.find("/dev/shm/");
        if (place != line.npos) {
            paths.push_back(line.substr(place));
        }
    }
    return paths;
}

std::set<std::string> sharedMemory()
{
    std::set<std::string> paths;
    for (const auto &file : std::filesystem::directory_iterator("/dev/shm")) {
        paths.insert(file.path());
    }
    return paths;
}

// Data comes in at few ports, so that one which the service knew may be somebody else's by now.
bool isUsed(const std::string &segment)
{
    for (const auto &process : std::filesystem::directory_iterator("/proc")) {
        const pid_t id = std::atoi(process.path().filename().c_str());
        if (id > 0) {
            const std::vector<std::string> used = segmentsOf(id);
            if (std::find(used.begin(), used.end(), segment) != used.end()) {
                return true;
            }
        }
    }
    return false;
}

class Service : public ServiceTest
{
protected:
    // The line of the log that is no failure of a command, and the whole output.
    static std::string greeting(const std::string &name)
    {
        return name + " is administered in domain " + std::to_string(loopbackDomainId()) +
               "\nready\n";
    }
    // Of what was there before, a process that was killed may be the last user.
    void expectNothingLeft(const std::vector<std::string> &segments,
                           const std::set<std::string> &before)
    {
        ASSERT_FALSE(segments.empty());
        for (const std::string &path : segments) {
            if (before.contains(path)) {
                continue;
            }
            EXPECT_TRUE(eventually([&] { return !std::filesystem::exists(path) || isUsed(path); }))
                << path;
        }
    }
    void closeShell()
    {
        shell->write("exit\n");
        EXPECT_EQ(shell->wait(), 0);
        EXPECT_EQ(shell->errors(), "");
    }
};

TEST_F(Service, endsByCommandAndLeavesNothing)
{
    const std::set<std::string> before = sharedMemory();
    start();
    const std::vector<std::string> segments = segmentsOf(service->id());
    EXPECT_EQ(ask("shutdown S1"), result("shutting down"));
    EXPECT_EQ(service->wait(), 0);
    EXPECT_EQ(service->output(), greeting("S1"));
    EXPECT_EQ(service->errors(), "");
    closeShell();
    expectNothingLeft(segments, before);
}

TEST_F(Service, endsBySignalAndLeavesNothing)
{
    for (const int number : {SIGTERM, SIGINT}) {
        const std::set<std::string> before = sharedMemory();
        start();
        EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
        const std::vector<std::string> segments = segmentsOf(service->id());
        service->signal(number);
        EXPECT_EQ(service->wait(), 0);
        EXPECT_EQ(service->output(), greeting("S1"));
        EXPECT_EQ(service->errors(), "");
        closeShell();
        expectNothingLeft(segments, before);
        EXPECT_EQ(folder.files(), (std::vector<std::string>{"saved.xml", "site.xml"}));
    }
}

TEST_F(Service, leavesTheControlCOfItsTerminalToTheShellWhenItIsToldTo)
{
    folder.write("site.xml", kSite);
    RunningService deaf(folder, {"-cfgFile", "site.xml"}, {SIGINT});
    deaf.signal(SIGINT);
    EXPECT_EQ(deaf.wait(Process::Duration{500}), std::nullopt);
    deaf.signal(SIGTERM);
    EXPECT_EQ(deaf.wait(), 0);
}

TEST_F(Service, beginsAgainWithWhatItHasSaved)
{
    start();
    ask("update S1 topic_route.publish_with_original_info=true");
    ask("create S1 domain_route none");
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
    const std::string last = document();
    EXPECT_EQ(ask("shutdown S1"), result("shutting down"));
    EXPECT_EQ(service->wait(), 0);
    start(folder.read("saved.xml"));
    EXPECT_EQ(document(), last);
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
    EXPECT_EQ("Result: " + folder.read("saved.xml"), last);
}

TEST_F(Service, tellsItsLogWhatItRefuses)
{
    start();
    ask("get S1 dr2");
    EXPECT_TRUE(service->waitForError("ERROR carryOut: !process remote command: get\n"));
    EXPECT_EQ(service->errors(), "ERROR find: unknown resource=dr2. Did you mean 'dr1'?\n"
                                 "ERROR carryOut: !process remote command: get\n");
}

TEST_F(Service, isCalledAsItsConfigurationUnlessItIsToldOtherwise)
{
    folder.write("site.xml", "<dds><brel_service name='a'/><brel_service name='b'>"
                             "<administration/></brel_service></dds>");
    const RunningService named(folder, {"-cfgFile", "site.xml", "-cfgName", "b"});
    EXPECT_EQ(named.output(), greeting("b"));
    const RunningService pattern(folder,
                                 {"-cfgFile", "site.xml", "-cfgName", "a", "-appName", "S*"});
    shell = std::make_unique<Session>(10, ProcessOptions{});
    shell->letDiscover();
    EXPECT_EQ(ask("get b b"),
              result("<brel_service name=\"b\">\n    <administration/>\n</brel_service>"));
    EXPECT_EQ(ask("get S27 a"), result("<brel_service name=\"a\"/>"));
}

TEST_F(Service, takesItsDomainFromTheConfigurationAndAddsItsBase)
{
    const int base = loopbackDomainId() - 1;
    std::string document = kSite;
    document.replace(document.find("<domain_id>0"), 12, "<domain_id>1");
    folder.write("site.xml", document);
    ProcessOptions options;
    options.directory = folder.path();
    Process based({BREL_SERVICE, "-skipDefaultFiles", "-cfgFile", "site.xml", "-domainIdBase",
                   std::to_string(base)},
                  options);
    EXPECT_TRUE(based.waitForOutput("ready\n"));
    EXPECT_EQ(based.output(), greeting("bridge"));
}

TEST_F(Service, replacesVariables)
{
    std::string document = kSite;
    document.replace(document.find("saved.xml"), 9, "$(FILE)");
    start(document, {"-D", "FILE=other=1.xml"});
    EXPECT_EQ(ask("save S1"), result("saved to other=1.xml"));
}

TEST_F(Service, findsTheFileInItsWorkingFolder)
{
    folder.write("USER_BREL_SERVICE.xml", kSite);
    ProcessOptions options;
    options.directory = folder.path();
    Process found({BREL_SERVICE, "-domainId", std::to_string(loopbackDomainId())}, options);
    EXPECT_TRUE(found.waitForOutput("ready\n"));
    EXPECT_EQ(found.output(), greeting("bridge"));
}

class ServiceThatCannotStart : public Service
{
protected:
    ProcessResult run(const std::vector<std::string> &arguments)
    {
        ProcessOptions options;
        options.directory = folder.path();
        return runProcess(serviceCommand(arguments), "", options);
    }
    void refusesToStart(const std::vector<std::string> &arguments, const std::string &errors)
    {
        const ProcessResult outcome = run(arguments);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_EQ(outcome.errors, errors);
    }
};

TEST_F(ServiceThatCannotStart, namesTheOptionThatItCannotUse)
{
    const std::string hint = "Try 'brel_service -help'.\n";
    refusesToStart({"-foo"}, "brel_service: unknown option -foo\n" + hint);
    for (const std::vector<std::string> &bad : {std::vector<std::string>{"-domainId", "-1"},
                                                {"-domainId", "1x"},
                                                {"-domainIdBase", ""},
                                                {"-verbosity", "4"},
                                                {"-D", "NAME"},
                                                {"-D", "=1"},
                                                {"-cfgFile"}}) {
        refusesToStart(bad, "brel_service: bad value for option " + bad[0] + "\n" + hint);
    }
}

TEST_F(ServiceThatCannotStart, tellsWhatItsConfigurationLacks)
{
    refusesToStart({}, "ERROR choose: !choose one of 0 services without its name\n");
    refusesToStart({"-cfgFile", "none.xml"},
                   "ERROR readGroup: !find file 'none.xml'\n"
                   "ERROR BRELCfgFileParser_loadUrlGroup: !parse URL group\n");
    folder.write("two.xml", "<dds><brel_service name='a'/><brel_service name='b'/></dds>");
    refusesToStart({"-cfgFile", "two.xml"},
                   "ERROR choose: !choose one of 2 services without its name\n");
    refusesToStart({"-cfgFile", "two.xml", "-cfgName", "aa"},
                   "ERROR choose: unknown resource=aa. Did you mean 'a'?\n");
    ProcessOptions options;
    options.directory = folder.path();
    const ProcessResult unreachable = runProcess(
        {BREL_SERVICE, "-skipDefaultFiles", "-cfgFile", "two.xml", "-cfgName", "a"}, "", options);
    EXPECT_EQ(unreachable.status, 1);
    EXPECT_EQ(unreachable.errors,
              "ERROR take: !be administered: the service has no administration, and there is no "
              "option -domainId\n");
}

TEST_F(ServiceThatCannotStart, hasANameThatNoFilterCanHold)
{
    folder.write("site.xml", kSite);
    for (const std::string &name : {std::string("it's"), std::string(204, 'x')}) {
        const ProcessResult outcome = run({"-cfgFile", "site.xml", "-appName", name});
        EXPECT_EQ(outcome.status, 1);
        EXPECT_EQ(outcome.output, "");
        EXPECT_THAT(outcome.errors, EndsWith("!initialize BRELCommandHandler\n"
                                             "ERROR startHandler: !create BRELCommandHandler\n"));
    }
}

TEST_F(ServiceThatCannotStart, mayTellAboutItself)
{
    const ProcessResult help = run({"-help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.errors, "");
    EXPECT_THAT(help.output, StartsWith("Usage: brel_service [options]..."));
    for (const char *const option :
         {"-cfgFile", "-cfgName", "-appName", "-domainId", "-domainIdBase", "-D",
          "-skipDefaultFiles", "-noValidation", "-verbosity", "-listConfig"}) {
        EXPECT_THAT(help.output, HasSubstr(std::string("\n ") + option + " "));
    }
    folder.write("site.xml", kSite);
    const ProcessResult list = run({"-cfgFile", "site.xml", "-listConfig"});
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(list.errors, "");
    EXPECT_EQ(list.output, "Available configurations:\n- bridge (site.xml)\n");
}

} // namespace
} // namespace zuv_test
