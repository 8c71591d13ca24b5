/* The plug-in record through which the middleware works with a type, and the default data that it keeps for
 * a participant and for an endpoint of a type. */
#ifndef ZUV_PLATFORM_TYPESYS_TYPE_PLUGIN_H
#define ZUV_PLATFORM_TYPESYS_TYPE_PLUGIN_H

#include "platform/typesys/Codec.h"
#include "platform/typesys/Sample.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* What a type keeps for a participant on which it is registered, and for one writer or reader. */
typedef struct ZUVTypeParticipantData ZUVTypeParticipantData;
typedef struct ZUVTypeEndpointData ZUVTypeEndpointData;

typedef enum ZUVTypeEndpointKind {
    ZUV_TYPE_ENDPOINT_READER = 1,
    ZUV_TYPE_ENDPOINT_WRITER = 2
} ZUVTypeEndpointKind;

typedef enum ZUVTypeKeyKind {
    ZUV_TYPE_KEY_KIND_NONE = 0,
    ZUV_TYPE_KEY_KIND_USER = 2
} ZUVTypeKeyKind;

typedef struct ZUVTypeEndpointInfo {
    ZUVTypeEndpointKind kind;
    /* Returned buffers above this many octets are released, smaller ones kept for reuse;
     * DDS_LENGTH_UNLIMITED keeps all. */
    DDS_Long poolBufferMaxSize;
} ZUVTypeEndpointInfo;

/* All operations of a type, in their fixed order. Those marked "keyed" are NULL for a type without a key.
 * Each may be called from any thread; operations of one endpoint's pools lock by themselves. Sizes are octets.
 * `endpointData` may be NULL except for createSample, deleteSample, the pools and where told otherwise. */
typedef struct ZUVTypePlugin {
    /* NULL on failure. */
    ZUVTypeParticipantData *(*onParticipantAttached)(void *registrationData);
    void (*onParticipantDetached)(ZUVTypeParticipantData *participantData);
    ZUVTypeEndpointData *(*onEndpointAttached)(ZUVTypeParticipantData *participantData,
                                               const ZUVTypeEndpointInfo *info);
    void (*onEndpointDetached)(ZUVTypeEndpointData *endpointData);

    DDS_Boolean (*copySample)(ZUVTypeEndpointData *endpointData, void *destination,
                              const void *source);
    void *(*createSample)(ZUVTypeEndpointData *endpointData); /* not from the pool */
    void (*deleteSample)(ZUVTypeEndpointData *endpointData, void *sample);
    void (*finalizeOptionalMembers)(ZUVTypeEndpointData *endpointData, void *sample,
                                    DDS_Boolean deletePointers);

    DDS_Boolean (*instanceToKeyHash)(ZUVTypeEndpointData *endpointData, ZUVKeyHash *hash,
                                     const void *instance); /* keyed */
    /* keyed; needs the key holder of `endpointData` */
    DDS_Boolean (*serializedSampleToKeyHash)(ZUVTypeEndpointData *endpointData,
                                             const DDS_Octet *buffer, DDS_UnsignedLong length,
                                             ZUVKeyHash *hash);

    /* See ZUVCodec_serialize and ZUVCodec_deserialize. */
    DDS_Boolean (*serialize)(ZUVTypeEndpointData *endpointData, const void *sample,
                             DDS_Octet *buffer, DDS_UnsignedLong capacity,
                             DDS_UnsignedLong *length);
    DDS_Boolean (*deserialize)(ZUVTypeEndpointData *endpointData, void *sample,
                               const DDS_Octet *buffer, DDS_UnsignedLong length);

    /* A sample of the endpoint's pool, initialized once and with the values of its last use; NULL when
     * there is no memory. It goes back with returnSample, which releases its optional members. */
    void *(*getSample)(ZUVTypeEndpointData *endpointData);
    void (*returnSample)(ZUVTypeEndpointData *endpointData, void *sample);

    /* With `includeEncapsulation` the size of a whole payload, without it that of the members alone. */
    DDS_UnsignedLong (*getSerializedSampleMaxSize)(ZUVTypeEndpointData *endpointData,
                                                   DDS_Boolean includeEncapsulation);
    DDS_UnsignedLong (*getSerializedSampleMinSize)(ZUVTypeEndpointData *endpointData,
                                                   DDS_Boolean includeEncapsulation);
    DDS_UnsignedLong (*getSerializedSampleSize)(ZUVTypeEndpointData *endpointData,
                                                DDS_Boolean includeEncapsulation,
                                                const void *sample);

    ZUVTypeKeyKind (*getKeyKind)(void);
    void *(*getKey)(ZUVTypeEndpointData *endpointData);              /* keyed */
    void (*returnKey)(ZUVTypeEndpointData *endpointData, void *key); /* keyed */
    DDS_UnsignedLong (*getSerializedKeyMaxSize)(ZUVTypeEndpointData *endpointData,
                                                DDS_Boolean includeEncapsulation); /* keyed */
    DDS_Boolean (*instanceToKey)(ZUVTypeEndpointData *endpointData, void *key,
                                 const void *instance); /* keyed */
    DDS_Boolean (*keyToInstance)(ZUVTypeEndpointData *endpointData, void *instance,
                                 const void *key); /* keyed */
    DDS_Boolean (*serializeKey)(ZUVTypeEndpointData *endpointData, const void *sample,
                                DDS_Octet *buffer, DDS_UnsignedLong capacity,
                                DDS_UnsignedLong *length); /* keyed */
    DDS_Boolean (*deserializeKey)(ZUVTypeEndpointData *endpointData, void *sample,
                                  const DDS_Octet *buffer, DDS_UnsignedLong length); /* keyed */
    DDS_Boolean (*deserializeKeySample)(ZUVTypeEndpointData *endpointData, void *sample,
                                        const DDS_Octet *buffer,
                                        DDS_UnsignedLong length); /* keyed */

    const DDS_TypeCode *typeCode;

    /* A buffer of at least `size` octets from the writer's pool, NULL when there is no memory. */
    DDS_Octet *(*getBuffer)(ZUVTypeEndpointData *endpointData, DDS_UnsignedLong size);
    void (*returnBuffer)(ZUVTypeEndpointData *endpointData, DDS_Octet *buffer);

    const char
        *typeName; /* the scoped name, under which the type registers unless told otherwise */
} ZUVTypePlugin;

/* The static description of a type's plug-in. */
typedef struct ZUVTypePluginInfo {
    const DDS_TypeCode *typeCode;
    ZUVTypePlugin *(*newPlugin)(void); /* NULL for a type that is no topic's type */
    void (*deletePlugin)(ZUVTypePlugin *plugin);
} ZUVTypePluginInfo;

/* Where the members of a type lie in memory. */
typedef struct ZUVSampleAccessInfo {
    DDS_UnsignedLong sampleSize;
    DDS_UnsignedLong memberCount;
    const DDS_UnsignedLong
        *memberOffsets; /* memberCount offsets; NULL for a type without members */
} ZUVSampleAccessInfo;

/* Made with the type's program on first use, which may come from several threads at once. NULL when there is
 * no memory. */
const ZUVSampleAccessInfo *ZUVType_getSampleAccessInfo(const DDS_TypeCode *type);

/* The factory that counts who uses a type's programs. */
typedef struct DDS_TypeCodeFactory DDS_TypeCodeFactory;
#define DDS_TYPE_PROGRAMS_ALL 127u
#define DDS_TYPE_PROGRAMS_SERIALIZATION 27u

DDS_TypeCodeFactory *DDS_TypeCodeFactory_get_instance(void);
/* Compile the programs of a type unless that is done, and count one more user. False for a type that cannot
 * be compiled and when there is no memory. */
DDS_Boolean DDS_TypeCodeFactory_assert_programs_in_global_list(DDS_TypeCodeFactory *self,
                                                               const DDS_TypeCode *type,
                                                               DDS_UnsignedLong programMask);
/* One user less. The programs themselves stay: a type is compiled once in a process. */
void DDS_TypeCodeFactory_remove_programs_from_global_list(DDS_TypeCodeFactory *self,
                                                          const DDS_TypeCode *type,
                                                          DDS_UnsignedLong programMask);
/* Users now. */
DDS_UnsignedLong DDS_TypeCodeFactory_get_program_user_count(const DDS_TypeCodeFactory *self,
                                                            const DDS_TypeCode *type);

/* A plug-in record for `type`, filled with the default operations, its type code and name; TPlugin_new adds
 * the typed ones. NULL when there is no memory. */
ZUVTypePlugin *ZUVTypePlugin_new(const DDS_TypeCode *type);
void ZUVTypePlugin_delete(ZUVTypePlugin *self);

/* Default data. A participant's holds the programs of its type. */
ZUVTypeParticipantData *ZUVTypeParticipantData_new(const DDS_TypeCode *type);
void ZUVTypeParticipantData_delete(ZUVTypeParticipantData *self);

/* An endpoint's holds pools of samples, keys and buffers. */
ZUVTypeEndpointData *ZUVTypeEndpointData_new(const DDS_TypeCode *type,
                                             const ZUVTypeEndpointInfo *info);
/* Samples, keys and buffers that were not returned stay with who has them; delete them first. */
void ZUVTypeEndpointData_delete(ZUVTypeEndpointData *self);
void *ZUVTypeEndpointData_createSample(ZUVTypeEndpointData *self);
void ZUVTypeEndpointData_deleteSample(ZUVTypeEndpointData *self, void *sample);
void *ZUVTypeEndpointData_getSample(ZUVTypeEndpointData *self);
void ZUVTypeEndpointData_returnSample(ZUVTypeEndpointData *self, void *sample);
void *ZUVTypeEndpointData_getKey(ZUVTypeEndpointData *self);
void ZUVTypeEndpointData_returnKey(ZUVTypeEndpointData *self, void *key);
DDS_Octet *ZUVTypeEndpointData_getBuffer(ZUVTypeEndpointData *self, DDS_UnsignedLong size);
void ZUVTypeEndpointData_returnBuffer(ZUVTypeEndpointData *self, DDS_Octet *buffer);
DDS_Boolean ZUVTypeEndpointData_serializedSampleToKeyHash(ZUVTypeEndpointData *self,
                                                          const DDS_Octet *buffer,
                                                          DDS_UnsignedLong length,
                                                          ZUVKeyHash *hash);

#ifdef __cplusplus
}
#endif

#endif
