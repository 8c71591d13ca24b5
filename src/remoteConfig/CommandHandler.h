/* The command handler of a server: its replier, the filter that admits what is meant for the service, and the dispatch of
 * requests to the server's interceptor.
 *
 * Everything is called on the thread that controls the server, but for what the dispatcher calls. NULL arguments are
 * failed preconditions unless they are allowed. */
#ifndef ZUV_REMOTE_CONFIG_COMMAND_HANDLER_H
#define ZUV_REMOTE_CONFIG_COMMAND_HANDLER_H

#include "platform/dds/Condition.h"
#include "remoteConfig/AdminReplier.h"
#include "remoteConfig/RemoteConfigDdsContext.h"

#ifdef __cplusplus
extern "C" {
#endif

struct BRELRemoteConfigServer;

/* The filtered topic that the handler's reader reads. */
#define BREL_COMMAND_HANDLER_FILTERED_TOPIC_NAME "RequestTopic_CFT"

typedef struct BRELCommandHandler {
    DDS_ConditionHandler _conditionHandler; /* first: the record's address is the handler's */
    struct BRELRemoteConfigServer *_server; /* borrowed */
    BRELRemoteConfigDdsContext *_ddsContext;
    ZUV_BrelServiceAdminReplier *_replier;  /* owned */
    DDS_StatusCondition *_requestCondition; /* the request reader's: triggered by requests */
} BRELCommandHandler;

/* A handler for `server`, whose entities, QoS and names are in `ddsContext`; both must outlive it. Its replier is enabled,
 * and requests that name no service or a service whose name matches the pattern that is the server's name are received
 * from now on; who attaches `_requestCondition` to a dispatcher lets them be handled. NULL after a report: also for a name
 * of more than 203 characters, whose filter would be cut, and for one with a "'" behind which the filter's expression
 * does not go on. Release with BRELCommandHandler_delete; the request topic and the filtered topic stay in the
 * participant. */
BRELCommandHandler *BRELCommandHandler_new(BRELRemoteConfigDdsContext *ddsContext,
                                           struct BRELRemoteConfigServer *server);

/* Delete the replier and free the record, also when deleting the replier fails, which is reported: the replier is nobody's
 * then, and its endpoints go with the publisher and the subscriber. The condition must not be attached. */
void BRELCommandHandler_delete(BRELCommandHandler *self);

/* 1 if some client's request writer and some client's reply reader are matched. Any thread. */
int BRELCommandHandler_hasMatchingClient(const BRELCommandHandler *self);

/* The same for any replier; 0 for NULL. */
int BRELCommandHandler_hasMatchingClientI(ZUV_BrelServiceAdminReplier *replier);

#ifdef __cplusplus
}
#endif

#endif
