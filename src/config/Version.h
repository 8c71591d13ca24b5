/* The version of the service, and versions as texts. */
#ifndef ZUV_CONFIG_VERSION_H
#define ZUV_CONFIG_VERSION_H

#include "platform/kolm/Version.h"

#ifdef __cplusplus
extern "C" {
#endif

#define BREL_VERSION_MAJOR 7
#define BREL_VERSION_MINOR 7
#define BREL_VERSION_RELEASE 0
#define BREL_VERSION_REVISION 0

typedef struct ZUV_BrelServiceVersion {
    int major;
    int minor;
    int release;
    int revision;
} ZUV_BrelServiceVersion;

/* Write the version into `versionAsString`, which has room for DDS_PRODUCT_VERSION_MAX_STRING_SIZE bytes,
 * in the form of DDS_ProductVersion_to_string. Of each number only the lowest byte counts. Neither may be
 * NULL. */
void BREL_versionToString(const ZUV_BrelServiceVersion *version, char *versionAsString);

#ifdef __cplusplus
}
#endif

#endif
