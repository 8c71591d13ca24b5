#include "LogCapture.h"

#include <algorithm>

namespace zuv_test
{
namespace
{

bool isLink(const LogLine &line, const LogLink &link)
{
    return line.message == link.message && line.text == link.text;
}

testing::AssertionResult mismatch(const std::vector<LogLine> &lines,
                                  std::initializer_list<LogLink> chain)
{
    auto result = testing::AssertionFailure() << "expected:\n";
    for (const LogLink &link : chain) {
        result << "  " << (link.message != nullptr ? "" : "(no template) ") << link.text << '\n';
    }
    result << "logged:\n";
    for (const LogLine &line : lines) {
        result << "  " << line.function << ": " << (line.message != nullptr ? "" : "(no template) ")
               << line.text << '\n';
    }
    return result << "(a line that looks equal has another template)";
}

} // namespace

LogCapture::LogCapture()
{
    ZUVLog_setSink(&LogCapture::sink, this);
}

LogCapture::~LogCapture()
{
    ZUVLog_setSink(nullptr, nullptr);
}

std::vector<LogLine> LogCapture::lines() const
{
    const std::lock_guard lock(mutex_);
    return lines_;
}

std::vector<std::string> LogCapture::texts() const
{
    std::vector<std::string> texts;
    for (LogLine &line : lines()) {
        texts.push_back(std::move(line.text));
    }
    return texts;
}

void LogCapture::clear()
{
    const std::lock_guard lock(mutex_);
    lines_.clear();
}

testing::AssertionResult LogCapture::isExactly(std::initializer_list<LogLink> chain) const
{
    const std::vector<LogLine> caught = lines();
    if (std::equal(caught.begin(), caught.end(), chain.begin(), chain.end(), isLink)) {
        return testing::AssertionSuccess();
    }
    return mismatch(caught, chain);
}

testing::AssertionResult LogCapture::holds(std::initializer_list<LogLink> chain) const
{
    const std::vector<LogLine> caught = lines();
    if (std::search(caught.begin(), caught.end(), chain.begin(), chain.end(), isLink) !=
            caught.end() ||
        chain.size() == 0) {
        return testing::AssertionSuccess();
    }
    return mismatch(caught, chain);
}

void LogCapture::sink(void *self, const ZUVLogRecord *record)
{
    auto *capture = static_cast<LogCapture *>(self);
    const std::lock_guard lock(capture->mutex_);
    capture->lines_.push_back({record->level, record->moduleId, record->submodule,
                               record->function != nullptr ? record->function : "", record->message,
                               record->text != nullptr ? record->text : ""});
}

} // namespace zuv_test
