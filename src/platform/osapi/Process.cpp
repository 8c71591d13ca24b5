#include "platform/osapi/Process.h"

#include <unistd.h>

extern "C" uint64_t ZUVOsapiProcess_getId(void)
{
    return static_cast<uint64_t>(getpid());
}
