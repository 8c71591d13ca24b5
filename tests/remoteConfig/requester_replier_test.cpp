#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "TestService.h"
#include "log/Log.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/log/DDSLog.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "remoteConfig/AdminRequester.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace std::chrono_literals;

constexpr DDS_Duration_t kPatience = {10, 0};
constexpr DDS_Duration_t kShort = {0, 20000000};

// A requester and a replier that know each other, and samples for them.
class RequesterAndReplier : public testing::Test
{
protected:
    void SetUp() override
    {
        BRELLog_setUp();
        client_ = zuv_test::joinDomain("test requester");
        service_ = zuv_test::joinDomain("test replier");
        requester_ = createRequester(client_);
        ASSERT_NE(requester_, nullptr);
        replier_ = zuv_test::createReplier(service_);
        ASSERT_NE(replier_, nullptr);
        ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request_));
        ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
        for (int round = 0; !isMatched(); ++round) {
            ASSERT_LT(round, 1000) << "requester and replier did not match";
            std::this_thread::sleep_for(10ms);
        }
        log_.clear();
    }

    void TearDown() override
    {
        ZUVOsapiFault_disarm();
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
        ZUV_Service_Admin_CommandRequest_finalize(&request_);
        EXPECT_EQ(ZUV_Talvane_Requester_delete(&requester_->parent), DDS_RETCODE_OK);
        EXPECT_EQ(ZUV_Talvane_Replier_delete(&replier_->parent), DDS_RETCODE_OK);
        zuv_test::leaveDomain(client_);
        zuv_test::leaveDomain(service_);
    }

    static ZUV_BrelServiceAdminRequester *createRequester(DDS_DomainParticipant *participant)
    {
        ZUV_Talvane_RequesterParams params = {};
        params.participant = participant;
        params.request_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REQUEST_TOPIC_NAME;
        params.reply_topic_name = ZUV_SERVICE_ADMIN_COMMAND_REPLY_TOPIC_NAME;
        return ZUV_BrelServiceAdminRequester_create_w_params(&params);
    }

    bool isMatched()
    {
        DDS_PublicationMatchedStatus requests = {};
        DDS_SubscriptionMatchedStatus replies = {};
        DDS_DataWriter_get_publication_matched_status(
            ZUV_Service_Admin_CommandRequestDataWriter_as_datawriter(
                ZUV_BrelServiceAdminRequester_get_request_datawriter(requester_)),
            &requests);
        DDS_DataReader_get_subscription_matched_status(
            ZUV_Service_Admin_CommandReplyDataReader_as_datareader(
                ZUV_BrelServiceAdminRequester_get_reply_datareader(requester_)),
            &replies);
        return requests.current_count > 0 && replies.current_count > 0;
    }

    // Send a request with this body; its identity.
    DDS_SampleIdentity_t ask(const char *body)
    {
        DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
        DDS_String_replace(&request_.string_body, body);
        EXPECT_EQ(
            ZUV_BrelServiceAdminRequester_send_request_w_params(requester_, &request_, &params),
            DDS_RETCODE_OK);
        EXPECT_TRUE(params.replace_auto);
        return params.identity;
    }

    // Reply to a request with its own body in front of `suffix`.
    void replyTo(const ZUV_Service_Admin_CommandRequest &request, const DDS_SampleInfo &info,
                 const char *suffix = "!")
    {
        ZUV_Service_Admin_CommandReply reply;
        ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply));
        DDS_String_replace(&reply.string_body, (std::string(request.string_body) + suffix).c_str());
        EXPECT_EQ(ZUV_BrelServiceAdminReplier_send_reply(replier_, &reply, &info.sample_identity),
                  DDS_RETCODE_OK);
        ZUV_Service_Admin_CommandReply_finalize(&reply);
    }

    void answerNext(const char *suffix = "!")
    {
        DDS_SampleInfo info = DDS_SAMPLEINFO_DEFAULT;
        ZUV_Service_Admin_CommandRequest request;
        ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
        ASSERT_EQ(
            ZUV_BrelServiceAdminReplier_receive_request(replier_, &request, &info, &kPatience),
            DDS_RETCODE_OK);
        EXPECT_TRUE(info.valid_data);
        replyTo(request, info, suffix);
        ZUV_Service_Admin_CommandRequest_finalize(&request);
    }

    // Two requests, both answered, with the replies arrived.
    void askTwice(DDS_SampleIdentity_t identities[2])
    {
        identities[0] = ask("one");
        answerNext();
        identities[1] = ask("two");
        answerNext();
        ASSERT_EQ(ZUV_Talvane_Requester_wait_for_replies(&requester_->parent, 2, &kPatience),
                  DDS_RETCODE_OK);
    }

    zuv_test::LogCapture log_;
    DDS_DomainParticipant *client_ = nullptr;
    DDS_DomainParticipant *service_ = nullptr;
    ZUV_BrelServiceAdminRequester *requester_ = nullptr;
    ZUV_BrelServiceAdminReplier *replier_ = nullptr;
    ZUV_Service_Admin_CommandRequest request_;
    ZUV_Service_Admin_CommandReply reply_;
    DDS_SampleInfo info_ = DDS_SAMPLEINFO_DEFAULT;
    DDS_SampleInfoSeq infos_ = DDS_SEQUENCE_INITIALIZER;
};

// Requester.

TEST_F(RequesterAndReplier, receivesTheReplyToARequest)
{
    const DDS_SampleIdentity_t identity = ask("one");
    answerNext();
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_receive_reply(requester_, &reply_, &info_, &kPatience),
              DDS_RETCODE_OK);
    EXPECT_TRUE(info_.valid_data);
    EXPECT_STREQ(reply_.string_body, "one!");
    EXPECT_TRUE(DDS_SampleIdentity_equals(&info_.related_sample_identity, &identity));
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(RequesterAndReplier, sendsWithParametersOfItsOwn)
{
    DDS_String_replace(&request_.string_body, "plain");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_send_request(requester_, &request_), DDS_RETCODE_OK);
    answerNext();
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_receive_reply(requester_, &reply_, &info_, &kPatience),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "plain!");
}

TEST_F(RequesterAndReplier, hasNothingToTakeAtFirst)
{
    info_.valid_data = DDS_BOOLEAN_TRUE;
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_NO_DATA);
    EXPECT_FALSE(info_.valid_data);
    info_.valid_data = DDS_BOOLEAN_TRUE;
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_receive_reply(requester_, &reply_, &info_, &kShort),
              DDS_RETCODE_TIMEOUT);
    EXPECT_FALSE(info_.valid_data);
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_replies(requester_, &replies, &infos_, 5),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 0);
    EXPECT_EQ(
        ZUV_BrelServiceAdminRequester_receive_replies(requester_, &replies, &infos_, 1, 5, &kShort),
        DDS_RETCODE_TIMEOUT);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(RequesterAndReplier, takesOnlyTheReplyToTheRequestThatIsNamed)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply_for_related_request(requester_, &reply_,
                                                                           &info_, &identities[1]),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "two!");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply_for_related_request(requester_, &reply_,
                                                                           &info_, &identities[1]),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply_for_related_request(requester_, &reply_,
                                                                           &info_, nullptr),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "one!");
}

TEST_F(RequesterAndReplier, leavesAReadReplyWhereItIs)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(ZUV_BrelServiceAdminRequester_read_reply_for_related_request(
                      requester_, &reply_, &info_, &identities[1]),
                  DDS_RETCODE_OK);
        EXPECT_STREQ(reply_.string_body, "two!");
        EXPECT_EQ(ZUV_BrelServiceAdminRequester_read_reply(requester_, &reply_, &info_),
                  DDS_RETCODE_OK);
        EXPECT_STREQ(reply_.string_body, "one!");
    }
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "one!");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "two!");
}

TEST_F(RequesterAndReplier, lendsRepliesToASequenceWithoutElements)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_read_replies_for_related_request(
                  requester_, &replies, &infos_, 5, &identities[1]),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 1);
    EXPECT_STREQ(ZUV_Service_Admin_CommandReplySeq_get_reference(&replies, 0)->string_body, "two!");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_return_loan(requester_, &replies, &infos_),
              DDS_RETCODE_OK);

    ASSERT_EQ(ZUV_BrelServiceAdminRequester_take_replies(requester_, &replies, &infos_,
                                                         DDS_LENGTH_UNLIMITED),
              DDS_RETCODE_OK);
    EXPECT_FALSE(ZUV_Service_Admin_CommandReplySeq_has_ownership(&replies));
    ASSERT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 2);
    EXPECT_EQ(DDS_SampleInfoSeq_get_length(&infos_), 2);
    EXPECT_STREQ(ZUV_Service_Admin_CommandReplySeq_get_reference(&replies, 0)->string_body, "one!");
    EXPECT_STREQ(ZUV_Service_Admin_CommandReplySeq_get_reference(&replies, 1)->string_body, "two!");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_return_loan(requester_, &replies, &infos_),
              DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 0);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(RequesterAndReplier, copiesRepliesIntoASequenceWithElements)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReplySeq_set_maximum(&replies, 4));
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_read_replies(requester_, &replies, &infos_, 4),
              DDS_RETCODE_OK);
    EXPECT_TRUE(ZUV_Service_Admin_CommandReplySeq_has_ownership(&replies));
    EXPECT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 2);
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_receive_replies(requester_, &replies, &infos_, 0, 1,
                                                            &kPatience),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 1);
    EXPECT_STREQ(ZUV_Service_Admin_CommandReplySeq_get_reference(&replies, 0)->string_body, "one!");
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_take_replies_for_related_request(
                  requester_, &replies, &infos_, 4, &identities[1]),
              DDS_RETCODE_OK);
    EXPECT_STREQ(ZUV_Service_Admin_CommandReplySeq_get_reference(&replies, 0)->string_body, "two!");
    ZUV_Service_Admin_CommandReplySeq_finalize(&replies);
    DDS_SampleInfoSeq_finalize(&infos_);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(RequesterAndReplier, givesBackALoanThatTheSequenceRefuses)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    // A sequence that holds a loan already.
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReplySeq_loan_contiguous(&replies, &reply_, 1, 1));
    EXPECT_NE(ZUV_BrelServiceAdminRequester_take_replies(requester_, &replies, &infos_, 1),
              DDS_RETCODE_OK);
    EXPECT_EQ(log_.texts().back(), "!copy data");
    ZUV_Service_Admin_CommandReplySeq_unloan(&replies);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_OK);
}

TEST_F(RequesterAndReplier, givesBackALoanOfMoreRepliesThanTheSequenceMayHold)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReplySeq_set_absolute_maximum(&replies, 1));
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_read_replies(requester_, &replies, &infos_, 5),
              DDS_RETCODE_ERROR);
    EXPECT_TRUE(log_.isExactly(
        {{&DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, "!set sequence length to 2: the maximum is 2"},
         {&ZUV_LOG_ANY_FAILURE_s, "!copy data"}}));
    EXPECT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 0);
    EXPECT_TRUE(ZUV_Service_Admin_CommandReplySeq_has_ownership(&replies));
    EXPECT_TRUE(DDS_SampleInfoSeq_has_ownership(&infos_)) << "the loan is out";
    // One fits, and is the only one that holds the requester back from its end.
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_take_replies(requester_, &replies, &infos_, 1),
              DDS_RETCODE_OK);
    EXPECT_NE(ZUV_Talvane_Requester_delete(&requester_->parent), DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_return_loan(requester_, &replies, &infos_),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Talvane_Requester_delete(&requester_->parent), DDS_RETCODE_OK);
    requester_ = createRequester(client_);
    ASSERT_NE(requester_, nullptr);
}

TEST_F(RequesterAndReplier, reportsWhatTheRequesterCannotGet)
{
    DDS_SampleIdentity_t identities[2];
    ASSERT_NO_FATAL_FAILURE(askTwice(identities));
    // The copy into the caller's reply is the last thing that takes memory.
    bool seen = false;
    for (unsigned count = 1; count < 20 && !seen; ++count) {
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
        ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
        log_.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        const DDS_ReturnCode_t code =
            ZUV_BrelServiceAdminRequester_read_reply(requester_, &reply_, &info_);
        ZUVOsapiFault_disarm();
        ASSERT_NE(code, DDS_RETCODE_OK) << "no fault was met";
        EXPECT_FALSE(info_.valid_data);
        ASSERT_FALSE(log_.lines().empty());
        seen = log_.texts().back() == "!copy sample";
        if (!seen) {
            EXPECT_EQ(log_.texts().back(), "!get sample");
        }
    }
    EXPECT_TRUE(seen);
    // The loan was returned: the reader may be deleted, and the reply is still there.
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "one!");
}

TEST_F(RequesterAndReplier, requesterReportsAWaitThatFails)
{
    const auto expectChain = [&] {
        ZUVOsapiFault_disarm();
        // What is waited for, by the untyped requester and by the typed one.
        EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!wait for replies"},
                                    {&ZUV_LOG_ANY_FAILURE_s, "!wait for replies"}}));
        EXPECT_EQ(log_.lines().back().submodule, DDS_SUBMODULE_API);
        log_.clear();
    };
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ZUVOsapiFault_arm("talvane.wait_for_replies", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_receive_reply(requester_, &reply_, &info_, &kShort),
              DDS_RETCODE_ERROR);
    expectChain();
    ZUVOsapiFault_arm("talvane.wait_for_replies", 1, 0);
    EXPECT_EQ(
        ZUV_BrelServiceAdminRequester_receive_replies(requester_, &replies, &infos_, 1, 5, &kShort),
        DDS_RETCODE_ERROR);
    expectChain();
}

TEST_F(RequesterAndReplier, requesterReportsRepliesThatItWaitedForAndCannotGet)
{
    ask("one");
    answerNext();
    info_.valid_data = DDS_BOOLEAN_TRUE;
    ZUVOsapiFault_arm("talvane.deliver", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_receive_reply(requester_, &reply_, &info_, &kPatience),
              DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_FALSE(info_.valid_data);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!get replies"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get sample"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get reply"}}));
    log_.clear();

    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ZUVOsapiFault_arm("talvane.deliver", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_receive_replies(requester_, &replies, &infos_, 1, 5,
                                                            &kPatience),
              DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!get replies"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!copy data"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get replies"}}));
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_take_reply(requester_, &reply_, &info_),
              DDS_RETCODE_OK);
    EXPECT_STREQ(reply_.string_body, "one!");
}

TEST_F(RequesterAndReplier, requesterReportsALoanThatItsReaderRefuses)
{
    // Lent by the test, not by the reader.
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReplySeq_loan_contiguous(&replies, &reply_, 1, 1));
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_return_loan(requester_, &replies, &infos_),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!return what is no loan of this reader"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!return loan"}}));
    EXPECT_EQ(ZUV_Service_Admin_CommandReplySeq_get_length(&replies), 1) << "it keeps what it had";
    ZUV_Service_Admin_CommandReplySeq_unloan(&replies);
}

TEST_F(RequesterAndReplier, requesterNamesTheArgumentThatIsMissing)
{
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    const auto expectMissing = [&](DDS_ReturnCode_t code, const std::string &name) {
        EXPECT_EQ(code, DDS_RETCODE_BAD_PARAMETER) << name;
        ASSERT_GE(log_.lines().size(), 1u) << name;
        EXPECT_EQ(log_.lines()[0].message, &DDS_LOG_BAD_PARAMETER_s);
        EXPECT_NE(log_.lines()[0].text.find(name), std::string::npos);
        EXPECT_EQ(log_.lines()[0].submodule, DDS_SUBMODULE_API);
        log_.clear();
    };
    auto *const self = requester_;
    expectMissing(ZUV_BrelServiceAdminRequester_send_request_w_params(nullptr, &request_, &params),
                  "self");
    expectMissing(ZUV_BrelServiceAdminRequester_send_request_w_params(self, nullptr, &params),
                  "request");
    expectMissing(ZUV_BrelServiceAdminRequester_send_request_w_params(self, &request_, nullptr),
                  "request_info");
    expectMissing(ZUV_BrelServiceAdminRequester_send_request(self, nullptr), "request");
    expectMissing(ZUV_BrelServiceAdminRequester_take_reply(nullptr, &reply_, &info_), "self");
    expectMissing(ZUV_BrelServiceAdminRequester_take_reply(self, nullptr, &info_), "reply");
    expectMissing(ZUV_BrelServiceAdminRequester_read_reply(self, &reply_, nullptr), "sample_info");
    expectMissing(ZUV_BrelServiceAdminRequester_take_replies(nullptr, &replies, &infos_, 1),
                  "self");
    expectMissing(ZUV_BrelServiceAdminRequester_take_replies(self, nullptr, &infos_, 1), "replies");
    expectMissing(ZUV_BrelServiceAdminRequester_read_replies(self, &replies, nullptr, 1),
                  "info_seq");
    expectMissing(ZUV_BrelServiceAdminRequester_receive_reply(nullptr, &reply_, &info_, &kShort),
                  "self");
    expectMissing(ZUV_BrelServiceAdminRequester_receive_reply(self, nullptr, &info_, &kShort),
                  "reply");
    expectMissing(ZUV_BrelServiceAdminRequester_receive_reply(self, &reply_, nullptr, &kShort),
                  "sample_info");
    expectMissing(ZUV_BrelServiceAdminRequester_receive_reply(self, &reply_, &info_, nullptr),
                  "max_wait");
    expectMissing(
        ZUV_BrelServiceAdminRequester_receive_replies(self, &replies, &infos_, 1, 1, nullptr),
        "max_wait");
    expectMissing(ZUV_BrelServiceAdminRequester_return_loan(nullptr, &replies, &infos_), "self");
    expectMissing(ZUV_BrelServiceAdminRequester_return_loan(self, nullptr, &infos_), "replies");
    expectMissing(ZUV_BrelServiceAdminRequester_return_loan(self, &replies, nullptr), "info_seq");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_get_request_datawriter(nullptr), nullptr);
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_get_reply_datareader(nullptr), nullptr);
    log_.clear();
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_receive_replies(self, &replies, &infos_, 3, 2, &kShort),
              DDS_RETCODE_BAD_PARAMETER);
}

TEST_F(RequesterAndReplier, requesterIsMadeFromParametersOrNotAtAll)
{
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_create_w_params(nullptr), nullptr);
    EXPECT_TRUE(
        log_.isExactly({{&ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE, "!accept parameter params"}}));
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(createRequester(client_), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(
        log_.isExactly({{&ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE, "!allocate TReqTRepRequester"}}));
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_EQ(createRequester(client_), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log_.lines().back().message, &ZUV_LOG_FAILED_TO_CREATE_TEMPLATE);
    EXPECT_EQ(log_.texts().back(), "!create RequesterUntypedImpl");
    log_.clear();

    // No service name, no topic names.
    ZUV_Talvane_RequesterParams params = {};
    params.participant = client_;
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_create_w_params(&params), nullptr);
    EXPECT_EQ(log_.texts().back(), "!create RequesterUntypedImpl");
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(RequesterAndReplier, areMadeByServiceNameToo)
{
    ZUV_BrelServiceAdminRequester *const requester =
        ZUV_BrelServiceAdminRequester_create(client_, "echo");
    ZUV_BrelServiceAdminReplier *const replier =
        ZUV_BrelServiceAdminReplier_create(service_, "echo");
    ASSERT_NE(requester, nullptr);
    ASSERT_NE(replier, nullptr);
    DDS_String_replace(&request_.string_body, "by name");
    ASSERT_EQ(ZUV_BrelServiceAdminRequester_send_request(requester, &request_), DDS_RETCODE_OK);
    // Volatile endpoints: a request before the match is lost, so it is repeated.
    ZUV_Service_Admin_CommandRequest request;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
    DDS_ReturnCode_t code = DDS_RETCODE_TIMEOUT;
    for (int round = 0; round < 100 && code != DDS_RETCODE_OK; ++round) {
        constexpr DDS_Duration_t wait = {0, 100000000};
        code = ZUV_BrelServiceAdminReplier_receive_request(replier, &request, &info_, &wait);
        if (code != DDS_RETCODE_OK) {
            ZUV_BrelServiceAdminRequester_send_request(requester, &request_);
        }
    }
    EXPECT_EQ(code, DDS_RETCODE_OK);
    EXPECT_STREQ(request.string_body, "by name");
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    EXPECT_EQ(ZUV_Talvane_Requester_delete(&requester->parent), DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(&replier->parent), DDS_RETCODE_OK);

    log_.clear();
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_create(service_, nullptr), nullptr);
    EXPECT_EQ(log_.texts().back(), "!create replier with params");
}

// Replier.

TEST_F(RequesterAndReplier, takesRequestsInTheirOrder)
{
    ask("one");
    ask("two");
    ZUV_Service_Admin_CommandRequest request;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
    ASSERT_EQ(ZUV_BrelServiceAdminReplier_receive_request(replier_, &request, &info_, &kPatience),
              DDS_RETCODE_OK);
    EXPECT_TRUE(info_.valid_data);
    EXPECT_STREQ(request.string_body, "one");
    EXPECT_EQ(request.application_name, nullptr);
    ASSERT_EQ(ZUV_BrelServiceAdminReplier_receive_request(replier_, &request, &info_, &kPatience),
              DDS_RETCODE_OK);
    EXPECT_STREQ(request.string_body, "two");
    info_.valid_data = DDS_BOOLEAN_TRUE;
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request, &info_),
              DDS_RETCODE_NO_DATA);
    EXPECT_FALSE(info_.valid_data);
    info_.valid_data = DDS_BOOLEAN_TRUE;
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_receive_request(replier_, &request, &info_, &kShort),
              DDS_RETCODE_TIMEOUT);
    EXPECT_FALSE(info_.valid_data);
    EXPECT_TRUE(log_.isEmpty());
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

TEST_F(RequesterAndReplier, leavesAReadRequestWhereItIs)
{
    ask("one");
    ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(&replier_->parent, 1, &kPatience),
              DDS_RETCODE_OK);
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(ZUV_BrelServiceAdminReplier_read_request(replier_, &request_, &info_),
                  DDS_RETCODE_OK);
        EXPECT_STREQ(request_.string_body, "one");
    }
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request_, &info_),
              DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request_, &info_),
              DDS_RETCODE_NO_DATA);
}

TEST_F(RequesterAndReplier, lendsRequestsOrCopiesThem)
{
    ask("one");
    ask("two");
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(&replier_->parent, 2, &kPatience),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_BrelServiceAdminReplier_read_requests(replier_, &requests, &infos_, 1),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 1);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_return_loan(replier_, &requests, &infos_),
              DDS_RETCODE_OK);

    ASSERT_EQ(ZUV_BrelServiceAdminReplier_take_requests(replier_, &requests, &infos_,
                                                        DDS_LENGTH_UNLIMITED),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 2);
    EXPECT_FALSE(ZUV_Service_Admin_CommandRequestSeq_has_ownership(&requests));
    EXPECT_STREQ(ZUV_Service_Admin_CommandRequestSeq_get_reference(&requests, 1)->string_body,
                 "two");
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_return_loan(replier_, &requests, &infos_),
              DDS_RETCODE_OK);

    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_requests(replier_, &requests, &infos_,
                                                        DDS_LENGTH_UNLIMITED),
              DDS_RETCODE_NO_DATA);
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 0);

    ask("three");
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequestSeq_set_maximum(&requests, 2));
    ASSERT_EQ(ZUV_BrelServiceAdminReplier_receive_requests(replier_, &requests, &infos_, 1, 2,
                                                           &kPatience),
              DDS_RETCODE_OK);
    EXPECT_TRUE(ZUV_Service_Admin_CommandRequestSeq_has_ownership(&requests));
    ASSERT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 1);
    EXPECT_STREQ(ZUV_Service_Admin_CommandRequestSeq_get_reference(&requests, 0)->string_body,
                 "three");
    EXPECT_EQ(
        ZUV_BrelServiceAdminReplier_receive_requests(replier_, &requests, &infos_, 1, 2, &kShort),
        DDS_RETCODE_TIMEOUT);
    ZUV_Service_Admin_CommandRequestSeq_finalize(&requests);
    DDS_SampleInfoSeq_finalize(&infos_);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(RequesterAndReplier, reportsWhatTheReplierCannotGet)
{
    ZUV_Service_Admin_CommandRequest request;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
    // Once the replier has memory for a sample, only the copy takes some.
    for (const bool isFirst : {true, false}) {
        ask("one");
        ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(&replier_->parent, 1, &kPatience),
                  DDS_RETCODE_OK);
        ZUV_Service_Admin_CommandRequest_finalize(&request);
        ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request));
        if (isFirst) {
            ASSERT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request, &info_),
                      DDS_RETCODE_OK);
        }
    }
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request, &info_),
              DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_FALSE(info_.valid_data);
    EXPECT_EQ(log_.texts().back(), "!copy sample");
    ask("one");
    ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(&replier_->parent, 1, &kPatience),
              DDS_RETCODE_OK);

    // A sequence that holds a loan already takes nothing.
    log_.clear();
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequestSeq_loan_contiguous(&requests, &request, 1, 1));
    EXPECT_NE(ZUV_BrelServiceAdminReplier_take_requests(replier_, &requests, &infos_, 1),
              DDS_RETCODE_OK);
    EXPECT_EQ(log_.lines().back().message, &DDS_LOG_BAD_PARAMETER_s);
    EXPECT_NE(log_.texts().back().find("error loan or copying data"), std::string::npos);
    ZUV_Service_Admin_CommandRequestSeq_unloan(&requests);

    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request, &info_), DDS_RETCODE_OK);
    EXPECT_STREQ(request.string_body, "one");
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

TEST_F(RequesterAndReplier, givesBackALoanOfMoreRequestsThanTheSequenceMayHold)
{
    ask("one");
    ask("two");
    ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(&replier_->parent, 2, &kPatience),
              DDS_RETCODE_OK);
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequestSeq_set_absolute_maximum(&requests, 1));
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_read_requests(replier_, &requests, &infos_, 5),
              DDS_RETCODE_ERROR);
    EXPECT_TRUE(log_.isExactly(
        {{&DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd, "!set sequence length to 2: the maximum is 2"},
         {&DDS_LOG_BAD_PARAMETER_s, "!accept parameter error loan or copying data"}}));
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 0);
    EXPECT_TRUE(ZUV_Service_Admin_CommandRequestSeq_has_ownership(&requests));
    EXPECT_TRUE(DDS_SampleInfoSeq_has_ownership(&infos_)) << "the loan is out";
    // One fits, and is the only one that holds the replier back from its end.
    ASSERT_EQ(ZUV_BrelServiceAdminReplier_take_requests(replier_, &requests, &infos_, 1),
              DDS_RETCODE_OK);
    EXPECT_NE(ZUV_Talvane_Replier_delete(&replier_->parent), DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_return_loan(replier_, &requests, &infos_),
              DDS_RETCODE_OK);
    ASSERT_EQ(ZUV_Talvane_Replier_delete(&replier_->parent), DDS_RETCODE_OK);
    replier_ = zuv_test::createReplier(service_);
    ASSERT_NE(replier_, nullptr);
}

TEST_F(RequesterAndReplier, replierReportsAWaitThatFails)
{
    const auto expectChain = [&] {
        ZUVOsapiFault_disarm();
        // What is waited for, by the untyped replier and by the typed one.
        EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!wait for requests"},
                                    {&ZUV_LOG_ANY_FAILURE_s, "!wait for requests"}}));
        EXPECT_EQ(log_.lines().back().submodule, DDS_SUBMODULE_API);
        log_.clear();
    };
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ZUVOsapiFault_arm("talvane.wait_for_requests", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_receive_request(replier_, &request_, &info_, &kShort),
              DDS_RETCODE_ERROR);
    expectChain();
    ZUVOsapiFault_arm("talvane.wait_for_requests", 1, 0);
    EXPECT_EQ(
        ZUV_BrelServiceAdminReplier_receive_requests(replier_, &requests, &infos_, 1, 5, &kShort),
        DDS_RETCODE_ERROR);
    expectChain();
}

TEST_F(RequesterAndReplier, replierReportsRequestsThatItWaitedForAndCannotGet)
{
    ask("one");
    info_.valid_data = DDS_BOOLEAN_TRUE;
    ZUVOsapiFault_arm("dds.read_or_take", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_receive_request(replier_, &request_, &info_, &kPatience),
              DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_FALSE(info_.valid_data);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE, "!read or take - Return code = 1"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get samples"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get sample"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!get request"}}));
    log_.clear();

    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ZUVOsapiFault_arm("dds.read_or_take", 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_receive_requests(replier_, &requests, &infos_, 1, 5,
                                                           &kPatience),
              DDS_RETCODE_ERROR);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(
        log_.isExactly({{&ZUV_LOG_FAILURE_TEMPLATE, "!read or take - Return code = 1"},
                        {&ZUV_LOG_ANY_FAILURE_s, "!get samples"},
                        {&DDS_LOG_BAD_PARAMETER_s, "!accept parameter error loan or copying data"},
                        {&ZUV_LOG_ANY_FAILURE_s, "!get requests"}}));
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_take_request(replier_, &request_, &info_),
              DDS_RETCODE_OK);
    EXPECT_STREQ(request_.string_body, "one");
}

TEST_F(RequesterAndReplier, replierReportsALoanThatItsReaderRefuses)
{
    // Lent by the test, not by the reader.
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequestSeq_loan_contiguous(&requests, &request_, 1, 1));
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_return_loan(replier_, &requests, &infos_),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!return what is no loan of this reader"},
                                {&ZUV_LOG_ANY_FAILURE_s, "!return loan"}}));
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestSeq_get_length(&requests), 1)
        << "it keeps what it had";
    ZUV_Service_Admin_CommandRequestSeq_unloan(&requests);
}

TEST_F(RequesterAndReplier, replierNamesTheArgumentThatIsMissing)
{
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    const auto expectMissing = [&](DDS_ReturnCode_t code, const std::string &name) {
        EXPECT_EQ(code, DDS_RETCODE_BAD_PARAMETER) << name;
        ASSERT_EQ(log_.lines().size(), 1u) << name;
        EXPECT_EQ(log_.lines()[0].message, &DDS_LOG_BAD_PARAMETER_s);
        EXPECT_NE(log_.lines()[0].text.find(name), std::string::npos);
        EXPECT_EQ(log_.lines()[0].level, ZUV_LOG_BIT_EXCEPTION);
        EXPECT_EQ(log_.lines()[0].submodule, DDS_SUBMODULE_API);
        log_.clear();
    };
    auto *const self = replier_;
    expectMissing(ZUV_BrelServiceAdminReplier_take_request(nullptr, &request_, &info_), "self");
    expectMissing(ZUV_BrelServiceAdminReplier_take_request(self, nullptr, &info_), "request");
    expectMissing(ZUV_BrelServiceAdminReplier_read_request(self, &request_, nullptr),
                  "sample_info");
    expectMissing(ZUV_BrelServiceAdminReplier_take_requests(self, nullptr, &infos_, 1),
                  "requests is NULL");
    expectMissing(ZUV_BrelServiceAdminReplier_read_requests(self, nullptr, &infos_, 1),
                  "requests is NULL");
    expectMissing(ZUV_BrelServiceAdminReplier_receive_request(nullptr, &request_, &info_, &kShort),
                  "self");
    expectMissing(ZUV_BrelServiceAdminReplier_receive_request(self, nullptr, &info_, &kShort),
                  "request");
    expectMissing(ZUV_BrelServiceAdminReplier_receive_request(self, &request_, nullptr, &kShort),
                  "sample_info");
    expectMissing(ZUV_BrelServiceAdminReplier_receive_request(self, &request_, &info_, nullptr),
                  "max_wait");
    expectMissing(
        ZUV_BrelServiceAdminReplier_receive_requests(nullptr, &requests, &infos_, 1, 1, &kShort),
        "self");
    expectMissing(
        ZUV_BrelServiceAdminReplier_receive_requests(self, nullptr, &infos_, 1, 1, &kShort),
        "requests");
    expectMissing(
        ZUV_BrelServiceAdminReplier_receive_requests(self, &requests, nullptr, 1, 1, &kShort),
        "info_seq");
    expectMissing(
        ZUV_BrelServiceAdminReplier_receive_requests(self, &requests, &infos_, 1, 1, nullptr),
        "max_wait");
    expectMissing(ZUV_BrelServiceAdminReplier_send_reply(nullptr, &reply_, &info_.sample_identity),
                  "self");
    expectMissing(ZUV_BrelServiceAdminReplier_send_reply(self, nullptr, &info_.sample_identity),
                  "reply");
    expectMissing(ZUV_BrelServiceAdminReplier_send_reply(self, &reply_, nullptr),
                  "related_request_id");
    expectMissing(ZUV_BrelServiceAdminReplier_return_loan(nullptr, &requests, &infos_), "self");
    expectMissing(ZUV_BrelServiceAdminReplier_return_loan(self, nullptr, &infos_), "replies");
    expectMissing(ZUV_BrelServiceAdminReplier_return_loan(self, &requests, nullptr), "info_seq");
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_get_reply_datawriter(nullptr), nullptr);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_get_request_datareader(nullptr), nullptr);
    EXPECT_EQ(log_.lines().size(), 2u);
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_receive_requests(self, &requests, &infos_, 3, 2, &kShort),
              DDS_RETCODE_BAD_PARAMETER);
}

TEST_F(RequesterAndReplier, replierIsMadeFromParametersOrNotAtAll)
{
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_create_w_params(nullptr), nullptr);
    EXPECT_EQ(log_.lines().back().message, &DDS_LOG_BAD_PARAMETER_s);
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(zuv_test::createReplier(service_), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!error creating a TReqTRepReplier"}}));
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_EQ(zuv_test::createReplier(service_), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log_.lines().back().message, &ZUV_LOG_CREATION_FAILURE_s);
    EXPECT_EQ(log_.texts().back(), "!create ReplierUntypedImpl");
    log_.clear();

    ZUV_Talvane_ReplierParams params = {};
    params.participant = service_;
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_create_w_params(&params), nullptr);
    EXPECT_EQ(log_.texts().back(), "!initialize ReplierUntypedImpl");
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(RequesterAndReplier, failWithoutTheirEndpoints)
{
    ZUV_BrelServiceAdminRequester requester = {};
    ZUV_BrelServiceAdminReplier replier = {};
    ZUV_Service_Admin_CommandReplySeq replies = DDS_SEQUENCE_INITIALIZER;
    ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
    const auto expectLast = [&](const std::string &text) {
        ASSERT_FALSE(log_.lines().empty());
        EXPECT_EQ(log_.lines().back().message, &ZUV_LOG_GET_FAILURE_s);
        EXPECT_EQ(log_.texts().back(), text);
        log_.clear();
    };
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_get_request_datawriter(&requester), nullptr);
    expectLast("!get request DataWriter");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_get_reply_datareader(&requester), nullptr);
    expectLast("!get reply DataReader");
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_return_loan(&requester, &replies, &infos_),
              DDS_RETCODE_ERROR);
    expectLast("!get reader to return loan");
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_get_reply_datawriter(&replier), nullptr);
    expectLast("!get reply DataWriter");
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_get_request_datareader(&replier), nullptr);
    expectLast("!get request DataReader");
    EXPECT_EQ(ZUV_BrelServiceAdminReplier_return_loan(&replier, &requests, &infos_),
              DDS_RETCODE_ERROR);
    expectLast("!get reader to return loan");
}

TEST_F(RequesterAndReplier, reportWhatCannotBeSent)
{
    DDS_String_replace(&request_.resource_identifier, std::string(2049, 'i').c_str());
    EXPECT_NE(ZUV_BrelServiceAdminRequester_send_request(requester_, &request_), DDS_RETCODE_OK);
    EXPECT_TRUE(log_.holds(
        {{&ZUV_LOG_ANY_FAILURE_s, "!send_request"}, {&ZUV_LOG_ANY_FAILURE_s, "!send request"}}));
    DDS_String_replace(&request_.resource_identifier, std::string(2048, 'i').c_str());
    log_.clear();
    EXPECT_EQ(ZUV_BrelServiceAdminRequester_send_request(requester_, &request_), DDS_RETCODE_OK);
    EXPECT_TRUE(log_.isEmpty());

    ZUVOsapiFault_arm(nullptr, 1, 1);
    EXPECT_NE(
        ZUV_BrelServiceAdminReplier_send_reply(replier_, &reply_, &DDS_UNKNOWN_SAMPLE_IDENTITY),
        DDS_RETCODE_OK);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log_.texts().back(), "!send reply");
}

TEST_F(RequesterAndReplier, tellAListenerOfRequests)
{
    static std::atomic<int> calls;
    calls = 0;
    int marker = 0;
    const ZUV_Talvane_ReplierListener listener = {
        [](ZUV_Talvane_Replier *replier, void *user_data) {
            ZUV_Service_Admin_CommandRequestSeq requests = DDS_SEQUENCE_INITIALIZER;
            DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
            auto *const self = reinterpret_cast<ZUV_BrelServiceAdminReplier *>(replier);
            if (ZUV_BrelServiceAdminReplier_take_requests(self, &requests, &infos,
                                                          DDS_LENGTH_UNLIMITED) == DDS_RETCODE_OK) {
                ++*static_cast<int *>(user_data);
                ++calls;
                ZUV_BrelServiceAdminReplier_return_loan(self, &requests, &infos);
            }
        },
        &marker};
    ZUV_BrelServiceAdminReplier *const listening = zuv_test::createReplier(service_, &listener);
    ASSERT_NE(listening, nullptr);
    for (int round = 0; round < 100 && calls == 0; ++round) {
        ask("hear");
        std::this_thread::sleep_for(20ms);
    }
    EXPECT_GT(calls, 0);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(&listening->parent), DDS_RETCODE_OK);
    EXPECT_EQ(marker, calls);
}

TEST_F(RequesterAndReplier, areNotListenedToWithoutAListener)
{
    // A listener of the reader's would find this one.
    static std::atomic<int> calls;
    calls = 0;
    EXPECT_EQ(replier_->parent.listener.on_request_available, nullptr);
    replier_->parent.listener.on_request_available = [](ZUV_Talvane_Replier *, void *) { ++calls; };
    for (const char *body : {"one", "two"}) { // when the second one is there, the first was told of
        ask(body);
        EXPECT_EQ(
            ZUV_BrelServiceAdminReplier_receive_request(replier_, &request_, &info_, &kPatience),
            DDS_RETCODE_OK);
        EXPECT_STREQ(request_.string_body, body);
    }
    EXPECT_EQ(calls, 0);
    replier_->parent.listener.on_request_available = nullptr;
}

} // namespace
