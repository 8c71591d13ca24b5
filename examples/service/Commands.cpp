#include "Commands.h"

#include <new>
#include <optional>

#include "Reply.h"
#include "Reports.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace service
{
namespace
{

using Request = ZUV_Service_Admin_CommandRequest;
constexpr auto kCreate = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
constexpr auto kGet = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
constexpr auto kUpdate = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
constexpr auto kDelete = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;

std::string_view octetsOf(const Request &request)
{
    const auto length = static_cast<std::size_t>(DDS_OctetSeq_get_length(&request.octet_body));
    return {reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&request.octet_body)),
            length};
}

// What the request is about besides the entity: "" for the entity itself. Octets without a tag are a state.
std::string resourceOf(const Request &request)
{
    constexpr std::string_view kScheme = ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME;
    std::string_view octets = octetsOf(request);
    if (octets.empty()) {
        return "";
    }
    if (!octets.starts_with(kScheme)) {
        return "state";
    }
    octets.remove_prefix(kScheme.size());
    return std::string(octets.substr(0, octets.find('\0')));
}

// The kind of entity that is made in one of this kind, as an element without anything in it.
const char *emptyChildOf(ZUV_BrelServiceEntityKind kind)
{
    return kind == ZUV_BREL_SERVICE_SERVICE_ENTITY        ? "<domain_route/>"
           : kind == ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY ? "<session/>"
                                                          : nullptr;
}

// Whether entities of `child` are made, and deleted, in entities of `parent`.
bool canHold(ZUV_BrelServiceEntityKind parent, ZUV_BrelServiceEntityKind child)
{
    switch (child) {
    case ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY:
        return parent == ZUV_BREL_SERVICE_SERVICE_ENTITY;
    case ZUV_BREL_SERVICE_SESSION_ENTITY:
        return parent == ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY;
    case ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY:
    case ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY:
        return parent == ZUV_BREL_SERVICE_SESSION_ENTITY;
    default:
        return false;
    }
}

bool refuseFor(const char *command, const Entity &entity)
{
    SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_ss, command,
                    nameOf(entity.xml).c_str());
    return false;
}

} // namespace

// A command is known by its action and by what it is about.
struct Commands::Row {
    ZUV_Service_Admin_CommandActionKind action;
    std::string_view resource;
    const char *name;
    bool (Commands::*carryOut)(const Request &request, std::string &answer); // null: not supported
    bool needsConfiguration;
};

const Commands::Row *Commands::findRow(const Request &request)
{
    static constexpr Row kRows[] = {
        {kGet, "", "get", &Commands::get, true},
        {kGet, "state", "get state", &Commands::getState, true},
        {kUpdate, "", "update", &Commands::update, true},
        {kUpdate, "state", "change state", &Commands::changeState, true},
        {kUpdate, "add_peer", "add_peer", nullptr, true},
        {kCreate, "", "create", &Commands::create, true},
        {kCreate, "config", "save", &Commands::save, true},
        {kCreate, "state", "load", &Commands::load, false},
        {kDelete, "", "delete", &Commands::remove, true},
        {kDelete, "config", "unload", &Commands::unload, true},
    };
    static constexpr Row kShutdown = {kDelete, "", "shutdown", &Commands::shutdown, false};
    const std::string resource = resourceOf(request);
    if (request.action == kDelete && resource.empty() &&
        trimmed(request.resource_identifier).empty()) {
        return &kShutdown;
    }
    for (const Row &row : kRows) {
        if (row.action == request.action && row.resource == resource) {
            return &row;
        }
    }
    return nullptr;
}

ZUV_BrelServiceConfigInterceptor Commands::interceptor()
{
    return {this, [](void *self, const Request *request, const DDS_SampleInfo *info,
                     ZUV_BrelServiceAdminReplier *replier) {
                try {
                    static_cast<Commands *>(self)->handle(*request, *info, replier);
                } catch (const std::bad_alloc &) {
                    // The server takes no exceptions. Nobody is answered.
                    SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_COMMAND_FAILURE_s,
                                    "out of memory");
                }
            }};
}

void Commands::handle(const Request &request, const DDS_SampleInfo &info,
                      ZUV_BrelServiceAdminReplier *replier)
{
    const Reports reports;
    std::string answer;
    const bool isDone = carryOut(request, answer);
    sendReply(isDone, isDone ? answer : reports.text(), info, replier);
    if (isStopping_) {
        waitUntilReceived(replier);
        stop_();
    }
}

bool Commands::carryOut(const Request &request, std::string &answer)
{
    const Row *const row = findRow(request);
    if (row == nullptr && (request.action < kCreate || request.action > kDelete)) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_UNKNOWN_COMMAND_d,
                        static_cast<int>(request.action));
        return false;
    }
    if (row == nullptr || row->carryOut == nullptr) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_s,
                        resourceOf(request).c_str());
        return false;
    }
    if (row->needsConfiguration && configuration_ == nullptr) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_SERVICE_UNLOADED);
        return false;
    }
    if (!(this->*row->carryOut)(request, answer)) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_COMMAND_FAILURE_s, row->name);
        return false;
    }
    return true;
}

// An element of the service; nothing after a report, also for one that takes no commands.
Entity Commands::find(const char *identifier) const
{
    const Entity entity = service::find(configuration_->xml(), identifier);
    if (entity.xml != nullptr && entity.kind == ZUV_BrelServiceEntityKind_OTHER) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNSUPPORTED_RESOURCE);
        return {};
    }
    return entity;
}

bool Commands::get(const Request &request, std::string &answer)
{
    std::optional<std::string> text;
    if (trimmed(request.resource_identifier).empty()) {
        text = configuration_->document();
    } else if (const Entity entity = find(request.resource_identifier); entity.xml != nullptr) {
        text = configuration_->text(entity.xml);
    }
    // The shell ends the line.
    answer = trimmed(text.value_or(""));
    return text.has_value();
}

bool Commands::getState(const Request &request, std::string &answer)
{
    const Entity entity = find(request.resource_identifier);
    answer = entity.xml != nullptr ? states_.wordOf(entity) : "";
    return entity.xml != nullptr;
}

bool Commands::update(const Request &request, std::string &answer)
{
    const std::optional<std::string> snippet = snippetOf(request.string_body);
    Entity target = snippet ? find(request.resource_identifier) : Entity{};
    if (target.xml == nullptr) {
        return false;
    }
    if (trimmed(request.resource_identifier).empty()) {
        // Without a name the snippet tells the kind: the entity is the only one of it.
        const std::string tag = tagOf(*snippet);
        if (tag.empty()) {
            return false;
        }
        if (BRELCfgFileParser_getEntityKindFromTag(tag.c_str()) !=
                ZUV_BrelServiceEntityKind_OTHER &&
            tag != ZUVXMLUTILSObject_getTagName(target.xml)) {
            target = findOnly(configuration_->xml(), tag.c_str());
        }
    }
    if (target.xml == nullptr || !configuration_->update(target, *snippet)) {
        return false;
    }
    answer = "updated " + nameOf(target.xml) + saveIfWanted();
    return true;
}

bool Commands::changeState(const Request &request, std::string &answer)
{
    const Entity entity = find(request.resource_identifier);
    if (entity.xml == nullptr) {
        return false;
    }
    const ZUV_Service_EntityStateKind wanted =
        ZUV_BrelServiceAdminSupport_getStateFromRequest(&request);
    if (wanted == ZUV_Service_EntityStateKind_INVALID) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s, request.string_body);
        return false;
    }
    if (!states_.change(entity, wanted)) {
        return false;
    }
    answer = nameOf(entity.xml) + " is " + states_.wordOf(entity);
    return true;
}

bool Commands::create(const Request &request, std::string &answer)
{
    const Entity parent = find(request.resource_identifier);
    if (parent.xml == nullptr) {
        return false;
    }
    // The shell sends neither kind nor document: then the new entity is an empty one.
    const bool isBare = trimmed(request.string_body).empty();
    const char *const empty = emptyChildOf(parent.kind);
    if (isBare && empty == nullptr) {
        SERVICE_REFUSAL_TEXT("create an entity in %s: the request brings no document",
                             nameOf(parent.xml).c_str());
        return false;
    }
    const std::optional<std::string> snippet = isBare ? empty : snippetOf(request.string_body);
    const std::string tag = snippet ? tagOf(*snippet) : "";
    if (tag.empty()) {
        return false;
    }
    if (!canHold(parent.kind, BRELCfgFileParser_getEntityKindFromTag(tag.c_str()))) {
        return refuseFor("create", parent);
    }
    Entity created;
    if (!configuration_->create(parent, *snippet, created)) {
        return false;
    }
    answer = "created " + nameOf(created.xml) +
             (isBare ? ", empty: the request brings no document" : "") + saveIfWanted();
    return true;
}

bool Commands::remove(const Request &request, std::string &answer)
{
    const Entity entity = find(request.resource_identifier);
    if (entity.xml == nullptr) {
        return false;
    }
    if (!canHold(BRELCfgFileParser_getEntityKind(ZUVXMLUTILSObject_getParent(entity.xml)),
                 entity.kind)) {
        return refuseFor("delete", entity);
    }
    answer = "deleted " + nameOf(entity.xml);
    states_.forget(entity.xml);
    configuration_->remove(entity);
    answer += saveIfWanted();
    return true;
}

bool Commands::load(const Request &request, std::string &answer)
{
    const std::string name(trimmed(request.resource_identifier));
    std::string body = request.string_body;
    if (trimmed(body).empty() && options_.property.cfg_file != nullptr) {
        body = options_.property.cfg_file;
    }
    // The former one stays until the new one is whole.
    std::unique_ptr<Configuration> loaded =
        Configuration::load(options_, body, name.empty() ? nullptr : name.c_str());
    if (loaded == nullptr) {
        return false;
    }
    states_.clear();
    configuration_ = std::move(loaded);
    answer = "loaded " + nameOf(configuration_->xml());
    return true;
}

bool Commands::unload(const Request &, std::string &answer)
{
    answer = "unloaded " + nameOf(configuration_->xml());
    configuration_.reset();
    return true;
}

bool Commands::save(const Request &, std::string &answer)
{
    answer = std::string("saved to ") +
             (configuration_->savePath() != nullptr ? configuration_->savePath() : "");
    return configuration_->save();
}

bool Commands::shutdown(const Request &, std::string &answer)
{
    answer = "shutting down";
    isStopping_ = true;
    return true;
}

// What has changed stays changed, whether or not it can be saved at once; the answer tells.
std::string Commands::saveIfWanted() const
{
    if (!configuration_->service().administration.autosaveOnUpdate) {
        return "";
    }
    const Reports reports;
    return configuration_->save() ? std::string(", saved to ") + configuration_->savePath()
                                  : ", but not saved:\n" + reports.text();
}

} // namespace service
