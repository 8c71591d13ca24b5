// The typed writer and reader of a topic's type, with a key and without.
#include <functional>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "TypedOperations.h"
#include "platform/log/LogMessages.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::Keyed;
using zuv_test::Keyless;
using zuv_test::Link;
using zuv_test::LogCapture;
using zuv_test::Question;

constexpr DDS_Duration_t kPatience = {5, 0};
constexpr DDS_Time_t kLongAgo = {1000, 500000000};
constexpr DDS_Time_t kLater = {2000, 250000000};

using Numbers = std::vector<DDS_Long>;

template <typename Type>
class TypedEndpoints : public testing::Test
{
protected:
    using Held = typename Type::Held;

    TypedEndpoints()
        : link_([](DDS_DataWriterQos &writer, DDS_DataReaderQos &) {
              // What is unregistered and what is disposed are to look different.
              writer.writer_data_lifecycle.autodispose_unregistered_instances = DDS_BOOLEAN_FALSE;
          })
    {
    }
    void SetUp() override
    {
        ASSERT_TRUE(link_.waitForMatch());
        writer_ = Type::narrowWriter(link_.writer);
        reader_ = Type::narrowReader(link_.reader);
        log_.clear();
    }

    void settle()
    {
        ASSERT_EQ(DDS_DataWriter_wait_for_acknowledgments(link_.writer, &kPatience),
                  DDS_RETCODE_OK);
    }
    void write(const Numbers &numbers)
    {
        for (DDS_Long number : numbers) {
            ASSERT_EQ(zuv_test::write(link_.writer, Held(number, "text")), DDS_RETCODE_OK);
        }
        settle();
    }
    DDS_InstanceHandle_t handleOf(DDS_Long number)
    {
        const Held held(number);
        return Type::writerLookup(writer_, &held.value);
    }
    Numbers numbers() const
    {
        Numbers result;
        for (DDS_Long index = 0; index < Type::getLength(&samples_); ++index) {
            result.push_back(Type::numberOf(*Type::getReference(&samples_, index)));
        }
        return result;
    }
    DDS_ReturnCode_t giveBack() { return Type::returnLoan(reader_, &samples_, &infos_); }
    // All that is left.
    Numbers takeAll()
    {
        Numbers result;
        if (Type::take(reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
                       DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE) == DDS_RETCODE_OK) {
            result = numbers();
            EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
        }
        return result;
    }

    // An operation that reads or takes into a sequence, with whatever else it needs bound. They come in pairs, a read and
    // the take beside it.
    struct Reading {
        const char *name;
        std::function<DDS_ReturnCode_t(typename Type::Sequence *)> call;
    };
    using Readings = std::vector<Reading>;

    Readings readings() { return {{"read", all(Type::read)}, {"take", all(Type::take)}}; }
    Readings readingsWhere(DDS_ReadCondition *condition)
    {
        return {{"read_w_condition", where(Type::readWhere, condition)},
                {"take_w_condition", where(Type::takeWhere, condition)}};
    }
    Readings readingsOfAnInstance(const DDS_InstanceHandle_t *handle)
    {
        return {{"read_instance", instance(Type::readInstance, handle)},
                {"take_instance", instance(Type::takeInstance, handle)}};
    }
    Readings readingsOfAnInstanceWhere(const DDS_InstanceHandle_t *handle,
                                       DDS_ReadCondition *condition)
    {
        return {{"read_instance_w_condition",
                 instanceWhere(Type::readInstanceWhere, handle, condition)},
                {"take_instance_w_condition",
                 instanceWhere(Type::takeInstanceWhere, handle, condition)}};
    }
    Readings readingsOfTheNextInstance(const DDS_InstanceHandle_t *handle)
    {
        return {{"read_next_instance", instance(Type::readNextInstance, handle)},
                {"take_next_instance", instance(Type::takeNextInstance, handle)}};
    }
    Readings readingsOfTheNextInstanceWhere(const DDS_InstanceHandle_t *handle,
                                            DDS_ReadCondition *condition)
    {
        return {{"read_next_instance_w_condition",
                 instanceWhere(Type::readNextInstanceWhere, handle, condition)},
                {"take_next_instance_w_condition",
                 instanceWhere(Type::takeNextInstanceWhere, handle, condition)}};
    }

    // A reading and the taking of the same: both yield `expected` out of `written`, and the second one leaves `left`.
    void expectReadings(const Readings &readings, const Numbers &written, const Numbers &expected,
                        const Numbers &left)
    {
        write(written);
        for (const Reading &reading : readings) {
            SCOPED_TRACE(reading.name);
            ASSERT_EQ(reading.call(&samples_), DDS_RETCODE_OK);
            EXPECT_EQ(numbers(), expected);
            EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
        }
        EXPECT_THAT(takeAll(), testing::UnorderedElementsAreArray(left));
    }

    Link<Type> link_;
    typename Type::Writer *writer_ = nullptr;
    typename Type::Reader *reader_ = nullptr;
    typename Type::Sequence samples_ = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos_ = DDS_SEQUENCE_INITIALIZER;
    LogCapture log_;

private:
    template <typename Call>
    auto all(Call call)
    {
        return [=, this](typename Type::Sequence *samples) {
            return call(reader_, samples, &infos_, DDS_LENGTH_UNLIMITED, DDS_ANY_SAMPLE_STATE,
                        DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
        };
    }
    template <typename Call>
    auto where(Call call, DDS_ReadCondition *condition)
    {
        return [=, this](typename Type::Sequence *samples) {
            return call(reader_, samples, &infos_, DDS_LENGTH_UNLIMITED, condition);
        };
    }
    template <typename Call>
    auto instance(Call call, const DDS_InstanceHandle_t *handle)
    {
        return [=, this](typename Type::Sequence *samples) {
            return call(reader_, samples, &infos_, DDS_LENGTH_UNLIMITED, handle,
                        DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE);
        };
    }
    template <typename Call>
    auto instanceWhere(Call call, const DDS_InstanceHandle_t *handle, DDS_ReadCondition *condition)
    {
        return [=, this](typename Type::Sequence *samples) {
            return call(reader_, samples, &infos_, DDS_LENGTH_UNLIMITED, handle, condition);
        };
    }
};
TYPED_TEST_SUITE(TypedEndpoints, zuv_test::KeyedAndKeyless);

using KeyedEndpoints = TypedEndpoints<Keyed>;
using KeylessEndpoints = TypedEndpoints<Keyless>;

// -- The writer ------------------------------------------------------------------------------------------------

TYPED_TEST(TypedEndpoints, makeSamplesThatCanBeWritten)
{
    DDS_TypeAllocationParams_t allocation = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    allocation.allocate_memory = DDS_BOOLEAN_FALSE;
    const zuv_test::HeapCheck heap;
    typename TypeParam::Sample *const made = TypeParam::writerCreateData(this->writer_);
    typename TypeParam::Sample *const bare =
        TypeParam::writerCreateDataWithParams(this->writer_, &allocation);
    ASSERT_NE(made, nullptr);
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(TypeParam::numberOf(*made), 0);
    EXPECT_STREQ(made->text, "");
    EXPECT_EQ(bare->text, nullptr);
    DDS_String_replace(&bare->text, "filled");
    EXPECT_TRUE(TypeParam::writerDeleteData(this->writer_, made));
    EXPECT_TRUE(TypeParam::writerDeleteDataWithParams(this->writer_, bare,
                                                      &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT));
    EXPECT_TRUE(heap.isBalanced());
    EXPECT_TRUE(this->log_.isEmpty());

    typename TypeParam::Held other;
    EXPECT_FALSE(TypeParam::writerDeleteData(this->writer_, nullptr));
    EXPECT_FALSE(TypeParam::writerDeleteDataWithParams(this->writer_, &other.value, nullptr));
    EXPECT_EQ(TypeParam::writerCreateDataWithParams(this->writer_, nullptr), nullptr);
    EXPECT_EQ(this->log_.lines().size(), 3U);
}

TYPED_TEST(TypedEndpoints, tellWhenASampleWasMade)
{
    const typename TypeParam::Held sent(1, "text");
    EXPECT_EQ(TypeParam::writeAt(this->writer_, &sent.value, nullptr, &kLongAgo), DDS_RETCODE_OK);
    EXPECT_EQ(TypeParam::writeAt(this->writer_, &sent.value, nullptr, nullptr), DDS_RETCODE_OK);
    this->settle();
    typename TypeParam::Held got;
    DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    ASSERT_EQ(TypeParam::takeNextSample(this->reader_, &got.value, &info), DDS_RETCODE_OK);
    EXPECT_EQ(TypeParam::numberOf(got.value), 1);
    EXPECT_EQ(info.source_timestamp.sec, kLongAgo.sec);
    EXPECT_EQ(info.source_timestamp.nanosec, kLongAgo.nanosec);
    ASSERT_EQ(TypeParam::takeNextSample(this->reader_, &got.value, &info), DDS_RETCODE_OK);
    EXPECT_GT(info.source_timestamp.sec, kLater.sec) << "the clock's";
    EXPECT_TRUE(this->log_.isEmpty());
}

TEST_F(KeyedEndpoints, refuseAHandleOfAnotherInstance)
{
    write({1, 2});
    takeAll();
    const DDS_InstanceHandle_t two = handleOf(2);
    const Question sent(1);
    EXPECT_EQ(Keyed::writeAt(writer_, &sent.value, &two, &kLongAgo),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Keyed::unregisterAt(writer_, &sent.value, &two, &kLongAgo),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Keyed::disposeAt(writer_, &sent.value, &two, &kLongAgo),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    settle();
    EXPECT_EQ(takeAll(), Numbers{});
}

TEST_F(KeyedEndpoints, registerInstancesInEveryForm)
{
    const Question one(1), two(2);
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    params.source_timestamp = kLongAgo;
    const DDS_InstanceHandle_t first = Keyed::registerAt(writer_, &one.value, &kLongAgo);
    const DDS_InstanceHandle_t second = Keyed::registerWithParams(writer_, &two.value, &params);
    const DDS_InstanceHandle_t expectedFirst = handleOf(1), expectedSecond = handleOf(2);
    EXPECT_TRUE(DDS_InstanceHandle_equals(&first, &expectedFirst));
    EXPECT_TRUE(DDS_InstanceHandle_equals(&second, &expectedSecond));
    EXPECT_EQ(Keyed::writeAt(writer_, &one.value, &first, nullptr), DDS_RETCODE_OK);
    EXPECT_EQ(Keyed::writeAt(writer_, &two.value, &second, nullptr), DDS_RETCODE_OK);
    settle();
    EXPECT_EQ(takeAll(), (Numbers{1, 2}));
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_FALSE(Keyed::registerAt(writer_, nullptr, &kLongAgo).isValid);
    EXPECT_FALSE(Keyed::registerWithParams(writer_, &one.value, nullptr).isValid);
    EXPECT_EQ(log_.lines().size(), 2U);
}

TEST_F(KeyedEndpoints, endInstancesInEveryForm)
{
    write({1, 2, 3, 4});
    takeAll();
    const Question one(1), three(3), four(4);
    const DDS_InstanceHandle_t handle = handleOf(3);
    DDS_WriteParams_t ofTwo = DDS_WRITEPARAMS_DEFAULT, ofFour = DDS_WRITEPARAMS_DEFAULT;
    ofTwo.source_timestamp = kLater;
    ofTwo.handle = handleOf(2);
    ofFour.source_timestamp = kLater;
    EXPECT_EQ(Keyed::disposeAt(writer_, &one.value, nullptr, &kLongAgo), DDS_RETCODE_OK);
    EXPECT_EQ(Keyed::disposeWithParams(writer_, nullptr, &ofTwo), DDS_RETCODE_OK);
    EXPECT_EQ(Keyed::unregisterAt(writer_, &three.value, &handle, &kLongAgo), DDS_RETCODE_OK);
    EXPECT_EQ(Keyed::unregisterWithParams(writer_, &four.value, &ofFour), DDS_RETCODE_OK);
    settle();

    const struct {
        DDS_Long id;
        DDS_InstanceStateKind state;
        DDS_Time_t time;
    } ends[] = {{1, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE, kLongAgo},
                {2, DDS_NOT_ALIVE_DISPOSED_INSTANCE_STATE, kLater},
                {3, DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE, kLongAgo},
                {4, DDS_NOT_ALIVE_NO_WRITERS_INSTANCE_STATE, kLater}};
    for (const auto &end : ends) {
        SCOPED_TRACE(end.id);
        const DDS_InstanceHandle_t ended = handleOf(end.id);
        ASSERT_EQ(Keyed::takeInstance(reader_, &samples_, &infos_, DDS_LENGTH_UNLIMITED, &ended,
                                      DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                      DDS_ANY_INSTANCE_STATE),
                  DDS_RETCODE_OK);
        ASSERT_EQ(DDS_SampleInfoSeq_get_length(&infos_), 1);
        const DDS_SampleInfo &info = *DDS_SampleInfoSeq_get_reference(&infos_, 0);
        EXPECT_FALSE(info.valid_data);
        EXPECT_EQ(info.instance_state, end.state);
        EXPECT_EQ(info.source_timestamp.sec, end.time.sec);
        EXPECT_EQ(info.source_timestamp.nanosec, end.time.nanosec);
        EXPECT_EQ(giveBack(), DDS_RETCODE_OK);
    }
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(KeylessEndpoints, haveNoInstanceToRegisterOrEnd)
{
    const zuv_test::Answer one(1);
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    EXPECT_FALSE(Keyless::registerAt(writer_, &one.value, &kLongAgo).isValid);
    EXPECT_FALSE(Keyless::registerWithParams(writer_, &one.value, &params).isValid);
    EXPECT_EQ(Keyless::unregisterAt(writer_, &one.value, nullptr, &kLongAgo),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Keyless::unregisterWithParams(writer_, &one.value, &params),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Keyless::disposeAt(writer_, &one.value, nullptr, &kLongAgo),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(Keyless::disposeWithParams(writer_, &one.value, &params),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    settle();
    EXPECT_EQ(takeAll(), Numbers{});
}

// -- The reader ------------------------------------------------------------------------------------------------

TYPED_TEST(TypedEndpoints, readAndTakeEverything)
{
    this->expectReadings(this->readings(), {1, 2}, {1, 2}, {});
    this->expectReadings(this->readingsWhere(nullptr), {1, 2}, {1, 2}, {});
    EXPECT_TRUE(this->log_.isEmpty());
}

TEST_F(KeyedEndpoints, readAndTakeOneInstance)
{
    const DDS_InstanceHandle_t one = handleOf(1);
    expectReadings(readingsOfAnInstance(&one), {1, 2, 1, 3}, {1, 1}, {2, 3});
    expectReadings(readingsOfAnInstanceWhere(&one, nullptr), {1, 2, 1, 3}, {1, 1}, {2, 3});
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(KeyedEndpoints, readAndTakeTheNextInstance)
{
    const DDS_InstanceHandle_t one = handleOf(1);
    const Numbers written = {1, 2, 1, 3};
    expectReadings(readingsOfTheNextInstance(&DDS_HANDLE_NIL), written, {1, 1}, {2, 3});
    expectReadings(readingsOfTheNextInstance(&one), written, {2}, {1, 1, 3});
    expectReadings(readingsOfTheNextInstanceWhere(&DDS_HANDLE_NIL, nullptr), written, {1, 1},
                   {2, 3});
    expectReadings(readingsOfTheNextInstanceWhere(&one, nullptr), written, {2}, {1, 1, 3});
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(KeylessEndpoints, haveNoInstanceToReadButTheOneBehindNil)
{
    for (const Readings &readings : {readingsOfAnInstance(&DDS_HANDLE_NIL),
                                     readingsOfAnInstanceWhere(&DDS_HANDLE_NIL, nullptr)}) {
        for (const Reading &reading : readings) {
            EXPECT_EQ(reading.call(&samples_), DDS_RETCODE_BAD_PARAMETER) << reading.name;
        }
    }
    EXPECT_EQ(log_.lines().size(), 4U);
    expectReadings(readingsOfTheNextInstance(&DDS_HANDLE_NIL), {1, 2}, {1, 2}, {});
    expectReadings(readingsOfTheNextInstanceWhere(&DDS_HANDLE_NIL, nullptr), {1, 2}, {1, 2}, {});
}

TYPED_TEST(TypedEndpoints, acceptNoConditionButNull)
{
    auto *const condition = reinterpret_cast<DDS_ReadCondition *>(this);
    const DDS_InstanceHandle_t handle = this->handleOf(1);
    this->write({1});
    for (const auto &readings :
         {this->readingsWhere(condition), this->readingsOfAnInstanceWhere(&handle, condition),
          this->readingsOfTheNextInstanceWhere(&handle, condition)}) {
        for (const auto &reading : readings) {
            EXPECT_EQ(reading.call(&this->samples_), DDS_RETCODE_UNSUPPORTED) << reading.name;
        }
    }
    EXPECT_EQ(this->log_.lines().size(), 6U);
    EXPECT_EQ(this->takeAll(), Numbers{1});
}

TYPED_TEST(TypedEndpoints, needASequenceToReadInto)
{
    const DDS_InstanceHandle_t handle = this->handleOf(1);
    this->write({1});
    for (const auto &readings :
         {this->readings(), this->readingsWhere(nullptr), this->readingsOfAnInstance(&handle),
          this->readingsOfAnInstanceWhere(&handle, nullptr),
          this->readingsOfTheNextInstance(&handle),
          this->readingsOfTheNextInstanceWhere(&handle, nullptr)}) {
        for (const auto &reading : readings) {
            this->log_.clear();
            EXPECT_EQ(reading.call(nullptr), DDS_RETCODE_BAD_PARAMETER) << reading.name;
            EXPECT_TRUE(
                this->log_.isExactly({{&DDS_LOG_BAD_PARAMETER_s, "!accept parameter samples"}}))
                << reading.name;
        }
    }
    EXPECT_EQ(this->takeAll(), Numbers{1});
}

TYPED_TEST(TypedEndpoints, giveBackALoanOfMoreThanTheSequenceMayHold)
{
    this->write({1, 1});
    ASSERT_TRUE(TypeParam::setAbsoluteMaximum(&this->samples_, 1));
    for (const auto &reading : this->readings()) {
        this->log_.clear();
        EXPECT_EQ(reading.call(&this->samples_), DDS_RETCODE_ERROR) << reading.name;
        EXPECT_TRUE(this->log_.isExactly({{&DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd,
                                           "!set sequence length to 2: the maximum is 2"}}));
        EXPECT_EQ(this->numbers(), Numbers{});
        EXPECT_TRUE(DDS_SampleInfoSeq_has_ownership(&this->infos_)) << reading.name;
    }
    EXPECT_EQ(DDS_Subscriber_delete_datareader(this->link_.subscriber, this->link_.reader),
              DDS_RETCODE_OK);
}

TYPED_TEST(TypedEndpoints, reachNoQueueOfARemoteWriter)
{
    const typename TypeParam::Held sample(1);
    const DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
    for (const auto add :
         {TypeParam::queueSample, TypeParam::queueUnregister, TypeParam::queueDispose}) {
        this->log_.clear();
        EXPECT_EQ(add(this->reader_, &sample.value, &info), DDS_RETCODE_UNSUPPORTED);
        EXPECT_TRUE(this->log_.isExactly(
            {{&ZUV_LOG_ANY_FAILURE_s, "!reach the queue of a remote writer"}}));
        EXPECT_EQ(add(this->reader_, nullptr, &info), DDS_RETCODE_BAD_PARAMETER);
        EXPECT_EQ(add(this->reader_, &sample.value, nullptr), DDS_RETCODE_BAD_PARAMETER);
    }
    EXPECT_EQ(this->takeAll(), Numbers{});
}

TYPED_TEST(TypedEndpoints, findALoanConsistent)
{
    this->write({1});
    ASSERT_EQ(TypeParam::readWhere(this->reader_, &this->samples_, &this->infos_, 1, nullptr),
              DDS_RETCODE_OK);
    const auto *const sample = TypeParam::getReference(&this->samples_, 0);
    const auto *const info = DDS_SampleInfoSeq_get_reference(&this->infos_, 0);
    DDS_Boolean isConsistent = DDS_BOOLEAN_FALSE;
    EXPECT_EQ(TypeParam::isConsistent(this->reader_, &isConsistent, sample, info), DDS_RETCODE_OK);
    EXPECT_EQ(isConsistent, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(TypeParam::isConsistent(this->reader_, nullptr, sample, info), DDS_RETCODE_OK);
    EXPECT_EQ(this->giveBack(), DDS_RETCODE_OK);
}

TYPED_TEST(TypedEndpoints, goOnWhenTheTypeSupportIsFinalized)
{
    TypeParam::finalize();
    this->write({1});
    EXPECT_EQ(this->takeAll(), Numbers{1});
}

// -- Both ------------------------------------------------------------------------------------------------------

TEST(Narrowing, yieldsOnlyEndpointsOfItsType)
{
    Link<zuv_test::AnswerType> link;
    LogCapture log;
    EXPECT_NE(Test_AnswerDataWriter_narrow(link.writer), nullptr);
    EXPECT_EQ(Test_AnswerDataReader_as_datareader(Test_AnswerDataReader_narrow(link.reader)),
              link.reader);
    EXPECT_TRUE(log.isEmpty());
    EXPECT_EQ(Test_QuestionDataWriter_narrow(link.writer), nullptr);
    EXPECT_EQ(Test_QuestionDataReader_narrow(link.reader), nullptr);
    EXPECT_EQ(Test_QuestionDataReader_narrow(nullptr), nullptr);
    EXPECT_EQ(log.lines().size(), 3U);
}

} // namespace
