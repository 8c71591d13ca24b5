#include "SchemaReader.h"

namespace zuv_test
{
namespace
{

std::string_view tagOf(const ZUVXMLUTILSObject *object)
{
    return ZUVXMLUTILSObject_getTagName(object);
}

std::string valueOf(const ZUVXMLUTILSObject *object, const char *attribute)
{
    const char *const value = ZUVXMLUTILSObject_getAttribute(object, attribute);
    return value != nullptr ? value : "";
}

template <typename Action>
void forEachBelow(const ZUVXMLUTILSObject *object, const Action &action)
{
    for (const auto *child = ZUVXMLUTILSObject_getFirstChild(object); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        action(child);
        forEachBelow(child, action);
    }
}

} // namespace

SchemaReader::SchemaReader(const std::string &file)
    : tree_(ZUVXMLUTILSParser_parseFile((ZUV_SCHEMAS "/" + file).c_str()))
{
}

const ZUVXMLUTILSObject *SchemaReader::definitionOf(const std::string &name) const
{
    return ZUVXMLUTILSObject_lookUpChild(tree_.get(), name.c_str());
}

void SchemaReader::addChildren(const ZUVXMLUTILSObject *object, Declarations &declarations) const
{
    for (const auto *child = ZUVXMLUTILSObject_getFirstChild(object); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        if (tagOf(child) == "element") {
            declarations[valueOf(child, "name")] = valueOf(child, "type");
        } else if (tagOf(child) == "group") {
            addChildren(definitionOf(valueOf(child, "ref")), declarations);
        } else {
            addChildren(child, declarations);
        }
    }
}

Declarations SchemaReader::childrenOf(const std::string &type) const
{
    Declarations declarations;
    if (const auto *const definition = definitionOf(type)) {
        addChildren(definition, declarations);
    }
    return declarations;
}

std::set<std::string> SchemaReader::namesOf(std::string_view tag) const
{
    std::set<std::string> names;
    forEachBelow(tree_.get(), [&](const ZUVXMLUTILSObject *object) {
        if (tagOf(object) == tag) {
            names.insert(valueOf(object, "name"));
        }
    });
    return names;
}

std::set<std::string> SchemaReader::elements() const
{
    return namesOf("element");
}

std::set<std::string> SchemaReader::attributes() const
{
    return namesOf("attribute");
}

std::set<std::string> SchemaReader::valuesOf(const std::string &type) const
{
    std::set<std::string> values;
    if (const auto *const definition = definitionOf(type)) {
        forEachBelow(definition, [&](const ZUVXMLUTILSObject *object) {
            if (tagOf(object) == "enumeration") {
                values.insert(valueOf(object, "value"));
            }
        });
    }
    return values;
}

} // namespace zuv_test
