// Snippets: changes of entities, new entities, and the end of entities.
#include <array>
#include <cstring>
#include <utility>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/osapi/Utility.h"

namespace
{

using Object = ZUVXMLUTILSObject;

brel::TreePointer parseSnippet(const char *text)
{
    brel::TreePointer snippet(ZUVXMLUTILSParser_parseString(text));
    if (snippet == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse XML snippet string");
    }
    return snippet;
}

// A copy of what a snippet holds, in the tree; it goes again unless it is kept.
class Added
{
public:
    Added(BRELCfgFileParser &parser, Object *parent, const Object *element)
        : parser_(parser), object_(ZUVXMLUTILSObject_copyAsChild(parent, element))
    {
        if (object_ == nullptr) {
            BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parsed entity");
        }
    }
    ~Added()
    {
        if (object_ != nullptr) {
            BRELCfgFileParser_deleteEntity(&parser_, object_);
        }
    }
    Added(const Added &) = delete;
    Added &operator=(const Added &) = delete;

    Object *get() const { return object_; }
    Object *keep() { return std::exchange(object_, nullptr); }

private:
    BRELCfgFileParser &parser_;
    Object *object_;
};

const char *validationRootOf(const Object *xmlObject, bool isUpdate)
{
    return BRELCfgFileParser_findValidationRootTag(
        ZUVXMLUTILSObject_getTagName(xmlObject),
        ZUVXMLUTILSObject_getTagName(ZUVXMLUTILSObject_getParent(xmlObject)), isUpdate);
}

// Validate the element under another tag.
bool validateAs(const BRELCfgFileParser &self, Object *xmlObject, const char *root)
{
    std::array<char, 257> tag;
    if (ZUVOsapiUtility_strcpy(tag.data(), tag.size(), ZUVXMLUTILSObject_getTagName(xmlObject)) ==
            nullptr ||
        !ZUVXMLUTILSObject_setTagName(xmlObject, root)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s,
                         ZUVXMLUTILSObject_getTagName(xmlObject));
        return false;
    }
    const int isValid =
        ZUVXMLUTILSValidator_validate(self._xmlInfrastructure._xsdValidator, xmlObject);
    const int isRestored = ZUVXMLUTILSObject_setTagName(xmlObject, tag.data());
    if (!isValid || !isRestored) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s, tag.data());
        return false;
    }
    return true;
}

bool validateUpdate(const BRELCfgFileParser &self, Object *copy)
{
    const char *const root = validationRootOf(copy, true);
    if (root == nullptr) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(copy),
                         "unknown entity");
        return false;
    }
    return validateAs(self, copy, root);
}

bool validateEntity(const BRELCfgFileParser &self, Object *added)
{
    const char *const root = validationRootOf(added, false);
    if (root == nullptr) {
        BREL_XML_FAILURE(&ZUVXML_LOG_PARSER_UNEXPECTED_TAG_FAILURE_ds, BREL_XML_PLACE(added));
        return false;
    }
    return validateAs(self, added, root);
}

// The element of the snippet that is the update of the target, or null.
const Object *findUpdate(const BRELCfgFileParser &self, const Object *snippet, const Object *target)
{
    const Object *update = snippet;
    if (self._xmlRoot != nullptr &&
        brel::hasTag(snippet, ZUVXMLUTILSObject_getTagName(self._xmlRoot))) {
        const char *const fullName = ZUVXMLUTILSObject_getFullyQualifiedName(target);
        if (fullName == nullptr) {
            return nullptr;
        }
        update = ZUVXMLUTILSObject_lookUp(snippet, fullName);
        if (update == nullptr) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s, fullName);
            return nullptr;
        }
    }
    if (!brel::hasTag(update, ZUVXMLUTILSObject_getTagName(target))) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(update),
                         "target update element has different tag");
        return nullptr;
    }
    return update;
}

// Nobody has read what has just come: what its variables stood for need not stay.
bool walk(BRELCfgFileParser &self, Object *added)
{
    int &isUnread = self._variableExpansor._expansor.isUnread;
    isUnread = 1;
    const int isWalked = BRELCfgFileParser_initializeExtensionsExt(&self, added);
    isUnread = 0;
    return isWalked;
}

bool bindUpdate(BRELCfgFileParser &self, Object *copy, const Object *target)
{
    if (self.property->enforce_xsd_validation && !validateUpdate(self, copy)) {
        return false;
    }
    if (!BRELXmlObject_setUpdateTarget(copy, target)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set up update target");
        return false;
    }
    if (!walk(self, copy)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "initialize extensions");
        return false;
    }
    return true;
}

} // namespace

extern "C" {

ZUVXMLUTILSObject *BRELCfgFileParser_parseUpdate(BRELCfgFileParser *self,
                                                 ZUVXMLUTILSObject *xmlUpdateTarget,
                                                 const char *xmlSnippetString)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlUpdateTarget) ||
        BREL_XML_IS_NULL(xmlSnippetString)) {
        return nullptr;
    }
    ZUVXMLUTILSObject *const parent = ZUVXMLUTILSObject_getParent(xmlUpdateTarget);
    if (BREL_XML_IS_NULL(parent)) {
        return nullptr;
    }
    const brel::TreePointer snippet = parseSnippet(xmlSnippetString);
    const Object *const update =
        snippet != nullptr ? findUpdate(*self, snippet.get(), xmlUpdateTarget) : nullptr;
    if (update == nullptr) {
        return nullptr;
    }
    Added copy(*self, parent, update);
    return copy.get() != nullptr && bindUpdate(*self, copy.get(), xmlUpdateTarget) ? copy.keep()
                                                                                   : nullptr;
}

ZUVXMLUTILSObject *BRELCfgFileParser_loadEntity(BRELCfgFileParser *self,
                                                ZUVXMLUTILSObject *xmlParent,
                                                const char *xmlSnippetString)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlParent) ||
        BREL_XML_IS_NULL(xmlSnippetString)) {
        return nullptr;
    }
    const brel::TreePointer snippet = parseSnippet(xmlSnippetString);
    if (snippet == nullptr) {
        return nullptr;
    }
    Added added(*self, xmlParent, snippet.get());
    if (added.get() == nullptr) {
        return nullptr;
    }
    // Where it meets all its siblings, so that it cannot have the name of one.
    ZUVXMLUTILSObject_moveToEnd(added.get());
    if (self->property->enforce_xsd_validation && !validateEntity(*self, added.get())) {
        return nullptr;
    }
    if (!walk(*self, added.get())) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "initialize extensions");
        return nullptr;
    }
    return added.keep();
}

void BRELCfgFileParser_deleteEntity(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlObject)) {
        return;
    }
    BRELCfgFileParser_finalizeExtensions(self, xmlObject);
    if (xmlObject == self->_xmlRoot) {
        self->_xmlRoot = nullptr;
    }
    ZUVXMLUTILSParser_freeDom(xmlObject);
}
}
