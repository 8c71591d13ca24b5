// Request and reply between two processes: what is correlated, bounded, waited for and cleaned up.
#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <numeric>
#include <pthread.h>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "Endpoints.h"
#include "platform/dds/DomainParticipantFactory.h"
#include "platform/dds/Publisher.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "support/Eventually.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"
#include "support/Process.h"

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr DDS_Duration_t kPatience = {10, 0};
constexpr DDS_Duration_t kNoTime = {0, 0};
constexpr DDS_Duration_t kShort = {0, 100000000};

DDS_DomainParticipant *join()
{
    return DDS_DomainParticipantFactory_create_participant(
        DDS_DomainParticipantFactory_get_instance(), zuv_test::loopbackDomainId(),
        &DDS_PARTICIPANT_QOS_DEFAULT, nullptr, DDS_STATUS_MASK_NONE);
}

void leave(DDS_DomainParticipant *participant)
{
    EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(
                  DDS_DomainParticipantFactory_get_instance(), participant),
              DDS_RETCODE_OK);
}

// A service in another process.
class EchoService
{
public:
    explicit EchoService(const std::string &name)
        : process({ECHO_SERVICE, std::to_string(zuv_test::loopbackDomainId()), name})
    {
        EXPECT_TRUE(process.waitForOutput("ready\n")) << process.errors();
    }

    zuv_test::Process process;
};

// A requester with a participant of its own.
class Client
{
public:
    Client() : participant(join()), requester(zuv_test::createRequester(participant))
    {
        Test_Question_initialize(&question);
    }
    ~Client()
    {
        Test_Question_finalize(&question);
        EXPECT_EQ(ZUV_Talvane_Requester_delete(requester), DDS_RETCODE_OK);
        leave(participant);
    }
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    DDS_DataWriter *writer() const
    {
        return ZUV_Talvane_EntityUntypedImpl_get_datawriter(requester->_impl);
    }
    DDS_DataReader *reader() const
    {
        return ZUV_Talvane_EntityUntypedImpl_get_datareader(requester->_impl);
    }

    // Wait until so many services are matched in both directions.
    bool waitForServices(DDS_Long count = 1)
    {
        const auto end = Clock::now() + 10s;
        DDS_PublicationMatchedStatus written = {};
        DDS_SubscriptionMatchedStatus read = {};
        do {
            DDS_DataWriter_get_publication_matched_status(writer(), &written);
            DDS_DataReader_get_subscription_matched_status(reader(), &read);
            if (written.current_count == count && read.current_count == count) {
                return true;
            }
            std::this_thread::sleep_for(200us);
        } while (Clock::now() < end);
        return false;
    }

    DDS_SampleIdentity_t send(const std::string &text, const char *addressee = nullptr)
    {
        DDS_String_replace(&question.text, text.c_str());
        DDS_String_replace(&question.addressee, addressee);
        DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
        params.replace_auto = DDS_BOOLEAN_TRUE;
        EXPECT_EQ(ZUV_Talvane_EntityUntypedImpl_send_sample(requester->_impl, &question, &params),
                  DDS_RETCODE_OK);
        return params.identity;
    }

    DDS_ReturnCode_t wait(const DDS_SampleIdentity_t &identity,
                          const DDS_Duration_t &patience = kPatience, DDS_Long count = 1)
    {
        return ZUV_Talvane_Requester_wait_for_replies_for_related_request(requester, count,
                                                                          &patience, &identity);
    }

    struct Reply {
        DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
        DDS_Long number = -1;
        std::string text;
        DDS_SampleIdentity_t related = {};
    };

    // One reply, to any request for a null identity.
    Reply get(const DDS_SampleIdentity_t *identity, bool take = true)
    {
        Reply reply;
        void **data = nullptr;
        DDS_Long count = 0;
        DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        reply.code = ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
            requester->_impl, &data, &count, &isLoan, nullptr, &infos, 0, 0, DDS_BOOLEAN_TRUE, 1,
            identity, take ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE);
        if (reply.code == DDS_RETCODE_OK) {
            EXPECT_TRUE(isLoan);
            EXPECT_EQ(count, 1);
            const auto *const answer = static_cast<const Test_Answer *>(data[0]);
            reply.number = answer->number;
            reply.text = answer->text;
            reply.related = DDS_SampleInfoSeq_get_reference(&infos, 0)->related_sample_identity;
            EXPECT_EQ(
                ZUV_Talvane_EntityUntypedImpl_return_loan(requester->_impl, data, count, &infos),
                DDS_RETCODE_OK);
        }
        return reply;
    }

    // The text of the first reply, or what went wrong in brackets.
    std::string ask(const std::string &text, const char *addressee = nullptr)
    {
        const DDS_SampleIdentity_t identity = send(text, addressee);
        const DDS_ReturnCode_t code = wait(identity);
        if (code != DDS_RETCODE_OK) {
            return "[wait " + std::to_string(code) + "]";
        }
        return get(&identity).text;
    }

    DDS_DomainParticipant *participant;
    ZUV_Talvane_Requester *requester;
    Test_Question question;
};

// -- Correlation ----------------------------------------------------------------------------------------------------

TEST(RequestReply, answersARequest)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    EXPECT_EQ(client.ask("hello"), "S1:hello");
    EXPECT_EQ(client.ask("again"), "S1:again");
}

TEST(RequestReply, neverTakesALateReplyForThatOfALaterRequest)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    const DDS_SampleIdentity_t late = client.send("sleep 300");
    EXPECT_EQ(client.wait(late, kShort), DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(client.get(&late).code, DDS_RETCODE_NO_DATA);
    const DDS_SampleIdentity_t next = client.send("next");
    EXPECT_EQ(client.wait(next), DDS_RETCODE_OK);
    const Client::Reply reply = client.get(&next);
    EXPECT_EQ(reply.text, "S1:next");
    EXPECT_TRUE(DDS_SampleIdentity_equals(&reply.related, &next));
    EXPECT_EQ(client.get(&next).code, DDS_RETCODE_NO_DATA);
    EXPECT_EQ(client.get(&late).text, "S1:sleep 300") << "it is there for whoever asks";
    EXPECT_EQ(client.get(nullptr).code, DDS_RETCODE_NO_DATA);
}

TEST(RequestReply, tellsWhetherWhatIsTakenIsHeldElsewhereToo)
{
    struct Loan {
        void **data = nullptr;
        DDS_Long count = 0;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    };
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    ZUV_Talvane_EntityUntypedImpl *const impl = client.requester->_impl;
    const auto lend = [&](Loan &loan, DDS_Boolean take) {
        DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
        EXPECT_EQ(ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
                      impl, &loan.data, &loan.count, &isLoan, nullptr, &loan.infos, 0, 0,
                      DDS_BOOLEAN_TRUE, 1, nullptr, take),
                  DDS_RETCODE_OK);
    };
    const auto giveBack = [&](Loan &loan) {
        EXPECT_EQ(
            ZUV_Talvane_EntityUntypedImpl_return_loan(impl, loan.data, loan.count, &loan.infos),
            DDS_RETCODE_OK);
    };
    const auto isSole = [&](const Loan &loan) {
        return ZUV_Talvane_EntityUntypedImpl_is_sole_holderI(impl, &loan.infos) != 0;
    };
    Loan read, taken;
    EXPECT_FALSE(isSole(read)) << "nothing is lent";
    ASSERT_EQ(client.wait(client.send("hello")), DDS_RETCODE_OK);
    lend(read, DDS_BOOLEAN_FALSE);
    EXPECT_FALSE(isSole(read)) << "the reply can be had again";
    lend(taken, DDS_BOOLEAN_TRUE);
    EXPECT_FALSE(isSole(taken));
    giveBack(read);
    EXPECT_TRUE(isSole(taken));
    giveBack(taken);
}

TEST(RequestReply, keepsTheRepliesOfRequestersApart)
{
    EchoService service("S1");
    Client one, other;
    ASSERT_TRUE(one.waitForServices());
    ASSERT_TRUE(other.waitForServices());
    for (int round = 0; round < 50; ++round) {
        const DDS_SampleIdentity_t first = one.send("one");
        const DDS_SampleIdentity_t second = other.send("other");
        EXPECT_EQ(other.wait(second), DDS_RETCODE_OK);
        EXPECT_EQ(one.wait(first), DDS_RETCODE_OK);
        EXPECT_EQ(one.get(&second).code, DDS_RETCODE_NO_DATA);
        EXPECT_EQ(one.get(nullptr).text, "S1:one");
        EXPECT_EQ(other.get(nullptr).text, "S1:other");
        EXPECT_EQ(one.get(nullptr).code, DDS_RETCODE_NO_DATA);
    }
}

TEST(RequestReply, reachesOnlyTheServiceThatIsNamed)
{
    EchoService first("alpha"), second("beta"), pattern("b*");
    Client client;
    ASSERT_TRUE(client.waitForServices(3));
    EXPECT_EQ(client.ask("hi", "alpha"), "alpha:hi");
    const DDS_SampleIdentity_t toBeta = client.send("hi", "beta");
    EXPECT_EQ(client.wait(toBeta, kPatience, 2), DDS_RETCODE_OK)
        << "a service whose name is a pattern takes what it matches";
    EXPECT_EQ(client.wait(toBeta, kShort, 3), DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(client.ask("hi", "bravo"), "b*:hi");
    EXPECT_EQ(client.wait(client.send("hi", "al*"), kShort), DDS_RETCODE_TIMEOUT)
        << "a pattern in the request is a name like any other";
    const DDS_SampleIdentity_t toAll = client.send("hi");
    EXPECT_EQ(client.wait(toAll, kPatience, 3), DDS_RETCODE_OK);
}

TEST(RequestReply, answersManyThreadsThroughOneRequester)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    std::atomic<int> right{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&, thread] {
            Test_Question question;
            Test_Question_initialize(&question);
            for (int round = 0; round < 50; ++round) {
                const std::string text = std::to_string(thread) + "/" + std::to_string(round);
                DDS_String_replace(&question.text, text.c_str());
                DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
                params.replace_auto = DDS_BOOLEAN_TRUE;
                EXPECT_EQ(ZUV_Talvane_EntityUntypedImpl_send_sample(client.requester->_impl,
                                                                    &question, &params),
                          DDS_RETCODE_OK);
                EXPECT_EQ(client.wait(params.identity), DDS_RETCODE_OK);
                right += client.get(&params.identity).text == "S1:" + text;
            }
            Test_Question_finalize(&question);
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 200);
}

// -- Discovery ------------------------------------------------------------------------------------------------------

TEST(RequestReply, answersTheFirstRequestOfEveryFreshRequester)
{
    EchoService service("S1");
    int unanswered = 0;
    for (int round = 0; round < 200; ++round) {
        Client client;
        ASSERT_TRUE(client.waitForServices()) << round;
        unanswered += client.ask("first") != "S1:first";
    }
    EXPECT_EQ(unanswered, 0);
}

// -- Bounds ---------------------------------------------------------------------------------------------------------

TEST(RequestReply, keepsUntakenRepliesFromBlockingTheServiceAndBoundsTheirNumber)
{
    EchoService service("S1");
    Client lazy, busy;
    ASSERT_TRUE(lazy.waitForServices());
    ASSERT_TRUE(busy.waitForServices());
    const DDS_SampleIdentity_t flood = lazy.send("repeat 1000");
    EXPECT_EQ(lazy.wait(flood, kPatience, 256), DDS_RETCODE_OK);
    const auto start = Clock::now();
    EXPECT_EQ(busy.ask("hello"), "S1:hello");
    EXPECT_LT(Clock::now() - start, 5s);
    const DDS_SampleIdentity_t last = lazy.send("last");
    EXPECT_EQ(lazy.wait(last), DDS_RETCODE_OK);

    std::vector<DDS_Long> numbers;
    for (Client::Reply reply = lazy.get(&flood); reply.code == DDS_RETCODE_OK;
         reply = lazy.get(&flood)) {
        numbers.push_back(reply.number);
    }
    ASSERT_EQ(numbers.size(), 255U) << "with the last one, 256";
    std::vector<DDS_Long> newest(255);
    std::iota(newest.begin(), newest.end(), 745);
    EXPECT_EQ(numbers, newest) << "the oldest gave way";
    EXPECT_EQ(lazy.get(&last).text, "S1:last");
}

TEST(RequestReply, boundsTheMemoryOfUntakenReplies)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    ZUVOsapiHeapStatistics before, after;
    ZUVOsapiHeap_getStatistics(&before);
    constexpr int kReplies = 20;
    for (int round = 0; round < kReplies; ++round) {
        const DDS_SampleIdentity_t identity = client.send("size 8388608");
        ASSERT_EQ(client.wait(identity), DDS_RETCODE_OK);
    }
    ZUVOsapiHeap_getStatistics(&after);
    EXPECT_LT(after.liveByteCount - before.liveByteCount, 10 * (std::uint64_t{8} << 20));
    while (client.get(nullptr).code == DDS_RETCODE_OK) {
    }
    ZUVOsapiHeap_getStatistics(&after);
    EXPECT_LT(after.liveByteCount - before.liveByteCount, std::uint64_t{1} << 20);
}

TEST(RequestReply, refusesToWaitForMoreRepliesThanItKeeps)
{
    Client client;
    zuv_test::LogCapture log;
    EXPECT_EQ(ZUV_Talvane_Requester_wait_for_replies(client.requester, 257, &kNoTime),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"!wait for more replies than are kept"});
}

// -- Sizes ----------------------------------------------------------------------------------------------------------

TEST(RequestReply, carries8MiBBothWays)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    std::vector<DDS_Octet> octets(8 << 20);
    std::uint64_t sum = 0;
    for (std::size_t index = 0; index < octets.size(); ++index) {
        octets[index] = static_cast<DDS_Octet>(index * 31 >> 3);
        sum += octets[index];
    }
    ASSERT_TRUE(DDS_OctetSeq_from_array(&client.question.octets, octets.data(), 8 << 20));
    EXPECT_EQ(client.ask("dump"), "8388608 " + std::to_string(sum));
    DDS_OctetSeq_set_length(&client.question.octets, 0);
    EXPECT_EQ(client.ask("size 8388608"), std::string(8 << 20, 'r'));
    EXPECT_EQ(client.ask("small"), "S1:small");
}

TEST(RequestReply, allocatesNothingPerCommandUpTo32KiB)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    const std::string body(32 * 1024, 'q');
    DDS_String_replace(&client.question.text, body.c_str());
    void **data = nullptr;
    DDS_Long count = 0;
    DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    const auto command = [&] {
        DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
        params.replace_auto = DDS_BOOLEAN_TRUE;
        ASSERT_EQ(ZUV_Talvane_EntityUntypedImpl_send_sample(client.requester->_impl,
                                                            &client.question, &params),
                  DDS_RETCODE_OK);
        ASSERT_EQ(client.wait(params.identity), DDS_RETCODE_OK);
        ASSERT_EQ(ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned(
                      client.requester->_impl, &data, &count, &isLoan, nullptr, &infos, 0, 0,
                      DDS_BOOLEAN_TRUE, 1, &params.identity, DDS_BOOLEAN_TRUE),
                  DDS_RETCODE_OK);
        ASSERT_EQ(
            ZUV_Talvane_EntityUntypedImpl_return_loan(client.requester->_impl, data, count, &infos),
            DDS_RETCODE_OK);
    };
    // With the service's name in front, and all serialized, the reply is just within what the reader keeps.
    DDS_String_replace(&client.question.text, body.substr(100).c_str());
    command();
    command();
    const zuv_test::HeapCheck heap;
    for (int round = 0; round < 50; ++round) {
        command();
    }
    EXPECT_EQ(heap.allocations(), 0U);
}

// -- Waiting --------------------------------------------------------------------------------------------------------

TEST(RequestReply, timesOutWithoutALogLine)
{
    Client client;
    zuv_test::LogCapture log;
    const auto start = Clock::now();
    EXPECT_EQ(ZUV_Talvane_Requester_wait_for_replies(client.requester, 1, &kShort),
              DDS_RETCODE_TIMEOUT);
    EXPECT_GE(Clock::now() - start, 100ms);
    EXPECT_EQ(ZUV_Talvane_Requester_wait_for_replies(client.requester, 1, &kNoTime),
              DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(ZUV_Talvane_Requester_wait_for_replies(client.requester, 0, &kNoTime),
              DDS_RETCODE_OK);
    EXPECT_TRUE(log.isEmpty());
}

TEST(RequestReply, isNotWokenBySignals)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    struct sigaction ignore = {}, before = {};
    ignore.sa_handler = [](int) {};
    sigaction(SIGUSR1, &ignore, &before);
    std::atomic<bool> isDone{false};
    std::thread disturber([&, self = pthread_self()] {
        while (!isDone) {
            pthread_kill(self, SIGUSR1);
            std::this_thread::sleep_for(1ms);
        }
    });
    const auto start = Clock::now();
    EXPECT_EQ(client.wait(client.send("sleep 2000"), {0, 300000000}), DDS_RETCODE_TIMEOUT);
    EXPECT_GE(Clock::now() - start, 300ms);
    EXPECT_EQ(client.ask("hello"), "S1:hello");
    isDone = true;
    disturber.join();
    sigaction(SIGUSR1, &before, nullptr);
}

TEST(RequestReply, countsOnlyRepliesThatWereNotRead)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    const DDS_SampleIdentity_t identity = client.send("hello");
    EXPECT_EQ(client.wait(identity), DDS_RETCODE_OK);
    EXPECT_EQ(client.get(&identity, false).text, "S1:hello");
    EXPECT_EQ(client.wait(identity, kNoTime), DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(client.get(&identity, false).text, "S1:hello") << "a read leaves it there";
    EXPECT_EQ(client.get(&identity).text, "S1:hello");
    EXPECT_EQ(client.get(&identity).code, DDS_RETCODE_NO_DATA);
}

// -- Death and return -----------------------------------------------------------------------------------------------

TEST(RequestReply, survivesAServiceThatIsKilledAndComesBack)
{
    Client client;
    {
        EchoService service("S1");
        ASSERT_TRUE(client.waitForServices());
        EXPECT_EQ(client.ask("hello"), "S1:hello");
        const DDS_SampleIdentity_t lost = client.send("sleep 10000");
        EXPECT_EQ(client.wait(lost, kShort), DDS_RETCODE_TIMEOUT);
        service.process.signal(SIGKILL);
        EXPECT_EQ(service.process.wait(), 128 + SIGKILL);
    }
    const DDS_SampleIdentity_t nobody = client.send("anyone?");
    EXPECT_EQ(client.wait(nobody, kShort), DDS_RETCODE_TIMEOUT);
    EchoService service("S1");
    const auto end = Clock::now() + 15s;
    std::string answer;
    while (answer != "S1:back" && Clock::now() < end) {
        const DDS_SampleIdentity_t identity = client.send("back");
        if (client.wait(identity, {0, 500000000}) == DDS_RETCODE_OK) {
            answer = client.get(&identity).text;
        }
    }
    EXPECT_EQ(answer, "S1:back");
}

TEST(RequestReply, servesOthersThoughARequesterIsKilled)
{
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    for (int round = 0; round < 3; ++round) {
        zuv_test::Process requester(
            {KILLED_REQUESTER, std::to_string(zuv_test::loopbackDomainId())});
        EXPECT_EQ(requester.wait(), 128 + SIGKILL) << requester.errors();
    }
    // More than the service's writer could keep for readers that never acknowledge.
    for (int round = 0; round < 100; ++round) {
        EXPECT_EQ(client.ask("hello"), "S1:hello");
    }
}

// -- Repliers -------------------------------------------------------------------------------------------------------

TEST(Replier, waitsForRequestsAndLeavesThemWhereTheyAre)
{
    Client client;
    DDS_DomainParticipant *const participant = join();
    ZUV_Talvane_Replier *const replier = zuv_test::createReplier(participant);
    ASSERT_TRUE(client.waitForServices());
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 1, &kShort), DDS_RETCODE_TIMEOUT);
    client.send("one");
    client.send("two");
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 2, &kPatience), DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 3, &kNoTime), DDS_RETCODE_TIMEOUT);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    leave(participant);
}

TEST(Replier, goesOnWaitingUntilRequestsEnoughHaveCome)
{
    Client client;
    DDS_DomainParticipant *const participant = join();
    ZUV_Talvane_Replier *const replier = zuv_test::createReplier(participant);
    ASSERT_TRUE(client.waitForServices());
    std::atomic<bool> isLastSent{false};
    std::thread asking([&] {
        for (const char *text : {"one", "two", "three"}) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            isLastSent = std::string_view(text) == "three";
            client.send(text);
        }
    });
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 3, &kPatience), DDS_RETCODE_OK);
    EXPECT_TRUE(isLastSent);
    asking.join();
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    leave(participant);
}

TEST(Replier, isKeptWhileItsRequestsAreOnLoan)
{
    Client client;
    DDS_DomainParticipant *const participant = join();
    ZUV_Talvane_Replier *const replier = zuv_test::createReplier(participant);
    ASSERT_TRUE(client.waitForServices());
    client.send("one");
    ASSERT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 1, &kPatience), DDS_RETCODE_OK);
    void **data = nullptr;
    DDS_Long count = 0;
    DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    ASSERT_EQ(ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
                  replier->_impl, &data, &count, &isLoan, nullptr, &infos, 0, 0, DDS_BOOLEAN_TRUE,
                  1, nullptr, DDS_BOOLEAN_TRUE),
              DDS_RETCODE_OK);
    {
        zuv_test::LogCapture log;
        EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_PRECONDITION_NOT_MET);
        EXPECT_EQ(log.texts(), (std::vector<std::string>{"!delete reader whose samples are on loan",
                                                         "!delete replier"}));
    }
    EXPECT_STREQ(static_cast<Test_Question *>(data[0])->text, "one");
    EXPECT_EQ(ZUV_Talvane_EntityUntypedImpl_return_loan(replier->_impl, data, count, &infos),
              DDS_RETCODE_OK);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    leave(participant);
}

TEST(Replier, sendsToARequesterThatNeverReadsAfterOneWait)
{
    DDS_DomainParticipant *const participant = join();
    ZUV_Talvane_Replier *const replier = zuv_test::createReplier(participant);
    DDS_SampleIdentity_t stranger = {};
    stranger.writer_guid.value[0] = 1;
    stranger.sequence_number.low = 1;
    Test_Answer answer;
    Test_Answer_initialize(&answer);
    const auto send = [&] {
        DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
        const auto start = Clock::now();
        EXPECT_EQ(
            ZUV_Talvane_ReplierUntypedImpl_send_sample(replier->_impl, &answer, &stranger, &params),
            DDS_RETCODE_OK);
        return Clock::now() - start;
    };
    EXPECT_GE(send(), 900ms);
    EXPECT_LT(send(), 500ms) << "it is not waited for again";
    Test_Answer_finalize(&answer);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    leave(participant);
}

TEST(Replier, tellsItsListenerOfRequests)
{
    Client client;
    DDS_DomainParticipant *const participant = join();
    std::atomic<int> heard{0};
    ZUV_Talvane_ReplierListener listener = {
        [](ZUV_Talvane_Replier *, void *data) { ++*static_cast<std::atomic<int> *>(data); },
        &heard};
    ZUV_Talvane_Replier *const replier = zuv_test::createReplier(participant, nullptr, &listener);
    ASSERT_TRUE(client.waitForServices());
    client.send("one");
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(replier, 1, &kPatience), DDS_RETCODE_OK);
    for (int round = 0; heard == 0 && round < 1000; ++round) {
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(heard, 1);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    leave(participant);
}

// Takes all requests, and notes whether the replier could do so and could answer.
struct Taker {
    std::atomic<int> calls{0};
    std::atomic<int> failures{0};

    static void onRequest(ZUV_Talvane_Replier *replier, void *data)
    {
        auto *const self = static_cast<Taker *>(data);
        ++self->calls;
        void **samples = nullptr;
        DDS_Long count = 0;
        DDS_Boolean isLoan = DDS_BOOLEAN_FALSE;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        const DDS_ReturnCode_t code = ZUV_Talvane_EntityUntypedImpl_get_sample_loaned(
            replier->_impl, &samples, &count, &isLoan, nullptr, &infos, 0, 0, DDS_BOOLEAN_TRUE, -1,
            nullptr, DDS_BOOLEAN_TRUE);
        if (code == DDS_RETCODE_OK) {
            ZUV_Talvane_EntityUntypedImpl_return_loan(replier->_impl, samples, count, &infos);
        }
        if ((code != DDS_RETCODE_OK && code != DDS_RETCODE_NO_DATA) ||
            ZUV_Talvane_EntityUntypedImpl_get_datawriter(replier->_impl) == nullptr) {
            ++self->failures;
        }
    }
};

TEST(Replier, doesNotCallItsListenerBeforeItIsWhole)
{
    Client client; // in the replier's participant, where endpoints find each other at once
    Taker taker;
    const ZUV_Talvane_ReplierListener listener = {Taker::onRequest, &taker};
    for (int round = 0; round < 15; ++round) {
        const int before = taker.calls;
        std::atomic<bool> isEnough{false};
        std::thread asking([&] {
            while (!isEnough) {
                client.send("one");
            }
        });
        ZUV_Talvane_Replier *const replier =
            zuv_test::createReplier(client.participant, nullptr, &listener);
        EXPECT_TRUE(zuv_test::eventually([&] { return taker.calls > before; }));
        isEnough = true;
        asking.join();
        EXPECT_TRUE(zuv_test::eventually([&] {
            return ZUV_Talvane_Replier_wait_for_requests(replier, 1, &kNoTime) ==
                   DDS_RETCODE_TIMEOUT;
        }));
        EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
    }
    EXPECT_EQ(taker.failures, 0);
}

// -- What cannot be made --------------------------------------------------------------------------------------------

class Making : public testing::Test
{
protected:
    ~Making() override { leave(participant_); }

    ZUV_Talvane_RequesterUntypedImpl *make(const ZUV_Talvane_RequesterParams &params)
    {
        return ZUV_Talvane_RequesterUntypedImpl_create(
            &params, Test_QuestionTypeSupport_register_type, "question",
            Test_AnswerTypeSupport_register_type, "answer", sizeof(Test_Answer));
    }

    DDS_DomainParticipant *participant_ = join();
    zuv_test::LogCapture log_;
    ZUV_Talvane_RequesterParams params_ = {};
};

TEST_F(Making, needsAParticipantAndNames)
{
    EXPECT_EQ(make(params_), nullptr);
    EXPECT_EQ(log_.texts(), (std::vector<std::string>{"!accept parameter params.participant",
                                                      "!create requester"}));
    log_.clear();
    params_.participant = participant_;
    params_.request_topic_name = "only one";
    EXPECT_EQ(make(params_), nullptr);
    EXPECT_EQ(log_.texts(),
              (std::vector<std::string>{"!accept parameter service_name", "!create requester"}));
}

TEST_F(Making, readsNoProfiles)
{
    params_.participant = participant_;
    params_.service_name = "service";
    params_.qos_profile_name = "profile";
    EXPECT_EQ(make(params_), nullptr);
    EXPECT_EQ(log_.texts(),
              (std::vector<std::string>{"!read QoS from a profile", "!create requester"}));
}

TEST_F(Making, namesItsTopicsForTheService)
{
    params_.participant = participant_;
    params_.service_name = "service";
    auto *const requester = static_cast<ZUV_Talvane_Requester *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(ZUV_Talvane_Requester), "test"));
    requester->_impl = make(params_);
    ASSERT_NE(requester->_impl, nullptr);
    EXPECT_NE(DDS_DomainParticipant_lookup_topicdescription(participant_, "serviceRequest"),
              nullptr);
    EXPECT_NE(DDS_DomainParticipant_lookup_topicdescription(participant_, "serviceReply"), nullptr);
    EXPECT_EQ(ZUV_Talvane_Requester_delete(requester), DDS_RETCODE_OK);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Making, refusesATopicOfAnotherTypeAndAFilteredOneToWriteTo)
{
    Test_AnswerTypeSupport_register_type(participant_, "other");
    Test_QuestionTypeSupport_register_type(participant_, "question");
    DDS_DomainParticipant_create_topic(participant_, "taken", "other", &DDS_TOPIC_QOS_DEFAULT,
                                       nullptr, 0);
    DDS_Topic *const topic = DDS_DomainParticipant_create_topic(
        participant_, "questions", "question", &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
    DDS_DomainParticipant_create_contentfilteredtopic(participant_, "filtered", topic,
                                                      "addressee = NULL", nullptr);
    params_.participant = participant_;
    params_.request_topic_name = "taken";
    params_.reply_topic_name = "answers";
    EXPECT_EQ(make(params_), nullptr);
    EXPECT_EQ(log_.texts().front(), "!use topic taken of type other for question");
    log_.clear();
    params_.request_topic_name = "filtered";
    EXPECT_EQ(make(params_), nullptr);
    EXPECT_EQ(log_.texts().front(), "!write to a filtered topic");
}

TEST_F(Making, reportsNullArguments)
{
    EXPECT_EQ(ZUV_Talvane_Requester_delete(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(ZUV_Talvane_Replier_delete(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(ZUV_Talvane_Requester_wait_for_replies(nullptr, 1, &kNoTime),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(ZUV_Talvane_Replier_wait_for_requests(nullptr, 1, &kNoTime),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(ZUV_Talvane_EntityUntypedImpl_get_datareader(nullptr), nullptr);
    EXPECT_EQ(log_.lines().size(), 5U);
    for (const zuv_test::LogLine &line : log_.lines()) {
        EXPECT_EQ(line.message, &DDS_LOG_BAD_PARAMETER_s);
    }
}

TEST_F(Making, validatesWhatAReceiveIsGiven)
{
    ZUV_Talvane_ReplierUntypedImpl *const impl = ZUV_Talvane_ReplierUntypedImpl_create();
    const auto isValid = [&](DDS_Long least, DDS_Long most, const DDS_Duration_t *wait) {
        return ZUV_Talvane_EntityUntypedImpl_validate_receive_params(impl, "receive_things", least,
                                                                     most, wait) != 0;
    };
    EXPECT_TRUE(isValid(0, 0, &kNoTime));
    EXPECT_TRUE(isValid(1, 1, &kNoTime));
    EXPECT_TRUE(isValid(5, DDS_LENGTH_UNLIMITED, &kNoTime));
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_FALSE(isValid(-1, 1, &kNoTime));
    EXPECT_FALSE(isValid(1, -2, &kNoTime));
    EXPECT_FALSE(isValid(2, 1, &kNoTime));
    EXPECT_FALSE(isValid(1, 1, nullptr));
    ASSERT_EQ(log_.lines().size(), 4U);
    EXPECT_NE(log_.texts()[0].find("receive_things: min_count"), std::string::npos);
    EXPECT_NE(log_.texts()[3].find("receive_things: max_wait"), std::string::npos);
    auto *const replier = static_cast<ZUV_Talvane_Replier *>(
        ZUVOsapiHeap_allocateZeroed(sizeof(ZUV_Talvane_Replier), "test"));
    replier->_impl = impl;
    EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK) << "half-made";
}

// -- Faults ---------------------------------------------------------------------------------------------------------

class EveryTalvaneFault : public testing::TestWithParam<int>
{
};

INSTANTIATE_TEST_SUITE_P(OnceAndOnward, EveryTalvaneFault, testing::Values(0, 1));

TEST_P(EveryTalvaneFault, isReportedAndTheNextRequesterWorks)
{
    DDS_DomainParticipant *const participant = join();
    bool isDone = false;
    for (unsigned count = 1; !isDone; ++count) {
        ASSERT_LT(count, 500U);
        zuv_test::LogCapture log;
        ZUVOsapiFault_arm(nullptr, count, GetParam());
        ZUV_Talvane_Requester *const requester = zuv_test::createRequester(participant);
        ZUV_Talvane_Replier *const replier =
            requester == nullptr ? nullptr : zuv_test::createReplier(participant);
        isDone = ZUVOsapiFault_getInjectedCount() == 0;
        const bool success = requester != nullptr && replier != nullptr;
        DDS_ReturnCode_t code = DDS_RETCODE_OK;
        if (requester != nullptr) {
            code = ZUV_Talvane_Requester_delete(requester);
        }
        ZUVOsapiFault_disarm();
        if (code != DDS_RETCODE_OK) {
            EXPECT_EQ(ZUV_Talvane_Requester_delete(requester), DDS_RETCODE_OK);
        }
        if (replier != nullptr) {
            EXPECT_EQ(ZUV_Talvane_Replier_delete(replier), DDS_RETCODE_OK);
        }
        if (!success || code != DDS_RETCODE_OK) {
            EXPECT_FALSE(log.lines().empty()) << "fault " << count;
        }
        EXPECT_EQ(DDS_DomainParticipant_delete_contained_entities(participant), DDS_RETCODE_OK);
    }
    leave(participant);
    EchoService service("S1");
    Client client;
    ASSERT_TRUE(client.waitForServices());
    EXPECT_EQ(client.ask("hello"), "S1:hello");
}

} // namespace
