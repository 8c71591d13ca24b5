#include "platform/xmlutils/Validator.h"

#include <libxml/tree.h>
#include <libxml/xmlschemas.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/Globals.hpp"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Reader.hpp"

using namespace zuv::xmlutils;

namespace
{

constexpr const char *kSchemaSource = "schema";

struct SchemaDeleter {
    void operator()(xmlSchema *schema) const { xmlSchemaFree(schema); }
    void operator()(xmlSchemaParserCtxt *parser) const { xmlSchemaFreeParserCtxt(parser); }
    void operator()(xmlSchemaValidCtxt *validation) const { xmlSchemaFreeValidCtxt(validation); }
};
using SchemaPointer = std::unique_ptr<xmlSchema, SchemaDeleter>;
using SchemaParserPointer = std::unique_ptr<xmlSchemaParserCtxt, SchemaDeleter>;
using ValidationPointer = std::unique_ptr<xmlSchemaValidCtxt, SchemaDeleter>;

const xmlChar *toXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

SchemaPointer compile(xmlDoc *document, Problem &problem)
{
    const ReserveScope reserve;
    LibraryScope scope;
    SchemaPointer schema;
    const SchemaParserPointer parser(xmlSchemaNewDocParserCtxt(document));
    if (parser != nullptr && !scope.isOutOfMemory()) {
        schema.reset(xmlSchemaParse(parser.get()));
    }
    if (scope.isClean() && schema == nullptr) {
        scope.problem.set(0, "", "the schema cannot be read");
    }
    if (!scope.isClean()) {
        schema.reset();
        problem = scope.problem;
    }
    return schema;
}

// Declarations of global elements at the end of a schema document, as long as they are wanted.
class AddedDeclarations
{
public:
    explicit AddedDeclarations(xmlNode *schema) : schema_(schema) {}
    ~AddedDeclarations()
    {
        for (int count = 0; count < count_; ++count) {
            xmlNode *const last = schema_->last;
            xmlUnlinkNode(last);
            xmlFreeNode(last);
        }
    }
    AddedDeclarations(const AddedDeclarations &) = delete;
    AddedDeclarations &operator=(const AddedDeclarations &) = delete;

    bool add(const ZUVXMLUTILSProperty &root)
    {
        const LibraryScope scope;
        xmlNode *const element = xmlNewChild(schema_, schema_->ns, toXml("element"), nullptr);
        if (element == nullptr) {
            return false;
        }
        ++count_;
        xmlNewProp(element, toXml("name"), toXml(root.name));
        xmlNewProp(element, toXml("type"), toXml(root.value));
        return !scope.isOutOfMemory();
    }
    void keep() { count_ = 0; }

private:
    xmlNode *schema_;
    int count_ = 0;
};

} // namespace

struct ZUVXMLUTILSValidator {
    DocumentPointer document; // before the schema, which leads into it
    SchemaPointer schema;
};

namespace
{

ZUVXMLUTILSValidator *newValidator(const char *const *pieces, int count, Problem &problem)
{
    const auto onFailure = [&] { problem.set(0, "", Problem::kOutOfMemory); };
    return withMemory<ZUVXMLUTILSValidator *>(nullptr, onFailure, [&] {
        HeapPointer<ZUVXMLUTILSValidator> self(heapNew<ZUVXMLUTILSValidator>());
        self->document =
            readDocument(joined(pieces, count), nullptr, DocumentKind::kSheet, problem);
        if (self->document != nullptr) {
            self->schema = compile(self->document.get(), problem);
        }
        return self->schema != nullptr ? self.release() : nullptr;
    });
}

bool addRoots(ZUVXMLUTILSValidator &self, const ZUVXMLUTILSPropertyList &roots, Problem &problem)
{
    AddedDeclarations declarations(xmlDocGetRootElement(self.document.get()));
    for (int index = 0; index < roots.count; ++index) {
        if (!declarations.add(roots.properties[index])) {
            problem.set(0, roots.properties[index].name, Problem::kOutOfMemory);
            return false;
        }
    }
    SchemaPointer schema = compile(self.document.get(), problem);
    if (schema == nullptr) {
        return false;
    }
    declarations.keep();
    self.schema = std::move(schema);
    return true;
}

// The element that is not valid, with the problem; null if all is.
const xmlNode *findInvalid(const ZUVXMLUTILSValidator &self, xmlNode *element, Problem &problem)
{
    const BlockCacheScope cache;
    const ReserveScope reserve;
    LibraryScope scope;
    const ValidationPointer validation(xmlSchemaNewValidCtxt(self.schema.get()));
    int status = -1;
    if (validation != nullptr && !scope.isOutOfMemory()) {
        xmlSchemaSetValidStructuredErrors(validation.get(), xmlStructuredError, nullptr);
        status = xmlSchemaValidateOneElement(validation.get(), element);
    }
    if (scope.isClean() && status != 0) {
        scope.problem.set(element, "the element is not valid");
    }
    problem = scope.problem;
    return !problem.isSet() ? nullptr : scope.element != nullptr ? scope.element : element;
}

} // namespace

extern "C" {

ZUVXMLUTILSValidator *ZUVXMLUTILSValidator_new(const char *const *pieces, int count)
{
    if (ZUV_XML_IS_NULL(VALIDATOR, pieces) || ZUV_XML_IS_NOT_READY(VALIDATOR) ||
        ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_VALIDATOR, count < 1, "count < 1")) {
        return nullptr;
    }
    Problem problem;
    ZUVXMLUTILSValidator *self = nullptr;
    if (ZUV_OSAPI_FAULT("xmlutils.validator")) {
        problem.set(0, "", Problem::kOutOfMemory);
    } else {
        self = newValidator(pieces, count, problem);
    }
    if (self == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_VALIDATOR, kSchemaSource, problem);
    }
    return self;
}

void ZUVXMLUTILSValidator_delete(ZUVXMLUTILSValidator *self)
{
    heapDelete(self);
}

int ZUVXMLUTILSValidator_addValidationRoots(ZUVXMLUTILSValidator *self,
                                            const ZUVXMLUTILSPropertyList *roots)
{
    if (ZUV_XML_IS_NULL(VALIDATOR, self) || ZUV_XML_IS_NULL(VALIDATOR, roots)) {
        return 0;
    }
    Problem problem;
    if (ZUV_OSAPI_FAULT("xmlutils.validation_roots")) {
        problem.set(0, "", Problem::kOutOfMemory);
    } else if (addRoots(*self, *roots, problem)) {
        return 1;
    }
    ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_VALIDATOR, kSchemaSource, problem);
    return 0;
}

int ZUVXMLUTILSValidator_validate(ZUVXMLUTILSValidator *self, ZUVXMLUTILSObject *object)
{
    if (ZUV_XML_IS_NULL(VALIDATOR, self) || ZUV_XML_IS_NULL(VALIDATOR, object)) {
        return 0;
    }
    xmlNode *const element = toNode(object);
    const xmlNode *invalid = element;
    Problem problem;
    if (ZUV_OSAPI_FAULT("xmlutils.validate")) {
        problem.set(element, Problem::kOutOfMemory);
    } else {
        invalid = findInvalid(*self, element, problem);
    }
    if (invalid == nullptr) {
        return 1;
    }
    ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_VALIDATOR, sourceOf(invalid), problem);
    return 0;
}
}
