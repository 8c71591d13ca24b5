// A QoS that is printed and read again is the same QoS.
#include <random>

#include "QosTree.h"
#include "platform/dds/QosTable.hpp"
#include "platform/ddsxml/QosPrinter.hpp"
#include "platform/ddsxml/XmlObject.hpp"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"

namespace
{

using zuv::dds::QosField;
using zuv::dds::QosFieldKind;
using zuv::dds::QosMember;
using zuv::dds::QosRecord;
using zuv::ddsxml::QosValue;
using zuv_test::QosTree;

// Records whose fields have any value that they may have.
class RandomQos
{
public:
    explicit RandomQos(unsigned seed) : generator_(seed) {}

    void fill(QosValue &value)
    {
        for (const QosMember &member : value.table().members) {
            for (const QosField &field : member.policy->fields) {
                fill(zuv::dds::qosValueAt(value.record(), member, field), field);
            }
        }
    }

private:
    std::int32_t between(std::int32_t least, std::int32_t greatest)
    {
        return std::uniform_int_distribution<std::int32_t>(least, greatest)(generator_);
    }
    bool isTrue() { return between(0, 1) != 0; }

    std::int32_t one(const zuv::dds::QosNames &names)
    {
        return names.enumerators[between(0, static_cast<int>(names.enumerators.size()) - 1)].value;
    }

    // Any text that a document can hold.
    std::string text()
    {
        static const char *const letters[] = {
            "a",  "Z",  "0",  "_", " ", "&", "<", ">", "\"",           "'", "]]>",
            "\n", "\t", "\r", "é", "–", "😀", ":", "*", "\xe2\x82\xac", "-"};
        std::string result;
        for (int count = between(0, 12); count > 0; --count) {
            result += letters[between(0, std::size(letters) - 1)];
        }
        return result;
    }
    std::string name()
    {
        std::string result = "n";
        for (int count = between(0, 30); count > 0; --count) {
            result += isTrue() ? "x" : " é";
        }
        return result;
    }

    void fill(void *place, const QosField &field)
    {
        switch (field.kind) {
        case QosFieldKind::kBoolean:
            *static_cast<DDS_Boolean *>(place) = isTrue();
            break;
        case QosFieldKind::kLong:
            *static_cast<DDS_Long *>(place) = field.range->mayBeUnlimited && between(0, 3) == 0
                                                  ? DDS_LENGTH_UNLIMITED
                                                  : between(field.range->least, INT32_MAX);
            break;
        case QosFieldKind::kEnum:
            *static_cast<DDS_Long *>(place) = one(*field.names);
            break;
        case QosFieldKind::kMask:
            *static_cast<DDS_Long *>(place) = one(*field.names) | one(*field.names);
            break;
        case QosFieldKind::kDuration:
            *static_cast<DDS_Duration_t *>(place) =
                between(0, 3) == 0
                    ? DDS_DURATION_INFINITE
                    : DDS_Duration_t{between(0, INT32_MAX - 1),
                                     static_cast<std::uint32_t>(between(0, 999'999'999))};
            break;
        case QosFieldKind::kText:
            if (isTrue()) {
                DDS_String_replace(static_cast<char **>(place), name().c_str());
            }
            break;
        case QosFieldKind::kOctets: {
            std::vector<DDS_Octet> octets(between(0, 40));
            for (DDS_Octet &octet : octets) {
                octet = static_cast<DDS_Octet>(between(0, 255));
            }
            DDS_OctetSeq_from_array(static_cast<DDS_OctetSeq *>(place), octets.data(),
                                    static_cast<DDS_Long>(octets.size()));
            break;
        }
        case QosFieldKind::kTexts: {
            auto *const texts = static_cast<DDS_StringSeq *>(place);
            DDS_StringSeq_set_length(texts, between(0, 4));
            for (DDS_Long index = 0; index < DDS_StringSeq_get_length(texts); ++index) {
                DDS_String_replace(DDS_StringSeq_get_reference(texts, index), text().c_str());
            }
            break;
        }
        case QosFieldKind::kRepresentations: {
            std::vector<DDS_DataRepresentationId_t> ids(between(0, 3));
            for (DDS_DataRepresentationId_t &id : ids) {
                id = static_cast<DDS_DataRepresentationId_t>(one(*field.names));
            }
            DDS_DataRepresentationIdSeq_from_array(
                static_cast<DDS_DataRepresentationIdSeq *>(place), ids.data(),
                static_cast<DDS_Long>(ids.size()));
            break;
        }
        case QosFieldKind::kProperties:
            for (int count = between(0, 4); count > 0; --count) {
                DDS_PropertyQosPolicyHelper_assert_property(
                    static_cast<DDS_PropertyQosPolicy *>(place), text().c_str(), text().c_str(),
                    isTrue());
            }
            break;
        }
    }

    std::mt19937 generator_;
};

class QosRoundTrip : public zuv_test::QosTree, public testing::WithParamInterface<unsigned>
{
};

INSTANTIATE_TEST_SUITE_P(Records, QosRoundTrip, testing::Range(0U, 6U), [](const auto &test) {
    return std::string(zuv::dds::kQosRecords[test.param]->name);
});

TEST_P(QosRoundTrip, givesTheSameRecord)
{
    const QosRecord &table = *zuv::dds::kQosRecords[GetParam()];
    RandomQos random(GetParam());
    constexpr int kCount = 1000;
    for (int round = 0; round < kCount; ++round) {
        QosValue qos(table);
        random.fill(qos);
        const std::string printed(zuv::ddsxml::printQos(table, qos.record()));
        ASSERT_TRUE(add(library("l" + std::to_string(round), profile("name='p'", printed))))
            << printed;
        const ZUVXMLObject *const read = element("l" + std::to_string(round) + "::p")->firstChild;
        ASSERT_NE(read->qos, nullptr);
        ASSERT_TRUE(zuv::dds::qosEquals(table, qos.record(), read->qos->record())) << printed;
    }
}

TEST_P(QosRoundTrip, printsTheDefaultsOfARecordOfItsOwn)
{
    const QosRecord &table = *zuv::dds::kQosRecords[GetParam()];
    const QosValue defaults(table);
    const std::string printed(zuv::ddsxml::printQos(table, defaults.record()));
    EXPECT_EQ(printed.find('<' + std::string(table.tag) + '>'), 0U);
    ASSERT_TRUE(add(library("l", profile("name='p'", printed))));
    EXPECT_TRUE(
        zuv::dds::qosEquals(table, defaults.record(), element("l::p")->firstChild->qos->record()));
}

TEST_F(QosTree, isPrintedForReaders)
{
    DDS_PublisherQos qos;
    ASSERT_EQ(DDS_PublisherQos_initialize(&qos), DDS_RETCODE_OK);
    DDS_StringSeq_set_length(&qos.partition.name, 1);
    DDS_String_replace(DDS_StringSeq_get_reference(&qos.partition.name, 0), "a<b");
    char *const text = DDS_XMLPublisherQos_to_string(&qos);
    EXPECT_STREQ(text, "<publisher_qos>\n"
                       "  <presentation>\n"
                       "    <access_scope>INSTANCE_PRESENTATION_QOS</access_scope>\n"
                       "    <coherent_access>false</coherent_access>\n"
                       "    <ordered_access>false</ordered_access>\n"
                       "  </presentation>\n"
                       "  <partition>\n"
                       "    <name>\n"
                       "      <element>a&lt;b</element>\n"
                       "    </name>\n"
                       "  </partition>\n"
                       "  <group_data>\n"
                       "    <value></value>\n"
                       "  </group_data>\n"
                       "  <entity_factory>\n"
                       "    <autoenable_created_entities>true</autoenable_created_entities>\n"
                       "  </entity_factory>\n"
                       "</publisher_qos>\n");
    ZUVOsapiHeap_free(text);

    zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(DDS_XMLPublisherQos_to_string(&qos), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(DDS_XMLPublisherQos_to_string(nullptr), nullptr);
    EXPECT_EQ(log.lines().size(), 2U);
    DDS_PublisherQos_finalize(&qos);
}

} // namespace
