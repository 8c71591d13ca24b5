/* What configuration elements say in the languages of the middleware: QoS, the distributed logger's options, types.
 *
 * A QoS element inherits by "base_name" from any QoS library that was loaded before, see platform/ddsxml/XmlQos.h. All
 * operations change the tree of these libraries for their own time, and leave it and the configuration's tree as they
 * were: callers hold the lock of the parser. */
#ifndef ZUV_CONFIG_XML_QOS_H
#define ZUV_CONFIG_XML_QOS_H

#include "platform/dds/Qos.h"
#include "platform/ddsxml/DistLogger.h"
#include "platform/typesys/TypeCode.h"
#include "platform/xmlutils/Object.h"

#ifdef __cplusplus
extern "C" {
#endif

struct BRELCfgFileParser;

/* Store what the child "publisher_qos" of `xmlObject` says; for a participant, that is the first child that is called
 * "domain_participant_qos" or "participant_qos". Without such a child the record stays as it is, and that is a
 * success. `topicFilter` is the topic that the endpoint is for, which chooses among the topic filters of the bases,
 * unless the child has a filter of its own; NULL or "" for none.
 *
 * Whatever the child does not mention has the value of its base, or else the default: the record, which must be valid,
 * is replaced. In an element that changes a live one the child carries the live record as its user data, and what it
 * does not mention has the value that the live record has.
 *
 * 1, or 0 after a report: then the record is as it was. Only `topicFilter` may be NULL. */
int BRELCfgFileParser_getParticipantQos(DDS_DomainParticipantQos *participantQos,
                                        const ZUVXMLUTILSObject *xmlObject);
int BRELCfgFileParser_getSubscriberQos(DDS_SubscriberQos *subscriberQos,
                                       const ZUVXMLUTILSObject *xmlObject);
int BRELCfgFileParser_getPublisherQos(DDS_PublisherQos *publisherQos,
                                      const ZUVXMLUTILSObject *xmlObject);
int BRELCfgFileParser_getDataReaderQos(DDS_DataReaderQos *readerQos,
                                       const ZUVXMLUTILSObject *xmlObject, const char *topicFilter);
int BRELCfgFileParser_getDataWriterQos(DDS_DataWriterQos *writerQos,
                                       const ZUVXMLUTILSObject *xmlObject, const char *topicFilter);

/* The record in an element of the libraries' tree, or NULL; and the copy of one. */
typedef void *(*BRELCfgFileParser_GetQosFromDdsXmlObjectFunction)(ZUVXMLObject *xmlDdsQos);
typedef DDS_ReturnCode_t (*BRELCfgFileParser_CopyQosFunction)(void *destination,
                                                              const void *source);

/* The common part of the above: what the element `xmlQos` itself says. Only `topicFilter` may be NULL. */
int BRELCfgFileParser_getEntityQos(
    void *qosObject, ZUVXMLUTILSObject *xmlQos, const char *topicFilter,
    BRELCfgFileParser_GetQosFromDdsXmlObjectFunction getQosFromXmlFunction,
    BRELCfgFileParser_CopyQosFunction copyQosFunction);

/* Store the options of an element "distributed_logger". What it does not mention has its default. 1, or 0 after a
 * report with the options as they were. */
int BRELCfgFileParser_getDistLogOptions(ZUV_DL_Options *distlogOptions,
                                        ZUVXMLUTILSObject *xmlDistLog);

/* The type code of a structure, union, enumeration or value type ("Module::Type") in the first element "types" of all
 * that was loaded. It belongs to the parser. NULL, and no report, if there is no such type; a definition that is wrong
 * is reported. */
const DDS_TypeCode *BRELCfgFileParser_lookUpTypeCode(const struct BRELCfgFileParser *self,
                                                     const char *typeFullName);

#ifdef __cplusplus
}
#endif

#endif
