// From bytes to a document of libxml2.
#ifndef ZUV_PLATFORM_XMLUTILS_READER_HPP
#define ZUV_PLATFORM_XMLUTILS_READER_HPP

#include <string_view>

#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Tree.hpp"

namespace zuv::xmlutils
{

enum class DocumentKind {
    kTree,  // for the program: adopted, without blanks between elements, with all line numbers
    kSheet, // a schema or stylesheet, for libxml2 or libxslt: as it stands
};

// Null with a problem when the document is refused or there is no memory. `path` is null without a file.
DocumentPointer readDocument(std::string_view bytes, const char *path, DocumentKind kind,
                             Problem &problem);

// The same for a file.
DocumentPointer readFile(const char *path, DocumentKind kind, Problem &problem);

// The pieces as one text. Throws std::bad_alloc.
HeapString joined(const char *const *pieces, int count);

} // namespace zuv::xmlutils

#endif
