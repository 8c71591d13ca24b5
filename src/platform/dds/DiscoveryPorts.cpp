#include "DiscoveryPorts.hpp"

#include <map>
#include <mutex>
#include <set>

#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>

namespace zuv::dds
{
namespace
{

std::mutex slotMutex;
std::map<DDS_Long, std::set<int>> slotsOfDomains;

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

} // namespace zuv::dds
