// An example service in a process of its own, with a document made for the occasion.
#ifndef ZUV_TESTS_ENDURANCE_SERVICE_H
#define ZUV_TESTS_ENDURANCE_SERVICE_H

#include <string>
#include <vector>

#include "support/Files.h"
#include "support/Process.h"

namespace zuv_test
{

// A document with one service, which is saved to that path: a domain route "dr", in it a session "s" with so many routes
// "t0", "t1" and so on.
std::string documentOf(const std::string &name, const std::string &savePath, int routeCount);

// The command that runs the service of the document at that path, in the domain of the test.
std::vector<std::string> serviceCommand(const std::string &name, const std::string &path);

// What the system says that a process has.
struct Usage {
    long memoryKiB = 0; // of its own
    long sharedKiB = 0; // with others: what they send through shared memory
    long files = 0;
    long threads = 0;
};
Usage usageOf(pid_t process);

} // namespace zuv_test

#endif
