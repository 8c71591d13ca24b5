#include <mutex>
#include <new>
#include <vector>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Object.hpp"
#include "platform/typesys/Program.hpp"
#include "platform/typesys/TypePlugin.h"

struct ZUVTypeParticipantData {
    const DDS_TypeCode *type;
};

struct ZUVTypeEndpointData {
    const DDS_TypeCode *type = nullptr;
    ZUVTypeEndpointInfo info = {ZUV_TYPE_ENDPOINT_READER, DDS_LENGTH_UNLIMITED};
    std::mutex mutex; // guards all of the following
    std::vector<void *> samples{};
    std::vector<void *> keys{};
    std::vector<void *> buffers{};
    void *keyHolder = nullptr; // null for a type without a key
};

namespace
{

constexpr std::size_t kBufferAlignment = 16;

bool isNull(const void *argument, const char *condition)
{
    return ZUV_PRECONDITION(DDS, DDS_SUBMODULE_TYPES, argument == nullptr, condition);
}

bool isNullEndpoint(const ZUVTypeEndpointData *self)
{
    return isNull(self, "endpointData == ((void *)0)");
}

void reportCreation(const char *what)
{
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_CREATION_FAILURE_s, what);
}

// The last object of a pool, or null.
void *takeFrom(ZUVTypeEndpointData &self, std::vector<void *> ZUVTypeEndpointData::*pool)
{
    const std::lock_guard lock(self.mutex);
    if ((self.*pool).empty()) {
        return nullptr;
    }
    void *object = (self.*pool).back();
    (self.*pool).pop_back();
    return object;
}

// False when the pool could not take it.
bool giveTo(ZUVTypeEndpointData &self, std::vector<void *> ZUVTypeEndpointData::*pool, void *object)
{
    const std::lock_guard lock(self.mutex);
    try {
        (self.*pool).push_back(object);
        return true;
    } catch (const std::bad_alloc &) {
        return false;
    }
}

void *getPooledSample(ZUVTypeEndpointData *self, std::vector<void *> ZUVTypeEndpointData::*pool)
{
    if (isNullEndpoint(self)) {
        return nullptr;
    }
    void *sample = takeFrom(*self, pool);
    return sample != nullptr ? sample : ZUVTypeEndpointData_createSample(self);
}

void returnPooledSample(ZUVTypeEndpointData *self, std::vector<void *> ZUVTypeEndpointData::*pool,
                        void *sample)
{
    if (!isNullEndpoint(self) && sample != nullptr && !giveTo(*self, pool, sample)) {
        ZUVTypeEndpointData_deleteSample(self, sample);
    }
}

} // namespace

ZUVTypeParticipantData *ZUVTypeParticipantData_new(const DDS_TypeCode *type)
{
    ZUVTypeParticipantData *self =
        zuv::newObject<ZUVTypeParticipantData>("ZUVTypeParticipantData", type);
    if (self == nullptr) {
        reportCreation("participant data of a type");
        return nullptr;
    }
    if (!DDS_TypeCodeFactory_assert_programs_in_global_list(DDS_TypeCodeFactory_get_instance(),
                                                            type, DDS_TYPE_PROGRAMS_ALL)) {
        zuv::deleteObject(self);
        return nullptr;
    }
    return self;
}

void ZUVTypeParticipantData_delete(ZUVTypeParticipantData *self)
{
    if (self != nullptr) {
        DDS_TypeCodeFactory_remove_programs_from_global_list(DDS_TypeCodeFactory_get_instance(),
                                                             self->type, DDS_TYPE_PROGRAMS_ALL);
        zuv::deleteObject(self);
    }
}

ZUVTypeEndpointData *ZUVTypeEndpointData_new(const DDS_TypeCode *type,
                                             const ZUVTypeEndpointInfo *info)
{
    if (isNull(type, "type == ((void *)0)") || isNull(info, "info == ((void *)0)")) {
        return nullptr;
    }
    ZUVTypeEndpointData *self = zuv::newObject<ZUVTypeEndpointData>("ZUVTypeEndpointData");
    if (self == nullptr) {
        reportCreation("endpoint data of a type");
        return nullptr;
    }
    self->type = type;
    self->info = *info;
    if (ZUVCodec_hasKey(type)) {
        self->keyHolder = ZUVSample_newEx(type, DDS_BOOLEAN_TRUE);
        if (self->keyHolder == nullptr) {
            reportCreation("key holder");
            ZUVTypeEndpointData_delete(self);
            return nullptr;
        }
    }
    return self;
}

void ZUVTypeEndpointData_delete(ZUVTypeEndpointData *self)
{
    if (self == nullptr) {
        return;
    }
    for (void *sample : self->samples) {
        ZUVTypeEndpointData_deleteSample(self, sample);
    }
    for (void *key : self->keys) {
        ZUVTypeEndpointData_deleteSample(self, key);
    }
    for (void *buffer : self->buffers) {
        ZUVOsapiHeap_freeBufferAligned(buffer);
    }
    if (self->keyHolder != nullptr) {
        ZUVTypeEndpointData_deleteSample(self, self->keyHolder);
    }
    zuv::deleteObject(self);
}

void *ZUVTypeEndpointData_createSample(ZUVTypeEndpointData *self)
{
    return isNullEndpoint(self) ? nullptr : ZUVSample_newEx(self->type, DDS_BOOLEAN_TRUE);
}

void ZUVTypeEndpointData_deleteSample(ZUVTypeEndpointData *self, void *sample)
{
    if (!isNullEndpoint(self)) {
        ZUVSample_deleteEx(self->type, sample, DDS_BOOLEAN_TRUE);
    }
}

void *ZUVTypeEndpointData_getSample(ZUVTypeEndpointData *self)
{
    return getPooledSample(self, &ZUVTypeEndpointData::samples);
}

void ZUVTypeEndpointData_returnSample(ZUVTypeEndpointData *self, void *sample)
{
    returnPooledSample(self, &ZUVTypeEndpointData::samples, sample);
}

void *ZUVTypeEndpointData_getKey(ZUVTypeEndpointData *self)
{
    return getPooledSample(self, &ZUVTypeEndpointData::keys);
}

void ZUVTypeEndpointData_returnKey(ZUVTypeEndpointData *self, void *key)
{
    returnPooledSample(self, &ZUVTypeEndpointData::keys, key);
}

DDS_Octet *ZUVTypeEndpointData_getBuffer(ZUVTypeEndpointData *self, DDS_UnsignedLong size)
{
    if (isNullEndpoint(self)) {
        return nullptr;
    }
    void *buffer = takeFrom(*self, &ZUVTypeEndpointData::buffers);
    if (buffer == nullptr || ZUVOsapiHeap_getBlockSize(buffer) < size) {
        ZUVOsapiHeap_freeBufferAligned(buffer);
        buffer = ZUVOsapiHeap_allocateBufferAligned(size, kBufferAlignment);
    }
    if (buffer == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d, static_cast<int>(size));
    }
    return static_cast<DDS_Octet *>(buffer);
}

void ZUVTypeEndpointData_returnBuffer(ZUVTypeEndpointData *self, DDS_Octet *buffer)
{
    if (isNullEndpoint(self) || buffer == nullptr) {
        return;
    }
    const DDS_Long greatest = self->info.poolBufferMaxSize;
    const bool isKept = greatest == DDS_LENGTH_UNLIMITED ||
                        ZUVOsapiHeap_getBlockSize(buffer) <= static_cast<std::size_t>(greatest);
    if (!isKept || !giveTo(*self, &ZUVTypeEndpointData::buffers, buffer)) {
        ZUVOsapiHeap_freeBufferAligned(buffer);
    }
}

DDS_Boolean ZUVTypeEndpointData_serializedSampleToKeyHash(ZUVTypeEndpointData *self,
                                                          const DDS_Octet *buffer,
                                                          DDS_UnsignedLong length, ZUVKeyHash *hash)
{
    if (isNullEndpoint(self) || self->keyHolder == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    const std::lock_guard lock(self->mutex);
    return ZUVCodec_deserialize(self->type, self->keyHolder, buffer, length) &&
           ZUVCodec_getKeyHash(self->type, self->keyHolder, hash);
}
