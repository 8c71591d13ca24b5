// The records behind the entities' pointers. Each wraps one entity of the middleware, which it owns.
#ifndef ZUV_PLATFORM_DDS_ENTITY_IMPL_HPP
#define ZUV_PLATFORM_DDS_ENTITY_IMPL_HPP

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "platform/dds/Condition.h"
#include "platform/dds/ContentFilter.hpp"
#include "platform/dds/DataReader.h"
#include "platform/dds/DataWriter.h"
#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"
#include "platform/dds/RegisteredType.hpp"
#include "platform/mavo/WorkerFactory.h"

namespace eprosima::fastdds::dds
{
class ContentFilteredTopic;
class DataReader;
class DataWriter;
class DomainParticipant;
class Entity;
class Publisher;
class Subscriber;
class Topic;
} // namespace eprosima::fastdds::dds

struct DDS_AsyncWaitSet;

struct DDS_Condition {
    DDS_ConditionHandler handler = {};
    std::atomic<DDS_AsyncWaitSet *> dispatcher = nullptr; // that it is attached to
};

// The only kind of condition there is.
struct DDS_StatusCondition final : DDS_Condition {
    explicit DDS_StatusCondition(DDS_Entity *owner) : entity(owner) {}

    DDS_Entity *entity;
};

// What all of them are. The middleware's entity is set once it exists; a filtered topic has none.
struct DDS_Entity {
    DDS_Entity() = default;
    virtual ~DDS_Entity() = default;
    DDS_Entity(const DDS_Entity &) = delete;
    DDS_Entity &operator=(const DDS_Entity &) = delete;

    // Of the entity that made this one; null for a participant.
    DDS_Entity *factory = nullptr;
    eprosima::fastdds::dds::Entity *fastEntity = nullptr;
    DDS_InstanceHandle_t handle = {}; // nil for topics
    DDS_StatusCondition condition{this};
};

namespace zuv::dds
{

// A QoS record that releases itself.
template <typename Qos, DDS_ReturnCode_t (*Finalize)(Qos *),
          DDS_ReturnCode_t (*Copy)(Qos *, const Qos *)>
struct OwnedQos {
    Qos value = {};

    OwnedQos() = default;
    ~OwnedQos() { Finalize(&value); }
    OwnedQos(const OwnedQos &) = delete;
    OwnedQos &operator=(const OwnedQos &) = delete;
    DDS_ReturnCode_t assign(const Qos &source) { return Copy(&value, &source); }
};

#define ZUV_DDS_OWNED(NAME)                                                                        \
    using Owned##NAME = OwnedQos<DDS_##NAME, DDS_##NAME##_finalize, DDS_##NAME##_copy>
ZUV_DDS_OWNED(DomainParticipantQos);
ZUV_DDS_OWNED(TopicQos);
ZUV_DDS_OWNED(PublisherQos);
ZUV_DDS_OWNED(SubscriberQos);
ZUV_DDS_OWNED(DataWriterQos);
ZUV_DDS_OWNED(DataReaderQos);
#undef ZUV_DDS_OWNED

class WriterAdapter; // a writer's listener in the middleware
class ReaderAdapter;
class SampleStore;
class ScratchPool; // what a reader's calls hand to the middleware
class FilterClass;

} // namespace zuv::dds

struct DDS_DomainParticipantFactory {
    DDS_DomainParticipantFactory() = default;
    ~DDS_DomainParticipantFactory();
    DDS_DomainParticipantFactory(const DDS_DomainParticipantFactory &) = delete;
    DDS_DomainParticipantFactory &operator=(const DDS_DomainParticipantFactory &) = delete;

    std::mutex mutex; // guards what follows
    std::vector<DDS_DomainParticipant *> participants;
    MAVOWorkerFactory *workerFactory = nullptr; // made when first asked for
};

struct DDS_DomainParticipant final : DDS_Entity {
    ~DDS_DomainParticipant() override;

    eprosima::fastdds::dds::DomainParticipant *fast = nullptr;
    DDS_Long domainId = 0;
    int portSlot = -1; // see Ports.hpp
    zuv::dds::OwnedDomainParticipantQos qos;
    zuv::dds::OwnedTopicQos defaultTopicQos;

    struct Registration {
        std::shared_ptr<zuv::dds::RegisteredType> type;
        int count = 0;
    };
    // Guards what follows, and the lists of publishers and subscribers.
    std::mutex mutex;
    std::map<std::string, Registration, std::less<>> types;
    std::vector<DDS_TopicDescription *> topics; // both kinds, in the order of making
    std::vector<DDS_Publisher *> publishers;
    std::vector<DDS_Subscriber *> subscribers;
    DDS_Publisher *implicitPublisher = nullptr; // one of the lists'
    DDS_Subscriber *implicitSubscriber = nullptr;
    std::unique_ptr<zuv::dds::FilterClass> filterClass; // made with the first filtered topic
};

struct DDS_TopicDescription : DDS_Entity {
    DDS_DomainParticipant *participant = nullptr;
    std::string name;
    std::shared_ptr<zuv::dds::RegisteredType> type;
    int userCount = 0; // readers, writers and filtered topics; under the participant's mutex

    virtual DDS_Topic *asTopic() { return nullptr; }
    virtual DDS_ContentFilteredTopic *asFiltered() { return nullptr; }
};

struct DDS_Topic final : DDS_TopicDescription {
    eprosima::fastdds::dds::Topic *fast = nullptr;
    zuv::dds::OwnedTopicQos qos;

    DDS_Topic *asTopic() override { return this; }
};

struct DDS_ContentFilteredTopic final : DDS_TopicDescription {
    eprosima::fastdds::dds::ContentFilteredTopic *fast = nullptr;
    DDS_Topic *relatedTopic = nullptr;
    std::string expression;

    DDS_ContentFilteredTopic *asFiltered() override { return this; }
};

struct DDS_Publisher final : DDS_Entity {
    eprosima::fastdds::dds::Publisher *fast = nullptr;
    DDS_DomainParticipant *participant = nullptr;
    zuv::dds::OwnedPublisherQos qos;
    std::mutex mutex;
    std::vector<DDS_DataWriter *> writers;
};

struct DDS_Subscriber final : DDS_Entity {
    eprosima::fastdds::dds::Subscriber *fast = nullptr;
    DDS_DomainParticipant *participant = nullptr;
    zuv::dds::OwnedSubscriberQos qos;
    std::mutex mutex;
    std::vector<DDS_DataReader *> readers;
};

struct DDS_DataWriter final : DDS_Entity {
    DDS_DataWriter();
    ~DDS_DataWriter() override;

    eprosima::fastdds::dds::DataWriter *fast = nullptr;
    DDS_Publisher *publisher = nullptr;
    DDS_Topic *topic = nullptr;
    zuv::dds::OwnedDataWriterQos qos;
    std::unique_ptr<zuv::dds::WriterAdapter> adapter;
    std::unique_ptr<zuv::dds::SampleStore> store; // of samples on loan
};

struct DDS_DataReader final : DDS_Entity {
    DDS_DataReader();
    ~DDS_DataReader() override;

    eprosima::fastdds::dds::DataReader *fast = nullptr;
    DDS_Subscriber *subscriber = nullptr;
    DDS_TopicDescription *topic = nullptr;
    zuv::dds::OwnedDataReaderQos qos;
    std::unique_ptr<zuv::dds::ReaderAdapter> adapter;
    std::unique_ptr<zuv::dds::SampleStore> store;
    std::unique_ptr<zuv::dds::ScratchPool> scratchPool;
};

namespace zuv::dds
{

// Delete one entity with what it contains; the lists that name it are the caller's.
DDS_ReturnCode_t destroyWriter(DDS_DataWriter *writer);
DDS_ReturnCode_t destroyReader(DDS_DataReader *reader);

// Give a reader that has its store what its calls need.
void prepareReader(DDS_DataReader &reader);

// Count one user more or less of a topic, under its participant's mutex.
void useTopic(DDS_TopicDescription &topic, int change);

} // namespace zuv::dds

#endif
