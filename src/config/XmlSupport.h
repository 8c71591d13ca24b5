/* The configuration parser: owner of the tree that all sources are merged into, and of the record that hangs on
 * each of its elements with a registered tag.
 *
 * Operations that can fail return 1 or a pointer, and 0 or NULL after a report of what is wrong, from the cause
 * upwards. No argument may be NULL unless it says so; one that is gets reported as a failed precondition.
 *
 * The operations of one parser do not lock. Threads that share it take BRELCfgFileParser_lockXmlDom around every
 * use of the tree, reading included. */
#ifndef ZUV_CONFIG_XML_SUPPORT_H
#define ZUV_CONFIG_XML_SUPPORT_H

#include "config/EntityKind.h"
#include "config/ServiceProperty.h"
#include "config/XmlVariableExpansor.h"
#include "platform/ddsxml/XmlParser.h"
#include "platform/mavo/InlineList.h"
#include "platform/osapi/Semaphore.h"
#include "platform/xmlutils/Object.h"
#include "platform/xmlutils/SaveContext.h"
#include "platform/xmlutils/Transformer.h"
#include "platform/xmlutils/Validator.h"

#ifdef __cplusplus
extern "C" {
#endif

#define BREL_XML_SUPPORT_DEFAULT_CONFIGURATION_FILE_NAME "ZUV_BREL_SERVICE.xml"
#define BREL_XML_SUPPORT_USER_CONFIGURATION_FILE_NAME "USER_BREL_SERVICE.xml"

/* This service among the kinds of services that use the parser: others do not load its configuration files. */
#define BREL_XML_SUPPORT_SERVICE_KIND 3

struct BRELCfgFileParser;
struct DDS_TypeCode;
typedef struct BRELCfgFileService BRELCfgFileService;

/* ---- Extensions: the tags that have records ---- */

/* Make the record of an element; NULL is a failure. */
typedef void *(*BRELXmlObjectExtension_NewObjectFcn)(struct BRELCfgFileParser *parser,
                                                     ZUVXMLUTILSObject *xmlObject);
/* Check and complete a record once the records of all elements in its element exist; 0 is a failure. */
typedef int (*BRELXmlObjectExtension_SetUpObjectFcn)(struct BRELCfgFileParser *parser,
                                                     void *object);
typedef void (*BRELXmlObjectExtension_DeleteObjectFcn)(void *object);

typedef struct BRELXmlObjectExtension {
    MAVOInlineListNode _node; /* in the parser's list */
    char *tagName;            /* owned */
    BRELXmlObjectExtension_NewObjectFcn newObject;
    BRELXmlObjectExtension_SetUpObjectFcn setUpObject; /* may be NULL */
    BRELXmlObjectExtension_DeleteObjectFcn deleteObject;
    struct BRELXmlObjectExtension *_nextOfSlot;
} BRELXmlObjectExtension;

/* Extensions are found by the first letters of their tag. */
#define BREL_XML_SUPPORT_EXTENSION_SLOT_COUNT 64

/* ---- The parser ---- */

/* Which children of the root a save leaves out. */
typedef enum BRELCfgFileParserSaveMode {
    BREL_XML_SUPPORT_ALL_SERVICE_EXCEPT_DEFAULT_SAVE_MODE = 0, /* a service named "default" */
    BREL_XML_SUPPORT_LOADED_SERVICE_ONLY_SAVE_MODE = 1,        /* services without a record */
    BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE = 2,               /* none */
    BREL_XML_SUPPORT_EXCLUDE_CHILDREN_RESOURCES = 3 /* all whose tags have an extension */
} BRELCfgFileParserSaveMode;

typedef struct BRELXMLSupportInfrastructure {
    ZUVXMLUTILSValidator *_xsdValidator;
    ZUVXMLUTILSTransformer *_toQosLibraryTransformer;
} BRELXMLSupportInfrastructure;

typedef struct BRELCfgFileParser {
    DDS_XMLParser *_xmlDdsParser;
    ZUVXMLUTILSObject *_xmlRoot; /* owned; NULL until something is loaded */
    ZUVOsapiSemaphore *_xmlMutex;
    ZUVXMLObject *_xmlDdsQosRoot; /* owned: QoS profiles and types of all documents */
    ZUVXMLExtensionClass *_distLogExtensionClass;
    MAVOInlineList _registeredExtensions; /* in the order in which they were registered */
    const ZUV_BrelServiceProperty *property;
    const char *executablePath;
    int _isVersionDetected;
    BRELCfgFileParserSaveMode saveMode;
    BRELXmlVariableExpansor _variableExpansor;
    BRELXMLSupportInfrastructure _xmlInfrastructure;
    ZUVXMLUTILSTransformer *_preprocessor; /* owned: the last one that a load used, or NULL */
    int _hasNames; /* all that the root holds has been through the walk's first pass */
    BRELXmlObjectExtension *_extensionSlots[BREL_XML_SUPPORT_EXTENSION_SLOT_COUNT];
} BRELCfgFileParser;

/* Make the XML libraries ready and register the schemas, once per process before the first parser; and undo it
 * after the last one. Not for several threads at a time. */
int BRELCfgFileParser_initializeGlobals(void);
void BRELCfgFileParser_finalizeGlobals(void);

/* A parser of this service's kind, with "." as the path of the executable. */
BRELCfgFileParser *BRELCfgFileParser_new(const ZUV_BrelServiceProperty *property);

/* A parser on the heap, to be released with BRELCfgFileParser_delete. */
BRELCfgFileParser *BRELCfgFileParser_newWithParams(const ZUV_BrelServiceProperty *property,
                                                   int serviceKind, const char *executablePath);

/* Make a parser of a record, whatever it held, which may not be moved. `property` and `executablePath` are
 * borrowed for the life of the parser. Unless `property` says otherwise, these sources are loaded, each merged
 * behind what is there:
 *   - "$KOLMHOME/resource/xml/KOLM_QOS_PROFILES.xml", if it exists;
 *   - the URL groups in the environment variable KOLM_QOS_PROFILES;
 *   - "USER_QOS_PROFILES.xml" in the working directory, if it exists;
 * and for the kind BREL_XML_SUPPORT_SERVICE_KIND also
 *   - "ZUV_BREL_SERVICE.xml" in "../../../xml" or else "../../resource/xml" from `executablePath`, if it exists;
 *   - "USER_BREL_SERVICE.xml" in the working directory, if it exists.
 * 1, or 0 after a report: then the record may be finalized once more, but need not, unless what failed was
 * the loading of the built-in QoS profiles. */
int BRELCfgFileParser_initialize(BRELCfgFileParser *self, const ZUV_BrelServiceProperty *property,
                                 int serviceKind, const char *executablePath);

/* Release what the parser owns: the tree with its records first. Twice does no harm. */
void BRELCfgFileParser_finalize(BRELCfgFileParser *self);
void BRELCfgFileParser_delete(BRELCfgFileParser *self);

/* Give elements of a tag their records. The tag is copied. 0 if the tag has an extension. `setUpObjectFcn` may be
 * NULL. */
int BRELCfgFileParser_registerExtension(BRELCfgFileParser *self, const char *tagName,
                                        BRELXmlObjectExtension_NewObjectFcn newObjectFcn,
                                        BRELXmlObjectExtension_SetUpObjectFcn setUpObjectFcn,
                                        BRELXmlObjectExtension_DeleteObjectFcn deleteObjectFcn);

/* Forget the extension and free it. No element may have a record of it. */
void BRELCfgFileParser_unregisterExtension(BRELCfgFileParser *self,
                                           BRELXmlObjectExtension *extension);

/* The extension of that tag, case counting; NULL, and no report, if there is none. */
BRELXmlObjectExtension *BRELCfgFileParser_lookUpExtension(const BRELCfgFileParser *self,
                                                          const char *tagName);

/* ---- Loading ---- */

/* Load the documents of a URL group list, see ZUVXMLUTILSParser_parseUrlGroupList; or a document given in pieces,
 * at least one. They are merged into the tree, variables are replaced, elements without a name get one, the whole
 * is validated if the property asks for it, and libraries get their records; a service gets them when it is
 * asked for. After a failure the tree keeps what was merged; a string that was to be the first thing in the tree
 * leaves it empty. */
int BRELCfgFileParser_loadUrlGroup(BRELCfgFileParser *self, const char *urlGroup);
int BRELCfgFileParser_loadString(BRELCfgFileParser *self, const char *const *xmlStringArray,
                                 int xmlStringArrayLength);

/* Build the records of the service of that name, if it has none yet. Returns its own, which belongs to the tree;
 * NULL after a failure, and then the service has none, unless it had some before. */
BRELCfgFileService *BRELCfgFileParser_loadService(BRELCfgFileParser *self, const char *serviceName);

/* ---- Changes ---- */

/* Make an update of `xmlUpdateTarget` from a snippet: the element alone, or a whole document that holds it at the
 * target's full name. The result stands beside its target, with a record that is that of the target with what
 * the snippet says over it. The caller hands both records to the update operation of the element, and then
 * deletes the result with BRELCfgFileParser_deleteEntity. After a failure the tree is as it was. */
ZUVXMLUTILSObject *BRELCfgFileParser_parseUpdate(BRELCfgFileParser *self,
                                                 ZUVXMLUTILSObject *xmlUpdateTarget,
                                                 const char *xmlSnippetString);

/* Add the entity of a snippet behind the children of `xmlParent`, with records. Returns its element. After a
 * failure the tree is as it was. */
ZUVXMLUTILSObject *BRELCfgFileParser_loadEntity(BRELCfgFileParser *self,
                                                ZUVXMLUTILSObject *xmlParent,
                                                const char *xmlSnippetString);

/* Delete the records of an element and of all in it, children first, and then the element. */
void BRELCfgFileParser_deleteEntity(BRELCfgFileParser *self, ZUVXMLUTILSObject *xmlObject);

/* ---- Saving ---- */

/* Write the element with what is in it, without the children that `saveMode` leaves out; saveDocument writes an
 * XML declaration before it. `saveContext` tells of failures when it is finished. */
void BRELCfgFileParser_saveDocument(const ZUVXMLUTILSObject *xmlRoot,
                                    ZUVXMLUTILSSaveContext *saveContext,
                                    BRELCfgFileParserSaveMode saveMode);
void BRELCfgFileParser_saveObject(const ZUVXMLUTILSObject *xmlObject,
                                  ZUVXMLUTILSSaveContext *saveContext,
                                  BRELCfgFileParserSaveMode saveMode);

/* ---- What there is ---- */

/* The records of the root's libraries of one tag, in order; NULL behind the last. */
void *BRELCfgFileParser_getFirstPluginLibrary(const BRELCfgFileParser *self,
                                              const char *libraryTagName);
void *BRELCfgFileParser_getNextPluginLibrary(const BRELCfgFileParser *self,
                                             const void *adapterLibrary);

/* List the services on the standard output. */
void BRELCfgFileParser_printAvailableConfig(const BRELCfgFileParser *self);

/* The validator of the configuration's schema. */
ZUVXMLUTILSValidator *BRELCfgFileParser_getDefaultValidator(const BRELCfgFileParser *self);

/* ---- The lock of the tree ---- */

/* Take the lock unless `*isXmlDomLocked` says that it is taken, and set that; give it if `*isXmlDomLocked` says
 * that it is taken, and clear that. The flag is a local of the caller, so that nested operations share one lock.
 * Taking waits without limit. Any thread; a thread gives what it took. */
int BRELCfgFileParser_lockXmlDom(BRELCfgFileParser *self, int *isXmlDomLocked);
int BRELCfgFileParser_unlockXmlDom(BRELCfgFileParser *self, int *isXmlDomLocked);

/* ---- Types of streams ---- */

/* The type of a stream, or NULL. */
typedef const struct DDS_TypeCode *(*BRELTypeProviderFnc)(const char *streamName);

/* One for the process; NULL for none. It is set before threads ask for it. */
void BRELXmlSupport_setTypeProviderFnc(BRELTypeProviderFnc fnc);
BRELTypeProviderFnc BRELXmlSupport_getTypeProviderFnc(void);

#ifdef __cplusplus
}
#endif

#endif
