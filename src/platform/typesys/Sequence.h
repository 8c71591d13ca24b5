/* Sequences: one record layout and one runtime for every element type.
 *
 * ZUV_SEQUENCE_DECLARE(TSeq, T) declares the record TSeq and its operations, ZUV_SEQUENCE_DEFINE defines
 * them, each as one line that forwards to the runtime below.
 *
 * A sequence owns its elements, or holds a loan: memory of somebody else, either one block of elements
 * (contiguous) or an array of pointers to elements (discontiguous). `_maximum` elements exist and are
 * initialized, the first `_length` of them count. A sequence that owns its elements grows when it has to;
 * one with a loan is never reallocated: what would need that is refused with DDS_LOG_SEQUENCE_NOT_OWNER.
 *
 * A record may be set up by DDS_SEQUENCE_INITIALIZER, by TSeq_initialize, or by filling it with zeros:
 * the operations that change a sequence first initialize a record that is not yet. Reading operations
 * take such a record for an empty sequence.
 *
 * No operation locks: one thread at a time may change a sequence, and none read it meanwhile. A NULL
 * sequence is a failed precondition. Failures are reported in the log. */
#ifndef ZUV_PLATFORM_TYPESYS_SEQUENCE_H
#define ZUV_PLATFORM_TYPESYS_SEQUENCE_H

#include <stddef.h>

#include "platform/typesys/AllocationParams.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

struct DDS_TypeCode;

#define DDS_SEQUENCE_MAGIC_NUMBER 29508
#define DDS_SEQUENCE_ABSOLUTE_MAXIMUM 0x7fffffff

/* The members of a sequence of T, in their fixed order. */
#define ZUV_SEQUENCE_MEMBERS(T)                                                                    \
    T *_contiguous_buffer;     /* elements; NULL without any, and for a discontiguous loan */      \
    T **_discontiguous_buffer; /* used when the sequence holds a loan of single elements */        \
    void *_read_token1;        /* left by a reader that lent the elements, for the return */       \
    void *_read_token2;                                                                            \
    DDS_UnsignedLong _maximum;                                                                     \
    DDS_UnsignedLong _length;                                                                      \
    DDS_Long _sequence_init; /* DDS_SEQUENCE_MAGIC_NUMBER once initialized */                      \
    DDS_Boolean _owned;                                                                            \
    DDS_TypeAllocationParams_t _elementAllocParams;                                                \
    DDS_UnsignedLong _absolute_maximum; /* the bound: _maximum never exceeds it */                 \
    DDS_TypeDeallocationParams_t _elementDeallocParams;

#define DDS_SEQUENCE_INITIALIZER                                                                   \
    {                                                                                              \
        NULL, NULL, NULL, NULL, 0, 0, DDS_SEQUENCE_MAGIC_NUMBER, DDS_BOOLEAN_TRUE,                 \
            DDS_TYPE_ALLOCATION_PARAMS_INITIALIZER, DDS_SEQUENCE_ABSOLUTE_MAXIMUM,                 \
            DDS_TYPE_DEALLOCATION_PARAMS_INITIALIZER                                               \
    }

/* Any sequence, seen without its element type. A pointer to a TSeq may be cast to one to this. */
typedef struct __attribute__((may_alias)) ZUVSequence {
    ZUV_SEQUENCE_MEMBERS(void)
} ZUVSequence;

/* What the runtime must know of the elements. */
typedef struct ZUVSequenceElement {
    DDS_UnsignedLong size; /* bytes of one element in memory */
    const struct DDS_TypeCode
        *typeCode; /* drives initialize, copy and finalize; NULL: plain bytes */
} ZUVSequenceElement;

/* The untyped runtime. See the typed operations below for what each does. */
DDS_Boolean ZUVSequence_initialize(ZUVSequence *self);
DDS_Boolean ZUVSequence_finalize(ZUVSequence *self, const ZUVSequenceElement *element);
DDS_Long ZUVSequence_getMaximum(const ZUVSequence *self);
DDS_Boolean ZUVSequence_setMaximum(ZUVSequence *self, const ZUVSequenceElement *element,
                                   DDS_Long maximum);
DDS_Boolean ZUVSequence_setAbsoluteMaximum(ZUVSequence *self, DDS_Long maximum);
DDS_Long ZUVSequence_getLength(const ZUVSequence *self);
DDS_Boolean ZUVSequence_setLength(ZUVSequence *self, const ZUVSequenceElement *element,
                                  DDS_Long length);
DDS_Boolean ZUVSequence_ensureLength(ZUVSequence *self, const ZUVSequenceElement *element,
                                     DDS_Long length, DDS_Long maximum);
/* As TSeq_get: copies the bytes of an element to `value`, zeros where TSeq_get gives zeros. */
void ZUVSequence_get(const ZUVSequence *self, const ZUVSequenceElement *element, DDS_Long index,
                     void *value);
void *ZUVSequence_getReference(const ZUVSequence *self, const ZUVSequenceElement *element,
                               DDS_Long index);
ZUVSequence *ZUVSequence_copy(ZUVSequence *self, const ZUVSequenceElement *element,
                              const ZUVSequence *source);
DDS_Boolean ZUVSequence_copyNoAlloc(ZUVSequence *self, const ZUVSequenceElement *element,
                                    const ZUVSequence *source);
DDS_Boolean ZUVSequence_fromArray(ZUVSequence *self, const ZUVSequenceElement *element,
                                  const void *array, DDS_Long length);
DDS_Boolean ZUVSequence_toArray(const ZUVSequence *self, const ZUVSequenceElement *element,
                                void *array, DDS_Long length);
DDS_Boolean ZUVSequence_loanContiguous(ZUVSequence *self, void *buffer, DDS_Long length,
                                       DDS_Long maximum);
DDS_Boolean ZUVSequence_loanDiscontiguous(ZUVSequence *self, void **buffer, DDS_Long length,
                                          DDS_Long maximum);
DDS_Boolean ZUVSequence_unloan(ZUVSequence *self);
void *ZUVSequence_getContiguousBuffer(const ZUVSequence *self);
void **ZUVSequence_getDiscontiguousBuffer(const ZUVSequence *self);
DDS_Boolean ZUVSequence_hasOwnership(const ZUVSequence *self);
void ZUVSequence_getReadToken(const ZUVSequence *self, void **token1, void **token2);
void ZUVSequence_setReadToken(ZUVSequence *self, void *token1, void *token2);
DDS_Boolean ZUVSequence_checkInvariants(const ZUVSequence *self);
void ZUVSequence_deleteBuffer(ZUVSequence *self, const ZUVSequenceElement *element);
DDS_Boolean ZUVSequence_getElementPointersAllocation(const ZUVSequence *self);
DDS_Boolean ZUVSequence_setElementPointersAllocation(ZUVSequence *self, DDS_Boolean allocate);
void ZUVSequence_getElementAllocationParams(const ZUVSequence *self,
                                            DDS_TypeAllocationParams_t *params);
DDS_Boolean ZUVSequence_setElementAllocationParams(ZUVSequence *self,
                                                   const DDS_TypeAllocationParams_t *params);
void ZUVSequence_getElementDeallocationParams(const ZUVSequence *self,
                                              DDS_TypeDeallocationParams_t *params);
DDS_Boolean ZUVSequence_setElementDeallocationParams(ZUVSequence *self,
                                                     const DDS_TypeDeallocationParams_t *params);

/* The record TSeq and its operations. A DDS_Boolean result is false on failure; unless told otherwise the
 * sequence is then as it was.
 *
 *  _initialize           an empty sequence that owns its elements; the record's old content is ignored
 *  _finalize             releases the elements and leaves an empty sequence; refused for a loan
 *  _get_maximum          how many elements there is room for
 *  _set_maximum          room for exactly `maximum` elements, at most the absolute maximum; elements beyond
 *                        it are released, new ones initialized; refused for a loan and for less than 0
 *  _set_absolute_maximum the bound of _set_maximum, not below the present maximum
 *  _get_length           how many elements count
 *  _set_length           beyond the maximum, an owned sequence grows to just this length
 *  _ensure_length        sets the length; beyond the maximum, an owned sequence grows to `maximum`
 *  _get                  the element at `index` by value, its pointers still owned by the sequence; an
 *                        index outside the length gives zeros
 *  _get_reference        the same by address, valid until the sequence grows; NULL outside the length
 *  _copy                 deep copy of `source` into `self`, growing it if needed; returns self or NULL.
 *                        After a failure the elements of `self` are valid, with unspecified values
 *  _copy_no_alloc        the same, refused when `self` has not room enough already; strings within the
 *                        elements may still be allocated
 *  _from_array           makes the sequence a deep copy of an array
 *  _to_array             deep copy of the first `length` elements into an array of initialized elements
 *  _loan_contiguous      lends `maximum` elements in one block, `length` of which count, to a sequence that
 *                        owns none (maximum 0). The lender keeps the block and its elements
 *  _loan_discontiguous   the same for an array of pointers to elements
 *  _unloan               ends the loan and leaves an empty sequence that owns its elements; done already
 *                        for a sequence that owns none; refused for one that owns some
 *  _get_contiguous_buffer, _get_discontiguous_buffer   the block or array itself, NULL if there is none
 *  _has_ownership        false while a loan is held
 *  _get_read_tokenI, _set_read_tokenI   what a reader keeps here to recognise its loan
 *  _check_invariantsI    whether the record is consistent
 *  _delete_bufferI       releases the elements that the sequence owns
 *  _set_element_...      how further elements are initialized and finalized; for an empty maximum only */
#define ZUV_SEQUENCE_DECLARE(TSeq, T)                                                              \
    typedef struct TSeq {                                                                          \
        ZUV_SEQUENCE_MEMBERS(T)                                                                    \
    } TSeq;                                                                                        \
    ZUV_SEQUENCE_DECLARE_OPERATIONS(TSeq, T)

#define ZUV_SEQUENCE_DECLARE_OPERATIONS(TSeq, T)                                                   \
    DDS_Boolean TSeq##_initialize(TSeq *self);                                                     \
    DDS_Boolean TSeq##_finalize(TSeq *self);                                                       \
    DDS_Long TSeq##_get_maximum(const TSeq *self);                                                 \
    DDS_Boolean TSeq##_set_maximum(TSeq *self, DDS_Long maximum);                                  \
    DDS_Boolean TSeq##_set_absolute_maximum(TSeq *self, DDS_Long maximum);                         \
    DDS_Long TSeq##_get_length(const TSeq *self);                                                  \
    DDS_Boolean TSeq##_set_length(TSeq *self, DDS_Long length);                                    \
    DDS_Boolean TSeq##_ensure_length(TSeq *self, DDS_Long length, DDS_Long maximum);               \
    T TSeq##_get(const TSeq *self, DDS_Long index);                                                \
    T *TSeq##_get_reference(const TSeq *self, DDS_Long index);                                     \
    TSeq *TSeq##_copy(TSeq *self, const TSeq *source);                                             \
    DDS_Boolean TSeq##_copy_no_alloc(TSeq *self, const TSeq *source);                              \
    DDS_Boolean TSeq##_copy_no_allocI(TSeq *self, const TSeq *source);                             \
    DDS_Boolean TSeq##_from_array(TSeq *self, T const *array, DDS_Long length);                    \
    DDS_Boolean TSeq##_to_array(const TSeq *self, T *array, DDS_Long length);                      \
    DDS_Boolean TSeq##_loan_contiguous(TSeq *self, T *buffer, DDS_Long length, DDS_Long maximum);  \
    DDS_Boolean TSeq##_loan_discontiguous(TSeq *self, T **buffer, DDS_Long length,                 \
                                          DDS_Long maximum);                                       \
    DDS_Boolean TSeq##_unloan(TSeq *self);                                                         \
    T *TSeq##_get_contiguous_buffer(const TSeq *self);                                             \
    T *TSeq##_get_contiguous_bufferI(const TSeq *self);                                            \
    T **TSeq##_get_discontiguous_buffer(const TSeq *self);                                         \
    T **TSeq##_get_discontiguous_bufferI(const TSeq *self);                                        \
    DDS_Boolean TSeq##_has_ownership(const TSeq *self);                                            \
    void TSeq##_get_read_tokenI(const TSeq *self, void **token1, void **token2);                   \
    void TSeq##_set_read_tokenI(TSeq *self, void *token1, void *token2);                           \
    DDS_Boolean TSeq##_check_invariantsI(const TSeq *self);                                        \
    void TSeq##_delete_bufferI(TSeq *self);                                                        \
    DDS_Boolean TSeq##_get_element_pointers_allocation(const TSeq *self);                          \
    DDS_Boolean TSeq##_set_element_pointers_allocation(TSeq *self, DDS_Boolean allocate);          \
    void TSeq##_get_element_allocation_params(const TSeq *self,                                    \
                                              DDS_TypeAllocationParams_t *params);                 \
    DDS_Boolean TSeq##_set_element_allocation_params(TSeq *self,                                   \
                                                     const DDS_TypeAllocationParams_t *params);    \
    void TSeq##_get_element_deallocation_params(const TSeq *self,                                  \
                                                DDS_TypeDeallocationParams_t *params);             \
    DDS_Boolean TSeq##_set_element_deallocation_params(                                            \
        TSeq *self, const DDS_TypeDeallocationParams_t *params);

/* Defines what ZUV_SEQUENCE_DECLARE declared. TYPE_CODE is the address of the element's type code, or NULL
 * for elements that are copied as plain bytes and start as zeros. */
#define ZUV_SEQUENCE_DEFINE(TSeq, T, TYPE_CODE)                                                    \
    static const ZUVSequenceElement TSeq##_g_element = {sizeof(T), TYPE_CODE};                     \
    DDS_Boolean TSeq##_initialize(TSeq *self)                                                      \
    {                                                                                              \
        return ZUVSequence_initialize((ZUVSequence *)self);                                        \
    }                                                                                              \
    DDS_Boolean TSeq##_finalize(TSeq *self)                                                        \
    {                                                                                              \
        return ZUVSequence_finalize((ZUVSequence *)self, &TSeq##_g_element);                       \
    }                                                                                              \
    DDS_Long TSeq##_get_maximum(const TSeq *self)                                                  \
    {                                                                                              \
        return ZUVSequence_getMaximum((const ZUVSequence *)self);                                  \
    }                                                                                              \
    DDS_Boolean TSeq##_set_maximum(TSeq *self, DDS_Long maximum)                                   \
    {                                                                                              \
        return ZUVSequence_setMaximum((ZUVSequence *)self, &TSeq##_g_element, maximum);            \
    }                                                                                              \
    DDS_Boolean TSeq##_set_absolute_maximum(TSeq *self, DDS_Long maximum)                          \
    {                                                                                              \
        return ZUVSequence_setAbsoluteMaximum((ZUVSequence *)self, maximum);                       \
    }                                                                                              \
    DDS_Long TSeq##_get_length(const TSeq *self)                                                   \
    {                                                                                              \
        return ZUVSequence_getLength((const ZUVSequence *)self);                                   \
    }                                                                                              \
    DDS_Boolean TSeq##_set_length(TSeq *self, DDS_Long length)                                     \
    {                                                                                              \
        return ZUVSequence_setLength((ZUVSequence *)self, &TSeq##_g_element, length);              \
    }                                                                                              \
    DDS_Boolean TSeq##_ensure_length(TSeq *self, DDS_Long length, DDS_Long maximum)                \
    {                                                                                              \
        return ZUVSequence_ensureLength((ZUVSequence *)self, &TSeq##_g_element, length, maximum);  \
    }                                                                                              \
    T TSeq##_get(const TSeq *self, DDS_Long index)                                                 \
    {                                                                                              \
        T value;                                                                                   \
        ZUVSequence_get((const ZUVSequence *)self, &TSeq##_g_element, index, &value);              \
        return value;                                                                              \
    }                                                                                              \
    T *TSeq##_get_reference(const TSeq *self, DDS_Long index)                                      \
    {                                                                                              \
        return (T *)ZUVSequence_getReference((const ZUVSequence *)self, &TSeq##_g_element, index); \
    }                                                                                              \
    TSeq *TSeq##_copy(TSeq *self, const TSeq *source)                                              \
    {                                                                                              \
        return (TSeq *)ZUVSequence_copy((ZUVSequence *)self, &TSeq##_g_element,                    \
                                        (const ZUVSequence *)source);                              \
    }                                                                                              \
    DDS_Boolean TSeq##_copy_no_alloc(TSeq *self, const TSeq *source)                               \
    {                                                                                              \
        return ZUVSequence_copyNoAlloc((ZUVSequence *)self, &TSeq##_g_element,                     \
                                       (const ZUVSequence *)source);                               \
    }                                                                                              \
    DDS_Boolean TSeq##_copy_no_allocI(TSeq *self, const TSeq *source)                              \
    {                                                                                              \
        return TSeq##_copy_no_alloc(self, source);                                                 \
    }                                                                                              \
    DDS_Boolean TSeq##_from_array(TSeq *self, T const *array, DDS_Long length)                     \
    {                                                                                              \
        return ZUVSequence_fromArray((ZUVSequence *)self, &TSeq##_g_element, array, length);       \
    }                                                                                              \
    DDS_Boolean TSeq##_to_array(const TSeq *self, T *array, DDS_Long length)                       \
    {                                                                                              \
        return ZUVSequence_toArray((const ZUVSequence *)self, &TSeq##_g_element, array, length);   \
    }                                                                                              \
    DDS_Boolean TSeq##_loan_contiguous(TSeq *self, T *buffer, DDS_Long length, DDS_Long maximum)   \
    {                                                                                              \
        return ZUVSequence_loanContiguous((ZUVSequence *)self, buffer, length, maximum);           \
    }                                                                                              \
    DDS_Boolean TSeq##_loan_discontiguous(TSeq *self, T **buffer, DDS_Long length,                 \
                                          DDS_Long maximum)                                        \
    {                                                                                              \
        return ZUVSequence_loanDiscontiguous((ZUVSequence *)self, (void **)buffer, length,         \
                                             maximum);                                             \
    }                                                                                              \
    DDS_Boolean TSeq##_unloan(TSeq *self)                                                          \
    {                                                                                              \
        return ZUVSequence_unloan((ZUVSequence *)self);                                            \
    }                                                                                              \
    T *TSeq##_get_contiguous_buffer(const TSeq *self)                                              \
    {                                                                                              \
        return (T *)ZUVSequence_getContiguousBuffer((const ZUVSequence *)self);                    \
    }                                                                                              \
    T *TSeq##_get_contiguous_bufferI(const TSeq *self)                                             \
    {                                                                                              \
        return TSeq##_get_contiguous_buffer(self);                                                 \
    }                                                                                              \
    T **TSeq##_get_discontiguous_buffer(const TSeq *self)                                          \
    {                                                                                              \
        return (T **)ZUVSequence_getDiscontiguousBuffer((const ZUVSequence *)self);                \
    }                                                                                              \
    T **TSeq##_get_discontiguous_bufferI(const TSeq *self)                                         \
    {                                                                                              \
        return TSeq##_get_discontiguous_buffer(self);                                              \
    }                                                                                              \
    DDS_Boolean TSeq##_has_ownership(const TSeq *self)                                             \
    {                                                                                              \
        return ZUVSequence_hasOwnership((const ZUVSequence *)self);                                \
    }                                                                                              \
    void TSeq##_get_read_tokenI(const TSeq *self, void **token1, void **token2)                    \
    {                                                                                              \
        ZUVSequence_getReadToken((const ZUVSequence *)self, token1, token2);                       \
    }                                                                                              \
    void TSeq##_set_read_tokenI(TSeq *self, void *token1, void *token2)                            \
    {                                                                                              \
        ZUVSequence_setReadToken((ZUVSequence *)self, token1, token2);                             \
    }                                                                                              \
    DDS_Boolean TSeq##_check_invariantsI(const TSeq *self)                                         \
    {                                                                                              \
        return ZUVSequence_checkInvariants((const ZUVSequence *)self);                             \
    }                                                                                              \
    void TSeq##_delete_bufferI(TSeq *self)                                                         \
    {                                                                                              \
        ZUVSequence_deleteBuffer((ZUVSequence *)self, &TSeq##_g_element);                          \
    }                                                                                              \
    DDS_Boolean TSeq##_get_element_pointers_allocation(const TSeq *self)                           \
    {                                                                                              \
        return ZUVSequence_getElementPointersAllocation((const ZUVSequence *)self);                \
    }                                                                                              \
    DDS_Boolean TSeq##_set_element_pointers_allocation(TSeq *self, DDS_Boolean allocate)           \
    {                                                                                              \
        return ZUVSequence_setElementPointersAllocation((ZUVSequence *)self, allocate);            \
    }                                                                                              \
    void TSeq##_get_element_allocation_params(const TSeq *self,                                    \
                                              DDS_TypeAllocationParams_t *params)                  \
    {                                                                                              \
        ZUVSequence_getElementAllocationParams((const ZUVSequence *)self, params);                 \
    }                                                                                              \
    DDS_Boolean TSeq##_set_element_allocation_params(TSeq *self,                                   \
                                                     const DDS_TypeAllocationParams_t *params)     \
    {                                                                                              \
        return ZUVSequence_setElementAllocationParams((ZUVSequence *)self, params);                \
    }                                                                                              \
    void TSeq##_get_element_deallocation_params(const TSeq *self,                                  \
                                                DDS_TypeDeallocationParams_t *params)              \
    {                                                                                              \
        ZUVSequence_getElementDeallocationParams((const ZUVSequence *)self, params);               \
    }                                                                                              \
    DDS_Boolean TSeq##_set_element_deallocation_params(TSeq *self,                                 \
                                                       const DDS_TypeDeallocationParams_t *params) \
    {                                                                                              \
        return ZUVSequence_setElementDeallocationParams((ZUVSequence *)self, params);              \
    }

#ifdef __cplusplus
}
#endif

#endif
