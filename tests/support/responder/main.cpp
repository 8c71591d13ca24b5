// The service's end of the protocol and nothing behind it, for tests and benchmarks: it obeys nothing and answers every
// request with a readable account of what it got. It says "ready" when it listens, one line for each request, and
// stops on SIGTERM or SIGINT.
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "Options.h"
#include "Service.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"

namespace
{

volatile std::sig_atomic_t g_stop = 0;

void requestStop(int)
{
    g_stop = 1;
}

// A signal that is ignored stays so: behind a script, Ctrl-C is the shell's and does not end the service.
void stopOn(int number)
{
    if (std::signal(number, requestStop) == SIG_IGN) {
        std::signal(number, SIG_IGN);
    }
}

bool run(const responder::Options &options)
{
    // How long after a signal the service stops, at most.
    constexpr std::chrono::milliseconds patience{200};

    responder::Service service(options);
    if (!service.start()) {
        return false;
    }
    std::puts("ready");
    while (g_stop == 0) {
        if (!service.serve(patience)) {
            return false;
        }
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    BRELLog_setUp();
    const auto options = responder::parseOptions(argc, argv);
    if (!options) {
        std::fputs("Try 'responder -help'.\n", stderr);
        return EXIT_FAILURE;
    }
    if (options->isHelp) {
        responder::printUsage();
        return EXIT_SUCCESS;
    }
    stopOn(SIGTERM);
    stopOn(SIGINT);
    const bool isGood = run(*options);
    DDS_DomainParticipantFactory_finalize_instance();
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
