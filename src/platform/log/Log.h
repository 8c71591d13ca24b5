/* Log messages, masks, sinks and preconditions.
 *
 * A failure reads as a chain: the function that meets the cause writes the first line, each caller adds
 * its own. A log site is one line: it names the module whose masks decide, the level, the submodule, a
 * message template and its arguments. Nothing is formatted unless the masks let the line pass. */
#ifndef ZUV_PLATFORM_LOG_LOG_H
#define ZUV_PLATFORM_LOG_LOG_H

#include <stdarg.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Level bits of an instrumentation mask. */
#define ZUV_LOG_BIT_FATAL 1u
#define ZUV_LOG_BIT_EXCEPTION 2u
#define ZUV_LOG_BIT_WARNING 4u
#define ZUV_LOG_BIT_INFORMATION 8u

/* The bit of each user log level: 0 none, 1 fatal, 2 exception, 3 warning, 4 information, 5 detail. All
 * higher levels together have the bits ZUV_LOG_INSTRUMENT_BITS_ABOVE_LOG_LEVELS. */
#define ZUV_LOG_LEVEL_COUNT 6
#define ZUV_LOG_INSTRUMENT_BITS_ABOVE_LOG_LEVELS 480u
extern const uint32_t ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL[ZUV_LOG_LEVEL_COUNT];

/* A message template: a stable identifier and a printf format that ends in a new line. The suffix of a
 * template's symbol lists the types of its arguments: s text, d number, x hexadecimal, u unsigned. */
typedef struct ZUVLogMessage {
    uint32_t messageId;
    const char *format;
} ZUVLogMessage;

/* One line on its way to the sink. All pointers are valid during the call only. */
typedef struct ZUVLogRecord {
    uint32_t level;    /* one ZUV_LOG_BIT_... */
    uint32_t moduleId; /* 0x1c0000 for the service */
    uint32_t submodule;
    const char *function;
    const char *file;
    int line;
    const ZUVLogMessage *message; /* NULL for a line with a format of its own */
    const char *text;             /* the formatted message, without its final new line */
} ZUVLogRecord;

/* Where lines go. Called from any thread that logs, one call at a time. A line that the sink itself logs
 * is dropped. */
typedef void (*ZUVLogSink)(void *sinkData, const ZUVLogRecord *record);

/* Send all further lines to `sink`; NULL restores the default one. When the call returns, no thread is in
 * the former sink any more. Not to be called from a sink.
 *
 * The default sink writes to standard error, each line with one write so that lines of several threads do
 * not mix: the level, the function, and the text, in which control characters are blanks.
 *
 *   ERROR BRELRemoteConfigClient_sendRequestAndWaitForResponseI: !wait for reply
 *   ERROR BRELRemoteConfigClient_sendCommandRequest: !send command request and wait for reply */
void ZUVLog_setSink(ZUVLogSink sink, void *sinkData);

/* When set, a failed precondition sets ZUVLog_g_preconditionDetected. */
extern int ZUVLog_g_detectPrecondition;
extern int ZUVLog_g_preconditionDetected;

/* Does nothing; a place for a debugger's breakpoint on every failed precondition. */
void ZUVLog_onAssertBreakpoint(void);

/* Format and write one line whatever the masks say; log sites use ZUV_LOG. `message` and `function` must
 * not be NULL. Never fails: a line that cannot be formatted whole is cut. Allocates nothing. */
void ZUVLogMessage_printWithParams(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                   const char *file, int line, const char *function,
                                   const ZUVLogMessage *message, ...);

/* The same with the arguments as a list. */
void ZUVLogMessage_vprintWithParams(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                    const char *file, int line, const char *function,
                                    const ZUVLogMessage *message, va_list arguments);

/* Format a text with arguments of its own, and print it as the one text argument of `message`. A final
 * new line of the text is dropped. Log sites use ZUV_LOG_TEMPLATE. */
void ZUVLogMessage_printTemplate(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                 const char *file, int line, const char *function,
                                 const ZUVLogMessage *message, const char *format, ...)
    __attribute__((format(printf, 8, 9)));

/* The same with a format of the caller's own in place of a template; the record's message is NULL. */
void ZUVLogMessage_printParamString(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                    const char *file, int line, const char *function,
                                    const char *format, ...) __attribute__((format(printf, 7, 8)));

/* Report a failed precondition: logs ZUV_LOG_PRECONDITION_FAILURE_s with `condition` if `enabled` is not
 * 0, marks ZUVLog_g_preconditionDetected, and calls the breakpoint function. Always returns 1. */
int ZUVLog_reportPrecondition(int enabled, uint32_t moduleId, uint32_t submodule, const char *file,
                              int line, const char *function, const char *condition);

/* A module is known by its prefix: it has PREFIX##Log_g_instrumentationMask, PREFIX##Log_g_submoduleMask
 * (both uint32_t) and PREFIX##_LOG_MODULE_ID. */
#define ZUV_LOG_ENABLED(MODULE, LEVEL, SUBMODULE)                                                  \
    ((__atomic_load_n(&MODULE##Log_g_instrumentationMask, __ATOMIC_RELAXED) & (LEVEL)) != 0 &&     \
     (__atomic_load_n(&MODULE##Log_g_submoduleMask, __ATOMIC_RELAXED) & (SUBMODULE)) != 0)

/* ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_SHELL, &ZUV_LOG_ANY_FAILURE_s, "get parameter"); */
#define ZUV_LOG(MODULE, LEVEL, SUBMODULE, ...)                                                     \
    do {                                                                                           \
        if (ZUV_LOG_ENABLED(MODULE, LEVEL, SUBMODULE)) {                                           \
            ZUVLogMessage_printWithParams(LEVEL, MODULE##_LOG_MODULE_ID, SUBMODULE, __FILE__,      \
                                          __LINE__, __func__, __VA_ARGS__);                        \
        }                                                                                          \
    } while (0)

/* As ZUV_LOG for the messages whose symbol ends in _TEMPLATE:
 * ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE, &ZUV_LOG_FAILED_TO_PARSE_TEMPLATE,
 *                  "line=%d for tag=%s\n", line, tag); */
#define ZUV_LOG_TEMPLATE(MODULE, LEVEL, SUBMODULE, ...)                                            \
    do {                                                                                           \
        if (ZUV_LOG_ENABLED(MODULE, LEVEL, SUBMODULE)) {                                           \
            ZUVLogMessage_printTemplate(LEVEL, MODULE##_LOG_MODULE_ID, SUBMODULE, __FILE__,        \
                                        __LINE__, __func__, __VA_ARGS__);                          \
        }                                                                                          \
    } while (0)

/* As ZUV_LOG, with a plain format in place of a template. */
#define ZUV_LOG_PLAIN(MODULE, LEVEL, SUBMODULE, ...)                                               \
    do {                                                                                           \
        if (ZUV_LOG_ENABLED(MODULE, LEVEL, SUBMODULE)) {                                           \
            ZUVLogMessage_printParamString(LEVEL, MODULE##_LOG_MODULE_ID, SUBMODULE, __FILE__,     \
                                           __LINE__, __func__, __VA_ARGS__);                       \
        }                                                                                          \
    } while (0)

/* if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_SHELL, self == NULL, "self == ((void *)0)")) return 0;
 * True, after the report, when the condition that must not be is. */
#define ZUV_PRECONDITION(MODULE, SUBMODULE, CONDITION, TEXT)                                       \
    ((CONDITION) && ZUVLog_reportPrecondition(                                                     \
                        ZUV_LOG_ENABLED(MODULE, ZUV_LOG_BIT_FATAL, SUBMODULE),                     \
                        MODULE##_LOG_MODULE_ID, SUBMODULE, __FILE__, __LINE__, __func__, TEXT))

#ifdef __cplusplus
}
#endif

#endif
