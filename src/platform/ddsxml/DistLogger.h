/* The options of the distributed logger, and their element in the middleware's XML.
 *
 * No argument may be NULL unless it says so. The operations may be called from any thread; a record or a tree belongs
 * to one thread at a time. */
#ifndef ZUV_PLATFORM_DDSXML_DIST_LOGGER_H
#define ZUV_PLATFORM_DDSXML_DIST_LOGGER_H

#include "platform/ddsxml/XmlParser.h"
#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The least severe messages that are published. */
typedef enum ZUV_DL_Level {
    ZUV_DL_FATAL_LEVEL = 1,
    ZUV_DL_EXCEPTION_LEVEL = 2,
    ZUV_DL_WARNING_LEVEL = 3,
    ZUV_DL_INFORMATION_LEVEL = 4
} ZUV_DL_Level;

typedef struct ZUV_DL_Options {
    DDS_Boolean enabled; /* messages are published */
    ZUV_DL_Level level;
    DDS_Long
        queueSize; /* messages that may wait to be published, at least 1; further ones are dropped */
    DDS_Boolean localOutput; /* messages go to the local log as well */
} ZUV_DL_Options;

/* Options with the default values: enabled, warnings, 128 messages, with local output. To be released with
 * ZUV_DL_Options_delete. NULL after a report when there is no memory. */
ZUV_DL_Options *ZUV_DL_Options_createDefault(void);

/* Make `self` equal to `source`. 1, or 0 after a report for NULL. */
int ZUV_DL_Options_copy(ZUV_DL_Options *self, const ZUV_DL_Options *source);

/* NULL does nothing. */
void ZUV_DL_Options_delete(ZUV_DL_Options *self);

/* Called with what is wrong in an element: the message, the operation that met it, and the line. */
typedef void (*ZUV_DL_XMLConfigErrorFcn)(const char *message, const char *methodName, int line);

/* The class of "distributed_logger" elements. A document with a wrong value in one is refused, after `onError`, which
 * must not be NULL. Release it with ZUV_DL_XMLConfig_destroyXMLExtensionClass. NULL after a report when there is no memory. */
ZUVXMLExtensionClass *ZUV_DL_XMLConfig_createXMLExtensionClass(ZUV_DL_XMLConfigErrorFcn onError);

/* The options of an element "distributed_logger" of a library, which was read by a parser that knows the class. They
 * belong to the element. NULL, and no report, if it is no such element. */
const ZUV_DL_Options *ZUV_DL_XMLConfig_getDLOptions(const ZUVXMLObject *self);

/* NULL does nothing. The class may not be registered any more. */
void ZUV_DL_XMLConfig_destroyXMLExtensionClass(ZUVXMLExtensionClass *self);

#ifdef __cplusplus
}
#endif

#endif
