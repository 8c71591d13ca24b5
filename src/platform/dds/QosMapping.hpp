// From our QoS records to those of the middleware.
//
// Each field goes where the middleware has one; what becomes of the others stands in the table of policies, and is told
// once when such a field is used.
#ifndef ZUV_PLATFORM_DDS_QOS_MAPPING_HPP
#define ZUV_PLATFORM_DDS_QOS_MAPPING_HPP

#include "platform/dds/Qos.h"

namespace eprosima::fastdds::dds
{
class DomainParticipantQos;
class TopicQos;
class PublisherQos;
class SubscriberQos;
class DataWriterQos;
class DataReaderQos;
} // namespace eprosima::fastdds::dds

namespace zuv::dds
{

// What `to` holds beforehand stays where the record has nothing to say: names, properties and user data that an
// operator's profile gave.
void mapQos(const DDS_DomainParticipantQos &from, eprosima::fastdds::dds::DomainParticipantQos &to);

void mapQos(const DDS_TopicQos &from, bool hasKey, eprosima::fastdds::dds::TopicQos &to);
void mapQos(const DDS_PublisherQos &from, eprosima::fastdds::dds::PublisherQos &to);
void mapQos(const DDS_SubscriberQos &from, eprosima::fastdds::dds::SubscriberQos &to);

// The limits of the middleware count by instance where the type has a key; see limitsOf in the source.
void mapQos(const DDS_DataWriterQos &from, bool hasKey, eprosima::fastdds::dds::DataWriterQos &to);
void mapQos(const DDS_DataReaderQos &from, bool hasKey, eprosima::fastdds::dds::DataReaderQos &to);

// The property that bounds the memory kept for a sample after its use, in octets. DDS_LENGTH_UNLIMITED when it
// is not set, says so, or is no number.
DDS_Long poolBufferMaxSize(const DDS_PropertyQosPolicy &properties);

} // namespace zuv::dds

#endif
