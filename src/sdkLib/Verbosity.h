/* How much a service, or one of its plug-ins, logs. */
#ifndef ZUV_SDK_LIB_VERBOSITY_H
#define ZUV_SDK_LIB_VERBOSITY_H

#ifdef __cplusplus
extern "C" {
#endif

/* Each value is the mask of the levels that are logged (see platform/log/Log.h), those of the values before it
 * included. It can be handed to BRELLog_logFromLevelWithMask as it is. */
typedef enum ZUV_BrelServiceVerbosity {
    ZUV_BREL_SERVICE_VERBOSITY_NONE = 0,
    ZUV_BREL_SERVICE_VERBOSITY_EXCEPTION = 3, /* fatal messages and exceptions */
    ZUV_BREL_SERVICE_VERBOSITY_WARN = 7,      /* and warnings */
    ZUV_BREL_SERVICE_VERBOSITY_INFO = 15,     /* and what happens to local objects */
    ZUV_BREL_SERVICE_VERBOSITY_DEBUG = 511    /* everything */
} ZUV_BrelServiceVerbosity;

#ifdef __cplusplus
}
#endif

#endif
