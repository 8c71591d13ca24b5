/* Participants that parts of the service share by name: made for the first who asserts one, deleted when the last
 * lets go. A participant that other code made is found by the name that the middleware knows it by; it is used, and
 * neither counted nor deleted.
 *
 * There is no lock in here: the callers take turns. A NULL argument is a failed precondition, unless it is said to
 * be allowed: the operation reports it and fails. */
#ifndef ZUV_COMMON_SERVICE_PARTICIPANT_FACTORY_H
#define ZUV_COMMON_SERVICE_PARTICIPANT_FACTORY_H

#include "platform/dds/DomainParticipantFactory.h"
#include "platform/mavo/InlineList.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct BRELServiceParticipantFactory {
    DDS_DomainParticipantFactory *_factory; /* borrowed */
    MAVOInlineList _participantInfoList;    /* the counted participants, in the order of adding */
} BRELServiceParticipantFactory;

/* `factory` must outlive the record. Returns 1, or 0 after a report. */
int BRELServiceParticipantFactory_initialize(BRELServiceParticipantFactory *self,
                                             DDS_DomainParticipantFactory *factory);

/* Does nothing: owners have let go before. Participants that are still counted stay alive. */
void BRELServiceParticipantFactory_finalize(BRELServiceParticipantFactory *self);

/* The participant `participantName`, counted once more. When it is not counted yet but the middleware knows one of
 * that name, that one, which is not counted. Otherwise a new one in `domainId` with `participantQos`, which are
 * ignored in the other cases; to be found by the middleware, its QoS must bear the same name. A counted one is let go
 * by deleteParticipant. NULL, after a report, on failure: then nothing has changed. */
DDS_DomainParticipant *
BRELServiceParticipantFactory_assertParticipant(BRELServiceParticipantFactory *self,
                                                const char *participantName, DDS_Long domainId,
                                                const DDS_DomainParticipantQos *participantQos);

/* Take over the caller's participant under `participantName`, counted once; the last deleteParticipant deletes it.
 * Returns 1, or 0 after a report when the name is counted already, the middleware knows it, or there is no memory:
 * then the participant stays the caller's. So it is added before it gets the name that the middleware finds it by,
 * or under another one. */
int BRELServiceParticipantFactory_addParticipant(BRELServiceParticipantFactory *self,
                                                 const char *participantName,
                                                 DDS_DomainParticipant *participant);

/* The participant of that name that is counted, or else the one that the middleware knows; NULL if there is none.
 * Counts nothing. */
DDS_DomainParticipant *
BRELServiceParticipantFactory_lookUpParticipant(BRELServiceParticipantFactory *self,
                                                const char *participantName);

/* Let go of one assertion, or of the addition. With the last one the participant and what it contains are deleted.
 * Returns 1, also for a name that is not counted; or 0 after a report when the deletion fails. Then the entry stays,
 * held by nobody, and further calls return 1 without another attempt. */
int BRELServiceParticipantFactory_deleteParticipant(BRELServiceParticipantFactory *self,
                                                    const char *participantName);

#ifdef __cplusplus
}
#endif

#endif
