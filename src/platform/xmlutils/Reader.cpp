#include "platform/xmlutils/Reader.hpp"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <optional>

#include <libxml/SAX2.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/File.h"
#include "platform/osapi/HeapBulk.hpp"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/Scan.hpp"

namespace zuv::xmlutils
{
namespace
{

// libxml2 builds the tree; these handlers stand before its own ones, refuse what is beyond the limits, and
// record line numbers. A handler finds the reading in the parser's _private slot.
struct Reading {
    Problem *problem;
    std::string_view bytes;
    DocumentKind kind;
    bool hasLongNames;
    std::size_t textLength = 0;
    // Until the document starts: a buffer that cannot take its bytes is lost.
    std::optional<ReserveScope> reserve = {};
};

xmlParserCtxt *parserOf(void *context)
{
    return static_cast<xmlParserCtxt *>(context);
}

Reading &readingOf(xmlParserCtxt *parser)
{
    return *static_cast<Reading *>(parser->_private);
}

std::string_view view(const xmlChar *text)
{
    return text != nullptr ? reinterpret_cast<const char *>(text) : "";
}

void refuse(xmlParserCtxt *parser, std::string_view element, std::string_view reason)
{
    readingOf(parser).problem->set(parser->input->line, element, reason);
    stopReading(parser, readingOf(parser).bytes);
}

// As libxml2 hands attributes over: five pointers each.
struct RawAttribute {
    const xmlChar *name;
    const xmlChar *prefix;
    const xmlChar *uri;
    const xmlChar *value;
    const xmlChar *valueEnd;

    std::string_view text() const
    {
        return {reinterpret_cast<const char *>(value), static_cast<std::size_t>(valueEnd - value)};
    }
};
static_assert(sizeof(RawAttribute) == 5 * sizeof(const xmlChar *));

bool hasLongName(std::string_view tag, const RawAttribute *attributes, int count)
{
    return isNameTooLong(tag) ||
           std::any_of(attributes, attributes + count, [](const RawAttribute &attribute) {
               return isNameTooLong(view(attribute.name)) ||
                      (view(attribute.name) == "name" && isNameTooLong(attribute.text()));
           });
}

bool isSchemaLocation(const RawAttribute &attribute)
{
    return attribute.uri != nullptr && view(attribute.name) == "schemaLocation" &&
           view(attribute.uri) == "http://www.w3.org/2001/XMLSchema-instance";
}

// The program binds elements to each other by addresses in this attribute.
bool isReserved(const RawAttribute &attribute)
{
    constexpr const char *kReserved = ZUVXMLUTILS_RESERVED_ATTRIBUTE_NAME;
    const char *const name = reinterpret_cast<const char *>(attribute.name);
    return *name == *kReserved && attribute.prefix == nullptr && std::strcmp(name, kReserved) == 0;
}

const char *whatIsWrong(const xmlParserCtxt &parser, const xmlChar *tag, const xmlChar *uri,
                        const RawAttribute *attributes, int count)
{
    if (parser.nodeNr >= ZUVXMLUTILS_DEPTH_MAX) {
        return "elements are nested more than 100 deep";
        static_assert(ZUVXMLUTILS_DEPTH_MAX == 100);
    }
    if (uri != nullptr && view(uri) == "http://www.w3.org/2001/XInclude") {
        return "XInclude is not allowed";
    }
    if (std::any_of(attributes, attributes + count, isSchemaLocation)) {
        return "the attribute schemaLocation is not allowed";
    }
    const Reading &reading = *static_cast<const Reading *>(parser._private);
    if (reading.kind == DocumentKind::kTree &&
        std::any_of(attributes, attributes + count, isReserved)) {
        return "the attribute '" ZUVXMLUTILS_RESERVED_ATTRIBUTE_NAME "' is not allowed";
    }
    if (reading.hasLongNames && hasLongName(view(tag), attributes, count)) {
        return "a name or tag has more than 255 characters";
        static_assert(ZUVXMLUTILS_NAME_LENGTH_MAX == 255);
    }
    return nullptr;
}

void startElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri,
                  int namespaceCount, const xmlChar **namespaces, int attributeCount,
                  int defaultedCount, const xmlChar **attributes)
{
    xmlParserCtxt *const parser = parserOf(context);
    Reading &reading = readingOf(parser);
    reading.textLength = 0;
    const long line = parser->input->line;
    const char *const wrong = whatIsWrong(
        *parser, name, uri, reinterpret_cast<const RawAttribute *>(attributes), attributeCount);
    if (wrong != nullptr) {
        refuse(parser, view(name).substr(0, 64), wrong);
        return;
    }
    xmlSAX2StartElementNs(context, name, prefix, uri, namespaceCount, namespaces, attributeCount,
                          defaultedCount, attributes);
    if (line >= UINT16_MAX && reading.kind == DocumentKind::kTree && parser->node != nullptr &&
        parser->node->_private == nullptr) {
        setLine(parser->node, line);
    }
}

void endElement(void *context, const xmlChar *name, const xmlChar *prefix, const xmlChar *uri)
{
    readingOf(parserOf(context)).textLength = 0;
    xmlSAX2EndElementNs(context, name, prefix, uri);
}

void addCharacters(void *context, const xmlChar *text, int length)
{
    xmlParserCtxt *const parser = parserOf(context);
    Reading &reading = readingOf(parser);
    reading.textLength += static_cast<std::size_t>(length);
    if (reading.textLength > ZUVXMLUTILS_TEXT_LENGTH_MAX) {
        refuse(parser, parser->node != nullptr ? view(parser->node->name) : "",
               "a text is longer than 1048576 bytes");
        return;
    }
    xmlSAX2Characters(context, text, length);
}

// Text that something parts stays in one piece: what comes between moves before it.
template <typename Add>
void addBeforeText(xmlParserCtxt *parser, Add &&add)
{
    xmlNode *const parent = parser->node;
    xmlNode *const text = parent != nullptr && xmlNodeIsText(parent->last) ? parent->last : nullptr;
    add();
    if (text != nullptr && text->next != nullptr) {
        xmlNode *const added = text->next;
        xmlUnlinkNode(added);
        xmlAddPrevSibling(text, added);
    }
}

void startDocument(void *context)
{
    readingOf(parserOf(context)).reserve.reset();
    xmlSAX2StartDocument(context);
}

void addComment(void *context, const xmlChar *text)
{
    addBeforeText(parserOf(context), [&] { xmlSAX2Comment(context, text); });
}

void addInstruction(void *context, const xmlChar *name, const xmlChar *text)
{
    addBeforeText(parserOf(context), [&] { xmlSAX2ProcessingInstruction(context, name, text); });
}

void installHandlers(xmlParserCtxt *parser, DocumentKind kind)
{
    xmlSAXHandler &handler = *parser->sax;
    handler.startDocument = &startDocument;
    handler.startElementNs = &startElement;
    handler.endElementNs = &endElement;
    handler.characters = &addCharacters;
    handler.ignorableWhitespace = &addCharacters;
    if (kind == DocumentKind::kTree) {
        handler.comment = &addComment;
        handler.processingInstruction = &addInstruction;
    }
}

// A tree of nodes takes about so many times the size of its document, unless that is mostly text.
constexpr std::size_t kTreeFactor = 4;

struct ParserDeleter {
    void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
};
using ParserPointer = std::unique_ptr<xmlParserCtxt, ParserDeleter>;

DocumentPointer parse(std::string_view bytes, const char *path, DocumentKind kind,
                      const Content &content, Problem &problem)
{
    LibraryScope scope;
    const ParserPointer parser(xmlNewParserCtxt());
    DocumentPointer document;
    if (parser != nullptr && !scope.isOutOfMemory()) {
        Reading reading = {&scope.problem, bytes, kind, content.longNames};
        reading.reserve.emplace();
        parser->_private = &reading;
        scope.parser = parser.get();
        scope.bytes = bytes;
        installHandlers(parser.get(), kind);
        const zuv_heap::BulkScope bulk(bytes.size() * kTreeFactor);
        // XML_PARSE_COMPACT: a short text lies in its node, which saves a block for most values.
        // XML_PARSE_NOENT: references to characters in attributes are resolved at once. There are no other
        // entities, as no document with a DOCTYPE comes as far as here.
        const int options =
            XML_PARSE_NONET | XML_PARSE_NOCDATA | XML_PARSE_NOENT |
            (kind == DocumentKind::kTree ? XML_PARSE_NOBLANKS | XML_PARSE_COMPACT : 0);
        document.reset(xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()),
                                         path, nullptr, options));
        scope.parser = nullptr;
    }
    if (scope.isClean() && document == nullptr) {
        scope.problem.set(1, "", "the document cannot be read");
    }
    if (!scope.isClean()) {
        document.reset();
        problem = scope.problem;
    }
    return document;
}

struct FileCloser {
    void operator()(ZUVOsapiFile *file) const { ZUVOsapiFile_close(file); }
};

// errno tells why it failed, unless the file is too large: then its size is in `size`.
bool readWhole(const char *path, HeapString &bytes, std::uint64_t &size)
{
    const std::unique_ptr<ZUVOsapiFile, FileCloser> file(ZUVOsapiFile_open(path));
    if (file == nullptr || !ZUVOsapiFile_getSize(file.get(), &size) ||
        size > ZUVXMLUTILS_DOCUMENT_SIZE_MAX) {
        return false;
    }
    bytes.resize(size);
    std::size_t count = 0;
    const int isRead = ZUVOsapiFile_read(file.get(), bytes.data(), size, &count);
    bytes.resize(count);
    return isRead;
}

} // namespace

DocumentPointer readDocument(std::string_view bytes, const char *path, DocumentKind kind,
                             Problem &problem)
{
    if (ZUV_OSAPI_FAULT("xmlutils.parse")) {
        problem.set(0, "", Problem::kOutOfMemory);
        return nullptr;
    }
    Content content;
    if (!isWithinLimits(bytes, content, problem)) {
        return nullptr;
    }
    DocumentPointer document = parse(bytes, path, kind, content, problem);
    if (document == nullptr || kind != DocumentKind::kTree) {
        return document;
    }
    if (!adoptDocument(document.get())) {
        problem.set(0, "", Problem::kOutOfMemory);
        return nullptr;
    }
    documentOf(xmlDocGetRootElement(document.get()))->mayHoldVariables = content.variables;
    return document;
}

DocumentPointer readFile(const char *path, DocumentKind kind, Problem &problem)
{
    const auto onFailure = [&] { problem.set(0, "", Problem::kOutOfMemory); };
    return withMemory(DocumentPointer(), onFailure, [&] {
        HeapString bytes;
        std::uint64_t size = 0;
        errno = 0;
        if (!readWhole(path, bytes, size)) {
            const bool isTooLarge = size > ZUVXMLUTILS_DOCUMENT_SIZE_MAX;
            problem.set(0, "",
                        isTooLarge   ? "the document is larger than 268435456 bytes"
                        : errno != 0 ? std::strerror(errno)
                                     : "it is no file that can be read");
            return DocumentPointer();
        }
        return readDocument(bytes, path, kind, problem);
    });
}

HeapString joined(const char *const *pieces, int count)
{
    std::size_t size = 0;
    for (int index = 0; index < count; ++index) {
        size += std::strlen(pieces[index]);
    }
    HeapString text;
    text.reserve(size);
    for (int index = 0; index < count; ++index) {
        text += pieces[index];
    }
    return text;
}

} // namespace zuv::xmlutils
