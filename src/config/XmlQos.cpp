#include "config/XmlQos.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/ddsxml/XmlQos.h"
#include "platform/ddsxml/XmlTypeCode.h"
#include "platform/osapi/Utility.h"

namespace
{

using Object = ZUVXMLUTILSObject;

constexpr const char *kBaseName = "base_name";
constexpr const char *kTopicFilter = "topic_filter";

// What is generated of an element stands in the reserved library as long as one lives.
class Generated
{
public:
    Generated(BRELCfgFileParser &parser, Object *element, const char *topicFilter)
        : parser_(parser), wasThere_(library() != nullptr), formerCount_(countOf(library()))
    {
        isMade_ = BRELCfgFileParser_generateNativeExtensionObject(&parser, element, topicFilter);
        if (!isMade_) {
            BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse XML snippet string");
        }
    }
    ~Generated()
    {
        if (!isMade_) {
            return;
        }
        ZUVXMLObject *child = ZUVXMLObject_getFirstChild(library());
        for (int index = 0; child != nullptr; ++index) {
            ZUVXMLObject *const next = ZUVXMLObject_getNextSibling(child);
            if (index >= formerCount_) {
                BRELXmlUtils_deleteDdsXmlObject(parser_._xmlDdsParser, child);
            }
            child = next;
        }
        if (!wasThere_) {
            BRELXmlUtils_deleteDdsXmlObject(parser_._xmlDdsParser, library());
        }
    }
    Generated(const Generated &) = delete;
    Generated &operator=(const Generated &) = delete;

    bool isMade() const { return isMade_; }
    ZUVXMLObject *library() const
    {
        return DDS_XMLObject_lookup_child(parser_._xmlDdsQosRoot,
                                          BREL_XML_ENTITIES_QOS_LIBRARY_NAME);
    }

private:
    static int countOf(const ZUVXMLObject *parent)
    {
        const ZUVXMLObject *child =
            parent == nullptr ? nullptr : ZUVXMLObject_getFirstChild(parent);
        int count = 0;
        for (; child != nullptr; child = ZUVXMLObject_getNextSibling(child)) {
            ++count;
        }
        return count;
    }

    BRELCfgFileParser &parser_;
    bool wasThere_;
    int formerCount_;
    bool isMade_ = false;
};

// The profile that is made of a QoS element.
class GeneratedProfile
{
public:
    GeneratedProfile(BRELCfgFileParser &parser, Object *xmlQos, const char *topicFilter)
        : generated_(parser, xmlQos, topicFilter)
    {
        if (!generated_.isMade()) {
            return;
        }
        const char *const tag = ZUVXMLUTILSObject_getTagName(xmlQos);
        profile_ = BRELCfgFileParser_lookUpLibraryNativeObject(xmlQos);
        if (profile_ == nullptr) {
            BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s, tag);
            return;
        }
        qos_ = ZUVXMLObject_getFirstChildWithTag(profile_, tag);
    }

    bool isThere() const { return profile_ != nullptr; }
    ZUVXMLObject *get() const { return profile_; }
    // The first child with the element's tag.
    ZUVXMLObject *qos() const { return qos_; }

private:
    Generated generated_;
    ZUVXMLObject *profile_ = nullptr;
    ZUVXMLObject *qos_ = nullptr;
};

// A profile that says what a live record has, for an element to inherit from.
class LiveProfile
{
public:
    LiveProfile(BRELCfgFileParser &parser, const Object *xmlQos, const char *topicFilter)
        : snippet_(makeSnippet(parser, xmlQos))
    {
        if (snippet_ != nullptr) {
            profile_.emplace(parser, snippet_.get(), topicFilter);
        }
    }

    // Copy the record into the profile. False after a report.
    bool take(const void *liveQos, BRELCfgFileParser_GetQosFromDdsXmlObjectFunction getQos,
              BRELCfgFileParser_CopyQosFunction copyQos)
    {
        if (!profile_.has_value() || !profile_->isThere()) {
            return false;
        }
        ZUVXMLObject *const xmlDdsQos = profile_->qos();
        if (BREL_XML_IS_NULL(xmlDdsQos)) {
            return false;
        }
        void *const qos = getQos(xmlDdsQos);
        if (qos == nullptr || copyQos(qos, liveQos) != DDS_RETCODE_OK) {
            BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "copy update target QoS from XML");
            return false;
        }
        return true;
    }

    const char *fullName() const { return DDS_XMLObject_get_fully_qualified_name(profile_->get()); }

private:
    static brel::TreePointer makeSnippet(BRELCfgFileParser &parser, const Object *xmlQos)
    {
        std::array<char, 256> text;
        ZUVOsapiUtility_snprintf(text.data(), text.size(), "<%s name=\"qos_update\"/>",
                                 ZUVXMLUTILSObject_getTagName(xmlQos));
        brel::TreePointer snippet(ZUVXMLUTILSParser_parseString(text.data()));
        // A filter of the element's own would not be covered by that of the topic.
        const char *const filter = ZUVXMLUTILSObject_getAttribute(xmlQos, kTopicFilter);
        if (snippet == nullptr || !ZUVXMLUTILSObject_setUserData(snippet.get(), &parser) ||
            (filter != nullptr &&
             !ZUVXMLUTILSObject_setAttribute(snippet.get(), kTopicFilter, filter))) {
            BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse XML snippet string");
            return nullptr;
        }
        return snippet;
    }

    brel::TreePointer snippet_;
    std::optional<GeneratedProfile> profile_; // before its element goes
};

// The attribute "base_name" of an element, replaced as long as one lives.
class BaseName
{
public:
    explicit BaseName(Object *xmlQos) : xmlQos_(xmlQos) {}
    ~BaseName()
    {
        if (isSet_) {
            ZUVXMLUTILSObject_putBackAttribute(xmlQos_, kBaseName, former_);
        }
    }
    BaseName(const BaseName &) = delete;
    BaseName &operator=(const BaseName &) = delete;

    bool set(const char *name)
    {
        isSet_ = name != nullptr &&
                 ZUVXMLUTILSObject_replaceAttribute(xmlQos_, kBaseName, name, &former_);
        if (!isSet_) {
            BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set base name attribute");
        }
        return isSet_;
    }

private:
    Object *xmlQos_;
    ZUVXMLUTILSAttribute *former_ = nullptr;
    bool isSet_ = false;
};

// The operations of a kind of record, for any of them.
template <typename Qos, Qos *(*Get)(ZUVXMLObject *), DDS_ReturnCode_t (*Copy)(Qos *, const Qos *)>
int getQos(Qos *qos, Object *xmlQos, const char *topicFilter)
{
    return xmlQos == nullptr ||
           BRELCfgFileParser_getEntityQos(
               qos, xmlQos, topicFilter,
               [](ZUVXMLObject *xmlDdsQos) -> void * { return Get(xmlDdsQos); },
               [](void *destination, const void *source) {
                   return Copy(static_cast<Qos *>(destination), static_cast<const Qos *>(source));
               });
}

bool isParticipantQos(const Object *child)
{
    return brel::hasTag(child, "domain_participant_qos") || brel::hasTag(child, "participant_qos");
}

} // namespace

extern "C" {

int BRELCfgFileParser_getEntityQos(
    void *qosObject, ZUVXMLUTILSObject *xmlQos, const char *topicFilter,
    BRELCfgFileParser_GetQosFromDdsXmlObjectFunction getQosFromXmlFunction,
    BRELCfgFileParser_CopyQosFunction copyQosFunction)
{
    if (BREL_XML_IS_NULL(qosObject) || BREL_XML_IS_NULL(xmlQos) ||
        BREL_XML_IS_NULL(getQosFromXmlFunction) || BREL_XML_IS_NULL(copyQosFunction)) {
        return 0;
    }
    BRELCfgFileParser *const self = BRELXmlObject_getXmlSupport(xmlQos);
    if (BREL_XML_IS_NULL(self)) {
        return 0;
    }
    std::optional<LiveProfile> live;
    BaseName baseName(xmlQos);
    if (const void *const liveQos = ZUVXMLUTILSObject_getUserData(xmlQos)) {
        live.emplace(*self, xmlQos, topicFilter);
        if (!live->take(liveQos, getQosFromXmlFunction, copyQosFunction) ||
            !baseName.set(live->fullName())) {
            return 0;
        }
    }
    const GeneratedProfile profile(*self, xmlQos, topicFilter);
    if (!profile.isThere()) {
        return 0;
    }
    ZUVXMLObject *const xmlDdsQos = profile.qos();
    if (BREL_XML_IS_NULL(xmlDdsQos)) {
        return 0;
    }
    const void *const qos = getQosFromXmlFunction(xmlDdsQos);
    if (BREL_XML_IS_NULL(qos)) {
        return 0;
    }
    if (copyQosFunction(qosObject, qos) != DDS_RETCODE_OK) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "copy QoS from XML");
        return 0;
    }
    return 1;
}

int BRELCfgFileParser_getParticipantQos(DDS_DomainParticipantQos *participantQos,
                                        const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(participantQos) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    Object *child = ZUVXMLUTILSObject_getFirstChild(xmlObject);
    while (child != nullptr && !isParticipantQos(child)) {
        child = ZUVXMLUTILSObject_getNextSibling(child);
    }
    return getQos<DDS_DomainParticipantQos, DDS_XMLParticipantQos_get_dds_qos,
                  DDS_DomainParticipantQos_copy>(participantQos, child, nullptr);
}

int BRELCfgFileParser_getSubscriberQos(DDS_SubscriberQos *subscriberQos,
                                       const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(subscriberQos) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    return getQos<DDS_SubscriberQos, DDS_XMLSubscriberQos_get_dds_qos, DDS_SubscriberQos_copy>(
        subscriberQos, ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "subscriber_qos"),
        nullptr);
}

int BRELCfgFileParser_getPublisherQos(DDS_PublisherQos *publisherQos,
                                      const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(publisherQos) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    return getQos<DDS_PublisherQos, DDS_XMLPublisherQos_get_dds_qos, DDS_PublisherQos_copy>(
        publisherQos, ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "publisher_qos"), nullptr);
}

int BRELCfgFileParser_getDataReaderQos(DDS_DataReaderQos *readerQos,
                                       const ZUVXMLUTILSObject *xmlObject, const char *topicFilter)
{
    if (BREL_XML_IS_NULL(readerQos) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    return getQos<DDS_DataReaderQos, DDS_XMLDataReaderQos_get_dds_qos, DDS_DataReaderQos_copy>(
        readerQos, ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "datareader_qos"),
        topicFilter);
}

int BRELCfgFileParser_getDataWriterQos(DDS_DataWriterQos *writerQos,
                                       const ZUVXMLUTILSObject *xmlObject, const char *topicFilter)
{
    if (BREL_XML_IS_NULL(writerQos) || BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    return getQos<DDS_DataWriterQos, DDS_XMLDataWriterQos_get_dds_qos, DDS_DataWriterQos_copy>(
        writerQos, ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "datawriter_qos"),
        topicFilter);
}

int BRELCfgFileParser_getDistLogOptions(ZUV_DL_Options *distlogOptions,
                                        ZUVXMLUTILSObject *xmlDistLog)
{
    if (BREL_XML_IS_NULL(distlogOptions) || BREL_XML_IS_NULL(xmlDistLog)) {
        return 0;
    }
    BRELCfgFileParser *const self = BRELXmlObject_getXmlSupport(xmlDistLog);
    if (BREL_XML_IS_NULL(self)) {
        return 0;
    }
    const Generated generated(*self, xmlDistLog, nullptr);
    if (!generated.isMade()) {
        return 0;
    }
    const ZUVXMLObject *const library = generated.library();
    const char *const tag = ZUVXMLUTILSObject_getTagName(xmlDistLog);
    const ZUVXMLObject *const xmlOptions =
        library == nullptr ? nullptr : ZUVXMLObject_getFirstChildWithTag(library, tag);
    if (xmlOptions == nullptr) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s, tag);
        return 0;
    }
    const ZUV_DL_Options *const options = ZUV_DL_XMLConfig_getDLOptions(xmlOptions);
    if (options == nullptr || !ZUV_DL_Options_copy(distlogOptions, options)) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "copy DL options");
        return 0;
    }
    return 1;
}

const DDS_TypeCode *BRELCfgFileParser_lookUpTypeCode(const BRELCfgFileParser *self,
                                                     const char *typeFullName)
{
    constexpr std::array<std::string_view, 4> kTypeTags = {"struct", "union", "enum", "valuetype"};
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(typeFullName)) {
        return nullptr;
    }
    const ZUVXMLObject *const types =
        self->_xmlDdsQosRoot == nullptr
            ? nullptr
            : ZUVXMLObject_getFirstChildWithTag(self->_xmlDdsQosRoot, "types");
    ZUVXMLObject *const type =
        types == nullptr ? nullptr : DDS_XMLObject_lookup(types, typeFullName);
    const bool isType =
        type != nullptr && std::find(kTypeTags.begin(), kTypeTags.end(),
                                     ZUVXMLObject_getTagName(type)) != kTypeTags.end();
    return isType ? DDS_XMLTypeCode_get_dds_typecode(type) : nullptr;
}
}
