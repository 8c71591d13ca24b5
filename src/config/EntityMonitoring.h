/* The settings "entity_monitoring", which several records of the tree hold. */
#ifndef ZUV_CONFIG_ENTITY_MONITORING_H
#define ZUV_CONFIG_ENTITY_MONITORING_H

#include "platform/osapi/Time.h"
#include "platform/typesys/Types.h"
#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct BRELCfgFileMonitoringStatisticsWindow {
    DDS_Boolean enabled;
    DDS_Boolean present; /* the element names the window */
} BRELCfgFileMonitoringStatisticsWindow;

/* Over how long statistics are kept. */
typedef struct BRELCfgFileMonitoringStatistics {
    DDS_Boolean present; /* the element names statistics */
    BRELCfgFileMonitoringStatisticsWindow fiveSecond;
    BRELCfgFileMonitoringStatisticsWindow oneMinute;
    BRELCfgFileMonitoringStatisticsWindow fiveMinute;
    BRELCfgFileMonitoringStatisticsWindow oneHour;
    BRELCfgFileMonitoringStatisticsWindow uptime;
} BRELCfgFileMonitoringStatistics;

/* The flags that end in Present tell a setting that the element names from one that it leaves alone. */
typedef struct BRELCfgFileEntityMonitoring {
    DDS_Boolean enabled;
    DDS_Boolean enabledPresent;
    DDS_Boolean ignoreInitializationFailure; /* no element gives it */
    DDS_Boolean pubPeriodPresent;
    DDS_Duration_t publishStatusPeriod;
    DDS_Boolean statsSamplingPeriodPresent;
    DDS_Duration_t statsSamplingPeriod;
    BRELCfgFileMonitoringStatistics statistics;
} BRELCfgFileEntityMonitoring;

/* Make a record, whatever it held, that of an element which names nothing: enabled, no periodic publication,
 * samples taken each second. 0 for NULL. */
int BRELCfgFileEntityMonitoring_initialize(BRELCfgFileEntityMonitoring *self);

/* Copy the whole record, flags included. 0 when one is NULL. */
int BRELCfgFileEntityMonitoring_copy(BRELCfgFileEntityMonitoring *self,
                                     const BRELCfgFileEntityMonitoring *source);

/* Read what the element names, and leave the rest as it is. 1, or 0 after a report of the child that is wrong:
 * then what stands before it is read, and its flag is set. Neither may be NULL. */
int BRELCfgFileEntityMonitoring_parse(BRELCfgFileEntityMonitoring *self,
                                      const ZUVXMLUTILSObject *xmlEntityMonitoring);

/* The record owns nothing. */
void BRELCfgFileEntityMonitoring_finalize(BRELCfgFileEntityMonitoring *self);

/* 1 if a window that `right` names is enabled in one of them and not in the other. What `left` names does not
 * count. Neither may be NULL: 0 after a report. */
int BRELCfgFileMonitoringStatistics_differ(const BRELCfgFileMonitoringStatistics *left,
                                           const BRELCfgFileMonitoringStatistics *right);

#ifdef __cplusplus
}
#endif

#endif
