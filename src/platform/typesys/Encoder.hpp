// Writes samples in XCDR2 (DDS-XTypes 1.3, 7.4.3), operation by operation of a program.
//
// The same walk counts and writes: it is given a sink that has a buffer, or one that has none. Positions are
// passed by value from function to function, which keeps them in registers; they count from where the
// alignment does, behind the encapsulation header.
#ifndef ZUV_PLATFORM_TYPESYS_ENCODER_HPP
#define ZUV_PLATFORM_TYPESYS_ENCODER_HPP

#include <cstdint>
#include <cstring>
#include <span>

#include "platform/typesys/SampleOps.hpp"

namespace zuv
{

enum class EncodeFailure : std::uint8_t { NoRoom, BeyondBound, NullText, UnknownEnumValue };

// What a walk returns in place of a position when it failed.
constexpr std::size_t kFailed = SIZE_MAX;

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

// Positions stay far below the greatest number.
inline std::size_t alignedUp(std::size_t position, std::uint32_t alignment)
{
    return (position + alignment - 1) & ~std::size_t{alignment - 1};
}

// Writes into a buffer; Swap for the other byte order than the machine's. Each operation moves `position`
// on, and returns false, moving nothing, when there is not room enough.
template <bool Swap>
class BufferSink
{
public:
    BufferSink(std::uint8_t *begin, std::size_t capacity) : begin_(begin), capacity_(capacity) {}

    bool align(std::size_t &position, std::uint32_t alignment) const
    {
        const std::size_t aligned = alignedUp(position, alignment);
        if (aligned > capacity_) {
            return false;
        }
        switch (aligned - position) { // a loop would become a call
        case 3:
            begin_[aligned - 3] = 0;
            [[fallthrough]];
        case 2:
            begin_[aligned - 2] = 0;
            [[fallthrough]];
        case 1:
            begin_[aligned - 1] = 0;
            [[fallthrough]];
        default:
            position = aligned;
            return true;
        }
    }

    bool octet(std::size_t &position, std::uint8_t value) const
    {
        if (position == capacity_) {
            return false;
        }
        begin_[position++] = value;
        return true;
    }

    bool word(std::size_t &position, std::uint32_t value) const
    {
        const std::size_t aligned = alignedUp(position, sizeof(value));
        if (aligned + sizeof(value) > capacity_) {
            return false;
        }
        patch(position, 0); // covers the padding
        patch(aligned, value);
        position = aligned + sizeof(value);
        return true;
    }

    // Units that need no further alignment.
    bool units(std::size_t &position, const void *source, std::size_t size,
               std::uint32_t unit) const
    {
        if (size > capacity_ - position) {
            return false;
        }
        if (Swap && unit > 1) {
            copySwapped(begin_ + position, static_cast<const std::uint8_t *>(source), size, unit);
        } else {
            copyOctets(begin_ + position, source, size);
        }
        position += size;
        return true;
    }

    // Exchange the word at `position`.
    void patch(std::size_t position, std::uint32_t value) const
    {
        const std::uint32_t turned = Swap ? swapped(value) : value;
        std::memcpy(begin_ + position, &turned, sizeof(turned));
    }

private:
    std::uint8_t *begin_;
    std::size_t capacity_;
};

// Writes nothing, and has room for any payload.
class CountingSink
{
public:
    bool align(std::size_t &position, std::uint32_t alignment) const
    {
        position = alignedUp(position, alignment);
        return true;
    }
    bool octet(std::size_t &position, std::uint8_t) const { return skip(position, 1); }
    bool word(std::size_t &position, std::uint32_t) const
    {
        return align(position, sizeof(std::uint32_t)) && skip(position, sizeof(std::uint32_t));
    }
    bool units(std::size_t &position, const void *, std::size_t size, std::uint32_t) const
    {
        return skip(position, size);
    }
    void patch(std::size_t, std::uint32_t) const {}

private:
    static bool skip(std::size_t &position, std::size_t size)
    {
        position += size;
        return position <= kMaxPayloadSize;
    }
};

template <typename Sink>
class Encoder
{
public:
    explicit Encoder(const Sink &sink) : sink_(sink) {}

    // Why the last walk failed.
    EncodeFailure failure() const { return failure_; }

    // A sample with the header that its type's extensibility asks for. Like all walks here it takes the
    // position where it begins, and returns that where it ends, or kFailed.
    std::size_t sample(const Program &program, const void *base, std::size_t position)
    {
        switch (program.extensibility()) {
        case DDS_EXTENSIBLE_EXTENSIBILITY:
            return delimited(position,
                             [&](std::size_t inner) { return ops(program.ops(), base, inner); });
        case DDS_MUTABLE_EXTENSIBILITY:
            return delimited(position, [&](std::size_t inner) {
                return framedMembers(program.ops(), base, inner);
            });
        default:
            return ops(program.ops(), base, position);
        }
    }

    std::size_t ops(std::span<const Op> all, const void *base, std::size_t position)
    {
        for (const Op &op : all) {
            position = member(op, base, false, position);
            if (position == kFailed) {
                break;
            }
        }
        return position;
    }

private:
    std::size_t fail(EncodeFailure failure)
    {
        failure_ = failure;
        return kFailed;
    }

    // What a sink refuses it has no room for.
    std::size_t full() { return fail(EncodeFailure::NoRoom); }

    // The size of what `write` writes, and then that itself.
    template <typename Write>
    std::size_t delimited(std::size_t position, Write write)
    {
        if (!sink_.word(position, 0)) {
            return full();
        }
        const std::size_t end = write(position);
        if (end != kFailed) {
            sink_.patch(position - sizeof(std::uint32_t),
                        static_cast<std::uint32_t>(end - position));
        }
        return end;
    }

    std::size_t framedMembers(std::span<const Op> all, const void *base, std::size_t position)
    {
        constexpr std::uint32_t kMustUnderstand = 0x80000000u;
        constexpr unsigned kLengthShift = 28;
        for (const Op &op : all) {
            if (isAbsent(op, base)) {
                continue;
            }
            const std::uint32_t header = (op.mustUnderstand ? kMustUnderstand : 0u) |
                                         std::uint32_t{op.lengthCode} << kLengthShift | op.memberId;
            if (!sink_.word(position, header)) {
                return full();
            }
            const auto write = [&](std::size_t inner) { return member(op, base, true, inner); };
            position = op.lengthCode == kLengthNext ? delimited(position, write) : write(position);
            if (position == kFailed) {
                break;
            }
        }
        return position;
    }

    static bool isAbsent(const Op &op, const void *base)
    {
        return (op.isOptional || op.code == OpCode::Optional) &&
               *memberAt<void *>(base, op.offset) == nullptr;
    }

    // A framed member's header has told already whether it is there.
    [[gnu::always_inline]] std::size_t member(const Op &op, const void *base, bool isFramed,
                                              std::size_t position)
    {
        switch (op.code) {
        case OpCode::Units:
            return units(op, memberAt<char>(base, op.offset), position);
        case OpCode::Enum:
            return enumeration(op, *memberAt<std::int32_t>(base, op.offset), position);
        case OpCode::Text:
            return text(op, *memberAt<char *>(base, op.offset), isFramed, position);
        case OpCode::UnitSequence:
            return unitSequence(op, *memberAt<ZUVSequence>(base, op.offset), position);
        default:
            return otherMember(op, base, isFramed, position);
        }
    }

    [[gnu::noinline]] std::size_t otherMember(const Op &op, const void *base, bool isFramed,
                                              std::size_t position)
    {
        switch (op.code) {
        case OpCode::Booleans:
            return booleans(memberAt<std::uint8_t>(base, op.offset), op.size, position);
        case OpCode::BooleanSequence:
            return unitSequence(op, *memberAt<ZUVSequence>(base, op.offset), position);
        case OpCode::Sequence:
            return sequence(op, *memberAt<ZUVSequence>(base, op.offset), position);
        case OpCode::Array:
            return array(op, base, position);
        case OpCode::Optional: {
            const void *target = *memberAt<void *>(base, op.offset);
            if (!isFramed && !sink_.octet(position, target != nullptr)) {
                return full();
            }
            return target == nullptr ? position : sample(*op.element, target, position);
        }
        default:
            return sample(*op.element, memberAt<char>(base, op.offset), position);
        }
    }

    [[gnu::always_inline]] std::size_t units(const Op &op, const void *source, std::size_t position)
    {
        const bool hasRoom =
            sink_.align(position, op.alignment) && sink_.units(position, source, op.size, op.unit);
        return hasRoom ? position : full();
    }

    std::size_t booleans(const std::uint8_t *values, std::size_t count, std::size_t position)
    {
        for (std::size_t i = 0; i < count; ++i) {
            if (!sink_.octet(position, values[i] != 0)) {
                return full();
            }
        }
        return position;
    }

    [[gnu::always_inline]] std::size_t enumeration(const Op &op, std::int32_t value,
                                                   std::size_t position)
    {
        if (!op.holdsEnumValue(value)) {
            return fail(EncodeFailure::UnknownEnumValue);
        }
        return sink_.word(position, static_cast<std::uint32_t>(value)) ? position : full();
    }

    [[gnu::always_inline]] std::size_t text(const Op &op, const char *value, bool isFramed,
                                            std::size_t position)
    {
        if (op.isOptional && !isFramed && !sink_.octet(position, value != nullptr)) {
            return full();
        }
        if (value == nullptr) {
            return op.isOptional ? position : fail(EncodeFailure::NullText);
        }
        const std::size_t length = std::strlen(value);
        if (length > op.bound || length >= kMaxPayloadSize) {
            return fail(EncodeFailure::BeyondBound);
        }
        const bool hasRoom = sink_.word(position, static_cast<std::uint32_t>(length + 1)) &&
                             sink_.units(position, value, length + 1, 1);
        return hasRoom ? position : full();
    }

    [[gnu::always_inline]] std::size_t unitSequence(const Op &op, const ZUVSequence &sequence,
                                                    std::size_t position)
    {
        const std::uint32_t length = isInitialized(sequence) ? sequence._length : 0;
        if (length > op.bound) {
            return fail(EncodeFailure::BeyondBound);
        }
        if (!sink_.word(position, length)) {
            return full();
        }
        if (sequence._discontiguous_buffer != nullptr || op.code == OpCode::BooleanSequence) {
            return separateUnits(op, sequence, length, position);
        }
        const bool hasRoom = length == 0 || sink_.units(position, sequence._contiguous_buffer,
                                                        std::size_t{length} * op.unit, op.unit);
        return hasRoom ? position : full();
    }

    [[gnu::noinline]] std::size_t separateUnits(const Op &op, const ZUVSequence &sequence,
                                                std::uint32_t length, std::size_t position)
    {
        for (std::uint32_t i = 0; i < length && position != kFailed; ++i) {
            const void *unit = elementAt(sequence, i, op.unit);
            if (op.code == OpCode::BooleanSequence) {
                position = booleans(static_cast<const std::uint8_t *>(unit), 1, position);
            } else if (!sink_.units(position, unit, op.unit, op.unit)) {
                return full();
            }
        }
        return position;
    }

    std::size_t sequence(const Op &op, const ZUVSequence &sequence, std::size_t position)
    {
        const std::uint32_t length = isInitialized(sequence) ? sequence._length : 0;
        if (length > op.bound) {
            return fail(EncodeFailure::BeyondBound);
        }
        return delimited(position, [&](std::size_t inner) {
            if (!sink_.word(inner, length)) {
                return full();
            }
            for (std::uint32_t i = 0; i < length && inner != kFailed; ++i) {
                inner = sample(*op.element, elementAt(sequence, i, op.sequenceElement.size), inner);
            }
            return inner;
        });
    }

    std::size_t array(const Op &op, const void *base, std::size_t position)
    {
        return delimited(position, [&](std::size_t inner) {
            for (std::uint32_t i = 0; i < op.count && inner != kFailed; ++i) {
                inner = sample(*op.element,
                               memberAt<char>(base, op.offset + i * op.element->size()), inner);
            }
            return inner;
        });
    }

    const Sink sink_;
    EncodeFailure failure_ = EncodeFailure::NoRoom;
};

} // namespace zuv

#endif
