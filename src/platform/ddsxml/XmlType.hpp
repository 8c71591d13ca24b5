// A type code with all that it is made of, and the making of one from its element.
#ifndef ZUV_PLATFORM_DDSXML_XML_TYPE_HPP
#define ZUV_PLATFORM_DDSXML_XML_TYPE_HPP

#include <cstdint>
#include <deque>
#include <memory>
#include <string_view>

#include "platform/ddsxml/XmlObject.hpp"
#include "platform/typesys/TypeTable.hpp"

namespace zuv::ddsxml
{

// Elements keep their type, and a type keeps those that it uses: none points at what is gone.
struct XmlType {
    template <typename T>
    using Store = std::deque<T, xmlutils::HeapAllocator<T>>; // where nothing moves

    DDS_TypeCode code;
    xmlutils::HeapString name;
    xmlutils::HeapVector<DDS_TypeCodeMember> members;
    Store<xmlutils::HeapString> memberNames;
    Store<xmlutils::HeapVector<std::int32_t>> labels;
    Store<DDS_TypeCode> parts; // texts, sequences and arrays, which have no name
    xmlutils::HeapVector<std::shared_ptr<const XmlType>> uses;
};

// Why a definition makes no type.
struct BadDefinition {
    xmlutils::HeapString reason;
};

// Throws BadDefinition: "reason 'subject'".
[[noreturn]] void refuse(std::string_view reason, std::string_view subject = {});

// A definition whose making waits for that of another one. Throws BadDefinition when it waits for itself, or too many
// wait.
class Waiting
{
public:
    Waiting(const ZUVXMLObject &element, const Waiting *outer);

private:
    const ZUVXMLObject &element_;
    const Waiting *outer_;
    unsigned depth_;
};

// The type of an element that defines one. What follows throws BadDefinition and std::bad_alloc; `waiting` is the
// definition that is being made, null at first.
const std::shared_ptr<const XmlType> &typeOf(ZUVXMLObject &element, const Waiting *waiting);

// The type that "type" and "nonBasicTypeName" name, a text without its bound. One that is not built in is stored in
// `used`.
const DDS_TypeCode &namedType(const ZUVXMLObject &element, std::shared_ptr<const XmlType> &used,
                              const Waiting *waiting);

// A number that is written as such, or is the name of a constant that `element` sees.
std::int64_t integerOf(const ZUVXMLObject &element, std::string_view text, const Waiting *waiting);

// The value of a label or constant of this type: a number, a character, a boolean, an enumerator or a constant.
std::int64_t valueOf(const ZUVXMLObject &element, const DDS_TypeCode &type, std::string_view text,
                     const Waiting *waiting);

// What a path of names leads to from the place of `element`: constants, or types. Null if there is none.
ZUVXMLObject *findDefinition(const ZUVXMLObject &element, std::string_view path,
                             bool (*isWanted)(const ZUVXMLObject &));

bool definesType(const ZUVXMLObject &element);

// "Module::Type", the name of an element that stands in modules.
xmlutils::HeapString scopedName(const ZUVXMLObject &element);

// The attribute's value without the blanks around it; empty without one.
std::string_view attributeOf(const ZUVXMLObject &element, std::string_view name);

} // namespace zuv::ddsxml

#endif
