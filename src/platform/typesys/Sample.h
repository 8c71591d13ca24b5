/* Operations on samples of any type that has a C structure, driven by its type code. The typed operations
 * of a type's family (TypeFamily.h) forward here.
 *
 * None of them locks; a sample belongs to one thread at a time. The first use of a type may come from
 * several threads at once. */
#ifndef ZUV_PLATFORM_TYPESYS_SAMPLE_H
#define ZUV_PLATFORM_TYPESYS_SAMPLE_H

#include "platform/typesys/AllocationParams.h"
#include "platform/typesys/PrintFormat.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The bytes of a sample in memory, without what it points to. */
DDS_UnsignedLong ZUVSample_getSize(const DDS_TypeCode *type);

/* Set each member to its default, in order, ignoring what the memory held. False for a NULL argument and
 * when there is no memory: then nothing stays allocated and the members are zeros. */
DDS_Boolean ZUVSample_initializeWithParams(const DDS_TypeCode *type, void *self,
                                           const DDS_TypeAllocationParams_t *params);
DDS_Boolean ZUVSample_initializeEx(const DDS_TypeCode *type, void *self,
                                   DDS_Boolean allocatePointers, DDS_Boolean allocateMemory);

/* Release what the members hold; pointers become NULL and sequences empty, so that finalizing twice does
 * no harm. A sequence that holds a loan forgets it. NULL arguments do nothing. */
void ZUVSample_finalizeWithParams(const DDS_TypeCode *type, void *self,
                                  const DDS_TypeDeallocationParams_t *params);
void ZUVSample_finalizeEx(const DDS_TypeCode *type, void *self, DDS_Boolean deletePointers);

/* Release the optional members alone, those of member structures and of elements included. */
void ZUVSample_finalizeOptionalMembers(const DDS_TypeCode *type, void *self,
                                       DDS_Boolean deletePointers);

/* Deep copy between initialized samples, member by member, in order. Storage of `destination` that is
 * large enough is kept, so that repeated copies into one sample soon allocate nothing. A copy onto itself
 * does nothing. False for a NULL argument, a text or sequence beyond its bound, a loan that is too small,
 * or no memory: then `destination` is valid, with some members copied. */
DDS_Boolean ZUVSample_copy(const DDS_TypeCode *type, void *destination, const void *source);

/* The same from a `source` of which nothing is wanted afterwards but that it is a valid sample: a long text for
 * which both samples have the same room changes places with the one in `destination` and is not copied. On
 * failure `source` is as it was. */
DDS_Boolean ZUVSample_handOver(const DDS_TypeCode *type, void *destination, void *source);

/* Copy the key members alone, with the same rules. */
DDS_Boolean ZUVSample_copyKey(const DDS_TypeCode *type, void *destination, const void *source);

/* Whether all members are equal: texts by content, a NULL one only to NULL, floats by their bits. */
DDS_Boolean ZUVSample_equals(const DDS_TypeCode *type, const void *first, const void *second);

/* A new initialized sample on the heap, or NULL. Release with ZUVSample_delete. */
void *ZUVSample_newWithParams(const DDS_TypeCode *type, const DDS_TypeAllocationParams_t *params);
void *ZUVSample_newEx(const DDS_TypeCode *type, DDS_Boolean allocatePointers);
void ZUVSample_deleteWithParams(const DDS_TypeCode *type, void *self,
                                const DDS_TypeDeallocationParams_t *params);
void ZUVSample_deleteEx(const DDS_TypeCode *type, void *self, DDS_Boolean deletePointers);

/* Write the sample to standard output in the default format, under a line `description` unless that is
 * NULL, indented by `indent` steps. A NULL sample prints as "NULL". */
void ZUVSample_print(const DDS_TypeCode *type, const void *self, const char *description,
                     DDS_UnsignedLong indent);

#ifdef __cplusplus
}
#endif

#endif
