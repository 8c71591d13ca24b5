#include "config/Version.h"

extern "C" void BREL_versionToString(const ZUV_BrelServiceVersion *version, char *versionAsString)
{
    const DDS_ProductVersion_t narrowed = {
        static_cast<uint8_t>(version->major),
        static_cast<uint8_t>(version->minor),
        static_cast<uint8_t>(version->release),
        static_cast<uint8_t>(version->revision),
    };
    DDS_ProductVersion_to_string(&narrowed, versionAsString);
}
