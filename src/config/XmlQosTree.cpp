// The way of a document, or of one QoS element, into the tree of QoS profiles.
#include <array>
#include <cstring>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlSupport.hpp"
#include "platform/osapi/Heap.h"
#include "platform/osapi/Utility.h"

namespace
{

struct HeapDeleter {
    void operator()(char *text) const { ZUVOsapiHeap_free(text); }
};

class ProfileName
{
public:
    explicit ProfileName(const ZUVXMLUTILSObject *xmlObject)
    {
        ZUVOsapiUtility_snprintf(text_.data(), text_.size(), "%p",
                                 static_cast<const void *>(xmlObject));
    }
    const char *text() const { return text_.data(); }

private:
    std::array<char, 257> text_;
};

// Let the reports about a child of an excerpt name the place where the original stands.
bool keepPlace(ZUVXMLUTILSObject *copy, const ZUVXMLUTILSObject *original)
{
    const char *const file = ZUVXMLUTILSObject_getFilePath(original);
    const bool canBeNamed = file != nullptr && std::strstr(file, "?>") == nullptr;
    return ZUVXMLUTILSObject_restoreLines(copy) &&
           (!canBeNamed || ZUVXMLUTILSObject_addProcessingInstruction(copy, "zuv-file", file));
}

// What of a document concerns the side tree, as a document of its own: a transformation takes its time by the
// whole of what it is given.
brel::TreePointer excerptOf(const ZUVXMLUTILSObject *document)
{
    brel::TreePointer excerpt(ZUVXMLUTILSParser_parseString("<dds/>"));
    if (excerpt == nullptr) {
        return nullptr;
    }
    for (const ZUVXMLUTILSAttribute *at = ZUVXMLUTILSObject_getFirstAttribute(document);
         at != nullptr; at = ZUVXMLUTILSAttribute_getNext(at)) {
        if (!ZUVXMLUTILSObject_setAttribute(excerpt.get(), ZUVXMLUTILSAttribute_getName(at),
                                            ZUVXMLUTILSAttribute_getValue(at))) {
            return nullptr;
        }
    }
    for (const char *tag : {"configuration_variables", "types", "qos_library"}) {
        const ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChildWithTag(document, tag);
        for (; child != nullptr; child = ZUVXMLUTILSObject_getNextSiblingWithTag(child, tag)) {
            ZUVXMLUTILSObject *const copy = ZUVXMLUTILSObject_copyAsChild(excerpt.get(), child);
            if (copy == nullptr || !keepPlace(copy, child)) {
                return nullptr;
            }
            ZUVXMLUTILSObject_moveToEnd(copy);
        }
    }
    return excerpt;
}

brel::TreePointer transform(const BRELCfgFileParser &self, ZUVXMLUTILSObject *source,
                            const char *topicFilter)
{
    constexpr int kString = ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING;
    const ProfileName name(source);
    const ZUVXMLUTILSTransformationParameter parameters[] = {
        {"BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM", BREL_XML_ENTITIES_QOS_LIBRARY_NAME, kString},
        {"BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM", name.text(), kString},
        {"BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM", topicFilter, kString},
    };
    const bool isDocument = brel::hasTag(source, brel::kDocumentTag);
    const brel::TreePointer excerpt = isDocument ? excerptOf(source) : nullptr;
    ZUVXMLUTILSObject *const input = isDocument ? excerpt.get() : source;
    if (input == nullptr) {
        return nullptr;
    }
    return brel::TreePointer(ZUVXMLUTILSTransformer_transformWithParams(
        self._xmlInfrastructure._toQosLibraryTransformer, input, parameters,
        static_cast<int>(std::size(parameters))));
}

void note(const char *text)
{
    ZUV_LOG(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_XML, &ZUV_LOG_ANY_FAILURE_s, text);
}

} // namespace

extern "C" {

int BRELCfgFileParser_generateNativeExtensionObject(BRELCfgFileParser *self,
                                                    ZUVXMLUTILSObject *xmlSourceElement,
                                                    const char *topicFilter)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlSourceElement)) {
        return 0;
    }
    const brel::TreePointer document =
        transform(*self, xmlSourceElement, topicFilter != nullptr ? topicFilter : "");
    if (document == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "transform to well-formed DDS QoS document");
        return 0;
    }
    const std::unique_ptr<char, HeapDeleter> text(ZUVXMLUTILSObject_toString(document.get()));
    if (text == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "convert QoS root to string");
        return 0;
    }
    ZUVXMLObject *const root =
        ZUVXMLParser_parseFromPlace(self->_xmlDdsParser, self->_xmlDdsQosRoot, text.get(),
                                    ZUVXMLUTILSObject_getFilePath(xmlSourceElement),
                                    ZUVXMLUTILSObject_getLine(xmlSourceElement));
    if (root == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "parse QoS configuration");
        if (ZUVXMLObject *const half =
                BRELCfgFileParser_lookUpLibraryNativeObject(xmlSourceElement)) {
            BRELXmlUtils_deleteDdsXmlObject(self->_xmlDdsParser, half);
        }
        return 0;
    }
    self->_xmlDdsQosRoot = root;
    return 1;
}

ZUVXMLObject *BRELCfgFileParser_lookUpLibraryNativeObject(const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return nullptr;
    }
    const BRELCfgFileParser *const self = BRELXmlObject_getXmlSupport(xmlObject);
    if (self == nullptr || self->_xmlDdsQosRoot == nullptr) {
        note("Invalid XML DDS QoS Root (Core Parser)");
        return nullptr;
    }
    const ZUVXMLObject *const library =
        DDS_XMLObject_lookup_child(self->_xmlDdsQosRoot, BREL_XML_ENTITIES_QOS_LIBRARY_NAME);
    if (library == nullptr) {
        note("find generated QoS Library for XML object");
        return nullptr;
    }
    const ProfileName name(xmlObject);
    ZUVXMLObject *const profile = DDS_XMLObject_lookup_child(library, name.text());
    if (profile == nullptr) {
        ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_WARNING, BREL_SUBMODULE_XML, &ZUV_LOG_ANY_FAILURE_s,
                         "find generated QoS profile for XML object; profile name = %s",
                         name.text());
    }
    return profile;
}
}
