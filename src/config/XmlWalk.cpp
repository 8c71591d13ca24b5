// The walk that turns elements into entities: variables and names first, then validation and records.
#include <cstring>

#include "config/CfgFileService.h"
#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/osapi/HeapBulk.hpp"

namespace
{

using Object = ZUVXMLUTILSObject;

bool comesFromDefaultFile(const Object *xmlObject)
{
    const char *const path = ZUVXMLUTILSObject_getFilePath(xmlObject);
    return path != nullptr &&
           (std::strstr(path, BREL_XML_SUPPORT_USER_CONFIGURATION_FILE_NAME) != nullptr ||
            std::strstr(path, BREL_XML_SUPPORT_DEFAULT_CONFIGURATION_FILE_NAME) != nullptr);
}

// A line tells enough of a text; of several files the reader has to know which.
void reportFileOf(const Object *xmlObject, const char *reason)
{
    if (const char *const path = ZUVXMLUTILSObject_getFilePath(xmlObject)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss, path, BREL_XML_PLACE(xmlObject),
                         reason);
    }
}

// The first pass. All elements before the one that is visited have names that differ among siblings, so that the
// first sibling of a name is the only one.
class NamePass
{
public:
    NamePass(BRELCfgFileParser &parser, Object *top)
        : parser_(parser), top_(top), hasVariables_(ZUVXMLUTILSObject_mayHoldVariables(top) != 0)
    {
    }

    bool run()
    {
        parser_._variableExpansor._expansor.valueSize = 0;
        if (!hasVariables_ && !defineVariables()) {
            return false;
        }
        const ZUVXMLUTILSVisitor visitor = {
            this, [](void *self, Object *xmlObject) {
                return static_cast<int>(static_cast<NamePass *>(self)->visit(xmlObject));
            }};
        return ZUVXMLUTILSVisitor_visit(&visitor, top_);
    }

    // What the top of the walk takes the place of. It goes when the walk as a whole has succeeded.
    Object *replaced() const { return replaced_; }

private:
    bool expand(Object *xmlObject)
    {
        const ZUVXMLUTILSVisitor &expansor = parser_._variableExpansor._visitor;
        if (!expansor.visit(expansor.visitorData, xmlObject)) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
            return false;
        }
        return true;
    }

    // Without references only definitions matter: to what comes later.
    bool defineVariables()
    {
        constexpr const char *kTag = "configuration_variables";
        if (top_ != parser_._xmlRoot) {
            return expand(top_);
        }
        Object *child = ZUVXMLUTILSObject_getFirstChildWithTag(top_, kTag);
        for (; child != nullptr; child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, kTag)) {
            if (!expand(child)) {
                return false;
            }
        }
        return true;
    }

    bool visit(Object *xmlObject)
    {
        if (hasVariables_ && !expand(xmlObject)) {
            return false;
        }
        const char *const tag = ZUVXMLUTILSObject_getTagName(xmlObject);
        if (BRELCfgFileParser_lookUpExtension(&parser_, tag) == nullptr) {
            return true;
        }
        if (brel::isSameTag(tag, brel::kServiceTag)) {
            replaceDefault(xmlObject);
        }
        if (!BRELXmlUtils_setAutoName(xmlObject)) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
            return false;
        }
        return isOnlyOne(xmlObject);
    }

    // A service of the default files gives way to one of the same name that comes later.
    void replaceDefault(Object *service)
    {
        Object *const earlier =
            ZUVXMLUTILSObject_lookUpPreviousSibling(service, ZUVXMLUTILSObject_getName(service));
        if (earlier == nullptr || !BRELCfgFileService_isXmlServiceObject(earlier) ||
            !comesFromDefaultFile(earlier)) {
            return;
        }
        if (service == top_) {
            replaced_ = earlier;
        } else {
            BRELCfgFileParser_deleteEntity(&parser_, earlier);
        }
    }

    // The earlier sibling of that name. An empty name is a name like others, if the element says so.
    static const Object *earlierOf(const Object *xmlObject, const char *name)
    {
        if (*name != '\0') {
            return ZUVXMLUTILSObject_lookUpPreviousSibling(xmlObject, name);
        }
        const Object *sibling = ZUVXMLUTILSObject_getPreviousSibling(xmlObject);
        const auto hasEmptyName = [](const Object *x) {
            const char *const value = ZUVXMLUTILSObject_getAttribute(x, "name");
            return value != nullptr && *value == '\0';
        };
        while (sibling != nullptr && !hasEmptyName(sibling)) {
            sibling = ZUVXMLUTILSObject_getPreviousSibling(sibling);
        }
        return sibling;
    }

    bool isOnlyOne(const Object *xmlObject) const
    {
        const char *const name = ZUVXMLUTILSObject_getName(xmlObject);
        const Object *const earlier = earlierOf(xmlObject, name);
        if (earlier == nullptr || earlier == replaced_) {
            return true;
        }
        reportFileOf(xmlObject, "another element has its name");
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_ALREADY_EXISTS_ds,
                         ZUVXMLUTILSObject_getLine(earlier), name);
        return false;
    }

    BRELCfgFileParser &parser_;
    Object *top_;
    bool hasVariables_;
    Object *replaced_ = nullptr;
};

bool giveNames(NamePass &names)
{
    const zuv_heap::BulkScope bulk;
    return names.run();
}

bool validateDocument(BRELCfgFileParser &self, Object *root)
{
    if (!self.property->enforce_xsd_validation || BRELXmlObject_getUpdateTarget(root) != nullptr) {
        return true;
    }
    if (!ZUVXMLUTILSValidator_validate(self._xmlInfrastructure._xsdValidator, root)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s,
                         ZUVXMLUTILSObject_getTagName(root));
        return false;
    }
    return true;
}

void announceVersion(BRELCfgFileParser &self, const Object *root)
{
    ZUV_BrelServiceVersion version;
    char text[DDS_PRODUCT_VERSION_MAX_STRING_SIZE];
    BRELXmlUtils_getVersion(root, &version);
    BREL_versionToString(&version, text);
    if (!self._isVersionDetected) {
        BREL_XML_NOTE(&ZUV_LOG_ANY_ss, "configuration detected as version=", text);
        self._isVersionDetected = 1;
    }
}

bool initializeDocument(BRELCfgFileParser &self, Object *root)
{
    if (!validateDocument(self, root)) {
        return false;
    }
    announceVersion(self, root);
    // During a merge the root's user data is the document that has just joined it. An element "dds" further down,
    // which no schema allows, keeps the parser there from one walk to the next.
    auto *const merged = root == self._xmlRoot
                             ? static_cast<Object *>(ZUVXMLUTILSObject_getUserData(root))
                             : nullptr;
    Object *const document = merged != nullptr ? merged : root;
    ZUVXMLUTILSObject_setUserData(document, &self);
    if (!BRELCfgFileParser_generateNativeExtensionObject(&self, document, nullptr)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "generate QoS");
        return false;
    }
    ZUVXMLUTILSObject_setUserData(root, &self);
    return true;
}

bool makeRecord(BRELCfgFileParser &self, const BRELXmlObjectExtension &extension, Object *xmlObject)
{
    void *const record = extension.newObject(&self, xmlObject);
    if (record == nullptr) {
        reportFileOf(xmlObject, "what it says cannot be taken over");
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "extension object");
        return false;
    }
    if (!ZUVXMLUTILSObject_setUserData(xmlObject, record)) {
        extension.deleteObject(record);
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "extension object");
        return false;
    }
    return true;
}

bool initializeChildren(BRELCfgFileParser &self, Object *xmlObject, bool isDocument)
{
    for (Object *child = ZUVXMLUTILSObject_getFirstChild(xmlObject); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        if (isDocument && BRELCfgFileService_isXmlServiceObject(child)) {
            continue; // until it is asked for
        }
        if (!BRELCfgFileParser_initializeExtensionsI(&self, child)) {
            BREL_XML_FAILURE_TEXT("initialize XML extensions for object = %s",
                                  ZUVXMLUTILSObject_getName(child));
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" {

int BRELCfgFileParser_initializeExtensionsI(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject)
{
    const char *const tag = ZUVXMLUTILSObject_getTagName(xmlObject);
    const bool isDocument = brel::isSameTag(tag, brel::kDocumentTag);
    const BRELXmlObjectExtension *extension = nullptr;
    if (isDocument) {
        if (!initializeDocument(*self, xmlObject)) {
            return 0;
        }
    } else {
        extension = BRELCfgFileParser_lookUpExtension(self, tag);
        if (extension != nullptr && ZUVXMLUTILSObject_getUserData(xmlObject) != nullptr) {
            return 1;
        }
        if (extension != nullptr && !makeRecord(*self, *extension, xmlObject)) {
            return 0;
        }
    }
    if (!initializeChildren(*self, xmlObject, isDocument)) {
        return 0;
    }
    if (extension != nullptr && extension->setUpObject != nullptr &&
        !extension->setUpObject(self, ZUVXMLUTILSObject_getUserData(xmlObject))) {
        reportFileOf(xmlObject, "what it says does not fit what stands around it");
        BREL_XML_FAILURE(&ZUVXML_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(xmlObject),
                         "set up extension object");
        return 0;
    }
    return 1;
}

int BRELCfgFileParser_initializeExtensionsExt(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    NamePass names(*self, xmlObject);
    if (!giveNames(names) || !BRELCfgFileParser_initializeExtensionsI(self, xmlObject)) {
        return 0;
    }
    if (names.replaced() != nullptr) {
        BRELCfgFileParser_deleteEntity(self, names.replaced());
    }
    return 1;
}

void BRELCfgFileParser_finalizeExtensions(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlObject)) {
        return;
    }
    const auto deleteRecord = [](void *parser, Object *object) {
        const BRELXmlObjectExtension *const extension = BRELCfgFileParser_lookUpExtension(
            static_cast<BRELCfgFileParser *>(parser), ZUVXMLUTILSObject_getTagName(object));
        void *const record = extension != nullptr ? ZUVXMLUTILSObject_getUserData(object) : nullptr;
        if (record != nullptr) {
            ZUVXMLUTILSObject_setUserData(object, nullptr);
            extension->deleteObject(record);
        }
        return 1;
    };
    const ZUVXMLUTILSVisitor visitor = {self, deleteRecord};
    ZUVXMLUTILSVisitor_visitChildrenFirst(&visitor, xmlObject);
}
}
