#include "platform/osapi/Thread.h"

#include <algorithm>
#include <string_view>

#include <pthread.h>
#include <sched.h>
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

// The attributes of a thread to be made, for as long as that takes.
class Attributes
{
public:
    Attributes() { isValid_ = pthread_attr_init(&attributes_) == 0; }
    ~Attributes()
    {
        if (isValid_) {
            pthread_attr_destroy(&attributes_);
        }
    }
    Attributes(const Attributes &) = delete;
    Attributes &operator=(const Attributes &) = delete;

    bool apply(const ZUVOsapiThreadSettings &settings)
    {
        return isValid_ && setStack(settings.stackSize) && setProcessors(settings) &&
               setPriority(settings.realtimePriority);
    }
    const pthread_attr_t *get() const { return &attributes_; }

private:
    bool setStack(std::size_t size)
    {
        const auto least = static_cast<std::size_t>(PTHREAD_STACK_MIN);
        return size == 0 || pthread_attr_setstacksize(&attributes_, std::max(size, least)) == 0;
    }
    bool setProcessors(const ZUVOsapiThreadSettings &settings)
    {
        if (settings.processorCount == 0) {
            return true;
        }
        cpu_set_t set;
        CPU_ZERO(&set);
        for (std::size_t i = 0; i < settings.processorCount; ++i) {
            const int32_t processor = settings.processors[i];
            if (processor < 0 || processor >= CPU_SETSIZE) {
                return false;
            }
            CPU_SET(static_cast<std::size_t>(processor), &set);
        }
        return pthread_attr_setaffinity_np(&attributes_, sizeof(set), &set) == 0;
    }
    bool setPriority(int priority)
    {
        sched_param parameters = {};
        parameters.sched_priority = priority;
        return priority <= 0 ||
               (pthread_attr_setinheritsched(&attributes_, PTHREAD_EXPLICIT_SCHED) == 0 &&
                pthread_attr_setschedpolicy(&attributes_, SCHED_FIFO) == 0 &&
                pthread_attr_setschedparam(&attributes_, &parameters) == 0);
    }

    pthread_attr_t attributes_;
    bool isValid_ = false;
};

} // namespace

extern "C" {

uint64_t ZUVOsapiThread_getCurrentThreadID(void)
{
    return static_cast<uint64_t>(gettid());
}

ZUVOsapiThread *ZUVOsapiThread_new(const char *name, ZUVOsapiThreadRoutine routine,
                                   void *routineData)
{
    const ZUVOsapiThreadSettings settings = {};
    return ZUVOsapiThread_newWithSettings(name, routine, routineData, &settings);
}

ZUVOsapiThread *ZUVOsapiThread_newWithSettings(const char *name, ZUVOsapiThreadRoutine routine,
                                               void *routineData,
                                               const ZUVOsapiThreadSettings *settings)
{
    zuv::ObjectPointer<ZUVOsapiThread> self(zuv::newObject<ZUVOsapiThread>(kTag));
    Attributes attributes;
    if (self == nullptr || ZUV_OSAPI_FAULT("thread.create") || !attributes.apply(*settings)) {
        return nullptr;
    }
    std::string_view(name).copy(self->name, sizeof(self->name) - 1);
    self->routine = routine;
    self->routineData = routineData;
    return pthread_create(&self->id, attributes.get(), run, self.get()) == 0 ? self.release()
                                                                             : nullptr;
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
