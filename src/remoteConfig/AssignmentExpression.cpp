#include "remoteConfig/AssignmentExpression.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <memory>
#include <string_view>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/mavo/String.h"
#include "platform/typesys/String.h"

namespace
{

// The last entry of the vector is never used: a path that reaches it is refused.
constexpr std::size_t kPathCapacity = 32;

constexpr std::string_view kFirstWords[] = {
    "domain_route",     "connection", "session",    "polling_session", "topic_route",
    "auto_topic_route", "route",      "auto_route", "input",           "output"};

constexpr std::string_view kOpening = "str://\"";
constexpr std::string_view kClosing = "\"";
constexpr std::string_view kBeforeKey = "<value><element><name>";
constexpr std::string_view kBehindKey = "</name><value>";
constexpr std::string_view kBehindKeyedValue = "</value></element></value>";

struct FreeString {
    void operator()(char *text) const { DDS_String_free(text); }
};

// The parts of an assignment; all texts lie in the working copy.
struct Assignment {
    std::array<char *, kPathCapacity> path = {};
    std::size_t pathLength = 0;
    const char *propertyName = nullptr;
    const char *value = nullptr;
};

bool isSpace(char character)
{
    return std::isspace(static_cast<unsigned char>(character)) != 0;
}

// A bare test of the beginning: "sessions" will do as well.
bool startsWithElement(std::string_view expression)
{
    return expression.starts_with(BRELProductInfo_get()->topLevelTag) ||
           std::any_of(std::begin(kFirstWords), std::end(kFirstWords),
                       [&](std::string_view word) { return expression.starts_with(word); });
}

void trimEnd(char *text)
{
    char *end = text + std::strlen(text);
    while (end != text && isSpace(end[-1])) {
        *--end = '\0';
    }
}

// Blank the outer quotes; the white space around the value stays.
void blankQuotes(char *value)
{
    if (*value == '\0') {
        return;
    }
    char *const last = value + std::strlen(value) - 1;
    char *first = value;
    while (first != last && isSpace(*first)) {
        ++first;
    }
    if (*first == '"') {
        *first = ' ';
    }
    char *end = last;
    while (end != value && isSpace(*end)) {
        --end;
    }
    if (*end == '"') {
        *end = ' ';
    }
}

bool splitPath(char *text, Assignment &assignment)
{
    char *position = nullptr;
    for (char *piece = MAVOString_strToken(text, ".", &position); piece != nullptr;
         piece = MAVOString_strToken(nullptr, ".", &position)) {
        if (assignment.pathLength + 1 == kPathCapacity) {
            return false;
        }
        assignment.path[assignment.pathLength++] = piece;
    }
    return assignment.pathLength > 0;
}

// Cut the key off the last name. The dots were cut first, so a key with a dot in it is none.
const char *splitKey(char *lastPiece)
{
    char *position = nullptr;
    return MAVOString_strToken(lastPiece, "[]", &position) == nullptr
               ? nullptr
               : MAVOString_strToken(nullptr, "[]", &position);
}

bool parse(char *expression, Assignment &assignment)
{
    char *const equalSign = std::strchr(expression, '=');
    if (equalSign == nullptr) {
        return false;
    }
    *equalSign = '\0';
    trimEnd(expression);
    blankQuotes(equalSign + 1);
    assignment.value = equalSign + 1;
    if (!splitPath(expression, assignment)) {
        return false;
    }
    assignment.propertyName = splitKey(assignment.path[assignment.pathLength - 1]);
    return true;
}

// What stands for a character of the value; empty for the character itself.
std::string_view escape(char character)
{
    switch (character) {
    case '"':
        return "&quot;";
    case '&':
        return "&amp;";
    case '\'':
        return "&apos;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    default:
        return {};
    }
}

// Where the snippet goes: first into a count, then into the text of that length.
class Counter
{
public:
    void append(std::string_view text) { length_ += text.size(); }
    std::size_t length() const { return length_; }

private:
    std::size_t length_ = 0;
};

class Writer
{
public:
    explicit Writer(char *text) : end_(text) { *end_ = '\0'; }
    void append(std::string_view text)
    {
        end_ = std::copy(text.begin(), text.end(), end_);
        *end_ = '\0';
    }

private:
    char *end_;
};

template <typename Output>
void writeTag(const char *opening, const char *name, Output &output)
{
    output.append(opening);
    output.append(name);
    output.append(">");
}

template <typename Output>
void writeSnippet(const Assignment &assignment, Output &output)
{
    output.append(kOpening);
    for (std::size_t index = 0; index < assignment.pathLength; ++index) {
        writeTag("<", assignment.path[index], output);
    }
    if (assignment.propertyName != nullptr) {
        output.append(kBeforeKey);
        output.append(assignment.propertyName);
        output.append(kBehindKey);
    }
    for (const char *character = assignment.value; *character != '\0'; ++character) {
        const std::string_view replacement = escape(*character);
        output.append(replacement.empty() ? std::string_view(character, 1) : replacement);
    }
    if (assignment.propertyName != nullptr) {
        output.append(kBehindKeyedValue);
    }
    for (std::size_t index = assignment.pathLength; index > 0; --index) {
        writeTag("</", assignment.path[index - 1], output);
    }
    output.append(kClosing);
}

void reportOutOfMemory(std::size_t length)
{
    ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_REMOTE,
            &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d, static_cast<int>(length));
}

} // namespace

char *BRELRemoteConfigClient_convertAssignmentToXmlSnippet(const char *assignmentExpression)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_REMOTE, assignmentExpression == nullptr,
                         "\"assignmentExpression == ((void *)0)\"")) {
        return nullptr;
    }
    if (!startsWithElement(assignmentExpression)) {
        return nullptr;
    }
    const std::unique_ptr<char, FreeString> assignmentExpressionCopy(
        DDS_String_dup(assignmentExpression));
    if (assignmentExpressionCopy == nullptr) {
        reportOutOfMemory(std::strlen(assignmentExpression));
        return nullptr;
    }
    Assignment assignment;
    if (!parse(assignmentExpressionCopy.get(), assignment)) {
        return nullptr;
    }
    Counter counter;
    writeSnippet(assignment, counter);
    char *const snippet = DDS_String_alloc(counter.length());
    if (snippet == nullptr) {
        reportOutOfMemory(counter.length());
        return nullptr;
    }
    Writer writer(snippet);
    writeSnippet(assignment, writer);
    return snippet;
}
