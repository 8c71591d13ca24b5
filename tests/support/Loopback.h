// Keeps a test's DDS traffic on this machine and away from every other test that runs beside it.
#ifndef ZUV_TESTS_SUPPORT_LOOPBACK_H
#define ZUV_TESTS_SUPPORT_LOOPBACK_H

namespace zuv_test
{

// A DDS domain that no other test program on this machine uses while this process lives, between 1 and 99.
// The first call reserves it, and makes sure that participants of this process and of its children stay on
// loopback: FASTRTPS_DEFAULT_PROFILES_FILE is set to the loopback profile, and the process ends at once
// with a message when it names another one. Callable from any thread.
int loopbackDomainId();

// The path of the loopback profile.
const char *loopbackProfile();

} // namespace zuv_test

#endif
