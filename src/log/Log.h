/* The log of the service and of its shell: masks, submodules and set-up.
 *
 * Log sites use ZUV_LOG(BREL, level, BREL_SUBMODULE_..., ...) and ZUV_PRECONDITION(BREL, ...). */
#ifndef ZUV_LOG_LOG_H
#define ZUV_LOG_LOG_H

#include <stdarg.h>
#include <stdint.h>

#include "log/LogMessages.h"
#include "platform/log/Log.h"
#include "platform/log/LogMessages.h"

#ifdef __cplusplus
extern "C" {
#endif

#define BREL_LOG_MODULE_ID 0x1c0000u

/* Submodules. A site passes if it shares a bit with the mask, so the elements' sites also pass with the
 * bits of the concurrency or of the shell. */
#define BREL_SUBMODULE_XML 3u /* the XML support layer and the parser */
#define BREL_SUBMODULE_CONCURRENCY 0x1000u
#define BREL_SUBMODULE_EVENT_THREAD 0x1000u
#define BREL_SUBMODULE_SHELL 0x2000u
#define BREL_SUBMODULE_PARTICIPANT_FACTORY 0x2000u
#define BREL_SUBMODULE_ELEMENTS 0x3000u /* element records and utilities */
#define BREL_SUBMODULE_REMOTE 0x4000u   /* remote configuration */
#define BREL_SUBMODULE_PARAMETER_MANAGER 0x4000u

/* if (BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, self)) return 0;
 * True, after the report of a failed precondition, when an argument that must not be NULL is. */
#define BREL_IS_NULL(SUBMODULE, ARGUMENT)                                                          \
    ZUV_PRECONDITION(BREL, SUBMODULE, (ARGUMENT) == 0, #ARGUMENT " == ((void *)0)")

/* Zero, and so silent, until set. */
extern uint32_t BRELLog_g_instrumentationMask;
extern uint32_t BRELLog_g_submoduleMask;

/* Put the masks under the control of KOLM_Config_Logger_set_verbosity_by_service, as
 * KOLM_CONFIG_LOG_SERVICE_BREL, and set the verbosity to errors. Each program calls this first, so that
 * failures of its start are seen. Calling it again sets the verbosity to errors again. */
void BRELLog_setUp(void);

/* Log for a user of the service, such as a plug-in, past the masks of the module: the line is printed if
 * the bit of `logLevel` (see ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL) is in `verbosityMask`. `format` is a
 * printf format without a final new line; it is kept up to 507 characters, and what was cut is shown by
 * "...". A NULL format or a level below 0 prints nothing.
 *
 * The format is kept in a buffer of the process: calls at the same time overwrite each other's, so callers
 * take turns. */
void BRELLog_logFromLevelWithMask(uint32_t verbosityMask, int logLevel, const char *format, ...)
    __attribute__((format(printf, 3, 4)));
void BRELLog_vLogFromLevelWithMask(uint32_t verbosityMask, int logLevel, const char *format,
                                   va_list arguments) __attribute__((format(printf, 3, 0)));

#ifdef __cplusplus
}
#endif

#endif
