#include "platform/typesys/WireSize.hpp"

#include <algorithm>

namespace zuv
{
namespace
{

enum class Extreme { Greatest, Least };

constexpr std::uint64_t kWord = 4;
constexpr std::uint64_t kUnlimited = std::uint64_t{1} << 40;

std::uint64_t aligned(std::uint64_t position, std::uint64_t alignment)
{
    return (position + alignment - 1) & ~(alignment - 1);
}

std::uint64_t afterWord(std::uint64_t position)
{
    return aligned(position, kWord) + kWord;
}

// Each of these takes the position before something and returns that behind it. Alignment keeps the order
// of positions, so the extreme sizes of the parts give that of the whole.
template <Extreme E>
std::uint64_t afterOps(std::span<const Op> ops, std::uint64_t position);

template <Extreme E>
std::uint64_t afterFramedMembers(std::span<const Op> ops, std::uint64_t position);

template <Extreme E>
std::uint64_t afterSample(const Program &program, std::uint64_t position)
{
    switch (program.extensibility()) {
    case DDS_EXTENSIBLE_EXTENSIBILITY:
        return afterOps<E>(program.ops(), afterWord(position));
    case DDS_MUTABLE_EXTENSIBILITY:
        return afterFramedMembers<E>(program.ops(), afterWord(position));
    default:
        return afterOps<E>(program.ops(), position);
    }
}

template <Extreme E>
std::uint64_t afterElements(const Program &element, std::uint64_t count, std::uint64_t position)
{
    for (std::uint64_t i = 0; i < count && position < kUnlimited; ++i) {
        position = afterSample<E>(element, position);
    }
    return position;
}

// A count of units or characters up to a bound.
template <Extreme E>
std::uint64_t afterBounded(std::uint64_t bound, std::uint64_t unit, std::uint64_t position)
{
    if constexpr (E == Extreme::Least) {
        return position;
    }
    return bound == DDS_UNBOUNDED ? kUnlimited : position + bound * unit;
}

template <Extreme E>
std::uint64_t afterMember(const Op &op, std::uint64_t position, bool isFramed)
{
    const bool isFlagged = (op.isOptional || op.code == OpCode::Optional) && !isFramed;
    position += isFlagged ? 1 : 0;
    if (isFlagged && E == Extreme::Least) {
        return position;
    }
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        return aligned(position, op.alignment) + op.size;
    case OpCode::Text:
        return afterBounded<E>(op.bound, 1, afterWord(position) + 1);
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
        return afterBounded<E>(op.bound, op.unit, afterWord(position));
    case OpCode::Sequence:
        if (E == Extreme::Greatest && op.bound == DDS_UNBOUNDED) {
            return kUnlimited;
        }
        return afterElements<E>(*op.element, E == Extreme::Greatest ? op.bound : 0,
                                afterWord(afterWord(position)));
    case OpCode::Array:
        return afterElements<E>(*op.element, op.count, afterWord(position));
    case OpCode::Struct:
    case OpCode::Optional:
        break;
    }
    return afterSample<E>(*op.element, position);
}

template <Extreme E>
std::uint64_t afterOps(std::span<const Op> ops, std::uint64_t position)
{
    for (const Op &op : ops) {
        position = afterMember<E>(op, position, false);
    }
    return position;
}

template <Extreme E>
std::uint64_t afterFramedMembers(std::span<const Op> ops, std::uint64_t position)
{
    for (const Op &op : ops) {
        const bool isAbsent = E == Extreme::Least && (op.isOptional || op.code == OpCode::Optional);
        if (!isAbsent) {
            position = afterWord(position);
            position = op.lengthCode == kLengthNext ? afterWord(position) : position;
            position = afterMember<E>(op, position, true);
        }
    }
    return position;
}

} // namespace

std::uint64_t greatestSize(const Program &program)
{
    return afterSample<Extreme::Greatest>(program, 0);
}

std::uint64_t greatestSize(std::span<const Op> ops)
{
    return afterOps<Extreme::Greatest>(ops, 0);
}

std::uint64_t leastSize(const Program &program)
{
    return afterSample<Extreme::Least>(program, 0);
}

} // namespace zuv
