// The commands of the shell, carried out on the configuration.
#ifndef ZUV_EXAMPLES_SERVICE_COMMANDS_H
#define ZUV_EXAMPLES_SERVICE_COMMANDS_H

#include <functional>
#include <memory>
#include <string>

#include "Configuration.h"
#include "States.h"
#include "remoteConfig/RemoteConfigServer.h"

namespace service
{

// The server calls it on its own threads, one command after the other.
class Commands
{
public:
    // `stop` is called when the service is to end, after the reply to that.
    Commands(const Options &options, std::unique_ptr<Configuration> configuration,
             std::function<void()> stop)
        : options_(options), configuration_(std::move(configuration)), stop_(std::move(stop))
    {
    }

    // For BRELRemoteConfigServer_setRequestInterceptor.
    ZUV_BrelServiceConfigInterceptor interceptor();

private:
    using Request = ZUV_Service_Admin_CommandRequest;
    struct Row;

    // Carry out a command: true with what the reply says, or false after a report, and then nothing has changed.
    bool get(const Request &request, std::string &answer);
    bool getState(const Request &request, std::string &answer);
    bool update(const Request &request, std::string &answer);
    bool changeState(const Request &request, std::string &answer);
    bool create(const Request &request, std::string &answer);
    bool remove(const Request &request, std::string &answer);
    bool load(const Request &request, std::string &answer);
    bool unload(const Request &request, std::string &answer);
    bool save(const Request &request, std::string &answer);
    bool shutdown(const Request &request, std::string &answer);

    static const Row *findRow(const Request &request);
    bool carryOut(const Request &request, std::string &answer);
    void handle(const Request &request, const DDS_SampleInfo &info,
                ZUV_BrelServiceAdminReplier *replier);
    bool isLoaded() const;
    Entity find(const char *identifier) const;
    std::string saveIfWanted() const;

    const Options &options_;
    std::unique_ptr<Configuration> configuration_; // none while the service is unloaded
    States states_;
    std::function<void()> stop_;
    bool isStopping_ = false;
};

} // namespace service

#endif
