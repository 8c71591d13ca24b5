#include "config/XmlVariableExpansor.h"

#include <cstring>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"

namespace
{

constexpr const char *kVariablesTag = "configuration_variables";

// Names are those of the service's own settings: case counts.
const char *valueOfUser(const void *source, const char *name)
{
    return static_cast<const char *>(ZUV_BrelServiceProperties_lookup_property(
        static_cast<const ZUV_BrelServiceProperties *>(source), name));
}

// In documents names are equal without regard to case, since a definition replaces one that differs in case.
const char *valueOfDocuments(const void *source, const char *name)
{
    const ZUV_BrelServiceNameValue *const entry = ZUV_BrelServiceProperties_lookupProperty(
        static_cast<const ZUV_BrelServiceProperties *>(source), name);
    return entry != nullptr ? static_cast<const char *>(entry->value) : nullptr;
}

bool definesVariables(const ZUVXMLUTILSObject *xmlObject)
{
    const ZUVXMLUTILSObject *const parent = ZUVXMLUTILSObject_getParent(xmlObject);
    return parent != nullptr && ZUVXMLUTILSObject_getParent(parent) == nullptr &&
           std::strcmp(ZUVXMLUTILSObject_getTagName(xmlObject), kVariablesTag) == 0;
}

bool readDefinitions(const ZUVXMLUTILSObject *root, ZUV_BrelServiceProperties &variables)
{
    const ZUVXMLUTILSObject *child =
        root != nullptr ? ZUVXMLUTILSObject_getFirstChildWithTag(root, kVariablesTag) : nullptr;
    for (; child != nullptr;
         child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, kVariablesTag)) {
        if (!BRELXmlProperty_parse(child, &variables)) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" {

int BRELXmlVariableExpansor_initialize(BRELXmlVariableExpansor *self,
                                       const ZUV_BrelServiceProperties *userEnv,
                                       const ZUVXMLUTILSObject *xmlExistingRoot)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(userEnv)) {
        return 0;
    }
    *self = {};
    if (!ZUV_BrelServiceProperties_initialize(&self->_xmlUserEnv)) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "xml user environment");
        return 0;
    }
    if (!ZUVXMLUTILSVariableExpansor_initialize(&self->_expansor, userEnv, &valueOfUser,
                                                &self->_xmlUserEnv, &valueOfDocuments) ||
        !readDefinitions(xmlExistingRoot, self->_xmlUserEnv)) {
        BRELXmlVariableExpansor_finalize(self);
        return 0;
    }
    self->_visitor = {self, &BRELXmlVariableExpansor_visit};
    return 1;
}

void BRELXmlVariableExpansor_finalize(BRELXmlVariableExpansor *self)
{
    if (!BREL_XML_IS_NULL(self)) {
        ZUV_BrelServiceProperties_finalize(&self->_xmlUserEnv);
    }
}

int BRELXmlVariableExpansor_visit(void *visitorData, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(visitorData) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    auto *const self = static_cast<BRELXmlVariableExpansor *>(visitorData);
    if ((definesVariables(xmlObject) && !BRELXmlProperty_parse(xmlObject, &self->_xmlUserEnv)) ||
        !self->_expansor.visitor.visit(self->_expansor.visitor.visitorData, xmlObject)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
        return 0;
    }
    return 1;
}
}
