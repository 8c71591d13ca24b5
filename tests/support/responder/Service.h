// The service side of the administration protocol: a replier behind the filter of an instance's name.
#ifndef ZUV_TESTS_SUPPORT_RESPONDER_SERVICE_H
#define ZUV_TESTS_SUPPORT_RESPONDER_SERVICE_H

#include <chrono>
#include <cstdint>
#include <string>

#include "Options.h"
#include "platform/dds/DomainParticipant.h"
#include "remoteConfig/AdminReplier.h"

namespace responder
{

// For one thread.
class Service
{
public:
    explicit Service(const Options &options) : options_(options) {}
    ~Service();
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    // Join the domain. False, after reports in the log, on failure.
    bool start();

    // Wait for a request for at most `patience`, tell of it on standard output unless it is to be echoed, and
    // treat it as the options say. False when the middleware fails.
    bool serve(std::chrono::milliseconds patience);

private:
    DDS_ContentFilteredTopic *createFilteredTopic();
    bool treat();
    bool echo();
    bool reply(const std::string &text, bool isError);
    bool sendReply();

    Options options_;
    std::uint32_t requestCount_ = 0;
    DDS_DomainParticipant *participant_ = nullptr;
    ZUV_BrelServiceAdminReplier *replier_ = nullptr;
    ZUV_Service_Admin_CommandRequest *request_ = nullptr;
    ZUV_Service_Admin_CommandReply *reply_ = nullptr;
    DDS_SampleInfo requestInfo_ = {};
};

} // namespace responder

#endif
