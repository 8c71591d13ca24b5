/* Readers without their type: what the typed readers forward to (OMG DDS 1.4, 2.2.2.5.3).
 *
 * Samples come either as copies in the caller's own elements, or on loan: then they stay the reader's, until
 * they are given back. A loan may be given back from any thread. A sample whose serialized form is not a valid
 * one of the type is left out, counted, and reported in the log; its neighbours are not touched. */
#ifndef ZUV_PLATFORM_DDS_DATA_READER_H
#define ZUV_PLATFORM_DDS_DATA_READER_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"
#include "platform/dds/SampleInfo.h"
#include "platform/dds/Status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Callbacks of a reader, on threads of the middleware. A callback may be NULL; it may use the reader but not
 * delete it, and should return soon: reception waits for it. */
typedef struct DDS_DataReaderListener {
    void *listener_data; /* first argument of each callback */
    void (*on_requested_incompatible_qos)(void *listener_data, DDS_DataReader *reader,
                                          const DDS_RequestedIncompatibleQosStatus *status);
    void (*on_subscription_matched)(void *listener_data, DDS_DataReader *reader,
                                    const DDS_SubscriptionMatchedStatus *status);
    void (*on_data_available)(void *listener_data, DDS_DataReader *reader);
} DDS_DataReaderListener;

/* Reserved for conditions on the states of samples; NULL wherever one is asked for. */
typedef struct DDS_ReadCondition DDS_ReadCondition;

DDS_Entity *DDS_DataReader_as_entity(DDS_DataReader *self);
DDS_Subscriber *DDS_DataReader_get_subscriber(DDS_DataReader *self);
DDS_TopicDescription *DDS_DataReader_get_topicdescription(DDS_DataReader *self);
DDS_ReturnCode_t DDS_DataReader_get_qos(DDS_DataReader *self, DDS_DataReaderQos *qos);

/* Exchange the listener: it is copied, NULL takes it away. `mask` has the bits of the statuses that call it. */
DDS_ReturnCode_t DDS_DataReader_set_listener(DDS_DataReader *self,
                                             const DDS_DataReaderListener *listener,
                                             DDS_StatusMask mask);

/* Read a status; the changes in it count from here on again. */
DDS_ReturnCode_t
DDS_DataReader_get_subscription_matched_status(DDS_DataReader *self,
                                               DDS_SubscriptionMatchedStatus *status);
DDS_ReturnCode_t
DDS_DataReader_get_requested_incompatible_qos_status(DDS_DataReader *self,
                                                     DDS_RequestedIncompatibleQosStatus *status);

/* Which instances a read or take looks at. */
typedef enum DDS_InstanceSelectionKindI {
    DDS_ALL_INSTANCES_SELECTION, /* the handle is not looked at */
    DDS_ONE_INSTANCE_SELECTION,  /* just that of the handle */
    DDS_NEXT_INSTANCE_SELECTION  /* the first one behind that of the handle, nil being before all */
} DDS_InstanceSelectionKindI;

/* What a read or take asks for. */
typedef struct DDS_ReadRequestI {
    DDS_Long max_samples; /* or DDS_LENGTH_UNLIMITED */
    DDS_SampleStateMask sample_states;
    DDS_ViewStateMask view_states;
    DDS_InstanceStateMask instance_states;
    DDS_InstanceSelectionKindI selection;
    DDS_InstanceHandle_t handle;
    DDS_Boolean take; /* 0 leaves the samples in the reader */
} DDS_ReadRequestI;

/* Read or take. The caller's sequence is told by its parts: buffer, length, maximum, ownership.
 *
 * A sequence that owns its elements, with a maximum above 0, gets copies: *isLoan is 0, the first *dataCount
 * elements of `dataBuffer` (each of `dataSize` bytes, all initialized) are filled, and `infoSeq` gets as many
 * infos. max_samples above the maximum is DDS_RETCODE_PRECONDITION_NOT_MET.
 *
 * A sequence with maximum 0 gets a loan: *isLoan is 1, *dataPtrArray is an array of *dataCount pointers to
 * samples, and `infoSeq` holds the infos on loan as well. Both are given back with
 * DDS_DataReader_return_loan_untypedI.
 *
 * For a sample whose info says valid_data 0, the data pointer points to a sample without meaning.
 *
 * DDS_RETCODE_NO_DATA: nothing there; no loan is held. DDS_RETCODE_PRECONDITION_NOT_MET as well for a sequence
 * that holds a loan, and for an `infoSeq` that does. DDS_RETCODE_BAD_PARAMETER for NULL. On any failure no loan
 * is held and the samples stay in the reader, but for those that could not be copied. */
DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(
    DDS_DataReader *self, DDS_Boolean *isLoan, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_SampleInfoSeq *infoSeq, DDS_Long dataSeqLength, DDS_Long dataSeqMaximum,
    DDS_Boolean dataSeqHasOwnership, void *dataBuffer, DDS_UnsignedLong dataSize,
    const DDS_ReadRequestI *request);

/* Read or take the first sample not read yet, as a copy. */
DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader *self,
                                                                  void *sample,
                                                                  DDS_SampleInfo *info,
                                                                  DDS_Boolean take);

/* Give back a loan: the array of sample pointers, their count, and the sequence of infos, which is empty and
 * owns its elements afterwards. DDS_RETCODE_PRECONDITION_NOT_MET when the infos are no loan of this reader. */
DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader *self, void **dataPtrArray,
                                                     DDS_Long dataCount,
                                                     DDS_SampleInfoSeq *infoSeq);

/* The handle of the instance whose key `sample` has, or DDS_HANDLE_NIL. */
DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untyped(DDS_DataReader *self,
                                                            const void *sample);

/* Fill the key members of `sample` from the handle of an instance. DDS_RETCODE_BAD_PARAMETER for NULL and
 * for nil, DDS_RETCODE_PRECONDITION_NOT_MET for a type without a key, DDS_RETCODE_UNSUPPORTED for one whose
 * keys can exceed 16 octets: a handle is only their digest. */
DDS_ReturnCode_t DDS_DataReader_get_key_value_untyped(DDS_DataReader *self, void *sample,
                                                      const DDS_InstanceHandle_t *handle);

/* Put a sample into the queue of a remote writer: DDS_RETCODE_UNSUPPORTED, the middleware has no such
 * queue to reach. */
DDS_ReturnCode_t DDS_DataReader_add_to_remote_writer_queue_untyped(DDS_DataReader *self,
                                                                   const void *sample,
                                                                   const DDS_SampleInfo *info);

/* Whether a sample on loan still has the content it was lent with: always, a loan is the borrower's alone.
 * DDS_RETCODE_OK; `isConsistent` may be NULL. */
DDS_ReturnCode_t DDS_DataReader_is_data_consistent_untyped(DDS_DataReader *self,
                                                           DDS_Boolean *isConsistent,
                                                           const void *sample,
                                                           const DDS_SampleInfo *info);

/* The type name that the reader's topic is registered under. */
const char *DDS_DataReader_get_type_nameI(DDS_DataReader *self);

/* How many samples were left out because their serialized form was not valid. */
DDS_UnsignedLongLong DDS_DataReader_get_refused_sample_countI(DDS_DataReader *self);

#ifdef __cplusplus
}
#endif

#endif
