#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/kolm/Version.h"
#include "platform/osapi/Fault.h"
#include "remoteShell/ShellParameterManager.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

// What the middleware says of its version, unless it is to say the truth.
static std::optional<DDS_ProductVersion_t> toldVersion;

extern "C" {
void __real_KOLM_Config_Version_get_product_version(DDS_ProductVersion_t *version);

void __wrap_KOLM_Config_Version_get_product_version(DDS_ProductVersion_t *version)
{
    if (toldVersion) {
        *version = *toldVersion;
    } else {
        __real_KOLM_Config_Version_get_product_version(version);
    }
}
}

namespace
{

// Arguments as main gets them, behind a program name.
class Arguments
{
public:
    explicit Arguments(std::vector<std::string> arguments) : texts_(std::move(arguments))
    {
        texts_.insert(texts_.begin(), "zuvbsh");
        for (std::string &text : texts_) {
            pointers_.push_back(text.data());
        }
        pointers_.push_back(nullptr);
    }
    int count() const { return static_cast<int>(texts_.size()); }
    char **vector() { return pointers_.data(); }

private:
    std::vector<std::string> texts_;
    std::vector<char *> pointers_;
};

class ParameterManager : public testing::Test
{
protected:
    ParameterManager() { BRELLog_setUp(); }

    bool parse(std::vector<std::string> arguments)
    {
        arguments_.emplace_back(std::move(arguments));
        manager_ = {};
        return BRELShellParameterManager_initialize(&manager_, arguments_.back().count(),
                                                    arguments_.back().vector()) == 1;
    }

    // The value as text; "-" for an option that was not given.
    std::string textOf(int id)
    {
        const char *value = nullptr;
        int exists = -1;
        EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &value, &exists, id,
                                                         BREL_SHELL_PARAMETER_TYPE_STRING),
                  1);
        EXPECT_EQ(exists, value != nullptr ? 1 : 0);
        return value != nullptr ? value : "-";
    }

    std::vector<std::string> values() { return {textOf(0), textOf(1), textOf(2)}; }

    zuv_test::LogCapture log_;
    std::vector<Arguments> arguments_;
    BRELShellParameterManager manager_ = {};
};

using Values = std::vector<std::string>;

TEST_F(ParameterManager, setsAllThreeOptions)
{
    ASSERT_TRUE(parse({"-domainId", "5", "-timeout", "30", "-cmdFile", "f"}));
    EXPECT_EQ(values(), (Values{"5", "30", "f"}));
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(manager_._init, 29508);
    BRELShellParameterManager_finalize(&manager_);
    EXPECT_EQ(manager_._init, 29509);
}

TEST_F(ParameterManager, takesAnyPrefixInAnyCase)
{
    ASSERT_TRUE(parse({"-d", "5", "-t", "30", "-c", "f"}));
    EXPECT_EQ(values(), (Values{"5", "30", "f"}));
    ASSERT_TRUE(parse({"-DOMAINID", "6", "-Time", "7"}));
    EXPECT_EQ(values(), (Values{"6", "7", "-"}));
}

TEST_F(ParameterManager, takesALoneDashForTheFirstOption)
{
    ASSERT_TRUE(parse({"-", "9"}));
    EXPECT_EQ(values(), (Values{"9", "-", "-"}));
}

TEST_F(ParameterManager, acceptsNoArgumentsAtAll)
{
    ASSERT_TRUE(parse({}));
    EXPECT_EQ(values(), (Values{"-", "-", "-"}));
}

TEST_F(ParameterManager, keepsTheLastOfAnOptionGivenTwice)
{
    ASSERT_TRUE(parse({"-t", "1", "-timeout", "2"}));
    EXPECT_EQ(values(), (Values{"-", "2", "-"}));
}

TEST_F(ParameterManager, takesADashedValueForAValue)
{
    ASSERT_TRUE(parse({"-domainId", "-5"}));
    int32_t number = 0;
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, nullptr, 0,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              1);
    EXPECT_EQ(number, -5);
}

TEST_F(ParameterManager, reportsAnOptionWithoutItsValueByItsKey)
{
    EXPECT_FALSE(parse({"-domainId"}));
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'domainId'"}}));
    EXPECT_NE(manager_._init, BREL_SHELL_PARAMETER_MANAGER_INITIALIZED);
}

TEST_F(ParameterManager, reportsAnArgumentWithoutADashWhole)
{
    EXPECT_FALSE(parse({"foo"}));
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'foo'"}}));
}

TEST_F(ParameterManager, reportsAnUnknownOptionByItsKey)
{
    for (const char *key : {"foo", "helpme", "he", "help", "domainIds"}) {
        log_.clear();
        EXPECT_FALSE(parse({"-" + std::string(key)}));
        EXPECT_TRUE(log_.isExactly({{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s,
                                     "bad command-line parameter '" + std::string(key) + "'"}}));
    }
}

TEST_F(ParameterManager, doesNotParseAgainOnceInitialized)
{
    ASSERT_TRUE(parse({"-d", "5"}));
    Arguments others({"nonsense"});
    EXPECT_EQ(BRELShellParameterManager_initialize(&manager_, others.count(), others.vector()), 1);
    EXPECT_EQ(textOf(0), "5");
}

TEST_F(ParameterManager, forgetsWhatItsRecordHeldBefore)
{
    for (BRELShellParameterValue &slot : manager_._parameterValues) {
        slot = {1, "former"};
    }
    Arguments arguments({"-t", "4"});
    EXPECT_EQ(
        BRELShellParameterManager_initialize(&manager_, arguments.count(), arguments.vector()), 1);
    EXPECT_EQ(values(), (Values{"-", "4", "-"}));
    EXPECT_EQ(manager_._parameterValues[0].value, nullptr);
}

TEST_F(ParameterManager, readsAnIntegerUpToWhatFollowsIt)
{
    ASSERT_TRUE(parse({"-domainId", "12abc"}));
    int32_t number = 0;
    int exists = 0;
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, &exists, 0,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              1);
    EXPECT_EQ(number, 12);
    EXPECT_EQ(exists, 1);
}

TEST_F(ParameterManager, reportsAnIntegerThatIsNoneByTheOptionsName)
{
    ASSERT_TRUE(parse({"-d", "abc"}));
    int32_t number = 3;
    int exists = -1;
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, &exists, 0,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              0);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(exists, 1);
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 'domainId'"}}));
}

TEST_F(ParameterManager, leavesTheValueOfAMissingOptionAlone)
{
    ASSERT_TRUE(parse({}));
    int32_t number = 15;
    int exists = -1;
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, &exists, 1,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              1);
    EXPECT_EQ(number, 15);
    EXPECT_EQ(exists, 0);
}

TEST_F(ParameterManager, storesNothingForAFlag)
{
    ASSERT_TRUE(parse({"-t", "4"}));
    int32_t untouched = 77;
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &untouched, nullptr, 1,
                                                     BREL_SHELL_PARAMETER_TYPE_VOID),
              1);
    EXPECT_EQ(untouched, 77);
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, nullptr, nullptr, 1,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              1);
}

TEST_F(ParameterManager, refusesImpossibleArguments)
{
    char name[] = "zuvbsh";
    char *argv[] = {name, nullptr};
    EXPECT_EQ(BRELShellParameterManager_initialize(nullptr, 1, argv), 0);
    EXPECT_EQ(BRELShellParameterManager_initialize(&manager_, 0, argv), 0);
    EXPECT_EQ(BRELShellParameterManager_initialize(&manager_, 1, nullptr), 0);
    EXPECT_EQ(BRELShellParameterManager_new(0, argv), nullptr);
    EXPECT_EQ(BRELShellParameterManager_new(1, nullptr), nullptr);
    BRELShellParameterManager_delete(nullptr);
    BRELShellParameterManager_finalize(nullptr);
    int32_t number = 0;
    EXPECT_EQ(BRELShellParameterManager_getParameter(nullptr, &number, nullptr, 0,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              0);
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, nullptr, 0,
                                                     static_cast<BRELShellParameterType>(3)),
              0);
    EXPECT_EQ(BRELShellParameterManager_getParameter(&manager_, &number, nullptr, 3,
                                                     BREL_SHELL_PARAMETER_TYPE_INT),
              0);
    ASSERT_EQ(log_.lines().size(), 10u);
    for (const zuv_test::LogLine &line : log_.lines()) {
        EXPECT_EQ(line.message, &ZUV_LOG_PRECONDITION_FAILURE_s);
        EXPECT_EQ(line.level, ZUV_LOG_BIT_FATAL);
    }
    EXPECT_NE(
        log_.lines()[0].text.find("\"self == ((void *)0) || argc < 1 || argv == ((void *)0)\""),
        std::string::npos);
    EXPECT_NE(log_.lines()[3].text.find("\"argc < 1 || argv == ((void *)0)\""), std::string::npos);
    for (const std::size_t index : {7, 8}) {
        EXPECT_NE(log_.lines()[index].text.find(
                      "\"self == ((void *)0) || parameterType < BREL_SHELL_PARAMETER_TYPE_VOID || "
                      "parameterType > BREL_SHELL_PARAMETER_TYPE_INT\""),
                  std::string::npos);
    }
    EXPECT_NE(log_.lines()[9].text.find(
                  "\"parameterId < 0 || parameterId >= BREL_SHELL_PARAMETER_VALUE_COUNT\""),
              std::string::npos);
}

TEST_F(ParameterManager, makesAndDeletesAHeapForm)
{
    const zuv_test::HeapCheck heap;
    Arguments good({"-t", "1"});
    BRELShellParameterManager *const manager =
        BRELShellParameterManager_new(good.count(), good.vector());
    ASSERT_NE(manager, nullptr);
    BRELShellParameterManager_delete(manager);

    Arguments bad({"-t"});
    EXPECT_EQ(BRELShellParameterManager_new(bad.count(), bad.vector()), nullptr);
    EXPECT_TRUE(log_.isExactly(
        {{&BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s, "bad command-line parameter 't'"},
         {&ZUV_LOG_INIT_FAILURE_s, "!initialize parameter manager"}}));
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(ParameterManager, reportsWantOfMemory)
{
    Arguments good({"-t", "1"});
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(BRELShellParameterManager_new(good.count(), good.vector()), nullptr);
    ZUVOsapiFault_disarm();
    ASSERT_EQ(log_.lines().size(), 1u);
    EXPECT_EQ(log_.lines()[0].message, &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d);
    EXPECT_NE(log_.lines()[0].text.find(std::to_string(sizeof(BRELShellParameterManager))),
              std::string::npos);
}

TEST_F(ParameterManager, knowsItsOptionsByTable)
{
    const auto &table = BRELShellParameterManager_g_parameterDesc;
    EXPECT_STREQ(table[0].name, "domainId");
    EXPECT_STREQ(table[1].name, "timeout");
    EXPECT_STREQ(table[2].name, "cmdFile");
    EXPECT_STREQ(table[3].name, "help");
    EXPECT_EQ(table[0].type, BREL_SHELL_PARAMETER_TYPE_INT);
    EXPECT_EQ(table[1].type, BREL_SHELL_PARAMETER_TYPE_INT);
    EXPECT_EQ(table[2].type, BREL_SHELL_PARAMETER_TYPE_STRING);
    EXPECT_EQ(table[3].type, BREL_SHELL_PARAMETER_TYPE_VOID);
    EXPECT_STREQ(table[0].description, "");
    EXPECT_STREQ(table[1].description, "");
    EXPECT_STREQ(table[2].description, "");
    EXPECT_STREQ(table[3].description, "Displays this information");
    EXPECT_STREQ(BRELShellParameterManager_g_parameterTypeDesc[BREL_SHELL_PARAMETER_TYPE_VOID], "");
    EXPECT_STREQ(BRELShellParameterManager_g_parameterTypeDesc[table[2].type], "<string>");
    EXPECT_STREQ(BRELShellParameterManager_g_parameterTypeDesc[table[0].type], "<integer>");
    for (const BRELShellParameterDesc &row : table) {
        EXPECT_EQ(row.required, 0);
        EXPECT_EQ(row.visible, 1);
    }
}

TEST_F(ParameterManager, printsTheRevisionOfAVersionThatHasOne)
{
    const auto lineOf = [](const DDS_ProductVersion_t &version) {
        toldVersion = version;
        testing::internal::CaptureStdout();
        BRELShellParameterManager_printVersion();
        toldVersion.reset();
        return testing::internal::GetCapturedStdout();
    };
    EXPECT_EQ(lineOf({1, 2, 3, 0}), "ZUV Brel Service Shell 1.2.3\n");
    EXPECT_EQ(lineOf({1, 2, 3, 1}), "ZUV Brel Service Shell 1.2.3 (rev 1)\n");
    EXPECT_EQ(lineOf({1, 2, 3, 40}), "ZUV Brel Service Shell 1.2.3 (rev 40)\n");
}

TEST_F(ParameterManager, printsVersionAndOptions)
{
    char name[] = "zuvbsh";
    const std::string expected = "ZUV Brel Service Shell 7.7.0\n"
                                 "Usage: zuvbsh [options]...\n"
                                 "\n"
                                 "Options:\n"
                                 " -domainId  <integer>   Domain ID for the remote configuration\n"
                                 " -timeout   <seconds>   Max time to wait for a remote response\n"
                                 " -cmdFile   <file>      Run commands in this file\n"
                                 " -help                  Displays this information\n";
    testing::internal::CaptureStdout();
    BRELShellParameterManager_printHelp(name);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
    testing::internal::CaptureStdout();
    BRELShellParameterManager_printUsage(name);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);
}

} // namespace
