// A session of zuvbsh as a test sees it, and the services that it talks to.
#ifndef ZUV_TESTS_SHELL_SESSION_H
#define ZUV_TESTS_SHELL_SESSION_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "support/Files.h"
#include "support/Process.h"

namespace zuv_test
{

inline constexpr std::string_view kPrompt = "ZUV Brel Service > ";

// The path of zuvbsh and `arguments` behind it.
std::vector<std::string> shellCommand(const std::vector<std::string> &arguments = {});

// The example service, in the domain of the test. It says "ready" when it listens.
std::vector<std::string> responderCommand(const std::vector<std::string> &arguments = {});

// A running example service.
class Responder : public Process
{
public:
    explicit Responder(const std::vector<std::string> &arguments = {});
};

// An interactive shell in the domain of the test, through pipes unless `options` say otherwise.
class Session : public Process
{
public:
    explicit Session(int timeoutSeconds, const ProcessOptions &options = {});

    // Give both ends the time to find each other.
    void letDiscover() { watch(Duration{1000}); }

    // A prompt is seen a moment before the shell awaits input, and only what awaits is interrupted.
    void signalWhileReading(int number);

    // Type a line, and get what the shell says before it prompts again; nothing when it does not prompt.
    std::optional<std::string> run(std::string_view line, Duration patience = kPatience);
};

// The first line that a shell prints.
std::string startLine(int domainId, int timeoutSeconds);

// A file that is gone with the object.
class TemporaryFile
{
public:
    explicit TemporaryFile(std::string_view content);
    ~TemporaryFile();
    TemporaryFile(const TemporaryFile &) = delete;
    TemporaryFile &operator=(const TemporaryFile &) = delete;

    const std::string &path() const { return path_; }

private:
    std::string path_;
};

// What the shell prints for a command file with this content, from its first byte to its last.
ProcessResult runCommandFile(std::string_view content, int timeoutSeconds);

} // namespace zuv_test

#endif
