/* The schema of the service's configuration and the stylesheet for its QoS, as texts that the program carries
 * inside, so that neither is ever read from disk. Each is a document in pieces, to be read as if they were one;
 * the files are in schemas and src/config/stylesheet. Constant, for any thread. */
#ifndef ZUV_CONFIG_EMBEDDED_TEXTS_H
#define ZUV_CONFIG_EMBEDDED_TEXTS_H

#ifdef __cplusplus
extern "C" {
#endif

/* The schema of documents with the root dds. Includes "definitions/zuv_service_common_definitions.xsd". */
#define BREL_XSD_LENGTH 65
extern const char *const BREL_XSD[BREL_XSD_LENGTH];

/* What services have in common. Includes the middleware's schemas (platform/ddsxml/SchemaTexts.h) by their
 * names, in its own folder. */
#define BREL_SERVICE_COMMON_XSD_LENGTH 23
extern const char *const BREL_SERVICE_COMMON_XSD[BREL_SERVICE_COMMON_XSD_LENGTH];

/* The stylesheet (XSLT 1.0) that makes of a document, or of one QoS element, what the QoS side tree reads: the
 * variables, types and QoS libraries of the document, and a library with the element as a profile. Its
 * parameters are BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM, BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM and
 * BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM. */
#define BREL_XSLT_TO_QOS_LENGTH 9
extern const char *const BREL_XSLT_TO_QOS[BREL_XSLT_TO_QOS_LENGTH];

#ifdef __cplusplus
}
#endif

#endif
