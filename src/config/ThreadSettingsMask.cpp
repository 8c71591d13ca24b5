#include "config/ThreadSettingsMask.h"

#include <array>
#include <optional>
#include <string_view>

#include "log/Log.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Utility.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_XML, ARGUMENT)

namespace
{

using std::string_view;

constexpr size_t kTextSize = 2048;
constexpr string_view kWhiteSpace = " \t\r\n";

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

// Cuts the text in place; the result lies in it.
char *trim(char *text)
{
    const string_view whole = text;
    const size_t begin = whole.find_first_not_of(kWhiteSpace);
    if (begin == string_view::npos) {
        text[0] = '\0';
        return text;
    }
    text[whole.find_last_not_of(kWhiteSpace) + 1] = '\0';
    return text + begin;
}

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
    for (char *item = MAVOString_strToken(trim(text), "|", &position); item != nullptr;
         item = MAVOString_strToken(nullptr, "|", &position)) {
        const auto bit = bitOf(trim(item));
        if (!bit) {
            return std::nullopt;
        }
        mask |= *bit;
    }
    return mask;
}

} // namespace

extern "C" int BRELXmlUtils_getThreadSettingsKindMaskElement(DDS_ThreadSettingsKindMask *mask,
                                                             const char *elementText)
{
    if (IS_NULL(mask) || IS_NULL(elementText)) {
        return 0;
    }
    std::array<char, kTextSize> text;
    if (ZUVOsapiUtility_strcpy(text.data(), text.size(), elementText) == nullptr) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML, &ZUV_LOG_ANY_FAILURE_s,
                "thread settings kind too long");
        return 0;
    }
    const auto read = maskOf(text.data());
    if (!read) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_XML, &ZUV_LOG_INVALID_s, "mask value");
        return 0;
    }
    *mask = *read;
    return 1;
}
