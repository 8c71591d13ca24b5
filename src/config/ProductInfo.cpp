#include "config/ProductInfo.h"

#include <array>

#include "config/Version.h"
#include "log/Log.h"

#define REQUEST_NAMES(TYPE, TOPIC)                                                                 \
    "ZUV::BrelService::Administration::" TYPE, "zuv/brel_service/administration/" TOPIC
#define MONITORING_NAMES(TYPE, TOPIC)                                                              \
    "ZUV::BrelService::Monitoring::" TYPE, "zuv/brel_service/monitoring/" TOPIC

namespace
{

constexpr BRELProductInfo kDefaults = {
    "zuvbrelservice",
    "zuvbsh",
    "ZUV Brel Service",
    "brel service",
    "ZUV_Brel_Service",
    "brel_service",
    "../../../xml/ZUV_BREL_SERVICE.xml",
    "../../resource/xml/ZUV_BREL_SERVICE.xml",
    "USER_BREL_SERVICE.xml",
    REQUEST_NAMES("CommandRequest", "command_request"),
    REQUEST_NAMES("CommandResponse", "command_response"),
    MONITORING_NAMES("RouteStatusSet", "route_status_set"),
    MONITORING_NAMES("DomainRouteStatusSet", "domain_route_status_set"),
    MONITORING_NAMES("AutoRouteStatusSet", "auto_route_status_set"),
    MONITORING_NAMES("BrelServiceStatusSet", "brel_service_status_set"),
    MONITORING_NAMES("SessionStatusSet", "session_status_set"),
    MONITORING_NAMES("RouteData", "route_data"),
    MONITORING_NAMES("DomainRouteData", "domain_route_data"),
    MONITORING_NAMES("AutoRouteData", "auto_route_data"),
    MONITORING_NAMES("BrelServiceData", "brel_service_data"),
    MONITORING_NAMES("SessionData", "session_data"),
};

constinit BRELProductInfo g_productInfo = kDefaults;

// One name that an embedding program may set.
struct Replaceable {
    const char *ZUV_BrelServiceProductInfo::*from;
    const char *BRELProductInfo::*to;
};

constexpr Replaceable kReplaceable[] = {
    {&ZUV_BrelServiceProductInfo::executable_name, &BRELProductInfo::executableName},
    {&ZUV_BrelServiceProductInfo::shell_executable_name, &BRELProductInfo::shellExecutableName},
    {&ZUV_BrelServiceProductInfo::product_name, &BRELProductInfo::productName},
    {&ZUV_BrelServiceProductInfo::log_product_name, &BRELProductInfo::logProductName},
    {&ZUV_BrelServiceProductInfo::default_app_name, &BRELProductInfo::defaultAppName},
};

} // namespace

extern "C" {

const BRELProductInfo BREL_PRODUCT_INFO_DEFAULT = kDefaults;

const BRELProductInfo *BRELProductInfo_get(void)
{
    return &g_productInfo;
}

void BRELProductInfo_set(const ZUV_BrelServiceProductInfo *info)
{
    if (BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, info)) {
        return;
    }
    for (const auto &[from, to] : kReplaceable) {
        const char *name = info->*from;
        g_productInfo.*to = name != nullptr ? name : kDefaults.*to;
    }
}

void BRELProductInfo_reset(void)
{
    g_productInfo = kDefaults;
}

const char *BRELProductInfo_getVersion(void)
{
    static const auto text = [] {
        std::array<char, DDS_PRODUCT_VERSION_MAX_STRING_SIZE> built;
        const ZUV_BrelServiceVersion version = {BREL_VERSION_MAJOR, BREL_VERSION_MINOR,
                                                BREL_VERSION_RELEASE, BREL_VERSION_REVISION};
        BREL_versionToString(&version, built.data());
        return built;
    }();
    return text.data();
}
}
