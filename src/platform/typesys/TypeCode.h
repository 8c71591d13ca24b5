/* Type codes: the description of a type, to be walked at run time (DDS-XTypes 1.3, 7.2 and 7.5).
 *
 * A type code never changes once it exists, so any number of threads may walk it. Those of the system's
 * own types are constant data: they need no first use and are never released.
 *
 * An operation that does not fit the type code's kind, an index or name without a member, or a NULL
 * argument gives the neutral result that stands with the operation. Where `exception` is given it is set
 * to the reason, or to DDS_NO_EXCEPTION_CODE; it may be NULL. Strings belong to the type code. */
#ifndef ZUV_PLATFORM_TYPESYS_TYPE_CODE_H
#define ZUV_PLATFORM_TYPESYS_TYPE_CODE_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_TypeCode DDS_TypeCode;

typedef enum DDS_TCKind {
    DDS_TK_NULL = 0,
    DDS_TK_BOOLEAN,
    DDS_TK_OCTET,
    DDS_TK_CHAR,
    DDS_TK_SHORT,
    DDS_TK_USHORT,
    DDS_TK_LONG,
    DDS_TK_ULONG,
    DDS_TK_LONGLONG,
    DDS_TK_ULONGLONG,
    DDS_TK_FLOAT,
    DDS_TK_DOUBLE,
    DDS_TK_ENUM,
    DDS_TK_STRING,
    DDS_TK_ALIAS,
    DDS_TK_ARRAY,
    DDS_TK_SEQUENCE,
    DDS_TK_STRUCT,
    DDS_TK_UNION
} DDS_TCKind;

/* How a type may change while old and new still understand each other (7.2.3). */
typedef enum DDS_ExtensibilityKind {
    DDS_FINAL_EXTENSIBILITY = 0,
    DDS_EXTENSIBLE_EXTENSIBILITY = 1, /* appendable, the default of the type system */
    DDS_MUTABLE_EXTENSIBILITY = 2
} DDS_ExtensibilityKind;

typedef enum DDS_ExceptionCode_t {
    DDS_NO_EXCEPTION_CODE = 0,
    DDS_BAD_PARAM_USER_EXCEPTION_CODE,
    DDS_BADKIND_USER_EXCEPTION_CODE,
    DDS_BOUNDS_USER_EXCEPTION_CODE,
    DDS_BAD_MEMBER_NAME_USER_EXCEPTION_CODE,
    DDS_BAD_MEMBER_ID_USER_EXCEPTION_CODE
} DDS_ExceptionCode_t;

/* Data representations (7.6.3.1.1) and their bits in a mask of allowed ones. */
typedef DDS_Short DDS_DataRepresentationId_t;
#define DDS_AUTO_DATA_REPRESENTATION ((DDS_DataRepresentationId_t)-1)
#define DDS_XCDR_DATA_REPRESENTATION ((DDS_DataRepresentationId_t)0)
#define DDS_XML_DATA_REPRESENTATION ((DDS_DataRepresentationId_t)1)
#define DDS_XCDR2_DATA_REPRESENTATION ((DDS_DataRepresentationId_t)2)
#define DDS_XCDR_DATA_REPRESENTATION_MASK 0x1u
#define DDS_XCDR2_DATA_REPRESENTATION_MASK 0x4u

/* Encapsulation identifiers of a serialized payload (7.6.3.1.2). */
#define DDS_ENCAPSULATION_ID_CDR_BE 0x0000u
#define DDS_ENCAPSULATION_ID_CDR_LE 0x0001u
#define DDS_ENCAPSULATION_ID_PL_CDR_BE 0x0002u
#define DDS_ENCAPSULATION_ID_PL_CDR_LE 0x0003u
#define DDS_ENCAPSULATION_ID_CDR2_BE 0x0006u
#define DDS_ENCAPSULATION_ID_CDR2_LE 0x0007u
#define DDS_ENCAPSULATION_ID_D_CDR2_BE 0x0008u
#define DDS_ENCAPSULATION_ID_D_CDR2_LE 0x0009u
#define DDS_ENCAPSULATION_ID_PL_CDR2_BE 0x000au
#define DDS_ENCAPSULATION_ID_PL_CDR2_LE 0x000bu
/* A value above this is no identifier. */
#define DDS_ENCAPSULATION_ID_MAX 65534u
#define DDS_ENCAPSULATION_ID_INVALID 65535u

/* The bound of texts and sequences without one. */
#define DDS_UNBOUNDED 0x7fffffffu

/* A default, least or greatest value. `kind` is that of the member with aliases resolved and tells which
 * part of `value` counts: boolean and unsigned kinds `unsignedValue`, char, signed kinds and enumerations
 * `signedValue`, floating kinds `floatValue`, strings `text`. DDS_TK_NULL: the type has no such value. */
typedef struct DDS_AnnotationParameterValue {
    DDS_TCKind kind;
    union {
        DDS_LongLong signedValue;
        DDS_UnsignedLongLong unsignedValue;
        DDS_Double floatValue;
        const char *text;
    } value;
} DDS_AnnotationParameterValue;

/* The kind null, and the primitive types. */
extern const DDS_TypeCode DDS_g_tc_null;
extern const DDS_TypeCode DDS_g_tc_boolean;
extern const DDS_TypeCode DDS_g_tc_octet;
extern const DDS_TypeCode DDS_g_tc_char;
extern const DDS_TypeCode DDS_g_tc_short;
extern const DDS_TypeCode DDS_g_tc_ushort;
extern const DDS_TypeCode DDS_g_tc_long;
extern const DDS_TypeCode DDS_g_tc_ulong;
extern const DDS_TypeCode DDS_g_tc_longlong;
extern const DDS_TypeCode DDS_g_tc_ulonglong;
extern const DDS_TypeCode DDS_g_tc_float;
extern const DDS_TypeCode DDS_g_tc_double;
/* A text without a bound. */
extern const DDS_TypeCode DDS_g_tc_string;

/* DDS_TK_NULL for NULL. */
DDS_TCKind DDS_TypeCode_kind(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception);

/* The scoped name, such as "ZUV::Service::EntityState", of a structure, union, enumeration or alias;
 * NULL for other kinds. */
const char *DDS_TypeCode_name(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception);

/* Final for kinds that have no extensibility. */
DDS_ExtensibilityKind DDS_TypeCode_extensibility_kind(const DDS_TypeCode *self,
                                                      DDS_ExceptionCode_t *exception);

/* Whether a structure, union, enumeration or alias is nested, which means no topic's type (8.3.1.2); and
 * whether member ids that are not given come from the member's name. */
DDS_Boolean DDS_TypeCode_is_nested(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception);
DDS_Boolean DDS_TypeCode_is_autoid_hash(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception);

/* The mask of data representations that samples may have; 0 for kinds without a name. */
DDS_UnsignedLong DDS_TypeCode_allowed_representations(const DDS_TypeCode *self,
                                                      DDS_ExceptionCode_t *exception);

/* The bound of a text, in characters without the terminator, or of a sequence, in elements; DDS_UNBOUNDED
 * if there is none; for an array the number of its elements. 0 for other kinds. */
DDS_UnsignedLong DDS_TypeCode_length(const DDS_TypeCode *self, DDS_ExceptionCode_t *exception);

/* The element type of a sequence or array, the target of an alias, the discriminator of a union; NULL for
 * other kinds. */
const DDS_TypeCode *DDS_TypeCode_content_type(const DDS_TypeCode *self,
                                              DDS_ExceptionCode_t *exception);

/* The type behind any number of aliases; `self` itself if it is none. */
const DDS_TypeCode *DDS_TypeCode_resolve_alias(const DDS_TypeCode *self);

/* The base of a structure, NULL without one. Its members are not among the structure's own. */
const DDS_TypeCode *DDS_TypeCode_concrete_base_type(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception);

/* Members of a structure or union, and the enumerators of an enumeration, in the order of declaration.
 * Neutral results: 0, NULL, and for an index DDS_MEMBER_INDEX_INVALID. */
#define DDS_MEMBER_INDEX_INVALID 0xffffffffu
DDS_UnsignedLong DDS_TypeCode_member_count(const DDS_TypeCode *self,
                                           DDS_ExceptionCode_t *exception);
const char *DDS_TypeCode_member_name(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                     DDS_ExceptionCode_t *exception);
DDS_UnsignedLong DDS_TypeCode_find_member_by_name(const DDS_TypeCode *self, const char *name,
                                                  DDS_ExceptionCode_t *exception);
DDS_UnsignedLong DDS_TypeCode_find_member_by_id(const DDS_TypeCode *self, DDS_UnsignedLong id,
                                                DDS_ExceptionCode_t *exception);
const DDS_TypeCode *DDS_TypeCode_member_type(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                             DDS_ExceptionCode_t *exception);
DDS_UnsignedLong DDS_TypeCode_member_id(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                        DDS_ExceptionCode_t *exception);
DDS_Boolean DDS_TypeCode_is_member_key(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                       DDS_ExceptionCode_t *exception);
DDS_Boolean DDS_TypeCode_is_member_optional(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                            DDS_ExceptionCode_t *exception);
/* Neither key nor optional. */
DDS_Boolean DDS_TypeCode_is_member_required(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                            DDS_ExceptionCode_t *exception);
/* The number of an enumerator. */
DDS_Long DDS_TypeCode_member_ordinal(const DDS_TypeCode *self, DDS_UnsignedLong index,
                                     DDS_ExceptionCode_t *exception);

/* The value of a member that no one has set, and the range of a numeric one. For aggregates and
 * collections the kind is DDS_TK_NULL: their default is that of their parts, or empty. */
DDS_AnnotationParameterValue DDS_TypeCode_member_default_value(const DDS_TypeCode *self,
                                                               DDS_UnsignedLong index,
                                                               DDS_ExceptionCode_t *exception);
DDS_AnnotationParameterValue DDS_TypeCode_member_min_value(const DDS_TypeCode *self,
                                                           DDS_UnsignedLong index,
                                                           DDS_ExceptionCode_t *exception);
DDS_AnnotationParameterValue DDS_TypeCode_member_max_value(const DDS_TypeCode *self,
                                                           DDS_UnsignedLong index,
                                                           DDS_ExceptionCode_t *exception);
/* The same of the type itself: an enumeration, an alias, a primitive or a text. */
DDS_AnnotationParameterValue DDS_TypeCode_default_value(const DDS_TypeCode *self,
                                                        DDS_ExceptionCode_t *exception);
DDS_AnnotationParameterValue DDS_TypeCode_min_value(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception);
DDS_AnnotationParameterValue DDS_TypeCode_max_value(const DDS_TypeCode *self,
                                                    DDS_ExceptionCode_t *exception);

/* Whether two types are the same one but for their names and those of aliases: equal kinds, bounds,
 * extensibility, and members of equal names, ids, marks and equivalent types in the same order. Two NULL
 * are not equivalent: that, or one NULL, is a bad parameter. Types that use one another so often that a million
 * comparisons are not enough are out of bounds, and not equivalent. */
DDS_Boolean DDS_TypeCode_equivalent(const DDS_TypeCode *self, const DDS_TypeCode *other,
                                    DDS_ExceptionCode_t *exception);

/* The encapsulation identifier, in this machine's byte order, of samples of this type in a representation
 * that the type allows and this system writes, which is XCDR2; DDS_AUTO_DATA_REPRESENTATION chooses it.
 * DDS_ENCAPSULATION_ID_INVALID otherwise. */
DDS_UnsignedLong DDS_TypeCode_get_native_encapsulation(const DDS_TypeCode *self,
                                                       DDS_DataRepresentationId_t representation);

#ifdef __cplusplus
}
#endif

#endif
