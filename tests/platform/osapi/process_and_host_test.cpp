#include <cstring>
#include <string>

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Host.h"
#include "platform/osapi/Process.h"

namespace
{

TEST(Process, hasTheNumberThatTheSystemGaveIt)
{
    EXPECT_EQ(ZUVOsapiProcess_getId(), static_cast<uint64_t>(getpid()));
}

TEST(Process, ofAChildHasANumberOfItsOwn)
{
    const uint64_t parent = ZUVOsapiProcess_getId();
    const pid_t child = fork();
    if (child == 0) {
        _exit(ZUVOsapiProcess_getId() == parent ? 1 : 0);
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(HostName, isTheOneOfTheSystem)
{
    char expected[256];
    ASSERT_EQ(gethostname(expected, sizeof(expected)), 0);
    char name[256] = "before";
    EXPECT_EQ(ZUVOsapiHost_getHostName(name, sizeof(name)), 1);
    EXPECT_STREQ(name, expected);

    const size_t exact = std::strlen(expected) + 1;
    std::string tight(exact, '#');
    EXPECT_EQ(ZUVOsapiHost_getHostName(tight.data(), exact), 1);
    EXPECT_STREQ(tight.c_str(), expected);
}

TEST(HostName, thatDoesNotFitLeavesTheTextAlone)
{
    char expected[256];
    ASSERT_EQ(gethostname(expected, sizeof(expected)), 0);
    char name[256] = "before";
    EXPECT_EQ(ZUVOsapiHost_getHostName(name, std::strlen(expected)), 0);
    EXPECT_EQ(ZUVOsapiHost_getHostName(name, 0), 0);
    EXPECT_STREQ(name, "before");
}

TEST(HostName, thatIsNotKnownLeavesTheTextAlone)
{
    char name[256] = "before";
    ZUVOsapiFault_arm("host.name", 1, 0);
    EXPECT_EQ(ZUVOsapiHost_getHostName(name, sizeof(name)), 0);
    EXPECT_STREQ(name, "before");
}

TEST(HostId, isTheSameForAllProcesses)
{
    const uint32_t id = ZUVOsapiHost_getId();
    EXPECT_NE(id, 0U);
    EXPECT_EQ(ZUVOsapiHost_getId(), id);
    EXPECT_NE(id, 0x7f000001U) << "a loopback address tells no host from another";
}

} // namespace
