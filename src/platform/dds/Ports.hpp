// The ports of a participant (DDSI-RTPS 2.5, 9.6.2.3).
//
// Peers without multicast try the first so many ports of a domain. The middleware numbers the participants of a process
// without end, so that a process that makes and deletes many would leave that range. Here they get the lowest number
// that is free.
#ifndef ZUV_PLATFORM_DDS_PORTS_HPP
#define ZUV_PLATFORM_DDS_PORTS_HPP

#include <cstdint>

#include "platform/typesys/Types.h"

namespace eprosima::fastdds::dds
{
class DomainParticipantQos;
}

namespace zuv::dds
{

// The lowest number that no participant of this process has in the domain, from 0. Any thread.
int reservePortSlot(DDS_Long domainId);

// Give a number back; a negative one is none.
void releasePortSlot(DDS_Long domainId, int slot);

// Let discovery listen at the port of that number, where the QoS names an address and leaves the port open. Where the
// port is taken by another process, the middleware goes on to the next one.
void useDiscoveryPort(DDS_Long domainId, int slot,
                      eprosima::fastdds::dds::DomainParticipantQos &qos);

// How many ports data may come in at, of all participants that stay on this machine.
inline constexpr std::uint32_t kDataPortCount = 256;

// Let data come in at one of so many ports, if the participant stays on this machine: at one where nobody listens, and
// nobody was killed while listening. Ports in shared memory are files. Whoever sends keeps those that it has sent to
// open, which is why they are few: the next one at a port that was left finds the same file. But a killed process
// leaves its file in a state in which the next one replaces it; those that still have it open would go on writing to the
// old file, and never reach the new owner. Others learn the port by discovery, so it may be any. Towards a network,
// where firewalls know the ports, they stay the standard's.
void useDataPort(DDS_Long domainId, eprosima::fastdds::dds::DomainParticipantQos &qos);

} // namespace zuv::dds

#endif
