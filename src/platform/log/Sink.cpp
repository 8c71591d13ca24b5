#include "platform/log/Sink.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <mutex>
#include <string_view>

#include <unistd.h>

namespace
{

// A line in the making, in memory of its own. What does not fit is left out.
class Line
{
public:
    void append(std::string_view text)
    {
        const size_t count = std::min(text.size(), sizeof(characters_) - 1 - length_);
        std::transform(text.begin(), text.begin() + count, characters_ + length_, printable);
        length_ += count;
    }

    void write(int file)
    {
        characters_[length_] = '\n';
        ssize_t written;
        do {
            written = ::write(file, characters_, length_ + 1);
        } while (written < 0 && errno == EINTR);
    }

private:
    // A text may come from the network: it shall not start lines or steer the terminal.
    static char printable(char character)
    {
        const auto code = static_cast<unsigned char>(character);
        return code < ' ' || code == 0x7f ? ' ' : character;
    }

    char characters_[PIPE_BUF]; // as much as one write to a pipe keeps together
    size_t length_ = 0;
};

std::string_view levelName(uint32_t level)
{
    static constexpr struct {
        uint32_t bit;
        std::string_view name;
    } kNames[] = {{ZUV_LOG_BIT_FATAL, "FATAL"},
                  {ZUV_LOG_BIT_EXCEPTION, "ERROR"},
                  {ZUV_LOG_BIT_WARNING, "WARNING"},
                  {ZUV_LOG_BIT_INFORMATION, "INFO"}};
    for (const auto &[bit, name] : kNames) {
        if ((level & bit) != 0) {
            return name;
        }
    }
    return "DEBUG";
}

std::mutex g_mutex;
ZUVLogSink g_sink = ZUVLog_writeToStandardError;
void *g_sinkData = nullptr;
thread_local bool t_isInSink = false;

} // namespace

extern "C" {

void ZUVLog_writeToStandardError(void *, const ZUVLogRecord *record)
{
    Line line;
    line.append(levelName(record->level));
    line.append(" ");
    line.append(record->function);
    line.append(": ");
    line.append(record->text);
    line.write(STDERR_FILENO);
}

void ZUVLog_setSink(ZUVLogSink sink, void *sinkData)
{
    const std::lock_guard lock(g_mutex);
    g_sink = sink != nullptr ? sink : ZUVLog_writeToStandardError;
    g_sinkData = sinkData;
}

void ZUVLog_emitI(const ZUVLogRecord *record)
{
    if (t_isInSink) {
        return;
    }
    const std::lock_guard lock(g_mutex);
    t_isInSink = true;
    g_sink(g_sinkData, record);
    t_isInSink = false;
}
}
