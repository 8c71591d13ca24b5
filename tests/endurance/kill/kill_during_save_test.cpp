// A service that is killed while it saves: the file is the one before or the one after, and whole.
#include <csignal>
#include <memory>
#include <random>
#include <thread>

#include <gtest/gtest.h>

#include "endurance/Service.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "support/Eventually.h"
#include "support/Loopback.h"

namespace zuv_test
{
namespace
{

using Clock = std::chrono::steady_clock;

constexpr int kRouteCount = 400;
constexpr int kKills = 12;

class KillDuringSave : public testing::Test
{
protected:
    KillDuringSave()
    {
        folder_.write("S.xml", documentOf("S", path_, kRouteCount));
        EXPECT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
    }
    ~KillDuringSave() override
    {
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
        if (client_ != nullptr) {
            BRELRemoteConfigClient_delete(client_);
        }
    }

    // The service that runs what the file holds, and a client that has known no other.
    void start(const std::vector<std::string> &environment = {})
    {
        ProcessOptions options;
        options.environment = environment;
        service_ = std::make_unique<Process>(serviceCommand("S", path_), options);
        ASSERT_TRUE(service_->waitForOutput("ready\n")) << service_->errors();
        client_ = BRELRemoteConfigClient_new(loopbackDomainId(), 10);
        ASSERT_NE(client_, nullptr);
        ASSERT_TRUE(
            eventually([&] { return BRELRemoteConfigClient_hasMatchingServer(client_) != 0; }));
    }
    // Kill the service, unless it is dead.
    void bury()
    {
        if (service_->isRunning()) {
            service_->signal(SIGKILL);
        }
        EXPECT_EQ(service_->wait(), 128 + SIGKILL);
        BRELRemoteConfigClient_delete(client_);
        client_ = nullptr;
    }

    std::string send(ZUV_Service_Admin_CommandActionKind action, const char *resource,
                     const std::string &body = "", const char *octets = nullptr)
    {
        ZUV_Service_Admin_CommandRequest request = {};
        request.action = action;
        request.resource_identifier = const_cast<char *>(resource);
        request.string_body = const_cast<char *>(body.c_str());
        DDS_OctetSeq_ensure_length(&request.octet_body, 0, 0);
        if (octets != nullptr) {
            const auto size = static_cast<DDS_Long>(std::char_traits<char>::length(octets) + 1);
            DDS_OctetSeq_ensure_length(&request.octet_body, size, size);
            std::copy_n(octets, size, DDS_OctetSeq_get_contiguous_buffer(&request.octet_body));
        }
        const int isAnswered =
            BRELRemoteConfigClient_sendCommandRequest(client_, &reply_, "S", &request, 1);
        DDS_OctetSeq_finalize(&request.octet_body);
        return isAnswered ? reply_.string_body : "(none)";
    }
    // As a save writes it: the answer leaves out the end of the last line.
    std::string document()
    {
        return send(ZUV_Service_Admin_CommandActionKind_GET_ACTION, "") + "\n";
    }
    void change(int round)
    {
        const std::string snippet =
            "str://\"<topic_route><entity_monitoring><status_publication_period><sec>" +
            std::to_string(round + 1) +
            "</sec></status_publication_period></entity_monitoring></topic_route>\"";
        const std::string answer =
            send(ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION, "dr::s::t0", snippet);
        EXPECT_TRUE(answer.starts_with("updated")) << answer;
    }
    std::string save()
    {
        return send(ZUV_Service_Admin_CommandActionKind_CREATE_ACTION, "", "", "resource://config");
    }

    TemporaryFolder folder_;
    std::string path_ = folder_.path("S.xml");
    std::unique_ptr<Process> service_;
    BRELRemoteConfigClient *client_ = nullptr;
    ZUV_Service_Admin_CommandReply reply_;
};

TEST_F(KillDuringSave, atAnyTimeLeavesTheFormerFileOrTheNewOne)
{
    std::mt19937 random(7);
    start();
    change(0);
    const auto begin = Clock::now();
    ASSERT_TRUE(save().starts_with("saved"));
    const auto needed = Clock::now() - begin;
    int newOnes = 0;
    for (int kill = 1; kill <= kKills; ++kill) {
        SCOPED_TRACE(kill);
        change(kill);
        const std::string before = contentOf(path_);
        const std::string after = document();
        ASSERT_NE(before, after);
        // Nobody waits for the answer of this one.
        client_->_ignoreReply = 1;
        save();
        client_->_ignoreReply = 0;
        std::this_thread::sleep_for(
            std::chrono::nanoseconds(std::uniform_int_distribution<std::int64_t>(
                0, std::chrono::nanoseconds(needed * 3 / 2).count())(random)));
        bury();
        const std::string left = contentOf(path_);
        EXPECT_TRUE(left == before || left == after) << left.size() << " octets are left";
        newOnes += left == after ? 1 : 0;
        start();
    }
    std::printf("%d of %d files are new\n", newOnes, kKills);
    bury();
}

TEST_F(KillDuringSave, atEachCallOfItLeavesTheFormerFileOrTheNewOne)
{
    int deaths = 0;
    int newOnes = 0;
    for (bool isKilled = true; isKilled; deaths += isKilled ? 1 : 0) {
        SCOPED_TRACE(deaths + 1);
        start({"LD_PRELOAD=" KILL_AT, "ZUV_KILL_AT=" + std::to_string(deaths + 1),
               "ASAN_OPTIONS=verify_asan_link_order=0:new_delete_type_mismatch=0"});
        change(deaths);
        const std::string before = contentOf(path_);
        const std::string after = document();
        client_->_ignoreReply = 1;
        save();
        client_->_ignoreReply = 0;
        // It dies, or answers again.
        isKilled =
            service_->wait(std::chrono::milliseconds(300)).has_value() || document() != after;
        const std::string left = contentOf(path_);
        EXPECT_TRUE(left == before || left == after) << left.size() << " octets are left";
        EXPECT_TRUE(isKilled || left == after);
        newOnes += left == after ? 1 : 0;
        bury();
    }
    std::printf("killed at %d calls, %d files are new\n", deaths, newOnes);
    // Opening, writing, syncing, closing and renaming at least.
    EXPECT_GE(deaths, 5);
    EXPECT_EQ(newOnes, 3) << "killed behind the renaming, then at closing, and not killed";
    EXPECT_EQ(folder_.files(), std::vector<std::string>{"S.xml"})
        << "the last save clears away what killed ones have left";
}

} // namespace
} // namespace zuv_test
