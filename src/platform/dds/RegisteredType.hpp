// A type as a participant knows it: a copy of its plug-in, and what the type keeps for the participant.
#ifndef ZUV_PLATFORM_DDS_REGISTERED_TYPE_HPP
#define ZUV_PLATFORM_DDS_REGISTERED_TYPE_HPP

#include <memory>
#include <string>

#include "platform/dds/SampleInfo.h"
#include "platform/typesys/TypePlugin.h"

namespace eprosima::fastdds::dds
{
class TopicDataType;
class TypeSupport;
} // namespace eprosima::fastdds::dds

namespace zuv::dds
{

class SampleStore;

struct RegisteredType {
    // Null, after a report, when the type does not attach to the participant.
    static std::shared_ptr<RegisteredType> make(const char *name, const ZUVTypePlugin &plugin);
    ~RegisteredType();

    bool hasKey() const { return plugin.getKeyKind() != ZUV_TYPE_KEY_KIND_NONE; }

    std::string name;
    ZUVTypePlugin plugin = {};
    ZUVTypeParticipantData *participantData = nullptr;
};

// The one data type that the middleware gets to see: it hands payloads to the plug-in and back. Every sample that
// goes through the middleware goes as a cell.
eprosima::fastdds::dds::TypeSupport makeTypeSupport(std::shared_ptr<RegisteredType> type);

// The type code of a data type that makeTypeSupport made; null for any other.
const DDS_TypeCode *typeCodeOf(const eprosima::fastdds::dds::TopicDataType *type);

// Fill the key members of `sample` from a handle, which is the key itself where a key never exceeds 16 octets.
// DDS_RETCODE_BAD_PARAMETER for nil, DDS_RETCODE_PRECONDITION_NOT_MET for a type without a key,
// DDS_RETCODE_UNSUPPORTED where the handle is only a digest of the key.
DDS_ReturnCode_t keyFromHandle(const RegisteredType &type, const DDS_InstanceHandle_t &handle,
                               void *sample);

// What stands for a sample between the middleware and us.
struct SampleCell {
    void *sample = nullptr;        // of the type; when reading, taken from the store when data come
    SampleStore *store = nullptr;  // when reading
    std::uint32_t payloadSize = 0; // when reading: octets that the sample came in
    bool isSerialized = false;     // when writing: the plug-in could do it
    // When reading: whether the sample is wanted at all, asked before it is decoded. May be null.
    bool (*isWanted)(const void *context) = nullptr;
    const void *context = nullptr;
};

} // namespace zuv::dds

#endif
