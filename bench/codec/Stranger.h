/* The same requests through another implementation of XCDR2: the serializer of Cyclone DDS, driven by the
 * type that its compiler makes of the protocol's IDL. */
#ifndef ZUV_BENCH_CODEC_STRANGER_H
#define ZUV_BENCH_CODEC_STRANGER_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct Stranger Stranger;

/* One request with these values in the stranger's own types, and room to decode into. */
Stranger *stranger_new(const char *name, const char *identifier, const char *body, uint8_t *octets,
                       uint32_t octetCount);
void stranger_delete(Stranger *self);

/* The size of the serialized request, without an encapsulation header. Its stream is new each time, or, if
 * `isReused`, the one of the last call. */
size_t stranger_encode(Stranger *self, int isReused);

/* Check and read a serialized request without an encapsulation header; the check may change it. The sample
 * is released before, or kept if `isReused`. 0 when it is refused. */
int stranger_decode(Stranger *self, void *octets, uint32_t size, int isReused);

#ifdef __cplusplus
}
#endif

#endif
