/* Typed endpoints: the type support, writer and reader of a topic's type, made by one macro each.
 *
 *   DDS_TYPED_ENDPOINTS_DECLARE(My_Type, My_TypeSeq)   in the header of the type, inside extern "C"
 *   DDS_TYPED_ENDPOINTS_DEFINE(My_Type, My_TypeSeq)    in one implementation file
 *
 * The definition needs My_Type_get_typecode, My_TypePlugin_new and My_TypePlugin_delete. Every operation is one
 * forwarding line: what it does is told with the operation that it calls, in DataWriter.h, DataReader.h,
 * Sample.h and Codec.h, or below. */
#ifndef ZUV_PLATFORM_DDS_TYPED_ENDPOINTS_H
#define ZUV_PLATFORM_DDS_TYPED_ENDPOINTS_H

#include <stddef.h>

#include "platform/dds/DataReader.h"
#include "platform/dds/DataWriter.h"
#include "platform/dds/DomainParticipant.h"
#include "platform/dds/TypedEndpointsRuntime.h"
#include "platform/typesys/Codec.h"
#include "platform/typesys/Sample.h"

/* The type support TTypeSupport. register_type makes a plug-in, registers it, and deletes it again; a NULL
 * participant gives DDS_RETCODE_ERROR. Results that are codes: DDS_RETCODE_ERROR for a failure of the operation
 * on the sample, DDS_RETCODE_BAD_PARAMETER for a NULL sample to delete or finalize. */
#define DDS_TYPE_SUPPORT_DECLARE(T)                                                                \
    DDS_ReturnCode_t T##TypeSupport_register_type(DDS_DomainParticipant *participant,              \
                                                  const char *typeName);                           \
    DDS_ReturnCode_t T##TypeSupport_unregister_type(DDS_DomainParticipant *participant,            \
                                                    const char *typeName);                         \
    void T##TypeSupport_finalize(void);                                                            \
    const DDS_TypeCode *T##TypeSupport_get_typecode(void);                                         \
    const char *T##TypeSupport_get_type_name(void);                                                \
    T *T##TypeSupport_create_data(void);                                                           \
    T *T##TypeSupport_create_data_ex(DDS_Boolean allocatePointers);                                \
    T *T##TypeSupport_create_data_w_params(const DDS_TypeAllocationParams_t *params);              \
    DDS_ReturnCode_t T##TypeSupport_delete_data(T *sample);                                        \
    DDS_ReturnCode_t T##TypeSupport_delete_data_ex(T *sample, DDS_Boolean deletePointers);         \
    DDS_ReturnCode_t T##TypeSupport_delete_data_w_params(                                          \
        T *sample, const DDS_TypeDeallocationParams_t *params);                                    \
    DDS_ReturnCode_t T##TypeSupport_initialize_data(T *sample);                                    \
    DDS_ReturnCode_t T##TypeSupport_initialize_data_ex(T *sample, DDS_Boolean allocatePointers,    \
                                                       DDS_Boolean allocateMemory);                \
    DDS_ReturnCode_t T##TypeSupport_initialize_data_w_params(                                      \
        T *sample, const DDS_TypeAllocationParams_t *params);                                      \
    DDS_ReturnCode_t T##TypeSupport_finalize_data(T *sample);                                      \
    DDS_ReturnCode_t T##TypeSupport_finalize_data_ex(T *sample, DDS_Boolean deletePointers);       \
    DDS_ReturnCode_t T##TypeSupport_finalize_data_w_params(                                        \
        T *sample, const DDS_TypeDeallocationParams_t *params);                                    \
    DDS_ReturnCode_t T##TypeSupport_copy_data(T *destination, const T *source);                    \
    void T##TypeSupport_print_data(const T *sample);                                               \
    DDS_ReturnCode_t T##TypeSupport_serialize_data_to_cdr_buffer(                                  \
        char *buffer, unsigned int *length, const T *sample);                                      \
    DDS_ReturnCode_t T##TypeSupport_serialize_data_to_cdr_buffer_ex(                               \
        char *buffer, unsigned int *length, const T *sample,                                       \
        DDS_DataRepresentationId_t representation);                                                \
    DDS_ReturnCode_t T##TypeSupport_deserialize_data_from_cdr_buffer(                              \
        T *sample, const char *buffer, unsigned int length);                                       \
    DDS_ReturnCode_t T##TypeSupport_data_to_string(const T *sample, char *text,                    \
                                                   DDS_UnsignedLong *length,                       \
                                                   const DDS_PrintFormatProperty *format);

#define DDS_TYPE_SUPPORT_DEFINE(T)                                                                 \
    DDS_ReturnCode_t T##TypeSupport_register_type(DDS_DomainParticipant *participant,              \
                                                  const char *typeName)                            \
    {                                                                                              \
        return DDS_TypeSupport_register_typeI(participant, typeName, T##Plugin_new,                \
                                              T##Plugin_delete);                                   \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_unregister_type(DDS_DomainParticipant *participant,            \
                                                    const char *typeName)                          \
    {                                                                                              \
        return DDS_DomainParticipant_unregister_type(participant, typeName);                       \
    }                                                                                              \
    void T##TypeSupport_finalize(void) {}                                                          \
    const DDS_TypeCode *T##TypeSupport_get_typecode(void)                                          \
    {                                                                                              \
        return T##_get_typecode();                                                                 \
    }                                                                                              \
    const char *T##TypeSupport_get_type_name(void)                                                 \
    {                                                                                              \
        return DDS_TypeCode_name(T##_get_typecode(), NULL);                                        \
    }                                                                                              \
    T *T##TypeSupport_create_data(void)                                                            \
    {                                                                                              \
        return (T *)ZUVSample_newEx(T##_get_typecode(), DDS_BOOLEAN_TRUE);                         \
    }                                                                                              \
    T *T##TypeSupport_create_data_ex(DDS_Boolean allocatePointers)                                 \
    {                                                                                              \
        return (T *)ZUVSample_newEx(T##_get_typecode(), allocatePointers);                         \
    }                                                                                              \
    T *T##TypeSupport_create_data_w_params(const DDS_TypeAllocationParams_t *params)               \
    {                                                                                              \
        return (T *)ZUVSample_newWithParams(T##_get_typecode(), params);                           \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_delete_data(T *sample)                                         \
    {                                                                                              \
        return T##TypeSupport_delete_data_ex(sample, DDS_BOOLEAN_TRUE);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_delete_data_ex(T *sample, DDS_Boolean deletePointers)          \
    {                                                                                              \
        return DDS_TypeSupport_delete_dataI(T##_get_typecode(), sample, deletePointers);           \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_delete_data_w_params(                                          \
        T *sample, const DDS_TypeDeallocationParams_t *params)                                     \
    {                                                                                              \
        return DDS_TypeSupport_delete_data_w_paramsI(T##_get_typecode(), sample, params);          \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_initialize_data(T *sample)                                     \
    {                                                                                              \
        return T##TypeSupport_initialize_data_ex(sample, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);      \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_initialize_data_ex(T *sample, DDS_Boolean allocatePointers,    \
                                                       DDS_Boolean allocateMemory)                 \
    {                                                                                              \
        return DDS_TypeSupport_codeI(                                                              \
            ZUVSample_initializeEx(T##_get_typecode(), sample, allocatePointers, allocateMemory)); \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_initialize_data_w_params(                                      \
        T *sample, const DDS_TypeAllocationParams_t *params)                                       \
    {                                                                                              \
        return DDS_TypeSupport_codeI(                                                              \
            ZUVSample_initializeWithParams(T##_get_typecode(), sample, params));                   \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_finalize_data(T *sample)                                       \
    {                                                                                              \
        return T##TypeSupport_finalize_data_ex(sample, DDS_BOOLEAN_TRUE);                          \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_finalize_data_ex(T *sample, DDS_Boolean deletePointers)        \
    {                                                                                              \
        return DDS_TypeSupport_finalize_dataI(T##_get_typecode(), sample, deletePointers);         \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_finalize_data_w_params(                                        \
        T *sample, const DDS_TypeDeallocationParams_t *params)                                     \
    {                                                                                              \
        return DDS_TypeSupport_finalize_data_w_paramsI(T##_get_typecode(), sample, params);        \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_copy_data(T *destination, const T *source)                     \
    {                                                                                              \
        return DDS_TypeSupport_codeI(ZUVSample_copy(T##_get_typecode(), destination, source));     \
    }                                                                                              \
    void T##TypeSupport_print_data(const T *sample)                                                \
    {                                                                                              \
        ZUVSample_print(T##_get_typecode(), sample, NULL, 0);                                      \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_serialize_data_to_cdr_buffer(                                  \
        char *buffer, unsigned int *length, const T *sample)                                       \
    {                                                                                              \
        return T##TypeSupport_serialize_data_to_cdr_buffer_ex(buffer, length, sample,              \
                                                              DDS_AUTO_DATA_REPRESENTATION);       \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_serialize_data_to_cdr_buffer_ex(                               \
        char *buffer, unsigned int *length, const T *sample,                                       \
        DDS_DataRepresentationId_t representation)                                                 \
    {                                                                                              \
        return DDS_TypeSupport_codeI(ZUVCodec_serializeToCdrBuffer(                                \
            T##_get_typecode(), buffer, length, sample, representation));                          \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_deserialize_data_from_cdr_buffer(                              \
        T *sample, const char *buffer, unsigned int length)                                        \
    {                                                                                              \
        return DDS_TypeSupport_codeI(                                                              \
            ZUVCodec_deserializeFromCdrBuffer(T##_get_typecode(), sample, buffer, length));        \
    }                                                                                              \
    DDS_ReturnCode_t T##TypeSupport_data_to_string(const T *sample, char *text,                    \
                                                   DDS_UnsignedLong *length,                       \
                                                   const DDS_PrintFormatProperty *format)          \
    {                                                                                              \
        return ZUVCodec_dataToString(T##_get_typecode(), sample, text, length, format);            \
    }

/* The writer TDataWriter. narrow gives NULL, after a log line, for a writer of another type. A NULL timestamp
 * takes the clock's; a NULL handle looks the instance up by its key. */
#define DDS_DATA_WRITER_DECLARE(T)                                                                 \
    typedef struct T##DataWriter T##DataWriter;                                                    \
    T##DataWriter *T##DataWriter_narrow(DDS_DataWriter *writer);                                   \
    DDS_DataWriter *T##DataWriter_as_datawriter(T##DataWriter *self);                              \
    T *T##DataWriter_create_data(T##DataWriter *self);                                             \
    T *T##DataWriter_create_data_w_params(T##DataWriter *self,                                     \
                                          const DDS_TypeAllocationParams_t *params);               \
    DDS_Boolean T##DataWriter_delete_data(T##DataWriter *self, T *sample);                         \
    DDS_Boolean T##DataWriter_delete_data_w_params(T##DataWriter *self, T *sample,                 \
                                                   const DDS_TypeDeallocationParams_t *params);    \
    DDS_ReturnCode_t T##DataWriter_get_loan(T##DataWriter *self, T **sample);                      \
    DDS_ReturnCode_t T##DataWriter_discard_loan(T##DataWriter *self, T *sample);                   \
    DDS_InstanceHandle_t T##DataWriter_register_instance(T##DataWriter *self, const T *instance);  \
    DDS_InstanceHandle_t T##DataWriter_register_instance_w_timestamp(                              \
        T##DataWriter *self, const T *instance, const DDS_Time_t *timestamp);                      \
    DDS_InstanceHandle_t T##DataWriter_register_instance_w_params(                                 \
        T##DataWriter *self, const T *instance, DDS_WriteParams_t *params);                        \
    DDS_ReturnCode_t T##DataWriter_unregister_instance(T##DataWriter *self, const T *instance,     \
                                                       const DDS_InstanceHandle_t *handle);        \
    DDS_ReturnCode_t T##DataWriter_unregister_instance_w_timestamp(                                \
        T##DataWriter *self, const T *instance, const DDS_InstanceHandle_t *handle,                \
        const DDS_Time_t *timestamp);                                                              \
    DDS_ReturnCode_t T##DataWriter_unregister_instance_w_params(                                   \
        T##DataWriter *self, const T *instance, DDS_WriteParams_t *params);                        \
    DDS_ReturnCode_t T##DataWriter_write(T##DataWriter *self, const T *sample,                     \
                                         const DDS_InstanceHandle_t *handle);                      \
    DDS_ReturnCode_t T##DataWriter_write_w_timestamp(T##DataWriter *self, const T *sample,         \
                                                     const DDS_InstanceHandle_t *handle,           \
                                                     const DDS_Time_t *timestamp);                 \
    DDS_ReturnCode_t T##DataWriter_write_w_params(T##DataWriter *self, const T *sample,            \
                                                  DDS_WriteParams_t *params);                      \
    DDS_ReturnCode_t T##DataWriter_dispose(T##DataWriter *self, const T *instance,                 \
                                           const DDS_InstanceHandle_t *handle);                    \
    DDS_ReturnCode_t T##DataWriter_dispose_w_timestamp(T##DataWriter *self, const T *instance,     \
                                                       const DDS_InstanceHandle_t *handle,         \
                                                       const DDS_Time_t *timestamp);               \
    DDS_ReturnCode_t T##DataWriter_dispose_w_params(T##DataWriter *self, const T *instance,        \
                                                    DDS_WriteParams_t *params);                    \
    DDS_ReturnCode_t T##DataWriter_get_key_value(T##DataWriter *self, T *sample,                   \
                                                 const DDS_InstanceHandle_t *handle);              \
    DDS_InstanceHandle_t T##DataWriter_lookup_instance(T##DataWriter *self, const T *sample);

#define DDS_DATA_WRITER_DEFINE(T)                                                                  \
    T##DataWriter *T##DataWriter_narrow(DDS_DataWriter *writer)                                    \
    {                                                                                              \
        return (T##DataWriter *)DDS_DataWriter_narrowI(writer, T##_get_typecode());                \
    }                                                                                              \
    DDS_DataWriter *T##DataWriter_as_datawriter(T##DataWriter *self)                               \
    {                                                                                              \
        return (DDS_DataWriter *)self;                                                             \
    }                                                                                              \
    T *T##DataWriter_create_data(T##DataWriter *self)                                              \
    {                                                                                              \
        (void)self;                                                                                \
        return T##TypeSupport_create_data();                                                       \
    }                                                                                              \
    T *T##DataWriter_create_data_w_params(T##DataWriter *self,                                     \
                                          const DDS_TypeAllocationParams_t *params)                \
    {                                                                                              \
        (void)self;                                                                                \
        return T##TypeSupport_create_data_w_params(params);                                        \
    }                                                                                              \
    DDS_Boolean T##DataWriter_delete_data(T##DataWriter *self, T *sample)                          \
    {                                                                                              \
        (void)self;                                                                                \
        return T##TypeSupport_delete_data(sample) == DDS_RETCODE_OK;                               \
    }                                                                                              \
    DDS_Boolean T##DataWriter_delete_data_w_params(T##DataWriter *self, T *sample,                 \
                                                   const DDS_TypeDeallocationParams_t *params)     \
    {                                                                                              \
        (void)self;                                                                                \
        return T##TypeSupport_delete_data_w_params(sample, params) == DDS_RETCODE_OK;              \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_get_loan(T##DataWriter *self, T **sample)                       \
    {                                                                                              \
        return DDS_DataWriter_get_loan_untyped((DDS_DataWriter *)self, (void **)sample);           \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_discard_loan(T##DataWriter *self, T *sample)                    \
    {                                                                                              \
        return DDS_DataWriter_discard_loan_untyped((DDS_DataWriter *)self, sample);                \
    }                                                                                              \
    DDS_InstanceHandle_t T##DataWriter_register_instance(T##DataWriter *self, const T *instance)   \
    {                                                                                              \
        return DDS_DataWriter_register_instance_w_timestamp_untyped((DDS_DataWriter *)self,        \
                                                                    instance, NULL);               \
    }                                                                                              \
    DDS_InstanceHandle_t T##DataWriter_register_instance_w_timestamp(                              \
        T##DataWriter *self, const T *instance, const DDS_Time_t *timestamp)                       \
    {                                                                                              \
        return DDS_DataWriter_register_instance_w_timestamp_untyped((DDS_DataWriter *)self,        \
                                                                    instance, timestamp);          \
    }                                                                                              \
    DDS_InstanceHandle_t T##DataWriter_register_instance_w_params(                                 \
        T##DataWriter *self, const T *instance, DDS_WriteParams_t *params)                         \
    {                                                                                              \
        return DDS_DataWriter_register_instance_w_params_untyped((DDS_DataWriter *)self, instance, \
                                                                 params);                          \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_unregister_instance(T##DataWriter *self, const T *instance,     \
                                                       const DDS_InstanceHandle_t *handle)         \
    {                                                                                              \
        return DDS_DataWriter_unregister_instance_w_timestamp_untyped((DDS_DataWriter *)self,      \
                                                                      instance, handle, NULL);     \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_unregister_instance_w_timestamp(                                \
        T##DataWriter *self, const T *instance, const DDS_InstanceHandle_t *handle,                \
        const DDS_Time_t *timestamp)                                                               \
    {                                                                                              \
        return DDS_DataWriter_unregister_instance_w_timestamp_untyped(                             \
            (DDS_DataWriter *)self, instance, handle, timestamp);                                  \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_unregister_instance_w_params(                                   \
        T##DataWriter *self, const T *instance, DDS_WriteParams_t *params)                         \
    {                                                                                              \
        return DDS_DataWriter_unregister_instance_w_params_untyped((DDS_DataWriter *)self,         \
                                                                   instance, params);              \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_write(T##DataWriter *self, const T *sample,                     \
                                         const DDS_InstanceHandle_t *handle)                       \
    {                                                                                              \
        return DDS_DataWriter_write_w_timestamp_untyped((DDS_DataWriter *)self, sample, handle,    \
                                                        NULL);                                     \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_write_w_timestamp(T##DataWriter *self, const T *sample,         \
                                                     const DDS_InstanceHandle_t *handle,           \
                                                     const DDS_Time_t *timestamp)                  \
    {                                                                                              \
        return DDS_DataWriter_write_w_timestamp_untyped((DDS_DataWriter *)self, sample, handle,    \
                                                        timestamp);                                \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_write_w_params(T##DataWriter *self, const T *sample,            \
                                                  DDS_WriteParams_t *params)                       \
    {                                                                                              \
        return DDS_DataWriter_write_w_params_untyped((DDS_DataWriter *)self, sample, params);      \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_dispose(T##DataWriter *self, const T *instance,                 \
                                           const DDS_InstanceHandle_t *handle)                     \
    {                                                                                              \
        return DDS_DataWriter_dispose_w_timestamp_untyped((DDS_DataWriter *)self, instance,        \
                                                          handle, NULL);                           \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_dispose_w_timestamp(T##DataWriter *self, const T *instance,     \
                                                       const DDS_InstanceHandle_t *handle,         \
                                                       const DDS_Time_t *timestamp)                \
    {                                                                                              \
        return DDS_DataWriter_dispose_w_timestamp_untyped((DDS_DataWriter *)self, instance,        \
                                                          handle, timestamp);                      \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_dispose_w_params(T##DataWriter *self, const T *instance,        \
                                                    DDS_WriteParams_t *params)                     \
    {                                                                                              \
        return DDS_DataWriter_dispose_w_params_untyped((DDS_DataWriter *)self, instance, params);  \
    }                                                                                              \
    DDS_ReturnCode_t T##DataWriter_get_key_value(T##DataWriter *self, T *sample,                   \
                                                 const DDS_InstanceHandle_t *handle)               \
    {                                                                                              \
        return DDS_DataWriter_get_key_value_untyped((DDS_DataWriter *)self, sample, handle);       \
    }                                                                                              \
    DDS_InstanceHandle_t T##DataWriter_lookup_instance(T##DataWriter *self, const T *sample)       \
    {                                                                                              \
        return DDS_DataWriter_lookup_instance_untyped((DDS_DataWriter *)self, sample);             \
    }

/* The reader TDataReader. narrow gives NULL, after a log line, for a reader of another type. The operations with
 * a condition take NULL for it, which admits every state. */
#define DDS_DATA_READER_DECLARE(T, TSeq)                                                           \
    typedef struct T##DataReader T##DataReader;                                                    \
    T##DataReader *T##DataReader_narrow(DDS_DataReader *reader);                                   \
    DDS_DataReader *T##DataReader_as_datareader(T##DataReader *self);                              \
    DDS_ReturnCode_t T##DataReader_read(                                                           \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates);                                                     \
    DDS_ReturnCode_t T##DataReader_take(                                                           \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates);                                                     \
    DDS_ReturnCode_t T##DataReader_read_w_condition(T##DataReader *self, TSeq *samples,            \
                                                    DDS_SampleInfoSeq *infos, DDS_Long maxSamples, \
                                                    DDS_ReadCondition *condition);                 \
    DDS_ReturnCode_t T##DataReader_take_w_condition(T##DataReader *self, TSeq *samples,            \
                                                    DDS_SampleInfoSeq *infos, DDS_Long maxSamples, \
                                                    DDS_ReadCondition *condition);                 \
    DDS_ReturnCode_t T##DataReader_read_next_sample(T##DataReader *self, T *sample,                \
                                                    DDS_SampleInfo *info);                         \
    DDS_ReturnCode_t T##DataReader_take_next_sample(T##DataReader *self, T *sample,                \
                                                    DDS_SampleInfo *info);                         \
    DDS_ReturnCode_t T##DataReader_read_instance(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates);                       \
    DDS_ReturnCode_t T##DataReader_take_instance(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates);                       \
    DDS_ReturnCode_t T##DataReader_read_instance_w_condition(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition);                         \
    DDS_ReturnCode_t T##DataReader_take_instance_w_condition(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition);                         \
    DDS_ReturnCode_t T##DataReader_read_next_instance(                                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates);                       \
    DDS_ReturnCode_t T##DataReader_take_next_instance(                                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates);                       \
    DDS_ReturnCode_t T##DataReader_read_next_instance_w_condition(                                 \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition);                         \
    DDS_ReturnCode_t T##DataReader_take_next_instance_w_condition(                                 \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition);                         \
    DDS_ReturnCode_t T##DataReader_return_loan(T##DataReader *self, TSeq *samples,                 \
                                               DDS_SampleInfoSeq *infos);                          \
    DDS_ReturnCode_t T##DataReader_get_key_value(T##DataReader *self, T *sample,                   \
                                                 const DDS_InstanceHandle_t *handle);              \
    DDS_InstanceHandle_t T##DataReader_lookup_instance(T##DataReader *self, const T *sample);      \
    DDS_ReturnCode_t T##DataReader_add_sample_to_remote_writer_queue(                              \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info);                         \
    DDS_ReturnCode_t T##DataReader_add_unregister_to_remote_writer_queue(                          \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info);                         \
    DDS_ReturnCode_t T##DataReader_add_dispose_to_remote_writer_queue(                             \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info);                         \
    DDS_ReturnCode_t T##DataReader_is_data_consistent(T##DataReader *self,                         \
                                                      DDS_Boolean *isConsistent, const T *sample,  \
                                                      const DDS_SampleInfo *info);                 \
    DDS_ReturnCode_t T##DataReader_read_or_takeI(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates, DDS_Boolean take);                                   \
    DDS_ReturnCode_t T##DataReader_read_or_take_w_conditionI(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_ReadCondition *condition, DDS_Boolean take);                                           \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_sample_I(                                     \
        T##DataReader *self, T *sample, DDS_SampleInfo *info, DDS_Boolean take);                   \
    DDS_ReturnCode_t T##DataReader_read_or_take_instanceI(                                         \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates, DDS_Boolean take);     \
    DDS_ReturnCode_t T##DataReader_read_or_take_instance_w_conditionI(                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition, DDS_Boolean take);       \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_instanceI(                                    \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates, DDS_Boolean take);     \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_instance_w_conditionI(                        \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition, DDS_Boolean take);

#define DDS_DATA_READER_DEFINE(T, TSeq)                                                            \
    T##DataReader *T##DataReader_narrow(DDS_DataReader *reader)                                    \
    {                                                                                              \
        return (T##DataReader *)DDS_DataReader_narrowI(reader, T##_get_typecode());                \
    }                                                                                              \
    DDS_DataReader *T##DataReader_as_datareader(T##DataReader *self)                               \
    {                                                                                              \
        return (DDS_DataReader *)self;                                                             \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read(                                                           \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates)                                                      \
    {                                                                                              \
        return T##DataReader_read_or_takeI(self, samples, infos, maxSamples, sampleStates,         \
                                           viewStates, instanceStates, DDS_BOOLEAN_FALSE);         \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take(                                                           \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates)                                                      \
    {                                                                                              \
        return T##DataReader_read_or_takeI(self, samples, infos, maxSamples, sampleStates,         \
                                           viewStates, instanceStates, DDS_BOOLEAN_TRUE);          \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_w_condition(T##DataReader *self, TSeq *samples,            \
                                                    DDS_SampleInfoSeq *infos, DDS_Long maxSamples, \
                                                    DDS_ReadCondition *condition)                  \
    {                                                                                              \
        return T##DataReader_read_or_take_w_conditionI(self, samples, infos, maxSamples,           \
                                                       condition, DDS_BOOLEAN_FALSE);              \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_w_condition(T##DataReader *self, TSeq *samples,            \
                                                    DDS_SampleInfoSeq *infos, DDS_Long maxSamples, \
                                                    DDS_ReadCondition *condition)                  \
    {                                                                                              \
        return T##DataReader_read_or_take_w_conditionI(self, samples, infos, maxSamples,           \
                                                       condition, DDS_BOOLEAN_TRUE);               \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_next_sample(T##DataReader *self, T *sample,                \
                                                    DDS_SampleInfo *info)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_next_sample_I(self, sample, info, DDS_BOOLEAN_FALSE);    \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_next_sample(T##DataReader *self, T *sample,                \
                                                    DDS_SampleInfo *info)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_next_sample_I(self, sample, info, DDS_BOOLEAN_TRUE);     \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_instance(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                        \
    {                                                                                              \
        return T##DataReader_read_or_take_instanceI(self, samples, infos, maxSamples, handle,      \
                                                    sampleStates, viewStates, instanceStates,      \
                                                    DDS_BOOLEAN_FALSE);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_instance(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                        \
    {                                                                                              \
        return T##DataReader_read_or_take_instanceI(self, samples, infos, maxSamples, handle,      \
                                                    sampleStates, viewStates, instanceStates,      \
                                                    DDS_BOOLEAN_TRUE);                             \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_instance_w_condition(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_instance_w_conditionI(                                   \
            self, samples, infos, maxSamples, handle, condition, DDS_BOOLEAN_FALSE);               \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_instance_w_condition(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_instance_w_conditionI(                                   \
            self, samples, infos, maxSamples, handle, condition, DDS_BOOLEAN_TRUE);                \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_next_instance(                                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                        \
    {                                                                                              \
        return T##DataReader_read_or_take_next_instanceI(self, samples, infos, maxSamples, handle, \
                                                         sampleStates, viewStates, instanceStates, \
                                                         DDS_BOOLEAN_FALSE);                       \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_next_instance(                                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates)                        \
    {                                                                                              \
        return T##DataReader_read_or_take_next_instanceI(self, samples, infos, maxSamples, handle, \
                                                         sampleStates, viewStates, instanceStates, \
                                                         DDS_BOOLEAN_TRUE);                        \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_next_instance_w_condition(                                 \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_next_instance_w_conditionI(                              \
            self, samples, infos, maxSamples, handle, condition, DDS_BOOLEAN_FALSE);               \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_take_next_instance_w_condition(                                 \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition)                          \
    {                                                                                              \
        return T##DataReader_read_or_take_next_instance_w_conditionI(                              \
            self, samples, infos, maxSamples, handle, condition, DDS_BOOLEAN_TRUE);                \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_return_loan(T##DataReader *self, TSeq *samples,                 \
                                               DDS_SampleInfoSeq *infos)                           \
    {                                                                                              \
        return DDS_DataReader_return_loan_sequenceI((DDS_DataReader *)self,                        \
                                                    (ZUVSequence *)samples, infos);                \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_get_key_value(T##DataReader *self, T *sample,                   \
                                                 const DDS_InstanceHandle_t *handle)               \
    {                                                                                              \
        return DDS_DataReader_get_key_value_untyped((DDS_DataReader *)self, sample, handle);       \
    }                                                                                              \
    DDS_InstanceHandle_t T##DataReader_lookup_instance(T##DataReader *self, const T *sample)       \
    {                                                                                              \
        return DDS_DataReader_lookup_instance_untyped((DDS_DataReader *)self, sample);             \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_add_sample_to_remote_writer_queue(                              \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info)                          \
    {                                                                                              \
        return DDS_DataReader_add_to_remote_writer_queue_untyped((DDS_DataReader *)self, sample,   \
                                                                 info);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_add_unregister_to_remote_writer_queue(                          \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info)                          \
    {                                                                                              \
        return DDS_DataReader_add_to_remote_writer_queue_untyped((DDS_DataReader *)self, sample,   \
                                                                 info);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_add_dispose_to_remote_writer_queue(                             \
        T##DataReader *self, const T *sample, const DDS_SampleInfo *info)                          \
    {                                                                                              \
        return DDS_DataReader_add_to_remote_writer_queue_untyped((DDS_DataReader *)self, sample,   \
                                                                 info);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_is_data_consistent(T##DataReader *self,                         \
                                                      DDS_Boolean *isConsistent, const T *sample,  \
                                                      const DDS_SampleInfo *info)                  \
    {                                                                                              \
        return DDS_DataReader_is_data_consistent_untyped((DDS_DataReader *)self, isConsistent,     \
                                                         sample, info);                            \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_takeI(                                                  \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,                            \
        DDS_InstanceStateMask instanceStates, DDS_Boolean take)                                    \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequenceI(                                              \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, sampleStates, viewStates, instanceStates, DDS_ALL_INSTANCES_SELECTION,     \
            NULL, take);                                                                           \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_w_conditionI(                                      \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        DDS_ReadCondition *condition, DDS_Boolean take)                                            \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequence_w_conditionI(                                  \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, DDS_ALL_INSTANCES_SELECTION, NULL, condition, take);                       \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_sample_I(                                     \
        T##DataReader *self, T *sample, DDS_SampleInfo *info, DDS_Boolean take)                    \
    {                                                                                              \
        return DDS_DataReader_read_or_take_next_sample_untypedI((DDS_DataReader *)self, sample,    \
                                                                info, take);                       \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_instanceI(                                         \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates, DDS_Boolean take)      \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequenceI(                                              \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, sampleStates, viewStates, instanceStates, DDS_ONE_INSTANCE_SELECTION,      \
            handle, take);                                                                         \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_instance_w_conditionI(                             \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition, DDS_Boolean take)        \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequence_w_conditionI(                                  \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, DDS_ONE_INSTANCE_SELECTION, handle, condition, take);                      \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_instanceI(                                    \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_SampleStateMask sampleStates,                      \
        DDS_ViewStateMask viewStates, DDS_InstanceStateMask instanceStates, DDS_Boolean take)      \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequenceI(                                              \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, sampleStates, viewStates, instanceStates, DDS_NEXT_INSTANCE_SELECTION,     \
            handle, take);                                                                         \
    }                                                                                              \
    DDS_ReturnCode_t T##DataReader_read_or_take_next_instance_w_conditionI(                        \
        T##DataReader *self, TSeq *samples, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,         \
        const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition, DDS_Boolean take)        \
    {                                                                                              \
        return DDS_DataReader_read_or_take_sequence_w_conditionI(                                  \
            (DDS_DataReader *)self, (ZUVSequence *)samples, sizeof(T), T##_get_typecode(), infos,  \
            maxSamples, DDS_NEXT_INSTANCE_SELECTION, handle, condition, take);                     \
    }

#define DDS_TYPED_ENDPOINTS_DECLARE(T, TSeq)                                                       \
    DDS_TYPE_SUPPORT_DECLARE(T)                                                                    \
    DDS_DATA_WRITER_DECLARE(T)                                                                     \
    DDS_DATA_READER_DECLARE(T, TSeq)

#define DDS_TYPED_ENDPOINTS_DEFINE(T, TSeq)                                                        \
    DDS_TYPE_SUPPORT_DEFINE(T)                                                                     \
    DDS_DATA_WRITER_DEFINE(T)                                                                      \
    DDS_DATA_READER_DEFINE(T, TSeq)

#endif
