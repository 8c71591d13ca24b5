// How a service finds what is in it.
#include "config/CfgFileService.h"
#include "config/ElementRecord.hpp"

namespace
{

using Service = BRELCfgFileService;
using Object = ZUVXMLUTILSObject;

// The record of the element, if it is of that kind.
template <typename Record>
Record *recordOf(const Object *xmlObject, ZUV_BrelServiceEntityKind kind)
{
    return xmlObject != nullptr && BRELCfgFileParser_getEntityKind(xmlObject) == kind
               ? static_cast<Record *>(ZUVXMLUTILSObject_getUserData(xmlObject))
               : nullptr;
}

template <typename Record>
Record *find(const Service &self, const char *fullName, ZUV_BrelServiceEntityKind kind)
{
    return recordOf<Record>(ZUVXMLUTILSObject_lookUp(self.xmlObject, fullName), kind);
}

// From this element on.
BRELCfgFileDomainRoute *firstDomainRouteFrom(const Object *xmlObject)
{
    while (xmlObject != nullptr &&
           BRELCfgFileParser_getEntityKind(xmlObject) != ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY) {
        xmlObject = ZUVXMLUTILSObject_getNextSibling(xmlObject);
    }
    return recordOf<BRELCfgFileDomainRoute>(xmlObject, ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY);
}

} // namespace

extern "C" {

int BRELCfgFileService_isXmlServiceObject(const ZUVXMLUTILSObject *xmlObject)
{
    return !BREL_ELEMENT_IS_NULL(xmlObject) &&
           std::strcmp(ZUVXMLUTILSObject_getTagName(xmlObject), "brel_service") == 0;
}

BRELCfgFileService *BRELCfgFileService_narrow(const ZUVXMLUTILSObject *xmlObject)
{
    return BRELCfgFileService_isXmlServiceObject(xmlObject)
               ? static_cast<Service *>(ZUVXMLUTILSObject_getUserData(xmlObject))
               : nullptr;
}

BRELCfgFileDomainRoute *BRELCfgFileService_getFirstDomainRoute(const BRELCfgFileService *self)
{
    return BREL_ELEMENT_IS_NULL(self)
               ? nullptr
               : firstDomainRouteFrom(ZUVXMLUTILSObject_getFirstChild(self->xmlObject));
}

BRELCfgFileDomainRoute *
BRELCfgFileService_getNextDomainRoute(const BRELCfgFileService *self,
                                      const BRELCfgFileDomainRoute *xmlAutoRoute)
{
    if (BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(xmlAutoRoute)) {
        return nullptr;
    }
    // Every record begins with its element.
    const Object *const xmlObject = *reinterpret_cast<Object *const *>(xmlAutoRoute);
    return firstDomainRouteFrom(ZUVXMLUTILSObject_getNextSibling(xmlObject));
}

#define DEFINE_FIND(NAME, KIND)                                                                    \
    BRELCfgFile##NAME *BRELCfgFileService_find##NAME(const BRELCfgFileService *self,               \
                                                     const char *fullName)                         \
    {                                                                                              \
        return BREL_ELEMENT_IS_NULL(self) || BREL_ELEMENT_IS_NULL(fullName)                        \
                   ? nullptr                                                                       \
                   : find<BRELCfgFile##NAME>(*self, fullName, KIND);                               \
    }
DEFINE_FIND(DomainRoute, ZUV_BREL_SERVICE_DOMAIN_ROUTE_ENTITY)
DEFINE_FIND(AbstractConnection, ZUV_BREL_SERVICE_CONNECTION_ENTITY)
DEFINE_FIND(Session, ZUV_BREL_SERVICE_SESSION_ENTITY)
DEFINE_FIND(TopicRoute, ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY)
DEFINE_FIND(AutoTopicRoute, ZUV_BREL_SERVICE_AUTO_TOPIC_ROUTE_ENTITY)
#undef DEFINE_FIND
}
