/* Reads XML documents into trees of ZUVXMLUTILSObject, and merges these.
 *
 * Documents may come from strangers. One is refused, before it takes more memory than a small multiple of its
 * size and with one line of report that tells the file, the line, the element and the reason, when it
 *   - is larger, deeper or wordier than the limits below allow, or is not UTF-8 without NUL characters;
 *   - holds a DOCTYPE, and with it any entity beyond the five of XML;
 *   - holds an element of XInclude, or the attribute xsi:schemaLocation;
 *   - holds the attribute ZUVXMLUTILS_RESERVED_ATTRIBUTE_NAME, which is the program's own;
 *   - is not well-formed (XML 1.0, 2.1; Namespaces in XML 1.0).
 * Nothing that a document names is ever opened. The attribute xsi:noNamespaceSchemaLocation, which editors
 * use, is allowed and has no effect.
 *
 * Blanks between elements are dropped, CDATA sections are text, and text that a comment or a processing
 * instruction parts is one text. No argument may be NULL unless it says so. The operations may be called from
 * any thread after ZUVXMLUTILSGlobals_initialize; a tree belongs to one thread at a time. */
#ifndef ZUV_PLATFORM_XMLUTILS_PARSER_H
#define ZUV_PLATFORM_XMLUTILS_PARSER_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The limits of a document: its bytes, the elements within each other, the attributes of one element, and the
 * bytes of one text, comment, or start tag. ZUVXMLUTILS_NAME_LENGTH_MAX limits names. */
#define ZUVXMLUTILS_DOCUMENT_SIZE_MAX (256 * 1024 * 1024)
#define ZUVXMLUTILS_DEPTH_MAX 100
#define ZUVXMLUTILS_ATTRIBUTE_COUNT_MAX 64
#define ZUVXMLUTILS_TEXT_LENGTH_MAX (1024 * 1024)

/* The program sets this attribute to addresses of its own elements. */
#define ZUVXMLUTILS_RESERVED_ATTRIBUTE_NAME "zuv_xml_object_update"

/* Read a document from a text. Returns its root, to be freed with ZUVXMLUTILSParser_freeDom; NULL when the
 * document is refused or there is no memory, after a report. */
ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseString(const char *text);

/* The same for a text that is given in `count` pieces, at least one, to be read as if they were one. */
ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseStringArray(const char *const *pieces, int count);

/* The same for a file. `path` is remembered as it stands, see ZUVXMLUTILSObject_getFilePath. A file that
 * cannot be read, or is no plain file, fails; the last line of a report is
 * ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s with the path. */
ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseFile(const char *path);

/* Read the documents of a URL group list and merge them in their order.
 *
 *   list   = group *( ";" group )
 *   group  = url | "[" url *( "|" url ) "]"
 *   url    = [ "file://" ] path  |  "str://" %x22 document %x22
 *
 * Of the URLs in brackets the first whose file exists is read, and the others are not looked at, whatever the
 * file holds; an inline document always exists. Each group must have one that exists. Blanks around groups
 * and URLs do not count, and empty groups are passed by, but a list without any URL fails. A document between
 * double quotes ends at the first double quote that ";", "|", "]" or the end of the list follows. The result
 * is as for parseString. */
ZUVXMLUTILSObject *ZUVXMLUTILSParser_parseUrlGroupList(const char *list);

/* Add the document with the root `newRoot` to the tree with the root `root`: copies of its children go
 * behind the children that are there, in their order, with lines and file paths and without user data. Of the
 * attributes of the new root the tree takes those that its own root lacks. Nothing is replaced and no two
 * elements become one, also if they have the same name. `newRoot` is left as it is. 1, or 0 with the tree as
 * it was: when the roots have different tags, or there is no memory. */
int ZUVXMLUTILSParser_mergeRoot(ZUVXMLUTILSObject *root, const ZUVXMLUTILSObject *newRoot);

/* Free the element with everything in it, and with the root of a tree the whole tree. NULL does nothing. What
 * the user data lead to is not touched. */
void ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSObject *object);

#ifdef __cplusplus
}
#endif

#endif
