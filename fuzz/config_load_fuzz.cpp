// Any texts as the documents of a configuration, one joining the other: each is refused or taken, services can be built
// and saved in between, and nothing stays behind. The first octet says whether they are validated; NUL parts them.
#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "ConfigFuzz.h"

namespace
{

void buildServices(BRELCfgFileParser *parser)
{
    ZUVXMLUTILSObject *service =
        ZUVXMLUTILSObject_getFirstChildWithTag(parser->_xmlRoot, "brel_service");
    for (; service != nullptr;
         service = ZUVXMLUTILSObject_getNextSiblingWithTag(service, "brel_service")) {
        BRELCfgFileParser_loadService(parser, ZUVXMLUTILSObject_getName(service));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static BRELCfgFileParser *const parsers[] = {fuzz::newParser(false), fuzz::newParser(true)};
    if (size == 0) {
        return 0;
    }
    BRELCfgFileParser *const parser = parsers[data[0] % 2];
    const std::string texts(reinterpret_cast<const char *>(data) + 1, size - 1);
    for (std::size_t begin = 0; begin <= texts.size();) {
        const char *const piece = texts.c_str() + begin;
        const bool isFirst = parser->_xmlRoot == nullptr;
        const int isLoaded = BRELCfgFileParser_loadString(parser, &piece, 1);
        fuzz::require(!isFirst || (isLoaded != 0) == (parser->_xmlRoot != nullptr));
        if (parser->_xmlRoot != nullptr) {
            buildServices(parser);
            fuzz::saved(parser->_xmlRoot);
        }
        begin = std::min(texts.find('\0', begin), texts.size()) + 1;
    }
    if (parser->_xmlRoot != nullptr) {
        BRELCfgFileParser_deleteEntity(parser, parser->_xmlRoot);
    }
    fuzz::forget(parser);
    return 0;
}
