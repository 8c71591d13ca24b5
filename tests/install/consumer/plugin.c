/* A plug-in that fails, and says so through its environment. */
#include "config/ProductInfo.h"
#include "sdkLib/Environment.h"
#include "sdkLib/StreamInfo.h"

const void *plugin_onStream(const ZUV_BrelServiceStreamInfo *stream,
                            ZUV_BrelServiceEnvironment *environment);

/* Returns where the plug-in sees the record of names, so that its host can tell whether they share it. */
const void *plugin_onStream(const ZUV_BrelServiceStreamInfo *stream,
                            ZUV_BrelServiceEnvironment *environment)
{
    if (stream->disposed) {
        ZUV_BrelServiceEnvironment_set_error(environment, "the stream has gone\n");
    }
    return BRELProductInfo_get();
}
