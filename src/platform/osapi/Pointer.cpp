#include "platform/osapi/Pointer.h"

#include <charconv>
#include <cstdint>
#include <string_view>

extern "C" void *ZUVOsapiUtility_strtoptr(const char *text)
{
    constexpr std::string_view kPrefix = "0x";
    const std::string_view whole = text != nullptr ? text : "";
    if (!whole.starts_with(kPrefix)) {
        return nullptr;
    }
    const char *const end = whole.data() + whole.size();
    uintptr_t address = 0;
    const auto [rest, error] = std::from_chars(whole.data() + kPrefix.size(), end, address, 16);
    return error == std::errc() && rest == end ? reinterpret_cast<void *>(address) : nullptr;
}
