// Reading and taking, on loan and as copies.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <fastdds/dds/domain/DomainParticipant.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/publisher/Publisher.hpp>
#include <fastdds/dds/publisher/qos/DataWriterQos.hpp>
#include <fastdds/dds/topic/Topic.hpp>
#include <fastdds/dds/topic/TopicDataType.hpp>
#include <fastdds/dds/topic/TypeSupport.hpp>

#include "Domain.h"
#include "platform/dds/EntityImpl.hpp"
#include "platform/dds/SampleStore.hpp"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::Answer;
using zuv_test::AnswerType;
using zuv_test::Link;
using zuv_test::Question;
using zuv_test::QuestionType;

constexpr DDS_Duration_t kPatience = {5, 0};

class Reading : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(link_.waitForMatch());
        reader_ = Test_AnswerDataReader_narrow(link_.reader);
        log_.clear();
    }
    ~Reading() override
    {
        ZUVOsapiFault_disarm();
        Test_AnswerSeq_finalize(&samples_);
        DDS_SampleInfoSeq_finalize(&infos_);
    }

    // Write samples with the numbers from `first` on, and wait until they are in the reader.
    void writeNumbers(DDS_Long first, DDS_Long count)
    {
        for (DDS_Long number = first; number < first + count; ++number) {
            ASSERT_EQ(zuv_test::write(link_.writer, Answer(number, "text")), DDS_RETCODE_OK);
        }
        ASSERT_EQ(DDS_DataWriter_wait_for_acknowledgments(link_.writer, &kPatience),
                  DDS_RETCODE_OK);
    }

    DDS_ReturnCode_t take(DDS_Long maximum = DDS_LENGTH_UNLIMITED)
    {
        return Test_AnswerDataReader_take(reader_, &samples_, &infos_, maximum,
                                          DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                          DDS_ANY_INSTANCE_STATE);
    }
    DDS_ReturnCode_t read(DDS_SampleStateMask states = DDS_ANY_SAMPLE_STATE)
    {
        return Test_AnswerDataReader_read(reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED, states,
                                          DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
    }
    DDS_ReturnCode_t giveBack()
    {
        return Test_AnswerDataReader_return_loan(reader_, &samples_, &infos_);
    }
    std::vector<DDS_Long> numbers() const
    {
        std::vector<DDS_Long> result;
        for (DDS_Long index = 0; index < Test_AnswerSeq_get_length(&samples_); ++index) {
            result.push_back(Test_AnswerSeq_get_reference(&samples_, index)->number);
        }
        return result;
    }

    Link<AnswerType> link_;
    Test_AnswerDataReader *reader_ = nullptr;
    zuv_test::LogCapture log_;
    Test_AnswerSeq samples_ = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos_ = DDS_SEQUENCE_INITIALIZER;
};

using Numbers = std::vector<DDS_Long>;

TEST_F(Reading, givesNoDataWithoutALogLine)
{
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(Test_AnswerSeq_get_length(&samples_), 0);
    EXPECT_TRUE(Test_AnswerSeq_has_ownership(&samples_));
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Reading, lendsToASequenceWithoutElements)
{
    writeNumbers(1, 3);
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    EXPECT_EQ(numbers(), (Numbers{1, 2, 3}));
    EXPECT_FALSE(Test_AnswerSeq_has_ownership(&samples_));
    EXPECT_FALSE(DDS_SampleInfoSeq_has_ownership(&infos_));
    EXPECT_EQ(DDS_SampleInfoSeq_get_length(&infos_), 3);
    EXPECT_TRUE(DDS_SampleInfoSeq_get_reference(&infos_, 0)->valid_data);
    EXPECT_EQ(DDS_SampleInfoSeq_get_reference(&infos_, 0)->view_state, DDS_NEW_VIEW_STATE);
    EXPECT_EQ(DDS_SampleInfoSeq_get_reference(&infos_, 0)->instance_state,
              DDS_ALIVE_INSTANCE_STATE);
    EXPECT_GT(DDS_SampleInfoSeq_get_reference(&infos_, 0)->source_timestamp.sec, 0);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    EXPECT_TRUE(Test_AnswerSeq_has_ownership(&samples_));
    EXPECT_EQ(Test_AnswerSeq_get_maximum(&samples_), 0);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK) << "nothing to give back";
    EXPECT_EQ(take(), DDS_RETCODE_NO_DATA);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Reading, copiesIntoASequenceWithElements)
{
    writeNumbers(1, 3);
    ASSERT_TRUE(Test_AnswerSeq_set_maximum(&samples_, 2));
    ASSERT_EQ(take(), DDS_RETCODE_OK) << "no more than there is room for";
    EXPECT_EQ(numbers(), (Numbers{1, 2}));
    EXPECT_TRUE(Test_AnswerSeq_has_ownership(&samples_));
    EXPECT_EQ(DDS_SampleInfoSeq_get_length(&infos_), 2);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    ASSERT_EQ(take(1), DDS_RETCODE_OK);
    EXPECT_EQ(numbers(), (Numbers{3}));
    EXPECT_EQ(take(1), DDS_RETCODE_NO_DATA);
    EXPECT_EQ(Test_AnswerSeq_get_length(&samples_), 0);
}

TEST_F(Reading, refusesMoreThanThereIsRoomFor)
{
    writeNumbers(1, 3);
    ASSERT_TRUE(Test_AnswerSeq_set_maximum(&samples_, 2));
    EXPECT_EQ(take(3), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(log_.texts().front(), "!read more samples than the sequence has room for");
}

TEST_F(Reading, refusesASequenceThatHoldsALoan)
{
    writeNumbers(1, 2);
    ASSERT_EQ(take(1), DDS_RETCODE_OK);
    EXPECT_EQ(take(1), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(numbers(), (Numbers{1})) << "the loan is still there";
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    EXPECT_EQ(take(1), DDS_RETCODE_OK);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
}

TEST_F(Reading, leavesSamplesWhereTheyAre)
{
    writeNumbers(1, 2);
    ASSERT_EQ(read(), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_SampleInfoSeq_get_reference(&infos_, 0)->sample_state, DDS_NOT_READ_SAMPLE_STATE);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    EXPECT_EQ(read(DDS_NOT_READ_SAMPLE_STATE), DDS_RETCODE_NO_DATA);
    writeNumbers(3, 1);
    ASSERT_EQ(read(DDS_NOT_READ_SAMPLE_STATE), DDS_RETCODE_OK);
    EXPECT_EQ(numbers(), (Numbers{3}));
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    EXPECT_EQ(numbers(), (Numbers{1, 2, 3}));
    EXPECT_EQ(DDS_SampleInfoSeq_get_reference(&infos_, 0)->sample_state, DDS_READ_SAMPLE_STATE);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
}

TEST_F(Reading, takesOneSampleAfterTheOther)
{
    writeNumbers(1, 2);
    Answer answer;
    DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    ASSERT_EQ(Test_AnswerDataReader_read_next_sample(reader_, &answer.value, &info),
              DDS_RETCODE_OK);
    EXPECT_EQ(answer.value.number, 1);
    ASSERT_EQ(Test_AnswerDataReader_take_next_sample(reader_, &answer.value, &info),
              DDS_RETCODE_OK);
    EXPECT_EQ(answer.value.number, 2) << "the first one was read";
    EXPECT_STREQ(answer.value.text, "text");
    EXPECT_TRUE(info.valid_data);
    EXPECT_EQ(Test_AnswerDataReader_take_next_sample(reader_, &answer.value, &info),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(Test_AnswerDataReader_take_next_sample(reader_, nullptr, &info),
              DDS_RETCODE_BAD_PARAMETER);
}

TEST_F(Reading, acceptsNoConditionButNull)
{
    writeNumbers(1, 1);
    EXPECT_EQ(Test_AnswerDataReader_take_w_condition(reader_, &samples_, &infos_, 1,
                                                     reinterpret_cast<DDS_ReadCondition *>(this)),
              DDS_RETCODE_UNSUPPORTED);
    ASSERT_EQ(Test_AnswerDataReader_read_w_condition(reader_, &samples_, &infos_, 1, nullptr),
              DDS_RETCODE_OK);
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
}

TEST_F(Reading, takesBackOnlyItsOwnLoans)
{
    writeNumbers(1, 1);
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    Link<AnswerType> other;
    EXPECT_EQ(Test_AnswerDataReader_return_loan(Test_AnswerDataReader_narrow(other.reader),
                                                &samples_, &infos_),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(numbers(), (Numbers{1}));
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DataReader_return_loan_untypedI(link_.reader, nullptr, 0, &infos_),
              DDS_RETCODE_PRECONDITION_NOT_MET);
}

TEST_F(Reading, keepsAReaderWhoseSamplesAreOnLoan)
{
    writeNumbers(1, 1);
    ASSERT_EQ(take(), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Subscriber_delete_datareader(link_.subscriber, link_.reader),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(link_.participant),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(numbers(), (Numbers{1}));
    EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
}

TEST_F(Reading, allocatesNothingForASteadyStream)
{
    const std::string body(32 * 1024, 'x');
    const Answer answer(1, body.c_str());
    const auto round = [&] {
        ASSERT_EQ(zuv_test::write(link_.writer, answer), DDS_RETCODE_OK);
        ASSERT_TRUE(link_.waitForData());
        ASSERT_EQ(take(), DDS_RETCODE_OK);
        ASSERT_EQ(giveBack(), DDS_RETCODE_OK);
    };
    round();
    const zuv_test::HeapCheck heap;
    for (int count = 0; count < 50; ++count) {
        round();
    }
    EXPECT_EQ(heap.allocations(), 0U);
}

TEST_F(Reading, reportsEachFailureAndGoesOn)
{
    for (const char *point : {"dds.read_or_take", "dds.lend", "dds.get_sample"}) {
        writeNumbers(1, 1);
        log_.clear();
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_NE(take(), DDS_RETCODE_OK) << point;
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U) << point;
        ZUVOsapiFault_disarm();
        EXPECT_FALSE(log_.isEmpty()) << point;
        EXPECT_TRUE(Test_AnswerSeq_has_ownership(&samples_)) << point;
        take(); // what the failure left
        giveBack();
        writeNumbers(2, 1);
        ASSERT_EQ(take(), DDS_RETCODE_OK) << point;
        EXPECT_EQ(numbers(), (Numbers{2})) << point;
        ASSERT_EQ(giveBack(), DDS_RETCODE_OK) << point;
    }
}

TEST_F(Reading, reportsACopyThatFails)
{
    writeNumbers(1, 1);
    ASSERT_TRUE(Test_AnswerSeq_set_maximum(&samples_, 2));
    ZUVOsapiFault_arm("dds.copy_sample", 1, 0);
    EXPECT_EQ(take(), DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.holds({{&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "!copy sample of Test::Answer"}}));
}

TEST_F(Reading, survivesEveryWantOfMemory)
{
    const zuv_test::HeapCheck heap;
    bool isDone = false;
    for (unsigned count = 1; !isDone; ++count) {
        ASSERT_LT(count, 100U);
        const std::string body(std::size_t{1000} * count, 'x'); // longer than all before
        ASSERT_EQ(zuv_test::write(link_.writer, Answer(1, body.c_str())), DDS_RETCODE_OK);
        ASSERT_TRUE(link_.waitForData());
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const DDS_ReturnCode_t code = take();
        isDone = ZUVOsapiFault_getInjectedCount() == 0;
        ZUVOsapiFault_disarm();
        if (code == DDS_RETCODE_OK) {
            EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
        }
        EXPECT_EQ(code == DDS_RETCODE_OK, isDone);
    }
}

// -- Samples that are none ---------------------------------------------------------------------------------

// Writes whatever it is told to under the type's name.
class RawType : public eprosima::fastdds::dds::TopicDataType
{
public:
    RawType(const char *name, bool hasKey)
    {
        setName(name);
        m_typeSize = 4096;
        m_isGetKeyDefined = hasKey;
        auto_fill_type_object(false);
        auto_fill_type_information(false);
    }
    bool serialize(void *data, eprosima::fastrtps::rtps::SerializedPayload_t *payload) override
    {
        const auto &octets = *static_cast<const std::vector<std::uint8_t> *>(data);
        std::copy(octets.begin(), octets.end(), payload->data);
        payload->length = static_cast<std::uint32_t>(octets.size());
        return true;
    }
    bool deserialize(eprosima::fastrtps::rtps::SerializedPayload_t *, void *) override
    {
        return true;
    }
    std::function<std::uint32_t()> getSerializedSizeProvider(void *data) override
    {
        return [data] {
            return static_cast<std::uint32_t>(
                static_cast<const std::vector<std::uint8_t> *>(data)->size());
        };
    }
    void *createData() override { return nullptr; }
    void deleteData(void *) override {}
    bool getKey(void *, eprosima::fastrtps::rtps::InstanceHandle_t *handle, bool) override
    {
        handle->value[0] = 1;
        return m_isGetKeyDefined;
    }
};

// A writer of raw payloads in a participant of its own.
class RawWriter
{
public:
    RawWriter(const char *typeName, bool hasKey) : type_(new RawType(typeName, hasKey))
    {
        namespace fast = eprosima::fastdds::dds;
        participant = zuv_test::joinDomain();
        participant->fast->register_type(type_);
        topic_ = participant->fast->create_topic("test topic", typeName, fast::TOPIC_QOS_DEFAULT);
        publisher_ = participant->fast->create_publisher(fast::PUBLISHER_QOS_DEFAULT);
        fast::DataWriterQos qos = fast::DATAWRITER_QOS_DEFAULT;
        qos.history().kind = fast::KEEP_ALL_HISTORY_QOS;
        qos.data_sharing().off();
        qos.endpoint().history_memory_policy =
            eprosima::fastrtps::rtps::PREALLOCATED_WITH_REALLOC_MEMORY_MODE;
        writer_ = publisher_->create_datawriter(topic_, qos);
    }
    ~RawWriter()
    {
        publisher_->delete_datawriter(writer_);
        participant->fast->delete_publisher(publisher_);
        participant->fast->delete_topic(topic_);
        zuv_test::leaveDomain(participant);
    }
    RawWriter(const RawWriter &) = delete;
    RawWriter &operator=(const RawWriter &) = delete;

    bool write(std::vector<std::uint8_t> octets) { return writer_->write(&octets); }
    bool isMatched() const
    {
        eprosima::fastdds::dds::PublicationMatchedStatus status;
        writer_->get_publication_matched_status(status);
        return status.current_count > 0;
    }

    DDS_DomainParticipant *participant = nullptr;

private:
    eprosima::fastdds::dds::TypeSupport type_;
    eprosima::fastdds::dds::Topic *topic_ = nullptr;
    eprosima::fastdds::dds::Publisher *publisher_ = nullptr;
    eprosima::fastdds::dds::DataWriter *writer_ = nullptr;
};

std::vector<std::uint8_t> goodAnswer(std::uint8_t number)
{
    return {0, 9, 0, 0, 10, 0, 0, 0, number, 0, 0, 0, 2, 0, 0, 0, 'x', 0};
}

TEST_F(Reading, leavesOutWhatIsNoSampleWithoutHarmToItsNeighbours)
{
    RawWriter raw("Test::Answer", false);
    ASSERT_TRUE(zuv_test::eventually([&] { return raw.isMatched(); }));
    log_.clear();
    ASSERT_TRUE(raw.write(goodAnswer(1)));
    ASSERT_TRUE(raw.write({0, 9, 0, 0}));
    ASSERT_TRUE(raw.write({0, 9, 0, 0, 200, 0, 0, 0}));
    ASSERT_TRUE(raw.write({0, 9, 0, 0, 10, 0, 0, 0, 5, 0, 0, 0, 0xff, 0xff, 0xff, 0x7f, 'x', 0}));
    ASSERT_TRUE(raw.write(goodAnswer(2)));

    Numbers seen;
    EXPECT_TRUE(zuv_test::eventually([&] {
        if (take() == DDS_RETCODE_OK) {
            for (DDS_Long number : numbers()) {
                seen.push_back(number);
            }
            EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
        }
        return seen.size() == 2;
    }));
    EXPECT_EQ(seen, (Numbers{1, 2}));
    EXPECT_EQ(DDS_DataReader_get_refused_sample_countI(link_.reader), 3U);
    unsigned reported = 0;
    for (const zuv_test::LogLine &line : log_.lines()) {
        reported += line.function == "deserialize";
    }
    EXPECT_EQ(reported, 3U);
}

TEST(RefusedPayloads, neverFillAShortHistory)
{
    Link<QuestionType> link([](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
        reader.resource_limits.max_samples = 4;
    });
    RawWriter raw("Test::Question", true);
    ASSERT_TRUE(zuv_test::eventually([&] { return raw.isMatched(); }));
    zuv_test::LogCapture log;
    Test_QuestionSeq samples = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    for (int count = 0; count < 40; ++count) {
        ASSERT_TRUE(raw.write({0, 9, 0, 0, 200, 0, 0, 0}));
        if (count % 4 == 3) {
            const std::uint64_t expected = static_cast<std::uint64_t>(count) + 1;
            EXPECT_TRUE(zuv_test::eventually([&] {
                EXPECT_EQ(Test_QuestionDataReader_take(Test_QuestionDataReader_narrow(link.reader),
                                                       &samples, &infos, DDS_LENGTH_UNLIMITED,
                                                       DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                                       DDS_ANY_INSTANCE_STATE),
                          DDS_RETCODE_NO_DATA);
                return DDS_DataReader_get_refused_sample_countI(link.reader) == expected;
            }));
        }
    }
    ASSERT_TRUE(zuv_test::write(link.writer, Question(1, "good")) == DDS_RETCODE_OK);
    EXPECT_TRUE(zuv_test::eventually([&] {
        return Test_QuestionDataReader_take(Test_QuestionDataReader_narrow(link.reader), &samples,
                                            &infos, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
                                            DDS_ANY_VIEW_STATE,
                                            DDS_ANY_INSTANCE_STATE) == DDS_RETCODE_OK;
    }));
    ASSERT_EQ(Test_QuestionSeq_get_length(&samples), 1);
    EXPECT_STREQ(Test_QuestionSeq_get_reference(&samples, 0)->text, "good");
    EXPECT_EQ(Test_QuestionDataReader_return_loan(Test_QuestionDataReader_narrow(link.reader),
                                                  &samples, &infos),
              DDS_RETCODE_OK);
}

// -- Memory behind large samples -----------------------------------------------------------------------------

TEST(LargeSamples, giveTheirMemoryBackAboveThePoolsBound)
{
    for (const char *bound : {"32768", "DDS_LENGTH_UNLIMITED"}) {
        Link<AnswerType> link([bound](DDS_DataWriterQos &, DDS_DataReaderQos &reader) {
            DDS_PropertyQosPolicyHelper_assert_property(
                &reader.property,
                "dds.data_reader.history.memory_manager.fast_pool.pool_buffer_max_size", bound,
                DDS_BOOLEAN_FALSE);
            reader.reader_resource_limits.dynamically_allocate_fragmented_samples = 1;
        });
        ASSERT_TRUE(link.waitForMatch());
        const std::string body(8 * 1024 * 1024, 'x');
        const Answer answer(1, body.c_str());
        ZUVOsapiHeapStatistics before, after;
        ZUVOsapiHeap_getStatistics(&before);
        ASSERT_EQ(zuv_test::write(link.writer, answer), DDS_RETCODE_OK);
        ASSERT_TRUE(link.waitForData());
        Test_AnswerSeq samples = DDS_SEQUENCE_INITIALIZER;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        Test_AnswerDataReader *const reader = Test_AnswerDataReader_narrow(link.reader);
        ASSERT_EQ(Test_AnswerDataReader_take(reader, &samples, &infos, 1, DDS_ANY_SAMPLE_STATE,
                                             DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE),
                  DDS_RETCODE_OK);
        EXPECT_EQ(Test_AnswerSeq_get_reference(&samples, 0)->text, body);
        ASSERT_EQ(Test_AnswerDataReader_return_loan(reader, &samples, &infos), DDS_RETCODE_OK);
        ZUVOsapiHeap_getStatistics(&after);
        const bool isKept = after.liveByteCount - before.liveByteCount > body.size();
        EXPECT_EQ(isKept, std::string(bound) != "32768");
    }
}

} // namespace
