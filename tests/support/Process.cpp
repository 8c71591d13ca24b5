#include "Process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace zuv_test
{
namespace
{

constexpr Process::Duration kTick{20};

void require(bool isGood, const char *what)
{
    if (!isGood) {
        throw std::system_error(errno, std::generic_category(), what);
    }
}

void closeFile(int &file)
{
    if (file >= 0) {
        close(file);
        file = -1;
    }
}

// A terminal that echoes nothing, so that the output is the program's alone.
void openTerminal(int &controller, int &terminal)
{
    require(openpty(&controller, &terminal, nullptr, nullptr, nullptr) == 0, "openpty");
    termios mode;
    require(tcgetattr(terminal, &mode) == 0, "tcgetattr");
    mode.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    require(tcsetattr(terminal, TCSANOW, &mode) == 0, "tcsetattr");
    fcntl(controller, F_SETFD, FD_CLOEXEC);
}

std::vector<char *> pointersTo(const std::vector<std::string> &texts)
{
    std::vector<char *> pointers;
    for (const std::string &text : texts) {
        pointers.push_back(const_cast<char *>(text.c_str()));
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace

Process::Process(const std::vector<std::string> &command, const ProcessOptions &options)
    : onTerminal_(options.onTerminal)
{
    // [0] is the reading end. On a terminal both ends of input and output are the same two files.
    std::array<int, 2> input{};
    std::array<int, 2> output{};
    std::array<int, 2> errors{};
    require(pipe2(errors.data(), O_CLOEXEC) == 0, "pipe");
    if (onTerminal_) {
        openTerminal(input[1], input[0]);
        output = {fcntl(input[1], F_DUPFD_CLOEXEC, 0), dup(input[0])};
    } else {
        require(pipe2(input.data(), O_CLOEXEC) == 0 && pipe2(output.data(), O_CLOEXEC) == 0,
                "pipe");
    }

    id_ = fork();
    require(id_ >= 0, "fork");
    if (id_ == 0) {
        runChild(command, options, input.data(), output.data(), errors.data());
    }
    close(input[0]);
    close(output[1]);
    close(errors[1]);
    input_ = input[1];
    output_.file = output[0];
    errors_.file = errors[0];
    for (const int file : {input_, output_.file, errors_.file}) {
        fcntl(file, F_SETFL, fcntl(file, F_GETFL) | O_NONBLOCK);
    }
    std::signal(SIGPIPE, SIG_IGN);
}

Process::~Process()
{
    if (!status_) {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }
    closeFile(input_);
    closeFile(output_.file);
    closeFile(errors_.file);
}

void Process::runChild(const std::vector<std::string> &command, const ProcessOptions &options,
                       const int *input, const int *output, const int *errors) const
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(input[0], STDIN_FILENO);
    dup2(output[1], STDOUT_FILENO);
    dup2(errors[1], STDERR_FILENO);
    if (onTerminal_) {
        setsid();
        ioctl(STDIN_FILENO, TIOCSCTTY, 0);
        close(input[0]);
        close(output[1]);
    }
    std::signal(SIGPIPE, SIG_DFL);
    for (const int number : options.ignoredSignals) {
        std::signal(number, SIG_IGN);
    }
    if (!options.directory.empty() && chdir(options.directory.c_str()) != 0) {
        std::perror(options.directory.c_str());
        std::_Exit(127);
    }
    for (const std::string &variable : options.environment) {
        putenv(const_cast<char *>(variable.c_str()));
    }
    execv(command.front().c_str(), pointersTo(command).data());
    std::perror(command.front().c_str());
    std::_Exit(127);
}

bool Process::write(std::string_view text, Duration patience)
{
    const auto deadline = Clock::now() + patience;
    while (!text.empty() && input_ >= 0) {
        const ssize_t count = ::write(input_, text.data(), text.size());
        if (count > 0) {
            text.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno != EAGAIN || Clock::now() >= deadline) {
            return false;
        } else {
            pump(kTick);
        }
    }
    return text.empty();
}

void Process::closeInput()
{
    closeFile(input_);
}

void Process::closeOutput()
{
    closeFile(output_.file);
}

void Process::hangUp()
{
    closeInput();
    closeOutput();
}

bool Process::waitForOutput(std::string_view text, Duration patience)
{
    return waitFor(output_, text, patience);
}

std::optional<std::string> Process::outputUntil(std::string_view text, Duration patience)
{
    const std::size_t start = output_.matched;
    if (!waitFor(output_, text, patience)) {
        return std::nullopt;
    }
    return output_.text.substr(start, output_.matched - text.size() - start);
}

bool Process::waitForError(std::string_view text, Duration patience)
{
    return waitFor(errors_, text, patience);
}

bool Process::waitFor(Stream &stream, std::string_view text, Duration patience)
{
    const auto deadline = Clock::now() + patience;
    for (;;) {
        const std::size_t found = stream.text.find(text, stream.matched);
        if (found != std::string::npos) {
            stream.matched = found + text.size();
            return true;
        }
        const auto left = std::chrono::duration_cast<Duration>(deadline - Clock::now());
        if (left.count() <= 0 || !pump(left)) {
            return false;
        }
    }
}

void Process::watch(Duration duration)
{
    const auto deadline = Clock::now() + duration;
    for (auto left = duration; left.count() > 0;
         left = std::chrono::duration_cast<Duration>(deadline - Clock::now())) {
        if (!pump(left)) {
            return;
        }
    }
}

void Process::signal(int number) const
{
    kill(id_, number);
}

std::optional<int> Process::wait(Duration patience)
{
    const auto deadline = Clock::now() + patience;
    while (!status_) {
        int status = 0;
        if (waitpid(id_, &status, WNOHANG) == id_) {
            status_ = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            while (isOpen() && pump(Duration{0})) {
            }
        } else if (Clock::now() >= deadline) {
            break;
        } else if (!pump(kTick)) {
            // Both outputs are closed: nothing more to wait for than the end itself.
            poll(nullptr, 0, static_cast<int>(kTick.count()));
        }
    }
    return status_;
}

bool Process::pump(Duration patience)
{
    std::array<pollfd, 2> files{{{output_.file, POLLIN, 0}, {errors_.file, POLLIN, 0}}};
    if (!isOpen()) {
        return false;
    }
    const int ready = poll(files.data(), files.size(), static_cast<int>(patience.count()));
    if (ready <= 0) {
        return patience.count() > 0;
    }
    if (files[0].revents != 0) {
        readInto(output_);
    }
    if (files[1].revents != 0) {
        readInto(errors_);
    }
    return isOpen();
}

void Process::readInto(Stream &stream)
{
    std::array<char, 65536> bytes;
    const ssize_t count = read(stream.file, bytes.data(), bytes.size());
    if (count > 0) {
        for (ssize_t index = 0; index < count; ++index) {
            if (!onTerminal_ || bytes[index] != '\r') {
                stream.text += bytes[index];
            }
        }
    } else if (count == 0 || errno != EAGAIN) {
        // A terminal without a program on it gives EIO.
        closeFile(stream.file);
    }
}

ProcessResult runProcess(const std::vector<std::string> &command, std::string_view input,
                         const ProcessOptions &options, Process::Duration patience)
{
    Process process(command, options);
    process.write(input, patience);
    process.closeInput();
    const auto status = process.wait(patience);
    return {status, process.output(), process.errors()};
}

} // namespace zuv_test
