#include "Reports.h"

#include "platform/log/Sink.h"

namespace service
{
namespace
{

// More is in the log; a reply is to be read.
constexpr std::size_t kLongest = 8192;

thread_local Reports *t_reports = nullptr;

} // namespace

void Reports::install()
{
    ZUVLog_setSink(onRecord, nullptr);
}

Reports::Reports() : outer_(t_reports)
{
    t_reports = this;
}

Reports::~Reports()
{
    t_reports = outer_;
}

void Reports::onRecord(void *, const ZUVLogRecord *record)
{
    ZUVLog_writeToStandardError(nullptr, record);
    constexpr std::uint32_t kFailures = ZUV_LOG_BIT_FATAL | ZUV_LOG_BIT_EXCEPTION;
    if (t_reports == nullptr || (record->level & kFailures) == 0) {
        return;
    }
    std::string &text = t_reports->text_;
    if (text.size() < kLongest) {
        text += text.empty() ? "" : "\n";
        text += record->text;
    }
}

} // namespace service
