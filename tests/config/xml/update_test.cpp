// Snippets: what they change, add and delete; and that one which is refused changes nothing.
#include "ConfigTest.h"

namespace zuv_test
{
namespace
{

const char *const kDocument =
    "<dds>\n"
    "<brel_service name='S'>\n"
    "<domain_route name='dr'>\n"
    "<participant name='p1'/>\n"
    "<session name='s'>\n"
    "<topic_route name='r1'>\n"
    "<route_types>false</route_types>\n"
    "<input name='i' participant='p1'><topic_name>T</topic_name></input>\n"
    "<output name='o' participant='p1'/>\n"
    "</topic_route>\n"
    "<topic_route name='r2' enabled='false'/>\n"
    "</session>\n"
    "</domain_route>\n"
    "</brel_service>\n"
    "</dds>\n";

class XmlUpdate : public ConfigTest
{
protected:
    void start(const Property &property)
    {
        makeParser(property);
        ASSERT_EQ(load(parser, kDocument), 1) << testing::PrintToString(log.texts());
        ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
        before = saved(parser);
    }

    ZUVXMLUTILSObject *update(const char *target, const std::string &snippet)
    {
        return BRELCfgFileParser_parseUpdate(parser.get(), at(parser, target), snippet.c_str());
    }
    ZUVXMLUTILSObject *add(const char *parent, const std::string &snippet)
    {
        return BRELCfgFileParser_loadEntity(parser.get(), at(parser, parent), snippet.c_str());
    }

    // Change the target as an engine does.
    int apply(const char *target, const std::string &snippet, int &updated)
    {
        // Beside an update that has its target's name, the name leads to the update.
        BRELCfgFileElement *const record = recordAt(parser, target);
        ZUVXMLUTILSObject *const object = update(target, snippet);
        if (object == nullptr) {
            return 0;
        }
        const int isApplied = BRELCfgFileElement_update(
            &updated, record,
            static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(object)));
        BRELCfgFileParser_deleteEntity(parser.get(), object);
        return isApplied;
    }

    std::string before;
};

TEST_F(XmlUpdate, anUpdateStandsBesideItsTargetAndStartsAsItsCopy)
{
    start(checked);
    ZUVXMLUTILSObject *const target = at(parser, "S::dr::s::r2");
    ZUVXMLUTILSObject *const object =
        update("S::dr::s::r2", "<topic_route><route_types>true</route_types></topic_route>");
    ASSERT_NE(object, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(ZUVXMLUTILSObject_getParent(object), ZUVXMLUTILSObject_getParent(target));
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(object), "topic_route");
    EXPECT_EQ(BRELXmlObject_getUpdateTarget(object), target);
    EXPECT_EQ(BRELXmlObject_getUpdateTargetExtensionObject(object),
              recordAt(parser, "S::dr::s::r2"));
    const auto *const record =
        static_cast<const BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(object));
    ASSERT_NE(record, nullptr);
    EXPECT_NE(record, recordAt(parser, "S::dr::s::r2"));
    EXPECT_EQ(record->enabled, 0);
    BRELCfgFileParser_deleteEntity(parser.get(), object);
    EXPECT_EQ(saved(parser), before);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUpdate, whatAnUpdateSaysIsInWhatIsSavedInTheOrderOfTheTags)
{
    start(checked);
    int updated = 0;
    ASSERT_EQ(apply("S::dr::s::r1",
                    "<topic_route><route_types>true</route_types>"
                    "<publish_with_original_info>true</publish_with_original_info>"
                    "<periodic_action><sec>1</sec></periodic_action></topic_route>",
                    updated),
              1)
        << testing::PrintToString(log.texts());
    EXPECT_EQ(updated, 0);
    std::string expected = before;
    const std::string former = "<route_types>false</route_types>\n";
    expected.replace(expected.find(former), former.size(),
                     "<route_types>true</route_types>\n"
                     "                    "
                     "<publish_with_original_info>true</publish_with_original_info>\n"
                     "                    <periodic_action>\n"
                     "                        <sec>1</sec>\n"
                     "                    </periodic_action>\n");
    EXPECT_EQ(saved(parser), expected);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUpdate, aWholeDocumentIsAnUpdateOfWhatItHoldsAtTheTargetsName)
{
    start(unchecked);
    int updated = 0;
    ASSERT_EQ(apply("S::dr::s::r2",
                    "<dds><brel_service name='S'><domain_route name='dr'><session name='s'>"
                    "<topic_route name='r2' enabled='true'><route_types>true</route_types>"
                    "</topic_route></session></domain_route></brel_service></dds>",
                    updated),
              1);
    EXPECT_EQ(updated, 1);
    EXPECT_EQ(recordAt(parser, "S::dr::s::r2")->enabled, 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getText(ZUVXMLUTILSObject_getFirstChildWithTag(
                     at(parser, "S::dr::s::r2"), "route_types")),
                 "true");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUpdate, withoutValidationASnippetMaySayMore)
{
    start(unchecked);
    ZUVXMLUTILSObject *const object =
        update("S::dr::s", "<session enabled='false'><topic_route name='r3'/></session>");
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(object))->enabled, 0);
    BRELCfgFileParser_deleteEntity(parser.get(), object);
    EXPECT_EQ(saved(parser), before);
}

TEST_F(XmlUpdate, anEntityIsAddedBehindItsSiblings)
{
    start(checked);
    ZUVXMLUTILSObject *const added =
        add("S::dr::s", "<topic_route><input participant='p1'/></topic_route>");
    ASSERT_NE(added, nullptr) << testing::PrintToString(log.texts());
    EXPECT_EQ(childrenOf(at(parser, "S::dr::s")),
              (std::vector<std::string>{"r1", "r2", "TopicRoute3"}));
    EXPECT_NE(recordAt(parser, "S::dr::s::TopicRoute3::Input1"), nullptr);
    EXPECT_STREQ(ZUVXMLUTILSObject_getTagName(added), "topic_route");
    BRELCfgFileParser_deleteEntity(parser.get(), added);
    EXPECT_EQ(saved(parser), before);
    EXPECT_TRUE(log.isEmpty());
}

// ---- Refusals ----

struct Refusal {
    const char *name;
    bool isValidating;
    const char *at;
    const char *snippet;
    std::vector<std::string> lines;
};

class XmlRefusal : public XmlUpdate, public testing::WithParamInterface<Refusal>
{
};

class XmlUpdateRefusal : public XmlRefusal
{
};
class XmlEntityRefusal : public XmlRefusal
{
};

TEST_P(XmlUpdateRefusal, isReportedAndChangesNothing)
{
    start(GetParam().isValidating ? checked : unchecked);
    EXPECT_EQ(update(GetParam().at, GetParam().snippet), nullptr);
    EXPECT_EQ(log.texts(), GetParam().lines);
    EXPECT_EQ(saved(parser), before);
}

TEST_P(XmlEntityRefusal, isReportedAndChangesNothing)
{
    start(GetParam().isValidating ? checked : unchecked);
    EXPECT_EQ(add(GetParam().at, GetParam().snippet), nullptr);
    EXPECT_EQ(log.texts(), GetParam().lines);
    EXPECT_EQ(saved(parser), before);
}

const std::vector<Refusal> kUpdates = {
    {"notWellFormed",
     true,
     "S::dr::s::r1",
     "<topic_route>",
     {"!accept text, line 1: element <topic_route>: Premature end of data in tag topic_route line "
      "1",
      "!parse XML snippet string"}},
    {"addressFromOutside",
     false,
     "S::dr::s::r1",
     "<topic_route zuv_xml_object_update='0x1000'/>",
     {"!accept text, line 1: element <topic_route>: the attribute 'zuv_xml_object_update' is not "
      "allowed",
      "!parse XML snippet string"}},
    {"documentWithoutTheTarget",
     true,
     "S::dr::s::r1",
     "<dds><brel_service name='S'/></dds>",
     {"!find element '::S::dr::s::r1'"}},
    {"otherTag",
     true,
     "S::dr::s::r1",
     "<route/>",
     {"!parse line 1: element <route>: target update element has different tag"}},
    {"otherTagInADocument",
     true,
     "S::dr",
     "<dds>\n<brel_service name='S'>\n<session name='dr'/></brel_service></dds>",
     {"!parse line 3: element <session>: target update element has different tag"}},
    {"attribute",
     true,
     "S::dr::s::r1",
     "<topic_route enabled='false'/>",
     {"!accept text, line 1: element <topic_route_update>: attribute 'enabled': The attribute "
      "'enabled' is not allowed.",
      "!validate element <topic_route>"}},
    {"childEntity",
     true,
     "S::dr::s",
     "<session>\n<topic_route name='r3'/></session>",
     {"!accept text, line 2: element <topic_route>: This element is not expected. Expected is one "
      "of ( entity_monitoring, thread_pool, auto_configure_publisher_qos, "
      "auto_configure_subscriber_qos, periodic_action, property, publisher_qos, subscriber_qos ).",
      "!validate element <session>"}},
    {"badRecord",
     false,
     "S::dr::s::r1",
     "<topic_route enabled='x'/>",
     {"!parse line 1: unexpected attribute value 'x'", "!parse line 1: element <topic_route>",
      "!initialize BRELCfgFileElement object", "!extension object", "!initialize extensions"}},
    {"badRecordWithin",
     false,
     "S::dr::s::r1",
     "<topic_route>\n<input name='i' enabled='x'/></topic_route>",
     {"!parse line 2: unexpected attribute value 'x'", "!parse line 2: element <input>",
      "!initialize BRELCfgFileElement object", "!extension object",
      "!initialize XML extensions for object = i", "!initialize extensions"}},
    {"twoNames",
     false,
     "S::dr::s::r1",
     "<topic_route>\n<input name='i'/><output name='i'/>"
     "</topic_route>",
     {"!add element: line 2 already has one with name 'i'", "!initialize extensions"}},
};
INSTANTIATE_TEST_SUITE_P(Each, XmlUpdateRefusal, testing::ValuesIn(kUpdates),
                         [](const auto &one) { return one.param.name; });

const std::vector<Refusal> kEntities = {
    {"notWellFormed",
     true,
     "S::dr::s",
     "topic_route",
     {"!accept text, line 1: Start tag expected, '<' not found", "!parse XML snippet string"}},
    {"addressFromOutside",
     false,
     "S::dr::s",
     "<topic_route>\n<input zuv_xml_object_update='0x1000'/></topic_route>",
     {"!accept text, line 2: element <input>: the attribute 'zuv_xml_object_update' is not "
      "allowed",
      "!parse XML snippet string"}},
    {"noEntity",
     true,
     "S::dr::s",
     "<thread_pool/>",
     {"!parse line 1: unexpected element <thread_pool>"}},
    {"notValid",
     true,
     "S::dr::s",
     "<topic_route name='r3'>\n<session/></topic_route>",
     {"!accept text, line 2: element <session>: This element is not expected. Expected is one of "
      "( entity_monitoring, route_types, publish_with_original_info, "
      "publish_with_original_timestamp, propagate_dispose, propagate_unregister, "
      "topic_query_proxy, filter_propagation, periodic_action, enable_data_on_inputs ).",
      "!validate element <topic_route>"}},
    {"nameOfASibling",
     true,
     "S::dr::s",
     "<topic_route name='r1'/>",
     {"!add element: line 6 already has one with name 'r1'", "!initialize initialize extensions"}},
    {"badRecord",
     false,
     "S::dr::s",
     "<topic_route name='r3'><input enabled='x'/></topic_route>",
     {"!parse line 1: unexpected attribute value 'x'", "!parse line 1: element <input>",
      "!initialize BRELCfgFileElement object", "!extension object",
      "!initialize XML extensions for object = Input1", "!initialize initialize extensions"}},
};
INSTANTIATE_TEST_SUITE_P(Each, XmlEntityRefusal, testing::ValuesIn(kEntities),
                         [](const auto &one) { return one.param.name; });

TEST_F(XmlUpdate, anEntityWithoutAnUpdateIsUnknown)
{
    makeParser(checked);
    ASSERT_EQ(load(parser, "<dds><plugin_library name='L'/></dds>"), 1);
    before = saved(parser);
    EXPECT_EQ(update("L", "<plugin_library/>"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss,
                                "!parse line 1: element <plugin_library>: unknown entity"}}));
    EXPECT_EQ(saved(parser), before);
}

TEST_F(XmlUpdate, stepsThatFailAreReportedAndChangeNothing)
{
    struct Step {
        const char *faultPoint;
        std::uint32_t pass;
        std::vector<std::string> lines;
    };
    const Step updates[] = {
        {"xmlutils.parse", 1, {"!accept text, line 0: out of memory", "!parse XML snippet string"}},
        {"xmlutils.copy",
         1,
         {"!accept text, line 1: element <topic_route>: out of memory", "!parsed entity"}},
        {"xmlutils.tag", 1, {"!set tag of element", "!validate element <topic_route>"}},
        {"xmlutils.tag", 2, {"!set tag of element", "!validate element <topic_route>"}},
        {"xmlutils.validate",
         1,
         {"!accept text, line 1: element <topic_route_update>: out of memory",
          "!validate element <topic_route>"}},
        {"xmlutils.attribute",
         1,
         {"!set attribute 'zuv_xml_object_update' of element <topic_route>",
          "!set update target attribute", "!set up update target"}},
        {"xmlutils.attribute",
         2,
         {"!set attribute 'name' of element <topic_route>", "!parse line 1: element <topic_route>",
          "!initialize extensions"}},
        {"xmlutils.full_name",
         1,
         {"!get fully qualified name of element", "!initialize BRELCfgFileElement object",
          "!extension object", "!initialize extensions"}},
    };
    const Step entities[] = {
        {"xmlutils.parse", 1, {"!accept text, line 0: out of memory", "!parse XML snippet string"}},
        {"xmlutils.copy",
         1,
         {"!accept text, line 1: element <topic_route>: out of memory", "!parsed entity"}},
        {"xmlutils.tag", 1, {"!set tag of element", "!validate element <topic_route>"}},
        {"xmlutils.tag", 2, {"!set tag of element", "!validate element <topic_route>"}},
        {"xmlutils.validate",
         1,
         {"!accept text, line 1: element <topic_route>: out of memory",
          "!validate element <topic_route>"}},
        {"xmlutils.attribute",
         1,
         {"!set attribute 'name' of element <topic_route>", "!parse line 1: element <topic_route>",
          "!initialize initialize extensions"}},
        {"xmlutils.full_name",
         1,
         {"!get fully qualified name of element", "!initialize BRELCfgFileElement object",
          "!extension object", "!initialize initialize extensions"}},
    };
    start(checked);
    for (const Step &step : updates) {
        log.clear();
        ZUVOsapiFault_arm(step.faultPoint, step.pass, 0);
        EXPECT_EQ(update("S::dr::s::r1", "<topic_route/>"), nullptr) << step.faultPoint;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(log.texts(), step.lines) << step.faultPoint << step.pass;
        EXPECT_EQ(saved(parser), before);
    }
    for (const Step &step : entities) {
        log.clear();
        ZUVOsapiFault_arm(step.faultPoint, step.pass, 0);
        EXPECT_EQ(add("S::dr::s", "<topic_route/>"), nullptr) << step.faultPoint;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(log.texts(), step.lines) << step.faultPoint << step.pass;
        EXPECT_EQ(saved(parser), before);
    }
    log.clear();
    ZUVOsapiFault_arm("xmlutils.full_name", 1, 0);
    EXPECT_EQ(update("S::dr::s::r1", "<dds/>"), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"!get fully qualified name of element"}));
}

TEST_F(XmlUpdate, aServiceThatIsRefusedReplacesNone)
{
    const Folder folder;
    const std::string file =
        folder.write("USER_BREL_SERVICE.xml", "<dds><brel_service name='D'/></dds>");
    start(unchecked);
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()), 1);
    before = saved(parser);
    EXPECT_EQ(add("::", "<brel_service name='D'><session enabled='x'/></brel_service>"), nullptr);
    EXPECT_EQ(saved(parser), before);
    ASSERT_NE(add("::", "<brel_service name='D' enabled='0'/>"), nullptr);
    EXPECT_EQ(childrenOf(parser->_xmlRoot), (std::vector<std::string>{"S", "D"}));
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(at(parser, "D"), "enabled"), "0");
}

TEST_F(XmlUpdate, theRootHasNoUpdate)
{
    start(checked);
    EXPECT_EQ(update("::", "<dds/>"), nullptr);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: parent == ((void *)0)"}}));
}

// ---- Saving ----

TEST_F(XmlUpdate, aSaveLeavesOutWhatItsModeSays)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds><configuration_variables/><types/><qos_library name='q'/>"
                           "<plugin_library name='L'/><brel_service name='default'/>"
                           "<brel_service name='Default'/><brel_service name='S'/></dds>"),
              1);
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    const auto namesOf = [this](BRELCfgFileParserSaveMode mode) {
        return childrenOf(parse(saved(parser, mode)).get());
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(namesOf(BREL_XML_SUPPORT_ALL_SERVICE_EXCEPT_DEFAULT_SAVE_MODE),
              (Names{"configuration_variables", "types", "q", "L", "Default", "S"}));
    EXPECT_EQ(namesOf(BREL_XML_SUPPORT_LOADED_SERVICE_ONLY_SAVE_MODE),
              (Names{"configuration_variables", "types", "q", "L", "S"}));
    EXPECT_EQ(namesOf(BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE),
              (Names{"configuration_variables", "types", "q", "L", "default", "Default", "S"}));
    EXPECT_EQ(namesOf(BREL_XML_SUPPORT_EXCLUDE_CHILDREN_RESOURCES),
              (Names{"configuration_variables", "types", "q"}));
}

TEST_F(XmlUpdate, generatedElementsAreNotSaved)
{
    start(checked);
    ASSERT_EQ(BRELXmlUtils_addSavePI(at(parser, "S::dr::s::r1"), 0), 1);
    const std::string text = saved(parser);
    EXPECT_EQ(text.find("r1"), std::string::npos);
    EXPECT_NE(text.find("r2"), std::string::npos);
    ASSERT_EQ(BRELXmlUtils_addSavePI(parser->_xmlRoot, 0), 1);
    EXPECT_EQ(saved(parser), "<?xml version=\"1.0\"?>\n");
}

// ---- Variables ----

std::string variables(const std::string &name, const std::string &value)
{
    return "<configuration_variables><value><element><name>" + name + "</name><value>" + value +
           "</value></element></value></configuration_variables>";
}
std::string libraryNamed(const std::string &name)
{
    return "<plugin_library name='" + name + "'/>";
}

TEST_F(XmlUpdate, aVariableServesWhatComesBehindIt)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds>" + libraryNamed("a$(ZUV_V)") + variables("ZUV_V", "1") +
                               libraryNamed("b$(ZUV_V)") + variables("ZUV_V", "2") +
                               libraryNamed("c$(ZUV_V)") + "</dds>"),
              1);
    EXPECT_NE(at(parser, "a$(ZUV_V)"), nullptr);
    EXPECT_NE(at(parser, "b1"), nullptr);
    EXPECT_NE(at(parser, "c2"), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlUpdate, whoStartsTheServiceKnowsBetterThanTheDocument)
{
    ZUV_BrelServiceProperties_add(&unchecked.user_environment, "ZUV_V", "user");
    makeParser(unchecked);
    setenv("ZUV_V", "process", 1);
    setenv("ZUV_W", "process", 1);
    ASSERT_EQ(load(parser, "<dds>" + variables("ZUV_V", "document") +
                               variables("ZUV_W", "document") + variables("ZUV_X", "document") +
                               libraryNamed("$(ZUV_V)-$(ZUV_W)-$(ZUV_X)") + "</dds>"),
              1);
    unsetenv("ZUV_V");
    unsetenv("ZUV_W");
    EXPECT_NE(at(parser, "user-process-document"), nullptr);
}

TEST_F(XmlUpdate, aServiceSeesTheVariablesOfLaterDocuments)
{
    makeParser(unchecked);
    ASSERT_EQ(load(parser, "<dds><brel_service name='S'><domain_route name='$(ZUV_V)'/>"
                           "</brel_service></dds>"),
              1);
    ASSERT_EQ(load(parser, "<dds>" + variables("zuv_v", "dr") + "</dds>"), 1);
    EXPECT_NE(at(parser, "S::$(ZUV_V)"), nullptr);
    ASSERT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    EXPECT_STREQ(recordAt(parser, "S::dr")->name, "dr");
    EXPECT_NE(saved(parser).find("domain_route name=\"dr\""), std::string::npos);
}

TEST_F(XmlUpdate, anExpansorReadsTheVariablesOfATree)
{
    const Tree tree = parse("<dds>" + variables("a", "1") + variables("b", "2") + "</dds>");
    BRELXmlVariableExpansor expansor;
    ASSERT_EQ(
        BRELXmlVariableExpansor_initialize(&expansor, &unchecked.user_environment, tree.get()), 1);
    EXPECT_EQ(expansor._xmlUserEnv.count, 2);
    const Tree other = parse("<x y='$(a)$(b)'/>");
    EXPECT_EQ(BRELXmlVariableExpansor_visit(&expansor, other.get()), 1);
    EXPECT_STREQ(ZUVXMLUTILSObject_getAttribute(other.get(), "y"), "12");
    BRELXmlVariableExpansor_finalize(&expansor);
}

} // namespace
} // namespace zuv_test
