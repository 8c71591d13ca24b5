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

    const void *const service = BRELCfgFileParser_loadService(parser.get(), "S");
    ASSERT_NE(service, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(service, ZUVXMLUTILSObject_getUserData(at(parser, "S")));
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

using XmlLoad = ConfigTest;

std::string service(const std::string &name, const std::string &content = "")
{
    return "<brel_service name='" + name + "'>" + content + "</brel_service>";
}
std::string document(const std::string &content)
{
    return "<dds>" + content + "</dds>";
}
std::string session(const std::string &content)
{
    return document(service("S", "<domain_route name='dr'><session name='s'>" + content +
                                     "</session></domain_route>"));
}

TEST_F(XmlLoad, documentsJoinInTheirOrder)
{
    makeParser(checked);
    ASSERT_EQ(load(parser, document(service("A"))), 1);
    ASSERT_EQ(load(parser, document("<plugin_library name='L'/>" + service("B"))), 1);
    EXPECT_EQ(childrenOf(parser->_xmlRoot), (std::vector<std::string>{"A", "L", "B"}));
    EXPECT_EQ(BRELXmlObject_getXmlSupport(at(parser, "B")), parser.get());
    const auto *const library = recordAt(parser, "L");
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(BRELCfgFileParser_getFirstPluginLibrary(parser.get(), "plugin_library"), library);
    EXPECT_EQ(BRELCfgFileParser_getNextPluginLibrary(parser.get(), library), nullptr);
    ASSERT_EQ(load(parser, document("<adapter_library name='M'/><plugin_library name='N'/>")), 1);
    EXPECT_EQ(recordAt(parser, "L"), library);
    EXPECT_EQ(BRELCfgFileParser_getNextPluginLibrary(parser.get(), library), recordAt(parser, "N"));
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlLoad, oneDocumentTellsTheVersion)
{
    masks.set(kWarnings);
    makeParser(checked);
    log.clear();
    ASSERT_EQ(load(parser, "<dds version='6.5.0'/>"), 1);
    ASSERT_EQ(load(parser, "<dds version='6.6.0'/>"), 1);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_s, "load configuration from string"},
                               {&ZUV_LOG_ANY_ss, "configuration detected as version=6.5.0.0"},
                               {&ZUV_LOG_ANY_s, "load configuration from string"}}));
}

// What is wrong with a document, and the lines from the cause to the last step.
struct Case {
    const char *name;
    bool isValidating;
    std::string document;
    std::vector<std::string> lines;
};

class XmlLoadFailure : public ConfigTest, public testing::WithParamInterface<Case>
{
};

TEST_P(XmlLoadFailure, isReportedFromTheCauseUpwards)
{
    makeParser(GetParam().isValidating ? checked : unchecked);
    EXPECT_EQ(load(parser, GetParam().document), 0);
    EXPECT_EQ(log.texts(), GetParam().lines);
    // What failed as the first document of a string leaves nothing, and the next one works.
    EXPECT_EQ(parser->_xmlRoot, nullptr);
    log.clear();
    EXPECT_EQ(load(parser, kDocument), 1);
    EXPECT_TRUE(log.isEmpty());
}

const std::vector<Case> kFailures_ = {
    {"notWellFormed",
     true,
     "<dds>\n<a></dds>",
     {"!accept text, line 2: element <a>: Opening and ending tag mismatch: a line 2 and dds",
      "!parse XML string"}},
    {"empty", true, "", {"!accept text, line 1: the document is empty", "!parse XML string"}},
    {"targetFromOutside",
     true,
     "<dds>\n<brel_service name='S' zuv_xml_object_update='0x1000'/></dds>",
     {"!accept text, line 2: element <brel_service>: the attribute 'zuv_xml_object_update' is not "
      "allowed",
      "!parse XML string"}},
    {"notValid",
     true,
     "<dds>\n<brel_service name='S'>\n<session/></brel_service></dds>",
     {"!accept text, line 3: element <session>: This element is not expected. Expected is one of "
      "( annotation, administration, monitoring, internal_clock, entity_monitoring, jvm, "
      "domain_route ).",
      "!validate element <dds>", "!parser extensions", "!process DOM"}},
    {"badVersion",
     true,
     "<dds version='10.0.0'/>",
     {"!accept text, line 1: element <dds>: attribute 'version': [facet 'pattern'] The value "
      "'10.0.0' is not accepted by the pattern '[0-9]\\.[0-9]\\.[0-9](\\.[0-9])?'.",
      "!validate element <dds>", "!parser extensions", "!process DOM"}},
    {"twoNames",
     false,
     document(service("S", "\n<domain_route name='x'/>\n<session name='x'/>")),
     {"!add element: line 2 already has one with name 'x'", "!parser extensions", "!process DOM"}},
    {"twoEmptyNames",
     false,
     document(service("S", "\n<domain_route name=''/>\n<property/>\n<session name=''/>")),
     {"!add element: line 2 already has one with name ''", "!parser extensions", "!process DOM"}},
    {"twoServices",
     true,
     document("\n" + service("S") + "\n" + service("S")),
     {"!add element: line 2 already has one with name 'S'", "!parser extensions", "!process DOM"}},
    {"circleOfVariables",
     true,
     "<dds><configuration_variables><value>"
     "<element><name>ZUV_A</name><value>$(ZUV_B)</value></element>"
     "<element><name>ZUV_B</name><value>$(ZUV_A)</value></element>"
     "</value></configuration_variables></dds>",
     {"!accept text, line 1: element <value>: variable 'ZUV_B' leads back to itself",
      "!parse line 1: element <value>", "!parse line 1: element <value>", "!parser extensions",
      "!process DOM"}},
    {"badLibrary",
     false,
     "<dds>\n<plugin_library name='L'>\n<adapter_plugin name='A' enabled='x'/></plugin_library>"
     "</dds>",
     {"!parse line 3: unexpected attribute value 'x'", "!parse line 3: element <adapter_plugin>",
      "!initialize BRELCfgFileElement object", "!extension object",
      "!initialize XML extensions for object = A", "!initialize XML extensions for object = L",
      "!parser extensions", "!process DOM"}},
};
INSTANTIATE_TEST_SUITE_P(Each, XmlLoadFailure, testing::ValuesIn(kFailures_),
                         [](const auto &one) { return one.param.name; });

TEST_F(XmlLoad, aDocumentWithAnotherRootIsNotMerged)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document(service("S"))), 1);
    const std::string before = saved(parser);
    EXPECT_EQ(load(parser, "<other/>"), 0);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss,
                                "!accept text, line 1: element <other>: the document has another "
                                "root than the one that it joins"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!merge root"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!process DOM"}}));
    EXPECT_EQ(saved(parser), before);
}

TEST_F(XmlLoad, anEntityIsNoConfigurationAndNothingElseIsAValidOne)
{
    struct Root {
        const Property *property;
        const char *tag;
    };
    const Root roots[] = {{&checked, "brel_service"}, {&checked, "other"}, {&unchecked, "session"}};
    const Folder folder;
    const std::string file = folder / "a.xml";
    for (const auto &[property, tag] : roots) {
        const std::string reason =
            ", line 2: element <" + std::string(tag) + ">: the root of a configuration is <dds>";
        const std::string text = "\n<" + std::string(tag) + " name='S'/>";
        makeParser(*property);
        log.clear();
        EXPECT_EQ(load(parser, text), 0);
        EXPECT_EQ(log.texts(), (std::vector<std::string>{"!accept text" + reason, "!process DOM"}));
        EXPECT_EQ(parser->_xmlRoot, nullptr);
        log.clear();
        folder.write("a.xml", text);
        EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()), 0);
        EXPECT_EQ(log.texts(),
                  (std::vector<std::string>{"!accept " + file + reason, "!process DOM"}));
        EXPECT_EQ(parser->_xmlRoot, nullptr);
        log.clear();
        EXPECT_EQ(load(parser, kDocument), 1);
        EXPECT_TRUE(log.isEmpty());
    }
}

TEST_F(XmlLoad, whatIsNotValidatedMayHaveAnotherRootWhichLeadsToTheParser)
{
    makeParser(unchecked);
    for (int count = 0; count < 3; ++count) {
        ASSERT_EQ(load(parser, "<other><plugin_library/></other>"), 1);
        EXPECT_EQ(BRELXmlObject_getXmlSupport(at(parser, "PluginLibrary1")), parser.get());
    }
    EXPECT_EQ(load(parser, "<other><session enabled='x'/></other>"), 0);
    EXPECT_EQ(BRELXmlObject_getXmlSupport(at(parser, "PluginLibrary1")), parser.get());
}

TEST_F(XmlLoad, aDocumentWithinADocumentDoesNoHarm)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document("<dds name='inner'>" + service("T") + "</dds>" +
                                    service("S", "<dds/>"))),
              1);
    for (int count = 0; count < 3; ++count) {
        ASSERT_EQ(load(parser, document("<dds/>")), 1);
        EXPECT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    }
    EXPECT_EQ(BRELXmlObject_getXmlSupport(at(parser, "S")), parser.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(at(parser, "inner")), parser.get());
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(at(parser, "inner::T")), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlLoad, whatIsWrongInAFileIsReportedWithTheFile)
{
    struct FileCase {
        std::string content;
        std::vector<std::string> lines;
    };
    const Folder folder;
    const std::string file = folder / "a.xml";
    const FileCase cases[] = {
        {"\n<plugin_library name='x'/>\n<adapter_library name='x'/>",
         {"!accept " + file + ", line 3: element <adapter_library>: another element has its name",
          "!add element: line 2 already has one with name 'x'", "!parser extensions",
          "!process DOM"}},
        {"<plugin_library name='L'>\n<adapter_plugin name='A' enabled='x'/></plugin_library>",
         {"!parse line 2: unexpected attribute value 'x'",
          "!parse line 2: element <adapter_plugin>", "!initialize BRELCfgFileElement object",
          "!accept " + file +
              ", line 2: element <adapter_plugin>: what it says cannot be taken over",
          "!extension object", "!initialize XML extensions for object = A",
          "!initialize XML extensions for object = L", "!parser extensions", "!process DOM"}},
    };
    for (const auto &[content, lines] : cases) {
        makeParser(unchecked);
        log.clear();
        folder.write("a.xml", document(content));
        EXPECT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()), 0);
        EXPECT_EQ(log.texts(), lines);
    }
    const auto refuse = [](BRELCfgFileParser *, void *) { return 0; };
    makeParser(unchecked);
    log.clear();
    BRELCfgFileParser_lookUpExtension(parser.get(), "session")->setUpObject = refuse;
    folder.write("a.xml", document(service("S", "\n<session/>")));
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()), 1);
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{
                  "!accept " + file +
                      ", line 2: element <session>: what it says does not fit what stands around "
                      "it",
                  "!parse line 2: element <session>: set up extension object",
                  "!initialize XML extensions for object = Session1",
                  "!initialize parser extensions, service name = S"}));
}

TEST_F(XmlLoad, whatFailsLaterStaysMergedAndTheRootKeepsItsParser)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document(service("S"))), 1);
    EXPECT_EQ(load(parser, document(service("T") + service("T"))), 0);
    EXPECT_EQ(childrenOf(parser->_xmlRoot), (std::vector<std::string>{"S", "T", "T"}));
    EXPECT_EQ(BRELXmlObject_getXmlSupport(at(parser, "S")), parser.get());
    log.clear();
    // Nothing that is loaded afterwards passes.
    EXPECT_EQ(load(parser, document(service("U"))), 0);
    EXPECT_EQ(log.texts()[0], "!add element: line 1 already has one with name 'T'");
}

TEST_F(XmlLoad, aStepThatFailsIsReported)
{
    struct Step {
        const char *faultPoint;
        std::uint32_t pass;
        std::vector<std::string> lines;
    };
    const Step steps[] = {
        {"xmlutils.parse", 1, {"!accept text, line 0: out of memory", "!parse XML string"}},
        {"xmlutils.merge",
         1,
         {"!accept text, line 1: element <dds>: out of memory", "!merge root", "!process DOM"}},
        {"xmlutils.expand",
         1,
         {"!accept text, line 1: element <configuration_variables>: out of memory",
          "!parse line 1: element <configuration_variables>",
          "!parse line 1: element <configuration_variables>", "!parser extensions",
          "!process DOM"}},
        {"xmlutils.validate",
         1,
         {"!accept text, line 1: element <dds>: out of memory", "!validate element <dds>",
          "!parser extensions", "!process DOM"}},
        {"xmlutils.transform",
         1,
         {"!accept text, line 1: element <dds>: out of memory",
          "!transform to well-formed DDS QoS document", "!generate QoS", "!parser extensions",
          "!process DOM"}},
        {"xmlutils.to_string",
         1,
         {"!write element <dds>: out of memory", "!convert QoS root to string", "!generate QoS",
          "!parser extensions", "!process DOM"}},
        {"ddsxml",
         1,
         {"!parse profiles: out of memory", "!parse QoS configuration", "!generate QoS",
          "!parser extensions", "!process DOM"}},
        {"xmlutils.full_name",
         1,
         {"!get fully qualified name of element", "!initialize BRELCfgFileElement object",
          "!extension object", "!initialize XML extensions for object = L", "!parser extensions",
          "!process DOM"}},
    };
    for (const Step &step : steps) {
        makeParser(checked);
        ASSERT_EQ(load(parser, "<dds/>"), 1);
        log.clear();
        ZUVOsapiFault_arm(step.faultPoint, step.pass, 0);
        EXPECT_EQ(load(parser, document("<configuration_variables/><qos_library name='Q$(ZUV_V)'/>"
                                        "\n<plugin_library name='L'><adapter_plugin name='A'>"
                                        "<dll/><create_function/></adapter_plugin>"
                                        "</plugin_library>")),
                  0)
            << step.faultPoint;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(log.texts(), step.lines) << step.faultPoint;
    }
}

TEST_F(XmlLoad, whatWasRefusedIsNotInTheWayOfWhatIsRight)
{
    makeParser(unchecked);
    const std::string definitions =
        "<configuration_variables><element><name>V</name><value>v</value></element>"
        "</configuration_variables><types><struct name='T'/></types>"
        "<qos_library name='Q'><qos_profile name='P'/></qos_library>";
    for (int count = 0; count < 3; ++count) {
        EXPECT_EQ(load(parser, document(definitions + "<plugin_library name='L'><adapter_plugin "
                                                      "enabled='x'/></plugin_library>")),
                  0);
        EXPECT_EQ(parser->_variableExpansor._xmlUserEnv.count, 0);
    }
    log.clear();
    EXPECT_EQ(load(parser, document(definitions + "<plugin_library name='L$(V)'/>")), 1);
    EXPECT_NE(at(parser, "Lv"), nullptr);
    EXPECT_TRUE(log.isEmpty()) << testing::PrintToString(log.texts());
}

TEST_F(XmlLoad, librariesAndTypesReachTheTreeOfProfiles)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document("<qos_library name='Q'><qos_profile name='P'/></qos_library>"
                                    "<types><struct name='T'/></types>" +
                                    service("S"))),
              1);
    ASSERT_EQ(load(parser, document("<qos_library name='Q'><qos_profile name='R'/></qos_library>")),
              1);
    const ZUVXMLObject *const root = parser->_xmlDdsQosRoot;
    EXPECT_NE(DDS_XMLObject_lookup(root, "Q::P"), nullptr);
    EXPECT_NE(DDS_XMLObject_lookup(root, "Q::R"), nullptr);
    EXPECT_NE(ZUVXMLObject_getFirstChildWithTag(root, "types"), nullptr);
    EXPECT_NE(DDS_XMLObject_lookup_child(root, "#zuv.brel_service.qos_library"), nullptr);
    EXPECT_EQ(DDS_XMLObject_lookup_child(root, "S"), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

// ---- Services ----

TEST_F(XmlLoad, aServiceIsBuiltWhenItIsAskedFor)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document(service("S", "<domain_route/>") + service("T"))), 1);
    EXPECT_EQ(recordAt(parser, "S"), nullptr);
    EXPECT_EQ(recordAt(parser, "S::DomainRoute1"), nullptr);
    BRELCfgFileService *const built = BRELCfgFileParser_loadService(parser.get(), "S");
    ASSERT_NE(built, nullptr);
    EXPECT_NE(recordAt(parser, "S::DomainRoute1"), nullptr);
    EXPECT_EQ(recordAt(parser, "T"), nullptr);
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "S"), built);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlLoad, aServiceThatIsNoneIsNotBuilt)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document("<plugin_library name='L'/>" + service("S"))), 1);
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "T"), nullptr);
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "L"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s, "!find element 'T'"},
                               {&ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss,
                                "!find element 'L' with tag <brel_service>"}}));
}

TEST_F(XmlLoad, aServiceThatCannotBeBuiltFailsEachTimeAlike)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, document(service("S", "\n<domain_route name='a'/>\n"
                                                 "<domain_route name='b' enabled='x'/>"))),
              1);
    for (int attempt = 0; attempt < 2; ++attempt) {
        log.clear();
        EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
        EXPECT_TRUE(log.isExactly(
            {{&ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds,
              "!parse line 3: unexpected attribute value 'x'"},
             {&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, "!parse line 3: element <domain_route>"},
             {&ZUV_LOG_INIT_FAILURE_s, "!initialize BRELCfgFileElement object"},
             {&ZUV_LOG_ANY_FAILURE_s, "!extension object"},
             {&ZUV_LOG_ANY_FAILURE_s, "!initialize XML extensions for object = b"},
             {&ZUV_LOG_ANY_FAILURE_s, "!initialize parser extensions, service name = S"}}));
        EXPECT_EQ(recordAt(parser, "S"), nullptr);
        EXPECT_EQ(recordAt(parser, "S::a"), nullptr);
    }
}

int refuse(BRELCfgFileParser *, void *)
{
    return 0;
}

TEST_F(XmlLoad, aRecordThatCannotBeSetUpFailsItsElement)
{
    makeParser(unchecked);
    BRELCfgFileParser_lookUpExtension(parser.get(), "session")->setUpObject = &refuse;
    ASSERT_EQ(load(parser, session("<topic_route/>")), 1);
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUVXML_LOG_PARSER_PARSE_FAILURE_dss,
          "!parse line 1: element <session>: set up extension object"},
         {&ZUV_LOG_ANY_FAILURE_s, "!initialize XML extensions for object = s"},
         {&ZUV_LOG_ANY_FAILURE_s, "!initialize XML extensions for object = dr"},
         {&ZUV_LOG_ANY_FAILURE_s, "!initialize parser extensions, service name = S"}}));
}

std::string g_order;
template <int kKind>
void *newNoted(BRELCfgFileParser *parser, ZUVXMLUTILSObject *xmlObject)
{
    g_order += std::string("+") + ZUVXMLUTILSObject_getName(xmlObject) + " ";
    return BRELCfgFileElement_new(parser, xmlObject);
}
int setUpNoted(BRELCfgFileParser *, void *object)
{
    g_order += std::string("=") + static_cast<BRELCfgFileElement *>(object)->name + " ";
    return 1;
}
void deleteNoted(void *object)
{
    g_order += std::string("-") + static_cast<BRELCfgFileElement *>(object)->name + " ";
    BRELCfgFileElement_delete(object);
}

TEST_F(XmlLoad, recordsAreMadeFromTheOutsideInAndGoFromTheInsideOut)
{
    g_order.clear();
    makeParser(unchecked);
    for (MAVOInlineListNode *node = MAVOInlineList_getFirst(&parser->_registeredExtensions);
         node != nullptr;
         node = const_cast<MAVOInlineListNode *>(MAVOInlineListNode_getNext(node))) {
        auto *const extension = reinterpret_cast<BRELXmlObjectExtension *>(node);
        extension->newObject = &newNoted<0>;
        extension->setUpObject = &setUpNoted;
        extension->deleteObject = &deleteNoted;
    }
    ASSERT_EQ(load(parser, session("<topic_route name='a'><input name='i'/></topic_route>"
                                   "<topic_route name='b'/>")),
              1);
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    EXPECT_EQ(g_order, "+S +dr +s +a +i =i =a +b =b =s =dr =S ");
    g_order.clear();
    BRELCfgFileParser_deleteEntity(parser.get(), at(parser, "S::dr::s::a"));
    EXPECT_EQ(g_order, "-i -a ");
    g_order.clear();
    parser.reset();
    EXPECT_EQ(g_order, "-b -s -dr -S ");
}

TEST_F(XmlLoad, entitiesAreFoundByName)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, session("<topic_route name='r'><input name='i'/></topic_route>"
                                   "<auto_topic_route name='ar'><input name='i'/>"
                                   "</auto_topic_route>")),
              1);
    ZUVXMLUTILSObject *const service = at(parser, "S");
    ZUV_BrelServiceEntityKind kind = ZUV_BrelServiceEntityKind_OTHER;
    EXPECT_EQ(BRELCfgFileParser_findEntity(service, &kind, ""), service);
    EXPECT_EQ(kind, ZUV_BREL_SERVICE_SERVICE_ENTITY);
    EXPECT_EQ(BRELCfgFileParser_findEntity(service, &kind, "dr::s::r"), at(parser, "S::dr::s::r"));
    EXPECT_EQ(kind, ZUV_BREL_SERVICE_TOPIC_ROUTE_ENTITY);
    EXPECT_NE(BRELCfgFileParser_findEntity(service, &kind, "dr::s::r::i"), nullptr);
    EXPECT_EQ(kind, ZUV_BREL_SERVICE_INPUT_ENTITY);
    EXPECT_NE(BRELCfgFileParser_findEntity(service, &kind, "dr::s::ar::i"), nullptr);
    EXPECT_EQ(kind, ZUV_BrelServiceEntityKind_OTHER);
    kind = ZUV_BREL_SERVICE_SESSION_ENTITY;
    EXPECT_EQ(BRELCfgFileParser_findEntity(service, &kind, "none"), nullptr);
    EXPECT_EQ(kind, ZUV_BREL_SERVICE_SESSION_ENTITY);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlLoad, servicesAreListed)
{
    makeParser(unchecked);
    testing::internal::CaptureStdout();
    BRELCfgFileParser_printAvailableConfig(parser.get());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Available configurations:\nNo configurations found\n");
    const Folder folder;
    const std::string file = folder.write(
        "a.xml", document(service(
                     "F", "<annotation><documentation>What F does</documentation></annotation>")));
    ASSERT_EQ(load(parser, document(service("S"))), 1);
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()), 1);
    testing::internal::CaptureStdout();
    BRELCfgFileParser_printAvailableConfig(parser.get());
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Available configurations:\n"
                                                      "- S (string)\n"
                                                      "- F:(" +
                                                          file + ")\n\tWhat F does\n");
}

} // namespace
} // namespace zuv_test
