// Any set of variables in any text. Each line but the last is "NAME=value"; the last one is the text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>

#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/VariableExpansor.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace
{

using Values = std::map<std::string, std::string, std::less<>>;

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

const char *valueIn(const void *source, const char *name)
{
    const auto &values = *static_cast<const Values *>(source);
    const auto found = values.find(name);
    return found != values.end() ? found->second.c_str() : nullptr;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ZUVXMLUTILSLog_g_instrumentationMask = 0;
    static const int isReady = ZUVXMLUTILSGlobals_initialize();
    require(isReady == 1);
    std::string text(reinterpret_cast<const char *>(data), size);
    Values values;
    for (std::size_t end = text.find('\n'); end != text.npos; end = text.find('\n')) {
        const std::string line = text.substr(0, end);
        const std::size_t sign = line.find('=');
        if (sign != line.npos) {
            values[line.substr(0, sign)] = line.substr(sign + 1);
        }
        text.erase(0, end + 1);
    }
    ZUVXMLUTILSVariableExpansor expansor;
    require(ZUVXMLUTILSVariableExpansor_initialize(&expansor, nullptr, nullptr, &values,
                                                   &valueIn) == 1);
    ZUVXMLUTILSObject *const tree = ZUVXMLUTILSParser_parseString("<dds><r name='x'>t</r></dds>");
    ZUVXMLUTILSObject *const route = ZUVXMLUTILSObject_getFirstChild(tree);
    require(ZUVXMLUTILSObject_setAttribute(route, "value", text.c_str()) == 1);
    const bool isDone = ZUVXMLUTILSVariableExpansor_visit(&expansor, route) == 1;
    const std::string result = ZUVXMLUTILSObject_getAttribute(route, "value");
    require(isDone || result == text.c_str());
    require(result.size() <= ZUVXMLUTILS_TEXT_LENGTH_MAX || result == text.c_str());
    require(ZUVXMLUTILSObject_lookUpChild(tree, "x") == route);
    ZUVXMLUTILSParser_freeDom(tree);
    return 0;
}
