/* Start and end of the XML utilities, and the texts that schemas include by name. */
#ifndef ZUV_PLATFORM_XMLUTILS_GLOBALS_H
#define ZUV_PLATFORM_XMLUTILS_GLOBALS_H

#ifdef __cplusplus
extern "C" {
#endif

/* Make the room ready. From the first call on libxml2 and libxslt allocate from the system's heap, so no other
 * part of the process may use them before. Calls nest: each one that succeeded is to be undone by
 * ZUVXMLUTILSGlobals_finalize. Returns 1, or 0 after a report when there is no memory. Calls from several
 * threads take turns. */
int ZUVXMLUTILSGlobals_initialize(void);

/* Undo one ZUVXMLUTILSGlobals_initialize. The last call forgets the string resources and gives back what the
 * libraries hold; then no tree, validator or transformer may be left, and no thread may be in the room. */
void ZUVXMLUTILSGlobals_finalize(void);

/* Let `name` stand for a text of `count` pieces wherever a schema includes a document of that name. A name in
 * an included document counts from the folder of its own: "b.xsd" within "definitions/a.xsd" is
 * "definitions/b.xsd". Name and text are copied. Registering a name again replaces the text for schemas made
 * from then on. Returns 1, or 0 after a report: when there is no memory, or before initialize. No argument may
 * be NULL. Any thread. */
int ZUVXMLUTILSGlobals_registerStringResource(const char *name, const char *const *pieces,
                                              int count);

/* Forget the text of this name; nothing happens if there is none. */
void ZUVXMLUTILSGlobals_unregisterStringResource(const char *name);

#ifdef __cplusplus
}
#endif

#endif
