#include "log/Log.h"

#include <cstring>
#include <string_view>

#include "platform/kolm/Logger.h"

namespace
{

constexpr size_t kFormatLimit = 507; // characters of a user's format that are kept
constexpr char kMore[] = "...";

// The format of BREL_LOG_SERVICE_USER_LOG_s: what is kept, kMore, a new line and the terminator.
char g_userLogFormat[kFormatLimit + sizeof(kMore) + 1];

uint32_t bitOfLevel(int logLevel)
{
    return logLevel < ZUV_LOG_LEVEL_COUNT ? ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL[logLevel]
                                          : ZUV_LOG_INSTRUMENT_BITS_ABOVE_LOG_LEVELS;
}

// The start of a format that is cut, without the conversion that the cut would tear.
std::string_view cut(std::string_view format)
{
    const std::string_view kept = format.substr(0, kFormatLimit);
    size_t percent = kept.find('%');
    while (percent != std::string_view::npos) {
        const size_t end = format.find_first_of("diouxXeEfFgGaAcspn%m", percent + 1);
        if (end >= kept.size()) {
            return kept.substr(0, percent);
        }
        percent = kept.find('%', end + 1);
    }
    return kept;
}

void keepFormat(std::string_view format)
{
    const bool isCut = format.size() > kFormatLimit;
    size_t length = (isCut ? cut(format) : format).copy(g_userLogFormat, kFormatLimit);
    if (isCut) {
        length += std::string_view(kMore).copy(g_userLogFormat + length, sizeof(kMore));
    }
    g_userLogFormat[length] = '\n';
    g_userLogFormat[length + 1] = '\0';
}

} // namespace

extern "C" {

const ZUVLogMessage BREL_LOG_SERVICE_USER_LOG_s = {0x21c2000 + 27, g_userLogFormat};

uint32_t BRELLog_g_instrumentationMask = 0;
uint32_t BRELLog_g_submoduleMask = 0;

void BRELLog_setUp(void)
{
    KOLM_Config_Logger_register_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                        &BRELLog_g_instrumentationMask, &BRELLog_g_submoduleMask);
    KOLM_Config_Logger_set_verbosity_by_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                                KOLM_CONFIG_LOG_VERBOSITY_ERROR);
}

void BRELLog_vLogFromLevelWithMask(uint32_t verbosityMask, int logLevel, const char *format,
                                   va_list arguments)
{
    if (format == nullptr || logLevel < 0) {
        return;
    }
    const uint32_t level = bitOfLevel(logLevel);
    if ((level & verbosityMask) == 0) {
        return;
    }
    keepFormat(format);
    ZUVLogMessage_vprintWithParams(level, BREL_LOG_MODULE_ID, BREL_SUBMODULE_ELEMENTS, __FILE__,
                                   __LINE__, __func__, &BREL_LOG_SERVICE_USER_LOG_s, arguments);
}

void BRELLog_logFromLevelWithMask(uint32_t verbosityMask, int logLevel, const char *format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    BRELLog_vLogFromLevelWithMask(verbosityMask, logLevel, format, arguments);
    va_end(arguments);
}
}
