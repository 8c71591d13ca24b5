// Any text as an update of a live service and as an entity of it. A refused one changes nothing; one that is taken is
// gone again without a trace. The first octet chooses the target, and whether it is validated.
#include <cstddef>
#include <cstdint>

#include "ConfigFuzz.h"

namespace
{

const char *const kDocument =
    "<dds><brel_service name='S'><domain_route name='dr'><participant name='p'/>"
    "<session name='s'><thread_pool><size>1</size></thread_pool><topic_route name='r'>"
    "<input name='i' participant='p'><topic_name>T</topic_name></input></topic_route>"
    "<auto_topic_route name='a'/></session></domain_route></brel_service></dds>";

BRELCfgFileParser *newService(bool isValidating)
{
    BRELCfgFileParser *const parser = fuzz::newParser(isValidating);
    fuzz::require(BRELCfgFileParser_loadString(parser, &kDocument, 1) == 1);
    fuzz::require(BRELCfgFileParser_loadService(parser, "S") != nullptr);
    return parser;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const char *const kTargets[] = {"S",           "S::dr",         "S::dr::p",
                                           "S::dr::s",    "S::dr::s::r",   "S::dr::s::r::i",
                                           "S::dr::s::a", "S::dr::s::none"};
    static BRELCfgFileParser *const parsers[] = {newService(false), newService(true)};
    static const std::string before = fuzz::saved(parsers[0]->_xmlRoot);
    if (size == 0) {
        return 0;
    }
    BRELCfgFileParser *const parser = parsers[data[0] % 2];
    ZUVXMLUTILSObject *const target =
        ZUVXMLUTILSObject_lookUp(parser->_xmlRoot, kTargets[data[0] / 2 % 8]);
    if (target == nullptr) {
        return 0;
    }
    const std::string text(reinterpret_cast<const char *>(data) + 1, size - 1);
    for (ZUVXMLUTILSObject *const added :
         {BRELCfgFileParser_parseUpdate(parser, target, text.c_str()),
          BRELCfgFileParser_loadEntity(parser, target, text.c_str())}) {
        if (added != nullptr) {
            BRELCfgFileParser_deleteEntity(parser, added);
        }
    }
    fuzz::require(fuzz::saved(parser->_xmlRoot) == before);
    return 0;
}
