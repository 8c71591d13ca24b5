// Loads a plug-in and runs it on an event thread, within an exclusive area.
#include <cstdio>

#include <dlfcn.h>

#include "common/ServiceEventThread.h"
#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/osapi/Semaphore.h"
#include "sdkLib/Environment.h"
#include "sdkLib/StreamInfo.h"

namespace
{

using OnStream = const void *(*)(const ZUV_BrelServiceStreamInfo *stream,
                                 ZUV_BrelServiceEnvironment *environment);

struct Call {
    ZUVEventGeneratorListener listener;
    OnStream onStream;
    BRELConcurrency *concurrency;
    MAVOExclusiveArea *area;
    ZUVOsapiSemaphore *done;
};

int run(const ZUVEventGeneratorListener *self, ZUVNtpTime *, const ZUVNtpTime *, const ZUVNtpTime *,
        const ZUVNtpTime *, ZUVEventGeneratorListenerStorage *, MAVOWorker *)
{
    const Call &call = *reinterpret_cast<const Call *>(self);
    ZUV_BrelServiceEnvironment environment = {};
    ZUV_BrelServiceStreamInfo *stream = ZUV_BrelServiceStreamInfo_new_disposed("Square");
    BRELExclusiveAreaGuard guard = {};
    if (stream != nullptr &&
        BRELExclusiveAreaGuard_enter(&guard, call.area, call.concurrency) != 0) {
        const bool isShared = call.onStream(stream, &environment) == BRELProductInfo_get();
        std::printf("%s: %s; names are %s\n", stream->stream_name,
                    ZUV_BrelServiceEnvironment_get_error_message(&environment),
                    isShared ? "shared" : "not shared");
        BRELExclusiveAreaGuard_leave(&guard, call.concurrency);
    }
    ZUV_BrelServiceStreamInfo_delete(stream);
    ZUVOsapiSemaphore_give(call.done);
    return 0;
}

bool runOnEventThread(OnStream onStream)
{
    BRELConcurrency *concurrency = BRELConcurrency_new();
    MAVOExclusiveArea *area = BRELConcurrency_createExclusiveArea(
        concurrency, BRELConcurrency_CONNECTION_EA_LEVEL, "streams");
    BRELServiceEventThread *thread =
        BRELServiceEventThread_new(concurrency, ZUVClock_getMonotonic(), 0, "engine");
    ZUVOsapiSemaphore *done = ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_BINARY, nullptr);
    const Call call = {{run}, onStream, concurrency, area, done};
    const bool isRun =
        BRELServiceEventThread_postImmediateEvent(thread, &call.listener, nullptr) != 0 &&
        ZUVOsapiSemaphore_take(done, nullptr) == ZUV_OSAPI_SEMAPHORE_STATUS_OK;
    ZUVOsapiSemaphore_delete(done);
    BRELServiceEventThread_delete(thread);
    BRELConcurrency_deleteExclusiveArea(concurrency, area);
    BRELConcurrency_delete(concurrency);
    return isRun;
}

} // namespace

int main(int argc, char **argv)
{
    BRELLog_setUp();
    void *library = argc > 1 ? dlopen(argv[1], RTLD_NOW) : nullptr;
    void *entry = library != nullptr ? dlsym(library, "plugin_onStream") : nullptr;
    if (entry == nullptr) {
        std::fprintf(stderr, "engine: no plug-in: %s\n", dlerror());
        return 1;
    }
    return runOnEventThread(reinterpret_cast<OnStream>(entry)) ? 0 : 1;
}
