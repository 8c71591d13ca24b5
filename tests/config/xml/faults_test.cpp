// Every allocation and every fault point fails once, and onward: the outcome is a success or a reported failure,
// nothing leaks, and the next operation works. A change that fails leaves what is saved as it was.
#include "ConfigTest.h"
#include "support/FaultSweep.h"

namespace zuv_test
{
namespace
{

constexpr std::uint32_t kManySteps = 20000;

const char *const kDocument =
    "<dds version='7.7.0'><configuration_variables><value><element><name>ZUV_V</name>"
    "<value>a value that is long enough</value></element></value></configuration_variables>"
    "<plugin_library name='L'/><qos_library name='Q'/><brel_service name='S'>"
    "<domain_route><participant name='p'/><session name='s'><topic_route name='r'>"
    "<input participant='p'><topic_name>$(ZUV_V)</topic_name></input></topic_route></session>"
    "</domain_route></brel_service></dds>";

// A sweep has a LogCapture of its own.
class XmlFaults : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(BRELCfgFileParser_initializeGlobals(), 1);
        property.enforce_xsd_validation = DDS_BOOLEAN_TRUE;
    }
    void TearDown() override
    {
        BRELCfgFileParser_finalizeGlobals();
        EXPECT_TRUE(heap_.isBalanced());
    }

    // Without faults, whatever is armed.
    template <typename Body>
    static auto calmly(Body &&body)
    {
        const int armed = std::exchange(ZUVOsapiFault_g_armed, 0);
        auto result = body();
        ZUVOsapiFault_g_armed = armed;
        return result;
    }

    Parser newParser() { return Parser(BRELCfgFileParser_new(&property)); }
    Parser newLoaded()
    {
        Parser parser = newParser();
        EXPECT_EQ(load(parser, kDocument), 1);
        EXPECT_NE(BRELCfgFileParser_loadService(parser.get(), "S"), nullptr);
        return parser;
    }

    // As a new one, without reading the schemas again.
    static void empty(const Parser &parser)
    {
        calmly([&] {
            BRELCfgFileParser *const self = parser.get();
            if (self->_xmlRoot != nullptr) {
                BRELCfgFileParser_deleteEntity(self, self->_xmlRoot);
            }
            DDS_XMLParser_free_dom(self->_xmlDdsParser, self->_xmlDdsQosRoot);
            ZUV_BrelServiceProperties_finalize(&self->_variableExpansor._xmlUserEnv);
            return DDS_QosProvider_load_builtin_profilesI(self->_xmlDdsParser,
                                                          &self->_xmlDdsQosRoot);
        });
    }

private:
    const LogMasks masks_{kFailures};
    const HeapCheck heap_;

protected:
    Property property{false};
};

TEST_F(XmlFaults, ofLoading)
{
    const Parser parser = newParser();
    sweepFaults<kManySteps>([&] {
        const bool isLoaded = load(parser, kDocument) != 0;
        EXPECT_EQ(isLoaded, parser->_xmlRoot != nullptr);
        const bool isBuilt =
            isLoaded && BRELCfgFileParser_loadService(parser.get(), "S") != nullptr;
        empty(parser);
        return isBuilt;
    });
}

TEST_F(XmlFaults, ofMerging)
{
    const Parser parser = newParser();
    sweepFaults<kManySteps>([&] {
        EXPECT_EQ(calmly([&] { return load(parser, kDocument); }), 1);
        const bool isLoaded = load(parser, "<dds><brel_service name='T'/></dds>") != 0;
        EXPECT_EQ(BRELXmlObject_getXmlSupport(parser->_xmlRoot), parser.get());
        empty(parser);
        return isLoaded;
    });
}

TEST_F(XmlFaults, ofUpdating)
{
    const Parser parser = newLoaded();
    const std::string before = saved(parser);
    const char *const target = "S::DomainRoute1::s::r";
    sweepFaults<kManySteps>([&] {
        ZUVXMLUTILSObject *const update = BRELCfgFileParser_parseUpdate(
            parser.get(), at(parser, target),
            "<topic_route><route_types>true</route_types></topic_route>");
        const bool isParsed = update != nullptr;
        if (isParsed) {
            BRELCfgFileParser_deleteEntity(parser.get(), update);
        }
        EXPECT_EQ(calmly([&] { return saved(parser); }), before);
        return isParsed;
    });
}

TEST_F(XmlFaults, ofApplyingAnUpdate)
{
    const Parser parser = newLoaded();
    const char *const target = "S::DomainRoute1::s::r";
    const auto parseUpdate = [&] {
        const bool isTrue = saved(parser).find("<route_types>true") != std::string::npos;
        return BRELCfgFileParser_parseUpdate(
            parser.get(), at(parser, target),
            isTrue ? "<topic_route><route_types>false</route_types></topic_route>"
                   : "<topic_route><route_types>true</route_types></topic_route>");
    };
    const auto apply = [&] {
        ZUVXMLUTILSObject *const update = calmly(parseUpdate);
        const std::string before = calmly([&] { return saved(parser); });
        int updated = 0;
        const bool isApplied =
            BRELCfgFileElement_update(
                &updated, recordAt(parser, target),
                static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(update))) != 0;
        EXPECT_EQ(calmly([&] { return saved(parser); }) == before, !isApplied);
        BRELCfgFileParser_deleteEntity(parser.get(), update);
        return isApplied;
    };
    ASSERT_TRUE(apply()); // what it adds stays
    sweepFaults<kManySteps>(apply);
}

TEST_F(XmlFaults, ofAddingAnEntity)
{
    const Parser parser = newLoaded();
    const std::string before = saved(parser);
    sweepFaults<kManySteps>([&] {
        ZUVXMLUTILSObject *const added = BRELCfgFileParser_loadEntity(
            parser.get(), at(parser, "S::DomainRoute1::s"),
            "<topic_route name='new'><input participant='p'/></topic_route>");
        const bool isAdded = added != nullptr;
        if (isAdded) {
            BRELCfgFileParser_deleteEntity(parser.get(), added);
        }
        EXPECT_EQ(calmly([&] { return saved(parser); }), before);
        return isAdded;
    });
}

TEST_F(XmlFaults, ofSaving)
{
    const Parser parser = newLoaded();
    const std::string expected = saved(parser);
    const Folder folder;
    const std::string path = folder.write("a.xml", "old");
    sweepFaults<kManySteps>([&] {
        ZUVXMLUTILSSaveContext *const context = ZUVXMLUTILSSaveContext_newForFile(path.c_str());
        bool isSaved = false;
        if (context != nullptr) {
            BRELCfgFileParser_saveDocument(parser->_xmlRoot, context,
                                           BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE);
            isSaved = ZUVXMLUTILSSaveContext_finish(context) != 0;
            ZUVXMLUTILSSaveContext_delete(context);
        }
        const std::string text = folder.read("a.xml");
        EXPECT_TRUE(text == expected || text == "old") << text;
        EXPECT_TRUE(!isSaved || text == expected);
        return isSaved;
    });
}

TEST_F(XmlFaults, ofStarting)
{
    // The heap alone has tens of thousands of steps here, nearly all of them in the libraries' reading of schemas,
    // which tests of the XML utilities go through; so the points that have names, each in turn.
    for (const char *point :
         {"ddsxml", "ddsxml.distributed_logger", "semaphore.new", "xmlutils.validator",
          "xmlutils.validation_roots", "xmlutils.parse"}) {
        for (std::uint32_t pass = 1; pass < 5; ++pass) {
            const LogCapture log;
            const HeapCheck heap;
            ZUVOsapiFault_arm(point, pass, 0);
            const bool isMade = Parser(BRELCfgFileParser_new(&property)) != nullptr;
            const bool isInjected = ZUVOsapiFault_getInjectedCount() != 0;
            ZUVOsapiFault_disarm();
            EXPECT_NE(isMade, isInjected) << point << pass;
            EXPECT_NE(isMade, !log.texts().empty());
            EXPECT_TRUE(heap.isBalanced()) << point << pass;
        }
    }
}

} // namespace
} // namespace zuv_test
