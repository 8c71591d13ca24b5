// The values that policies may have in a document, and those that are refused.
#include "QosTree.h"
#include "platform/ddsxml/XmlObject.hpp"

namespace
{

using zuv_test::QosTree;

class QosReading : public QosTree
{
protected:
    const DDS_DataReaderQos &read(const std::string &policies)
    {
        const std::string name = "l" + std::to_string(++count_);
        EXPECT_TRUE(
            add(library(name, "<datareader_qos name='q'>" + policies + "</datareader_qos>")))
            << policies;
        return *readerQos(name + "::q");
    }
    DDS_Duration_t readDuration(const std::string &parts)
    {
        return read("<deadline><period>" + parts + "</period></deadline>").deadline.period;
    }
    DDS_Long readNumber(const std::string &text)
    {
        return read("<resource_limits><max_samples>" + text + "</max_samples></resource_limits>")
            .resource_limits.max_samples;
    }
    // Why policies are refused, behind "!read text, line 1: datareader_qos ::l::q: ".
    std::string why(const std::string &policies)
    {
        const std::string text =
            refusal(library("l", "<datareader_qos name='q'>" + policies + "</datareader_qos>"));
        const std::string start = "!read text, line 1: datareader_qos ::l::q: ";
        return text.compare(0, start.size(), start) == 0 ? text.substr(start.size()) : text;
    }

private:
    int count_ = 0;
};

TEST_F(QosReading, knowsNumbersAndTheirNames)
{
    EXPECT_EQ(readNumber("32"), 32);
    EXPECT_EQ(readNumber(" 0x20\n"), 32);
    EXPECT_EQ(readNumber("LENGTH_UNLIMITED"), DDS_LENGTH_UNLIMITED);
    EXPECT_EQ(readNumber("dds_length_unlimited"), DDS_LENGTH_UNLIMITED);
    EXPECT_EQ(readNumber("-1"), DDS_LENGTH_UNLIMITED);
}

TEST_F(QosReading, refusesNumbersOutOfRange)
{
    const auto limits = [](const char *text) {
        return "<resource_limits><max_samples>" + std::string(text) +
               "</max_samples></resource_limits>";
    };
    EXPECT_EQ(why(limits("0")), "resource_limits.max_samples: '0' is too small");
    EXPECT_EQ(why(limits("-2")), "resource_limits.max_samples: '-2' is too small");
    EXPECT_EQ(why(limits("much")), "resource_limits.max_samples: 'much' is no number");
    EXPECT_EQ(why(limits("2147483648")), "resource_limits.max_samples: '2147483648' is no number");
    EXPECT_EQ(why(limits("")), "resource_limits.max_samples: '' is no number");
    EXPECT_EQ(why("<history><depth>LENGTH_UNLIMITED</depth></history>"),
              "history.depth: 'LENGTH_UNLIMITED' is too small");
}

TEST_F(QosReading, knowsDurations)
{
    EXPECT_EQ(readDuration("<sec>5</sec><nanosec>7</nanosec>").sec, 5);
    EXPECT_EQ(readDuration("<sec>5</sec><nanosec>7</nanosec>").nanosec, 7U);
    EXPECT_EQ(readDuration("<nanosec>7</nanosec>").sec, 0) << "a part that is left out is zero";
    EXPECT_EQ(readDuration("<sec/>").nanosec, 0U);
    const DDS_Duration_t zero = readDuration("<sec>DURATION_ZERO_SEC</sec>");
    EXPECT_TRUE(DDS_Duration_is_zero(&zero));
    for (const char *infinite :
         {"<sec>DURATION_INFINITE_SEC</sec><nanosec>DURATION_INFINITE_NSEC</nanosec>",
          "<sec>DURATION_INFINITE_SEC</sec>", "<nanosec>DDS_DURATION_INFINITE_NSEC</nanosec>"}) {
        EXPECT_EQ(readDuration(infinite).sec, DDS_DURATION_INFINITE_SEC) << infinite;
        EXPECT_EQ(readDuration(infinite).nanosec, DDS_DURATION_INFINITE_NSEC) << infinite;
    }
}

TEST_F(QosReading, refusesWhatIsNoDuration)
{
    const auto period = [](const char *parts) {
        return "<deadline><period>" + std::string(parts) + "</period></deadline>";
    };
    EXPECT_EQ(why(period("<sec>soon</sec>")), "deadline.period: 'soon' is no number");
    EXPECT_EQ(why(period("<seconds>1</seconds>")),
              "deadline.period: 'seconds' is no part of a duration");
    const char *const kBounds = "deadline.period: a duration has 0 or more seconds and less than "
                                "one in nanoseconds";
    EXPECT_EQ(why(period("<sec>-1</sec>")), kBounds);
    EXPECT_EQ(why(period("<nanosec>1000000000</nanosec>")), kBounds);
}

TEST_F(QosReading, knowsNamesOfValues)
{
    EXPECT_EQ(read("<history><kind> KEEP_ALL_HISTORY_QOS </kind></history>").history.kind,
              DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(read("<history><kind>DDS_KEEP_ALL_HISTORY_QOS</kind></history>").history.kind,
              DDS_KEEP_ALL_HISTORY_QOS);
    EXPECT_EQ(why("<history><kind>KEEP_SOME</kind></history>"),
              "history.kind: 'KEEP_SOME' is none of the names that it may have");
    EXPECT_TRUE(read("<reader_resource_limits><dynamically_allocate_fragmented_samples>1"
                     "</dynamically_allocate_fragmented_samples></reader_resource_limits>")
                    .reader_resource_limits.dynamically_allocate_fragmented_samples);
    EXPECT_EQ(why("<reader_resource_limits><dynamically_allocate_fragmented_samples>maybe"
                  "</dynamically_allocate_fragmented_samples></reader_resource_limits>"),
              "reader_resource_limits.dynamically_allocate_fragmented_samples: 'maybe' is no "
              "boolean");
    const DDS_DataRepresentationIdSeq &ids =
        read("<representation><value><element>XCDR2_DATA_REPRESENTATION</element>"
             "<element>AUTO_DATA_REPRESENTATION</element></value></representation>")
            .representation.value;
    ASSERT_EQ(DDS_DataRepresentationIdSeq_get_length(&ids), 2);
    EXPECT_EQ(DDS_DataRepresentationIdSeq_get(&ids, 0), DDS_XCDR2_DATA_REPRESENTATION);
    EXPECT_EQ(DDS_DataRepresentationIdSeq_get(&ids, 1), DDS_AUTO_DATA_REPRESENTATION);
}

TEST_F(QosReading, knowsNestedStructures)
{
    EXPECT_EQ(read("<protocol><rtps_reliable_reader><max_heartbeat_response_delay><sec>3</sec>"
                   "</max_heartbeat_response_delay></rtps_reliable_reader></protocol>")
                  .protocol.rtps_reliable_reader.max_heartbeat_response_delay.sec,
              3);
    EXPECT_EQ(why("<protocol><rtps_reliable_reader><delay/></rtps_reliable_reader></protocol>"),
              "protocol.rtps_reliable_reader: there is no 'delay'");
}

// Of all records: what has a name may be written with it, and nothing else takes that name.
TEST_F(QosReading, knowsTheSymbolsOfEachField)
{
    using zuv::dds::QosFieldKind;
    int count = 0;
    for (const zuv::dds::QosRecord *const record : zuv::dds::kQosRecords) {
        for (const zuv::dds::QosMember &member : record->members) {
            for (const zuv::dds::QosField &field : member.policy->fields) {
                // The field of a QoS with this text; null if it is refused.
                const auto read = [&](const std::string &text) -> const void * {
                    const zuv_test::LogCapture log;
                    std::string content = text;
                    std::string path =
                        std::string(record->tag) + "." + member.policy->tag + "." + field.tag;
                    for (std::size_t end = path.size(); end != path.npos;) {
                        path.resize(end);
                        end = path.rfind('.');
                        const std::string tag = path.substr(end == path.npos ? 0 : end + 1);
                        content = "<" + tag + ">" + content + "</" + tag + ">";
                    }
                    const std::string name = "l" + std::to_string(++count);
                    if (!add(library(name, content))) {
                        return nullptr;
                    }
                    const ZUVXMLObject &qos = *element(name)->firstChild;
                    return zuv::dds::qosValueAt(qos.qos->record(), member, field);
                };
                const auto readsNumber = [&](const std::string &text, DDS_Long expected) {
                    const auto *const value = static_cast<const DDS_Long *>(read(text));
                    return value != nullptr && *value == expected;
                };
                SCOPED_TRACE(std::string(record->tag) + "." + member.policy->tag + "." + field.tag);
                switch (field.kind) {
                case QosFieldKind::kLong:
                    for (const char *name : {"LENGTH_UNLIMITED", "DDS_LENGTH_UNLIMITED"}) {
                        const bool isKnown = field.range->mayBeUnlimited ||
                                             field.range->least <= DDS_LENGTH_UNLIMITED;
                        EXPECT_EQ(readsNumber(name, DDS_LENGTH_UNLIMITED), isKnown) << name;
                    }
                    EXPECT_TRUE(readsNumber("0x10", 16));
                    break;
                case QosFieldKind::kEnum:
                    for (const auto &[name, value] : field.names->enumerators) {
                        EXPECT_TRUE(readsNumber(name, value)) << name;
                        EXPECT_TRUE(readsNumber(std::string("DDS_") + name, value)) << name;
                    }
                    EXPECT_EQ(read("LENGTH_UNLIMITED"), nullptr);
                    break;
                case QosFieldKind::kDuration:
                    for (const char *text : {"<sec>DURATION_INFINITE_SEC</sec><nanosec>"
                                             "DURATION_INFINITE_NSEC</nanosec>",
                                             "<sec>DDS_DURATION_INFINITE_SEC</sec>"}) {
                        const auto *const value = static_cast<const DDS_Duration_t *>(read(text));
                        EXPECT_TRUE(value != nullptr && DDS_Duration_is_infinite(value)) << text;
                    }
                    for (const char *text : {"<sec>DURATION_ZERO_SEC</sec><nanosec>"
                                             "DDS_DURATION_ZERO_NSEC</nanosec>",
                                             ""}) {
                        const auto *const value = static_cast<const DDS_Duration_t *>(read(text));
                        EXPECT_TRUE(value != nullptr && DDS_Duration_is_zero(value)) << text;
                    }
                    break;
                default:
                    break;
                }
            }
        }
    }
}

TEST_F(QosReading, knowsOctets)
{
    const auto octets = [this](const char *text) {
        const DDS_OctetSeq &value =
            read("<user_data><value>" + std::string(text) + "</value></user_data>").user_data.value;
        const auto *const from =
            reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&value));
        return std::string(from, DDS_OctetSeq_get_length(&value));
    };
    // RFC 4648, 10.
    EXPECT_EQ(octets(""), "");
    EXPECT_EQ(octets("Zg=="), "f");
    EXPECT_EQ(octets("Zm8="), "fo");
    EXPECT_EQ(octets("Zm9v"), "foo");
    EXPECT_EQ(octets(" Zm9v\nYmFy "), "foobar");
    for (const char *wrong : {"Z", "Zg", "Zg=", "Zg===", "=Zg=", "Zm9v!", "Zg==Zg=="}) {
        EXPECT_EQ(why("<user_data><value>" + std::string(wrong) + "</value></user_data>"),
                  "user_data.value: '" + std::string(wrong) + "' is not in Base64");
    }
}

TEST_F(QosReading, knowsProperties)
{
    const DDS_PropertyQosPolicy &policy =
        read("<property><value><element><name>a</name><value> x </value><propagate>true"
             "</propagate></element><element><name>b</name></element><element/></value></property>")
            .property;
    ASSERT_EQ(DDS_PropertySeq_get_length(&policy.value), 3);
    const DDS_Property_t *const a = DDS_PropertyQosPolicyHelper_lookup_property(&policy, "a");
    EXPECT_STREQ(a->value, " x ");
    EXPECT_TRUE(a->propagate);
    const DDS_Property_t *const b = DDS_PropertyQosPolicyHelper_lookup_property(&policy, "b");
    EXPECT_STREQ(b->value, "");
    EXPECT_FALSE(b->propagate);
    EXPECT_EQ(why("<property><value><entry/></value></property>"),
              "property.value: 'entry' is no element of a list");
    EXPECT_EQ(why("<property><value><element><key/></element></value></property>"),
              "property.value: 'key' is no part of a property");
}

TEST_F(QosReading, refusesWhatItDoesNotKnow)
{
    EXPECT_EQ(why("<histroy/>"), "there is no policy 'histroy'");
    EXPECT_EQ(why("<history><length>1</length></history>"), "history: there is no 'length'");
}

TEST_F(QosReading, knowsAParticipant)
{
    ASSERT_TRUE(add(library(
        "l", "<participant_qos name='old'><participant_name><name>  My\n participant </name>"
             "</participant_name><transport_builtin><mask>UDPv4 | SHMEM</mask></transport_builtin>"
             "<discovery><initial_peers><element>127.0.0.1</element></initial_peers></discovery>"
             "</participant_qos>"
             "<domain_participant_qos name='none'><transport_builtin><mask>NONE</mask>"
             "</transport_builtin></domain_participant_qos>")));
    const DDS_DomainParticipantQos *const old =
        DDS_XMLParticipantQos_get_dds_qos(element("l::old"));
    ASSERT_NE(old, nullptr);
    EXPECT_STREQ(old->participant_name.name, "My participant");
    EXPECT_EQ(old->transport_builtin.mask, DDS_TRANSPORTBUILTIN_MASK_DEFAULT);
    EXPECT_STREQ(DDS_StringSeq_get(&old->discovery.initial_peers, 0), "127.0.0.1");
    EXPECT_EQ(DDS_XMLParticipantQos_get_dds_qos(element("l::none"))->transport_builtin.mask,
              DDS_TRANSPORTBUILTIN_MASK_NONE);
    EXPECT_EQ(DDS_XMLDataReaderQos_get_dds_qos(element("l::old")), nullptr) << "another kind";
    EXPECT_EQ(DDS_XMLParticipantQos_get_dds_qos(element("l")), nullptr) << "no QoS at all";
    EXPECT_NE(refusal(library("l", "<domain_participant_qos><participant_name><name>" +
                                       std::string(256, 'n') +
                                       "</name></participant_name></domain_participant_qos>")),
              "");
}

TEST_F(QosReading, reportsWhatIsMissing)
{
    zuv_test::LogCapture log;
    EXPECT_EQ(DDS_XMLTopicQos_get_dds_qos(nullptr), nullptr);
    EXPECT_EQ(DDS_XMLObject_get_fully_qualified_name(nullptr), nullptr);
    EXPECT_EQ(log.lines().size(), 2U);
}

} // namespace
