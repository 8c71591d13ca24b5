#include "platform/ddsxml/XmlObject.hpp"

#include <algorithm>
#include <charconv>
#include <cstring>

#include "platform/ddsxml/QosInheritance.hpp"
#include "platform/ddsxml/XmlLog.hpp"

ZUVXMLObject::~ZUVXMLObject()
{
    while (ZUVXMLObject *const child = firstChild) {
        firstChild = child->next;
        zuv::xmlutils::heapDelete(child);
    }
}

void ZUVXMLObject::append(ZUVXMLObject *child)
{
    children.emplace(child->name, child);
    link(child);
}

bool ZUVXMLObject::remove(ZUVXMLObject *child)
{
    const auto entry = entryOf(child);
    if (entry == children.end()) {
        return false;
    }
    children.erase(entry);
    unlink(child);
    return true;
}

void ZUVXMLObject::give(ZUVXMLObject *child, ZUVXMLObject &newParent)
{
    newParent.children.insert(children.extract(entryOf(child)));
    unlink(child);
    newParent.link(child);
}

ZUVXMLObject::ByName::iterator ZUVXMLObject::entryOf(ZUVXMLObject *child)
{
    const auto [begin, end] = children.equal_range(child->name);
    const auto found =
        std::find_if(begin, end, [child](const auto &entry) { return entry.second == child; });
    return found != end ? found : children.end();
}

void ZUVXMLObject::link(ZUVXMLObject *child)
{
    child->parent = this;
    child->next = nullptr;
    child->previous = lastChild;
    (lastChild != nullptr ? lastChild->next : firstChild) = child;
    lastChild = child;
}

void ZUVXMLObject::unlink(ZUVXMLObject *child)
{
    (child->previous != nullptr ? child->previous->next : firstChild) = child->next;
    (child->next != nullptr ? child->next->previous : lastChild) = child->previous;
    child->parent = child->previous = child->next = nullptr;
}

ZUVXMLObject *ZUVXMLObject::findByName(std::string_view childName) const
{
    const auto [begin, end] = children.equal_range(childName);
    if (begin == end || std::next(begin) == end) {
        return begin != end ? begin->second : nullptr;
    }
    // Of several the first counts; the index does not know their order.
    ZUVXMLObject *child = firstChild;
    while (child->name != childName) {
        child = child->next;
    }
    return child;
}

namespace zuv::ddsxml
{
namespace
{

// `outer` is the offset where no instruction holds, `current` that of the element before.
int lineOffsetOf(const ZUVXMLUTILSObject *element, int outer, int current)
{
    const char *const text = ZUVXMLUTILSObject_getPrecedingInstruction(element, "zuv-linenumber");
    if (text == nullptr) {
        return current;
    }
    constexpr int kLineMax = 1'000'000'000; // which leaves room for the lines of a document
    int line = 0;
    std::from_chars(text, text + std::strlen(text), line);
    return line > 0 && line <= kLineMax ? line - ZUVXMLUTILSObject_getLine(element) : outer;
}

} // namespace

const char *fileOf(const ZUVXMLObject &element)
{
    const ZUVXMLObject *one = &element;
    while (one != nullptr && one->file.empty()) {
        one = one->parent;
    }
    return one != nullptr ? one->file.c_str() : nullptr;
}

ObjectOwner copyOf(const ZUVXMLUTILSObject *element, int lineOffset)
{
    ObjectOwner copy(xmlutils::heapNew<ZUVXMLObject>());
    copy->tag = ZUVXMLUTILSObject_getTagName(element);
    copy->name = ZUVXMLUTILSObject_getName(element);
    copy->line = ZUVXMLUTILSObject_getLine(element) + lineOffset;
    if (const char *const file = ZUVXMLUTILSObject_getProcessingInstruction(element, "zuv-file")) {
        copy->file = file;
    }
    for (const ZUVXMLUTILSAttribute *at = ZUVXMLUTILSObject_getFirstAttribute(element);
         at != nullptr; at = ZUVXMLUTILSAttribute_getNext(at)) {
        copy->attributes.push_back(
            {ZUVXMLUTILSAttribute_getName(at), ZUVXMLUTILSAttribute_getValue(at)});
    }
    const ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChild(element);
    if (child == nullptr) {
        copy->text = ZUVXMLUTILSObject_getText(element);
    }
    for (int offset = lineOffset; child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        offset = lineOffsetOf(child, lineOffset, offset);
        ObjectOwner inner = copyOf(child, offset);
        copy->append(inner.get());
        inner.release();
    }
    return copy;
}

} // namespace zuv::ddsxml

extern "C" {

const char *ZUVXMLObject_getTagName(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->tag.c_str();
}

const char *ZUVXMLObject_getName(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->name.c_str();
}

const char *ZUVXMLObject_getText(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->text.c_str();
}

const char *ZUVXMLObject_getAttribute(const ZUVXMLObject *self, const char *name)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(name)) {
        return nullptr;
    }
    const auto found =
        std::find_if(self->attributes.begin(), self->attributes.end(),
                     [name](const ZUVXMLObject::Attribute &at) { return at.name == name; });
    return found != self->attributes.end() ? found->value.c_str() : nullptr;
}

ZUVXMLObject *ZUVXMLObject_getFirstChild(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->firstChild;
}

ZUVXMLObject *ZUVXMLObject_getNextSibling(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->next;
}

ZUVXMLObject *ZUVXMLObject_getFirstChildWithTag(const ZUVXMLObject *self, const char *tag)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(tag)) {
        return nullptr;
    }
    ZUVXMLObject *child = self->firstChild;
    while (child != nullptr && child->tag != tag) {
        child = child->next;
    }
    return child;
}

ZUVXMLObject *DDS_XMLObject_get_parent(const ZUVXMLObject *self)
{
    return ZUV_DDSXML_IS_NULL(self) ? nullptr : self->parent;
}

ZUVXMLObject *DDS_XMLObject_lookup_child(const ZUVXMLObject *self, const char *name)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(name)) {
        return nullptr;
    }
    return self->findByName(name);
}

ZUVXMLObject *DDS_XMLObject_lookup(const ZUVXMLObject *self, const char *fullName)
{
    constexpr std::string_view kSeparator = "::";
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(fullName)) {
        return nullptr;
    }
    std::string_view path = fullName;
    if (path.starts_with(kSeparator)) {
        path.remove_prefix(kSeparator.size());
    }
    while (self != nullptr) {
        const std::size_t end = path.find(kSeparator);
        ZUVXMLObject *const child = self->findByName(path.substr(0, end));
        if (end == path.npos) {
            return child;
        }
        path.remove_prefix(end + kSeparator.size());
        self = child;
    }
    return nullptr;
}

const char *DDS_XMLObject_get_fully_qualified_name(ZUVXMLObject *self)
{
    if (ZUV_DDSXML_IS_NULL(self)) {
        return nullptr;
    }
    return zuv::xmlutils::withMemory<const char *>(
        nullptr, [] { ZUV_DDSXML_FAILURE(&ZUV_LOG_GET_FAILURE_s, "full name: out of memory"); },
        [self] {
            if (self->fullName.empty()) {
                self->fullName = zuv::ddsxml::fullNameOf(*self);
            }
            return self->fullName.c_str();
        });
}

int ZUVXMLObject_removeChild(ZUVXMLObject *self, ZUVXMLObject *child)
{
    return !ZUV_DDSXML_IS_NULL(self) && !ZUV_DDSXML_IS_NULL(child) && self->remove(child);
}
}
