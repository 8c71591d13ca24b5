// The DDS entities of a server.
#ifndef ZUV_REMOTE_CONFIG_REMOTE_CONFIG_SERVER_ENTITIES_HPP
#define ZUV_REMOTE_CONFIG_REMOTE_CONFIG_SERVER_ENTITIES_HPP

#include "remoteConfig/RemoteConfigServer.h"

namespace brel
{

enum class Outcome {
    kDone,
    kFailed,       // and what was made is to be deleted
    kFailedForGood // and what was made stays
};

// Make the participant, the publisher and the subscriber, the QoS of the endpoints and the names. Failures are reported.
Outcome createServerEntities(BRELRemoteConfigServer &server);

// Delete them, as far as they exist. False after a report, with what is left in the record.
bool deleteServerEntities(BRELRemoteConfigServer &server);

} // namespace brel

#endif
