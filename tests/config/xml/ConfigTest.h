// What the tests of the configuration share: a parser, documents for it, and what it saves.
#ifndef ZUV_TESTS_CONFIG_XML_CONFIG_TEST_H
#define ZUV_TESTS_CONFIG_XML_CONFIG_TEST_H

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "config/CfgFileElement.h"
#include "config/XmlCommon.h"
#include "config/XmlSave.h"
#include "config/XmlSupport.h"
#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/XmlTest.h"

namespace zuv_test
{

// All levels pass while one lives.
class LogMasks
{
public:
    explicit LogMasks(std::uint32_t levels) { set(levels); }
    void set(std::uint32_t levels)
    {
        BRELLog_g_instrumentationMask = levels;
        BRELLog_g_submoduleMask = UINT32_MAX;
    }
    ~LogMasks() { BRELLog_g_instrumentationMask = BRELLog_g_submoduleMask = 0; }
};

constexpr std::uint32_t kFailures = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
constexpr std::uint32_t kWarnings = kFailures | ZUV_LOG_BIT_WARNING;

// A start-up record that loads nothing by itself.
struct Property : ZUV_BrelServiceProperty {
    explicit Property(bool isValidating) : ZUV_BrelServiceProperty()
    {
        ZUV_BrelServiceProperties_initialize(&user_environment);
        skip_default_files = DDS_BOOLEAN_TRUE;
        enforce_xsd_validation = isValidating ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    }
    ~Property() { ZUV_BrelServiceProperties_finalize(&user_environment); }
    Property(const Property &) = delete;
    Property &operator=(const Property &) = delete;
};

struct ParserDeleter {
    void operator()(BRELCfgFileParser *parser) const { BRELCfgFileParser_delete(parser); }
};
using Parser = std::unique_ptr<BRELCfgFileParser, ParserDeleter>;

inline int load(const Parser &parser, const std::string &text)
{
    const char *const piece = text.c_str();
    return BRELCfgFileParser_loadString(parser.get(), &piece, 1);
}

inline ZUVXMLUTILSObject *at(const Parser &parser, const char *path)
{
    return ZUVXMLUTILSObject_lookUp(parser->_xmlRoot, path);
}

inline BRELCfgFileElement *recordAt(const Parser &parser, const char *path)
{
    return static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(at(parser, path)));
}

inline std::string saved(const ZUVXMLUTILSObject *root, BRELCfgFileParserSaveMode mode)
{
    ZUVXMLUTILSSaveContext *const context = ZUVXMLUTILSSaveContext_newForMemory();
    BRELCfgFileParser_saveDocument(root, context, mode);
    std::string text = "(failed)";
    if (ZUVXMLUTILSSaveContext_finish(context)) {
        text = ZUVXMLUTILSSaveContext_getText(context);
    }
    ZUVXMLUTILSSaveContext_delete(context);
    return text;
}

inline std::string saved(const Parser &parser,
                         BRELCfgFileParserSaveMode mode = BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE)
{
    return parser->_xmlRoot != nullptr ? saved(parser->_xmlRoot, mode) : "";
}

// The globals and the log; nothing is left behind by a test.
class ConfigTest : public testing::Test
{
protected:
    void SetUp() override
    {
        heap_.emplace();
        ASSERT_EQ(BRELCfgFileParser_initializeGlobals(), 1);
    }
    void TearDown() override
    {
        parser.reset();
        for (Property *const property : {&checked, &unchecked}) {
            ZUV_BrelServiceProperties_finalize(&property->user_environment);
        }
        BRELCfgFileParser_finalizeGlobals();
        EXPECT_TRUE(heap_->isBalanced());
    }

    void makeParser(const ZUV_BrelServiceProperty &property)
    {
        parser.reset(BRELCfgFileParser_new(&property));
        ASSERT_NE(parser, nullptr) << testing::PrintToString(log.texts());
    }

    LogMasks masks{kFailures};
    LogCapture log;
    Property checked{true};
    Property unchecked{false};
    Parser parser;

private:
    std::optional<HeapCheck> heap_;
};

} // namespace zuv_test

#endif
