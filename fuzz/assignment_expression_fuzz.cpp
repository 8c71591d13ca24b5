// The converter of assignments with any text: what it gives is inline XML of the length that it computed.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"
#include "remoteConfig/AssignmentExpression.h"

namespace
{

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string expression(reinterpret_cast<const char *>(data), size);
    char *const snippet = BRELRemoteConfigClient_convertAssignmentToXmlSnippet(expression.c_str());
    if (snippet == nullptr) {
        return 0;
    }
    const std::string_view text = snippet;
    require(ZUVOsapiHeap_getBlockSize(snippet) == text.size() + 1);
    require(text.starts_with("str://\"<") && text.ends_with(">\""));
    require(expression.find('=') != std::string::npos);
    DDS_String_free(snippet);
    return 0;
}
