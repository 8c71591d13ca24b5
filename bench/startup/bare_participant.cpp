// One participant with one writer and one reader that comes and goes: the least that any program pays that
// asks over DDS. bare_participant DOMAIN
#include <cstdlib>
#include <cstring>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;

namespace
{

// Never serialized: no sample is written.
class BareType : public fast::TopicDataType
{
public:
    explicit BareType(const char *name)
    {
        setName(name);
        m_typeSize = 256;
        m_isGetKeyDefined = false;
        auto_fill_type_object(false);
        auto_fill_type_information(false);
    }
    bool serialize(void *, rtps::SerializedPayload_t *) override { return false; }
    bool deserialize(rtps::SerializedPayload_t *, void *) override { return false; }
    std::function<std::uint32_t()> getSerializedSizeProvider(void *) override
    {
        return [] { return 0U; };
    }
    void *createData() override { return std::malloc(m_typeSize); }
    void deleteData(void *data) override { std::free(data); }
    bool getKey(void *, rtps::InstanceHandle_t *, bool) override { return false; }
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 2) {
        return EXIT_FAILURE;
    }
    auto *factory = fast::DomainParticipantFactory::get_instance();
    factory->load_profiles();
    auto *participant = factory->create_participant(
        static_cast<fast::DomainId_t>(std::atoi(argv[1])), factory->get_default_participant_qos());
    if (participant == nullptr) {
        return EXIT_FAILURE;
    }
    const fast::TypeSupport request(new BareType("bare::Request"));
    const fast::TypeSupport reply(new BareType("bare::Reply"));
    request.register_type(participant);
    reply.register_type(participant);
    auto *requests =
        participant->create_topic("bare/request", "bare::Request", fast::TOPIC_QOS_DEFAULT);
    auto *replies = participant->create_topic("bare/reply", "bare::Reply", fast::TOPIC_QOS_DEFAULT);
    auto *publisher = participant->create_publisher(fast::PUBLISHER_QOS_DEFAULT);
    auto *subscriber = participant->create_subscriber(fast::SUBSCRIBER_QOS_DEFAULT);

    fast::DataWriterQos writerQos;
    writerQos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    writerQos.durability().kind = fast::VOLATILE_DURABILITY_QOS;
    writerQos.endpoint().history_memory_policy = rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
    fast::DataReaderQos readerQos;
    readerQos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    readerQos.endpoint().history_memory_policy = rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
    const bool isMade = publisher->create_datawriter(requests, writerQos) != nullptr &&
                        subscriber->create_datareader(replies, readerQos) != nullptr;

    participant->delete_contained_entities();
    factory->delete_participant(participant);
    return isMade ? EXIT_SUCCESS : EXIT_FAILURE;
}
