/* The elements of an XML document, as a tree that a program reads, changes and hangs its own data on.
 *
 * A tree comes from ZUVXMLUTILSParser_... or ZUVXMLUTILSTransformer_... and is freed by its root with
 * ZUVXMLUTILSParser_freeDom. All texts that are handed out belong to the tree: they live until the element
 * is freed, or until the value they show is replaced. Comments and processing instructions stay in the tree,
 * but the walk from child to child passes them by.
 *
 * No argument may be NULL unless it says so; one that is gets reported as a failed precondition, and the
 * operation fails. "Fails" means: reports, returns 0 or NULL, and leaves the tree as it was.
 *
 * Nothing here locks. Threads that share a tree take turns, also for reading: lookups build indexes. */
#ifndef ZUV_PLATFORM_XMLUTILS_OBJECT_H
#define ZUV_PLATFORM_XMLUTILS_OBJECT_H

#ifdef __cplusplus
extern "C" {
#endif

/* An element. */
typedef struct ZUVXMLUTILSObject ZUVXMLUTILSObject;
/* An attribute of an element. */
typedef struct ZUVXMLUTILSAttribute ZUVXMLUTILSAttribute;

/* Names have at most this many characters: those of elements, of attributes, and the values of attributes
 * called "name". */
#define ZUVXMLUTILS_NAME_LENGTH_MAX 255

/* ---- The tree ---- */

/* The top element of the tree. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getRoot(const ZUVXMLUTILSObject *self);

/* The element around this one; NULL for the root. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getParent(const ZUVXMLUTILSObject *self);

/* Elements in the order of the document; NULL where there is none. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstChild(const ZUVXMLUTILSObject *self);
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextSibling(const ZUVXMLUTILSObject *self);
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getPreviousSibling(const ZUVXMLUTILSObject *self);

/* The first child, or the next sibling, with exactly this tag; NULL if there is none. Among many children
 * this is a lookup and no walk. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstChildWithTag(const ZUVXMLUTILSObject *self,
                                                          const char *tag);
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextSiblingWithTag(const ZUVXMLUTILSObject *self,
                                                           const char *tag);

/* As getFirstChild and getNextSibling, comments included. A comment has the tag "#comment", no name, no
 * children, and no user data, and its line. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getFirstNode(const ZUVXMLUTILSObject *self);
ZUVXMLUTILSObject *ZUVXMLUTILSObject_getNextNode(const ZUVXMLUTILSObject *self);

/* How many siblings with the same tag stand before this element. Asking one sibling after the other costs
 * no more than one walk over all of them. */
int ZUVXMLUTILSObject_countPreviousSiblingsWithTag(const ZUVXMLUTILSObject *self);

/* ---- Tags and names ---- */

/* The tag, without a namespace prefix. Never NULL. */
const char *ZUVXMLUTILSObject_getTagName(const ZUVXMLUTILSObject *self);

/* Give the element another tag. 1, or 0 when there is no memory. */
int ZUVXMLUTILSObject_setTagName(ZUVXMLUTILSObject *self, const char *tag);

/* The attribute "name"; "" if the element has none. Never NULL. */
const char *ZUVXMLUTILSObject_getName(const ZUVXMLUTILSObject *self);

/* Set the attribute "name", as ZUVXMLUTILSObject_setAttribute does. */
int ZUVXMLUTILSObject_setName(ZUVXMLUTILSObject *self, const char *name);

/* "::a::b::c": the names on the way from below the root to this element. Elements without a name add
 * nothing, so that such an element answers as the nearest one around it that has a name; the root's is "::".
 * The text lives as long as the element, and as long as no element on the way is renamed. NULL when there
 * is no memory. */
const char *ZUVXMLUTILSObject_getFullyQualifiedName(const ZUVXMLUTILSObject *self);

/* The element of this name: names of children, one below the other, parted by "::". A leading "::" starts
 * from the root of the tree, anything else from `self`, and an empty name is `self` itself (with the leading
 * "::" the root). Names that hold "::" themselves are found. Of children with one name the first counts.
 * NULL, and no report, if there is no such element. Among many siblings this is a lookup and no walk. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUp(const ZUVXMLUTILSObject *self, const char *fullName);

/* The first child of this name; NULL, and no report, if there is none, or for an empty name. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUpChild(const ZUVXMLUTILSObject *self, const char *name);

/* The first sibling of this name, whatever its tag, that stands before this element; NULL, and no report, if
 * there is none, or for an empty name. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_lookUpPreviousSibling(const ZUVXMLUTILSObject *self,
                                                           const char *name);

/* ---- Content ---- */

/* The text of the element as it stands, white space included; "" if it has none. Never NULL. Of an element
 * that holds text and elements, the text before the first of these. Blanks between elements are no text. */
const char *ZUVXMLUTILSObject_getText(const ZUVXMLUTILSObject *self);

/* 1 if the element holds text and no element. */
int ZUVXMLUTILSObject_isText(const ZUVXMLUTILSObject *self);

/* The value of the attribute; NULL, and no report, if there is none. */
const char *ZUVXMLUTILSObject_getAttribute(const ZUVXMLUTILSObject *self, const char *name);

/* 0 if no text or attribute of the whole tree refers to a variable for sure; 1 if one may. */
int ZUVXMLUTILSObject_mayHoldVariables(const ZUVXMLUTILSObject *self);

/* Set the attribute, which is added if it is missing. The former value is freed. What is set here is the
 * program's: ZUVXMLUTILSUtils_updateObject does not carry it over to another element. 1, or 0 when there is
 * no memory. */
int ZUVXMLUTILSObject_setAttribute(ZUVXMLUTILSObject *self, const char *name, const char *value);

/* Remove the attribute; nothing happens if there is none. */
void ZUVXMLUTILSObject_removeAttribute(ZUVXMLUTILSObject *self, const char *name);

/* Set the attribute, which may not be "name", for a time. `*former` becomes what stood there before: the attribute,
 * which is alive and in no element now, or NULL. 1, or 0 after a report when there is no memory; then nothing has
 * changed. */
int ZUVXMLUTILSObject_replaceAttribute(ZUVXMLUTILSObject *self, const char *name, const char *value,
                                       ZUVXMLUTILSAttribute **former);

/* The end of that time: the attribute stands again where and as it stood, or there is none again. Needs no memory.
 * `former` may be NULL. */
void ZUVXMLUTILSObject_putBackAttribute(ZUVXMLUTILSObject *self, const char *name,
                                        ZUVXMLUTILSAttribute *former);

/* The attributes in the order of the document; NULL behind the last. Declarations of namespaces are none. */
ZUVXMLUTILSAttribute *ZUVXMLUTILSObject_getFirstAttribute(const ZUVXMLUTILSObject *self);
ZUVXMLUTILSAttribute *ZUVXMLUTILSAttribute_getNext(const ZUVXMLUTILSAttribute *self);

/* The name, with its namespace prefix if it has one, and the value. Never NULL. */
const char *ZUVXMLUTILSAttribute_getName(const ZUVXMLUTILSAttribute *self);
const char *ZUVXMLUTILSAttribute_getValue(const ZUVXMLUTILSAttribute *self);

/* The text of the element's first processing instruction of this name; NULL, and no report, if there is
 * none. The instructions of an element are those directly within it. */
const char *ZUVXMLUTILSObject_getProcessingInstruction(const ZUVXMLUTILSObject *self,
                                                       const char *name);

/* The text of the nearest processing instruction of this name between the element and the one before it; NULL, and no
 * report, if there is none. */
const char *ZUVXMLUTILSObject_getPrecedingInstruction(const ZUVXMLUTILSObject *self,
                                                      const char *name);

/* Add a processing instruction, as the first thing within the element. 1, or 0 when there is no memory. */
int ZUVXMLUTILSObject_addProcessingInstruction(ZUVXMLUTILSObject *self, const char *name,
                                               const char *text);

/* ---- What the program hangs on an element ---- */

/* What was set last; NULL at first. */
void *ZUVXMLUTILSObject_getUserData(const ZUVXMLUTILSObject *self);

/* Borrow `userData`, which may be NULL, until the element is freed. 1, or 0 when there is no memory, which
 * never happens to the root of a tree, nor to an element that had user data before. */
int ZUVXMLUTILSObject_setUserData(ZUVXMLUTILSObject *self, void *userData);

/* The line of the element's start tag in its document, from 1. An element that was made from a text of the
 * program's counts in that text. */
int ZUVXMLUTILSObject_getLine(const ZUVXMLUTILSObject *self);

/* The path of the file that the element comes from, as it was given to the parser; NULL if it comes from
 * none. Merging keeps it. */
const char *ZUVXMLUTILSObject_getFilePath(const ZUVXMLUTILSObject *self);

/* ---- Changes of the tree ---- */

/* Copy an element of any tree, with everything in it but user data, into this one. The copy stands before
 * the first child of the same tag, so that a look back along its siblings never meets one of its kind, and
 * behind all children if none has that tag. Returns the copy; NULL when there is no memory, or when the tree
 * would become deeper than twice what a document may be. */
ZUVXMLUTILSObject *ZUVXMLUTILSObject_copyAsChild(ZUVXMLUTILSObject *self,
                                                 const ZUVXMLUTILSObject *element);

/* Move the element behind all its siblings. */
void ZUVXMLUTILSObject_moveToEnd(ZUVXMLUTILSObject *self);

/* Put ends of lines between the elements within this one, so that in its text each stands as far below it as in the
 * document that it comes from. 1, or 0 after a report when there is no memory; then some may be missing. */
int ZUVXMLUTILSObject_restoreLines(ZUVXMLUTILSObject *self);

/* The element with everything in it as XML text, without an XML declaration. The caller releases it with
 * ZUVOsapiHeap_free. NULL when there is no memory. */
char *ZUVXMLUTILSObject_toString(const ZUVXMLUTILSObject *self);

#ifdef __cplusplus
}
#endif

#endif
