#include "platform/kolm/Logger.h"

#include <array>
#include <mutex>

namespace
{

struct Masks {
    uint32_t *instrumentation = nullptr;
    uint32_t *submodule = nullptr;
};

std::mutex g_mutex;
std::array<Masks, KOLM_CONFIG_LOG_SERVICE_COUNT> g_masksOfServices;

bool isService(int service)
{
    return service >= 0 && service < KOLM_CONFIG_LOG_SERVICE_COUNT;
}

// Log sites on other threads read the masks without the lock.
void store(uint32_t *mask, uint32_t value)
{
    __atomic_store_n(mask, value, __ATOMIC_RELAXED);
}

} // namespace

extern "C" {

int KOLM_Config_Logger_register_service(int service, uint32_t *instrumentationMask,
                                        uint32_t *submoduleMask)
{
    if (!isService(service) || instrumentationMask == nullptr || submoduleMask == nullptr) {
        return 0;
    }
    const std::lock_guard lock(g_mutex);
    g_masksOfServices[service] = {instrumentationMask, submoduleMask};
    return 1;
}

int KOLM_Config_Logger_set_verbosity_by_service(int service, uint32_t verbosity)
{
    if (!isService(service)) {
        return 0;
    }
    const std::lock_guard lock(g_mutex);
    const Masks &masks = g_masksOfServices[service];
    if (masks.instrumentation == nullptr) {
        return 0;
    }
    store(masks.submodule, UINT32_MAX);
    store(masks.instrumentation, verbosity);
    return 1;
}
}
