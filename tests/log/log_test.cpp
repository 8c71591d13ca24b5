#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/kolm/Logger.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::LogCapture;

class ServiceLog : public testing::Test
{
protected:
    ServiceLog() { BRELLog_g_instrumentationMask = BRELLog_g_submoduleMask = 0; }
    ~ServiceLog() override { BRELLog_g_instrumentationMask = BRELLog_g_submoduleMask = 0; }

    static void failIn(std::uint32_t submodule, const char *text)
    {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, submodule, &ZUV_LOG_ANY_FAILURE_s, text);
    }
};

TEST_F(ServiceLog, isSilentUntilSetUp)
{
    const LogCapture log;
    failIn(BREL_SUBMODULE_SHELL, "before");
    EXPECT_TRUE(log.isEmpty());
    BRELLog_setUp();
    failIn(BREL_SUBMODULE_SHELL, "after");
    ZUV_LOG(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_SHELL, &ZUV_LOG_ANY_s, "warning");
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!after"}}));
    EXPECT_EQ(log.lines().at(0).moduleId, 0x1c0000u);
}

TEST_F(ServiceLog, itsVerbosityIsSetByServiceNumber)
{
    BRELLog_setUp();
    const LogCapture log;
    EXPECT_EQ(KOLM_Config_Logger_set_verbosity_by_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                                          KOLM_CONFIG_LOG_VERBOSITY_SILENT),
              1);
    failIn(BREL_SUBMODULE_REMOTE, "silent");
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(KOLM_Config_Logger_set_verbosity_by_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                                          KOLM_CONFIG_LOG_VERBOSITY_ERROR),
              1);
    failIn(BREL_SUBMODULE_REMOTE, "loud");
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!loud"}}));
}

TEST_F(ServiceLog, submodulesHaveTheirBits)
{
    EXPECT_EQ(BREL_SUBMODULE_XML, 3u);
    EXPECT_EQ(BREL_SUBMODULE_CONCURRENCY, 0x1000u);
    EXPECT_EQ(BREL_SUBMODULE_EVENT_THREAD, 0x1000u);
    EXPECT_EQ(BREL_SUBMODULE_SHELL, 0x2000u);
    EXPECT_EQ(BREL_SUBMODULE_PARTICIPANT_FACTORY, 0x2000u);
    EXPECT_EQ(BREL_SUBMODULE_ELEMENTS, 0x3000u);
    EXPECT_EQ(BREL_SUBMODULE_REMOTE, 0x4000u);
    EXPECT_EQ(BREL_SUBMODULE_PARAMETER_MANAGER, 0x4000u);
}

class UserLog : public testing::Test
{
protected:
    // The text that a user's line of this format comes out as.
    static std::string textOf(const std::string &format)
    {
        const LogCapture log;
        BRELLog_logFromLevelWithMask(UINT32_MAX, 2, "%s", "");
        BRELLog_logFromLevelWithMask(UINT32_MAX, 2, format.c_str(), 42);
        return log.texts().at(1);
    }
};

TEST_F(UserLog, asksItsOwnMaskAndNotTheModule)
{
    const LogCapture log;
    BRELLog_logFromLevelWithMask(0x2, 2, "adapter %s: code %d", "a", 3);
    BRELLog_logFromLevelWithMask(0x2, 3, "warning is off");
    ASSERT_TRUE(log.isExactly({{&BREL_LOG_SERVICE_USER_LOG_s, "adapter a: code 3"}}));
    EXPECT_EQ(log.lines().at(0).level, ZUV_LOG_BIT_EXCEPTION);
    EXPECT_EQ(log.lines().at(0).moduleId, BREL_LOG_MODULE_ID);
}

TEST_F(UserLog, eachLevelHasItsBit)
{
    constexpr std::uint32_t kBits[] = {0, 1, 2, 4, 8, 16, 480, 480};
    for (int level = 0; level < 8; ++level) {
        const LogCapture log;
        BRELLog_logFromLevelWithMask(kBits[level], level, "passes");
        BRELLog_logFromLevelWithMask(~kBits[level], level, "does not pass");
        EXPECT_EQ(log.texts().size(), kBits[level] != 0 ? 1u : 0u) << level;
    }
}

TEST_F(UserLog, higherLevelsPassWithAnyOfTheirBits)
{
    const LogCapture log;
    BRELLog_logFromLevelWithMask(0x100, 6, "six");
    BRELLog_logFromLevelWithMask(0x20, 1000, "thousand");
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"six", "thousand"}));
}

TEST_F(UserLog, nothingIsPrintedForNoFormatOrNoLevel)
{
    const LogCapture log;
    const char *none = nullptr;
    BRELLog_logFromLevelWithMask(UINT32_MAX, 2, none, 0);
    BRELLog_logFromLevelWithMask(UINT32_MAX, -1, "below");
    BRELLog_logFromLevelWithMask(UINT32_MAX, 0, "none");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(UserLog, keepsAFormatUpToItsLimit)
{
    const std::string longest(507, 'x');
    EXPECT_EQ(textOf(longest), longest);
    EXPECT_EQ(textOf(longest + "y"), longest + "...");
    EXPECT_EQ(textOf(std::string(10000, 'x')), longest + "...");
}

TEST_F(UserLog, aCutDoesNotTearAConversion)
{
    const std::string start(500, 'x');
    EXPECT_EQ(textOf(start + "%05d" + "yyy"), start + "00042yyy");
    EXPECT_EQ(textOf(start + "%05d" + "yyyy"), start + "00042yyy...");
    EXPECT_EQ(textOf(start + "xxxx%05d"), start + "xxxx...");
    EXPECT_EQ(textOf(start + "xxxxxx%%zz"), start + "xxxxxx...");
    EXPECT_EQ(textOf(start + "xxxxx%%zz"), start + "xxxxx%...");
    EXPECT_EQ(textOf(start + "xxxxxx%-"), start + "xxxxxx...");
}

} // namespace
