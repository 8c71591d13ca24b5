// Large texts.
#ifndef ZUV_TESTS_SUPPORT_REPEATED_H
#define ZUV_TESTS_SUPPORT_REPEATED_H

#include <cstddef>
#include <string>
#include <string_view>

namespace zuv_test
{

constexpr std::size_t kTenMegabytes = 10 * 1024 * 1024;

inline std::string repeated(std::string_view text, std::size_t count)
{
    std::string result;
    result.reserve(text.size() * count);
    for (std::size_t index = 0; index < count; ++index) {
        result += text;
    }
    return result;
}

} // namespace zuv_test

#endif
