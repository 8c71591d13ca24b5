// Any text as definitions of types, each of which is asked for. What becomes a type code can be walked to its end and
// is equivalent to itself and to the same definition read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "platform/ddsxml/XmlParser.h"
#include "platform/ddsxml/XmlTypeCode.h"
#include "platform/xmlutils/Globals.h"
#include "platform/xmlutils/XmlUtilsLog.h"

namespace
{

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

bool isCollection(const DDS_TypeCode *type)
{
    const DDS_TCKind kind = DDS_TypeCode_kind(type, nullptr);
    return kind == DDS_TK_SEQUENCE || kind == DDS_TK_ARRAY;
}

// What stands in the definition itself: those that it uses are asked for in their turn.
void walk(const DDS_TypeCode *type)
{
    const char *const name = DDS_TypeCode_name(type, nullptr);
    require(name != nullptr && DDS_TypeCode_resolve_alias(type) != nullptr);
    const DDS_UnsignedLong count = DDS_TypeCode_member_count(type, nullptr);
    for (DDS_UnsignedLong index = 0; index < count; ++index) {
        const char *const member = DDS_TypeCode_member_name(type, index, nullptr);
        require(DDS_TypeCode_find_member_by_name(type, member, nullptr) == index);
        const DDS_TypeCode *content = DDS_TypeCode_member_type(type, index, nullptr);
        require((content == nullptr) == (DDS_TypeCode_kind(type, nullptr) == DDS_TK_ENUM));
        while (isCollection(content)) {
            require(DDS_TypeCode_length(content, nullptr) > 0);
            content = DDS_TypeCode_content_type(content, nullptr);
        }
    }
}

const DDS_TypeCode *askFor(ZUVXMLObject *definition)
{
    const DDS_TypeCode *const type = DDS_XMLTypeCode_get_dds_typecode(definition);
    require(type == nullptr || DDS_XMLTypeCode_get_dds_typecode(definition) == type);
    return type;
}

void visit(ZUVXMLObject *object, ZUVXMLObject *again)
{
    const DDS_TypeCode *const type = askFor(object);
    const DDS_TypeCode *const other = askFor(again);
    require((type == nullptr) == (other == nullptr));
    if (type != nullptr) {
        walk(type);
        DDS_ExceptionCode_t exception = DDS_NO_EXCEPTION_CODE;
        const bool areEquivalent = DDS_TypeCode_equivalent(type, other, &exception);
        require(areEquivalent || exception == DDS_BOUNDS_USER_EXCEPTION_CODE);
        require(DDS_TypeCode_equivalent(type, type, nullptr));
    }
    ZUVXMLObject *child = ZUVXMLObject_getFirstChild(object);
    ZUVXMLObject *otherChild = ZUVXMLObject_getFirstChild(again);
    for (; child != nullptr; child = ZUVXMLObject_getNextSibling(child),
                             otherChild = ZUVXMLObject_getNextSibling(otherChild)) {
        visit(child, otherChild);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    ZUVXMLUTILSLog_g_instrumentationMask = 0;
    static const int isReady = ZUVXMLUTILSGlobals_initialize();
    static DDS_XMLParser *const parser = DDS_XMLParser_new();
    require(isReady == 1 && parser != nullptr);
    const std::string text =
        "<dds><types>" + std::string(reinterpret_cast<const char *>(data), size) + "</types></dds>";
    ZUVXMLObject *const tree = ZUVXMLParser_parseFromString(parser, nullptr, text.c_str());
    if (tree != nullptr) {
        ZUVXMLObject *const again = ZUVXMLParser_parseFromString(parser, nullptr, text.c_str());
        require(again != nullptr);
        visit(tree, again);
        DDS_XMLParser_free_dom(parser, again);
        DDS_XMLParser_free_dom(parser, tree);
    }
    return 0;
}
