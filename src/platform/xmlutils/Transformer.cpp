#include "platform/xmlutils/Transformer.h"

#include <libxml/tree.h>
#include <libxml/xpath.h>
#include <libxml/xpathInternals.h>
#include <libxslt/extensions.h>
#include <libxslt/security.h>
#include <libxslt/transform.h>
#include <libxslt/variables.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltInternals.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/Globals.hpp"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Reader.hpp"

using namespace zuv::xmlutils;

namespace
{

constexpr const char *kSheetSource = "stylesheet";

struct SheetDeleter {
    void operator()(xsltStylesheet *sheet) const { xsltFreeStylesheet(sheet); }
    void operator()(xsltTransformContext *context) const { xsltFreeTransformContext(context); }
    void operator()(xsltSecurityPrefs *preferences) const { xsltFreeSecurityPrefs(preferences); }
};
using SheetPointer = std::unique_ptr<xsltStylesheet, SheetDeleter>;
using ContextPointer = std::unique_ptr<xsltTransformContext, SheetDeleter>;
using PreferencesPointer = std::unique_ptr<xsltSecurityPrefs, SheetDeleter>;

const xmlChar *toXml(const char *text)
{
    return reinterpret_cast<const xmlChar *>(text);
}

// As the extension of the same name, with the lines that libxml2 has no room for.
void lineNumber(xmlXPathParserContext *parser, int argumentCount)
{
    if (argumentCount != 0) {
        xmlXPathSetArityError(parser);
        return;
    }
    const xmlNode *node = parser->context->node;
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->type == XML_DOCUMENT_NODE ? xmlDocGetRootElement(node->doc) : node->parent;
    }
    valuePush(parser, xmlXPathNewFloat(node != nullptr ? static_cast<double>(lineOf(node)) : -1));
}

PreferencesPointer newPreferences()
{
    PreferencesPointer preferences(xsltNewSecurityPrefs());
    if (preferences != nullptr) {
        for (const xsltSecurityOption option :
             {XSLT_SECPREF_READ_FILE, XSLT_SECPREF_WRITE_FILE, XSLT_SECPREF_CREATE_DIRECTORY,
              XSLT_SECPREF_READ_NETWORK, XSLT_SECPREF_WRITE_NETWORK}) {
            xsltSetSecurityPrefs(preferences.get(), option, &xsltSecurityForbid);
        }
    }
    return preferences;
}

// Name and value in turn, and a null behind the last. Throws std::bad_alloc.
HeapVector<const char *> pairsOf(const ZUVXMLUTILSTransformationParameter *parameters, int count)
{
    HeapVector<const char *> pairs;
    for (int index = 0; index < count; ++index) {
        pairs.push_back(parameters[index].name);
        pairs.push_back(static_cast<const char *>(parameters[index].value));
    }
    pairs.push_back(nullptr);
    return pairs;
}

// A document whose root is a copy of the element; null when there is no memory.
DocumentPointer documentOfCopy(const xmlNode *element)
{
    const LibraryScope scope;
    DocumentPointer document(xmlNewDoc(toXml("1.0")));
    if (document == nullptr || scope.isOutOfMemory()) {
        return nullptr;
    }
    NodePointer copy(copySubtree(element, document.get()));
    if (copy == nullptr) {
        return nullptr;
    }
    xmlDocSetRootElement(document.get(), copy.release());
    return document;
}

} // namespace

struct ZUVXMLUTILSTransformer {
    SheetPointer sheet; // owns its document
};

namespace
{

ZUVXMLUTILSTransformer *newTransformer(DocumentPointer document, Problem &problem)
{
    if (document == nullptr) {
        return nullptr;
    }
    const ReserveScope reserve;
    LibraryScope scope;
    const auto onFailure = [&] { scope.problem.set(0, "", Problem::kOutOfMemory); };
    auto *const self = withMemory<ZUVXMLUTILSTransformer *>(nullptr, onFailure, [&] {
        HeapPointer<ZUVXMLUTILSTransformer> made(heapNew<ZUVXMLUTILSTransformer>());
        made->sheet.reset(xsltParseStylesheetDoc(document.get()));
        if (made->sheet != nullptr) {
            document.release();
        }
        if (scope.isClean() && (made->sheet == nullptr || made->sheet->errors != 0)) {
            scope.problem.set(0, "", "the stylesheet cannot be read");
        }
        return scope.isClean() ? made.release() : nullptr;
    });
    problem = scope.problem;
    return self;
}

DocumentPointer apply(const ZUVXMLUTILSTransformer &self, xmlDoc *source, const char **pairs,
                      LibraryScope &scope)
{
    const ContextPointer context(xsltNewTransformContext(self.sheet.get(), source));
    const PreferencesPointer preferences = newPreferences();
    if (context == nullptr || preferences == nullptr || scope.isOutOfMemory()) {
        return nullptr;
    }
    xsltSetCtxtSecurityPrefs(preferences.get(), context.get());
    xsltRegisterExtFunction(context.get(), toXml("line-number"), toXml("http://icl.com/saxon"),
                            &lineNumber);
    xsltQuoteUserParams(context.get(), pairs);
    DocumentPointer result(xsltApplyStylesheetUser(self.sheet.get(), source, nullptr, nullptr,
                                                   nullptr, context.get()));
    if (scope.isClean() && (result == nullptr || context->state != XSLT_STATE_OK)) {
        scope.problem.set(0, "", "the transformation failed");
    }
    if (scope.isClean() && xmlDocGetRootElement(result.get()) == nullptr) {
        scope.problem.set(0, "", "the result of the transformation holds no element");
    }
    if (scope.isClean() && !adoptDocument(result.get())) {
        scope.problem.set(0, "", Problem::kOutOfMemory);
    }
    if (scope.isClean()) {
        // The stylesheet may put anything together.
        documentOf(xmlDocGetRootElement(result.get()))->mayHoldVariables = true;
    }
    return scope.isClean() ? std::move(result) : nullptr;
}

ZUVXMLUTILSObject *transform(const ZUVXMLUTILSTransformer &self, xmlNode *element,
                             const ZUVXMLUTILSTransformationParameter *parameters, int count,
                             Problem &problem)
{
    const ReserveScope reserve;
    LibraryScope scope;
    const auto onFailure = [&] { scope.problem.set(0, "", Problem::kOutOfMemory); };
    DocumentPointer result = withMemory(DocumentPointer(), onFailure, [&] {
        HeapVector<const char *> pairs = pairsOf(parameters, count);
        // The whole document of a root serves as it is, without a copy.
        const bool isRoot = element == xmlDocGetRootElement(element->doc);
        const DocumentPointer copy = isRoot ? nullptr : documentOfCopy(element);
        xmlDoc *const source = isRoot ? element->doc : copy.get();
        return source != nullptr ? apply(self, source, pairs.data(), scope) : nullptr;
    });
    if (!scope.isClean()) {
        problem = scope.problem;
        return nullptr;
    }
    return toObject(xmlDocGetRootElement(result.release()));
}

bool areTexts(const ZUVXMLUTILSTransformationParameter *parameters, int count)
{
    for (int index = 0; index < count; ++index) {
        const ZUVXMLUTILSTransformationParameter &parameter = parameters[index];
        if (parameter.name == nullptr || parameter.value == nullptr ||
            parameter.valueKind != ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING) {
            return false;
        }
    }
    return true;
}

} // namespace

extern "C" {

ZUVXMLUTILSTransformer *ZUVXMLUTILSTransformer_newFromStringArray(const char *const *pieces,
                                                                  int count)
{
    if (ZUV_XML_IS_NULL(TRANSFORMER, pieces) || ZUV_XML_IS_NOT_READY(TRANSFORMER) ||
        ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_TRANSFORMER, count < 1, "count < 1")) {
        return nullptr;
    }
    Problem problem;
    const auto onFailure = [&] { problem.set(0, "", Problem::kOutOfMemory); };
    auto *const self = withMemory<ZUVXMLUTILSTransformer *>(nullptr, onFailure, [&] {
        return newTransformer(
            readDocument(joined(pieces, count), nullptr, DocumentKind::kSheet, problem), problem);
    });
    if (self == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_TRANSFORMER, kSheetSource, problem);
    }
    return self;
}

ZUVXMLUTILSTransformer *ZUVXMLUTILSTransformer_newFromFile(const char *path)
{
    if (ZUV_XML_IS_NULL(TRANSFORMER, path) || ZUV_XML_IS_NOT_READY(TRANSFORMER)) {
        return nullptr;
    }
    Problem problem;
    auto *const self = newTransformer(readFile(path, DocumentKind::kSheet, problem), problem);
    if (self == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_TRANSFORMER, path, problem);
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_TRANSFORMER, &ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s,
                       path);
    }
    return self;
}

void ZUVXMLUTILSTransformer_delete(ZUVXMLUTILSTransformer *self)
{
    heapDelete(self);
}

ZUVXMLUTILSObject *ZUVXMLUTILSTransformer_transform(ZUVXMLUTILSTransformer *self,
                                                    ZUVXMLUTILSObject *object)
{
    return ZUVXMLUTILSTransformer_transformWithParams(self, object, nullptr, 0);
}

ZUVXMLUTILSObject *
ZUVXMLUTILSTransformer_transformWithParams(ZUVXMLUTILSTransformer *self, ZUVXMLUTILSObject *object,
                                           const ZUVXMLUTILSTransformationParameter *parameters,
                                           int count)
{
    if (ZUV_XML_IS_NULL(TRANSFORMER, self) || ZUV_XML_IS_NULL(TRANSFORMER, object) ||
        ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_TRANSFORMER,
                         !areTexts(parameters, count), "a parameter is no text")) {
        return nullptr;
    }
    xmlNode *const element = toNode(object);
    Problem problem;
    ZUVXMLUTILSObject *result = nullptr;
    if (ZUV_OSAPI_FAULT("xmlutils.transform")) {
        problem.set(element, Problem::kOutOfMemory);
    } else {
        result = transform(*self, element, parameters, count, problem);
    }
    if (result == nullptr) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_TRANSFORMER, sourceOf(element), problem);
    }
    return result;
}
}
