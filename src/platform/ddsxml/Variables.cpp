#include "platform/ddsxml/Variables.hpp"

#include "platform/xmlutils/VariableExpansor.h"

namespace zuv::ddsxml
{
namespace
{

constexpr const char *kVariablesTag = "configuration_variables";

// The elements that define variables, in the order in which they came.
struct Definitions {
    xmlutils::HeapVector<const ZUVXMLObject *> elements;
    xmlutils::HeapVector<ObjectOwner> ofDocument;
};

Definitions definitionsOf(const ZUVXMLUTILSObject *document, const ZUVXMLObject *tree)
{
    Definitions all;
    const ZUVXMLObject *known = tree == nullptr ? nullptr : tree->firstChild;
    for (; known != nullptr; known = known->next) {
        if (known->tag == kVariablesTag) {
            all.elements.push_back(known);
        }
    }
    const ZUVXMLUTILSObject *own = ZUVXMLUTILSObject_getFirstChildWithTag(document, kVariablesTag);
    for (; own != nullptr; own = ZUVXMLUTILSObject_getNextSiblingWithTag(own, kVariablesTag)) {
        all.ofDocument.push_back(copyOf(own));
        all.elements.push_back(all.ofDocument.back().get());
    }
    return all;
}

const char *textOf(const ZUVXMLObject &element, const char *tag)
{
    const ZUVXMLObject *const child = ZUVXMLObject_getFirstChildWithTag(&element, tag);
    return child == nullptr ? "" : child->text.c_str();
}

// The entries stand in the element, or in its child "value".
const char *valueIn(const ZUVXMLObject &element, std::string_view name)
{
    const ZUVXMLObject *const first = element.firstChild;
    const bool hasList = first != nullptr && first->tag == "value";
    const ZUVXMLObject *entry = hasList ? first->lastChild : element.lastChild;
    for (; entry != nullptr; entry = entry->previous) {
        if (textOf(*entry, "name") == name) {
            return textOf(*entry, "value");
        }
    }
    return nullptr;
}

const char *findValue(const void *source, const char *name)
{
    const auto &all = *static_cast<const Definitions *>(source);
    for (auto element = all.elements.rbegin(); element != all.elements.rend(); ++element) {
        if (const char *const value = valueIn(**element, name)) {
            return value;
        }
    }
    return nullptr;
}

} // namespace

bool expandVariables(ZUVXMLUTILSObject *document, const ZUVXMLObject *tree)
{
    const Definitions all = definitionsOf(document, tree);
    ZUVXMLUTILSVariableExpansor expansor;
    return ZUVXMLUTILSVariableExpansor_initialize(&expansor, nullptr, nullptr, &all, findValue) &&
           ZUVXMLUTILSVisitor_visit(&expansor.visitor, document);
}

} // namespace zuv::ddsxml
