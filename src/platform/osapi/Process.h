/* The process that runs this code. */
#ifndef ZUV_PLATFORM_OSAPI_PROCESS_H
#define ZUV_PLATFORM_OSAPI_PROCESS_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* The process's number, as ps shows it. Any thread. */
uint64_t ZUVOsapiProcess_getId(void);

#ifdef __cplusplus
}
#endif

#endif
