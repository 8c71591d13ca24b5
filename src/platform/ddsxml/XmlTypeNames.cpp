// Names in definitions of types, and the numbers that they may stand for.
#include <algorithm>
#include <charconv>
#include <span>

#include "platform/ddsxml/XmlType.hpp"
#include "platform/mavo/String.h"

namespace zuv::ddsxml
{
namespace
{

using std::string_view;
using xmlutils::HeapString;
using Path = xmlutils::HeapVector<string_view>;

constexpr string_view kScope = "::";
constexpr unsigned kDepthMax = 64;

bool isModule(const ZUVXMLObject &element)
{
    return element.tag == "module";
}

bool isConstant(const ZUVXMLObject &element)
{
    return element.tag == "const";
}

// The names of the modules around an element, the outermost first, and the element around these.
Path modulesOf(const ZUVXMLObject &element, const ZUVXMLObject *&outermost)
{
    Path names;
    outermost = element.parent;
    while (outermost != nullptr && !isModule(*outermost) && outermost->tag != "types") {
        outermost = outermost->parent; // out of the definition that the element is part of
    }
    for (; outermost != nullptr && isModule(*outermost); outermost = outermost->parent) {
        names.push_back(outermost->name);
    }
    std::reverse(names.begin(), names.end());
    return names;
}

void append(Path &path, string_view names)
{
    for (;;) {
        const std::size_t end = names.find(kScope);
        path.push_back(names.substr(0, end));
        if (end == string_view::npos) {
            return;
        }
        names.remove_prefix(end + kScope.size());
    }
}

// Call `visit` with the children of the name, in their order, until it gives something.
template <typename Visit>
ZUVXMLObject *firstOfName(const ZUVXMLObject &scope, string_view name, Visit visit)
{
    const auto [begin, end] = scope.children.equal_range(name);
    if (begin == end) {
        return nullptr;
    }
    if (std::next(begin) == end) {
        return visit(*begin->second);
    }
    // The index does not know their order.
    for (ZUVXMLObject *child = scope.firstChild; child != nullptr; child = child->next) {
        ZUVXMLObject *const found = child->name == name ? visit(*child) : nullptr;
        if (found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

// A module may be written in several pieces, so that one name leads to several of them.
ZUVXMLObject *descend(const ZUVXMLObject &scope, std::span<const string_view> path,
                      bool (*isWanted)(const ZUVXMLObject &))
{
    return firstOfName(scope, path.front(), [=](ZUVXMLObject &child) -> ZUVXMLObject * {
        if (path.size() == 1) {
            return isWanted(child) ? &child : nullptr;
        }
        return isModule(child) ? descend(child, path.subspan(1), isWanted) : nullptr;
    });
}

bool readInteger(string_view text, std::int64_t &value)
{
    const bool isNegative = text.starts_with('-');
    text.remove_prefix(isNegative || text.starts_with('+') ? 1 : 0);
    const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
    text.remove_prefix(isHexadecimal ? 2 : 0);
    std::uint64_t magnitude = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), magnitude, isHexadecimal ? 16 : 10);
    const auto greatest = static_cast<std::uint64_t>(INT64_MAX) + (isNegative ? 1 : 0);
    if (text.empty() || end != text.data() + text.size() || error != std::errc() ||
        magnitude > greatest) {
        return false;
    }
    value = static_cast<std::int64_t>(isNegative ? 0 - magnitude : magnitude);
    return true;
}

bool readBoolean(string_view text, std::int64_t &value)
{
    int read = 0;
    if (MAVOString_strToBoolean(HeapString(text).c_str(), &read) == 0) {
        return false;
    }
    value = read;
    return true;
}

// As it is, or between single quotes.
bool readCharacter(string_view text, std::int64_t &value)
{
    const bool isQuoted = text.size() == 3 && text.front() == '\'' && text.back() == '\'';
    if (!isQuoted && text.size() != 1) {
        return false;
    }
    value = static_cast<signed char>(text[isQuoted ? 1 : 0]);
    return true;
}

// An enumerator counts in its module, and may be written with the names of modules in front.
bool readEnumerator(const DDS_TypeCode &type, string_view text, std::int64_t &value)
{
    const std::size_t scope = text.rfind(kScope);
    const string_view name = scope != string_view::npos ? text.substr(scope + kScope.size()) : text;
    const auto found = std::find_if(type.members.begin(), type.members.end(),
                                    [name](const auto &member) { return name == member.name; });
    if (found == type.members.end()) {
        return false;
    }
    value = found->ordinal;
    return true;
}

bool isWithinRange(const DDS_TypeCode &type, std::int64_t value)
{
    const DDS_AnnotationParameterValue least = DDS_TypeCode_min_value(&type, nullptr);
    const DDS_AnnotationParameterValue greatest = DDS_TypeCode_max_value(&type, nullptr);
    switch (type.kind) {
    case DDS_TK_SHORT:
    case DDS_TK_LONG:
    case DDS_TK_LONGLONG:
        return value >= least.value.signedValue && value <= greatest.value.signedValue;
    case DDS_TK_OCTET:
    case DDS_TK_USHORT:
    case DDS_TK_ULONG:
    case DDS_TK_ULONGLONG:
        return value >= 0 && static_cast<std::uint64_t>(value) <= greatest.value.unsignedValue;
    default:
        return false;
    }
}

// Written as a value of the type, not by the name of a constant.
bool readLiteral(const DDS_TypeCode &type, string_view text, std::int64_t &value)
{
    switch (type.kind) {
    case DDS_TK_BOOLEAN:
        return readBoolean(text, value);
    case DDS_TK_CHAR:
        return readCharacter(text, value);
    case DDS_TK_ENUM:
        return readEnumerator(type, text, value);
    default:
        return readInteger(text, value);
    }
}

std::int64_t constantOf(const ZUVXMLObject &element, string_view name, const Waiting *outer)
{
    const ZUVXMLObject *const constant = findDefinition(element, name, isConstant);
    if (constant == nullptr) {
        refuse("no such value or constant:", name);
    }
    const Waiting waiting(*constant, outer);
    std::shared_ptr<const XmlType> used;
    const DDS_TypeCode &type = namedType(*constant, used, &waiting);
    return valueOf(*constant, type, attributeOf(*constant, "value"), &waiting);
}

} // namespace

void refuse(string_view reason, string_view subject)
{
    HeapString text(reason);
    if (!subject.empty()) {
        text.append(" '").append(subject).append("'");
    }
    throw BadDefinition{std::move(text)};
}

Waiting::Waiting(const ZUVXMLObject &element, const Waiting *outer)
    : element_(element), outer_(outer), depth_(outer != nullptr ? outer->depth_ + 1 : 0)
{
    for (; outer != nullptr; outer = outer->outer_) {
        if (&outer->element_ == &element) {
            refuse("uses itself:", scopedName(element));
        }
    }
    if (depth_ > kDepthMax) {
        refuse("definitions use one another too deep:", scopedName(element));
    }
}

bool definesType(const ZUVXMLObject &element)
{
    return element.tag == "struct" || element.tag == "valuetype" || element.tag == "union" ||
           element.tag == "enum" || element.tag == "typedef";
}

HeapString scopedName(const ZUVXMLObject &element)
{
    HeapString name;
    const ZUVXMLObject *outermost = nullptr;
    for (const string_view module : modulesOf(element, outermost)) {
        name.append(module).append(kScope);
    }
    return name.append(element.name);
}

string_view attributeOf(const ZUVXMLObject &element, string_view name)
{
    constexpr string_view kBlanks = " \t\r\n";
    const auto found =
        std::find_if(element.attributes.begin(), element.attributes.end(),
                     [name](const ZUVXMLObject::Attribute &at) { return at.name == name; });
    if (found == element.attributes.end()) {
        return {};
    }
    const string_view value = found->value;
    const std::size_t begin = value.find_first_not_of(kBlanks);
    return begin == string_view::npos
               ? string_view()
               : value.substr(begin, value.find_last_not_of(kBlanks) + 1 - begin);
}

ZUVXMLObject *findDefinition(const ZUVXMLObject &element, string_view path,
                             bool (*isWanted)(const ZUVXMLObject &))
{
    const ZUVXMLObject *outermost = nullptr;
    Path scope = modulesOf(element, outermost);
    if (outermost == nullptr) {
        return nullptr;
    }
    if (path.starts_with(kScope)) {
        scope.clear();
        path.remove_prefix(kScope.size());
    }
    for (;;) {
        Path whole = scope;
        append(whole, path);
        if (ZUVXMLObject *const found = descend(*outermost, whole, isWanted)) {
            return found;
        }
        if (scope.empty()) {
            return nullptr;
        }
        scope.pop_back();
    }
}

std::int64_t integerOf(const ZUVXMLObject &element, string_view text, const Waiting *waiting)
{
    return valueOf(element, DDS_g_tc_longlong, text, waiting);
}

std::int64_t valueOf(const ZUVXMLObject &element, const DDS_TypeCode &type, string_view text,
                     const Waiting *waiting)
{
    const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(&type);
    std::int64_t value = 0;
    if (text.empty()) {
        refuse("a value is missing");
    }
    if (!readLiteral(resolved, text, value)) {
        value = constantOf(element, text, waiting);
    }
    const bool isNumber = resolved.kind != DDS_TK_BOOLEAN && resolved.kind != DDS_TK_CHAR &&
                          resolved.kind != DDS_TK_ENUM;
    if (isNumber && !isWithinRange(resolved, value)) {
        refuse("no value of its type:", text);
    }
    return value;
}

} // namespace zuv::ddsxml
