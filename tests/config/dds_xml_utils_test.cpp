#include "config/DdsXmlUtils.h"

#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/ddsxml/DistLogger.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/XmlUtilsLog.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::LogCapture;
using zuv_test::LogLink;

class DdsXmlUtils : public testing::Test
{
protected:
    void SetUp() override
    {
        BRELLog_setUp();
        heap_ = std::make_unique<zuv_test::HeapCheck>();
        ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
        parser_ = DDS_XMLParser_new();
        root_ = ZUVXMLParser_parseFromString(parser_, nullptr, R"(<dds>
            <qos_library name="L"><qos_profile name="P"/><qos_profile name="Q"/></qos_library>
            <types>
                <struct name="S"><member name="x" type="int32"/></struct>
                <module name="M">
                    <union name="U"><discriminator type="int32"/>
                        <case><caseDiscriminator value="1"/><member name="a" type="int32"/></case>
                    </union>
                    <enum name="E"><enumerator name="A"/></enum>
                    <valuetype name="V"/>
                </module>
                <typedef name="T" type="int32"/>
                <struct name="Bad"><member name="x" type="nix"/></struct>
            </types>
            <types><struct name="Second"/></types>
        </dds>)");
        ASSERT_NE(root_, nullptr);
    }
    void TearDown() override
    {
        DDS_XMLParser_free_dom(parser_, root_);
        DDS_XMLParser_delete(parser_);
        ZUVXMLUTILSGlobals_finalize();
        EXPECT_TRUE(heap_->isBalanced());
        ZUVXMLUTILSLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
    }

    ZUVXMLObject *at(const char *name) const { return DDS_XMLObject_lookup(root_, name); }

    // From somewhere in the tree, and from its root; both must find the same.
    const DDS_TypeCode *find(const char *name, int &hasFailed)
    {
        DDS_XMLContext context = {};
        const DDS_TypeCode *type = BRELUtils_getTypeCodeFromXML(at("L::P"), name, &context);
        hasFailed = context.error;
        EXPECT_EQ(BRELUtils_getTypeCodeFromXMLDom(root_, name), type);
        return type;
    }

    std::unique_ptr<zuv_test::HeapCheck> heap_;
    DDS_XMLParser *parser_ = nullptr;
    ZUVXMLObject *root_ = nullptr;
};

TEST_F(DdsXmlUtils, findTypeCodesOfTypes)
{
    const LogCapture log;
    for (const auto &[name, kind] :
         {std::pair("S", DDS_TK_STRUCT), std::pair("M::U", DDS_TK_UNION),
          std::pair("M::E", DDS_TK_ENUM), std::pair("::M::V", DDS_TK_STRUCT)}) {
        int hasFailed = -1;
        EXPECT_EQ(DDS_TypeCode_kind(find(name, hasFailed), nullptr), kind) << name;
        EXPECT_EQ(hasFailed, 0);
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(DdsXmlUtils, findNothingQuietly)
{
    const LogCapture log;
    for (const char *const name : {"Nobody", "M::Nobody", "Second", "L::P", ""}) {
        int hasFailed = -1;
        EXPECT_EQ(find(name, hasFailed), nullptr) << name;
        EXPECT_EQ(hasFailed, 0);
    }
    ZUVXMLObject *const bare = ZUVXMLParser_parseFromString(parser_, nullptr, "<dds/>");
    EXPECT_EQ(BRELUtils_getTypeCodeFromXMLDom(bare, "S"), nullptr);
    DDS_XMLParser_free_dom(parser_, bare);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(DdsXmlUtils, reportWhatIsNoTypeOrABadOne)
{
    ZUVXMLUTILSLog_g_instrumentationMask = 0; // whose own line tells why
    const struct {
        const char *name;
        LogLink line;
    } wrong[] = {{"T", {&ZUV_LOG_ANY_FAILURE_s, "!This is not a type definition"}},
                 {"M", {&ZUV_LOG_ANY_FAILURE_s, "!This is not a type definition"}},
                 {"Bad", {&ZUV_LOG_ANY_FAILURE_s, "!Bad type definition"}}};
    for (const auto &[name, line] : wrong) {
        const LogCapture log;
        int hasFailed = 0;
        EXPECT_EQ(find(name, hasFailed), nullptr);
        EXPECT_NE(hasFailed, 0);
        EXPECT_TRUE(log.isExactly({line, line}));
        EXPECT_EQ(log.lines()[0].submodule, BREL_SUBMODULE_ELEMENTS);
        EXPECT_EQ(log.lines()[0].function, "BRELUtils_getTypeCodeFromXML");
        EXPECT_EQ(log.lines()[1].function, "BRELUtils_getTypeCodeFromXMLDom");
    }
}

TEST_F(DdsXmlUtils, reportAMissingTree)
{
    const LogCapture log;
    DDS_XMLContext context = {};
    EXPECT_EQ(BRELUtils_getTypeCodeFromXML(nullptr, "S", &context), nullptr);
    EXPECT_NE(context.error, 0);
    EXPECT_EQ(BRELUtils_getTypeCodeFromXMLDom(nullptr, "S"), nullptr);
    const LogLink line = {&ZUV_LOG_ANY_FAILURE_s, "!Error getting DOM"};
    EXPECT_TRUE(log.isExactly({line, line}));
}

TEST_F(DdsXmlUtils, findTheClassOfATag)
{
    ZUVXMLExtensionClass *const logger =
        ZUV_DL_XMLConfig_createXMLExtensionClass([](const char *, const char *, int) {});
    ASSERT_NE(logger, nullptr);
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, "distributed_logger"), nullptr);
    ASSERT_EQ(DDS_XMLParser_register_extension_class(parser_, logger), 1);
    const LogCapture log;
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, "distributed_logger"), logger);
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, "Distributed_logger"), nullptr);
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, "distributed"), nullptr);
    EXPECT_TRUE(log.isEmpty());
    DDS_XMLParser_unregister_extension_class(parser_, logger);
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, "distributed_logger"), nullptr);
    ZUV_DL_XMLConfig_destroyXMLExtensionClass(logger);
}

TEST_F(DdsXmlUtils, takeAChildOutWithoutFreeingIt)
{
    ZUVXMLObject *const library = at("L");
    ZUVXMLObject *const profile = at("L::P");
    EXPECT_EQ(BRELUtils_removeChildXmlObject(library, profile), 1);
    EXPECT_EQ(at("L::P"), nullptr);
    EXPECT_STREQ(ZUVXMLObject_getName(profile), "P");
    EXPECT_EQ(DDS_XMLObject_get_parent(profile), nullptr);
    const LogCapture log;
    EXPECT_EQ(BRELUtils_removeChildXmlObject(library, profile), 0);
    EXPECT_EQ(BRELUtils_removeChildXmlObject(root_, at("L::Q")), 0); // a grandchild
    const LogLink line = {&ZUV_LOG_ANY_FAILURE_s, "!remove child XML object"};
    EXPECT_TRUE(log.isExactly({line, line}));
    EXPECT_NE(at("L::Q"), nullptr);
    EXPECT_EQ(BRELUtils_deleteXMLObject(parser_, profile), 1); // one without a parent
}

TEST_F(DdsXmlUtils, deleteAnElementWithAllInIt)
{
    const LogCapture log;
    EXPECT_EQ(BRELUtils_deleteXMLObject(parser_, at("L::Q")), 1);
    EXPECT_EQ(at("L::Q"), nullptr);
    EXPECT_NE(at("L::P"), nullptr);
    EXPECT_EQ(BRELUtils_deleteXMLObject(parser_, at("L")), 1);
    EXPECT_EQ(at("L"), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(DdsXmlUtils, reportEachNullThatIsNotAllowed)
{
    const LogCapture log;
    DDS_XMLContext context = {};
    EXPECT_EQ(BRELUtils_getTypeCodeFromXML(root_, nullptr, &context), nullptr);
    EXPECT_EQ(BRELUtils_getTypeCodeFromXML(root_, "S", nullptr), nullptr);
    EXPECT_EQ(BRELUtils_getTypeCodeFromXMLDom(root_, nullptr), nullptr);
    EXPECT_EQ(BRELUtils_findExtensionClass(nullptr, "tag"), nullptr);
    EXPECT_EQ(BRELUtils_findExtensionClass(parser_, nullptr), nullptr);
    EXPECT_EQ(BRELUtils_removeChildXmlObject(nullptr, root_), 0);
    EXPECT_EQ(BRELUtils_removeChildXmlObject(root_, nullptr), 0);
    EXPECT_EQ(BRELUtils_deleteXMLObject(nullptr, root_), 0);
    EXPECT_EQ(BRELUtils_deleteXMLObject(parser_, nullptr), 0);
    std::string all;
    for (const auto &line : log.lines()) {
        EXPECT_EQ(line.message, &ZUV_LOG_PRECONDITION_FAILURE_s);
        EXPECT_EQ(line.submodule, BREL_SUBMODULE_ELEMENTS);
        all += line.text + "\n";
    }
    EXPECT_EQ(all, "!meet precondition: typeName == ((void *)0)\n"
                   "!meet precondition: context == ((void *)0)\n"
                   "!meet precondition: typeName == ((void *)0)\n"
                   "!meet precondition: parser == ((void *)0)\n"
                   "!meet precondition: tagName == ((void *)0)\n"
                   "!meet precondition: parent == ((void *)0)\n"
                   "!meet precondition: child == ((void *)0)\n"
                   "!meet precondition: parser == ((void *)0)\n"
                   "!meet precondition: childObject == ((void *)0)\n");
}

} // namespace
