/* The administration protocol: the two samples that travel between a shell and a service, and the small
 * vocabularies that ride inside their bodies.
 *
 * A request says what to do in `action`, on what in `resource_identifier` (empty means the service), and
 * with which argument in the bodies. A reply is related to its request by the middleware's sample identity,
 * not by a member. */
#ifndef ZUV_REMOTE_CONFIG_SERVICE_ADMIN_H
#define ZUV_REMOTE_CONFIG_SERVICE_ADMIN_H

#include "common/ServiceCommon.h"

#ifdef __cplusplus
extern "C" {
#endif

/* -- Types ------------------------------------------------------------------------------------------- */

typedef ZUV_Service_BoundedString ZUV_Service_Admin_EntityName;
typedef ZUV_Service_ResourceId ZUV_Service_Admin_ResourceIdentifier;
typedef char *ZUV_Service_Admin_StringBody;
typedef DDS_OctetSeq ZUV_Service_Admin_OctetBody;

ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_Admin_EntityName)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_Admin_ResourceIdentifier)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_Admin_StringBody)
ZUV_TYPE_DECLARE_ALIAS(ZUV_Service_Admin_OctetBody)

typedef enum ZUV_Service_Admin_CommandActionKind {
    ZUV_Service_Admin_CommandActionKind_CREATE_ACTION = 0, /* create or load something */
    ZUV_Service_Admin_CommandActionKind_GET_ACTION = 1,
    ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION = 2, /* change it, its state included */
    ZUV_Service_Admin_CommandActionKind_DELETE_ACTION = 3  /* remove it, or the service itself */
} ZUV_Service_Admin_CommandActionKind;

typedef enum ZUV_Service_Admin_CommandReplyRetcode {
    ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE = 0,
    ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE = 1 /* told in the reply's string_body */
} ZUV_Service_Admin_CommandReplyRetcode;

ZUV_TYPE_DECLARE_ENUM(ZUV_Service_Admin_CommandActionKind)
ZUV_TYPE_DECLARE_ENUM(ZUV_Service_Admin_CommandReplyRetcode)

typedef struct ZUV_Service_Admin_CommandRequest {
    DDS_Long instance_id; /* the key */
    char *
        application_name; /* optional: the service that is to execute, every one if absent; at most 255
                               characters */
    ZUV_Service_Admin_CommandActionKind action;
    ZUV_Service_Admin_ResourceIdentifier resource_identifier;
    ZUV_Service_Admin_StringBody string_body; /* a word, or a URI with one of the schemes below */
    ZUV_Service_Admin_OctetBody octet_body;   /* a serialized sample, or a resource tag */
} ZUV_Service_Admin_CommandRequest;

typedef struct ZUV_Service_Admin_CommandReply {
    ZUV_Service_Admin_CommandReplyRetcode retcode;
    DDS_Long native_retcode;
    ZUV_Service_Admin_StringBody string_body;
    ZUV_Service_Admin_OctetBody octet_body;
} ZUV_Service_Admin_CommandReply;

ZUV_TYPE_DECLARE_TOPIC_KEYED(ZUV_Service_Admin_CommandRequest)
ZUV_TYPE_DECLARE_TOPIC(ZUV_Service_Admin_CommandReply)

/* -- Vocabularies of the bodies ---------------------------------------------------------------------- */

/* What the text behind the scheme of a string body is. */
typedef enum ZUV_BrelServiceAdminSchemeKind {
    ZUV_SERVICE_ADMIN_SCHEME_FILE = 0,    /* a file path */
    ZUV_SERVICE_ADMIN_SCHEME_STRING = 1,  /* inline text, normally XML, between double quotes */
    ZUV_SERVICE_ADMIN_SCHEME_SERVICE = 2, /* a reference inside the service */
    ZUV_SERVICE_ADMIN_SCHEME_OTHER = 3    /* no known scheme: the whole text */
} ZUV_BrelServiceAdminSchemeKind;

#define ZUV_SERVICE_ADMIN_SCHEME_FILE_NAME "file://"
#define ZUV_SERVICE_ADMIN_SCHEME_STRING_NAME "str://"
#define ZUV_SERVICE_ADMIN_SCHEME_SERVICE_NAME "service://"
#define ZUV_SERVICE_ADMIN_SCHEME_OTHER_NAME ""

/* An octet body that begins with this holds a resource tag: the scheme, then the name of a well-known
 * resource or of a custom method, terminator included. */
#define ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME "resource://"
#define ZUV_SERVICE_ADMIN_RESOURCE_TAG_MAX_LENGTH 254 /* characters, without the terminator */

typedef enum ZUV_ServiceWellKnownResourceKind {
    ZUV_SERVICE_ENTITY_WELL_KNOWN_RESOURCE = 0,
    ZUV_SERVICE_CONFIG_WELL_KNOWN_RESOURCE = 1,
    ZUV_SERVICE_STATE_WELL_KNOWN_RESOURCE = 2,
    ZUV_SERVICE_MESSAGE_WELL_KNOWN_RESOURCE = 3,
    ZUV_SERVICE_UNKNOWN_WELL_KNOWN_RESOURCE = 4 /* any other text; has no name */
} ZUV_ServiceWellKnownResourceKind;

#define ZUV_ServiceWellKnownResourceKind_COUNT 4
/* By kind; the name of the entity resource is empty. */
extern const char
    *const ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES[ZUV_ServiceWellKnownResourceKind_COUNT];

typedef enum ZUV_ServiceCustomMethodKind {
    ZUV_SERVICE_NONE_CUSTOM_METHOD = 0,
    ZUV_SERVICE_ANNOUNCE_CUSTOM_METHOD = 1,
    ZUV_SERVICE_SAVE_CUSTOM_METHOD = 2,
    ZUV_SERVICE_ADD_PEER_CUSTOM_METHOD = 3,
    ZUV_SERVICE_REMOVE_PEER_CUSTOM_METHOD = 4,
    ZUV_SERVICE_UNKNOWN_CUSTOM_METHOD = 5 /* any other text; has no name */
} ZUV_ServiceCustomMethodKind;

#define ZUV_ServiceCustomMethodKind_COUNT 5
/* By kind; the name of no method is empty. */
extern const char *const ZUV_SERVICE_CUSTOM_METHOD_NAMES[ZUV_ServiceCustomMethodKind_COUNT];

/* The words of a string body that name a state, by ZUV_Service_EntityStateKind: "INVALID", "ENABLED"... */
#define ZUV_SERVICE_ENTITY_STATE_COUNT 7
extern const char *const ZUV_SERVICE_ENTITY_STATE_NAMES[ZUV_SERVICE_ENTITY_STATE_COUNT];

#ifdef __cplusplus
}
#endif

#endif
