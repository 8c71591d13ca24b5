#include "platform/log/DDSLog.h"

extern "C" {

uint32_t DDSLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
uint32_t DDSLog_g_submoduleMask = UINT32_MAX;
}
