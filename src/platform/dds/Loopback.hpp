// Where a participant's traffic goes when no operator has said anything: to this machine alone.
#ifndef ZUV_PLATFORM_DDS_LOOPBACK_HPP
#define ZUV_PLATFORM_DDS_LOOPBACK_HPP

namespace eprosima::fastdds::dds
{
class DomainParticipantQos;
}

namespace zuv::dds
{

// Give a QoS that no profile has touched the loopback transports, and leave any other as it is: a profile is
// the operator's explicit word. True if loopback was applied.
bool applyLoopbackUnlessConfigured(eprosima::fastdds::dds::DomainParticipantQos &qos);

} // namespace zuv::dds

#endif
