// Where documents come from, and how they join the tree.
#include <array>
#include <cstring>

#include "config/CfgFileService.h"
#include "config/DefaultFilePath.h"
#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/osapi/EnvironmentVariable.h"
#include "platform/osapi/File.h"
#include "platform/osapi/HeapBulk.hpp"
#include "platform/osapi/Path.h"
#include "platform/osapi/Utility.h"

namespace
{

constexpr std::size_t kValueSize = 4096;
using Value = std::array<char, kValueSize>;

constexpr const char *kProfilesFile = "USER_QOS_PROFILES.xml";
constexpr const char *kPreprocessorProperty = "zuv.brel_service.preprocess.xslt.path";
constexpr const char *kPropertyPrefix = "zuv.brel_service.";

bool exists(const char *path)
{
    ZUVOsapiFile *const file = ZUVOsapiFile_open(path);
    ZUVOsapiFile_close(file);
    return file != nullptr;
}

void noteMissing(const char *path)
{
    ZUV_LOG(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_XML, &ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s,
            path);
}

// The document that was parsed is freed, unless it has become the root.
bool processParsed(BRELCfgFileParser &self, ZUVXMLUTILSObject *document)
{
    brel::TreePointer owner(document);
    const int isProcessed = BRELCfgFileParser_processDom(&self, document);
    if (self._xmlRoot == document) {
        owner.release();
    }
    if (!isProcessed) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "process DOM");
    }
    return isProcessed;
}

bool loadFile(BRELCfgFileParser &self, const char *path)
{
    ZUVXMLUTILSObject *const document = ZUVXMLUTILSParser_parseFile(path);
    return document != nullptr && processParsed(self, document);
}

// A file that need not exist, under its normalized path.
bool loadProfilesFile(BRELCfgFileParser &self, const char *path)
{
    if (!exists(path)) {
        noteMissing(path);
        return true;
    }
    Value normalized;
    if (!ZUVOsapiUtility_normalizePath(normalized.data(), normalized.size(), path)) {
        BREL_XML_FAILURE_TEXT("normalize path=%s", path);
        return true;
    }
    if (!loadFile(self, normalized.data())) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, normalized.data());
        return false;
    }
    return true;
}

bool loadProfilesOfHome(BRELCfgFileParser &self)
{
    Value home;
    if (ZUVOsapi_envVarOrFileGet(home.data(), home.size(), "KOLMHOME") == nullptr) {
        return true;
    }
    Value path;
    if (ZUVOsapiUtility_snprintf(path.data(), path.size(), "%s/resource/xml/KOLM_QOS_PROFILES.xml",
                                 home.data()) >= static_cast<int>(path.size())) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "path of KOLM_QOS_PROFILES.xml (path too long?)");
        return false;
    }
    return loadProfilesFile(self, path.data());
}

bool loadProfilesOfEnvironment(BRELCfgFileParser &self)
{
    Value list;
    if (ZUVOsapi_envVarOrFileGet(list.data(), list.size(), "KOLM_QOS_PROFILES") == nullptr) {
        return true;
    }
    if (!BRELCfgFileParser_loadUrlGroup(&self, list.data())) {
        BREL_XML_FAILURE_TEXT("load group url=%s", list.data());
        return false;
    }
    return true;
}

bool loadDefaultConfiguration(BRELCfgFileParser &self)
{
    std::array<char, BREL_DEFAULT_FILE_PATH_SIZE> path;
    for (const char *folder : {"../../../xml", "../../resource/xml"}) {
        BRELUtils_getDefaultFileAbsolutePath(path.data(), self.executablePath, folder,
                                             BREL_XML_SUPPORT_DEFAULT_CONFIGURATION_FILE_NAME);
        if (exists(path.data())) {
            if (!loadFile(self, path.data())) {
                BREL_XML_FAILURE(&ZUVXML_LOG_PARSER_PARSE_FILE_FAILURE_s, path.data());
                return false;
            }
            return true;
        }
    }
    noteMissing(path.data());
    return true;
}

bool loadUserConfiguration(BRELCfgFileParser &self)
{
    constexpr const char *kFile = BREL_XML_SUPPORT_USER_CONFIGURATION_FILE_NAME;
    if (!exists(kFile)) {
        noteMissing(kFile);
        return true;
    }
    if (!loadFile(self, kFile)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, kFile);
        return false;
    }
    return true;
}

const char *preprocessorPath(const BRELCfgFileParser &self)
{
    return static_cast<const char *>(ZUV_BrelServiceProperties_lookup_property_with_prefix(
        &self.property->user_environment, kPropertyPrefix, kPreprocessorProperty));
}

// An address may come from this program alone, not out of a stylesheet.
bool bringsTarget(ZUVXMLUTILSObject *document)
{
    const ZUVXMLUTILSVisitor visitor = {
        nullptr, [](void *, ZUVXMLUTILSObject *xmlObject) {
            if (ZUVXMLUTILSObject_getAttribute(
                    xmlObject, BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME) == nullptr) {
                return 1;
            }
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(xmlObject),
                             "the attribute '" BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME
                             "' is not allowed");
            return 0;
        }};
    return !ZUVXMLUTILSVisitor_visit(&visitor, document);
}

brel::TreePointer preprocess(BRELCfgFileParser &self, ZUVXMLUTILSObject *document, const char *path)
{
    BREL_XML_NOTE(&ZUV_LOG_ANY_ss, "applying pre-preprocessing xslt from file=", path);
    ZUVXMLUTILSTransformer *const transformer = ZUVXMLUTILSTransformer_newFromFile(path);
    if (transformer == nullptr) {
        BREL_XML_FAILURE_TEXT("load pre-processing xslt from file=%s", path);
        return nullptr;
    }
    ZUVXMLUTILSTransformer_delete(self._preprocessor);
    self._preprocessor = transformer;
    brel::TreePointer result(ZUVXMLUTILSTransformer_transform(transformer, document));
    if (result == nullptr || bringsTarget(result.get())) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "error applying pre-processing xslt from file");
        return nullptr;
    }
    return result;
}

// An entity at the root would have its record where the parser is, and what is no configuration would pass for valid.
bool isAccepted(const BRELCfgFileParser &self, const ZUVXMLUTILSObject *document)
{
    const char *const tag = ZUVXMLUTILSObject_getTagName(document);
    if (std::strcmp(tag, brel::kDocumentTag) == 0 ||
        (!self.property->enforce_xsd_validation &&
         BRELCfgFileParser_lookUpExtension(&self, tag) == nullptr)) {
        return true;
    }
    const char *const path = ZUVXMLUTILSObject_getFilePath(document);
    BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss, path != nullptr ? path : "text",
                     BREL_XML_PLACE(document), "the root of a configuration is <dds>");
    return false;
}

// The document becomes the root, or its content joins the root.
bool join(BRELCfgFileParser &self, ZUVXMLUTILSObject *document)
{
    if (self._xmlRoot == nullptr) {
        if (!isAccepted(self, document)) {
            return false;
        }
        self._xmlRoot = document;
        return true;
    }
    if (!ZUVXMLUTILSParser_mergeRoot(self._xmlRoot, document)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "merge root");
        return false;
    }
    ZUVXMLUTILSObject_setUserData(self._xmlRoot, document);
    return true;
}

// The walk replaces variables in the root's copies of a document. What of the document itself goes on into the tree of
// QoS gets them here, in the order of the document as well.
bool expandMerged(BRELCfgFileParser &self, ZUVXMLUTILSObject *document)
{
    self._variableExpansor._expansor.valueSize = 0;
    ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_mayHoldVariables(document)
                                   ? ZUVXMLUTILSObject_getFirstChild(document)
                                   : nullptr;
    for (; child != nullptr; child = ZUVXMLUTILSObject_getNextSibling(child)) {
        const bool isForQos = brel::hasTag(child, "configuration_variables") ||
                              brel::hasTag(child, "types") || brel::hasTag(child, "qos_library");
        if (isForQos && !ZUVXMLUTILSVisitor_visit(&self._variableExpansor._visitor, child)) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
            return false;
        }
    }
    return true;
}

// The walk over a service. Its first pass took place when the service was loaded; only variables, which a later
// document may have defined, are a reason for another one.
int walkService(BRELCfgFileParser &self, ZUVXMLUTILSObject *service)
{
    return self._hasNames && !ZUVXMLUTILSObject_mayHoldVariables(service)
               ? BRELCfgFileParser_initializeExtensionsI(&self, service)
               : BRELCfgFileParser_initializeExtensionsExt(&self, service);
}

} // namespace

extern "C" {

int BRELCfgFileParser_processDom(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    brel::TreePointer transformed;
    if (const char *const path = preprocessorPath(*self)) {
        transformed = preprocess(*self, xmlObject, path);
        if (transformed == nullptr) {
            return 0;
        }
    }
    ZUVXMLUTILSObject *const document = transformed != nullptr ? transformed.get() : xmlObject;
    self->_hasNames = 0;
    if (!join(*self, document)) {
        return 0;
    }
    if (!brel::hasTag(self->_xmlRoot, brel::kDocumentTag)) {
        // The walk does nothing with it, and so has nobody lead back to the parser.
        ZUVXMLUTILSObject_setUserData(self->_xmlRoot, self);
    }
    if (self->_xmlRoot == document) {
        transformed.release();
    }
    const int isInitialized = (self->_xmlRoot == document || expandMerged(*self, document)) &&
                              BRELCfgFileParser_initializeExtensionsExt(self, self->_xmlRoot);
    self->_hasNames = isInitialized;
    if (!isInitialized) {
        // The document that the root leads to goes.
        ZUVXMLUTILSObject_setUserData(self->_xmlRoot, self);
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parser extensions");
    }
    return isInitialized;
}

int BRELCfgFileParser_loadUrlGroup(BRELCfgFileParser *self, const char *urlGroup)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(urlGroup)) {
        return 0;
    }
    BREL_XML_NOTE(&ZUVXMLUTILS_LOG_PARSER_LOAD_URL_GROUP_s, urlGroup);
    ZUVXMLUTILSObject *const document = ZUVXMLUTILSParser_parseUrlGroupList(urlGroup);
    if (document == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse URL group");
        return 0;
    }
    return processParsed(*self, document);
}

int BRELCfgFileParser_loadString(BRELCfgFileParser *self, const char *const *xmlStringArray,
                                 int xmlStringArrayLength)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlStringArray)) {
        return 0;
    }
    BREL_XML_NOTE(&ZUV_LOG_ANY_s, "load configuration from string");
    ZUVXMLUTILSObject *const document =
        ZUVXMLUTILSParser_parseStringArray(xmlStringArray, xmlStringArrayLength);
    if (document == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse XML string");
        return 0;
    }
    const ZUVXMLUTILSObject *const before = self->_xmlRoot;
    if (!processParsed(*self, document)) {
        if (before == nullptr && self->_xmlRoot != nullptr) {
            BRELCfgFileParser_deleteEntity(self, self->_xmlRoot);
            BRELXmlVariableExpansor_forget(&self->_variableExpansor);
        }
        return 0;
    }
    return 1;
}

int BRELCfgFileParser_loadStandardQosFiles(BRELCfgFileParser *self)
{
    return loadProfilesOfHome(*self) && loadProfilesOfEnvironment(*self) &&
           loadProfilesFile(*self, kProfilesFile);
}

int BRELCfgFileParser_loadDefaultFiles(BRELCfgFileParser *self)
{
    return loadDefaultConfiguration(*self) && loadUserConfiguration(*self);
}

BRELCfgFileService *BRELCfgFileParser_loadService(BRELCfgFileParser *self, const char *serviceName)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(serviceName)) {
        return nullptr;
    }
    if (self->_xmlRoot == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "no configurations found");
        return nullptr;
    }
    ZUVXMLUTILSObject *const service = ZUVXMLUTILSObject_lookUp(self->_xmlRoot, serviceName);
    if (service == nullptr) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s, serviceName);
        return nullptr;
    }
    if (!BRELCfgFileService_isXmlServiceObject(service)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss, serviceName,
                         "brel_service");
        return nullptr;
    }
    const bool isNew = ZUVXMLUTILSObject_getUserData(service) == nullptr;
    const zuv_heap::BulkScope bulk; // of records
    if (!walkService(*self, service)) {
        BREL_XML_FAILURE_TEXT("initialize parser extensions, service name = %s", serviceName);
        if (isNew) {
            // Records that stayed would make the next call take the service for whole.
            BRELCfgFileParser_finalizeExtensions(self, service);
        }
        return nullptr;
    }
    return static_cast<BRELCfgFileService *>(ZUVXMLUTILSObject_getUserData(service));
}
}
