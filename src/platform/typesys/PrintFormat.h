/* How a sample is rendered as text. */
#ifndef ZUV_PLATFORM_TYPESYS_PRINT_FORMAT_H
#define ZUV_PLATFORM_TYPESYS_PRINT_FORMAT_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef enum DDS_PrintFormatKind {
    DDS_DEFAULT_PRINT_FORMAT = 0, /* "name: value" lines, indented */
    DDS_XML_PRINT_FORMAT = 1,
    DDS_JSON_PRINT_FORMAT = 2
} DDS_PrintFormatKind;

typedef struct DDS_PrintFormatProperty {
    DDS_PrintFormatKind kind;
    DDS_Boolean pretty_print;          /* XML and JSON: one member a line, indented */
    DDS_Boolean enum_as_int;           /* the number of an enumerator in place of its name */
    DDS_Boolean include_root_elements; /* XML and JSON: an outermost element named for the type */
} DDS_PrintFormatProperty;

#define DDS_PRINT_FORMAT_PROPERTY_INITIALIZER                                                      \
    {                                                                                              \
        DDS_DEFAULT_PRINT_FORMAT, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE, DDS_BOOLEAN_TRUE            \
    }

/* Default format, pretty, enumerators by name, with the root element. */
extern const DDS_PrintFormatProperty DDS_PRINT_FORMAT_PROPERTY_DEFAULT;

#ifdef __cplusplus
}
#endif

#endif
