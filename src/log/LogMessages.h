/* The service's message templates.
 *
 * The identifiers are stable: within a group they follow one another in the order given here. A text that
 * begins with "!" tells of a failure. The suffix of a symbol lists the types of its arguments: s text, d
 * int, x hexadecimal and u unsigned int; a text must not be NULL. */
#ifndef ZUV_LOG_LOG_MESSAGES_H
#define ZUV_LOG_LOG_MESSAGES_H

#include "platform/log/Log.h"

#ifdef __cplusplus
extern "C" {
#endif

/* General, from 0x21c1000. */
extern const ZUVLogMessage BREL_LOG_ANY_WITH_RETCODE_sd;
extern const ZUVLogMessage BREL_LOG_ANY_NOT_FOUND_ss;
extern const ZUVLogMessage BREL_LOG_ANY_ENTITY_NOT_A_CLASS_sss;

/* The engine, from 0x21c2000. */
extern const ZUVLogMessage BREL_LOG_SERVICE_LOAD_PLUGIN_sddds;
extern const ZUVLogMessage BREL_LOG_TOPICROUTE_INIT_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_TOPICROUTE_TYPE_INCONSISTENCY_FAILURE_sss;
extern const ZUVLogMessage BREL_LOG_TOPICROUTE_PROCESS_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_STREAMPORT_ON_STREAM_MATCHED_sss;
extern const ZUVLogMessage BREL_LOG_STREAMPORT_ON_STREAM_LOST_sss;
extern const ZUVLogMessage BREL_LOG_STREAMPORT_AT_INDEX_NOT_ENABLED_sd;
extern const ZUVLogMessage BREL_LOG_STREAMPORT_GOT_TYPE_sss;
extern const ZUVLogMessage BREL_LOG_DOMAINROUTE_STATUS_sdds;
extern const ZUVLogMessage BREL_LOG_DOMAINROUTE_ATTACH_ROUTE_TO_SESSION_FAILURE;
extern const ZUVLogMessage BREL_LOG_DOMAINROUTE_STREAM_EVENT_sss;
extern const ZUVLogMessage BREL_LOG_TYPECODE_INCONSISTENCY_s;
extern const ZUVLogMessage BREL_LOG_TOPICTYPE_INCONSISTENCY_s;
extern const ZUVLogMessage BREL_LOG_TYPEREPR_INCONSISTENCY_s;
extern const ZUVLogMessage BREL_LOG_ROUTETYPE_INCONSISTENCY_sss;
extern const ZUVLogMessage BREL_LOG_ADAPTER_NOT_FOUND_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_ATTACH_ADAPTER_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_TRANSFORMATION_NOT_FOUND_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_TRANSFORMATION_FAILURE_sss;
extern const ZUVLogMessage BREL_LOG_TRANSFORMATION_GOT_TYPE_ss;
extern const ZUVLogMessage BREL_LOG_PLUGIN_SERVICE_VERSION_MISTMATCH_ss;
extern const ZUVLogMessage BREL_LOG_PLUGIN_VERSION_COMPARE_dddddd;
extern const ZUVLogMessage BREL_LOG_STREAMPORT_CREATE_FAILURE_WITH_STREAM_ss;
extern const ZUVLogMessage BREL_LOG_TYPECODE_NOT_AVAILABLE_s;
extern const ZUVLogMessage BREL_LOG_ADAPTER_FAILURE_WITH_PARAM_sdss;
extern const ZUVLogMessage BREL_LOG_ENV_FAILURE_sd;
extern const ZUVLogMessage BREL_LOG_MONITORING_STARTED_d;
extern const ZUVLogMessage BREL_LOG_SERVICE_USER_LOG_s; /* filled at each use */

/* Parameters and configuration, from 0x21c3000. */
extern const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_REQUIRED_PARAMETER_s;
extern const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETERS;
extern const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s;
extern const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_MISSING_ARGUMENT_s;
extern const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_AMBIGUOUS_PARAMETER_s;
extern const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_PARSING_FAILURE_s;
extern const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_sss;
extern const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_s;
/* Whatever its suffix says, its arguments are two numbers: the line and the minimum. */
extern const ZUVLogMessage BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd;
extern const ZUVLogMessage BREL_LOG_XML_TRANSF_CONFIGURED_WITH_TYPES_dss;

/* Remote, from 0x21c4000. */
extern const ZUVLogMessage BREL_LOG_REMOTE_CONFIG_NOT_CONNECTED;
extern const ZUVLogMessage BREL_LOG_REMOTE_CONFIG_STARTED_d;

/* Problems of the administration protocol, behind those of the group above. */
extern const ZUVLogMessage ZUV_SERVICE_LOG_SERVICE_UNLOADED;
extern const ZUVLogMessage ZUV_SERVICE_LOG_UNKNOWN_RESOURCE_ss;
extern const ZUVLogMessage ZUV_SERVICE_LOG_UNSUPPORTED_RESOURCE;
extern const ZUVLogMessage ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s;
extern const ZUVLogMessage ZUV_SERVICE_LOG_MALFORMED_RESOURCE_IDENTIFIER_s;
extern const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_s;
extern const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_ss;
extern const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNKNOWN_COMMAND_d;
extern const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_COMMAND_FAILURE_s;

/* DDS events, from 0x21c5000. The first six name their entity in brackets. */
extern const ZUVLogMessage BREL_LOG_DDS_REQUESTED_DEADLINE_MISSED_sdd;
extern const ZUVLogMessage BREL_LOG_DDS_REQUESTED_INCOMPATIBLE_QOS_sds;
extern const ZUVLogMessage BREL_LOG_DDS_SAMPLE_REJECTED_sddd;
extern const ZUVLogMessage BREL_LOG_DDS_LIVELINESS_CHANGED_sdd;
extern const ZUVLogMessage BREL_LOG_DDS_SAMPLE_LOST_sddd;
extern const ZUVLogMessage BREL_LOG_DDS_SUBSCRIPTION_MATCHED_sdd;
extern const ZUVLogMessage BREL_LOG_DDS_UNSUPPORTED_SERVICE_ID_d;
extern const ZUVLogMessage BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_SUBSET_ssss;
extern const ZUVLogMessage BREL_LOG_DDS_NO_ID_DISABLE_SRO_TYPE_NOT_SUBSET_sss;
extern const ZUVLogMessage BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_AVAILABLE_ss;
extern const ZUVLogMessage BREL_LOG_DDS_WRITE_METADATA_sxxxxdu;
extern const ZUVLogMessage BREL_LOG_DDS_CONTENT_FILTER_TOPIC_CHANGE_ss;
extern const ZUVLogMessage BREL_LOG_DDS_NEW_CONTENT_FILTER_MATCHED_s;

/* Processors, from 0x21d0000. */
extern const ZUVLogMessage BREL_LOG_BREL_PROCESSOR_WRITE_ERROR_dd;

#ifdef __cplusplus
}
#endif

#endif
