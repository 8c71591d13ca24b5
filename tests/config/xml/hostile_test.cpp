// Documents and snippets from strangers: refused at once by a parser that validates, with memory as it was.
#include <functional>

#include "ConfigTest.h"
#include "support/CpuTime.h"
#include "support/Repeated.h"

namespace zuv_test
{
namespace
{

struct Hostile {
    const char *name;
    std::function<std::string()> make;
    const char *lastBut; // the line before those of the parser's own
};

std::string chainOfVariables(int count)
{
    std::string text = "<dds><configuration_variables><value>";
    for (int index = 0; index < count; ++index) {
        text += "<element><name>ZUV_" + std::to_string(index) + "</name><value>$(ZUV_" +
                std::to_string((index + 1) % count) + ")</value></element>";
    }
    return text + "</value></configuration_variables></dds>";
}

const std::vector<Hostile> kHostile = {
    {"entities",
     [] { return "<!DOCTYPE d [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><dds>&x;</dds>"; },
     "!accept text, line 1: a DOCTYPE is not allowed"},
    {"include",
     [] {
         return "<dds xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='/etc/passwd'/>"
                "</dds>";
     },
     "!accept text, line 1: element <include>: XInclude is not allowed"},
    {"schemaLocation",
     [] {
         return "<dds xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
                "x:schemaLocation='urn:x http://127.0.0.1/x.xsd'/>";
     },
     "!accept text, line 1: element <dds>: the attribute schemaLocation is not allowed"},
    {"nesting", [] { return "<dds>" + repeated("<brel_service name='x'>", 100000); },
     "!accept text, line 1: element <brel_service>: elements are nested more than 100 deep"},
    {"text", [] { return "<dds>" + std::string(kTenMegabytes, 'x') + "</dds>"; },
     "!accept text, line 1: element <dds>: a text, comment or tag is longer than 1048576 bytes"},
    {"utf16", [] { return std::string("\xff\xfe<\0d\0", 6); },
     "!accept text, line 1: the document is not encoded in UTF-8"},
    {"brokenUtf8", [] { return "<dds>\xc3\x28</dds>"; },
     "!accept text, line 1: element <dds>: Input is not proper UTF-8, indicate encoding ! Bytes: "
     "0xC3 0x28 0x3C 0x2F"},
    {"name", [] { return "<dds><brel_service name='" + std::string(300, 'n') + "'/></dds>"; },
     "!accept text, line 1: element <brel_service>: a name or tag has more than 255 characters"},
    {"nameOfVariables",
     [] {
         return "<dds><configuration_variables><value><element><name>ZUV_N</name><value>" +
                std::string(200, 'n') +
                "</value></element></value></configuration_variables>"
                "<brel_service name='$(ZUV_N)$(ZUV_N)'/></dds>";
     },
     "!accept text, line 1: element <brel_service>: with its variables replaced the element's name "
     "has more than 255 characters"},
    {"circle", [] { return chainOfVariables(60); },
     "!accept text, line 1: element <value>: variable 'ZUV_1' leads back to itself"},
    {"chain", [] { return chainOfVariables(2000); },
     "!accept text, line 1: element <value>: variables lead to each other more than 64 deep"},
    {"growth",
     [] {
         return "<dds><configuration_variables><value><element><name>ZUV_G</name><value>" +
                std::string(10000, 'g') +
                "</value></element></value></configuration_variables><brel_service name='S'>"
                "<annotation><documentation>" +
                repeated("$(ZUV_G)", 1000) + "</documentation></annotation></brel_service></dds>";
     },
     "!accept text, line 1: element <documentation>: with its variables replaced a text is longer "
     "than 1048576 bytes"},
    {"address", [] { return "<dds zuv_xml_object_update='0x41414141'/>"; },
     "!accept text, line 1: element <dds>: the attribute 'zuv_xml_object_update' is not allowed"},
};

class XmlHostile : public ConfigTest, public testing::WithParamInterface<Hostile>
{
};

TEST_P(XmlHostile, isRefusedAtOnceAsDocumentUpdateAndEntity)
{
    const std::string text = GetParam().make();
    makeParser(checked);
    ASSERT_EQ(load(parser, "<dds><brel_service name='S'><domain_route name='dr'/></brel_service>"
                           "</dds>"),
              1);
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    const std::string before = saved(parser);
    {
        const HeapCheck heap;
        const double start = cpuMilliseconds();
        EXPECT_EQ(BRELCfgFileParser_parseUpdate(parser.get(), at(parser, "S::dr"), text.c_str()),
                  nullptr);
        EXPECT_EQ(BRELCfgFileParser_loadEntity(parser.get(), at(parser, "S"), text.c_str()),
                  nullptr);
        EXPECT_LT(cpuMilliseconds() - start, 200 * kSlowness);
        EXPECT_TRUE(heap.isBalanced());
    }
    EXPECT_EQ(saved(parser), before);
    log.clear();
    makeParser(checked);
    const HeapCheck heap;
    const double start = cpuMilliseconds();
    EXPECT_EQ(load(parser, text), 0);
    EXPECT_LT(cpuMilliseconds() - start, 100 * kSlowness);
    EXPECT_EQ(parser->_xmlRoot, nullptr);
    ASSERT_FALSE(log.texts().empty());
    EXPECT_EQ(log.texts()[0], GetParam().lastBut);
}

INSTANTIATE_TEST_SUITE_P(Each, XmlHostile, testing::ValuesIn(kHostile),
                         [](const auto &one) { return one.param.name; });

} // namespace
} // namespace zuv_test
