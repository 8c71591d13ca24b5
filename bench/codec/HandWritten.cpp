#include "HandWritten.h"

#include <cstring>

#include "platform/osapi/Heap.h"

namespace hand_written
{
namespace
{

constexpr std::uint32_t kNameBound = 255;
constexpr std::uint32_t kIdentifierBound = 2048;
constexpr std::uint32_t kUnbounded = 0x7fffffff;
constexpr std::size_t kHeaderSize = 4;

struct Output {
    std::uint8_t *begin;
    std::uint8_t *cursor;
    std::uint8_t *end;

    bool word(std::uint32_t value)
    {
        while (((cursor - begin) & 3) != 0) {
            if (cursor == end) {
                return false;
            }
            *cursor++ = 0;
        }
        if (end - cursor < 4) {
            return false;
        }
        std::memcpy(cursor, &value, 4);
        cursor += 4;
        return true;
    }

    bool octets(const void *source, std::size_t size)
    {
        if (static_cast<std::size_t>(end - cursor) < size) {
            return false;
        }
        std::memcpy(cursor, source, size);
        cursor += size;
        return true;
    }

    bool text(const char *value, std::uint32_t bound)
    {
        if (value == nullptr) {
            return false;
        }
        const std::size_t length = std::strlen(value);
        return length <= bound && word(static_cast<std::uint32_t>(length + 1)) &&
               octets(value, length + 1);
    }
};

struct Input {
    const std::uint8_t *begin;
    const std::uint8_t *cursor;
    const std::uint8_t *end;

    bool word(std::uint32_t &value)
    {
        const std::size_t padding = (0 - static_cast<std::size_t>(cursor - begin)) & 3;
        if (static_cast<std::size_t>(end - cursor) < padding + 4) {
            return false;
        }
        cursor += padding;
        std::memcpy(&value, cursor, 4);
        cursor += 4;
        return true;
    }

    bool text(char *&to, std::uint32_t bound)
    {
        std::uint32_t size = 0;
        if (!word(size) || size == 0 || size - 1 > bound ||
            size > static_cast<std::size_t>(end - cursor) || cursor[size - 1] != '\0') {
            return false;
        }
        if (to == nullptr || ZUVOsapiHeap_getBlockSize(to) < size) {
            char *storage = static_cast<char *>(ZUVOsapiHeap_allocate(size, "DDS_String"));
            if (storage == nullptr) {
                return false;
            }
            ZUVOsapiHeap_free(to);
            to = storage;
        }
        std::memcpy(to, cursor, size);
        cursor += size;
        return true;
    }

    bool sequence(DDS_OctetSeq &to)
    {
        std::uint32_t length = 0;
        if (!word(length) || length > static_cast<std::size_t>(end - cursor)) {
            return false;
        }
        if (length > to._maximum) {
            if (!to._owned) {
                return false;
            }
            void *storage = ZUVOsapiHeap_allocateBufferAligned(length, 16);
            if (storage == nullptr) {
                return false;
            }
            ZUVOsapiHeap_freeBufferAligned(to._contiguous_buffer);
            to._contiguous_buffer = static_cast<DDS_Octet *>(storage);
            to._maximum = length;
        }
        if (length > 0) {
            std::memcpy(to._contiguous_buffer, cursor, length);
        }
        to._length = length;
        cursor += length;
        return true;
    }
};

} // namespace

std::size_t encode(const ZUV_Service_Admin_CommandRequest &request, std::uint8_t *buffer,
                   std::size_t capacity)
{
    if (capacity < kHeaderSize + 4) {
        return 0;
    }
    std::uint8_t *body = buffer + kHeaderSize;
    Output out = {body, body + 4, buffer + capacity};
    const std::uint8_t isPresent = request.application_name != nullptr;
    const std::uint32_t action = request.action;
    const std::uint32_t length = request.octet_body._length;
    if (!out.word(static_cast<std::uint32_t>(request.instance_id)) || !out.octets(&isPresent, 1) ||
        (isPresent && !out.text(request.application_name, kNameBound)) || action > 3 ||
        !out.word(action) || !out.text(request.resource_identifier, kIdentifierBound) ||
        !out.text(request.string_body, kUnbounded) || !out.word(length) ||
        (length > 0 && !out.octets(request.octet_body._contiguous_buffer, length))) {
        return 0;
    }
    const std::uint32_t size = static_cast<std::uint32_t>(out.cursor - body - 4);
    std::memcpy(body, &size, 4);
    const std::uint8_t padding = static_cast<std::uint8_t>((0 - size) & 3);
    const std::uint8_t zeros[4] = {};
    if (!out.octets(zeros, padding)) {
        return 0;
    }
    const std::uint8_t header[kHeaderSize] = {0, 9, 0, padding};
    std::memcpy(buffer, header, kHeaderSize);
    return static_cast<std::size_t>(out.cursor - buffer);
}

bool decode(ZUV_Service_Admin_CommandRequest &request, const std::uint8_t *buffer, std::size_t size)
{
    if (size < kHeaderSize || buffer[0] != 0 || buffer[1] != 9) {
        return false;
    }
    const std::uint8_t *body = buffer + kHeaderSize;
    Input in = {body, body, buffer + size};
    std::uint32_t extent = 0;
    if (!in.word(extent) || extent > static_cast<std::size_t>(in.end - in.cursor) ||
        static_cast<std::size_t>(in.end - in.cursor) - extent > 3) {
        return false;
    }
    in.end = in.cursor + extent;
    std::uint32_t instance = 0;
    std::uint32_t action = 0;
    if (!in.word(instance) || in.cursor == in.end || *in.cursor > 1) {
        return false;
    }
    request.instance_id = static_cast<std::int32_t>(instance);
    if (*in.cursor++ == 1) {
        if (!in.text(request.application_name, kNameBound)) {
            return false;
        }
    } else {
        ZUVOsapiHeap_free(request.application_name);
        request.application_name = nullptr;
    }
    if (!in.word(action) || action > 3) {
        return false;
    }
    request.action = static_cast<ZUV_Service_Admin_CommandActionKind>(action);
    return in.text(request.resource_identifier, kIdentifierBound) &&
           in.text(request.string_body, kUnbounded) && in.sequence(request.octet_body);
}

} // namespace hand_written
