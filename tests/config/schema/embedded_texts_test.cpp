#include <span>

#include "SchemaTest.h"
#include "config/EmbeddedTexts.h"
#include "platform/ddsxml/SchemaTexts.h"

namespace zuv_test
{
namespace
{

std::string contentOf(const std::string &path)
{
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string joined(std::span<const char *const> pieces)
{
    std::string text;
    for (const char *const piece : pieces) {
        EXPECT_STRNE(piece, "");
        text += piece;
    }
    return text;
}

TEST(EmbeddedTexts, haveTheirNumbersOfPieces)
{
    EXPECT_EQ(std::size(BREL_XSD), 65U);
    EXPECT_EQ(std::size(BREL_SERVICE_COMMON_XSD), 23U);
    EXPECT_EQ(std::size(BREL_XSLT_TO_QOS), 9U);
}

TEST(EmbeddedTexts, areTheFilesInPieces)
{
    const std::string schemas = ZUV_SCHEMAS "/";
    const std::string definitions = schemas + "definitions/";
    const struct {
        std::span<const char *const> pieces;
        std::string file;
    } texts[] = {
        {BREL_XSD, schemas + "zuv_brel_service.xsd"},
        {BREL_SERVICE_COMMON_XSD, definitions + "zuv_service_common_definitions.xsd"},
        {ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD,
         definitions + "zuv_dds_qos_profiles_definitions.xsd"},
        {ZUV_DDS_PROFILES_DEFINITIONS_XSD, definitions + "zuv_dds_profiles_definitions.xsd"},
        {ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD, definitions + "zuv_dds_topic_types_definitions.xsd"},
        {ZUV_DIST_LOGGER_DEFINITIONS_XSD, definitions + "zuv_dist_logger_definitions.xsd"},
        {BREL_XSLT_TO_QOS, ZUV_STYLESHEET},
    };
    for (const auto &[pieces, file] : texts) {
        const std::string content = contentOf(file);
        EXPECT_FALSE(content.empty()) << file;
        EXPECT_TRUE(joined(pieces) == content) << file;
    }
}

using EmbeddedSchemas = XmlTest;

// What a schema includes alone: it may be used without those above it.
TEST_F(EmbeddedSchemas, ofTheMiddlewareStandAlone)
{
    const struct {
        std::span<const char *const> pieces;
        const char *type;
    } schemas[] = {
        {ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD, "dataWriterQos"},
        {ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD, "moduleType"},
        {ZUV_DIST_LOGGER_DEFINITIONS_XSD, "distributedLogger"},
    };
    for (const auto &[pieces, type] : schemas) {
        const Validator validator(
            ZUVXMLUTILSValidator_new(pieces.data(), static_cast<int>(pieces.size())));
        ASSERT_NE(validator, nullptr) << type;
        const ZUVXMLUTILSProperty root = {"root", type};
        const ZUVXMLUTILSPropertyList roots = {&root, 1};
        EXPECT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &roots), 1);
    }
    EXPECT_TRUE(log.isEmpty());
}

} // namespace
} // namespace zuv_test
