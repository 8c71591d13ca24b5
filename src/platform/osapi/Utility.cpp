#include "platform/osapi/Utility.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "platform/osapi/Fault.h"

extern "C" {

int ZUVOsapiUtility_snprintf(char *buffer, size_t limit, const char *format, ...)
{
    int length = -1;
    if (!ZUV_OSAPI_FAULT("utility.snprintf")) {
        va_list arguments;
        va_start(arguments, format);
        length = std::vsnprintf(buffer, limit, format, arguments);
        va_end(arguments);
    }
    if (length < 0 && limit != 0) {
        buffer[0] = '\0';
    }
    return length;
}

char *ZUVOsapiUtility_strcpy(char *destination, size_t limit, const char *source)
{
    const size_t length = strnlen(source, limit);
    if (length == limit || ZUV_OSAPI_FAULT("utility.strcpy")) {
        return nullptr;
    }
    std::memmove(destination, source, length);
    destination[length] = '\0';
    return destination;
}

char *ZUVOsapiUtility_strcat(char *destination, size_t limit, const char *source)
{
    const size_t start = strnlen(destination, limit);
    if (start == limit || ZUV_OSAPI_FAULT("utility.strcat")) {
        return nullptr;
    }
    const size_t length = strnlen(source, limit - start - 1);
    std::memmove(destination + start, source, length);
    destination[start + length] = '\0';
    return destination;
}
}
