// What the command line of the responder asks for.
#ifndef ZUV_TESTS_SUPPORT_RESPONDER_OPTIONS_H
#define ZUV_TESTS_SUPPORT_RESPONDER_OPTIONS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

namespace responder
{

struct Options {
    bool isHelp = false;
    std::int32_t domainId = 0;
    std::string name = "S1";
    // How requests are treated; without any of these each is answered at once, with an account of it.
    std::chrono::milliseconds delay{0};
    bool isError = false;
    bool isSilent = false;
    std::optional<std::uint32_t> replySize; // characters
    bool isEcho = false;                    // goes before all other treatment
    // How many requests are treated so, from the first; those behind it get their account at once.
    std::uint32_t treatedCount = UINT32_MAX;
};

// Nothing, after a line on the standard error, when the command line cannot be used.
std::optional<Options> parseOptions(int argc, char **argv);

void printUsage();

} // namespace responder

#endif
