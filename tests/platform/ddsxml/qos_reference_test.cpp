// The reference of QoS says what the table of policies says.
//
// ZUV_WRITE_QOS_REFERENCE=1 platform_ddsxml_test --gtest_filter=QosReference.* writes the reference anew.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/dds/QosPolicies.h"
#include "platform/dds/QosTable.hpp"

namespace
{

using zuv::dds::QosEffect;
using zuv::dds::QosField;
using zuv::dds::QosFieldKind;
using zuv::dds::QosMember;
using zuv::dds::QosPolicy;
using zuv::dds::QosRecord;

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
    case QosFieldKind::kLong: {
        const std::string unit = field.unit;
        return (unit.empty() ? "number" : "number of " + unit) +
               (field.range->least == INT32_MIN ? ""
                                                : " from " + std::to_string(field.range->least)) +
               (field.range->mayBeUnlimited ? ", `LENGTH_UNLIMITED`" : "");
    }
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
