/* Addresses as texts. */
#ifndef ZUV_PLATFORM_OSAPI_POINTER_H
#define ZUV_PLATFORM_OSAPI_POINTER_H

#ifdef __cplusplus
extern "C" {
#endif

/* The address that printf's "%p" wrote as `text`. NULL for a text that is not just such an address, for
 * the null address, and for NULL. Whether something lives at the address is not known here: convert texts
 * of this process's own making only. Any thread. */
void *ZUVOsapiUtility_strtoptr(const char *text);

#ifdef __cplusplus
}
#endif

#endif
