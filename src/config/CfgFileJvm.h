/* The settings "jvm" of a service: how it starts a Java virtual machine for adapters that need one. They start nothing.
 *
 * A record of zeros is valid and empty. Operations return 1 or the record, and 0 or NULL after a report. No argument may
 * be NULL. */
#ifndef ZUV_CONFIG_CFG_FILE_JVM_H
#define ZUV_CONFIG_CFG_FILE_JVM_H

#include "platform/typesys/PrimitiveSequences.h"
#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Owns its texts. */
typedef struct BRELCfgFileJvm {
    char *dll; /* the machine's library, or NULL */
    DDS_StringSeq classPath;
    DDS_StringSeq options;
} BRELCfgFileJvm;

/* Make raw memory an empty record. */
int BRELCfgFileJvm_initialize(BRELCfgFileJvm *self);

/* Take over what the section says; a list that it holds replaces the record's. After a failure a list has the elements
 * before the one at fault. */
int BRELCfgFileJvm_parse(BRELCfgFileJvm *self, const ZUVXMLUTILSObject *xmlJvm);

/* Deep copy. */
BRELCfgFileJvm *BRELCfgFileJvm_copy(BRELCfgFileJvm *self, const BRELCfgFileJvm *src);

/* Release what the record owns and leave it empty. */
void BRELCfgFileJvm_finalize(BRELCfgFileJvm *self);

#ifdef __cplusplus
}
#endif

#endif
