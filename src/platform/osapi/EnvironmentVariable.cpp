#include "platform/osapi/EnvironmentVariable.h"

#include <cstdlib>

#include "platform/osapi/Utility.h"

extern "C" char *ZUVOsapi_envVarOrFileGet(char *value, size_t limit, const char *name)
{
    const char *const found = std::getenv(name);
    return found != nullptr ? ZUVOsapiUtility_strcpy(value, limit, found) : nullptr;
}
