/* The platform's message templates.
 *
 * A text that begins with "!" tells of a failure and reads "could not": "!create participant". The suffix
 * of a symbol lists the types of its arguments (s text, d int); a text must not be NULL.
 *
 * The symbols that end in _TEMPLATE take one text that has arguments of its own. Their sites use
 * ZUV_LOG_TEMPLATE of platform/log/Log.h, where the compiler checks those arguments:
 *
 *   ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE, &ZUV_LOG_FAILURE_TEMPLATE,
 *                    "get default participant qos - Return code = %d\n", code);
 *
 * The text's own final new line, if it has one, gives way to that of the template. */
#ifndef ZUV_PLATFORM_LOG_LOG_MESSAGES_H
#define ZUV_PLATFORM_LOG_LOG_MESSAGES_H

#include "platform/log/Log.h"

#ifdef __cplusplus
extern "C" {
#endif

/* General. */
extern const ZUVLogMessage ZUV_LOG_PRECONDITION_FAILURE_s; /* the failed condition */
extern const ZUVLogMessage ZUV_LOG_ANY_s;         /* the whole text, not marked as a failure */
extern const ZUVLogMessage ZUV_LOG_ANY_ss;        /* two texts, put together as they are */
extern const ZUVLogMessage ZUV_LOG_ANY_FAILURE_s; /* what could not be done */
extern const ZUVLogMessage ZUV_LOG_ADD_FAILURE_s; /* what could not be added, and so on */
extern const ZUVLogMessage ZUV_LOG_ASSERT_FAILURE_s;
extern const ZUVLogMessage ZUV_LOG_CREATION_FAILURE_s;
extern const ZUVLogMessage ZUV_LOG_DESTRUCTION_FAILURE_s;
extern const ZUVLogMessage ZUV_LOG_GET_FAILURE_s;
extern const ZUVLogMessage ZUV_LOG_INIT_FAILURE_s;
extern const ZUVLogMessage ZUV_LOG_INVALID_s;            /* what is not valid */
extern const ZUVLogMessage ZUV_LOG_BAD_STRING_FORMAT_ss; /* what was read; its text */
extern const ZUVLogMessage ZUV_LOG_SEMAPHORE_GIVE_FAILURE;
extern const ZUVLogMessage ZUV_LOG_ENABLE_FAILURE_s;

/* General, for ZUV_LOG_TEMPLATE. */
extern const ZUVLogMessage ZUV_LOG_FAILURE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_COPY_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_CREATE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_DELETE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_GET_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_PARSE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_CONFIG_FAILURE_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_LOCK_TEMPLATE;
extern const ZUVLogMessage ZUV_LOG_FAILED_TO_FINALIZE_TEMPLATE;

/* Memory and files. */
extern const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd; /* elements; bytes of each */
extern const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d; /* characters */
extern const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d; /* bytes */
extern const ZUVLogMessage ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s;    /* path */

/* The XML utilities. Where the first argument is a number, it is the line in the document. */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds;       /* tag */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss;      /* tag; reason */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_WARNING_dss;      /* tag; reason */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ATTR_DEFAULT_VALUE_dss; /* attribute; value */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_DEPRECATED_TAG_ss;      /* old tag; new tag */
extern const ZUVLogMessage
    ZUVXMLUTILS_LOG_PARSER_ENTITY_ALREADY_EXISTS_ds;                  /* of the earlier; name */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s; /* name */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_REFERENCE_NOT_FOUND_dss; /* name; kind */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss; /* name; tag */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s;                    /* path */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_LOAD_URL_GROUP_s;       /* group; no failure */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_REGISTER_DEFINITION_FAILURE_s; /* file name */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s; /* tag */
/* Why a document, schema or stylesheet is refused: its file, or what it is; line; tag; reason. */
extern const ZUVLogMessage ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss;
extern const ZUVLogMessage ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sds; /* the same without an element */

/* The XML parser of the middleware. */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FAILURE_ds;     /* tag */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FAILURE_dss;    /* tag; reason */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FILE_FAILURE_s; /* path */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_ILLEGAL_VALUE_ds;     /* tag */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds; /* value */
extern const ZUVLogMessage ZUVXML_LOG_PARSER_UNEXPECTED_TAG_FAILURE_ds;             /* tag */

/* The serialized form of samples. */
extern const ZUVLogMessage ZUV_CDR_LOG_SERIALIZE_FAILURE_s;   /* what */
extern const ZUVLogMessage ZUV_CDR_LOG_DESERIALIZE_FAILURE_s; /* what */

/* The DDS API. */
extern const ZUVLogMessage DDS_LOG_BAD_PARAMETER_s;                /* name of the parameter */
extern const ZUVLogMessage DDS_LOG_SEQUENCE_NOT_OWNER;             /* a loan cannot be resized */
extern const ZUVLogMessage DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd; /* asked length; maximum */
extern const ZUVLogMessage DDS_LOG_SEQUENCE_SET_LENGTH_FAILED_sd;  /* sequence; asked length */

#ifdef __cplusplus
}
#endif

#endif
