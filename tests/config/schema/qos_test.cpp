// The QoS of the schema is that of the records, policy by policy and field by field.
#include "SchemaReader.h"
#include "SchemaTest.h"
#include "platform/dds/QosTable.hpp"

namespace zuv_test
{
namespace
{

using std::string;
using zuv::dds::QosField;
using zuv::dds::QosFieldKind;

constexpr const char *kQosFile = "definitions/zuv_dds_qos_profiles_definitions.xsd";

class SchemaOfQos : public SchemaTest
{
protected:
    void SetUp() override
    {
        SchemaTest::SetUp();
        schema.emplace(kQosFile);
        entities =
            SchemaReader("definitions/zuv_dds_profiles_definitions.xsd").childrenOf("entityQos");
    }
    void TearDown() override
    {
        schema.reset();
        SchemaTest::TearDown();
    }

    std::optional<SchemaReader> schema;
    Declarations entities;
};

string schemaTypeOf(const QosField &field, const string &declared)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        return "xs:boolean";
    case QosFieldKind::kLong:
        return field.range->schemaType;
    case QosFieldKind::kEnum:
        return field.names->schemaType;
    case QosFieldKind::kDuration:
        return "duration";
    case QosFieldKind::kOctets:
        return "xs:base64Binary";
    case QosFieldKind::kTexts:
        return "stringSeq";
    case QosFieldKind::kRepresentations:
        return "dataRepresentationSeq";
    case QosFieldKind::kProperties:
        return "propertyValueSeq";
    case QosFieldKind::kText:
        return "elementName";
    case QosFieldKind::kMask:
        return declared; // its values are tried out
    }
    return "";
}

TEST_F(SchemaOfQos, hasThePoliciesOfEachEntity)
{
    for (const auto *const record : zuv::dds::kQosRecords) {
        SCOPED_TRACE(record->name);
        ASSERT_TRUE(entities.contains(record->tag));
        Declarations expected;
        for (const auto &member : record->members) {
            expected[member.policy->tag] = member.policy->schemaType;
        }
        EXPECT_EQ(schema->childrenOf(entities[record->tag]), expected);
    }
    EXPECT_EQ(entities["participant_qos"], entities["domain_participant_qos"]);
    EXPECT_EQ(entities.size(), zuv::dds::kQosRecords.size() + 1);
}

TEST_F(SchemaOfQos, hasTheFieldsOfEachPolicy)
{
    for (const auto *const record : zuv::dds::kQosRecords) {
        for (const auto &member : record->members) {
            const auto &policy = *member.policy;
            SCOPED_TRACE(policy.schemaType);
            const Declarations declared = schema->childrenOf(policy.schemaType);
            Declarations nested;
            if (policy.nestedSchemaType != nullptr) {
                nested = schema->childrenOf(policy.nestedSchemaType);
                EXPECT_FALSE(nested.empty());
            }
            Declarations expected;
            Declarations expectedNested;
            for (const auto &field : policy.fields) {
                const string tag = field.tag;
                const auto dot = tag.find('.');
                if (dot == string::npos) {
                    const auto found = declared.find(tag);
                    expected[tag] =
                        schemaTypeOf(field, found != declared.end() ? found->second : "");
                } else {
                    expected[tag.substr(0, dot)] = policy.nestedSchemaType;
                    expectedNested[tag.substr(dot + 1)] = schemaTypeOf(field, "");
                }
            }
            EXPECT_EQ(declared, expected);
            EXPECT_EQ(nested, expectedNested);
        }
    }
}

// The least and the greatest number, each name, and what is beyond them.
TEST_F(SchemaOfQos, takesTheValuesOfEachField)
{
    for (const auto *const record : zuv::dds::kQosRecords) {
        for (const auto &member : record->members) {
            for (const auto &field : member.policy->fields) {
                string open;
                string close;
                string rest = field.tag;
                for (string tag : {string(record->tag), string(member.policy->tag)}) {
                    open += "<" + tag + ">";
                    close = "</" + tag + ">" + close;
                }
                while (!rest.empty()) {
                    const string tag = rest.substr(0, rest.find('.'));
                    rest = rest.size() > tag.size() ? rest.substr(tag.size() + 1) : "";
                    open += "<" + tag + ">";
                    close = "</" + tag + ">" + close;
                }
                const auto takes = [&](const string &value) {
                    const bool result =
                        isValid("<qos_library name='l'>" + open + value + close + "</qos_library>");
                    log.clear();
                    return result;
                };
                SCOPED_TRACE(open);
                if (field.kind == QosFieldKind::kEnum) {
                    std::set<string> names;
                    for (const auto &[name, value] : field.names->enumerators) {
                        EXPECT_TRUE(takes(name)) << name;
                        names.insert(name);
                    }
                    EXPECT_EQ(schema->valuesOf(field.names->schemaType), names);
                    // White space comes with a line that was typed.
                    EXPECT_TRUE(takes(string(field.names->enumerators[0].name) + "\n"));
                    EXPECT_FALSE(takes(string("DDS_") + field.names->enumerators[0].name));
                } else if (field.kind == QosFieldKind::kMask) {
                    const string none = field.names->enumerators[0].name;
                    string all;
                    EXPECT_TRUE(takes(none));
                    for (const auto &[name, value] : field.names->enumerators.subspan(1)) {
                        EXPECT_TRUE(takes(name)) << name;
                        all += (all.empty() ? "" : "|") + string(name);
                        EXPECT_FALSE(takes(none + "|" + name)) << name;
                    }
                    EXPECT_TRUE(takes(all));
                    EXPECT_FALSE(takes("ANY"));
                } else if (field.kind == QosFieldKind::kLong) {
                    const std::int64_t least = field.range->least;
                    EXPECT_TRUE(takes(std::to_string(least)));
                    EXPECT_FALSE(takes(std::to_string(least - 1)));
                    EXPECT_TRUE(takes("2147483647"));
                    EXPECT_FALSE(takes("2147483648"));
                    EXPECT_EQ(takes("LENGTH_UNLIMITED"), field.range->mayBeUnlimited);
                } else if (field.kind == QosFieldKind::kBoolean) {
                    EXPECT_TRUE(takes("true"));
                    EXPECT_FALSE(takes("2"));
                } else if (field.kind == QosFieldKind::kDuration) {
                    EXPECT_TRUE(takes("<sec>1</sec><nanosec>5</nanosec>"));
                    EXPECT_TRUE(takes("<sec>DURATION_INFINITE_SEC\n</sec>"));
                    EXPECT_TRUE(takes("<nanosec> DURATION_INFINITE_NSEC</nanosec>"));
                    EXPECT_FALSE(takes("1"));
                } else if (field.kind == QosFieldKind::kOctets) {
                    EXPECT_TRUE(takes("AAEC/w=="));
                    EXPECT_FALSE(takes("0, 1, 2"));
                } else if (field.kind == QosFieldKind::kTexts) {
                    EXPECT_TRUE(takes("<element>a</element><element/>"));
                    EXPECT_FALSE(takes("a"));
                } else if (field.kind == QosFieldKind::kRepresentations) {
                    EXPECT_TRUE(takes("<element>XCDR2_DATA_REPRESENTATION</element>"));
                    EXPECT_FALSE(takes("<element>2</element>"));
                } else if (field.kind == QosFieldKind::kProperties) {
                    EXPECT_TRUE(takes("<element><name>n</name><value>v</value></element>"));
                    EXPECT_FALSE(takes("<property/>"));
                }
            }
        }
    }
}

#define LIBRARY(CONTENT) "<qos_library name='l'>\n" CONTENT "</qos_library>"

const Documents kLibraries[] = {
    {LIBRARY("<qos_profile name='p' base_name='m::q'><datawriter_qos "
             "topic_filter='a*,b'/><datawriter_qos/>"
             "<publisher_qos/><topic_qos topic_filter='*'/></qos_profile>"),
     LIBRARY("<qos_profile/>"),
     "line 2: element <qos_profile>: The attribute 'name' is required but missing."},
    {LIBRARY(
         "<qos_profile name='p'/><datareader_qos name='r' base_name='p'/><qos_profile name='q'/>"),
     LIBRARY("<qos_profile name='p'>\n<qos_profile name='q'/></qos_profile>"),
     "line 3: element <qos_profile>: This element is not expected."},
    {LIBRARY("<domain_participant_qos/>"), LIBRARY("<history/>"),
     "line 2: element <history>: This element is not expected."},
    {LIBRARY("<datawriter_qos><history/><durability/></datawriter_qos>"),
     LIBRARY("<datawriter_qos><history/>\n<history/></datawriter_qos>"),
     "line 3: element <history>: This element is not expected."},
    {LIBRARY("<datareader_qos><history><depth>3</depth><kind>KEEP_LAST_HISTORY_QOS</kind></history>"
             "</datareader_qos>"),
     LIBRARY(
         "<datareader_qos><history>\n<depth>3</depth><depth>4</depth></history></datareader_qos>"),
     "line 3: element <depth>: This element is not expected."},
    {LIBRARY("<datareader_qos><reliability><kind>RELIABLE_RELIABILITY_QOS</kind></reliability>"
             "</datareader_qos>"),
     LIBRARY("<datareader_qos><reliability><kind>RELIABLE</kind></reliability></datareader_qos>"),
     "line 2: element <kind>: [facet 'enumeration'] The value 'RELIABLE' is not an element of the "
     "set {'BEST_EFFORT_RELIABILITY_QOS', 'RELIABLE_RELIABILITY_QOS'}."},
    {LIBRARY(
         "<domain_participant_qos><transport_builtin><mask>UDPv4|SHMEM</mask></transport_builtin>"
         "</domain_participant_qos>"),
     LIBRARY(
         "<domain_participant_qos><transport_builtin><mask>UDPv4 SHMEM</mask></transport_builtin>"
         "</domain_participant_qos>"),
     "line 2: element <mask>: [facet 'pattern'] The value 'UDPv4 SHMEM' is not accepted by the "
     "pattern 'NONE|(UDPv4|UDPv6|SHMEM)( ?\\| ?(UDPv4|UDPv6|SHMEM))*'."},
    {LIBRARY("<domain_participant_qos><participant_name><name>n</name></participant_name>"
             "</domain_participant_qos>"),
     LIBRARY(
         "<domain_participant_qos><participant_name>n</participant_name></domain_participant_qos>"),
     "line 2: element <participant_name>: Character content other than whitespace is not allowed "
     "because the content type is 'element-only'."},
};

TEST_F(SchemaTest, knowsLibrariesOfQos)
{
    check(kLibraries);
}

} // namespace
} // namespace zuv_test
