/* Sequences of the primitive types and of texts. */
#ifndef ZUV_PLATFORM_TYPESYS_PRIMITIVE_SEQUENCES_H
#define ZUV_PLATFORM_TYPESYS_PRIMITIVE_SEQUENCES_H

#include "platform/typesys/Sequence.h"

#ifdef __cplusplus
extern "C" {
#endif

ZUV_SEQUENCE_DECLARE(DDS_BooleanSeq, DDS_Boolean)
ZUV_SEQUENCE_DECLARE(DDS_OctetSeq, DDS_Octet)
ZUV_SEQUENCE_DECLARE(DDS_LongSeq, DDS_Long)
ZUV_SEQUENCE_DECLARE(DDS_UnsignedLongSeq, DDS_UnsignedLong)

/* New elements are NULL whatever the element parameters say; an element that is not NULL belongs to the
 * sequence and comes from DDS_String_alloc or DDS_String_dup. */
ZUV_SEQUENCE_DECLARE(DDS_StringSeq, char *)

#ifdef __cplusplus
}
#endif

#endif
