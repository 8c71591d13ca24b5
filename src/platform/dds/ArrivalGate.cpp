#include "ArrivalGate.hpp"

#include <typeinfo>

#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/ChainingTransport.h>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/UDPv6TransportDescriptor.h>

namespace zuv::dds
{
namespace
{

namespace rtps = eprosima::fastrtps::rtps;
namespace transport = eprosima::fastdds::rtps;

using Descriptor = std::shared_ptr<transport::TransportDescriptorInterface>;

// What a chain is told about the transport below it.
struct Chain final : transport::ChainingTransportDescriptor {
    using ChainingTransportDescriptor::ChainingTransportDescriptor;
    transport::TransportInterface *create_transport() const override { return nullptr; }
};

// What comes in passes here. What goes out is the lower transport's affair alone.
class GatedTransport final : public transport::ChainingTransport
{
public:
    GatedTransport(const Descriptor &lower, std::shared_ptr<ArrivalGate> gate)
        : ChainingTransport(Chain(lower)), gate_(std::move(gate))
    {
    }

    void receive(transport::TransportReceiverInterface *next, const rtps::octet *buffer,
                 std::uint32_t size, const rtps::Locator_t &local,
                 const rtps::Locator_t &remote) override
    {
        gate_->pass();
        next->OnDataReceived(buffer, size, local, remote);
    }

    bool OpenOutputChannel(transport::SendResourceList &senders,
                           const rtps::Locator_t &locator) override
    {
        return low_level_transport_->OpenOutputChannel(senders, locator);
    }
    bool send(rtps::SenderResource *lower, const rtps::octet *buffer, std::uint32_t size,
              rtps::LocatorsIterator *begin, rtps::LocatorsIterator *end,
              const std::chrono::steady_clock::time_point &deadline) override
    {
        return lower->send(buffer, size, begin, end, deadline);
    }

    // The threads of the sockets are waited for, so nobody may wait for the participant any longer.
    bool CloseInputChannel(const rtps::Locator_t &locator) override
    {
        gate_->open();
        return ChainingTransport::CloseInputChannel(locator);
    }
    void shutdown() override
    {
        gate_->open();
        low_level_transport_->shutdown();
    }

    transport::TransportDescriptorInterface *get_configuration() override
    {
        return low_level_transport_->get_configuration();
    }

private:
    const std::shared_ptr<ArrivalGate> gate_;
};

template <typename Udp>
class Gated final : public Udp
{
public:
    Gated(const Udp &plain, std::shared_ptr<ArrivalGate> gate) : Udp(plain), gate_(std::move(gate))
    {
    }
    transport::TransportInterface *create_transport() const override
    {
        return new GatedTransport(std::make_shared<Udp>(*this), gate_);
    }

private:
    const std::shared_ptr<ArrivalGate> gate_;
};

// A kind of its own that is derived from this one is somebody's special one.
template <typename Udp>
void gate(Descriptor &descriptor, const std::shared_ptr<ArrivalGate> &gate)
{
    const auto &one = *descriptor;
    if (typeid(one) == typeid(Udp)) {
        descriptor = std::make_shared<Gated<Udp>>(static_cast<const Udp &>(one), gate);
    }
}

} // namespace

std::shared_ptr<ArrivalGate> putGateBehind(eprosima::fastdds::dds::TransportConfigQos &transports)
{
    auto made = std::make_shared<ArrivalGate>();
    for (Descriptor &descriptor : transports.user_transports) {
        gate<transport::UDPv4TransportDescriptor>(descriptor, made);
        gate<transport::UDPv6TransportDescriptor>(descriptor, made);
    }
    return made;
}

} // namespace zuv::dds
