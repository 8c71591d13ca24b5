// Switches the service's log on for a test.
#ifndef ZUV_TESTS_COMMON_SERVICE_LOG_H
#define ZUV_TESTS_COMMON_SERVICE_LOG_H

#include <cstdint>

#include "log/Log.h"
#include "platform/log/DDSLog.h"

namespace zuv_test
{

// While an instance lives, the service's failures are logged, and the bits of `extra`; what its platform reports is
// logged with `platformToo` only.
class ServiceLog
{
public:
    explicit ServiceLog(bool platformToo = true, std::uint32_t extra = 0)
    {
        BRELLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION | extra;
        BRELLog_g_submoduleMask = UINT32_MAX;
        DDSLog_g_submoduleMask = platformToo ? UINT32_MAX : 0;
    }
    ~ServiceLog()
    {
        BRELLog_g_instrumentationMask = 0;
        BRELLog_g_submoduleMask = 0;
        DDSLog_g_submoduleMask = UINT32_MAX;
    }
    ServiceLog(const ServiceLog &) = delete;
    ServiceLog &operator=(const ServiceLog &) = delete;
};

} // namespace zuv_test

#endif
