// What the name and the format of a message template say about its arguments.
#ifndef ZUV_TESTS_SUPPORT_MESSAGE_SHAPE_H
#define ZUV_TESTS_SUPPORT_MESSAGE_SHAPE_H

#include <string>
#include <string_view>

#include "platform/log/Log.h"

namespace zuv_test
{

struct NamedMessage {
    std::string_view symbol;
    const ZUVLogMessage *message;
};

#define ZUV_NAMED_MESSAGE(SYMBOL)                                                                  \
    zuv_test::NamedMessage                                                                         \
    {                                                                                              \
#SYMBOL, &SYMBOL                                                                           \
    }

// The argument types that the symbol lists: "sd" for ..._WITH_RETCODE_sd.
inline std::string_view argumentsOfSymbol(std::string_view symbol)
{
    if (symbol.ends_with("_TEMPLATE")) {
        return "s";
    }
    const std::string_view suffix = symbol.substr(symbol.rfind('_') + 1);
    return suffix.find_first_not_of("sdxu") == std::string_view::npos ? suffix : "";
}

// The conversions of the format, in order: "sd" for "%s (retcode=%d)\n".
inline std::string argumentsOfFormat(std::string_view format)
{
    std::string conversions;
    for (std::size_t at = format.find('%'); at != std::string_view::npos;) {
        const std::size_t end = format.find_first_not_of("0123456789.-+ #", at + 1);
        if (format[end] != '%') {
            conversions += format[end];
        }
        at = format.find('%', end + 1);
    }
    return conversions;
}

} // namespace zuv_test

#endif
