// A look over the bytes of a document before libxml2 gets them.
#ifndef ZUV_PLATFORM_XMLUTILS_SCAN_HPP
#define ZUV_PLATFORM_XMLUTILS_SCAN_HPP

#include <string_view>

#include "platform/xmlutils/LibraryScope.hpp"

namespace zuv::xmlutils
{

// What a document may hold.
struct Content {
    bool longNames = false; // of elements and attributes
    bool variables = false; // references to them
};

// True if the document keeps the limits that libxml2 would notice too late, or at a price: size, encoding,
// DOCTYPE, the length of texts and tags, the number of attributes. Otherwise `problem` tells what is wrong.
// Takes no memory.
bool isWithinLimits(std::string_view document, Content &content, Problem &problem);

} // namespace zuv::xmlutils

#endif
