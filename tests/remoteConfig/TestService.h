// A service in the test's own process: it answers the requests of a domain as it is told, and remembers them.
#ifndef ZUV_TESTS_REMOTE_CONFIG_TEST_SERVICE_H
#define ZUV_TESTS_REMOTE_CONFIG_TEST_SERVICE_H

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "platform/dds/DomainParticipant.h"
#include "remoteConfig/AdminReplier.h"
#include "support/Loopback.h"

namespace zuv_test
{

struct ReceivedRequest {
    DDS_Long instanceId = -1;
    std::optional<std::string> applicationName;
    ZUV_Service_Admin_CommandActionKind action = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
    std::string identifier;
    std::string body;
    std::string octets;
};

ReceivedRequest received(const ZUV_Service_Admin_CommandRequest &request);

struct Answer {
    std::string text = "done";
    bool isError = false;
    bool isSilent = false;
    std::chrono::milliseconds delay{0};
};

// A participant with the given name. Ends the program when there is none.
DDS_DomainParticipant *joinDomain(const char *name, int domainId = loopbackDomainId());
void leaveDomain(DDS_DomainParticipant *participant);

// A replier on the two topics of the administration, reliable and keeping all; NULL on failure.
ZUV_BrelServiceAdminReplier *createReplier(DDS_DomainParticipant *participant,
                                           const ZUV_Talvane_ReplierListener *listener = nullptr);

class TestService
{
public:
    using Answering = std::function<Answer(const ReceivedRequest &)>;

    explicit TestService(
        Answering answering = [](const ReceivedRequest &) { return Answer{}; },
        int domainId = loopbackDomainId());
    ~TestService();
    TestService(const TestService &) = delete;
    TestService &operator=(const TestService &) = delete;

    // The requests up to now.
    std::vector<ReceivedRequest> requests() const;
    std::size_t requestCount() const;
    void forget();
    // While set, requests are answered with "done" and not remembered, which takes no memory.
    void setTerse(bool isTerse) { isTerse_ = isTerse; }

private:
    void serve();
    void answer(const ZUV_Service_Admin_CommandRequest &request, const DDS_SampleInfo &info,
                ZUV_Service_Admin_CommandReply &reply);

    Answering answering_;
    DDS_DomainParticipant *participant_;
    ZUV_BrelServiceAdminReplier *replier_;
    mutable std::mutex mutex_;
    std::vector<ReceivedRequest> requests_;
    std::atomic<bool> isTerse_{false};
    std::atomic<bool> isStopping_{false};
    std::thread thread_;
};

} // namespace zuv_test

#endif
