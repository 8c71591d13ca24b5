#include "platform/typesys/Sample.h"

#include <cstring>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/SampleOps.hpp"
#include "platform/typesys/TypeTable.hpp"

namespace
{

constexpr const char *kSampleTag = "DDS_Sample";

bool isNull(const void *argument, const char *condition)
{
    return ZUV_PRECONDITION(DDS, DDS_SUBMODULE_TYPES, argument == nullptr, condition);
}

bool copyMembers(std::span<const zuv::Op> ops, void *destination, const void *source)
{
    return destination == source || zuv::copyOps(ops, destination, source);
}

DDS_TypeAllocationParams_t paramsWith(DDS_Boolean allocatePointers)
{
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_pointers = allocatePointers;
    return params;
}

DDS_TypeDeallocationParams_t deallocationParamsWith(DDS_Boolean deletePointers)
{
    DDS_TypeDeallocationParams_t params = DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;
    params.delete_pointers = deletePointers;
    return params;
}

// The forms of an operation share these, since exported functions are called through a table.
bool initialize(const DDS_TypeCode *type, void *self, const DDS_TypeAllocationParams_t *params)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program == nullptr && type != nullptr && self != nullptr) {
        std::memset(self, 0, type->size); // as after every failure: finalizing does no harm
    }
    return program != nullptr && !isNull(self, "self == ((void *)0)") &&
           !isNull(params, "allocParams == ((void *)0)") &&
           zuv::initializeSample(*program, self, *params);
}

void finalize(const DDS_TypeCode *type, void *self, const DDS_TypeDeallocationParams_t *params)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program != nullptr && !program->isPlain() && self != nullptr && params != nullptr) {
        zuv::finalizeSample(*program, self, *params);
    }
}

} // namespace

DDS_UnsignedLong ZUVSample_getSize(const DDS_TypeCode *type)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr ? program->size() : 0;
}

DDS_Boolean ZUVSample_initializeWithParams(const DDS_TypeCode *type, void *self,
                                           const DDS_TypeAllocationParams_t *params)
{
    return initialize(type, self, params);
}

DDS_Boolean ZUVSample_initializeEx(const DDS_TypeCode *type, void *self,
                                   DDS_Boolean allocatePointers, DDS_Boolean allocateMemory)
{
    DDS_TypeAllocationParams_t params = paramsWith(allocatePointers);
    params.allocate_memory = allocateMemory;
    return initialize(type, self, &params);
}

void ZUVSample_finalizeWithParams(const DDS_TypeCode *type, void *self,
                                  const DDS_TypeDeallocationParams_t *params)
{
    finalize(type, self, params);
}

void ZUVSample_finalizeEx(const DDS_TypeCode *type, void *self, DDS_Boolean deletePointers)
{
    const DDS_TypeDeallocationParams_t params = deallocationParamsWith(deletePointers);
    finalize(type, self, &params);
}

void ZUVSample_finalizeOptionalMembers(const DDS_TypeCode *type, void *self,
                                       DDS_Boolean deletePointers)
{
    (void)deletePointers; // no type has a member that is a pointer by declaration
    const zuv::Program *program = zuv::Program::of(type);
    if (program != nullptr && self != nullptr && program->hasOptional()) {
        zuv::finalizeOptionalOps(program->ops(), self);
    }
}

DDS_Boolean ZUVSample_copy(const DDS_TypeCode *type, void *destination, const void *source)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && !isNull(destination, "dst == ((void *)0)") &&
           !isNull(source, "src == ((void *)0)") &&
           copyMembers(program->ops(), destination, source);
}

DDS_Boolean ZUVSample_handOver(const DDS_TypeCode *type, void *destination, void *source)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && !isNull(destination, "dst == ((void *)0)") &&
           !isNull(source, "src == ((void *)0)") &&
           (destination == source || zuv::handOverOps(program->ops(), destination, source));
}

DDS_Boolean ZUVSample_copyKey(const DDS_TypeCode *type, void *destination, const void *source)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && !isNull(destination, "dst == ((void *)0)") &&
           !isNull(source, "src == ((void *)0)") &&
           copyMembers(program->keyOps(), destination, source);
}

DDS_Boolean ZUVSample_equals(const DDS_TypeCode *type, const void *first, const void *second)
{
    const zuv::Program *program = zuv::Program::of(type);
    return program != nullptr && !isNull(first, "first == ((void *)0)") &&
           !isNull(second, "second == ((void *)0)") && zuv::areEqual(program->ops(), first, second);
}

void *ZUVSample_newWithParams(const DDS_TypeCode *type, const DDS_TypeAllocationParams_t *params)
{
    const zuv::Program *program = zuv::Program::of(type);
    if (program == nullptr || isNull(params, "allocParams == ((void *)0)")) {
        return nullptr;
    }
    void *self = ZUVOsapiHeap_allocate(program->size(), kSampleTag);
    if (self == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d, static_cast<int>(program->size()));
        return nullptr;
    }
    if (!zuv::initializeSample(*program, self, *params)) {
        ZUVOsapiHeap_free(self);
        return nullptr;
    }
    return self;
}

void *ZUVSample_newEx(const DDS_TypeCode *type, DDS_Boolean allocatePointers)
{
    const DDS_TypeAllocationParams_t params = paramsWith(allocatePointers);
    return ZUVSample_newWithParams(type, &params);
}

void ZUVSample_deleteWithParams(const DDS_TypeCode *type, void *self,
                                const DDS_TypeDeallocationParams_t *params)
{
    finalize(type, self, params);
    ZUVOsapiHeap_free(self);
}

void ZUVSample_deleteEx(const DDS_TypeCode *type, void *self, DDS_Boolean deletePointers)
{
    const DDS_TypeDeallocationParams_t params = deallocationParamsWith(deletePointers);
    ZUVSample_deleteWithParams(type, self, &params);
}
