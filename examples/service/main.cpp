// A service as an engine would build it, but for the engine: it loads a configuration, is administered by zuvbsh, and moves
// no data. It says "ready" when it listens, and ends on SIGTERM, SIGINT and the command "shutdown".
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include <pthread.h>
#include <unistd.h>

#include "Commands.h"
#include "Configuration.h"
#include "Options.h"
#include "Reports.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/kolm/Logger.h"

namespace
{

using namespace service;

// The signals that end the service. They are blocked in all threads, as long as the middleware has none, and waited for in
// one. One that is ignored stays so: behind a script, Ctrl-C is the shell's and does not end the service.
sigset_t blockSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGTERM, SIGINT}) {
        struct sigaction action = {};
        sigaction(number, nullptr, &action);
        if (action.sa_handler != SIG_IGN) {
            sigaddset(&signals, number);
        }
    }
    sigaddset(&signals, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

// The settings of the administration's server. They stay as they were at the start, whatever is loaded later: the server
// goes on while there is no configuration.
class AdministrationSettings
{
public:
    AdministrationSettings() { BRELCfgFileAdministration_initialize(&settings_); }
    ~AdministrationSettings() { BRELCfgFileAdministration_finalize(&settings_); }
    AdministrationSettings(const AdministrationSettings &) = delete;
    AdministrationSettings &operator=(const AdministrationSettings &) = delete;

    bool take(const BRELCfgFileAdministration &source, const ZUV_BrelServiceProperty &property)
    {
        if (!source.enabled && !property.enable_administration) {
            SERVICE_REFUSAL_TEXT("be administered: the service has no administration, and there "
                                 "is no option -domainId");
            return false;
        }
        if (BRELCfgFileAdministration_copy(&settings_, &source) == nullptr) {
            return false;
        }
        settings_.domainId = property.enable_administration
                                 ? property.administration_domain_id
                                 : source.domainId + property.domain_id_base;
        return true;
    }
    const BRELCfgFileAdministration &get() const { return settings_; }

private:
    BRELCfgFileAdministration settings_ = {};
};

bool serve(const Options &options, const sigset_t &signals)
{
    const char *const file = options.property.cfg_file;
    std::unique_ptr<Configuration> configuration =
        Configuration::load(options, file != nullptr ? file : "", options.property.service_name);
    AdministrationSettings settings;
    if (configuration == nullptr ||
        !settings.take(configuration->service().administration, options.property)) {
        return false;
    }
    const std::string name = options.property.application_name != nullptr
                                 ? options.property.application_name
                                 : nameOf(configuration->xml());
    BRELServiceParticipantFactory participants;
    if (!BRELServiceParticipantFactory_initialize(&participants,
                                                  DDS_DomainParticipantFactory_get_instance())) {
        return false;
    }
    // The command "shutdown" comes to the same as a signal.
    Commands commands(options, std::move(configuration), [] { kill(getpid(), SIGTERM); });
    const ZUV_BrelServiceConfigInterceptor interceptor = commands.interceptor();
    BRELRemoteConfigServer *const server = BRELRemoteConfigServer_new(
        name.c_str(), DDS_BREL_SERVICE_QOS, &settings.get(), &participants, nullptr);
    bool isStarted = false;
    if (server != nullptr) {
        BRELRemoteConfigServer_setRequestInterceptor(server, &interceptor);
        isStarted = BRELRemoteConfigServer_start(server) != 0;
    }
    if (isStarted) {
        std::printf("%s is administered in domain %d\nready\n", name.c_str(),
                    static_cast<int>(settings.get().domainId));
        int number = 0;
        sigwait(&signals, &number);
    }
    if (server != nullptr) {
        BRELRemoteConfigServer_delete(server);
    }
    BRELServiceParticipantFactory_finalize(&participants);
    return isStarted;
}

bool list(const Options &options)
{
    const char *const file = options.property.cfg_file;
    const std::unique_ptr<Configuration> configuration =
        Configuration::read(options, file != nullptr ? file : "");
    if (configuration != nullptr) {
        configuration->list();
    }
    return configuration != nullptr;
}

} // namespace

int main(int argc, char **argv)
{
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    const sigset_t signals = blockSignals();
    BRELLog_setUp();
    Reports::install();
    Options options;
    if (!options.parse(argc, argv)) {
        std::fputs("Try 'brel_service -help'.\n", stderr);
        return EXIT_FAILURE;
    }
    if (options.isHelp) {
        Options::printUsage();
        return EXIT_SUCCESS;
    }
    KOLM_Config_Logger_set_verbosity_by_service(
        KOLM_CONFIG_LOG_SERVICE_BREL,
        static_cast<std::uint32_t>(options.property.service_verbosity));
    bool isGood = false;
    if (BRELCfgFileParser_initializeGlobals()) {
        isGood = options.isListing ? list(options) : serve(options, signals);
        BRELCfgFileParser_finalizeGlobals();
    }
    DDS_DomainParticipantFactory_finalize_instance();
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
