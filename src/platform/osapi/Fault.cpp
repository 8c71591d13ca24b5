#include "platform/osapi/Fault.h"

#include <mutex>
#include <string_view>

namespace
{

constexpr size_t kPointNameLimit = 128;

// What the armed fault waits for. The lock is met only while a test has armed one.
struct Fault {
    std::mutex mutex;
    char point[kPointNameLimit] = ""; // empty: every point
    uint32_t passesToGo = 1;          // passes up to the one that fails, that one included
    bool onward = false;
    uint32_t injectedCount = 0;
};

Fault &fault()
{
    static Fault instance;
    return instance;
}

void setArmed(int32_t armed)
{
    __atomic_store_n(&ZUVOsapiFault_g_armed, armed, __ATOMIC_RELAXED);
}

} // namespace

extern "C" {

int32_t ZUVOsapiFault_g_armed = 0;

void ZUVOsapiFault_arm(const char *point, uint32_t count, int onward)
{
    Fault &self = fault();
    const std::lock_guard lock(self.mutex);
    const std::string_view name = point != nullptr ? point : "";
    self.point[name.copy(self.point, kPointNameLimit - 1)] = '\0';
    self.passesToGo = count;
    self.onward = onward != 0;
    self.injectedCount = 0;
    setArmed(1);
}

void ZUVOsapiFault_disarm(void)
{
    const std::lock_guard lock(fault().mutex);
    setArmed(0);
}

uint32_t ZUVOsapiFault_getInjectedCount(void)
{
    const std::lock_guard lock(fault().mutex);
    return fault().injectedCount;
}

int ZUVOsapiFault_pass(const char *point)
{
    Fault &self = fault();
    const std::lock_guard lock(self.mutex);
    const bool armed = __atomic_load_n(&ZUVOsapiFault_g_armed, __ATOMIC_RELAXED) != 0;
    if (!armed || (self.point[0] != '\0' && std::string_view(self.point) != point)) {
        return 0;
    }
    if (self.passesToGo > 1) {
        --self.passesToGo;
        return 0;
    }
    ++self.injectedCount;
    if (!self.onward) {
        setArmed(0);
    }
    return 1;
}
}
