/* Small helpers that the configuration, the server and the shell share. */
#ifndef ZUV_CONFIG_UTILS_H
#define ZUV_CONFIG_UTILS_H

#include <stdint.h>

#include "platform/dds/Qos.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The property under which a participant announces the version of its service. */
#define BREL_SERVICE_VERSION_PROPERTY_NAME "zuv.service.version"

/* 1 for space, form feed, new line, carriage return and tab, whatever the locale; a vertical tab is not
 * white space here. */
int BRELUtils_isSpace(char character);

/* `name` without a leading "::"; the result points into `name`. NULL stays NULL. */
const char *BRELUtils_removeScopeChars(const char *name);

/* Name a participant after the product and the service: "ZUV Brel Service: app.route#participant". The
 * suffixes take part only if neither is empty; NULL counts as empty, for the separator too. When the parts
 * make more than 254 characters together, the name is that of the product alone.
 * The texts are copied, the former name is released. `qos` and `brelServiceName` must not be NULL.
 * Returns 1, or 0 after a report when there is no memory: then the name is as it was. */
int BRELUtils_setParticipantNameWithSeparator(DDS_DomainParticipantQos *qos,
                                              const char *brelServiceName, const char *suffix1,
                                              const char *suffix2, const char *suffixSeparator);

/* The same without a separator. */
int BRELUtils_setParticipantName(DDS_DomainParticipantQos *qos, const char *brelServiceName,
                                 const char *suffix1, const char *suffix2);

/* Announce the version of the service in the participant's properties, propagated by discovery. `qos` must
 * not be NULL. Returns 1, or 0 after a report: then the properties are as they were. */
int BRELUtils_setServiceVersion(DDS_DomainParticipantQos *qos);

/* The name of the most talkative level in a verbosity mask: "DEBUG" (bit 128), "INFO" (8), "WARN" (4),
 * "EXCEPTION" (2), or "CUSTOM" for other bits alone and "NONE" for 0. */
const char *BRELUtils_verbosityToString(uint32_t mask);

#ifdef __cplusplus
}
#endif

#endif
