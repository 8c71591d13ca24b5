#include "sdkLib/Environment.h"

#include <cstring>

#include "log/Log.h"
#include "platform/osapi/Utility.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

constexpr size_t kMessageBound = 1024;
static_assert(kMessageBound <= sizeof(ZUV_BrelServiceError::message));

void removeFinalNewLine(char *text)
{
    const size_t length = std::strlen(text);
    if (length != 0 && text[length - 1] == '\n') {
        text[length - 1] = '\0';
    }
}

} // namespace

extern "C" {

void ZUV_BrelServiceEnvironment_setErrorImpl(ZUV_BrelServiceEnvironment *self,
                                             DDS_Boolean overwrite, int error_code,
                                             int native_error_code, const char *error_format,
                                             va_list arguments)
{
    if (self == nullptr || (!overwrite && self->error.error_code != 0)) {
        return;
    }
    ZUV_BrelServiceError &error = self->error;
    error.error_code = error_code;
    error.nativeCode = native_error_code;
    // The list of arguments goes in as one argument, not as a list: plug-ins count on messages being their
    // formats, so it stays.
    ZUVOsapiUtility_snprintf(error.message, kMessageBound,
                             error_format != nullptr ? error_format : "", arguments);
    removeFinalNewLine(error.message);
}

void ZUV_BrelServiceEnvironment_set_error(ZUV_BrelServiceEnvironment *self,
                                          const char *error_format, ...)
{
    va_list arguments;
    va_start(arguments, error_format);
    ZUV_BrelServiceEnvironment_setErrorImpl(
        self, DDS_BOOLEAN_FALSE, ZUV_BREL_SERVICE_ERROR_CODE_ERROR, 0, error_format, arguments);
    va_end(arguments);
}

void ZUV_BrelServiceEnvironment_fatal_error(ZUV_BrelServiceEnvironment *self,
                                            const char *error_format, ...)
{
    va_list arguments;
    va_start(arguments, error_format);
    ZUV_BrelServiceEnvironment_setErrorImpl(
        self, DDS_BOOLEAN_TRUE, ZUV_BREL_SERVICE_ERROR_CODE_FATAL, 0, error_format, arguments);
    va_end(arguments);
}

void ZUV_BrelServiceEnvironment_set_error_w_params(ZUV_BrelServiceEnvironment *self,
                                                   DDS_Boolean overwrite, int error_code,
                                                   int native_error_code, const char *error_format,
                                                   ...)
{
    va_list arguments;
    va_start(arguments, error_format);
    ZUV_BrelServiceEnvironment_setErrorImpl(self, overwrite, error_code, native_error_code,
                                            error_format, arguments);
    va_end(arguments);
}

DDS_Boolean ZUV_BrelServiceEnvironment_error_occurred(const ZUV_BrelServiceEnvironment *self)
{
    return !IS_NULL(self) && self->error.error_code != 0;
}

const char *ZUV_BrelServiceEnvironment_get_error_message(const ZUV_BrelServiceEnvironment *self)
{
    return IS_NULL(self) ? nullptr : self->error.message;
}

int ZUV_BrelServiceEnvironment_get_native_code(const ZUV_BrelServiceEnvironment *self)
{
    return IS_NULL(self) ? 0 : self->error.nativeCode;
}

void ZUV_BrelServiceEnvironment_clear_error(ZUV_BrelServiceEnvironment *self)
{
    if (IS_NULL(self)) {
        return;
    }
    self->error.error_code = 0;
    self->error.nativeCode = 0;
    self->error.message[0] = '\0';
}

ZUV_BrelServiceVerbosity
ZUV_BrelServiceEnvironment_get_verbosity(const ZUV_BrelServiceEnvironment *self)
{
    return IS_NULL(self) ? ZUV_BREL_SERVICE_VERBOSITY_NONE : self->verbosity;
}
}
