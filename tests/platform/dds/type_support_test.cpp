// The type support of a topic's type: samples made, released, printed, and as octets.
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "TypedOperations.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::HeapCheck;
using zuv_test::Keyed;
using zuv_test::LogCapture;

constexpr DDS_TypeAllocationParams_t kWithoutTexts = {DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE,
                                                      DDS_BOOLEAN_FALSE};

template <typename Type>
class TypeSupport : public testing::Test
{
protected:
    TypeSupport() { ZUVSample_getSize(Type::getTypeCode()); } // what a type's first use takes stays

    const HeapCheck heap_;
    LogCapture log_;
};
TYPED_TEST_SUITE(TypeSupport, zuv_test::KeyedAndKeyless);

TYPED_TEST(TypeSupport, makesSamplesAsItIsTold)
{
    for (const DDS_Boolean allocatePointers : {DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE}) {
        typename TypeParam::Sample *const sample = TypeParam::createDataEx(allocatePointers);
        ASSERT_NE(sample, nullptr);
        EXPECT_EQ(TypeParam::numberOf(*sample), 0);
        EXPECT_STREQ(sample->text, "") << "no member is a pointer by declaration";
        EXPECT_EQ(TypeParam::deleteData(sample), DDS_RETCODE_OK);
    }
    typename TypeParam::Sample *const bare = TypeParam::createDataWithParams(&kWithoutTexts);
    ASSERT_NE(bare, nullptr);
    EXPECT_EQ(bare->text, nullptr);
    DDS_String_replace(&bare->text, "text");
    EXPECT_EQ(TypeParam::deleteDataWithParams(bare, &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT),
              DDS_RETCODE_OK);
    EXPECT_TRUE(this->heap_.isBalanced());
    EXPECT_TRUE(this->log_.isEmpty());
}

TYPED_TEST(TypeSupport, initializesAndFinalizesSamplesAsItIsTold)
{
    typename TypeParam::Sample sample;
    std::memset(&sample, 0xa5, sizeof(sample));
    EXPECT_EQ(TypeParam::initializeDataEx(&sample, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE),
              DDS_RETCODE_OK);
    EXPECT_EQ(TypeParam::numberOf(sample), 0);
    EXPECT_EQ(sample.text, nullptr);
    EXPECT_EQ(TypeParam::initializeDataEx(&sample, DDS_BOOLEAN_FALSE, DDS_BOOLEAN_TRUE),
              DDS_RETCODE_OK);
    EXPECT_STREQ(sample.text, "");
    EXPECT_EQ(TypeParam::finalizeDataEx(&sample, DDS_BOOLEAN_TRUE), DDS_RETCODE_OK);
    EXPECT_EQ(sample.text, nullptr);

    EXPECT_EQ(TypeParam::initializeDataWithParams(&sample, &kWithoutTexts), DDS_RETCODE_OK);
    EXPECT_EQ(sample.text, nullptr);
    EXPECT_EQ(TypeParam::initializeDataWithParams(&sample, &DDS_TYPE_ALLOCATION_PARAMS_DEFAULT),
              DDS_RETCODE_OK);
    EXPECT_STREQ(sample.text, "");
    EXPECT_EQ(TypeParam::finalizeDataWithParams(&sample, &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT),
              DDS_RETCODE_OK);
    EXPECT_EQ(sample.text, nullptr);
    EXPECT_TRUE(this->heap_.isBalanced());
    EXPECT_TRUE(this->log_.isEmpty());
}

TYPED_TEST(TypeSupport, needsItsArguments)
{
    typename TypeParam::Held held(5, "five");
    auto *const sample = &held.value;
    typename TypeParam::Sample *const none = nullptr;
    EXPECT_EQ(TypeParam::createDataWithParams(nullptr), nullptr);
    EXPECT_EQ(TypeParam::initializeDataEx(none, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE),
              DDS_RETCODE_ERROR);
    EXPECT_EQ(TypeParam::initializeDataWithParams(sample, nullptr), DDS_RETCODE_ERROR);
    EXPECT_EQ(TypeParam::finalizeDataEx(none, DDS_BOOLEAN_TRUE), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::finalizeDataWithParams(none, &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::finalizeDataWithParams(sample, nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::deleteDataWithParams(none, &DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::deleteDataWithParams(sample, nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(this->log_.lines().size(), 8U) << "a line each";
    EXPECT_STREQ(sample->text, "five") << "nothing of it is released";
}

TEST(TypeSupportOfOptionalMembers, makesCopiesAndReleasesSamples)
{
    const HeapCheck heap;
    DDS_TypeAllocationParams_t allocation = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    allocation.allocate_optional_members = DDS_BOOLEAN_TRUE;
    Test_Question *const one = Test_QuestionTypeSupport_create_data();
    Test_Question *const other = Test_QuestionTypeSupport_create_data_w_params(&allocation);
    ASSERT_NE(one, nullptr);
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(one->addressee, nullptr);
    EXPECT_NE(other->addressee, nullptr);
    one->id = 5;
    EXPECT_EQ(Test_QuestionTypeSupport_copy_data(other, one), DDS_RETCODE_OK);
    EXPECT_EQ(other->id, 5);
    EXPECT_EQ(other->addressee, nullptr);
    EXPECT_EQ(Test_QuestionTypeSupport_delete_data(one), DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionTypeSupport_delete_data_ex(other, DDS_BOOLEAN_TRUE), DDS_RETCODE_OK);
    Test_Question local;
    EXPECT_EQ(Test_QuestionTypeSupport_initialize_data(&local), DDS_RETCODE_OK);
    EXPECT_EQ(Test_QuestionTypeSupport_finalize_data(&local), DDS_RETCODE_OK);
    LogCapture log;
    EXPECT_EQ(Test_QuestionTypeSupport_delete_data(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_TRUE(heap.isBalanced());
}

TEST(TypeSupportOfOptionalMembers, allocatesAndKeepsThemAsItIsTold)
{
    ZUVSample_getSize(Keyed::getTypeCode());
    const HeapCheck heap;
    Keyed::Sample sample;
    DDS_TypeAllocationParams_t allocation = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    allocation.allocate_optional_members = DDS_BOOLEAN_TRUE;
    DDS_TypeDeallocationParams_t deallocation = DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;
    deallocation.delete_optional_members = DDS_BOOLEAN_FALSE;
    EXPECT_EQ(Keyed::initializeDataWithParams(&sample, &allocation), DDS_RETCODE_OK);
    EXPECT_STREQ(sample.addressee, "");
    EXPECT_EQ(Keyed::finalizeDataWithParams(&sample, &deallocation), DDS_RETCODE_OK);
    EXPECT_EQ(sample.text, nullptr);
    EXPECT_STREQ(sample.addressee, "");
    EXPECT_EQ(Keyed::finalizeDataEx(&sample, DDS_BOOLEAN_TRUE), DDS_RETCODE_OK);
    EXPECT_EQ(sample.addressee, nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

template <typename Type>
std::vector<char> octetsOf(const typename Type::Sample &sample)
{
    unsigned int length = 0;
    EXPECT_EQ(Type::serialize(nullptr, &length, &sample), DDS_RETCODE_OK);
    std::vector<char> octets(length);
    EXPECT_EQ(Type::serialize(octets.data(), &length, &sample), DDS_RETCODE_OK);
    EXPECT_EQ(length, octets.size());
    return octets;
}

TYPED_TEST(TypeSupport, readsBackTheOctetsOfASample)
{
    const typename TypeParam::Held sent(5, "five");
    const std::vector<char> octets = octetsOf<TypeParam>(sent.value);
    typename TypeParam::Held read(7, "something longer");
    EXPECT_EQ(TypeParam::deserialize(&read.value, octets.data(),
                                     static_cast<unsigned int>(octets.size())),
              DDS_RETCODE_OK);
    EXPECT_EQ(TypeParam::numberOf(read.value), 5);
    EXPECT_STREQ(read.value.text, "five");
    EXPECT_EQ(TypeParam::deserialize(&read.value, octets.data(), 10), DDS_RETCODE_ERROR) << "cut";
    EXPECT_EQ(TypeParam::deserialize(&read.value, nullptr, 10), DDS_RETCODE_ERROR);
    EXPECT_EQ(TypeParam::deserialize(nullptr, octets.data(), 10), DDS_RETCODE_ERROR);
}

TEST(TypeSupportOfOptionalMembers, readsThatOneIsAbsent)
{
    const zuv_test::Question without(5, "five");
    const std::vector<char> octets = octetsOf<Keyed>(without.value);
    zuv_test::Question read(7, "seven", "somebody");
    EXPECT_EQ(
        Keyed::deserialize(&read.value, octets.data(), static_cast<unsigned int>(octets.size())),
        DDS_RETCODE_OK);
    EXPECT_EQ(read.value.addressee, nullptr);
}

// How the sample number 5, "five" looks.
template <typename Type>
struct Rendered;
template <>
struct Rendered<Keyed> {
    static constexpr char kText[] = "id: 5\ntext: \"five\"\noctets:\n";
    static constexpr char kJson[] = "{\"id\":5,\"text\":\"five\",\"octets\":[]}";
};
template <>
struct Rendered<zuv_test::Keyless> {
    static constexpr char kText[] = "number: 5\ntext: \"five\"\n";
    static constexpr char kJson[] = "{\"number\":5,\"text\":\"five\"}";
};

TYPED_TEST(TypeSupport, printsASample)
{
    const typename TypeParam::Held sample(5, "five");
    testing::internal::CaptureStdout();
    TypeParam::printData(&sample.value);
    TypeParam::printData(nullptr);
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              std::string(Rendered<TypeParam>::kText) + "NULL\n");
}

TYPED_TEST(TypeSupport, rendersASampleInTheFormatGiven)
{
    const typename TypeParam::Held sample(5, "five");
    DDS_PrintFormatProperty json = DDS_PRINT_FORMAT_PROPERTY_DEFAULT;
    json.kind = DDS_JSON_PRINT_FORMAT;
    json.pretty_print = DDS_BOOLEAN_FALSE;
    json.include_root_elements = DDS_BOOLEAN_FALSE;
    const struct {
        const DDS_PrintFormatProperty *format;
        std::string text;
    } kinds[] = {{&DDS_PRINT_FORMAT_PROPERTY_DEFAULT, Rendered<TypeParam>::kText},
                 {&json, Rendered<TypeParam>::kJson}};
    DDS_UnsignedLong length = 0;
    for (const auto &kind : kinds) {
        length = 0;
        EXPECT_EQ(TypeParam::dataToString(&sample.value, nullptr, &length, kind.format),
                  DDS_RETCODE_OK);
        EXPECT_EQ(length, kind.text.size() + 1) << "with its terminator";
        std::string text(length, '?');
        EXPECT_EQ(TypeParam::dataToString(&sample.value, text.data(), &length, kind.format),
                  DDS_RETCODE_OK);
        EXPECT_STREQ(text.c_str(), kind.text.c_str());
    }
    EXPECT_EQ(TypeParam::dataToString(nullptr, nullptr, &length, &json), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::dataToString(&sample.value, nullptr, nullptr, &json),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(TypeParam::dataToString(&sample.value, nullptr, &length, nullptr),
              DDS_RETCODE_BAD_PARAMETER);
}

} // namespace
