#include "States.h"

#include "Reports.h"
#include "config/XmlCommon.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace service
{
namespace
{

using State = ZUV_Service_EntityStateKind;
constexpr State kEnabled = ZUV_Service_EntityStateKind_ENABLED;
constexpr State kDisabled = ZUV_Service_EntityStateKind_DISABLED;
constexpr State kRunning = ZUV_Service_EntityStateKind_RUNNING;
constexpr State kPaused = ZUV_Service_EntityStateKind_PAUSED;

bool canBeEnabled(ZUV_BrelServiceEntityKind kind)
{
    switch (kind) {
    case ZUV_BREL_SERVICE_SERVICE_ENTITY:
    case ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY:
    case ZUV_BREL_SERVICE_SESSION_ENTITY:
    case ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY:
    case ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY:
        return true;
    default:
        return false;
    }
}

bool canBePaused(ZUV_BrelServiceEntityKind kind)
{
    return canBeEnabled(kind) && kind != ZUV_BREL_SERVICE_SERVICE_ENTITY &&
           kind != ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY;
}

std::string keyOf(const ZUVXMLUTILSObject *xml)
{
    const char *const name = ZUVXMLUTILSObject_getFullyQualifiedName(xml);
    return name != nullptr ? name : "";
}

// As the operator typed it.
const char *commandOf(State wanted)
{
    return wanted == kEnabled    ? "enable"
           : wanted == kDisabled ? "disable"
           : wanted == kPaused   ? "pause"
                                 : "resume";
}

} // namespace

State States::of(const Entity &entity) const
{
    const auto found = states_.find(keyOf(entity.xml));
    if (found != states_.end()) {
        return found->second;
    }
    DDS_Boolean isEnabled = DDS_BOOLEAN_TRUE;
    BRELXmlObject_getEnabledAttribute(entity.xml, &isEnabled);
    return isEnabled ? kEnabled : kDisabled;
}

const char *States::wordOf(const Entity &entity) const
{
    return ZUV_BrelServiceAdminSupport_entityStateToString(of(entity));
}

bool States::change(const Entity &entity, State wanted)
{
    const bool isPausing = wanted == kPaused || wanted == kRunning;
    if (!isPausing && wanted != kEnabled && wanted != kDisabled) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s,
                        ZUV_BrelServiceAdminSupport_entityStateToString(wanted));
        return false;
    }
    if (!(isPausing ? canBePaused(entity.kind) : canBeEnabled(entity.kind))) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_ss, commandOf(wanted),
                        nameOf(entity.xml).c_str());
        return false;
    }
    const State now = of(entity);
    if (isPausing && now == kDisabled) {
        SERVICE_REFUSAL_TEXT("%s %s: it is disabled", commandOf(wanted),
                             nameOf(entity.xml).c_str());
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s,
                        ZUV_BrelServiceAdminSupport_entityStateToString(wanted));
        return false;
    }
    // What is enabled stays as it is, running or paused.
    if (wanted != kEnabled || now == kDisabled) {
        states_[keyOf(entity.xml)] = wanted;
    }
    return true;
}

void States::forget(const ZUVXMLUTILSObject *xml)
{
    const std::string name = keyOf(xml);
    const std::string inside = name + "::";
    std::erase_if(states_, [&](const auto &entry) {
        return entry.first == name || entry.first.starts_with(inside);
    });
}

} // namespace service
