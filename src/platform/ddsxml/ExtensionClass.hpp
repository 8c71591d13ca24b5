// What a class of further elements holds.
#ifndef ZUV_PLATFORM_DDSXML_EXTENSION_CLASS_HPP
#define ZUV_PLATFORM_DDSXML_EXTENSION_CLASS_HPP

#include <string_view>

#include "platform/ddsxml/DistLogger.h"

struct ZUVXMLExtensionClass {
    std::string_view tag; // a text that lives as long as the process
    ZUV_DL_XMLConfigErrorFcn onError;
    // Give the element what it says. Throws BadQos and std::bad_alloc.
    void (*read)(ZUVXMLObject &element);
};

#endif
