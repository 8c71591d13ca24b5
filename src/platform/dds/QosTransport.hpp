// Where a participant's traffic goes: what its QoS says about peers and transports, on top of what the middleware's
// profile has given.
#ifndef ZUV_PLATFORM_DDS_QOS_TRANSPORT_HPP
#define ZUV_PLATFORM_DDS_QOS_TRANSPORT_HPP

#include "platform/dds/Qos.h"

namespace eprosima::fastdds::dds
{
class DomainParticipantQos;
}

namespace zuv::dds
{

// Take away the transports that the policy does not name, with their addresses. The default takes nothing away. A
// transport that is named and not there is not made: that is reported.
void mapTransports(const DDS_TransportBuiltinQosPolicy &from,
                   eprosima::fastdds::dds::DomainParticipantQos &to);

// Sizes of the transports that are there:
//
//   dds.transport.UDPv4.send_socket_buffer_size         octets
//   dds.transport.UDPv4.recv_socket_buffer_size
//   dds.transport.UDPv4.message_size_max
//   dds.transport.shmem.segment_size
//   dds.transport.shmem.message_size_max
//
// A value that is no positive number is reported and has no effect.
void mapTransportProperties(const DDS_PropertyQosPolicy &from,
                            eprosima::fastdds::dds::DomainParticipantQos &to);

// Replace the initial peers, if the policy has any. A peer that is no address is reported and left out.
void mapPeers(const DDS_DiscoveryQosPolicy &from, eprosima::fastdds::dds::DomainParticipantQos &to);

// A positive number in decimal, or 0 for any other text.
std::uint32_t positiveNumber(const char *text);

} // namespace zuv::dds

#endif
