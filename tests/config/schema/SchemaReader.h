// Reads what a schema document declares.
#ifndef ZUV_TESTS_CONFIG_SCHEMA_SCHEMA_READER_H
#define ZUV_TESTS_CONFIG_SCHEMA_SCHEMA_READER_H

#include <map>
#include <set>
#include <string>

#include "platform/xmlutils/XmlTest.h"

namespace zuv_test
{

// Names of elements with their types; "" for a type without a name.
using Declarations = std::map<std::string, std::string>;

class SchemaReader
{
public:
    // A file of the folder of schemas.
    explicit SchemaReader(const std::string &file);

    // What the type, or group, of this name lets stand directly within an element.
    Declarations childrenOf(const std::string &type) const;
    // Names of all elements and attributes that the document declares anywhere.
    std::set<std::string> elements() const;
    std::set<std::string> attributes() const;
    // The values of an enumeration.
    std::set<std::string> valuesOf(const std::string &type) const;

private:
    const ZUVXMLUTILSObject *definitionOf(const std::string &name) const;
    void addChildren(const ZUVXMLUTILSObject *object, Declarations &declarations) const;
    std::set<std::string> namesOf(std::string_view tag) const;

    Tree tree_;
};

} // namespace zuv_test

#endif
