/* Writing of elements, and the mark that keeps an element out of what is saved. */
#ifndef ZUV_CONFIG_XML_SAVE_H
#define ZUV_CONFIG_XML_SAVE_H

#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/SaveContext.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The processing instruction of an element that is not to be saved. */
#define BREL_XML_SAVE_PROCESSING_INSTRUCTION_NAME "zuv-object-save"

/* Mark the element. It is not saved from then on, whatever `save` is: that only decides over the text of the mark,
 * "1" or "0". 1, or 0 after a report when there is no memory. `xmlObject` must not be NULL. */
int BRELXmlUtils_addSavePI(ZUVXMLUTILSObject *xmlObject, int save);

/* 1 if the element is to be saved: if it has no mark, or one whose first byte is the number 1, which no text has.
 * `xmlObject` must not be NULL. */
int BRELXmlUtils_canSave(const ZUVXMLUTILSObject *xmlObject);

/* Write the element with all that is in it, unless it is marked. Comments are left out. Texts and the values of
 * attributes come as they are in the tree, without any escaping. Neither may be NULL. */
void BRELXmlObject_save(const ZUVXMLUTILSObject *xmlObject, ZUVXMLUTILSSaveContext *saveContext);

/* The bits of a mode. */
#define BREL_XML_SAVE_START_TAG 1
#define BREL_XML_SAVE_END_TAG 4
#define BREL_XML_SAVE_EMPTY 8     /* with the start tag: that is all of the element */
#define BREL_XML_SAVE_CHILDREN 16 /* with the start tag: children follow, one step deeper */
#define BREL_XML_SAVE_BEHIND_CHILDREN 32

/* Write a tag of the element. With BREL_XML_SAVE_START_TAG it is the start tag with the attributes, without any
 * whose name holds "noNamespaceSchemaLocation"; else the end tag, which stands on a line of its own with
 * BREL_XML_SAVE_BEHIND_CHILDREN. Neither pointer may be NULL. */
void BRELXmlObject_saveElementTag(const ZUVXMLUTILSObject *xmlObject,
                                  ZUVXMLUTILSSaveContext *saveContext, int mode);

#ifdef __cplusplus
}
#endif

#endif
