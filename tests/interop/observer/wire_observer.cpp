// Shows what the administration protocol puts on the wire. It joins a domain with a reader for each of the two
// topics, made of Fast DDS alone, and prints every sample that is sent to it as it comes off the socket:
//
//   wire_observer DOMAIN      data writer=GUID number=N qos=PID:VALUE,... payload=OCTETS
//
// All but the number in hexadecimal. It says "ready" when it listens, and ends with its standard input.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/Subscriber.hpp>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>
#include <fastdds/rtps/transport/ChainingTransport.h>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>

namespace
{

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
namespace transport = eprosima::fastdds::rtps;

std::string hex(const rtps::octet *octets, std::size_t count)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string text;
    for (std::size_t index = 0; index < count; ++index) {
        text += digits[octets[index] >> 4];
        text += digits[octets[index] & 15];
    }
    return text;
}

// Little-endian numbers, as all of this machine's programs send them.
std::uint32_t number(const rtps::octet *octets, int size)
{
    std::uint32_t value = 0;
    while (size-- > 0) {
        value = value << 8 | octets[size];
    }
    return value;
}

// A DATA submessage (DDSI-RTPS 2.5, 9.4.5.4) of a user's writer. `body` stands behind the submessage's header.
void showData(const rtps::octet *prefix, unsigned flags, const rtps::octet *body,
              const rtps::octet *end)
{
    const rtps::octet *const writer = body + 8;
    if (end - body < 20 || (writer[3] & 0xc0) != 0) {
        return;
    }
    const rtps::octet *at = body + 4 + number(body + 2, 2);
    std::string qos;
    bool hasMore = (flags & 2) != 0;
    while (hasMore && end - at >= 4) {
        const std::uint32_t id = number(at, 2);
        const std::uint32_t size = number(at + 2, 2);
        at += 4;
        hasMore = id != 1 && static_cast<std::uint32_t>(end - at) >= size;
        if (hasMore) {
            char name[8];
            std::snprintf(name, sizeof name, "%04x:", id);
            qos += (qos.empty() ? "" : ",") + (name + hex(at, size));
            at += size;
        }
    }
    std::printf("data writer=%s%s number=%u qos=%s payload=%s\n", hex(prefix, 12).c_str(),
                hex(writer, 4).c_str(), number(body + 16, 4), qos.c_str(),
                hex(at, static_cast<std::size_t>(end - at)).c_str());
}

void showMessage(const rtps::octet *message, std::uint32_t size)
{
    constexpr unsigned kData = 0x15;
    const rtps::octet *const end = message + size;
    const rtps::octet *at = message + 20;
    while (end - at >= 4) {
        const unsigned kind = at[0];
        const unsigned flags = at[1];
        const std::uint32_t length = number(at + 2, 2);
        at += 4;
        const rtps::octet *const next =
            length == 0 || static_cast<std::uint32_t>(end - at) < length ? end : at + length;
        if (kind == kData) {
            showData(message + 8, flags, at, next);
        }
        at = next;
    }
}

class ObservedTransport : public transport::ChainingTransport
{
public:
    explicit ObservedTransport(const transport::ChainingTransportDescriptor &descriptor)
        : ChainingTransport(descriptor), descriptor_(descriptor.low_level_descriptor)
    {
    }
    transport::TransportDescriptorInterface *get_configuration() override
    {
        return descriptor_.get();
    }
    bool send(rtps::SenderResource *lower, const rtps::octet *buffer, std::uint32_t size,
              rtps::LocatorsIterator *begin, rtps::LocatorsIterator *end,
              const std::chrono::steady_clock::time_point &deadline) override
    {
        return lower->send(buffer, size, begin, end, deadline);
    }
    void receive(transport::TransportReceiverInterface *next, const rtps::octet *buffer,
                 std::uint32_t size, const rtps::Locator_t &local,
                 const rtps::Locator_t &remote) override
    {
        showMessage(buffer, size);
        next->OnDataReceived(buffer, size, local, remote);
    }

private:
    std::shared_ptr<transport::TransportDescriptorInterface> descriptor_;
};

struct ObservedTransportDescriptor : transport::ChainingTransportDescriptor {
    using ChainingTransportDescriptor::ChainingTransportDescriptor;
    transport::TransportInterface *create_transport() const override
    {
        return new ObservedTransport(*this);
    }
};

// Of the samples nothing but their arrival counts here.
class AnyType : public fast::TopicDataType
{
public:
    AnyType(const char *name, bool isKeyed)
    {
        setName(name);
        m_typeSize = 4096;
        m_isGetKeyDefined = isKeyed;
        auto_fill_type_object(false);
        auto_fill_type_information(false);
    }
    bool serialize(void *, rtps::SerializedPayload_t *) override { return false; }
    bool deserialize(rtps::SerializedPayload_t *, void *) override { return true; }
    std::function<std::uint32_t()> getSerializedSizeProvider(void *) override
    {
        return [] { return 0U; };
    }
    void *createData() override { return new char; }
    void deleteData(void *data) override { delete static_cast<char *>(data); }
    bool getKey(void *, rtps::InstanceHandle_t *handle, bool) override
    {
        // All samples are one instance to this reader.
        handle->value[15] = 1;
        return true;
    }
};

fast::DomainParticipant *joinDomain(fast::DomainId_t domain)
{
    auto *const factory = fast::DomainParticipantFactory::get_instance();
    factory->load_profiles();
    fast::DomainParticipantQos qos = factory->get_default_participant_qos();
    // Through the loopback's sockets alone, where the octets can be seen.
    const auto udp = std::make_shared<transport::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {"127.0.0.1"};
    udp->maxInitialPeersRange = 64;
    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports = {std::make_shared<ObservedTransportDescriptor>(udp)};
    return factory->create_participant(domain, qos);
}

bool observe(fast::DomainParticipant *participant, fast::Subscriber *subscriber,
             const char *topicName, const char *typeName, bool isKeyed)
{
    const fast::TypeSupport type(new AnyType(typeName, isKeyed));
    if (type.register_type(participant) != eprosima::fastrtps::types::ReturnCode_t::RETCODE_OK) {
        return false;
    }
    fast::Topic *const topic =
        participant->create_topic(topicName, typeName, fast::TOPIC_QOS_DEFAULT);
    fast::DataReaderQos qos = fast::DATAREADER_QOS_DEFAULT;
    qos.reliability().kind = fast::RELIABLE_RELIABILITY_QOS;
    qos.endpoint().history_memory_policy = rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
    return topic != nullptr && subscriber->create_datareader(topic, qos) != nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    fast::DomainParticipant *const participant =
        argc == 2 ? joinDomain(std::atoi(argv[1])) : nullptr;
    if (participant == nullptr) {
        std::fputs("wire_observer: could not join a domain\n", stderr);
        return EXIT_FAILURE;
    }
    fast::Subscriber *const subscriber =
        participant->create_subscriber(fast::SUBSCRIBER_QOS_DEFAULT);
    const bool isGood = observe(participant, subscriber, "zuv/service/admin/command_request",
                                "ZUV::Service::Admin::CommandRequest", true) &&
                        observe(participant, subscriber, "zuv/service/admin/command_reply",
                                "ZUV::Service::Admin::CommandReply", false);
    if (isGood) {
        std::puts("ready");
        while (std::getchar() != EOF) {
        }
    }
    participant->delete_contained_entities();
    fast::DomainParticipantFactory::get_instance()->delete_participant(participant);
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
