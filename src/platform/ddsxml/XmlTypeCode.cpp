#include "platform/ddsxml/XmlTypeCode.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "platform/ddsxml/XmlLog.hpp"
#include "platform/ddsxml/XmlType.hpp"
#include "platform/mavo/String.h"

namespace zuv::ddsxml
{
namespace
{

using std::string_view;
using xmlutils::HeapAllocator;
using xmlutils::HeapString;

template <typename T>
using Set = std::unordered_set<T, std::hash<T>, std::equal_to<>, HeapAllocator<T>>;

constexpr std::uint32_t kMemberIdMax = 0x0fffffff;
constexpr int kBitBoundMin = 17; // a type code tells no other width of an enumeration than 32 bits

template <typename Value>
struct Word {
    string_view word;
    Value value;
};

constexpr Word<const DDS_TypeCode *> kTypes[] = {
    {"boolean", &DDS_g_tc_boolean}, {"byte", &DDS_g_tc_octet},     {"char8", &DDS_g_tc_char},
    {"int16", &DDS_g_tc_short},     {"uint16", &DDS_g_tc_ushort},  {"int32", &DDS_g_tc_long},
    {"uint32", &DDS_g_tc_ulong},    {"int64", &DDS_g_tc_longlong}, {"uint64", &DDS_g_tc_ulonglong},
    {"float32", &DDS_g_tc_float},   {"float64", &DDS_g_tc_double}, {"string", &DDS_g_tc_string},
};

constexpr Word<DDS_ExtensibilityKind> kExtensibilities[] = {
    {"", DDS_EXTENSIBLE_EXTENSIBILITY},
    {"appendable", DDS_EXTENSIBLE_EXTENSIBILITY},
    {"final", DDS_FINAL_EXTENSIBILITY},
    {"mutable", DDS_MUTABLE_EXTENSIBILITY},
};

constexpr Word<bool> kAutoids[] = {{"", false}, {"sequential", false}, {"hash", true}};

template <typename Words>
auto wordOf(const ZUVXMLObject &element, string_view attribute, const Words &words)
{
    const string_view text = attributeOf(element, attribute);
    const auto found = std::find_if(std::begin(words), std::end(words),
                                    [text](const auto &known) { return known.word == text; });
    if (found == std::end(words)) {
        refuse(HeapString("unknown ") + HeapString(attribute), text);
    }
    return found->value;
}

bool flagOf(const ZUVXMLObject &element, string_view attribute)
{
    const HeapString text(attributeOf(element, attribute));
    int value = 0;
    if (!text.empty() && MAVOString_strToBoolean(text.c_str(), &value) == 0) {
        refuse(HeapString("no boolean in ") + HeapString(attribute) + ":", text);
    }
    return value != 0;
}

// Call `body`, and let what it refuses tell where.
template <typename Body>
decltype(auto) within(string_view kind, string_view name, Body body)
{
    try {
        return body();
    } catch (BadDefinition &bad) {
        HeapString place(kind);
        if (!name.empty()) {
            place.append(" '").append(name).append("'");
        }
        place.append(": ");
        bad.reason.insert(0, place);
        throw;
    }
}

template <typename Visit>
void forEachChild(const ZUVXMLObject &element, string_view tag, Visit visit)
{
    for (ZUVXMLObject *child = element.firstChild; child != nullptr; child = child->next) {
        if (child->tag == tag) {
            visit(*child);
        }
    }
}

// Fills the type of one element.
class Maker
{
public:
    Maker(XmlType &type, const ZUVXMLObject &element, const Waiting &waiting)
        : type_(type), code_(type.code), element_(element), waiting_(waiting)
    {
    }

    void make()
    {
        type_.name = scopedName(element_);
        code_.name = type_.name.c_str();
        code_.representations = kXcdrAndXcdr2;
        if (element_.tag == "enum") {
            makeEnum();
        } else if (element_.tag == "union") {
            makeUnion();
        } else if (element_.tag == "typedef") {
            makeAlias();
        } else {
            makeStruct();
        }
        code_.members = type_.members;
    }

private:
    void makeAggregate(DDS_TCKind kind)
    {
        code_.kind = kind;
        code_.extensibility = wordOf(element_, "extensibility", kExtensibilities);
        code_.isAutoidHash = wordOf(element_, "autoid", kAutoids);
        code_.isNested = flagOf(element_, "nested");
    }

    void makeStruct()
    {
        makeAggregate(DDS_TK_STRUCT);
        if (!attributeOf(element_, "baseType").empty()) {
            readBase();
        }
        forEachChild(element_, "member", [this](const ZUVXMLObject &member) {
            addMember(member).marks = marksOf(member);
        });
    }

    void makeUnion()
    {
        makeAggregate(DDS_TK_UNION);
        forEachChild(element_, "discriminator", [this](const ZUVXMLObject &discriminator) {
            within("discriminator", "", [&] { readDiscriminator(discriminator); });
        });
        if (code_.content == nullptr) {
            refuse("a discriminator is missing");
        }
        Set<std::int32_t> labels;
        bool hasDefault = false;
        forEachChild(element_, "case", [&](const ZUVXMLObject &unionCase) {
            addCase(unionCase, labels, hasDefault);
        });
        if (type_.members.empty()) {
            refuse("a case is missing");
        }
    }

    void makeEnum()
    {
        code_.kind = DDS_TK_ENUM;
        code_.extensibility = wordOf(element_, "extensibility", kExtensibilities);
        const string_view bitBound = attributeOf(element_, "bitBound");
        if (!bitBound.empty()) {
            const std::int64_t bits = integerOf(element_, bitBound, &waiting_);
            if (bits < kBitBoundMin || bits > 32) {
                refuse("a bitBound that is not supported:", bitBound);
            }
        }
        Set<std::int32_t> values;
        const DDS_TypeCodeMember *defaultLiteral = nullptr;
        std::int64_t next = 0;
        forEachChild(element_, "enumerator", [&](const ZUVXMLObject &enumerator) {
            within("enumerator", enumerator.name, [&] {
                const string_view value = attributeOf(enumerator, "value");
                next = value.empty() ? next : integerOf(element_, value, &waiting_);
                if (next < INT32_MIN || next > INT32_MAX) {
                    refuse("a value beyond 32 bits");
                }
                const auto ordinal = static_cast<std::int32_t>(next++);
                if (!values.insert(ordinal).second) {
                    refuse("the value of another one");
                }
                addName(enumerator).ordinal = ordinal;
                if (flagOf(enumerator, "defaultLiteral")) {
                    if (defaultLiteral != nullptr) {
                        refuse("a second default");
                    }
                    code_.defaultOrdinal = ordinal;
                    defaultLiteral = &type_.members.back();
                }
            });
        });
        if (type_.members.empty()) {
            refuse("an enumerator is missing");
        }
        if (defaultLiteral == nullptr) {
            code_.defaultOrdinal = type_.members.front().ordinal;
        }
    }

    void makeAlias()
    {
        code_.kind = DDS_TK_ALIAS;
        code_.content = &memberType(element_);
    }

    void readBase()
    {
        const string_view name = attributeOf(element_, "baseType");
        const DDS_TypeCode &base = *DDS_TypeCode_resolve_alias(&referenceTo(element_, name));
        if (base.kind != DDS_TK_STRUCT) {
            refuse("a base that is no structure:", name);
        }
        if (base.extensibility != code_.extensibility) {
            refuse("a base of another extensibility:", name);
        }
        code_.base = &base;
        for (const DDS_TypeCode *at = &base; at != nullptr; at = at->base) {
            for (const DDS_TypeCodeMember &member : at->members) {
                names_.insert(member.name);
                ids_.insert(member.id);
            }
        }
        const DDS_TypeCode *last = &base;
        while (last != nullptr && last->members.empty()) {
            last = last->base;
        }
        nextId_ = last != nullptr ? last->members.back().id + 1 : 0;
    }

    void readDiscriminator(const ZUVXMLObject &discriminator)
    {
        if (flagOf(discriminator, "key")) {
            refuse("a key, which is not supported");
        }
        const DDS_TypeCode &type = memberType(discriminator);
        switch (DDS_TypeCode_resolve_alias(&type)->kind) {
        case DDS_TK_FLOAT:
        case DDS_TK_DOUBLE:
        case DDS_TK_STRING:
        case DDS_TK_STRUCT:
        case DDS_TK_UNION:
        case DDS_TK_SEQUENCE:
        case DDS_TK_ARRAY:
            refuse("a type that cannot tell cases apart");
        default:
            code_.content = &type;
        }
    }

    void addCase(const ZUVXMLObject &unionCase, Set<std::int32_t> &labels, bool &hasDefault)
    {
        auto &own = type_.labels.emplace_back();
        bool isDefault = false;
        forEachChild(unionCase, "caseDiscriminator", [&](const ZUVXMLObject &label) {
            const string_view text = attributeOf(label, "value");
            if (text == "default") {
                isDefault = true;
                return;
            }
            const std::int64_t value = valueOf(element_, *code_.content, text, &waiting_);
            if (value < INT32_MIN || value > INT32_MAX) {
                refuse("a label beyond 32 bits:", text);
            }
            own.push_back(static_cast<std::int32_t>(value));
            if (!labels.insert(own.back()).second) {
                refuse("two cases of one label:", text);
            }
        });
        if (isDefault ? std::exchange(hasDefault, true) : own.empty()) {
            refuse(isDefault ? "two default cases" : "a case without a label");
        }
        const std::size_t before = type_.members.size();
        forEachChild(unionCase, "member", [&](const ZUVXMLObject &member) {
            DDS_TypeCodeMember &added = addMember(member);
            if (!isDefault) { // whose other labels change nothing
                added.labels = own;
            }
        });
        if (type_.members.size() != before + 1) {
            refuse("a case needs one member");
        }
    }

    DDS_TypeCodeMember &addMember(const ZUVXMLObject &member)
    {
        return within("member", member.name, [&]() -> DDS_TypeCodeMember & {
            const DDS_TypeCode &type = memberType(member);
            DDS_TypeCodeMember &added = addName(member);
            added.type = &type;
            added.id = idOf(member);
            return added;
        });
    }

    // A member or enumerator that has its name alone.
    DDS_TypeCodeMember &addName(const ZUVXMLObject &member)
    {
        if (member.name.empty()) {
            refuse("a name is missing");
        }
        const HeapString &name = type_.memberNames.emplace_back(member.name);
        if (!names_.insert(name).second) {
            refuse("the name of another one");
        }
        DDS_TypeCodeMember &added = type_.members.emplace_back();
        added.name = name.c_str();
        return added;
    }

    std::uint32_t idOf(const ZUVXMLObject &member)
    {
        const string_view text = attributeOf(member, "id");
        const std::int64_t id = !text.empty()        ? integerOf(element_, text, &waiting_)
                                : code_.isAutoidHash ? memberIdOf(member.name)
                                                     : nextId_;
        if (id < 0 || id > kMemberIdMax) {
            refuse("an id beyond 28 bits");
        }
        const auto accepted = static_cast<std::uint32_t>(id);
        if (!ids_.insert(accepted).second) {
            refuse("the id of another one");
        }
        nextId_ = accepted + 1;
        return accepted;
    }

    static std::uint8_t marksOf(const ZUVXMLObject &member)
    {
        return within("member", member.name, [&]() -> std::uint8_t {
            const bool isKey = flagOf(member, "key");
            const bool isOptional = flagOf(member, "optional");
            if (isKey && isOptional) {
                refuse("a key that is optional");
            }
            return isKey ? kKey : isOptional ? kOptional : kRequired;
        });
    }

    // The type, in a sequence and in arrays as the attributes say.
    const DDS_TypeCode &memberType(const ZUVXMLObject &member)
    {
        const DDS_TypeCode *type = &plainType(member);
        const string_view bound = attributeOf(member, "sequenceMaxLength");
        if (!bound.empty()) {
            type = &part(DDS_TK_SEQUENCE, boundOf(bound), type);
        }
        string_view dimensions = attributeOf(member, "arrayDimensions");
        while (!dimensions.empty()) { // the innermost is written last
            const std::size_t comma = dimensions.rfind(',');
            const bool isLast = comma == string_view::npos;
            const string_view dimension = isLast ? dimensions : dimensions.substr(comma + 1);
            type = &part(DDS_TK_ARRAY, lengthOf(dimension), type);
            dimensions = isLast ? string_view() : dimensions.substr(0, comma);
        }
        return *type;
    }

    const DDS_TypeCode &plainType(const ZUVXMLObject &member)
    {
        std::shared_ptr<const XmlType> used;
        const DDS_TypeCode &type = namedType(member, used, &waiting_);
        if (used != nullptr) {
            type_.uses.push_back(std::move(used));
        }
        const string_view bound = attributeOf(member, "stringMaxLength");
        if (bound.empty() || type.kind != DDS_TK_STRING || boundOf(bound) == DDS_UNBOUNDED) {
            return type;
        }
        return part(DDS_TK_STRING, boundOf(bound), nullptr);
    }

    const DDS_TypeCode &referenceTo(const ZUVXMLObject &element, string_view name)
    {
        ZUVXMLObject *const found = findDefinition(element, name, definesType);
        if (found == nullptr) {
            refuse("no such type:", name);
        }
        type_.uses.push_back(typeOf(*found, &waiting_));
        return type_.uses.back()->code;
    }

    const DDS_TypeCode &part(DDS_TCKind kind, std::uint32_t length, const DDS_TypeCode *content)
    {
        return type_.parts.emplace_back(
            DDS_TypeCode{.kind = kind, .length = length, .content = content});
    }

    std::uint32_t boundOf(string_view text)
    {
        return text == "-1" ? DDS_UNBOUNDED : lengthOf(text);
    }

    std::uint32_t lengthOf(string_view text)
    {
        const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
        text = text.substr(begin, text.find_last_not_of(' ') + 1 - begin);
        const std::int64_t length = integerOf(element_, text, &waiting_);
        if (length < 1 || length >= DDS_UNBOUNDED) {
            refuse("no length:", text);
        }
        return static_cast<std::uint32_t>(length);
    }

    XmlType &type_;
    DDS_TypeCode &code_;
    const ZUVXMLObject &element_;
    const Waiting &waiting_;
    Set<string_view> names_;
    Set<std::uint32_t> ids_;
    std::uint32_t nextId_ = 0;
};

} // namespace

const DDS_TypeCode &namedType(const ZUVXMLObject &element, std::shared_ptr<const XmlType> &used,
                              const Waiting *waiting)
{
    if (attributeOf(element, "type") != "nonBasic") {
        return *wordOf(element, "type", kTypes);
    }
    const string_view name = attributeOf(element, "nonBasicTypeName");
    ZUVXMLObject *const found = findDefinition(element, name, definesType);
    if (found == nullptr) {
        refuse("no such type:", name);
    }
    used = typeOf(*found, waiting);
    return used->code;
}

const std::shared_ptr<const XmlType> &typeOf(ZUVXMLObject &element, const Waiting *outer)
{
    if (element.type == nullptr) {
        const Waiting waiting(element, outer);
        const auto made = std::allocate_shared<XmlType>(HeapAllocator<XmlType>());
        within(element.tag, scopedName(element), [&] { Maker(*made, element, waiting).make(); });
        element.type = made;
    }
    return element.type;
}

} // namespace zuv::ddsxml

extern "C" const DDS_TypeCode *DDS_XMLTypeCode_get_dds_typecode(ZUVXMLObject *self)
{
    using namespace zuv::ddsxml;
    if (ZUV_DDSXML_IS_NULL(self)) {
        return nullptr;
    }
    try {
        if (!definesType(*self)) {
            refuse("no definition of a type:", self->tag);
        }
        return &typeOf(*self, nullptr)->code;
    } catch (const BadDefinition &bad) {
        ZUV_DDSXML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, bad.reason.c_str());
    } catch (const std::bad_alloc &) {
        ZUV_DDSXML_FAILURE(&ZUV_LOG_ANY_FAILURE_s, "make type code: out of memory");
    }
    return nullptr;
}
