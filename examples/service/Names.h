// How operators name entities:
//
//   (nothing)          the service
//   dr1::s1::r1        names on the way from the service to the entity
//   ::bridge::dr1::s1  the same from the top of the document on
//   session.s1         the tag in front of a name: of the first name, then the entity may lie anywhere in the service
//                      if it is the only one; of a later one, as a check
#ifndef ZUV_EXAMPLES_SERVICE_NAMES_H
#define ZUV_EXAMPLES_SERVICE_NAMES_H

#include <string>
#include <string_view>
#include <vector>

#include "config/EntityKind.h"
#include "platform/xmlutils/Object.h"

namespace service
{

struct Entity {
    ZUVXMLUTILSObject *xml = nullptr; // none: not found
    ZUV_BrelServiceEntityKind kind = ZUV_BrelServiceEntityKind_OTHER;
};

// What the identifier names in the service; nothing after a report.
Entity find(ZUVXMLUTILSObject *xmlService, std::string_view identifier);

// The one entity of that tag in the service; nothing after a report.
Entity findOnly(ZUVXMLUTILSObject *xmlService, const char *tag);

// The name within the service, or that of the service itself.
std::string nameOf(const ZUVXMLUTILSObject *entity);

// Of these names the one that differs least.
std::string nearest(std::string_view wanted, const std::vector<std::string> &names);

// Without white space at both ends: the shell leaves line ends in what it sends.
std::string_view trimmed(std::string_view text);

} // namespace service

#endif
