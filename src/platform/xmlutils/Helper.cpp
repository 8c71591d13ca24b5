#include "platform/xmlutils/Helper.h"

#include <cstring>
#include <string_view>

#include "platform/xmlutils/LibraryScope.hpp"

extern "C" {

char *ZUVXMLHelper_strTrim(char *text)
{
    constexpr std::string_view kBlanks = " \t\n\r";
    if (ZUV_XML_IS_NULL(OBJECT, text)) {
        return nullptr;
    }
    const std::string_view whole = text;
    text[whole.find_last_not_of(kBlanks) + 1] = '\0';
    return text + std::strspn(text, kBlanks.data());
}
}
