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

// Encapsulations, little endian.
constexpr std::uint8_t kDelimited = 9;
constexpr std::uint8_t kPlain = 7;
constexpr std::uint8_t kMutable = 11;
constexpr std::uint32_t kActionCount = 4;
constexpr std::uint32_t kRetcodeCount = 2;
constexpr std::uint32_t kStateCount = 7;
constexpr std::uint32_t kGuidSize = 16;
// Of a member of the mutable type: that it must be understood, that its length follows, its id.
constexpr std::uint32_t kObjectHeader = 0xc263467bu;
constexpr std::uint32_t kOwnerHeader = 0x49d8cbd2u;
constexpr std::uint32_t kResourceSize = 2 * (8 + kGuidSize);

void writeHeader(std::uint8_t *buffer, std::uint8_t encapsulation, std::uint8_t padding)
{
    const std::uint8_t header[kHeaderSize] = {0, encapsulation, 0, padding};
    std::memcpy(buffer, header, kHeaderSize);
}

bool isHeader(const std::uint8_t *buffer, std::size_t size, std::uint8_t encapsulation)
{
    return size >= kHeaderSize && buffer[0] == 0 && buffer[1] == encapsulation;
}

// A payload with its size before it; `write` writes the members.
template <typename Write>
std::size_t encodeDelimited(std::uint8_t *buffer, std::size_t capacity, Write write)
{
    if (capacity < kHeaderSize + 4) {
        return 0;
    }
    std::uint8_t *body = buffer + kHeaderSize;
    Output out = {body, body + 4, buffer + capacity};
    if (!write(out)) {
        return 0;
    }
    const std::uint32_t size = static_cast<std::uint32_t>(out.cursor - body - 4);
    std::memcpy(body, &size, 4);
    const std::uint8_t padding = static_cast<std::uint8_t>((0 - size) & 3);
    const std::uint8_t zeros[4] = {};
    if (!out.octets(zeros, padding)) {
        return 0;
    }
    writeHeader(buffer, kDelimited, padding);
    return static_cast<std::size_t>(out.cursor - buffer);
}

template <typename Read>
bool decodeDelimited(const std::uint8_t *buffer, std::size_t size, Read read)
{
    if (!isHeader(buffer, size, kDelimited)) {
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
    return read(in);
}

bool writeOctets(Output &out, const DDS_OctetSeq &octets)
{
    return out.word(octets._length) &&
           (octets._length == 0 || out.octets(octets._contiguous_buffer, octets._length));
}

} // namespace

std::size_t encode(const ZUV_Service_Admin_CommandRequest &request, std::uint8_t *buffer,
                   std::size_t capacity)
{
    return encodeDelimited(buffer, capacity, [&](Output &out) {
        const std::uint8_t isPresent = request.application_name != nullptr;
        const std::uint32_t action = request.action;
        return out.word(static_cast<std::uint32_t>(request.instance_id)) &&
               out.octets(&isPresent, 1) &&
               (!isPresent || out.text(request.application_name, kNameBound)) &&
               action < kActionCount && out.word(action) &&
               out.text(request.resource_identifier, kIdentifierBound) &&
               out.text(request.string_body, kUnbounded) && writeOctets(out, request.octet_body);
    });
}

bool decode(ZUV_Service_Admin_CommandRequest &request, const std::uint8_t *buffer, std::size_t size)
{
    return decodeDelimited(buffer, size, [&](Input &in) {
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
        if (!in.word(action) || action >= kActionCount) {
            return false;
        }
        request.action = static_cast<ZUV_Service_Admin_CommandActionKind>(action);
        return in.text(request.resource_identifier, kIdentifierBound) &&
               in.text(request.string_body, kUnbounded) && in.sequence(request.octet_body);
    });
}

std::size_t encode(const ZUV_Service_Admin_CommandReply &reply, std::uint8_t *buffer,
                   std::size_t capacity)
{
    return encodeDelimited(buffer, capacity, [&](Output &out) {
        const std::uint32_t retcode = reply.retcode;
        return retcode < kRetcodeCount && out.word(retcode) &&
               out.word(static_cast<std::uint32_t>(reply.native_retcode)) &&
               out.text(reply.string_body, kUnbounded) && writeOctets(out, reply.octet_body);
    });
}

bool decode(ZUV_Service_Admin_CommandReply &reply, const std::uint8_t *buffer, std::size_t size)
{
    return decodeDelimited(buffer, size, [&](Input &in) {
        std::uint32_t retcode = 0;
        std::uint32_t native = 0;
        if (!in.word(retcode) || retcode >= kRetcodeCount || !in.word(native)) {
            return false;
        }
        reply.retcode = static_cast<ZUV_Service_Admin_CommandReplyRetcode>(retcode);
        reply.native_retcode = static_cast<std::int32_t>(native);
        return in.text(reply.string_body, kUnbounded) && in.sequence(reply.octet_body);
    });
}

std::size_t encode(const ZUV_Service_EntityState &state, std::uint8_t *buffer, std::size_t capacity)
{
    return encodeDelimited(buffer, capacity, [&](Output &out) {
        const std::uint32_t kind = state.state;
        return kind < kStateCount && out.word(kind);
    });
}

bool decode(ZUV_Service_EntityState &state, const std::uint8_t *buffer, std::size_t size)
{
    return decodeDelimited(buffer, size, [&](Input &in) {
        std::uint32_t kind = 0;
        if (!in.word(kind) || kind >= kStateCount) {
            return false;
        }
        state.state = static_cast<ZUV_Service_EntityStateKind>(kind);
        return true;
    });
}

std::size_t encode(const ZUV_Service_Monitoring_ResourceGuid &guid, std::uint8_t *buffer,
                   std::size_t capacity)
{
    if (capacity < kHeaderSize + kGuidSize) {
        return 0;
    }
    writeHeader(buffer, kPlain, 0);
    std::memcpy(buffer + kHeaderSize, guid.value, kGuidSize);
    return kHeaderSize + kGuidSize;
}

bool decode(ZUV_Service_Monitoring_ResourceGuid &guid, const std::uint8_t *buffer, std::size_t size)
{
    if (!isHeader(buffer, size, kPlain) || size < kHeaderSize + kGuidSize ||
        size > kHeaderSize + kGuidSize + 3) {
        return false;
    }
    std::memcpy(guid.value, buffer + kHeaderSize, kGuidSize);
    return true;
}

std::size_t encode(const ZUV_Service_Monitoring_KeyedResource &resource, std::uint8_t *buffer,
                   std::size_t capacity)
{
    if (capacity < kHeaderSize + 4 + kResourceSize) {
        return 0;
    }
    writeHeader(buffer, kMutable, 0);
    std::uint8_t *cursor = buffer + kHeaderSize;
    const auto put = [&cursor](const void *source, std::size_t size) {
        std::memcpy(cursor, source, size);
        cursor += size;
    };
    put(&kResourceSize, 4);
    put(&kObjectHeader, 4);
    put(&kGuidSize, 4);
    put(resource.object_guid.value, kGuidSize);
    put(&kOwnerHeader, 4);
    put(&kGuidSize, 4);
    put(resource.owner_guid.value, kGuidSize);
    return static_cast<std::size_t>(cursor - buffer);
}

bool decode(ZUV_Service_Monitoring_KeyedResource &resource, const std::uint8_t *buffer,
            std::size_t size)
{
    if (!isHeader(buffer, size, kMutable) || size < kHeaderSize + 4 + kResourceSize ||
        size > kHeaderSize + 4 + kResourceSize + 3) {
        return false;
    }
    const std::uint8_t *cursor = buffer + kHeaderSize;
    const auto isNext = [&cursor](std::uint32_t expected) {
        std::uint32_t word = 0;
        std::memcpy(&word, cursor, 4);
        cursor += 4;
        return word == expected;
    };
    if (!isNext(kResourceSize) || !isNext(kObjectHeader) || !isNext(kGuidSize)) {
        return false;
    }
    std::memcpy(resource.object_guid.value, cursor, kGuidSize);
    cursor += kGuidSize;
    if (!isNext(kOwnerHeader) || !isNext(kGuidSize)) {
        return false;
    }
    std::memcpy(resource.owner_guid.value, cursor, kGuidSize);
    return true;
}

} // namespace hand_written
