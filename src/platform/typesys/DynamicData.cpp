#include "platform/typesys/DynamicData.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Object.hpp"
#include "platform/typesys/Codec.h"
#include "platform/typesys/Printer.hpp"
#include "platform/typesys/Sample.h"

const DDS_PrintFormatProperty DDS_PRINT_FORMAT_PROPERTY_DEFAULT =
    DDS_PRINT_FORMAT_PROPERTY_INITIALIZER;

struct DDS_DynamicData {
    const DDS_TypeCode *type;
    void *sample;
};

namespace
{

struct DynamicDataDeleter {
    void operator()(DDS_DynamicData *data) const { DDS_DynamicData_delete(data); }
};

struct BufferDeleter {
    void operator()(char *buffer) const { ZUVOsapiHeap_freeBufferAligned(buffer); }
};

constexpr std::size_t kBufferAlignment = 16;

} // namespace

DDS_DynamicData *DDS_DynamicData_new(const DDS_TypeCode *type)
{
    DDS_DynamicData *self = zuv::newObject<DDS_DynamicData>("DDS_DynamicData", type, nullptr);
    if (self == nullptr) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_CREATION_FAILURE_s,
                "dynamic data");
        return nullptr;
    }
    self->sample = ZUVSample_newEx(type, DDS_BOOLEAN_TRUE);
    if (self->sample == nullptr) {
        zuv::deleteObject(self);
        return nullptr;
    }
    return self;
}

void DDS_DynamicData_delete(DDS_DynamicData *self)
{
    if (self != nullptr) {
        ZUVSample_deleteEx(self->type, self->sample, DDS_BOOLEAN_TRUE);
        zuv::deleteObject(self);
    }
}

const DDS_TypeCode *DDS_DynamicData_get_type(const DDS_DynamicData *self)
{
    return self != nullptr ? self->type : nullptr;
}

DDS_ReturnCode_t DDS_DynamicData_from_cdr_buffer(DDS_DynamicData *self, const char *buffer,
                                                 unsigned int length)
{
    if (self == nullptr || buffer == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return ZUVCodec_deserializeFromCdrBuffer(self->type, self->sample, buffer, length)
               ? DDS_RETCODE_OK
               : DDS_RETCODE_ERROR;
}

DDS_ReturnCode_t DDS_DynamicDataFormatter_to_string_w_format(const DDS_DynamicData *self,
                                                             char *text, DDS_UnsignedLong *length,
                                                             const DDS_PrintFormatProperty *format)
{
    if (self == nullptr || length == nullptr || format == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    try {
        const std::string rendered = zuv::renderSample(*self->type, self->sample, *format);
        const DDS_UnsignedLong capacity = *length;
        *length = static_cast<DDS_UnsignedLong>(rendered.size() + 1);
        if (text == nullptr) {
            return DDS_RETCODE_OK;
        }
        if (capacity < *length) {
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
        std::memcpy(text, rendered.c_str(), *length);
        return DDS_RETCODE_OK;
    } catch (const std::bad_alloc &) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
}

DDS_ReturnCode_t ZUVCodec_dataToString(const DDS_TypeCode *type, const void *sample, char *text,
                                       DDS_UnsignedLong *length,
                                       const DDS_PrintFormatProperty *format)
{
    if (type == nullptr || sample == nullptr || length == nullptr || format == nullptr) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_UnsignedLong size = ZUVCodec_getSize(type, DDS_BOOLEAN_TRUE, sample);
    if (size == 0) {
        return DDS_RETCODE_ERROR;
    }
    const std::unique_ptr<char, BufferDeleter> buffer(
        static_cast<char *>(ZUVOsapiHeap_allocateBufferAligned(size, kBufferAlignment)));
    if (buffer == nullptr || !ZUVCodec_serializeToCdrBuffer(type, buffer.get(), &size, sample,
                                                            DDS_AUTO_DATA_REPRESENTATION)) {
        return DDS_RETCODE_ERROR;
    }
    const std::unique_ptr<DDS_DynamicData, DynamicDataDeleter> data(DDS_DynamicData_new(type));
    if (data == nullptr) {
        return DDS_RETCODE_ERROR;
    }
    const DDS_ReturnCode_t code = DDS_DynamicData_from_cdr_buffer(data.get(), buffer.get(), size);
    return code != DDS_RETCODE_OK
               ? code
               : DDS_DynamicDataFormatter_to_string_w_format(data.get(), text, length, format);
}

void ZUVSample_print(const DDS_TypeCode *type, const void *self, const char *description,
                     DDS_UnsignedLong indent)
{
    try {
        std::string text;
        constexpr std::size_t kStep = 4;
        if (description != nullptr) {
            text.append(indent * kStep, ' ').append(description).append(":\n");
        }
        const DDS_UnsignedLong inner = indent + (description != nullptr ? 1 : 0);
        if (self == nullptr) {
            text.append(inner * kStep, ' ').append("NULL\n");
        } else if (type != nullptr) {
            text += zuv::renderSample(*type, self, DDS_PRINT_FORMAT_PROPERTY_DEFAULT, inner);
        }
        std::fwrite(text.data(), 1, text.size(), stdout);
    } catch (const std::bad_alloc &) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_ANY_FAILURE_s,
                "print sample");
    }
}
