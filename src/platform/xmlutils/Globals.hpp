// What operations ask of the globals.
#ifndef ZUV_PLATFORM_XMLUTILS_GLOBALS_HPP
#define ZUV_PLATFORM_XMLUTILS_GLOBALS_HPP

namespace zuv::xmlutils
{

bool areGlobalsInitialized();

} // namespace zuv::xmlutils

// if (ZUV_XML_IS_NOT_READY(PARSER)) return 0;   True, after the report, before initialization.
#define ZUV_XML_IS_NOT_READY(SUBMODULE)                                                            \
    ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_##SUBMODULE,                               \
                     !zuv::xmlutils::areGlobalsInitialized(),                                      \
                     "ZUVXMLUTILSGlobals are not initialized")

#endif
