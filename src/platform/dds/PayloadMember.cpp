#include "PayloadMember.hpp"

#include <bit>
#include <cstring>
#include <optional>

namespace zuv::dds
{
namespace
{

constexpr std::size_t kHeaderSize = 4;
constexpr int kGreatestDepth = 32; // of nested final types; no type of a system comes near

// A place in the payload behind the header. Every step fails rather than pass the end.
class Cursor
{
public:
    Cursor(std::span<const std::uint8_t> body, bool isSwapped)
        : body_(body), end_(body.size()), isSwapped_(isSwapped)
    {
    }

    bool isAtEnd() const { return position_ >= end_; }
    std::size_t position() const { return position_; }

    bool align(std::size_t alignment)
    {
        const std::size_t aligned = (position_ + alignment - 1) / alignment * alignment;
        return skipTo(aligned);
    }
    bool skip(std::size_t size) { return size <= end_ - position_ && skipTo(position_ + size); }

    std::optional<std::uint8_t> octet()
    {
        if (isAtEnd()) {
            return std::nullopt;
        }
        return body_[position_++];
    }
    std::optional<std::uint32_t> word()
    {
        std::uint32_t value = 0;
        if (!align(sizeof(value)) || sizeof(value) > end_ - position_) {
            return std::nullopt;
        }
        std::memcpy(&value, body_.data() + position_, sizeof(value));
        position_ += sizeof(value);
        return isSwapped_ ? __builtin_bswap32(value) : value;
    }
    // The octets of a text, its terminator checked and left out.
    std::optional<std::string_view> text()
    {
        const std::optional<std::uint32_t> size = word();
        if (!size || *size == 0 || *size > end_ - position_ ||
            body_[position_ + *size - 1] != '\0') {
            return std::nullopt;
        }
        const auto *const first = reinterpret_cast<const char *>(body_.data() + position_);
        position_ += *size;
        return std::string_view(first, *size - 1);
    }
    // Go back to an earlier place.
    void rewind(std::size_t position) { position_ = position; }
    // Let the end be `size` octets ahead.
    bool narrow(std::uint32_t size)
    {
        if (size > end_ - position_) {
            return false;
        }
        end_ = position_ + size;
        return true;
    }

private:
    bool skipTo(std::size_t position)
    {
        if (position > end_) {
            return false;
        }
        position_ = position;
        return true;
    }

    std::span<const std::uint8_t> body_;
    std::size_t position_ = 0;
    std::size_t end_;
    bool isSwapped_;
};

// The octets of a primitive, 0 for any other kind.
std::size_t primitiveSize(DDS_TCKind kind)
{
    switch (kind) {
    case DDS_TK_BOOLEAN:
    case DDS_TK_OCTET:
    case DDS_TK_CHAR:
        return 1;
    case DDS_TK_SHORT:
    case DDS_TK_USHORT:
        return 2;
    case DDS_TK_LONG:
    case DDS_TK_ULONG:
    case DDS_TK_FLOAT:
        return 4;
    case DDS_TK_LONGLONG:
    case DDS_TK_ULONGLONG:
    case DDS_TK_DOUBLE:
        return 8;
    default:
        return 0;
    }
}

bool skipUnits(Cursor &cursor, std::size_t size, std::uint64_t count)
{
    if (count == 0) {
        return true;
    }
    // Alignment never exceeds four in this representation.
    return cursor.align(size < 4 ? size : 4) && cursor.skip(size * count);
}

bool skipDelimited(Cursor &cursor)
{
    const std::optional<std::uint32_t> size = cursor.word();
    return size && cursor.skip(*size);
}

bool skipValue(Cursor &cursor, const DDS_TypeCode *type, int depth);

bool skipMember(Cursor &cursor, const DDS_TypeCode *type, DDS_UnsignedLong index, int depth)
{
    if (DDS_TypeCode_is_member_optional(type, index, nullptr)) {
        const std::optional<std::uint8_t> isPresent = cursor.octet();
        if (!isPresent || *isPresent > 1) {
            return false;
        }
        if (*isPresent == 0) {
            return true;
        }
    }
    return skipValue(cursor, DDS_TypeCode_member_type(type, index, nullptr), depth);
}

bool skipValue(Cursor &cursor, const DDS_TypeCode *type, int depth)
{
    type = DDS_TypeCode_resolve_alias(type);
    const DDS_TCKind kind = DDS_TypeCode_kind(type, nullptr);
    if (const std::size_t size = primitiveSize(kind)) {
        return skipUnits(cursor, size, 1);
    }
    switch (kind) {
    case DDS_TK_ENUM:
        return skipUnits(cursor, 4, 1);
    case DDS_TK_STRING:
        return cursor.text().has_value();
    case DDS_TK_SEQUENCE:
    case DDS_TK_ARRAY: {
        const DDS_TypeCode *const element =
            DDS_TypeCode_resolve_alias(DDS_TypeCode_content_type(type, nullptr));
        const std::size_t size = primitiveSize(DDS_TypeCode_kind(element, nullptr));
        if (size == 0) {
            return skipDelimited(cursor);
        }
        std::optional<std::uint32_t> count = DDS_TypeCode_length(type, nullptr);
        if (kind == DDS_TK_SEQUENCE) {
            count = cursor.word();
        }
        return count && skipUnits(cursor, size, *count);
    }
    case DDS_TK_STRUCT:
    case DDS_TK_UNION: {
        if (DDS_TypeCode_extensibility_kind(type, nullptr) != DDS_FINAL_EXTENSIBILITY) {
            return skipDelimited(cursor);
        }
        if (kind == DDS_TK_UNION || depth == 0) {
            return false;
        }
        const DDS_UnsignedLong count = DDS_TypeCode_member_count(type, nullptr);
        for (DDS_UnsignedLong index = 0; index < count; ++index) {
            if (!skipMember(cursor, type, index, depth - 1)) {
                return false;
            }
        }
        return true;
    }
    default:
        return false;
    }
}

PayloadMember presentMember(Cursor &cursor, const DDS_TypeCode *type)
{
    PayloadMember member;
    type = DDS_TypeCode_resolve_alias(type);
    if (DDS_TypeCode_kind(type, nullptr) == DDS_TK_STRING) {
        const std::optional<std::string_view> text = cursor.text();
        if (!text) {
            return member;
        }
        member.text = *text;
    } else if (!skipValue(cursor, type, kGreatestDepth)) {
        return member;
    }
    member.state = PayloadMember::State::kPresent;
    return member;
}

PayloadMember findInOrder(Cursor &cursor, const DDS_TypeCode &type, std::uint32_t wanted)
{
    for (DDS_UnsignedLong index = 0; index < wanted; ++index) {
        if (cursor.isAtEnd()) {
            return {PayloadMember::State::kAbsent, {}};
        }
        if (!skipMember(cursor, &type, index, kGreatestDepth)) {
            return {};
        }
    }
    if (cursor.isAtEnd()) {
        return {PayloadMember::State::kAbsent, {}};
    }
    if (DDS_TypeCode_is_member_optional(&type, wanted, nullptr)) {
        const std::optional<std::uint8_t> isPresent = cursor.octet();
        if (!isPresent || *isPresent > 1) {
            return {};
        }
        if (*isPresent == 0) {
            return {PayloadMember::State::kAbsent, {}};
        }
    }
    return presentMember(cursor, DDS_TypeCode_member_type(&type, wanted, nullptr));
}

// A mutable structure: each member has a header with its id and its length (7.4.3.4.2).
PayloadMember findById(Cursor &cursor, const DDS_TypeCode &type, std::uint32_t wanted)
{
    constexpr std::uint32_t kIdMask = 0x0fffffff;
    const DDS_UnsignedLong id = DDS_TypeCode_member_id(&type, wanted, nullptr);
    while (!cursor.isAtEnd()) {
        const std::optional<std::uint32_t> header = cursor.word();
        if (!header) {
            return {};
        }
        const std::uint32_t lengthCode = (*header >> 28) & 7;
        std::uint64_t length = std::uint64_t{1} << lengthCode; // codes 0 to 3
        const std::size_t start = cursor.position();
        if (lengthCode >= 4) {
            const std::optional<std::uint32_t> next = cursor.word();
            if (!next) {
                return {};
            }
            // Beyond code 4 the word is part of the member, and counts its elements.
            static constexpr std::uint64_t kUnits[] = {1, 1, 4, 8};
            length = *next * kUnits[lengthCode - 4];
        }
        if ((*header & kIdMask) == id) {
            if (lengthCode > 4) { // read that word again, as the member's first
                Cursor again = cursor;
                again.rewind(start);
                return presentMember(again, DDS_TypeCode_member_type(&type, wanted, nullptr));
            }
            return presentMember(cursor, DDS_TypeCode_member_type(&type, wanted, nullptr));
        }
        if (!cursor.skip(length)) {
            return {};
        }
    }
    return {PayloadMember::State::kAbsent, {}};
}

} // namespace

PayloadMember findPayloadMember(const DDS_TypeCode &type, std::uint32_t index,
                                std::span<const std::uint8_t> payload)
{
    if (payload.size() < kHeaderSize) {
        return {};
    }
    const auto encapsulation = static_cast<std::uint32_t>(payload[0] << 8 | payload[1]);
    // The last bit tells the byte order, the others the encoding.
    const bool isLittle = (encapsulation & 1) != 0;
    Cursor cursor(payload.subspan(kHeaderSize),
                  isLittle != (std::endian::native == std::endian::little));
    switch (encapsulation & ~1U) {
    case DDS_ENCAPSULATION_ID_CDR2_BE:
        return findInOrder(cursor, type, index);
    case DDS_ENCAPSULATION_ID_D_CDR2_BE:
    case DDS_ENCAPSULATION_ID_PL_CDR2_BE: {
        const std::optional<std::uint32_t> size = cursor.word();
        if (!size || !cursor.narrow(*size)) {
            return {};
        }
        return (encapsulation & ~1U) == DDS_ENCAPSULATION_ID_D_CDR2_BE
                   ? findInOrder(cursor, type, index)
                   : findById(cursor, type, index);
    }
    default:
        return {};
    }
}

} // namespace zuv::dds
