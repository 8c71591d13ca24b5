#include "SchemaTest.h"

#include <gmock/gmock.h>

#include "config/EmbeddedTexts.h"
#include "platform/ddsxml/SchemaTexts.h"

namespace zuv_test
{
namespace
{

const ZUVXMLUTILSProperty kRoots[] = {
    {"qos_library", "qosLibrary"},
    {"types", "brelTypes"},
    {"brel_service", "brelService"},
    {"brel_service_update", "brelServiceUpdate"},
    {"domain_route", "domainRoute"},
    {"domain_route_update", "domainRouteUpdate"},
    {"participant", "domainRouteParticipant"},
    {"participant_update", "domainRouteParticipantUpdate"},
    {"connection", "domainRouteConnection"},
    {"connection_update", "domainRouteConnectionUpdate"},
    {"session", "brelSession"},
    {"session_update", "brelSessionUpdate"},
    {"auto_route", "autoRoute"},
    {"auto_route_update", "autoRouteUpdate"},
    {"auto_topic_route", "autoTopicRoute"},
    {"auto_topic_route_update", "autoTopicRouteUpdate"},
    {"route", "route"},
    {"route_update", "routeUpdate"},
    {"topic_route", "topicRoute"},
    {"topic_route_update", "topicRouteUpdate"},
    {"route_input", "routeInput"},
    {"route_input_update", "routeInputUpdate"},
    {"route_output", "routeOutput"},
    {"route_output_update", "routeOutputUpdate"},
    {"auto_route_input", "autoRouteStreamPort"},
    {"auto_route_input_update", "autoRouteStreamPortUpdate"},
    {"auto_route_output", "autoRouteStreamPort"},
    {"auto_route_output_update", "autoRouteStreamPortUpdate"},
    {"topic_route_input", "topicRouteInput"},
    {"topic_route_input_update", "topicRouteInputUpdate"},
    {"topic_route_output", "topicRouteOutput"},
    {"topic_route_output_update", "topicRouteOutputUpdate"},
    {"auto_topic_route_input", "autoTopicRouteInput"},
    {"auto_topic_route_input_update", "autoTopicRouteInputUpdate"},
    {"auto_topic_route_output", "autoTopicRouteOutput"},
    {"auto_topic_route_output_update", "autoTopicRouteOutputUpdate"},
    {"input_transformation", "inputTransformation"},
    {"input_transformation_update", "inputTransformationUpdate"},
    {"output_transformation", "outputTransformation"},
    {"output_transformation_update", "outputTransformationUpdate"},
};
static_assert(std::size(kRoots) == 40);

struct Resource {
    const char *name;
    const char *const *pieces;
    int count;
};
const Resource kResources[] = {
    {"definitions/zuv_dds_topic_types_definitions.xsd", ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD,
     ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD_LENGTH},
    {"definitions/zuv_dds_qos_profiles_definitions.xsd", ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD,
     ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD_LENGTH},
    {"definitions/zuv_dds_profiles_definitions.xsd", ZUV_DDS_PROFILES_DEFINITIONS_XSD,
     ZUV_DDS_PROFILES_DEFINITIONS_XSD_LENGTH},
    {"definitions/zuv_dist_logger_definitions.xsd", ZUV_DIST_LOGGER_DEFINITIONS_XSD,
     ZUV_DIST_LOGGER_DEFINITIONS_XSD_LENGTH},
    {"definitions/zuv_service_common_definitions.xsd", BREL_SERVICE_COMMON_XSD,
     BREL_SERVICE_COMMON_XSD_LENGTH},
};

} // namespace

const ZUVXMLUTILSPropertyList kValidationRoots = {kRoots, std::size(kRoots)};

void SchemaTest::SetUp()
{
    XmlTest::SetUp();
    for (const auto &[name, pieces, count] : kResources) {
        ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource(name, pieces, count), 1);
    }
    validator.reset(ZUVXMLUTILSValidator_new(BREL_XSD, BREL_XSD_LENGTH));
    ASSERT_NE(validator, nullptr) << testing::PrintToString(log.texts());
    ASSERT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &kValidationRoots), 1)
        << testing::PrintToString(log.texts());
}

void SchemaTest::TearDown()
{
    EXPECT_TRUE(log.isEmpty());
    validator.reset();
    XmlTest::TearDown();
}

bool SchemaTest::isValid(const std::string &document)
{
    const Tree tree = parse(document);
    return tree != nullptr && ZUVXMLUTILSValidator_validate(validator.get(), tree.get()) == 1;
}

void SchemaTest::check(std::span<const Documents> table)
{
    for (const auto &[valid, invalid, report] : table) {
        EXPECT_TRUE(isValid(valid)) << valid << "\n" << testing::PrintToString(log.texts());
        log.clear();
        EXPECT_FALSE(isValid(invalid)) << invalid;
        EXPECT_THAT(onlyLine(), testing::StartsWith("!accept text, " + std::string(report)))
            << invalid;
    }
}

} // namespace zuv_test
