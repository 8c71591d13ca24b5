// The elements beneath the public operations.
#ifndef ZUV_PLATFORM_DDSXML_XML_OBJECT_HPP
#define ZUV_PLATFORM_DDSXML_XML_OBJECT_HPP

#include <functional>
#include <memory>
#include <string_view>
#include <unordered_map>

#include "platform/ddsxml/DistLogger.h"
#include "platform/ddsxml/QosValue.hpp"
#include "platform/ddsxml/XmlObject.h"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Object.h"

namespace zuv::ddsxml
{
struct XmlType;
}

struct ZUVXMLObject {
    struct Attribute {
        zuv::xmlutils::HeapString name;
        zuv::xmlutils::HeapString value;
    };
    using ByName = std::unordered_multimap<
        std::string_view, ZUVXMLObject *, std::hash<std::string_view>, std::equal_to<>,
        zuv::xmlutils::HeapAllocator<std::pair<const std::string_view, ZUVXMLObject *>>>;

    ZUVXMLObject() = default;
    ~ZUVXMLObject();
    ZUVXMLObject(const ZUVXMLObject &) = delete;
    ZUVXMLObject &operator=(const ZUVXMLObject &) = delete;

    // Own the child, behind the others. Throws std::bad_alloc; then nothing has happened.
    void append(ZUVXMLObject *child);
    // False if it is not in here.
    bool remove(ZUVXMLObject *child);
    // Give a child, which is in here, to another element. Needs no memory if that one's `children` have room.
    void give(ZUVXMLObject *child, ZUVXMLObject &newParent);
    ZUVXMLObject *findByName(std::string_view childName) const;

    zuv::xmlutils::HeapString tag;
    zuv::xmlutils::HeapString name;
    zuv::xmlutils::HeapString text;
    int line = 0;                   // in the document that it comes from
    zuv::xmlutils::HeapString file; // of that document; empty: as the parent, or none
    zuv::xmlutils::HeapVector<Attribute> attributes;
    ZUVXMLObject *parent = nullptr;
    ZUVXMLObject *previous = nullptr;
    ZUVXMLObject *next = nullptr;
    ZUVXMLObject *firstChild = nullptr;
    ZUVXMLObject *lastChild = nullptr;
    ByName children;
    std::shared_ptr<const zuv::ddsxml::XmlType> type; // that it defines, once that was asked for
    zuv::xmlutils::HeapPointer<zuv::ddsxml::QosValue>
        qos; // in a library, of an element with that kind of tag
    zuv::xmlutils::HeapPointer<ZUV_DL_Options> loggerOptions; // of a "distributed_logger"
    zuv::xmlutils::HeapString fullName;                       // once it was asked for

private:
    ByName::iterator entryOf(ZUVXMLObject *child);
    void link(ZUVXMLObject *child);
    void unlink(ZUVXMLObject *child);
};

namespace zuv::ddsxml
{

using ObjectOwner = xmlutils::HeapPointer<ZUVXMLObject>;

// The same element with all that is in it. An instruction "zuv-linenumber" in front of an element says on which line that
// one stands in its document, and those behind it until the next such instruction; one that holds no number ends that.
// An instruction "zuv-file" in an element says which document that is. `lineOffset` is how far elements without such
// an instruction are from the lines of the text. Throws std::bad_alloc.
ObjectOwner copyOf(const ZUVXMLUTILSObject *element, int lineOffset = 0);

// The file that the element comes from; null if it comes from none.
const char *fileOf(const ZUVXMLObject &element);

} // namespace zuv::ddsxml

#endif
