// Reports of the server's side of remote configuration.
#ifndef ZUV_REMOTE_CONFIG_SERVER_REPORT_HPP
#define ZUV_REMOTE_CONFIG_SERVER_REPORT_HPP

#include "log/Log.h"
#include "platform/typesys/Types.h"

#define BREL_SERVER_FAILURE(...)                                                                   \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE, __VA_ARGS__)

// BREL_SERVER_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "participant");
#define BREL_SERVER_FAILURE_TEXT(...)                                                              \
    ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE, __VA_ARGS__)

// True for DDS_RETCODE_OK; false after a report that tells another code.
#define BREL_SERVER_IS_OK(CODE, WHAT) brel::isOk(CODE, WHAT, __func__, __LINE__)

#define BREL_SERVER_IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_REMOTE, ARGUMENT)

namespace brel
{

inline bool isOk(DDS_ReturnCode_t code, const char *what, const char *function, int line)
{
    if (code != DDS_RETCODE_OK &&
        ZUV_LOG_ENABLED(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE)) {
        ZUVLogMessage_printTemplate(ZUV_LOG_BIT_EXCEPTION, BREL_LOG_MODULE_ID,
                                    BREL_SUBMODULE_REMOTE, __FILE__, line, function,
                                    &ZUV_LOG_FAILURE_TEMPLATE, "%s - Return code = %d\n", what,
                                    static_cast<int>(code));
    }
    return code == DDS_RETCODE_OK;
}

} // namespace brel

#endif
