// Prints policies as elements.
#ifndef ZUV_PLATFORM_DDSXML_QOS_PRINTER_HPP
#define ZUV_PLATFORM_DDSXML_QOS_PRINTER_HPP

#include "platform/dds/QosTable.hpp"
#include "platform/xmlutils/Memory.hpp"

namespace zuv::ddsxml
{

// An element of the record's tag with all that it holds; reading it over the defaults gives an equal record. Texts that
// are NULL are left out. Throws std::bad_alloc.
xmlutils::HeapString printQos(const dds::QosRecord &table, const void *record);

} // namespace zuv::ddsxml

#endif
