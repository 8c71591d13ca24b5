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
 * NULL; nothing happens after the report of one that is. */
void BREL_versionToString(const ZUV_BrelServiceVersion *version, char *versionAsString);

/* -1, 0 or 1 as `left` is older than `right`, of the same age, or newer, by major, minor and release number.
 * Revisions do not count: they promise the same interface. Neither may be NULL; 0 after the report of one
 * that is. */
int ZUV_BrelServiceVersion_compare(const ZUV_BrelServiceVersion *left,
                                   const ZUV_BrelServiceVersion *right);

/* Print the name of the product and the version of the middleware to standard output:
 * "ZUV Brel Service 7.7.0", with " (rev 1)" behind it for a revision above 0. */
void BRELParameterManager_printVersion(void);

/* The same for a given version, which must not be NULL: that prints nothing, after a report. */
void BRELParameterManager_printVersionI(const DDS_ProductVersion_t *version);

#ifdef __cplusplus
}
#endif

#endif
