/* The record of an element "brel_service": the root of one service's configuration.
 *
 * The parser makes, sets up and deletes it; see BRELXmlObjectExtension. Operations return 1 or a pointer, and 0 or NULL
 * after a report. No argument may be NULL. Nothing here locks: callers hold the lock of the parser. */
#ifndef ZUV_CONFIG_CFG_FILE_SERVICE_H
#define ZUV_CONFIG_CFG_FILE_SERVICE_H

#include "config/CfgFileAdministration.h"
#include "config/CfgFileJvm.h"
#include "config/CfgFileMonitoring.h"
#include "config/ServiceProperty.h"
#include "config/XmlSupport.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The most characters of a group's name. */
#define BREL_SERVICE_GROUP_NAME_LENGTH_MAX 255

/* The property that tells the group of the service a participant belongs to. */
#define BREL_SERVICE_GROUP_NAME_PROPERTY_NAME "zuv.brel_service.group_name"

typedef struct BRELCfgFileDomainRoute BRELCfgFileDomainRoute;
typedef struct BRELCfgFileAbstractConnection BRELCfgFileAbstractConnection;
typedef struct BRELCfgFileSession BRELCfgFileSession;
typedef struct BRELCfgFileTopicRoute BRELCfgFileTopicRoute;
typedef struct BRELCfgFileAutoTopicRoute BRELCfgFileAutoTopicRoute;

struct BRELCfgFileService {
    ZUVXMLUTILSObject *xmlObject; /* borrowed */
    char *groupName;              /* owned */
    DDS_Boolean enabled;
    BRELCfgFileAdministration administration;
    BRELCfgFileMonitoring monitoring;
    BRELCfgFileEntityMonitoring entityMonitoring; /* of the service as an entity */
    BRELCfgFileJvm jvm;
    const char *internalClock;                      /* borrowed from the element, or NULL */
    char *sourceFile;                               /* owned; set by the program */
    DDS_Boolean is_save_enabled;                    /* set by the program */
    const ZUV_BrelServiceProperty *libraryProperty; /* borrowed from the parser */
    ZUVXMLObject *xmNativeDistlog;                  /* owned, or NULL */
    void *object;                                   /* what the running service makes of it */
};

/* The operations of the extension. */
void *BRELCfgFileService_new(struct BRELCfgFileParser *xmlSupport, ZUVXMLUTILSObject *xmlObject);
int BRELCfgFileService_setUp(struct BRELCfgFileParser *xmlSupport, void *object);
void BRELCfgFileService_delete(void *object);

/* Make a record, whatever it held, that of the element: the defaults, or the settings of the update target, with what
 * the element says over them. On failure it is finalized. */
int BRELCfgFileService_initialize(BRELCfgFileService *self, struct BRELCfgFileParser *xmlSupport,
                                  ZUVXMLUTILSObject *xmlService);

/* Take over what the element says; what it does not mention stays, but for monitoring, which follows the start-up
 * settings and administration unless it says whether it is enabled. */
int BRELCfgFileService_parse(BRELCfgFileService *self, ZUVXMLUTILSObject *xmlService);

/* Change the live record and its element as `newCfg` says, the record of an update: the path of saving, whether updates
 * are saved, and in the element all that the update's element holds. `*updated` becomes 1 when one of the two settings
 * changes, and 0 when the path is given and the same. After a failure the settings may have changed; the element has
 * not. */
int BRELCfgFileService_update(int *updated, BRELCfgFileService *self,
                              const BRELCfgFileService *newCfg);

/* Deep copy of the settings, but not of the element, the clock, and what the program sets beside the source file. */
BRELCfgFileService *BRELCfgFileService_copy(BRELCfgFileService *self,
                                            const BRELCfgFileService *src);

/* Release what the record owns. Twice does no harm. */
void BRELCfgFileService_finalize(BRELCfgFileService *self);

/* 1 if the tag is that of a service. The record of such an element; NULL, and no report, for another tag. */
int BRELCfgFileService_isXmlServiceObject(const ZUVXMLUTILSObject *xmlObject);
BRELCfgFileService *BRELCfgFileService_narrow(const ZUVXMLUTILSObject *xmlObject);

/* The records of the domain routes in their order; NULL behind the last. */
BRELCfgFileDomainRoute *BRELCfgFileService_getFirstDomainRoute(const BRELCfgFileService *self);
BRELCfgFileDomainRoute *
BRELCfgFileService_getNextDomainRoute(const BRELCfgFileService *self,
                                      const BRELCfgFileDomainRoute *xmlAutoRoute);

/* The record of an entity by its name within the service, as "route::session"; NULL, and no report, when there is no
 * such entity or it is of another kind. Connections are participants too. */
BRELCfgFileDomainRoute *BRELCfgFileService_findDomainRoute(const BRELCfgFileService *self,
                                                           const char *fullName);
BRELCfgFileAbstractConnection *
BRELCfgFileService_findAbstractConnection(const BRELCfgFileService *self, const char *fullName);
BRELCfgFileSession *BRELCfgFileService_findSession(const BRELCfgFileService *self,
                                                   const char *fullName);
BRELCfgFileTopicRoute *BRELCfgFileService_findTopicRoute(const BRELCfgFileService *self,
                                                         const char *fullName);
BRELCfgFileAutoTopicRoute *BRELCfgFileService_findAutoTopicRoute(const BRELCfgFileService *self,
                                                                 const char *fullName);

/* Write the name of the group of a service that is given none: "ZUV_BrelService_", the host's name, "_" and the process's
 * number; without a useful name of the host its number, behind one more "_". `output` has room for `outputMaxLength`
 * characters and a terminator. 1, or 0 after a report. */
int BRELCfgFileService_getDefaultServiceName(char *output, int outputMaxLength);

#ifdef __cplusplus
}
#endif

#endif
