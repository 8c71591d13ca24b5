// The record behind a type code, and the constant expressions with which a type's table is written.
//
//   constexpr DDS_TypeCodeMember kPointMembers[] = {
//       ZUV_TYPE_MEMBER(Point, x, DDS_g_tc_long, zuv::kKey),
//       ZUV_TYPE_MEMBER(Point, label, zuv::kText<255>, zuv::kOptional),
//   };
//   ZUV_TYPE_STRUCT(Point, "Example::Point", DDS_EXTENSIBLE_EXTENSIBILITY, zuv::kIsTopic, kPointMembers);
//
// The result, Point_g_typecode, is constant data. What is computed from it is kept in the type's slot.
#ifndef ZUV_PLATFORM_TYPESYS_TYPE_TABLE_HPP
#define ZUV_PLATFORM_TYPESYS_TYPE_TABLE_HPP

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <span>

#include "platform/typesys/Md5.hpp"
#include "platform/typesys/TypeCode.h"
#include "platform/typesys/TypePlugin.h"

namespace zuv
{

class Program;

// What is computed from a type code on first use and stays for the life of the process.
struct TypeSlot {
    std::atomic<const Program *> program{nullptr};
    std::atomic<std::uint32_t> programUsers{0};
};

// Marks of a member.
enum MemberMarks : std::uint8_t { kRequired = 0, kKey = 1, kOptional = 2 };

// Whether a type may be a topic's type.
enum Nesting : bool { kIsTopic = false, kIsNested = true };

constexpr DDS_UnsignedLong kXcdr2Only = DDS_XCDR2_DATA_REPRESENTATION_MASK;
constexpr DDS_UnsignedLong kXcdrAndXcdr2 =
    DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK;

} // namespace zuv

// A member of a structure or union, or an enumerator.
struct DDS_TypeCodeMember {
    const char *name = nullptr;
    const DDS_TypeCode *type = nullptr; // null for an enumerator
    std::uint32_t id = 0;
    std::uint32_t offset = 0; // in memory
    std::uint32_t size = 0;   // of the member in memory; for an optional one, of the pointer
    std::int32_t ordinal = 0; // of an enumerator
    std::uint8_t marks = zuv::kRequired;
    DDS_AnnotationParameterValue defaultValue = {DDS_TK_NULL, {0}}; // null: that of the type
    std::span<const std::int32_t> labels = {}; // of a union's member; empty: the default member
};

struct DDS_TypeCode {
    DDS_TCKind kind = DDS_TK_NULL;
    const char *name = nullptr;
    std::uint32_t size = 0;   // structure: bytes in memory; 0 for a type without a C structure
    std::uint32_t length = 0; // bound of a text or sequence, elements of an array
    const DDS_TypeCode *content = nullptr; // element, target of an alias, discriminator
    const DDS_TypeCode *base = nullptr;
    std::span<const DDS_TypeCodeMember> members = {};
    DDS_ExtensibilityKind extensibility = DDS_FINAL_EXTENSIBILITY;
    bool isNested = false;
    bool isAutoidHash = false;
    bool isLazyText = false; // a text that is NULL until someone sets it
    std::uint32_t representations = 0;
    std::int32_t defaultOrdinal = 0;
    zuv::TypeSlot *slot = nullptr; // null for a type that has only a description
};

namespace zuv
{

// The programs of types without a name need a slot as well.
template <auto...>
inline constinit TypeSlot kSlot{};

// A text of at most Bound characters.
template <std::uint32_t Bound>
inline constexpr DDS_TypeCode kText = {
    .kind = DDS_TK_STRING, .length = Bound, .slot = &kSlot<DDS_TK_STRING, Bound>};

// A sequence of at most Bound, or an array of Count, elements of another type.
template <const DDS_TypeCode &Element, std::uint32_t Bound = DDS_UNBOUNDED>
inline constexpr DDS_TypeCode kSequence = {.kind = DDS_TK_SEQUENCE,
                                           .length = Bound,
                                           .content = &Element,
                                           .slot = &kSlot<DDS_TK_SEQUENCE, Bound, &Element>};
template <const DDS_TypeCode &Element, std::uint32_t Count>
inline constexpr DDS_TypeCode kArray = {.kind = DDS_TK_ARRAY,
                                        .length = Count,
                                        .content = &Element,
                                        .slot = &kSlot<DDS_TK_ARRAY, Count, &Element>};

constexpr DDS_TypeCode makeStruct(const char *name, std::uint32_t size,
                                  DDS_ExtensibilityKind extensibility, Nesting nesting,
                                  std::span<const DDS_TypeCodeMember> members, TypeSlot *slot)
{
    return {.kind = DDS_TK_STRUCT,
            .name = name,
            .size = size,
            .members = members,
            .extensibility = extensibility,
            .isNested = nesting == kIsNested,
            .isAutoidHash = true,
            .representations = kXcdr2Only,
            .slot = slot};
}

constexpr DDS_TypeCode makeEnum(const char *name, DDS_ExtensibilityKind extensibility,
                                std::int32_t defaultOrdinal,
                                std::span<const DDS_TypeCodeMember> enumerators, TypeSlot *slot)
{
    return {.kind = DDS_TK_ENUM,
            .name = name,
            .members = enumerators,
            .extensibility = extensibility,
            .representations = kXcdrAndXcdr2,
            .defaultOrdinal = defaultOrdinal,
            .slot = slot};
}

constexpr DDS_TypeCode makeAlias(const char *name, const DDS_TypeCode &target, TypeSlot *slot)
{
    return {.kind = DDS_TK_ALIAS,
            .name = name,
            .content = &target,
            .representations = kXcdrAndXcdr2,
            .slot = slot};
}

} // namespace zuv

#define ZUV_TYPE_MEMBER(T, MEMBER, TYPE, MARKS)                                                    \
    {                                                                                              \
        .name = #MEMBER, .type = &(TYPE), .id = zuv::memberIdOf(#MEMBER),                          \
        .offset = offsetof(T, MEMBER), .size = sizeof(T::MEMBER), .marks = (MARKS)                 \
    }

// An enumerator that the binding names T_NAME.
#define ZUV_TYPE_ENUMERATOR(T, NAME)                                                               \
    {                                                                                              \
        .name = #NAME, .ordinal = T##_##NAME                                                       \
    }

#define ZUV_TYPE_STRUCT(T, NAME, EXTENSIBILITY, NESTING, MEMBERS)                                  \
    static constinit zuv::TypeSlot T##_g_slot{};                                                   \
    constinit const DDS_TypeCode T##_g_typecode =                                                  \
        zuv::makeStruct(NAME, sizeof(T), EXTENSIBILITY, NESTING, MEMBERS, &T##_g_slot)

#define ZUV_TYPE_ENUM(T, NAME, EXTENSIBILITY, DEFAULT, ENUMERATORS)                                \
    static_assert(sizeof(T) == sizeof(std::int32_t));                                              \
    static constinit zuv::TypeSlot T##_g_slot{};                                                   \
    constinit const DDS_TypeCode T##_g_typecode =                                                  \
        zuv::makeEnum(NAME, EXTENSIBILITY, DEFAULT, ENUMERATORS, &T##_g_slot)

#define ZUV_TYPE_ALIAS(T, NAME, TARGET)                                                            \
    static constinit zuv::TypeSlot T##_g_slot{};                                                   \
    constinit const DDS_TypeCode T##_g_typecode = zuv::makeAlias(NAME, TARGET, &T##_g_slot)

#endif
