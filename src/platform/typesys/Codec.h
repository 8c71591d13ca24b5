/* The serialized form of samples: XCDR2 (DDS-XTypes 1.3, 7.4.3), run from the type's program.
 *
 * A payload begins with the four octets of the encapsulation header: the identifier of the
 * encoding, and options whose low two bits count the zero octets that pad the payload to a multiple of
 * four. Payloads are written in this machine's byte order and read in both.
 *
 * A payload is checked whole before a byte of it is believed: lengths, bounds, delimiters, terminators of
 * texts, values of enumerations. One that lies is refused without reading beyond its end. */
#ifndef ZUV_PLATFORM_TYPESYS_CODEC_H
#define ZUV_PLATFORM_TYPESYS_CODEC_H

#include "platform/typesys/PrintFormat.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The size of what has none: a type with an unbounded member. */
#define ZUV_CODEC_UNBOUNDED_SIZE 0x7ffffbffu

/* The key hash of a sample (DDSI-RTPS 2.5, 9.6.4.8). */
typedef struct ZUVKeyHash {
    DDS_Octet value[16];
} ZUVKeyHash;

/* Sizes in octets: of a whole payload, header and padding included, or without `includeEncapsulation` of
 * the members alone.
 *
 * Of `sample`: 0 when it cannot be serialized: a text or sequence beyond its bound, a required text that is
 * NULL, an enumeration with a value that it does not have. */
DDS_UnsignedLong ZUVCodec_getSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation,
                                  const void *sample);
/* The greatest and least that any sample of the type can have. ZUV_CODEC_UNBOUNDED_SIZE for the greatest
 * of a type with an unbounded member. */
DDS_UnsignedLong ZUVCodec_getMaxSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation);
DDS_UnsignedLong ZUVCodec_getMinSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation);

/* Write the payload of `sample` into `buffer` of `capacity` octets, in one pass, and its size to `*length`.
 * False when it does not fit or cannot be serialized: then the buffer's content is unspecified and
 * `*length` untouched. The buffer needs no alignment. Allocates nothing. */
DDS_Boolean ZUVCodec_serialize(const DDS_TypeCode *type, const void *sample, DDS_Octet *buffer,
                               DDS_UnsignedLong capacity, DDS_UnsignedLong *length);

/* Read a payload into an initialized sample, whose storage is kept where it is large enough. Members that
 * the payload lacks get their default, or are absent if optional. Up to three octets behind the end are
 * borne. False for a payload that is not a sample of this type, which leaves `sample` as it was, and when
 * there is no memory, which leaves it valid with some members read. */
DDS_Boolean ZUVCodec_deserialize(const DDS_TypeCode *type, void *sample, const DDS_Octet *buffer,
                                 DDS_UnsignedLong length);

/* The same for the sake of the key alone: what it costs does not grow with the other members, of which some may
 * be read too. False also for a type without a key. */
DDS_Boolean ZUVCodec_deserializeKeyOfSample(const DDS_TypeCode *type, void *sample,
                                            const DDS_Octet *buffer, DDS_UnsignedLong length);

/* Whether the payload would be accepted. Allocates nothing. */
DDS_Boolean ZUVCodec_validate(const DDS_TypeCode *type, const DDS_Octet *buffer,
                              DDS_UnsignedLong length);

/* The key members alone, as a payload of their own: header, then plain members. False for a type without
 * a key. */
DDS_UnsignedLong ZUVCodec_getKeyMaxSize(const DDS_TypeCode *type, DDS_Boolean includeEncapsulation);
DDS_Boolean ZUVCodec_serializeKey(const DDS_TypeCode *type, const void *sample, DDS_Octet *buffer,
                                  DDS_UnsignedLong capacity, DDS_UnsignedLong *length);
DDS_Boolean ZUVCodec_deserializeKey(const DDS_TypeCode *type, void *sample, const DDS_Octet *buffer,
                                    DDS_UnsignedLong length);

/* The greatest size of the big-endian key that a key hash is made from, without a header: at most 16 means
 * that the key is its own hash. 0 for a type without a key. */
DDS_UnsignedLong ZUVCodec_getKeyHashInputMaxSize(const DDS_TypeCode *type);

/* The key hash: the key members, plain and big endian, filled with zeros if they never exceed 16 octets,
 * and their MD5 digest otherwise. False for a type without a key and for a key that cannot be
 * serialized. */
DDS_Boolean ZUVCodec_getKeyHash(const DDS_TypeCode *type, const void *sample, ZUVKeyHash *hash);

/* 1 when the type has key members. */
DDS_Boolean ZUVCodec_hasKey(const DDS_TypeCode *type);

/* The two-step form: with a NULL buffer the size goes to `*length` and the result tells whether it is above
 * 0; otherwise `*length` is the capacity on entry and the size on return. False for a NULL `length` and for
 * a representation that the type does not allow.
 *
 * Reading heeds the compliance mask below, and releases the optional members of the sample first, also when the payload is refused then. */
DDS_Boolean ZUVCodec_serializeToCdrBuffer(const DDS_TypeCode *type, char *buffer,
                                          unsigned int *length, const void *sample,
                                          DDS_DataRepresentationId_t representation);
DDS_Boolean ZUVCodec_deserializeFromCdrBuffer(const DDS_TypeCode *type, void *sample,
                                              const char *buffer, unsigned int length);

/* How samples are read from such buffers, for the whole process: a mask of the bits below, 0 at first. May be
 * asked and set from any thread. */
/* A value that an enumeration does not have is read as its default, and not refused. */
#define ZUV_XTYPE_COMPLIANCE_UNKNOWN_ENUM_VALUE 16u
/* A discriminator that chooses no member is borne, and with the second bit read as the default one. No type of
 * the system has a union, so that nothing comes of these today. */
#define ZUV_XTYPE_COMPLIANCE_UNKNOWN_DISCRIMINATOR 32u
#define ZUV_XTYPE_COMPLIANCE_DEFAULT_DISCRIMINATOR 64u

DDS_UnsignedLong ZUVXCdrInterpreter_getGlobalXtypeComplianceMask(void);
void ZUVXCdrInterpreter_setGlobalXtypeComplianceMask(DDS_UnsignedLong mask);

/* Render `sample` as text. With a NULL `text` the size with the terminator goes to `*length`; otherwise
 * `*length` is the capacity on entry, and on return the size. DDS_RETCODE_BAD_PARAMETER for a NULL sample,
 * length or format; DDS_RETCODE_OUT_OF_RESOURCES when the text does not fit, with the size needed in
 * `*length`; DDS_RETCODE_ERROR for a sample that cannot be serialized. */
DDS_ReturnCode_t ZUVCodec_dataToString(const DDS_TypeCode *type, const void *sample, char *text,
                                       DDS_UnsignedLong *length,
                                       const DDS_PrintFormatProperty *format);

#ifdef __cplusplus
}
#endif

#endif
