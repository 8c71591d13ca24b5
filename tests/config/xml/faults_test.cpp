// Every allocation and every fault point fails once, and onward: the outcome is a success or a reported failure,
// nothing leaks, and the next operation works. A change that fails leaves what is saved as it was.
#include "ConfigTest.h"
#include "SideTree.h"
#include "config/XmlQos.h"
#include "config/XmlSupport.hpp"
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
            BRELXmlVariableExpansor_forget(&self->_variableExpansor);
            return DDS_QosProvider_load_builtin_profilesI(self->_xmlDdsParser,
                                                          &self->_xmlDdsQosRoot);
        });
    }

    // An update that is parsed, whether or not that succeeds, changes nothing.
    void sweepParsing(const char *target, const char *snippet)
    {
        const Parser parser = newLoaded();
        const std::string before = saved(parser);
        sweepFaults<kManySteps>([&] {
            ZUVXMLUTILSObject *const update =
                BRELCfgFileParser_parseUpdate(parser.get(), at(parser, target), snippet);
            const bool isParsed = update != nullptr;
            if (isParsed) {
                BRELCfgFileParser_deleteEntity(parser.get(), update);
            }
            EXPECT_EQ(calmly([&] { return saved(parser); }), before);
            return isParsed;
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

TEST_F(XmlFaults, ofLoadingAFileThroughAStylesheet)
{
    const Folder folder;
    const std::string file = folder.write("a.xml", kDocument);
    const std::string sheet = folder.write(
        "a.xsl", "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
                 "<xsl:template match='@*|node()'><xsl:copy><xsl:apply-templates "
                 "select='@*|node()'/></xsl:copy></xsl:template></xsl:stylesheet>");
    ZUV_BrelServiceProperties_add(&property.user_environment,
                                  "zuv.brel_service.preprocess.xslt.path", sheet.c_str());
    const Parser parser = newParser();
    sweepFaults<kManySteps>([&] {
        const bool isLoaded = BRELCfgFileParser_loadUrlGroup(parser.get(), file.c_str()) != 0;
        ZUVXMLUTILSTransformer_delete(std::exchange(parser->_preprocessor, nullptr));
        empty(parser);
        return isLoaded;
    });
    ZUV_BrelServiceProperties_finalize(&property.user_environment);
}

TEST_F(XmlFaults, ofUpdatingByADocument)
{
    property.enforce_xsd_validation = DDS_BOOLEAN_FALSE;
    sweepParsing("S::DomainRoute1::s",
                 "<dds><brel_service name='S'><domain_route name='DomainRoute1'><session name='s'>"
                 "<periodic_action><sec>$(ZUV_V)</sec></periodic_action></session></domain_route>"
                 "</brel_service></dds>");
}

TEST_F(XmlFaults, ofUpdating)
{
    sweepParsing("S::DomainRoute1::s::r",
                 "<topic_route><route_types>true</route_types></topic_route>");
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

// A start has tens of thousands of steps, nearly all of them in the libraries' reading of the schemas. All of the first
// are gone through, of the others one in a stride, which is another one for each `onward`, and each of those that have
// names. ZUV_EVERY_STEP in the environment asks for all of them, which takes many minutes.
class XmlFaultsOfStarting : public XmlFaults
{
protected:
    // Whether there is such a step.
    bool fail(const char *point, std::uint32_t step, int onward)
    {
        SCOPED_TRACE(testing::Message() << "step " << step << (onward ? " and onward" : ""));
        const LogCapture log;
        const HeapCheck heap;
        ZUVOsapiFault_arm(point, step, onward);
        const bool isMade = newParser() != nullptr;
        const bool isInjected = ZUVOsapiFault_getInjectedCount() != 0;
        ZUVOsapiFault_disarm();
        EXPECT_NE(isMade, isInjected);
        EXPECT_NE(isMade, !log.texts().empty());
        EXPECT_TRUE(heap.isBalanced());
        return isInjected;
    }
};

TEST_F(XmlFaultsOfStarting, leaveNothing)
{
    constexpr std::uint32_t kOwnSteps = 150;
    const bool isEvery = std::getenv("ZUV_EVERY_STEP") != nullptr;
    for (const int onward : {0, 1}) {
        const std::uint32_t stride = isEvery ? 1 : onward != 0 ? 307 : 293;
        std::uint32_t step = 1;
        while (fail(nullptr, step, onward)) {
            step += step < kOwnSteps ? 1 : stride;
        }
        EXPECT_GT(step, 10 * kOwnSteps);
        EXPECT_NE(newParser(), nullptr) << "does not recover";
    }
    for (const char *point :
         {"ddsxml", "ddsxml.distributed_logger", "semaphore.new", "xmlutils.validator",
          "xmlutils.validation_roots", "xmlutils.parse"}) {
        std::uint32_t pass = 1;
        while (fail(point, pass, 0)) {
            ++pass;
        }
        EXPECT_GT(pass, 1U) << point;
    }
}

// -- What QoS elements say: afterwards both trees are as before, whatever failed ---------------------------------

using zuv::dds::QosRecord;
using zuv::ddsxml::QosValue;

// A kind of QoS: an element of it with a text of its own, and the operation that reads it.
struct QosKind {
    const QosRecord *table;
    const char *tag;
    const char *policy;
    int (*get)(void *qos, const ZUVXMLUTILSObject *parent);
};

template <typename Qos, int (*Get)(Qos *, const ZUVXMLUTILSObject *)>
int getQos(void *qos, const ZUVXMLUTILSObject *parent)
{
    return Get(static_cast<Qos *>(qos), parent);
}
template <typename Qos, int (*Get)(Qos *, const ZUVXMLUTILSObject *, const char *)>
int getQosOfTopic(void *qos, const ZUVXMLUTILSObject *parent)
{
    return Get(static_cast<Qos *>(qos), parent, "Square");
}

constexpr const char *kUserData = "<user_data><value>AQID</value></user_data>";
constexpr const char *kGroupData = "<group_data><value>AQID</value></group_data>";

const QosKind kQosKinds[] = {
    {&zuv::dds::kDomainParticipantQosRecord, "domain_participant_qos", kUserData,
     &getQos<DDS_DomainParticipantQos, BRELCfgFileParser_getParticipantQos>},
    {&zuv::dds::kSubscriberQosRecord, "subscriber_qos", kGroupData,
     &getQos<DDS_SubscriberQos, BRELCfgFileParser_getSubscriberQos>},
    {&zuv::dds::kPublisherQosRecord, "publisher_qos", kGroupData,
     &getQos<DDS_PublisherQos, BRELCfgFileParser_getPublisherQos>},
    {&zuv::dds::kDataReaderQosRecord, "datareader_qos", kUserData,
     &getQosOfTopic<DDS_DataReaderQos, BRELCfgFileParser_getDataReaderQos>},
    {&zuv::dds::kDataWriterQosRecord, "datawriter_qos", kUserData,
     &getQosOfTopic<DDS_DataWriterQos, BRELCfgFileParser_getDataWriterQos>},
};

class QosFaults : public XmlFaults, public testing::WithParamInterface<std::tuple<QosKind, bool>>
{
protected:
    // A parser that holds `content` in a port, and a library for it.
    Parser newPort(const std::string &content)
    {
        property.enforce_xsd_validation = DDS_BOOLEAN_FALSE;
        Parser parser = newParser();
        EXPECT_EQ(load(parser, "<dds><types><struct name='s'><member name='m' type='int32'/>"
                               "</struct></types><qos_library name='l'><qos_profile name='base'>"
                               "<datareader_qos topic_filter='S*'/><datawriter_qos/>"
                               "</qos_profile></qos_library><port name='p'>" +
                                   content + "</port></dds>"),
                  1);
        // What is always there would only make it slow to compare the trees.
        BRELXmlUtils_deleteDdsXmlObject(
            parser->_xmlDdsParser,
            DDS_XMLObject_lookup_child(parser->_xmlDdsQosRoot, "BuiltinProfiles"));
        return parser;
    }

    static std::string trees(const Parser &parser)
    {
        return calmly([&] { return toText(parser->_xmlRoot) + describe(*parser->_xmlDdsQosRoot); });
    }

    // Each point in turn, and each pass through it.
    template <typename Body>
    static void failEachPoint(Body &&body)
    {
        std::uint32_t failureCount = 0;
        for (const char *point :
             {"ddsxml", "xmlutils.attribute", "xmlutils.copy", "xmlutils.full_name",
              "xmlutils.parse", "xmlutils.processing_instruction", "xmlutils.to_string",
              "xmlutils.transform", "xmlutils.user_data", "xmlutils.expand"}) {
            std::uint32_t injected = 1;
            for (std::uint32_t pass = 1; injected != 0; ++pass) {
                SCOPED_TRACE(testing::Message() << point << " " << pass);
                const LogCapture log;
                const HeapCheck heap;
                ZUVOsapiFault_arm(point, pass, 0);
                const bool succeeded = body();
                injected = ZUVOsapiFault_getInjectedCount();
                ZUVOsapiFault_disarm();
                EXPECT_NE(succeeded, injected != 0);
                EXPECT_NE(succeeded, !log.texts().empty());
                EXPECT_TRUE(heap.isBalanced());
                failureCount += !succeeded;
            }
        }
        EXPECT_GE(failureCount, 4U);
    }
};

INSTANTIATE_TEST_SUITE_P(Kinds, QosFaults,
                         testing::Combine(testing::ValuesIn(kQosKinds), testing::Bool()),
                         [](const auto &one) {
                             return std::string(std::get<0>(one.param).tag) +
                                    (std::get<1>(one.param) ? "_of_a_live_one" : "");
                         });

TEST_P(QosFaults, ofResolving)
{
    const auto &[kind, isLive] = GetParam();
    const std::string tag = kind.tag;
    const Parser parser =
        newPort("<" + tag + " name='n' base_name='l::base'>" + kind.policy + "</" + tag + ">");
    ZUVXMLUTILSObject *const port = at(parser, "::p");
    std::optional<QosValue> live;
    if (isLive) {
        live.emplace(*kind.table);
        ASSERT_EQ(ZUVXMLUTILSObject_setUserData(
                      ZUVXMLUTILSObject_getFirstChildWithTag(port, kind.tag), live->record()),
                  1);
    }
    const std::string before = trees(parser);
    const QosValue defaults(*kind.table);
    QosValue expected(*kind.table);
    ASSERT_EQ(kind.get(expected.record(), port), 1);
    ASSERT_FALSE(zuv::dds::qosEquals(*kind.table, expected.record(), defaults.record()));

    const auto resolve = [&, &table = *kind.table, get = kind.get] {
        std::optional<QosValue> qos;
        calmly([&] { return &qos.emplace(table); });
        const bool isRead = get(qos->record(), port) != 0;
        EXPECT_EQ(trees(parser), before);
        EXPECT_TRUE(zuv::dds::qosEquals(table, qos->record(),
                                        isRead ? expected.record() : defaults.record()));
        return isRead;
    };
    sweepFaults<kManySteps>(resolve);
    failEachPoint(resolve);
}

TEST_F(QosFaults, ofOptionsOfTheLogger)
{
    const Parser parser = newPort("<distributed_logger><level>FATAL</level></distributed_logger>");
    const std::string before = trees(parser);
    ZUVXMLUTILSObject *const element = ZUVXMLUTILSObject_getFirstChild(at(parser, "::p"));
    const auto resolve = [&] {
        ZUV_DL_Options options = {};
        const bool isRead = BRELCfgFileParser_getDistLogOptions(&options, element) != 0;
        EXPECT_EQ(trees(parser), before);
        EXPECT_EQ(options.queueSize, isRead ? 128 : 0);
        return isRead;
    };
    sweepFaults<kManySteps>(resolve);
    failEachPoint(resolve);
}

TEST_F(QosFaults, ofTypes)
{
    // A type is made once, so that each attempt needs a parser of its own.
    bool isFailing = true;
    for (std::uint32_t count = 1; isFailing; ++count) {
        const Parser parser = newPort("");
        const std::string before = trees(parser);
        const LogCapture log;
        ZUVOsapiFault_arm(nullptr, count, 0);
        const DDS_TypeCode *const type = BRELCfgFileParser_lookUpTypeCode(parser.get(), "s");
        isFailing = ZUVOsapiFault_getInjectedCount() != 0;
        ZUVOsapiFault_disarm();
        EXPECT_NE(type != nullptr, isFailing);
        EXPECT_EQ(log.texts().empty(), !isFailing);
        EXPECT_EQ(trees(parser), before);
        EXPECT_NE(BRELCfgFileParser_lookUpTypeCode(parser.get(), "s"), nullptr);
    }
}

// A document is taken up as a whole or not at all.
TEST_F(QosFaults, ofDocuments)
{
    const Parser parser = newPort("");
    const std::string before = trees(parser);
    const Tree document = parse(
        "<dds version='7.7.0'>\n<types/><configuration_variables/>\n\n<qos_library name='l'>\n"
        "<qos_profile name='derived' base_name='base'><datareader_qos/></qos_profile>"
        "</qos_library></dds>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(document.get(), parser.get()), 1);
    const auto takeUp = [&] {
        const bool isTaken = BRELCfgFileParser_generateNativeExtensionObject(
                                 parser.get(), document.get(), nullptr) != 0;
        EXPECT_EQ(isTaken, trees(parser) != before);
        if (isTaken) {
            ZUVXMLObject &root = *parser->_xmlDdsQosRoot;
            for (ZUVXMLObject *const added : {DDS_XMLObject_lookup(&root, "l::derived"),
                                              root.lastChild, root.lastChild->previous}) {
                BRELXmlUtils_deleteDdsXmlObject(parser->_xmlDdsParser, added);
            }
            EXPECT_EQ(trees(parser), before);
        }
        return isTaken;
    };
    sweepFaults<kManySteps>(takeUp);
    failEachPoint(takeUp);
}

} // namespace
} // namespace zuv_test
