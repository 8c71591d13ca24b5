// Reads policies from the elements of the tree.
#ifndef ZUV_PLATFORM_DDSXML_QOS_READER_HPP
#define ZUV_PLATFORM_DDSXML_QOS_READER_HPP

#include "platform/dds/QosTable.hpp"
#include "platform/ddsxml/XmlObject.hpp"

namespace zuv::ddsxml
{

// What is wrong: "policy.field: 'text' is no number"; and the element that says so.
struct BadQos {
    xmlutils::HeapString reason;
    const ZUVXMLObject *element;
};

// Let what the element says replace what stands in the record; what it does not mention stays. Properties are replaced
// one by one, other lists as a whole. Throws BadQos and std::bad_alloc, with some fields replaced.
void readQos(const dds::QosRecord &table, const ZUVXMLObject &element, void *record);

// The same for the fields of one policy, which lies at `policy`. `place` stands before what is wrong.
void readPolicy(const dds::QosPolicy &table, const ZUVXMLObject &element, void *policy,
                std::string_view place);

} // namespace zuv::ddsxml

#endif
