// Where documents come from: files, lists of URLs, the environment, and what a stylesheet makes of them.

#include "ConfigTest.h"

namespace zuv_test
{
namespace
{

using Lines = std::vector<std::string>;

// Runs in a folder of its own, with the variables of the middleware unset.
class XmlSources : public ConfigTest
{
protected:
    void SetUp() override
    {
        ConfigTest::SetUp();
        std::filesystem::create_directory(folder / "bin");
        former_ = std::filesystem::current_path();
        std::filesystem::current_path(folder / "bin");
        unsetenv("KOLMHOME");
        unsetenv("KOLM_QOS_PROFILES");
        every.skip_default_files = DDS_BOOLEAN_FALSE;
    }
    void TearDown() override
    {
        std::filesystem::current_path(former_);
        unsetenv("KOLMHOME");
        unsetenv("KOLM_QOS_PROFILES");
        ConfigTest::TearDown();
    }

    void write(const std::string &path, const std::string &content) const
    {
        std::filesystem::create_directories(std::filesystem::path(folder / path).parent_path());
        folder.write(path, "<dds>" + content + "</dds>");
    }
    std::vector<std::string> children() const
    {
        return parser->_xmlRoot != nullptr ? childrenOf(parser->_xmlRoot)
                                           : std::vector<std::string>{};
    }

    Folder folder;
    Property every{true};

private:
    std::filesystem::path former_;
};

const char *const kService = "<brel_service name='X'/>";

TEST_F(XmlSources, comeInTheirOrder)
{
    write("home/resource/xml/KOLM_QOS_PROFILES.xml", "<qos_library name='home'/>");
    write("list.xml", "<qos_library name='list'/>");
    write("bin/USER_QOS_PROFILES.xml", "<qos_library name='user'/>");
    write("a/b/c/exe.txt", "");
    write("xml/ZUV_BREL_SERVICE.xml", "<brel_service name='default'/>");
    write("bin/USER_BREL_SERVICE.xml", "<brel_service name='mine'/>");
    setenv("KOLMHOME", (folder / "home").c_str(), 1);
    setenv("KOLM_QOS_PROFILES", (folder / "list.xml").c_str(), 1);
    const std::string executable = folder / "a/b/c";
    parser.reset(BRELCfgFileParser_newWithParams(&every, 3, executable.c_str()));
    ASSERT_NE(parser, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(children(), (std::vector<std::string>{"home", "list", "user", "default", "mine"}));
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(ZUVXMLUTILSObject_getFilePath(at(parser, "default")),
              folder / "xml/ZUV_BREL_SERVICE.xml");

    // Other services do not read the files of this one.
    parser.reset(BRELCfgFileParser_newWithParams(&every, 2, executable.c_str()));
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(children(), (std::vector<std::string>{"home", "list", "user"}));

    parser.reset(BRELCfgFileParser_newWithParams(&checked, 3, executable.c_str()));
    EXPECT_EQ(parser->_xmlRoot, nullptr);
}

TEST_F(XmlSources, theDefaultFileHasASecondPlace)
{
    write("resource/xml/ZUV_BREL_SERVICE.xml", kService);
    const std::string executable = folder / "a/b";
    parser.reset(BRELCfgFileParser_newWithParams(&every, 3, executable.c_str()));
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(children(), std::vector<std::string>{"X"});
}

TEST_F(XmlSources, thatAreMissingAreNoted)
{
    masks.set(kWarnings);
    setenv("KOLMHOME", (folder / "home").c_str(), 1);
    const std::string executable = folder / "a/b/c/d";
    parser.reset(BRELCfgFileParser_newWithParams(&every, 3, executable.c_str()));
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(parser->_xmlRoot, nullptr);
    const ZUVLogMessage *const note = &ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s;
    EXPECT_TRUE(log.isExactly(
        {{note, "!find file '" + folder / "home/resource/xml/KOLM_QOS_PROFILES.xml" + "'"},
         {note, "!find file 'USER_QOS_PROFILES.xml'"},
         {note, "!find file '" + folder / "a/b/resource/xml/ZUV_BREL_SERVICE.xml" + "'"},
         {note, "!find file 'USER_BREL_SERVICE.xml'"}}))
        << testing::PrintToString(log.texts());
}

TEST_F(XmlSources, thatAreWrongFailTheParser)
{
    struct Case {
        const char *file;
        std::string name; // by which the file is read
        Lines lines;      // behind those of the reader
    };
    const std::string home = folder / "home/resource/xml/KOLM_QOS_PROFILES.xml";
    const std::string fallback = folder / "xml/ZUV_BREL_SERVICE.xml";
    const std::string list = folder / "list.xml";
    const char *const user = "USER_QOS_PROFILES.xml";
    const char *const mine = "USER_BREL_SERVICE.xml";
    const Case cases[] = {
        {"home/resource/xml/KOLM_QOS_PROFILES.xml",
         home,
         {"!load file '" + home + "'", "!load standard QoS files"}},
        {"list.xml",
         list,
         {"!parse URL group", "!load group url=" + list, "!load standard QoS files"}},
        {"bin/USER_QOS_PROFILES.xml",
         user,
         {"!load file 'USER_QOS_PROFILES.xml'", "!load standard QoS files"}},
        {"xml/ZUV_BREL_SERVICE.xml",
         fallback,
         {"!parse file '" + fallback + "'", "!load default config files"}},
        {"bin/USER_BREL_SERVICE.xml",
         mine,
         {"!load file 'USER_BREL_SERVICE.xml'", "!load default config files"}},
    };
    setenv("KOLMHOME", (folder / "home").c_str(), 1);
    setenv("KOLM_QOS_PROFILES", list.c_str(), 1);
    const std::string executable = folder / "a/b/c";
    write("list.xml", "");
    for (const Case &one : cases) {
        // Not well-formed, and not valid.
        const bool isList = one.name == list;
        for (const bool isRead : {false, true}) {
            write(one.file, isRead ? "\n<session/>" : "<open>");
            Lines lines =
                isRead ? Lines{"!accept " + one.name +
                                   ", line 2: element <session>: This "
                                   "element is not expected. Expected is one of ( "
                                   "configuration_variables, types, qos_library, "
                                   "transformation_library, adapter_library, plugin_library, "
                                   "brel_service, domain_library, "
                                   "domain_participant_library ).",
                               "!validate element <dds>", "!parser extensions", "!process DOM"}
                       : Lines{"!accept " + one.name +
                                   ", line 1: element <open>: Opening "
                                   "and ending tag mismatch: open line 1 and dds",
                               "!load file '" + one.name + "'"};
            lines.insert(lines.end(), one.lines.begin() + (isRead && isList), one.lines.end());
            lines.push_back("!initialize BRELCfgFileParser object");
            log.clear();
            EXPECT_EQ(BRELCfgFileParser_newWithParams(&every, 3, executable.c_str()), nullptr);
            EXPECT_EQ(log.texts(), lines);
        }
        write("list.xml", "");
        std::filesystem::remove(isList ? folder / "none" : folder / one.file);
    }
}

TEST_F(XmlSources, aPathThatCannotBeNormalizedIsOnlyReported)
{
    write("bin/USER_QOS_PROFILES.xml", "<qos_library name='user'/>");
    ZUVOsapiFault_arm("utility.normalize_path", 1, 0);
    parser.reset(BRELCfgFileParser_new(&every));
    ZUVOsapiFault_disarm();
    ASSERT_NE(parser, nullptr);
    EXPECT_EQ(log.texts(), (Lines{"!normalize path=USER_QOS_PROFILES.xml"}));
}

TEST_F(XmlSources, aHomeThatIsTooLongFailsTheParser)
{
    setenv("KOLMHOME", std::string(4090, 'x').c_str(), 1);
    EXPECT_EQ(BRELCfgFileParser_new(&every), nullptr);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!path of KOLM_QOS_PROFILES.xml (path too long?)"},
                       {&ZUV_LOG_ANY_FAILURE_s, "!load standard QoS files"},
                       {&ZUV_LOG_INIT_FAILURE_s, "!initialize BRELCfgFileParser object"}}));
}

TEST_F(XmlSources, aLaterServiceReplacesOneOfTheDefaultFiles)
{
    write("xml/ZUV_BREL_SERVICE.xml",
          "<brel_service name='A' enabled='false'/>" + std::string(kService));
    write("bin/USER_BREL_SERVICE.xml", "<brel_service name='A' enabled='true'/>");
    const std::string executable = folder / "a/b/c";
    parser.reset(BRELCfgFileParser_newWithParams(&every, 3, executable.c_str()));
    ASSERT_NE(parser, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(children(), (std::vector<std::string>{"X", "A"}));
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(at(parser, "A"), "enabled"), "true");
    // Also one that has its record already.
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "A"), nullptr);
    ASSERT_EQ(load(parser, "<dds><brel_service name='A' enabled='0'/></dds>"), 1);
    EXPECT_EQ(children(), (std::vector<std::string>{"X", "A"}));
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(at(parser, "A"), "enabled"), "0");
    EXPECT_EQ(recordAt(parser, "A"), nullptr);
    EXPECT_TRUE(log.isEmpty());
    // One that comes from elsewhere stays.
    EXPECT_EQ(load(parser, "<dds><brel_service name='A'/></dds>"), 0);
    EXPECT_EQ(log.texts()[0], "!add element: line 1 already has one with name 'A'");
}

TEST_F(XmlSources, aListOfUrlsThatIsWrongIsReported)
{
    makeParser(checked);
    EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), "none.xml"), 0);
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s, "!find file 'none.xml'"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!parse URL group"}}));
    log.clear();
    write("wrong.xml", "<session/>");
    EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), "[none.xml|../wrong.xml]"), 0);
    EXPECT_EQ(log.texts(),
              (Lines{"!accept ../wrong.xml, line 1: element <session>: This element is not "
                     "expected. Expected is one of ( configuration_variables, types, qos_library, "
                     "transformation_library, adapter_library, plugin_library, brel_service, "
                     "domain_library, domain_participant_library ).",
                     "!validate element <dds>", "!parser extensions", "!process DOM"}));
    // Other than that of a string, the document stays.
    EXPECT_EQ(children(), std::vector<std::string>{"Session1"});
    EXPECT_EQ(BRELXmlObject_getXmlSupport(parser->_xmlRoot), parser.get());
}

TEST_F(XmlSources, aUrlGroupIsNoted)
{
    makeParser(checked);
    masks.set(kWarnings);
    write("a.xml", kService);
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), "../a.xml"), 1);
    EXPECT_EQ(log.lines()[0].message, &ZUVXMLUTILS_LOG_PARSER_LOAD_URL_GROUP_s);
    EXPECT_EQ(log.texts()[0], "load URL group '../a.xml'");
}

// ---- Preprocessing ----

const char *const kSheet =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
    "<xsl:template match='/dds'><dds><brel_service name='{@x}'/></dds></xsl:template>"
    "</xsl:stylesheet>";

TEST_F(XmlSources, aStylesheetMayMakeTheDocument)
{
    folder.write("bin/pre.xsl", kSheet);
    ZUV_BrelServiceProperties_add(&checked.user_environment,
                                  "zuv.brel_service.preprocess.xslt.path", "pre.xsl");
    makeParser(checked);
    masks.set(kWarnings);
    ASSERT_EQ(load(parser, "<dds x='one'/>"), 1) << testing::PrintToString(log.texts());
    EXPECT_EQ(log.texts()[1], "applying pre-preprocessing xslt from file=pre.xsl");
    ASSERT_EQ(load(parser, "<dds x='two'/>"), 1);
    EXPECT_EQ(children(), (std::vector<std::string>{"one", "two"}));
    EXPECT_NE(BRELCfgFileParser_loadService(parser.get(), "one"), nullptr);
}

TEST_F(XmlSources, aStylesheetThatIsWrongFailsTheLoad)
{
    // Without its prefix the name says the same.
    ZUV_BrelServiceProperties_add(&checked.user_environment, "preprocess.xslt.path", "pre.xsl");
    makeParser(checked);
    EXPECT_EQ(load(parser, "<dds/>"), 0);
    EXPECT_EQ(log.texts(),
              (Lines{"!accept pre.xsl, line 0: No such file or directory", "!load file 'pre.xsl'",
                     "!load pre-processing xslt from file=pre.xsl", "!process DOM"}));
    EXPECT_EQ(parser->_xmlRoot, nullptr);
    log.clear();
    folder.write("bin/pre.xsl",
                 "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                 "<xsl:template match='/'><xsl:message terminate='yes'>no</xsl:message>"
                 "</xsl:template></xsl:stylesheet>");
    EXPECT_EQ(load(parser, "<dds/>"), 0);
    EXPECT_EQ(log.texts(),
              (Lines{"!accept text, line 0: no", "!error applying pre-processing xslt from file",
                     "!process DOM"}));
    EXPECT_EQ(parser->_xmlRoot, nullptr);
}

TEST_F(XmlSources, aStylesheetCannotBringAnAddress)
{
    folder.write("bin/pre.xsl",
                 "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                 "<xsl:template match='/dds'><dds><brel_service name='S'>"
                 "<xsl:attribute name='zuv_xml_object_update'>0x1000</xsl:attribute>"
                 "</brel_service></dds></xsl:template></xsl:stylesheet>");
    ZUV_BrelServiceProperties_add(&unchecked.user_environment, "preprocess.xslt.path", "pre.xsl");
    makeParser(unchecked);
    EXPECT_EQ(load(parser, "<dds/>"), 0);
    EXPECT_EQ(log.texts(),
              (Lines{"!parse line 1: element <brel_service>: the attribute 'zuv_xml_object_update' "
                     "is not allowed",
                     "!error applying pre-processing xslt from file", "!process DOM"}));
    EXPECT_EQ(parser->_xmlRoot, nullptr);
}

} // namespace
} // namespace zuv_test
