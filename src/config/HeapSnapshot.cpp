#include "config/HeapSnapshot.h"

#include <array>
#include <atomic>

#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/kolm/HeapSnapshot.h"
#include "platform/kolm/Utility.h"
#include "platform/osapi/Process.h"
#include "platform/osapi/Utility.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

constexpr size_t kNameSize = 769;
constexpr int kStepMillis = 200;
constexpr DDS_Duration_t kStep = {0, kStepMillis * 1'000'000u};

void takeSnapshot(const ZUV_BrelServiceHeapMonitorProperty &property,
                  const brel::Place &place = brel::Place::current())
{
    std::array<char, kNameSize> name;
    if (BRELUtils_getHeapSnapshotName(&property, name.data(), name.size()) == 0 ||
        KOLM_Utility_take_heap_snapshot(name.data(), 1) == 0) {
        brel::report(BREL_SUBMODULE_ELEMENTS, ZUV_LOG_ANY_FAILURE_s, "take heap snapshot", place);
    }
}

bool isSet(const volatile int *flag)
{
    return __atomic_load_n(flag, __ATOMIC_ACQUIRE) != 0;
}

} // namespace

extern "C" {

int BRELUtils_getHeapSnapshotName(const ZUV_BrelServiceHeapMonitorProperty *property,
                                  char *snapshotName, size_t limit)
{
    static std::atomic<unsigned long long> nextNumber{0};
    if (IS_NULL(property) || IS_NULL(snapshotName)) {
        return 0;
    }
    const int length = ZUVOsapiUtility_snprintf(
        snapshotName, limit, "%s/ZUV_heap_%s_%llu_%llu.log",
        property->output_dir != nullptr ? property->output_dir : ".",
        property->snapshot_name != nullptr ? property->snapshot_name : "",
        static_cast<unsigned long long>(ZUVOsapiProcess_getId()), nextNumber.fetch_add(1));
    if (length < 0 || static_cast<size_t>(length) >= limit) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ANY_FAILURE_s,
                "form heap snapshot name");
        return 0;
    }
    return 1;
}

void BRELUtils_executeHeapSnapshotLoop(const ZUV_BrelServiceHeapMonitorProperty *property,
                                       int stopAfterSec, const volatile int *exitLoopFlag)
{
    if (IS_NULL(property) || IS_NULL(exitLoopFlag)) {
        return;
    }
    const long long period = property->snapshot_period_millis;
    long long sinceSnapshot = period;
    long long elapsed = 0;
    while (!isSet(exitLoopFlag) && (stopAfterSec <= 0 || elapsed / 1000 < stopAfterSec)) {
        if (period > 0 && sinceSnapshot >= period) {
            sinceSnapshot = 0;
            takeSnapshot(*property);
        }
        KOLM_Utility_sleep(&kStep);
        sinceSnapshot += kStepMillis;
        elapsed += kStepMillis;
    }
}
}
