// The name of a service's group that nobody has named.
#include <cinttypes>

#include "config/CfgFileService.h"
#include "config/ElementRecord.hpp"
#include "platform/osapi/Host.h"
#include "platform/osapi/Process.h"
#include "platform/osapi/Utility.h"

namespace
{

constexpr char kBase[] = "ZUV_BrelService_";

bool isLoopback(const char *host)
{
    return std::strcmp(host, "localhost") == 0 || std::strcmp(host, "127.0.0.1") == 0;
}

bool appended(char *output, std::size_t limit, const char *text, const char *what)
{
    if (ZUVOsapiUtility_strcat(output, limit, text) == nullptr) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "%s", what);
        return false;
    }
    return true;
}

} // namespace

int BRELCfgFileService_getDefaultServiceName(char *output, int outputMaxLength)
{
    if (BREL_ELEMENT_IS_NULL(output)) {
        return 0;
    }
    char appId[21];
    const int written =
        ZUVOsapiUtility_snprintf(appId, sizeof(appId), "%" PRIu64, ZUVOsapiProcess_getId());
    if (written < 0 || written >= static_cast<int>(sizeof(appId))) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_GET_TEMPLATE, "process ID as string");
        return 0;
    }
    const int reserved = static_cast<int>(sizeof(kBase) - 1) + written;
    if (ZUV_PRECONDITION(
            BREL, BREL_SUBMODULE_ELEMENTS, outputMaxLength < reserved,
            "\"outputMaxLength < (sizeof(\\\"ZUV_BrelService_\\\") - 1) + strlen(appId)\"")) {
        return 0;
    }
    const std::size_t limit = static_cast<std::size_t>(outputMaxLength) + 1;
    if (ZUVOsapiUtility_strcpy(output, limit, kBase) == nullptr) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE,
                                  "base name for default service name");
        return 0;
    }
    // With the terminator's place left for the underscore.
    char *const host = output + sizeof(kBase) - 1;
    if (ZUVOsapiHost_getHostName(host, static_cast<std::size_t>(outputMaxLength - reserved)) &&
        !isLoopback(host)) {
        return appended(output, limit, "_", "'_' character to default service name") &&
               appended(output, limit, appId, "app ID to default service name");
    }
    const int length = ZUVOsapiUtility_snprintf(output, limit, "%s_%" PRIu32 "_%s", kBase,
                                                ZUVOsapiHost_getId(), appId);
    if (length < 0 || length > outputMaxLength) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_GET_TEMPLATE, "default service name");
        return 0;
    }
    return 1;
}
