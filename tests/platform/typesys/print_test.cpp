#include "platform/typesys/PrintFormat.h"

#include <string>

#include <gtest/gtest.h>

#include "TestSamples.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/DynamicData.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

std::string textOf(const TestMutable &sample, DDS_PrintFormatKind kind, bool isPretty = true,
                   bool hasRoot = true, bool enumAsInt = false)
{
    DDS_PrintFormatProperty format = DDS_PRINT_FORMAT_PROPERTY_DEFAULT;
    format.kind = kind;
    format.pretty_print = isPretty;
    format.include_root_elements = hasRoot;
    format.enum_as_int = enumAsInt;
    DDS_UnsignedLong length = 0;
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, nullptr, &length, &format), DDS_RETCODE_OK);
    std::string text(length, '?');
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, text.data(), &length, &format),
              DDS_RETCODE_OK);
    EXPECT_EQ(length, text.size());
    EXPECT_EQ(text.back(), '\0');
    text.pop_back();
    return text;
}

} // namespace

TEST(DataToString, RendersTheDefaultFormat)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    fill(*sample, false);
    EXPECT_EQ(textOf(*sample, DDS_DEFAULT_PRINT_FORMAT), "id: -5\n"
                                                         "name: \"mutable\"\n"
                                                         "note: \"a note\"\n"
                                                         "weight: 2.5\n"
                                                         "point:\n"
                                                         "    x: 11\n"
                                                         "    y: -12\n"
                                                         "inner:\n"
                                                         "    a: 13\n"
                                                         "    b: 14\n"
                                                         "maybe:\n"
                                                         "    a: 15\n"
                                                         "    b: 16\n"
                                                         "octets: 1, 2, 3\n"
                                                         "longs: -1, 70000\n"
                                                         "color: BLUE\n");
}

TEST(DataToString, OmitsAbsentMembers)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    const std::string text = textOf(*sample, DDS_DEFAULT_PRINT_FORMAT, true, true, true);
    EXPECT_EQ(text.find("note"), std::string::npos);
    EXPECT_EQ(text.find("maybe"), std::string::npos);
    EXPECT_NE(text.find("octets:\n"), std::string::npos);
    EXPECT_NE(text.find("color: 2\n"), std::string::npos);
}

TEST(DataToString, RendersXml)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    fill(*sample, true);
    DDS_String_replace(&sample->name, "<&>\x01");
    const std::string members =
        "<id>-5</id><name>&lt;&amp;&gt;?</name><weight>2.5</weight><point><x>11</x><y>-12</y>"
        "</point><inner><a>13</a><b>14</b></inner><octets></octets><longs></longs>"
        "<color>BLUE</color>";
    EXPECT_EQ(textOf(*sample, DDS_XML_PRINT_FORMAT, false), "<Mutable>" + members + "</Mutable>");
    EXPECT_EQ(textOf(*sample, DDS_XML_PRINT_FORMAT, false, false), members);
    const std::string pretty = textOf(*sample, DDS_XML_PRINT_FORMAT);
    EXPECT_TRUE(pretty.starts_with("<Mutable>\n    <id>-5</id>\n    <name>&lt;&am")) << pretty;
    fill(*sample, false);
    EXPECT_NE(textOf(*sample, DDS_XML_PRINT_FORMAT, false).find("<item>2</item><item>3</item>"),
              std::string::npos);
}

TEST(DataToString, RendersJson)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    fill(*sample, false);
    DDS_String_replace(&sample->name, "\"\\\n\x01");
    const std::string members =
        "{\"id\":-5,\"name\":\"\\\"\\\\\\n\\u0001\",\"note\":\"a note\",\"weight\":2.5,"
        "\"point\":{\"x\":11,\"y\":-12},\"inner\":{\"a\":13,\"b\":14},"
        "\"maybe\":{\"a\":15,\"b\":16},\"octets\":[1,2,3],\"longs\":[-1,70000],"
        "\"color\":\"BLUE\"}";
    EXPECT_EQ(textOf(*sample, DDS_JSON_PRINT_FORMAT, false), "{\"Mutable\":" + members + "}");
    EXPECT_EQ(textOf(*sample, DDS_JSON_PRINT_FORMAT, false, false), members);
    EXPECT_NE(textOf(*sample, DDS_JSON_PRINT_FORMAT, false, false, true).find("\"color\":10"),
              std::string::npos);
    const std::string pretty = textOf(*sample, DDS_JSON_PRINT_FORMAT, true, false);
    EXPECT_EQ(pretty.substr(0, 16), "{\n    \"id\": -5,\n");
    sample->weight = -1.0 / 0.0;
    EXPECT_NE(textOf(*sample, DDS_JSON_PRINT_FORMAT, false).find("\"weight\":\"-inf\""),
              std::string::npos);
}

TEST(DataToString, RendersEveryKindOfMember)
{
    ZUV_TEST_SAMPLE(TestEverything, sample);
    fill(*sample, false);
    DDS_PrintFormatProperty format = DDS_PRINT_FORMAT_PROPERTY_DEFAULT;
    format.kind = DDS_JSON_PRINT_FORMAT;
    format.pretty_print = DDS_BOOLEAN_FALSE;
    format.include_root_elements = DDS_BOOLEAN_FALSE;
    char text[4096];
    DDS_UnsignedLong length = sizeof(text);
    ASSERT_EQ(TestEverythingPlugin_data_to_string(&sample, text, &length, &format), DDS_RETCODE_OK);
    for (const char *part :
         {"\"flag\":true", "\"octet\":254", "\"letter\":122", "\"small\":-2", "\"usmall\":65534",
          "\"unumber\":4294967293", "\"large\":-4", "\"ularge\":72623859790382856", "\"real\":1.5",
          "\"precise\":-0.25", "\"color\":\"RED\"", "\"maybe_number\":51", "\"maybe_longs\":[61]",
          "\"flags\":[true,false,true]", "\"names\":[\"one\",\"\"]",
          "\"points\":[{\"x\":71,\"y\":72},{\"x\":73,\"y\":74}]",
          "\"colors\":[\"GREEN\",\"BLUE\",\"RED\"]", "\"three\":[31,32,33]",
          "\"corners\":[{\"x\":0,\"y\":0},{\"x\":41,\"y\":42}]"}) {
        EXPECT_NE(std::string(text).find(part), std::string::npos) << part;
    }
}

TEST(DataToString, TellsBadParametersAndTooLittleRoom)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestMutable, sample);
    const DDS_PrintFormatProperty &format = DDS_PRINT_FORMAT_PROPERTY_DEFAULT;
    char text[8];
    DDS_UnsignedLong length = sizeof(text);
    EXPECT_EQ(TestMutablePlugin_data_to_string(nullptr, text, &length, &format), 3);
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, text, nullptr, &format), 3);
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, text, &length, nullptr), 3);
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, text, &length, &format),
              DDS_RETCODE_OUT_OF_RESOURCES);
    EXPECT_GT(length, sizeof(text));
    DDS_String_replace(&sample->name, nullptr);
    EXPECT_EQ(TestMutablePlugin_data_to_string(&sample, text, &length, &format), 1);
}

TEST(DataToString, FreesEverythingOnAllPaths)
{
    const LogCapture log;
    ZUV_TEST_SAMPLE(TestMutable, sample);
    fill(*sample, false);
    const HeapCheck heap;
    for (std::uint32_t count = 1;; ++count) {
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        DDS_UnsignedLong length = 0;
        const DDS_ReturnCode_t code = TestMutablePlugin_data_to_string(
            &sample, nullptr, &length, &DDS_PRINT_FORMAT_PROPERTY_DEFAULT);
        ZUVOsapiFault_disarm();
        EXPECT_TRUE(heap.isBalanced());
        if (ZUVOsapiFault_getInjectedCount() == 0) {
            EXPECT_EQ(code, DDS_RETCODE_OK);
            break;
        }
        EXPECT_EQ(code, DDS_RETCODE_ERROR);
    }
}

TEST(DynamicData, HoldsASampleOfItsType)
{
    const LogCapture log;
    DDS_DynamicData *data = DDS_DynamicData_new(&TestOlder_g_typecode);
    ASSERT_NE(data, nullptr);
    EXPECT_EQ(DDS_DynamicData_get_type(data), &TestOlder_g_typecode);
    const char payload[] = {0, 9, 0, 0, 8, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0};
    EXPECT_EQ(DDS_DynamicData_from_cdr_buffer(data, payload, sizeof(payload)), DDS_RETCODE_OK);
    char text[64];
    DDS_UnsignedLong length = sizeof(text);
    EXPECT_EQ(DDS_DynamicDataFormatter_to_string_w_format(data, text, &length,
                                                          &DDS_PRINT_FORMAT_PROPERTY_DEFAULT),
              DDS_RETCODE_OK);
    EXPECT_STREQ(text, "a: 1\nb: 2\n");
    EXPECT_EQ(DDS_DynamicData_from_cdr_buffer(data, payload, 10), DDS_RETCODE_ERROR);
    EXPECT_EQ(DDS_DynamicData_from_cdr_buffer(nullptr, payload, 10), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_DynamicData_from_cdr_buffer(data, nullptr, 10), DDS_RETCODE_BAD_PARAMETER);
    DDS_DynamicData_delete(data);
    DDS_DynamicData_delete(nullptr);
    EXPECT_EQ(DDS_DynamicData_new(&DDS_g_tc_null), nullptr);
    EXPECT_EQ(DDS_DynamicData_get_type(nullptr), nullptr);
}

TEST(PrintData, WritesToStandardOutput)
{
    const TestPoint point = {1, 2};
    const TestColor color = TestColor_RED;
    testing::internal::CaptureStdout();
    TestPointPluginSupport_print_data(&point, "corner", 1);
    TestPointPluginSupport_print_data(&point, nullptr, 0);
    TestPointPluginSupport_print_data(nullptr, "none", 0);
    TestColorPluginSupport_print_data(&color, "paint", 0);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "    corner:\n"
                                                      "        x: 1\n"
                                                      "        y: 2\n"
                                                      "x: 1\n"
                                                      "y: 2\n"
                                                      "none:\n"
                                                      "    NULL\n"
                                                      "paint:\n"
                                                      "    value: RED\n");
}
