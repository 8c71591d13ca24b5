#include "platform/typesys/TypePlugin.h"

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Object.hpp"
#include "platform/typesys/Program.hpp"

// Its state is the slots of the types.
struct DDS_TypeCodeFactory {
};

namespace
{

constexpr const char *kPluginTag = "ZUVTypePlugin";

DDS_TypeCodeFactory g_factory;

zuv::TypeSlot *slotOf(const DDS_TypeCode *type)
{
    const DDS_TypeCode *resolved = DDS_TypeCode_resolve_alias(type);
    return resolved != nullptr ? resolved->slot : nullptr;
}

} // namespace

const ZUVSampleAccessInfo *ZUVType_getSampleAccessInfo(const DDS_TypeCode *type)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr ? &program->access() : nullptr;
}

DDS_TypeCodeFactory *DDS_TypeCodeFactory_get_instance(void)
{
    return &g_factory;
}

DDS_Boolean DDS_TypeCodeFactory_assert_programs_in_global_list(DDS_TypeCodeFactory *self,
                                                               const DDS_TypeCode *type,
                                                               DDS_UnsignedLong programMask)
{
    (void)programMask; // one program serves all uses
    if (self == nullptr || zuv::Program::of(type) == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_ASSERT_FAILURE_s,
                "programs of a type");
        return DDS_BOOLEAN_FALSE;
    }
    slotOf(type)->programUsers.fetch_add(1, std::memory_order_relaxed);
    return DDS_BOOLEAN_TRUE;
}

void DDS_TypeCodeFactory_remove_programs_from_global_list(DDS_TypeCodeFactory *self,
                                                          const DDS_TypeCode *type,
                                                          DDS_UnsignedLong programMask)
{
    (void)programMask;
    zuv::TypeSlot *slot = self != nullptr ? slotOf(type) : nullptr;
    if (slot == nullptr) {
        return;
    }
    std::uint32_t users = slot->programUsers.load(std::memory_order_relaxed);
    while (users > 0 && !slot->programUsers.compare_exchange_weak(users, users - 1)) {
    }
}

DDS_UnsignedLong DDS_TypeCodeFactory_get_program_user_count(const DDS_TypeCodeFactory *self,
                                                            const DDS_TypeCode *type)
{
    const zuv::TypeSlot *slot = self != nullptr ? slotOf(type) : nullptr;
    return slot != nullptr ? slot->programUsers.load(std::memory_order_relaxed) : 0;
}

ZUVTypePlugin *ZUVTypePlugin_new(const DDS_TypeCode *type)
{
    ZUVTypePlugin *self = zuv::newObject<ZUVTypePlugin>(kPluginTag);
    if (self == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_CREATION_FAILURE_s,
                "type plug-in");
        return nullptr;
    }
    self->createSample = ZUVTypeEndpointData_createSample;
    self->deleteSample = ZUVTypeEndpointData_deleteSample;
    self->getSample = ZUVTypeEndpointData_getSample;
    self->getBuffer = ZUVTypeEndpointData_getBuffer;
    self->returnBuffer = ZUVTypeEndpointData_returnBuffer;
    self->typeCode = type;
    self->typeName = DDS_TypeCode_name(type, nullptr);
    return self;
}

void ZUVTypePlugin_delete(ZUVTypePlugin *self)
{
    zuv::deleteObject(self);
}
