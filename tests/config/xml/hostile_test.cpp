// Documents and snippets from strangers: refused at once by a parser that validates, with one chain of reports, with
// memory as it was, and with nothing opened.
#include <algorithm>
#include <functional>

#include "ConfigTest.h"
#include "support/CpuTime.h"
#include "support/Opened.h"
#include "support/PeakCheck.h"
#include "support/Repeated.h"

namespace zuv_test
{
namespace
{

using Lines = std::vector<std::string>;

// Which step refuses it: reading, or replacing the variables of what was read.
enum Step { kRead, kReplace };

struct Hostile {
    const char *name;
    std::function<std::string()> make;
    const char *where; // behind "!accept text, "
    Step step = kRead;
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

std::string attributes(std::size_t size)
{
    std::string text;
    for (int index = 0; text.size() < size; ++index) {
        text += " a" + std::to_string(index) + "=''";
    }
    return text;
}

std::string variable(const std::string &value)
{
    return "<configuration_variables><value><element><name>ZUV_N</name><value>" + value +
           "</value></element></value></configuration_variables>";
}

const Hostile kHostile[] = {
    {"entities",
     [] { return "<!DOCTYPE d [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><dds>&x;</dds>"; },
     "line 1: a DOCTYPE is not allowed"},
    {"manyLaughs",
     [] {
         return "<?xml version='1.0'?>\n<!DOCTYPE d [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;'>"
                "<!ENTITY c '&b;&b;&b;'>]>\n<dds>&c;</dds>";
     },
     "line 2: a DOCTYPE is not allowed"},
    {"externalSubset", [] { return "<!DOCTYPE d SYSTEM 'http://127.0.0.1/d.dtd'><dds/>"; },
     "line 1: a DOCTYPE is not allowed"},
    {"include",
     [] {
         return "<dds xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='/etc/passwd'/>"
                "</dds>";
     },
     "line 1: element <include>: XInclude is not allowed"},
    {"schemaLocation",
     [] {
         return "<dds xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
                "x:schemaLocation='urn:x http://127.0.0.1/x.xsd'/>";
     },
     "line 1: element <dds>: the attribute schemaLocation is not allowed"},
    {"nesting", [] { return "<dds>" + repeated("<brel_service name='x'>", 100000); },
     "line 1: element <brel_service>: elements are nested more than 100 deep"},
    {"text", [] { return "<dds>" + std::string(kTenMegabytes, 'x') + "</dds>"; },
     "line 1: element <dds>: a text, comment or tag is longer than 1048576 bytes"},
    {"attribute",
     [] { return "<dds><brel_service name='" + std::string(kTenMegabytes, 'x') + "'/></dds>"; },
     "line 1: element <brel_service>: a text, comment or tag is longer than 1048576 bytes"},
    {"attributes", [] { return "<dds" + attributes(kTenMegabytes) + "/>"; },
     "line 1: element <dds>: a text, comment or tag is longer than 1048576 bytes"},
    {"attributesOfOne", [] { return "<dds" + attributes(1000000) + "/>"; },
     "line 1: element <dds>: the element has more than 64 attributes"},
    {"utf16", [] { return std::string("\xff\xfe<\0d\0", 6); },
     "line 1: the document is not encoded in UTF-8"},
    {"otherEncoding", [] { return "<?xml version='1.0' encoding='UTF-16'?><dds/>"; },
     "line 1: the document declares another encoding than UTF-8"},
    {"brokenUtf8", [] { return "<dds>\xc3\x28</dds>"; },
     "line 1: element <dds>: Input is not proper UTF-8, indicate encoding ! Bytes: 0xC3 0x28 0x3C "
     "0x2F"},
    {"name", [] { return "<dds><brel_service name='" + std::string(300, 'n') + "'/></dds>"; },
     "line 1: element <brel_service>: a name or tag has more than 255 characters"},
    {"tag", [] { return "<dds><" + std::string(300, 't') + "/></dds>"; },
     "line 1: element <tttttttttttttttttttttttttttttttttttttttttttttttttttttttttttttttt>: a name "
     "or tag has more than 255 characters"},
    {"address", [] { return "<dds zuv_xml_object_update='0x41414141'/>"; },
     "line 1: element <dds>: the attribute 'zuv_xml_object_update' is not allowed"},
    {"nameOfVariables",
     [] {
         return "<dds>" + variable(std::string(200, 'n')) +
                "<brel_service name='$(ZUV_N)$(ZUV_N)'/></dds>";
     },
     "line 1: element <brel_service>: with its variables replaced the element's name has more "
     "than 255 characters",
     kReplace},
    {"circle", [] { return chainOfVariables(60); },
     "line 1: element <value>: variable 'ZUV_1' leads back to itself", kReplace},
    {"chain", [] { return chainOfVariables(8000); },
     "line 1: element <value>: variables lead to each other more than 64 deep", kReplace},
    {"growthOfAll",
     [] {
         return "<dds>" + variable(std::string(1000000, 'g')) + "<plugin_library name='L'>" +
                repeated("<adapter_plugin><dll>$(ZUV_N)</dll></adapter_plugin>", 100) +
                "</plugin_library></dds>";
     },
     "line 1: element <dll>: the values of all variables come to more than 33554432 bytes",
     kReplace},
    {"growthOfWork",
     [] {
         return "<dds>" + variable(repeated("$(ZUV_E)", 9000)) + "<brel_service name='S'>" +
                repeated("<annotation>$(ZUV_N)</annotation>", 10000) + "</brel_service></dds>";
     },
     "line 1: element <annotation>: the values of all variables come to more than 33554432 bytes",
     kReplace},
    {"growth",
     [] {
         return "<dds>" + variable(std::string(10000, 'g')) +
                "<brel_service name='S'><annotation><documentation>" + repeated("$(ZUV_N)", 1000) +
                "</documentation></annotation></brel_service></dds>";
     },
     "line 1: element <documentation>: with its variables replaced a text is longer than 1048576 "
     "bytes",
     kReplace},
};

std::string tagIn(const std::string &where)
{
    const std::size_t begin = where.find('<');
    return where.substr(begin, where.find('>') + 1 - begin);
}

// The lines from the cause up to the step that refuses a document of that source, without those of the load itself.
Lines causeOf(const Hostile &hostile, const std::string &source)
{
    Lines lines = {"!accept " + source + ", " + hostile.where};
    if (hostile.step == kReplace) {
        const std::string place = "!parse line 1: element " + tagIn(hostile.where);
        lines.insert(lines.end(), {place, place, "!parser extensions", "!process DOM"});
    }
    return lines;
}

// What a refusal may take: of a document that is not read a copy, of one that is its tree, and what its variables come
// to, but not what it would like to become.
template <typename Body>
void expectCheap(const std::string &text, Step step, Body &&body)
{
    const std::size_t limit = step == kRead ? 2 * text.size() : 20 * text.size() + 36 * 1024 * 1024;
    const HeapCheck heap;
    const PeakCheck peak;
    const double start = cpuMilliseconds();
    body();
    EXPECT_LT(cpuMilliseconds() - start, 100 * kSlowness);
    EXPECT_LT(peak.bytes(), static_cast<std::int64_t>(limit + 2 * 1024 * 1024));
    EXPECT_EQ(heap.liveBlocks(), 1) << "besides the check's own";
}

class XmlHostile : public ConfigTest
{
protected:
    void makeService()
    {
        makeParser(checked);
        ASSERT_EQ(load(parser, "<dds><brel_service name='S'><domain_route name='dr'/>"
                               "</brel_service></dds>"),
                  1);
        ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    }

    int loadFile(const std::string &path)
    {
        return BRELCfgFileParser_loadUrlGroup(parser.get(), path.c_str());
    }
    ZUVXMLUTILSObject *update(const char *target, const std::string &text)
    {
        return BRELCfgFileParser_parseUpdate(parser.get(), at(parser, target), text.c_str());
    }
    ZUVXMLUTILSObject *add(const char *parent, const std::string &text)
    {
        return BRELCfgFileParser_loadEntity(parser.get(), at(parser, parent), text.c_str());
    }

    // A load that fails keeps what it has defined, and that of a file what it has merged.
    void forget()
    {
        BRELXmlVariableExpansor_forget(&parser->_variableExpansor);
        if (parser->_xmlRoot != nullptr) {
            BRELCfgFileParser_deleteEntity(parser.get(), parser->_xmlRoot);
        }
    }
};

class XmlHostileDocument : public XmlHostile, public testing::WithParamInterface<Hostile>
{
};

INSTANTIATE_TEST_SUITE_P(Each, XmlHostileDocument, testing::ValuesIn(kHostile),
                         [](const auto &one) { return one.param.name; });

TEST_P(XmlHostileDocument, isRefusedAsString)
{
    const std::string text = GetParam().make();
    Lines expected = causeOf(GetParam(), "text");
    if (GetParam().step == kRead) {
        expected.push_back("!parse XML string");
    }
    makeParser(checked);
    expectCheap(text, GetParam().step, [&] {
        EXPECT_EQ(load(parser, text), 0);
        EXPECT_EQ(parser->_xmlRoot, nullptr);
        forget();
    });
    EXPECT_EQ(log.texts(), expected);
}

TEST_P(XmlHostileDocument, isRefusedAsFile)
{
    const std::string text = GetParam().make();
    const Folder folder;
    const std::string path = folder.write("a.xml", text);
    Lines expected = causeOf(GetParam(), path);
    if (GetParam().step == kRead) {
        expected.insert(expected.end(), {"!load file '" + path + "'", "!parse URL group"});
    }
    makeParser(checked);
    expectCheap(text, GetParam().step, [&] {
        EXPECT_EQ(loadFile(path), 0);
        EXPECT_EQ(parser->_xmlRoot != nullptr, GetParam().step == kReplace);
        forget();
    });
    EXPECT_EQ(log.texts(), expected);
}

TEST_P(XmlHostileDocument, isRefusedAsUpdateAndAsEntity)
{
    const std::string text = GetParam().make();
    makeService();
    const std::string before = saved(parser);
    Lines ofUpdate = {"!find element '::S::dr'"};
    Lines ofEntity = {"!parse line 1: unexpected element <dds>"};
    if (GetParam().step == kRead) {
        ofUpdate = causeOf(GetParam(), "text");
        ofUpdate.push_back("!parse XML snippet string");
        ofEntity = ofUpdate;
    }
    expectCheap(text, GetParam().step, [&] { EXPECT_EQ(update("S::dr", text), nullptr); });
    EXPECT_EQ(log.texts(), ofUpdate);
    log.clear();
    expectCheap(text, GetParam().step, [&] { EXPECT_EQ(add("S", text), nullptr); });
    EXPECT_EQ(log.texts(), ofEntity);
    EXPECT_EQ(saved(parser), before);
}

TEST_F(XmlHostile, aFileWithANulIsRefused)
{
    const Folder folder;
    const std::string text("<dds>\n\0</dds>", 13);
    const std::string path = folder.write("a.xml", text);
    makeParser(checked);
    expectCheap(text, kRead, [&] { EXPECT_EQ(loadFile(path), 0); });
    EXPECT_EQ(log.texts(),
              (Lines{"!accept " + path + ", line 2: the document holds a NUL character",
                     "!load file '" + path + "'", "!parse URL group"}));
}

// Snippets define no variables, but those of the process may be a stranger's as well.
TEST_F(XmlHostile, snippetsWhoseVariablesHaveNoEndAreRefused)
{
    const std::string update1 =
        "<brel_service><administration><save_path>$(ZUV_A)</save_path></administration>"
        "</brel_service>";
    const std::string entity = "<domain_route name='$(ZUV_A)'/>";
    struct Case {
        std::string value;
        std::string ofText;
        std::string ofName;
    };
    const Case cases[] = {
        {"x$(ZUV_B)", "variable 'ZUV_A' leads back to itself",
         "variable 'ZUV_A' leads back to itself"},
        {repeated("$(ZUV_C)", 10000), "more than 10000 variables are to be replaced",
         "more than 10000 variables are to be replaced"},
        {std::string(1024 * 1024 + 1, 'v'),
         "with its variables replaced a text is longer than 1048576 bytes",
         "with its variables replaced a text is longer than 1048576 bytes"},
    };
    makeService();
    const std::string before = saved(parser);
    // What is looked up for the first time is remembered.
    BRELCfgFileParser_deleteEntity(parser.get(), add("S", "<domain_route name='x'/>"));
    BRELCfgFileParser_deleteEntity(parser.get(), update("S", "<brel_service/>"));
    setenv("ZUV_B", "$(ZUV_A)", 1);
    setenv("ZUV_C", "c", 1);
    for (const auto &[value, ofText, ofName] : cases) {
        setenv("ZUV_A", value.c_str(), 1);
        log.clear();
        expectCheap(value, kReplace, [&] { EXPECT_EQ(update("S", update1), nullptr); });
        EXPECT_EQ(log.texts(),
                  (Lines{"!accept text, line 1: element <save_path>: " + ofText,
                         "!parse line 1: element <save_path>", "!parse line 1: element <save_path>",
                         "!initialize extensions"}));
        log.clear();
        expectCheap(value, kReplace, [&] { EXPECT_EQ(add("S", entity), nullptr); });
        EXPECT_EQ(log.texts(), (Lines{"!accept text, line 1: element <domain_route>: " + ofName,
                                      "!parse line 1: element <domain_route>",
                                      "!parse line 1: element <domain_route>",
                                      "!initialize initialize extensions"}));
        EXPECT_EQ(saved(parser), before);
    }
    for (const char *const name : {"ZUV_A", "ZUV_B", "ZUV_C"}) {
        unsetenv(name);
    }
}

TEST_F(XmlHostile, opensNothingButTheFileThatIsAskedFor)
{
    const Folder folder;
    // What is taken opens nothing either.
    Lines texts = {"<dds xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
                   "x:noNamespaceSchemaLocation='http://127.0.0.1/a.xsd'><brel_service name='S'>"
                   "<administration/><domain_route name='dr'/></brel_service></dds>"};
    for (const Hostile &hostile : kHostile) {
        texts.push_back(hostile.make());
    }
    Lines files;
    for (const std::string &text : texts) {
        files.push_back(folder.write(std::to_string(files.size()), text));
    }
    makeService();
    const Opened byTexts = whatIsOpenedBy([&] {
        for (const std::string &text : texts) {
            load(parser, text);
            update("S::dr", text);
            add("S", text);
        }
    });
    const Opened byFiles = whatIsOpenedBy([&] {
        for (const std::string &file : files) {
            forget();
            loadFile(file);
            BRELCfgFileParser_loadService(parser.get(), "S");
        }
    });
    if (!byTexts.isWatchable || !byFiles.isWatchable) {
        GTEST_SKIP() << "the kernel does not let a process be watched";
    }
    EXPECT_TRUE(byTexts.isComplete);
    EXPECT_TRUE(byFiles.isComplete);
    EXPECT_EQ(byTexts.paths, Lines());
    // Asked whether it is there, and read.
    Lines paths = byFiles.paths;
    paths.erase(std::unique(paths.begin(), paths.end()), paths.end());
    EXPECT_EQ(paths, files);
}

} // namespace
} // namespace zuv_test
