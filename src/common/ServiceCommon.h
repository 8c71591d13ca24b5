/* The data types that every service shares: bounded texts, the state of an entity, and the key of a built-in
 * topic. Structures travel in XCDR2. */
#ifndef ZUV_COMMON_SERVICE_COMMON_H
#define ZUV_COMMON_SERVICE_COMMON_H

#include "platform/typesys/PrimitiveSequences.h"
#include "platform/typesys/String.h"
#include "platform/typesys/TypeFamily.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Texts are NUL-terminated and belong to their sample. */
#define ZUV_SERVICE_BOUNDED_STRING_MAX_LENGTH 255
#define ZUV_SERVICE_FILE_PATH_MAX_LENGTH 1024
#define ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH 2048

typedef char *ZUV_Service_BoundedString; /* names */
typedef char *ZUV_Service_FilePath;      /* paths of files */
typedef char *ZUV_Service_ResourceId;    /* resource identifiers */
typedef char *ZUV_Service_XmlString;     /* XML documents and snippets, unbounded */

ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_BoundedString)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_FilePath)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_ResourceId)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_XmlString)

typedef enum ZUV_Service_EntityStateKind {
    ZUV_Service_EntityStateKind_INVALID = 0,
    ZUV_Service_EntityStateKind_ENABLED = 1,
    ZUV_Service_EntityStateKind_DISABLED = 2,
    ZUV_Service_EntityStateKind_STARTED = 3,
    ZUV_Service_EntityStateKind_STOPPED = 4,
    ZUV_Service_EntityStateKind_RUNNING = 5,
    ZUV_Service_EntityStateKind_PAUSED = 6
} ZUV_Service_EntityStateKind;

ZUV_TYPE_DECLARE_ENUM(ZUV_Service_EntityStateKind)

/* A state carried as a sample. */
typedef struct ZUV_Service_EntityState {
    ZUV_Service_EntityStateKind state;
} ZUV_Service_EntityState;

ZUV_TYPE_DECLARE_TOPIC(ZUV_Service_EntityState)

/* The key of a built-in topic, four words. */
#define ZUV_SERVICE_BUILTIN_TOPIC_KEY_LENGTH 4

typedef struct ZUV_Service_BuiltinTopicKey {
    DDS_UnsignedLong value[ZUV_SERVICE_BUILTIN_TOPIC_KEY_LENGTH];
} ZUV_Service_BuiltinTopicKey;

ZUV_TYPE_DECLARE_NESTED(ZUV_Service_BuiltinTopicKey)

#ifdef __cplusplus
}
#endif

#endif
