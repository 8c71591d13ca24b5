// The participant of a service's administration.
#include "config/Utils.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "remoteConfig/RemoteConfigServer.h"
#include "remoteConfig/ServerReport.hpp"

extern "C" {

int BRELRemoteConfigServer_setUpParticipanQos(DDS_DomainParticipantQos *participantQos,
                                              const char *serviceName,
                                              DDS_ServiceQosPolicyKind serviceKind)
{
    if (BREL_SERVER_IS_NULL(participantQos) || BREL_SERVER_IS_NULL(serviceName)) {
        return 0;
    }
    // With one suffix empty the other takes no part in the name.
    if (participantQos->participant_name.name == nullptr &&
        !BRELUtils_setParticipantName(participantQos, serviceName, "Administration", "")) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set participant name");
        return 0;
    }
    if (!BRELUtils_setServiceVersion(participantQos)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set service version");
        return 0;
    }
    participantQos->service.kind = serviceKind;
    return 1;
}

int BRELRemoteConfigServer_configureRemoteAdminParticipantQos(
    DDS_DomainParticipantQos *outParticipantQos, const DDS_DomainParticipantQos *inParticipantQos,
    const char *serviceName, DDS_ServiceQosPolicyKind serviceKind)
{
    if (BREL_SERVER_IS_NULL(outParticipantQos) || BREL_SERVER_IS_NULL(serviceName)) {
        return 0;
    }
    const bool isFilled =
        inParticipantQos != nullptr
            ? BREL_SERVER_IS_OK(DDS_DomainParticipantQos_copy(outParticipantQos, inParticipantQos),
                                "copy participant qos")
            : BREL_SERVER_IS_OK(DDS_DomainParticipantQos_get_defaultI(outParticipantQos),
                                "get default participant qos");
    if (!isFilled) {
        return 0;
    }
    if (!BRELRemoteConfigServer_setUpParticipanQos(outParticipantQos, serviceName, serviceKind)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set up participant QoS");
        return 0;
    }
    return 1;
}

DDS_DomainParticipant *BRELRemoteConfigServer_createRemoteAdminParticipant(
    DDS_Long domainId, const DDS_DomainParticipantQos *participantQos, const char *serviceName,
    DDS_ServiceQosPolicyKind serviceKind)
{
    DDS_DomainParticipantQos qos;
    DDS_DomainParticipant *participant = nullptr;
    if (DDS_DomainParticipantQos_initialize(&qos) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE, "participant QoS");
    } else if (!BRELRemoteConfigServer_configureRemoteAdminParticipantQos(
                   &qos, participantQos, serviceName, serviceKind)) {
        BREL_SERVER_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "configure participant QoS");
    } else {
        participant = DDS_DomainParticipantFactory_create_participant(
            DDS_DomainParticipantFactory_get_instance(), domainId, &qos, nullptr,
            DDS_STATUS_MASK_NONE);
        if (participant == nullptr) {
            BREL_SERVER_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "participant");
        }
    }
    if (DDS_DomainParticipantQos_finalize(&qos) != DDS_RETCODE_OK) {
        BREL_SERVER_FAILURE_TEXT(&ZUV_LOG_FAILED_TO_FINALIZE_TEMPLATE, "participant QoS");
    }
    return participant;
}
}
