#include "Service.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "support/Loopback.h"

namespace zuv_test
{

std::string documentOf(const std::string &name, const std::string &savePath, int routeCount)
{
    std::ostringstream text;
    text << "<dds>\n<brel_service name='" << name << "'>\n<administration><save_path>" << savePath
         << "</save_path></administration>\n"
            "<domain_route name='dr'>\n"
            "<participant name='left'><domain_id>0</domain_id></participant>\n"
            "<participant name='right'><domain_id>1</domain_id></participant>\n"
            "<session name='s'>\n";
    for (int index = 0; index < routeCount; ++index) {
        text << "<topic_route name='t" << index << "'><input participant='left'><topic_name>T"
             << index << "</topic_name></input><output participant='right'><topic_name>T" << index
             << "</topic_name></output></topic_route>\n";
    }
    text << "</session>\n</domain_route>\n</brel_service>\n</dds>\n";
    return text.str();
}

std::vector<std::string> serviceCommand(const std::string &name, const std::string &path)
{
    return {BREL_SERVICE,
            "-cfgFile",
            path,
            "-cfgName",
            name,
            "-domainId",
            std::to_string(loopbackDomainId()),
            "-skipDefaultFiles"};
}

Usage usageOf(pid_t process)
{
    const std::string folder = "/proc/" + std::to_string(process);
    Usage usage;
    std::ifstream status(folder + "/status");
    for (std::string line; std::getline(status, line);) {
        std::istringstream words(line);
        std::string title;
        words >> title;
        if (title == "RssAnon:") {
            words >> usage.memoryKiB;
        } else if (title == "RssShmem:") {
            words >> usage.sharedKiB;
        } else if (title == "Threads:") {
            words >> usage.threads;
        }
    }
    std::error_code ignored;
    for ([[maybe_unused]] const auto &entry :
         std::filesystem::directory_iterator(folder + "/fd", ignored)) {
        ++usage.files;
    }
    return usage;
}

} // namespace zuv_test
