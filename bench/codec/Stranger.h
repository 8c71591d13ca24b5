/* The same samples through another implementation of XCDR2: the serializer of Cyclone DDS, driven by the
 * types that its compiler makes of the IDL. */
#ifndef ZUV_BENCH_CODEC_STRANGER_H
#define ZUV_BENCH_CODEC_STRANGER_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef enum StrangerType {
    STRANGER_COMMAND_REQUEST,
    STRANGER_COMMAND_REPLY,
    STRANGER_ENTITY_STATE,
    STRANGER_RESOURCE_GUID,
    STRANGER_KEYED_RESOURCE
} StrangerType;

typedef struct Stranger Stranger;

/* One sample in the stranger's own type, read from its serialized form without an encapsulation header, and
 * room to decode into. NULL when the stranger refuses it; its check may change the octets. */
Stranger *stranger_new(StrangerType type, uint8_t *octets, uint32_t size);
void stranger_delete(Stranger *self);

/* The size of the serialized sample, without an encapsulation header, and in `*octets` where it is until the
 * next call. The stream is new each time, or, if `isReused`, the one of the last call. */
size_t stranger_encode(Stranger *self, int isReused, const uint8_t **octets);

/* Check and read a serialized sample without an encapsulation header; the check may change it. The sample of
 * the last call is released before, or kept if `isReused`. 0 when it is refused. */
int stranger_decode(Stranger *self, uint8_t *octets, uint32_t size, int isReused);

#ifdef __cplusplus
}
#endif

#endif
