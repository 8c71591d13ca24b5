// What it costs to get the whole document of a service, a small and a large one, through a command: time, and memory on both
// sides, beside the time in which the service saves it to a file and in which this program writes it to one. Fails when
// a route of the large document costs noticeably more than one of the small one.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "endurance/Service.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "support/Loopback.h"
#include "support/Process.h"
#include "support/Ratio.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr int kSmall = 1000;
constexpr int kLarge = 10000;
constexpr int kRounds = 9;
constexpr int kPatience = 60; // seconds
constexpr double kTimeLimit = 1.5;
constexpr double kMemoryLimit = 1.5;

double millisecondsSince(Clock::time_point start)
{
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// A number of /proc/<id>/status, in KiB.
double statusOf(pid_t process, const std::string &title)
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(title + ":")) {
            return std::strtod(line.c_str() + title.size() + 1, nullptr);
        }
    }
    bench::giveUp("no " + title);
}

// How much more memory a process has at its peak, while `action` runs, than before.
class Peak
{
public:
    explicit Peak(pid_t process) : process_(process)
    {
        std::ofstream("/proc/" + std::to_string(process) + "/clear_refs") << 5;
        before_ = statusOf(process, "VmHWM");
    }
    double growth() const { return statusOf(process_, "VmHWM") - before_; }

private:
    pid_t process_;
    double before_;
};

class Client
{
public:
    Client() : client_(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(), kPatience))
    {
        if (client_ == nullptr || !ZUV_Service_Admin_CommandReply_initialize(&reply_)) {
            bench::giveUp("no client");
        }
        const auto end = Clock::now() + std::chrono::seconds(10);
        while (!BRELRemoteConfigClient_hasMatchingServer(client_)) {
            if (Clock::now() > end) {
                bench::giveUp("the service was not found");
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    ~Client()
    {
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
        BRELRemoteConfigClient_delete(client_);
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    std::string get() { return send(ZUV_Service_Admin_CommandActionKind_GET_ACTION, {}); }
    void save() { send(ZUV_Service_Admin_CommandActionKind_CREATE_ACTION, "resource://config"); }

private:
    std::string send(ZUV_Service_Admin_CommandActionKind action, const std::string &octets)
    {
        ZUV_Service_Admin_CommandRequest request = {};
        request.action = action;
        request.resource_identifier = const_cast<char *>("");
        request.string_body = const_cast<char *>("");
        DDS_OctetSeq_ensure_length(&request.octet_body, 0, 0);
        if (!octets.empty()) {
            const auto size = static_cast<DDS_Long>(octets.size() + 1);
            DDS_OctetSeq_ensure_length(&request.octet_body, size, size);
            std::copy_n(octets.c_str(), size,
                        DDS_OctetSeq_get_contiguous_buffer(&request.octet_body));
        }
        const int isAnswered =
            BRELRemoteConfigClient_sendCommandRequest(client_, &reply_, "S", &request, 1);
        DDS_OctetSeq_finalize(&request.octet_body);
        if (!isAnswered || reply_.retcode != ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE) {
            bench::giveUp(isAnswered ? reply_.string_body : "a command got no reply");
        }
        return reply_.string_body;
    }

    BRELRemoteConfigClient *client_;
    ZUV_Service_Admin_CommandReply reply_;
};

void writeAndSync(const std::string &path, const std::string &text)
{
    const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    for (std::size_t written = 0; written < text.size();) {
        const ssize_t count = write(file, text.data() + written, text.size() - written);
        if (count < 0) {
            bench::giveUp("cannot write " + path);
        }
        written += static_cast<std::size_t>(count);
    }
    fsync(file);
    close(file);
}

struct Cost {
    double octets;
    double getMilliseconds;
    double saveMilliseconds;
    double writeMilliseconds;
    double serviceKiB;
    double clientKiB;
};

template <typename Action>
double timeOf(const Action &action)
{
    std::vector<double> times;
    for (int round = 0; round < kRounds; ++round) {
        const auto start = Clock::now();
        action();
        times.push_back(millisecondsSince(start));
    }
    return bench::median(times);
}

// With processes of its own, so that no memory of a former one is used again.
Cost measure(int routeCount)
{
    const zuv_test::TemporaryFolder folder;
    const std::string path = folder.path("S.xml");
    folder.write("S.xml", zuv_test::documentOf("S", path, routeCount));
    zuv_test::Process service(zuv_test::serviceCommand("S", path));
    if (!service.waitForOutput("ready\n", std::chrono::minutes(1))) {
        bench::giveUp("the service did not start: " + service.errors());
    }
    Client client;
    Cost cost;
    {
        const Peak ofService(service.id());
        const Peak ofClient(getpid());
        cost.octets = static_cast<double>(client.get().size());
        cost.serviceKiB = ofService.growth();
        cost.clientKiB = ofClient.growth();
    }
    std::string text;
    cost.getMilliseconds = timeOf([&] { text = client.get(); });
    cost.saveMilliseconds = timeOf([&] { client.save(); });
    if (zuv_test::contentOf(path) != text + "\n") { // whose end a shell adds
        bench::giveUp("what was got is not what was saved");
    }
    cost.writeMilliseconds = timeOf([&] { writeAndSync(folder.path("copy.xml"), text); });
    std::printf(
        "%6d routes, %8.0f octets: get %7.2f ms, save by the service %7.2f ms, written to a "
        "file %7.2f ms; at the peak %7.0f KiB more in the service, %7.0f KiB in the client\n",
        routeCount, cost.octets, cost.getMilliseconds, cost.saveMilliseconds,
        cost.writeMilliseconds, cost.serviceKiB, cost.clientKiB);
    return cost;
}

} // namespace

int main(int argc, char **argv)
{
    // The client's memory too is measured in a fresh process.
    if (argc == 2) {
        const Cost cost = measure(std::atoi(argv[1]));
        std::printf("cost %.6f %.6f %.6f %.6f\n", cost.octets, cost.getMilliseconds,
                    cost.serviceKiB, cost.clientKiB);
        return EXIT_SUCCESS;
    }
    const auto costOf = [&](int routeCount) {
        const zuv_test::ProcessResult run = zuv_test::runProcess(
            {argv[0], std::to_string(routeCount)}, {}, {}, std::chrono::minutes(2));
        const std::size_t line = run.output.find("cost ");
        Cost cost = {};
        if (run.status != EXIT_SUCCESS || line == std::string::npos) {
            bench::giveUp(run.errors);
        }
        std::fputs(run.output.substr(0, line).c_str(), stdout);
        std::istringstream(run.output.substr(line + 5)) >> cost.octets >> cost.getMilliseconds >>
            cost.serviceKiB >> cost.clientKiB;
        return cost;
    };
    const Cost small = costOf(kSmall);
    const Cost large = costOf(kLarge);
    bench::printTitle("a KiB of the document", "10 000 routes", "1 000 routes");
    const auto holds = [&](const char *what, const char *unit, double factor, double Cost::*member,
                           double limit) {
        return bench::printRatio(what, unit, large.*member * factor / large.octets,
                                 small.*member * factor / small.octets, limit);
    };
    const bool isQuick =
        holds("time of get", "us", 1000.0 * 1024, &Cost::getMilliseconds, kTimeLimit);
    const bool isSmall =
        holds("memory of the service", "KiB", 1024, &Cost::serviceKiB, kMemoryLimit);
    const bool isModest =
        holds("memory of the client", "KiB", 1024, &Cost::clientKiB, kMemoryLimit);
    return isQuick && isSmall && isModest ? EXIT_SUCCESS : EXIT_FAILURE;
}
