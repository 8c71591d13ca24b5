// From a document to records and back to a document.
#include "ConfigTest.h"

namespace zuv_test
{
namespace
{

const char *const kDocument =
    "<?xml version='1.0'?>\n"
    "<dds version='7.7.0'>\n"
    "  <brel_service name='S' enabled='true'>\n"
    "    <domain_route name='dr'>\n"
    "      <participant name='p1'><domain_id>1</domain_id></participant>\n"
    "      <session name='s'>\n"
    "        <topic_route enabled='false'>\n"
    "          <input participant='p1'><topic_name>T</topic_name></input>\n"
    "          <output participant='p1'><topic_name>U</topic_name></output>\n"
    "        </topic_route>\n"
    "      </session>\n"
    "    </domain_route>\n"
    "  </brel_service>\n"
    "</dds>\n";

TEST_F(ConfigTest, aDocumentIsLoadedAndSaved)
{
    makeParser(checked);
    ASSERT_EQ(load(parser, kDocument), 1) << testing::PrintToString(log.texts());
    EXPECT_EQ(recordAt(parser, "S"), nullptr);

    auto *const service =
        reinterpret_cast<BRELCfgFileElement *>(BRELCfgFileParser_loadService(parser.get(), "S"));
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(service, recordAt(parser, "S"));
    EXPECT_STREQ(service->fullName, "S");
    const BRELCfgFileElement *const route = recordAt(parser, "S::dr::s::TopicRoute1");
    ASSERT_NE(route, nullptr);
    EXPECT_STREQ(route->name, "TopicRoute1");
    EXPECT_STREQ(route->fullName, "dr::s::TopicRoute1");
    EXPECT_EQ(route->enabled, 0);
    EXPECT_STREQ(recordAt(parser, "S::dr::s::TopicRoute1::Input1")->fullName,
                 "dr::s::TopicRoute1::Input1");

    EXPECT_EQ(saved(parser),
              "<?xml version=\"1.0\"?>\n"
              "<dds xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" version=\"7.7.0\">\n"
              "    <brel_service name=\"S\" enabled=\"true\">\n"
              "        <domain_route name=\"dr\">\n"
              "            <participant name=\"p1\">\n"
              "                <domain_id>1</domain_id>\n"
              "            </participant>\n"
              "            <session name=\"s\">\n"
              "                <topic_route enabled=\"false\" name=\"TopicRoute1\">\n"
              "                    <input participant=\"p1\" name=\"Input1\">\n"
              "                        <topic_name>T</topic_name>\n"
              "                    </input>\n"
              "                    <output participant=\"p1\" name=\"Output1\">\n"
              "                        <topic_name>U</topic_name>\n"
              "                    </output>\n"
              "                </topic_route>\n"
              "            </session>\n"
              "        </domain_route>\n"
              "    </brel_service>\n"
              "</dds>\n");
    EXPECT_TRUE(log.isEmpty());
}

} // namespace
} // namespace zuv_test
