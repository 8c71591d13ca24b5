/* What a service is told at its start, by its command line or by the program that embeds it. */
#ifndef ZUV_CONFIG_SERVICE_PROPERTY_H
#define ZUV_CONFIG_SERVICE_PROPERTY_H

#include "platform/typesys/Types.h"
#include "sdkLib/Properties.h"

#ifdef __cplusplus
extern "C" {
#endif

#define ZUV_BREL_SERVICE_TRANSPORT_COUNT_MAX 8

/* The operation that makes a transport; its type is the middleware's. */
typedef void (*ZUV_BrelServiceTransportCreateFcn)(void);

/* A transport that the program brings, under the name by which QoS properties refer to it. */
typedef struct ZUV_BrelServiceTransportConfig {
    const char *alias;
    ZUV_BrelServiceTransportCreateFcn create_function;
} ZUV_BrelServiceTransportConfig;

/* Texts are borrowed from whoever fills in the record. All zero, with `user_environment` initialized, is a valid
 * record: nothing is set. */
typedef struct ZUV_BrelServiceProperty {
    const char *cfg_file; /* URL groups, see ZUVXMLUTILSParser_parseUrlGroupList */
    const char *const *cfg_strings;
    int cfg_strings_count;
    const char *service_name;
    const char *application_name;
    DDS_Boolean enforce_xsd_validation; /* of documents, entities and updates */
    int service_verbosity;
    int dds_verbosity;
    int domain_id_base;
    const char *plugin_search_path;
    DDS_Boolean dont_start_service;
    DDS_Boolean enable_administration;
    int administration_domain_id;
    DDS_Boolean enable_monitoring;
    int monitoring_domain_id;
    const char *internal_clock;
    DDS_Boolean skip_default_files; /* no source is loaded that nobody named */
    DDS_Boolean identify_execution;
    ZUV_BrelServiceTransportConfig registered_transports[ZUV_BREL_SERVICE_TRANSPORT_COUNT_MAX];
    int registered_transports_count;
    ZUV_BrelServiceProperties user_environment; /* values of variables, and settings */
} ZUV_BrelServiceProperty;

#ifdef __cplusplus
}
#endif

#endif
