// What a tree holds: saving it, and listing what is in it.
#include <cstdio>
#include <cstring>

#include "config/CfgFileService.h"
#include "config/ProductInfo.h"
#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSave.h"
#include "config/XmlSupport.hpp"

namespace
{

using Object = ZUVXMLUTILSObject;

bool isSaved(const Object *child, BRELCfgFileParserSaveMode mode)
{
    switch (mode) {
    case BREL_XML_SUPPORT_ALL_SERVICE_EXCEPT_DEFAULT_SAVE_MODE:
        return !BRELCfgFileService_isXmlServiceObject(child) ||
               std::strcmp(ZUVXMLUTILSObject_getName(child), "default") != 0;
    case BREL_XML_SUPPORT_LOADED_SERVICE_ONLY_SAVE_MODE:
        return !BRELCfgFileService_isXmlServiceObject(child) ||
               ZUVXMLUTILSObject_getUserData(child) != nullptr;
    case BREL_XML_SUPPORT_EXCLUDE_CHILDREN_RESOURCES: {
        const BRELCfgFileParser *const parser = BRELXmlObject_getXmlSupport(child);
        return parser == nullptr || BRELCfgFileParser_lookUpExtension(
                                        parser, ZUVXMLUTILSObject_getTagName(child)) == nullptr;
    }
    case BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE:
        break;
    }
    return true;
}

const char *annotationOf(const Object *service)
{
    const Object *const annotation = ZUVXMLUTILSObject_getFirstChildWithTag(service, "annotation");
    const Object *const documentation =
        annotation != nullptr ? ZUVXMLUTILSObject_getFirstChildWithTag(annotation, "documentation")
                              : nullptr;
    return documentation != nullptr ? ZUVXMLUTILSObject_getText(documentation)
           : annotation != nullptr  ? ZUVXMLUTILSObject_getText(annotation)
                                    : "";
}

void printService(const Object *service)
{
    const char *const name = ZUVXMLUTILSObject_getName(service);
    const char *const path = ZUVXMLUTILSObject_getFilePath(service);
    const char *const source = path != nullptr ? path : "string";
    const char *const annotation = annotationOf(service);
    if (*annotation != '\0') {
        std::printf("- %s:(%s)\n\t%s\n", name, source, annotation);
    } else {
        std::printf("- %s (%s)\n", name, source);
    }
}

void *recordOf(const Object *xmlObject)
{
    return xmlObject != nullptr ? ZUVXMLUTILSObject_getUserData(xmlObject) : nullptr;
}

} // namespace

extern "C" {

void BRELCfgFileParser_saveDocument(const ZUVXMLUTILSObject *xmlRoot,
                                    ZUVXMLUTILSSaveContext *saveContext,
                                    BRELCfgFileParserSaveMode saveMode)
{
    if (BREL_XML_IS_NULL(xmlRoot) || BREL_XML_IS_NULL(saveContext)) {
        return;
    }
    ZUVXMLUTILSSaveContext_print(saveContext, "<?xml version=\"1.0\"?>\n");
    BRELCfgFileParser_saveObject(xmlRoot, saveContext, saveMode);
}

void BRELCfgFileParser_saveObject(const ZUVXMLUTILSObject *xmlObject,
                                  ZUVXMLUTILSSaveContext *saveContext,
                                  BRELCfgFileParserSaveMode saveMode)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(saveContext) ||
        !BRELXmlUtils_canSave(xmlObject)) {
        return;
    }
    BRELXmlObject_saveElementTag(xmlObject, saveContext,
                                 BREL_XML_SAVE_START_TAG | BREL_XML_SAVE_CHILDREN);
    for (const Object *child = ZUVXMLUTILSObject_getFirstChild(xmlObject); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        if (isSaved(child, saveMode)) {
            BRELXmlObject_save(child, saveContext);
        }
    }
    BRELXmlObject_saveElementTag(xmlObject, saveContext,
                                 BREL_XML_SAVE_END_TAG | BREL_XML_SAVE_BEHIND_CHILDREN);
}

void *BRELCfgFileParser_getFirstPluginLibrary(const BRELCfgFileParser *self,
                                              const char *libraryTagName)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(libraryTagName) || self->_xmlRoot == nullptr) {
        return nullptr;
    }
    return recordOf(ZUVXMLUTILSObject_getFirstChildWithTag(self->_xmlRoot, libraryTagName));
}

void *BRELCfgFileParser_getNextPluginLibrary(const BRELCfgFileParser *self,
                                             const void *adapterLibrary)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(adapterLibrary)) {
        return nullptr;
    }
    // Every record begins with its element.
    const Object *const library = *static_cast<const Object *const *>(adapterLibrary);
    return recordOf(
        ZUVXMLUTILSObject_getNextSiblingWithTag(library, ZUVXMLUTILSObject_getTagName(library)));
}

void BRELCfgFileParser_printAvailableConfig(const BRELCfgFileParser *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return;
    }
    const char *const tag = BRELProductInfo_get()->topLevelTag;
    std::printf("Available configurations:\n");
    const Object *service = self->_xmlRoot != nullptr
                                ? ZUVXMLUTILSObject_getFirstChildWithTag(self->_xmlRoot, tag)
                                : nullptr;
    if (service == nullptr) {
        std::printf("No configurations found\n");
    }
    for (; service != nullptr; service = ZUVXMLUTILSObject_getNextSiblingWithTag(service, tag)) {
        printService(service);
    }
}
}
