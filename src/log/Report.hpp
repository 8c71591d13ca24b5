// A report of the service's own C++ code: a failure told by one text, from the place where it is met.
#ifndef ZUV_LOG_REPORT_HPP
#define ZUV_LOG_REPORT_HPP

#include <cstdint>

#include "log/Log.h"

namespace brel
{

// Where a report is made. As a default argument, current() is the place of the call.
struct Place {
    const char *file;
    int line;
    const char *function;

    static constexpr Place current(const char *atFile = __builtin_FILE(),
                                   int atLine = __builtin_LINE(),
                                   const char *atFunction = __builtin_FUNCTION())
    {
        return {atFile, atLine, atFunction};
    }
};

// Log `message`, whose one argument is `text`, at error level.
inline void report(std::uint32_t submodule, const ZUVLogMessage &message, const char *text,
                   const Place &place)
{
    if (ZUV_LOG_ENABLED(BREL, ZUV_LOG_BIT_EXCEPTION, submodule)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, BREL_LOG_MODULE_ID, submodule,
                                      place.file, place.line, place.function, &message, text);
    }
}

} // namespace brel

#endif
