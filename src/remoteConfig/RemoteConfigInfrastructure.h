/* What both ends of the administration protocol share: the helpers that read and write the bodies of
 * requests and replies. The vocabularies that ride in the bodies are in ServiceAdmin.h.
 *
 * A string body is a bare word or begins with a scheme ("file://", "str://", "service://"). An octet body
 * is a serialized sample or a resource tag: "resource://" and the name of a resource or a method, with its
 * terminator.
 *
 * Nothing here keeps state: everything may be called from any thread, but not on the same sample at once.
 * A NULL argument that is not allowed is a failed precondition, and yields the failure result. Failures
 * are reported in the log. */
#ifndef ZUV_REMOTE_CONFIG_REMOTE_CONFIG_INFRASTRUCTURE_H
#define ZUV_REMOTE_CONFIG_REMOTE_CONFIG_INFRASTRUCTURE_H

#include "remoteConfig/ServiceAdmin.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The topics that both ends use, the service unless it is configured otherwise. */
#define ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME "zuv/service/admin/command_request"
#define ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME "zuv/service/admin/command_reply"

/* The kind of a name, compared with its case. The unknown kind for any other text, and for NULL after a
 * report. */
ZUV_ServiceWellKnownResourceKind ZUV_ServiceWellKnownResourceKind_fromString(const char *kindName);
ZUV_ServiceCustomMethodKind ZUV_ServiceCustomMethodKind_fromString(const char *methodName);

/* How samples of some type are put into bytes, in CDR form with its encapsulation header. */
typedef struct ZUV_BrelServiceDataPlugin {
    void *plugin_data; /* the plug-in's own */
    /* Write `sample` into `buffer`. `*size` is the room in it, and becomes the size written. A NULL
     * `buffer` only asks for the size. */
    DDS_Boolean (*serialize_to_buffer)(char *buffer, DDS_UnsignedLong *size, void *sample);
    /* Read `sample` back. */
    DDS_Boolean (*deserialize_from_buffer)(void *sample, void *buffer, DDS_UnsignedLong size);
} ZUV_BrelServiceDataPlugin;

/* Make the sequence the serialized form of `sample`, growing it as needed. False, after a report, when the
 * size cannot be told or there is no memory, and when writing fails, which is the plug-in's to report. */
DDS_Boolean ZUV_BrelServiceDataPlugin_serializeSampleIntoOctetSequence(
    DDS_OctetSeq *octetSeq, ZUV_BrelServiceDataPlugin *dataPlugin, void *sample);

/* Choose the buffer for `requiredLength` bytes of a reply: `preallocatedBuffer` if its length, in bytes, is
 * DDS_LENGTH_UNLIMITED or above that, and else `*dynamicBuffer`. That one belongs to the caller, who keeps
 * it from reply to reply and releases it with ZUVOsapiHeap_free; here it grows, and never shrinks, if
 * `*dynamicBufferLength` is below `requiredLength`, and is used as it is if that is DDS_LENGTH_UNLIMITED.
 * `*isReallocated`, unless NULL, tells whether it grew. NULL, after a report, when there is no memory; the
 * dynamic buffer is then as before. */
char *ZUV_BrelServiceAdminSupport_getBufferForContent(char *preallocatedBuffer,
                                                      int preallocatedBufferLength,
                                                      int *isReallocated, char **dynamicBuffer,
                                                      int *dynamicBufferLength, int requiredLength);

/* Give the reply's string body room for `stringBodyRequiredLength` characters and a terminator, in the
 * body that it has, of `stringBodyBufferLength` bytes, or in the dynamic buffer. The reply borrows the
 * dynamic buffer: the caller takes it away before the reply is finalized. Returns 1, or 0 with the reply
 * as before. */
int ZUV_BrelServiceAdminSupport_setStringBodyBuffer(ZUV_Service_Admin_CommandReply *reply,
                                                    int stringBodyBufferLength,
                                                    char **dynamicBuffer, int *dynamicBufferLength,
                                                    int stringBodyRequiredLength);

/* The same for the octet body, which takes the dynamic buffer as a loan, with length 0. The octet body must
 * not own octets of its own when it has to take the loan. Returns 1, or 0: then a buffer that had just grown
 * is released, and `*dynamicContiguousBuffer` is NULL and its length 0. */
int ZUV_BrelServiceAdminSupport_setOctetBodyContiguousBuffer(ZUV_Service_Admin_CommandReply *reply,
                                                             DDS_Octet **dynamicContiguousBuffer,
                                                             int *dynamicContiguousBufferLength,
                                                             int requiredOctetBodyLength);

/* The scheme at the start of a string body, behind white space (BRELUtils_isSpace). Case counts. A NULL
 * body has no known scheme. */
ZUV_BrelServiceAdminSchemeKind ZUV_BrelServiceAdminSupport_getSchemeKind(const char *stringBody);

/* The literal of a scheme; empty for one that is not known. Never NULL. */
const char *ZUV_BrelServiceAdminSupport_getSchemeName(ZUV_BrelServiceAdminSchemeKind uriScheme);

/* What stands behind white space and scheme: a pointer into `stringBody`, NULL for NULL. */
const char *ZUV_BrelServiceAdminSupport_getBodyContent(const char *stringBody);

/* Strip the quotes around the text behind "str://": the last double quote becomes a terminator and the
 * first character, whatever it is, is skipped. A text without a quote behind its first character is
 * returned as it is. The result points into the argument; NULL for NULL. */
char *ZUV_BrelServiceAdminSupport_getXmlCodeFromStringBodyContent(char *stringBodyContent);

/* The word of a state, which must be one of the enumeration. */
const char *ZUV_BrelServiceAdminSupport_entityStateToString(ZUV_Service_EntityStateKind stateKind);

/* Put a state into the octet body, serialized. Returns 1 or 0. */
int ZUV_BrelServiceAdminSupport_setStateInReply(ZUV_Service_Admin_CommandReply *reply,
                                                ZUV_Service_EntityStateKind stateKind);
int ZUV_BrelServiceAdminSupport_setStateInRequest(ZUV_Service_Admin_CommandRequest *request,
                                                  ZUV_Service_EntityStateKind stateKind);

/* The state in the octet body or, if that is empty, the state whose word is the whole string body, in any
 * case. A request may have a resource tag in place of the serialized state; then the word counts.
 * INVALID when there is no state to be read. */
ZUV_Service_EntityStateKind
ZUV_BrelServiceAdminSupport_getStateFromReply(const ZUV_Service_Admin_CommandReply *reply);
ZUV_Service_EntityStateKind
ZUV_BrelServiceAdminSupport_getStateFromRequest(const ZUV_Service_Admin_CommandRequest *request);

/* The steps of the four operations above. Each returns 1 or 0. Reading stores INVALID when it fails; an
 * empty octet body leaves `*stateKind` alone and counts as read. */
int ZUV_BrelServiceAdminSupport_setStateInOctetBody(DDS_OctetSeq *octetBody,
                                                    ZUV_Service_EntityStateKind stateKind);
int ZUV_BrelServiceAdminSupport_getStateFromOctetBody(const DDS_OctetSeq *octetBody,
                                                      ZUV_Service_EntityStateKind *stateKind);
int ZUV_BrelServiceAdminSupport_getStateFromStringBody(const char *stringBody,
                                                       ZUV_Service_EntityStateKind *stateKind);

#ifdef __cplusplus
}
#endif

#endif
