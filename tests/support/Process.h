// A program run by a test: started through pipes or on a pseudo terminal of its own, fed, watched, signalled.
#ifndef ZUV_TESTS_SUPPORT_PROCESS_H
#define ZUV_TESTS_SUPPORT_PROCESS_H

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace zuv_test
{

struct ProcessOptions {
    // Standard input and output are a terminal; without it they are pipes. Standard error is a pipe always.
    bool onTerminal = false;
    // Signals that are ignored when the program starts.
    std::vector<int> ignoredSignals = {};
    // "NAME=value", over the environment of the test.
    std::vector<std::string> environment = {};
    // Where it runs; empty: where the test does.
    std::string directory = {};
};

// Dies with the test, at the latest. For one thread.
class Process
{
public:
    using Duration = std::chrono::milliseconds;
    static constexpr Duration kPatience{20000};

    // `command` is the program's path and its arguments.
    explicit Process(const std::vector<std::string> &command, const ProcessOptions &options = {});
    ~Process();
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    // Write to the standard input, reading what the program says meanwhile. False when it takes no more.
    bool write(std::string_view text, Duration patience = kPatience);
    // End of file for the program's standard input; not on a terminal.
    void closeInput();
    // Nobody reads the program's standard output any more; not on a terminal.
    void closeOutput();
    // The terminal goes away, with nobody to read or write any more.
    void hangUp();

    // Read until the output behind the last match holds `text`, or the errors do; a match moves past it.
    bool waitForOutput(std::string_view text, Duration patience = kPatience);
    bool waitForError(std::string_view text, Duration patience = kPatience);
    // As waitForOutput, giving what stands between the last match and this one.
    std::optional<std::string> outputUntil(std::string_view text, Duration patience = kPatience);
    // Read whatever comes for a while.
    void watch(Duration duration);

    // Everything read so far. A terminal turns each new line into "\r\n"; here it is "\n" again.
    const std::string &output() const { return output_.text; }
    const std::string &errors() const { return errors_.text; }

    void signal(int number) const;
    // As typed on the terminal, 3 being Ctrl-C and 4 Ctrl-D.
    bool typeControl(char character) { return write({&character, 1}); }

    // The exit status, read to the end of the output; 128 plus its number after a deadly signal; nothing
    // when the program still runs.
    std::optional<int> wait(Duration patience = kPatience);
    bool isRunning() { return !wait(Duration{0}).has_value(); }
    pid_t id() const { return id_; }

private:
    using Clock = std::chrono::steady_clock;

    struct Stream {
        int file = -1;
        std::string text;
        std::size_t matched = 0;
    };

    [[noreturn]] void runChild(const std::vector<std::string> &command,
                               const ProcessOptions &options, const int *input, const int *output,
                               const int *errors) const;
    bool waitFor(Stream &stream, std::string_view text, Duration patience);
    // Read what is there within `patience`; true when there may be more.
    bool pump(Duration patience);
    void readInto(Stream &stream);
    bool isOpen() const { return output_.file >= 0 || errors_.file >= 0; }

    bool onTerminal_;
    pid_t id_ = -1;
    int input_ = -1;
    Stream output_;
    Stream errors_;
    std::optional<int> status_;
};

// Run to the end with the given standard input.
struct ProcessResult {
    std::optional<int> status;
    std::string output;
    std::string errors;
};
ProcessResult runProcess(const std::vector<std::string> &command, std::string_view input = {},
                         const ProcessOptions &options = {},
                         Process::Duration patience = Process::kPatience);

} // namespace zuv_test

#endif
