#include "config/XmlTags.h"

extern "C" {

const char *const BREL_XML_SERVICE_TAGS[] = {
    "administration", "monitoring", "internal_clock", "entity_monitoring", "jvm", "domain_route",
};

const char *const BREL_XML_ADMINISTRATION_TAGS[] = {
    "domain_id",       "distributed_logger", "domain_participant_qos",
    "participant_qos", "publisher_qos",      "subscriber_qos",
    "datareader_qos",  "datawriter_qos",     "memory_management",
    "save_path",       "save_on_update",     "reuse_monitoring_participant",
};

const char *const BREL_XML_MONITORING_TAGS[] = {
    "enabled",
    "domain_id",
    "ignore_initialization_failure",
    "status_publication_period",
    "statistics_sampling_period",
    "domain_participant_qos",
    "participant_qos",
    "publisher_qos",
    "datawriter_qos",
};

const char *const BREL_XML_DOMAIN_ROUTE_TAGS[] = {
    "entity_monitoring",
};

const char *const BREL_XML_CONNECTION_TAGS[] = {
    "domain_id", "domain_participant_qos", "participant_qos",
    "property",  "memory_management",      "register_type",
};

const char *const BREL_XML_SESSION_TAGS[] = {
    "entity_monitoring",
    "thread_pool",
    "auto_configure_publisher_qos",
    "auto_configure_subscriber_qos",
    "periodic_action",
    "property",
    "publisher_qos",
    "subscriber_qos",
};

const char *const BREL_XML_ROUTE_TAGS[] = {
    "entity_monitoring",          "route_types",
    "publish_with_original_info", "publish_with_original_timestamp",
    "propagate_dispose",          "propagate_unregister",
    "topic_query_proxy",          "stream_query_proxy",
    "filter_propagation",         "periodic_action",
    "enable_data_on_inputs",
};

const char *const BREL_XML_STREAM_PORT_TAGS[] = {
    "entity_monitoring",
    "topic_name",
    "stream_name",
    "registered_type_name",
    "allow_topic_name_filter",
    "allow_stream_name_filter",
    "allow_registered_type_name_filter",
    "deny_topic_name_filter",
    "deny_stream_name_filter",
    "deny_registered_type_name_filter",
    "creation_mode",
    "property",
    "datawriter_qos",
    "datareader_qos",
    "content_filter",
    "on_delete_wait_for_ack_timeout",
    "transformation",
    "auto_configure_qos",
};
}
