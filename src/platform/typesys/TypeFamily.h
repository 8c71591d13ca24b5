/* The family of operations that every type of the system has, written by one macro a type.
 *
 * A header declares the C type and invokes one ZUV_TYPE_DECLARE_...; one source file holds the type's
 * table (TypeTable.hpp), which is the type code T_g_typecode, and invokes the matching ZUV_TYPE_DEFINE_...:
 *
 *   TOPIC_KEYED  a structure that is a topic's type, with key members
 *   TOPIC        the same without a key
 *   NESTED       a structure that is only part of others
 *   ALIAS        another name of a type
 *   ENUM         an enumeration
 *
 * Each operation is one line that forwards to the runtime of Sample.h, Sequence.h, Codec.h and
 * TypePlugin.h, where its effect is told. `T` below stands for the type's name. */
#ifndef ZUV_PLATFORM_TYPESYS_TYPE_FAMILY_H
#define ZUV_PLATFORM_TYPESYS_TYPE_FAMILY_H

#include "platform/typesys/Codec.h"
#include "platform/typesys/Sample.h"
#include "platform/typesys/Sequence.h"
#include "platform/typesys/TypeCode.h"
#include "platform/typesys/TypePlugin.h"

/* -- Description and sample operations: every type -------------------------------------------------- */

/*  T_get_typecode            the type's description; the same record on every call, from any thread
 *  T_get_sample_access_info  see ZUVType_getSampleAccessInfo
 *  T_get_type_plugin_info    the static plug-in description
 *  T_initialize              T_initialize_ex(self, true, true)
 *  T_initialize_ex           the default parameters with the two flags set as told
 *  T_initialize_w_params     ZUVSample_initializeWithParams
 *  T_finalize                T_finalize_ex(self, true); T_finalize_w_return also returns true
 *  T_finalize_ex             the default parameters with the flag set as told
 *  T_finalize_w_params       ZUVSample_finalizeWithParams
 *  T_finalize_optional_members   ZUVSample_finalizeOptionalMembers
 *  T_copy                    ZUVSample_copy */
#define ZUV_TYPE_DECLARE_SAMPLE(T)                                                                 \
    extern const DDS_TypeCode T##_g_typecode;                                                      \
    const DDS_TypeCode *T##_get_typecode(void);                                                    \
    const ZUVSampleAccessInfo *T##_get_sample_access_info(void);                                   \
    const ZUVTypePluginInfo *T##_get_type_plugin_info(void);                                       \
    DDS_Boolean T##_initialize(T *self);                                                           \
    DDS_Boolean T##_initialize_ex(T *self, DDS_Boolean allocatePointers,                           \
                                  DDS_Boolean allocateMemory);                                     \
    DDS_Boolean T##_initialize_w_params(T *self, const DDS_TypeAllocationParams_t *allocParams);   \
    void T##_finalize(T *self);                                                                    \
    DDS_Boolean T##_finalize_w_return(T *self);                                                    \
    void T##_finalize_ex(T *self, DDS_Boolean deletePointers);                                     \
    void T##_finalize_w_params(T *self, const DDS_TypeDeallocationParams_t *deallocParams);        \
    void T##_finalize_optional_members(T *self, DDS_Boolean deletePointers);                       \
    DDS_Boolean T##_copy(T *dst, const T *src);

#define ZUV_TYPE_DEFINE_SAMPLE(T, NEW_PLUGIN, DELETE_PLUGIN)                                       \
    const DDS_TypeCode *T##_get_typecode(void)                                                     \
    {                                                                                              \
        return &T##_g_typecode;                                                                    \
    }                                                                                              \
    const ZUVSampleAccessInfo *T##_get_sample_access_info(void)                                    \
    {                                                                                              \
        return ZUVType_getSampleAccessInfo(&T##_g_typecode);                                       \
    }                                                                                              \
    const ZUVTypePluginInfo *T##_get_type_plugin_info(void)                                        \
    {                                                                                              \
        static const ZUVTypePluginInfo info = {&T##_g_typecode, NEW_PLUGIN, DELETE_PLUGIN};        \
        return &info;                                                                              \
    }                                                                                              \
    DDS_Boolean T##_initialize(T *self)                                                            \
    {                                                                                              \
        return ZUVSample_initializeEx(&T##_g_typecode, self, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);  \
    }                                                                                              \
    DDS_Boolean T##_initialize_ex(T *self, DDS_Boolean allocatePointers,                           \
                                  DDS_Boolean allocateMemory)                                      \
    {                                                                                              \
        return ZUVSample_initializeEx(&T##_g_typecode, self, allocatePointers, allocateMemory);    \
    }                                                                                              \
    DDS_Boolean T##_initialize_w_params(T *self, const DDS_TypeAllocationParams_t *allocParams)    \
    {                                                                                              \
        return ZUVSample_initializeWithParams(&T##_g_typecode, self, allocParams);                 \
    }                                                                                              \
    void T##_finalize(T *self)                                                                     \
    {                                                                                              \
        ZUVSample_finalizeEx(&T##_g_typecode, self, DDS_BOOLEAN_TRUE);                             \
    }                                                                                              \
    DDS_Boolean T##_finalize_w_return(T *self)                                                     \
    {                                                                                              \
        ZUVSample_finalizeEx(&T##_g_typecode, self, DDS_BOOLEAN_TRUE);                             \
        return DDS_BOOLEAN_TRUE;                                                                   \
    }                                                                                              \
    void T##_finalize_ex(T *self, DDS_Boolean deletePointers)                                      \
    {                                                                                              \
        ZUVSample_finalizeEx(&T##_g_typecode, self, deletePointers);                               \
    }                                                                                              \
    void T##_finalize_w_params(T *self, const DDS_TypeDeallocationParams_t *deallocParams)         \
    {                                                                                              \
        ZUVSample_finalizeWithParams(&T##_g_typecode, self, deallocParams);                        \
    }                                                                                              \
    void T##_finalize_optional_members(T *self, DDS_Boolean deletePointers)                        \
    {                                                                                              \
        ZUVSample_finalizeOptionalMembers(&T##_g_typecode, self, deletePointers);                  \
    }                                                                                              \
    DDS_Boolean T##_copy(T *dst, const T *src)                                                     \
    {                                                                                              \
        return ZUVSample_copy(&T##_g_typecode, dst, src);                                          \
    }

/* -- Plug-in support -------------------------------------------------------------------------------- */

/*  TPluginSupport_create_data, _create_dataI   a sample with pointers allocated, NULL when there is no memory
 *  TPluginSupport_create_data_ex, _w_params    ZUVSample_newEx, ZUVSample_newWithParams
 *  TPluginSupport_destroy_data...              the matching release; optional members go as well
 *  TPluginSupport_copy_data                    T_copy
 *  TPluginSupport_print_data                   ZUVSample_print */
#define ZUV_TYPE_DECLARE_PRINT(T)                                                                  \
    void T##PluginSupport_print_data(const T *sample, const char *description,                     \
                                     DDS_UnsignedLong indent);

#define ZUV_TYPE_DEFINE_PRINT(T)                                                                   \
    void T##PluginSupport_print_data(const T *sample, const char *description,                     \
                                     DDS_UnsignedLong indent)                                      \
    {                                                                                              \
        ZUVSample_print(&T##_g_typecode, sample, description, indent);                             \
    }

#define ZUV_TYPE_DECLARE_SUPPORT(T)                                                                \
    T *T##PluginSupport_create_data(void);                                                         \
    T *T##PluginSupport_create_dataI(void);                                                        \
    T *T##PluginSupport_create_data_ex(DDS_Boolean allocatePointers);                              \
    T *T##PluginSupport_create_data_w_params(const DDS_TypeAllocationParams_t *allocParams);       \
    void T##PluginSupport_destroy_data(T *sample);                                                 \
    void T##PluginSupport_destroy_dataI(T *sample);                                                \
    void T##PluginSupport_destroy_data_ex(T *sample, DDS_Boolean deletePointers);                  \
    void T##PluginSupport_destroy_data_w_params(                                                   \
        T *sample, const DDS_TypeDeallocationParams_t *deallocParams);                             \
    DDS_Boolean T##PluginSupport_copy_data(T *dst, const T *src);                                  \
    ZUV_TYPE_DECLARE_PRINT(T)

#define ZUV_TYPE_DEFINE_SUPPORT(T)                                                                 \
    T *T##PluginSupport_create_data(void)                                                          \
    {                                                                                              \
        return T##PluginSupport_create_data_ex(DDS_BOOLEAN_TRUE);                                  \
    }                                                                                              \
    T *T##PluginSupport_create_dataI(void)                                                         \
    {                                                                                              \
        return T##PluginSupport_create_data_ex(DDS_BOOLEAN_TRUE);                                  \
    }                                                                                              \
    T *T##PluginSupport_create_data_ex(DDS_Boolean allocatePointers)                               \
    {                                                                                              \
        return (T *)ZUVSample_newEx(&T##_g_typecode, allocatePointers);                            \
    }                                                                                              \
    T *T##PluginSupport_create_data_w_params(const DDS_TypeAllocationParams_t *allocParams)        \
    {                                                                                              \
        return (T *)ZUVSample_newWithParams(&T##_g_typecode, allocParams);                         \
    }                                                                                              \
    void T##PluginSupport_destroy_data(T *sample)                                                  \
    {                                                                                              \
        T##PluginSupport_destroy_data_ex(sample, DDS_BOOLEAN_TRUE);                                \
    }                                                                                              \
    void T##PluginSupport_destroy_dataI(T *sample)                                                 \
    {                                                                                              \
        T##PluginSupport_destroy_data_ex(sample, DDS_BOOLEAN_TRUE);                                \
    }                                                                                              \
    void T##PluginSupport_destroy_data_ex(T *sample, DDS_Boolean deletePointers)                   \
    {                                                                                              \
        ZUVSample_deleteEx(&T##_g_typecode, sample, deletePointers);                               \
    }                                                                                              \
    void T##PluginSupport_destroy_data_w_params(T *sample,                                         \
                                                const DDS_TypeDeallocationParams_t *deallocParams) \
    {                                                                                              \
        ZUVSample_deleteWithParams(&T##_g_typecode, sample, deallocParams);                        \
    }                                                                                              \
    DDS_Boolean T##PluginSupport_copy_data(T *dst, const T *src)                                   \
    {                                                                                              \
        return ZUVSample_copy(&T##_g_typecode, dst, src);                                          \
    }                                                                                              \
    ZUV_TYPE_DEFINE_PRINT(T)

/* A key is held in a sample of the type itself, of which the key members alone count. */
#define ZUV_TYPE_DECLARE_KEY_SUPPORT(T)                                                            \
    typedef T T##KeyHolder;                                                                        \
    T##KeyHolder *T##PluginSupport_create_key(void);                                               \
    T##KeyHolder *T##PluginSupport_create_keyI(void);                                              \
    T##KeyHolder *T##PluginSupport_create_key_ex(DDS_Boolean allocatePointers);                    \
    void T##PluginSupport_destroy_key(T##KeyHolder *key);                                          \
    void T##PluginSupport_destroy_keyI(T##KeyHolder *key);                                         \
    void T##PluginSupport_destroy_key_ex(T##KeyHolder *key, DDS_Boolean deletePointers);

#define ZUV_TYPE_DEFINE_KEY_SUPPORT(T)                                                             \
    T##KeyHolder *T##PluginSupport_create_key(void)                                                \
    {                                                                                              \
        return T##PluginSupport_create_data();                                                     \
    }                                                                                              \
    T##KeyHolder *T##PluginSupport_create_keyI(void)                                               \
    {                                                                                              \
        return T##PluginSupport_create_data();                                                     \
    }                                                                                              \
    T##KeyHolder *T##PluginSupport_create_key_ex(DDS_Boolean allocatePointers)                     \
    {                                                                                              \
        return T##PluginSupport_create_data_ex(allocatePointers);                                  \
    }                                                                                              \
    void T##PluginSupport_destroy_key(T##KeyHolder *key)                                           \
    {                                                                                              \
        T##PluginSupport_destroy_data(key);                                                        \
    }                                                                                              \
    void T##PluginSupport_destroy_keyI(T##KeyHolder *key)                                          \
    {                                                                                              \
        T##PluginSupport_destroy_data(key);                                                        \
    }                                                                                              \
    void T##PluginSupport_destroy_key_ex(T##KeyHolder *key, DDS_Boolean deletePointers)            \
    {                                                                                              \
        T##PluginSupport_destroy_data_ex(key, deletePointers);                                     \
    }

/* -- Plug-in ---------------------------------------------------------------------------------------- */

/*  TPlugin_get_serialized_sample_max_size   ZUVCodec_getMaxSize */
#define ZUV_TYPE_DECLARE_MAX_SIZE(T)                                                               \
    DDS_UnsignedLong T##Plugin_get_serialized_sample_max_size(ZUVTypeEndpointData *endpointData,   \
                                                              DDS_Boolean includeEncapsulation);

#define ZUV_TYPE_DEFINE_MAX_SIZE(T)                                                                \
    DDS_UnsignedLong T##Plugin_get_serialized_sample_max_size(ZUVTypeEndpointData *endpointData,   \
                                                              DDS_Boolean includeEncapsulation)    \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getMaxSize(&T##_g_typecode, includeEncapsulation);                         \
    }

/*  TPlugin_copy_sample                      T_copy
 *  TPlugin_get_serialized_key_max_size      ZUVCodec_getKeyMaxSize; 0 without a key
 *  TPlugin_get_serialized_key_max_size_for_keyhash   ZUVCodec_getKeyHashInputMaxSize; 0 without a key
 *  TPlugin_get_key_kind                     whether the type has a key */
#define ZUV_TYPE_DECLARE_QUERIES(T)                                                                \
    ZUV_TYPE_DECLARE_MAX_SIZE(T)                                                                   \
    DDS_Boolean T##Plugin_copy_sample(ZUVTypeEndpointData *endpointData, void *dst,                \
                                      const void *src);                                            \
    DDS_UnsignedLong T##Plugin_get_serialized_key_max_size(ZUVTypeEndpointData *endpointData,      \
                                                           DDS_Boolean includeEncapsulation);      \
    DDS_UnsignedLong T##Plugin_get_serialized_key_max_size_for_keyhash(                            \
        ZUVTypeEndpointData *endpointData);                                                        \
    ZUVTypeKeyKind T##Plugin_get_key_kind(void);

#define ZUV_TYPE_DEFINE_QUERIES(T)                                                                 \
    ZUV_TYPE_DEFINE_MAX_SIZE(T)                                                                    \
    DDS_Boolean T##Plugin_copy_sample(ZUVTypeEndpointData *endpointData, void *dst,                \
                                      const void *src)                                             \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVSample_copy(&T##_g_typecode, dst, src);                                          \
    }                                                                                              \
    DDS_UnsignedLong T##Plugin_get_serialized_key_max_size(ZUVTypeEndpointData *endpointData,      \
                                                           DDS_Boolean includeEncapsulation)       \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getKeyMaxSize(&T##_g_typecode, includeEncapsulation);                      \
    }                                                                                              \
    DDS_UnsignedLong T##Plugin_get_serialized_key_max_size_for_keyhash(                            \
        ZUVTypeEndpointData *endpointData)                                                         \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getKeyHashInputMaxSize(&T##_g_typecode);                                   \
    }                                                                                              \
    ZUVTypeKeyKind T##Plugin_get_key_kind(void)                                                    \
    {                                                                                              \
        return ZUVCodec_hasKey(&T##_g_typecode) ? ZUV_TYPE_KEY_KIND_USER : ZUV_TYPE_KEY_KIND_NONE; \
    }

/*  TPlugin_serialize_to_cdr_buffer          ZUVCodec_serializeToCdrBuffer in the automatic representation
 *  TPlugin_serialize_to_cdr_buffer_ex       the same in the representation given
 *  TPlugin_deserialize_from_cdr_buffer      ZUVCodec_deserializeFromCdrBuffer
 *  TPlugin_data_to_string                   ZUVCodec_dataToString
 *  TPlugin_deserialize_key                  ZUVCodec_deserializeKey; false without a key
 *  TPlugin_get_programs                     compiles the programs on first use; false if there are none */
#define ZUV_TYPE_DECLARE_SERIALIZATION(T)                                                          \
    ZUV_TYPE_DECLARE_QUERIES(T)                                                                    \
    DDS_Boolean T##Plugin_serialize_to_cdr_buffer(char *buffer, unsigned int *length,              \
                                                  const T *sample);                                \
    DDS_Boolean T##Plugin_serialize_to_cdr_buffer_ex(char *buffer, unsigned int *length,           \
                                                     const T *sample,                              \
                                                     DDS_DataRepresentationId_t representation);   \
    DDS_Boolean T##Plugin_deserialize_from_cdr_buffer(T *sample, const char *buffer,               \
                                                      unsigned int length);                        \
    DDS_ReturnCode_t T##Plugin_data_to_string(const T *sample, char *text,                         \
                                              DDS_UnsignedLong *length,                            \
                                              const DDS_PrintFormatProperty *format);              \
    DDS_Boolean T##Plugin_deserialize_key(ZUVTypeEndpointData *endpointData, void *sample,         \
                                          const DDS_Octet *buffer, DDS_UnsignedLong length);       \
    DDS_Boolean T##Plugin_get_programs(void);

#define ZUV_TYPE_DEFINE_SERIALIZATION(T)                                                           \
    ZUV_TYPE_DEFINE_QUERIES(T)                                                                     \
    DDS_Boolean T##Plugin_serialize_to_cdr_buffer(char *buffer, unsigned int *length,              \
                                                  const T *sample)                                 \
    {                                                                                              \
        return T##Plugin_serialize_to_cdr_buffer_ex(buffer, length, sample,                        \
                                                    DDS_AUTO_DATA_REPRESENTATION);                 \
    }                                                                                              \
    DDS_Boolean T##Plugin_serialize_to_cdr_buffer_ex(char *buffer, unsigned int *length,           \
                                                     const T *sample,                              \
                                                     DDS_DataRepresentationId_t representation)    \
    {                                                                                              \
        return ZUVCodec_serializeToCdrBuffer(&T##_g_typecode, buffer, length, sample,              \
                                             representation);                                      \
    }                                                                                              \
    DDS_Boolean T##Plugin_deserialize_from_cdr_buffer(T *sample, const char *buffer,               \
                                                      unsigned int length)                         \
    {                                                                                              \
        return ZUVCodec_deserializeFromCdrBuffer(&T##_g_typecode, sample, buffer, length);         \
    }                                                                                              \
    DDS_ReturnCode_t T##Plugin_data_to_string(const T *sample, char *text,                         \
                                              DDS_UnsignedLong *length,                            \
                                              const DDS_PrintFormatProperty *format)               \
    {                                                                                              \
        return ZUVCodec_dataToString(&T##_g_typecode, sample, text, length, format);               \
    }                                                                                              \
    DDS_Boolean T##Plugin_deserialize_key(ZUVTypeEndpointData *endpointData, void *sample,         \
                                          const DDS_Octet *buffer, DDS_UnsignedLong length)        \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_deserializeKey(&T##_g_typecode, sample, buffer, length);                   \
    }                                                                                              \
    DDS_Boolean T##Plugin_get_programs(void)                                                       \
    {                                                                                              \
        return DDS_TypeCodeFactory_assert_programs_in_global_list(                                 \
            DDS_TypeCodeFactory_get_instance(), &T##_g_typecode, DDS_TYPE_PROGRAMS_SERIALIZATION); \
    }

/*  TPlugin_new, TPlugin_delete              the plug-in record; NULL when there is no memory
 *  TPlugin_on_participant_attached, ...     see the record's operations in TypePlugin.h */
#define ZUV_TYPE_DECLARE_PLUGIN(T)                                                                 \
    ZUV_TYPE_DECLARE_SERIALIZATION(T)                                                              \
    ZUVTypeParticipantData *T##Plugin_on_participant_attached(void *registrationData);             \
    void T##Plugin_on_participant_detached(ZUVTypeParticipantData *participantData);               \
    ZUVTypeEndpointData *T##Plugin_on_endpoint_attached(ZUVTypeParticipantData *participantData,   \
                                                        const ZUVTypeEndpointInfo *info);          \
    void T##Plugin_on_endpoint_detached(ZUVTypeEndpointData *endpointData);                        \
    void T##Plugin_finalize_optional_members(ZUVTypeEndpointData *endpointData, void *sample,      \
                                             DDS_Boolean deletePointers);                          \
    void T##Plugin_return_sample(ZUVTypeEndpointData *endpointData, void *sample);                 \
    ZUVTypePlugin *T##Plugin_new(void);                                                            \
    void T##Plugin_delete(ZUVTypePlugin *plugin);

#define ZUV_TYPE_DEFINE_PLUGIN(T, FILL_KEY_OPERATIONS)                                             \
    ZUVTypeParticipantData *T##Plugin_on_participant_attached(void *registrationData)              \
    {                                                                                              \
        (void)registrationData;                                                                    \
        return ZUVTypeParticipantData_new(&T##_g_typecode);                                        \
    }                                                                                              \
    void T##Plugin_on_participant_detached(ZUVTypeParticipantData *participantData)                \
    {                                                                                              \
        ZUVTypeParticipantData_delete(participantData);                                            \
    }                                                                                              \
    ZUVTypeEndpointData *T##Plugin_on_endpoint_attached(ZUVTypeParticipantData *participantData,   \
                                                        const ZUVTypeEndpointInfo *info)           \
    {                                                                                              \
        (void)participantData;                                                                     \
        return ZUVTypeEndpointData_new(&T##_g_typecode, info);                                     \
    }                                                                                              \
    void T##Plugin_on_endpoint_detached(ZUVTypeEndpointData *endpointData)                         \
    {                                                                                              \
        ZUVTypeEndpointData_delete(endpointData);                                                  \
    }                                                                                              \
    void T##Plugin_finalize_optional_members(ZUVTypeEndpointData *endpointData, void *sample,      \
                                             DDS_Boolean deletePointers)                           \
    {                                                                                              \
        (void)endpointData;                                                                        \
        ZUVSample_finalizeOptionalMembers(&T##_g_typecode, sample, deletePointers);                \
    }                                                                                              \
    void T##Plugin_return_sample(ZUVTypeEndpointData *endpointData, void *sample)                  \
    {                                                                                              \
        T##Plugin_finalize_optional_members(endpointData, sample, DDS_BOOLEAN_TRUE);               \
        ZUVTypeEndpointData_returnSample(endpointData, sample);                                    \
    }                                                                                              \
    static DDS_Boolean T##Plugin_serializeI(ZUVTypeEndpointData *endpointData, const void *sample, \
                                            DDS_Octet *buffer, DDS_UnsignedLong capacity,          \
                                            DDS_UnsignedLong *length)                              \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_serialize(&T##_g_typecode, sample, buffer, capacity, length);              \
    }                                                                                              \
    static DDS_Boolean T##Plugin_deserializeI(ZUVTypeEndpointData *endpointData, void *sample,     \
                                              const DDS_Octet *buffer, DDS_UnsignedLong length)    \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_deserialize(&T##_g_typecode, sample, buffer, length);                      \
    }                                                                                              \
    static DDS_UnsignedLong T##Plugin_get_serialized_sample_min_sizeI(                             \
        ZUVTypeEndpointData *endpointData, DDS_Boolean includeEncapsulation)                       \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getMinSize(&T##_g_typecode, includeEncapsulation);                         \
    }                                                                                              \
    static DDS_UnsignedLong T##Plugin_get_serialized_sample_sizeI(                                 \
        ZUVTypeEndpointData *endpointData, DDS_Boolean includeEncapsulation, const void *sample)   \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getSize(&T##_g_typecode, includeEncapsulation, sample);                    \
    }                                                                                              \
    ZUVTypePlugin *T##Plugin_new(void)                                                             \
    {                                                                                              \
        ZUVTypePlugin *plugin = ZUVTypePlugin_new(&T##_g_typecode);                                \
        if (plugin != NULL) {                                                                      \
            plugin->onParticipantAttached = T##Plugin_on_participant_attached;                     \
            plugin->onParticipantDetached = T##Plugin_on_participant_detached;                     \
            plugin->onEndpointAttached = T##Plugin_on_endpoint_attached;                           \
            plugin->onEndpointDetached = T##Plugin_on_endpoint_detached;                           \
            plugin->copySample = T##Plugin_copy_sample;                                            \
            plugin->finalizeOptionalMembers = T##Plugin_finalize_optional_members;                 \
            plugin->serialize = T##Plugin_serializeI;                                              \
            plugin->deserialize = T##Plugin_deserializeI;                                          \
            plugin->returnSample = T##Plugin_return_sample;                                        \
            plugin->getSerializedSampleMaxSize = T##Plugin_get_serialized_sample_max_size;         \
            plugin->getSerializedSampleMinSize = T##Plugin_get_serialized_sample_min_sizeI;        \
            plugin->getSerializedSampleSize = T##Plugin_get_serialized_sample_sizeI;               \
            plugin->getKeyKind = T##Plugin_get_key_kind;                                           \
            FILL_KEY_OPERATIONS(T, plugin)                                                         \
        }                                                                                          \
        return plugin;                                                                             \
    }                                                                                              \
    void T##Plugin_delete(ZUVTypePlugin *plugin)                                                   \
    {                                                                                              \
        ZUVTypePlugin_delete(plugin);                                                              \
    }

/*  TPlugin_instance_to_key, _key_to_instance   ZUVSample_copyKey
 *  TPlugin_serialized_sample_to_keyhash        the hash of a payload's sample, through the key holder of
 *                                              the endpoint; false without one */
#define ZUV_TYPE_DECLARE_KEY_PLUGIN(T)                                                             \
    DDS_Boolean T##Plugin_instance_to_key(ZUVTypeEndpointData *endpointData, void *key,            \
                                          const void *instance);                                   \
    DDS_Boolean T##Plugin_key_to_instance(ZUVTypeEndpointData *endpointData, void *instance,       \
                                          const void *key);                                        \
    DDS_Boolean T##Plugin_serialized_sample_to_keyhash(ZUVTypeEndpointData *endpointData,          \
                                                       const DDS_Octet *buffer,                    \
                                                       DDS_UnsignedLong length, ZUVKeyHash *hash);

#define ZUV_TYPE_DEFINE_KEY_PLUGIN(T)                                                              \
    DDS_Boolean T##Plugin_instance_to_key(ZUVTypeEndpointData *endpointData, void *key,            \
                                          const void *instance)                                    \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVSample_copyKey(&T##_g_typecode, key, instance);                                  \
    }                                                                                              \
    DDS_Boolean T##Plugin_key_to_instance(ZUVTypeEndpointData *endpointData, void *instance,       \
                                          const void *key)                                         \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVSample_copyKey(&T##_g_typecode, instance, key);                                  \
    }                                                                                              \
    DDS_Boolean T##Plugin_serialized_sample_to_keyhash(ZUVTypeEndpointData *endpointData,          \
                                                       const DDS_Octet *buffer,                    \
                                                       DDS_UnsignedLong length, ZUVKeyHash *hash)  \
    {                                                                                              \
        return ZUVTypeEndpointData_serializedSampleToKeyHash(endpointData, buffer, length, hash);  \
    }                                                                                              \
    static DDS_Boolean T##Plugin_instance_to_keyhashI(ZUVTypeEndpointData *endpointData,           \
                                                      ZUVKeyHash *hash, const void *instance)      \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_getKeyHash(&T##_g_typecode, instance, hash);                               \
    }                                                                                              \
    static DDS_Boolean T##Plugin_serialize_keyI(                                                   \
        ZUVTypeEndpointData *endpointData, const void *sample, DDS_Octet *buffer,                  \
        DDS_UnsignedLong capacity, DDS_UnsignedLong *length)                                       \
    {                                                                                              \
        (void)endpointData;                                                                        \
        return ZUVCodec_serializeKey(&T##_g_typecode, sample, buffer, capacity, length);           \
    }

#define ZUV_TYPE_FILL_KEY_OPERATIONS(T, plugin)                                                    \
    plugin->instanceToKeyHash = T##Plugin_instance_to_keyhashI;                                    \
    plugin->serializedSampleToKeyHash = T##Plugin_serialized_sample_to_keyhash;                    \
    plugin->getKey = ZUVTypeEndpointData_getKey;                                                   \
    plugin->returnKey = ZUVTypeEndpointData_returnKey;                                             \
    plugin->getSerializedKeyMaxSize = T##Plugin_get_serialized_key_max_size;                       \
    plugin->instanceToKey = T##Plugin_instance_to_key;                                             \
    plugin->keyToInstance = T##Plugin_key_to_instance;                                             \
    plugin->serializeKey = T##Plugin_serialize_keyI;                                               \
    plugin->deserializeKey = T##Plugin_deserialize_key;                                            \
    plugin->deserializeKeySample = T##Plugin_deserialize_key;

#define ZUV_TYPE_FILL_NO_KEY_OPERATIONS(T, plugin)

/* -- The family by kind of type --------------------------------------------------------------------- */

#define ZUV_TYPE_DECLARE_TOPIC_KEYED(T)                                                            \
    ZUV_TYPE_DECLARE_SAMPLE(T)                                                                     \
    ZUV_SEQUENCE_DECLARE(T##Seq, T)                                                                \
    ZUV_TYPE_DECLARE_SUPPORT(T)                                                                    \
    ZUV_TYPE_DECLARE_KEY_SUPPORT(T)                                                                \
    ZUV_TYPE_DECLARE_PLUGIN(T)                                                                     \
    ZUV_TYPE_DECLARE_KEY_PLUGIN(T)

#define ZUV_TYPE_DEFINE_TOPIC_KEYED(T)                                                             \
    ZUV_TYPE_DEFINE_SAMPLE(T, T##Plugin_new, T##Plugin_delete)                                     \
    ZUV_SEQUENCE_DEFINE(T##Seq, T, &T##_g_typecode)                                                \
    ZUV_TYPE_DEFINE_SUPPORT(T)                                                                     \
    ZUV_TYPE_DEFINE_KEY_SUPPORT(T)                                                                 \
    ZUV_TYPE_DEFINE_SERIALIZATION(T)                                                               \
    ZUV_TYPE_DEFINE_KEY_PLUGIN(T)                                                                  \
    ZUV_TYPE_DEFINE_PLUGIN(T, ZUV_TYPE_FILL_KEY_OPERATIONS)

#define ZUV_TYPE_DECLARE_TOPIC(T)                                                                  \
    ZUV_TYPE_DECLARE_SAMPLE(T)                                                                     \
    ZUV_SEQUENCE_DECLARE(T##Seq, T)                                                                \
    ZUV_TYPE_DECLARE_SUPPORT(T)                                                                    \
    ZUV_TYPE_DECLARE_PLUGIN(T)

#define ZUV_TYPE_DEFINE_TOPIC(T)                                                                   \
    ZUV_TYPE_DEFINE_SAMPLE(T, T##Plugin_new, T##Plugin_delete)                                     \
    ZUV_SEQUENCE_DEFINE(T##Seq, T, &T##_g_typecode)                                                \
    ZUV_TYPE_DEFINE_SUPPORT(T)                                                                     \
    ZUV_TYPE_DEFINE_SERIALIZATION(T)                                                               \
    ZUV_TYPE_DEFINE_PLUGIN(T, ZUV_TYPE_FILL_NO_KEY_OPERATIONS)

#define ZUV_TYPE_DECLARE_NESTED(T)                                                                 \
    ZUV_TYPE_DECLARE_SAMPLE(T)                                                                     \
    ZUV_SEQUENCE_DECLARE(T##Seq, T)                                                                \
    ZUV_TYPE_DECLARE_SUPPORT(T)                                                                    \
    ZUV_TYPE_DECLARE_SERIALIZATION(T)

#define ZUV_TYPE_DEFINE_NESTED(T)                                                                  \
    ZUV_TYPE_DEFINE_SAMPLE(T, NULL, NULL)                                                          \
    ZUV_SEQUENCE_DEFINE(T##Seq, T, &T##_g_typecode)                                                \
    ZUV_TYPE_DEFINE_SUPPORT(T)                                                                     \
    ZUV_TYPE_DEFINE_SERIALIZATION(T)

#define ZUV_TYPE_DECLARE_ALIAS(T)                                                                  \
    ZUV_TYPE_DECLARE_SAMPLE(T)                                                                     \
    ZUV_SEQUENCE_DECLARE(T##Seq, T)                                                                \
    ZUV_TYPE_DECLARE_SUPPORT(T)                                                                    \
    ZUV_TYPE_DECLARE_QUERIES(T)

#define ZUV_TYPE_DEFINE_ALIAS(T)                                                                   \
    ZUV_TYPE_DEFINE_SAMPLE(T, NULL, NULL)                                                          \
    ZUV_SEQUENCE_DEFINE(T##Seq, T, &T##_g_typecode)                                                \
    ZUV_TYPE_DEFINE_SUPPORT(T)                                                                     \
    ZUV_TYPE_DEFINE_QUERIES(T)

#define ZUV_TYPE_DECLARE_ENUM(T)                                                                   \
    ZUV_TYPE_DECLARE_SAMPLE(T)                                                                     \
    ZUV_SEQUENCE_DECLARE(T##Seq, T)                                                                \
    ZUV_TYPE_DECLARE_PRINT(T)                                                                      \
    ZUV_TYPE_DECLARE_MAX_SIZE(T)

#define ZUV_TYPE_DEFINE_ENUM(T)                                                                    \
    ZUV_TYPE_DEFINE_SAMPLE(T, NULL, NULL)                                                          \
    ZUV_SEQUENCE_DEFINE(T##Seq, T, &T##_g_typecode)                                                \
    ZUV_TYPE_DEFINE_PRINT(T)                                                                       \
    ZUV_TYPE_DEFINE_MAX_SIZE(T)

#endif
