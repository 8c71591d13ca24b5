#include "RegisteredType.hpp"

#include <algorithm>
#include <cstring>

#include <fastdds/dds/topic/TopicDataType.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>

#include "PayloadReading.hpp"
#include "Report.hpp"
#include "SampleStore.hpp"
#include "platform/osapi/Fault.h"

namespace zuv::dds
{
namespace
{

namespace rtps = eprosima::fastrtps::rtps;

// What a payload is likely to need at first; payloads grow.
constexpr std::uint32_t kInitialPayloadSize = 1024;
// Which encoding it is in.
constexpr std::uint32_t kHeaderSize = 4;

class TopicType : public eprosima::fastdds::dds::TopicDataType
{
public:
    explicit TopicType(std::shared_ptr<RegisteredType> type) : type_(std::move(type))
    {
        encapsulation_ = static_cast<DDS_UnsignedShort>(DDS_TypeCode_get_native_encapsulation(
            type_->plugin.typeCode, DDS_AUTO_DATA_REPRESENTATION));
        m_typeSize = std::min(kInitialPayloadSize,
                              type_->plugin.getSerializedSampleMaxSize(nullptr, DDS_BOOLEAN_TRUE));
        m_isGetKeyDefined = type_->hasKey();
        auto_fill_type_object(false);
        auto_fill_type_information(false);
        setName(type_->name.c_str());
    }

    bool serialize(void *data, rtps::SerializedPayload_t *payload) override
    {
        auto &cell = *static_cast<SampleCell *>(data);
        DDS_UnsignedLong length = 0;
        if (ZUV_OSAPI_FAULT("dds.serialize") ||
            !type_->plugin.serialize(nullptr, cell.sample, payload->data, payload->max_size,
                                     &length)) {
            ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY,
                    &ZUV_CDR_LOG_SERIALIZE_FAILURE_s, type_->name.c_str());
            return false;
        }
        payload->length = length;
        payload->encapsulation = encapsulation_;
        cell.isSerialized = true;
        return true;
    }

    // A false result makes a reader drop the sample and go on with the next one.
    bool deserialize(rtps::SerializedPayload_t *payload, void *data) override
    {
        if (data == nullptr) { // no memory for a key when the reader was made
            return true;
        }
        const PayloadReading reading;
        auto &cell = *static_cast<SampleCell *>(data);
        if (cell.store == nullptr) {
            readKey(*payload, cell);
            return true;
        }
        cell.payloadSize = payload->length;
        if (cell.isWanted != nullptr && !cell.isWanted(cell.context)) {
            return false;
        }
        if (cell.sample == nullptr) {
            cell.sample = cell.store->getData();
            if (cell.sample == nullptr) {
                return false;
            }
        }
        if (ZUV_OSAPI_FAULT("dds.deserialize") ||
            !type_->plugin.deserialize(cell.store->endpointData(), cell.sample, payload->data,
                                       payload->length)) {
            cell.store->countRefused();
            ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY,
                    &ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, type_->name.c_str());
            return false;
        }
        return true;
    }

    std::function<std::uint32_t()> getSerializedSizeProvider(void *data) override
    {
        // Two pointers: small enough for the function object to need no memory of its own.
        return [this, cell = static_cast<SampleCell *>(data)] {
            if (cell->sample == nullptr) { // an instance's end, told by its handle alone
                return kHeaderSize;
            }
            const DDS_UnsignedLong size =
                type_->plugin.getSerializedSampleSize(nullptr, DDS_BOOLEAN_TRUE, cell->sample);
            // A sample without a size fails to serialize.
            return std::max<std::uint32_t>(size, kHeaderSize);
        };
    }

    // Asked for by readers of types with a key: what the key of a payload is read into.
    void *createData() override
    {
        void *const sample = ZUVSample_newEx(type_->plugin.typeCode, DDS_BOOLEAN_TRUE);
        return sample == nullptr ? nullptr : new SampleCell{sample};
    }

    void deleteData(void *data) override
    {
        auto *const cell = static_cast<SampleCell *>(data);
        if (cell != nullptr) {
            ZUVSample_deleteEx(type_->plugin.typeCode, cell->sample, DDS_BOOLEAN_TRUE);
            delete cell;
        }
    }

    bool getKey(void *data, rtps::InstanceHandle_t *handle, bool /* forceMd5 */) override
    {
        ZUVKeyHash hash = {};
        if (!m_isGetKeyDefined) {
            return false;
        }
        const auto *const cell = static_cast<const SampleCell *>(data);
        if (cell != nullptr && cell->sample == nullptr) { // the handle stays as it is
            return false;
        }
        // A reader must not be left with a sample that it can give no instance.
        if (cell != nullptr && !type_->plugin.instanceToKeyHash(nullptr, &hash, cell->sample)) {
            return false;
        }
        for (unsigned int index = 0; index < sizeof(hash.value); ++index) {
            handle->value[index] = hash.value[index];
        }
        return true;
    }

    const DDS_TypeCode *typeCode() const { return type_->plugin.typeCode; }

private:
    // The key of a sample that came without its hash. Whatever the payload is, the sample gets a key: one that
    // cannot be read keeps the last one, and is refused when it is taken.
    void readKey(const rtps::SerializedPayload_t &payload, SampleCell &cell)
    {
        ZUVCodec_deserializeKeyOfSample(type_->plugin.typeCode, cell.sample, payload.data,
                                        payload.length);
    }

    const std::shared_ptr<RegisteredType> type_;
    DDS_UnsignedShort encapsulation_;
};

} // namespace

std::shared_ptr<RegisteredType> RegisteredType::make(const char *name, const ZUVTypePlugin &plugin)
{
    auto type = std::make_shared<RegisteredType>();
    type->name = name;
    type->plugin = plugin;
    if (!ZUV_OSAPI_FAULT("dds.attach_participant")) {
        type->participantData = plugin.onParticipantAttached(nullptr);
    }
    if (type->participantData == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "participant data of the type");
        return nullptr;
    }
    return type;
}

RegisteredType::~RegisteredType()
{
    if (participantData != nullptr) {
        plugin.onParticipantDetached(participantData);
    }
}

eprosima::fastdds::dds::TypeSupport makeTypeSupport(std::shared_ptr<RegisteredType> type)
{
    return eprosima::fastdds::dds::TypeSupport(new TopicType(std::move(type)));
}

DDS_ReturnCode_t keyFromHandle(const RegisteredType &type, const DDS_InstanceHandle_t &handle,
                               void *sample)
{
    if (!type.hasKey()) {
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (!handle.isValid) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_UnsignedLong size = ZUVCodec_getKeyHashInputMaxSize(type.plugin.typeCode);
    if (size > sizeof(handle.value)) {
        return DDS_RETCODE_UNSUPPORTED;
    }
    // The handle is the key, plain and big endian: with the header of that encoding it is a payload.
    DDS_Octet payload[kHeaderSize + sizeof(handle.value)] = {0, DDS_ENCAPSULATION_ID_CDR2_BE, 0, 0};
    std::memcpy(payload + kHeaderSize, handle.value, size);
    return ZUVCodec_deserializeKey(type.plugin.typeCode, sample, payload,
                                   static_cast<DDS_UnsignedLong>(kHeaderSize + size))
               ? DDS_RETCODE_OK
               : DDS_RETCODE_ERROR;
}

const DDS_TypeCode *typeCodeOf(const eprosima::fastdds::dds::TopicDataType *type)
{
    const auto *const ours = dynamic_cast<const TopicType *>(type);
    return ours == nullptr ? nullptr : ours->typeCode();
}

} // namespace zuv::dds
