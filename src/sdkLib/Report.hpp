// Reports of the SDK's records: made in a helper, in the name of the operation that was called.
#ifndef ZUV_SDK_LIB_REPORT_HPP
#define ZUV_SDK_LIB_REPORT_HPP

#include "log/Log.h"
#include "log/Report.hpp"

namespace brel
{

// Log `message`, which takes these arguments, at error level.
template <typename... Arguments>
void reportFailure(const Place &place, const ZUVLogMessage &message, Arguments... arguments)
{
    if (ZUV_LOG_ENABLED(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, BREL_LOG_MODULE_ID,
                                      BREL_SUBMODULE_ELEMENTS, place.file, place.line,
                                      place.function, &message, arguments...);
    }
}

} // namespace brel

#endif
