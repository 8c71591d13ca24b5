#include "config/CfgFileMonitoring.h"

#include "config/CfgFileAdministration.h"
#include "config/ElementRecord.hpp"
#include "config/XmlQos.h"

namespace
{

using Monitoring = BRELCfgFileMonitoring;
using Statistics = BRELCfgFileMonitoringStatistics;
using Window = BRELCfgFileMonitoringStatisticsWindow;
using Object = ZUVXMLUTILSObject;

constexpr DDS_Long kTypeCodeMaxSerializedLength = 4096;

struct WindowRow {
    const char *tag;
    Window Statistics::*marked; // as present
    Window Statistics::*read;
};
// The hour is marked at the minute, which the users of the marks expect by now.
constexpr WindowRow kWindows[] = {
    {"five_second", &Statistics::fiveSecond, &Statistics::fiveSecond},
    {"one_minute", &Statistics::oneMinute, &Statistics::oneMinute},
    {"five_minute", &Statistics::fiveMinute, &Statistics::fiveMinute},
    {"one_hour", &Statistics::oneMinute, &Statistics::oneHour},
    {"up_time", &Statistics::uptime, &Statistics::uptime},
};

bool parseStatistics(Statistics &statistics, const Object *xmlMonitoring)
{
    const Object *const section =
        ZUVXMLUTILSObject_getFirstChildWithTag(xmlMonitoring, "historical_statistics");
    if (section == nullptr) {
        return true;
    }
    statistics.present = DDS_BOOLEAN_TRUE;
    for (const WindowRow &row : kWindows) {
        if (ZUVXMLUTILSObject_getFirstChildWithTag(section, row.tag) != nullptr) {
            (statistics.*row.marked).present = DDS_BOOLEAN_TRUE;
        }
        if (!brel::readChild(section, row.tag, &BRELXmlBoolean_getValue,
                             (statistics.*row.read).enabled)) {
            return false;
        }
    }
    return true;
}

// In an update the publisher's QoS, and of the QoS that alone, inherits what it does not mention from the record.
bool inheritFromTarget(Monitoring &self, const Object *xmlMonitoring)
{
    const Object *const service = ZUVXMLUTILSObject_getParent(xmlMonitoring);
    if (service == nullptr || BRELXmlObject_getUpdateTarget(service) == nullptr) {
        return true;
    }
    Object *const child = ZUVXMLUTILSObject_getFirstChildWithTag(xmlMonitoring, "publisher_qos");
    return child == nullptr || ZUVXMLUTILSObject_setUserData(child, &self.publisherQos) != 0;
}

bool parseQos(Monitoring &self, const Object *xmlMonitoring)
{
    if (!BRELCfgFileParser_getParticipantQos(&self.participantQos, xmlMonitoring)) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_GET_FAILURE_s, "monitoring participant QoS");
        return false;
    }
    if (!inheritFromTarget(self, xmlMonitoring) ||
        !BRELCfgFileParser_getPublisherQos(&self.publisherQos, xmlMonitoring)) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_GET_FAILURE_s, "monitoring publisher QoS");
        return false;
    }
    return true;
}

} // namespace

extern "C" {

int BRELCfgFileMonitoring_initialize(BRELCfgFileMonitoring *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return 0;
    }
    *self = {};
    self->publishStatusPeriod = {5, 0};
    self->statsSamplingPeriod = {1, 0};
    self->ignoreInitializationFailure = DDS_BOOLEAN_TRUE;
    bool isDone = true;
    if (DDS_DomainParticipantQos_get_defaultI(&self->participantQos) != DDS_RETCODE_OK ||
        DDS_PublisherQos_get_defaultI(&self->publisherQos) != DDS_RETCODE_OK) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_GET_TEMPLATE, "Default Participant QoS");
        isDone = false;
    }
    self->participantQos.resource_limits.type_code_max_serialized_length =
        kTypeCodeMaxSerializedLength;
    if (isDone && DDS_String_replace(&self->sharedParticipantRef,
                                     BREL_MONITORING_SHARED_PARTICIPANT_NAME) == nullptr) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_ANY_s, "set monitoring participant ref");
        isDone = false;
    }
    if (!isDone) {
        BRELCfgFileMonitoring_finalize(self);
    }
    return isDone;
}

int BRELCfgFileMonitoring_parse(BRELCfgFileMonitoring *self, ZUVXMLUTILSObject *xmlMonitoring)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlMonitoring)) {
        return 0;
    }
    const Object *const xml = xmlMonitoring;
    self->xmlMonitoring = xmlMonitoring;
    if (BRELXmlObject_getEnabled(xml) != nullptr) {
        self->_enabledPresent = DDS_BOOLEAN_TRUE;
    }
    return brel::readChild(xml, "enabled", &BRELXmlBoolean_getValue, self->enabled) &&
           brel::readChild(xml, "domain_id", &BRELXmlInt_getValue, self->domainId) &&
           brel::readChild(xml, "ignore_initialization_failure", &BRELXmlBoolean_getValue,
                           self->ignoreInitializationFailure) &&
           brel::readChild(xml, "status_publication_period", &BRELXmlDuration_getValue,
                           self->publishStatusPeriod) &&
           brel::readChild(xml, "statistics_sampling_period", &BRELXmlDuration_getValue,
                           self->statsSamplingPeriod) &&
           parseStatistics(self->statistics, xml) && parseQos(*self, xml);
}

BRELCfgFileMonitoring *BRELCfgFileMonitoring_copy(BRELCfgFileMonitoring *self,
                                                  const BRELCfgFileMonitoring *src)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(src)) {
        return nullptr;
    }
    self->enabled = src->enabled;
    self->domainId = src->domainId;
    self->publishStatusPeriod = src->publishStatusPeriod;
    self->statsSamplingPeriod = src->statsSamplingPeriod;
    self->ignoreInitializationFailure = src->ignoreInitializationFailure;
    self->statistics = src->statistics;
    if (DDS_DomainParticipantQos_copy(&self->participantQos, &src->participantQos) !=
        DDS_RETCODE_OK) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "Participant QoS");
        return nullptr;
    }
    if (DDS_PublisherQos_copy(&self->publisherQos, &src->publisherQos) != DDS_RETCODE_OK) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "Publisher QoS");
        return nullptr;
    }
    return self;
}

void BRELCfgFileMonitoring_finalize(BRELCfgFileMonitoring *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return;
    }
    DDS_DomainParticipantQos_finalize(&self->participantQos);
    DDS_PublisherQos_finalize(&self->publisherQos);
    brel::freeText(self->sharedParticipantRef);
}

void BRELCfgFileMonitoring_configureEntityMonitoring(const BRELCfgFileMonitoring *self,
                                                     BRELCfgFileEntityMonitoring *entityMonitoring)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(entityMonitoring)) {
        return;
    }
    BRELCfgFileEntityMonitoring &entity = *entityMonitoring;
    if (!entity.pubPeriodPresent || !entity.statistics.present) {
        if (!entity.pubPeriodPresent) {
            entity.publishStatusPeriod = self->publishStatusPeriod;
        }
        if (!entity.statsSamplingPeriodPresent) {
            entity.statsSamplingPeriod = self->statsSamplingPeriod;
        }
        if (!entity.statistics.present) {
            entity.statistics = self->statistics;
        }
    }
    if (!entity.enabledPresent) {
        entity.enabled = self->enabled;
    }
    entity.ignoreInitializationFailure = self->ignoreInitializationFailure;
}

int BRELCfgFileMonitoring_getDataWriterQos(const BRELCfgFileMonitoring *self,
                                           DDS_DataWriterQos *qos, const char *topicFilter)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(qos)) {
        return 0;
    }
    if (self->xmlMonitoring != nullptr &&
        !BRELCfgFileParser_getDataWriterQos(qos, self->xmlMonitoring, topicFilter)) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_GET_FAILURE_s, "monitoring writer QoS");
        return 0;
    }
    return 1;
}
}
