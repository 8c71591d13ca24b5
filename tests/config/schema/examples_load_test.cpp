// The ready configurations load, and what is saved of them loads again.
#include <filesystem>
#include <optional>

#include "config/XmlSupport.h"
#include "platform/xmlutils/XmlTest.h"
#include "sdkLib/Properties.h"

namespace zuv_test
{
namespace
{

namespace fs = std::filesystem;

struct ParserDeleter {
    void operator()(BRELCfgFileParser *parser) const { BRELCfgFileParser_delete(parser); }
};
using Parser = std::unique_ptr<BRELCfgFileParser, ParserDeleter>;

struct SaveContextDeleter {
    void operator()(ZUVXMLUTILSSaveContext *context) const
    {
        ZUVXMLUTILSSaveContext_delete(context);
    }
};
using SaveContext = std::unique_ptr<ZUVXMLUTILSSaveContext, SaveContextDeleter>;

class ConfigurationsLoad : public testing::TestWithParam<const char *>
{
protected:
    void SetUp() override
    {
        heap_.emplace();
        ASSERT_EQ(BRELCfgFileParser_initializeGlobals(), 1);
        ASSERT_EQ(ZUV_BrelServiceProperties_initialize(&property_.user_environment), 1);
        property_.skip_default_files = DDS_BOOLEAN_TRUE;
        property_.enforce_xsd_validation = DDS_BOOLEAN_TRUE;
    }
    void TearDown() override
    {
        ZUV_BrelServiceProperties_finalize(&property_.user_environment);
        BRELCfgFileParser_finalizeGlobals();
        EXPECT_TRUE(heap_->isBalanced());
    }

    Parser makeParser() const { return Parser(BRELCfgFileParser_new(&property_)); }

    // The services of the tree get their records.
    static void loadServices(BRELCfgFileParser *parser)
    {
        int count = 0;
        const ZUVXMLUTILSObject *const root = parser->_xmlRoot;
        for (const auto *service = ZUVXMLUTILSObject_getFirstChildWithTag(root, "brel_service");
             service != nullptr;
             service = ZUVXMLUTILSObject_getNextSiblingWithTag(service, "brel_service")) {
            const char *const name = ZUVXMLUTILSObject_getName(service);
            EXPECT_NE(BRELCfgFileParser_loadService(parser, name), nullptr) << name;
            ++count;
        }
        EXPECT_EQ(count, 1);
    }
    static std::string save(const BRELCfgFileParser *parser)
    {
        const SaveContext context(ZUVXMLUTILSSaveContext_newForMemory());
        BRELCfgFileParser_saveDocument(parser->_xmlRoot, context.get(),
                                       BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE);
        EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
        return ZUVXMLUTILSSaveContext_getText(context.get());
    }

    LogCapture log;

private:
    std::optional<HeapCheck> heap_;
    ZUV_BrelServiceProperty property_ = {};
};

TEST_P(ConfigurationsLoad, andWhatIsSavedOfThemLoadsAgain)
{
    const std::string path = std::string(ZUV_CONFIGURATIONS "/") + GetParam() + ".xml";
    const Parser first = makeParser();
    ASSERT_NE(first, nullptr);
    ASSERT_EQ(BRELCfgFileParser_loadUrlGroup(first.get(), path.c_str()), 1)
        << testing::PrintToString(log.texts());
    loadServices(first.get());
    EXPECT_TRUE(log.isEmpty());

    const std::string saved = save(first.get());
    EXPECT_EQ(saved.find("$("), std::string::npos);
    const Parser second = makeParser();
    ASSERT_NE(second, nullptr);
    const char *const pieces[] = {saved.c_str()};
    ASSERT_EQ(BRELCfgFileParser_loadString(second.get(), pieces, 1), 1)
        << testing::PrintToString(log.texts());
    loadServices(second.get());
    EXPECT_EQ(save(second.get()), saved);
    EXPECT_TRUE(log.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(, ConfigurationsLoad,
                         testing::Values("bridge", "complete", "minimal", "operations", "plugins",
                                         "topics", "types_and_variables"),
                         [](const auto &test) { return std::string(test.param); });

} // namespace
} // namespace zuv_test
