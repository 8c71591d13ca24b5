// The log sites of the middleware's XML.
#ifndef ZUV_PLATFORM_DDSXML_XML_LOG_HPP
#define ZUV_PLATFORM_DDSXML_XML_LOG_HPP

#include "platform/log/LogMessages.h"
#include "platform/xmlutils/XmlUtilsLog.h"

// ZUV_DDSXML_FAILURE(&ZUV_LOG_ADD_FAILURE_s, "document");
#define ZUV_DDSXML_FAILURE(...)                                                                    \
    ZUV_LOG(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_PARSER, __VA_ARGS__)

// True, after the report, for NULL.
#define ZUV_DDSXML_IS_NULL(ARGUMENT)                                                               \
    ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_PARSER, (ARGUMENT) == nullptr,             \
                     #ARGUMENT " == ((void *)0)")

#endif
