/* What the typed endpoints of TypedEndpoints.h forward to, besides the untyped writer and reader. Not for use by
 * hand. */
#ifndef ZUV_PLATFORM_DDS_TYPED_ENDPOINTS_RUNTIME_H
#define ZUV_PLATFORM_DDS_TYPED_ENDPOINTS_RUNTIME_H

#include "platform/dds/DataReader.h"
#include "platform/dds/DataWriter.h"
#include "platform/typesys/AllocationParams.h"
#include "platform/typesys/Sequence.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

struct ZUVTypePlugin;

/* Make a plug-in, register it, delete it in any case. DDS_RETCODE_ERROR for a NULL participant. */
DDS_ReturnCode_t DDS_TypeSupport_register_typeI(DDS_DomainParticipant *participant,
                                                const char *typeName,
                                                struct ZUVTypePlugin *(*newPlugin)(void),
                                                void (*deletePlugin)(struct ZUVTypePlugin *));

/* DDS_RETCODE_OK for true, DDS_RETCODE_ERROR for false. */
DDS_ReturnCode_t DDS_TypeSupport_codeI(DDS_Boolean success);

/* DDS_RETCODE_BAD_PARAMETER, after a log line, for a NULL sample or NULL params. */
DDS_ReturnCode_t DDS_TypeSupport_delete_dataI(const DDS_TypeCode *type, void *sample,
                                              DDS_Boolean deletePointers);
DDS_ReturnCode_t DDS_TypeSupport_delete_data_w_paramsI(const DDS_TypeCode *type, void *sample,
                                                       const DDS_TypeDeallocationParams_t *params);
DDS_ReturnCode_t DDS_TypeSupport_finalize_dataI(const DDS_TypeCode *type, void *sample,
                                                DDS_Boolean deletePointers);
DDS_ReturnCode_t
DDS_TypeSupport_finalize_data_w_paramsI(const DDS_TypeCode *type, void *sample,
                                        const DDS_TypeDeallocationParams_t *params);

/* The same pointer if the endpoint is one of `type`; NULL, after a log line, otherwise. */
DDS_DataWriter *DDS_DataWriter_narrowI(DDS_DataWriter *writer, const DDS_TypeCode *type);
DDS_DataReader *DDS_DataReader_narrowI(DDS_DataReader *reader, const DDS_TypeCode *type);

/* Read or take into a sequence of samples of `elementSize` bytes: on loan when its maximum is 0, otherwise as
 * copies. No data set its length to 0. DDS_RETCODE_BAD_PARAMETER for a NULL sequence; DDS_RETCODE_ERROR when
 * the sequence refuses the samples, which have then been given back. `handle` may be NULL. */
DDS_ReturnCode_t DDS_DataReader_read_or_take_sequenceI(
    DDS_DataReader *self, ZUVSequence *samples, DDS_UnsignedLong elementSize,
    const DDS_TypeCode *type, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,
    DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,
    DDS_InstanceStateMask instanceStates, DDS_InstanceSelectionKindI selection,
    const DDS_InstanceHandle_t *handle, DDS_Boolean take);

/* The same with a condition, which must be NULL: DDS_RETCODE_UNSUPPORTED otherwise. */
DDS_ReturnCode_t DDS_DataReader_read_or_take_sequence_w_conditionI(
    DDS_DataReader *self, ZUVSequence *samples, DDS_UnsignedLong elementSize,
    const DDS_TypeCode *type, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,
    DDS_InstanceSelectionKindI selection, const DDS_InstanceHandle_t *handle,
    DDS_ReadCondition *condition, DDS_Boolean take);

/* Give a loan back and leave both sequences empty. Sequences that hold no loan are left alone, with
 * DDS_RETCODE_OK; DDS_RETCODE_PRECONDITION_NOT_MET when the loan is not this reader's. */
DDS_ReturnCode_t DDS_DataReader_return_loan_sequenceI(DDS_DataReader *self, ZUVSequence *samples,
                                                      DDS_SampleInfoSeq *infos);

#ifdef __cplusplus
}
#endif

#endif
