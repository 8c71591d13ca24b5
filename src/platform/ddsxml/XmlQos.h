/* The QoS that a tree defines, and QoS as text.
 *
 * Documents write a QoS as an element, "datareader_qos" for example, that holds policies; docs/qos.md has all of
 * them. When a document joins a tree, each QoS in its libraries gets a record with the values that it inherits by
 * "base_name" (OMG DDS-XML 1.0, 7.3.2): from what is in the tree, or in the document itself. A document with a base
 * that is not there, with bases that go round in a circle, or with a policy that does not exist or has a wrong value,
 * is refused, with the way that leads there in the report. */
#ifndef ZUV_PLATFORM_DDSXML_XML_QOS_H
#define ZUV_PLATFORM_DDSXML_XML_QOS_H

#include "platform/dds/Qos.h"
#include "platform/ddsxml/XmlObject.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The record of an element in a library or profile. It belongs to the element, and is what others inherit that join
 * the tree later: who changes it, changes that. NULL, and no report, if the element is no such QoS; `self` must not be
 * NULL. */
DDS_DomainParticipantQos *DDS_XMLParticipantQos_get_dds_qos(ZUVXMLObject *self);
DDS_TopicQos *DDS_XMLTopicQos_get_dds_qos(ZUVXMLObject *self);
DDS_PublisherQos *DDS_XMLPublisherQos_get_dds_qos(ZUVXMLObject *self);
DDS_SubscriberQos *DDS_XMLSubscriberQos_get_dds_qos(ZUVXMLObject *self);
DDS_DataWriterQos *DDS_XMLDataWriterQos_get_dds_qos(ZUVXMLObject *self);
DDS_DataReaderQos *DDS_XMLDataReaderQos_get_dds_qos(ZUVXMLObject *self);

/* The QoS as an element with all its policies, for a reader of documents or of logs. The caller releases it with
 * ZUVOsapiHeap_free. NULL after a report when there is no memory; `qos` must not be NULL. */
char *DDS_XMLParticipantQos_to_string(const DDS_DomainParticipantQos *qos);
char *DDS_XMLTopicQos_to_string(const DDS_TopicQos *qos);
char *DDS_XMLPublisherQos_to_string(const DDS_PublisherQos *qos);
char *DDS_XMLSubscriberQos_to_string(const DDS_SubscriberQos *qos);
char *DDS_XMLDataWriterQos_to_string(const DDS_DataWriterQos *qos);
char *DDS_XMLDataReaderQos_to_string(const DDS_DataReaderQos *qos);

#ifdef __cplusplus
}
#endif

#endif
