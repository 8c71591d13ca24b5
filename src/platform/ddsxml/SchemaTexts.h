/* The schemas of the middleware's own languages, as texts that a program carries inside. Each is a document of
 * XML Schema 1.0 in pieces, to be read as if they were one; the files are in schemas/definitions. Constant,
 * for any thread. */
#ifndef ZUV_PLATFORM_DDSXML_SCHEMA_TEXTS_H
#define ZUV_PLATFORM_DDSXML_SCHEMA_TEXTS_H

#ifdef __cplusplus
extern "C" {
#endif

/* The simple types that all share, and the QoS of entities. Stands alone. */
#define ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD_LENGTH 32
extern const char
    *const ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD[ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD_LENGTH];

/* Libraries of QoS profiles, domains and participants. Includes "zuv_dds_qos_profiles_definitions.xsd" and
 * "zuv_dds_topic_types_definitions.xsd". */
#define ZUV_DDS_PROFILES_DEFINITIONS_XSD_LENGTH 8
extern const char *const ZUV_DDS_PROFILES_DEFINITIONS_XSD[ZUV_DDS_PROFILES_DEFINITIONS_XSD_LENGTH];

/* Data types. Stands alone. */
#define ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD_LENGTH 10
extern const char
    *const ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD[ZUV_DDS_TOPIC_TYPES_DEFINITIONS_XSD_LENGTH];

/* The distributed logger. Stands alone. */
#define ZUV_DIST_LOGGER_DEFINITIONS_XSD_LENGTH 2
extern const char *const ZUV_DIST_LOGGER_DEFINITIONS_XSD[ZUV_DIST_LOGGER_DEFINITIONS_XSD_LENGTH];

#ifdef __cplusplus
}
#endif

#endif
