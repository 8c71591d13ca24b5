#include "Options.h"

#include <charconv>
#include <cstdio>
#include <functional>
#include <string_view>

namespace responder
{
namespace
{

template <typename Number>
bool readNumber(std::string_view text, Number &number)
{
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc{} && end == text.data() + text.size();
}

struct Row {
    const char *name;
    const char *value; // nullptr for a flag
    const char *description;
    bool (*take)(Options &options, std::string_view value);
};

constexpr Row kRows[] = {
    {"-domainId", "<integer>", "DDS domain to serve, 0 without this",
     [](Options &options, std::string_view value) { return readNumber(value, options.domainId); }},
    {"-name", "<text>",
     "name of this service, S1 without this; a pattern serves all names that match it",
     [](Options &options, std::string_view value) {
         options.name = value;
         return true;
     }},
    {"-delay", "<milliseconds>", "wait before each reply",
     [](Options &options, std::string_view value) {
         std::uint32_t milliseconds = 0;
         const bool isNumber = readNumber(value, milliseconds);
         options.delay = std::chrono::milliseconds(milliseconds);
         return isNumber;
     }},
    {"-error", nullptr, "reply with an error",
     [](Options &options, std::string_view) { return options.isError = true; }},
    {"-silent", nullptr, "take requests and never reply",
     [](Options &options, std::string_view) { return options.isSilent = true; }},
    {"-replySize", "<characters>", "reply with a text of this length in place of an account",
     [](Options &options, std::string_view value) {
         return readNumber(value, options.replySize.emplace());
     }},
    {"-echo", nullptr, "reply with the body of the request, and tell nothing of it",
     [](Options &options, std::string_view) { return options.isEcho = true; }},
    {"-first", "<count>",
     "do all that with the first requests only, and answer those behind it at once",
     [](Options &options, std::string_view value) {
         return readNumber(value, options.treatedCount);
     }},
    {"-help", nullptr, "show this",
     [](Options &options, std::string_view) { return options.isHelp = true; }},
};

const Row *findRow(std::string_view name)
{
    for (const Row &row : kRows) {
        if (name == row.name) {
            return &row;
        }
    }
    return nullptr;
}

} // namespace

std::optional<Options> parseOptions(int argc, char **argv)
{
    Options options;
    for (int index = 1; index < argc; ++index) {
        const char *const name = argv[index];
        const Row *row = findRow(name);
        if (row == nullptr || (row->value != nullptr && ++index == argc) ||
            !row->take(options, row->value != nullptr ? argv[index] : "")) {
            std::fprintf(stderr, "responder: %s %s\n",
                         row == nullptr ? "unknown option" : "bad value for option", name);
            return std::nullopt;
        }
    }
    return options;
}

void printUsage()
{
    std::puts("Usage: responder [options]...\n\n"
              "Answers every administration request with an account of what it got.\n\nOptions:");
    for (const Row &row : kRows) {
        std::printf(" %-10s %-15s %s\n", row.name, row.value != nullptr ? row.value : "",
                    row.description);
    }
}

} // namespace responder
