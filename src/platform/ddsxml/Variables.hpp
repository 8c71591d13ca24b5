// Variables of the middleware's XML.
#ifndef ZUV_PLATFORM_DDSXML_VARIABLES_HPP
#define ZUV_PLATFORM_DDSXML_VARIABLES_HPP

#include "platform/ddsxml/XmlObject.hpp"

namespace zuv::ddsxml
{

// Replace the references to variables in a document, see platform/xmlutils/VariableExpansor.h. A value comes from the
// environment of the process, else from the elements "configuration_variables" of the document and of the tree that it
// is to join, which may be null; the definition that came last counts. False after a report. Throws std::bad_alloc.
bool expandVariables(ZUVXMLUTILSObject *document, const ZUVXMLObject *tree);

} // namespace zuv::ddsxml

#endif
