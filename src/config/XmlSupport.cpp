// The life of the parser: what it is made of, in which order that comes, and in which it goes.
#include "config/XmlSupport.hpp"

#include <atomic>

#include "config/XmlLog.hpp"
#include "platform/ddsxml/DistLogger.h"
#include "platform/osapi/Object.hpp"

namespace
{

std::atomic<BRELTypeProviderFnc> g_typeProvider = nullptr;

// The elements of the distributed logger are read by the middleware, which has no log of the service.
void reportDistributedLogger(const char *message, const char *methodName, int line)
{
    if (ZUV_LOG_ENABLED(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, BREL_LOG_MODULE_ID, BREL_SUBMODULE_XML,
                                      __FILE__, __LINE__, methodName,
                                      &ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, line,
                                      "distributed_logger", message);
    }
}

bool createDistributedLogger(BRELCfgFileParser &self)
{
    self._distLogExtensionClass =
        ZUV_DL_XMLConfig_createXMLExtensionClass(&reportDistributedLogger);
    if (self._distLogExtensionClass == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "XML class extension <distributed_logger>");
        return false;
    }
    if (!DDS_XMLParser_register_extension_class(self._xmlDdsParser, self._distLogExtensionClass)) {
        BREL_XML_FAILURE_TEXT("register XML extension class\n");
        ZUV_DL_XMLConfig_destroyXMLExtensionClass(self._distLogExtensionClass);
        self._distLogExtensionClass = nullptr;
        return false;
    }
    return true;
}

// What stands by itself, before any document is read.
bool initializeParts(BRELCfgFileParser &self)
{
    self._xmlDdsParser = DDS_XMLParser_new();
    if (self._xmlDdsParser == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "DDS_XMLParser");
        return false;
    }
    self._xmlMutex = ZUVOsapiSemaphore_new(ZUV_OSAPI_SEMAPHORE_KIND_MUTEX, nullptr);
    if (self._xmlMutex == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "XML DOM Mutex");
        return false;
    }
    if (!createDistributedLogger(self)) {
        return false;
    }
    if (!BRELCfgFileParser_registerBuiltinExtensions(&self)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "register built-in parser extesions");
        return false;
    }
    if (!BRELXmlVariableExpansor_initialize(&self._variableExpansor,
                                            &self.property->user_environment, nullptr)) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "variable expansor visitor");
        return false;
    }
    if (!BRELXMLSupportInfrastructure_initialize(&self._xmlInfrastructure)) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "XML support infrastructure");
        return false;
    }
    return true;
}

bool loadSources(BRELCfgFileParser &self, int serviceKind)
{
    if (self.property->skip_default_files) {
        return true;
    }
    if (!BRELCfgFileParser_loadStandardQosFiles(&self)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "load standard QoS files");
        return false;
    }
    if (serviceKind == BREL_XML_SUPPORT_SERVICE_KIND &&
        !BRELCfgFileParser_loadDefaultFiles(&self)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "load default config files");
        return false;
    }
    return true;
}

void freeRoot(BRELCfgFileParser &self)
{
    if (self._xmlRoot != nullptr) {
        BRELCfgFileParser_finalizeExtensions(&self, self._xmlRoot);
        ZUVXMLUTILSParser_freeDom(self._xmlRoot);
    }
}

void unregisterExtensions(BRELCfgFileParser &self)
{
    while (MAVOInlineListNode *const node = MAVOInlineList_getFirst(&self._registeredExtensions)) {
        BRELCfgFileParser_unregisterExtension(&self,
                                              reinterpret_cast<BRELXmlObjectExtension *>(node));
    }
}

void destroyDistributedLogger(BRELCfgFileParser &self)
{
    if (self._distLogExtensionClass != nullptr) {
        DDS_XMLParser_unregister_extension_class(self._xmlDdsParser, self._distLogExtensionClass);
        ZUV_DL_XMLConfig_destroyXMLExtensionClass(self._distLogExtensionClass);
    }
}

} // namespace

extern "C" {

int BRELCfgFileParser_initialize(BRELCfgFileParser *self, const ZUV_BrelServiceProperty *property,
                                 int serviceKind, const char *executablePath)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(property) || BREL_XML_IS_NULL(executablePath)) {
        return 0;
    }
    *self = {};
    MAVOInlineList_initialize(&self->_registeredExtensions);
    self->property = property;
    self->executablePath = executablePath;
    if (!initializeParts(*self)) {
        BRELCfgFileParser_finalize(self);
        return 0;
    }
    if (DDS_QosProvider_load_builtin_profilesI(self->_xmlDdsParser, &self->_xmlDdsQosRoot) != 0) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "load builtin Qos Profiles");
        return 0;
    }
    if (!loadSources(*self, serviceKind)) {
        BRELCfgFileParser_finalize(self);
        return 0;
    }
    return 1;
}

void BRELCfgFileParser_finalize(BRELCfgFileParser *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return;
    }
    if (self->_xmlDdsQosRoot != nullptr) {
        DDS_XMLParser_free_dom(self->_xmlDdsParser, self->_xmlDdsQosRoot);
    }
    freeRoot(*self);
    unregisterExtensions(*self);
    destroyDistributedLogger(*self);
    DDS_XMLParser_delete(self->_xmlDdsParser);
    ZUVOsapiSemaphore_delete(self->_xmlMutex);
    BRELXmlVariableExpansor_finalize(&self->_variableExpansor);
    BRELXMLSupportInfrastructure_finalize(&self->_xmlInfrastructure);
    ZUVXMLUTILSTransformer_delete(self->_preprocessor);
    *self = {};
}

BRELCfgFileParser *BRELCfgFileParser_newWithParams(const ZUV_BrelServiceProperty *property,
                                                   int serviceKind, const char *executablePath)
{
    if (BREL_XML_IS_NULL(property) || BREL_XML_IS_NULL(executablePath)) {
        return nullptr;
    }
    auto *const self = zuv::newObject<BRELCfgFileParser>("configuration parser");
    if (self == nullptr) {
        BREL_XML_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                         static_cast<int>(sizeof(BRELCfgFileParser)));
        return nullptr;
    }
    if (!BRELCfgFileParser_initialize(self, property, serviceKind, executablePath)) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "BRELCfgFileParser object");
        BRELCfgFileParser_delete(self);
        return nullptr;
    }
    return self;
}

BRELCfgFileParser *BRELCfgFileParser_new(const ZUV_BrelServiceProperty *property)
{
    return BRELCfgFileParser_newWithParams(property, BREL_XML_SUPPORT_SERVICE_KIND, ".");
}

void BRELCfgFileParser_delete(BRELCfgFileParser *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return;
    }
    BRELCfgFileParser_finalize(self);
    zuv::deleteObject(self);
}

int BRELCfgFileParser_lockXmlDom(BRELCfgFileParser *self, int *isXmlDomLocked)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(isXmlDomLocked)) {
        return 0;
    }
    if (*isXmlDomLocked != 0) {
        return 1;
    }
    if (ZUVOsapiSemaphore_take(self->_xmlMutex, nullptr) != ZUV_OSAPI_SEMAPHORE_STATUS_OK) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "take XML DOM Mutex");
        return 0;
    }
    *isXmlDomLocked = 1;
    return 1;
}

int BRELCfgFileParser_unlockXmlDom(BRELCfgFileParser *self, int *isXmlDomLocked)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(isXmlDomLocked)) {
        return 0;
    }
    if (*isXmlDomLocked == 0) {
        return 1;
    }
    if (ZUVOsapiSemaphore_give(self->_xmlMutex) != ZUV_OSAPI_SEMAPHORE_STATUS_OK) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "give XML DOM Mutex");
        return 0;
    }
    *isXmlDomLocked = 0;
    return 1;
}

ZUVXMLUTILSValidator *BRELCfgFileParser_getDefaultValidator(const BRELCfgFileParser *self)
{
    return BREL_XML_IS_NULL(self) ? nullptr : self->_xmlInfrastructure._xsdValidator;
}

void BRELXmlSupport_setTypeProviderFnc(BRELTypeProviderFnc fnc)
{
    g_typeProvider = fnc;
}

BRELTypeProviderFnc BRELXmlSupport_getTypeProviderFnc(void)
{
    return g_typeProvider;
}
}
