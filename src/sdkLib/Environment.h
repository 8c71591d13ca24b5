/* The environment through which a plug-in tells the service that an operation failed.
 *
 * An environment belongs to one call of a plug-in at a time and has no lock. A record of zeros is one without
 * an error. `self` may be NULL only where told. */
#ifndef ZUV_SDK_LIB_ENVIRONMENT_H
#define ZUV_SDK_LIB_ENVIRONMENT_H

#include <stdarg.h>

#include "platform/typesys/Types.h"
#include "sdkLib/Verbosity.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZUV_BREL_SERVICE_ERROR_CODE_NONE 0
#define ZUV_BREL_SERVICE_ERROR_CODE_ERROR 1
#define ZUV_BREL_SERVICE_ERROR_CODE_FATAL 2

#define ZUV_BREL_SERVICE_ERROR_MESSAGE_SIZE 1025

typedef struct ZUV_BrelServiceError {
    int error_code; /* one of the codes above, or another that the plug-in chose */
    int nativeCode; /* of the plug-in's own world; 0 without one */
    char message[ZUV_BREL_SERVICE_ERROR_MESSAGE_SIZE];
} ZUV_BrelServiceError;

typedef struct ZUV_BrelServiceEnvironmentImpl {
    ZUV_BrelServiceError error;
    void *_jniGlobal; /* room for the binding of another language */
    void *_reserved;
    ZUV_BrelServiceVerbosity verbosity; /* how much the plug-in is to log */
} ZUV_BrelServiceEnvironment;

/* Storing an error. A NULL `self` is ignored.
 *
 * `error_format` is a printf format that gets none of the arguments behind it: only a text without conversions
 * comes out as written, and one with several is not to be used at all. NULL counts as the empty text. The
 * message is cut at 1023 characters, and one new line at its end is dropped. */

/* Store an error with native code 0, unless one is stored already: the first error stands. */
void ZUV_BrelServiceEnvironment_set_error(ZUV_BrelServiceEnvironment *self,
                                          const char *error_format, ...);

/* Store a fatal error with native code 0 in place of any other. */
void ZUV_BrelServiceEnvironment_fatal_error(ZUV_BrelServiceEnvironment *self,
                                            const char *error_format, ...);

/* Store an error with these codes; with `overwrite` in place of any other. */
void ZUV_BrelServiceEnvironment_set_error_w_params(ZUV_BrelServiceEnvironment *self,
                                                   DDS_Boolean overwrite, int error_code,
                                                   int native_error_code, const char *error_format,
                                                   ...);

/* What the three above come down to. */
void ZUV_BrelServiceEnvironment_setErrorImpl(ZUV_BrelServiceEnvironment *self,
                                             DDS_Boolean overwrite, int error_code,
                                             int native_error_code, const char *error_format,
                                             va_list arguments);

/* Whether an error is stored. */
DDS_Boolean ZUV_BrelServiceEnvironment_error_occurred(const ZUV_BrelServiceEnvironment *self);

/* The message, empty without an error. It belongs to the environment and lives until it changes. NULL for
 * NULL. */
const char *ZUV_BrelServiceEnvironment_get_error_message(const ZUV_BrelServiceEnvironment *self);

int ZUV_BrelServiceEnvironment_get_native_code(const ZUV_BrelServiceEnvironment *self);

/* Forget the error. */
void ZUV_BrelServiceEnvironment_clear_error(ZUV_BrelServiceEnvironment *self);

ZUV_BrelServiceVerbosity
ZUV_BrelServiceEnvironment_get_verbosity(const ZUV_BrelServiceEnvironment *self);

#ifdef __cplusplus
}
#endif

#endif
