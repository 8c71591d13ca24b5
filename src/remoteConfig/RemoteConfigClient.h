/* The shell's DDS side: it sends one command at a time to a service and waits for the reply.
 *
 * A client owns a participant, a requester, and one request sample that all commands use. It is for one
 * thread. Operations report failures in the log; after a failed command the next one works. */
#ifndef ZUV_REMOTE_CONFIG_REMOTE_CONFIG_CLIENT_H
#define ZUV_REMOTE_CONFIG_REMOTE_CONFIG_CLIENT_H

#include <stdint.h>

#include "platform/osapi/Time.h"
#include "remoteConfig/AdminRequester.h"
#include "remoteConfig/AssignmentExpression.h"
#include "remoteConfig/RemoteConfigDdsContext.h"
#include "remoteConfig/ServiceAdmin.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Limits of a command, in characters. */
#define BREL_REMOTE_CONFIG_CLIENT_MAX_TARGET_LENGTH 254
#define BREL_REMOTE_CONFIG_CLIENT_MAX_IDENTIFIER_LENGTH ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH

/* The longest string body that needs no further memory, in characters. */
#define BREL_REMOTE_CONFIG_CLIENT_RESTING_BODY_LENGTH 32768

typedef struct BRELRemoteConfigClient {
    int32_t domainId;
    BRELRemoteConfigDdsContext _ddsContext;
    ZUV_BrelServiceAdminRequester *_requester;
    DDS_Duration_t _replyWaitTimeout;
    int32_t _ignoreReply; /* not 0: a command counts as answered once it is sent */
    /* Reused by all commands. Its string body is a buffer of the resting length and a terminator, and is
     * empty between commands; its application name and its identifier have room for their bounds. */
    ZUV_Service_Admin_CommandRequest *_request;
} BRELRemoteConfigClient;

/* A client on the heap; see the operations below. NULL on failure. */
BRELRemoteConfigClient *BRELRemoteConfigClient_new(int domainId, int responseTimeoutSec);

/* Finalize and free. NULL is reported. */
void BRELRemoteConfigClient_delete(BRELRemoteConfigClient *self);

/* Make `self`, whose old content is ignored, a client in the domain `domainId`, which waits
 * `responseTimeoutSec` seconds for a reply. Returns 1, or 0 with everything released again. */
int BRELRemoteConfigClient_initialize(BRELRemoteConfigClient *self, int domainId,
                                      int responseTimeoutSec);

/* Release everything that the client owns, half-made clients and those released before included. If an
 * entity cannot be deleted, what is left stays, and the call may be repeated. */
void BRELRemoteConfigClient_finalize(BRELRemoteConfigClient *self);

/* Send `request`, which is copied, to the service `targetService` and wait for the reply, which is copied
 * into `reply`, an initialized sample. The request's own application name does not count. With `remote` 0 a
 * string body "file://<path>" is replaced by the content of that file, as inline text.
 *
 * Returns 1 when a reply was obtained, whatever it says, else 0 after a report: a name or an identifier is
 * too long (nothing is sent), a file cannot be read (nothing is sent), there is no memory, sending failed,
 * or no reply came in time. Blocks for at most twice the timeout: for room in the writer's history, and for
 * the reply. No body of up to BREL_REMOTE_CONFIG_CLIENT_RESTING_BODY_LENGTH characters takes memory here. */
int BRELRemoteConfigClient_sendCommandRequest(BRELRemoteConfigClient *self,
                                              ZUV_Service_Admin_CommandReply *reply,
                                              const char *targetService,
                                              const ZUV_Service_Admin_CommandRequest *request,
                                              int remote);

/* The same for a request of these parts, with an empty octet body. `xmlUrl` may be an assignment
 * (AssignmentExpression.h), which is sent as the XML that it stands for; any other text is sent as it is.
 * A NULL `entityName` means the service itself. */
int BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
    BRELRemoteConfigClient *self, ZUV_Service_Admin_CommandReply *reply, const char *targetService,
    ZUV_Service_Admin_CommandActionKind actionKind, const char *entityName, const char *xmlUrl,
    int remote);

/* 1 if a service is matched in both directions now; does not wait. */
int BRELRemoteConfigClient_hasMatchingServer(BRELRemoteConfigClient *self);

/* Just the requester of a client, with a participant of its own, for programs that do their own sending.
 * NULL on failure. Release with BRELRemoteConfigClient_deleteRequester. */
ZUV_BrelServiceAdminRequester *BRELRemoteConfigClient_createRequester(int domainId,
                                                                      int response_timeout_sec);

/* Delete such a requester and its participant. After a reported failure what is left stays. */
void BRELRemoteConfigClient_deleteRequester(ZUV_BrelServiceAdminRequester *requester);

/* The steps of the above that stand in another file.
 *
 * createRequesterI fills `context`, a record of zeros, for requests of `maxInstances` instances (or
 * DDS_LENGTH_UNLIMITED), and stores the requester at `*requester`, which is NULL. Returns 1, or 0 with what
 * it made deleted; what cannot be deleted stays in `context` and `*requester`, for another try.
 * deleteRequesterI deletes `*requester`, unless it is NULL, and what `context` holds, clearing each pointer
 * whose entity is gone. Returns 1, or 0 at the first entity that cannot be deleted. */
int BRELRemoteConfigClient_createRequesterI(BRELRemoteConfigDdsContext *context, int domainId,
                                            const DDS_Duration_t *replyWaitTimeout,
                                            DDS_Long maxInstances,
                                            ZUV_BrelServiceAdminRequester **requester);
int BRELRemoteConfigClient_deleteRequesterI(BRELRemoteConfigDdsContext *context,
                                            ZUV_BrelServiceAdminRequester **requester);

#ifdef __cplusplus
}
#endif

#endif
