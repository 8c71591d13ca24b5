/* The factory of participants (OMG DDS 1.4, 2.2.2.2.2).
 *
 * Where the traffic of a participant goes: with FASTRTPS_DEFAULT_PROFILES_FILE in the environment, or with
 * DEFAULT_FASTRTPS_PROFILES.xml in the working directory, the default participant profile of that file
 * decides about transports, peers, discovery and security. Without one the participant stays on this
 * machine: shared memory, and UDPv4 bound to 127.0.0.1 alone, without multicast. To join a network is an
 * explicit act; examples/profiles/network.xml shows one. */
#ifndef ZUV_PLATFORM_DDS_DOMAIN_PARTICIPANT_FACTORY_H
#define ZUV_PLATFORM_DDS_DOMAIN_PARTICIPANT_FACTORY_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

/* No participant listener exists; the place of the argument is that of the standard. */
struct DDS_DomainParticipantListener;

struct MAVOWorkerFactory;

/* The one factory of the process, made when first asked for. NULL, after a log line, when it cannot be
 * made. May be called from any thread. */
DDS_DomainParticipantFactory *DDS_DomainParticipantFactory_get_instance(void);

/* Release the factory. DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while participants exist. A
 * later get_instance makes a new one. Done already when there is none. */
DDS_ReturnCode_t DDS_DomainParticipantFactory_finalize_instance(void);

/* Give `qos`, a valid record, the QoS that a participant has without further wishes. */
DDS_ReturnCode_t
DDS_DomainParticipantFactory_get_default_participant_qos(DDS_DomainParticipantFactory *self,
                                                         DDS_DomainParticipantQos *qos);

/* Join the domain `domainId` (0 to 232). `qos`: the participant's, or &DDS_PARTICIPANT_QOS_DEFAULT; it is
 * copied. `listener` must be NULL. The participant comes enabled, unless the factory's entity factory policy
 * says otherwise, and belongs to the caller: delete_participant. NULL, after a log line, on failure. May be
 * called from any thread. */
DDS_DomainParticipant *DDS_DomainParticipantFactory_create_participant(
    DDS_DomainParticipantFactory *self, DDS_Long domainId, const DDS_DomainParticipantQos *qos,
    const struct DDS_DomainParticipantListener *listener, DDS_StatusMask mask);

/* Leave the domain. DDS_RETCODE_PRECONDITION_NOT_MET, and nothing done, while the participant contains
 * entities. */
DDS_ReturnCode_t
DDS_DomainParticipantFactory_delete_participant(DDS_DomainParticipantFactory *self,
                                                DDS_DomainParticipant *participant);

/* The first participant of this process whose QoS names it `name`, or NULL. Names are compared as they stand; those
 * of no two participants need differ. Still owned as before: it must not be deleted while the result is in use. May be
 * called from any thread. */
DDS_DomainParticipant *
DDS_DomainParticipantFactory_lookup_participant_by_name(DDS_DomainParticipantFactory *self,
                                                        const char *name);

/* The factory of the workers that threads of the middleware have, made when first asked for. There is one, and `index`
 * is 0. It belongs to the participant factory and ends with it. NULL, after a log line, for a NULL `self`, another
 * `index`, or when there is no memory. May be called from any thread. */
struct MAVOWorkerFactory *
DDS_DomainParticipantFactory_get_worker_factoryI(DDS_DomainParticipantFactory *self,
                                                 DDS_Long index);

#ifdef __cplusplus
}
#endif

#endif
