/* The options of the distributed logger as an element of the middleware's XML. */
#ifndef ZUV_PLATFORM_DDSXML_DIST_LOGGER_H
#define ZUV_PLATFORM_DDSXML_DIST_LOGGER_H

#include "platform/ddsxml/XmlParser.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Called with what is wrong in an element: the message, the operation that met it, and the line. */
typedef void (*ZUV_DL_XMLConfigErrorFcn)(const char *message, const char *methodName, int line);

/* The class of "distributed_logger" elements. `onError` must not be NULL. Release it with
 * ZUV_DL_XMLConfig_destroyXMLExtensionClass. NULL after a report when there is no memory. */
ZUVXMLExtensionClass *ZUV_DL_XMLConfig_createXMLExtensionClass(ZUV_DL_XMLConfigErrorFcn onError);

/* NULL does nothing. The class may not be registered any more. */
void ZUV_DL_XMLConfig_destroyXMLExtensionClass(ZUVXMLExtensionClass *self);

#ifdef __cplusplus
}
#endif

#endif
