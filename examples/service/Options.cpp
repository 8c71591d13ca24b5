#include "Options.h"

#include <charconv>
#include <cstdio>
#include <string>
#include <string_view>

#include "platform/kolm/Logger.h"

namespace service
{
namespace
{

// `least` is the smallest number that makes sense.
bool readNumber(std::string_view text, int least, int &number)
{
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end && number >= least;
}

bool readVerbosity(std::string_view text, int &mask)
{
    // Errors at least: the replies tell what is reported.
    constexpr unsigned kMasks[] = {
        KOLM_CONFIG_LOG_VERBOSITY_ERROR, KOLM_CONFIG_LOG_VERBOSITY_WARNING,
        KOLM_CONFIG_LOG_VERBOSITY_STATUS_LOCAL, KOLM_CONFIG_LOG_VERBOSITY_STATUS_ALL};
    int level = 0;
    if (!readNumber(text, 0, level) || level > 3) {
        return false;
    }
    mask = static_cast<int>(kMasks[level]);
    return true;
}

bool addVariable(ZUV_BrelServiceProperties &variables, std::string_view text)
{
    const std::size_t sign = text.find('=');
    if (sign == text.npos || sign == 0) {
        return false;
    }
    return ZUV_BrelServiceProperties_assert(&variables, std::string(text.substr(0, sign)).c_str(),
                                            text.data() + sign + 1) != 0;
}

struct Row {
    const char *name;
    const char *value; // nullptr for a flag
    const char *description;
    bool (*take)(Options &options, const char *value);
};

constexpr Row kRows[] = {
    {"-cfgFile", "<urls>", "documents to load behind the standard ones: [a|b];c",
     [](Options &options, const char *value) {
         options.property.cfg_file = value;
         return true;
     }},
    {"-cfgName", "<name>", "the service in them to run; needed when there are several",
     [](Options &options, const char *value) {
         options.property.service_name = value;
         return true;
     }},
    {"-appName", "<name>", "the name that commands are sent to; without this -cfgName",
     [](Options &options, const char *value) {
         options.property.application_name = value;
         return true;
     }},
    {"-domainId", "<integer>", "be administered in this domain, whatever the documents say",
     [](Options &options, const char *value) {
         options.property.enable_administration = DDS_BOOLEAN_TRUE;
         return readNumber(value, 0, options.property.administration_domain_id);
     }},
    {"-domainIdBase", "<integer>", "added to the domain that the documents say",
     [](Options &options, const char *value) {
         return readNumber(value, 0, options.property.domain_id_base);
     }},
    {"-D", "<name>=<value>", "value of a variable of the documents; any number",
     [](Options &options, const char *value) {
         return addVariable(options.property.user_environment, value);
     }},
    {"-skipDefaultFiles", nullptr, "load no document that is not named here",
     [](Options &options, const char *) {
         options.property.skip_default_files = DDS_BOOLEAN_TRUE;
         return true;
     }},
    {"-noValidation", nullptr, "do not hold documents and updates to the schema",
     [](Options &options, const char *) {
         options.property.enforce_xsd_validation = DDS_BOOLEAN_FALSE;
         return true;
     }},
    {"-verbosity", "<0..3>", "errors (0, without this), warnings, status, everything",
     [](Options &options, const char *value) {
         return readVerbosity(value, options.property.service_verbosity);
     }},
    {"-listConfig", nullptr, "list the services in the documents and end",
     [](Options &options, const char *) { return options.isListing = true; }},
    {"-help", nullptr, "show this and end",
     [](Options &options, const char *) { return options.isHelp = true; }},
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

Options::Options()
{
    ZUV_BrelServiceProperties_initialize(&property.user_environment);
    property.enforce_xsd_validation = DDS_BOOLEAN_TRUE;
    property.service_verbosity = KOLM_CONFIG_LOG_VERBOSITY_ERROR;
}

Options::~Options()
{
    ZUV_BrelServiceProperties_finalize(&property.user_environment);
}

bool Options::parse(int argc, char **argv)
{
    executablePath = argv[0];
    for (int index = 1; index < argc; ++index) {
        const char *const name = argv[index];
        const Row *const row = findRow(name);
        if (row == nullptr || (row->value != nullptr && ++index == argc) ||
            !row->take(*this, row->value != nullptr ? argv[index] : nullptr)) {
            std::fprintf(stderr, "brel_service: %s %s\n",
                         row == nullptr ? "unknown option" : "bad value for option", name);
            return false;
        }
    }
    return true;
}

void Options::printUsage()
{
    std::puts("Usage: brel_service [options]...\n\n"
              "Runs the configuration of a service, without moving data, and obeys zuvbsh.\n\n"
              "Options:");
    for (const Row &row : kRows) {
        std::printf(" %-17s %-14s %s\n", row.name, row.value != nullptr ? row.value : "",
                    row.description);
    }
}

} // namespace service
