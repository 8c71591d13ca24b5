/* What the service and its plug-ins tell each other about a stream that comes up or goes away.
 *
 * The texts in these records come from malloc and go with free, so that a plug-in can make and change them
 * with the C library alone; the record that a _new_ operation returns is the system's and goes with
 * ZUV_BrelServiceStreamInfo_delete. None of them has a lock. */
#ifndef ZUV_SDK_LIB_STREAM_INFO_H
#define ZUV_SDK_LIB_STREAM_INFO_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A list of texts. A record of zeros is an empty one. */
typedef struct ZUV_BrelServiceStringSeq {
    char **element_array; /* owned, like its texts */
    int element_count;    /* texts that count */
    int element_count_max; /* slots; those behind the texts that count are NULL or hold a text to reuse */
} ZUV_BrelServiceStringSeq;

/* Make `self` a copy of `other`, reusing its slots and their texts. Slots that are not needed keep their
 * texts. Neither may be NULL, nor any text of `other` that counts. Returns `self`, or NULL after a report. When
 * memory ran out at a text, `element_count` is already that of `other`; the texts before the one that failed
 * are copied, and those from it on are older ones or NULL. */
ZUV_BrelServiceStringSeq *ZUV_BrelServiceStringSeq_copy(ZUV_BrelServiceStringSeq *self,
                                                        const ZUV_BrelServiceStringSeq *other);

typedef struct ZUV_BrelServiceTypeInfo {
    char *type_name; /* owned; NULL when it is not known */
    DDS_Boolean can_be_optimized;
    int type_representation_kind; /* what the next member points to, as the parties agreed */
    void *type_representation;    /* borrowed */
} ZUV_BrelServiceTypeInfo;

typedef struct ZUV_BrelServiceStreamInfo {
    char *stream_name; /* owned */
    ZUV_BrelServiceTypeInfo type_info;
    ZUV_BrelServiceStringSeq partition;
    DDS_Boolean disposed; /* the stream went away */
} ZUV_BrelServiceStreamInfo;

/* A stream that came up, without partitions and with a type that can be optimized. The texts are copied;
 * `registeredTypeName` may be NULL, `streamName` not; `type_representation` is borrowed. NULL after a
 * report. */
ZUV_BrelServiceStreamInfo *ZUV_BrelServiceStreamInfo_new_discovered(const char *streamName,
                                                                    const char *registeredTypeName,
                                                                    int type_representation_kind,
                                                                    void *type_representation);

/* A stream that went away: the same with no type name, kind 0 and no representation. */
ZUV_BrelServiceStreamInfo *ZUV_BrelServiceStreamInfo_new_disposed(const char *streamName);

/* Fill a caller's record, whatever it held, in the same way. False after a report: then it is an empty
 * record. Neither `self` nor `stream_name` may be NULL. */
DDS_Boolean ZUV_BrelServiceStreamInfo_initialize(
    ZUV_BrelServiceStreamInfo *self, DDS_Boolean disposedStreamInfo, const char *stream_name,
    const char *registeredTypeName, int type_representation_kind, void *type_representation);

/* Release what a record owns; twice does no harm. NULL does nothing. */
void ZUV_BrelServiceStreamInfo_finalize(ZUV_BrelServiceStreamInfo *self);

/* Release a record that came from one of the _new_ operations. NULL does nothing. */
void ZUV_BrelServiceStreamInfo_delete(ZUV_BrelServiceStreamInfo *self);

#ifdef __cplusplus
}
#endif

#endif
