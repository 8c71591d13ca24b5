// What a start of the shell costs beside the middleware alone: time from start to end, and resident memory.
// Each pair of programs runs in turns, so that both meet the same machine. startup_bench [ROUNDS]: how often a
// session is measured; help, which is short, four times as often.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/Loopback.h"
#include "support/Ratio.h"

namespace
{

using Command = std::vector<std::string>;

struct Sample {
    double milliseconds;
    double residentKibibytes;
};

struct Limit {
    double time;
    double memory;
};

// A file that holds `text`, ready to be read as standard input.
int inputHolding(const char *text)
{
    const int file = memfd_create("input", MFD_CLOEXEC);
    if (file < 0 || write(file, text, std::char_traits<char>::length(text)) < 0 ||
        lseek(file, 0, SEEK_SET) != 0) {
        bench::giveUp("no input file");
    }
    return file;
}

Sample run(const Command &command, const char *input, int expectedStatus)
{
    const int inputFile = inputHolding(input);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, inputFile, STDIN_FILENO);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    std::vector<char *> arguments;
    for (const std::string &argument : command) {
        arguments.push_back(const_cast<char *>(argument.c_str()));
    }
    arguments.push_back(nullptr);

    pid_t child = 0;
    int status = 0;
    rusage usage{};
    const auto start = std::chrono::steady_clock::now();
    if (posix_spawn(&child, arguments[0], &actions, nullptr, arguments.data(), environ) != 0 ||
        wait4(child, &status, 0, &usage) != child) {
        bench::giveUp("cannot run " + command.front());
    }
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);
    close(inputFile);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != expectedStatus) {
        bench::giveUp(command.front() + " ended in an unexpected way");
    }
    return {elapsed.count(), static_cast<double>(usage.ru_maxrss)};
}

double medianOf(const std::vector<Sample> &samples, double Sample::*field)
{
    std::vector<double> values;
    for (const Sample &sample : samples) {
        values.push_back(sample.*field);
    }
    return bench::median(std::move(values));
}

bool compare(const std::string &what, int rounds, const Command &ours, const char *input,
             int status, const Command &baseline, const Limit &limit)
{
    std::vector<Sample> oursSamples;
    std::vector<Sample> baselineSamples;
    run(ours, input, status);
    run(baseline, "", EXIT_SUCCESS);
    for (int round = 0; round < rounds; ++round) {
        oursSamples.push_back(run(ours, input, status));
        baselineSamples.push_back(run(baseline, "", EXIT_SUCCESS));
    }
    const auto isWithin = [&](const char *quantity, const char *unit, double Sample::*field,
                              double allowed) {
        return bench::printRatio(what + quantity, unit, medianOf(oursSamples, field),
                                 medianOf(baselineSamples, field), allowed);
    };
    const bool isFast = isWithin(", time", "ms", &Sample::milliseconds, limit.time);
    const bool isSmall = isWithin(", memory", "KiB", &Sample::residentKibibytes, limit.memory);
    return isFast && isSmall;
}

} // namespace

int main(int argc, char **argv)
{
    const int rounds = argc > 1 ? std::max(1, std::atoi(argv[1])) : 51;
    const std::string domain = std::to_string(zuv_test::loopbackDomainId());
    bench::printTitle("median", "zuvbsh", "bare");
    const bool isHelpGood =
        compare("-help", 4 * rounds, {ZUVBSH, "-help"}, "", 255, {BARE_LINK}, {1.1, 1.25});
    const bool isExitGood = compare("exit", rounds, {ZUVBSH, "-domainId", domain}, "exit\n",
                                    EXIT_SUCCESS, {BARE_PARTICIPANT, domain}, {1.1, 1.25});
    return isHelpGood && isExitGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
