/* The verbosity of each service's log.
 *
 * A service hands its two masks over once, by KOLM_Config_Logger_register_service, since this room stands
 * below the services and knows none of them. */
#ifndef ZUV_PLATFORM_KOLM_LOGGER_H
#define ZUV_PLATFORM_KOLM_LOGGER_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Services by their number. */
#define KOLM_CONFIG_LOG_SERVICE_BREL 3
#define KOLM_CONFIG_LOG_SERVICE_COUNT 4

/* A verbosity is the instrumentation mask that it sets: each one lets the levels of those before it
 * through as well. */
#define KOLM_CONFIG_LOG_VERBOSITY_SILENT 0u
#define KOLM_CONFIG_LOG_VERBOSITY_ERROR 3u         /* fatal messages and exceptions */
#define KOLM_CONFIG_LOG_VERBOSITY_WARNING 7u       /* and warnings */
#define KOLM_CONFIG_LOG_VERBOSITY_STATUS_LOCAL 15u /* and what happens to local objects */
#define KOLM_CONFIG_LOG_VERBOSITY_STATUS_ALL 511u  /* everything, traces included */

/* Say where the masks of a service are; they must live as long as the process. Registering again replaces
 * the former masks. Returns 1, or 0 for a number that is no service or a NULL mask. Any thread. */
int KOLM_Config_Logger_register_service(int service, uint32_t *instrumentationMask,
                                        uint32_t *submoduleMask);

/* Set the instrumentation mask of a service to `verbosity` and open all its submodules. Returns 1, or 0 if
 * no such service is registered. Any thread; a log site on another one may see the old masks for a
 * moment. */
int KOLM_Config_Logger_set_verbosity_by_service(int service, uint32_t verbosity);

#ifdef __cplusplus
}
#endif

#endif
