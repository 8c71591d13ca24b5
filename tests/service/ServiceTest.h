// A running example service in a folder of its own, a shell beside it, and what both say.
#ifndef ZUV_TESTS_SERVICE_SERVICE_TEST_H
#define ZUV_TESTS_SERVICE_SERVICE_TEST_H

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"
#include "remoteConfig/RemoteConfigClient.h"
#include "support/Files.h"

namespace zuv_test
{

// The service in the domain of the test, without the files that it would find by itself.
std::vector<std::string> serviceCommand(const std::vector<std::string> &arguments = {});

// Runs in the folder; it has started when the object stands.
class RunningService : public Process
{
public:
    RunningService(const TemporaryFolder &folder, const std::vector<std::string> &arguments,
                   std::vector<int> ignoredSignals = {});
};

// A service that runs "site.xml" of its folder as S1, and a shell that has found it.
class ServiceTest : public testing::Test
{
protected:
    // What the service begins with: it saves to "saved.xml".
    static const std::string kSite;
    // The same as a save writes it.
    static const std::string kSaved;

    void start(const std::string &document = kSite, std::vector<std::string> arguments = {});

    // What the shell says to a command, from its first byte to its last.
    std::string ask(std::string_view line);
    std::string document() { return ask("get S1"); }

    // The command is refused with these lines, and both the document and the file are as they were.
    void refuses(std::string_view line, const std::string &reason);

    TemporaryFolder folder;
    std::unique_ptr<RunningService> service;
    std::unique_ptr<Session> shell;
};

std::string result(const std::string &text);
std::string error(const std::string &text);

// A client that sends what the shell does not.
class Client
{
public:
    Client();
    ~Client() { BRELRemoteConfigClient_delete(client_); }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    // The reply as the shell would print it; `tag` is a resource, "" for none, anything else are the octets as they are.
    std::string send(ZUV_Service_Admin_CommandActionKind action, std::string identifier,
                     std::string body, const std::string &octets = "");

private:
    BRELRemoteConfigClient *client_;
};

} // namespace zuv_test

#endif
