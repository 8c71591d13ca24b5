/* Settings that the operator gives through the environment. */
#ifndef ZUV_PLATFORM_OSAPI_ENVIRONMENT_VARIABLE_H
#define ZUV_PLATFORM_OSAPI_ENVIRONMENT_VARIABLE_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Write the value of the environment variable `name` into `value`, which has room for `limit` bytes,
 * terminator included, and return `value`. NULL when the variable is not set or its value does not fit: then
 * `value` is as it was. Neither may be NULL. The process's environment must not be changed meanwhile. */
char *ZUVOsapi_envVarOrFileGet(char *value, size_t limit, const char *name);

#ifdef __cplusplus
}
#endif

#endif
