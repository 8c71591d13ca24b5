/* The service's end of the administration protocol: it receives the commands that are meant for the service and hands them
 * to whoever runs it.
 *
 * A server is made, gets an interceptor, is started, and is deleted; one whose start has failed may be started
 * again, one that was finalized may not. All of that, and the queries, happen on one thread of the service at a time,
 * except BRELRemoteConfigServer_hasMatchingClient, which any thread may call between a start and the next operation
 * that stops the server. NULL arguments are failed preconditions unless they are allowed. */
#ifndef ZUV_REMOTE_CONFIG_REMOTE_CONFIG_SERVER_H
#define ZUV_REMOTE_CONFIG_REMOTE_CONFIG_SERVER_H

#include "common/ServiceParticipantFactory.h"
#include "config/CfgFileAdministration.h"
#include "platform/dds/AsyncWaitSet.h"
#include "remoteConfig/CommandHandler.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What carries out commands. `on_command_request` is called on a thread whose name begins with "zBsAdmin", for one request
 * after the other. It does what the request asks for and answers with ZUV_BrelServiceAdminReplier_send_reply, naming the
 * identity in `sampleInfo`. Request and info are valid during the call only. A request that is not answered leaves its
 * client to its time-out. No exception may leave the callback. */
typedef struct ZUV_BrelServiceConfigInterceptor {
    void *interceptor_data;
    void (*on_command_request)(void *interceptor_data,
                               const ZUV_Service_Admin_CommandRequest *request,
                               const DDS_SampleInfo *sampleInfo,
                               ZUV_BrelServiceAdminReplier *replier);
} ZUV_BrelServiceConfigInterceptor;

typedef struct BRELRemoteConfigServer {
    const BRELCfgFileAdministration *_cfg;                     /* borrowed */
    BRELServiceParticipantFactory *_serviceParticipantFactory; /* borrowed */
    BRELRemoteConfigDdsContext _ddsContext;
    BRELCommandHandler *_commandHandler; /* owned; NULL unless started with an interceptor */
    ZUV_BrelServiceConfigInterceptor _configInterceptor;
    const char *brelName; /* borrowed */
    DDS_ServiceQosPolicyKind _serviceKind;
    DDS_AsyncWaitSet *_aws; /* owned: the dispatcher */
} BRELRemoteConfigServer;

/* A server on the heap, not started. `brelName`, the service's name, `cfg` and `serviceParticipantFactory` are borrowed for
 * the server's life. `awsListener` is copied and may be NULL: it is told of the dispatcher's threads. NULL after a
 * report. */
BRELRemoteConfigServer *
BRELRemoteConfigServer_new(const char *brelName, DDS_ServiceQosPolicyKind serviceKind,
                           const BRELCfgFileAdministration *cfg,
                           BRELServiceParticipantFactory *serviceParticipantFactory,
                           const DDS_AsyncWaitSetListener *awsListener);

/* Make a server of a record, whatever it held. 1, or 0 after a report. */
int BRELRemoteConfigServer_initialize(BRELRemoteConfigServer *self, const char *brelName,
                                      DDS_ServiceQosPolicyKind serviceKind,
                                      const BRELCfgFileAdministration *cfg,
                                      BRELServiceParticipantFactory *serviceParticipantFactory,
                                      const DDS_AsyncWaitSetListener *awsListener);

/* Have commands carried out. The record is copied. Before the start: a server that is started without an interceptor
 * answers nothing. */
void BRELRemoteConfigServer_setRequestInterceptor(
    BRELRemoteConfigServer *self, const ZUV_BrelServiceConfigInterceptor *interceptor);

/* Make the entities as the administration settings say and start the dispatcher. 1, or 0 after a report: then the server is
 * stopped, unless it was the property of the reader's memory that could not be set: then the entities stay until the
 * server is finalized or started again. What a failed stop has left is deleted first. A server that is started must not
 * be started. */
int BRELRemoteConfigServer_start(BRELRemoteConfigServer *self);

/* 1 while the dispatcher runs. */
int BRELRemoteConfigServer_isStarted(BRELRemoteConfigServer *self);

/* 1 if both endpoints are matched with those of clients; 0 without an interceptor. */
int BRELRemoteConfigServer_hasMatchingClient(const BRELRemoteConfigServer *self);

/* The replier, which is the server's; NULL without an interceptor and while the server is stopped. */
ZUV_BrelServiceAdminReplier *BRELRemoteConfigServer_getReplier(const BRELRemoteConfigServer *self);

/* Hand a request to the interceptor, which must be there. For the command handler. */
void BRELRemoteConfigServer_processRequest(BRELRemoteConfigServer *self,
                                           const ZUV_Service_Admin_CommandRequest *request,
                                           const DDS_SampleInfo *sampleInfo,
                                           ZUV_BrelServiceAdminReplier *replier);

/* Stop the server and release what it owns. When a step of the stop fails, that is reported, what comes after it stays
 * alive, and another call tries again from there. */
void BRELRemoteConfigServer_finalize(BRELRemoteConfigServer *self);

/* Finalize and free a server of BRELRemoteConfigServer_new. NULL is reported. The record is freed also when the stop failed,
 * and what the stop has left is lost then: who wants to try again finalizes first, until `_aws` is NULL. */
void BRELRemoteConfigServer_delete(BRELRemoteConfigServer *self);

/* A participant for the administration of a service; its QoS is as the next operation makes it. NULL after a report. */
DDS_DomainParticipant *BRELRemoteConfigServer_createRemoteAdminParticipant(
    DDS_Long domainId, const DDS_DomainParticipantQos *participantQos, const char *serviceName,
    DDS_ServiceQosPolicyKind serviceKind);

/* Make `outParticipantQos`, a valid record, a copy of `inParticipantQos`, or the default if that is NULL, with the changes
 * of the next operation. 1, or 0 after a report. */
int BRELRemoteConfigServer_configureRemoteAdminParticipantQos(
    DDS_DomainParticipantQos *outParticipantQos, const DDS_DomainParticipantQos *inParticipantQos,
    const char *serviceName, DDS_ServiceQosPolicyKind serviceKind);

/* Name a participant that has no name after the product and the service, announce the service's version, and set the kind
 * of service. 1, or 0 after a report. */
int BRELRemoteConfigServer_setUpParticipanQos(DDS_DomainParticipantQos *participantQos,
                                              const char *serviceName,
                                              DDS_ServiceQosPolicyKind serviceKind);

#ifdef __cplusplus
}
#endif

#endif
