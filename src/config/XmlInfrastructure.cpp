// The schemas and the stylesheet that the program carries, ready for use.
#include <iterator>
#include <span>

#include "config/EmbeddedTexts.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/ddsxml/SchemaTexts.h"
#include "platform/xmlutils/Globals.h"

#define BREL_ZUV_TOPIC_TYPES_DEFINITIONS_XSD_FILE_NAME                                             \
    "definitions/zuv_dds_topic_types_definitions.xsd"
#define BREL_ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD_FILE_NAME                                        \
    "definitions/zuv_dds_qos_profiles_definitions.xsd"
#define BREL_ZUV_DDS_PROFILES_DEFINITIONS_XSD_FILE_NAME                                            \
    "definitions/zuv_dds_profiles_definitions.xsd"
#define BREL_ZUV_DIST_LOGGER_DEFINITIONS_XSD_FILE_NAME "definitions/zuv_dist_logger_definitions.xsd"
#define BREL_SERVICE_COMMON_DEFINITIONS_XSD_FILE_NAME                                              \
    "definitions/zuv_service_common_definitions.xsd"

namespace
{

struct Schema {
    const char *fileName;
    std::span<const char *const> text;
    const char *nameInReports;
};
const Schema kSchemas[] = {
    {BREL_ZUV_TOPIC_TYPES_DEFINITIONS_XSD_FILE_NAME, ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD,
     BREL_ZUV_TOPIC_TYPES_DEFINITIONS_XSD_FILE_NAME},
    // Reports name the next file; who looks for them in logs knows them so.
    {BREL_ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD_FILE_NAME, ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD,
     BREL_ZUV_DDS_PROFILES_DEFINITIONS_XSD_FILE_NAME},
    {BREL_ZUV_DDS_PROFILES_DEFINITIONS_XSD_FILE_NAME, ZUV_DDS_PROFILES_DEFINITIONS_XSD,
     BREL_ZUV_DDS_PROFILES_DEFINITIONS_XSD_FILE_NAME},
    {BREL_ZUV_DIST_LOGGER_DEFINITIONS_XSD_FILE_NAME, ZUV_DIST_LOGGER_DEFINITIONS_XSD,
     BREL_ZUV_DIST_LOGGER_DEFINITIONS_XSD_FILE_NAME},
    {BREL_SERVICE_COMMON_DEFINITIONS_XSD_FILE_NAME, BREL_SERVICE_COMMON_XSD,
     BREL_SERVICE_COMMON_DEFINITIONS_XSD_FILE_NAME},
};

// An element that may be validated on its own, and the type of the schema that it must be of. A root is an
// entity, or an update of one.
#define ROOT(NAME, TYPE)                                                                           \
    {NAME, TYPE},                                                                                  \
    {                                                                                              \
        NAME "_update", TYPE "Update"                                                              \
    }
constexpr ZUVXMLUTILSProperty BREL_XML_SUPPORT_VALIDATION_ROOTS[] = {
    {"qos_library", "qosLibrary"},
    {"types", "brelTypes"},
    ROOT("brel_service", "brelService"),
    ROOT("domain_route", "domainRoute"),
    ROOT("participant", "domainRouteParticipant"),
    ROOT("connection", "domainRouteConnection"),
    ROOT("session", "brelSession"),
    ROOT("auto_route", "autoRoute"),
    ROOT("auto_topic_route", "autoTopicRoute"),
    ROOT("route", "route"),
    ROOT("topic_route", "topicRoute"),
    ROOT("route_input", "routeInput"),
    ROOT("route_output", "routeOutput"),
    ROOT("auto_route_input", "autoRouteStreamPort"),
    ROOT("auto_route_output", "autoRouteStreamPort"),
    ROOT("topic_route_input", "topicRouteInput"),
    ROOT("topic_route_output", "topicRouteOutput"),
    ROOT("auto_topic_route_input", "autoTopicRouteInput"),
    ROOT("auto_topic_route_output", "autoTopicRouteOutput"),
    ROOT("input_transformation", "inputTransformation"),
    ROOT("output_transformation", "outputTransformation"),
};
static_assert(std::size(BREL_XML_SUPPORT_VALIDATION_ROOTS) == 40);

template <std::size_t kCount>
constexpr int countOf(const char *const (&)[kCount])
{
    return static_cast<int>(kCount);
}

bool makeReady(BRELXMLSupportInfrastructure &self)
{
    self._xsdValidator = ZUVXMLUTILSValidator_new(BREL_XSD, countOf(BREL_XSD));
    if (self._xsdValidator == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "xsd ZUVXMLUTILSValidator");
        return false;
    }
    const ZUVXMLUTILSPropertyList roots = {
        BREL_XML_SUPPORT_VALIDATION_ROOTS,
        static_cast<int>(std::size(BREL_XML_SUPPORT_VALIDATION_ROOTS))};
    if (!ZUVXMLUTILSValidator_addValidationRoots(self._xsdValidator, &roots)) {
        BREL_XML_FAILURE(&ZUV_LOG_ADD_FAILURE_s, "validation roots");
        return false;
    }
    self._toQosLibraryTransformer =
        ZUVXMLUTILSTransformer_newFromStringArray(BREL_XSLT_TO_QOS, countOf(BREL_XSLT_TO_QOS));
    if (self._toQosLibraryTransformer == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_CREATION_FAILURE_s, "to QosLibrary ZUVXMLUTILSTransfomer");
        return false;
    }
    return true;
}

} // namespace

extern "C" {

int BRELCfgFileParser_initializeGlobals(void)
{
    if (!ZUVXMLUTILSGlobals_initialize()) {
        BREL_XML_FAILURE(&ZUV_LOG_INIT_FAILURE_s, "ZUVXMLUTILSGlobals");
        return 0;
    }
    for (const Schema &schema : kSchemas) {
        if (!ZUVXMLUTILSGlobals_registerStringResource(schema.fileName, schema.text.data(),
                                                       static_cast<int>(schema.text.size()))) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_REGISTER_DEFINITION_FAILURE_s, schema.nameInReports);
            BRELCfgFileParser_finalizeGlobals();
            return 0;
        }
    }
    return 1;
}

void BRELCfgFileParser_finalizeGlobals(void)
{
    for (const Schema &schema : kSchemas) {
        ZUVXMLUTILSGlobals_unregisterStringResource(schema.fileName);
    }
    ZUVXMLUTILSGlobals_finalize();
}

int BRELXMLSupportInfrastructure_initialize(BRELXMLSupportInfrastructure *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return 0;
    }
    *self = {};
    if (!makeReady(*self)) {
        BRELXMLSupportInfrastructure_finalize(self);
        return 0;
    }
    return 1;
}

void BRELXMLSupportInfrastructure_finalize(BRELXMLSupportInfrastructure *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return;
    }
    ZUVXMLUTILSValidator_delete(self->_xsdValidator);
    ZUVXMLUTILSTransformer_delete(self->_toQosLibraryTransformer);
    *self = {};
}
}
