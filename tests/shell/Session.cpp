#include "Session.h"

#include <cstdlib>
#include <fstream>
#include <stdexcept>

#include <unistd.h>

#include "support/Loopback.h"

namespace zuv_test
{
namespace
{

std::vector<std::string> inDomain(std::vector<std::string> command,
                                  const std::vector<std::string> &arguments)
{
    command.insert(command.end(), {"-domainId", std::to_string(loopbackDomainId())});
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

} // namespace

std::vector<std::string> shellCommand(const std::vector<std::string> &arguments)
{
    // Whatever domain the arguments name, it stays on this machine.
    static_cast<void>(loopbackDomainId());
    std::vector<std::string> command = {ZUVBSH};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

std::vector<std::string> responderCommand(const std::vector<std::string> &arguments)
{
    return inDomain({RESPONDER}, arguments);
}

Responder::Responder(const std::vector<std::string> &arguments)
    : Process(responderCommand(arguments))
{
    if (!waitForOutput("ready\n")) {
        throw std::runtime_error("the responder did not start: " + errors());
    }
}

Session::Session(int timeoutSeconds, const ProcessOptions &options)
    : Process(inDomain({ZUVBSH}, {"-timeout", std::to_string(timeoutSeconds)}), options)
{
    if (!waitForOutput(kPrompt)) {
        throw std::runtime_error("the shell did not start: " + errors());
    }
}

void Session::signalWhileReading(int number)
{
    watch(Duration{100});
    signal(number);
}

std::optional<std::string> Session::run(std::string_view line, Duration patience)
{
    if (!write(std::string(line) + "\n", patience)) {
        return std::nullopt;
    }
    return outputUntil(kPrompt, patience);
}

std::string startLine(int domainId, int timeoutSeconds)
{
    return "Domain id " + std::to_string(domainId) + ", timeout " + std::to_string(timeoutSeconds) +
           "\n";
}

TemporaryFile::TemporaryFile(std::string_view content)
{
    char path[] = "/tmp/zuv-test-XXXXXX";
    const int file = mkstemp(path);
    if (file < 0) {
        throw std::runtime_error("no temporary file");
    }
    close(file);
    path_ = path;
    std::ofstream(path_, std::ios::binary) << content;
}

TemporaryFile::~TemporaryFile()
{
    unlink(path_.c_str());
}

ProcessResult runCommandFile(std::string_view content, int timeoutSeconds)
{
    const TemporaryFile file(content);
    return runProcess(
        inDomain({ZUVBSH}, {"-timeout", std::to_string(timeoutSeconds), "-cmdFile", file.path()}));
}

} // namespace zuv_test
