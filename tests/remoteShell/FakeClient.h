// A remote configuration client that sends nothing: it stands in for the real one at link time, remembers what
// it is asked to send, and answers as told.
#ifndef ZUV_TESTS_REMOTE_SHELL_FAKE_CLIENT_H
#define ZUV_TESTS_REMOTE_SHELL_FAKE_CLIENT_H

#include <cstdint>
#include <string>
#include <vector>

#include "remoteConfig/ServiceAdmin.h"

namespace zuv_test
{

struct SentCommand {
    bool asUriOrAssignment = false; // sent by sendCommandWithUriOrAssignment
    std::string target;
    ZUV_Service_Admin_CommandActionKind action = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
    std::string identifier;
    std::string body;
    std::string octets; // every octet, a terminator included
    int remote = -1;

    bool operator==(const SentCommand &) const = default;
};

struct FakeClient {
    std::vector<SentCommand> sent;
    // The answer to the next commands.
    int ok = 1;
    ZUV_Service_Admin_CommandReplyRetcode retcode =
        ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE;
    std::string reply = "done";
    // What initialize gives and got; how often finalize was called.
    int initializeResult = 1;
    bool areSignalsBlocked = false; // when initialize was called
    int domainId = -1;
    int timeout = -1;
    int finalizeCount = 0;
    // The pauses of the session, in nanoseconds; none is made.
    std::vector<std::int64_t> pauses;
};

// The one that all calls meet.
FakeClient &fakeClient();

} // namespace zuv_test

#endif
