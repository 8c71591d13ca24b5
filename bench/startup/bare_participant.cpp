// One participant with one writer and one reader that comes and goes: the least that any program pays that
// asks over DDS. bare_participant DOMAIN
#include <cstdlib>

#include "support/BareEndpoints.h"

int main(int argc, char **argv)
{
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    const bench::BareEndpoints endpoints(std::atoi(argv[1]), bench::Side::kAsking);
    return EXIT_SUCCESS;
}
