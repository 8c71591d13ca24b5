// The parts of the parser, which share these operations.
#ifndef ZUV_CONFIG_XML_SUPPORT_HPP
#define ZUV_CONFIG_XML_SUPPORT_HPP

#include <cstring>
#include <memory>

#include "config/XmlSupport.h"
#include "platform/xmlutils/Parser.h"

// Holds the profiles that are made of elements, by the addresses of these.
#define BREL_XML_ENTITIES_QOS_LIBRARY_NAME "#zuv.brel_service.qos_library"

namespace brel
{

struct TreeDeleter {
    void operator()(ZUVXMLUTILSObject *tree) const { ZUVXMLUTILSParser_freeDom(tree); }
};
using TreePointer = std::unique_ptr<ZUVXMLUTILSObject, TreeDeleter>;

// The tag of a document's root.
constexpr const char *kDocumentTag = "dds";
constexpr const char *kServiceTag = "brel_service";

// Most tags differ in their first letter, which takes no call.
inline bool isSameTag(const char *tag, const char *other)
{
    return *tag == *other && std::strcmp(tag, other) == 0;
}

inline bool hasTag(const ZUVXMLUTILSObject *xmlObject, const char *tag)
{
    return isSameTag(ZUVXMLUTILSObject_getTagName(xmlObject), tag);
}

} // namespace brel

extern "C" {

int BRELXMLSupportInfrastructure_initialize(BRELXMLSupportInfrastructure *self);
void BRELXMLSupportInfrastructure_finalize(BRELXMLSupportInfrastructure *self);

int BRELCfgFileParser_registerBuiltinExtensions(BRELCfgFileParser *self);

int BRELCfgFileParser_loadStandardQosFiles(BRELCfgFileParser *self);
int BRELCfgFileParser_loadDefaultFiles(BRELCfgFileParser *self);

// Merge a parsed document, which stays the caller's to free unless it became the root.
int BRELCfgFileParser_processDom(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject);

// Both passes over the element and all in it: variables and names, then validation and records.
int BRELCfgFileParser_initializeExtensionsExt(BRELCfgFileParser *self,
                                              ZUVXMLUTILSObject *xmlObject);
// The second pass.
int BRELCfgFileParser_initializeExtensionsI(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject);
// Delete the records of the element and of all in it, children first.
void BRELCfgFileParser_finalizeExtensions(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject);

// Let the QoS side tree have what the element says: the variables, types and libraries of a document, or a
// profile that holds a QoS element.
int BRELCfgFileParser_generateNativeExtensionObject(BRELCfgFileParser *self,
                                                    ZUVXMLUTILSObject *xmlSourceElement,
                                                    const char *topicFilter);
// The profile of a QoS element in the side tree, or null.
ZUVXMLObject *BRELCfgFileParser_lookUpLibraryNativeObject(const ZUVXMLUTILSObject *xmlObject);
}

#endif
