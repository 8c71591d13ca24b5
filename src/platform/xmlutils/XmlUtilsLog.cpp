#include "platform/xmlutils/XmlUtilsLog.h"

extern "C" {

uint32_t ZUVXMLUTILSLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
uint32_t ZUVXMLUTILSLog_g_submoduleMask = UINT32_MAX;
}
