#include "platform/typesys/Program.hpp"

#include <bit>
#include <cstring>
#include <iterator>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"

namespace zuv
{
namespace
{

constexpr std::uint8_t kMaxAlignment = 4;
constexpr std::size_t kMaxMutableMembers = 64; // what a reader's set of members seen has room for

[[noreturn]] void refuse(const DDS_TypeCode &type, const char *reason)
{
    throw std::invalid_argument(std::string("compile type ") +
                                (type.name != nullptr ? type.name : "without a name") + ": " +
                                reason);
}

const Program *requireProgram(const DDS_TypeCode &type)
{
    const Program *program = Program::of(&type);
    if (program == nullptr) {
        refuse(type, "no program");
    }
    return program;
}

// The octets of a primitive; 0 for another kind.
std::uint8_t unitOf(DDS_TCKind kind)
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

// The default of a primitive or an enumeration as it lies in memory.
std::uint64_t defaultBitsOf(const DDS_TypeCode &type, const DDS_AnnotationParameterValue &given)
{
    const DDS_AnnotationParameterValue value =
        given.kind != DDS_TK_NULL ? given : DDS_TypeCode_default_value(&type, nullptr);
    switch (value.kind) {
    case DDS_TK_FLOAT:
        return std::bit_cast<std::uint32_t>(static_cast<float>(value.value.floatValue));
    case DDS_TK_DOUBLE:
        return std::bit_cast<std::uint64_t>(value.value.floatValue);
    case DDS_TK_STRING:
        return 0;
    default:
        return value.value.unsignedValue;
    }
}

LengthCode lengthCodeOf(const Op &op);

// A structure with a size of its own could do without another before it, but other implementations write both.
LengthCode lengthCodeOf(const Program &program)
{
    return program.isStruct() ? kLengthNext : lengthCodeOf(program.ops().front());
}

LengthCode lengthCodeOf(const Op &op)
{
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
        return op.size != op.unit ? kLengthNext
               : op.unit == 1     ? kLengthOctet
               : op.unit == 2     ? kLength2
               : op.unit == 4     ? kLength4
                                  : kLength8;
    case OpCode::Enum:
        return kLength4;
    case OpCode::UnitSequence:
        return op.unit == 1   ? kLengthAlsoNext
               : op.unit == 4 ? kLengthAlsoNext4
               : op.unit == 8 ? kLengthAlsoNext8
                              : kLengthNext;
    case OpCode::Text:
    case OpCode::BooleanSequence:
    case OpCode::Sequence:
    case OpCode::Array:
        return kLengthAlsoNext; // begins with its length, or with the size of what follows
    case OpCode::Struct:
    case OpCode::Optional:
        break;
    }
    return lengthCodeOf(*op.element);
}

bool isPlain(const Op &op)
{
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        return true;
    case OpCode::Array:
    case OpCode::Struct:
        return op.element->isPlain();
    default:
        return false;
    }
}

bool hasOptional(const Op &op)
{
    return op.isOptional || op.code == OpCode::Optional ||
           (op.element != nullptr && op.element->hasOptional());
}

// Write the member's default into a blank sample, which is all zeros before.
void storeDefault(const Op &op, std::byte *blank)
{
    std::byte *place = blank + op.offset;
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum: {
        const std::uint64_t bits = std::endian::native == std::endian::big
                                       ? op.defaultBits << 8 * (sizeof(bits) - op.unit)
                                       : op.defaultBits;
        std::memcpy(place, &bits, op.unit);
        break;
    }
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
    case OpCode::Sequence: {
        ZUVSequence sequence = DDS_SEQUENCE_INITIALIZER;
        sequence._absolute_maximum = op.bound;
        std::memcpy(place, &sequence, sizeof(sequence));
        break;
    }
    case OpCode::Array:
    case OpCode::Struct:
        for (std::uint32_t i = 0; i < (op.code == OpCode::Array ? op.count : 1); ++i) {
            std::memcpy(place + i * op.element->size(), op.element->blank(), op.element->size());
        }
        break;
    case OpCode::Text:
    case OpCode::Optional:
        break;
    }
}

std::uint64_t leastWireSizeOf(const Op &op)
{
    constexpr std::uint64_t kWord = 4;
    switch (op.code) {
    case OpCode::Units:
    case OpCode::Booleans:
    case OpCode::Enum:
        return op.size;
    case OpCode::Text:
        return op.isOptional ? 1 : kWord + 1;
    case OpCode::UnitSequence:
    case OpCode::BooleanSequence:
        return kWord;
    case OpCode::Sequence:
        return 2 * kWord;
    case OpCode::Array:
        return kWord + std::uint64_t{op.count} * op.element->leastWireSize();
    case OpCode::Struct:
        return op.element->leastWireSize();
    case OpCode::Optional:
        break;
    }
    return 1;
}

bool isKey(const DDS_TypeCodeMember &member)
{
    return (member.marks & kKey) != 0;
}

bool isRun(const Op &first, const Op &second)
{
    return first.code == OpCode::Units && second.code == OpCode::Units &&
           first.unit == second.unit && first.offset + first.size == second.offset &&
           first.defaultBits == 0 && second.defaultBits == 0;
}

Shape shapeOf(const Op &op)
{
    switch (op.code) {
    case OpCode::Units:
        return op.unit == 4 && op.size == 4 ? Shape::Word : Shape::Units;
    case OpCode::Enum:
        return op.gapped == nullptr ? Shape::DenseEnum : Shape::Other;
    case OpCode::Text:
        return op.isOptional ? Shape::Other : Shape::PlainText;
    case OpCode::UnitSequence:
        return op.unit == 1 ? Shape::Octets : Shape::Other;
    default:
        return Shape::Other;
    }
}

std::uint32_t encapsulationOf(DDS_ExtensibilityKind extensibility)
{
    switch (extensibility) {
    case DDS_EXTENSIBLE_EXTENSIBILITY:
        return DDS_ENCAPSULATION_ID_D_CDR2_BE;
    case DDS_MUTABLE_EXTENSIBILITY:
        return DDS_ENCAPSULATION_ID_PL_CDR2_BE;
    default:
        return DDS_ENCAPSULATION_ID_CDR2_BE;
    }
}

} // namespace

// Turns one type code into a program. The types that it refers to are compiled on the way, each into a
// program of its own; final structures become a part of their parent.
class Compiler
{
public:
    static std::unique_ptr<Program> compile(const DDS_TypeCode &type)
    {
        std::unique_ptr<Program> program(new Program);
        Compiler(*program).run(*DDS_TypeCode_resolve_alias(&type));
        return program;
    }

private:
    explicit Compiler(Program &program) : program_(program) {}

    void run(const DDS_TypeCode &type)
    {
        if (type.kind == DDS_TK_STRUCT) {
            compileStruct(type);
        } else {
            program_.size_ = value(type, 0, {DDS_TK_NULL, {0}}, program_.ops_);
        }
        fillAccess(type);
        for (std::vector<Op> *ops : {&program_.ops_, &program_.keyOps_, &program_.parts_}) {
            for (Op &op : *ops) {
                op.shape = shapeOf(op);
            }
        }
        std::ranges::remove_copy_if(program_.ops_, std::back_inserter(program_.holders_), isPlain);
        program_.encapsulation_ = encapsulationOf(program_.extensibility_);
        program_.isFlat_ = program_.extensibility_ != DDS_MUTABLE_EXTENSIBILITY &&
                           program_.ops_.size() <= Program::kFlatOpMax;
        program_.hasOptional_ = std::ranges::any_of(program_.ops_, hasOptional);
        program_.blank_.resize(program_.size_);
        for (const Op &op : program_.ops_) {
            storeDefault(op, program_.blank_.data());
        }
        program_.isZeroDefault_ = std::ranges::all_of(
            program_.blank_, [](std::byte each) { return each == std::byte{0}; });
        std::uint64_t least = 0;
        for (const Op &op : program_.ops_) {
            least += leastWireSizeOf(op);
        }
        constexpr std::uint32_t kHeaderAlone = 4; // all members may be missing
        program_.leastWireSize_ =
            type.extensibility != DDS_FINAL_EXTENSIBILITY && program_.isStruct_
                ? kHeaderAlone
                : static_cast<std::uint32_t>(std::min<std::uint64_t>(least, DDS_UNBOUNDED));
    }

    void fillAccess(const DDS_TypeCode &type)
    {
        if (program_.isStruct_) {
            for (const DDS_TypeCodeMember &each : type.members) {
                program_.offsets_.push_back(each.offset);
            }
        }
        program_.access_ = {program_.size_, static_cast<DDS_UnsignedLong>(program_.offsets_.size()),
                            program_.offsets_.empty() ? nullptr : program_.offsets_.data()};
    }

    void compileStruct(const DDS_TypeCode &type)
    {
        if (type.size == 0 || type.members.empty() || type.base != nullptr) {
            refuse(type, "it has no structure in memory");
        }
        program_.isStruct_ = true;
        program_.extensibility_ = type.extensibility;
        program_.size_ = type.size;
        if (type.extensibility == DDS_MUTABLE_EXTENSIBILITY) {
            if (type.members.size() > kMaxMutableMembers) {
                refuse(type, "it has too many members");
            }
            for (const DDS_TypeCodeMember &each : type.members) {
                framedMember(type, each);
            }
        } else {
            for (const DDS_TypeCodeMember &each : type.members) {
                const std::size_t first = program_.ops_.size();
                member(type, each, 0, program_.ops_);
                program_.ops_[first].startsMember = true;
                program_.ops_[first].mustUnderstand = isKey(each);
            }
            joinRuns();
        }
        keyMembers(type, 0, program_.keyOps_);
    }

    void member(const DDS_TypeCode &owner, const DDS_TypeCodeMember &each, std::uint32_t base,
                std::vector<Op> &ops)
    {
        const std::uint32_t offset = base + each.offset;
        const std::uint32_t size = (each.marks & kOptional) != 0
                                       ? optional(*each.type, offset, ops)
                                       : value(*each.type, offset, each.defaultValue, ops);
        if (size != each.size) {
            refuse(owner, "a member's size in memory does not fit its type");
        }
    }

    // A member of a mutable structure: one operation, with what the member's header needs.
    void framedMember(const DDS_TypeCode &owner, const DDS_TypeCodeMember &each)
    {
        const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(each.type);
        if (resolved.kind == DDS_TK_STRUCT && (each.marks & kOptional) == 0) {
            separateStruct(resolved, each.offset, program_.ops_);
        } else {
            member(owner, each, 0, program_.ops_);
        }
        Op &op = program_.ops_.back();
        op.startsMember = true;
        op.memberId = each.id;
        op.mustUnderstand = isKey(each);
        op.lengthCode = lengthCodeOf(op);
    }

    std::uint32_t optional(const DDS_TypeCode &type, std::uint32_t offset, std::vector<Op> &ops)
    {
        const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(&type);
        Op op;
        op.offset = offset;
        if (resolved.kind == DDS_TK_STRING) {
            op.code = OpCode::Text;
            op.bound = resolved.length;
            op.isOptional = true;
        } else {
            op.code = OpCode::Optional;
            op.element = requireProgram(resolved);
        }
        ops.push_back(op);
        return sizeof(void *);
    }

    // Appends the operations of a value at `offset`; the result is its size in memory.
    std::uint32_t value(const DDS_TypeCode &type, std::uint32_t offset,
                        const DDS_AnnotationParameterValue &defaultValue, std::vector<Op> &ops)
    {
        const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(&type);
        switch (resolved.kind) {
        case DDS_TK_STRUCT:
            return structure(resolved, offset, ops);
        case DDS_TK_SEQUENCE:
            return sequence(resolved, offset, ops);
        case DDS_TK_ARRAY:
            return array(resolved, offset, ops);
        case DDS_TK_STRING:
            return text(resolved, offset, ops);
        case DDS_TK_ENUM:
            return enumeration(resolved, offset, defaultBitsOf(resolved, defaultValue), ops);
        default:
            return units(resolved, offset, 1, defaultBitsOf(resolved, defaultValue), ops);
        }
    }

    std::uint32_t units(const DDS_TypeCode &type, std::uint32_t offset, std::uint32_t count,
                        std::uint64_t defaultBits, std::vector<Op> &ops)
    {
        Op op;
        op.code = type.kind == DDS_TK_BOOLEAN ? OpCode::Booleans : OpCode::Units;
        op.unit = unitOf(type.kind);
        if (op.unit == 0) {
            refuse(type, "its kind has no serialized form");
        }
        op.alignment = std::min<std::uint8_t>(op.unit, kMaxAlignment);
        op.offset = offset;
        op.size = op.unit * count;
        op.defaultBits = defaultBits;
        ops.push_back(op);
        return op.size;
    }

    std::uint32_t enumeration(const DDS_TypeCode &type, std::uint32_t offset,
                              std::uint64_t defaultBits, std::vector<Op> &ops)
    {
        if (type.members.empty()) {
            refuse(type, "it has no values");
        }
        const auto [least, greatest] =
            std::ranges::minmax(type.members, {}, &DDS_TypeCodeMember::ordinal);
        Op op;
        op.code = OpCode::Enum;
        op.unit = sizeof(std::int32_t);
        op.alignment = op.unit;
        op.size = op.unit;
        op.offset = offset;
        op.least = least.ordinal;
        op.greatest = greatest.ordinal;
        const auto span = static_cast<std::int64_t>(op.greatest) - op.least + 1;
        op.gapped = span == static_cast<std::int64_t>(type.members.size()) ? nullptr : &type;
        op.defaultBits = defaultBits;
        ops.push_back(op);
        return op.size;
    }

    std::uint32_t text(const DDS_TypeCode &type, std::uint32_t offset, std::vector<Op> &ops)
    {
        Op op;
        op.code = OpCode::Text;
        op.offset = offset;
        op.bound = type.length;
        op.isLazy = type.isLazyText;
        ops.push_back(op);
        return sizeof(char *);
    }

    std::uint32_t sequence(const DDS_TypeCode &type, std::uint32_t offset, std::vector<Op> &ops)
    {
        const DDS_TypeCode &element = *DDS_TypeCode_resolve_alias(type.content);
        Op op;
        op.offset = offset;
        op.bound = type.length;
        op.unit = unitOf(element.kind);
        if (op.unit != 0) {
            op.code =
                element.kind == DDS_TK_BOOLEAN ? OpCode::BooleanSequence : OpCode::UnitSequence;
            op.sequenceElement = {op.unit, nullptr};
        } else {
            op.code = OpCode::Sequence;
            op.element = requireProgram(element);
            op.sequenceElement = {op.element->size(), &element};
        }
        ops.push_back(op);
        return sizeof(ZUVSequence);
    }

    std::uint32_t array(const DDS_TypeCode &type, std::uint32_t offset, std::vector<Op> &ops)
    {
        const DDS_TypeCode &element = *DDS_TypeCode_resolve_alias(type.content);
        if (type.length == 0) {
            refuse(type, "it has no elements");
        }
        if (unitOf(element.kind) != 0) {
            return units(element, offset, type.length, 0, ops);
        }
        Op op;
        op.code = OpCode::Array;
        op.offset = offset;
        op.element = requireProgram(element);
        op.count = type.length;
        ops.push_back(op);
        return op.count * op.element->size();
    }

    std::uint32_t structure(const DDS_TypeCode &type, std::uint32_t offset, std::vector<Op> &ops)
    {
        if (type.extensibility != DDS_FINAL_EXTENSIBILITY) {
            return separateStruct(type, offset, ops);
        }
        for (const DDS_TypeCodeMember &each : type.members) {
            member(type, each, offset, ops);
        }
        return type.size;
    }

    std::uint32_t separateStruct(const DDS_TypeCode &type, std::uint32_t offset,
                                 std::vector<Op> &ops)
    {
        Op op;
        op.code = OpCode::Struct;
        op.offset = offset;
        op.element = requireProgram(type);
        ops.push_back(op);
        return type.size;
    }

    // The key members of a structure; a member structure counts with its own key, or whole without one.
    void keyMembers(const DDS_TypeCode &type, std::uint32_t base, std::vector<Op> &ops)
    {
        std::vector<const DDS_TypeCodeMember *> keys;
        for (const DDS_TypeCodeMember &each : type.members) {
            if (isKey(each)) {
                keys.push_back(&each);
            }
        }
        std::ranges::stable_sort(keys, {}, &DDS_TypeCodeMember::id);
        for (const DDS_TypeCodeMember *each : keys) {
            keyMember(type, *each, base, ops);
        }
    }

    void keyMember(const DDS_TypeCode &owner, const DDS_TypeCodeMember &each, std::uint32_t base,
                   std::vector<Op> &ops)
    {
        const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(each.type);
        if (resolved.kind != DDS_TK_STRUCT) {
            member(owner, each, base, ops);
        } else if (std::ranges::any_of(resolved.members, isKey)) {
            keyMembers(resolved, base + each.offset, ops);
        } else {
            for (const DDS_TypeCodeMember &inner : resolved.members) {
                keyMember(resolved, inner, base + each.offset, ops);
            }
        }
    }

    // Primitives that lie the same way in memory and on the wire become one operation. In a type that may
    // grow it keeps its parts, since an older sample may end between two of them.
    void joinRuns()
    {
        program_.parts_ = std::move(program_.ops_);
        program_.ops_.clear();
        const std::span<const Op> parts(program_.parts_);
        for (std::size_t i = 0; i < parts.size();) {
            Op op = parts[i];
            std::size_t end = i + 1;
            for (; end < parts.size() && isRun(op, parts[end]); ++end) {
                op.size += parts[end].size;
                op.mustUnderstand = op.mustUnderstand || parts[end].mustUnderstand;
            }
            if (end - i > 1 && program_.extensibility_ == DDS_EXTENSIBLE_EXTENSIBILITY) {
                op.parts = parts.subspan(i, end - i);
            }
            program_.ops_.push_back(op);
            i = end;
        }
    }

    Program &program_;
};

const Program *Program::compile(const DDS_TypeCode *type)
{
    try {
        const DDS_TypeCode *resolved = DDS_TypeCode_resolve_alias(type);
        if (resolved == nullptr || resolved->slot == nullptr) {
            throw std::invalid_argument("compile type: it has no structure in memory");
        }
        if (ZUV_OSAPI_FAULT("typesys.compile")) {
            throw std::bad_alloc();
        }
        const Program *program = compileOnce(*resolved);
        if (type->slot != nullptr) {
            type->slot->program.store(program, std::memory_order_release);
        }
        return program;
    } catch (const std::exception &failure) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_LOG_ANY_FAILURE_s,
                failure.what());
        return nullptr;
    }
}

const Program *Program::compileOnce(const DDS_TypeCode &type)
{
    // One compilation at a time; it comes back here for the types that its type refers to.
    static std::recursive_mutex mutex;
    static unsigned depth = 0;
    constexpr unsigned kMaxDepth = 64;

    const std::lock_guard lock(mutex);
    const Program *program = type.slot->program.load(std::memory_order_acquire);
    if (program != nullptr) {
        return program;
    }
    if (depth == kMaxDepth) {
        refuse(type, "it is nested too deep, or within itself");
    }
    struct Level {
        Level() { ++depth; }
        ~Level() { --depth; }
    } level;
    program = Compiler::compile(type).release();
    type.slot->program.store(program, std::memory_order_release);
    return program;
}

} // namespace zuv
