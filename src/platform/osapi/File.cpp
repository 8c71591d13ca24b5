#include "platform/osapi/File.h"

#include <cerrno>
#include <cstdio>

#include "platform/osapi/Fault.h"

// The stream itself stands behind the name.
namespace
{

FILE *stream(const ZUVOsapiFile *self)
{
    return const_cast<FILE *>(reinterpret_cast<const FILE *>(self));
}

bool seek(ZUVOsapiFile *self, int whence)
{
    return !ZUV_OSAPI_FAULT("file.seek") && fseeko(stream(self), 0, whence) == 0;
}

} // namespace

extern "C" {

ZUVOsapiFile *ZUVOsapiFile_open(const char *path)
{
    if (ZUV_OSAPI_FAULT("file.open")) {
        errno = EIO;
        return nullptr;
    }
    return reinterpret_cast<ZUVOsapiFile *>(std::fopen(path, "rbe"));
}

void ZUVOsapiFile_close(ZUVOsapiFile *self)
{
    if (self != nullptr) {
        std::fclose(stream(self));
    }
}

int ZUVOsapiFile_getSize(ZUVOsapiFile *self, uint64_t *size)
{
    if (!seek(self, SEEK_END)) {
        return 0;
    }
    const off_t end = ZUV_OSAPI_FAULT("file.tell") ? -1 : ftello(stream(self));
    // A directory has an end beyond all others.
    if (end < 0 || end == INT64_MAX || !seek(self, SEEK_SET)) {
        return 0;
    }
    *size = static_cast<uint64_t>(end);
    return 1;
}

int ZUVOsapiFile_read(ZUVOsapiFile *self, void *buffer, size_t limit, size_t *count)
{
    if (ZUV_OSAPI_FAULT("file.read")) {
        *count = 0;
        return 0;
    }
    *count = std::fread(buffer, 1, limit, stream(self));
    return std::ferror(stream(self)) == 0;
}

int ZUVOsapiFile_isAtEnd(const ZUVOsapiFile *self)
{
    return std::feof(stream(self)) != 0;
}
}
