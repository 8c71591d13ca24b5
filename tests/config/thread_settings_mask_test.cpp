#include "config/ThreadSettingsMask.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "support/LogCapture.h"

namespace
{

constexpr DDS_ThreadSettingsKindMask kUntouched = 0xdeadbeef;

std::optional<DDS_ThreadSettingsKindMask> maskOf(const std::string &text)
{
    DDS_ThreadSettingsKindMask mask = kUntouched;
    if (BRELXmlUtils_getThreadSettingsKindMaskElement(&mask, text.c_str()) == 0) {
        EXPECT_EQ(mask, kUntouched) << text;
        return std::nullopt;
    }
    return mask;
}

class ThreadSettingsMask : public testing::Test
{
protected:
    ThreadSettingsMask() { BRELLog_setUp(); }
};

TEST_F(ThreadSettingsMask, knowsFourSettings)
{
    EXPECT_EQ(maskOf("FLOATING_POINT"), 1U);
    EXPECT_EQ(maskOf("STDIO"), 2U);
    EXPECT_EQ(maskOf("REALTIME_PRIORITY"), 8U);
    EXPECT_EQ(maskOf("PRIORITY_ENFORCE"), 16U);
}

TEST_F(ThreadSettingsMask, knowsThemByTheirLongerNames)
{
    EXPECT_EQ(maskOf("DDS_THREAD_SETTINGS_FLOATING_POINT"), 1U);
    EXPECT_EQ(maskOf("THREAD_SETTINGS_STDIO"), 2U);
    EXPECT_EQ(maskOf("THREAD_SETTINGS_REALTIME_PRIORITY"), 8U);
    EXPECT_EQ(maskOf("DDS_THREAD_SETTINGS_PRIORITY_ENFORCE"), 16U);
}

TEST_F(ThreadSettingsMask, addsThemUp)
{
    EXPECT_EQ(maskOf("stdio | floating_point"), 3U);
    EXPECT_EQ(maskOf("STDIO|FLOATING_POINT|REALTIME_PRIORITY|PRIORITY_ENFORCE"), 27U);
    EXPECT_EQ(maskOf("STDIO|STDIO"), 2U);
    EXPECT_EQ(maskOf("|STDIO||"), 2U);
}

TEST_F(ThreadSettingsMask, bearsWhiteSpaceAndAnyCase)
{
    EXPECT_EQ(maskOf("\n\t Stdio \r\n |\tdds_thread_settings_Floating_Point\n"), 3U);
}

TEST_F(ThreadSettingsMask, hasADefaultThatAddsNothing)
{
    EXPECT_EQ(maskOf("MASK_DEFAULT"), 0U);
    EXPECT_EQ(maskOf("DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT"), 0U);
    EXPECT_EQ(maskOf("thread_settings_kind_mask_default|STDIO"), 2U);
    EXPECT_EQ(maskOf("THREAD_SETTINGS_MASK_DEFAULT"), std::nullopt);
}

TEST_F(ThreadSettingsMask, ofNothingIsZero)
{
    EXPECT_EQ(maskOf(""), 0U);
    EXPECT_EQ(maskOf(" \t\r\n "), 0U);
    EXPECT_EQ(maskOf("|"), 0U);
}

TEST_F(ThreadSettingsMask, refusesAnythingElse)
{
    for (const char *const text : {"STDOUT", "STDIO FLOATING_POINT", "STDIO|x", "STDIO| |STDIO",
                                   "SETTINGS_STDIO", "2", "STDIO,FLOATING_POINT"}) {
        const zuv_test::LogCapture log;
        EXPECT_EQ(maskOf(text), std::nullopt) << text;
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_INVALID_s, "!accept mask value: it is not valid"}}));
        EXPECT_EQ(log.lines()[0].submodule, BREL_SUBMODULE_XML);
    }
}

TEST_F(ThreadSettingsMask, refusesATextThatIsTooLong)
{
    const std::string text = "STDIO";
    EXPECT_EQ(maskOf(text + std::string(2047 - text.size(), ' ')), 2U);
    const zuv_test::LogCapture log;
    EXPECT_EQ(maskOf(text + std::string(2048 - text.size(), ' ')), std::nullopt);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!thread settings kind too long"}}));
}

TEST_F(ThreadSettingsMask, needsATextAndAMask)
{
    const zuv_test::LogCapture log;
    DDS_ThreadSettingsKindMask mask = kUntouched;
    EXPECT_EQ(BRELXmlUtils_getThreadSettingsKindMaskElement(nullptr, "STDIO"), 0);
    EXPECT_EQ(BRELXmlUtils_getThreadSettingsKindMaskElement(&mask, nullptr), 0);
    EXPECT_EQ(mask, kUntouched);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: mask == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: elementText == ((void *)0)"}}));
}

// The reader for the middleware's XML: a flag in place of a result.
TEST_F(ThreadSettingsMask, isReadInAContextToo)
{
    DDS_ThreadSettingsKindMask mask = kUntouched;
    DDS_XMLContext context = {};
    BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", " stdio | floating_point ", &context);
    EXPECT_EQ(mask, 3U);
    EXPECT_EQ(context.error, 0);
    BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", "", &context);
    EXPECT_EQ(mask, 0U);
    EXPECT_EQ(context.error, 0);
}

TEST_F(ThreadSettingsMask, setsTheFlagOfItsContext)
{
    const struct {
        std::string text;
        zuv_test::LogLink line;
    } wrong[] = {
        {"STDIO|x",
         {&ZUVXML_LOG_PARSER_ILLEGAL_VALUE_ds, "!parse line 17: illegal value of 'mask'"}},
        {std::string(2048, ' '), {&ZUV_LOG_ANY_FAILURE_s, "!thread settings kind too long"}}};
    for (const auto &[text, line] : wrong) {
        const zuv_test::LogCapture log;
        DDS_ThreadSettingsKindMask mask = kUntouched;
        DDS_XMLContext context = {};
        context.line = 17;
        BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", text.c_str(), &context);
        EXPECT_NE(context.error, 0);
        EXPECT_EQ(mask, kUntouched);
        EXPECT_TRUE(log.isExactly({line}));
        EXPECT_EQ(log.lines()[0].submodule, BREL_SUBMODULE_XML);
        EXPECT_EQ(log.lines()[0].function, "BRELUtils_getThreadSettingsKindMaskElement");
        // A flag that is set stays so.
        BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", "STDIO", &context);
        EXPECT_EQ(mask, 2U);
        EXPECT_NE(context.error, 0);
    }
}

TEST_F(ThreadSettingsMask, needsEverythingInAContextToo)
{
    const zuv_test::LogCapture log;
    DDS_ThreadSettingsKindMask mask = kUntouched;
    DDS_XMLContext contexts[3] = {};
    BRELUtils_getThreadSettingsKindMaskElement(nullptr, "mask", "STDIO", &contexts[0]);
    BRELUtils_getThreadSettingsKindMaskElement(&mask, nullptr, "STDIO", &contexts[1]);
    BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", nullptr, &contexts[2]);
    BRELUtils_getThreadSettingsKindMaskElement(&mask, "mask", "STDIO", nullptr);
    for (const DDS_XMLContext &context : contexts) {
        EXPECT_NE(context.error, 0);
    }
    EXPECT_EQ(mask, kUntouched);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: mask == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: tagName == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: elementText == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: context == ((void *)0)"}}));
}

} // namespace
