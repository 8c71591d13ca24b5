#include "Loopback.hpp"

#include <memory>

#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>

namespace zuv::dds
{
namespace
{

namespace fast = eprosima::fastdds::dds;
namespace transport = eprosima::fastdds::rtps;
namespace rtps = eprosima::fastrtps::rtps;

// Keep in step with examples/profiles/loopback.xml.
constexpr char kLoopbackAddress[] = "127.0.0.1";
constexpr std::uint32_t kSegmentSize = 8 * 1024 * 1024;    // several large messages at once
constexpr std::uint32_t kMaxMessageSize = 2 * 1024 * 1024; // a body of 1 MiB goes in one piece
// A peer's port is trusted when its reader has been awake within this time. The first message to a peer waits a third
// of it, and nothing else is found meanwhile.
constexpr std::uint32_t kHealthyCheckMilliseconds = 240;
constexpr std::uint32_t kSocketBufferSize = 4 * 1024 * 1024;
// Peers are found by trying the ports of so many participants on the host.
constexpr std::uint32_t kMaxInitialPeersRange = 64;
// What a lost announcement costs. Newcomers need none of these: they are answered.
const eprosima::fastrtps::Duration_t kAnnouncementPeriod{0, 500'000'000};
// How long a killed process counts as alive.
const eprosima::fastrtps::Duration_t kLeaseDuration{5, 0};

rtps::Locator_t loopbackLocator()
{
    rtps::Locator_t locator;
    locator.kind = LOCATOR_KIND_UDPv4;
    rtps::IPLocator::setIPv4(locator, kLoopbackAddress);
    return locator;
}

void applyLoopback(fast::DomainParticipantQos &qos)
{
    auto sharedMemory = std::make_shared<transport::SharedMemTransportDescriptor>();
    sharedMemory->segment_size(kSegmentSize);
    sharedMemory->max_message_size(kMaxMessageSize);
    sharedMemory->healthy_check_timeout_ms(kHealthyCheckMilliseconds);
    auto udp = std::make_shared<transport::UDPv4TransportDescriptor>();
    udp->interfaceWhiteList = {kLoopbackAddress};
    udp->maxInitialPeersRange = kMaxInitialPeersRange;
    udp->sendBufferSize = kSocketBufferSize;
    udp->receiveBufferSize = kSocketBufferSize;

    qos.transport().use_builtin_transports = false;
    qos.transport().user_transports = {sharedMemory, udp};
    qos.transport().send_socket_buffer_size = kSocketBufferSize;
    qos.transport().listen_socket_buffer_size = kSocketBufferSize;

    auto &builtin = qos.wire_protocol().builtin;
    builtin.initialPeersList.push_back(loopbackLocator());
    // Naming the unicast locator keeps the multicast one, which would be the default, away.
    builtin.metatrafficUnicastLocatorList.push_back(loopbackLocator());
    builtin.discovery_config.leaseDuration = kLeaseDuration;
    builtin.discovery_config.leaseDuration_announcementperiod = kAnnouncementPeriod;
}

} // namespace

bool applyLoopbackUnlessConfigured(fast::DomainParticipantQos &qos)
{
    if (!(qos == fast::PARTICIPANT_QOS_DEFAULT)) {
        return false;
    }
    applyLoopback(qos);
    return true;
}

} // namespace zuv::dds
