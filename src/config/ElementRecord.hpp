// What the records of elements are written with: reports, reading of children, texts.
#ifndef ZUV_CONFIG_ELEMENT_RECORD_HPP
#define ZUV_CONFIG_ELEMENT_RECORD_HPP

#include <cstring>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "platform/typesys/String.h"

// BREL_ELEMENT_FAILURE(&ZUV_LOG_GET_FAILURE_s, "administration reader QoS");
#define BREL_ELEMENT_FAILURE(...)                                                                  \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, __VA_ARGS__)

// BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "Error at line=%d for tag=%s", line, tag);
#define BREL_ELEMENT_FAILURE_TEXT(...)                                                             \
    ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, __VA_ARGS__)

// True, after the report, for NULL. The text of the condition is quoted in it.
#define BREL_ELEMENT_IS_NULL(ARGUMENT)                                                             \
    ZUV_PRECONDITION(BREL, BREL_SUBMODULE_ELEMENTS, (ARGUMENT) == nullptr,                         \
                     "\"" #ARGUMENT " == ((void *)0)\"")

namespace brel
{

// Read the child of that tag, if there is one. False after a report.
template <typename Value>
bool readChild(const ZUVXMLUTILSObject *parent, const char *tag,
               int (*read)(const ZUVXMLUTILSObject *, Value *), Value &value)
{
    const ZUVXMLUTILSObject *const child = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag);
    if (child != nullptr && !read(child, &value)) {
        BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
        return false;
    }
    return true;
}

// Make `target` an own copy of `source`, which may be null. False after a report, with `target` as it was.
inline bool replaceText(char *&target, const char *source)
{
    if (DDS_String_replace(&target, source) == nullptr && source != nullptr) {
        BREL_ELEMENT_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                             static_cast<int>(std::strlen(source)));
        return false;
    }
    return true;
}

// The text of the child of that tag replaces `target`, if there is such a child.
inline bool replaceByChild(const ZUVXMLUTILSObject *parent, const char *tag, char *&target)
{
    const ZUVXMLUTILSObject *const child = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag);
    if (child != nullptr && !replaceText(target, ZUVXMLUTILSObject_getText(child))) {
        BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
        return false;
    }
    return true;
}

// Release a text that a record owns.
inline void freeText(char *&text)
{
    DDS_String_free(text);
    text = nullptr;
}

} // namespace brel

#endif
