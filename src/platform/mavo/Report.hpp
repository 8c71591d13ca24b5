// The log sites of workers, areas and events, which share one submodule.
#ifndef ZUV_PLATFORM_MAVO_REPORT_HPP
#define ZUV_PLATFORM_MAVO_REPORT_HPP

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"

// ZUV_CONCURRENCY_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "thread");
#define ZUV_CONCURRENCY_FAILURE(...)                                                               \
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_CONCURRENCY, __VA_ARGS__)

// ZUV_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILURE_TEMPLATE, "leave '%s'", name);
#define ZUV_CONCURRENCY_FAILURE_TEXT(...)                                                          \
    ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_CONCURRENCY, __VA_ARGS__)

#define ZUV_CONCURRENCY_OUT_OF_MEMORY(TYPE)                                                        \
    ZUV_CONCURRENCY_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,                            \
                            static_cast<int>(sizeof(TYPE)))

// True, after the report, when the argument is the null that it must not be.
#define ZUV_CONCURRENCY_IS_NULL(ARGUMENT)                                                          \
    ZUV_PRECONDITION(DDS, DDS_SUBMODULE_CONCURRENCY, (ARGUMENT) == nullptr,                        \
                     #ARGUMENT " == ((void *)0)")

// True, after the report, when the argument is not the null that it must be.
#define ZUV_CONCURRENCY_IS_NOT_NULL(ARGUMENT)                                                      \
    ZUV_PRECONDITION(DDS, DDS_SUBMODULE_CONCURRENCY, (ARGUMENT) != nullptr,                        \
                     #ARGUMENT " != ((void *)0)")

#endif
