/* The children of an element, and behind them those that an element it is based on adds. */
#ifndef ZUV_CONFIG_XML_CHILD_ITERATOR_H
#define ZUV_CONFIG_XML_CHILD_ITERATOR_H

#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* All zero before the first use. */
typedef struct BRELXmlObjectChildIterator {
    ZUVXMLUTILSObject *parent;        /* whose children are walked */
    ZUVXMLUTILSObject *baseNextChild; /* the next child of the base element */
    ZUVXMLUTILSObject *nextChild;     /* the next child of `parent` */
} BRELXmlObjectChildIterator;

/* Start with the first child of `xmlObject`. `base` may be NULL. */
void BRELXmlObjectChildIterator_begin(BRELXmlObjectChildIterator *self, ZUVXMLUTILSObject *base,
                                      ZUVXMLUTILSObject *xmlObject);

/* The next child, or NULL behind the last. Of the base those children come that `parent` has none of the same
 * name, nor of the same tag, to; and the last child of the base comes in any case. */
ZUVXMLUTILSObject *BRELXmlObjectChildIterator_next(BRELXmlObjectChildIterator *self);

#ifdef __cplusplus
}
#endif

#endif
