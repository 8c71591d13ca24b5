#include "remoteConfig/RemoteConfigInfrastructure.h"

#include <cstdint>
#include <cstring>
#include <iterator>
#include <string_view>

#include "common/ServiceCommonSupport.h"
#include "config/Utils.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/mavo/String.h"
#include "platform/osapi/Heap.h"

namespace
{

// By kind, in the order in which they are looked for.
constexpr const char *kSchemeNames[] = {
    ZUV_SERVICE_ADMIN_SCHEME_FILE_NAME, ZUV_SERVICE_ADMIN_SCHEME_STRING_NAME,
    ZUV_SERVICE_ADMIN_SCHEME_SERVICE_NAME, ZUV_SERVICE_ADMIN_SCHEME_OTHER_NAME};

void report(const ZUVLogMessage &message, const char *text,
            const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_REMOTE, message, text, place);
}

const char *skipSpace(const char *text)
{
    while (BRELUtils_isSpace(*text)) {
        ++text;
    }
    return text;
}

// Text with no scheme at its start meets the empty literal at the end.
ZUV_BrelServiceAdminSchemeKind findScheme(const char *text)
{
    int kind = ZUV_SERVICE_ADMIN_SCHEME_FILE;
    while (!std::string_view(text).starts_with(kSchemeNames[kind])) {
        ++kind;
    }
    return static_cast<ZUV_BrelServiceAdminSchemeKind>(kind);
}

// The index of a name in a vocabulary; the number of its names if it is not there.
template <std::size_t COUNT>
int findName(const char *const (&names)[COUNT], const char *name)
{
    std::size_t index = 0;
    while (index < COUNT && std::strcmp(names[index], name) != 0) {
        ++index;
    }
    return static_cast<int>(index);
}

// The octets come from the wire and need not end in a terminator.
bool isResourceTag(const DDS_OctetSeq &octets)
{
    constexpr std::string_view literal = ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME;
    const DDS_Octet *const buffer = DDS_OctetSeq_get_contiguous_buffer(&octets);
    return buffer != nullptr &&
           DDS_OctetSeq_get_length(&octets) >= static_cast<DDS_Long>(literal.size()) &&
           std::memcmp(buffer, literal.data(), literal.size()) == 0;
}

// Serialize a state for one kind of sample.
int setState(DDS_OctetSeq &octetBody, ZUV_Service_EntityStateKind stateKind, const char *failure,
             const brel::Place &place = brel::Place::current())
{
    if (!ZUV_BrelServiceAdminSupport_setStateInOctetBody(&octetBody, stateKind)) {
        report(ZUV_CDR_LOG_SERIALIZE_FAILURE_s, failure, place);
        return 0;
    }
    return 1;
}

// Read the octets if they are to be read, else the word.
ZUV_Service_EntityStateKind getState(const DDS_OctetSeq &octetBody, bool useOctets,
                                     const char *octetFailure, const char *stringBody,
                                     const char *stringFailure,
                                     const brel::Place &place = brel::Place::current())
{
    ZUV_Service_EntityStateKind stateKind = ZUV_Service_EntityStateKind_INVALID;
    if (useOctets) {
        if (!ZUV_BrelServiceAdminSupport_getStateFromOctetBody(&octetBody, &stateKind)) {
            report(ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, octetFailure, place);
        }
    } else if (!ZUV_BrelServiceAdminSupport_getStateFromStringBody(stringBody, &stateKind)) {
        report(ZUV_LOG_GET_FAILURE_s, stringFailure, place);
    }
    return stateKind;
}

} // namespace

ZUV_ServiceWellKnownResourceKind ZUV_ServiceWellKnownResourceKind_fromString(const char *kindName)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, kindName == nullptr,
                         "\"kindName == ((void *)0)\"")) {
        return ZUV_SERVICE_UNKNOWN_WELL_KNOWN_RESOURCE;
    }
    return static_cast<ZUV_ServiceWellKnownResourceKind>(
        findName(ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES, kindName));
}

ZUV_ServiceCustomMethodKind ZUV_ServiceCustomMethodKind_fromString(const char *methodName)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, methodName == nullptr,
                         "\"methodName == ((void *)0)\"")) {
        return ZUV_SERVICE_UNKNOWN_CUSTOM_METHOD;
    }
    return static_cast<ZUV_ServiceCustomMethodKind>(
        findName(ZUV_SERVICE_CUSTOM_METHOD_NAMES, methodName));
}

DDS_Boolean ZUV_BrelServiceDataPlugin_serializeSampleIntoOctetSequence(
    DDS_OctetSeq *octetSeq, ZUV_BrelServiceDataPlugin *dataPlugin, void *sample)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, octetSeq == nullptr,
                         "\"octetSeq == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, dataPlugin == nullptr,
                         "\"dataPlugin == ((void *)0)\"")) {
        return DDS_BOOLEAN_FALSE;
    }
    DDS_UnsignedLong size = 0;
    if (!dataPlugin->serialize_to_buffer(nullptr, &size, sample) || size > INT32_MAX) {
        report(ZUV_LOG_ANY_FAILURE_s, "get size of CDR-serialized sample");
        return DDS_BOOLEAN_FALSE;
    }
    if (!DDS_OctetSeq_set_length(octetSeq, static_cast<DDS_Long>(size))) {
        report(ZUV_LOG_ANY_s, "DDS_OctetSeq_ensure_length");
        return DDS_BOOLEAN_FALSE;
    }
    return dataPlugin->serialize_to_buffer(
        reinterpret_cast<char *>(DDS_OctetSeq_get_contiguous_buffer(octetSeq)), &size, sample);
}

char *ZUV_BrelServiceAdminSupport_getBufferForContent(char *preallocatedBuffer,
                                                      int preallocatedBufferLength,
                                                      int *isReallocated, char **dynamicBuffer,
                                                      int *dynamicBufferLength, int requiredLength)
{
    if (isReallocated != nullptr) {
        *isReallocated = 0;
    }
    if (preallocatedBufferLength == DDS_LENGTH_UNLIMITED ||
        preallocatedBufferLength > requiredLength) {
        return preallocatedBuffer;
    }
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, dynamicBuffer == nullptr,
                         "\"dynamicBuffer == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, dynamicBufferLength == nullptr,
                         "\"dynamicBufferLength == ((void *)0)\"")) {
        return nullptr;
    }
    if (*dynamicBufferLength != DDS_LENGTH_UNLIMITED && requiredLength > *dynamicBufferLength) {
        void *buffer = *dynamicBuffer;
        if (!ZUVOsapiHeap_reallocate(&buffer, static_cast<std::size_t>(requiredLength),
                                     "reply body")) {
            ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE,
                    &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d, requiredLength);
            return nullptr;
        }
        *dynamicBuffer = static_cast<char *>(buffer);
        *dynamicBufferLength = requiredLength;
        if (isReallocated != nullptr) {
            *isReallocated = 1;
        }
    }
    return *dynamicBuffer;
}

int ZUV_BrelServiceAdminSupport_setStringBodyBuffer(ZUV_Service_Admin_CommandReply *reply,
                                                    int stringBodyBufferLength,
                                                    char **dynamicBuffer, int *dynamicBufferLength,
                                                    int stringBodyRequiredLength)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reply == nullptr,
                         "\"reply == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stringBodyRequiredLength == INT32_MAX,
                         "\"stringBodyRequiredLength == 0x7fffffff\"")) {
        return 0;
    }
    char *const buffer = ZUV_BrelServiceAdminSupport_getBufferForContent(
        reply->string_body, stringBodyBufferLength, nullptr, dynamicBuffer, dynamicBufferLength,
        stringBodyRequiredLength + 1);
    if (buffer == nullptr) {
        report(ZUV_LOG_GET_FAILURE_s, "string body buffer for reply");
        return 0;
    }
    reply->string_body = buffer;
    return 1;
}

int ZUV_BrelServiceAdminSupport_setOctetBodyContiguousBuffer(ZUV_Service_Admin_CommandReply *reply,
                                                             DDS_Octet **dynamicContiguousBuffer,
                                                             int *dynamicContiguousBufferLength,
                                                             int requiredOctetBodyLength)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reply == nullptr,
                         "\"reply == ((void *)0)\"")) {
        return 0;
    }
    DDS_OctetSeq *const octets = &reply->octet_body;
    char *const ownBuffer = reinterpret_cast<char *>(DDS_OctetSeq_get_contiguous_buffer(octets));
    int isReallocated = 0;
    char *const buffer = ZUV_BrelServiceAdminSupport_getBufferForContent(
        ownBuffer, DDS_OctetSeq_get_maximum(octets), &isReallocated,
        reinterpret_cast<char **>(dynamicContiguousBuffer), dynamicContiguousBufferLength,
        requiredOctetBodyLength);
    if (buffer == nullptr) {
        report(ZUV_LOG_GET_FAILURE_s, "octet body contiguous buffer for reply");
        return 0;
    }
    // A lent buffer that grew where it stands is lent anew, for its new length.
    if (buffer == ownBuffer && isReallocated == 0) {
        return 1;
    }
    if (!DDS_OctetSeq_unloan(octets) ||
        !DDS_OctetSeq_loan_contiguous(octets, reinterpret_cast<DDS_Octet *>(buffer), 0,
                                      *dynamicContiguousBufferLength)) {
        report(ZUV_LOG_ANY_FAILURE_s, "loan reply's octet body contiguous buffer");
        if (isReallocated != 0) {
            ZUVOsapiHeap_freeBufferAligned(buffer);
            *dynamicContiguousBuffer = nullptr;
            *dynamicContiguousBufferLength = 0;
        }
        return 0;
    }
    return 1;
}

ZUV_BrelServiceAdminSchemeKind ZUV_BrelServiceAdminSupport_getSchemeKind(const char *stringBody)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stringBody == nullptr,
                         "\"stringBody == ((void *)0)\"")) {
        return ZUV_SERVICE_ADMIN_SCHEME_OTHER;
    }
    return findScheme(skipSpace(stringBody));
}

const char *ZUV_BrelServiceAdminSupport_getSchemeName(ZUV_BrelServiceAdminSchemeKind uriScheme)
{
    const auto index = static_cast<std::size_t>(uriScheme);
    return index < std::size(kSchemeNames) ? kSchemeNames[index]
                                           : ZUV_SERVICE_ADMIN_SCHEME_OTHER_NAME;
}

const char *ZUV_BrelServiceAdminSupport_getBodyContent(const char *stringBody)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stringBody == nullptr,
                         "\"stringBody == ((void *)0)\"")) {
        return nullptr;
    }
    const char *const text = skipSpace(stringBody);
    return text + std::strlen(kSchemeNames[findScheme(text)]);
}

char *ZUV_BrelServiceAdminSupport_getXmlCodeFromStringBodyContent(char *stringBodyContent)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stringBodyContent == nullptr,
                         "\"stringBodyContent == ((void *)0)\"")) {
        return nullptr;
    }
    char *const lastQuote = std::strrchr(stringBodyContent, '"');
    if (lastQuote == nullptr || lastQuote == stringBodyContent) {
        return stringBodyContent;
    }
    *lastQuote = '\0';
    return stringBodyContent + 1;
}

const char *ZUV_BrelServiceAdminSupport_entityStateToString(ZUV_Service_EntityStateKind stateKind)
{
    return ZUV_SERVICE_ENTITY_STATE_NAMES[stateKind];
}

int ZUV_BrelServiceAdminSupport_setStateInReply(ZUV_Service_Admin_CommandReply *reply,
                                                ZUV_Service_EntityStateKind stateKind)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reply == nullptr,
                         "\"reply == ((void *)0)\"")) {
        return 0;
    }
    return setState(reply->octet_body, stateKind, "state in reply octet body");
}

int ZUV_BrelServiceAdminSupport_setStateInRequest(ZUV_Service_Admin_CommandRequest *request,
                                                  ZUV_Service_EntityStateKind stateKind)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, request == nullptr,
                         "\"request == ((void *)0)\"")) {
        return 0;
    }
    return setState(request->octet_body, stateKind, "state in request octet body");
}

ZUV_Service_EntityStateKind
ZUV_BrelServiceAdminSupport_getStateFromReply(const ZUV_Service_Admin_CommandReply *reply)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reply == nullptr,
                         "\"reply == ((void *)0)\"")) {
        return ZUV_Service_EntityStateKind_INVALID;
    }
    return getState(reply->octet_body, DDS_OctetSeq_get_length(&reply->octet_body) > 0,
                    "state from reply octet body", reply->string_body,
                    "state from reply string body");
}

ZUV_Service_EntityStateKind
ZUV_BrelServiceAdminSupport_getStateFromRequest(const ZUV_Service_Admin_CommandRequest *request)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, request == nullptr,
                         "\"request == ((void *)0)\"")) {
        return ZUV_Service_EntityStateKind_INVALID;
    }
    return getState(
        request->octet_body,
        DDS_OctetSeq_get_length(&request->octet_body) > 0 && !isResourceTag(request->octet_body),
        "state from request octet body", request->string_body, "state from request string body");
}

int ZUV_BrelServiceAdminSupport_setStateInOctetBody(DDS_OctetSeq *octetBody,
                                                    ZUV_Service_EntityStateKind stateKind)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, octetBody == nullptr,
                         "\"octetBody == ((void *)0)\"")) {
        return 0;
    }
    const ZUV_Service_EntityState state = {stateKind};
    DDS_UnsignedLong size = 0;
    if (ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer(nullptr, &size, &state) !=
        DDS_RETCODE_OK) {
        report(ZUV_LOG_GET_FAILURE_s, "CDR buffer size for state");
        return 0;
    }
    const auto length = static_cast<DDS_Long>(size);
    if (!DDS_OctetSeq_ensure_length(octetBody, length, length)) {
        report(ZUV_LOG_CREATION_FAILURE_s, "CDR buffer for state");
        return 0;
    }
    char *const buffer = reinterpret_cast<char *>(DDS_OctetSeq_get_contiguous_buffer(octetBody));
    if (ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer(buffer, &size, &state) !=
        DDS_RETCODE_OK) {
        report(ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "state in octet body");
        return 0;
    }
    return 1;
}

int ZUV_BrelServiceAdminSupport_getStateFromOctetBody(const DDS_OctetSeq *octetBody,
                                                      ZUV_Service_EntityStateKind *stateKind)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, octetBody == nullptr,
                         "\"octetBody == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stateKind == nullptr,
                         "\"stateKind == ((void *)0)\"")) {
        return 0;
    }
    const DDS_Long length = DDS_OctetSeq_get_length(octetBody);
    if (length == 0) {
        return 1;
    }
    ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_INVALID};
    if (ZUV_Service_EntityStateTypeSupport_deserialize_data_from_cdr_buffer(
            &state, reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(octetBody)),
            static_cast<DDS_UnsignedLong>(length)) != DDS_RETCODE_OK) {
        report(ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, "state from octet body");
        *stateKind = ZUV_Service_EntityStateKind_INVALID;
        return 0;
    }
    *stateKind = state.state;
    return 1;
}

int ZUV_BrelServiceAdminSupport_getStateFromStringBody(const char *stringBody,
                                                       ZUV_Service_EntityStateKind *stateKind)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stringBody == nullptr,
                         "\"stringBody == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, stateKind == nullptr,
                         "\"stateKind == ((void *)0)\"")) {
        return 0;
    }
    for (int value = 0; value < ZUV_SERVICE_ENTITY_STATE_COUNT; ++value) {
        if (MAVOString_iCompare(stringBody, ZUV_SERVICE_ENTITY_STATE_NAMES[value]) == 0) {
            *stateKind = static_cast<ZUV_Service_EntityStateKind>(value);
            return 1;
        }
    }
    report(ZUV_LOG_GET_FAILURE_s, "state from string body");
    *stateKind = ZUV_Service_EntityStateKind_INVALID;
    return 0;
}
