// Writes samples in XCDR2 (DDS-XTypes 1.3, 7.4.3), operation by operation of a program.
//
// The same walk counts and writes: it is given a sink that has a buffer, or one that only knows how far it
// has come.
#ifndef ZUV_PLATFORM_TYPESYS_ENCODER_HPP
#define ZUV_PLATFORM_TYPESYS_ENCODER_HPP

#include <bit>
#include <cstdint>
#include <cstring>
#include <span>

#include "platform/typesys/SampleOps.hpp"

namespace zuv
{

enum class EncodeFailure : std::uint8_t { None, NoRoom, BeyondBound, NullText, UnknownEnumValue };

// The greatest size of a payload that is written or read.
constexpr std::uint64_t kMaxPayloadSize = 0x7fffffff;

inline std::uint32_t swapped(std::uint32_t value)
{
    return __builtin_bswap32(value);
}

// Copy `size` octets of units, turning each round.
inline void copySwapped(std::uint8_t *to, const std::uint8_t *from, std::size_t size,
                        std::uint32_t unit)
{
    for (std::size_t i = 0; i < size; i += unit) {
        for (std::uint32_t j = 0; j < unit; ++j) {
            to[i + j] = from[i + unit - 1 - j];
        }
    }
}

// Writes into a buffer; Swap for the other byte order than the machine's. Alignment counts from the
// buffer's begin.
template <bool Swap>
class BufferSink
{
public:
    BufferSink(std::uint8_t *begin, std::size_t capacity)
        : begin_(begin), cursor_(begin), end_(begin + capacity)
    {
    }

    std::size_t position() const { return static_cast<std::size_t>(cursor_ - begin_); }

    bool align(std::uint32_t alignment)
    {
        const std::size_t padding = (0 - position()) & (alignment - 1);
        if (padding > remaining()) {
            return false;
        }
        for (std::size_t i = 0; i < padding; ++i) {
            *cursor_++ = 0;
        }
        return true;
    }

    bool octet(std::uint8_t value)
    {
        if (remaining() < 1) {
            return false;
        }
        *cursor_++ = value;
        return true;
    }

    bool word(std::uint32_t value)
    {
        if (!align(sizeof(value)) || remaining() < sizeof(value)) {
            return false;
        }
        store(cursor_, value);
        cursor_ += sizeof(value);
        return true;
    }

    // Units that need no further alignment.
    bool units(const void *source, std::size_t size, std::uint32_t unit)
    {
        if (size > remaining()) {
            return false;
        }
        if (Swap && unit > 1) {
            copySwapped(cursor_, static_cast<const std::uint8_t *>(source), size, unit);
        } else {
            std::memcpy(cursor_, source, size);
        }
        cursor_ += size;
        return true;
    }

    // Exchange the word that was written at `position`.
    void patch(std::size_t position, std::uint32_t value) { store(begin_ + position, value); }

private:
    std::size_t remaining() const { return static_cast<std::size_t>(end_ - cursor_); }

    static void store(std::uint8_t *to, std::uint32_t value)
    {
        const std::uint32_t turned = Swap ? swapped(value) : value;
        std::memcpy(to, &turned, sizeof(turned));
    }

    std::uint8_t *begin_;
    std::uint8_t *cursor_;
    std::uint8_t *end_;
};

// Writes nothing.
class CountingSink
{
public:
    std::size_t position() const { return position_; }
    bool align(std::uint32_t alignment)
    {
        position_ += (0 - position_) & (alignment - 1);
        return true;
    }
    bool octet(std::uint8_t) { return skip(1); }
    bool word(std::uint32_t) { return align(sizeof(std::uint32_t)) && skip(sizeof(std::uint32_t)); }
    bool units(const void *, std::size_t size, std::uint32_t) { return skip(size); }
    void patch(std::size_t, std::uint32_t) {}

private:
    bool skip(std::size_t size)
    {
        position_ += size;
        return position_ <= kMaxPayloadSize;
    }

    std::size_t position_ = 0;
};

template <typename Sink>
class Encoder
{
public:
    explicit Encoder(Sink &sink) : sink_(sink) {}

    // Why the last operation failed.
    EncodeFailure failure() const { return failure_; }

    // A sample with the header that its type's extensibility asks for.
    bool sample(const Program &program, const void *base)
    {
        switch (program.extensibility()) {
        case DDS_EXTENSIBLE_EXTENSIBILITY:
            return delimited([&] { return ops(program.ops(), base); });
        case DDS_MUTABLE_EXTENSIBILITY:
            return delimited([&] { return framedMembers(program.ops(), base); });
        default:
            return ops(program.ops(), base);
        }
    }

    bool ops(std::span<const Op> all, const void *base)
    {
        for (const Op &op : all) {
            if (!member(op, base, false)) {
                return false;
            }
        }
        return true;
    }

private:
    bool fail(EncodeFailure failure)
    {
        failure_ = failure;
        return false;
    }

    // What a sink refuses it has no room for.
    bool sunk(bool hasRoom) { return hasRoom || fail(EncodeFailure::NoRoom); }

    // The size of what `write` writes, and then that itself.
    template <typename Write>
    bool delimited(Write write)
    {
        if (!sunk(sink_.word(0))) {
            return false;
        }
        const std::size_t begin = sink_.position();
        if (!write()) {
            return false;
        }
        sink_.patch(begin - sizeof(std::uint32_t),
                    static_cast<std::uint32_t>(sink_.position() - begin));
        return true;
    }

    bool framedMembers(std::span<const Op> all, const void *base)
    {
        constexpr std::uint32_t kMustUnderstand = 0x80000000u;
        constexpr unsigned kLengthShift = 28;
        for (const Op &op : all) {
            if (isAbsent(op, base)) {
                continue;
            }
            const std::uint32_t header = (op.mustUnderstand ? kMustUnderstand : 0u) |
                                         std::uint32_t{op.lengthCode} << kLengthShift | op.memberId;
            if (!sunk(sink_.word(header))) {
                return false;
            }
            const auto write = [&] { return member(op, base, true); };
            if (!(op.lengthCode == kLengthNext ? delimited(write) : write())) {
                return false;
            }
        }
        return true;
    }

    static bool isAbsent(const Op &op, const void *base)
    {
        return (op.isOptional || op.code == OpCode::Optional) &&
               *memberAt<void *>(base, op.offset) == nullptr;
    }

    // A framed member's header has told already whether it is there.
    bool member(const Op &op, const void *base, bool isFramed)
    {
        switch (op.code) {
        case OpCode::Units:
            return sunk(sink_.align(op.alignment()) &&
                        sink_.units(memberAt<char>(base, op.offset), op.size, op.unit));
        case OpCode::Booleans:
            return booleans(memberAt<std::uint8_t>(base, op.offset), op.size);
        case OpCode::Enum:
            return enumeration(op, *memberAt<std::int32_t>(base, op.offset));
        case OpCode::Text:
            return text(op, *memberAt<char *>(base, op.offset), isFramed);
        case OpCode::UnitSequence:
        case OpCode::BooleanSequence:
            return unitSequence(op, *memberAt<ZUVSequence>(base, op.offset));
        case OpCode::Sequence:
            return sequence(op, *memberAt<ZUVSequence>(base, op.offset));
        case OpCode::Array:
            return delimited([&] {
                for (std::uint32_t i = 0; i < op.count; ++i) {
                    if (!sample(*op.element,
                                memberAt<char>(base, op.offset + i * op.element->size()))) {
                        return false;
                    }
                }
                return true;
            });
        case OpCode::Struct:
            return sample(*op.element, memberAt<char>(base, op.offset));
        case OpCode::Optional: {
            const void *target = *memberAt<void *>(base, op.offset);
            if (!isFramed && !sunk(sink_.octet(target != nullptr))) {
                return false;
            }
            return target == nullptr || sample(*op.element, target);
        }
        }
        return false;
    }

    bool booleans(const std::uint8_t *values, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (!sunk(sink_.octet(values[i] != 0))) {
                return false;
            }
        }
        return true;
    }

    bool enumeration(const Op &op, std::int32_t value)
    {
        if (!op.holdsEnumValue(value)) {
            return fail(EncodeFailure::UnknownEnumValue);
        }
        return sunk(sink_.word(static_cast<std::uint32_t>(value)));
    }

    bool text(const Op &op, const char *value, bool isFramed)
    {
        if (op.isOptional && !isFramed && !sunk(sink_.octet(value != nullptr))) {
            return false;
        }
        if (value == nullptr) {
            return op.isOptional || fail(EncodeFailure::NullText);
        }
        const std::size_t length = std::strlen(value);
        if (length > op.bound || length >= kMaxPayloadSize) {
            return fail(EncodeFailure::BeyondBound);
        }
        return sunk(sink_.word(static_cast<std::uint32_t>(length + 1)) &&
                    sink_.units(value, length + 1, 1));
    }

    bool unitSequence(const Op &op, const ZUVSequence &sequence)
    {
        const std::uint32_t length = isInitialized(sequence) ? sequence._length : 0;
        if (length > op.bound) {
            return fail(EncodeFailure::BeyondBound);
        }
        if (!sunk(sink_.word(length))) {
            return false;
        }
        if (sequence._discontiguous_buffer != nullptr || op.code == OpCode::BooleanSequence) {
            return separateUnits(op, sequence, length);
        }
        return length == 0 || sunk(sink_.units(sequence._contiguous_buffer,
                                               std::size_t{length} * op.unit, op.unit));
    }

    bool separateUnits(const Op &op, const ZUVSequence &sequence, std::uint32_t length)
    {
        for (std::uint32_t i = 0; i < length; ++i) {
            const void *unit = elementAt(sequence, i, op.unit);
            const bool isWritten = op.code == OpCode::BooleanSequence
                                       ? booleans(static_cast<const std::uint8_t *>(unit), 1)
                                       : sunk(sink_.units(unit, op.unit, op.unit));
            if (!isWritten) {
                return false;
            }
        }
        return true;
    }

    bool sequence(const Op &op, const ZUVSequence &sequence)
    {
        const std::uint32_t length = isInitialized(sequence) ? sequence._length : 0;
        if (length > op.bound) {
            return fail(EncodeFailure::BeyondBound);
        }
        return delimited([&] {
            if (!sunk(sink_.word(length))) {
                return false;
            }
            for (std::uint32_t i = 0; i < length; ++i) {
                if (!sample(*op.element, elementAt(sequence, i, op.sequenceElement.size))) {
                    return false;
                }
            }
            return true;
        });
    }

    Sink &sink_;
    EncodeFailure failure_ = EncodeFailure::None;
};

} // namespace zuv

#endif
