#include "QosTransport.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fastdds/dds/domain/qos/DomainParticipantQos.hpp>
#include <fastdds/rtps/transport/UDPv4TransportDescriptor.h>
#include <fastdds/rtps/transport/UDPv6TransportDescriptor.h>
#include <fastdds/rtps/transport/shared_mem/SharedMemTransportDescriptor.h>
#include <fastrtps/utils/IPLocator.h>

#include "Report.hpp"

namespace zuv::dds
{
namespace
{

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
namespace transport = eprosima::fastdds::rtps;

using Descriptor = std::shared_ptr<transport::TransportDescriptorInterface>;

struct TransportKind {
    const char *name;
    DDS_TransportBuiltinKindMask bit;
    std::int32_t locatorKind;
    bool (*isOne)(const transport::TransportDescriptorInterface &);
};

template <typename T>
bool isOne(const transport::TransportDescriptorInterface &descriptor)
{
    return dynamic_cast<const T *>(&descriptor) != nullptr;
}

constexpr TransportKind kKinds[] = {
    {"UDPv4", DDS_TRANSPORTBUILTIN_UDPv4, LOCATOR_KIND_UDPv4,
     isOne<transport::UDPv4TransportDescriptor>},
    {"UDPv6", DDS_TRANSPORTBUILTIN_UDPv6, LOCATOR_KIND_UDPv6,
     isOne<transport::UDPv6TransportDescriptor>},
    {"SHMEM", DDS_TRANSPORTBUILTIN_SHMEM, LOCATOR_KIND_SHM,
     isOne<transport::SharedMemTransportDescriptor>},
};

// The transports one by one, where the profile only says "the usual ones".
std::vector<Descriptor> &spelledOut(fast::TransportConfigQos &transports)
{
    if (transports.use_builtin_transports) {
        transports.use_builtin_transports = false;
        auto udp = std::make_shared<transport::UDPv4TransportDescriptor>();
        udp->sendBufferSize = transports.send_socket_buffer_size;
        udp->receiveBufferSize = transports.listen_socket_buffer_size;
        transports.user_transports.push_back(udp);
        transports.user_transports.push_back(
            std::make_shared<transport::SharedMemTransportDescriptor>());
    }
    return transports.user_transports;
}

void removeLocators(fast::WireProtocolConfigQos &protocol, std::int32_t kind)
{
    for (rtps::LocatorList_t *const list :
         {&protocol.builtin.metatrafficUnicastLocatorList,
          &protocol.builtin.metatrafficMulticastLocatorList, &protocol.builtin.initialPeersList,
          &protocol.default_unicast_locator_list, &protocol.default_multicast_locator_list}) {
        rtps::LocatorList_t rest;
        for (const rtps::Locator_t &locator : *list) {
            if (locator.kind != kind) {
                rest.push_back(locator);
            }
        }
        *list = rest;
    }
}

template <typename T, typename Set>
void forEachOf(std::vector<Descriptor> &descriptors, Set &&set)
{
    for (const Descriptor &descriptor : descriptors) {
        if (auto *const one = dynamic_cast<T *>(descriptor.get())) {
            set(*one);
        }
    }
}

using Udp = transport::UDPv4TransportDescriptor;
using SharedMemory = transport::SharedMemTransportDescriptor;

struct TransportProperty {
    const char *name;
    void (*set)(std::vector<Descriptor> &descriptors, std::uint32_t value);
};

constexpr TransportProperty kProperties[] = {
    {"dds.transport.UDPv4.send_socket_buffer_size",
     [](std::vector<Descriptor> &all, std::uint32_t value) {
         forEachOf<Udp>(all, [value](Udp &udp) { udp.sendBufferSize = value; });
     }},
    {"dds.transport.UDPv4.recv_socket_buffer_size",
     [](std::vector<Descriptor> &all, std::uint32_t value) {
         forEachOf<Udp>(all, [value](Udp &udp) { udp.receiveBufferSize = value; });
     }},
    {"dds.transport.UDPv4.message_size_max",
     [](std::vector<Descriptor> &all, std::uint32_t value) {
         forEachOf<Udp>(all, [value](Udp &udp) { udp.maxMessageSize = value; });
     }},
    {"dds.transport.shmem.segment_size",
     [](std::vector<Descriptor> &all, std::uint32_t value) {
         forEachOf<SharedMemory>(all, [value](SharedMemory &one) { one.segment_size(value); });
     }},
    {"dds.transport.shmem.message_size_max",
     [](std::vector<Descriptor> &all, std::uint32_t value) {
         forEachOf<SharedMemory>(all, [value](SharedMemory &one) { one.max_message_size(value); });
     }},
};

// "[udpv4://]ADDRESS[:PORT]"
std::optional<rtps::Locator_t> peerOf(std::string_view text)
{
    constexpr std::string_view kScheme = "udpv4://";
    if (text.starts_with(kScheme)) {
        text.remove_prefix(kScheme.size());
    }
    rtps::Locator_t locator;
    locator.kind = LOCATOR_KIND_UDPv4;
    locator.port = 0; // the middleware tries the first ones of the domain
    const std::size_t colon = text.find(':');
    if (colon != std::string_view::npos) {
        const std::string port(text.substr(colon + 1));
        locator.port = positiveNumber(port.c_str());
        if (locator.port == 0 || locator.port > UINT16_MAX) {
            return std::nullopt;
        }
    }
    const std::string address(text.substr(0, colon));
    if (!rtps::IPLocator::isIPv4(address) || !rtps::IPLocator::setIPv4(locator, address)) {
        return std::nullopt;
    }
    return locator;
}

} // namespace

std::uint32_t positiveNumber(const char *text)
{
    if (text == nullptr) {
        return 0;
    }
    std::uint32_t number = 0;
    const char *const end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, number);
    return result.ec == std::errc() && result.ptr == end && number <= INT32_MAX ? number : 0;
}

void mapTransports(const DDS_TransportBuiltinQosPolicy &from, fast::DomainParticipantQos &to)
{
    if (from.mask == DDS_TRANSPORTBUILTIN_MASK_DEFAULT) {
        return;
    }
    std::vector<Descriptor> &descriptors = spelledOut(to.transport());
    for (const TransportKind &kind : kKinds) {
        const auto isOfKind = [&](const Descriptor &one) { return kind.isOne(*one); };
        if ((from.mask & kind.bit) == 0) {
            std::erase_if(descriptors, isOfKind);
            removeLocators(to.wire_protocol(), kind.locatorKind);
        } else if (std::none_of(descriptors.begin(), descriptors.end(), isOfKind)) {
            ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE,
                                    "use %s: the profile of the participant has no such transport",
                                    kind.name);
        }
    }
}

void mapTransportProperties(const DDS_PropertyQosPolicy &from, fast::DomainParticipantQos &to)
{
    for (const TransportProperty &property : kProperties) {
        const DDS_Property_t *const given =
            DDS_PropertyQosPolicyHelper_lookup_property(&from, property.name);
        if (given == nullptr) {
            continue;
        }
        const std::uint32_t value = positiveNumber(given->value);
        if (value == 0) {
            ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "set %s: no positive number",
                                    property.name);
        } else {
            property.set(spelledOut(to.transport()), value);
        }
    }
}

void mapPeers(const DDS_DiscoveryQosPolicy &from, fast::DomainParticipantQos &to)
{
    rtps::LocatorList_t peers;
    for (DDS_Long index = 0; index < DDS_StringSeq_get_length(&from.initial_peers); ++index) {
        const char *const text = DDS_StringSeq_get(&from.initial_peers, index);
        const std::optional<rtps::Locator_t> peer = peerOf(text == nullptr ? "" : text);
        if (peer.has_value()) {
            peers.push_back(*peer);
        } else {
            ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "use the initial peer \"%s\"",
                                    text == nullptr ? "" : text);
        }
    }
    if (!peers.empty()) {
        to.wire_protocol().builtin.initialPeersList = peers;
    }
}

} // namespace zuv::dds
