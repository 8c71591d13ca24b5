#include "config/DefaultFilePath.h"

#include <array>

#include "log/Log.h"
#include "platform/osapi/Path.h"
#include "platform/osapi/Utility.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

extern "C" char *BRELUtils_getDefaultFileAbsolutePath(char *normalizedDefaultPath,
                                                      const char *executablePath,
                                                      const char *intermidiatePath,
                                                      const char *fileName)
{
    if (IS_NULL(normalizedDefaultPath) || IS_NULL(executablePath) || IS_NULL(intermidiatePath) ||
        IS_NULL(fileName)) {
        return nullptr;
    }
    normalizedDefaultPath[0] = '\0';
    std::array<char, BREL_DEFAULT_FILE_PATH_PARTS_SIZE> path;
    const int length = ZUVOsapiUtility_snprintf(path.data(), path.size(), "%s/%s/%s",
                                                executablePath, intermidiatePath, fileName);
    if (length < 0 || static_cast<size_t>(length) >= path.size()) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ANY_FAILURE_s,
                "defafult file path (path too long?)");
    } else if (ZUVOsapiUtility_normalizePath(normalizedDefaultPath, BREL_DEFAULT_FILE_PATH_SIZE,
                                             path.data()) == 0) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ANY_FAILURE_s,
                "normalize default file path");
    }
    return normalizedDefaultPath;
}
