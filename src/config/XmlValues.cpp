// The readers of values.
#include <cstdint>
#include <cstdlib>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"
#include "config/XmlProperties.hpp"
#include "platform/ddsxml/XmlHelper.h"
#include "platform/mavo/String.h"

namespace
{

struct Symbol {
    const char *text;
    std::int32_t value;
};

#define SYMBOL(NAME)                                                                               \
    {"DDS_" #NAME, static_cast<std::int32_t>(DDS_##NAME)},                                         \
    {                                                                                              \
#NAME, static_cast < std::int32_t>(DDS_##NAME)                                             \
    }

// The platform's default; the names do not tell more from less.
constexpr std::int32_t kPriority = -9999999;
constexpr std::int32_t kStackSizeDefault = -1;

constexpr Symbol kSymbols[] = {
    SYMBOL(LENGTH_UNLIMITED),
    SYMBOL(LENGTH_AUTO),
    SYMBOL(AUTO_MAX_TOTAL_INSTANCES),
    SYMBOL(DURATION_INFINITE_SEC),
    SYMBOL(DURATION_INFINITE_NSEC),
    SYMBOL(DURATION_ZERO_SEC),
    {"DDS_THREAD_PRIORITY_DEFAULT", kPriority},
    {"THREAD_PRIORITY_DEFAULT", kPriority},
    {"DDS_THREAD_PRIORITY_HIGH", kPriority},
    {"THREAD_PRIORITY_HIGH", kPriority},
    {"MAX_PRIORITY", kPriority},
    {"DDS_THREAD_PRIORITY_ABOVE_NORMAL", kPriority},
    {"THREAD_PRIORITY_ABOVE_NORMAL", kPriority},
    {"DDS_THREAD_PRIORITY_NORMAL", kPriority},
    {"THREAD_PRIORITY_NORMAL", kPriority},
    {"NORM_PRIORITY", kPriority},
    {"DDS_THREAD_PRIORITY_BELOW_NORMAL", kPriority},
    {"THREAD_PRIORITY_BELOW_NORMAL", kPriority},
    {"DDS_THREAD_PRIORITY_LOW", kPriority},
    {"THREAD_PRIORITY_LOW", kPriority},
    {"MIN_PRIORITY", kPriority},
    {"DDS_THREAD_STACK_SIZE_DEFAULT", kStackSizeDefault},
    {"THREAD_STACK_SIZE_DEFAULT", kStackSizeDefault},
    {"THREAD_SETTINGS_CPU_NO_ROTATION", 0},
    {"THREAD_SETTINGS_CPU_RR_ROTATION", 1},
};

template <typename Number, typename Read>
bool readMember(const ZUVXMLUTILSObject *xmlDuration, const char *tag, Read read, Number &member)
{
    const char *const text = brel::childText(xmlDuration, tag);
    DDS_XMLContext context = {};
    const auto value = *text != '\0' ? read(&context, text) : 0;
    if (context.error != 0) {
        BREL_XML_FAILURE(&ZUV_LOG_BAD_STRING_FORMAT_ss, tag, text);
        return false;
    }
    member = value;
    return true;
}

} // namespace

extern "C" {

int BRELXmlUtils_strToInt(int32_t *value, const char *text)
{
    if (BREL_XML_IS_NULL(value) || BREL_XML_IS_NULL(text)) {
        return 0;
    }
    for (const Symbol &symbol : kSymbols) {
        if (MAVOString_iCompare(symbol.text, text) == 0) {
            *value = symbol.value;
            return 1;
        }
    }
    const bool isHexadecimal = text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    char *end = nullptr;
    *value = static_cast<int32_t>(std::strtol(text, &end, isHexadecimal ? 16 : 10));
    if (end == text) {
        BREL_XML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "integer expected");
        return 0;
    }
    return 1;
}

int BRELXmlBoolean_getValue(const ZUVXMLUTILSObject *xmlObject, DDS_Boolean *value)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(value)) {
        return 0;
    }
    int read = 0;
    if (!MAVOString_strToBoolean(ZUVXMLUTILSObject_getText(xmlObject), &read)) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
        return 0;
    }
    *value = read ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    return 1;
}

int BRELXmlInt_getValue(const ZUVXMLUTILSObject *xmlObject, int *value)
{
    if (BREL_XML_IS_NULL(xmlObject) || BREL_XML_IS_NULL(value)) {
        return 0;
    }
    if (!BRELXmlUtils_strToInt(value, ZUVXMLUTILSObject_getText(xmlObject))) {
        BREL_XML_FAILURE(&ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(xmlObject));
        return 0;
    }
    return 1;
}

int BRELXmlDuration_getValue(const ZUVXMLUTILSObject *xmlDuration, DDS_Duration_t *duration)
{
    if (BREL_XML_IS_NULL(xmlDuration) || BREL_XML_IS_NULL(duration)) {
        return 0;
    }
    return readMember(xmlDuration, "sec", &DDS_XMLHelper_str_to_int, duration->sec) &&
           readMember(xmlDuration, "nanosec", &DDS_XMLHelper_str_to_unsigned_int,
                      duration->nanosec);
}
}
