#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <csignal>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Domain.h"
#include "platform/dds/Ports.hpp"
#include "support/Process.h"

// In shared memory a port is a file, and a locked file beside it as long as somebody listens.
namespace
{

using zuv_test::AnswerType;
using zuv_test::eventually;
using zuv_test::Link;

constexpr const char *kPortPrefix = "/dev/shm/fastrtps_port";
constexpr const char *kLockSuffix = "_el";

// The ports that this process has open, to listen or to send.
std::set<std::string> mappedPorts()
{
    std::set<std::string> ports;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        const std::size_t found = line.find(kPortPrefix);
        if (found != line.npos) {
            ports.insert(line.substr(found));
        }
    }
    return ports;
}

// The locked files of a process.
std::set<std::string> listeningPorts(const std::string &process = "self")
{
    std::set<std::string> ports;
    for (const auto &file : std::filesystem::directory_iterator("/proc/" + process + "/fd")) {
        std::error_code error;
        const std::string path = std::filesystem::read_symlink(file, error).string();
        if (path.starts_with(kPortPrefix) && path.ends_with(kLockSuffix)) {
            ports.insert(path);
        }
    }
    return ports;
}

bool isSharedMemoryCrowded()
{
    std::size_t count = 0;
    for (const auto &file : std::filesystem::directory_iterator("/dev/shm")) {
        const std::string path = file.path().string();
        count += path.starts_with(kPortPrefix) && path.ends_with(kLockSuffix) ? 1 : 0;
    }
    return count > zuv::dds::kDataPortCount / 2;
}

// A participant that is gone without having left.
class KilledParticipant
{
public:
    KilledParticipant()
    {
        zuv_test::Process probe(
            {SOCKET_PROBE, std::to_string(zuv_test::loopbackDomainId()), "stay"});
        EXPECT_TRUE(eventually([&] {
            const auto ports = listeningPorts(std::to_string(probe.id()));
            lock_ = ports.empty() ? "" : *ports.begin();
            return !ports.empty();
        }));
        probe.signal(SIGKILL);
        probe.wait();
        file_ = lock_.substr(0, lock_.size() - std::string(kLockSuffix).size());
        number_ = numberOfFile();
    }
    ~KilledParticipant()
    {
        unlink(lock_.c_str());
        unlink(file_.c_str());
    }
    KilledParticipant(const KilledParticipant &) = delete;
    KilledParticipant &operator=(const KilledParticipant &) = delete;

    // Whether nobody has put another file in its place.
    bool isLeftAlone() const { return number_ != 0 && numberOfFile() == number_; }

private:
    ino_t numberOfFile() const
    {
        struct stat status = {};
        return stat(file_.c_str(), &status) == 0 ? status.st_ino : 0;
    }

    std::string lock_;
    std::string file_;
    ino_t number_ = 0;
};

TEST(Ports, stayFewForWhoSendsToManyThatComeAndGo)
{
    if (isSharedMemoryCrowded()) {
        GTEST_SKIP() << "killed processes have left too much in /dev/shm";
    }
    constexpr int kRounds = 60;
    constexpr int kAtOnce = 6;
    static_assert(kRounds * kAtOnce > zuv::dds::kDataPortCount + kAtOnce);
    const std::vector<KilledParticipant> killed(4);
    Link<AnswerType> link;
    for (int round = 0; round < kRounds; ++round) {
        std::vector<Link<AnswerType>> others(kAtOnce);
        const auto matches = [&] {
            DDS_PublicationMatchedStatus status = {};
            DDS_DataWriter_get_publication_matched_status(link.writer, &status);
            return status.current_count;
        };
        ASSERT_TRUE(eventually([&] { return matches() == kAtOnce + 1; })) << matches();
        ASSERT_EQ(write(link.writer, zuv_test::Answer(round)), DDS_RETCODE_OK);
        for (Link<AnswerType> &other : others) {
            ASSERT_TRUE(other.waitForData());
        }
    }
    const std::size_t count = mappedPorts().size();
    EXPECT_GT(count, kAtOnce);
    EXPECT_LE(count, zuv::dds::kDataPortCount);
    for (const KilledParticipant &one : killed) {
        EXPECT_TRUE(one.isLeftAlone());
    }
}

TEST(Ports, belongToOneEachHoweverManyStartAtOnce)
{
    constexpr int kThreads = 8;
    constexpr int kEach = 5;
    const std::size_t before = listeningPorts().size();
    std::vector<DDS_DomainParticipant *> participants(kThreads * kEach);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&participants, thread] {
            for (int index = 0; index < kEach; ++index) {
                participants[static_cast<std::size_t>(thread * kEach + index)] =
                    zuv_test::joinDomain();
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(listeningPorts().size() - before, participants.size());
    for (DDS_DomainParticipant *const participant : participants) {
        zuv_test::leaveDomain(participant);
    }
    EXPECT_EQ(listeningPorts().size(), before);
}

} // namespace
