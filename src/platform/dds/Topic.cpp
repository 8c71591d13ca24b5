#include "platform/dds/Topic.h"

#include <algorithm>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/topic/ContentFilteredTopic.hpp>
#include <fastdds/dds/topic/Topic.hpp>
#include <fastdds/dds/topic/qos/TopicQos.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "FilterClass.hpp"
#include "QosMapping.hpp"
#include "Report.hpp"
#include "platform/dds/DomainParticipant.h"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::heapDelete;
using zuv::dds::heapNew;
using zuv::dds::toOurs;

namespace zuv::dds
{

void useTopic(DDS_TopicDescription &topic, int change)
{
    const std::lock_guard lock(topic.participant->mutex);
    topic.userCount += change;
}

} // namespace zuv::dds

namespace
{

DDS_TopicDescription *findTopic(DDS_DomainParticipant &participant, const char *name)
{
    const auto known =
        std::find_if(participant.topics.begin(), participant.topics.end(),
                     [name](const DDS_TopicDescription *topic) { return topic->name == name; });
    return known == participant.topics.end() ? nullptr : *known;
}

// Both kinds: a name that is new, then the record, then the middleware's topic, then the list.
DDS_Topic *makeTopic(DDS_DomainParticipant &participant, const char *topicName,
                     const char *typeName, const DDS_TopicQos &qos)
{
    const std::lock_guard lock(participant.mutex);
    const auto type = participant.types.find(typeName);
    if (type == participant.types.end()) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "find the registered type %s", typeName);
        return nullptr;
    }
    if (findTopic(participant, topicName) != nullptr) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "make a second topic named %s",
                                topicName);
        return nullptr;
    }
    auto *const made = heapNew<DDS_Topic>("DDS Topic");
    if (made == nullptr) {
        return nullptr;
    }
    made->participant = &participant;
    made->factory = &participant;
    made->name = topicName;
    made->type = type->second.type;
    const DDS_TopicQos &source =
        &qos == &DDS_TOPIC_QOS_DEFAULT ? participant.defaultTopicQos.value : qos;
    if (made->qos.assign(source) == DDS_RETCODE_OK && !ZUV_OSAPI_FAULT("dds.create_topic")) {
        fast::TopicQos fastQos = fast::TOPIC_QOS_DEFAULT;
        zuv::dds::mapQos(source, made->type->hasKey(), fastQos);
        made->fast = participant.fast->create_topic(topicName, typeName, fastQos);
    }
    if (made->fast == nullptr) {
        heapDelete(made);
        return nullptr;
    }
    made->fastEntity = made->fast;
    participant.topics.push_back(made);
    return made;
}

DDS_ContentFilteredTopic *makeFiltered(DDS_DomainParticipant &participant, const char *name,
                                       DDS_Topic &relatedTopic, const char *expression)
{
    const std::lock_guard lock(participant.mutex);
    if (findTopic(participant, name) != nullptr) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "make a second topic named %s", name);
        return nullptr;
    }
    // Here first, so that a wrong expression makes one report.
    if (!zuv::dds::ContentFilter::parse(*relatedTopic.type->plugin.typeCode, expression)) {
        return nullptr;
    }
    if (participant.filterClass == nullptr) {
        participant.filterClass = zuv::dds::FilterClass::make(*participant.fast);
        // Here first, so that a wrong expression makes one report.
        if (!zuv::dds::ContentFilter::parse(*relatedTopic.type->plugin.typeCode, expression)) {
            return nullptr;
        }
        if (participant.filterClass == nullptr) {
            return nullptr;
        }
    }
    auto *const made = heapNew<DDS_ContentFilteredTopic>("DDS ContentFilteredTopic");
    if (made == nullptr) {
        return nullptr;
    }
    made->participant = &participant;
    made->factory = &participant;
    made->name = name;
    made->type = relatedTopic.type;
    made->relatedTopic = &relatedTopic;
    made->expression = expression;
    if (!ZUV_OSAPI_FAULT("dds.create_contentfilteredtopic")) {
        made->fast = participant.fast->create_contentfilteredtopic(
            name, relatedTopic.fast, expression, {}, zuv::dds::FilterClass::name());
    }
    if (made->fast == nullptr) {
        heapDelete(made);
        return nullptr;
    }
    participant.topics.push_back(made);
    ++relatedTopic.userCount;
    return made;
}

template <typename OurTopic, typename Remove>
DDS_ReturnCode_t removeTopic(DDS_DomainParticipant &self, OurTopic &topic, const char *fault,
                             Remove &&remove)
{
    const std::lock_guard lock(self.mutex);
    DDS_ReturnCode_t code = DDS_RETCODE_PRECONDITION_NOT_MET;
    if (topic.participant == &self && topic.userCount == 0) {
        code = ZUV_OSAPI_FAULT(fault) ? DDS_RETCODE_ERROR : toOurs(remove());
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "topic");
        return code;
    }
    if (DDS_ContentFilteredTopic *const filtered = topic.asFiltered()) {
        --filtered->relatedTopic->userCount;
    }
    std::erase(self.topics, &topic);
    heapDelete(&topic);
    return DDS_RETCODE_OK;
}

} // namespace

DDS_Topic *DDS_DomainParticipant_create_topic(DDS_DomainParticipant *self, const char *topicName,
                                              const char *typeName, const DDS_TopicQos *qos,
                                              const struct DDS_TopicListener *listener,
                                              DDS_StatusMask)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(topicName) || ZUV_DDS_IS_NULL(typeName) ||
        ZUV_DDS_IS_NULL(qos)) {
        return nullptr;
    }
    DDS_Topic *made = nullptr;
    if (listener != nullptr) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "listener");
    } else {
        made = guarded<DDS_Topic *>("create topic", nullptr,
                                    [&] { return makeTopic(*self, topicName, typeName, *qos); });
    }
    if (made == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "topic");
    }
    return made;
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_topic(DDS_DomainParticipant *self, DDS_Topic *topic)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(topic)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return removeTopic(*self, *topic, "dds.delete_topic",
                       [&] { return self->fast->delete_topic(topic->fast); });
}

DDS_ContentFilteredTopic *
DDS_DomainParticipant_create_contentfilteredtopic(DDS_DomainParticipant *self, const char *name,
                                                  DDS_Topic *relatedTopic, const char *expression,
                                                  const DDS_StringSeq *parameters)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(name) || ZUV_DDS_IS_NULL(relatedTopic) ||
        ZUV_DDS_IS_NULL(expression)) {
        return nullptr;
    }
    DDS_ContentFilteredTopic *made = nullptr;
    if (relatedTopic->participant != self) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "relatedTopic");
    } else if (parameters != nullptr && DDS_StringSeq_get_length(parameters) > 0) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "parameters");
    } else {
        made = guarded<DDS_ContentFilteredTopic *>("create filtered topic", nullptr, [&] {
            return makeFiltered(*self, name, *relatedTopic, expression);
        });
    }
    if (made == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "content-filtered topic");
    }
    return made;
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contentfilteredtopic(DDS_DomainParticipant *self,
                                                                   DDS_ContentFilteredTopic *topic)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(topic)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return removeTopic(*self, *topic, "dds.delete_contentfilteredtopic",
                       [&] { return self->fast->delete_contentfilteredtopic(topic->fast); });
}

DDS_TopicDescription *DDS_DomainParticipant_lookup_topicdescription(DDS_DomainParticipant *self,
                                                                    const char *name)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(name)) {
        return nullptr;
    }
    const std::lock_guard lock(self->mutex);
    return findTopic(*self, name);
}

DDS_Entity *DDS_Topic_as_entity(DDS_Topic *self)
{
    return self;
}

DDS_TopicDescription *DDS_Topic_as_topicdescription(DDS_Topic *self)
{
    return self;
}

DDS_TopicDescription *DDS_ContentFilteredTopic_as_topicdescription(DDS_ContentFilteredTopic *self)
{
    return self;
}

DDS_Topic *DDS_Topic_narrow(DDS_TopicDescription *description)
{
    return description == nullptr ? nullptr : description->asTopic();
}

DDS_ContentFilteredTopic *DDS_ContentFilteredTopic_narrow(DDS_TopicDescription *description)
{
    return description == nullptr ? nullptr : description->asFiltered();
}

const char *DDS_TopicDescription_get_name(DDS_TopicDescription *self)
{
    return self == nullptr ? nullptr : self->name.c_str();
}

const char *DDS_TopicDescription_get_type_name(DDS_TopicDescription *self)
{
    return self == nullptr ? nullptr : self->type->name.c_str();
}

DDS_DomainParticipant *DDS_TopicDescription_get_participant(DDS_TopicDescription *self)
{
    return self == nullptr ? nullptr : self->participant;
}

DDS_ReturnCode_t DDS_Topic_get_qos(DDS_Topic *self, DDS_TopicQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_TopicQos_copy(qos, &self->qos.value);
}

DDS_Topic *DDS_ContentFilteredTopic_get_related_topic(DDS_ContentFilteredTopic *self)
{
    return self == nullptr ? nullptr : self->relatedTopic;
}

const char *DDS_ContentFilteredTopic_get_filter_expression(DDS_ContentFilteredTopic *self)
{
    return self == nullptr ? nullptr : self->expression.c_str();
}
