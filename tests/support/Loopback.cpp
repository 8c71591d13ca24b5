#include "Loopback.h"

#include <cstdio>
#include <cstdlib>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace zuv_test
{
namespace
{

// Above domain 99 the ports of a domain run into those that the system gives to anybody.
constexpr int kDomainCount = 99;
constexpr const char *kProfileVariable = "FASTRTPS_DEFAULT_PROFILES_FILE";

[[noreturn]] void refuse(const char *reason, const char *detail)
{
    std::fprintf(stderr, "loopback test: %s: %s\n", reason, detail);
    std::_Exit(EXIT_FAILURE);
}

std::string canonical(const char *path)
{
    char *resolved = realpath(path, nullptr);
    const std::string text = resolved != nullptr ? resolved : path;
    std::free(resolved);
    return text;
}

void stayOnLoopback()
{
    const char *profile = std::getenv(kProfileVariable);
    if (profile == nullptr || *profile == '\0') {
        setenv(kProfileVariable, loopbackProfile(), 1);
    } else if (canonical(profile) != canonical(loopbackProfile())) {
        refuse("refusing to run with another profile", profile);
    }
}

// The lock lasts as long as the process. Close-on-exec keeps it from children that outlive us.
bool reserve(int domainId)
{
    const std::string path = "/tmp/zuv-test-domain-" + std::to_string(domainId) + ".lock";
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    if (file < 0) {
        return false;
    }
    if (flock(file, LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    close(file);
    return false;
}

int reserveAnyDomain()
{
    stayOnLoopback();
    const int first = static_cast<int>(getpid() % kDomainCount);
    for (int offset = 0; offset < kDomainCount; ++offset) {
        const int domainId = 1 + (first + offset) % kDomainCount;
        if (reserve(domainId)) {
            return domainId;
        }
    }
    refuse("no free domain", "all are reserved by other tests");
}

} // namespace

int loopbackDomainId()
{
    static const int domainId = reserveAnyDomain();
    return domainId;
}

const char *loopbackProfile()
{
    return ZUV_LOOPBACK_PROFILE;
}

} // namespace zuv_test
