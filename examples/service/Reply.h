// What goes back to the client.
#ifndef ZUV_EXAMPLES_SERVICE_REPLY_H
#define ZUV_EXAMPLES_SERVICE_REPLY_H

#include <string>

#include "remoteConfig/AdminReplier.h"

namespace service
{

// Answer the request that the info belongs to. False after a report; then the client will have waited in vain.
bool sendReply(bool isDone, const std::string &text, const DDS_SampleInfo &info,
               ZUV_BrelServiceAdminReplier *replier);

// Wait, for a second at most, until the replies have arrived: the last one of a service must be on its way before the
// writer goes.
void waitUntilReceived(ZUV_BrelServiceAdminReplier *replier);

} // namespace service

#endif
