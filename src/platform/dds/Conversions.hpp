// Between the middleware's small values and ours.
#ifndef ZUV_PLATFORM_DDS_CONVERSIONS_HPP
#define ZUV_PLATFORM_DDS_CONVERSIONS_HPP

#include "platform/dds/SampleInfo.h"
#include "platform/osapi/Time.h"

namespace eprosima::fastrtps
{
namespace rtps
{
struct GUID_t;
struct InstanceHandle_t;
class SampleIdentity;
class Time_t;
} // namespace rtps
namespace types
{
class ReturnCode_t;
}
} // namespace eprosima::fastrtps

namespace eprosima::fastdds::dds
{
struct SampleInfo;
}

namespace zuv::dds
{

DDS_InstanceHandle_t toOurs(const eprosima::fastrtps::rtps::InstanceHandle_t &handle);
DDS_SampleIdentity_t toOurs(const eprosima::fastrtps::rtps::SampleIdentity &identity);
DDS_SampleInfo toOurs(const eprosima::fastdds::dds::SampleInfo &info);
DDS_ReturnCode_t toOurs(const eprosima::fastrtps::types::ReturnCode_t &code);

eprosima::fastrtps::rtps::InstanceHandle_t toFast(const DDS_InstanceHandle_t &handle);
eprosima::fastrtps::rtps::SampleIdentity toFast(const DDS_SampleIdentity_t &identity);
eprosima::fastrtps::rtps::Time_t toFast(const DDS_Time_t &time);

// Whether both entities belong to the same participant.
bool hasSameParticipant(const DDS_GUID_t &left, const DDS_GUID_t &right);

} // namespace zuv::dds

#endif
