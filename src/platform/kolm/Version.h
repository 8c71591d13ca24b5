/* The version of the middleware, which is that of this product. */
#ifndef ZUV_PLATFORM_KOLM_VERSION_H
#define ZUV_PLATFORM_KOLM_VERSION_H

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_ProductVersion_t {
    uint8_t major;
    uint8_t minor;
    uint8_t release;
    uint8_t revision;
} DDS_ProductVersion_t;

/* Room for the text of any version, terminator included. */
#define DDS_PRODUCT_VERSION_MAX_STRING_SIZE 16

/* Fill `*version`, which must not be NULL. */
void KOLM_Config_Version_get_product_version(DDS_ProductVersion_t *version);

/* Write the four numbers with dots between them, "7.7.0.0", into `text`, which has room for
 * DDS_PRODUCT_VERSION_MAX_STRING_SIZE bytes. Neither may be NULL. Returns `text`. */
char *DDS_ProductVersion_to_string(const DDS_ProductVersion_t *version, char *text);

#ifdef __cplusplus
}
#endif

#endif
