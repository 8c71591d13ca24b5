#include "config/DdsXmlUtils.h"

#include <algorithm>
#include <string_view>

#include "log/Log.h"
#include "log/Report.hpp"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

using std::string_view;

void reportFailure(const char *what, const brel::Place &place)
{
    brel::report(BREL_SUBMODULE_ELEMENTS, ZUV_LOG_ANY_FAILURE_s, what, place);
}

const ZUVXMLObject *rootOf(const ZUVXMLObject *object)
{
    for (const ZUVXMLObject *parent = object; parent != nullptr;) {
        object = parent;
        parent = DDS_XMLObject_get_parent(object);
    }
    return object;
}

bool isTypeDefinition(const ZUVXMLObject &object)
{
    constexpr string_view kTags[] = {"struct", "union", "enum", "valuetype"};
    return std::ranges::find(kTags, ZUVXMLObject_getTagName(&object)) != std::end(kTags);
}

// `hasFailed` is set by what is reported, and by nothing else.
const DDS_TypeCode *findTypeCode(const ZUVXMLObject *root, const char *typeName, bool &hasFailed,
                                 const brel::Place &place = brel::Place::current())
{
    hasFailed = true;
    if (root == nullptr) {
        reportFailure("Error getting DOM", place);
        return nullptr;
    }
    const ZUVXMLObject *const types = ZUVXMLObject_getFirstChildWithTag(root, "types");
    ZUVXMLObject *const definition =
        types != nullptr ? DDS_XMLObject_lookup(types, typeName) : nullptr;
    if (definition == nullptr) {
        hasFailed = false;
        return nullptr;
    }
    if (!isTypeDefinition(*definition)) {
        reportFailure("This is not a type definition", place);
        return nullptr;
    }
    const DDS_TypeCode *const typeCode = DDS_XMLTypeCode_get_dds_typecode(definition);
    if (typeCode == nullptr) {
        reportFailure("Bad type definition", place);
        return nullptr;
    }
    hasFailed = false;
    return typeCode;
}

} // namespace

extern "C" {

const DDS_TypeCode *BRELUtils_getTypeCodeFromXML(const ZUVXMLObject *xml, const char *typeName,
                                                 DDS_XMLContext *context)
{
    if (IS_NULL(typeName) || IS_NULL(context)) {
        return nullptr;
    }
    bool hasFailed = false;
    const DDS_TypeCode *const typeCode = findTypeCode(rootOf(xml), typeName, hasFailed);
    if (hasFailed) {
        context->error = 1;
    }
    return typeCode;
}

const DDS_TypeCode *BRELUtils_getTypeCodeFromXMLDom(const ZUVXMLObject *xmlDom,
                                                    const char *typeName)
{
    if (IS_NULL(typeName)) {
        return nullptr;
    }
    bool hasFailed = false;
    return findTypeCode(xmlDom, typeName, hasFailed);
}

ZUVXMLExtensionClass *BRELUtils_findExtensionClass(const DDS_XMLParser *parser, const char *tagName)
{
    if (IS_NULL(parser) || IS_NULL(tagName)) {
        return nullptr;
    }
    return DDS_XMLParser_find_extension_class(parser, tagName);
}

int BRELUtils_removeChildXmlObject(ZUVXMLObject *parent, ZUVXMLObject *child)
{
    if (IS_NULL(parent) || IS_NULL(child)) {
        return 0;
    }
    if (!ZUVXMLObject_removeChild(parent, child)) {
        reportFailure("remove child XML object", brel::Place::current());
        return 0;
    }
    return 1;
}

int BRELUtils_deleteXMLObject(DDS_XMLParser *parser, ZUVXMLObject *childObject)
{
    if (IS_NULL(parser) || IS_NULL(childObject)) {
        return 0;
    }
    ZUVXMLObject *const parent = DDS_XMLObject_get_parent(childObject);
    if (parent != nullptr && !BRELUtils_removeChildXmlObject(parent, childObject)) {
        return 0;
    }
    DDS_XMLParser_free_dom(parser, childObject);
    return 1;
}
}
