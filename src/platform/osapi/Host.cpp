#include "platform/osapi/Host.h"

#include <climits>
#include <cstdio>
#include <string_view>

#include <arpa/inet.h>
#include <ifaddrs.h>
#include <net/if.h>
#include <netinet/in.h>
#include <unistd.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/Utility.h"

namespace
{

constexpr size_t kHostNameSize = HOST_NAME_MAX + 1;
constexpr const char *kMachineIdFile = "/etc/machine-id";

// 0 when there is none.
uint32_t firstAddress()
{
    ifaddrs *interfaces = nullptr;
    if (getifaddrs(&interfaces) != 0) {
        return 0;
    }
    uint32_t address = 0;
    for (const ifaddrs *each = interfaces; each != nullptr && address == 0; each = each->ifa_next) {
        const bool counts = each->ifa_addr != nullptr && each->ifa_addr->sa_family == AF_INET &&
                            (each->ifa_flags & IFF_UP) != 0 &&
                            (each->ifa_flags & IFF_LOOPBACK) == 0;
        if (counts) {
            address = ntohl(reinterpret_cast<const sockaddr_in *>(each->ifa_addr)->sin_addr.s_addr);
        }
    }
    freeifaddrs(interfaces);
    return address;
}

// FNV-1a, of 32 bits.
uint32_t digest(std::string_view text)
{
    uint32_t hash = 0x811c9dc5;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x01000193;
    }
    return hash;
}

uint32_t machineDigest()
{
    char identity[kHostNameSize] = "";
    size_t length = 0;
    if (FILE *file = std::fopen(kMachineIdFile, "re"); file != nullptr) {
        length = std::fread(identity, 1, sizeof(identity), file);
        std::fclose(file);
    }
    if (length == 0 && ZUVOsapiHost_getHostName(identity, sizeof(identity)) != 0) {
        length = std::string_view(identity).size();
    }
    return digest({identity, length});
}

} // namespace

extern "C" {

int ZUVOsapiHost_getHostName(char *name, size_t limit)
{
    char whole[kHostNameSize];
    if (ZUV_OSAPI_FAULT("host.name") || gethostname(whole, sizeof(whole)) != 0) {
        return 0;
    }
    return ZUVOsapiUtility_strcpy(name, limit, whole) != nullptr;
}

uint32_t ZUVOsapiHost_getId(void)
{
    static const uint32_t id = [] {
        const uint32_t address = firstAddress();
        return address != 0 ? address : machineDigest();
    }();
    return id;
}
}
