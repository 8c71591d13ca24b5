#include "config/XmlCommon.h"

#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "config/XmlLog.hpp"
#include "config/XmlProperties.hpp"
#include "platform/mavo/String.h"
#include "platform/osapi/Pointer.h"
#include "platform/osapi/Utility.h"
#include "platform/xmlutils/Utils.h"

namespace
{

constexpr std::string_view kSeparator = "::";
constexpr size_t kAutoNameSize = 256;

// "domain_route" becomes "DomainRoute". Returns the length, or -1 when there is no room.
int writeCamelCase(const char *tag, std::array<char, kAutoNameSize> &name)
{
    int length = 0;
    bool isUpper = true;
    for (; *tag != '\0'; ++tag) {
        if (*tag == '_') {
            isUpper = true;
            continue;
        }
        if (length + 1 == static_cast<int>(kAutoNameSize)) {
            return -1;
        }
        const auto letter = static_cast<unsigned char>(*tag);
        name[length++] = static_cast<char>(isUpper ? std::toupper(letter) : letter);
        isUpper = false;
    }
    return length;
}

} // namespace

extern "C" {

ZUVXMLUTILSObject *BRELXmlObject_getDomainId(const ZUVXMLUTILSObject *xmlObject)
{
    return BREL_XML_IS_NULL(xmlObject)
               ? nullptr
               : ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "domain_id");
}

ZUVXMLUTILSObject *BRELXmlObject_getEnabled(const ZUVXMLUTILSObject *xmlObject)
{
    return BREL_XML_IS_NULL(xmlObject)
               ? nullptr
               : ZUVXMLUTILSObject_getFirstChildWithTag(xmlObject, "enabled");
}

int BRELXmlObject_getEnabledAttribute(const ZUVXMLUTILSObject *xmlObject, DDS_Boolean *enabled)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(enabled)) {
        return 0;
    }
    const char *const text = ZUVXMLUTILSObject_getAttribute(xmlObject, "enabled");
    int value = 0;
    if (text == nullptr) {
        return 1;
    }
    if (!MAVOString_strToBoolean(text, &value)) {
        BREL_XML_FAILURE(&ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds,
                         ZUVXMLUTILSObject_getLine(xmlObject), text);
        return 0;
    }
    *enabled = value ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    return 1;
}

const char *BRELXmlObject_getFullyQualifiedNameRelativeToService(const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return nullptr;
    }
    const char *const fullName = ZUVXMLUTILSObject_getFullyQualifiedName(xmlObject);
    if (fullName == nullptr) {
        return nullptr;
    }
    // The service's name is short: this ends before a search through the text would have begun.
    const char *const withinRoot = fullName + kSeparator.size();
    for (const char *at = withinRoot; *at != '\0'; ++at) {
        if (at[0] == kSeparator[0] && at[1] == kSeparator[1]) {
            return at + kSeparator.size();
        }
    }
    return withinRoot;
}

struct BRELCfgFileParser *BRELXmlObject_getXmlSupport(const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return nullptr;
    }
    return static_cast<BRELCfgFileParser *>(
        ZUVXMLUTILSObject_getUserData(ZUVXMLUTILSObject_getRoot(xmlObject)));
}

int BRELXmlObject_checkReferencedObject(const ZUVXMLUTILSObject *xmlObject,
                                        const char *referenceName, const char *referenceTagName)
{
    constexpr const char *kJava = "java_";
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(referenceName) ||
        BREL_XML_IS_NULL(referenceTagName)) {
        return 0;
    }
    const ZUVXMLUTILSObject *const found =
        ZUVXMLUTILSObject_lookUp(ZUVXMLUTILSObject_getRoot(xmlObject), referenceName);
    if (found == nullptr) {
        return 1;
    }
    const char *tag = ZUVXMLUTILSObject_getTagName(found);
    if (std::strstr(tag, kJava) != nullptr) {
        tag += std::strlen(kJava);
    }
    if (std::strcmp(tag, referenceTagName) != 0) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss, referenceName,
                         referenceTagName);
        return 0;
    }
    return 1;
}

int BRELXmlUtils_setAutoName(ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return 0;
    }
    if (ZUVXMLUTILSObject_getAttribute(xmlObject, "name") != nullptr) {
        return 1;
    }
    const int count = ZUVXMLUTILSObject_countPreviousSiblingsWithTag(xmlObject);
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_XML, count == INT_MAX, "count == 2147483647")) {
        return 0;
    }
    std::array<char, kAutoNameSize> name;
    const int length = writeCamelCase(ZUVXMLUTILSObject_getTagName(xmlObject), name);
    char *const last = name.data() + name.size() - 1;
    const auto written = length >= 0 ? std::to_chars(name.data() + length, last, count + 1)
                                     : std::to_chars_result{last, std::errc::value_too_large};
    *written.ptr = '\0';
    if (written.ec != std::errc()) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(xmlObject),
                         "its tag is too long to make a name of it");
        return 0;
    }
    return ZUVXMLUTILSObject_setName(xmlObject, name.data());
}

void BRELXmlUtils_getVersion(const ZUVXMLUTILSObject *xmlObject, ZUV_BrelServiceVersion *version)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(version)) {
        return;
    }
    DDS_ProductVersion_t product;
    KOLM_Config_Version_get_product_version(&product);
    *version = {product.major, product.minor, product.release, product.revision};
    const char *const text = ZUVXMLUTILSObject_getAttribute(xmlObject, "version");
    if (text == nullptr) {
        return;
    }
    errno = 0;
    std::sscanf(text, "%d.%d.%d", &version->major, &version->minor, &version->release);
    if (errno != 0) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss, BREL_XML_PLACE(xmlObject),
                         "invalid value in attribute 'version'");
    }
}

int BRELXmlObject_setUpdateTarget(ZUVXMLUTILSObject *xmlObject, const ZUVXMLUTILSObject *target)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(target)) {
        return 0;
    }
    std::array<char, 32> address;
    ZUVOsapiUtility_snprintf(address.data(), address.size(), "%p",
                             static_cast<const void *>(target));
    if (!ZUVXMLUTILSObject_setAttribute(xmlObject, BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME,
                                        address.data())) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "set update target attribute");
        return 0;
    }
    return 1;
}

ZUVXMLUTILSObject *BRELXmlObject_getUpdateTarget(const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return nullptr;
    }
    const char *const address =
        ZUVXMLUTILSObject_getAttribute(xmlObject, BREL_XML_SUPPORT_UPDATE_TARGET_ATTR_NAME);
    if (address == nullptr) {
        return nullptr;
    }
    auto *const target = static_cast<ZUVXMLUTILSObject *>(ZUVOsapiUtility_strtoptr(address));
    if (target == nullptr) {
        BREL_XML_FAILURE(&ZUV_LOG_GET_FAILURE_s, "xml update target attribute");
    }
    return target;
}

void *BRELXmlObject_getUpdateTargetExtensionObject(const ZUVXMLUTILSObject *xmlObject)
{
    if (BREL_XML_IS_NULL(xmlObject)) {
        return nullptr;
    }
    const ZUVXMLUTILSObject *const target = BRELXmlObject_getUpdateTarget(xmlObject);
    return target != nullptr ? ZUVXMLUTILSObject_getUserData(target) : nullptr;
}

int BRELXmlProperty_parseWithOverride(const ZUVXMLUTILSObject *xmlObject,
                                      ZUV_BrelServiceProperties *properties, DDS_Boolean override)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(properties)) {
        return 0;
    }
    return brel::readProperties(xmlObject, [&](const char *name, const char *value) {
        return ZUV_BrelServiceProperties_assert_w_override(properties, name, value, override);
    });
}

int BRELXmlProperty_parse(const ZUVXMLUTILSObject *xmlObject, ZUV_BrelServiceProperties *properties)
{
    return BRELXmlProperty_parseWithOverride(xmlObject, properties, DDS_BOOLEAN_TRUE);
}

int BRELXmlProperty_parseNoOverride(const ZUVXMLUTILSObject *xmlObject,
                                    ZUV_BrelServiceProperties *properties)
{
    return BRELXmlProperty_parseWithOverride(xmlObject, properties, DDS_BOOLEAN_FALSE);
}

ZUVXMLUTILSObject *BRELXmlProperty_lookUpElement(const ZUVXMLUTILSObject *xmlObject,
                                                 const char *name)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(name)) {
        return nullptr;
    }
    return ZUVXMLUTILSUtils_lookUpProperty(xmlObject, name);
}

void BRELXmlUtils_removeDdsXmlObject(ZUVXMLObject *parent, ZUVXMLObject *child)
{
    if (!BREL_XML_IS_NULL(parent) && !BREL_XML_IS_NULL(child)) {
        ZUVXMLObject_removeChild(parent, child);
    }
}

void BRELXmlUtils_deleteDdsXmlObject(DDS_XMLParser *parser, ZUVXMLObject *child)
{
    if (BREL_XML_IS_NULL(parser) || BREL_XML_IS_NULL(child)) {
        return;
    }
    if (ZUVXMLObject *const parent = DDS_XMLObject_get_parent(child)) {
        BRELXmlUtils_removeDdsXmlObject(parent, child);
    }
    DDS_XMLParser_free_dom(parser, child);
}
}
