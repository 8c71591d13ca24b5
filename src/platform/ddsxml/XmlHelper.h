/* Values as the middleware's XML writes them. */
#ifndef ZUV_PLATFORM_DDSXML_XML_HELPER_H
#define ZUV_PLATFORM_DDSXML_XML_HELPER_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Beside DDS_LENGTH_UNLIMITED: the length that the middleware works out, and the same for instances. */
#define DDS_LENGTH_AUTO (-2)
#define DDS_AUTO_MAX_TOTAL_INSTANCES 0

/* What a reader needs to tell of a failure. All zero at first; `error` is set by a failure and stays set. */
typedef struct DDS_XMLContext {
    int error;
    int line; /* of what is read, for reports; 0 where nobody knows it */
} DDS_XMLContext;

/* The number that `text` spells: decimal, or hexadecimal behind "0x", with white space around it; or one of these
 * names, in any case and with or without "DDS_" in front: LENGTH_UNLIMITED, LENGTH_AUTO,
 * AUTO_MAX_TOTAL_INSTANCES, DURATION_INFINITE_SEC, DURATION_ZERO_SEC. Any other text, and a number that the type
 * cannot hold, sets `context->error` and gives 0. Neither may be NULL. */
DDS_Long DDS_XMLHelper_str_to_int(DDS_XMLContext *context, const char *text);

/* The same without a sign, for the names DURATION_INFINITE_NSEC and DURATION_ZERO_NSEC. */
DDS_UnsignedLong DDS_XMLHelper_str_to_unsigned_int(DDS_XMLContext *context, const char *text);

#ifdef __cplusplus
}
#endif

#endif
