#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <iterator>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/log/LogMessages.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Utility.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "remoteShell/Shell.h"

namespace
{

using Request = ZUV_Service_Admin_CommandRequest;
using Reply = ZUV_Service_Admin_CommandReply;

constexpr std::size_t kResourceTagSize = 256;
constexpr std::size_t kResourceTagLimit = ZUV_SERVICE_ADMIN_RESOURCE_TAG_MAX_LENGTH + 1;

struct Arguments {
    char **argv;
    int argc;

    const char *at(int index) const { return index < argc ? argv[index] : ""; }
};

// What a line asks for, once its tokens are understood.
struct Command {
    const char *identifier = "";
    const char *body = nullptr; // NULL leaves the request's body empty
    int32_t remote = 1;         // 0: this side reads a file named in the body
};

// One row an administration command. An index is that of a token; 0 means that the command has no such
// token.
struct CommandRow {
    const char *word = nullptr;
    int minCount = 2; // tokens, the command word included
    int maxCount = INT_MAX;
    bool (*interpret)(const CommandRow &row, const Arguments &arguments,
                      Command &command) = nullptr;
    ZUV_Service_Admin_CommandActionKind action = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
    int identifierIndex = 0;
    const char *identifierFailure = nullptr;
    ZUV_Service_EntityStateKind state =
        ZUV_Service_EntityStateKind_INVALID; // the body's word, unless INVALID
    int bodyIndex = 0;
    bool bodyMayFail = false;
    bool (*buildOctets)(Request &request) = nullptr;
    int localityIndex = 0;
    bool takesAssignment = false; // the body may be an assignment, and the client makes the request
    const char *syntax = nullptr;
};

void reportFailure(const char *text, const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_SHELL, ZUV_LOG_ANY_FAILURE_s, text, place);
}

bool isWord(const char *token, const char *word)
{
    return MAVOString_iCompare(token, word) == 0;
}

// Interpretation of the tokens. False means that the syntax line is due.

// The token at `index`, if the line has it, must say who reads a file.
bool readLocality(const Arguments &arguments, int index, Command &command)
{
    if (arguments.argc <= index) {
        return true;
    }
    const bool isRemote = isWord(arguments.argv[index], "remote");
    command.remote = isRemote ? 1 : 0;
    return isRemote || isWord(arguments.argv[index], "local");
}

bool interpretTokens(const CommandRow &row, const Arguments &arguments, Command &command)
{
    if (arguments.argc < row.minCount || arguments.argc > row.maxCount) {
        return false;
    }
    if (row.localityIndex != 0 && !readLocality(arguments, row.localityIndex, command)) {
        return false;
    }
    if (row.identifierIndex != 0) {
        command.identifier = arguments.at(row.identifierIndex);
    }
    if (row.state != ZUV_Service_EntityStateKind_INVALID) {
        command.body = ZUV_BrelServiceAdminSupport_entityStateToString(row.state);
    } else if (row.bodyIndex != 0) {
        command.body = arguments.at(row.bodyIndex);
    }
    return true;
}

// Without an entity's name, or with a dot in its place, the service itself is meant.
bool interpretUpdate(const CommandRow &row, const Arguments &arguments, Command &command)
{
    if (!interpretTokens(row, arguments, command)) {
        return false;
    }
    const bool namesEntity = arguments.argc > 3;
    command.body = arguments.at(namesEntity ? 3 : 2);
    if (namesEntity && std::strcmp(arguments.at(2), ".") != 0) {
        command.identifier = arguments.at(2);
    }
    return true;
}

// The kind and the URL are asked for and go no further: the service gets a bare create on the parent.
bool interpretCreate(const CommandRow &row, const Arguments &arguments, Command &command)
{
    static constexpr struct {
        const char *kind;
        int requiredCount;
        int parentIndex;
    } kinds[] = {
        {"domain_route", 4, 0}, {"session", 5, 3}, {"topic_route", 5, 3}, {"auto_route", 5, 3}};

    if (!interpretTokens(row, arguments, command)) {
        return false;
    }
    const auto kind = std::find_if(std::begin(kinds), std::end(kinds), [&](const auto &candidate) {
        return isWord(arguments.at(2), candidate.kind);
    });
    if (kind == std::end(kinds) || arguments.argc < kind->requiredCount ||
        !readLocality(arguments, kind->requiredCount, command)) {
        return false;
    }
    if (kind->parentIndex != 0) {
        command.identifier = arguments.at(kind->parentIndex);
    }
    return true;
}

// The octet body.

bool formatResourceTag(const char *name, char *tag)
{
    const int length = ZUV_OSAPI_FAULT("shell.format_resource_tag")
                           ? -1
                           : ZUVOsapiUtility_snprintf(tag, kResourceTagLimit, "%s%s",
                                                      ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME, name);
    return length >= 0 && static_cast<std::size_t>(length) < kResourceTagLimit;
}

bool copyOctets(Request &request, const char *tag, DDS_Long count)
{
    if (!DDS_OctetSeq_ensure_length(&request.octet_body, count, count)) {
        return false;
    }
    std::memcpy(DDS_OctetSeq_get_contiguous_buffer(&request.octet_body), tag,
                static_cast<std::size_t>(count));
    return true;
}

template <int KIND>
bool buildResource(Request &request)
{
    if (!BRELShell_buildOctetBody(&request, ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES[KIND])) {
        reportFailure("build octet body based on resource kind name");
        return false;
    }
    return true;
}

constexpr auto buildState = buildResource<ZUV_SERVICE_STATE_WELL_KNOWN_RESOURCE>;
constexpr auto buildConfig = buildResource<ZUV_SERVICE_CONFIG_WELL_KNOWN_RESOURCE>;

bool buildAddPeer(Request &request)
{
    char tag[kResourceTagSize] = {};
    if (!formatResourceTag(ZUV_SERVICE_CUSTOM_METHOD_NAMES[ZUV_SERVICE_ADD_PEER_CUSTOM_METHOD],
                           tag)) {
        reportFailure("prepare resource content in request octet body");
        return false;
    }
    const std::size_t count = std::strlen(tag) + 1;
    if (ZUV_OSAPI_FAULT("shell.resource_size") || count > INT32_MAX) {
        reportFailure("convert resource content actual size to int32");
        return false;
    }
    if (!copyOctets(request, tag, static_cast<DDS_Long>(count))) {
        reportFailure("ensure octet body length");
        return false;
    }
    return true;
}

// The commands.

constexpr auto kCreate = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
constexpr auto kGet = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
constexpr auto kUpdate = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
constexpr auto kDelete = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;

constexpr const char *kDuplicateIdentifier = "duplicate resource identifier";
constexpr const char *kReplaceIdentifier = "replace resource identifier";

// The tags and actions are the protocol's, however uneven: "load" speaks of the state, "unload" and "save"
// of the configuration, "save" creates, and "shutdown" is "delete" of the service itself.
constexpr CommandRow kCommandRows[] = {
    {.word = "enable",
     .interpret = interpretTokens,
     .action = kUpdate,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .state = ZUV_Service_EntityStateKind_ENABLED,
     .buildOctets = buildState,
     .syntax = "Command syntax: enable <target_brel> [<entity_name>]"},
    {.word = "disable",
     .interpret = interpretTokens,
     .action = kUpdate,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .state = ZUV_Service_EntityStateKind_DISABLED,
     .buildOctets = buildState,
     .syntax = "Command syntax: disable <target_brel> [<entity_name>]"},
    {.word = "pause",
     .interpret = interpretTokens,
     .action = kUpdate,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .state = ZUV_Service_EntityStateKind_PAUSED,
     .bodyMayFail = true,
     .buildOctets = buildState,
     .syntax = "Command syntax: pause <target_brel> [<entity_name>]"},
    {.word = "resume",
     .interpret = interpretTokens,
     .action = kUpdate,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .state = ZUV_Service_EntityStateKind_RUNNING,
     .buildOctets = buildState,
     .syntax = "Command syntax: resume <target_brel> [<entity_name>]"},
    {.word = "update",
     .minCount = 3,
     .interpret = interpretUpdate,
     .action = kUpdate,
     .localityIndex = 4,
     .takesAssignment = true,
     .syntax = "Command syntax: update <target_brel> [<entity_name>] <xml_url> [remote|local]"},
    {.word = "unload",
     .maxCount = 2,
     .interpret = interpretTokens,
     .action = kDelete,
     .buildOctets = buildConfig,
     .syntax = "Command syntax: unload <target_brel>"},
    {.word = "load",
     .minCount = 4,
     .interpret = interpretTokens,
     .action = kCreate,
     .identifierIndex = 2,
     .identifierFailure = kReplaceIdentifier,
     .bodyIndex = 3,
     .buildOctets = buildState,
     .localityIndex = 4,
     .syntax = "Command syntax: load <target_brel> <cfg_name> <xml_url> [remote|local]"},
    {.word = "create",
     .minCount = 3,
     .interpret = interpretCreate,
     .action = kCreate,
     .identifierFailure = kReplaceIdentifier,
     .syntax = "Command syntax: create <target_brel> domain_route|session|topic_route|auto_route "
               "[<parent_entity_name>] <xml_url> [remote|local]"},
    {.word = "delete",
     .interpret = interpretTokens,
     .action = kDelete,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .syntax = "Command syntax: delete <target_brel> [<entity_name>]"},
    {.word = "save",
     .interpret = interpretTokens,
     .action = kCreate,
     .buildOctets = buildConfig,
     .syntax = "Command syntax: save <target_brel>"},
    {.word = "get",
     .interpret = interpretTokens,
     .action = kGet,
     .identifierIndex = 2,
     .identifierFailure = kDuplicateIdentifier,
     .syntax = "Command syntax: get <target_brel>"},
    {.word = "add_peer",
     .minCount = 4,
     .interpret = interpretTokens,
     .action = kUpdate,
     .identifierIndex = 2,
     .identifierFailure = kReplaceIdentifier,
     .bodyIndex = 3,
     .buildOctets = buildAddPeer,
     .syntax = "Command syntax: add_peer <target_brel> <participant> <peer_list>"},
    {.word = "shutdown",
     .interpret = interpretTokens,
     .action = kDelete,
     .syntax = "Command syntax: shutdown <target_brel>"},
};

void endSession()
{
    BRELShell_g_terminate = 1;
}

void ignore() {}

// The shell's own commands send nothing.
constexpr struct {
    const char *word;
    void (*execute)();
} kOwnCommands[] = {{"exit", endSession},         {"quit", endSession}, {"q", endSession},
                    {"history", ignore},          {"clear", ignore},    {"hello", ignore},
                    {"help", BRELShell_printHelp}};

template <typename Rows>
auto findRow(const Rows &rows, const char *word)
{
    const auto row = std::find_if(std::begin(rows), std::end(rows), [&](const auto &candidate) {
        return isWord(word, candidate.word);
    });
    return row == std::end(rows) ? nullptr : row;
}

bool copyText(char *&member, const char *text)
{
    return !ZUV_OSAPI_FAULT("shell.copy_text") && DDS_String_replace(&member, text) != nullptr;
}

bool buildRequest(const CommandRow &row, const Command &command, Request &request)
{
    request.action = row.action;
    if (command.identifier[0] != '\0' &&
        !copyText(request.resource_identifier, command.identifier)) {
        reportFailure(row.identifierFailure);
        return false;
    }
    if (command.body != nullptr && !copyText(request.string_body, command.body) &&
        !row.bodyMayFail) {
        reportFailure("duplicate string body");
        return false;
    }
    return row.buildOctets == nullptr || row.buildOctets(request);
}

void printOutcome(int32_t ok, const Reply &reply)
{
    if (ok == 0) {
        std::puts("No response received");
    } else if (reply.retcode != ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE) {
        std::printf("Error: %s\n", reply.string_body);
    } else {
        std::printf("Result: %s\n", reply.string_body);
    }
}

void executeRow(BRELShell *self, const CommandRow &row, const Arguments &arguments, Reply &reply,
                Request &request)
{
    Command command;
    if (!row.interpret(row, arguments, command)) {
        std::puts(row.syntax);
        return;
    }
    const std::size_t identifierLength = std::strlen(command.identifier);
    if (identifierLength > ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH) {
        std::printf("Entity name too long: %zu characters, at most %d are accepted\n",
                    identifierLength, ZUV_SERVICE_RESOURCE_ID_MAX_LENGTH);
        return;
    }
    if (!row.takesAssignment && !buildRequest(row, command, request)) {
        return;
    }
    const char *const target = arguments.at(1);
    const int32_t ok = row.takesAssignment
                           ? BRELRemoteConfigClient_sendCommandWithUriOrAssignment(
                                 &self->remoteConfig, &reply, target, row.action,
                                 command.identifier, command.body, command.remote)
                           : BRELRemoteConfigClient_sendCommandRequest(
                                 &self->remoteConfig, &reply, target, &request, command.remote);
    printOutcome(ok, reply);
}

void execute(BRELShell *self, const Arguments &arguments, Reply &reply, Request &request)
{
    const char *const word = arguments.argv[0];
    if (const auto *const own = findRow(kOwnCommands, word)) {
        own->execute();
    } else if (const auto *const row = findRow(kCommandRows, word)) {
        executeRow(self, *row, arguments, reply, request);
    } else {
        std::printf("Unknown command: %s\n", word);
    }
}

} // namespace

void BRELShell_parseCommand(BRELShell *self, char **argv, int argc)
{
    Reply reply;
    Request request;
    if (!ZUV_Service_Admin_CommandReply_initialize(&reply)) {
        reportFailure("initialize reply object");
        BRELShell_g_terminate = 1;
        return;
    }
    if (!ZUV_Service_Admin_CommandRequest_initialize(&request)) {
        reportFailure("initialize request object");
        BRELShell_g_terminate = 1;
        ZUV_Service_Admin_CommandReply_finalize(&reply);
        return;
    }
    execute(self, {argv, argc}, reply, request);
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    ZUV_Service_Admin_CommandReply_finalize(&reply);
}

int BRELShell_buildOctetBody(ZUV_Service_Admin_CommandRequest *outputRequest,
                             const char *nestedResource)
{
    if (nestedResource == nullptr) {
        return 1;
    }
    char tag[kResourceTagSize] = {};
    if (!formatResourceTag(nestedResource, tag)) {
        reportFailure("snprintf in request octet body");
        return 0;
    }
    if (!copyOctets(*outputRequest, tag, static_cast<DDS_Long>(std::strlen(tag) + 1))) {
        reportFailure("ensure length in request octet body");
        return 0;
    }
    return 1;
}

void BRELShell_printHelp(void)
{
    const char *const productName = BRELProductInfo_get()->productName;
    std::puts("");
    std::printf("%s Shell\n", productName);
    std::puts("--------------------------------------------");
    std::puts("Commands:");
    std::printf("load     - Load %s XML configuration\n", productName);
    std::printf("unload   - Unload current %s configuration\n", productName);
    std::puts("enable   - Enable an entity");
    std::puts("disable  - Disable an entity");
    std::puts("pause    - Pause an entity");
    std::puts("resume   - Resume an entity");
    std::puts("update   - Update the configuration of an entity");
    std::puts("create   - Create an entity");
    std::puts("delete   - Delete an entity");
    std::printf("save     - Save %s configuration to file\n", productName);
    std::printf("get      - Get  %s configuration as a string\n", productName);
    std::puts("add_peer - Add discovery peer for domain participant");
    std::puts("shutdown - Shutdowns the service process");
    std::puts("exit     - Exit the shell");
    std::puts("");
}
