/* What requesters and repliers have in common: one writer, one reader, and their topics.
 *
 * A requester or replier protects itself: its operations may be called from several threads, except its
 * deletion, during which nobody else may use it. */
#ifndef ZUV_PLATFORM_TALVANE_ENTITY_H
#define ZUV_PLATFORM_TALVANE_ENTITY_H

#include "platform/dds/DataReader.h"
#include "platform/dds/DataWriter.h"
#include "platform/talvane/Params.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUV_Talvane_EntityUntypedImpl ZUV_Talvane_EntityUntypedImpl;

/* Write a sample. With replace_auto set, params->identity names it afterwards. Codes as those of
 * DDS_DataWriter_write_untyped. */
DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_send_sample(ZUV_Talvane_EntityUntypedImpl *self,
                                                           const void *data,
                                                           DDS_WriteParams_t *params);

/* Read or take samples, up to `maxCount` (or DDS_LENGTH_UNLIMITED). The caller's sequence is told by its parts.
 * If it owns elements (maximum above 0), they get copies and *isLoan is 0; else *dataPtrArray gets an array of
 * *dataCount pointers to samples on loan, and `infoSeq` their infos, to be given back with return_loan.
 * `condition` must be NULL. DDS_RETCODE_NO_DATA, not logged, when there is nothing; then no loan is held. */
DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
    ZUV_Talvane_EntityUntypedImpl *self, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_Boolean *isLoan, void *dataBuffer, DDS_SampleInfoSeq *infoSeq, DDS_Long dataSeqLength,
    DDS_Long dataSeqMaximum, DDS_Boolean dataSeqHasOwnership, DDS_Long maxCount,
    DDS_ReadCondition *condition, DDS_Boolean take);

/* Whether nobody else sees the samples on loan whose infos these are, so that what is taken may be moved out of them
 * before they are given back. */
DDS_Boolean ZUV_Talvane_EntityUntypedImpl_is_sole_holderI(ZUV_Talvane_EntityUntypedImpl *self,
                                                          const DDS_SampleInfoSeq *infoSeq);

/* Give back what a get lent: the array, its count, and the infos. */
DDS_ReturnCode_t ZUV_Talvane_EntityUntypedImpl_return_loan(ZUV_Talvane_EntityUntypedImpl *self,
                                                           void **dataPtrArray, DDS_Long dataCount,
                                                           DDS_SampleInfoSeq *infoSeq);

/* The entity's writer or reader, owned by it; NULL for NULL and for a half-made entity. */
DDS_DataWriter *ZUV_Talvane_EntityUntypedImpl_get_datawriter(ZUV_Talvane_EntityUntypedImpl *self);
DDS_DataReader *ZUV_Talvane_EntityUntypedImpl_get_datareader(ZUV_Talvane_EntityUntypedImpl *self);

/* Check what a receive operation was given: counts of 0 or above (the maximum may be DDS_LENGTH_UNLIMITED), the
 * minimum not above the maximum, and a wait that is not NULL. 0, after a log line that names `methodName`, when
 * something is wrong. */
DDS_Boolean ZUV_Talvane_EntityUntypedImpl_validate_receive_params(
    ZUV_Talvane_EntityUntypedImpl *self, const char *methodName, DDS_Long minCount,
    DDS_Long maxCount, const DDS_Duration_t *maxWait);

#ifdef __cplusplus
}
#endif

#endif
