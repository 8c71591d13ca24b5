// What a piece of code asks the kernel to open.
#ifndef ZUV_TESTS_SUPPORT_OPENED_H
#define ZUV_TESTS_SUPPORT_OPENED_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace zuv_test
{

// Run `body` in a child process, and tell in order what it tried to open there: the paths of files, those that it
// only asked about included, "socket" for a socket, "process" for a process or a program. Nothing if the child did
// not come to its end, or if the kernel does not let a process be watched: `isWatchable` is false then.
struct Opened {
    bool isWatchable = false;
    bool isComplete = false;
    std::vector<std::string> paths;
};
Opened whatIsOpenedBy(const std::function<void()> &body);

} // namespace zuv_test

#endif
