// A service as a process of its own, for tests that make the memory or the middleware of theirs fail: it answers
// every request with "done" in the domain of its one argument, until its standard input ends.
#include <cstdio>
#include <cstdlib>

#include "TestService.h"

int main(int argc, char **argv)
{
    if (argc != 2) {
        std::fputs("usage: remote_config_test_service <domain>\n", stderr);
        return EXIT_FAILURE;
    }
    zuv_test::TestService service(
        [](const zuv_test::ReceivedRequest &) { return zuv_test::Answer{}; }, std::atoi(argv[1]));
    service.setTerse(true);
    std::puts("ready");
    std::fflush(stdout);
    while (std::getchar() != EOF) {
    }
    return EXIT_SUCCESS;
}
