#include "platform/typesys/Printer.hpp"

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

#include "platform/typesys/SampleOps.hpp"

namespace zuv
{
namespace
{

constexpr unsigned kStep = 4; // blanks

// What a format makes of the parts of a sample: groups, which have members or elements, and scalars.
class Writer
{
public:
    virtual ~Writer() = default;
    virtual void begin(std::string_view name, bool isList) = 0;
    virtual void end(std::string_view name, bool isList) = 0;
    virtual void scalar(std::string_view name, std::string_view value) = 0;
    virtual void text(std::string_view name, const char *value) = 0;

    std::string &&result() { return std::move(out_); }

protected:
    std::string out_;
};

// "name: value" lines; scalars of a list stand in one line.
class DefaultWriter : public Writer
{
public:
    explicit DefaultWriter(unsigned depth) : depth_(depth) {}

    void begin(std::string_view name, bool isList) override
    {
        label(name);
        lists_.push_back(isList);
        ++depth_;
        count_ = 0;
    }

    void end(std::string_view, bool) override
    {
        if (!out_.ends_with('\n')) {
            out_ += '\n';
        }
        lists_.pop_back();
        --depth_;
    }

    void scalar(std::string_view name, std::string_view value) override
    {
        if (name.empty() && !lists_.empty() && lists_.back()) {
            out_ += count_++ == 0 ? " " : ", ";
            out_ += value;
            return;
        }
        label(name);
        out_ += ' ';
        out_ += value;
        out_ += '\n';
    }

    void text(std::string_view name, const char *value) override
    {
        scalar(name, value == nullptr ? "NULL" : '"' + std::string(value) + '"');
    }

private:
    void label(std::string_view name)
    {
        if (!out_.empty() && !out_.ends_with('\n')) {
            out_ += '\n';
        }
        out_.append(std::size_t{depth_} * kStep, ' ');
        out_ += name.empty() ? "-" : name;
        out_ += ':';
    }

    unsigned depth_;
    unsigned count_ = 0;
    std::vector<bool> lists_;
};

// The line breaks and indentation that the structured formats share.
class StructuredWriter : public Writer
{
public:
    explicit StructuredWriter(bool isPretty) : isPretty_(isPretty) {}

protected:
    void breakLine()
    {
        if (isPretty_ && !out_.empty()) {
            out_ += '\n';
            out_.append(std::size_t{depth_} * kStep, ' ');
        }
    }

    bool isPretty_;
    unsigned depth_ = 0;
};

class XmlWriter : public StructuredWriter
{
public:
    using StructuredWriter::StructuredWriter;

    void begin(std::string_view name, bool) override
    {
        breakLine();
        tag("<", name);
        ++depth_;
    }

    void end(std::string_view name, bool) override
    {
        --depth_;
        breakLine();
        tag("</", name);
    }

    void scalar(std::string_view name, std::string_view value) override
    {
        breakLine();
        tag("<", name);
        out_ += value;
        tag("</", name);
    }

    void text(std::string_view name, const char *value) override
    {
        scalar(name, value == nullptr ? "" : escaped(value));
    }

private:
    void tag(const char *open, std::string_view name)
    {
        out_ += open;
        out_ += name.empty() ? "item" : name;
        out_ += '>';
    }

    static std::string escaped(std::string_view value)
    {
        std::string result;
        for (const char character : value) {
            switch (character) {
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '&':
                result += "&amp;";
                break;
            default: {
                const auto code = static_cast<unsigned char>(character);
                const bool isAllowed = code >= 0x20 || code == '\t' || code == '\n';
                result += isAllowed ? character : '?';
                break;
            }
            }
        }
        return result;
    }
};

class JsonWriter : public StructuredWriter
{
public:
    using StructuredWriter::StructuredWriter;

    void begin(std::string_view name, bool isList) override
    {
        entry(name);
        out_ += isList ? '[' : '{';
        ++depth_;
        isFirst_ = true;
    }

    void end(std::string_view, bool isList) override
    {
        --depth_;
        if (!isFirst_) {
            breakLine();
        }
        out_ += isList ? ']' : '}';
        isFirst_ = false;
    }

    void scalar(std::string_view name, std::string_view value) override
    {
        entry(name);
        const std::size_t first = value.starts_with('-') ? 1 : 0;
        const bool isNumber = first < value.size() && isDigit(value[first]);
        if (isNumber || value == "true" || value == "false") {
            out_ += value;
        } else {
            out_ += quoted(value);
        }
    }

    void text(std::string_view name, const char *value) override
    {
        entry(name);
        out_ += value == nullptr ? "null" : quoted(value);
    }

private:
    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    void entry(std::string_view name)
    {
        if (!isFirst_) {
            out_ += ',';
        }
        isFirst_ = false;
        breakLine();
        if (!name.empty()) {
            out_ += quoted(name);
            out_ += isPretty_ ? ": " : ":";
        }
    }

    static std::string quoted(std::string_view value)
    {
        constexpr char kDigits[] = "0123456789abcdef";
        std::string result = "\"";
        for (const char character : value) {
            const auto code = static_cast<unsigned char>(character);
            if (character == '"' || character == '\\') {
                result += '\\';
                result += character;
            } else if (character == '\n') {
                result += "\\n";
            } else if (code < 0x20) {
                result += "\\u00";
                result += kDigits[code >> 4];
                result += kDigits[code & 15];
            } else {
                result += character;
            }
        }
        return result + '"';
    }

    bool isFirst_ = true;
};

template <typename Number>
std::string numberText(const void *value)
{
    Number number{};
    std::memcpy(&number, value, sizeof(number));
    char buffer[64];
    const auto result = std::to_chars(buffer, buffer + sizeof(buffer), number);
    return {buffer, result.ptr};
}

std::string enumText(const DDS_TypeCode &type, const void *value, bool asNumber)
{
    std::int32_t ordinal = 0;
    std::memcpy(&ordinal, value, sizeof(ordinal));
    const auto found = std::ranges::find(type.members, ordinal, &DDS_TypeCodeMember::ordinal);
    return asNumber || found == type.members.end() ? std::to_string(ordinal) : found->name;
}

class Walk
{
public:
    Walk(Writer &writer, bool enumAsNumber) : writer_(writer), enumAsNumber_(enumAsNumber) {}

    void members(const DDS_TypeCode &type, const void *sample)
    {
        for (const DDS_TypeCodeMember &each : type.members) {
            const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(each.type);
            const void *place = memberAt<char>(sample, each.offset);
            if ((each.marks & kOptional) == 0) {
                value(each.name, resolved, place);
                continue;
            }
            const void *target = *static_cast<void *const *>(place);
            if (target != nullptr) {
                value(each.name, resolved, resolved.kind == DDS_TK_STRING ? place : target);
            }
        }
    }

    void value(std::string_view name, const DDS_TypeCode &type, const void *place)
    {
        switch (type.kind) {
        case DDS_TK_STRUCT:
            writer_.begin(name, false);
            members(type, place);
            writer_.end(name, false);
            return;
        case DDS_TK_SEQUENCE:
            sequence(name, type, *static_cast<const ZUVSequence *>(place));
            return;
        case DDS_TK_ARRAY:
            array(name, type, place);
            return;
        case DDS_TK_STRING:
            writer_.text(name, *static_cast<char *const *>(place));
            return;
        default:
            writer_.scalar(name, scalarText(type, place));
            return;
        }
    }

private:
    void sequence(std::string_view name, const DDS_TypeCode &type, const ZUVSequence &sequence)
    {
        const DDS_TypeCode &element = *DDS_TypeCode_resolve_alias(type.content);
        const Program *program = Program::of(&element);
        const std::uint32_t length =
            program != nullptr && isInitialized(sequence) ? sequence._length : 0;
        writer_.begin(name, true);
        for (std::uint32_t i = 0; i < length; ++i) {
            value("", element, elementAt(sequence, i, program->size()));
        }
        writer_.end(name, true);
    }

    void array(std::string_view name, const DDS_TypeCode &type, const void *place)
    {
        const DDS_TypeCode &element = *DDS_TypeCode_resolve_alias(type.content);
        const Program *program = Program::of(&element);
        writer_.begin(name, true);
        for (std::uint32_t i = 0; program != nullptr && i < type.length; ++i) {
            value("", element, memberAt<char>(place, i * program->size()));
        }
        writer_.end(name, true);
    }

    std::string scalarText(const DDS_TypeCode &type, const void *place) const
    {
        switch (type.kind) {
        case DDS_TK_BOOLEAN:
            return *static_cast<const DDS_Boolean *>(place) != 0 ? "true" : "false";
        case DDS_TK_CHAR:
        case DDS_TK_OCTET:
            return std::to_string(*static_cast<const DDS_Octet *>(place));
        case DDS_TK_SHORT:
            return numberText<DDS_Short>(place);
        case DDS_TK_USHORT:
            return numberText<DDS_UnsignedShort>(place);
        case DDS_TK_LONG:
            return numberText<DDS_Long>(place);
        case DDS_TK_ULONG:
            return numberText<DDS_UnsignedLong>(place);
        case DDS_TK_LONGLONG:
            return numberText<DDS_LongLong>(place);
        case DDS_TK_ULONGLONG:
            return numberText<DDS_UnsignedLongLong>(place);
        case DDS_TK_FLOAT:
            return numberText<DDS_Float>(place);
        case DDS_TK_DOUBLE:
            return numberText<DDS_Double>(place);
        case DDS_TK_ENUM:
            return enumText(type, place, enumAsNumber_);
        default:
            return {};
        }
    }

    Writer &writer_;
    bool enumAsNumber_;
};

std::string_view shortName(const DDS_TypeCode &type)
{
    const std::string_view name = type.name != nullptr ? type.name : "value";
    const std::size_t colon = name.rfind(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::string renderDefault(const DDS_TypeCode &type, const void *sample, bool enumAsNumber,
                          unsigned indent)
{
    DefaultWriter writer(indent);
    Walk walk(writer, enumAsNumber);
    if (type.kind == DDS_TK_STRUCT) {
        walk.members(type, sample);
    } else {
        walk.value("value", type, sample);
    }
    return writer.result();
}

// Without its root element a structure's members stand alone, in JSON within braces.
std::string renderXml(const DDS_TypeCode &type, std::string_view name, const void *sample,
                      const DDS_PrintFormatProperty &format)
{
    XmlWriter writer(format.pretty_print);
    Walk walk(writer, format.enum_as_int);
    if (format.include_root_elements || type.kind != DDS_TK_STRUCT) {
        walk.value(name, type, sample);
    } else {
        walk.members(type, sample);
    }
    return writer.result();
}

std::string renderJson(const DDS_TypeCode &type, std::string_view name, const void *sample,
                       const DDS_PrintFormatProperty &format)
{
    JsonWriter writer(format.pretty_print);
    Walk walk(writer, format.enum_as_int);
    if (format.include_root_elements) {
        writer.begin("", false);
        walk.value(name, type, sample);
        writer.end("", false);
    } else {
        walk.value("", type, sample);
    }
    return writer.result();
}

} // namespace

std::string renderSample(const DDS_TypeCode &type, const void *sample,
                         const DDS_PrintFormatProperty &format, unsigned indent)
{
    const DDS_TypeCode &resolved = *DDS_TypeCode_resolve_alias(&type);
    switch (format.kind) {
    case DDS_XML_PRINT_FORMAT:
        return renderXml(resolved, shortName(type), sample, format);
    case DDS_JSON_PRINT_FORMAT:
        return renderJson(resolved, shortName(type), sample, format);
    default:
        return renderDefault(resolved, sample, format.enum_as_int, indent);
    }
}

} // namespace zuv
