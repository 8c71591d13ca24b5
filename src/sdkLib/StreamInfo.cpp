#include "sdkLib/StreamInfo.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "sdkLib/Report.hpp"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

using brel::Place;
using StringSeq = ZUV_BrelServiceStringSeq;
using StreamInfo = ZUV_BrelServiceStreamInfo;

constexpr const char *kStreamInfoTag = "stream info";

void *reallocate(void *block, size_t size)
{
    return ZUV_OSAPI_FAULT("sdk.allocate") ? nullptr : std::realloc(block, size);
}

bool replaceText(char **text, const char *newText, const Place &place = Place::current())
{
    const size_t size = std::strlen(newText) + 1;
    void *const block = reallocate(*text, size);
    if (block == nullptr) {
        brel::reportFailure(place, ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                            static_cast<int>(size - 1));
        return false;
    }
    *text = static_cast<char *>(std::memcpy(block, newText, size));
    return true;
}

void freeText(char *&text)
{
    std::free(text);
    text = nullptr;
}

bool reserve(StringSeq &self, int slotCount, const Place &place = Place::current())
{
    if (slotCount <= self.element_count_max) {
        return true;
    }
    void *const array =
        reallocate(self.element_array, static_cast<size_t>(slotCount) * sizeof(char *));
    if (array == nullptr) {
        brel::reportFailure(place, ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, slotCount,
                            static_cast<int>(sizeof(char *)));
        return false;
    }
    self.element_array = static_cast<char **>(array);
    std::fill(self.element_array + self.element_count_max, self.element_array + slotCount, nullptr);
    self.element_count_max = slotCount;
    return true;
}

void release(StringSeq &self)
{
    for (int index = 0; index < self.element_count_max; ++index) {
        freeText(self.element_array[index]);
    }
    std::free(self.element_array);
    self = {};
}

StreamInfo *newStreamInfo(DDS_Boolean isDisposed, const char *streamName, const char *typeName,
                          int representationKind, void *representation,
                          const Place &place = Place::current())
{
    void *const block = ZUVOsapiHeap_allocateZeroed(sizeof(StreamInfo), kStreamInfoTag);
    if (block == nullptr) {
        brel::reportFailure(place, ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                            static_cast<int>(sizeof(StreamInfo)));
        return nullptr;
    }
    StreamInfo *const self = static_cast<StreamInfo *>(block);
    if (!ZUV_BrelServiceStreamInfo_initialize(self, isDisposed, streamName, typeName,
                                              representationKind, representation)) {
        ZUV_BrelServiceStreamInfo_delete(self);
        return nullptr;
    }
    return self;
}

} // namespace

extern "C" {

ZUV_BrelServiceStringSeq *ZUV_BrelServiceStringSeq_copy(ZUV_BrelServiceStringSeq *self,
                                                        const ZUV_BrelServiceStringSeq *other)
{
    if (IS_NULL(self) || IS_NULL(other)) {
        return nullptr;
    }
    if (self == other) {
        return self;
    }
    if (!reserve(*self, other->element_count)) {
        return nullptr;
    }
    self->element_count = other->element_count;
    for (int index = 0; index < other->element_count; ++index) {
        const char *const text = other->element_array[index];
        if (IS_NULL(text) || !replaceText(&self->element_array[index], text)) {
            return nullptr;
        }
    }
    return self;
}

ZUV_BrelServiceStreamInfo *ZUV_BrelServiceStreamInfo_new_discovered(const char *streamName,
                                                                    const char *registeredTypeName,
                                                                    int type_representation_kind,
                                                                    void *type_representation)
{
    return newStreamInfo(DDS_BOOLEAN_FALSE, streamName, registeredTypeName,
                         type_representation_kind, type_representation);
}

ZUV_BrelServiceStreamInfo *ZUV_BrelServiceStreamInfo_new_disposed(const char *streamName)
{
    return newStreamInfo(DDS_BOOLEAN_TRUE, streamName, nullptr, 0, nullptr);
}

DDS_Boolean ZUV_BrelServiceStreamInfo_initialize(
    ZUV_BrelServiceStreamInfo *self, DDS_Boolean disposedStreamInfo, const char *stream_name,
    const char *registeredTypeName, int type_representation_kind, void *type_representation)
{
    if (IS_NULL(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    *self = {};
    if (IS_NULL(stream_name)) {
        return DDS_BOOLEAN_FALSE;
    }
    const bool hasTexts = replaceText(&self->stream_name, stream_name) &&
                          (registeredTypeName == nullptr ||
                           replaceText(&self->type_info.type_name, registeredTypeName));
    if (!hasTexts) {
        ZUV_BrelServiceStreamInfo_finalize(self);
        return DDS_BOOLEAN_FALSE;
    }
    self->disposed = disposedStreamInfo;
    self->type_info.can_be_optimized = DDS_BOOLEAN_TRUE;
    self->type_info.type_representation_kind = type_representation_kind;
    self->type_info.type_representation = type_representation;
    return DDS_BOOLEAN_TRUE;
}

void ZUV_BrelServiceStreamInfo_finalize(ZUV_BrelServiceStreamInfo *self)
{
    if (self == nullptr) {
        return;
    }
    release(self->partition);
    freeText(self->stream_name);
    freeText(self->type_info.type_name);
}

void ZUV_BrelServiceStreamInfo_delete(ZUV_BrelServiceStreamInfo *self)
{
    ZUV_BrelServiceStreamInfo_finalize(self);
    ZUVOsapiHeap_free(self);
}
}
