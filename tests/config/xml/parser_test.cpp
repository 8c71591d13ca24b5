// The life of a parser: its steps, each failing in turn; its extensions, its lock, and what it knows about tags.
#include <array>

#include "ConfigTest.h"

namespace zuv_test
{
namespace
{

using XmlParser = ConfigTest;
using Lines = std::vector<std::string>;

void *newNothing(BRELCfgFileParser *, ZUVXMLUTILSObject *)
{
    return nullptr;
}
void deleteNothing(void *) {}

TEST_F(XmlParser, withoutSourcesThereIsNoConfiguration)
{
    makeParser(checked);
    EXPECT_EQ(parser->_xmlRoot, nullptr);
    EXPECT_EQ(parser->saveMode, BREL_XML_SUPPORT_ALL_SERVICE_EXCEPT_DEFAULT_SAVE_MODE);
    EXPECT_EQ(parser->property, &checked);
    EXPECT_STREQ(parser->executablePath, ".");
    EXPECT_NE(BRELCfgFileParser_getDefaultValidator(parser.get()), nullptr);
    EXPECT_EQ(BRELCfgFileParser_getFirstPluginLibrary(parser.get(), "plugin_library"), nullptr);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!no configurations found"}}));
}

// The step that fails, and the lines from the cause up to the whole.
struct Step {
    const char *faultPoint;
    std::uint32_t pass;
    Lines lines;
};

TEST_F(XmlParser, eachStepOfItsStartReportsItsFailure)
{
    const Step steps[] = {
        {"ddsxml",
         1,
         {"!create parser of profiles: out of memory", "!create DDS_XMLParser",
          "!initialize BRELCfgFileParser object"}},
        {"semaphore.new", 1, {"!create XML DOM Mutex", "!initialize BRELCfgFileParser object"}},
        {"ddsxml.distributed_logger",
         1,
         {"!allocate object of 32 bytes: out of memory",
          "!create XML class extension <distributed_logger>",
          "!initialize BRELCfgFileParser object"}},
        {"ddsxml",
         2,
         {"!register XML extension class: out of memory", "!register XML extension class",
          "!initialize BRELCfgFileParser object"}},
        {"xmlutils.validator",
         1,
         {"!accept schema, line 0: out of memory", "!create xsd ZUVXMLUTILSValidator",
          "!initialize XML support infrastructure", "!initialize BRELCfgFileParser object"}},
        {"xmlutils.validation_roots",
         1,
         {"!accept schema, line 0: out of memory", "!add validation roots",
          "!initialize XML support infrastructure", "!initialize BRELCfgFileParser object"}},
        {"xmlutils.parse",
         2,
         {"!accept stylesheet, line 0: out of memory",
          "!create to QosLibrary ZUVXMLUTILSTransfomer", "!initialize XML support infrastructure",
          "!initialize BRELCfgFileParser object"}},
        {"ddsxml",
         3,
         {"!parse profiles: out of memory", "!load builtin Qos Profiles",
          "!initialize BRELCfgFileParser object"}},
    };
    for (const Step &step : steps) {
        log.clear();
        ZUVOsapiFault_arm(step.faultPoint, step.pass, 0);
        EXPECT_EQ(BRELCfgFileParser_new(&checked), nullptr) << step.faultPoint;
        ZUVOsapiFault_disarm();
        EXPECT_EQ(log.texts(), step.lines);
    }
}

TEST_F(XmlParser, anExpansorThatCannotBeMadeIsReported)
{
    // Passes through the heap: those before make the extensions.
    bool isMet = false;
    for (std::uint32_t pass = 40; pass < 100 && !isMet; ++pass) {
        log.clear();
        BRELCfgFileParser self;
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, pass, 0);
        ASSERT_EQ(BRELCfgFileParser_initialize(&self, &checked, 3, "."), 0);
        ZUVOsapiFault_disarm();
        const Lines lines = log.texts();
        isMet = lines.size() == 2 && lines[1] == "!initialize variable expansor visitor";
        if (isMet) {
            EXPECT_EQ(log.lines()[0].message, &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d);
        }
    }
    EXPECT_TRUE(isMet);
}

TEST_F(XmlParser, builtInProfilesThatCannotBeLoadedLeaveTheRestStanding)
{
    BRELCfgFileParser self;
    ZUVOsapiFault_arm("ddsxml", 3, 0);
    EXPECT_EQ(BRELCfgFileParser_initialize(&self, &checked, 3, "."), 0);
    ZUVOsapiFault_disarm();
    EXPECT_NE(self._xmlDdsParser, nullptr);
    BRELCfgFileParser_finalize(&self);
    BRELCfgFileParser_finalize(&self);
}

TEST_F(XmlParser, aSchemaThatCannotBeRegisteredIsNamed)
{
    struct Schema {
        std::string file;
        std::string reported;
    };
    const std::string profiles = "definitions/zuv_dds_profiles_definitions.xsd";
    const Schema schemas[] = {
        {"definitions/zuv_dds_topic_types_definitions.xsd",
         "definitions/zuv_dds_topic_types_definitions.xsd"},
        {"definitions/zuv_dds_qos_profiles_definitions.xsd", profiles}, // the next one's name
        {profiles, profiles},
        {"definitions/zuv_dist_logger_definitions.xsd",
         "definitions/zuv_dist_logger_definitions.xsd"},
        {"definitions/zuv_service_common_definitions.xsd",
         "definitions/zuv_service_common_definitions.xsd"},
    };
    for (std::uint32_t index = 0; index < std::size(schemas); ++index) {
        log.clear();
        ZUVOsapiFault_arm("xmlutils.resource", index + 1, 0);
        EXPECT_EQ(BRELCfgFileParser_initializeGlobals(), 0);
        ZUVOsapiFault_disarm();
        EXPECT_EQ(log.lines().back().message, &ZUVXMLUTILS_LOG_REGISTER_DEFINITION_FAILURE_s);
        EXPECT_EQ(log.texts(), (Lines{"!register text '" + schemas[index].file + "': out of memory",
                                      "!register schema file '" + schemas[index].reported + "'"}));
        BRELCfgFileParser_finalizeGlobals();
        ASSERT_EQ(BRELCfgFileParser_initializeGlobals(), 1);
    }
}

TEST(XmlParserGlobals, thatCannotStartAreReported)
{
    const LogMasks masks(kFailures);
    const LogCapture log;
    ZUVOsapiFault_arm("xmlutils.initialize", 1, 0);
    EXPECT_EQ(BRELCfgFileParser_initializeGlobals(), 0);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_INIT_FAILURE_s, "!initialize XML libraries"},
                               {&ZUV_LOG_INIT_FAILURE_s, "!initialize ZUVXMLUTILSGlobals"}}));
}

TEST_F(XmlParser, twentyTwoTagsHaveRecords)
{
    const std::vector<std::string> tags = {"adapter_library",
                                           "transformation_library",
                                           "plugin_library",
                                           "adapter_plugin",
                                           "java_adapter_plugin",
                                           "transformation_plugin",
                                           "processor_plugin",
                                           "brel_service",
                                           "domain_route",
                                           "connection",
                                           "participant",
                                           "session",
                                           "route",
                                           "topic_route",
                                           "auto_route",
                                           "auto_topic_route",
                                           "input",
                                           "dds_input",
                                           "output",
                                           "dds_output",
                                           "transformation",
                                           "processor"};
    makeParser(checked);
    std::vector<std::string> registered;
    for (const MAVOInlineListNode *node = MAVOInlineList_getFirst(&parser->_registeredExtensions);
         node != nullptr; node = MAVOInlineListNode_getNext(node)) {
        const auto *const extension = reinterpret_cast<const BRELXmlObjectExtension *>(node);
        EXPECT_EQ(BRELCfgFileParser_lookUpExtension(parser.get(), extension->tagName), extension);
        EXPECT_EQ(extension->setUpObject == nullptr, registered.size() < 7);
        registered.push_back(extension->tagName);
    }
    EXPECT_EQ(registered, tags);
    EXPECT_EQ(BRELCfgFileParser_lookUpExtension(parser.get(), "Session"), nullptr);
    EXPECT_EQ(BRELCfgFileParser_lookUpExtension(parser.get(), ""), nullptr);
}

TEST_F(XmlParser, aTagHasOneExtension)
{
    makeParser(checked);
    EXPECT_EQ(BRELCfgFileParser_registerExtension(parser.get(), "session", &newNothing, nullptr,
                                                  &deleteNothing),
              0);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_ANY_ss, "an extension already exists with name=session"}}));
    EXPECT_EQ(BRELCfgFileParser_registerExtension(parser.get(), "mine", &newNothing, nullptr,
                                                  &deleteNothing),
              1);
    BRELXmlObjectExtension *const mine = BRELCfgFileParser_lookUpExtension(parser.get(), "mine");
    ASSERT_NE(mine, nullptr);
    BRELCfgFileParser_unregisterExtension(parser.get(), mine);
    EXPECT_EQ(BRELCfgFileParser_lookUpExtension(parser.get(), "mine"), nullptr);
}

TEST_F(XmlParser, anExtensionNeedsATagAndTwoOperations)
{
    makeParser(checked);
    BRELCfgFileParser *const self = parser.get();
    EXPECT_EQ(
        BRELCfgFileParser_registerExtension(self, nullptr, &newNothing, nullptr, &deleteNothing),
        0);
    EXPECT_EQ(BRELCfgFileParser_registerExtension(self, "x", nullptr, nullptr, &deleteNothing), 0);
    EXPECT_EQ(BRELCfgFileParser_registerExtension(self, "x", &newNothing, nullptr, nullptr), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: tagName == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: newObjectFcn == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: deleteObjectFcn == ((void *)0)"}}));
}

TEST_F(XmlParser, aBuiltInThatCannotBeRegisteredIsNamed)
{
    BRELCfgFileParser self;
    // Passes through the heap: the parser of profiles, the mutex, the class and its list come before.
    bool isMet = false;
    for (std::uint32_t pass = 1; pass < 20 && !isMet; ++pass) {
        log.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, pass, 0);
        const int isInitialized = BRELCfgFileParser_initialize(&self, &checked, 3, ".");
        ZUVOsapiFault_disarm();
        ASSERT_EQ(isInitialized, 0);
        BRELCfgFileParser_finalize(&self);
        const auto lines = log.lines();
        isMet = lines.size() == 3 &&
                lines[0].message == &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d &&
                lines[1].text == "!register extension with name=adapter_library" &&
                lines[2].text == "!register built-in parser extesions";
    }
    EXPECT_TRUE(isMet);
}

TEST_F(XmlParser, theLockIsSharedByItsFlag)
{
    makeParser(checked);
    int isLocked = 0;
    EXPECT_EQ(BRELCfgFileParser_unlockXmlDom(parser.get(), &isLocked), 1);
    ASSERT_EQ(BRELCfgFileParser_lockXmlDom(parser.get(), &isLocked), 1);
    EXPECT_EQ(isLocked, 1);
    EXPECT_EQ(BRELCfgFileParser_lockXmlDom(parser.get(), &isLocked), 1);
    EXPECT_EQ(BRELCfgFileParser_unlockXmlDom(parser.get(), &isLocked), 1);
    EXPECT_EQ(isLocked, 0);
    EXPECT_TRUE(log.isEmpty());
    ZUVOsapiFault_arm("semaphore.take", 1, 0);
    EXPECT_EQ(BRELCfgFileParser_lockXmlDom(parser.get(), &isLocked), 0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(isLocked, 0);
    isLocked = 1; // that nobody has taken it is what the mutex tells
    EXPECT_EQ(BRELCfgFileParser_unlockXmlDom(parser.get(), &isLocked), 0);
    EXPECT_EQ(isLocked, 1);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!take XML DOM Mutex"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!give XML DOM Mutex"}}));
}

TEST_F(XmlParser, kindsOfEntitiesByTag)
{
    struct Case {
        const char *tag;
        int kind;
    };
    const Case cases[] = {
        {"brel_service", 0}, {"domain_route", 1}, {"participant", 2},      {"connection", 2},
        {"session", 3},      {"auto_route", 4},   {"auto_topic_route", 4}, {"route", 5},
        {"topic_route", 5},  {"input", 6},        {"dds_input", 6},        {"output", 7},
        {"dds_output", 7},   {"dds", 8},          {"Session", 8},          {"", 8},
    };
    for (const auto &[tag, kind] : cases) {
        EXPECT_EQ(BRELCfgFileParser_getEntityKindFromTag(tag), kind) << tag;
    }
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(BRELCfgFileParser_getEntityKindFromTag(nullptr), ZUV_BrelServiceEntityKind_OTHER);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: tagName == ((void *)0)"}}));
}

TEST_F(XmlParser, rootsOfValidation)
{
    struct Case {
        const char *tag;
        const char *parent;
        const char *whole;
    };
    const Case cases[] = {
        {"brel_service", "dds", "brel_service"},
        {"domain_route", "brel_service", "domain_route"},
        {"participant", "domain_route", "participant"},
        {"connection", "domain_route", "connection"},
        {"session", "domain_route", "session"},
        {"auto_route", "session", "auto_route"},
        {"auto_topic_route", "session", "auto_topic_route"},
        {"route", "session", "route"},
        {"topic_route", "session", "topic_route"},
        {"input", "route", "route_input"},
        {"output", "route", "route_output"},
        {"dds_input", "route", "topic_route_input"},
        {"dds_output", "route", "topic_route_output"},
        {"input", "topic_route", "topic_route_input"},
        {"output", "topic_route", "topic_route_output"},
        {"input", "auto_route", "auto_route_input"},
        {"output", "auto_route", "auto_route_output"},
        {"dds_input", "auto_route", "auto_topic_route_input"},
        {"input", "auto_topic_route", "auto_topic_route_input"},
        {"output", "auto_topic_route", "auto_topic_route_output"},
    };
    for (const auto &[tag, parent, whole] : cases) {
        EXPECT_STREQ(BRELCfgFileParser_findValidationRootTag(tag, parent, 0), whole);
        EXPECT_EQ(BRELCfgFileParser_findValidationRootTag(tag, parent, 1),
                  std::string(whole) + "_update");
    }
    EXPECT_EQ(BRELCfgFileParser_findValidationRootTag("transformation", "input", 0), nullptr);
    EXPECT_EQ(BRELCfgFileParser_findValidationRootTag("dds", "", 0), nullptr);
}

const DDS_TypeCode *provideNothing(const char *)
{
    return nullptr;
}

TEST(XmlTypeProvider, isOneForTheProcess)
{
    EXPECT_EQ(BRELXmlSupport_getTypeProviderFnc(), nullptr);
    BRELXmlSupport_setTypeProviderFnc(&provideNothing);
    EXPECT_EQ(BRELXmlSupport_getTypeProviderFnc(), &provideNothing);
    BRELXmlSupport_setTypeProviderFnc(nullptr);
}

} // namespace
} // namespace zuv_test
