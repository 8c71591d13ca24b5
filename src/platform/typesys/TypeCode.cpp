#include "platform/typesys/TypeCode.h"

#include <algorithm>
#include <bit>
#include <cstring>
#include <limits>

#include "platform/typesys/TypeTable.hpp"

namespace
{

constexpr DDS_TypeCode primitive(DDS_TCKind kind, zuv::TypeSlot *slot)
{
    return {.kind = kind, .slot = slot};
}

template <DDS_TCKind Kind>
constexpr DDS_TypeCode kPrimitive = primitive(Kind, &zuv::kSlot<Kind>);

} // namespace

constinit const DDS_TypeCode DDS_g_tc_null = primitive(DDS_TK_NULL, nullptr);
constinit const DDS_TypeCode DDS_g_tc_boolean = kPrimitive<DDS_TK_BOOLEAN>;
constinit const DDS_TypeCode DDS_g_tc_octet = kPrimitive<DDS_TK_OCTET>;
constinit const DDS_TypeCode DDS_g_tc_char = kPrimitive<DDS_TK_CHAR>;
constinit const DDS_TypeCode DDS_g_tc_short = kPrimitive<DDS_TK_SHORT>;
constinit const DDS_TypeCode DDS_g_tc_ushort = kPrimitive<DDS_TK_USHORT>;
constinit const DDS_TypeCode DDS_g_tc_long = kPrimitive<DDS_TK_LONG>;
constinit const DDS_TypeCode DDS_g_tc_ulong = kPrimitive<DDS_TK_ULONG>;
constinit const DDS_TypeCode DDS_g_tc_longlong = kPrimitive<DDS_TK_LONGLONG>;
constinit const DDS_TypeCode DDS_g_tc_ulonglong = kPrimitive<DDS_TK_ULONGLONG>;
constinit const DDS_TypeCode DDS_g_tc_float = kPrimitive<DDS_TK_FLOAT>;
constinit const DDS_TypeCode DDS_g_tc_double = kPrimitive<DDS_TK_DOUBLE>;
constinit const DDS_TypeCode DDS_g_tc_string = zuv::kText<DDS_UNBOUNDED>;

namespace
{

// Types may refer to themselves through sequences; nothing sensible is deeper than this.
constexpr unsigned kMaxDepth = 64;
constexpr unsigned kMaxComparisons = 1'000'000;

void report(DDS_ExceptionCode_t *exception, DDS_ExceptionCode_t code)
{
    if (exception != nullptr) {
        *exception = code;
    }
}

bool hasName(DDS_TCKind kind)
{
    return kind == DDS_TK_STRUCT || kind == DDS_TK_UNION || kind == DDS_TK_ENUM ||
           kind == DDS_TK_ALIAS;
}

bool hasMembers(DDS_TCKind kind)
{
    return kind == DDS_TK_STRUCT || kind == DDS_TK_UNION || kind == DDS_TK_ENUM;
}

bool hasContent(DDS_TCKind kind)
{
    return kind == DDS_TK_ALIAS || kind == DDS_TK_ARRAY || kind == DDS_TK_SEQUENCE ||
           kind == DDS_TK_UNION;
}

bool hasLength(DDS_TCKind kind)
{
    return kind == DDS_TK_STRING || kind == DDS_TK_SEQUENCE || kind == DDS_TK_ARRAY;
}

bool hasExtensibility(DDS_TCKind kind)
{
    return hasMembers(kind);
}

bool isAnyKind(DDS_TCKind)
{
    return true;
}

// `self` if it is a type code of a fitting kind; null, with the reason reported, otherwise.
const DDS_TypeCode *fitting(const DDS_TypeCode *self, bool (*fits)(DDS_TCKind),
                            DDS_ExceptionCode_t *exception)
{
    if (self == nullptr) {
        report(exception, DDS_BAD_PARAM_USER_EXCEPTION_CODE);
        return nullptr;
    }
    if (!fits(self->kind)) {
        report(exception, DDS_BADKIND_USER_EXCEPTION_CODE);
        return nullptr;
    }
    report(exception, DDS_NO_EXCEPTION_CODE);
    return self;
}

const DDS_TypeCodeMember *memberAt(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                   DDS_ExceptionCode_t *exception)
{
    if (fitting(self, hasMembers, exception) == nullptr) {
        return nullptr;
    }
    if (index >= self->members.size()) {
        report(exception, DDS_BOUNDS_USER_EXCEPTION_CODE);
        return nullptr;
    }
    return &self->members[index];
}

template <typename Predicate>
DDS_UnsignedLong findMember(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception,
                            DDS_ExceptionCode_t missing, Predicate predicate)
{
    if (fitting(self, hasMembers, exception) == nullptr) {
        return DDS_MEMBER_INDEX_INVALID;
    }
    const auto found = std::find_if(self->members.begin(), self->members.end(), predicate);
    if (found == self->members.end()) {
        report(exception, missing);
        return DDS_MEMBER_INDEX_INVALID;
    }
    return static_cast<DDS_UnsignedLong>(found - self->members.begin());
}

DDS_AnnotationParameterValue noValue()
{
    return {DDS_TK_NULL, {0}};
}

DDS_AnnotationParameterValue signedValue(DDS_TCKind kind, DDS_LongLong value)
{
    DDS_AnnotationParameterValue result = noValue();
    result.kind = kind;
    result.value.signedValue = value;
    return result;
}

DDS_AnnotationParameterValue unsignedValue(DDS_TCKind kind, DDS_UnsignedLongLong value)
{
    DDS_AnnotationParameterValue result = noValue();
    result.kind = kind;
    result.value.unsignedValue = value;
    return result;
}

DDS_AnnotationParameterValue floatValue(DDS_TCKind kind, DDS_Double value)
{
    DDS_AnnotationParameterValue result = noValue();
    result.kind = kind;
    result.value.floatValue = value;
    return result;
}

DDS_AnnotationParameterValue textValue(const char *text)
{
    DDS_AnnotationParameterValue result = noValue();
    result.kind = DDS_TK_STRING;
    result.value.text = text;
    return result;
}

enum class Extreme { Least, Greatest };

template <typename Number>
constexpr Number extremeOf(Extreme extreme)
{
    return extreme == Extreme::Least ? std::numeric_limits<Number>::lowest()
                                     : std::numeric_limits<Number>::max();
}

DDS_AnnotationParameterValue rangeOf(DDS_TCKind kind, Extreme extreme)
{
    switch (kind) {
    case DDS_TK_OCTET:
        return unsignedValue(kind, extremeOf<DDS_Octet>(extreme));
    case DDS_TK_USHORT:
        return unsignedValue(kind, extremeOf<DDS_UnsignedShort>(extreme));
    case DDS_TK_ULONG:
        return unsignedValue(kind, extremeOf<DDS_UnsignedLong>(extreme));
    case DDS_TK_ULONGLONG:
        return unsignedValue(kind, extremeOf<DDS_UnsignedLongLong>(extreme));
    case DDS_TK_SHORT:
        return signedValue(kind, extremeOf<DDS_Short>(extreme));
    case DDS_TK_LONG:
        return signedValue(kind, extremeOf<DDS_Long>(extreme));
    case DDS_TK_LONGLONG:
        return signedValue(kind, extremeOf<DDS_LongLong>(extreme));
    case DDS_TK_FLOAT:
        return floatValue(kind, extremeOf<DDS_Float>(extreme));
    case DDS_TK_DOUBLE:
        return floatValue(kind, extremeOf<DDS_Double>(extreme));
    default:
        return noValue();
    }
}

DDS_AnnotationParameterValue defaultOf(const DDS_TypeCode &type)
{
    switch (type.kind) {
    case DDS_TK_BOOLEAN:
    case DDS_TK_OCTET:
    case DDS_TK_USHORT:
    case DDS_TK_ULONG:
    case DDS_TK_ULONGLONG:
        return unsignedValue(type.kind, 0);
    case DDS_TK_CHAR:
    case DDS_TK_SHORT:
    case DDS_TK_LONG:
    case DDS_TK_LONGLONG:
        return signedValue(type.kind, 0);
    case DDS_TK_ENUM:
        return signedValue(type.kind, type.defaultOrdinal);
    case DDS_TK_FLOAT:
    case DDS_TK_DOUBLE:
        return floatValue(type.kind, 0);
    case DDS_TK_STRING:
        return textValue("");
    default:
        return noValue();
    }
}

// Compares two types, and those that they use each time that they are used. Definitions may come from a stranger, who
// needs few lines for types that use one another more often than there is time for, so the steps are bounded.
class Comparison
{
public:
    bool hasGivenUp() const { return stepsLeft_ == 0; }

    bool areEquivalent(const DDS_TypeCode &first, const DDS_TypeCode &second, unsigned depth)
    {
        const DDS_TypeCode &a = *DDS_TypeCode_resolve_alias(&first);
        const DDS_TypeCode &b = *DDS_TypeCode_resolve_alias(&second);
        if (&a == &b || depth == 0) {
            return true;
        }
        if (hasGivenUp() || --stepsLeft_ == 0) {
            return false;
        }
        return a.kind == b.kind && a.length == b.length && a.extensibility == b.extensibility &&
               areEquivalentOrNull(a.content, b.content, depth - 1) &&
               areEquivalentOrNull(a.base, b.base, depth - 1) &&
               std::equal(a.members.begin(), a.members.end(), b.members.begin(), b.members.end(),
                          [this, depth](const DDS_TypeCodeMember &x, const DDS_TypeCodeMember &y) {
                              return areEquivalentMembers(x, y, depth - 1);
                          });
    }

private:
    bool areEquivalentOrNull(const DDS_TypeCode *first, const DDS_TypeCode *second, unsigned depth)
    {
        if (first == nullptr || second == nullptr) {
            return first == second;
        }
        return areEquivalent(*first, *second, depth);
    }

    bool areEquivalentMembers(const DDS_TypeCodeMember &first, const DDS_TypeCodeMember &second,
                              unsigned depth)
    {
        return first.id == second.id && first.ordinal == second.ordinal &&
               first.marks == second.marks && std::strcmp(first.name, second.name) == 0 &&
               std::ranges::equal(first.labels, second.labels) &&
               areEquivalentOrNull(first.type, second.type, depth);
    }

    unsigned stepsLeft_ = kMaxComparisons;
};

} // namespace

DDS_TCKind DDS_TypeCode_kind(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, isAnyKind, exception) != nullptr ? self->kind : DDS_TK_NULL;
}

const char *DDS_TypeCode_name(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasName, exception) != nullptr ? self->name : nullptr;
}

DDS_ExtensibilityKind DDS_TypeCode_extensibility_kind(const DDS_TypeCode *self,
                                                      DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasExtensibility, exception) != nullptr ? self->extensibility
                                                                 : DDS_FINAL_EXTENSIBILITY;
}

DDS_Boolean DDS_TypeCode_is_nested(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasName, exception) != nullptr && self->isNested;
}

DDS_Boolean DDS_TypeCode_is_autoid_hash(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasName, exception) != nullptr && self->isAutoidHash;
}

DDS_UnsignedLong DDS_TypeCode_allowed_representations(const DDS_TypeCode *self,
                                                      DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasName, exception) != nullptr ? self->representations : 0;
}

DDS_UnsignedLong DDS_TypeCode_length(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasLength, exception) != nullptr ? self->length : 0;
}

const DDS_TypeCode *DDS_TypeCode_content_type(const DDS_TypeCode *self,
                                              DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasContent, exception) != nullptr ? self->content : nullptr;
}

const DDS_TypeCode *DDS_TypeCode_resolve_alias(const DDS_TypeCode *self)
{
    while (self != nullptr && self->kind == DDS_TK_ALIAS) {
        self = self->content;
    }
    return self;
}

const DDS_TypeCode *DDS_TypeCode_concrete_base_type(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception)
{
    const auto isStruct = [](DDS_TCKind kind) { return kind == DDS_TK_STRUCT; };
    return fitting(self, isStruct, exception) != nullptr ? self->base : nullptr;
}

DDS_UnsignedLong DDS_TypeCode_member_count(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception)
{
    return fitting(self, hasMembers, exception) != nullptr
               ? static_cast<DDS_UnsignedLong>(self->members.size())
               : 0;
}

const char *DDS_TypeCode_member_name(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                     DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? member->name : nullptr;
}

DDS_UnsignedLong DDS_TypeCode_find_member_by_name(const DDS_TypeCode *self, const char *name,
                                                  DDS_ExceptionCode_t *exception)
{
    if (name == nullptr) {
        report(exception, DDS_BAD_PARAM_USER_EXCEPTION_CODE);
        return DDS_MEMBER_INDEX_INVALID;
    }
    return findMember(
        self, exception, DDS_BAD_MEMBER_NAME_USER_EXCEPTION_CODE,
        [name](const DDS_TypeCodeMember &member) { return std::strcmp(member.name, name) == 0; });
}

DDS_UnsignedLong DDS_TypeCode_find_member_by_id(const DDS_TypeCode *self, DDS_UnsignedLong id,
                                                DDS_ExceptionCode_t *exception)
{
    return findMember(self, exception, DDS_BAD_MEMBER_ID_USER_EXCEPTION_CODE,
                      [id](const DDS_TypeCodeMember &member) { return member.id == id; });
}

const DDS_TypeCode *DDS_TypeCode_member_type(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                             DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? member->type : nullptr;
}

DDS_UnsignedLong DDS_TypeCode_member_id(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                        DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? member->id : 0;
}

DDS_Boolean DDS_TypeCode_is_member_key(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                       DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr && (member->marks & zuv::kKey) != 0;
}

DDS_Boolean DDS_TypeCode_is_member_optional(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                            DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr && (member->marks & zuv::kOptional) != 0;
}

DDS_Boolean DDS_TypeCode_is_member_required(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                            DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr && member->marks == zuv::kRequired;
}

DDS_Long DDS_TypeCode_member_ordinal(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                     DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? member->ordinal : 0;
}

DDS_AnnotationParameterValue DDS_TypeCode_member_default_value(const DDS_TypeCode *self,
                                                               DDS_UnsignedLong index,
                                                               DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    if (member == nullptr || member->type == nullptr) {
        return noValue();
    }
    return member->defaultValue.kind != DDS_TK_NULL
               ? member->defaultValue
               : defaultOf(*DDS_TypeCode_resolve_alias(member->type));
}

DDS_AnnotationParameterValue DDS_TypeCode_member_min_value(const DDS_TypeCode *self,
                                                           DDS_UnsignedLong index,
                                                           DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? DDS_TypeCode_min_value(member->type, nullptr) : noValue();
}

DDS_AnnotationParameterValue DDS_TypeCode_member_max_value(const DDS_TypeCode *self,
                                                           DDS_UnsignedLong index,
                                                           DDS_ExceptionCode_t *exception)
{
    const DDS_TypeCodeMember *member = memberAt(self, index, exception);
    return member != nullptr ? DDS_TypeCode_max_value(member->type, nullptr) : noValue();
}

DDS_AnnotationParameterValue DDS_TypeCode_default_value(const DDS_TypeCode *self,
                                                        DDS_ExceptionCode_t *exception)
{
    return fitting(self, isAnyKind, exception) != nullptr
               ? defaultOf(*DDS_TypeCode_resolve_alias(self))
               : noValue();
}

DDS_AnnotationParameterValue DDS_TypeCode_min_value(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception)
{
    return fitting(self, isAnyKind, exception) != nullptr
               ? rangeOf(DDS_TypeCode_resolve_alias(self)->kind, Extreme::Least)
               : noValue();
}

DDS_AnnotationParameterValue DDS_TypeCode_max_value(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception)
{
    return fitting(self, isAnyKind, exception) != nullptr
               ? rangeOf(DDS_TypeCode_resolve_alias(self)->kind, Extreme::Greatest)
               : noValue();
}

DDS_Boolean DDS_TypeCode_equivalent(const DDS_TypeCode *self, const DDS_TypeCode *other,
                                    DDS_ExceptionCode_t *exception)
{
    if (fitting(self, isAnyKind, exception) == nullptr ||
        fitting(other, isAnyKind, exception) == nullptr) {
        return DDS_BOOLEAN_FALSE;
    }
    Comparison comparison;
    const bool areEquivalent = comparison.areEquivalent(*self, *other, kMaxDepth);
    if (comparison.hasGivenUp()) {
        report(exception, DDS_BOUNDS_USER_EXCEPTION_CODE);
    }
    return areEquivalent;
}

DDS_UnsignedLong DDS_TypeCode_get_native_encapsulation(const DDS_TypeCode *self,
                                                       DDS_DataRepresentationId_t representation)
{
    const bool isAllowed = (DDS_TypeCode_allowed_representations(self, nullptr) &
                            DDS_XCDR2_DATA_REPRESENTATION_MASK) != 0;
    if (!isAllowed || (representation != DDS_XCDR2_DATA_REPRESENTATION &&
                       representation != DDS_AUTO_DATA_REPRESENTATION)) {
        return DDS_ENCAPSULATION_ID_INVALID;
    }
    constexpr DDS_UnsignedLong kLittleEndian = std::endian::native == std::endian::little ? 1 : 0;
    const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(self);
    if (resolved.kind != DDS_TK_STRUCT && resolved.kind != DDS_TK_UNION) {
        return DDS_ENCAPSULATION_ID_CDR2_BE + kLittleEndian;
    }
    switch (resolved.extensibility) {
    case DDS_EXTENSIBLE_EXTENSIBILITY:
        return DDS_ENCAPSULATION_ID_D_CDR2_BE + kLittleEndian;
    case DDS_MUTABLE_EXTENSIBILITY:
        return DDS_ENCAPSULATION_ID_PL_CDR2_BE + kLittleEndian;
    default:
        return DDS_ENCAPSULATION_ID_CDR2_BE + kLittleEndian;
    }
}
