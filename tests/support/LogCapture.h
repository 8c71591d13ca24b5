// Catches what the code under test logs, so that a failure can be asserted with its whole chain of reports.
#ifndef ZUV_TESTS_SUPPORT_LOG_CAPTURE_H
#define ZUV_TESTS_SUPPORT_LOG_CAPTURE_H

#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/Log.h"

namespace zuv_test
{

// A log record whose texts outlive the call to the sink.
struct LogLine {
    std::uint32_t level = 0;
    std::uint32_t moduleId = 0;
    std::uint32_t submodule = 0;
    std::string function;
    const ZUVLogMessage *message = nullptr; // null for a line printed with a format of its own
    std::string text;
};

// One link of an expected chain. A null message means a line without a template.
struct LogLink {
    const ZUVLogMessage *message;
    std::string_view text;
};

// While an instance lives it is the process's log sink; nothing reaches standard error. One at a time.
class LogCapture
{
public:
    LogCapture();
    ~LogCapture();
    LogCapture(const LogCapture &) = delete;
    LogCapture &operator=(const LogCapture &) = delete;

    // A copy of all lines caught so far, oldest first. Callable from any thread.
    std::vector<LogLine> lines() const;
    // The texts alone, for a failure message or a quick comparison.
    std::vector<std::string> texts() const;
    void clear();

    // Use with EXPECT_TRUE: the lines caught are these and no others, in this order.
    testing::AssertionResult isExactly(std::initializer_list<LogLink> chain) const;
    // The lines caught hold these one directly behind the other; lines before and behind are ignored.
    testing::AssertionResult holds(std::initializer_list<LogLink> chain) const;
    testing::AssertionResult isEmpty() const { return isExactly({}); }

private:
    static void sink(void *self, const ZUVLogRecord *record);

    mutable std::mutex mutex_;
    std::vector<LogLine> lines_;
};

} // namespace zuv_test

#endif
