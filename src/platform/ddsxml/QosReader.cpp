#include "platform/ddsxml/QosReader.hpp"

#include <algorithm>
#include <array>
#include <cstring>

#include "platform/dds/QosPolicies.h"
#include "platform/ddsxml/XmlHelper.h"
#include "platform/mavo/String.h"
#include "platform/typesys/String.h"

namespace zuv::ddsxml
{
namespace
{

using dds::QosField;
using dds::QosFieldKind;
using dds::QosNames;
using xmlutils::HeapString;
using xmlutils::HeapVector;

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// Where in a QoS the reader is; the innermost part is told first to last.
struct Place {
    std::string_view outer;
    std::string_view tag;
    const ZUVXMLObject &element;
};

[[noreturn]] void refuse(const Place &place, std::string_view what)
{
    HeapString reason(place.outer);
    if (!place.tag.empty()) {
        reason.append(reason.empty() ? "" : ".").append(place.tag);
    }
    reason.append(reason.empty() ? "" : ": ").append(what);
    throw BadQos{std::move(reason), &place.element};
}

[[noreturn]] void refuseText(const Place &place, std::string_view text, std::string_view what)
{
    HeapString reason("'");
    refuse(place, reason.append(text.substr(0, 80)).append("' is ").append(what));
}

template <typename Visit>
void forEachChild(const ZUVXMLObject &element, Visit &&visit)
{
    for (const ZUVXMLObject *child = element.firstChild; child != nullptr; child = child->next) {
        visit(*child);
    }
}

// Children that must all be called "element".
template <typename Visit>
void forEachItem(const ZUVXMLObject &list, const Place &place, Visit &&visit)
{
    forEachChild(list, [&](const ZUVXMLObject &item) {
        if (item.tag != "element") {
            refuseText(place, item.tag, "no element of a list");
        }
        visit(item);
    });
}

// ---- Single values ----

std::int32_t numberOf(const Place &place, const ZUVXMLObject &element)
{
    DDS_XMLContext context = {};
    const DDS_Long number = DDS_XMLHelper_str_to_int(&context, element.text.c_str());
    if (context.error != 0) {
        refuseText(place, element.text, "no number");
    }
    return number;
}

std::int32_t numberInRange(const Place &place, const ZUVXMLObject &element,
                           const dds::QosRange &range)
{
    const std::int32_t number = numberOf(place, element);
    const bool isUnlimited = range.mayBeUnlimited && number == DDS_LENGTH_UNLIMITED;
    if (number < range.least && !isUnlimited) {
        refuseText(place, element.text, "too small");
    }
    return number;
}

DDS_Boolean booleanOf(const Place &place, const ZUVXMLObject &element)
{
    int value = 0;
    if (!MAVOString_strToBoolean(element.text.c_str(), &value)) {
        refuseText(place, element.text, "no boolean");
    }
    return value != 0 ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

// A name, with or without "DDS_" in front.
std::int32_t enumeratorOf(const Place &place, std::string_view text, const QosNames &names)
{
    constexpr std::string_view kPrefix = "DDS_";
    const std::string_view name = trimmed(text);
    const std::string_view bare = name.starts_with(kPrefix) ? name.substr(kPrefix.size()) : name;
    const auto found = std::find_if(names.enumerators.begin(), names.enumerators.end(),
                                    [&](const auto &one) { return bare == one.name; });
    if (found == names.enumerators.end()) {
        refuseText(place, name, "none of the names that it may have");
    }
    return found->value;
}

std::int32_t maskOf(const Place &place, std::string_view text, const QosNames &names)
{
    std::int32_t mask = 0;
    for (bool isLast = false; !isLast;) {
        const std::size_t end = text.find('|');
        mask |= enumeratorOf(place, text.substr(0, end), names);
        isLast = end == text.npos;
        text.remove_prefix(isLast ? text.size() : end + 1);
    }
    return mask;
}

DDS_Duration_t durationOf(const Place &place, const ZUVXMLObject &element)
{
    constexpr std::uint32_t kNanosecondsOfASecond = 1'000'000'000;
    DDS_Duration_t duration = {0, 0};
    DDS_XMLContext context = {};
    forEachChild(element, [&](const ZUVXMLObject &part) {
        const char *const text = part.text.c_str();
        if (part.tag != "sec" && part.tag != "nanosec") {
            refuseText(place, part.tag, "no part of a duration");
        }
        if (*text == '\0') {
            return;
        }
        if (part.tag == "sec") {
            duration.sec = DDS_XMLHelper_str_to_int(&context, text);
        } else {
            duration.nanosec = DDS_XMLHelper_str_to_unsigned_int(&context, text);
        }
        if (context.error != 0) {
            refuseText(place, part.text, "no number");
        }
    });
    if (DDS_Duration_is_infinite(&duration)) {
        return DDS_DURATION_INFINITE;
    }
    if (duration.sec < 0 || duration.nanosec >= kNanosecondsOfASecond) {
        refuse(place, "a duration has 0 or more seconds and less than one in nanoseconds");
    }
    return duration;
}

void replaceText(char *&text, const char *value)
{
    if (DDS_String_replace(&text, value) == nullptr) {
        throw std::bad_alloc();
    }
}

// The text of a name: blanks within it become one each.
void readName(const Place &place, const ZUVXMLObject &element, char *&name)
{
    constexpr std::size_t kNameLengthMax = 255;
    HeapString collapsed;
    for (const char letter : trimmed(element.text)) {
        const bool isBlank = kBlanks.find(letter) != kBlanks.npos;
        if (!isBlank) {
            collapsed += letter;
        } else if (collapsed.back() != ' ') {
            collapsed += ' ';
        }
    }
    if (collapsed.size() > kNameLengthMax) {
        refuseText(place, collapsed, "too long for a name");
    }
    replaceText(name, collapsed.c_str());
}

// ---- Lists ----

std::array<std::int8_t, 256> makeBase64Digits()
{
    std::array<std::int8_t, 256> digits;
    digits.fill(-1);
    constexpr std::string_view kLetters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t index = 0; index < kLetters.size(); ++index) {
        digits[static_cast<unsigned char>(kLetters[index])] = static_cast<std::int8_t>(index);
    }
    return digits;
}

// Base64 (RFC 4648, 4), with blanks anywhere.
HeapVector<DDS_Octet> octetsOf(const Place &place, const ZUVXMLObject &element)
{
    static const std::array<std::int8_t, 256> digits = makeBase64Digits();
    HeapVector<DDS_Octet> octets;
    std::uint32_t bits = 0;
    std::size_t digitCount = 0;
    std::size_t padCount = 0;
    for (const char letter : element.text) {
        if (kBlanks.find(letter) != kBlanks.npos) {
            continue;
        }
        const std::int8_t digit = digits[static_cast<unsigned char>(letter)];
        if (letter == '=' ? ++padCount > 2 : digit < 0 || padCount > 0) {
            refuseText(place, element.text, "not in Base64");
        }
        if (letter != '=') {
            bits = bits << 6 | static_cast<std::uint32_t>(digit);
            if (++digitCount % 4 != 1) {
                octets.push_back(static_cast<DDS_Octet>(bits >> (8 - digitCount % 4 * 2) % 8));
            }
        }
    }
    if ((digitCount + padCount) % 4 != 0 || digitCount % 4 == 1) {
        refuseText(place, element.text, "not in Base64");
    }
    return octets;
}

void readOctets(const Place &place, const ZUVXMLObject &element, DDS_OctetSeq &list)
{
    const HeapVector<DDS_Octet> octets = octetsOf(place, element);
    if (!DDS_OctetSeq_from_array(&list, octets.data(), static_cast<DDS_Long>(octets.size()))) {
        throw std::bad_alloc();
    }
}

void readTexts(const Place &place, const ZUVXMLObject &element, DDS_StringSeq &list)
{
    DDS_Long count = 0;
    forEachItem(element, place, [&](const ZUVXMLObject &) { ++count; });
    if (!DDS_StringSeq_ensure_length(&list, count, count)) {
        throw std::bad_alloc();
    }
    DDS_Long index = 0;
    forEachChild(element, [&](const ZUVXMLObject &item) {
        replaceText(*DDS_StringSeq_get_reference(&list, index++), item.text.c_str());
    });
}

void readRepresentations(const Place &place, const ZUVXMLObject &element, const QosNames &names,
                         DDS_DataRepresentationIdSeq &list)
{
    HeapVector<DDS_DataRepresentationId_t> ids;
    forEachItem(element, place, [&](const ZUVXMLObject &item) {
        ids.push_back(
            static_cast<DDS_DataRepresentationId_t>(enumeratorOf(place, item.text, names)));
    });
    if (!DDS_DataRepresentationIdSeq_from_array(&list, ids.data(),
                                                static_cast<DDS_Long>(ids.size()))) {
        throw std::bad_alloc();
    }
}

void readProperties(const Place &place, const ZUVXMLObject &element, DDS_PropertyQosPolicy &policy)
{
    forEachItem(element, place, [&](const ZUVXMLObject &item) {
        const char *name = "";
        const char *value = "";
        DDS_Boolean isPropagated = DDS_BOOLEAN_FALSE;
        forEachChild(item, [&](const ZUVXMLObject &part) {
            if (part.tag == "name") {
                name = part.text.c_str();
            } else if (part.tag == "value") {
                value = part.text.c_str();
            } else if (part.tag == "propagate") {
                isPropagated = booleanOf(place, part);
            } else {
                refuseText(place, part.tag, "no part of a property");
            }
        });
        if (DDS_PropertyQosPolicyHelper_assert_property(&policy, name, value, isPropagated) !=
            DDS_RETCODE_OK) {
            throw std::bad_alloc();
        }
    });
}

void readField(const QosField &field, const Place &place, const ZUVXMLObject &element, void *value)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        *static_cast<DDS_Boolean *>(value) = booleanOf(place, element);
        break;
    case QosFieldKind::kLong:
        *static_cast<DDS_Long *>(value) = numberInRange(place, element, *field.range);
        break;
    case QosFieldKind::kEnum:
        *static_cast<DDS_Long *>(value) = enumeratorOf(place, element.text, *field.names);
        break;
    case QosFieldKind::kMask:
        *static_cast<DDS_Long *>(value) = maskOf(place, element.text, *field.names);
        break;
    case QosFieldKind::kDuration:
        *static_cast<DDS_Duration_t *>(value) = durationOf(place, element);
        break;
    case QosFieldKind::kText:
        readName(place, element, *static_cast<char **>(value));
        break;
    case QosFieldKind::kOctets:
        readOctets(place, element, *static_cast<DDS_OctetSeq *>(value));
        break;
    case QosFieldKind::kTexts:
        readTexts(place, element, *static_cast<DDS_StringSeq *>(value));
        break;
    case QosFieldKind::kRepresentations:
        readRepresentations(place, element, *field.names,
                            *static_cast<DDS_DataRepresentationIdSeq *>(value));
        break;
    case QosFieldKind::kProperties:
        readProperties(place, element, *static_cast<DDS_PropertyQosPolicy *>(value));
        break;
    }
}

// ---- Structures ----

// Fields of a nested structure have its tag and a dot in front.
void readFields(const dds::QosPolicy &table, const ZUVXMLObject &element, void *policy,
                std::string_view place, std::string_view structure)
{
    forEachChild(element, [&](const ZUVXMLObject &child) {
        HeapString tag(structure);
        tag += child.tag;
        const auto found = std::find_if(table.fields.begin(), table.fields.end(),
                                        [&](const QosField &field) { return tag == field.tag; });
        if (found != table.fields.end()) {
            readField(*found, {place, tag, child}, child,
                      static_cast<char *>(policy) + found->offset);
            return;
        }
        tag += '.';
        const bool isStructure =
            std::any_of(table.fields.begin(), table.fields.end(), [&](const QosField &field) {
                return std::string_view(field.tag).starts_with(std::string_view(tag));
            });
        if (!isStructure) {
            const std::string_view inner = structure.substr(0, structure.find('.'));
            refuse({place, inner, child},
                   HeapString("there is no '").append(child.tag).append("'"));
        }
        readFields(table, child, policy, place, tag);
    });
}

} // namespace

void readPolicy(const dds::QosPolicy &table, const ZUVXMLObject &element, void *policy,
                std::string_view place)
{
    readFields(table, element, policy, place, "");
}

void readQos(const dds::QosRecord &table, const ZUVXMLObject &element, void *record)
{
    forEachChild(element, [&](const ZUVXMLObject &child) {
        const auto found = std::find_if(
            table.members.begin(), table.members.end(),
            [&](const dds::QosMember &member) { return child.tag == member.policy->tag; });
        if (found == table.members.end()) {
            refuse({"", "", child},
                   HeapString("there is no policy '").append(child.tag).append("'"));
        }
        readPolicy(*found->policy, child, static_cast<char *>(record) + found->offset, child.tag);
    });
}

} // namespace zuv::ddsxml
