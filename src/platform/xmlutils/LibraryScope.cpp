#include "platform/xmlutils/LibraryScope.hpp"

#include <algorithm>
#include <climits>
#include <cstring>

#include <libxml/parser.h>
#include <libxml/xmlerror.h>

#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Tree.hpp"

namespace zuv::xmlutils
{
namespace
{

thread_local LibraryScope *t_current = nullptr;

template <std::size_t kSize>
void store(char (&room)[kSize], std::string_view text)
{
    room[text.copy(room, kSize - 1)] = '\0';
}

// "Element 'a', attribute 'b': text" without what the report says anyway.
std::string_view withoutElement(std::string_view text)
{
    constexpr std::string_view kElement = "Element '";
    if (!text.starts_with(kElement)) {
        return text;
    }
    const std::size_t quote = text.find('\'', kElement.size());
    const std::size_t rest =
        quote == text.npos ? text.npos : text.find_first_not_of(":, ", quote + 1);
    return rest == text.npos ? text : text.substr(rest);
}

const xmlNode *elementOf(const xmlNode *node)
{
    while (node != nullptr && node->type != XML_ELEMENT_NODE) {
        node = node->type == XML_DOCUMENT_NODE ? nullptr : node->parent;
    }
    return node;
}

void collect(void *, xmlError *error)
{
    LibraryScope *const scope = t_current;
    if (scope == nullptr || error == nullptr || error->level < XML_ERR_ERROR) {
        return;
    }
    const std::string_view reason =
        withoutElement(error->message != nullptr ? error->message : "unknown error");
    const bool isFromParser = scope->parser != nullptr && error->ctxt == scope->parser;
    if (isFromParser) {
        const xmlNode *const open = scope->parser->node;
        scope->problem.set(
            error->line, open != nullptr ? reinterpret_cast<const char *>(open->name) : "", reason);
        // Whatever follows an error is of no interest, and may be long.
        stopReading(scope->parser, scope->bytes);
    } else if (const xmlNode *node = elementOf(static_cast<xmlNode *>(error->node))) {
        if (!scope->problem.isSet()) {
            scope->element = node;
        }
        scope->problem.set(node, reason);
    } else {
        scope->problem.set(error->line, "", reason);
    }
}

void dropText(void *, const char *, ...) {}

} // namespace

void stopReading(xmlParserCtxt *parser, std::string_view bytes)
{
    // xmlStopParser would free what the parser, which is amid some construct, still has pointers into. The rest
    // of its own copy of the bytes becomes zeros instead, which it takes for the end.
    parser->instate = XML_PARSER_EOF;
    parser->disableSAX = 1;
    if (const xmlParserInput *const input = parser->input) {
        const char *const from = reinterpret_cast<const char *>(input->cur);
        const bool isCopy = from < bytes.data() || from > bytes.data() + bytes.size();
        if (isCopy && input->cur < input->end) {
            std::memset(const_cast<xmlChar *>(input->cur), 0,
                        static_cast<std::size_t>(input->end - input->cur));
        }
    }
}

void Problem::set(long line, std::string_view element, std::string_view reason)
{
    if (isSet()) {
        return;
    }
    line_ = static_cast<int>(std::min<long>(line, INT_MAX));
    store(element_, element);
    append(reason);
    trim();
}

void Problem::set(const _xmlNode *node, std::string_view reason)
{
    set(lineOf(node), reinterpret_cast<const char *>(node->name), reason);
}

void Problem::append(std::string_view piece)
{
    // Line breaks become blanks, and none stands at the start or behind another.
    std::size_t length = std::strlen(reason_);
    for (const char character : piece) {
        const bool isBlank = static_cast<unsigned char>(character) <= ' ';
        const bool isNeeded = !isBlank || (length != 0 && reason_[length - 1] != ' ');
        if (isNeeded && length + 1 < sizeof(reason_)) {
            reason_[length++] = isBlank ? ' ' : character;
        }
    }
    reason_[length] = '\0';
}

void Problem::trim()
{
    std::size_t length = std::strlen(reason_);
    while (length != 0 && reason_[length - 1] == ' ') {
        reason_[--length] = '\0';
    }
}

LibraryScope::LibraryScope()
    : outer_(t_current), refusedBefore_(refusedAllocations()),
      structuredData_(xmlStructuredErrorContext), structured_(xmlStructuredError),
      genericData_(xmlGenericErrorContext), generic_(xmlGenericError)
{
    t_current = this;
    xmlSetStructuredErrorFunc(nullptr, &collect);
    xmlSetGenericErrorFunc(nullptr, &dropText);
}

LibraryScope::~LibraryScope()
{
    t_current = outer_;
    xmlSetStructuredErrorFunc(structuredData_, structured_);
    xmlSetGenericErrorFunc(genericData_, generic_);
    xmlResetLastError(); // it holds memory
}

LibraryScope *LibraryScope::current()
{
    return t_current;
}

bool LibraryScope::isOutOfMemory() const
{
    return refusedAllocations() != refusedBefore_;
}

bool LibraryScope::isClean()
{
    if (isOutOfMemory()) {
        problem.clear();
        problem.set(0, "", Problem::kOutOfMemory);
    }
    problem.trim();
    return !problem.isSet();
}

} // namespace zuv::xmlutils
