#include "remoteConfig/RemoteConfigClient.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/osapi/File.h"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Utility.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace
{

constexpr std::size_t kRestingBodySize = BREL_REMOTE_CONFIG_CLIENT_RESTING_BODY_LENGTH + 1;

// The longest octet body that the shell builds: a resource tag with its terminator.
constexpr DDS_Long kRestingOctetCount = 256;

// All commands of a client are samples of the instance 0.
constexpr DDS_Long kInstanceCount = 1;

// A file goes into the body in pieces of this size.
constexpr std::size_t kFilePieceSize = 255;

void report(const ZUVLogMessage &message, const char *text,
            const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_REMOTE, message, text, place);
}

void reportFailure(const char *text, const brel::Place &place = brel::Place::current())
{
    report(ZUV_LOG_ANY_FAILURE_s, text, place);
}

struct CloseFile {
    void operator()(ZUVOsapiFile *file) const { ZUVOsapiFile_close(file); }
};

// The string body of the reused sample, which may grow for the length of one command.
class BodyBuffer
{
public:
    explicit BodyBuffer(char *&text) : text_(text) {}

    char *text() const { return text_; }
    std::size_t size() const { return ZUVOsapiHeap_getBlockSize(text_); }

    bool reserve(std::size_t newSize) { return newSize <= size() || resize(newSize); }

    // Back to rest: empty, and of the resting size.
    bool restore()
    {
        const bool trimmed = size() == kRestingBodySize || exchange(kRestingBodySize);
        if (!trimmed) {
            reportFailure("trim string body buffer");
        }
        *text_ = '\0';
        return trimmed;
    }

    bool resize(std::size_t newSize)
    {
        void *block = text_;
        if (!ZUVOsapiHeap_reallocate(&block, newSize, "DDS_String")) {
            return false;
        }
        text_ = static_cast<char *>(block);
        return true;
    }

private:
    // The content is wanted no more. A large block that was made smaller in place would give its pages back to the system
    // each time; one that is freed whole serves the next large command.
    bool exchange(std::size_t newSize)
    {
        auto *const block = static_cast<char *>(ZUVOsapiHeap_allocate(newSize, "DDS_String"));
        if (block == nullptr) {
            return false;
        }
        ZUVOsapiHeap_free(text_);
        text_ = block;
        return true;
    }

    char *&text_;
};

// Read to the end of `file`, behind the `position` characters that the body has. The buffer was measured by
// the size that the file had; one that has grown since is not taken.
bool readWhole(ZUVOsapiFile *file, BodyBuffer &body, std::size_t position)
{
    const std::size_t end = body.size() - 2; // a quote and a terminator follow
    while (!ZUVOsapiFile_isAtEnd(file)) {
        char surplus = '\0';
        const bool isFull = position == end;
        const std::size_t limit = isFull ? 1 : std::min(kFilePieceSize, end - position);
        std::size_t count = 0;
        if (!ZUVOsapiFile_read(file, isFull ? &surplus : body.text() + position, limit, &count) ||
            (isFull && count != 0)) {
            return false;
        }
        position += count;
        body.text()[position] = '\0';
    }
    body.text()[position] = '"';
    body.text()[position + 1] = '\0';
    return true;
}

// Make the body the content of the file that `uri` names, as inline text.
bool fillFromLocalFile(BodyBuffer &body, const char *uri)
{
    constexpr std::string_view prefix = ZUV_SERVICE_ADMIN_SCHEME_STRING_NAME "\"";
    prefix.copy(body.text(), prefix.size());
    body.text()[prefix.size()] = '\0';

    const std::unique_ptr<ZUVOsapiFile, CloseFile> file(
        ZUVOsapiFile_open(ZUV_BrelServiceAdminSupport_getBodyContent(uri)));
    if (file == nullptr) {
        ZUV_LOG_PLAIN(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE,
                      "%s: Can't open local file %s", "BRELRemoteConfigClient_sendCommandRequest",
                      uri);
        return false;
    }
    std::uint64_t size = 0;
    if (!ZUVOsapiFile_getSize(file.get(), &size)) {
        reportFailure("error reading local file");
        return false;
    }
    // The prefix stands before the file; the closing quote and the terminator behind it.
    constexpr std::size_t surroundings = prefix.size() + 2;
    if (size > SIZE_MAX - surroundings ||
        !body.reserve(static_cast<std::size_t>(size) + surroundings)) {
        reportFailure("allocate string body buffer");
        return false;
    }
    if (!readWhole(file.get(), body, prefix.size())) {
        reportFailure("error reading local file");
        return false;
    }
    return true;
}

bool fillFromText(BodyBuffer &body, const char *text)
{
    const std::size_t length = std::strlen(text);
    if (!body.reserve(length + 1)) {
        reportFailure("error allocating string body buffer");
        return false;
    }
    if (body.text()[0] == '\0') {
        std::memcpy(body.text(), text, length + 1);
    }
    return true;
}

bool fillBody(BodyBuffer &body, const char *text, bool remote)
{
    if (text == nullptr) {
        text = "";
    }
    const bool isLocalFile =
        !remote && ZUV_BrelServiceAdminSupport_getSchemeKind(text) == ZUV_SERVICE_ADMIN_SCHEME_FILE;
    return isLocalFile ? fillFromLocalFile(body, text) : fillFromText(body, text);
}

// Send the reused sample and wait for the reply that is related to it.
bool BRELRemoteConfigClient_sendRequestAndWaitForResponseI(BRELRemoteConfigClient *self,
                                                           ZUV_Service_Admin_CommandReply *reply)
{
    DDS_WriteParams_t requestInfo = DDS_WRITEPARAMS_DEFAULT;
    requestInfo.replace_auto = DDS_BOOLEAN_TRUE;
    DDS_SampleInfo replyInfo = DDS_SAMPLEINFO_DEFAULT;

    if (ZUV_BrelServiceAdminRequester_send_request_w_params(self->_requester, self->_request,
                                                            &requestInfo) != DDS_RETCODE_OK) {
        reportFailure("send request");
        return false;
    }
    if (self->_ignoreReply != 0) {
        return true;
    }
    if (ZUV_Talvane_Requester_wait_for_replies_for_related_request(
            &self->_requester->parent, 1, &self->_replyWaitTimeout, &requestInfo.identity) !=
        DDS_RETCODE_OK) {
        reportFailure("wait for reply");
        return false;
    }
    if (ZUV_BrelServiceAdminRequester_take_reply_for_related_request(
            self->_requester, reply, &replyInfo, &requestInfo.identity) != DDS_RETCODE_OK) {
        reportFailure("receive reply");
        return false;
    }
    return true;
}

// Copy all but the string body into the reused sample. The lengths are checked.
bool copyRequest(ZUV_Service_Admin_CommandRequest &sample, const char *targetService,
                 const ZUV_Service_Admin_CommandRequest &request)
{
    ZUVOsapiUtility_strcpy(sample.application_name, BREL_REMOTE_CONFIG_CLIENT_MAX_TARGET_LENGTH + 1,
                           targetService);
    sample.action = request.action;
    ZUVOsapiUtility_strcpy(
        sample.resource_identifier, BREL_REMOTE_CONFIG_CLIENT_MAX_IDENTIFIER_LENGTH + 1,
        request.resource_identifier == nullptr ? "" : request.resource_identifier);
    if (DDS_OctetSeq_copy(&sample.octet_body, &request.octet_body) == nullptr) {
        reportFailure("copy octet body");
        return false;
    }
    return true;
}

bool createRequest(BRELRemoteConfigClient *self)
{
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_optional_members = DDS_BOOLEAN_TRUE;
    self->_request = ZUV_Service_Admin_CommandRequestTypeSupport_create_data_w_params(&params);
    if (self->_request == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "request buffer");
        return false;
    }
    if (!BodyBuffer(self->_request->string_body).resize(kRestingBodySize)) {
        report(ZUV_LOG_CREATION_FAILURE_s, "request's string body buffer");
        return false;
    }
    // So that no resource tag has to grow the sample later. Without this memory now, it grows then.
    static_cast<void>(DDS_OctetSeq_set_maximum(&self->_request->octet_body, kRestingOctetCount));
    return true;
}

} // namespace

BRELRemoteConfigClient *BRELRemoteConfigClient_new(int domainId, int responseTimeoutSec)
{
    auto *const self = static_cast<BRELRemoteConfigClient *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(BRELRemoteConfigClient), "BRELRemoteConfigClient"));
    if (self == nullptr) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                static_cast<int>(sizeof(BRELRemoteConfigClient)));
        return nullptr;
    }
    if (!BRELRemoteConfigClient_initialize(self, domainId, responseTimeoutSec)) {
        report(ZUV_LOG_INIT_FAILURE_s, "BRELRemoteConfigClient object");
        ZUVOsapiHeap_free(self);
        return nullptr;
    }
    return self;
}

void BRELRemoteConfigClient_delete(BRELRemoteConfigClient *self)
{
    if (self == nullptr) {
        report(ZUV_LOG_ANY_s, "bad parameter self");
        return;
    }
    BRELRemoteConfigClient_finalize(self);
    ZUVOsapiHeap_free(self);
}

int BRELRemoteConfigClient_initialize(BRELRemoteConfigClient *self, int domainId,
                                      int responseTimeoutSec)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, self == nullptr, "\"self == ((void *)0)\"")) {
        return 0;
    }
    *self = {};
    self->domainId = domainId;
    self->_replyWaitTimeout.sec = responseTimeoutSec;
    bool isReady = createRequest(self);
    if (isReady) {
        isReady = BRELRemoteConfigClient_createRequesterI(&self->_ddsContext, domainId,
                                                          &self->_replyWaitTimeout, kInstanceCount,
                                                          &self->_requester) != 0;
        if (!isReady) {
            reportFailure("create requester");
        }
    }
    if (!isReady) {
        BRELRemoteConfigClient_finalize(self);
        return 0;
    }
    return 1;
}

void BRELRemoteConfigClient_finalize(BRELRemoteConfigClient *self)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, self == nullptr, "\"self == ((void *)0)\"")) {
        return;
    }
    if (!BRELRemoteConfigClient_deleteRequesterI(&self->_ddsContext, &self->_requester)) {
        reportFailure("delete connection");
        return;
    }
    if (self->_request == nullptr) {
        return;
    }
    if (ZUV_Service_Admin_CommandRequestTypeSupport_delete_data_ex(
            self->_request, DDS_BOOLEAN_TRUE) != DDS_RETCODE_OK) {
        report(ZUV_LOG_DESTRUCTION_FAILURE_s, "request buffer");
    }
    self->_request = nullptr;
}

int BRELRemoteConfigClient_sendCommandRequest(BRELRemoteConfigClient *self,
                                              ZUV_Service_Admin_CommandReply *reply,
                                              const char *targetService,
                                              const ZUV_Service_Admin_CommandRequest *request,
                                              int remote)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, self == nullptr, "\"self == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, reply == nullptr,
                         "\"reply == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, targetService == nullptr,
                         "\"targetService == ((void *)0)\"") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, request == nullptr,
                         "\"request == ((void *)0)\"")) {
        return 0;
    }
    if (std::strlen(targetService) > BREL_REMOTE_CONFIG_CLIENT_MAX_TARGET_LENGTH) {
        reportFailure("target service name too long");
        return 0;
    }
    if (request->resource_identifier != nullptr &&
        std::strlen(request->resource_identifier) >
            BREL_REMOTE_CONFIG_CLIENT_MAX_IDENTIFIER_LENGTH) {
        reportFailure("resource identifier too long");
        return 0;
    }
    BodyBuffer body(self->_request->string_body);
    bool isAnswered = false;
    if (copyRequest(*self->_request, targetService, *request) &&
        fillBody(body, request->string_body, remote != 0)) {
        isAnswered = BRELRemoteConfigClient_sendRequestAndWaitForResponseI(self, reply);
        if (!isAnswered) {
            reportFailure("send command request and wait for reply");
        }
    }
    const bool isRestored = body.restore();
    return isAnswered && isRestored ? 1 : 0;
}

int BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
    BRELRemoteConfigClient *self, ZUV_Service_Admin_CommandReply *reply, const char *targetService,
    ZUV_Service_Admin_CommandActionKind actionKind, const char *entityName, const char *xmlUrl,
    int remote)
{
    char *const snippet = BRELRemoteConfigClient_convertAssignmentToXmlSnippet(xmlUrl);
    // A description only: the texts are borrowed for the call.
    ZUV_Service_Admin_CommandRequest request = {};
    request.action = actionKind;
    request.resource_identifier = const_cast<char *>(entityName);
    request.string_body = snippet != nullptr ? snippet : const_cast<char *>(xmlUrl);
    const int result =
        BRELRemoteConfigClient_sendCommandRequest(self, reply, targetService, &request, remote);
    DDS_String_free(snippet);
    return result;
}
