/* Reads documents of the middleware's own XML into one tree.
 *
 * Operations fail with a report, and leave the tree as it was. No argument may be NULL unless it says so. A parser
 * and its trees belong to one thread at a time. */
#ifndef ZUV_PLATFORM_DDSXML_XML_PARSER_H
#define ZUV_PLATFORM_DDSXML_XML_PARSER_H

#include "platform/ddsxml/XmlObject.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct DDS_XMLParser DDS_XMLParser;

/* A further element that the parser reads, beyond those of the middleware. */
typedef struct ZUVXMLExtensionClass ZUVXMLExtensionClass;

/* A parser without extensions, to be released with DDS_XMLParser_delete. NULL when there is no memory. The XML
 * utilities must be initialized. */
DDS_XMLParser *DDS_XMLParser_new(void);

/* NULL does nothing. Extensions that are still registered are the caller's. */
void DDS_XMLParser_delete(DDS_XMLParser *self);

/* Let the parser know the class, which is borrowed until it is unregistered. 1, or 0 when its tag has a class
 * already, or there is no memory. */
int DDS_XMLParser_register_extension_class(DDS_XMLParser *self, ZUVXMLExtensionClass *extension);

/* Forget the class; nothing happens if it is not registered. */
void DDS_XMLParser_unregister_extension_class(DDS_XMLParser *self, ZUVXMLExtensionClass *extension);

/* The registered class of the tag, or NULL. */
ZUVXMLExtensionClass *DDS_XMLParser_find_extension_class(const DDS_XMLParser *self,
                                                         const char *tagName);

/* Read a document with the root "dds", replace the references to variables in it by values from the environment of the
 * process or from the elements "configuration_variables" that came last, in it or in the tree, and let the children of its root join `existingRoot`, behind what is
 * there; of a library that is there already by tag and name, the content joins that one. NULL for `existingRoot`
 * makes a tree of its own. Returns the root of the tree; NULL when the document is refused, or there is no
 * memory: then `existingRoot` is as it was. */
ZUVXMLObject *ZUVXMLParser_parseFromString(DDS_XMLParser *self, ZUVXMLObject *existingRoot,
                                           const char *text);

/* The same for a text that was made of an element of another document. Reports name the file, NULL for none, and count
 * lines from `line` on, the one on which that element stands. An instruction <?zuv-linenumber N?> in front of an element
 * says that it stands on line N instead; it counts until the next one, which may hold something else than a number.
 * <?zuv-file PATH?> in a child of the root names its file. */
ZUVXMLObject *ZUVXMLParser_parseFromPlace(DDS_XMLParser *self, ZUVXMLObject *existingRoot,
                                          const char *text, const char *file, int line);

/* Free the element with all that is in it; it may still stand in a tree. NULL for `object` does nothing. */
void DDS_XMLParser_free_dom(DDS_XMLParser *self, ZUVXMLObject *object);

/* Store in `*root` a new tree that holds the profiles which are always there. 0, or another number after a report
 * when there is no memory; then `*root` is untouched. */
int DDS_QosProvider_load_builtin_profilesI(DDS_XMLParser *parser, ZUVXMLObject **root);

#ifdef __cplusplus
}
#endif

#endif
