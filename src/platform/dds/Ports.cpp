#include "Ports.hpp"

#include <algorithm>
#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <set>
#include <string>

#include <unistd.h>

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

constexpr std::uint32_t kFirstDataPort =
    61000; // behind those that systems give to whoever asks for any
constexpr std::uint32_t kGreatestPort = 65000; // some are left for the search of a free one

// Whether somebody listens at a port in shared memory, or was killed while it did. The middleware keeps a locked file
// for that time, which a killed process leaves behind.
bool isPortTaken(std::uint32_t port)
{
    const std::string path = "/dev/shm/fastrtps_port" + std::to_string(port) + "_el";
    return access(path.c_str(), F_OK) == 0;
}

// One of the range that begins there, from a random one on, so that those who start at once meet rarely. When two do, the
// later one finds the port locked, and the middleware goes on to the next. Beyond the range when all of it is taken.
std::uint32_t chooseDataPort(std::uint32_t first)
{
    const std::uint32_t offset = randomBetween(0, kDataPortCount - 1);
    for (std::uint32_t index = 0; index < kDataPortCount; ++index) {
        const std::uint32_t port = first + (offset + index) % kDataPortCount;
        if (!isPortTaken(port)) {
            return port;
        }
    }
    return randomBetween(first + kDataPortCount, kGreatestPort);
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

void useDataPort(DDS_Long domainId, eprosima::fastdds::dds::DomainParticipantQos &qos)
{
    // The middleware counts the participants of a process, and adds to the port for each.
    static std::atomic<std::uint32_t> madeCount{0};
    const std::uint32_t made = madeCount.fetch_add(1);

    auto &ports = qos.wire_protocol().port;
    const std::uint32_t base =
        ports.portBase + ports.domainIDGain * static_cast<std::uint32_t>(domainId);
    const std::uint32_t least = base + ports.participantIDGain * made + ports.offsetd3;
    const std::uint32_t first = std::max(least, kFirstDataPort);
    if (staysOnThisMachine(qos.transport()) && first + kDataPortCount <= kGreatestPort) {
        const std::uint32_t port = chooseDataPort(first);
        ports.offsetd3 = static_cast<std::uint16_t>(ports.offsetd3 + port - least);
    }
}

} // namespace zuv::dds
