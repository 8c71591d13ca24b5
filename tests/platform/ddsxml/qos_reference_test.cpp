// The schema and the reference of QoS say what the table of policies says.
//
// ZUV_WRITE_QOS_REFERENCE=1 platform_ddsxml_test --gtest_filter=QosReference.* writes the reference anew.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dds/QosPolicies.h"
#include "platform/dds/QosTable.hpp"
#include "platform/ddsxml/SchemaTexts.h"

namespace
{

using zuv::dds::QosEffect;
using zuv::dds::QosField;
using zuv::dds::QosFieldKind;
using zuv::dds::QosMember;
using zuv::dds::QosPolicy;
using zuv::dds::QosRecord;

// "structure.field" without the structure; and that structure, or "".
std::string fieldOf(const QosField &field)
{
    const std::string tag = field.tag;
    const std::size_t dot = tag.find('.');
    return dot == tag.npos ? tag : tag.substr(dot + 1);
}
std::string structureOf(const QosField &field)
{
    const std::string tag = field.tag;
    const std::size_t dot = tag.find('.');
    return dot == tag.npos ? "" : tag.substr(0, dot);
}

// ---- The text of the schema ----

std::string elementOf(const std::string &name, const std::string &type)
{
    return "<xs:element name=\"" + name + "\" type=\"" + type + "\" minOccurs=\"0\"/>";
}

std::string complexType(const std::string &name, const std::string &elements)
{
    return "<xs:complexType name=\"" + name + "\"><xs:all>" + elements +
           "</xs:all></xs:complexType>";
}

std::string schemaTypeOf(const QosField &field)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        return "xs:boolean";
    case QosFieldKind::kLong:
        return field.range->schemaType;
    case QosFieldKind::kEnum:
        return field.names->schemaType;
    case QosFieldKind::kDuration:
        return "duration";
    case QosFieldKind::kText:
        return "elementName";
    case QosFieldKind::kOctets:
        return "xs:base64Binary";
    case QosFieldKind::kTexts:
        return "stringSeq";
    case QosFieldKind::kRepresentations:
        return "dataRepresentationSeq";
    case QosFieldKind::kMask:
    case QosFieldKind::kProperties:
        break;
    }
    return "";
}

// "NONE|(A|B)( ?\| ?(A|B))*"
std::string maskElement(const QosField &field)
{
    std::string bits;
    for (const auto &bit : field.names->enumerators.subspan(1)) {
        bits += (bits.empty() ? "" : "|") + std::string(bit.name);
    }
    return "<xs:element name=\"" + fieldOf(field) +
           "\" minOccurs=\"0\"><xs:simpleType><xs:restriction base=\"xs:token\"><xs:pattern "
           "value=\"" +
           field.names->enumerators[0].name + "|(" + bits + ")( ?\\| ?(" + bits +
           "))*\"/></xs:restriction></xs:simpleType></xs:element>";
}

std::string fieldElements(const QosPolicy &policy, const std::string &structure)
{
    std::string text;
    for (const QosField &field : policy.fields) {
        if (structureOf(field) == structure) {
            text += field.kind == QosFieldKind::kMask
                        ? maskElement(field)
                        : elementOf(fieldOf(field), schemaTypeOf(field));
        }
    }
    return text;
}

// The types of a policy: of its nested structure, and of itself.
std::vector<std::string> schemaOf(const QosPolicy &policy)
{
    std::string structure;
    for (const QosField &field : policy.fields) {
        structure = structureOf(field).empty() ? structure : structureOf(field);
    }
    std::string elements = fieldElements(policy, "");
    std::vector<std::string> types;
    if (policy.nestedSchemaType != nullptr) {
        types.push_back(complexType(policy.nestedSchemaType, fieldElements(policy, structure)));
        elements += elementOf(structure, policy.nestedSchemaType);
    }
    types.push_back(complexType(policy.schemaType, elements));
    return types;
}

std::string schemaOf(const zuv::dds::QosNames &names)
{
    std::string text;
    for (const auto &one : names.enumerators) {
        text += "<xs:enumeration value=\"" + std::string(one.name) + "\"/>";
    }
    return "<xs:simpleType name=\"" + std::string(names.schemaType) +
           "\"><xs:restriction base=\"xs:token\">" + text + "</xs:restriction></xs:simpleType>";
}

// The committed schema without its documentation and without blanks between elements.
std::string committedSchema()
{
    std::string text;
    for (const char *piece : ZUV_DDS_QOS_PROFILES_DEFINITIONS_XSD) {
        text += piece;
    }
    text = std::regex_replace(text, std::regex("<!--[^]*?-->"), "");
    text = std::regex_replace(text, std::regex("<xs:annotation>[^]*?</xs:annotation>"), "");
    text = std::regex_replace(text, std::regex(">\\s+<"), "><");
    return std::regex_replace(text, std::regex("(<xs:element [^>]*[^/])></xs:element>"), "$1/>");
}

TEST(QosSchema, hasTheTypesOfThePolicies)
{
    const std::string schema = committedSchema();
    for (const QosRecord *const record : zuv::dds::kQosRecords) {
        for (const QosMember &member : record->members) {
            for (const QosField &field : member.policy->fields) {
                if (field.names != nullptr && field.names->schemaType != nullptr) {
                    EXPECT_NE(schema.find(schemaOf(*field.names)), schema.npos)
                        << schemaOf(*field.names);
                }
            }
            // A list of properties has a form of its own, which other elements share.
            if (member.policy->fields[0].kind == QosFieldKind::kProperties) {
                continue;
            }
            for (const std::string &type : schemaOf(*member.policy)) {
                EXPECT_NE(schema.find(type), schema.npos) << type;
            }
        }
    }
}

TEST(QosSchema, hasThePoliciesOfTheRecords)
{
    const std::string schema = committedSchema();
    for (const QosRecord *const record : zuv::dds::kQosRecords) {
        std::string elements;
        for (const QosMember &member : record->members) {
            elements += elementOf(member.policy->tag, member.policy->schemaType);
        }
        EXPECT_NE(schema.find("<xs:all>" + elements + "</xs:all>"), schema.npos) << elements;
    }
}

// ---- The reference ----

std::string namesText(const zuv::dds::QosNames &names)
{
    std::string text;
    for (const auto &one : names.enumerators) {
        text += (text.empty() ? "`" : ", `") + std::string(one.name) + "`";
    }
    return text;
}

std::string valuesOf(const QosField &field)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        return "`true`, `false`";
    case QosFieldKind::kLong:
        return field.range->least == INT32_MIN
                   ? "number"
                   : "number from " + std::to_string(field.range->least) +
                         (field.range->mayBeUnlimited ? ", `LENGTH_UNLIMITED`" : "");
    case QosFieldKind::kEnum:
        return namesText(*field.names);
    case QosFieldKind::kMask:
        return namesText(*field.names) + ", several parted by a bar";
    case QosFieldKind::kDuration:
        return "duration";
    case QosFieldKind::kText:
        return "name";
    case QosFieldKind::kOctets:
        return "octets in Base64";
    case QosFieldKind::kTexts:
        return "list of texts";
    case QosFieldKind::kRepresentations:
        return "list of " + namesText(*field.names);
    case QosFieldKind::kProperties:
        return "list of properties";
    }
    return "";
}

std::string secondsText(const DDS_Duration_t &duration)
{
    if (DDS_Duration_is_infinite(&duration)) {
        return "infinite";
    }
    const std::uint32_t milliseconds = duration.nanosec / 1'000'000;
    return duration.sec != 0 || milliseconds == 0 ? std::to_string(duration.sec) + " s"
                                                  : std::to_string(milliseconds) + " ms";
}

std::string numberText(const QosField &field, std::int32_t number)
{
    switch (field.kind) {
    case QosFieldKind::kBoolean:
        return number != 0 ? "`true`" : "`false`";
    case QosFieldKind::kLong:
        return number == DDS_LENGTH_UNLIMITED ? "`LENGTH_UNLIMITED`" : std::to_string(number);
    case QosFieldKind::kEnum: {
        const auto &all = field.names->enumerators;
        const auto found = std::find_if(all.begin(), all.end(),
                                        [number](const auto &one) { return one.value == number; });
        return "`" + std::string(found->name) + "`";
    }
    case QosFieldKind::kMask: {
        std::string text;
        for (const auto &bit : field.names->enumerators) {
            if ((bit.value & number) != 0) {
                text += (text.empty() ? "`" : ", `") + std::string(bit.name) + "`";
            }
        }
        return text;
    }
    case QosFieldKind::kDuration:
        return secondsText(field.defaultDuration);
    default:
        return "empty";
    }
}

std::string effectOf(const QosField &field)
{
    const std::string note = field.note;
    const auto with = [&note](const std::string &text) {
        return note.empty() ? text : text + " " + note;
    };
    switch (field.effect) {
    case QosEffect::kMiddleware:
        return with("Acts.");
    case QosEffect::kAnnounced:
        return with("Set in the middleware, which does not act on it. Told once.");
    case QosEffect::kSystem:
        return note;
    case QosEffect::kKept:
        return with("Kept only: the middleware has no such field. Told once.");
    }
    return "";
}

// A policy and the records that have it.
struct Use {
    const QosPolicy *policy;
    std::vector<std::pair<const QosRecord *, const QosMember *>> places;
};

std::vector<Use> usesOfPolicies()
{
    std::vector<Use> uses;
    for (const QosRecord *const record : zuv::dds::kQosRecords) {
        for (const QosMember &member : record->members) {
            auto found = std::find_if(uses.begin(), uses.end(), [&member](const Use &use) {
                return use.policy == member.policy;
            });
            if (found == uses.end()) {
                found = uses.insert(uses.end(), {member.policy, {}});
            }
            found->places.emplace_back(record, &member);
        }
    }
    std::stable_sort(uses.begin(), uses.end(), [](const Use &one, const Use &other) {
        return std::string(one.policy->tag) < other.policy->tag;
    });
    return uses;
}

// One default for all records, or also those that differ.
std::string defaultOf(const Use &use, const QosField &field)
{
    const std::string usual = numberText(field, field.defaultNumber);
    std::string text = usual;
    for (const auto &[record, member] : use.places) {
        const std::string own = numberText(field, zuv::dds::defaultNumberOf(*member, field));
        if (own != usual) {
            text += "; in `" + std::string(record->tag) + "` " + own;
        }
    }
    return text;
}

std::string referenceOf(const Use &use)
{
    std::ostringstream out;
    out << "### `" << use.policy->tag << "`\n\n";
    const char *separator = "Of ";
    for (const auto &[record, member] : use.places) {
        out << separator << "`" << record->tag << "`";
        separator = ", ";
    }
    out << (use.policy->mayChange ? ". May change on a live entity.\n\n"
                                  : ". Fixed once the entity is enabled.\n\n");
    out << "| Field | Values | Default | What becomes of it |\n|---|---|---|---|\n";
    for (const QosField &field : use.policy->fields) {
        out << "| `" << field.tag << "` | " << valuesOf(field) << " | " << defaultOf(use, field)
            << " | " << effectOf(field) << " |\n";
    }
    out << "\n";
    return out.str();
}

std::string reference()
{
    std::string text;
    for (const Use &use : usesOfPolicies()) {
        text += referenceOf(use);
    }
    return text;
}

TEST(QosReference, isThatOfTheTable)
{
    const std::string kStart = "<!-- The table of policies: written by a test. -->\n\n";
    const std::string kEnd = "<!-- End of the table. -->";
    std::ifstream in(QOS_REFERENCE);
    std::ostringstream content;
    content << in.rdbuf();
    std::string document = content.str();
    const std::size_t start = document.find(kStart);
    const std::size_t end = document.find(kEnd);
    ASSERT_TRUE(start != document.npos && end != document.npos) << QOS_REFERENCE;
    const std::size_t from = start + kStart.size();
    if (std::getenv("ZUV_WRITE_QOS_REFERENCE") != nullptr) {
        document.replace(from, end - from, reference());
        std::ofstream(QOS_REFERENCE) << document;
        return;
    }
    EXPECT_EQ(document.substr(from, end - from), reference());
}

} // namespace
