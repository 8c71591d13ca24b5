#include "platform/ddsxml/QosPrinter.hpp"

#include <charconv>
#include <string_view>

#include "platform/dds/QosPolicies.h"

namespace zuv::ddsxml
{
namespace
{

using dds::QosField;
using dds::QosFieldKind;
using dds::QosNames;
using xmlutils::HeapString;

class Printer
{
public:
    HeapString take() { return std::move(text_); }

    void open(std::string_view tag)
    {
        indent();
        text_.append("<").append(tag).append(">\n");
        ++depth_;
    }
    void close(std::string_view tag)
    {
        --depth_;
        indent();
        text_.append("</").append(tag).append(">\n");
    }
    void element(std::string_view tag, std::string_view value)
    {
        indent();
        text_.append("<").append(tag).append(">");
        for (const char letter : value) {
            append(letter);
        }
        text_.append("</").append(tag).append(">\n");
    }

private:
    void indent() { text_.append(2 * depth_, ' '); }
    void append(char letter)
    {
        switch (letter) {
        case '&':
            text_ += "&amp;";
            break;
        case '<':
            text_ += "&lt;";
            break;
        case '>':
            text_ += "&gt;";
            break;
        case '\r': // a reader would make it a line feed (XML 1.0, 2.11)
            text_ += "&#13;";
            break;
        default:
            text_ += letter;
        }
    }

    HeapString text_;
    std::size_t depth_ = 0;
};

template <typename Number>
HeapString textOf(Number number)
{
    char digits[16];
    const auto end = std::to_chars(digits, digits + sizeof(digits), number).ptr;
    return HeapString(digits, end);
}

std::string_view nameOf(std::int32_t value, const QosNames &names)
{
    for (const dds::QosEnumerator &one : names.enumerators) {
        if (one.value == value) {
            return one.name;
        }
    }
    return names.enumerators.front().name; // a value that is none of the enumeration's
}

HeapString maskText(std::int32_t mask, const QosNames &names)
{
    HeapString text;
    for (const dds::QosEnumerator &one : names.enumerators) {
        if ((mask & one.value) != 0) {
            text.append(text.empty() ? "" : "|").append(one.name);
        }
    }
    return text.empty() ? HeapString(nameOf(0, names)) : text;
}

void printDuration(Printer &out, std::string_view tag, const DDS_Duration_t &duration)
{
    const bool isInfinite = DDS_Duration_is_infinite(&duration);
    out.open(tag);
    out.element("sec", isInfinite ? "DURATION_INFINITE_SEC" : textOf(duration.sec));
    out.element("nanosec", isInfinite ? "DURATION_INFINITE_NSEC" : textOf(duration.nanosec));
    out.close(tag);
}

HeapString base64Of(const DDS_OctetSeq &octets)
{
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const DDS_Octet *const from = DDS_OctetSeq_get_contiguous_buffer(&octets);
    const auto length = static_cast<std::size_t>(DDS_OctetSeq_get_length(&octets));
    HeapString text;
    for (std::size_t index = 0; index < length; index += 3) {
        std::uint32_t bits = 0;
        for (std::size_t next = 0; next < 3; ++next) {
            bits = bits << 8 | (index + next < length ? from[index + next] : 0U);
        }
        for (std::size_t digit = 0; digit < 4; ++digit) {
            const bool isPad = index + digit > length;
            text += isPad ? '=' : kDigits[bits >> (18 - 6 * digit) & 0x3f];
        }
    }
    return text;
}

void printTexts(Printer &out, std::string_view tag, const DDS_StringSeq &texts)
{
    out.open(tag);
    for (DDS_Long index = 0; index < DDS_StringSeq_get_length(&texts); ++index) {
        const char *const text = DDS_StringSeq_get(&texts, index);
        out.element("element", text == nullptr ? "" : text);
    }
    out.close(tag);
}

void printRepresentations(Printer &out, std::string_view tag,
                          const DDS_DataRepresentationIdSeq &ids, const QosNames &names)
{
    out.open(tag);
    for (DDS_Long index = 0; index < DDS_DataRepresentationIdSeq_get_length(&ids); ++index) {
        out.element("element", nameOf(DDS_DataRepresentationIdSeq_get(&ids, index), names));
    }
    out.close(tag);
}

void printProperties(Printer &out, std::string_view tag, const DDS_PropertySeq &properties)
{
    out.open(tag);
    for (DDS_Long index = 0; index < DDS_PropertySeq_get_length(&properties); ++index) {
        const DDS_Property_t &property = *DDS_PropertySeq_get_reference(&properties, index);
        out.open("element");
        out.element("name", property.name == nullptr ? "" : property.name);
        out.element("value", property.value == nullptr ? "" : property.value);
        out.element("propagate", property.propagate != 0 ? "true" : "false");
        out.close("element");
    }
    out.close(tag);
}

void printField(Printer &out, std::string_view tag, const QosField &field, const void *value)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        out.element(tag, *static_cast<const DDS_Boolean *>(value) != 0 ? "true" : "false");
        break;
    case QosFieldKind::kLong: {
        const DDS_Long number = *static_cast<const DDS_Long *>(value);
        const bool isUnlimited = number == DDS_LENGTH_UNLIMITED && field.range->mayBeUnlimited;
        out.element(tag, isUnlimited ? HeapString("LENGTH_UNLIMITED") : textOf(number));
        break;
    }
    case QosFieldKind::kEnum:
        out.element(tag, nameOf(*static_cast<const DDS_Long *>(value), *field.names));
        break;
    case QosFieldKind::kMask:
        out.element(tag, maskText(*static_cast<const DDS_Long *>(value), *field.names));
        break;
    case QosFieldKind::kDuration:
        printDuration(out, tag, *static_cast<const DDS_Duration_t *>(value));
        break;
    case QosFieldKind::kText:
        if (const char *const text = *static_cast<const char *const *>(value)) {
            out.element(tag, text);
        }
        break;
    case QosFieldKind::kOctets:
        out.element(tag, base64Of(*static_cast<const DDS_OctetSeq *>(value)));
        break;
    case QosFieldKind::kTexts:
        printTexts(out, tag, *static_cast<const DDS_StringSeq *>(value));
        break;
    case QosFieldKind::kRepresentations:
        printRepresentations(out, tag, *static_cast<const DDS_DataRepresentationIdSeq *>(value),
                             *field.names);
        break;
    case QosFieldKind::kProperties:
        printProperties(out, tag, *static_cast<const DDS_PropertySeq *>(value));
        break;
    }
}

// The fields of a nested structure stand together in the table.
void printPolicy(Printer &out, const dds::QosPolicy &policy, const void *value)
{
    std::string_view structure;
    out.open(policy.tag);
    for (const QosField &field : policy.fields) {
        std::string_view tag = field.tag;
        const std::size_t dot = tag.find('.');
        const std::string_view outer = tag.substr(0, dot == tag.npos ? 0 : dot);
        if (outer != structure) {
            if (!structure.empty()) {
                out.close(structure);
            }
            if (!outer.empty()) {
                out.open(outer);
            }
            structure = outer;
        }
        tag.remove_prefix(dot == tag.npos ? 0 : dot + 1);
        printField(out, tag, field, static_cast<const char *>(value) + field.offset);
    }
    if (!structure.empty()) {
        out.close(structure);
    }
    out.close(policy.tag);
}

} // namespace

HeapString printQos(const dds::QosRecord &table, const void *record)
{
    Printer out;
    out.open(table.tag);
    for (const dds::QosMember &member : table.members) {
        printPolicy(out, *member.policy, static_cast<const char *>(record) + member.offset);
    }
    out.close(table.tag);
    return out.take();
}

} // namespace zuv::ddsxml
