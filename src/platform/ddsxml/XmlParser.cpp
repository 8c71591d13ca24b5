#include "platform/ddsxml/XmlParser.h"

#include <algorithm>
#include <cstring>

#include "platform/ddsxml/BuiltinProfiles.hpp"
#include "platform/ddsxml/ExtensionClass.hpp"
#include "platform/ddsxml/QosInheritance.hpp"
#include "platform/ddsxml/Variables.hpp"
#include "platform/ddsxml/XmlLog.hpp"
#include "platform/ddsxml/XmlObject.hpp"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/Parser.h"

using namespace zuv::ddsxml;
using zuv::xmlutils::HeapString;
using zuv::xmlutils::HeapVector;

struct DDS_XMLParser {
    HeapVector<ZUVXMLExtensionClass *> extensions;
};

namespace
{

constexpr std::string_view kRootTag = "dds";
constexpr const char *kVariableMark = "$("; // what a reference begins with

struct TreeDeleter {
    void operator()(ZUVXMLUTILSObject *root) const { ZUVXMLUTILSParser_freeDom(root); }
};
using TreePointer = std::unique_ptr<ZUVXMLUTILSObject, TreeDeleter>;

bool isLibrary(const ZUVXMLObject &object)
{
    return object.tag.ends_with("_library");
}

// The library of the tree that takes up what `addition` holds, or null.
ZUVXMLObject *sameLibrary(const ZUVXMLObject &root, const ZUVXMLObject &addition)
{
    ZUVXMLObject *const found = isLibrary(addition) ? root.findByName(addition.name) : nullptr;
    return found != nullptr && found->tag == addition.tag ? found : nullptr;
}

template <typename Visit>
void forEachChild(ZUVXMLObject &object, Visit &&visit)
{
    for (ZUVXMLObject *child = object.firstChild; child != nullptr;) {
        ZUVXMLObject *const next = child->next;
        visit(*child);
        child = next;
    }
}

void makeRoom(ZUVXMLObject &object, std::size_t count)
{
    object.children.reserve(object.children.size() + count);
}

// All or nothing: what needs memory comes first. Throws std::bad_alloc.
void join(ZUVXMLObject &root, ZUVXMLObject &document)
{
    std::size_t count = document.children.size();
    forEachChild(document, [&](ZUVXMLObject &child) { count += child.children.size(); });
    makeRoom(root, count);
    forEachChild(document, [&](ZUVXMLObject &child) {
        makeRoom(child, isLibrary(child) ? count : 0);
        if (ZUVXMLObject *const library = sameLibrary(root, child)) {
            makeRoom(*library, count);
        }
    });
    forEachChild(document, [&](ZUVXMLObject &child) {
        if (ZUVXMLObject *const library = sameLibrary(root, child)) {
            forEachChild(child, [&](ZUVXMLObject &inner) { child.give(&inner, *library); });
        } else {
            document.give(&child, root);
        }
    });
}

// What the library holds beyond the middleware's own elements. Throws BadQos after telling the class.
void readExtensions(const DDS_XMLParser &self, ZUVXMLObject &library)
{
    forEachChild(library, [&](ZUVXMLObject &element) {
        const ZUVXMLExtensionClass *const extension =
            DDS_XMLParser_find_extension_class(&self, element.tag.c_str());
        if (extension == nullptr) {
            return;
        }
        try {
            extension->read(element);
        } catch (const BadQos &bad) {
            extension->onError(bad.reason.c_str(), "parse", bad.element->line);
            throw BadQos{HeapString(element.tag).append(" ").append(bad.reason), bad.element};
        }
    });
}

void report(const BadQos &bad)
{
    const char *const file = fileOf(*bad.element);
    ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_PARSER,
                     &ZUV_LOG_FAILURE_TEMPLATE, "read %s, line %d: %s",
                     file != nullptr ? file : "text", bad.element->line, bad.reason.c_str());
}

ZUVXMLObject *read(const DDS_XMLParser &self, ZUVXMLObject *existingRoot, const char *text,
                   const char *file, int line)
{
    const TreePointer tree(ZUVXMLUTILSParser_parseString(text));
    if (tree == nullptr) {
        return nullptr;
    }
    if (ZUVXMLUTILSObject_getTagName(tree.get()) != kRootTag) {
        ZUV_DDSXML_FAILURE(&ZUVXML_LOG_PARSER_UNEXPECTED_TAG_FAILURE_ds,
                           ZUVXMLUTILSObject_getLine(tree.get()),
                           ZUVXMLUTILSObject_getTagName(tree.get()));
        return nullptr;
    }
    if (std::strstr(text, kVariableMark) != nullptr && !expandVariables(tree.get(), existingRoot)) {
        return nullptr;
    }
    ObjectOwner document = copyOf(tree.get(), line - 1);
    document->file = file != nullptr ? file : "";
    try {
        forEachChild(*document, [&](ZUVXMLObject &child) {
            if (isLibrary(child)) {
                readExtensions(self, child);
            }
        });
        resolveQos(*document, existingRoot);
    } catch (const BadQos &bad) {
        report(bad);
        return nullptr;
    }
    if (existingRoot == nullptr) {
        return document.release();
    }
    join(*existingRoot, *document);
    return existingRoot;
}

template <typename Result, typename Body>
Result reported(Result failure, const char *what, Body &&body)
{
    return zuv::xmlutils::withMemory<Result>(
        failure,
        [what] {
            ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_PARSER,
                             &ZUV_LOG_FAILURE_TEMPLATE, "%s: out of memory", what);
        },
        [&] {
            if (ZUV_OSAPI_FAULT("ddsxml")) {
                throw std::bad_alloc();
            }
            return body();
        });
}

} // namespace

extern "C" {

DDS_XMLParser *DDS_XMLParser_new(void)
{
    return reported<DDS_XMLParser *>(nullptr, "create parser of profiles",
                                     [] { return zuv::xmlutils::heapNew<DDS_XMLParser>(); });
}

void DDS_XMLParser_delete(DDS_XMLParser *self)
{
    zuv::xmlutils::heapDelete(self);
}

int DDS_XMLParser_register_extension_class(DDS_XMLParser *self, ZUVXMLExtensionClass *extension)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(extension)) {
        return 0;
    }
    const auto hasTag = [extension](const ZUVXMLExtensionClass *other) {
        return other->tag == extension->tag;
    };
    if (std::any_of(self->extensions.begin(), self->extensions.end(), hasTag)) {
        ZUV_DDSXML_FAILURE(&ZUV_LOG_ADD_FAILURE_s, "XML extension class: its tag has one already");
        return 0;
    }
    return reported(0, "register XML extension class", [&] {
        self->extensions.push_back(extension);
        return 1;
    });
}

void DDS_XMLParser_unregister_extension_class(DDS_XMLParser *self, ZUVXMLExtensionClass *extension)
{
    if (!ZUV_DDSXML_IS_NULL(self) && !ZUV_DDSXML_IS_NULL(extension)) {
        std::erase(self->extensions, extension);
    }
}

ZUVXMLExtensionClass *DDS_XMLParser_find_extension_class(const DDS_XMLParser *self,
                                                         const char *tagName)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(tagName)) {
        return nullptr;
    }
    const auto found =
        std::find_if(self->extensions.begin(), self->extensions.end(),
                     [tagName](const ZUVXMLExtensionClass *one) { return one->tag == tagName; });
    return found != self->extensions.end() ? *found : nullptr;
}

ZUVXMLObject *ZUVXMLParser_parseFromString(DDS_XMLParser *self, ZUVXMLObject *existingRoot,
                                           const char *text)
{
    return ZUVXMLParser_parseFromPlace(self, existingRoot, text, nullptr, 1);
}

ZUVXMLObject *ZUVXMLParser_parseFromPlace(DDS_XMLParser *self, ZUVXMLObject *existingRoot,
                                          const char *text, const char *file, int line)
{
    if (ZUV_DDSXML_IS_NULL(self) || ZUV_DDSXML_IS_NULL(text)) {
        return nullptr;
    }
    return reported<ZUVXMLObject *>(nullptr, "parse profiles",
                                    [&] { return read(*self, existingRoot, text, file, line); });
}

void DDS_XMLParser_free_dom(DDS_XMLParser *self, ZUVXMLObject *object)
{
    if (ZUV_DDSXML_IS_NULL(self) || object == nullptr) {
        return;
    }
    if (object->parent != nullptr) {
        object->parent->remove(object);
    }
    zuv::xmlutils::heapDelete(object);
}

int DDS_QosProvider_load_builtin_profilesI(DDS_XMLParser *parser, ZUVXMLObject **root)
{
    if (ZUV_DDSXML_IS_NULL(parser) || ZUV_DDSXML_IS_NULL(root)) {
        return 1;
    }
    ZUVXMLObject *const builtin = ZUVXMLParser_parseFromString(parser, nullptr, kBuiltinProfiles);
    if (builtin == nullptr) {
        return 1;
    }
    *root = builtin;
    return 0;
}
}
