// Renders samples as text.
#ifndef ZUV_PLATFORM_TYPESYS_PRINTER_HPP
#define ZUV_PLATFORM_TYPESYS_PRINTER_HPP

#include <string>

#include "platform/typesys/PrintFormat.h"
#include "platform/typesys/TypeCode.h"

namespace zuv
{

// The text of a sample that lies in memory as its type code tells, in lines that begin with `indent` steps.
// Throws std::bad_alloc.
std::string renderSample(const DDS_TypeCode &type, const void *sample,
                         const DDS_PrintFormatProperty &format, unsigned indent = 0);

} // namespace zuv

#endif
