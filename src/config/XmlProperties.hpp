// The entries of a property list, for those who keep them.
#ifndef ZUV_CONFIG_XML_PROPERTIES_HPP
#define ZUV_CONFIG_XML_PROPERTIES_HPP

#include <cstring>

#include "config/XmlLog.hpp"

namespace brel
{

// The text of the child; empty if there is none.
inline const char *childText(const ZUVXMLUTILSObject *xmlObject, const char *tag)
{
    const ZUVXMLUTILSObject *const child = ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, tag);
    return child != nullptr ? ZUVXMLUTILSObject_getText(child) : "";
}

// Give each entry of the element, or of its first child "value", to `add` with its name and value. False after a report
// as soon as `add` returns false.
template <typename Add>
bool readProperties(const ZUVXMLUTILSObject *xmlObject, Add &&add)
{
    const ZUVXMLUTILSObject *entry = ZUVXMLUTILSObject_getFirstChild(xmlObject);
    if (entry != nullptr && std::strcmp(ZUVXMLUTILSObject_getTagName(entry), "value") == 0) {
        entry = ZUVXMLUTILSObject_getFirstChild(entry);
    }
    for (; entry != nullptr; entry = ZUVXMLUTILSObject_getNextSibling(entry)) {
        if (!add(childText(entry, "name"), childText(entry, "value"))) {
            BREL_XML_FAILURE(&ZUV_LOG_ADD_FAILURE_s, "property");
            return false;
        }
    }
    return true;
}

} // namespace brel

#endif
