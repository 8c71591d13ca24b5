#include "config/Version.h"

#include <cstdio>
#include <initializer_list>

#include "config/ProductInfo.h"
#include "log/Log.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

extern "C" {

void BREL_versionToString(const ZUV_BrelServiceVersion *version, char *versionAsString)
{
    if (IS_NULL(version) || IS_NULL(versionAsString)) {
        return;
    }
    const DDS_ProductVersion_t narrowed = {
        static_cast<uint8_t>(version->major),
        static_cast<uint8_t>(version->minor),
        static_cast<uint8_t>(version->release),
        static_cast<uint8_t>(version->revision),
    };
    DDS_ProductVersion_to_string(&narrowed, versionAsString);
}

int ZUV_BrelServiceVersion_compare(const ZUV_BrelServiceVersion *left,
                                   const ZUV_BrelServiceVersion *right)
{
    if (IS_NULL(left) || IS_NULL(right)) {
        return 0;
    }
    for (const auto number : {&ZUV_BrelServiceVersion::major, &ZUV_BrelServiceVersion::minor,
                              &ZUV_BrelServiceVersion::release}) {
        if (left->*number != right->*number) {
            return left->*number < right->*number ? -1 : 1;
        }
    }
    return 0;
}

void BRELParameterManager_printVersionI(const DDS_ProductVersion_t *version)
{
    if (IS_NULL(version)) {
        return;
    }
    std::printf("%s %d.%d.%d", BRELProductInfo_get()->productName, version->major, version->minor,
                version->release);
    if (version->revision > 0) {
        std::printf(" (rev %d)", version->revision);
    }
    std::printf("\n");
}

void BRELParameterManager_printVersion(void)
{
    DDS_ProductVersion_t version;
    KOLM_Config_Version_get_product_version(&version);
    BRELParameterManager_printVersionI(&version);
}
}
