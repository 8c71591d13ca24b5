// The program of a type: its type code flattened into operations that initialize, copy, compare, write and
// read a sample run by run. A program is compiled once a process, on first use, and never changes.
#ifndef ZUV_PLATFORM_TYPESYS_PROGRAM_HPP
#define ZUV_PLATFORM_TYPESYS_PROGRAM_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/typesys/Sequence.h"
#include "platform/typesys/TypeTable.hpp"

namespace zuv
{

enum class OpCode : std::uint8_t {
    Units,        // `size` octets of primitives of `unit` octets each, in a row
    Booleans,     // `size` octets, each 0 or 1
    Enum,         // four octets with one of the values of `enumeration`
    Text,         // char *
    UnitSequence, // a sequence of primitives of `unit` octets
    BooleanSequence,
    Sequence, // a sequence of anything else
    Array,    // `count` elements of anything else
    Struct,   // a structure that has a header of its own
    Optional  // a pointer to anything but a text, null when absent
};

// The operations that most samples are made of, for the decoder, which has code for each of them.
enum class Shape : std::uint8_t {
    Word,      // Units: one of four octets
    Units,     // Units: any others
    DenseEnum, // Enum: all values between the least and the greatest
    PlainText, // Text: never absent
    Octets,    // UnitSequence: of single octets
    Other
};

// How long a member of a mutable structure is, as its header tells (DDS-XTypes 1.3, 7.4.3.4.2).
enum LengthCode : std::uint8_t {
    kLengthOctet = 0,
    kLength2 = 1,
    kLength4 = 2,
    kLength8 = 3,
    kLengthNext = 4,     // the next word tells
    kLengthAlsoNext = 5, // the next word tells, and is the first of the member itself
    kLengthAlsoNext4 = 6,
    kLengthAlsoNext8 = 7
};

class Program;

// Of a size that is a power of two, so that counting them takes no division.
struct alignas(64) Op {
    OpCode code = OpCode::Units;
    Shape shape = Shape::Other;
    std::uint8_t unit = 1;
    std::uint8_t alignment = 1;  // on the wire, where it never exceeds four
    bool startsMember = false;   // the first of a member: older samples may end before it
    bool isOptional = false;     // a text that may be absent
    bool isLazy = false;         // a text that is initialized to null
    bool mustUnderstand = false; // a key: never missing, and a reader that does not know it refuses
    LengthCode lengthCode = kLengthNext;
    std::uint32_t offset = 0; // in memory
    std::uint32_t size = 0;
    std::uint32_t bound = 0; // of a text, terminator not counted, or of a sequence
    std::uint32_t count = 0; // of an array
    std::uint32_t memberId = 0;
    std::uint64_t defaultBits = 0;    // of the first unit, or of an enumeration
    const Program *element = nullptr; // of Sequence, Array, Struct and Optional
    std::int32_t least = 0;           // of Enum
    std::int32_t greatest = 0;
    const DDS_TypeCode *gapped = nullptr; // of Enum: asked when the values between have gaps
    ZUVSequenceElement sequenceElement = {0, nullptr};
    std::span<const Op> parts = {}; // of Units that join members: an operation for each of them

    bool holdsEnumValue(std::int32_t value) const
    {
        return value >= least && value <= greatest &&
               (gapped == nullptr ||
                std::ranges::find(gapped->members, value, &DDS_TypeCodeMember::ordinal) !=
                    gapped->members.end());
    }
};

class Program
{
public:
    // Null, with a report, for a type that has no C structure or cannot be compiled, and when there is no
    // memory.
    static const Program *of(const DDS_TypeCode *type)
    {
        const Program *program = type != nullptr && type->slot != nullptr
                                     ? type->slot->program.load(std::memory_order_acquire)
                                     : nullptr;
        return program != nullptr ? program : compile(type);
    }

    std::span<const Op> ops() const { return ops_; }
    // Those whose members may hold something outside the sample.
    std::span<const Op> holders() const { return holders_; }
    // The key members alone, in the order of their ids, without headers.
    std::span<const Op> keyOps() const { return keyOps_; }
    bool hasKey() const { return !keyOps_.empty(); }

    bool isStruct() const { return isStruct_; }
    // Final for a type that is no structure.
    DDS_ExtensibilityKind extensibility() const { return extensibility_; }
    // Of its samples' encapsulation, or of its plain key's, without the bit for the byte order.
    std::uint32_t encapsulation() const { return encapsulation_; }
    // Members come one behind the other, and are few.
    bool isFlat() const { return isFlat_; }
    static constexpr std::size_t kFlatOpMax = 16;
    // Bytes in memory.
    std::uint32_t size() const { return size_; }
    // So many bytes: a sample in which nothing is allocated. Every member has its default, texts are null,
    // sequences empty, optional members absent.
    const void *blank() const { return blank_.data(); }
    const ZUVSampleAccessInfo &access() const { return access_; }
    // The least octets that a sample may have on the wire, whoever wrote it.
    std::uint32_t leastWireSize() const { return leastWireSize_; }
    // Samples hold nothing outside themselves.
    bool isPlain() const { return holders_.empty(); }
    // Some member, of the sample or of a part of it, is optional.
    bool hasOptional() const { return hasOptional_; }
    // A blank sample is all zeros.
    bool isZeroDefault() const { return isZeroDefault_; }

private:
    friend class Compiler;
    Program() = default;
    static const Program *compile(const DDS_TypeCode *type);
    static const Program *compileOnce(const DDS_TypeCode &type);

    std::vector<Op> ops_;
    std::vector<Op> keyOps_;
    std::vector<Op> holders_;
    std::vector<std::byte> blank_;
    std::vector<DDS_UnsignedLong> offsets_;
    ZUVSampleAccessInfo access_ = {0, 0, nullptr};
    std::vector<Op> parts_; // the operations before runs were joined
    DDS_ExtensibilityKind extensibility_ = DDS_FINAL_EXTENSIBILITY;
    std::uint32_t size_ = 0;
    std::uint32_t leastWireSize_ = 0;
    std::uint32_t encapsulation_ = 0;
    bool isStruct_ = false;
    bool isFlat_ = false;
    bool hasOptional_ = false;
    bool isZeroDefault_ = false;
};

// The octets of an encapsulation header.
constexpr std::uint32_t kEncapsulationHeaderSize = 4;

} // namespace zuv

#endif
