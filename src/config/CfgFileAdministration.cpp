#include "config/CfgFileAdministration.h"

#include <climits>

#include "config/ElementRecord.hpp"
#include "config/XmlQos.h"

namespace
{

using Administration = BRELCfgFileAdministration;
using Object = ZUVXMLUTILSObject;

constexpr DDS_Long kDefaultSampleBufferMinSize = 32768;
constexpr DDS_Long kLeastSampleBufferMinSize = 4096;
constexpr DDS_Long kMaxSamples = 32;
// Also for topics of other names: profiles choose by these.
constexpr const char *kRequestTopicFilter = "zuv/service/admin/command_request";
constexpr const char *kReplyTopicFilter = "zuv/service/admin/command_reply";

char *Administration::*const kTexts[] = {
    &Administration::savePath,       &Administration::requestTopicName,
    &Administration::replyTopicName, &Administration::requestTypeName,
    &Administration::replyTypeName,  &Administration::sharedParticipantRef,
};

bool fillDefaultQos(Administration &self)
{
    return DDS_DomainParticipantQos_get_defaultI(&self.participantQos) == DDS_RETCODE_OK &&
           DDS_SubscriberQos_get_defaultI(&self.subscriberQos) == DDS_RETCODE_OK &&
           DDS_PublisherQos_get_defaultI(&self.publisherQos) == DDS_RETCODE_OK &&
           DDS_DataReaderQos_get_defaultI(&self.dataReaderQos) == DDS_RETCODE_OK &&
           DDS_DataWriterQos_get_defaultI(&self.dataWriterQos) == DDS_RETCODE_OK;
}

// Commands and their replies are few, must not be lost, and are waited for.
void tuneEndpoints(Administration &self)
{
    self.dataReaderQos.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    self.dataReaderQos.resource_limits.max_samples = kMaxSamples;

    DDS_DataWriterQos &writer = self.dataWriterQos;
    writer.history.kind = DDS_KEEP_ALL_HISTORY_QOS;
    writer.resource_limits.max_samples = kMaxSamples;
    writer.reliability.max_blocking_time = {60, 0};
    constexpr DDS_Duration_t kHeartbeatPeriod = {0, 100000000};
    DDS_RtpsReliableWriterProtocol_t &protocol = writer.protocol.rtps_reliable_writer;
    protocol.max_heartbeat_retries = DDS_LENGTH_UNLIMITED;
    protocol.heartbeat_period = kHeartbeatPeriod;
    protocol.fast_heartbeat_period = kHeartbeatPeriod;
    protocol.late_joiner_heartbeat_period = kHeartbeatPeriod;
    protocol.heartbeats_per_max_samples = 4;
    protocol.max_nack_response_delay = DDS_DURATION_ZERO;
    protocol.min_nack_response_delay = DDS_DURATION_ZERO;
    protocol.max_send_window_size = kMaxSamples;
    protocol.min_send_window_size = kMaxSamples;
}

bool parseMemoryManagement(Administration &self, const Object *xmlAdministration)
{
    const Object *const section =
        ZUVXMLUTILSObject_getFirstChildWithTag(xmlAdministration, "memory_management");
    if (section == nullptr) {
        return true;
    }
    const Object *const minSize =
        ZUVXMLUTILSObject_getFirstChildWithTag(section, "sample_buffer_min_size");
    if (minSize != nullptr) {
        if (!brel::readChild(section, "sample_buffer_min_size", &BRELXmlInt_getValue,
                             self.sampleBufferMinSize)) {
            return false;
        }
        if (self.sampleBufferMinSize == DDS_LENGTH_UNLIMITED) {
            self.sampleBufferMinSize = INT_MAX;
        } else if (self.sampleBufferMinSize < kLeastSampleBufferMinSize) {
            ZUV_LOG(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_ELEMENTS,
                    &BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd, ZUVXMLUTILSObject_getLine(minSize),
                    kLeastSampleBufferMinSize);
            self.sampleBufferMinSize = kLeastSampleBufferMinSize;
        }
    }
    return brel::readChild(section, "sample_buffer_trim_to_size", &BRELXmlBoolean_getValue,
                           self.sampleBufferTrimToSize);
}

bool setParticipantRef(Administration &self, const char *name, const Object *xmlObject,
                       const char *failure)
{
    if (DDS_String_replace(&self.sharedParticipantRef, name) == nullptr) {
        BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(xmlObject),
                             failure);
        return false;
    }
    return true;
}

bool parseSharedParticipant(Administration &self, const Object *xmlAdministration)
{
    if (!brel::readChild(xmlAdministration, "reuse_monitoring_participant",
                         &BRELXmlBoolean_getValue, self.reuseMonitoringParticipant)) {
        return false;
    }
    return !self.reuseMonitoringParticipant || self.sharedParticipantRef != nullptr ||
           setParticipantRef(self, BREL_MONITORING_SHARED_PARTICIPANT_NAME, xmlAdministration,
                             "failed to assign monitoring participant name as shared participant "
                             "name");
}

// While one lives, what an element of QoS does not mention comes from a record: its user data says so. One that names
// a base has all from there.
class Inheritance
{
public:
    Inheritance(const Object *parent, const char *tag, void *record)
    {
        Object *const child = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag);
        if (child == nullptr || ZUVXMLUTILSObject_getAttribute(child, "base_name") != nullptr) {
            return;
        }
        former_ = ZUVXMLUTILSObject_getUserData(child);
        isValid_ = ZUVXMLUTILSObject_setUserData(child, record) != 0;
        child_ = isValid_ ? child : nullptr;
    }
    ~Inheritance()
    {
        if (child_ != nullptr) {
            ZUVXMLUTILSObject_setUserData(child_, former_);
        }
    }
    Inheritance(const Inheritance &) = delete;
    Inheritance &operator=(const Inheritance &) = delete;

    bool isValid() const { return isValid_; }

private:
    Object *child_ = nullptr;
    void *former_ = nullptr;
    bool isValid_ = true;
};

bool got(bool isThere, const char *what)
{
    if (!isThere) {
        BREL_ELEMENT_FAILURE(&ZUV_LOG_GET_FAILURE_s, what);
    }
    return isThere;
}

bool parseQos(Administration &self, const Object *xml)
{
    const Inheritance reader(xml, "datareader_qos", &self.dataReaderQos);
    const Inheritance writer(xml, "datawriter_qos", &self.dataWriterQos);
    return got(BRELCfgFileParser_getParticipantQos(&self.participantQos, xml) != 0,
               "administration participant QoS") &&
           got(BRELCfgFileParser_getSubscriberQos(&self.subscriberQos, xml) != 0,
               "administration subscriber QoS") &&
           got(BRELCfgFileParser_getPublisherQos(&self.publisherQos, xml) != 0,
               "administration publisher QoS") &&
           got(reader.isValid() && BRELCfgFileParser_getDataReaderQos(&self.dataReaderQos, xml,
                                                                      kRequestTopicFilter) != 0,
               "administration reader QoS") &&
           got(writer.isValid() && BRELCfgFileParser_getDataWriterQos(&self.dataWriterQos, xml,
                                                                      kReplyTopicFilter) != 0,
               "administration writer QoS");
}

bool parseDistLogger(Administration &self, const Object *xmlAdministration)
{
    Object *const child =
        ZUVXMLUTILSObject_getFirstChildWithTag(xmlAdministration, "distributed_logger");
    if (child == nullptr) {
        return true;
    }
    if (self.distLogOptions == nullptr) {
        self.distLogOptions = ZUV_DL_Options_createDefault();
        if (self.distLogOptions == nullptr) {
            BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(child),
                                 "create DL options object");
            return false;
        }
    }
    if (!BRELCfgFileParser_getDistLogOptions(self.distLogOptions, child)) {
        BREL_ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
        return false;
    }
    return true;
}

bool copied(DDS_ReturnCode_t code, const char *what)
{
    if (code != DDS_RETCODE_OK) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "%s", what);
    }
    return code == DDS_RETCODE_OK;
}

bool copyQos(Administration &self, const Administration &src)
{
    return copied(DDS_DomainParticipantQos_copy(&self.participantQos, &src.participantQos),
                  "Participant QoS") &&
           copied(DDS_SubscriberQos_copy(&self.subscriberQos, &src.subscriberQos),
                  "Subscriber QoS") &&
           copied(DDS_PublisherQos_copy(&self.publisherQos, &src.publisherQos), "Publisher QoS") &&
           copied(DDS_DataReaderQos_copy(&self.dataReaderQos, &src.dataReaderQos),
                  "DataReader QoS") &&
           copied(DDS_DataWriterQos_copy(&self.dataWriterQos, &src.dataWriterQos),
                  "DataWriter QoS");
}

} // namespace

extern "C" {

int BRELCfgFileAdministration_initialize(BRELCfgFileAdministration *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return 0;
    }
    *self = {};
    self->sampleBufferMinSize = kDefaultSampleBufferMinSize;
    if (!fillDefaultQos(*self)) {
        BREL_ELEMENT_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_GET_TEMPLATE, "Default Participant QoS");
        BRELCfgFileAdministration_finalize(self);
        return 0;
    }
    tuneEndpoints(*self);
    return 1;
}

int BRELCfgFileAdministration_parse(BRELCfgFileAdministration *self,
                                    ZUVXMLUTILSObject *xmlAdministration)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlAdministration)) {
        return 0;
    }
    const Object *const xml = xmlAdministration;
    const char *const ref = ZUVXMLUTILSObject_getAttribute(xml, "shared_participant_ref");
    return (ref == nullptr ||
            setParticipantRef(*self, ref, xml, "failed to set shared participant name")) &&
           brel::readChild(xml, "enabled", &BRELXmlBoolean_getValue, self->enabled) &&
           brel::readChild(xml, "domain_id", &BRELXmlInt_getValue, self->domainId) &&
           brel::replaceByChild(xml, "save_path", self->savePath) &&
           brel::readChild(xml, "save_on_update", &BRELXmlBoolean_getValue,
                           self->autosaveOnUpdate) &&
           parseMemoryManagement(*self, xml) && parseSharedParticipant(*self, xml) &&
           brel::replaceByChild(xml, "request_topic", self->requestTopicName) &&
           brel::replaceByChild(xml, "reply_topic", self->replyTopicName) &&
           brel::replaceByChild(xml, "request_type_name", self->requestTypeName) &&
           brel::replaceByChild(xml, "reply_type_name", self->replyTypeName) &&
           parseQos(*self, xml) && parseDistLogger(*self, xml);
}

BRELCfgFileAdministration *BRELCfgFileAdministration_copy(BRELCfgFileAdministration *self,
                                                          const BRELCfgFileAdministration *src)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(src)) {
        return nullptr;
    }
    self->enabled = src->enabled;
    self->domainId = src->domainId;
    self->autosaveOnUpdate = src->autosaveOnUpdate;
    self->sampleBufferMinSize = src->sampleBufferMinSize;
    self->sampleBufferTrimToSize = src->sampleBufferTrimToSize;
    for (char *Administration::*const text : kTexts) {
        if (!brel::replaceText(self->*text, src->*text)) {
            return nullptr;
        }
    }
    return copyQos(*self, *src) ? self : nullptr;
}

void BRELCfgFileAdministration_finalize(BRELCfgFileAdministration *self)
{
    if (BREL_ELEMENT_IS_NULL(self)) {
        return;
    }
    for (char *Administration::*const text : kTexts) {
        brel::freeText(self->*text);
    }
    DDS_DomainParticipantQos_finalize(&self->participantQos);
    DDS_SubscriberQos_finalize(&self->subscriberQos);
    DDS_PublisherQos_finalize(&self->publisherQos);
    DDS_DataReaderQos_finalize(&self->dataReaderQos);
    DDS_DataWriterQos_finalize(&self->dataWriterQos);
    ZUV_DL_Options_delete(self->distLogOptions);
    self->distLogOptions = nullptr;
}
}
