#include "config/CfgFileService.h"

#include "config/ElementRecord.hpp"
#include "config/EntityKind.h"
#include "config/XmlTags.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Object.hpp"
#include "platform/osapi/Utility.h"
#include "platform/xmlutils/Utils.h"

namespace
{

using Service = BRELCfgFileService;
using Object = ZUVXMLUTILSObject;

bool isParent(const Object *xmlService)
{
    return std::strcmp(ZUVXMLUTILSObject_getTagName(ZUVXMLUTILSObject_getRoot(xmlService)),
                       "dds") == 0;
}

bool initialized(int isDone, const char *what)
{
    if (!isDone) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE, "%s", what);
    }
    return isDone != 0;
}

bool nameGroup(Service &self)
{
    self.groupName = DDS_String_alloc(BREL_SERVICE_GROUP_NAME_LENGTH_MAX);
    if (self.groupName == nullptr) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "Group name buffer");
        return false;
    }
    return BRELCfgFileService_getDefaultServiceName(self.groupName,
                                                    BREL_SERVICE_GROUP_NAME_LENGTH_MAX) != 0;
}

bool takeTarget(Service &self, const Object *xmlService)
{
    const auto *const target =
        static_cast<const Service *>(BRELXmlObject_getUpdateTargetExtensionObject(xmlService));
    if (target != nullptr && BRELCfgFileService_copy(&self, target) == nullptr) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "update target");
        return false;
    }
    return true;
}

bool parsed(int isDone, const Object *section)
{
    if (!isDone) {
        BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(section));
    }
    return isDone != 0;
}

bool parseAttributes(Service &self, const Object *xmlService)
{
    const char *const groupName = ZUVXMLUTILSObject_getAttribute(xmlService, "group_name");
    const bool isNamed =
        groupName == nullptr ||
        ZUVOsapiUtility_strcpy(self.groupName, BREL_SERVICE_GROUP_NAME_LENGTH_MAX + 1, groupName) !=
            nullptr;
    return parsed(isNamed && BRELXmlObject_getEnabledAttribute(xmlService, &self.enabled) != 0,
                  xmlService);
}

// A section that is there is enabled, unless it says otherwise.
template <typename Section, typename Xml>
bool parseSection(const Object *xmlService, const char *tag, Section &section,
                  int (*parse)(Section *, Xml *))
{
    Object *const child = ZUVXMLUTILSObject_getFirstChildWithTag(xmlService, tag);
    if (child == nullptr) {
        return true;
    }
    section.enabled = DDS_BOOLEAN_TRUE;
    return parsed(parse(&section, child), child);
}

bool parseClock(Service &self, const Object *xmlService)
{
    self.internalClock = nullptr;
    const Object *const child =
        ZUVXMLUTILSObject_getFirstChildWithTag(xmlService, "internal_clock");
    if (child == nullptr) {
        return true;
    }
    const char *const text = ZUVXMLUTILSObject_getText(child);
    if (text[0] == '\0') {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "Error at line=%d for tag=%s",
                                  BREL_XML_PLACE(child));
        return false;
    }
    self.internalClock = text;
    return true;
}

bool parseJvm(Service &self, const Object *xmlService)
{
    const Object *const child = ZUVXMLUTILSObject_getFirstChildWithTag(xmlService, "jvm");
    return child == nullptr || parsed(BRELCfgFileJvm_parse(&self.jvm, child), child);
}

void enableMonitoring(Service &self, DDS_Long domainId)
{
    self.monitoring.enabled = DDS_BOOLEAN_TRUE;
    self.monitoring.domainId = domainId;
}

// What the service was started with goes before what the document says, and monitoring comes with administration.
void setDefaultMonitoring(Service &self)
{
    const ZUV_BrelServiceProperty &property = *self.libraryProperty;
    if (property.enable_monitoring) {
        enableMonitoring(self, property.monitoring_domain_id);
    } else if (!self.monitoring.enabled && !self.monitoring._enabledPresent) {
        if (property.enable_administration) {
            enableMonitoring(self, property.administration_domain_id);
        } else if (self.administration.enabled) {
            enableMonitoring(self, self.administration.domainId);
        }
    }
}

void inheritMonitoring(BRELCfgFileEntityMonitoring &entity, const BRELCfgFileMonitoring &monitoring)
{
    if (!entity.pubPeriodPresent) {
        entity.publishStatusPeriod = monitoring.publishStatusPeriod;
    }
    if (!entity.statsSamplingPeriodPresent) {
        entity.statsSamplingPeriod = monitoring.statsSamplingPeriod;
    }
    if (!entity.statistics.present) {
        entity.statistics = monitoring.statistics;
        entity.statistics.present = DDS_BOOLEAN_FALSE; // inherited, not stated
    }
    if (!entity.enabledPresent) {
        entity.enabled = monitoring.enabled;
    }
    entity.ignoreInitializationFailure = monitoring.ignoreInitializationFailure;
}

bool tellGroup(const Service &self, DDS_DomainParticipantQos &qos, const char *what)
{
    const char *const name = BREL_SERVICE_GROUP_NAME_PROPERTY_NAME;
    if (DDS_PropertyQosPolicyHelper_lookup_property(&qos.property, name) == nullptr &&
        DDS_PropertyQosPolicyHelper_assert_property(&qos.property, name, self.groupName,
                                                    DDS_BOOLEAN_TRUE) != DDS_RETCODE_OK) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_ASSERT_FAILURE_s, what);
        return false;
    }
    return true;
}

bool updateSavePath(int &updated, BRELCfgFileAdministration &live, const char *savePath)
{
    if (savePath == nullptr) {
        return true;
    }
    const bool isChanged = live.savePath == nullptr || std::strcmp(live.savePath, savePath) != 0;
    if (!brel::replaceText(live.savePath, savePath)) {
        return false;
    }
    updated = isChanged ? 1 : 0;
    return true;
}

} // namespace

extern "C" {

void *BRELCfgFileService_new(struct BRELCfgFileParser *xmlSupport, ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_ELEMENT_IS_NULL(xmlSupport) || BREL_ELEMENT_IS_NULL(xmlObject)) {
        return nullptr;
    }
    zuv::ObjectPointer<Service> self(zuv::newObject<Service>("BRELCfgFileService"));
    if (self == nullptr) {
        BREL_ELEMENT_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                             static_cast<int>(sizeof(Service)));
        return nullptr;
    }
    if (!BRELCfgFileService_initialize(self.get(), xmlSupport, xmlObject)) {
        // The text has been this one for long, and is looked for.
        BREL_ELEMENT_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "BRELCfgFileSession object");
        return nullptr;
    }
    return self.release();
}

void BRELCfgFileService_delete(void *object)
{
    if (BREL_ELEMENT_IS_NULL(object)) {
        return;
    }
    auto *const self = static_cast<Service *>(object);
    BRELCfgFileService_finalize(self);
    zuv::deleteObject(self);
}

int BRELCfgFileService_initialize(BRELCfgFileService *self, struct BRELCfgFileParser *xmlSupport,
                                  ZUVXMLUTILSObject *xmlService)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlSupport) ||
        BREL_ELEMENT_IS_NULL(xmlService)) {
        return 0;
    }
    *self = {};
    if (!isParent(xmlService)) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE,
                                  "Error at line=%d for tag=%s: invalid parent",
                                  BREL_XML_PLACE(xmlService));
        return 0;
    }
    self->enabled = DDS_BOOLEAN_TRUE;
    self->xmlObject = xmlService;
    self->libraryProperty = xmlSupport->property;
    bool isDone = initialized(BRELCfgFileAdministration_initialize(&self->administration),
                              "administration") &&
                  initialized(BRELCfgFileMonitoring_initialize(&self->monitoring), "monitoring") &&
                  initialized(BRELCfgFileEntityMonitoring_initialize(&self->entityMonitoring),
                              "entity monitoring") &&
                  initialized(BRELCfgFileJvm_initialize(&self->jvm), "jvm") && nameGroup(*self) &&
                  takeTarget(*self, xmlService);
    if (isDone && !BRELCfgFileService_parse(self, xmlService)) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE, "Error at line=%d for tag=%s",
                                  BREL_XML_PLACE(xmlService));
        isDone = false;
    }
    if (!isDone) {
        BRELCfgFileService_finalize(self);
    }
    return isDone;
}

int BRELCfgFileService_parse(BRELCfgFileService *self, ZUVXMLUTILSObject *xmlService)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlService)) {
        return 0;
    }
    if (!parseAttributes(*self, xmlService) ||
        !parseSection(xmlService, "administration", self->administration,
                      &BRELCfgFileAdministration_parse) ||
        !parseSection(xmlService, "monitoring", self->monitoring, &BRELCfgFileMonitoring_parse) ||
        !parseClock(*self, xmlService)) {
        return 0;
    }
    if (BRELXmlObject_getUpdateTarget(xmlService) == nullptr) {
        setDefaultMonitoring(*self);
    }
    return parseSection(xmlService, "entity_monitoring", self->entityMonitoring,
                        &BRELCfgFileEntityMonitoring_parse) &&
           parseJvm(*self, xmlService);
}

int BRELCfgFileService_setUp(struct BRELCfgFileParser *xmlSupport, void *object)
{
    if (BREL_ELEMENT_IS_NULL(xmlSupport) || BREL_ELEMENT_IS_NULL(object)) {
        return 0;
    }
    auto &self = *static_cast<Service *>(object);
    inheritMonitoring(self.entityMonitoring, self.monitoring);
    return tellGroup(self, self.administration.participantQos,
                     "group_name property for administration participant QoS") &&
           tellGroup(self, self.monitoring.participantQos,
                     "group_name property for monitoring participant QoS");
}

int BRELCfgFileService_update(int *updated, BRELCfgFileService *self,
                              const BRELCfgFileService *newCfg)
{
    if (BREL_ELEMENT_IS_NULL(updated) || BREL_ELEMENT_IS_NULL(self) ||
        BREL_ELEMENT_IS_NULL(newCfg)) {
        return 0;
    }
    BRELCfgFileAdministration &live = self->administration;
    if (!updateSavePath(*updated, live, newCfg->administration.savePath)) {
        return 0;
    }
    if (live.autosaveOnUpdate != newCfg->administration.autosaveOnUpdate) {
        live.autosaveOnUpdate = newCfg->administration.autosaveOnUpdate;
        *updated = 1;
    }
    Object *const xml = self->xmlObject;
    if (!ZUVXMLUTILSUtils_updateObject(xml, newCfg->xmlObject)) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "update xml object");
        return 0;
    }
    ZUVXMLUTILSUtils_sortChildren(xml, BREL_XML_SERVICE_TAGS, BRELXmlServiceTagId_COUNT);
    // The sections' own children keep the order in which they came: what is sorted is the service.
    if (ZUVXMLUTILSObject_getFirstChildWithTag(xml, "administration") != nullptr) {
        ZUVXMLUTILSUtils_sortChildren(xml, BREL_XML_MONITORING_TAGS, BRELXmlMonitoringTagId_COUNT);
    }
    if (ZUVXMLUTILSObject_getFirstChildWithTag(xml, "monitoring") != nullptr) {
        ZUVXMLUTILSUtils_sortChildren(xml, BREL_XML_ADMINISTRATION_TAGS,
                                      BRELXmlAdministrationTagId_COUNT);
    }
    return 1;
}

BRELCfgFileService *BRELCfgFileService_copy(BRELCfgFileService *self, const BRELCfgFileService *src)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(src)) {
        return nullptr;
    }
    self->enabled = src->enabled;
    const bool isDone =
        // Into the room that the name has, since a longer one may come.
        ZUVOsapiUtility_strcpy(self->groupName, BREL_SERVICE_GROUP_NAME_LENGTH_MAX + 1,
                               src->groupName) != nullptr &&
        brel::replaceText(self->sourceFile, src->sourceFile) &&
        BRELCfgFileJvm_copy(&self->jvm, &src->jvm) != nullptr &&
        BRELCfgFileAdministration_copy(&self->administration, &src->administration) != nullptr &&
        BRELCfgFileMonitoring_copy(&self->monitoring, &src->monitoring) != nullptr &&
        BRELCfgFileEntityMonitoring_copy(&self->entityMonitoring, &src->entityMonitoring) != 0;
    return isDone ? self : nullptr;
}

void BRELCfgFileService_finalize(BRELCfgFileService *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return;
    }
    brel::freeText(self->groupName);
    brel::freeText(self->sourceFile);
    BRELCfgFileJvm_finalize(&self->jvm);
    BRELCfgFileAdministration_finalize(&self->administration);
    BRELCfgFileMonitoring_finalize(&self->monitoring);
    BRELCfgFileEntityMonitoring_finalize(&self->entityMonitoring);
    if (self->xmNativeDistlog != nullptr) {
        BRELXmlUtils_deleteDdsXmlObject(BRELXmlObject_getXmlSupport(self->xmlObject)->_xmlDdsParser,
                                        self->xmNativeDistlog);
        self->xmNativeDistlog = nullptr;
    }
}
}
