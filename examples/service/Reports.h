// What the libraries report while a command is carried out. An operator gets it as the reason of a refusal; the log
// gets it as ever.
#ifndef ZUV_EXAMPLES_SERVICE_REPORTS_H
#define ZUV_EXAMPLES_SERVICE_REPORTS_H

#include <string>

#include "log/Log.h"

// Refuse a command for a reason: SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s, word);
#define SERVICE_REFUSAL(...)                                                                       \
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE, __VA_ARGS__)

// With a text that has arguments of its own, as printf has it.
#define SERVICE_REFUSAL_TEXT(...)                                                                  \
    ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE,                           \
                     &ZUV_LOG_FAILURE_TEMPLATE, __VA_ARGS__)

namespace service
{

// Collects the failures that its thread reports while it lives. One within another takes its place for that time.
class Reports
{
public:
    // Once in the process, before the first is made.
    static void install();

    Reports();
    ~Reports();
    Reports(const Reports &) = delete;
    Reports &operator=(const Reports &) = delete;

    // One line for each report, the cause first.
    const std::string &text() const { return text_; }

private:
    static void onRecord(void *, const ZUVLogRecord *record);

    Reports *outer_;
    std::string text_;
};

} // namespace service

#endif
