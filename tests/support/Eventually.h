// Waiting in tests for what comes about on other threads or in other processes.
#ifndef ZUV_TESTS_SUPPORT_EVENTUALLY_H
#define ZUV_TESTS_SUPPORT_EVENTUALLY_H

#include <chrono>
#include <functional>
#include <thread>

namespace zuv_test
{

// Wait for a condition that something else brings about.
inline bool eventually(const std::function<bool()> &condition,
                       std::chrono::milliseconds patience = std::chrono::seconds(10))
{
    const auto end = std::chrono::steady_clock::now() + patience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

} // namespace zuv_test

#endif
