#include "sdkLib/Environment.h"

#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "support/LogCapture.h"

namespace
{

class Environment : public testing::Test
{
protected:
    Environment() { BRELLog_setUp(); }

    std::string message() const
    {
        return ZUV_BrelServiceEnvironment_get_error_message(&environment_);
    }

    ZUV_BrelServiceEnvironment environment_ = {};
};

TEST_F(Environment, ofZerosHasNoError)
{
    EXPECT_FALSE(ZUV_BrelServiceEnvironment_error_occurred(&environment_));
    EXPECT_EQ(message(), "");
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_native_code(&environment_), 0);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_verbosity(&environment_),
              ZUV_BREL_SERVICE_VERBOSITY_NONE);
}

TEST_F(Environment, storesAnError)
{
    ZUV_BrelServiceEnvironment_set_error(&environment_, "cannot open port");
    EXPECT_TRUE(ZUV_BrelServiceEnvironment_error_occurred(&environment_));
    EXPECT_EQ(environment_.error.error_code, 1);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_native_code(&environment_), 0);
    EXPECT_EQ(message(), "cannot open port");
}

TEST_F(Environment, keepsTheFirstErrorUntilAFatalOne)
{
    ZUV_BrelServiceEnvironment_set_error(&environment_, "first");
    ZUV_BrelServiceEnvironment_set_error(&environment_, "second");
    EXPECT_EQ(message(), "first");

    ZUV_BrelServiceEnvironment_fatal_error(&environment_, "fatal");
    EXPECT_EQ(message(), "fatal");
    EXPECT_EQ(environment_.error.error_code, 2);

    ZUV_BrelServiceEnvironment_set_error(&environment_, "third");
    EXPECT_EQ(message(), "fatal");
    EXPECT_EQ(environment_.error.error_code, 2);

    ZUV_BrelServiceEnvironment_fatal_error(&environment_, "more fatal");
    EXPECT_EQ(message(), "more fatal");
}

TEST_F(Environment, storesTheCodesOfTheCaller)
{
    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_FALSE, 7, -3, "one");
    EXPECT_EQ(environment_.error.error_code, 7);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_native_code(&environment_), -3);

    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_FALSE, 8, 4, "two");
    EXPECT_EQ(environment_.error.error_code, 7);
    EXPECT_EQ(message(), "one");

    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_TRUE, 8, 4, "two");
    EXPECT_EQ(environment_.error.error_code, 8);
    EXPECT_EQ(environment_.error.nativeCode, 4);
    EXPECT_EQ(message(), "two");

    ZUV_BrelServiceEnvironment_fatal_error(&environment_, "three");
    EXPECT_EQ(environment_.error.nativeCode, 0);
}

TEST_F(Environment, anErrorWithCodeNoneIsNoErrorAndDoesNotStand)
{
    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_FALSE, 0, 5, "odd");
    EXPECT_FALSE(ZUV_BrelServiceEnvironment_error_occurred(&environment_));
    ZUV_BrelServiceEnvironment_set_error(&environment_, "first");
    EXPECT_EQ(message(), "first");
}

TEST_F(Environment, conversionsDoNotReceiveTheArguments)
{
    // Were 7 handed on, it would be printed. What stands here instead is an address, which is even.
    ZUV_BrelServiceEnvironment_set_error(&environment_, "code=%x", 7);
    EXPECT_TRUE(message().starts_with("code="));
    EXPECT_NE(message(), "code=7");
    ZUV_BrelServiceEnvironment_fatal_error(&environment_, "code=%x", 7);
    EXPECT_NE(message(), "code=7");
    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_TRUE, 1, 0, "code=%x",
                                                  7);
    EXPECT_NE(message(), "code=7");
}

TEST_F(Environment, theFormatIsAFormat)
{
    ZUV_BrelServiceEnvironment_set_error(&environment_, "100%% full");
    EXPECT_EQ(message(), "100% full");
}

TEST_F(Environment, aLongMessageIsCut)
{
    ZUV_BrelServiceEnvironment_set_error(&environment_, std::string(1023, 'x').c_str());
    EXPECT_EQ(message(), std::string(1023, 'x'));
    for (const size_t length : {1024, 1025, 5000}) {
        ZUV_BrelServiceEnvironment_fatal_error(&environment_, std::string(length, 'y').c_str());
        EXPECT_EQ(message(), std::string(1023, 'y'));
    }
    EXPECT_EQ(sizeof(environment_.error.message), 1025U);
}

TEST_F(Environment, oneNewLineAtTheEndIsDropped)
{
    const std::pair<const char *, const char *> cases[] = {
        {"text\n", "text"}, {"text\n\n", "text\n"}, {"\ntext", "\ntext"}, {"\n", ""}, {"", ""}};
    for (const auto &[format, expected] : cases) {
        ZUV_BrelServiceEnvironment_fatal_error(&environment_, format);
        EXPECT_EQ(message(), expected);
    }
}

TEST_F(Environment, clearedHasNoErrorAndKeepsTheRest)
{
    int global = 0;
    environment_._jniGlobal = &global;
    environment_.verbosity = ZUV_BREL_SERVICE_VERBOSITY_INFO;
    ZUV_BrelServiceEnvironment_set_error_w_params(&environment_, DDS_BOOLEAN_TRUE, 2, 5, "text");
    ZUV_BrelServiceEnvironment_clear_error(&environment_);
    EXPECT_FALSE(ZUV_BrelServiceEnvironment_error_occurred(&environment_));
    EXPECT_EQ(environment_.error.error_code, 0);
    EXPECT_EQ(environment_.error.nativeCode, 0);
    EXPECT_EQ(message(), "");
    EXPECT_EQ(environment_._jniGlobal, &global);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_verbosity(&environment_),
              ZUV_BREL_SERVICE_VERBOSITY_INFO);
    ZUV_BrelServiceEnvironment_set_error(&environment_, "next");
    EXPECT_EQ(message(), "next");
}

TEST_F(Environment, errorsForNobodyAreIgnored)
{
    const zuv_test::LogCapture log;
    ZUV_BrelServiceEnvironment_set_error(nullptr, "text");
    ZUV_BrelServiceEnvironment_fatal_error(nullptr, "text");
    ZUV_BrelServiceEnvironment_set_error_w_params(nullptr, DDS_BOOLEAN_TRUE, 1, 1, "text");
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Environment, otherOperationsReportThatThereIsNone)
{
    const zuv_test::LogCapture log;
    EXPECT_FALSE(ZUV_BrelServiceEnvironment_error_occurred(nullptr));
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_error_message(nullptr), nullptr);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_native_code(nullptr), 0);
    ZUV_BrelServiceEnvironment_clear_error(nullptr);
    EXPECT_EQ(ZUV_BrelServiceEnvironment_get_verbosity(nullptr), ZUV_BREL_SERVICE_VERBOSITY_NONE);
    const auto lines = log.lines();
    EXPECT_EQ(lines.size(), 5U);
    for (const auto &line : lines) {
        EXPECT_EQ(line.text, "!meet precondition: self == ((void *)0)");
    }
}

TEST_F(Environment, anErrorStandsWithoutItsMessage)
{
    ZUV_BrelServiceEnvironment_set_error(&environment_, nullptr);
    EXPECT_TRUE(ZUV_BrelServiceEnvironment_error_occurred(&environment_));
    EXPECT_EQ(message(), "");

    ZUVOsapiFault_arm("utility.snprintf", 1, 0);
    ZUV_BrelServiceEnvironment_fatal_error(&environment_, "text");
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
    EXPECT_EQ(environment_.error.error_code, 2);
    EXPECT_EQ(message(), "");
}

TEST(Verbosity, isTheMaskOfItsLevels)
{
    const zuv_test::LogCapture log;
    for (const int level : {1, 2, 3, 4, 6}) {
        BRELLog_logFromLevelWithMask(ZUV_BREL_SERVICE_VERBOSITY_WARN, level, "level %d", level);
    }
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"level 1", "level 2", "level 3"}));
}

} // namespace
