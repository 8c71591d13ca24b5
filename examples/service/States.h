// What operators have made of the entities: enabled or not, running or paused. It lasts as long as the configuration is
// loaded; an engine would start and stop what moves the data.
#ifndef ZUV_EXAMPLES_SERVICE_STATES_H
#define ZUV_EXAMPLES_SERVICE_STATES_H

#include <map>

#include "Names.h"
#include "common/ServiceCommon.h"

namespace service
{

class States
{
public:
    // The word of the entity's state: at first what its attribute "enabled" says.
    const char *wordOf(const Entity &entity) const;
    ZUV_Service_EntityStateKind of(const Entity &entity) const;

    // Bring the entity into that state. False, after a report, when its kind has no such state, or it cannot get
    // there from where it is.
    bool change(const Entity &entity, ZUV_Service_EntityStateKind wanted);

    // The element and what is in it will be deleted.
    void forget(const ZUVXMLUTILSObject *xml);
    void clear() { states_.clear(); }

private:
    std::map<std::string, ZUV_Service_EntityStateKind> states_; // by full name
};

} // namespace service

#endif
