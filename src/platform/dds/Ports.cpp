#include "Ports.hpp"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>

#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/UDPTransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>

namespace zuv::dds
{
namespace
{

std::mutex slotMutex;
std::map<DDS_Long, std::set<int>> slotsOfDomains;

namespace transport = eprosima::fastdds::rtps;

bool staysOnThisMachine(const eprosima::fastdds::dds::TransportConfigQos &transports)
{
    if (transports.use_builtin_transports) {
        return false;
    }
    const auto &list = transports.user_transports;
    return std::all_of(list.begin(), list.end(), [](const auto &descriptor) {
        if (dynamic_cast<const transport::SharedMemTransportDescriptor *>(descriptor.get())) {
            return true;
        }
        const auto *const udp =
            dynamic_cast<const transport::UDPTransportDescriptor *>(descriptor.get());
        return udp != nullptr && udp->interfaceWhiteList.size() == 1 &&
               udp->interfaceWhiteList.front() == "127.0.0.1";
    });
}

std::uint32_t randomBetween(std::uint32_t least, std::uint32_t greatest)
{
    static std::mutex mutex;
    static std::mt19937 generator{std::random_device{}()};
    const std::lock_guard lock(mutex);
    return std::uniform_int_distribution<std::uint32_t>(least, greatest)(generator);
}

} // namespace

int reservePortSlot(DDS_Long domainId)
{
    const std::lock_guard lock(slotMutex);
    std::set<int> &slots = slotsOfDomains[domainId];
    int slot = 0;
    while (!slots.insert(slot).second) {
        ++slot;
    }
    return slot;
}

void releasePortSlot(DDS_Long domainId, int slot)
{
    const std::lock_guard lock(slotMutex);
    slotsOfDomains[domainId].erase(slot);
}

void useDiscoveryPort(DDS_Long domainId, int slot,
                      eprosima::fastdds::dds::DomainParticipantQos &qos)
{
    auto &protocol = qos.wire_protocol();
    const std::uint32_t port = protocol.port.getUnicastPort(static_cast<std::uint32_t>(domainId),
                                                            static_cast<std::uint32_t>(slot));
    for (auto &locator : protocol.builtin.metatrafficUnicastLocatorList) {
        if (locator.kind == LOCATOR_KIND_UDPv4 && locator.port == 0) {
            locator.port = port;
        }
    }
}

void useFreshDataPort(DDS_Long domainId, eprosima::fastdds::dds::DomainParticipantQos &qos)
{
    constexpr std::uint32_t kGreatestPort = 65000; // some are left for the search of a free one
    constexpr std::uint32_t kLeastChoice = 1000;
    // The middleware counts the participants of a process, and adds to the port for each.
    static std::atomic<std::uint32_t> madeCount{0};
    const std::uint32_t made = madeCount.fetch_add(1);

    auto &ports = qos.wire_protocol().port;
    const std::uint32_t base =
        ports.portBase + ports.domainIDGain * static_cast<std::uint32_t>(domainId);
    const std::uint32_t least = base + ports.participantIDGain * made + ports.offsetd3;
    if (staysOnThisMachine(qos.transport()) && least + kLeastChoice <= kGreatestPort) {
        const std::uint32_t port = randomBetween(least, kGreatestPort);
        ports.offsetd3 = static_cast<std::uint16_t>(ports.offsetd3 + port - least);
    }
}

} // namespace zuv::dds
