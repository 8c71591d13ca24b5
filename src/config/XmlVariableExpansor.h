/* The variables of a configuration: where their values come from. */
#ifndef ZUV_CONFIG_XML_VARIABLE_EXPANSOR_H
#define ZUV_CONFIG_XML_VARIABLE_EXPANSOR_H

#include "platform/xmlutils/VariableExpansor.h"
#include "sdkLib/Properties.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Filled in by initialize; it may not be moved. */
typedef struct BRELXmlVariableExpansor {
    ZUVXMLUTILSVariableExpansor _expansor;
    ZUVXMLUTILSVisitor _visitor;           /* of this record, with BRELXmlVariableExpansor_visit */
    ZUV_BrelServiceProperties _xmlUserEnv; /* what "configuration_variables" elements define */
    struct BRELXmlVariableNames *_names;   /* owned: where in it a name stands; NULL for none */
} BRELXmlVariableExpansor;

/* A value comes from `userEnv`, which is borrowed, then from the environment of the process, then from what
 * documents define. The children "configuration_variables" of `xmlExistingRoot`, which may be NULL, are read at
 * once. 1, or 0 after a report: then the record is finalized. No other argument may be NULL. */
int BRELXmlVariableExpansor_initialize(BRELXmlVariableExpansor *self,
                                       const ZUV_BrelServiceProperties *userEnv,
                                       const ZUVXMLUTILSObject *xmlExistingRoot);

/* Release what the record owns; a record of zero bytes may be finalized too. `self` must not be NULL. */
void BRELXmlVariableExpansor_finalize(BRELXmlVariableExpansor *self);

/* Forget what documents have defined. `self` must not be NULL. */
void BRELXmlVariableExpansor_forget(BRELXmlVariableExpansor *self);

/* Replace the references to variables in one element, which may itself define some: a child
 * "configuration_variables" of the root defines what elements after it refer to. A later definition replaces an
 * earlier one. `visitorData` is the record. 1, or 0 after a report. Neither may be NULL. */
int BRELXmlVariableExpansor_visit(void *visitorData, ZUVXMLUTILSObject *xmlObject);

#ifdef __cplusplus
}
#endif

#endif
