/* The settings of threads as a configuration writes them: "STDIO|FLOATING_POINT". */
#ifndef ZUV_CONFIG_THREAD_SETTINGS_MASK_H
#define ZUV_CONFIG_THREAD_SETTINGS_MASK_H

#include "platform/dds/ThreadSettings.h"

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

#ifdef __cplusplus
}
#endif

#endif
