#include <cerrno>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/log/DDSLog.h"
#include "platform/log/Log.h"
#include "platform/log/LogMessages.h"
#include "platform/log/Sink.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

// A module of the test's own.
static std::uint32_t TestLog_g_instrumentationMask = 0;
static std::uint32_t TestLog_g_submoduleMask = 0;
#define Test_LOG_MODULE_ID 0x77u

// The linker puts this in the place of ZUVLog_onAssertBreakpoint.
static int breakpointPasses = 0;

extern "C" void countBreakpointPass(void)
{
    ++breakpointPasses;
}

namespace
{

using zuv_test::LogCapture;

class Log : public testing::Test
{
protected:
    Log()
    {
        TestLog_g_instrumentationMask = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
        TestLog_g_submoduleMask = 0x10;
    }
    ~Log() override { ZUVLog_g_detectPrecondition = ZUVLog_g_preconditionDetected = 0; }
};

// What the code writes to standard error.
template <typename Code>
std::string standardErrorOf(Code code)
{
    testing::internal::CaptureStderr();
    code();
    return testing::internal::GetCapturedStderr();
}

void waitForReply()
{
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_ANY_FAILURE_s, "wait for reply");
}

void sendCommand()
{
    waitForReply();
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_ANY_FAILURE_s, "send command");
}

TEST_F(Log, aFailureReadsAsAChainFromItsCauseUpward)
{
    const LogCapture log;
    sendCommand();
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!wait for reply"}, {&ZUV_LOG_ANY_FAILURE_s, "!send command"}}));
}

TEST_F(Log, aRecordTellsItsSite)
{
    static ZUVLogRecord seen;
    ZUVLog_setSink([](void *data,
                      const ZUVLogRecord *record) { *static_cast<ZUVLogRecord *>(data) = *record; },
                   &seen);
    const int line = __LINE__ + 1;
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_GET_FAILURE_s, "topic");
    ZUVLog_setSink(nullptr, nullptr);
    EXPECT_EQ(seen.level, ZUV_LOG_BIT_EXCEPTION);
    EXPECT_EQ(seen.moduleId, 0x77u);
    EXPECT_EQ(seen.submodule, 0x10u);
    EXPECT_STREQ(seen.function, "TestBody");
    EXPECT_STREQ(seen.file, __FILE__);
    EXPECT_EQ(seen.line, line);
    EXPECT_EQ(seen.message, &ZUV_LOG_GET_FAILURE_s);
}

TEST_F(Log, bothMasksMustLetALinePass)
{
    const LogCapture log;
    ZUV_LOG(Test, ZUV_LOG_BIT_WARNING, 0x10, &ZUV_LOG_ANY_s, "level is off");
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x20, &ZUV_LOG_ANY_s, "submodule is off");
    EXPECT_TRUE(log.isEmpty());
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x30, &ZUV_LOG_ANY_s, "one shared bit is enough");
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_s, "one shared bit is enough"}}));
}

TEST_F(Log, argumentsOfALineThatDoesNotPassAreNotEvaluated)
{
    const LogCapture log;
    int evaluations = 0;
    const auto text = [&] {
        ++evaluations;
        return "text";
    };
    ZUV_LOG(Test, ZUV_LOG_BIT_WARNING, 0x10, &ZUV_LOG_ANY_s, text());
    EXPECT_EQ(evaluations, 0);
    ZUV_LOG(Test, ZUV_LOG_BIT_FATAL, 0x10, &ZUV_LOG_ANY_s, text());
    EXPECT_EQ(evaluations, 1);
}

TEST_F(Log, aTemplateTakesATextWithArgumentsOfItsOwn)
{
    const LogCapture log;
    ZUV_LOG_TEMPLATE(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_FAILURE_TEMPLATE,
                     "get default participant qos - Return code = %d\n", 5);
    ZUV_LOG_TEMPLATE(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_FAILED_TO_PARSE_TEMPLATE,
                     "Error at line=%d for tag=%s: invalid parent", 12, "session%d");
    ZUV_LOG_TEMPLATE(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_FAILED_TO_CREATE_TEMPLATE,
                     "RequesterUntypedImpl");
    ZUV_LOG_TEMPLATE(Test, ZUV_LOG_BIT_WARNING, 0x10, &ZUV_LOG_FAILURE_TEMPLATE, "level is off");
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_FAILURE_TEMPLATE, "!get default participant qos - Return code = 5"},
         {&ZUV_LOG_FAILED_TO_PARSE_TEMPLATE,
          "!parse: Error at line=12 for tag=session%d: invalid parent"},
         {&ZUV_LOG_FAILED_TO_CREATE_TEMPLATE, "!create RequesterUntypedImpl"}}));
}

TEST_F(Log, aPlainLineHasNoTemplate)
{
    const LogCapture log;
    ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "Could not open file %s\n", "a.txt");
    ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_WARNING, 0x10, "level is off");
    EXPECT_TRUE(log.isExactly({{nullptr, "Could not open file a.txt"}}));
}

TEST_F(Log, losesOnlyTheFinalNewLine)
{
    const LogCapture log;
    ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "one\ntwo\n\n");
    ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "%s", "");
    EXPECT_TRUE(log.isExactly({{nullptr, "one\ntwo\n"}, {nullptr, ""}}));
}

TEST_F(Log, cutsALongTextAndShowsIt)
{
    const LogCapture log;
    const std::string longText(10000, 'x');
    ZUV_LOG(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_ANY_FAILURE_s, longText.c_str());
    const std::string text = log.texts().at(0);
    EXPECT_GT(text.size(), 3900u);
    EXPECT_LT(text.size(), 4096u);
    EXPECT_EQ(text.substr(0, 5), "!xxxx");
    EXPECT_EQ(text.substr(text.size() - 4), "x...");
}

TEST_F(Log, keepsErrno)
{
    const LogCapture log;
    errno = ENOENT;
    ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "text");
    waitForReply();
    ZUV_LOG_TEMPLATE(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, &ZUV_LOG_ANY_s, "text");
    EXPECT_EQ(errno, ENOENT);
    ZUVLog_setSink([](void *, const ZUVLogRecord *) { errno = EIO; }, nullptr);
    waitForReply();
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(Log, allocatesNothing)
{
    const zuv_test::HeapCheck heap;
    standardErrorOf([] { waitForReply(); });
    EXPECT_EQ(heap.allocations(), 0u);
}

TEST_F(Log, aSinkThatLogsIsNotCalledAgain)
{
    static int calls;
    calls = 0;
    ZUVLog_setSink(
        [](void *, const ZUVLogRecord *) {
            ++calls;
            waitForReply();
        },
        nullptr);
    waitForReply();
    waitForReply();
    ZUVLog_setSink(nullptr, nullptr);
    EXPECT_EQ(calls, 2);
}

TEST_F(Log, theDefaultSinkWritesLevelFunctionAndText)
{
    TestLog_g_instrumentationMask = UINT32_MAX;
    const std::string written = standardErrorOf([] {
        sendCommand();
        for (const std::uint32_t level : {1, 4, 8, 64}) {
            ZUV_LOG(Test, level, 0x10, &ZUV_LOG_ANY_s, "text");
        }
    });
    EXPECT_EQ(written, "ERROR waitForReply: !wait for reply\n"
                       "ERROR sendCommand: !send command\n"
                       "FATAL operator(): text\n"
                       "WARNING operator(): text\n"
                       "INFO operator(): text\n"
                       "DEBUG operator(): text\n");
}

TEST_F(Log, aSinkMayPassALineOnToTheDefaultOne)
{
    int count = 0;
    ZUVLog_setSink(
        [](void *sinkData, const ZUVLogRecord *record) {
            ++*static_cast<int *>(sinkData);
            ZUVLog_writeToStandardError(nullptr, record);
        },
        &count);
    EXPECT_EQ(standardErrorOf(waitForReply), "ERROR waitForReply: !wait for reply\n");
    EXPECT_EQ(count, 1);
    ZUVLog_setSink(nullptr, nullptr);
}

TEST_F(Log, aTextCannotStartALineOrSteerTheTerminal)
{
    const std::string written = standardErrorOf([] {
        ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "%s",
                      "a\nERROR b\r\t\x1b[2J\x7f"
                      "c\xc3\xa4");
    });
    EXPECT_EQ(written, "ERROR operator(): a ERROR b   [2J c\xc3\xa4\n");
}

TEST_F(Log, aLineOfTheDefaultSinkIsWrittenAtOnce)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const int standardError = dup(STDERR_FILENO);
    dup2(ends[1], STDERR_FILENO);
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter) {
        threads.emplace_back([letter] {
            for (int line = 0; line < 50; ++line) {
                ZUV_LOG_PLAIN(Test, ZUV_LOG_BIT_EXCEPTION, 0x10, "%s",
                              std::string(200, letter).c_str());
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    dup2(standardError, STDERR_FILENO);
    close(standardError);
    close(ends[1]);
    FILE *lines = fdopen(ends[0], "r");
    char line[1000];
    int count = 0;
    while (std::fgets(line, sizeof(line), lines) != nullptr) {
        ++count;
        const std::string text = line;
        EXPECT_EQ(text, "ERROR operator(): " + std::string(200, text[18]) + "\n");
    }
    std::fclose(lines);
    EXPECT_EQ(count, 200);
}

bool isRefused(const void *self)
{
    return ZUV_PRECONDITION(Test, 0x10, self == nullptr, "self == ((void *)0)");
}

TEST_F(Log, aFailedPreconditionIsFatalAndNamesItsCondition)
{
    const LogCapture log;
    EXPECT_TRUE(isRefused(nullptr));
    EXPECT_FALSE(isRefused(&log));
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: self == ((void *)0)"}}));
    EXPECT_EQ(log.lines().at(0).level, ZUV_LOG_BIT_FATAL);
    EXPECT_EQ(log.lines().at(0).function, "isRefused");
}

TEST_F(Log, aFailedPreconditionIsMarkedWhenATestWantsToKnow)
{
    const LogCapture log;
    isRefused(nullptr);
    EXPECT_EQ(ZUVLog_g_preconditionDetected, 0);
    ZUVLog_g_detectPrecondition = 1;
    isRefused(&log);
    EXPECT_EQ(ZUVLog_g_preconditionDetected, 0);
    isRefused(nullptr);
    EXPECT_EQ(ZUVLog_g_preconditionDetected, 1);
}

TEST_F(Log, aFailedPreconditionPassesTheDebuggersPlace)
{
    const LogCapture log;
    breakpointPasses = 0;
    isRefused(&log);
    EXPECT_EQ(breakpointPasses, 0);
    isRefused(nullptr);
    EXPECT_EQ(breakpointPasses, 1);
    TestLog_g_instrumentationMask = 0;
    isRefused(nullptr);
    EXPECT_EQ(breakpointPasses, 2);
}

TEST_F(Log, aSilentPreconditionStillFails)
{
    const LogCapture log;
    ZUVLog_g_detectPrecondition = 1;
    TestLog_g_instrumentationMask = 0;
    EXPECT_TRUE(isRefused(nullptr));
    EXPECT_EQ(ZUVLog_g_preconditionDetected, 1);
    EXPECT_TRUE(log.isEmpty());
}

TEST(DDSLog, showsFatalMessagesAndExceptionsFromTheStart)
{
    const LogCapture log;
    ZUV_LOG(DDS, ZUV_LOG_BIT_FATAL, DDS_SUBMODULE_TYPES, &ZUV_LOG_ANY_s, "fatal");
    ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API, &ZUV_LOG_ANY_s, "exception");
    ZUV_LOG(DDS, ZUV_LOG_BIT_WARNING, DDS_SUBMODULE_API, &ZUV_LOG_ANY_s, "warning");
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"fatal", "exception"}));
    EXPECT_EQ(DDS_SUBMODULE_API, 16u);
}

TEST(LogLevels, haveTheirBits)
{
    const std::vector<std::uint32_t> bits(std::begin(ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL),
                                          std::end(ZUV_LOG_INSTRUMENT_BIT_FROM_LOG_LEVEL));
    EXPECT_EQ(bits, (std::vector<std::uint32_t>{0, 1, 2, 4, 8, 16}));
    EXPECT_EQ(ZUV_LOG_INSTRUMENT_BITS_ABOVE_LOG_LEVELS, 0x1e0u);
}

} // namespace
