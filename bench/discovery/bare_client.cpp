// One participant with one writer and one reader, from the start of the process until both are matched; prints when
// that was. bare_client DOMAIN
#include <cstdlib>

#include "Instant.h"
#include "support/BareEndpoints.h"

int main(int argc, char **argv)
{
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    bench::BareEndpoints endpoints(std::atoi(argv[1]), bench::Side::kAsking);
    const bool isMatched = endpoints.waitForMatch(std::chrono::seconds(10));
    if (isMatched) {
        bench::printInstant();
    }
    return isMatched ? EXIT_SUCCESS : EXIT_FAILURE;
}
