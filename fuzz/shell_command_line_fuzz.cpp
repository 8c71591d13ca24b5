// The tokenizer and the command frame with any line of the operator. The client sends nothing: it stands here in
// place of the real one, and reads all that it is given.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "remoteConfig/AssignmentExpression.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "remoteShell/Shell.h"

namespace
{

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

// A request as the client may get it: whole, and within the bounds of its type.
int take(const char *target, const char *identifier, const char *body, int remote)
{
    require(std::strlen(target) < BREL_SHELL_LINE_SIZE);
    require(std::strlen(identifier) <= ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH);
    require(std::strlen(body) < BREL_SHELL_LINE_SIZE);
    require(remote == 0 || remote == 1);
    return static_cast<int>(std::strlen(body) % 2);
}

} // namespace

int BRELRemoteConfigClient_initialize(BRELRemoteConfigClient *, int, int)
{
    return 1;
}

void BRELRemoteConfigClient_finalize(BRELRemoteConfigClient *) {}

int BRELRemoteConfigClient_sendCommandRequest(BRELRemoteConfigClient *,
                                              ZUV_Service_Admin_CommandReply *,
                                              const char *targetService,
                                              const ZUV_Service_Admin_CommandRequest *request,
                                              int remote)
{
    const DDS_Long count = DDS_OctetSeq_get_length(&request->octet_body);
    if (count > 0) {
        const char *const tag = reinterpret_cast<const char *>(
            DDS_OctetSeq_get_contiguous_buffer(&request->octet_body));
        require(std::strlen(tag) + 1 == static_cast<std::size_t>(count));
    }
    return take(targetService, request->resource_identifier, request->string_body, remote);
}

int BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
    BRELRemoteConfigClient *, ZUV_Service_Admin_CommandReply *, const char *targetService,
    ZUV_Service_Admin_CommandActionKind, const char *entityName, const char *xmlUrl, int remote)
{
    DDS_String_free(BRELRemoteConfigClient_convertAssignmentToXmlSnippet(xmlUrl));
    return take(targetService, entityName, xmlUrl, remote);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const bool isQuiet = std::freopen("/dev/null", "w", stdout) != nullptr;
    require(isQuiet);

    // As fgets gives it: text up to the end of the buffer.
    static char line[BREL_SHELL_LINE_SIZE];
    const std::size_t length = std::min(size, sizeof(line) - 2);
    std::copy_n(data, length, line);
    line[length] = '\0';
    const char *const end = line + std::strlen(line);

    // Exactly as large as it may be, so that a sanitizer sees a write behind it.
    char **const argv = static_cast<char **>(std::calloc(BREL_SHELL_MAX_TOKENS, sizeof(char *)));
    int argc = 0;
    BRELShell_createArgv(line, argv, &argc);
    require(argc >= 0 && argc < BREL_SHELL_LINE_SIZE);
    for (int index = 0; index < std::min(argc, BREL_SHELL_MAX_TOKENS); ++index) {
        require(argv[index] >= line && argv[index] < end);
        require(index == 0 || argv[index] > argv[index - 1]);
    }
    if (argc >= 1 && argc <= BREL_SHELL_MAX_TOKENS) {
        static BRELShell shell = {};
        BRELShell_parseCommand(&shell, argv, argc);
    }
    std::free(argv);
    return 0;
}
