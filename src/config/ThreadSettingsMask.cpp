#include "config/ThreadSettingsMask.h"

#include <array>
#include <optional>

#include "log/Log.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Utility.h"
#include "platform/xmlutils/Helper.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_XML, ARGUMENT)
#define FAILURE(...) ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML, __VA_ARGS__)

namespace
{

constexpr size_t kTextSize = 2048;
constexpr const char *kTooLong = "thread settings kind too long";

struct Name {
    const char *text;
    DDS_ThreadSettingsKindMask bit;
};

#define SETTING_NAMES(NAME)                                                                        \
    {#NAME, DDS_THREAD_SETTINGS_##NAME}, {"THREAD_SETTINGS_" #NAME, DDS_THREAD_SETTINGS_##NAME},   \
    {                                                                                              \
        "DDS_THREAD_SETTINGS_" #NAME, DDS_THREAD_SETTINGS_##NAME                                   \
    }

constexpr Name kNames[] = {
    SETTING_NAMES(FLOATING_POINT),
    SETTING_NAMES(STDIO),
    SETTING_NAMES(REALTIME_PRIORITY),
    SETTING_NAMES(PRIORITY_ENFORCE),
    {"MASK_DEFAULT", DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT},
    {"THREAD_SETTINGS_KIND_MASK_DEFAULT", DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT},
    {"DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT", DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT},
};

std::optional<DDS_ThreadSettingsKindMask> bitOf(const char *item)
{
    for (const auto &[name, bit] : kNames) {
        if (MAVOString_iCompare(name, item) == 0) {
            return bit;
        }
    }
    return std::nullopt;
}

// Cuts the text in place.
std::optional<DDS_ThreadSettingsKindMask> maskOf(char *text)
{
    DDS_ThreadSettingsKindMask mask = 0;
    char *position = nullptr;
    for (char *item = MAVOString_strToken(ZUVXMLHelper_strTrim(text), "|", &position);
         item != nullptr; item = MAVOString_strToken(nullptr, "|", &position)) {
        const auto bit = bitOf(ZUVXMLHelper_strTrim(item));
        if (!bit) {
            return std::nullopt;
        }
        mask |= *bit;
    }
    return mask;
}

enum class Outcome { Read, TooLong, Illegal };

Outcome read(const char *elementText, DDS_ThreadSettingsKindMask &mask)
{
    std::array<char, kTextSize> text;
    if (ZUVOsapiUtility_strcpy(text.data(), text.size(), elementText) == nullptr) {
        return Outcome::TooLong;
    }
    const auto found = maskOf(text.data());
    if (!found) {
        return Outcome::Illegal;
    }
    mask = *found;
    return Outcome::Read;
}

} // namespace

extern "C" {

int BRELXmlUtils_getThreadSettingsKindMaskElement(DDS_ThreadSettingsKindMask *mask,
                                                  const char *elementText)
{
    if (IS_NULL(mask) || IS_NULL(elementText)) {
        return 0;
    }
    const Outcome outcome = read(elementText, *mask);
    if (outcome == Outcome::TooLong) {
        FAILURE(&ZUV_LOG_ANY_FAILURE_s, kTooLong);
    } else if (outcome == Outcome::Illegal) {
        FAILURE(&ZUV_LOG_INVALID_s, "mask value");
    }
    return outcome == Outcome::Read;
}

void BRELUtils_getThreadSettingsKindMaskElement(DDS_ThreadSettingsKindMask *mask,
                                                const char *tagName, const char *elementText,
                                                DDS_XMLContext *context)
{
    if (IS_NULL(context)) {
        return;
    }
    if (IS_NULL(mask) || IS_NULL(tagName) || IS_NULL(elementText)) {
        context->error = 1;
        return;
    }
    const Outcome outcome = read(elementText, *mask);
    if (outcome == Outcome::TooLong) {
        FAILURE(&ZUV_LOG_ANY_FAILURE_s, kTooLong);
    } else if (outcome == Outcome::Illegal) {
        FAILURE(&ZUVXML_LOG_PARSER_ILLEGAL_VALUE_ds, context->line, tagName);
    }
    if (outcome != Outcome::Read) {
        context->error = 1;
    }
}
}
