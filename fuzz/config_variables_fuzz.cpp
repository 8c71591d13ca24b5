// Any set of variables of a document and of the service, and any text that refers to them, in a name and in a text. Each
// line but the last is "NAME=value", one of the service's own with "!" in front; the last line is the text.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "ConfigFuzz.h"
#include "platform/xmlutils/Parser.h"

namespace
{

std::string escaped(std::string_view text)
{
    std::string result;
    for (const char character : text) {
        switch (character) {
        case '&':
            result += "&amp;";
            break;
        case '<':
            result += "&lt;";
            break;
        case '\'':
            result += "&apos;";
            break;
        default:
            result += character;
        }
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static BRELCfgFileParser *const parser = fuzz::newParser(false);
    auto &ownVariables =
        const_cast<ZUV_BrelServiceProperties &>(parser->property->user_environment);
    std::string text(reinterpret_cast<const char *>(data), size);
    std::string document = "<dds><configuration_variables><value>";
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n')) {
        const std::string line = text.substr(0, end);
        const std::size_t sign = line.find('=');
        const bool isOwn = line[0] == '!';
        if (sign != line.npos) {
            const std::string name = line.substr(isOwn, sign - isOwn);
            const std::string value = line.substr(sign + 1);
            if (isOwn) {
                ZUV_BrelServiceProperties_add(&ownVariables, name.c_str(), value.c_str());
            } else {
                document += "<element><name>" + escaped(name) + "</name><value>" + escaped(value) +
                            "</value></element>";
            }
        }
        text.erase(0, end + 1);
    }
    document += "</value></configuration_variables><brel_service name='" + escaped(text) +
                "'><annotation><documentation>" + escaped(text) +
                "</documentation></annotation></brel_service></dds>";
    const char *const piece = document.c_str();
    if (BRELCfgFileParser_loadString(parser, &piece, 1)) {
        const ZUVXMLUTILSObject *const service =
            ZUVXMLUTILSObject_getFirstChildWithTag(parser->_xmlRoot, "brel_service");
        fuzz::require(std::strlen(ZUVXMLUTILSObject_getName(service)) <=
                      4 * ZUVXMLUTILS_NAME_LENGTH_MAX);
        fuzz::require(fuzz::saved(parser->_xmlRoot).size() <
                      size_t{4} * ZUVXMLUTILS_VALUE_SIZE_MAX);
        BRELCfgFileParser_deleteEntity(parser, parser->_xmlRoot);
    }
    fuzz::require(parser->_xmlRoot == nullptr);
    fuzz::forget(parser);
    ZUV_BrelServiceProperties_finalize(&ownVariables);
    return 0;
}
