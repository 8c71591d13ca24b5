// Nothing that a program does without an operator's word may leave the machine.
#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>

#include "Domain.h"
#include "platform/dds/EntityImpl.hpp"
#include "platform/dds/Loopback.hpp"
#include "support/Loopback.h"
#include "support/Process.h"

namespace
{

namespace fast = eprosima::fastdds::dds;
namespace transport = eprosima::fastdds::rtps;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

constexpr char kLoopbackInProc[] = "0100007F"; // 127.0.0.1
constexpr char kAllHostsGroup[] = "010000E0";  // 224.0.0.1, which every interface is in

struct Traces {
    std::vector<std::string> udp, igmp, shm, shmLeft;
};

Traces tracesOf(const std::string &output)
{
    Traces traces;
    std::istringstream lines(output);
    std::string kind, value;
    bool hasLeft = false;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        fields >> kind >> value;
        hasLeft = hasLeft || kind == "left";
        if (kind == "udp") {
            traces.udp.push_back(value);
        } else if (kind == "igmp") {
            traces.igmp.push_back(value);
        } else if (kind == "shm") {
            (hasLeft ? traces.shmLeft : traces.shm).push_back(value);
        }
    }
    return traces;
}

// Run the probe in a network of its own, so that the groups are those that it joined.
Traces probe(const std::string &environment, const std::string &directory = {})
{
    zuv_test::Process process({"/usr/bin/unshare", "--net", "--map-root-user", "/bin/sh", "-c",
                               "ip link set lo up 2>/dev/null || exit 77; exec " SOCKET_PROBE " 7"},
                              {.environment = {environment}, .directory = directory});
    const std::optional<int> status = process.wait();
    EXPECT_EQ(status, 0) << process.output() << process.errors();
    return tracesOf(process.output());
}

void expectLoopbackAlone(const Traces &traces)
{
    EXPECT_THAT(traces.udp, AllOf(Not(IsEmpty()), Each(kLoopbackInProc)));
    EXPECT_THAT(traces.igmp, Each(kAllHostsGroup));
    EXPECT_THAT(traces.shm, Not(IsEmpty()));
    EXPECT_THAT(traces.shmLeft, IsEmpty());
}

TEST(Loopback, isWhereAParticipantStaysWithoutAProfile)
{
    expectLoopbackAlone(probe("FASTRTPS_DEFAULT_PROFILES_FILE="));
}

TEST(Loopback, isWhereAParticipantStaysWithTheLoopbackProfile)
{
    expectLoopbackAlone(probe("FASTRTPS_DEFAULT_PROFILES_FILE=" EXAMPLE_PROFILES "/loopback.xml"));
}

TEST(Loopback, isWhereAParticipantStaysWhenTheProfileIsMissing)
{
    expectLoopbackAlone(probe("FASTRTPS_DEFAULT_PROFILES_FILE=/nowhere/profile.xml"));
}

TEST(Loopback, isLeftOnlyByTheProfileThatSaysSo)
{
    const Traces traces = probe("FASTRTPS_DEFAULT_PROFILES_FILE=" EXAMPLE_PROFILES "/network.xml");
    EXPECT_THAT(traces.udp, testing::Contains("00000000"));
    EXPECT_THAT(traces.igmp, testing::Contains(Not(std::string(kAllHostsGroup))));
}

// The participant of the tests themselves has the loopback profile: what that says must be in force.
TEST(Loopback, profileReachesTheParticipantWithTheSizesThatTheRoomHasToo)
{
    ASSERT_GE(zuv_test::loopbackDomainId(), 0);
    DDS_DomainParticipant *const participant = zuv_test::joinDomain();
    ASSERT_NE(participant, nullptr);
    fast::DomainParticipantQos builtIn;
    ASSERT_TRUE(zuv::dds::applyLoopbackUnlessConfigured(builtIn));

    for (const fast::DomainParticipantQos *qos :
         {static_cast<const fast::DomainParticipantQos *>(&builtIn),
          &participant->fast->get_qos()}) {
        EXPECT_FALSE(qos->transport().use_builtin_transports);
        ASSERT_EQ(qos->transport().user_transports.size(), 2U);
        const auto sharedMemory =
            std::dynamic_pointer_cast<transport::SharedMemTransportDescriptor>(
                qos->transport().user_transports[0]);
        ASSERT_NE(sharedMemory, nullptr);
        EXPECT_EQ(sharedMemory->segment_size(), 8U << 20);
        EXPECT_EQ(sharedMemory->healthy_check_timeout_ms(), 240U);
        EXPECT_EQ(sharedMemory->max_message_size(), 2U << 20);
        const auto udp = std::dynamic_pointer_cast<transport::UDPv4TransportDescriptor>(
            qos->transport().user_transports[1]);
        ASSERT_NE(udp, nullptr);
        EXPECT_THAT(udp->interfaceWhiteList, ElementsAre("127.0.0.1"));
        EXPECT_EQ(udp->maxInitialPeersRange, 64U);
        EXPECT_EQ(udp->sendBufferSize, 4U << 20);
        EXPECT_EQ(udp->receiveBufferSize, 4U << 20);
        const auto &builtin = qos->wire_protocol().builtin;
        EXPECT_EQ(builtin.discovery_config.leaseDuration.seconds, 5);
        EXPECT_EQ(builtin.discovery_config.leaseDuration_announcementperiod.nanosec, 500000000U);
        EXPECT_TRUE(builtin.metatrafficMulticastLocatorList.empty());
    }
    zuv_test::leaveDomain(participant);
}

TEST(Loopback, leavesAConfiguredQosAlone)
{
    fast::DomainParticipantQos qos;
    qos.name("configured");
    EXPECT_FALSE(zuv::dds::applyLoopbackUnlessConfigured(qos));
    EXPECT_TRUE(qos.transport().use_builtin_transports);
}

} // namespace
