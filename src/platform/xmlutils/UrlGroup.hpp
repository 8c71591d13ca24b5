// The grammar of URL group lists; ZUVXMLUTILSParser_parseUrlGroupList tells it.
#ifndef ZUV_PLATFORM_XMLUTILS_URL_GROUP_HPP
#define ZUV_PLATFORM_XMLUTILS_URL_GROUP_HPP

#include <string_view>

#include "platform/xmlutils/Memory.hpp"

namespace zuv::xmlutils
{

struct Url {
    enum class Kind {
        kFile,
        kText,
    };
    Kind kind;
    std::string_view content; // a path, or a document; part of the list
};

using UrlGroup = HeapVector<Url>;

// Null when the list keeps to the grammar, else what is wrong. Throws std::bad_alloc.
const char *readUrlGroups(std::string_view list, HeapVector<UrlGroup> &groups);

} // namespace zuv::xmlutils

#endif
