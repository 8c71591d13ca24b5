/* The log switches of the XML utilities, for ZUV_LOG(ZUVXMLUTILS, level, ZUVXMLUTILS_SUBMODULE_..., ...). */
#ifndef ZUV_PLATFORM_XMLUTILS_XML_UTILS_LOG_H
#define ZUV_PLATFORM_XMLUTILS_XML_UTILS_LOG_H

#include "platform/log/Log.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZUVXMLUTILS_LOG_MODULE_ID 0x1b0000u

#define ZUVXMLUTILS_SUBMODULE_OBJECT 0x1u      /* the tree and its utilities */
#define ZUVXMLUTILS_SUBMODULE_PARSER 0x2u      /* reading and merging documents */
#define ZUVXMLUTILS_SUBMODULE_VALIDATOR 0x4u   /* schemas and their resources */
#define ZUVXMLUTILS_SUBMODULE_TRANSFORMER 0x8u /* stylesheets */
#define ZUVXMLUTILS_SUBMODULE_VARIABLE 0x10u   /* variables */
#define ZUVXMLUTILS_SUBMODULE_SAVE 0x20u       /* writing documents */

/* At first fatal messages and exceptions of every submodule pass. Store to them with a single aligned
 * write; a log site on another thread may see the old value for a moment. */
extern uint32_t ZUVXMLUTILSLog_g_instrumentationMask;
extern uint32_t ZUVXMLUTILSLog_g_submoduleMask;

#ifdef __cplusplus
}
#endif

#endif
