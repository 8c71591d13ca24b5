#include "Conversions.hpp"

#include <cstring>

#include <fastdds/dds/subscriber/SampleInfo.hpp>
#include <fastdds/rtps/common/Guid.h>
#include <fastdds/rtps/common/InstanceHandle.h>
#include <fastdds/rtps/common/SampleIdentity.h>
#include <fastdds/rtps/common/Time_t.h>
#include <fastrtps/types/TypesBase.h>

namespace zuv::dds
{

namespace rtps = eprosima::fastrtps::rtps;
using FastReturnCode = eprosima::fastrtps::types::ReturnCode_t;

namespace
{

constexpr std::size_t kPrefixSize = 12;

DDS_GUID_t guidOf(const rtps::GUID_t &guid)
{
    DDS_GUID_t ours;
    std::memcpy(ours.value, guid.guidPrefix.value, kPrefixSize);
    std::memcpy(ours.value + kPrefixSize, guid.entityId.value, sizeof(ours.value) - kPrefixSize);
    return ours;
}

rtps::GUID_t guidOf(const DDS_GUID_t &guid)
{
    rtps::GUID_t theirs;
    std::memcpy(theirs.guidPrefix.value, guid.value, kPrefixSize);
    std::memcpy(theirs.entityId.value, guid.value + kPrefixSize, sizeof(guid.value) - kPrefixSize);
    return theirs;
}

DDS_Time_t timeOf(const rtps::Time_t &time)
{
    return {time.seconds(), time.nanosec()};
}

} // namespace

DDS_InstanceHandle_t toOurs(const rtps::InstanceHandle_t &handle)
{
    DDS_InstanceHandle_t ours = DDS_HANDLE_NIL;
    if (handle.isDefined()) {
        ours.isValid = DDS_BOOLEAN_TRUE;
        for (unsigned int index = 0; index < sizeof(ours.value); ++index) {
            ours.value[index] = handle.value[index];
        }
    }
    return ours;
}

rtps::InstanceHandle_t toFast(const DDS_InstanceHandle_t &handle)
{
    rtps::InstanceHandle_t theirs;
    if (handle.isValid) {
        for (unsigned int index = 0; index < sizeof(handle.value); ++index) {
            theirs.value[index] = handle.value[index];
        }
    }
    return theirs;
}

DDS_SampleIdentity_t toOurs(const rtps::SampleIdentity &identity)
{
    if (identity.sequence_number() == rtps::SequenceNumber_t::unknown()) {
        return DDS_UNKNOWN_SAMPLE_IDENTITY;
    }
    return {guidOf(identity.writer_guid()),
            {identity.sequence_number().high, identity.sequence_number().low}};
}

rtps::SampleIdentity toFast(const DDS_SampleIdentity_t &identity)
{
    rtps::SampleIdentity theirs;
    if (!DDS_SampleIdentity_equals(&identity, &DDS_UNKNOWN_SAMPLE_IDENTITY)) {
        theirs.writer_guid(guidOf(identity.writer_guid));
        theirs.sequence_number(
            rtps::SequenceNumber_t(identity.sequence_number.high, identity.sequence_number.low));
    }
    return theirs;
}

rtps::Time_t toFast(const DDS_Time_t &time)
{
    // By way of the type that counts nanoseconds: the other one's own constructor takes fractions of 2^-32 seconds.
    return rtps::Time_t(eprosima::fastrtps::Time_t(time.sec, time.nanosec));
}

DDS_SampleInfo toOurs(const eprosima::fastdds::dds::SampleInfo &info)
{
    DDS_SampleInfo ours = DDS_SAMPLEINFO_DEFAULT;
    ours.sample_state = info.sample_state;
    ours.view_state = info.view_state;
    ours.instance_state = info.instance_state;
    ours.source_timestamp = timeOf(info.source_timestamp);
    ours.reception_timestamp = timeOf(info.reception_timestamp);
    ours.instance_handle = toOurs(info.instance_handle);
    ours.publication_handle = toOurs(info.publication_handle);
    ours.disposed_generation_count = info.disposed_generation_count;
    ours.no_writers_generation_count = info.no_writers_generation_count;
    ours.sample_rank = info.sample_rank;
    ours.generation_rank = info.generation_rank;
    ours.absolute_generation_rank = info.absolute_generation_rank;
    ours.valid_data = info.valid_data ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    ours.sample_identity = toOurs(info.sample_identity);
    ours.related_sample_identity = toOurs(info.related_sample_identity);
    return ours;
}

DDS_ReturnCode_t toOurs(const FastReturnCode &code)
{
    // The numbers are those of the standard (OMG DDS 1.4, 2.2.1.1) up to ILLEGAL_OPERATION.
    const std::uint32_t number = code();
    return number <= DDS_RETCODE_ILLEGAL_OPERATION ? static_cast<DDS_ReturnCode_t>(number)
                                                   : DDS_RETCODE_ERROR;
}

bool hasSameParticipant(const DDS_GUID_t &left, const DDS_GUID_t &right)
{
    return std::memcmp(left.value, right.value, kPrefixSize) == 0;
}

} // namespace zuv::dds
