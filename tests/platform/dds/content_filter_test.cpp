#include <array>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Domain.h"
#include "platform/dds/ContentFilter.hpp"
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/LogCapture.h"

namespace
{

using zuv::dds::ContentFilter;
using zuv_test::Link;
using zuv_test::Question;
using zuv_test::QuestionType;

using Payload = std::vector<std::uint8_t>;

Payload payloadOf(const Question &question)
{
    unsigned int size = 0;
    EXPECT_EQ(
        Test_QuestionTypeSupport_serialize_data_to_cdr_buffer(nullptr, &size, &question.value),
        DDS_RETCODE_OK);
    Payload payload(size);
    EXPECT_EQ(Test_QuestionTypeSupport_serialize_data_to_cdr_buffer(
                  reinterpret_cast<char *>(payload.data()), &size, &question.value),
              DDS_RETCODE_OK);
    return payload;
}

std::optional<ContentFilter> parse(const std::string &expression)
{
    return ContentFilter::parse(*Test_Question_get_typecode(), expression);
}

bool admits(const std::string &expression, const char *addressee, const char *text = "")
{
    const std::optional<ContentFilter> filter = parse(expression);
    EXPECT_TRUE(filter.has_value()) << expression;
    const Payload payload = payloadOf(Question(1, text, addressee));
    return filter && filter->admits(payload.data(), static_cast<std::uint32_t>(payload.size()));
}

// The expression of a service instance, to the letter.
std::string instanceFilter(const std::string &name)
{
    return "addressee = NULLOR addressee MATCH '" + name + "'";
}

TEST(ContentFilter, admitsWhatNamesNobodyOrThisInstance)
{
    EXPECT_TRUE(admits(instanceFilter("S1"), nullptr));
    EXPECT_TRUE(admits(instanceFilter("S1"), "S1"));
    EXPECT_FALSE(admits(instanceFilter("S1"), "S2"));
    EXPECT_FALSE(admits(instanceFilter("S1"), "S11"));
    EXPECT_FALSE(admits(instanceFilter("S1"), "s1"));
    EXPECT_FALSE(admits(instanceFilter("S1"), "")) << "an empty name is a name";
}

TEST(ContentFilter, takesTheInstanceNameForThePattern)
{
    EXPECT_TRUE(admits(instanceFilter("S*"), "S2"));
    EXPECT_TRUE(admits(instanceFilter("S?"), "S2"));
    EXPECT_TRUE(admits(instanceFilter("S[1-3]"), "S2"));
    EXPECT_FALSE(admits(instanceFilter("S[1-3]"), "S4"));
    EXPECT_TRUE(admits(instanceFilter("S1,S2"), "S2"));
    EXPECT_FALSE(admits(instanceFilter("S1,S2"), "S3"));
}

TEST(ContentFilter, takesTheValueOfASampleAsItStands)
{
    EXPECT_FALSE(admits(instanceFilter("S1"), "*"));
    EXPECT_FALSE(admits(instanceFilter("S1"), "S?"));
    EXPECT_TRUE(admits(instanceFilter("S*"), "S*"));
}

TEST(ContentFilter, readsBlanksAndKeywordsInAnyForm)
{
    for (const char *expression :
         {"addressee=NULL OR addressee MATCH 'S1'", " addressee  =  null\tor addressee match'S1' ",
          "addressee = NULLOR(addressee MATCH 'S1')", "addressee = NULLor addressee Match 'S1'"}) {
        EXPECT_TRUE(admits(expression, nullptr)) << expression;
        EXPECT_TRUE(admits(expression, "S1")) << expression;
        EXPECT_FALSE(admits(expression, "S2")) << expression;
    }
}

TEST(ContentFilter, bindsAndMoreTightlyThanOr)
{
    const char *const expression = "text = 'a' OR text = 'b' AND addressee = NULL";
    EXPECT_TRUE(admits(expression, "S1", "a"));
    EXPECT_FALSE(admits(expression, "S1", "b"));
    EXPECT_TRUE(admits(expression, nullptr, "b"));
    const char *const grouped = "(text = 'a' OR text = 'b') AND addressee = NULLAND text = 'b'";
    EXPECT_FALSE(admits(grouped, nullptr, "a"));
    EXPECT_TRUE(admits(grouped, nullptr, "b"));
    EXPECT_FALSE(admits(grouped, "S1", "b"));
}

TEST(ContentFilter, comparesTextsForEquality)
{
    EXPECT_TRUE(admits("text = 'a*'", nullptr, "a*"));
    EXPECT_FALSE(admits("text = 'a*'", nullptr, "ab"));
    EXPECT_TRUE(admits("text = ''", nullptr, ""));
}

TEST(ContentFilter, asksWhetherAnyKindOfMemberIsAbsent)
{
    EXPECT_FALSE(admits("id = NULL", nullptr));
    EXPECT_FALSE(admits("octets = NULL", nullptr));
}

struct Unreadable {
    const char *expression;
    const char *report;
};

class UnreadableExpression : public testing::TestWithParam<Unreadable>
{
};

INSTANTIATE_TEST_SUITE_P(
    Each, UnreadableExpression,
    testing::Values(
        Unreadable{"", "!read the filter expression \"\" at character 1: member of the type "
                       "expected"},
        Unreadable{"nobody = NULL", "!read the filter expression \"nobody = NULL\" at character 1: "
                                    "member of the type expected"},
        Unreadable{"addressee", "!read the filter expression \"addressee\" at character 10: \"=\" "
                                "or \"MATCH\" expected"},
        Unreadable{"addressee = NULLORaddressee = NULL",
                   "!read the filter expression \"addressee = NULLORaddressee = NULL\" at "
                   "character 13: text in \"'\" expected"},
        Unreadable{"addressee = NULLX", "!read the filter expression \"addressee = NULLX\" at "
                                        "character 13: text in \"'\" expected"},
        Unreadable{"addressee MATCH 'S1", "!read the filter expression \"addressee MATCH 'S1\" at "
                                          "character 18: text without an end"},
        Unreadable{"addressee MATCH 'O'Brien'",
                   "!read the filter expression \"addressee MATCH 'O'Brien'\" at character 20: "
                   "more than an expression"},
        Unreadable{"id MATCH '1'", "!read the filter expression \"id MATCH '1'\" at character 10: "
                                   "a member that is no text cannot be compared with one"},
        Unreadable{"(addressee = NULL", "!read the filter expression \"(addressee = NULL\" at "
                                        "character 18: \")\" expected"},
        Unreadable{"addressee = NULL OR", "!read the filter expression \"addressee = NULL OR\" at "
                                          "character 20: member of the type expected"}));

TEST_P(UnreadableExpression, isRefusedWithItsPlace)
{
    zuv_test::LogCapture log;
    EXPECT_FALSE(parse(GetParam().expression).has_value());
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE, GetParam().report}}));
}

TEST(ContentFilter, refusesParenthesesWithoutEnd)
{
    zuv_test::LogCapture log;
    const auto nested = [](std::size_t depth) {
        std::string expression(depth, '(');
        expression.append("id = NULL").append(depth, ')');
        return expression;
    };
    EXPECT_TRUE(parse(nested(64)).has_value());
    EXPECT_FALSE(parse(nested(100000)).has_value());
    EXPECT_EQ(log.lines().size(), 1U);
}

// A payload that lies is not admitted, whatever it lies about, and nothing is read beyond its end.
TEST(ContentFilter, admitsNoPayloadThatEndsTooEarly)
{
    const std::optional<ContentFilter> filter = parse("text MATCH '*' OR text = NULL");
    ASSERT_TRUE(filter);
    const Payload whole = payloadOf(Question(1, "some text", "S1"));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Payload cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        EXPECT_FALSE(filter->admits(cut.data(), static_cast<std::uint32_t>(cut.size())))
            << "cut to " << size;
    }
    EXPECT_TRUE(filter->admits(whole.data(), static_cast<std::uint32_t>(whole.size())));
}

TEST(ContentFilter, survivesEveryChangeOfAnOctet)
{
    const std::optional<ContentFilter> filter = parse(instanceFilter("S1"));
    ASSERT_TRUE(filter);
    const Payload whole = payloadOf(Question(1, "some text", "S1"));
    unsigned admitted = 0;
    for (std::size_t place = 0; place < whole.size(); ++place) {
        for (int value = 0; value < 256; ++value) {
            Payload changed = whole;
            changed[place] = static_cast<std::uint8_t>(value);
            admitted += filter->admits(changed.data(), static_cast<std::uint32_t>(changed.size()));
        }
    }
    EXPECT_GT(admitted, 256U) << "what comes behind the member does not matter";
    EXPECT_LT(admitted, whole.size() * 256);
}

TEST(ContentFilter, readsBigEndianPayloads)
{
    const Payload payload = {
        0, 8, 0, 0,                             // delimited, big endian
        0, 0, 0, 16,                            // octets that follow
        0, 0, 0, 1,                             // id
        1, 0, 0, 0,  0, 0, 0, 3, 'S', '1', 0, 0 // addressee
    };
    const std::optional<ContentFilter> filter = parse(instanceFilter("S1"));
    ASSERT_TRUE(filter);
    EXPECT_TRUE(filter->admits(payload.data(), static_cast<std::uint32_t>(payload.size())));
}

TEST(ContentFilter, takesAMemberThatAnOlderSampleLacksForAbsent)
{
    const Payload payload = {0, 9, 0, 0, 4, 0, 0, 0, 1, 0, 0, 0};
    const std::optional<ContentFilter> filter = parse(instanceFilter("S1"));
    ASSERT_TRUE(filter);
    EXPECT_TRUE(filter->admits(payload.data(), static_cast<std::uint32_t>(payload.size())));
}

TEST(ContentFilter, admitsNoOtherRepresentation)
{
    const std::optional<ContentFilter> filter = parse(instanceFilter("S1"));
    ASSERT_TRUE(filter);
    Payload payload = payloadOf(Question(1));
    payload[1] = 1; // the first version
    EXPECT_FALSE(filter->admits(payload.data(), static_cast<std::uint32_t>(payload.size())));
}

TEST(FilteredReader, seesWhatItsFilterAdmits)
{
    const std::string filter = instanceFilter("S1");
    Link<QuestionType> link({}, filter.c_str());
    ASSERT_TRUE(link.waitForMatch());
    const std::array<std::pair<const char *, const char *>, 4> sent = {
        {{"one", nullptr}, {"two", "S2"}, {"three", "S1"}, {"four", "other"}}};
    for (const auto &[text, addressee] : sent) {
        EXPECT_EQ(zuv_test::write(link.writer, Question(1, text, addressee)), DDS_RETCODE_OK);
    }
    Test_QuestionSeq samples = DDS_SEQUENCE_INITIALIZER;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    Test_QuestionDataReader *const reader = Test_QuestionDataReader_narrow(link.reader);
    ASSERT_TRUE(link.waitForData());
    std::vector<std::string> texts;
    EXPECT_TRUE(zuv_test::eventually([&] {
        if (Test_QuestionDataReader_take(reader, &samples, &infos, DDS_LENGTH_UNLIMITED,
                                         DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                         DDS_ANY_INSTANCE_STATE) == DDS_RETCODE_OK) {
            for (DDS_Long index = 0; index < Test_QuestionSeq_get_length(&samples); ++index) {
                texts.emplace_back(Test_QuestionSeq_get_reference(&samples, index)->text);
            }
            EXPECT_EQ(Test_QuestionDataReader_return_loan(reader, &samples, &infos),
                      DDS_RETCODE_OK);
        }
        return texts.size() == 2;
    }));
    EXPECT_EQ(texts, (std::vector<std::string>{"one", "three"}));
    // What was filtered away is done with: the writer waits for nobody.
    const DDS_Duration_t patience = {5, 0};
    EXPECT_EQ(DDS_DataWriter_wait_for_acknowledgments(link.writer, &patience), DDS_RETCODE_OK);
}

TEST(FilteredReader, isNotMadeOfAnExpressionThatCannotBeRead)
{
    Link<QuestionType> link;
    zuv_test::LogCapture log;
    const char *const expression = "addressee = NULLOR addressee MATCH 'O'Brien'";
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(link.participant, "broken",
                                                                link.topic, expression, nullptr),
              nullptr);
    EXPECT_EQ(log.texts(),
              (std::vector<std::string>{std::string("!read the filter expression \"") + expression +
                                            "\" at character 39: more than an expression",
                                        "!create content-filtered topic"}));
    EXPECT_EQ(DDS_DomainParticipant_lookup_topicdescription(link.participant, "broken"), nullptr);
}

TEST(FilteredReader, takesNoParametersAndNoForeignTopic)
{
    Link<QuestionType> link, other;
    zuv_test::LogCapture log;
    DDS_StringSeq parameters = DDS_SEQUENCE_INITIALIZER;
    DDS_StringSeq_set_length(&parameters, 1);
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(link.participant, "a", link.topic,
                                                                "addressee = NULL", &parameters),
              nullptr);
    EXPECT_EQ(DDS_DomainParticipant_create_contentfilteredtopic(link.participant, "a", other.topic,
                                                                "addressee = NULL", nullptr),
              nullptr);
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"!accept parameter parameters",
                                                     "!create content-filtered topic",
                                                     "!accept parameter relatedTopic",
                                                     "!create content-filtered topic"}));
    DDS_StringSeq_finalize(&parameters);
}

TEST(FilteredReader, keepsItsTopicsAlive)
{
    Link<QuestionType> link({}, "addressee = NULL");
    zuv_test::LogCapture log;
    DDS_TopicDescription *const description =
        DDS_DomainParticipant_lookup_topicdescription(link.participant, "filtered");
    ASSERT_NE(description, nullptr);
    EXPECT_EQ(DDS_Topic_narrow(description), nullptr);
    DDS_ContentFilteredTopic *const filtered = DDS_ContentFilteredTopic_narrow(description);
    ASSERT_NE(filtered, nullptr);
    EXPECT_EQ(DDS_ContentFilteredTopic_get_related_topic(filtered), link.topic);
    EXPECT_STREQ(DDS_ContentFilteredTopic_get_filter_expression(filtered), "addressee = NULL");
    EXPECT_STREQ(DDS_TopicDescription_get_type_name(description), "Test::Question");
    EXPECT_EQ(DDS_DomainParticipant_delete_contentfilteredtopic(link.participant, filtered),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_Subscriber_delete_datareader(link.subscriber, link.reader), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_Publisher_delete_datawriter(link.publisher, link.writer), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(link.participant, link.topic),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_DomainParticipant_delete_contentfilteredtopic(link.participant, filtered),
              DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipant_delete_topic(link.participant, link.topic), DDS_RETCODE_OK);
}

} // namespace
