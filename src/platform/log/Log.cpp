#include "platform/log/Log.h"

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "platform/log/LogMessages.h"
#include "platform/log/Sink.h"

namespace
{

constexpr size_t kTextSize = 4000; // with level and function, a line of the default sink

// Format into a text of kTextSize bytes, without a final new line, and mark what was cut.
void format(char *text, const char *pattern, va_list arguments)
{
    static constexpr char kMore[] = "...";
    const int length = std::vsnprintf(text, kTextSize, pattern, arguments);
    if (length < 0) {
        std::snprintf(text, kTextSize, "(cannot be formatted) %s", pattern);
    } else if (length >= static_cast<int>(kTextSize)) {
        std::memcpy(text + kTextSize - sizeof(kMore), kMore, sizeof(kMore));
    }
    const size_t end = std::strlen(text);
    if (end != 0 && text[end - 1] == '\n') {
        text[end - 1] = '\0';
    }
}

// Where a line comes from and which template it has.
struct Site {
    uint32_t level;
    uint32_t moduleId;
    uint32_t submodule;
    const char *file;
    int line;
    const char *function;
    const ZUVLogMessage *message;
};

void print(const Site &site, const char *pattern, va_list arguments)
{
    char text[kTextSize];
    format(text, pattern, arguments);
    const ZUVLogRecord record = {site.level, site.moduleId, site.submodule, site.function,
                                 site.file,  site.line,     site.message,   text};
    ZUVLog_emitI(&record);
}

} // namespace

extern "C" {

const uint32_t ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL[ZUV_LOG_LEVEL_COUNT] = {
    0, ZUV_LOG_BIT_FATAL, ZUV_LOG_BIT_EXCEPTION, ZUV_LOG_BIT_WARNING, ZUV_LOG_BIT_INFORMATION, 16};

int ZUVLog_g_detectPrecondition = 0;
int ZUVLog_g_preconditionDetected = 0;

__attribute__((noinline)) void ZUVLog_onAssertBreakpoint(void)
{
    __asm__ volatile(""); // keeps the calls alive
}

void ZUVLogMessage_vprintWithParams(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                    const char *file, int line, const char *function,
                                    const ZUVLogMessage *message, va_list arguments)
{
    const int before = errno;
    print({level, moduleId, submodule, file, line, function, message}, message->format, arguments);
    errno = before;
}

void ZUVLogMessage_printWithParams(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                   const char *file, int line, const char *function,
                                   const ZUVLogMessage *message, ...)
{
    va_list arguments;
    va_start(arguments, message);
    ZUVLogMessage_vprintWithParams(level, moduleId, submodule, file, line, function, message,
                                   arguments);
    va_end(arguments);
}

void ZUVLogMessage_printTemplate(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                 const char *file, int line, const char *function,
                                 const ZUVLogMessage *message, const char *pattern, ...)
{
    const int before = errno;
    char text[kTextSize];
    va_list arguments;
    va_start(arguments, pattern);
    format(text, pattern, arguments);
    va_end(arguments);
    ZUVLogMessage_printWithParams(level, moduleId, submodule, file, line, function, message, text);
    errno = before;
}

void ZUVLogMessage_printParamString(uint32_t level, uint32_t moduleId, uint32_t submodule,
                                    const char *file, int line, const char *function,
                                    const char *pattern, ...)
{
    const int before = errno;
    va_list arguments;
    va_start(arguments, pattern);
    print({level, moduleId, submodule, file, line, function, nullptr}, pattern, arguments);
    va_end(arguments);
    errno = before;
}

int ZUVLog_reportPrecondition(int enabled, uint32_t moduleId, uint32_t submodule, const char *file,
                              int line, const char *function, const char *condition)
{
    if (enabled != 0) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_FATAL, moduleId, submodule, file, line, function,
                                      &ZUV_LOG_PRECONDITION_FAILURE_s, condition);
    }
    if (__atomic_load_n(&ZUVLog_g_detectPrecondition, __ATOMIC_RELAXED) != 0) {
        __atomic_store_n(&ZUVLog_g_preconditionDetected, 1, __ATOMIC_RELAXED);
    }
    ZUVLog_onAssertBreakpoint();
    return 1;
}
}
