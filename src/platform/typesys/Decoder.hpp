// Reads samples in XCDR2 (DDS-XTypes 1.3, 7.4.3), operation by operation of a program.
//
// One walk in two passes. The first checks everything that the payload claims and touches nothing but the
// payload; the second reads, and relies on the first. Both at once are for a sample that may be given up half
// read. Positions are as in the encoder.
#ifndef ZUV_PLATFORM_TYPESYS_DECODER_HPP
#define ZUV_PLATFORM_TYPESYS_DECODER_HPP

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

#include "platform/typesys/Encoder.hpp"
#include "platform/typesys/SampleOps.hpp"

namespace zuv
{

constexpr bool kIsLittleEndian = std::endian::native == std::endian::little;
constexpr std::uint32_t kLittleEndianBit = 1;
constexpr std::uint32_t kPayloadAlignment = 4;

// Hands the body of a payload, and whether its words must be turned, to `run`, if the payload is of the
// encapsulation.
template <typename Run>
[[gnu::always_inline]] inline bool withBody(std::uint32_t encapsulation, const DDS_Octet *buffer,
                                            DDS_UnsignedLong length, Run run)
{
    if (length < kEncapsulationHeaderSize) {
        return false;
    }
    const std::uint32_t identifier = std::uint32_t{buffer[0]} << 8 | buffer[1];
    if ((identifier & ~kLittleEndianBit) != encapsulation) {
        return false;
    }
    const DDS_Octet *body = buffer + kEncapsulationHeaderSize;
    const std::size_t size = length - kEncapsulationHeaderSize;
    const bool isNative = ((identifier & kLittleEndianBit) != 0) == kIsLittleEndian;
    return isNative ? run(std::false_type(), body, size) : run(std::true_type(), body, size);
}

enum class DecodePass : std::uint8_t { Check, Read, Both };

// Where the operations of a flat sample begin, and where the last one's member ends at the latest. The first pass
// leaves them to the second, which need not wait for the length of one member to find the next.
struct Marks {
    std::size_t count; // an older sample has fewer than the program
    std::size_t end;
    std::size_t begins[Program::kFlatOpMax];
};

// Swap for the other byte order than the machine's.
template <DecodePass Pass, bool Swap>
class Decoder
{
public:
    // With `bearsUnknownValues` a value that an enumeration does not have is read as its default.
    explicit Decoder(const std::uint8_t *begin, bool bearsUnknownValues = false)
        : begin_(begin), bearsUnknownValues_(bearsUnknownValues)
    {
    }

    // A sample with the header that its type's extensibility asks for. Like all walks here it takes the
    // position where it begins and the end of what encloses it, and returns the position where it ends, or
    // kFailed. `base` counts where the pass reads.
    [[gnu::always_inline]] std::size_t sample(const Program &program, void *base,
                                              std::size_t position, std::size_t end)
    {
        switch (program.extensibility()) {
        case DDS_EXTENSIBLE_EXTENSIBILITY:
            return delimited(position, end, [&](std::size_t inner, std::size_t innerEnd) {
                // What is left are members of a newer version of the type.
                return ops(program.ops(), base, true, inner, innerEnd) == kFailed ? kFailed
                                                                                  : innerEnd;
            });
        case DDS_MUTABLE_EXTENSIBILITY:
            return delimited(position, end, [&](std::size_t inner, std::size_t innerEnd) {
                return framedMembers(program.ops(), base, inner, innerEnd);
            });
        default:
            return ops(program.ops(), base, false, position, end);
        }
    }

    std::size_t ops(std::span<const Op> all, void *base, bool mayEndEarly, std::size_t position,
                    std::size_t end)
    {
        for (const Op &op : all) {
            if (position == end && mayEndEarly && op.startsMember) {
                return missingFrom(all.subspan(static_cast<std::size_t>(&op - all.data())), base,
                                   position);
            }
            position = member(op, base, false, position, end);
            if (position == kFailed) {
                break;
            }
        }
        return position;
    }

    // The same as sample() and ops() for a flat program, whose operations the check marks and the reading finds.
    [[gnu::always_inline]] std::size_t check(const Program &program, std::size_t end, Marks &marks)
    {
        static_assert(Pass == DecodePass::Check);
        if (program.extensibility() == DDS_FINAL_EXTENSIBILITY) {
            return checkOps(program.ops(), false, 0, end, marks);
        }
        return delimited(0, end, [&](std::size_t inner, std::size_t innerEnd) {
            return checkOps(program.ops(), true, inner, innerEnd, marks) == kFailed ? kFailed
                                                                                    : innerEnd;
        });
    }

    [[gnu::always_inline]] bool read(const Program &program, void *base, const Marks &marks)
    {
        static_assert(Pass == DecodePass::Read);
        const std::span<const Op> all = program.ops();
        const std::size_t *begin = marks.begins;
        for (const Op &op : all.first(marks.count)) {
            if (member(op, base, false, *begin++, marks.end) == kFailed) {
                return false;
            }
        }
        return marks.count == all.size() ||
               missingFrom(all.subspan(marks.count), base, marks.end) != kFailed;
    }

    // Of the members only the keys, which an accepted payload never lacks.
    [[gnu::always_inline]] bool readKeys(const Program &program, void *base, const Marks &marks)
    {
        static_assert(Pass == DecodePass::Read);
        const std::size_t *begin = marks.begins;
        bool isKey = false;
        for (const Op &op : program.ops().first(marks.count)) {
            // An operation that goes on with a member is a key if its beginning is one.
            isKey = op.mustUnderstand || (isKey && !op.startsMember);
            if (isKey && member(op, base, false, *begin, marks.end) == kFailed) {
                return false;
            }
            ++begin;
        }
        return true;
    }

private:
    static constexpr bool kChecks = Pass != DecodePass::Read;
    static constexpr bool kReads = Pass != DecodePass::Check;

    [[gnu::always_inline]] std::size_t checkOps(std::span<const Op> all, bool mayEndEarly,
                                                std::size_t position, std::size_t end, Marks &marks)
    {
        marks.end = end;
        std::size_t *begin = marks.begins;
        for (const Op &op : all) {
            if (position == end && mayEndEarly && op.startsMember) [[unlikely]] {
                marks.count = static_cast<std::size_t>(begin - marks.begins);
                return missingFrom(all.subspan(marks.count), nullptr, position);
            }
            *begin++ = position;
            position = member(op, nullptr, false, position, end);
            if (position == kFailed) {
                return kFailed;
            }
        }
        marks.count = all.size();
        return position;
    }

    static void *memberOf(void *base, std::uint32_t offset)
    {
        return kReads ? memberAt<char>(base, offset) : nullptr;
    }

    // A member that an older version of the type does not have.
    static bool missing(const Op &op, void *base)
    {
        return !(kChecks && op.mustUnderstand) && (!kReads || resetOp(op, base));
    }

    [[gnu::noinline]] static std::size_t missingFrom(std::span<const Op> all, void *base,
                                                     std::size_t position)
    {
        for (const Op &op : all) {
            if (!missing(op, base)) {
                return kFailed;
            }
        }
        return position;
    }

    static bool has(std::uint64_t size, std::size_t position, std::size_t end)
    {
        return !kChecks || size <= end - position;
    }

    // These move `position` on, and return false when the payload ends before.
    static bool align(std::size_t &position, std::size_t end, std::uint32_t alignment)
    {
        position = alignedUp(position, alignment);
        return !kChecks || position <= end;
    }

    bool word(std::size_t &position, std::size_t end, std::uint32_t &value) const
    {
        position = alignedUp(position, sizeof(value)) + sizeof(value);
        if (kChecks && position > end) {
            return false;
        }
        std::memcpy(&value, begin_ + position - sizeof(value), sizeof(value));
        value = Swap ? swapped(value) : value;
        return true;
    }

    // An octet that is 0 or 1.
    bool flag(std::size_t &position, std::size_t end, bool &value) const
    {
        if (!has(1, position, end) || (kChecks && begin_[position] > 1)) {
            return false;
        }
        value = begin_[position++] != 0;
        return true;
    }

    // Whether so many octets, which are there, are each 0 or 1.
    bool areFlags(std::size_t position, std::size_t count) const
    {
        return std::all_of(begin_ + position, begin_ + position + count,
                           [](std::uint8_t octet) { return octet <= 1; });
    }

    void copyUnits(void *to, std::size_t position, std::size_t size, std::uint32_t unit) const
    {
        if (Swap && unit > 1) {
            copySwapped(static_cast<std::uint8_t *>(to), begin_ + position, size, unit);
        } else {
            copyOctets(to, begin_ + position, size);
        }
    }

    // What stands behind the word that tells its size; `read` must use up all of it.
    template <typename Read>
    std::size_t delimited(std::size_t position, std::size_t end, Read read)
    {
        std::uint32_t size = 0;
        if (!word(position, end, size) || !has(size, position, end)) {
            return kFailed;
        }
        const std::size_t innerEnd = position + size;
        return read(position, innerEnd) == innerEnd ? innerEnd : kFailed;
    }

    std::size_t framedMembers(std::span<const Op> all, void *base, std::size_t position,
                              std::size_t end)
    {
        constexpr std::uint32_t kMustUnderstand = 0x80000000u;
        constexpr std::uint32_t kIdMask = 0x0fffffffu;
        std::uint64_t seen = 0;
        std::size_t expected = 0;
        while (position != end) {
            std::uint32_t header = 0;
            std::uint64_t size = 0;
            if (!word(position, end, header) || !memberSize(header, position, end, size) ||
                !has(size, position, end)) {
                return kFailed;
            }
            const std::size_t memberEnd = position + size;
            const std::size_t index = find(all, header & kIdMask, expected);
            if (index < all.size()) {
                const std::uint64_t bit = std::uint64_t{1} << index;
                const bool isDuplicate = (seen & bit) != 0;
                seen |= bit;
                expected = index + 1;
                if (isDuplicate ||
                    member(all[index], base, true, position, memberEnd) != memberEnd) {
                    return kFailed;
                }
            } else if ((header & kMustUnderstand) != 0) {
                return kFailed;
            }
            position = memberEnd;
        }
        for (std::size_t i = 0; i < all.size(); ++i) {
            if ((seen >> i & 1) == 0 && !missing(all[i], base)) {
                return kFailed;
            }
        }
        return position;
    }

    // The octets of a framed member, which begin at the position.
    bool memberSize(std::uint32_t header, std::size_t &position, std::size_t end,
                    std::uint64_t &size) const
    {
        const unsigned code = header >> 28 & 7;
        if (code < kLengthNext) {
            size = std::uint64_t{1} << code;
            return true;
        }
        std::uint32_t next = 0;
        if (!word(position, end, next)) {
            return false;
        }
        if (code == kLengthNext) {
            size = next;
            return true;
        }
        position -= sizeof(next); // it belongs to the member
        const unsigned scale = code == kLengthAlsoNext ? 1 : code == kLengthAlsoNext4 ? 4 : 8;
        size = sizeof(next) + std::uint64_t{next} * scale;
        return true;
    }

    // A sample within a sample.
    [[gnu::noinline]] std::size_t part(const Program &program, void *base, std::size_t position,
                                       std::size_t end)
    {
        return sample(program, base, position, end);
    }

    // The member with an id; most come in the order of declaration.
    static std::size_t find(std::span<const Op> all, std::uint32_t id, std::size_t expected)
    {
        if (expected < all.size() && all[expected].memberId == id) {
            return expected;
        }
        return static_cast<std::size_t>(std::ranges::find(all, id, &Op::memberId) - all.begin());
    }

    // A framed member's header has told already that it is there.
    [[gnu::always_inline]] std::size_t member(const Op &op, void *base, bool isFramed,
                                              std::size_t position, std::size_t end)
    {
        switch (op.shape) {
        case Shape::Word:
            return oneWord(memberOf(base, op.offset), position, end);
        case Shape::Units:
            return units(op, base, position, end);
        case Shape::DenseEnum:
            return denseEnumeration(op, memberOf(base, op.offset), position, end);
        case Shape::PlainText:
            return plainText(op, base, position, end);
        case Shape::Octets:
            return octets(op, base, position, end);
        default:
            return otherMember(op, base, isFramed, position, end);
        }
    }

    [[gnu::noinline]] std::size_t otherMember(const Op &op, void *base, bool isFramed,
                                              std::size_t position, std::size_t end)
    {
        switch (op.code) {
        case OpCode::Enum:
            return enumeration(op, memberOf(base, op.offset), position, end);
        case OpCode::Text:
            return text(op, base, isFramed, position, end);
        case OpCode::UnitSequence:
            return unitSequence(op, base, position, end);
        case OpCode::Booleans:
            return booleans(memberOf(base, op.offset), op.size, position, end);
        case OpCode::BooleanSequence:
            return unitSequence(op, base, position, end);
        case OpCode::Sequence:
            return sequence(op, base, position, end);
        case OpCode::Array:
            return array(op, base, position, end);
        case OpCode::Optional:
            return optional(op, base, isFramed, position, end);
        default:
            return part(*op.element, memberOf(base, op.offset), position, end);
        }
    }

    [[gnu::always_inline]] std::size_t oneWord(void *to, std::size_t position,
                                               std::size_t end) const
    {
        std::uint32_t value = 0;
        if (!word(position, end, value)) {
            return kFailed;
        }
        if constexpr (kReads) {
            std::memcpy(to, &value, sizeof(value));
        }
        return position;
    }

    [[gnu::always_inline]] std::size_t units(const Op &op, void *base, std::size_t position,
                                             std::size_t end)
    {
        if (!align(position, end, op.alignment)) {
            return kFailed;
        }
        if (op.size > end - position) {
            // An older sample may end between the members of a run.
            return op.parts.empty() ? kFailed : ops(op.parts, base, true, position, end);
        }
        if constexpr (kReads) {
            copyUnits(memberAt<char>(base, op.offset), position, op.size, op.unit);
        }
        return position + op.size;
    }

    std::size_t booleans(void *to, std::size_t count, std::size_t position, std::size_t end) const
    {
        if (!has(count, position, end) || (kChecks && !areFlags(position, count))) {
            return kFailed;
        }
        if constexpr (kReads) {
            copyOctets(to, begin_ + position, count);
        }
        return position + count;
    }

    // `holds` tells whether the enumeration has a value.
    template <typename Holds>
    [[gnu::always_inline]] std::size_t enumerator(const Op &op, void *to, std::size_t position,
                                                  std::size_t end, const Holds &holds) const
    {
        std::uint32_t value = 0;
        if (!word(position, end, value)) {
            return kFailed;
        }
        // The second pass need not ask again where the first one refused.
        if ((kChecks || bearsUnknownValues_) && !holds(static_cast<std::int32_t>(value))) {
            if (!bearsUnknownValues_) {
                return kFailed;
            }
            value = static_cast<std::uint32_t>(op.defaultBits);
        }
        if constexpr (kReads) {
            std::memcpy(to, &value, sizeof(value));
        }
        return position;
    }

    [[gnu::always_inline]] std::size_t denseEnumeration(const Op &op, void *to,
                                                        std::size_t position, std::size_t end) const
    {
        return enumerator(op, to, position, end, [&op](std::int32_t value) {
            return value >= op.least && value <= op.greatest;
        });
    }

    std::size_t enumeration(const Op &op, void *to, std::size_t position, std::size_t end) const
    {
        return enumerator(op, to, position, end,
                          [&op](std::int32_t value) { return op.holdsEnumValue(value); });
    }

    std::size_t text(const Op &op, void *base, bool isFramed, std::size_t position,
                     std::size_t end) const
    {
        bool isPresent = true;
        if (op.isOptional && !isFramed && !flag(position, end, isPresent)) {
            return kFailed;
        }
        if (!isPresent) {
            return !kReads || resetOp(op, base) ? position : kFailed;
        }
        return plainText(op, base, position, end);
    }

    [[gnu::always_inline]] std::size_t plainText(const Op &op, void *base, std::size_t position,
                                                 std::size_t end) const
    {
        std::uint32_t size = 0; // terminator included
        if (!word(position, end, size) || !has(size, position, end)) {
            return kFailed;
        }
        // A size of 0 is beyond every bound.
        if (kChecks && (size - 1 > op.bound || begin_[position + size - 1] != '\0')) {
            return kFailed;
        }
        if constexpr (kReads) {
            char **slot = memberAt<char *>(base, op.offset);
            if (!reserveText(slot, size)) {
                return kFailed;
            }
            copyOctets(*slot, begin_ + position, size);
        }
        return position + size;
    }

    [[gnu::always_inline]] std::size_t octets(const Op &op, void *base, std::size_t position,
                                              std::size_t end) const
    {
        std::uint32_t length = 0;
        if (!word(position, end, length) || (kChecks && length > op.bound) ||
            !has(length, position, end)) {
            return kFailed;
        }
        if constexpr (kReads) {
            ZUVSequence *sequence = memberAt<ZUVSequence>(base, op.offset);
            if (!prepareSequence(sequence, op, length)) {
                return kFailed;
            }
            if (sequence->_discontiguous_buffer != nullptr) [[unlikely]] {
                separateUnits(*sequence, op, position);
            } else {
                copyOctets(sequence->_contiguous_buffer, begin_ + position, length);
            }
        }
        return position + length;
    }

    std::size_t unitSequence(const Op &op, void *base, std::size_t position, std::size_t end) const
    {
        std::uint32_t length = 0;
        if (!word(position, end, length) || (kChecks && length > op.bound)) {
            return kFailed;
        }
        const std::uint64_t size = std::uint64_t{length} * op.unit;
        if (!has(size, position, end)) {
            return kFailed;
        }
        if (kChecks && op.code == OpCode::BooleanSequence && !areFlags(position, length)) {
            return kFailed;
        }
        if constexpr (kReads) {
            ZUVSequence *sequence = memberAt<ZUVSequence>(base, op.offset);
            if (!prepareSequence(sequence, op, length)) {
                return kFailed;
            }
            if (sequence->_discontiguous_buffer != nullptr) {
                separateUnits(*sequence, op, position);
            } else if (length > 0) {
                copyUnits(sequence->_contiguous_buffer, position, size, op.unit);
            }
        }
        return position + size;
    }

    [[gnu::noinline]] void separateUnits(const ZUVSequence &sequence, const Op &op,
                                         std::size_t position) const
    {
        for (std::uint32_t i = 0; i < sequence._length; ++i) {
            copyUnits(elementAt(sequence, i, op.unit), position + std::size_t{i} * op.unit, op.unit,
                      op.unit);
        }
    }

    std::size_t sequence(const Op &op, void *base, std::size_t position, std::size_t end)
    {
        return delimited(position, end, [&](std::size_t inner, std::size_t innerEnd) {
            std::uint32_t length = 0;
            if (!word(inner, innerEnd, length) || (kChecks && length > op.bound) ||
                !has(std::uint64_t{length} * op.element->leastWireSize(), inner, innerEnd)) {
                return kFailed;
            }
            ZUVSequence *sequence = kReads ? memberAt<ZUVSequence>(base, op.offset) : nullptr;
            if (kReads && !prepareSequence(sequence, op, length)) {
                return kFailed;
            }
            for (std::uint32_t i = 0; i < length && inner != kFailed; ++i) {
                void *element = kReads ? elementAt(*sequence, i, op.sequenceElement.size) : nullptr;
                inner = part(*op.element, element, inner, innerEnd);
            }
            return inner;
        });
    }

    std::size_t array(const Op &op, void *base, std::size_t position, std::size_t end)
    {
        return delimited(position, end, [&](std::size_t inner, std::size_t innerEnd) {
            for (std::uint32_t i = 0; i < op.count && inner != kFailed; ++i) {
                inner = part(*op.element, memberOf(base, op.offset + i * op.element->size()), inner,
                             innerEnd);
            }
            return inner;
        });
    }

    std::size_t optional(const Op &op, void *base, bool isFramed, std::size_t position,
                         std::size_t end)
    {
        bool isPresent = true;
        if (!isFramed && !flag(position, end, isPresent)) {
            return kFailed;
        }
        if (!isPresent) {
            return !kReads || resetOp(op, base) ? position : kFailed;
        }
        void *target = kReads ? assertOptional(op, base) : nullptr;
        return !kReads || target != nullptr ? part(*op.element, target, position, end) : kFailed;
    }

    const std::uint8_t *begin_;
    bool bearsUnknownValues_;
};

} // namespace zuv

#endif
