#include "Account.h"

#include <array>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace responder
{
namespace
{

constexpr std::size_t kLongestQuoted = 256;

const char *nameOf(ZUV_Service_Admin_CommandActionKind action)
{
    constexpr std::array names = {"CREATE_ACTION", "GET_ACTION", "UPDATE_ACTION", "DELETE_ACTION"};
    const auto index = static_cast<std::size_t>(action);
    return index < names.size() ? names[index] : "unknown action";
}

// FNV-1a, to see that a text too long to be shown arrived as it was sent.
std::uint64_t checksum(std::string_view text)
{
    std::uint64_t sum = 0xcbf29ce484222325;
    for (const char character : text) {
        sum = (sum ^ static_cast<unsigned char>(character)) * 0x100000001b3;
    }
    return sum;
}

std::string format(const char *pattern, unsigned long long first, unsigned long long second = 0)
{
    std::array<char, 96> buffer;
    std::snprintf(buffer.data(), buffer.size(), pattern, first, second);
    return buffer.data();
}

// The text between single quotes, with what cannot be printed as escapes.
std::string quote(const char *nullable)
{
    const std::string_view text = nullable != nullptr ? nullable : "";
    if (text.size() > kLongestQuoted) {
        return format("%llu characters with checksum %016llx", text.size(), checksum(text));
    }
    std::string quoted = "'";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\n') {
            quoted += "\\n";
        } else if (byte < 32 || byte >= 127) {
            quoted += format("\\x%02llx", byte);
        } else {
            quoted += character;
        }
    }
    return quoted + "'";
}

std::string describeOctets(const DDS_OctetSeq &octets)
{
    const auto length = static_cast<std::size_t>(DDS_OctetSeq_get_length(&octets));
    const auto *bytes = reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&octets));
    if (length == 0) {
        return "no octets";
    }
    const std::string_view text(bytes, length);
    if (text.starts_with(ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME) && text.back() == '\0') {
        return "tag " + quote(bytes);
    }
    return format("%llu octets", length);
}

} // namespace

std::string describe(const ZUV_Service_Admin_CommandRequest &request)
{
    const std::string target =
        request.application_name != nullptr ? quote(request.application_name) : "nobody by name";
    return std::string(nameOf(request.action)) + " for " + target + ", resource " +
           quote(request.resource_identifier) + ", body " + quote(request.string_body) + ", " +
           describeOctets(request.octet_body);
}

} // namespace responder
