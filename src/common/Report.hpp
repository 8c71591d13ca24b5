// The log sites of the concurrency and of the event thread, which share one submodule.
#ifndef ZUV_COMMON_REPORT_HPP
#define ZUV_COMMON_REPORT_HPP

#include "log/Log.h"

// BREL_CONCURRENCY_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "take global lock");
#define BREL_CONCURRENCY_FAILURE(...)                                                              \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_CONCURRENCY, __VA_ARGS__)

// BREL_CONCURRENCY_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "binary semaphore");
#define BREL_CONCURRENCY_FAILURE_TEXT(...)                                                         \
    ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_CONCURRENCY, __VA_ARGS__)

// True, after the report, when the condition that must not be is. It appears as C has it in the text.
#define BREL_CONCURRENCY_PRECONDITION(CONDITION, TEXT)                                             \
    ZUV_PRECONDITION(BREL, BREL_SUBMODULE_CONCURRENCY, CONDITION, TEXT)
#define BREL_CONCURRENCY_IS_NULL(ARGUMENT)                                                         \
    BREL_CONCURRENCY_PRECONDITION((ARGUMENT) == nullptr, #ARGUMENT " == ((void *)0)")

#endif
