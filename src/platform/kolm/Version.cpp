#include "platform/kolm/Version.h"

#include "platform/osapi/Utility.h"

extern "C" {

void KOLM_Config_Version_get_product_version(DDS_ProductVersion_t *version)
{
    *version = {7, 7, 0, 0};
}

char *DDS_ProductVersion_to_string(const DDS_ProductVersion_t *version, char *text)
{
    ZUVOsapiUtility_snprintf(text, DDS_PRODUCT_VERSION_MAX_STRING_SIZE, "%d.%d.%d.%d",
                             version->major, version->minor, version->release, version->revision);
    return text;
}
}
