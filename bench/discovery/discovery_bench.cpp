// How long it takes from the start of a process until its service is found, the service running already: the shell's
// client and the example service beside the same endpoints on the middleware alone, in turns.
// discovery_bench [STARTS]. Fails when the ratio or one start is above its limit.
#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "Instant.h"
#include "support/Loopback.h"
#include "support/Process.h"
#include "support/Ratio.h"

namespace
{

constexpr double kMedianLimit = 1.1;
constexpr double kLongestLimit = 300; // milliseconds

// Of the middleware alone one start in some hundreds finds nobody: it is made again.
constexpr int kMaxLostBareStarts = 2;

// Milliseconds until the client says that it has found its service; nothing if it found none.
std::optional<double> findService(const char *client, const std::string &domain)
{
    const std::int64_t start = bench::nanosecondsNow();
    const zuv_test::ProcessResult result = zuv_test::runProcess({client, domain});
    if (result.status != EXIT_SUCCESS) {
        return std::nullopt;
    }
    return static_cast<double>(std::atoll(result.output.c_str()) - start) / 1e6;
}

double findServiceOfOurs(const std::string &domain)
{
    const std::optional<double> time = findService(CLIENT, domain);
    if (!time) {
        bench::giveUp("the client found no service");
    }
    return *time;
}

double findBareService(const std::string &domain, int &lostCount)
{
    for (;;) {
        if (const std::optional<double> time = findService(BARE_CLIENT, domain)) {
            return *time;
        }
        if (++lostCount > kMaxLostBareStarts) {
            bench::giveUp("the bare client found no service");
        }
    }
}

double longest(const std::vector<double> &times)
{
    return *std::max_element(times.begin(), times.end());
}

} // namespace

int main(int argc, char **argv)
{
    const int startCount = argc > 1 ? std::max(1, std::atoi(argv[1])) : 50;
    const std::string domain = std::to_string(zuv_test::loopbackDomainId());
    zuv_test::Process service({RESPONDER, "-domainId", domain});
    zuv_test::Process bareService({BARE_SERVICE, domain, "4", "bare"});
    if (!service.waitForOutput("ready\n") || !bareService.waitForOutput("ready\n")) {
        bench::giveUp("no service: " + service.errors() + bareService.errors());
    }
    int lostCount = 0;
    findServiceOfOurs(domain);
    findBareService(domain, lostCount);
    std::vector<double> ours;
    std::vector<double> bare;
    for (int start = 0; start < startCount; ++start) {
        ours.push_back(findServiceOfOurs(domain));
        bare.push_back(findBareService(domain, lostCount));
    }
    bench::printTitle(std::to_string(startCount) + " starts until a service is found", "client",
                      "bare");
    const bool isFast =
        bench::printRatio("median", "ms", bench::median(ours), bench::median(bare), kMedianLimit);
    const bool isSteady =
        bench::printBound("longest", "ms", longest(ours), longest(bare), kLongestLimit);
    return isFast && isSteady ? EXIT_SUCCESS : EXIT_FAILURE;
}
