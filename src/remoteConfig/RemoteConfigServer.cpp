#include "remoteConfig/RemoteConfigServer.h"

#include "common/Concurrency.h"
#include "platform/osapi/Object.hpp"
#include "remoteConfig/RemoteConfigServerEntities.hpp"
#include "remoteConfig/ServerReport.hpp"

namespace
{

using Server = BRELRemoteConfigServer;

char threadNamePrefix[] = "zBsAdmin";

DDS_Condition *conditionOf(const BRELCommandHandler &handler)
{
    return DDS_StatusCondition_as_condition(handler._requestCondition);
}

bool startDispatcher(Server &self)
{
    if (DDS_AsyncWaitSet_start(self._aws) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "start administration dispatcher thread");
        return false;
    }
    return true;
}

bool startHandler(Server &self)
{
    if (self._configInterceptor.on_command_request == nullptr) {
        return true;
    }
    self._commandHandler = BRELCommandHandler_new(&self._ddsContext, &self);
    if (self._commandHandler == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "BRELCommandHandler");
        return false;
    }
    if (DDS_AsyncWaitSet_attach_condition_with_completion_token(
            self._aws, conditionOf(*self._commandHandler),
            DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_s, "attach command handler to AWS");
        return false;
    }
    return true;
}

bool stopHandler(Server &self)
{
    BRELCommandHandler *const handler = self._commandHandler;
    if (handler == nullptr || handler->_requestCondition == nullptr) {
        return true;
    }
    if (DDS_AsyncWaitSet_detach_condition(self._aws, conditionOf(*handler)) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "detach command handler");
        return false;
    }
    BRELCommandHandler_delete(handler);
    self._commandHandler = nullptr;
    return true;
}

// Undo a start, also one that got only so far. After a failure, which is reported, the steps behind it are undone by
// another call. No dispatch runs any more when the first step is done.
bool BRELRemoteConfigServer_stop(Server *self)
{
    if (self->_aws != nullptr && DDS_AsyncWaitSet_stop(self->_aws) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "DDS_AsyncWaitSet_stop");
        return false;
    }
    return stopHandler(*self) && brel::deleteServerEntities(*self);
}

// What a start or a stop that failed has left is gone before the next start, which would lose it.
bool clearAway(Server &self)
{
    const bool isLeft = self._ddsContext._participant != nullptr && self._aws != nullptr &&
                        DDS_AsyncWaitSet_is_started(self._aws) == 0;
    return !isLeft || BRELRemoteConfigServer_stop(&self);
}

} // namespace

extern "C" {

BRELRemoteConfigServer *
BRELRemoteConfigServer_new(const char *brelName, DDS_ServiceQosPolicyKind serviceKind,
                           const BRELCfgFileAdministration *cfg,
                           BRELServiceParticipantFactory *serviceParticipantFactory,
                           const DDS_AsyncWaitSetListener *awsListener)
{
    zuv::ObjectPointer<Server> self(zuv::newObject<Server>("BRELRemoteConfigServer"));
    if (self == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                            static_cast<int>(sizeof(Server)));
        return nullptr;
    }
    if (!BRELRemoteConfigServer_initialize(self.get(), brelName, serviceKind, cfg,
                                           serviceParticipantFactory, awsListener)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "BRELRemoteConfigServer object");
        return nullptr;
    }
    return self.release();
}

int BRELRemoteConfigServer_initialize(BRELRemoteConfigServer *self, const char *brelName,
                                      DDS_ServiceQosPolicyKind serviceKind,
                                      const BRELCfgFileAdministration *cfg,
                                      BRELServiceParticipantFactory *serviceParticipantFactory,
                                      const DDS_AsyncWaitSetListener *awsListener)
{
    if (BREL_SERVER_IS_NULL(self) || BREL_SERVER_IS_NULL(brelName) || BREL_SERVER_IS_NULL(cfg) ||
        BREL_SERVER_IS_NULL(serviceParticipantFactory)) {
        return 0;
    }
    // A plain copy, with a text that is not its own: it is not to be finalized.
    DDS_AsyncWaitSetProperty_t property = DDS_ASYNC_WAITSET_PROPERTY_DEFAULT;
    *self = {};
    self->_cfg = cfg;
    self->_serviceParticipantFactory = serviceParticipantFactory;
    self->brelName = brelName;
    self->_serviceKind = serviceKind;
    property.thread_name_prefix = threadNamePrefix;
    property.level = BRELConcurrency_ADMINISTRATION_WSR_EA_LEVEL;
    self->_aws = DDS_AsyncWaitSet_new_with_listener(&property, awsListener);
    if (self->_aws == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "DDS_AsyncWaitSet");
        BRELRemoteConfigServer_finalize(self);
        return 0;
    }
    return 1;
}

void BRELRemoteConfigServer_setRequestInterceptor(
    BRELRemoteConfigServer *self, const ZUV_BrelServiceConfigInterceptor *interceptor)
{
    if (BREL_SERVER_IS_NULL(self) || BREL_SERVER_IS_NULL(interceptor)) {
        return;
    }
    self->_configInterceptor = *interceptor;
}

int BRELRemoteConfigServer_start(BRELRemoteConfigServer *self)
{
    if (BREL_SERVER_IS_NULL(self)) {
        return 0;
    }
    if (!clearAway(*self)) {
        return 0;
    }
    switch (brel::createServerEntities(*self)) {
    case brel::Outcome::kFailedForGood:
        return 0; // what was made stays until the server is finalized
    case brel::Outcome::kDone:
        if (startDispatcher(*self) && startHandler(*self)) {
            return 1;
        }
        break;
    case brel::Outcome::kFailed:
        break;
    }
    BRELRemoteConfigServer_stop(self);
    return 0;
}

int BRELRemoteConfigServer_isStarted(BRELRemoteConfigServer *self)
{
    return !BREL_SERVER_IS_NULL(self) && DDS_AsyncWaitSet_is_started(self->_aws) != 0;
}

int BRELRemoteConfigServer_hasMatchingClient(const BRELRemoteConfigServer *self)
{
    return !BREL_SERVER_IS_NULL(self) && self->_commandHandler != nullptr &&
           BRELCommandHandler_hasMatchingClient(self->_commandHandler) != 0;
}

ZUV_BrelServiceAdminReplier *BRELRemoteConfigServer_getReplier(const BRELRemoteConfigServer *self)
{
    return !BREL_SERVER_IS_NULL(self) && self->_commandHandler != nullptr
               ? self->_commandHandler->_replier
               : nullptr;
}

void BRELRemoteConfigServer_processRequest(BRELRemoteConfigServer *self,
                                           const ZUV_Service_Admin_CommandRequest *request,
                                           const DDS_SampleInfo *sampleInfo,
                                           ZUV_BrelServiceAdminReplier *replier)
{
    const ZUV_BrelServiceConfigInterceptor &interceptor = self->_configInterceptor;
    interceptor.on_command_request(interceptor.interceptor_data, request, sampleInfo, replier);
}

void BRELRemoteConfigServer_finalize(BRELRemoteConfigServer *self)
{
    if (BREL_SERVER_IS_NULL(self)) {
        return;
    }
    if (!BRELRemoteConfigServer_stop(self)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "BRELRemoteConfigServer_stop");
        return;
    }
    if (self->_aws != nullptr && DDS_AsyncWaitSet_delete(self->_aws) == DDS_RETCODE_OK) {
        self->_aws = nullptr;
    }
}

void BRELRemoteConfigServer_delete(BRELRemoteConfigServer *self)
{
    if (self == nullptr) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_s, "bad parameter self");
        return;
    }
    BRELRemoteConfigServer_finalize(self);
    zuv::deleteObject(self);
}
}
