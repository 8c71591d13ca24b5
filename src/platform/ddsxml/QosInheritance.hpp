// The QoS of a document, each with the values that it inherits.
#ifndef ZUV_PLATFORM_DDSXML_QOS_INHERITANCE_HPP
#define ZUV_PLATFORM_DDSXML_QOS_INHERITANCE_HPP

#include "platform/ddsxml/QosReader.hpp"

namespace zuv::ddsxml
{

// How many QoS and profiles of one document may inherit from each other in a row.
constexpr std::size_t kMaxInheritanceDepth = 64;

// Give each QoS in the libraries of `document` its record. What a QoS does not mention comes from its base, or else is
// the default:
//
//   - its own "base_name" names a profile, or a QoS of the same kind that has a name;
//   - without one, the "base_name" of its profile names a profile;
//   - of a profile, that QoS of the same kind is the base which comes first among those whose topic filter covers the
//     own one; if there is none, the base of the profile is asked in turn.
//
// A name is looked for in the own library, then from the root on; the tree that the document is to join, which may be
// null, goes before the document. Throws BadQos, with the name of the QoS or profile, when a base is not there or is of
// another kind, or a circle closes; and std::bad_alloc.
void resolveQos(ZUVXMLObject &document, const ZUVXMLObject *tree);

// The table for the QoS that has this tag, or null.
const dds::QosRecord *qosTableOf(std::string_view tag);

// Whether `wider` admits all topics that `narrower` admits. Both are lists of patterns, parted by commas. A pattern
// with "?" or brackets covers names, and itself.
bool coversFilter(std::string_view wider, std::string_view narrower);

// "::library::profile": the names on the way from below the root; elements without one add nothing.
xmlutils::HeapString fullNameOf(const ZUVXMLObject &element);

} // namespace zuv::ddsxml

#endif
