#include "platform/dds/DomainParticipant.h"

#include <algorithm>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/publisher/qos/PublisherQos.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/subscriber/qos/SubscriberQos.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "FilterClass.hpp"
#include "QosMapping.hpp"
#include "Report.hpp"
#include "platform/dds/Publisher.h"
#include "platform/dds/Subscriber.h"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::heapDelete;
using zuv::dds::heapNew;
using zuv::dds::toOurs;

namespace
{

// Publishers and subscribers are made and deleted alike.
struct PublisherKind {
    using Ours = DDS_Publisher;
    using OurQos = DDS_PublisherQos;
    static constexpr const char *kName = "publisher";
    static constexpr const char *kTag = "DDS Publisher";
    static constexpr const char *kCreateFault = "dds.create_publisher";
    static constexpr const char *kDeleteFault = "dds.delete_publisher";
    static constexpr auto getDefault = DDS_PublisherQos_get_defaultI;

    static bool isDefault(const OurQos *qos) { return qos == &DDS_PUBLISHER_QOS_DEFAULT; }
    static auto &listOf(DDS_DomainParticipant &participant) { return participant.publishers; }
    static bool isEmpty(Ours &publisher)
    {
        const std::lock_guard lock(publisher.mutex);
        return publisher.writers.empty();
    }
    static fast::Publisher *create(fast::DomainParticipant &participant, const OurQos &qos)
    {
        fast::PublisherQos fastQos = fast::PUBLISHER_QOS_DEFAULT;
        zuv::dds::mapQos(qos, fastQos);
        return participant.create_publisher(fastQos);
    }
    static auto remove(fast::DomainParticipant &participant, fast::Publisher *publisher)
    {
        return participant.delete_publisher(publisher);
    }
};

struct SubscriberKind {
    using Ours = DDS_Subscriber;
    using OurQos = DDS_SubscriberQos;
    static constexpr const char *kName = "subscriber";
    static constexpr const char *kTag = "DDS Subscriber";
    static constexpr const char *kCreateFault = "dds.create_subscriber";
    static constexpr const char *kDeleteFault = "dds.delete_subscriber";
    static constexpr auto getDefault = DDS_SubscriberQos_get_defaultI;

    static bool isDefault(const OurQos *qos) { return qos == &DDS_SUBSCRIBER_QOS_DEFAULT; }
    static auto &listOf(DDS_DomainParticipant &participant) { return participant.subscribers; }
    static bool isEmpty(Ours &subscriber)
    {
        const std::lock_guard lock(subscriber.mutex);
        return subscriber.readers.empty();
    }
    static fast::Subscriber *create(fast::DomainParticipant &participant, const OurQos &qos)
    {
        fast::SubscriberQos fastQos = fast::SUBSCRIBER_QOS_DEFAULT;
        zuv::dds::mapQos(qos, fastQos);
        return participant.create_subscriber(fastQos);
    }
    static auto remove(fast::DomainParticipant &participant, fast::Subscriber *subscriber)
    {
        return participant.delete_subscriber(subscriber);
    }
};

template <typename Kind>
typename Kind::Ours *makeGroup(DDS_DomainParticipant &participant, const typename Kind::OurQos &qos)
{
    using Ours = typename Kind::Ours;
    auto *const made = heapNew<Ours>(Kind::kTag);
    if (made == nullptr) {
        return nullptr;
    }
    made->participant = &participant;
    made->factory = &participant;
    const DDS_ReturnCode_t code =
        Kind::isDefault(&qos) ? Kind::getDefault(&made->qos.value) : made->qos.assign(qos);
    if (code == DDS_RETCODE_OK && !ZUV_OSAPI_FAULT(Kind::kCreateFault)) {
        made->fast = Kind::create(*participant.fast, made->qos.value);
    }
    if (made->fast == nullptr) {
        heapDelete(made);
        return nullptr;
    }
    made->fastEntity = made->fast;
    made->handle = toOurs(made->fast->get_instance_handle());
    const std::lock_guard lock(participant.mutex);
    Kind::listOf(participant).push_back(made);
    return made;
}

template <typename Kind>
typename Kind::Ours *createGroup(DDS_DomainParticipant *self, const typename Kind::OurQos *qos,
                                 const void *listener)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return nullptr;
    }
    typename Kind::Ours *made = nullptr;
    if (listener != nullptr) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "listener");
    } else {
        made = guarded<typename Kind::Ours *>("create group", nullptr,
                                              [&] { return makeGroup<Kind>(*self, *qos); });
    }
    if (made == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, Kind::kName);
    }
    return made;
}

template <typename Kind>
DDS_ReturnCode_t deleteGroup(DDS_DomainParticipant *self, typename Kind::Ours *group)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(group)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_ReturnCode_t code = DDS_RETCODE_PRECONDITION_NOT_MET;
    if (group->participant == self && Kind::isEmpty(*group)) {
        code = ZUV_OSAPI_FAULT(Kind::kDeleteFault) ? DDS_RETCODE_ERROR
                                                   : toOurs(Kind::remove(*self->fast, group->fast));
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, Kind::kName);
        return code;
    }
    {
        const std::lock_guard lock(self->mutex);
        std::erase(Kind::listOf(*self), group);
        if (static_cast<void *>(self->implicitPublisher) == group) {
            self->implicitPublisher = nullptr;
        }
        if (static_cast<void *>(self->implicitSubscriber) == group) {
            self->implicitSubscriber = nullptr;
        }
    }
    heapDelete(group);
    return DDS_RETCODE_OK;
}

// A copy of a list that deletions change.
template <typename Entity>
std::vector<Entity *> snapshot(std::mutex &mutex, const std::vector<Entity *> &list)
{
    const std::lock_guard lock(mutex);
    return list;
}

template <typename Qos>
DDS_ReturnCode_t getDefaultQos(DDS_DomainParticipant *self, Qos *qos,
                               DDS_ReturnCode_t (*getDefault)(Qos *))
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return getDefault(qos);
}

} // namespace

DDS_Entity *DDS_DomainParticipant_as_entity(DDS_DomainParticipant *self)
{
    return self;
}

DDS_Long DDS_DomainParticipant_get_domain_id(DDS_DomainParticipant *self)
{
    return ZUV_DDS_IS_NULL(self) ? -1 : self->domainId;
}

DDS_ReturnCode_t DDS_DomainParticipant_get_qos(DDS_DomainParticipant *self,
                                               DDS_DomainParticipantQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_DomainParticipantQos_copy(qos, &self->qos.value);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_topic_qos(DDS_DomainParticipant *self,
                                                             DDS_TopicQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    return DDS_TopicQos_copy(qos, &self->defaultTopicQos.value);
}

DDS_ReturnCode_t DDS_DomainParticipant_set_default_topic_qos(DDS_DomainParticipant *self,
                                                             const DDS_TopicQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.set_default_topic_qos")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "set default topic qos");
        return DDS_RETCODE_ERROR;
    }
    const std::lock_guard lock(self->mutex);
    return qos == &DDS_TOPIC_QOS_DEFAULT ? DDS_TopicQos_get_defaultI(&self->defaultTopicQos.value)
                                         : self->defaultTopicQos.assign(*qos);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_publisher_qos(DDS_DomainParticipant *self,
                                                                 DDS_PublisherQos *qos)
{
    return getDefaultQos(self, qos, DDS_PublisherQos_get_defaultI);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_subscriber_qos(DDS_DomainParticipant *self,
                                                                  DDS_SubscriberQos *qos)
{
    return getDefaultQos(self, qos, DDS_SubscriberQos_get_defaultI);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datawriter_qos(DDS_DomainParticipant *self,
                                                                  DDS_DataWriterQos *qos)
{
    return getDefaultQos(self, qos, DDS_DataWriterQos_get_defaultI);
}

DDS_ReturnCode_t DDS_DomainParticipant_get_default_datareader_qos(DDS_DomainParticipant *self,
                                                                  DDS_DataReaderQos *qos)
{
    return getDefaultQos(self, qos, DDS_DataReaderQos_get_defaultI);
}

DDS_ReturnCode_t DDS_DomainParticipant_register_type(DDS_DomainParticipant *self,
                                                     const char *typeName,
                                                     const struct ZUVTypePlugin *plugin)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(typeName) || ZUV_DDS_IS_NULL(plugin)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_ReturnCode_t code = guarded("register type", DDS_RETCODE_OUT_OF_RESOURCES, [&] {
        const std::lock_guard lock(self->mutex);
        const auto known = self->types.find(typeName);
        if (known != self->types.end()) {
            if (known->second.type->plugin.typeCode != plugin->typeCode) {
                return DDS_RETCODE_PRECONDITION_NOT_MET;
            }
            ++known->second.count;
            return DDS_RETCODE_OK;
        }
        auto type = zuv::dds::RegisteredType::make(typeName, *plugin);
        if (type == nullptr) {
            return DDS_RETCODE_ERROR;
        }
        if (ZUV_OSAPI_FAULT("dds.register_type")) {
            return DDS_RETCODE_ERROR;
        }
        const DDS_ReturnCode_t result =
            toOurs(self->fast->register_type(zuv::dds::makeTypeSupport(type), typeName));
        if (result == DDS_RETCODE_OK) {
            self->types.emplace(typeName, DDS_DomainParticipant::Registration{type, 1});
        }
        return result;
    });
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "register type %s", typeName);
    }
    return code;
}

DDS_ReturnCode_t DDS_DomainParticipant_unregister_type(DDS_DomainParticipant *self,
                                                       const char *typeName)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(typeName)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const std::lock_guard lock(self->mutex);
    const auto known = self->types.find(typeName);
    if (known == self->types.end()) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "unregister type %s", typeName);
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (known->second.count > 1) {
        --known->second.count;
        return DDS_RETCODE_OK;
    }
    // The middleware refuses as long as a topic uses the type.
    const DDS_ReturnCode_t code = toOurs(self->fast->unregister_type(typeName));
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "unregister type %s", typeName);
        return code;
    }
    self->types.erase(known);
    return DDS_RETCODE_OK;
}

DDS_Publisher *DDS_DomainParticipant_create_publisher(DDS_DomainParticipant *self,
                                                      const DDS_PublisherQos *qos,
                                                      const struct DDS_PublisherListener *listener,
                                                      DDS_StatusMask)
{
    return createGroup<PublisherKind>(self, qos, listener);
}

DDS_Subscriber *
DDS_DomainParticipant_create_subscriber(DDS_DomainParticipant *self, const DDS_SubscriberQos *qos,
                                        const struct DDS_SubscriberListener *listener,
                                        DDS_StatusMask)
{
    return createGroup<SubscriberKind>(self, qos, listener);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_publisher(DDS_DomainParticipant *self,
                                                        DDS_Publisher *publisher)
{
    return deleteGroup<PublisherKind>(self, publisher);
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_subscriber(DDS_DomainParticipant *self,
                                                         DDS_Subscriber *subscriber)
{
    return deleteGroup<SubscriberKind>(self, subscriber);
}

DDS_Publisher *DDS_DomainParticipant_get_implicit_publisher(DDS_DomainParticipant *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return nullptr;
    }
    if (self->implicitPublisher == nullptr) {
        self->implicitPublisher =
            createGroup<PublisherKind>(self, &DDS_PUBLISHER_QOS_DEFAULT, nullptr);
    }
    return self->implicitPublisher;
}

DDS_Subscriber *DDS_DomainParticipant_get_implicit_subscriber(DDS_DomainParticipant *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return nullptr;
    }
    if (self->implicitSubscriber == nullptr) {
        self->implicitSubscriber =
            createGroup<SubscriberKind>(self, &DDS_SUBSCRIBER_QOS_DEFAULT, nullptr);
    }
    return self->implicitSubscriber;
}

DDS_ReturnCode_t DDS_DomainParticipant_delete_contained_entities(DDS_DomainParticipant *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const auto deleteAll = [self]() -> DDS_ReturnCode_t {
        for (DDS_Publisher *publisher : snapshot(self->mutex, self->publishers)) {
            DDS_ReturnCode_t code = DDS_Publisher_delete_contained_entities(publisher);
            if (code == DDS_RETCODE_OK) {
                code = DDS_DomainParticipant_delete_publisher(self, publisher);
            }
            if (code != DDS_RETCODE_OK) {
                return code;
            }
        }
        for (DDS_Subscriber *subscriber : snapshot(self->mutex, self->subscribers)) {
            DDS_ReturnCode_t code = DDS_Subscriber_delete_contained_entities(subscriber);
            if (code == DDS_RETCODE_OK) {
                code = DDS_DomainParticipant_delete_subscriber(self, subscriber);
            }
            if (code != DDS_RETCODE_OK) {
                return code;
            }
        }
        // Filtered topics before the topics that they filter: those made later first.
        std::vector<DDS_TopicDescription *> topics = snapshot(self->mutex, self->topics);
        for (auto topic = topics.rbegin(); topic != topics.rend(); ++topic) {
            DDS_ContentFilteredTopic *const filtered = (*topic)->asFiltered();
            const DDS_ReturnCode_t code =
                filtered != nullptr
                    ? DDS_DomainParticipant_delete_contentfilteredtopic(self, filtered)
                    : DDS_DomainParticipant_delete_topic(self, (*topic)->asTopic());
            if (code != DDS_RETCODE_OK) {
                return code;
            }
        }
        return DDS_RETCODE_OK;
    };
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (!ZUV_OSAPI_FAULT("dds.delete_contained_entities")) {
        code = guarded("delete contained entities", DDS_RETCODE_OUT_OF_RESOURCES, deleteAll);
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_DESTRUCTION_FAILURE_s, "participant's contained entities");
    }
    return code;
}
