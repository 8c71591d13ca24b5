/* Where a document is written: a text in memory, or a file.
 *
 * A file comes into being whole or not at all. What is printed goes to a new file beside the target; finish
 * brings it to the disk and puts it in the target's place. Until then, and after any failure, the target is as
 * it was. For one thread at a time. */
#ifndef ZUV_PLATFORM_XMLUTILS_SAVE_CONTEXT_H
#define ZUV_PLATFORM_XMLUTILS_SAVE_CONTEXT_H

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUVXMLUTILSSaveContext ZUVXMLUTILSSaveContext;

/* A context whose text stays in memory; NULL after a report when there is none. Release it, and one for a file,
 * with ZUVXMLUTILSSaveContext_delete. */
ZUVXMLUTILSSaveContext *ZUVXMLUTILSSaveContext_newForMemory(void);

/* A context for the file at `path`, which must not be NULL and is not needed any more afterwards. If it leads
 * through symbolic links, what they lead to is replaced. NULL after a report: when no file can be made beside
 * the target, or there is no memory. */
ZUVXMLUTILSSaveContext *ZUVXMLUTILSSaveContext_newForFile(const char *path);

/* Release the context; NULL does nothing. What was not finished is thrown away. */
void ZUVXMLUTILSSaveContext_delete(ZUVXMLUTILSSaveContext *self);

/* How deep the next line is indented. A new context has depth 0; a negative one indents as 0 does. Setting it
 * takes any number. `self` must not be NULL. */
int ZUVXMLUTILSSaveContext_getDepth(const ZUVXMLUTILSSaveContext *self);
void ZUVXMLUTILSSaveContext_setDepth(ZUVXMLUTILSSaveContext *self, int depth);

/* Print the blanks at the start of a line: four for each step of depth. `self` must not be NULL. */
void ZUVXMLUTILSSaveContext_indent(ZUVXMLUTILSSaveContext *self);

/* Print, as printf does. A failure is remembered for finish, and what is printed after it is lost. No argument
 * may be NULL. */
void ZUVXMLUTILSSaveContext_print(ZUVXMLUTILSSaveContext *self, const char *format, ...)
    __attribute__((format(printf, 2, 3)));

/* Bring the text to its place. The context takes no more text. The file has the permissions of the one that it
 * replaces, or those that a new file gets. Returns 1, or 0 after a report when this, or some printing before,
 * failed; finishing again returns the same. `self` must not be NULL. */
int ZUVXMLUTILSSaveContext_finish(ZUVXMLUTILSSaveContext *self);

/* The text of a finished context in memory, which belongs to the context. NULL before it is finished, after a
 * failure, and for a file. `self` must not be NULL. */
const char *ZUVXMLUTILSSaveContext_getText(const ZUVXMLUTILSSaveContext *self);

#ifdef __cplusplus
}
#endif

#endif
