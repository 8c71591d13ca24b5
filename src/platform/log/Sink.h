/* The one way out of the log: the sink that is in use, and the default one. */
#ifndef ZUV_PLATFORM_LOG_SINK_H
#define ZUV_PLATFORM_LOG_SINK_H

#include "platform/log/Log.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Hand `*record`, which must not be NULL, to the sink. */
void ZUVLog_emitI(const ZUVLogRecord *record);

/* The default sink, for a sink that looks at lines and passes them on. `sinkData` is not used and may be NULL. */
void ZUVLog_writeToStandardError(void *sinkData, const ZUVLogRecord *record);

#ifdef __cplusplus
}
#endif

#endif
