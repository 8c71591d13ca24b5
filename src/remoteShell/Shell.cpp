#include "remoteShell/Shell.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <poll.h>
#include <unistd.h>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/kolm/Logger.h"
#include "platform/kolm/Utility.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "remoteShell/ShellParameterManager.h"

BRELShell BRELShell_g_instance = {};
int32_t BRELShell_g_terminate = 0;

namespace
{

constexpr int32_t kDefaultDomainId = 0;
constexpr int32_t kDefaultTimeoutSec = 15;

// Time for the service to be discovered before the first command of a script.
constexpr DDS_Duration_t kScriptStartPause = {3, 0};

// A standard input at its end for good, such as a closed pipe, answers at once and for ever. Reading goes
// on, but from the second fruitless read in a row with this pause, so that it takes no processor.
constexpr DDS_Duration_t kFruitlessReadPause = {0, 100000000};

void report(const ZUVLogMessage &message, const char *text,
            const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_SHELL, message, text, place);
}

// Take an option that may be missing; `value` then keeps what it holds.
bool takeParameter(BRELShellParameterManager *manager, void *value, int parameterId,
                   BRELShellParameterType type)
{
    if (!BRELShellParameterManager_getParameter(manager, value, nullptr, parameterId, type)) {
        report(ZUV_LOG_ANY_FAILURE_s, "get parameter");
        return false;
    }
    return true;
}

FILE *openCommandFile(const char *path)
{
    return ZUV_OSAPI_FAULT("shell.open_command_file") ? nullptr : std::fopen(path, "r");
}

// The input of a session, one line at a time.
class LineReader
{
public:
    explicit LineReader(FILE *input) : input_(input) {}

    bool isInteractive() const { return input_ == stdin; }

    // False when nothing was read: at the end, or when a signal interrupted.
    bool read(char *line)
    {
        errno = 0;
        if (std::fgets(line, BREL_SHELL_LINE_SIZE, input_) != nullptr) {
            fruitlessReads_ = 0;
            return true;
        }
        const bool interrupted = std::ferror(input_) != 0 && errno == EINTR;
        fruitlessReads_ = interrupted ? 0 : fruitlessReads_ + 1;
        return false;
    }

    // After a read of nothing: forget the end of file, behind which a terminal can deliver more.
    void prepareRetry()
    {
        std::clearerr(input_);
        if (fruitlessReads_ > 1) {
            KOLM_Utility_sleep(&kFruitlessReadPause);
        }
    }

    bool isAtEnd() const { return std::feof(input_) != 0; }

private:
    FILE *input_;
    int fruitlessReads_ = 0;
};

void echo(char **argv, int argc)
{
    std::for_each(argv, argv + argc, [](const char *token) { std::printf("%s ", token); });
    std::putchar('\n');
}

// Cut and execute a line that is neither empty, nor too long, nor the incomplete last one.
void executeLine(BRELShell *self, char *line)
{
    char *argv[BREL_SHELL_MAX_TOKENS];
    int argc = 0;
    BRELShell_createArgv(line, argv, &argc);
    if (argc < 1) {
        return;
    }
    if (argc > BREL_SHELL_MAX_TOKENS) {
        std::printf("Too many words in line: %d, at most %d are accepted\n", argc,
                    BREL_SHELL_MAX_TOKENS);
        return;
    }
    if (self->input != stdin) {
        echo(argv, argc);
    }
    BRELShell_parseCommand(self, argv, argc);
}

} // namespace

int BRELShell_setSignalHandler(int sig, BRELShell_sigHandler handler)
{
    struct sigaction present = {};
    if (ZUV_OSAPI_FAULT("shell.read_signal") || sigaction(sig, nullptr, &present) != 0) {
        return -1;
    }
    if (present.sa_handler == SIG_IGN) {
        return 0;
    }
    struct sigaction action = {};
    action.sa_handler = handler;
    sigfillset(&action.sa_mask);
    action.sa_flags = 0;
    return ZUV_OSAPI_FAULT("shell.set_signal") || sigaction(sig, &action, nullptr) != 0 ? -1 : 0;
}

void BRELShell_terminateWithSignal(int signum)
{
    static_cast<void>(signum);
    const int savedErrno = errno;
    // Writing to a pipe that nobody reads would raise SIGPIPE again, and this handler with it, for ever.
    struct pollfd output = {STDOUT_FILENO, POLLOUT, 0};
    const bool isDead =
        poll(&output, 1, 0) < 0 || (output.revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    if (!isDead) {
        static_cast<void>(!write(STDOUT_FILENO, "\n", 1));
    }
    errno = savedErrno;
}

int BRELShell_getCommandLineParameters(BRELShell *self, int argc, char **argv)
{
    BRELShellParameterManager *const manager = BRELShellParameterManager_new(argc, argv);
    if (manager == nullptr) {
        report(ZUV_LOG_CREATION_FAILURE_s, "parameter manager");
        return 0;
    }
    self->domainId = kDefaultDomainId;
    self->timeout = kDefaultTimeoutSec;
    const char *commandFile = nullptr;
    if (!takeParameter(manager, &self->domainId, BREL_SHELL_PARAMETER_ID_DOMAIN_ID,
                       BREL_SHELL_PARAMETER_TYPE_INT) ||
        !takeParameter(manager, &self->timeout, BREL_SHELL_PARAMETER_ID_TIMEOUT,
                       BREL_SHELL_PARAMETER_TYPE_INT) ||
        !takeParameter(manager, &commandFile, BREL_SHELL_PARAMETER_ID_CMD_FILE,
                       BREL_SHELL_PARAMETER_TYPE_STRING)) {
        BRELShellParameterManager_delete(manager);
        return 0;
    }
    self->input = commandFile == nullptr ? stdin : openCommandFile(commandFile);
    if (self->input == nullptr) {
        // The process is about to end, and the manager is left to it; a leak checker is to see that.
        [[maybe_unused]] static BRELShellParameterManager *volatile leftToTheProcess;
        leftToTheProcess = manager;
        ZUV_LOG_PLAIN(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_SHELL, "Could not open file %s\n",
                      commandFile);
        return 0;
    }
    BRELShellParameterManager_delete(manager);
    return 1;
}

int BRELShell_initialize(BRELShell *self)
{
    std::printf("Domain id %d, timeout %d\n", self->domainId, self->timeout);
    if (!BRELRemoteConfigClient_initialize(&self->remoteConfig, self->domainId, self->timeout)) {
        report(ZUV_LOG_ANY_FAILURE_s, "initialize remote configuration client");
        return 0;
    }
    return 1;
}

void BRELShell_finalize(BRELShell *self)
{
    BRELRemoteConfigClient_finalize(&self->remoteConfig);
}

void BRELShell_main(BRELShell *self)
{
    char lineReadScratchPad[BREL_SHELL_LINE_SIZE] = {};
    LineReader reader(self->input);

    BRELShell_g_terminate = 0;
    KOLM_Config_Logger_set_verbosity_by_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                                KOLM_CONFIG_LOG_VERBOSITY_ERROR);
    if (!reader.isInteractive()) {
        KOLM_Utility_sleep(&kScriptStartPause);
    }
    while (BRELShell_g_terminate == 0) {
        std::printf("%s > ", BRELProductInfo_get()->productName);
        if (!reader.read(lineReadScratchPad)) {
            if (!reader.isInteractive()) {
                BRELShell_g_terminate = 1;
                break;
            }
            reader.prepareRetry();
            continue;
        }
        if (lineReadScratchPad[0] == '\0' || lineReadScratchPad[0] == '\n') {
            continue;
        }
        if (std::strlen(lineReadScratchPad) >= BREL_SHELL_LINE_SIZE - 1) {
            std::puts("Line too long");
            continue;
        }
        if (reader.isAtEnd()) {
            BRELShell_g_terminate = 1;
            continue;
        }
        executeLine(self, lineReadScratchPad);
    }
}
