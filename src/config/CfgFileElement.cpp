#include "config/CfgFileElement.h"

#include <cstring>
#include <span>
#include <string_view>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Object.hpp"
#include "platform/xmlutils/Utils.h"

#define ELEMENT_FAILURE(...)                                                                       \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, __VA_ARGS__)
#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

using Tags = std::span<const char *const>;

struct Order {
    std::string_view tag;
    Tags children;
};
const Order kOrders[] = {
    {"domain_route", BREL_XML_DOMAIN_ROUTE_TAGS},
    {"connection", BREL_XML_CONNECTION_TAGS},
    {"participant", BREL_XML_CONNECTION_TAGS},
    {"session", BREL_XML_SESSION_TAGS},
    {"route", BREL_XML_ROUTE_TAGS},
    {"topic_route", BREL_XML_ROUTE_TAGS},
    {"auto_route", BREL_XML_ROUTE_TAGS},
    {"auto_topic_route", BREL_XML_ROUTE_TAGS},
    {"input", BREL_XML_STREAM_PORT_TAGS},
    {"dds_input", BREL_XML_STREAM_PORT_TAGS},
    {"output", BREL_XML_STREAM_PORT_TAGS},
    {"dds_output", BREL_XML_STREAM_PORT_TAGS},
};

Tags orderOf(std::string_view tag)
{
    for (const Order &order : kOrders) {
        if (order.tag == tag) {
            return order.children;
        }
    }
    return {};
}

bool hasTag(const ZUVXMLUTILSObject *xmlObject, const char *tag)
{
    return std::strcmp(ZUVXMLUTILSObject_getTagName(xmlObject), tag) == 0;
}

} // namespace

extern "C" {

void *BRELCfgFileElement_new(struct BRELCfgFileParser *parser, ZUVXMLUTILSObject *xmlObject)
{
    if (IS_NULL(parser) || IS_NULL(xmlObject)) {
        return nullptr;
    }
    zuv::ObjectPointer<BRELCfgFileElement> self(zuv::newObject<BRELCfgFileElement>("element"));
    if (self == nullptr) {
        ELEMENT_FAILURE(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                        static_cast<int>(sizeof(BRELCfgFileElement)));
        return nullptr;
    }
    if (!BRELCfgFileElement_initialize(self.get(), xmlObject)) {
        ELEMENT_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "BRELCfgFileElement object");
        return nullptr;
    }
    return self.release();
}

int BRELCfgFileElement_setUp(struct BRELCfgFileParser *parser, void *object)
{
    return !IS_NULL(parser) && !IS_NULL(object);
}

void BRELCfgFileElement_delete(void *object)
{
    if (IS_NULL(object)) {
        return;
    }
    auto *const self = static_cast<BRELCfgFileElement *>(object);
    BRELCfgFileElement_finalize(self);
    zuv::deleteObject(self);
}

int BRELCfgFileElement_initialize(BRELCfgFileElement *self, ZUVXMLUTILSObject *xmlObject)
{
    if (IS_NULL(self) || IS_NULL(xmlObject)) {
        return 0;
    }
    *self = {};
    self->xmlObject = xmlObject;
    self->name = ZUVXMLUTILSObject_getName(xmlObject);
    self->fullName = BRELXmlObject_getFullyQualifiedNameRelativeToService(xmlObject);
    self->enabled = DDS_BOOLEAN_TRUE;
    const auto *const target = static_cast<const BRELCfgFileElement *>(
        BRELXmlObject_getUpdateTargetExtensionObject(xmlObject));
    if (self->fullName == nullptr ||
        (target != nullptr && !BRELCfgFileElement_copy(self, target)) ||
        !BRELCfgFileElement_parse(self, xmlObject)) {
        BRELCfgFileElement_finalize(self);
        return 0;
    }
    return 1;
}

int BRELCfgFileElement_parse(BRELCfgFileElement *self, const ZUVXMLUTILSObject *xmlObject)
{
    if (IS_NULL(self) || IS_NULL(xmlObject)) {
        return 0;
    }
    if (!BRELXmlObject_getEnabledAttribute(xmlObject, &self->enabled)) {
        ELEMENT_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
        return 0;
    }
    return 1;
}

int BRELCfgFileElement_copy(BRELCfgFileElement *self, const BRELCfgFileElement *source)
{
    if (IS_NULL(self) || IS_NULL(source)) {
        return 0;
    }
    self->enabled = source->enabled;
    return 1;
}

int BRELCfgFileElement_update(int *updated, BRELCfgFileElement *self,
                              const BRELCfgFileElement *newCfg)
{
    if (IS_NULL(updated) || IS_NULL(self) || IS_NULL(newCfg)) {
        return 0;
    }
    if (!ZUVXMLUTILSUtils_updateObject(self->xmlObject, newCfg->xmlObject)) {
        ELEMENT_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "update xml object");
        return 0;
    }
    const Tags order = orderOf(ZUVXMLUTILSObject_getTagName(self->xmlObject));
    if (!order.empty()) {
        ZUVXMLUTILSUtils_sortChildren(self->xmlObject, order.data(),
                                      static_cast<int>(order.size()));
    }
    if (self->enabled != newCfg->enabled) {
        self->enabled = newCfg->enabled;
        *updated = 1;
    }
    return 1;
}

void BRELCfgFileElement_finalize(BRELCfgFileElement *self)
{
    IS_NULL(self);
}

int BRELCfgFileTopicRoute_isXmlTopicRouteObject(const ZUVXMLUTILSObject *xmlObject)
{
    return !IS_NULL(xmlObject) && (hasTag(xmlObject, "route") || hasTag(xmlObject, "topic_route"));
}
}
