#include <csignal>
#include <cstdio>
#include <initializer_list>

#include <pthread.h>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/kolm/Logger.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Fault.h"
#include "remoteShell/Shell.h"
#include "remoteShell/ShellParameterManager.h"

namespace
{

bool asksForHelp(int argc, char **argv)
{
    for (int index = 1; index < argc; ++index) {
        if (MAVOString_iCompare(argv[index], "-help") == 0 ||
            MAVOString_iCompare(argv[index], "-h") == 0) {
            return true;
        }
    }
    return false;
}

int fail(const char *what, int status, const brel::Place &place = brel::Place::current())
{
    brel::report(BREL_SUBMODULE_SHELL, ZUV_LOG_ANY_FAILURE_s, what, place);
    return status;
}

bool setSignalHandlers()
{
    for (const int sig : {SIGTERM, SIGHUP, SIGINT, SIGABRT, SIGPIPE}) {
        if (BRELShell_setSignalHandler(sig, BRELShell_terminateWithSignal) != 0) {
            return false;
        }
    }
    return true;
}

bool setSignalMask(const sigset_t &mask, sigset_t *oldMask)
{
    return !ZUV_OSAPI_FAULT("shell.signal_mask") &&
           pthread_sigmask(SIG_SETMASK, &mask, oldMask) == 0;
}

} // namespace

int main(int argc, char **argv)
{
    // What the operator is to see is there before input is awaited, and stands in its place between the
    // lines of the log, also when both go through one pipe.
    std::setvbuf(stdout, nullptr, _IONBF, 0);
    BRELLog_setUp();

    if (asksForHelp(argc, argv)) {
        BRELShellParameterManager_printHelp(
            const_cast<char *>(BRELProductInfo_get()->shellExecutableName));
        return -1;
    }
    // The middleware's threads are born while all signals are blocked, so that only this thread takes them.
    sigset_t allSignals;
    sigset_t oldSignals;
    if (sigfillset(&allSignals) != 0 || !setSignalMask(allSignals, &oldSignals)) {
        return fail("signal handlers", 1);
    }
    if (!setSignalHandlers()) {
        return fail("signal handlers", -1);
    }
    if (!BRELShell_getCommandLineParameters(&BRELShell_g_instance, argc, argv)) {
        return fail("get command-line parameters", -1);
    }
    if (!BRELShell_initialize(&BRELShell_g_instance)) {
        return fail("initialize shell", -1);
    }
    KOLM_Config_Logger_set_verbosity_by_service(KOLM_CONFIG_LOG_SERVICE_BREL,
                                                KOLM_CONFIG_LOG_VERBOSITY_SILENT);
    if (!setSignalMask(oldSignals, nullptr)) {
        return fail("signal handlers", 1);
    }
    BRELShell_main(&BRELShell_g_instance);
    std::puts("Stopping...");
    BRELShell_finalize(&BRELShell_g_instance);
    DDS_DomainParticipantFactory_finalize_instance();
    return 0;
}
