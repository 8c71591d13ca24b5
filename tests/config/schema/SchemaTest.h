// What the tests of the schemas share: a validator of the embedded texts with all validation roots, and tables of
// documents.
#ifndef ZUV_TESTS_CONFIG_SCHEMA_SCHEMA_TEST_H
#define ZUV_TESTS_CONFIG_SCHEMA_SCHEMA_TEST_H

#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "platform/xmlutils/Validator.h"
#include "platform/xmlutils/XmlTest.h"

namespace zuv_test
{

struct ValidatorDeleter {
    void operator()(ZUVXMLUTILSValidator *validator) const
    {
        ZUVXMLUTILSValidator_delete(validator);
    }
};
using Validator = std::unique_ptr<ZUVXMLUTILSValidator, ValidatorDeleter>;

// The elements that are valid on their own.
extern const ZUVXMLUTILSPropertyList kValidationRoots;

// A document, and one that differs in what the report tells.
struct Documents {
    const char *valid;
    const char *invalid;
    const char *
        report; // behind "!accept text, ": line, element, reason up to the list of what was expected
};

class SchemaTest : public XmlTest
{
protected:
    void SetUp() override;
    void TearDown() override;

    bool isValid(const std::string &document);
    // Each pair holds what it promises, and nothing else is logged.
    void check(std::span<const Documents> table);

    Validator validator;
};

} // namespace zuv_test

#endif
