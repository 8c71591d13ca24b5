#include "platform/osapi/Thread.h"

#include <string_view>

#include <pthread.h>
#include <unistd.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"

struct ZUVOsapiThread {
    char name[16] = ""; // the system keeps no more
    ZUVOsapiThreadRoutine routine = nullptr;
    void *routineData = nullptr;
    pthread_t id = {};
};

namespace
{

constexpr const char *kTag = "ZUVOsapiThread";

void *run(void *self)
{
    const auto *thread = static_cast<ZUVOsapiThread *>(self);
    pthread_setname_np(pthread_self(), thread->name);
    thread->routine(thread->routineData);
    return nullptr;
}

} // namespace

extern "C" {

uint64_t ZUVOsapiThread_getCurrentThreadID(void)
{
    return static_cast<uint64_t>(gettid());
}

ZUVOsapiThread *ZUVOsapiThread_new(const char *name, ZUVOsapiThreadRoutine routine,
                                   void *routineData)
{
    zuv::ObjectPointer<ZUVOsapiThread> self(zuv::newObject<ZUVOsapiThread>(kTag));
    if (self == nullptr || ZUV_OSAPI_FAULT("thread.create")) {
        return nullptr;
    }
    std::string_view(name).copy(self->name, sizeof(self->name) - 1);
    self->routine = routine;
    self->routineData = routineData;
    return pthread_create(&self->id, nullptr, run, self.get()) == 0 ? self.release() : nullptr;
}

int ZUVOsapiThread_isCurrent(const ZUVOsapiThread *self)
{
    return pthread_equal(self->id, pthread_self());
}

void ZUVOsapiThread_delete(ZUVOsapiThread *self)
{
    if (self != nullptr) {
        pthread_join(self->id, nullptr);
        zuv::deleteObject(self);
    }
}
}
