// Answers every sample with its first octets, on the middleware alone, until its parent ends it.
// bare_echo DOMAIN REPLY_SIZE NAME [untuned]
#include <cstdio>
#include <cstdlib>

#include "support/BareEndpoints.h"

int main(int argc, char **argv)
{
    constexpr std::chrono::seconds kPatience{60};
    if (argc < 4) {
        return EXIT_FAILURE;
    }
    const auto replySize = static_cast<std::size_t>(std::atol(argv[2]));
    bench::BareEndpoints endpoints(
        std::atoi(argv[1]), bench::Side::kAnswering,
        argc > 4 ? bench::Transports::kUntuned : bench::Transports::kProfile, argv[3]);
    std::puts("ready");
    std::fflush(stdout);
    bench::Octets sample;
    if (endpoints.waitForMatch(kPatience)) {
        while (endpoints.receive(sample, kPatience)) {
            sample.resize(replySize);
            endpoints.write(sample);
        }
    }
    return EXIT_SUCCESS;
}
