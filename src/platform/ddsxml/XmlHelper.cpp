#include "platform/ddsxml/XmlHelper.h"

#include <charconv>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "platform/mavo/String.h"
#include "platform/osapi/Time.h"

namespace
{

struct Name {
    std::string_view text;
    std::int64_t value;
};

constexpr Name kSignedNames[] = {
    {"LENGTH_UNLIMITED", DDS_LENGTH_UNLIMITED},
    {"LENGTH_AUTO", DDS_LENGTH_AUTO},
    {"AUTO_MAX_TOTAL_INSTANCES", DDS_AUTO_MAX_TOTAL_INSTANCES},
    {"DURATION_INFINITE_SEC", DDS_DURATION_INFINITE_SEC},
    {"DURATION_ZERO_SEC", DDS_DURATION_ZERO_SEC},
};
constexpr Name kUnsignedNames[] = {
    {"DURATION_INFINITE_NSEC", DDS_DURATION_INFINITE_NSEC},
    {"DURATION_ZERO_NSEC", DDS_DURATION_ZERO_NSEC},
};

std::string_view trim(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool isEqual(std::string_view left, std::string_view right)
{
    return left.size() == right.size() &&
           MAVOString_inCompare(left.data(), right.data(), left.size()) == 0;
}

// The sign may stand before a hexadecimal number, too.
bool readNumber(std::string_view text, std::int64_t &value)
{
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    int base = 10;
    if (text.starts_with("0x") || text.starts_with("0X")) {
        base = 16;
        text.remove_prefix(2);
    }
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
    value = isNegative ? -std::int64_t{number} : std::int64_t{number};
    return error == std::errc() && end == text.data() + text.size();
}

bool read(std::string_view text, std::span<const Name> names, std::int64_t &value)
{
    constexpr std::string_view kPrefix = "DDS_";
    text = trim(text);
    std::string_view bare = text;
    if (isEqual(text.substr(0, kPrefix.size()), kPrefix)) {
        bare.remove_prefix(kPrefix.size());
    }
    for (const Name &name : names) {
        if (isEqual(bare, name.text)) {
            value = name.value;
            return true;
        }
    }
    return readNumber(text, value);
}

template <typename Number>
Number numberOf(DDS_XMLContext &context, const char *text, std::span<const Name> names)
{
    std::int64_t value = 0;
    if (!read(text, names, value) || value < std::numeric_limits<Number>::min() ||
        value > std::numeric_limits<Number>::max()) {
        context.error = 1;
        return 0;
    }
    return static_cast<Number>(value);
}

} // namespace

extern "C" {

DDS_Long DDS_XMLHelper_str_to_int(DDS_XMLContext *context, const char *text)
{
    return numberOf<DDS_Long>(*context, text, kSignedNames);
}

DDS_UnsignedLong DDS_XMLHelper_str_to_unsigned_int(DDS_XMLContext *context, const char *text)
{
    return numberOf<DDS_UnsignedLong>(*context, text, kUnsignedNames);
}
}
