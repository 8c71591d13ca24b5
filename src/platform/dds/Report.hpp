// Reports and guards that every entity uses alike.
#ifndef ZUV_PLATFORM_DDS_REPORT_HPP
#define ZUV_PLATFORM_DDS_REPORT_HPP

#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/Types.h"

// The report names the function that the caller called.
#define ZUV_DDS_REPORT(...) ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, __VA_ARGS__)
#define ZUV_DDS_REPORT_TEMPLATE(...)                                                               \
    ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY, __VA_ARGS__)

// if (ZUV_DDS_IS_NULL(qos)) return DDS_RETCODE_BAD_PARAMETER;   True, after the report, for NULL.
#define ZUV_DDS_IS_NULL(argument) zuv::dds::isNull(__func__, argument, #argument)

namespace zuv::dds
{

// As ZUV_DDS_REPORT, in the name of another function: what several operations share reports for each of them.
void reportAs(const char *function, const ZUVLogMessage &message, const char *argument);

// True, after the report, for NULL.
inline bool isNull(const char *function, const void *argument, const char *name)
{
    if (argument == nullptr) {
        reportAs(function, DDS_LOG_BAD_PARAMETER_s, name);
        return true;
    }
    return false;
}

// A new T on the system's heap, or null.
template <typename T, typename... Arguments>
T *heapNew(const char *tag, Arguments &&...arguments)
{
    void *const memory = ZUVOsapiHeap_allocate(sizeof(T), tag);
    if (memory == nullptr) {
        return nullptr;
    }
    try {
        return new (memory) T(std::forward<Arguments>(arguments)...);
    } catch (...) {
        ZUVOsapiHeap_free(memory);
        throw;
    }
}

template <typename T>
void heapDelete(T *object)
{
    if (object != nullptr) {
        object->~T();
        ZUVOsapiHeap_free(object);
    }
}

struct HeapDeleter {
    template <typename T>
    void operator()(T *object) const
    {
        heapDelete(object);
    }
};
template <typename T>
using HeapOwner = std::unique_ptr<T, HeapDeleter>;

// The result of `body`, or `failure` after a report when it throws: the middleware and the containers do, for want
// of memory, shared memory or sockets, and no exception may leave an exported operation.
template <typename Result, typename Body>
Result guarded(const char *what, Result failure, Body &&body)
{
    try {
        return body();
    } catch (const std::exception &exception) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "%s: %s", what, exception.what());
    } catch (...) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "%s: unknown exception", what);
    }
    return failure;
}

} // namespace zuv::dds

#endif
