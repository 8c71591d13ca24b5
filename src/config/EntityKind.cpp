#include "config/EntityKind.h"

#include <cstring>
#include <iterator>
#include <string_view>

#include "config/CfgFileElement.h"
#include "config/XmlLog.hpp"

namespace
{

using std::string_view;

struct Kind {
    string_view tag;
    ZUV_BrelServiceEntityKind kind;
};
constexpr Kind kKinds[] = {
    {"brel_service", ZUV_BREL_SERVICE_SERVICE_ENTITY},
    {"domain_route", ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY},
    {"participant", ZUV_BREL_SERVICE_CONNECTION_ENTITY},
    {"connection", ZUV_BREL_SERVICE_CONNECTION_ENTITY},
    {"session", ZUV_BREL_SERVICE_SESSION_ENTITY},
    {"auto_route", ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY},
    {"auto_topic_route", ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY},
    {"route", ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY},
    {"topic_route", ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY},
    {"input", ZUV_BREL_SERVICE_INPUT_ENTITY},
    {"dds_input", ZUV_BREL_SERVICE_INPUT_ENTITY},
    {"output", ZUV_BREL_SERVICE_OUTPUT_ENTITY},
    {"dds_output", ZUV_BREL_SERVICE_OUTPUT_ENTITY},
};

bool isPort(ZUV_BrelServiceEntityKind kind)
{
    return kind == ZUV_BREL_SERVICE_INPUT_ENTITY || kind == ZUV_BREL_SERVICE_OUTPUT_ENTITY;
}

// An entity of its own, and an update of one.
struct Root {
    const char *whole;
    const char *update;
};
#define ROOT(TAG)                                                                                  \
    {                                                                                              \
        TAG, TAG "_update"                                                                         \
    }
constexpr Root kRoots[] = {
    ROOT("brel_service"),     ROOT("domain_route"), ROOT("participant"),
    ROOT("connection"),       ROOT("session"),      ROOT("auto_route"),
    ROOT("auto_topic_route"), ROOT("route"),        ROOT("topic_route"),
};
// By: output, of a topic, automatic.
constexpr Root kPortRoots[] = {
    ROOT("route_input"),
    ROOT("route_output"),
    ROOT("topic_route_input"),
    ROOT("topic_route_output"),
    ROOT("auto_route_input"),
    ROOT("auto_route_output"),
    ROOT("auto_topic_route_input"),
    ROOT("auto_topic_route_output"),
};

const Root *findRoot(string_view tag, string_view parentTag)
{
    const ZUV_BrelServiceEntityKind kind = BRELCfgFileParser_getEntityKindFromTag(tag.data());
    if (isPort(kind)) {
        const bool isAutomatic = parentTag.starts_with("auto");
        const bool isOfTopic =
            parentTag.find("topic") != parentTag.npos || tag.find("dds") != tag.npos;
        const bool isOutput = kind == ZUV_BREL_SERVICE_OUTPUT_ENTITY;
        return &kPortRoots[isAutomatic * 4 + isOfTopic * 2 + isOutput];
    }
    for (const Root &root : kRoots) {
        if (root.whole == tag) {
            return &root;
        }
    }
    return nullptr;
}

} // namespace

extern "C" {

ZUV_BrelServiceEntityKind BRELCfgFileParser_getEntityKindFromTag(const char *tagName)
{
    if (BREL_XML_IS_NULL(tagName)) {
        return ZUV_BrelServiceEntityKind_OTHER;
    }
    for (const Kind &kind : kKinds) {
        if (kind.tag == tagName) {
            return kind.kind;
        }
    }
    return ZUV_BrelServiceEntityKind_OTHER;
}

ZUV_BrelServiceEntityKind BRELCfgFileParser_getEntityKind(const ZUVXMLUTILSObject *xmlObject)
{
    return BREL_XML_IS_NULL(xmlObject)
               ? ZUV_BrelServiceEntityKind_OTHER
               : BRELCfgFileParser_getEntityKindFromTag(ZUVXMLUTILSObject_getTagName(xmlObject));
}

ZUVXMLUTILSObject *BRELCfgFileParser_findEntity(ZUVXMLUTILSObject *xmlParent,
                                                ZUV_BrelServiceEntityKind *entityKind,
                                                const char *entityFullyQualifiedName)
{
    if (BREL_XML_IS_NULL(xmlParent) || BREL_XML_IS_NULL(entityKind) ||
        BREL_XML_IS_NULL(entityFullyQualifiedName)) {
        return nullptr;
    }
    ZUVXMLUTILSObject *const found =
        *entityFullyQualifiedName != '\0'
            ? ZUVXMLUTILSObject_lookUp(xmlParent, entityFullyQualifiedName)
            : xmlParent;
    if (found == nullptr) {
        return nullptr;
    }
    *entityKind = BRELCfgFileParser_getEntityKind(found);
    // The ports of an automatic route are no entities of their own.
    const ZUVXMLUTILSObject *const parent = ZUVXMLUTILSObject_getParent(found);
    if (isPort(*entityKind) &&
        (parent == nullptr || !BRELCfgFileTopicRoute_isXmlTopicRouteObject(parent))) {
        *entityKind = ZUV_BrelServiceEntityKind_OTHER;
    }
    return found;
}

const char *BRELCfgFileParser_findValidationRootTag(const char *entityTag,
                                                    const char *parentTagName, int isUpdate)
{
    if (BREL_XML_IS_NULL(entityTag) || BREL_XML_IS_NULL(parentTagName)) {
        return nullptr;
    }
    const Root *const root = findRoot(entityTag, parentTagName);
    return root == nullptr ? nullptr : isUpdate ? root->update : root->whole;
}
}
