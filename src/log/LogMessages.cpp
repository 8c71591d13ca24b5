#include "log/LogMessages.h"

namespace
{
constexpr uint32_t kGeneral = 0x21c1000;
constexpr uint32_t kEngine = 0x21c2000;
constexpr uint32_t kConfiguration = 0x21c3000;
constexpr uint32_t kRemote = 0x21c4000;
constexpr uint32_t kDds = 0x21c5000;
constexpr uint32_t kProcessor = 0x21d0000;
} // namespace

extern "C" {

const ZUVLogMessage BREL_LOG_ANY_WITH_RETCODE_sd = {kGeneral + 0, "%s (retcode=%d)\n"};
const ZUVLogMessage BREL_LOG_ANY_NOT_FOUND_ss = {kGeneral + 1, "%s with name=%s not found\n"};
const ZUVLogMessage BREL_LOG_ANY_ENTITY_NOT_A_CLASS_sss = {kGeneral + 2,
                                                           "entity=%s with name=%s not %s\n"};

const ZUVLogMessage BREL_LOG_SERVICE_LOAD_PLUGIN_sddds = {
    kEngine + 0, "loaded plug-in=%s, version %d.%d.%d, from library=%s\n"};
const ZUVLogMessage BREL_LOG_TOPICROUTE_INIT_FAILURE_s = {kEngine + 1, "!initialize route=%s\n"};
const ZUVLogMessage BREL_LOG_TOPICROUTE_TYPE_INCONSISTENCY_FAILURE_sss = {
    kEngine + 2, "!enable route=%s: input type=%s and output type=%s are inconsistent\n"};
const ZUVLogMessage BREL_LOG_TOPICROUTE_PROCESS_FAILURE_s = {kEngine + 3,
                                                             "!forward data on route=%s\n"};
const ZUVLogMessage BREL_LOG_STREAMPORT_ON_STREAM_MATCHED_sss = {
    kEngine + 4, "%s of route=%s matched stream=%s\n"};
const ZUVLogMessage BREL_LOG_STREAMPORT_ON_STREAM_LOST_sss = {kEngine + 5,
                                                              "%s of route=%s lost stream=%s\n"};
const ZUVLogMessage BREL_LOG_STREAMPORT_AT_INDEX_NOT_ENABLED_sd = {
    kEngine + 6, "%s at index=%d is not enabled\n"};
const ZUVLogMessage BREL_LOG_STREAMPORT_GOT_TYPE_sss = {kEngine + 7,
                                                        "%s of stream=%s got type=%s\n"};
const ZUVLogMessage BREL_LOG_DOMAINROUTE_STATUS_sdds = {
    kEngine + 8, "domain route=%s: first domain=%d, second domain=%d, state=%s\n"};
const ZUVLogMessage BREL_LOG_DOMAINROUTE_ATTACH_ROUTE_TO_SESSION_FAILURE = {
    kEngine + 9, "!attach route to session\n"};
const ZUVLogMessage BREL_LOG_DOMAINROUTE_STREAM_EVENT_sss = {
    kEngine + 10, "domain route=%s: event=%s on stream=%s\n"};
const ZUVLogMessage BREL_LOG_TYPECODE_INCONSISTENCY_s = {
    kEngine + 11, "stream=%s was discovered with another type code: the first one stays in use\n"};
const ZUVLogMessage BREL_LOG_TOPICTYPE_INCONSISTENCY_s = {
    kEngine + 12, "stream=%s was discovered with another type name: the first one stays in use\n"};
const ZUVLogMessage BREL_LOG_TYPEREPR_INCONSISTENCY_s = {
    kEngine + 13,
    "stream=%s was discovered with another type representation: the first one stays in use\n"};
const ZUVLogMessage BREL_LOG_ROUTETYPE_INCONSISTENCY_sss = {
    kEngine + 14, "route=%s is configured with type=%s, but its stream has type=%s\n"};
const ZUVLogMessage BREL_LOG_ADAPTER_NOT_FOUND_FAILURE_s = {kEngine + 15, "!find adapter=%s\n"};
const ZUVLogMessage BREL_LOG_ATTACH_ADAPTER_FAILURE_s = {kEngine + 16, "!attach adapter=%s\n"};
const ZUVLogMessage BREL_LOG_TRANSFORMATION_NOT_FOUND_FAILURE_s = {kEngine + 17,
                                                                   "!find transformation=%s\n"};
const ZUVLogMessage BREL_LOG_TRANSFORMATION_FAILURE_sss = {
    kEngine + 18, "!apply transformation=%s from type=%s to type=%s\n"};
const ZUVLogMessage BREL_LOG_TRANSFORMATION_GOT_TYPE_ss = {kEngine + 19,
                                                           "transformation=%s got type=%s\n"};
const ZUVLogMessage BREL_LOG_PLUGIN_SERVICE_VERSION_MISTMATCH_ss = {
    kEngine + 20, "plug-in=%s was built for another version of the service than %s\n"};
const ZUVLogMessage BREL_LOG_PLUGIN_VERSION_COMPARE_dddddd = {
    kEngine + 21, "plug-in built for version %d.%d.%d, service has version %d.%d.%d\n"};
const ZUVLogMessage BREL_LOG_STREAMPORT_CREATE_FAILURE_WITH_STREAM_ss = {
    kEngine + 22, "!create %s for stream=%s\n"};
const ZUVLogMessage BREL_LOG_TYPECODE_NOT_AVAILABLE_s = {kEngine + 23,
                                                         "type code of type=%s is not available\n"};
const ZUVLogMessage BREL_LOG_ADAPTER_FAILURE_WITH_PARAM_sdss = {
    kEngine + 24, "!complete %s: adapter error=%d (%s), parameter=%s\n"};
const ZUVLogMessage BREL_LOG_ENV_FAILURE_sd = {
    kEngine + 25, "!complete plug-in operation: %s (native code=%d)\n"};
const ZUVLogMessage BREL_LOG_MONITORING_STARTED_d = {kEngine + 26,
                                                     "monitoring enabled on domain=%d\n"};
// BREL_LOG_SERVICE_USER_LOG_s is kEngine + 27; it stands in Log.cpp, with the buffer of its format.

const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_REQUIRED_PARAMETER_s = {
    kConfiguration + 0, "command-line parameter '%s' is required\n"};
const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETERS = {kConfiguration + 1,
                                                                 "bad command-line parameters\n"};
const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s = {
    kConfiguration + 2, "bad command-line parameter '%s'\n"};
const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_MISSING_ARGUMENT_s = {
    kConfiguration + 3, "parameter=%s requires argument\n"};
const ZUVLogMessage BREL_LOG_PARAMETER_MANAGER_AMBIGUOUS_PARAMETER_s = {
    kConfiguration + 4, "ambiguous parameter prefix=%s. Please specify a longer prefix\n"};
const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_PARSING_FAILURE_s = {
    kConfiguration + 5, "error parsing configuration file '%s'\n"};
const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_sss = {
    kConfiguration + 6, "%s '%s' not found in configuration file '%s'\n"};
const ZUVLogMessage BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_s = {
    kConfiguration + 7, "the configuration file must specify at least one %s\n"};
const ZUVLogMessage BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd = {
    kConfiguration + 8, "parse warning at line %d: value is too small; minimum allowed value=%d\n"};
const ZUVLogMessage BREL_LOG_XML_TRANSF_CONFIGURED_WITH_TYPES_dss = {
    kConfiguration + 9,
    "line %d: transformation configured with input_type_name=%s, output_type_name=%s}\n"};

const ZUVLogMessage BREL_LOG_REMOTE_CONFIG_NOT_CONNECTED = {kRemote + 0, "not connected\n"};
const ZUVLogMessage BREL_LOG_REMOTE_CONFIG_STARTED_d = {
    kRemote + 1, "remote administration enabled on domain=%d\n"};

const ZUVLogMessage ZUV_SERVICE_LOG_SERVICE_UNLOADED = {kRemote + 2, "service is unloaded\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_UNKNOWN_RESOURCE_ss = {
    kRemote + 3, "unknown resource=%s. Did you mean '%s'?\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_UNSUPPORTED_RESOURCE = {kRemote + 4, "unsupported resource\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s = {kRemote + 5, "unsupported state=%s\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_MALFORMED_RESOURCE_IDENTIFIER_s = {
    kRemote + 6, "malformed resource identifier '%s'\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_s = {
    kRemote + 7, "unsupported command=%s\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_ss = {
    kRemote + 8, "command=%s not supported for resource=%s\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_UNKNOWN_COMMAND_d = {
    kRemote + 9, "unknown command action=%d\n"};
const ZUVLogMessage ZUV_SERVICE_LOG_REMOTE_SERVICE_COMMAND_FAILURE_s = {
    kRemote + 10, "!process remote command: %s\n"};

const ZUVLogMessage BREL_LOG_DDS_REQUESTED_DEADLINE_MISSED_sdd = {
    kDds + 0, "[%s] requested deadline missed: total count=%d, change=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_REQUESTED_INCOMPATIBLE_QOS_sds = {
    kDds + 1, "[%s] requested incompatible QoS: total count=%d, last policy=%s\n"};
const ZUVLogMessage BREL_LOG_DDS_SAMPLE_REJECTED_sddd = {
    kDds + 2, "[%s] sample rejected: total count=%d, change=%d, last reason=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_LIVELINESS_CHANGED_sdd = {
    kDds + 3, "[%s] liveliness changed: alive count=%d, not alive count=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_SAMPLE_LOST_sddd = {
    kDds + 4, "[%s] sample lost: total count=%d, change=%d, last reason=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_SUBSCRIPTION_MATCHED_sdd = {
    kDds + 5, "[%s] subscription matched: current count=%d, change=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_UNSUPPORTED_SERVICE_ID_d = {
    kDds + 6, "discovered an endpoint of an unsupported service id=%d\n"};
const ZUVLogMessage BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_SUBSET_ssss = {
    kDds + 7, "simple route optimization disabled on route=%s: members of type=%s of output=%s are "
              "not all in type=%s of the input\n"};
const ZUVLogMessage BREL_LOG_DDS_NO_ID_DISABLE_SRO_TYPE_NOT_SUBSET_sss = {
    kDds + 8, "simple route optimization disabled: members of type=%s of output=%s are not all in "
              "type=%s of the input\n"};
const ZUVLogMessage BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_AVAILABLE_ss = {
    kDds + 9, "simple route optimization disabled on route=%s: type=%s is not available\n"};
const ZUVLogMessage BREL_LOG_DDS_WRITE_METADATA_sxxxxdu = {
    kDds + 10,
    "[%s] write with original writer=%08x.%08x.%08x.%08x, sequence number high=%d, low=%u\n"};
const ZUVLogMessage BREL_LOG_DDS_CONTENT_FILTER_TOPIC_CHANGE_ss = {
    kDds + 11, "content filter of topic=%s changed to '%s'\n"};
const ZUVLogMessage BREL_LOG_DDS_NEW_CONTENT_FILTER_MATCHED_s = {
    kDds + 12, "reader with a new content filter matched on topic=%s\n"};

const ZUVLogMessage BREL_LOG_BREL_PROCESSOR_WRITE_ERROR_dd = {
    kProcessor + 0, "!write on output at index=%d: dropped samples count=%d\n"};

} // extern "C"
