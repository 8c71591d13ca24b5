// Reads samples in XCDR2 (DDS-XTypes 1.3, 7.4.3), operation by operation of a program.
//
// One walk in two passes. The first checks everything that the payload claims and touches nothing but the
// payload; the second reads, and relies on the first.
#ifndef ZUV_PLATFORM_TYPESYS_DECODER_HPP
#define ZUV_PLATFORM_TYPESYS_DECODER_HPP

#include <cstdint>
#include <cstring>
#include <span>

#include "platform/typesys/Encoder.hpp"
#include "platform/typesys/SampleOps.hpp"

namespace zuv
{

enum class DecodePass : bool { Check, Read };

// Swap for the other byte order than the machine's. Alignment counts from `begin`.
template <DecodePass Pass, bool Swap>
class Decoder
{
public:
    Decoder(const std::uint8_t *begin, std::size_t size)
        : begin_(begin), cursor_(begin), end_(begin + size)
    {
    }

    std::size_t remaining() const { return static_cast<std::size_t>(end_ - cursor_); }

    // A sample with the header that its type's extensibility asks for. `base` counts in the second pass.
    bool sample(const Program &program, void *base)
    {
        switch (program.extensibility()) {
        case DDS_EXTENSIBLE_EXTENSIBILITY:
            return delimited([&] {
                if (!ops(program.ops(), base, true)) {
                    return false;
                }
                cursor_ = end_; // members of a newer version of the type
                return true;
            });
        case DDS_MUTABLE_EXTENSIBILITY:
            return delimited([&] { return framedMembers(program.ops(), base); });
        default:
            return ops(program.ops(), base, false);
        }
    }

    bool ops(std::span<const Op> all, void *base, bool mayEndEarly)
    {
        bool hasEnded = false;
        for (const Op &op : all) {
            hasEnded = hasEnded || (mayEndEarly && op.startsMember && cursor_ == end_);
            if (!(hasEnded ? missing(op, base) : member(op, base, false))) {
                return false;
            }
        }
        return true;
    }

private:
    static constexpr bool kChecks = Pass == DecodePass::Check;

    static void *memberOf(void *base, std::uint32_t offset)
    {
        return kChecks ? nullptr : memberAt<char>(base, offset);
    }

    // A member that an older version of the type does not have.
    static bool missing(const Op &op, void *base)
    {
        return kChecks ? !op.mustUnderstand : resetOp(op, base);
    }

    bool align(std::uint32_t alignment)
    {
        const std::size_t padding =
            (0 - static_cast<std::size_t>(cursor_ - begin_)) & (alignment - 1);
        if (kChecks && padding > remaining()) {
            return false;
        }
        cursor_ += padding;
        return true;
    }

    bool has(std::uint64_t size) const { return !kChecks || size <= remaining(); }

    static std::uint32_t load(const std::uint8_t *from)
    {
        std::uint32_t value = 0;
        std::memcpy(&value, from, sizeof(value));
        return Swap ? swapped(value) : value;
    }

    bool word(std::uint32_t &value)
    {
        if (!align(sizeof(value)) || !has(sizeof(value))) {
            return false;
        }
        value = load(cursor_);
        cursor_ += sizeof(value);
        return true;
    }

    // An octet that is 0 or 1.
    bool flag(bool &value)
    {
        if (!has(1) || (kChecks && *cursor_ > 1)) {
            return false;
        }
        value = *cursor_++ != 0;
        return true;
    }

    void copyUnits(void *to, std::size_t size, std::uint32_t unit)
    {
        if (Swap && unit > 1) {
            copySwapped(static_cast<std::uint8_t *>(to), cursor_, size, unit);
        } else {
            std::memcpy(to, cursor_, size);
        }
    }

    // What stands behind the word that tells its size; `read` must use up all of it.
    template <typename Read>
    bool delimited(Read read)
    {
        std::uint32_t size = 0;
        return word(size) && has(size) && bounded(size, read);
    }

    template <typename Read>
    bool bounded(std::size_t size, Read read)
    {
        const std::uint8_t *outerEnd = end_;
        end_ = cursor_ + size;
        const bool isRead = read() && cursor_ == end_;
        end_ = outerEnd;
        return isRead;
    }

    bool framedMembers(std::span<const Op> all, void *base)
    {
        std::uint64_t seen = 0;
        std::size_t expected = 0;
        while (cursor_ != end_) {
            std::uint32_t header = 0;
            std::uint64_t size = 0;
            if (!word(header) || !memberSize(header, size) || !has(size)) {
                return false;
            }
            constexpr std::uint32_t kMustUnderstand = 0x80000000u;
            const std::size_t index = find(all, header & 0x0fffffffu, expected);
            if (index == all.size()) {
                if (kChecks && (header & kMustUnderstand) != 0) {
                    return false;
                }
                cursor_ += size;
                continue;
            }
            const std::uint64_t bit = std::uint64_t{1} << index;
            if (kChecks && (seen & bit) != 0) {
                return false;
            }
            seen |= bit;
            expected = index + 1;
            if (!bounded(size, [&] { return member(all[index], base, true); })) {
                return false;
            }
        }
        for (std::size_t i = 0; i < all.size(); ++i) {
            if ((seen >> i & 1) == 0 && !missing(all[i], base)) {
                return false;
            }
        }
        return true;
    }

    // The octets of a framed member, which begin at the cursor.
    bool memberSize(std::uint32_t header, std::uint64_t &size)
    {
        const unsigned code = header >> 28 & 7;
        if (code < kLengthNext) {
            size = std::uint64_t{1} << code;
            return true;
        }
        std::uint32_t next = 0;
        if (!word(next)) {
            return false;
        }
        if (code == kLengthNext) {
            size = next;
            return true;
        }
        cursor_ -= sizeof(next); // it belongs to the member
        const unsigned scale = code == kLengthAlsoNext ? 1 : code == kLengthAlsoNext4 ? 4 : 8;
        size = sizeof(next) + std::uint64_t{next} * scale;
        return true;
    }

    // The member with an id; most come in the order of declaration.
    static std::size_t find(std::span<const Op> all, std::uint32_t id, std::size_t expected)
    {
        if (expected < all.size() && all[expected].memberId == id) {
            return expected;
        }
        return static_cast<std::size_t>(std::ranges::find(all, id, &Op::memberId) - all.begin());
    }

    bool member(const Op &op, void *base, bool isFramed)
    {
        switch (op.code) {
        case OpCode::Units:
            return units(op, base);
        case OpCode::Booleans:
            return booleans(memberOf(base, op.offset), op.size);
        case OpCode::Enum:
            return enumeration(op, memberOf(base, op.offset));
        case OpCode::Text:
            return text(op, base, isFramed);
        case OpCode::UnitSequence:
        case OpCode::BooleanSequence:
            return unitSequence(op, base);
        case OpCode::Sequence:
            return sequence(op, base);
        case OpCode::Array:
            return delimited([&] {
                for (std::uint32_t i = 0; i < op.count; ++i) {
                    if (!sample(*op.element, memberOf(base, op.offset + i * op.element->size()))) {
                        return false;
                    }
                }
                return true;
            });
        case OpCode::Struct:
            return sample(*op.element, memberOf(base, op.offset));
        case OpCode::Optional:
            return optional(op, base, isFramed);
        }
        return false;
    }

    bool units(const Op &op, void *base)
    {
        if (!align(op.alignment())) {
            return false;
        }
        if (op.size > remaining()) {
            // An older sample may end between the members of a run.
            return !op.parts.empty() && ops(op.parts, base, true);
        }
        if constexpr (!kChecks) {
            copyUnits(memberAt<char>(base, op.offset), op.size, op.unit);
        }
        cursor_ += op.size;
        return true;
    }

    bool booleans(void *to, std::size_t count)
    {
        for (std::size_t i = 0; i < count; ++i) {
            bool value = false;
            if (!flag(value)) {
                return false;
            }
            if constexpr (!kChecks) {
                static_cast<std::uint8_t *>(to)[i] = value;
            }
        }
        return true;
    }

    bool enumeration(const Op &op, void *to)
    {
        std::uint32_t value = 0;
        if (!word(value) || (kChecks && !op.holdsEnumValue(static_cast<std::int32_t>(value)))) {
            return false;
        }
        if constexpr (!kChecks) {
            std::memcpy(to, &value, sizeof(value));
        }
        return true;
    }

    bool text(const Op &op, void *base, bool isFramed)
    {
        bool isPresent = true;
        if (op.isOptional && !isFramed && !flag(isPresent)) {
            return false;
        }
        if (!isPresent) {
            return kChecks || resetOp(op, base);
        }
        std::uint32_t size = 0; // terminator included
        if (!word(size) || !has(size)) {
            return false;
        }
        if constexpr (kChecks) {
            if (size == 0 || size - 1 > op.bound || cursor_[size - 1] != '\0') {
                return false;
            }
        } else {
            char **slot = memberAt<char *>(base, op.offset);
            if (!reserveText(slot, size)) {
                return false;
            }
            std::memcpy(*slot, cursor_, size);
        }
        cursor_ += size;
        return true;
    }

    bool unitSequence(const Op &op, void *base)
    {
        std::uint32_t length = 0;
        if (!word(length) || (kChecks && length > op.bound) ||
            !has(std::uint64_t{length} * op.unit)) {
            return false;
        }
        const std::size_t size = std::size_t{length} * op.unit;
        if constexpr (kChecks) {
            if (op.code == OpCode::BooleanSequence) {
                return booleans(nullptr, length);
            }
        } else {
            ZUVSequence *sequence = memberAt<ZUVSequence>(base, op.offset);
            if (!prepareSequence(sequence, op, length)) {
                return false;
            }
            if (sequence->_discontiguous_buffer == nullptr) {
                if (length > 0) {
                    copyUnits(sequence->_contiguous_buffer, size, op.unit);
                }
            } else {
                separateUnits(*sequence, op);
                return true;
            }
        }
        cursor_ += size;
        return true;
    }

    void separateUnits(const ZUVSequence &sequence, const Op &op)
    {
        for (std::uint32_t i = 0; i < sequence._length; ++i) {
            copyUnits(elementAt(sequence, i, op.unit), op.unit, op.unit);
            cursor_ += op.unit;
        }
    }

    bool sequence(const Op &op, void *base)
    {
        return delimited([&] {
            std::uint32_t length = 0;
            if (!word(length) || (kChecks && length > op.bound) ||
                !has(std::uint64_t{length} * op.element->leastWireSize())) {
                return false;
            }
            ZUVSequence *sequence = nullptr;
            if constexpr (!kChecks) {
                sequence = memberAt<ZUVSequence>(base, op.offset);
                if (!prepareSequence(sequence, op, length)) {
                    return false;
                }
            }
            for (std::uint32_t i = 0; i < length; ++i) {
                void *element =
                    kChecks ? nullptr : elementAt(*sequence, i, op.sequenceElement.size);
                if (!sample(*op.element, element)) {
                    return false;
                }
            }
            return true;
        });
    }

    bool optional(const Op &op, void *base, bool isFramed)
    {
        bool isPresent = true;
        if (!isFramed && !flag(isPresent)) {
            return false;
        }
        if (!isPresent) {
            return kChecks || resetOp(op, base);
        }
        void *target = kChecks ? nullptr : assertOptional(op, base);
        return (kChecks || target != nullptr) && sample(*op.element, target);
    }

    const std::uint8_t *begin_;
    const std::uint8_t *cursor_;
    const std::uint8_t *end_;
};

} // namespace zuv

#endif
