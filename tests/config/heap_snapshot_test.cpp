#include "config/HeapSnapshot.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "support/LogCapture.h"

namespace
{

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

struct ParsedName {
    std::string start;
    long long process;
    long long number;
};

ParsedName parse(const std::string &name)
{
    static const std::regex form("(.*)_([0-9]+)_([0-9]+)\\.log");
    std::smatch parts;
    EXPECT_TRUE(std::regex_match(name, parts, form)) << name;
    return {parts[1], std::stoll(parts[2]), std::stoll(parts[3])};
}

class HeapSnapshotLoop : public testing::Test
{
protected:
    HeapSnapshotLoop()
    {
        BRELLog_setUp();
        EXPECT_NE(mkdtemp(folder_), nullptr);
    }
    ~HeapSnapshotLoop() override { std::filesystem::remove_all(folder_); }

    std::string name(const ZUV_BrelServiceHeapMonitorProperty &property) const
    {
        char text[256];
        EXPECT_EQ(BRELUtils_getHeapSnapshotName(&property, text, sizeof(text)), 1);
        return text;
    }
    long fileCount() const
    {
        return std::distance(std::filesystem::directory_iterator(folder_), {});
    }

    char folder_[32] = "/tmp/zuv_snapshots_XXXXXX";
    const ZUV_BrelServiceHeapMonitorProperty property_ = {folder_, "test", 300};
    int exitLoop_ = 0;
};

TEST_F(HeapSnapshotLoop, isNamedForItsFolderNameProcessAndNumber)
{
    const ParsedName first = parse(name({"/var/log", "service", 0}));
    EXPECT_EQ(first.start, "/var/log/ZUV_heap_service");
    EXPECT_EQ(first.process, getpid());
    EXPECT_EQ(parse(name({"/tmp", "other", 0})).number, first.number + 1);
    EXPECT_EQ(parse(name({nullptr, nullptr, 0})).start, "./ZUV_heap_");
}

TEST_F(HeapSnapshotLoop, hasANameThatFits)
{
    const std::string first = name(property_);
    const auto digits = [](long long number) { return std::to_string(number).size(); };
    const long long number = parse(first).number;
    const size_t length = first.size() - digits(number) + digits(number + 1);
    std::string text(length + 2, '#');
    EXPECT_EQ(BRELUtils_getHeapSnapshotName(&property_, text.data(), length + 1), 1);
    EXPECT_EQ(parse(text.c_str()).number, number + 1);
    EXPECT_EQ(text[length + 1], '#');

    const zuv_test::LogCapture log;
    EXPECT_EQ(BRELUtils_getHeapSnapshotName(&property_, text.data(), 10), 0);
    EXPECT_EQ(text.c_str(), first.substr(0, 9));
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!form heap snapshot name"}}));
}

TEST_F(HeapSnapshotLoop, takesOneAtOnceAndThenAfterEachPeriod)
{
    // With steps of 200 ms: at 0, 400 and 800 ms, and over before 1000 ms.
    const auto start = Clock::now();
    BRELUtils_executeHeapSnapshotLoop(&property_, 1, &exitLoop_);
    const auto duration = Clock::now() - start;
    EXPECT_EQ(fileCount(), 3);
    EXPECT_GE(duration, milliseconds(1000));
}

TEST_F(HeapSnapshotLoop, takesNoneWithoutAPeriod)
{
    for (const int period : {0, -1}) {
        const ZUV_BrelServiceHeapMonitorProperty property = {folder_, "test", period};
        BRELUtils_executeHeapSnapshotLoop(&property, 1, &exitLoop_);
        EXPECT_EQ(fileCount(), 0);
    }
}

TEST_F(HeapSnapshotLoop, doesNotStartWhenItIsToldToEnd)
{
    exitLoop_ = 1;
    BRELUtils_executeHeapSnapshotLoop(&property_, 0, &exitLoop_);
    EXPECT_EQ(fileCount(), 0);
}

TEST_F(HeapSnapshotLoop, endsWhenAnotherThreadSaysSo)
{
    for (const int stopAfterSec : {0, -5, 3600}) {
        exitLoop_ = 0;
        std::thread other([this] {
            std::this_thread::sleep_for(milliseconds(50));
            __atomic_store_n(&exitLoop_, 1, __ATOMIC_RELEASE);
        });
        BRELUtils_executeHeapSnapshotLoop(&property_, stopAfterSec, &exitLoop_);
        other.join();
    }
    EXPECT_EQ(fileCount(), 3);
}

TEST_F(HeapSnapshotLoop, reportsAFailureAndGoesOn)
{
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("heap_snapshot.open", 2, 0);
    BRELUtils_executeHeapSnapshotLoop(&property_, 1, &exitLoop_);
    EXPECT_EQ(fileCount(), 2);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!take heap snapshot"}}));
}

TEST_F(HeapSnapshotLoop, reportsANameThatIsTooLong)
{
    const std::string longName(1000, 'n');
    const ZUV_BrelServiceHeapMonitorProperty property = {folder_, longName.c_str(), 5000};
    const zuv_test::LogCapture log;
    BRELUtils_executeHeapSnapshotLoop(&property, 1, &exitLoop_);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!form heap snapshot name"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!take heap snapshot"}}));
    EXPECT_EQ(fileCount(), 0);
}

TEST_F(HeapSnapshotLoop, needsAPropertyAndAFlag)
{
    const zuv_test::LogCapture log;
    char text[8];
    EXPECT_EQ(BRELUtils_getHeapSnapshotName(nullptr, text, sizeof(text)), 0);
    EXPECT_EQ(BRELUtils_getHeapSnapshotName(&property_, nullptr, 8), 0);
    BRELUtils_executeHeapSnapshotLoop(nullptr, 1, &exitLoop_);
    BRELUtils_executeHeapSnapshotLoop(&property_, 1, nullptr);
    const std::string start = "!meet precondition: ";
    const std::string end = " == ((void *)0)";
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{start + "property" + end, start + "snapshotName" + end,
                                        start + "property" + end, start + "exitLoopFlag" + end}));
}

} // namespace
