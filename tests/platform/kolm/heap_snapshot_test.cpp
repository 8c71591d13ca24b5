#include "platform/kolm/HeapSnapshot.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"

namespace
{

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class HeapSnapshot : public testing::Test
{
protected:
    HeapSnapshot() { EXPECT_NE(mkdtemp(folder_), nullptr); }
    ~HeapSnapshot() override { std::filesystem::remove_all(folder_); }

    std::string path() const { return std::string(folder_) + "/snapshot.log"; }
    std::string content() const
    {
        std::ostringstream text;
        text << std::ifstream(path()).rdbuf();
        return text.str();
    }

    char folder_[32] = "/tmp/zuv_snapshot_XXXXXX";
};

TEST_F(HeapSnapshot, tellsTheCountersOfTheHeap)
{
    ZUVOsapiHeapStatistics statistics;
    ZUVOsapiHeap_getStatistics(&statistics);
    ASSERT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 0), 1);
    std::ostringstream expected;
    expected << "process\t" << getpid() << "\nlive blocks\t" << statistics.liveBlockCount
             << "\nlive bytes\t" << statistics.liveByteCount << "\npeak bytes\t"
             << statistics.peakByteCount << "\nallocations\t" << statistics.allocationCount << "\n";
    EXPECT_EQ(content(), expected.str());
}

TEST_F(HeapSnapshot, tellsWhatIsAlivePerTagIfAsked)
{
    void *const block = ZUVOsapiHeap_allocate(123, "snapshot test");
    ASSERT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 1), 1);
    EXPECT_THAT(content(), HasSubstr("\nblocks\tbytes\ttag\n"));
    EXPECT_THAT(content(), HasSubstr("\n1\t123\tsnapshot test\n"));
    ZUVOsapiHeap_free(block);
    ASSERT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 1), 1);
    EXPECT_THAT(content(), Not(HasSubstr("snapshot test")));
}

TEST_F(HeapSnapshot, replacesTheFile)
{
    std::ofstream(path()) << std::string(100000, 'x');
    ASSERT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 0), 1);
    EXPECT_THAT(content(), StartsWith("process\t"));
    EXPECT_THAT(content(), Not(HasSubstr("x")));
}

TEST_F(HeapSnapshot, thatCannotBeWrittenTellsWhy)
{
    errno = 0;
    EXPECT_EQ(KOLM_Utility_take_heap_snapshot((path() + "/nowhere").c_str(), 1), 0);
    EXPECT_EQ(errno, ENOENT);
    errno = 0;
    EXPECT_EQ(KOLM_Utility_take_heap_snapshot("/dev/full", 1), 0);
    EXPECT_EQ(errno, ENOSPC);
}

TEST_F(HeapSnapshot, failsAtItsFaultPoints)
{
    for (const char *const point : {"heap_snapshot.open", "heap_snapshot.write"}) {
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 1), 0) << point;
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U) << point;
    }
    EXPECT_EQ(KOLM_Utility_take_heap_snapshot(path().c_str(), 1), 1);
}

} // namespace
