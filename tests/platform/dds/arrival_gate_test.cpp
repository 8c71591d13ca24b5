// What arrives for a participant that is not ready yet waits for it.
#include <chrono>
#include <cstdio>
#include <fstream>
#include <future>
#include <iterator>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/DomainParticipantFactory.hpp>
#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/TransportInterface.h>
#include <fastdds/rtps/transport/TransportReceiverInterface.h>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/UDPv6TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>

#include "Domain.h"
#include "platform/dds/ArrivalGate.hpp"
#include "platform/dds/EntityImpl.hpp"
#include "support/Process.h"

namespace
{

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
namespace transport = eprosima::fastdds::rtps;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using zuv_test::eventually;

// -- Which transports ----------------------------------------------------------------------------------------------

struct SomebodysTransport : transport::UDPv4TransportDescriptor {
};

TEST(ArrivalGate, standsBehindPlainUdpAlone)
{
    const auto udp4 = std::make_shared<transport::UDPv4TransportDescriptor>();
    udp4->interfaceWhiteList = {"127.0.0.1"};
    udp4->maxInitialPeersRange = 17;
    const auto udp6 = std::make_shared<transport::UDPv6TransportDescriptor>();
    const auto sharedMemory = std::make_shared<transport::SharedMemTransportDescriptor>();
    const auto special = std::make_shared<SomebodysTransport>();
    fast::TransportConfigQos transports;
    transports.user_transports = {udp4, udp6, sharedMemory, special};

    zuv::dds::putGateBehind(transports);

    const auto &after = transports.user_transports;
    ASSERT_EQ(after.size(), 4U);
    EXPECT_NE(after[0], udp4);
    EXPECT_NE(after[1], udp6);
    EXPECT_EQ(after[2], sharedMemory);
    EXPECT_EQ(after[3], special);
    // Whoever asks for the kind and the settings finds them.
    const auto gated = std::dynamic_pointer_cast<transport::UDPv4TransportDescriptor>(after[0]);
    ASSERT_NE(gated, nullptr);
    EXPECT_TRUE(*gated == *udp4);
    EXPECT_NE(std::dynamic_pointer_cast<transport::UDPv6TransportDescriptor>(after[1]), nullptr);
}

TEST(ArrivalGate, leavesTheTransportsThatTheMiddlewareChooses)
{
    fast::TransportConfigQos transports;
    zuv::dds::putGateBehind(transports);
    EXPECT_TRUE(transports.use_builtin_transports);
    EXPECT_THAT(transports.user_transports, IsEmpty());
}

// -- What passes ---------------------------------------------------------------------------------------------------

class Receiver : public transport::TransportReceiverInterface
{
public:
    void OnDataReceived(const rtps::octet *data, std::uint32_t size, const rtps::Locator_t &,
                        const rtps::Locator_t &) override
    {
        const std::lock_guard lock(mutex_);
        received_.emplace_back(reinterpret_cast<const char *>(data), size);
    }
    std::vector<std::string> received()
    {
        const std::lock_guard lock(mutex_);
        return received_;
    }

private:
    std::mutex mutex_;
    std::vector<std::string> received_;
};

class GatedSocket : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto udp = std::make_shared<transport::UDPv4TransportDescriptor>();
        udp->interfaceWhiteList = {"127.0.0.1"};
        fast::TransportConfigQos transports;
        transports.user_transports = {udp};
        gate_ = zuv::dds::putGateBehind(transports);
        transport_.reset(transports.user_transports[0]->create_transport());
        ASSERT_TRUE(transport_->init());
        rtps::IPLocator::setIPv4(locator_, "127.0.0.1");
        do {
            locator_.port = freePort();
        } while (!transport_->OpenInputChannel(locator_, &receiver_, 65500));
    }
    ~GatedSocket() override
    {
        if (transport_ != nullptr) {
            transport_->CloseInputChannel(locator_);
        }
    }

    void send(const std::string &text) const
    {
        const int sender = socket(AF_INET, SOCK_DGRAM, 0);
        const sockaddr_in to = addressOf(static_cast<std::uint16_t>(locator_.port));
        EXPECT_EQ(sendto(sender, text.data(), text.size(), 0,
                         reinterpret_cast<const sockaddr *>(&to), sizeof(to)),
                  static_cast<ssize_t>(text.size()));
        close(sender);
    }

    Receiver receiver_;
    std::shared_ptr<zuv::dds::ArrivalGate> gate_;
    std::unique_ptr<transport::TransportInterface> transport_;
    rtps::Locator_t locator_{LOCATOR_KIND_UDPv4, 0};

private:
    static sockaddr_in addressOf(std::uint16_t port)
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = htons(port);
        return address;
    }
    static std::uint32_t freePort()
    {
        const int probe = socket(AF_INET, SOCK_DGRAM, 0);
        sockaddr_in address = addressOf(0);
        socklen_t size = sizeof(address);
        EXPECT_EQ(bind(probe, reinterpret_cast<sockaddr *>(&address), size), 0);
        EXPECT_EQ(getsockname(probe, reinterpret_cast<sockaddr *>(&address), &size), 0);
        close(probe);
        return ntohs(address.sin_port);
    }
};

TEST_F(GatedSocket, holdsWhatArrivesAndThenPassesItInOrder)
{
    for (const char *text : {"first", "second", "third"}) {
        send(text);
    }
    std::this_thread::sleep_for(50ms);
    EXPECT_THAT(receiver_.received(), IsEmpty());
    gate_->open();
    EXPECT_TRUE(eventually([this] { return receiver_.received().size() == 3; }));
    EXPECT_THAT(receiver_.received(), ElementsAre("first", "second", "third"));
    send("fourth");
    EXPECT_TRUE(eventually([this] { return receiver_.received().size() == 4; }));
}

// As when the participant cannot be made.
TEST_F(GatedSocket, isClosedThoughTheGateNeverOpens)
{
    send("held");
    std::this_thread::sleep_for(20ms);
    auto closing =
        std::async(std::launch::async, [this] { return transport_->CloseInputChannel(locator_); });
    ASSERT_EQ(closing.wait_for(10s), std::future_status::ready);
    EXPECT_TRUE(closing.get());
}

// -- What it is for ------------------------------------------------------------------------------------------------

// Announcements that nobody asks for are a minute apart here, so only an answer tells a newcomer of a peer. It comes early:
// the newcomer goes on announcing itself, to addresses where nobody is, while the peer answers.
class Newcomer : public testing::Test
{
protected:
    Newcomer()
    {
        zuv_test::loopbackDomainId(); // names the profile that is loaded
        factory_->load_profiles();
        before_ = factory_->get_default_participant_qos();
        fast::DomainParticipantQos qos = before_;
        auto &discovery = qos.wire_protocol().builtin.discovery_config;
        discovery.leaseDuration = {200, 0};
        discovery.leaseDuration_announcementperiod = {60, 0};
        for (int last = 2; last <= 20; ++last) {
            rtps::Locator_t nobody(LOCATOR_KIND_UDPv4, 0);
            rtps::IPLocator::setIPv4(nobody, "127.0.0." + std::to_string(last));
            qos.wire_protocol().builtin.initialPeersList.push_back(nobody);
        }
        factory_->set_default_participant_qos(qos);

        std::ifstream profile(EXAMPLE_PROFILES "/loopback.xml");
        std::string text{std::istreambuf_iterator<char>(profile), {}};
        replace(text, "<sec>5</sec>", "<sec>200</sec>");
        replace(text, "<sec>0</sec>", "<sec>60</sec>");
        std::ofstream(slowProfile_) << text;
    }
    ~Newcomer() override
    {
        factory_->set_default_participant_qos(before_);
        std::remove(slowProfile_.c_str());
    }

    const std::string slowProfile_ =
        testing::TempDir() + "slow_" + std::to_string(getpid()) + ".xml";

private:
    static void replace(std::string &text, const std::string &what, const std::string &by)
    {
        const std::size_t place = text.find(what);
        ASSERT_NE(place, std::string::npos);
        text.replace(place, what.size(), by);
    }

    fast::DomainParticipantFactory *const factory_ = fast::DomainParticipantFactory::get_instance();
    fast::DomainParticipantQos before_;
};

TEST_F(Newcomer, hearsTheFirstAnswerEveryTime)
{
    zuv_test::Process peer({SOCKET_PROBE, std::to_string(zuv_test::loopbackDomainId()), "stay"},
                           {.environment = {"FASTRTPS_DEFAULT_PROFILES_FILE=" + slowProfile_}});
    ASSERT_TRUE(peer.waitForOutput("joined\n"));
    for (int count = 0; count < 20; ++count) {
        DDS_DomainParticipant *const newcomer = zuv_test::joinDomain();
        ASSERT_NE(newcomer, nullptr);
        // The first one is the newcomer itself.
        ASSERT_TRUE(
            eventually([&] { return newcomer->fast->get_participant_names().size() > 1; }, 5s))
            << "newcomer " << count;
        zuv_test::leaveDomain(newcomer);
    }
}

} // namespace
