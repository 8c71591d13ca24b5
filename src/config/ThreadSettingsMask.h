/* The settings of threads as a configuration writes them: "STDIO|FLOATING_POINT". */
#ifndef ZUV_CONFIG_THREAD_SETTINGS_MASK_H
#define ZUV_CONFIG_THREAD_SETTINGS_MASK_H

#include "platform/dds/ThreadSettings.h"
#include "platform/ddsxml/XmlHelper.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Read a mask: names parted by "|", with white space around them, in any case. Each is FLOATING_POINT, STDIO,
 * REALTIME_PRIORITY or PRIORITY_ENFORCE, alone or behind DDS_THREAD_SETTINGS_ or THREAD_SETTINGS_; or
 * MASK_DEFAULT, alone or behind DDS_THREAD_SETTINGS_KIND_ or THREAD_SETTINGS_KIND_, which adds nothing. No
 * name at all is a mask of 0.
 *
 * Returns 1 and stores the mask, or returns 0 after a report and stores nothing: for another name, for a text
 * of 2048 characters or more, and for a NULL argument. */
int BRELXmlUtils_getThreadSettingsKindMaskElement(DDS_ThreadSettingsKindMask *mask,
                                                  const char *elementText);

/* The same for the text of an element `tagName` of the middleware's XML: a failure sets the error flag of
 * `context`, and its report has the context's line and the tag. A missing context is reported, and nothing else
 * happens. */
void BRELUtils_getThreadSettingsKindMaskElement(DDS_ThreadSettingsKindMask *mask,
                                                const char *tagName, const char *elementText,
                                                DDS_XMLContext *context);

#ifdef __cplusplus
}
#endif

#endif
