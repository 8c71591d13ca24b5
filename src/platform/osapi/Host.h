/* The host that this process runs on. */
#ifndef ZUV_PLATFORM_OSAPI_HOST_H
#define ZUV_PLATFORM_OSAPI_HOST_H

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Write the host's name into `name`, which has room for `limit` bytes, terminator included. Returns 1, or 0
 * when the name is not known or does not fit: then `name` is as it was. `name` must not be NULL. Any
 * thread. */
int ZUVOsapiHost_getHostName(char *name, size_t limit);

/* A number that tells this host from others, the same for all its processes and on every call: its first
 * IPv4 address that is not a loopback one, as a number, or without one a digest of the machine's identity.
 * Asks nobody over the network. Any thread. */
uint32_t ZUVOsapiHost_getId(void);

#ifdef __cplusplus
}
#endif

#endif
