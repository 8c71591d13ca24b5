/* Writers without their type: what the typed writers forward to (OMG DDS 1.4, 2.2.2.4.2).
 *
 * A sample is passed by its address and must be of the writer's type. Writing may be done from several threads
 * at once. */
#ifndef ZUV_PLATFORM_DDS_DATA_WRITER_H
#define ZUV_PLATFORM_DDS_DATA_WRITER_H

#include "platform/dds/Entity.h"
#include "platform/dds/Qos.h"
#include "platform/dds/SampleInfo.h"
#include "platform/dds/Status.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Callbacks of a writer, on threads of the middleware. A callback may be NULL; it may use the writer but not
 * delete it, and should return soon: reception waits for it. */
typedef struct DDS_DataWriterListener {
    void *listener_data; /* first argument of each callback */
    void (*on_offered_incompatible_qos)(void *listener_data, DDS_DataWriter *writer,
                                        const DDS_OfferedIncompatibleQosStatus *status);
    void (*on_publication_matched)(void *listener_data, DDS_DataWriter *writer,
                                   const DDS_PublicationMatchedStatus *status);
} DDS_DataWriterListener;

DDS_Entity *DDS_DataWriter_as_entity(DDS_DataWriter *self);
DDS_Publisher *DDS_DataWriter_get_publisher(DDS_DataWriter *self);
DDS_Topic *DDS_DataWriter_get_topic(DDS_DataWriter *self);
DDS_ReturnCode_t DDS_DataWriter_get_qos(DDS_DataWriter *self, DDS_DataWriterQos *qos);

/* Exchange the listener: it is copied, NULL takes it away. `mask` has the bits of the statuses that call it. */
DDS_ReturnCode_t DDS_DataWriter_set_listener(DDS_DataWriter *self,
                                             const DDS_DataWriterListener *listener,
                                             DDS_StatusMask mask);

/* Read a status; the changes in it count from here on again. */
DDS_ReturnCode_t
DDS_DataWriter_get_publication_matched_status(DDS_DataWriter *self,
                                              DDS_PublicationMatchedStatus *status);
DDS_ReturnCode_t
DDS_DataWriter_get_offered_incompatible_qos_status(DDS_DataWriter *self,
                                                   DDS_OfferedIncompatibleQosStatus *status);

/* Wait until all matched reliable readers have acknowledged all samples, or DDS_RETCODE_TIMEOUT. */
DDS_ReturnCode_t DDS_DataWriter_wait_for_acknowledgments(DDS_DataWriter *self,
                                                         const DDS_Duration_t *maxWait);

/* Write a sample. `params` must not be NULL; see DDS_WriteParams_t for what goes in and out. The call
 * waits, at most reliability.max_blocking_time, while the history or the send window is full.
 * DDS_RETCODE_NOT_ENABLED; DDS_RETCODE_TIMEOUT after that wait; DDS_RETCODE_BAD_PARAMETER for NULL;
 * DDS_RETCODE_ERROR when the sample breaks a bound of its type, or the middleware refuses. Nothing is
 * written then. */
DDS_ReturnCode_t DDS_DataWriter_write_w_params_untyped(DDS_DataWriter *self, const void *sample,
                                                       DDS_WriteParams_t *params);

/* The same without parameters. A NULL handle looks the instance up by its key; a NULL timestamp takes the
 * clock's. */
DDS_ReturnCode_t DDS_DataWriter_write_w_timestamp_untyped(DDS_DataWriter *self, const void *sample,
                                                          const DDS_InstanceHandle_t *handle,
                                                          const DDS_Time_t *timestamp);

/* Announce an instance, and get its handle: DDS_HANDLE_NIL for a type without a key or on failure. */
DDS_InstanceHandle_t DDS_DataWriter_register_instance_w_params_untyped(DDS_DataWriter *self,
                                                                       const void *instance,
                                                                       DDS_WriteParams_t *params);
DDS_InstanceHandle_t
DDS_DataWriter_register_instance_w_timestamp_untyped(DDS_DataWriter *self, const void *instance,
                                                     const DDS_Time_t *timestamp);

/* Say that this writer has no more to tell of the instance, or that the instance is gone. The instance is
 * that of the handle, or, if that is nil or NULL, the one whose key `instance` has.
 * DDS_RETCODE_PRECONDITION_NOT_MET for a type without a key. */
DDS_ReturnCode_t DDS_DataWriter_unregister_instance_w_params_untyped(DDS_DataWriter *self,
                                                                     const void *instance,
                                                                     DDS_WriteParams_t *params);
DDS_ReturnCode_t
DDS_DataWriter_unregister_instance_w_timestamp_untyped(DDS_DataWriter *self, const void *instance,
                                                       const DDS_InstanceHandle_t *handle,
                                                       const DDS_Time_t *timestamp);
DDS_ReturnCode_t DDS_DataWriter_dispose_w_params_untyped(DDS_DataWriter *self, const void *instance,
                                                         DDS_WriteParams_t *params);
DDS_ReturnCode_t DDS_DataWriter_dispose_w_timestamp_untyped(DDS_DataWriter *self,
                                                            const void *instance,
                                                            const DDS_InstanceHandle_t *handle,
                                                            const DDS_Time_t *timestamp);

/* Borrow a sample of the writer to fill and to write; writing it, or discarding it, gives it back.
 * DDS_RETCODE_PRECONDITION_NOT_MET to discard what is not on loan. */
DDS_ReturnCode_t DDS_DataWriter_get_loan_untyped(DDS_DataWriter *self, void **sample);
DDS_ReturnCode_t DDS_DataWriter_discard_loan_untyped(DDS_DataWriter *self, void *sample);

/* The handle of the instance whose key `sample` has, whether it was written before or not; DDS_HANDLE_NIL for a
 * type without a key. */
DDS_InstanceHandle_t DDS_DataWriter_lookup_instance_untyped(DDS_DataWriter *self,
                                                            const void *sample);

/* Fill the key members of `sample` from the handle of an instance. DDS_RETCODE_BAD_PARAMETER for NULL and
 * for nil, DDS_RETCODE_PRECONDITION_NOT_MET for a type without a key, DDS_RETCODE_UNSUPPORTED for one whose
 * keys can exceed 16 octets: a handle is only their digest. */
DDS_ReturnCode_t DDS_DataWriter_get_key_value_untyped(DDS_DataWriter *self, void *sample,
                                                      const DDS_InstanceHandle_t *handle);

/* The type name that the writer's topic is registered under. */
const char *DDS_DataWriter_get_type_nameI(DDS_DataWriter *self);

/* 1 if a reader that belongs to the participant of the entity `guid` is matched now. With `maxWait` not NULL
 * the call waits for that, at most so long, woken by the match itself. */
DDS_Boolean DDS_DataWriter_wait_for_reader_of_participantI(DDS_DataWriter *self,
                                                           const DDS_GUID_t *guid,
                                                           const DDS_Duration_t *maxWait);

#ifdef __cplusplus
}
#endif

#endif
