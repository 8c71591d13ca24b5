// Where a participant is found by those that try the well-known ports of a host (DDSI-RTPS 2.5, 9.6.2.3).
//
// Peers without multicast try the first so many ports of a domain. The middleware numbers the participants of a process
// without end, so that a process that makes and deletes many would leave that range. Here they get the lowest number
// that is free.
#ifndef ZUV_PLATFORM_DDS_DISCOVERY_PORTS_HPP
#define ZUV_PLATFORM_DDS_DISCOVERY_PORTS_HPP

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

} // namespace zuv::dds

#endif
