// What the fuzz targets of the configuration share: a parser that lives as long as the process, and a service.
#ifndef ZUV_FUZZ_CONFIG_FUZZ_H
#define ZUV_FUZZ_CONFIG_FUZZ_H

#include <cstdlib>
#include <string>

#include "config/XmlSupport.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace fuzz
{

inline void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

// Silent, and with validation if asked for.
inline BRELCfgFileParser *newParser(bool isValidating)
{
    static ZUV_BrelServiceProperty properties[2] = {};
    static const bool isReady = [] {
        ZUVXMLUTILSLog_g_instrumentationMask = 0;
        for (ZUV_BrelServiceProperty &property : properties) {
            ZUV_BrelServiceProperties_initialize(&property.user_environment);
            property.skip_default_files = DDS_BOOLEAN_TRUE;
        }
        properties[1].enforce_xsd_validation = DDS_BOOLEAN_TRUE;
        return BRELCfgFileParser_initializeGlobals() == 1;
    }();
    require(isReady);
    BRELCfgFileParser *const parser = BRELCfgFileParser_new(&properties[isValidating]);
    require(parser != nullptr);
    return parser;
}

// What documents define stays with a parser; the next input is to begin without.
inline void forget(BRELCfgFileParser *parser)
{
    BRELXmlVariableExpansor_forget(&parser->_variableExpansor);
    DDS_XMLParser_free_dom(parser->_xmlDdsParser, parser->_xmlDdsQosRoot);
    require(DDS_QosProvider_load_builtin_profilesI(parser->_xmlDdsParser,
                                                   &parser->_xmlDdsQosRoot) == 0);
}

inline std::string saved(const ZUVXMLUTILSObject *root)
{
    ZUVXMLUTILSSaveContext *const context = ZUVXMLUTILSSaveContext_newForMemory();
    BRELCfgFileParser_saveDocument(root, context, BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE);
    require(ZUVXMLUTILSSaveContext_finish(context) == 1);
    const std::string text = ZUVXMLUTILSSaveContext_getText(context);
    ZUVXMLUTILSSaveContext_delete(context);
    return text;
}

} // namespace fuzz

#endif
