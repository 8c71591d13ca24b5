// Any text as a configuration: it is refused, and leaves nothing, or its services can be built and saved. The
// first octet says whether it is validated.
#include <cstddef>
#include <cstdint>

#include "ConfigFuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static BRELCfgFileParser *const parsers[] = {fuzz::newParser(false), fuzz::newParser(true)};
    if (size == 0) {
        return 0;
    }
    BRELCfgFileParser *const parser = parsers[data[0] % 2];
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    const char *const piece = text.c_str();
    const int isLoaded = BRELCfgFileParser_loadString(parser, &piece, 1);
    fuzz::require((isLoaded != 0) == (parser->_xmlRoot != nullptr));
    if (isLoaded) {
        ZUVXMLUTILSObject *service =
            ZUVXMLUTILSObject_getFirstChildWithTag(parser->_xmlRoot, "brel_service");
        for (; service != nullptr;
             service = ZUVXMLUTILSObject_getNextSiblingWithTag(service, "brel_service")) {
            BRELCfgFileParser_loadService(parser, ZUVXMLUTILSObject_getName(service));
        }
        fuzz::saved(parser->_xmlRoot);
        BRELCfgFileParser_deleteEntity(parser, parser->_xmlRoot);
    }
    // What documents define stays with a parser; each input is to begin without.
    ZUV_BrelServiceProperties_finalize(&parser->_variableExpansor._xmlUserEnv);
    DDS_XMLParser_free_dom(parser->_xmlDdsParser, parser->_xmlDdsQosRoot);
    fuzz::require(DDS_QosProvider_load_builtin_profilesI(parser->_xmlDdsParser,
                                                         &parser->_xmlDdsQosRoot) == 0);
    return 0;
}
