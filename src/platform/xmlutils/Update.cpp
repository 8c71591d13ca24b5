#include "platform/xmlutils/Update.hpp"

#include <algorithm>
#include <functional>
#include <unordered_map>

#include <libxml/tree.h>

#include "platform/xmlutils/LibraryScope.hpp"

namespace zuv::xmlutils
{
namespace
{

std::string_view view(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

// What a document says, as against what the program has set.
bool isFromDocument(const xmlAttr *attribute)
{
    return attribute->ns == nullptr && !isProgramAttribute(attribute);
}

std::string_view keyByChild(const xmlNode *element)
{
    const xmlNode *const name = firstOfTag(element, "name");
    return name != nullptr ? contentOf(name) : "";
}

std::string_view keyOfTarget(const xmlNode *element)
{
    const std::string_view name = nameOf(element);
    return !name.empty() ? name : keyByChild(element);
}

// A name that the program has given to an element of the update says nothing about its match.
std::string_view keyOfUpdate(const xmlNode *element)
{
    const xmlAttr *const name = findAttribute(element, "name");
    return name != nullptr && isFromDocument(name) ? valueOf(name) : keyByChild(element);
}

int countUpToTwo(const xmlNode *parent, std::string_view tag)
{
    const xmlNode *const first = firstOfTag(parent, tag);
    return first == nullptr ? 0 : nextWithTag(first) == nullptr ? 1 : 2;
}

void stripProgramAttributes(xmlNode *copy, const xmlNode *original)
{
    xmlNode *at = copy;
    for (const xmlNode *from = original; from != nullptr; from = nextInSubtree(from, original)) {
        for (const xmlAttr *attribute = from->properties; attribute != nullptr;
             attribute = attribute->next) {
            xmlAttr *const copied = isProgramAttribute(attribute)
                                        ? findAttribute(at, view(attribute->name).data())
                                        : nullptr;
            if (copied != nullptr) {
                removeAttribute(at, copied);
            }
        }
        at = nextInSubtree(at, copy);
    }
}

} // namespace

Update::Update(xmlNode *target, const xmlNode *update)
{
    LibraryScope scope;
    try {
        planText(target, update);
        planChildren(target, update);
        if (!scope.isClean()) {
            throw std::bad_alloc();
        }
    } catch (...) {
        for (const NewAttribute &added : attributes_) {
            xmlFreeProp(added.attribute);
        }
        throw;
    }
}

Update::~Update()
{
    for (const NewAttribute &added : attributes_) {
        xmlFreeProp(added.attribute);
    }
}

void Update::commit()
{
    for (const NewAttribute &added : attributes_) {
        if (xmlAttr *const former = exchangeAttribute(added.element, added.attribute)) {
            xmlFreeProp(former);
        }
    }
    attributes_.clear();
    for (NewText &replaced : texts_) {
        NodePointer(exchangeText(replaced.element, replaced.text.release()));
    }
    for (NewChild &added : children_) {
        attach(added.parent, added.child.release(), added.before);
    }
    for (xmlNode *const child : removed_) {
        destroy(child);
    }
}

void Update::planElement(xmlNode *target, const xmlNode *update)
{
    planAttributes(target, update);
    planText(target, update);
    planChildren(target, update);
}

void Update::planAttributes(xmlNode *target, const xmlNode *update)
{
    for (const xmlAttr *from = update->properties; from != nullptr; from = from->next) {
        const char *const name = view(from->name).data();
        const xmlAttr *const present = findAttribute(target, name);
        if (!isFromDocument(from) || std::string_view(name) == "name" ||
            (present != nullptr && std::string_view(valueOf(present)) == valueOf(from))) {
            continue;
        }
        attributes_.reserve(attributes_.size() + 1);
        xmlAttr *const attribute = newAttribute(target->doc, name, valueOf(from));
        if (attribute == nullptr) {
            throw std::bad_alloc();
        }
        attributes_.push_back({target, attribute});
    }
}

void Update::planText(xmlNode *target, const xmlNode *update)
{
    const bool isUpdateText = firstChildOf(update) == nullptr;
    const bool isTargetText = firstChildOf(target) == nullptr;
    const std::string_view text = isUpdateText ? contentOf(update) : "";
    // An element without anything in it says nothing about one that holds elements.
    if (!isTargetText || text == contentOf(target)) {
        return;
    }
    NodePointer node;
    if (!text.empty()) {
        node.reset(xmlNewDocText(target->doc, reinterpret_cast<const xmlChar *>(text.data())));
        if (node == nullptr) {
            throw std::bad_alloc();
        }
    }
    texts_.push_back({target, std::move(node)});
}

// The children of a target by their tag and key.
class Update::Keys
{
public:
    explicit Keys(const xmlNode *target) : target_(target) {}

    // Throws std::bad_alloc.
    xmlNode *find(std::string_view tag, std::string_view key)
    {
        auto found = tags_.find(tag);
        if (found == tags_.end()) {
            found = tags_.emplace(tag, ByKey()).first;
            for (xmlNode *at = firstOfTag(target_, tag); at != nullptr; at = nextWithTag(at)) {
                found->second.emplace(keyOfTarget(at), at);
            }
        }
        const auto child = found->second.find(key);
        return child != found->second.end() ? child->second : nullptr;
    }

private:
    template <typename Value>
    using Map =
        std::unordered_map<std::string_view, Value, std::hash<std::string_view>, std::equal_to<>,
                           HeapAllocator<std::pair<const std::string_view, Value>>>;
    using ByKey = Map<xmlNode *>;

    const xmlNode *target_;
    Map<ByKey> tags_;
};

xmlNode *Update::match(Keys &keys, xmlNode *target, const xmlNode *child)
{
    const std::string_view tag = tagOf(child);
    xmlNode *const first = firstOfTag(target, tag);
    if (first == nullptr) {
        return nullptr;
    }
    const bool isOnlyInUpdate = countUpToTwo(child->parent, tag) == 1;
    const bool isOnly = isOnlyInUpdate && countUpToTwo(target, tag) == 1;
    const std::string_view key = keyOfUpdate(child);
    if (key.empty()) {
        return isOnly || (isOnlyInUpdate && !keyOfTarget(first).empty()) ? first : nullptr;
    }
    if (xmlNode *const found = keys.find(tag, key)) {
        return found;
    }
    const NodeRecord *const record = recordOf(first);
    const bool isEntity = record != nullptr && record->userData != nullptr;
    return isOnly && isEntity ? first : nullptr;
}

// The children of the tag that have no key give way. Returns the first of them, or null.
xmlNode *Update::planList(xmlNode *target, std::string_view tag)
{
    xmlNode *first = nullptr;
    for (xmlNode *at = firstOfTag(target, tag); at != nullptr; at = nextWithTag(at)) {
        if (keyOfTarget(at).empty()) {
            first = first != nullptr ? first : at;
            removed_.push_back(at);
        }
    }
    return first;
}

void Update::planNew(xmlNode *parent, const xmlNode *child, xmlNode *before)
{
    NodePointer copy(copySubtree(child, parent->doc));
    if (copy == nullptr) {
        throw std::bad_alloc();
    }
    stripProgramAttributes(copy.get(), child);
    children_.push_back({parent, std::move(copy), before});
}

void Update::planChildren(xmlNode *target, const xmlNode *update)
{
    struct Child {
        const xmlNode *update;
        xmlNode *target;
    };
    Keys keys(target);
    HeapVector<Child> children;
    for (const xmlNode *child = firstChildOf(update); child != nullptr; child = nextOf(child)) {
        children.push_back({child, match(keys, target, child)});
    }
    // What is new stands before the match that follows, or behind the last one.
    HeapVector<xmlNode *> places(children.size());
    xmlNode *place = nullptr;
    for (const Child &child : children) {
        place = child.target != nullptr ? nextOf(child.target) : place;
    }
    for (std::size_t index = children.size(); index-- != 0;) {
        place = children[index].target != nullptr ? children[index].target : place;
        places[index] = place;
    }
    HeapVector<List> lists;
    for (std::size_t index = 0; index != children.size(); ++index) {
        const Child &child = children[index];
        if (child.target != nullptr) {
            planElement(child.target, child.update);
        } else if (keyOfUpdate(child.update).empty()) {
            xmlNode *const first = planListOnce(lists, target, tagOf(child.update));
            planNew(target, child.update, first != nullptr ? first : places[index]);
        } else {
            planNew(target, child.update, places[index]);
        }
    }
}

xmlNode *Update::planListOnce(HeapVector<List> &lists, xmlNode *target, std::string_view tag)
{
    const auto isIt = [tag](const List &list) { return list.tag == tag; };
    const auto found = std::find_if(lists.begin(), lists.end(), isIt);
    if (found != lists.end()) {
        return found->first;
    }
    lists.push_back({tag, planList(target, tag)});
    return lists.back().first;
}

} // namespace zuv::xmlutils
