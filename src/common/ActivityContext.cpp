#include "common/ActivityContext.h"

namespace
{
constexpr uint32_t kId = 0x21c0000;
}

extern "C" {

const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_CREATE = {kId, "CREATE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_DELETE = {kId, "DELETE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ENABLE = {kId, "ENABLE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_DISABLE = {kId, "DISABLE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PAUSE = {kId, "PAUSE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_RUN = {kId, "RUN"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ADD_s = {kId, "ADD %s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOVE_s = {kId, "REMOVE %s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_START = {kId, "START"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_STOP = {kId, "STOP"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_START_s = {kId, "START %s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_STOP_s = {kId, "STOP %s"};

const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PUBLISH_s = {kId, "PUBLISH topic=%s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_PERIODIC_s = {kId, "PERIODIC action=%s"};

const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_GET = {kId, "REMOTE GET"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_CREATE = {kId, "REMOTE CREATE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_DELETE = {kId, "REMOTE DELETE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_UPDATE = {kId, "REMOTE UPDATE"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_REMOTE_UNKNOWN = {kId, "REMOTE COMMAND"};

const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ON_STREAM_DISCOVERED_s = {
    kId, "STREAM_DISCOVERED name=%s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_ON_STREAM_DISPOSED_s = {
    kId, "STREAM_DISPOSED name=%s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_RESUME_s = {kId, "RESUME %s"};
const ZUVActivityContextTemplate ZUV_SERVICE_ACTIVITY_SUSPEND_s = {kId, "SUSPEND %s"};
const ZUVActivityContextTemplate BREL_ACTIVITY_STREAM_DISCOVERED = {kId, "STREAM_DISCOVERED"};
const ZUVActivityContextTemplate BREL_ACTIVITY_STREAM_DISPOSED = {kId, "STREAM_DISPOSED"};
const ZUVActivityContextTemplate BREL_ACTIVITY_MATCH_STREAM = {kId, "MATCH STREAM"};
}
