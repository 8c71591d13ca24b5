// What the command line of the service asks for.
#ifndef ZUV_EXAMPLES_SERVICE_OPTIONS_H
#define ZUV_EXAMPLES_SERVICE_OPTIONS_H

#include <cstdint>

#include "config/ServiceProperty.h"

namespace service
{

// Texts are borrowed from the command line.
class Options
{
public:
    Options();
    ~Options();
    Options(const Options &) = delete;
    Options &operator=(const Options &) = delete;

    // False, after a line on the standard error, when the command line cannot be used.
    bool parse(int argc, char **argv);
    static void printUsage();

    ZUV_BrelServiceProperty property = {}; // the record that a parser is made with
    const char *executablePath = ".";
    bool isHelp = false;
    bool isListing = false;
};

} // namespace service

#endif
