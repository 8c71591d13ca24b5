// The log sites of the XML layer and of the parser, which share one submodule.
#ifndef ZUV_CONFIG_XML_LOG_HPP
#define ZUV_CONFIG_XML_LOG_HPP

#include "log/Log.h"
#include "platform/xmlutils/Object.h"

// BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "merge root");
#define BREL_XML_FAILURE(...) ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML, __VA_ARGS__)

// With a text that has arguments of its own: BREL_XML_FAILURE_TEXT("register extension with name=%s", tag);
#define BREL_XML_FAILURE_TEXT(...)                                                                 \
    ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML, &ZUV_LOG_ANY_FAILURE_s,      \
                     __VA_ARGS__)

// BREL_XML_NOTE(&ZUV_LOG_ANY_s, "load configuration from string");
#define BREL_XML_NOTE(...) ZUV_LOG(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_XML, __VA_ARGS__)

// Where in its document an element stands: the two arguments of the ..._ds messages.
#define BREL_XML_PLACE(OBJECT)                                                                     \
    ZUVXMLUTILSObject_getLine(OBJECT), ZUVXMLUTILSObject_getTagName(OBJECT)

// True, after the report, for NULL.
#define BREL_XML_IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_XML, ARGUMENT)

#endif
