/* The names of the product and of what it publishes: one record for the process. */
#ifndef ZUV_CONFIG_PRODUCT_INFO_H
#define ZUV_CONFIG_PRODUCT_INFO_H

#ifdef __cplusplus
extern "C" {
#endif

/* Each text is borrowed: it lives as long as the process, or as the program that set it promises. */
typedef struct BRELProductInfo {
    const char *executableName;
    const char *shellExecutableName;
    const char *productName;
    const char *logProductName;
    const char *defaultAppName;
    const char *topLevelTag;
    const char *shippedDefaultCfgFile;
    const char *moduleDefaultCfgFile;
    const char *workingDirCfgFile;
    /* Administration names of former days; the shell and the server use others. */
    const char *requestTypeName;
    const char *requestTopicName;
    const char *responseTypeName;
    const char *responseTopicName;
    /* Monitoring. */
    const char *routeStatusTypeName;
    const char *routeStatusTopicName;
    const char *domainRouteStatusTypeName;
    const char *domainRouteStatusTopicName;
    const char *autoRouteStatusTypeName;
    const char *autoRouteStatusTopicName;
    const char *serviceStatusTypeName;
    const char *serviceStatusTopicName;
    const char *sessionStatusTypeName;
    const char *sessionStatusTopicName;
    const char *routeDataTypeName;
    const char *routeDataTopicName;
    const char *domainRouteDataTypeName;
    const char *domainRouteDataTopicName;
    const char *autoRouteDataTypeName;
    const char *autoRouteDataTopicName;
    const char *serviceDataTypeName;
    const char *serviceDataTopicName;
    const char *sessionDataTypeName;
    const char *sessionDataTopicName;
} BRELProductInfo;

/* What a program that embeds the service may set in place of the defaults. */
typedef struct ZUV_BrelServiceProductInfo {
    const char *executable_name;
    const char *shell_executable_name;
    const char *product_name;
    const char *log_product_name;
    const char *default_app_name;
} ZUV_BrelServiceProductInfo;

/* The defaults. */
extern const BRELProductInfo BREL_PRODUCT_INFO_DEFAULT;

/* The record of the process; never NULL. It may be read from any thread as long as none sets or resets
 * it, which a program does before it starts the service. */
const BRELProductInfo *BRELProductInfo_get(void);

/* Replace the first five names by those of `info`. The texts are borrowed until the next set or reset; where one
 * is NULL, the default stands. A NULL `info` is reported, and changes nothing. */
void BRELProductInfo_set(const ZUV_BrelServiceProductInfo *info);

/* Go back to the defaults. */
void BRELProductInfo_reset(void);

/* The version of the service as text. It is built once; the text lives as long as the process. Any
 * thread. */
const char *BRELProductInfo_getVersion(void);

#ifdef __cplusplus
}
#endif

#endif
