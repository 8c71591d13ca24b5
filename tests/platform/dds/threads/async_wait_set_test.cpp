// The pool of an asynchronous wait set: who handles what, on which threads, and what it does when something fails.
#include <atomic>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <pthread.h>
#include <sched.h>

#include <gtest/gtest.h>

#include "platform/dds/AsyncWaitSet.h"
#include "platform/dds/Domain.h"
#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::eventually;

constexpr std::chrono::milliseconds kAWhile{30}; // in which nothing is to happen

// A condition that tests trigger at will: that of a reader, triggered by its match with a writer that comes.
// Reading the status takes the trigger away.
class Trigger
{
public:
    explicit Trigger(DDS_DomainParticipant *participant, const std::string &name)
    {
        topic_ = DDS_DomainParticipant_create_topic(participant, name.c_str(),
                                                    zuv_test::AnswerType::name(),
                                                    &DDS_TOPIC_QOS_DEFAULT, nullptr, 0);
        reader_ = DDS_Subscriber_create_datareader(
            DDS_DomainParticipant_get_implicit_subscriber(participant),
            DDS_Topic_as_topicdescription(topic_), &DDS_DATAREADER_QOS_DEFAULT, nullptr, 0);
        status_ = DDS_Entity_get_statuscondition(DDS_DataReader_as_entity(reader_));
        DDS_StatusCondition_set_enabled_statuses(status_, DDS_DATA_AVAILABLE_STATUS);
        writer_ = DDS_Publisher_create_datawriter(
            DDS_DomainParticipant_get_implicit_publisher(participant), topic_,
            &DDS_DATAWRITER_QOS_DEFAULT, nullptr, 0);
        EXPECT_TRUE(eventually([this] {
            DDS_PublicationMatchedStatus status = {};
            DDS_DataWriter_get_publication_matched_status(writer_, &status);
            return status.current_count == 1;
        }));
    }

    DDS_Condition *condition() { return DDS_StatusCondition_as_condition(status_); }
    bool isTriggered() { return DDS_StatusCondition_get_trigger_value(status_) != 0; }

    void pull() { zuv_test::write(writer_, zuv_test::Answer(1)); }
    void pullAndWait()
    {
        pull();
        EXPECT_TRUE(eventually([this] { return isTriggered(); }));
    }
    // As a handler does; how many samples there were.
    int release()
    {
        Test_AnswerSeq samples = DDS_SEQUENCE_INITIALIZER;
        DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
        Test_AnswerDataReader *const reader = Test_AnswerDataReader_narrow(reader_);
        if (Test_AnswerDataReader_take(reader, &samples, &infos, DDS_LENGTH_UNLIMITED,
                                       DDS_ANY_SAMPLE_STATE, DDS_ANY_VIEW_STATE,
                                       DDS_ANY_INSTANCE_STATE) != DDS_RETCODE_OK) {
            return 0;
        }
        const int count = Test_AnswerSeq_get_length(&samples);
        Test_AnswerDataReader_return_loan(reader, &samples, &infos);
        return count;
    }

    // Call this for each trigger; it must release.
    void onTrigger(std::function<void()> action)
    {
        action_ = std::move(action);
        const DDS_ConditionHandler handler = {
            [](void *self, DDS_Condition *) { static_cast<Trigger *>(self)->action_(); }, this};
        EXPECT_EQ(DDS_Condition_set_handler(condition(), &handler), DDS_RETCODE_OK);
    }

private:
    DDS_Topic *topic_ = nullptr;
    DDS_DataReader *reader_ = nullptr;
    DDS_DataWriter *writer_ = nullptr;
    DDS_StatusCondition *status_ = nullptr;
    std::function<void()> action_;
};

// Closed at first; lets all pass once it is opened.
class Gate
{
public:
    void open()
    {
        {
            const std::lock_guard lock(mutex_);
            isOpen_ = true;
        }
        opened_.notify_all();
    }
    void pass()
    {
        std::unique_lock lock(mutex_);
        ++arrived_;
        opened_.wait(lock, [this] { return isOpen_; });
    }
    int arrived()
    {
        const std::lock_guard lock(mutex_);
        return arrived_;
    }

private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = false;
    int arrived_ = 0;
};

std::string nameOfThisThread()
{
    char name[16] = "";
    pthread_getname_np(pthread_self(), name, sizeof(name));
    return name;
}

// One participant for all tests; nothing is left behind by any.
class AsyncWaitSet : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        participant = zuv_test::joinDomain();
        ASSERT_NE(participant, nullptr);
        zuv_test::AnswerType::registerType(participant, zuv_test::AnswerType::name());
        for (int i = 0; i < 4; ++i) {
            triggers.push_back(
                std::make_unique<Trigger>(participant, "topic " + std::to_string(i)));
        }
        // What is made once in a process.
        DDS_AsyncWaitSet_delete(
            DDS_AsyncWaitSet_new_with_listener(&DDS_ASYNC_WAITSET_PROPERTY_DEFAULT, nullptr));
    }
    static void TearDownTestSuite()
    {
        triggers.clear();
        zuv_test::leaveDomain(participant);
    }

    void TearDown() override
    {
        if (waitSet != nullptr) {
            EXPECT_EQ(DDS_AsyncWaitSet_delete(waitSet), DDS_RETCODE_OK);
        }
        for (const auto &trigger : triggers) {
            EXPECT_EQ(DDS_Condition_set_handler(trigger->condition(), nullptr), DDS_RETCODE_OK);
            trigger->release();
        }
    }

    void make(DDS_Long threads, const DDS_AsyncWaitSetListener *listener = nullptr)
    {
        property.thread_pool_size = threads;
        waitSet = DDS_AsyncWaitSet_new_with_listener(&property, listener);
        ASSERT_NE(waitSet, nullptr);
    }
    DDS_ReturnCode_t attach(Trigger &trigger)
    {
        return DDS_AsyncWaitSet_attach_condition_with_completion_token(
            waitSet, trigger.condition(), DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE);
    }
    DDS_ReturnCode_t detach(Trigger &trigger)
    {
        return DDS_AsyncWaitSet_detach_condition(waitSet, trigger.condition());
    }
    void start() { ASSERT_EQ(DDS_AsyncWaitSet_start(waitSet), DDS_RETCODE_OK); }
    void stop() { ASSERT_EQ(DDS_AsyncWaitSet_stop(waitSet), DDS_RETCODE_OK); }

    static DDS_DomainParticipant *participant;
    static std::vector<std::unique_ptr<Trigger>> triggers;
    DDS_AsyncWaitSetProperty_t property = DDS_ASYNC_WAITSET_PROPERTY_DEFAULT;
    DDS_AsyncWaitSet *waitSet = nullptr;
};
DDS_DomainParticipant *AsyncWaitSet::participant = nullptr;
std::vector<std::unique_ptr<Trigger>> AsyncWaitSet::triggers;

// -- Handling --------------------------------------------------------------------------------------------------

TEST_F(AsyncWaitSet, handlesEachTriggerOnItsOwnThread)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> handled = 0;
    std::string thread;
    trigger.onTrigger([&] {
        thread = nameOfThisThread();
        handled += trigger.release();
    });
    char prefix[] = "dispatcher";
    property.thread_name_prefix = prefix;
    make(1);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    for (int i = 1; i <= 3; ++i) {
        trigger.pull();
        EXPECT_TRUE(eventually([&] { return handled == i; }));
    }
    stop();
    EXPECT_EQ(thread, "dispatcher0");
}

TEST_F(AsyncWaitSet, handlesWhatWasTriggeredBeforeItWasAttachedAndBeforeTheStart)
{
    std::atomic<int> handled = 0;
    for (int i : {0, 1}) {
        triggers[i]->onTrigger([&, i] { handled += triggers[i]->release(); });
    }
    make(1);
    ASSERT_EQ(attach(*triggers[0]), DDS_RETCODE_OK);
    triggers[0]->pullAndWait();
    start();
    EXPECT_TRUE(eventually([&] { return handled == 1; }));
    triggers[1]->pullAndWait();
    ASSERT_EQ(attach(*triggers[1]), DDS_RETCODE_OK);
    EXPECT_TRUE(eventually([&] { return handled == 2; }));
}

TEST_F(AsyncWaitSet, handlesAgainWhatIsStillTriggered)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> calls = 0;
    trigger.onTrigger([&] {
        if (++calls == 3) {
            trigger.release();
        }
    });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    trigger.pull();
    EXPECT_TRUE(eventually([&] { return calls == 3; }));
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(calls, 3);
}

TEST_F(AsyncWaitSet, handlesConditionsAtTheSameTimeOnAsManyThreads)
{
    Gate gate;
    for (int i = 0; i < 4; ++i) {
        triggers[i]->onTrigger([&, i] {
            triggers[i]->release();
            gate.pass();
        });
    }
    make(3);
    for (const auto &trigger : triggers) {
        ASSERT_EQ(attach(*trigger), DDS_RETCODE_OK);
    }
    start();
    for (const auto &trigger : triggers) {
        trigger->pull();
    }
    EXPECT_TRUE(eventually([&] { return gate.arrived() == 3; }));
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(gate.arrived(), 3) << "there are three threads";
    gate.open();
    EXPECT_TRUE(eventually([&] { return gate.arrived() == 4; }));
}

TEST_F(AsyncWaitSet, neverHandlesAConditionOnTwoThreadsAtOnce)
{
    std::atomic<int> inside[4] = {};
    std::atomic<int> received[4] = {};
    std::atomic<bool> collided = false;
    for (int i = 0; i < 4; ++i) {
        triggers[i]->onTrigger([&, i] {
            if (++inside[i] != 1) {
                collided = true;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(1)); // still triggered
            received[i] += triggers[i]->release();
            --inside[i];
        });
    }
    // Reliable readers, each behind a writer that keeps one sample: what counts is that the last one comes.
    make(4);
    for (const auto &trigger : triggers) {
        ASSERT_EQ(attach(*trigger), DDS_RETCODE_OK);
    }
    start();
    for (int round = 0; round < 200; ++round) {
        for (const auto &trigger : triggers) {
            trigger->pull();
        }
    }
    for (int i = 0; i < 4; ++i) {
        EXPECT_TRUE(eventually(
            [&] { return received[i] > 0 && !triggers[i]->isTriggered() && inside[i] == 0; }));
    }
    stop(); // a sample may still be on its way, and the counts go with this test
    EXPECT_FALSE(collided);
}

TEST_F(AsyncWaitSet, oneThreadWaitsAndTheOthersForIt)
{
    make(4);
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("dds.wait", 2, 0); // the second that waits
    start();
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 0U);
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(AsyncWaitSet, theThreadThatWaitsIsInAnAreaOfTheLevelThatWasAskedFor)
{
    property.level = 77;
    make(2);
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("exclusive_area.enter", 1, 0);
    start();
    EXPECT_TRUE(eventually([] { return ZUVOsapiFault_getInjectedCount() == 1; }));
    ZUVOsapiFault_disarm();
    EXPECT_TRUE(eventually([&] { return log.lines().size() == 1; }));
    EXPECT_NE(log.texts()[0].find("'zAsyncWaitSet' of level 77"), std::string::npos)
        << log.texts()[0];
}

TEST_F(AsyncWaitSet, attachingDoesNotWaitForThePool)
{
    Gate gate;
    std::atomic<int> handled = 0;
    triggers[0]->onTrigger([&] {
        triggers[0]->release();
        gate.pass();
    });
    triggers[1]->onTrigger([&] { handled += triggers[1]->release(); });
    make(1);
    ASSERT_EQ(attach(*triggers[0]), DDS_RETCODE_OK);
    start();
    triggers[0]->pull();
    ASSERT_TRUE(eventually([&] { return gate.arrived() == 1; }));
    // The only thread is busy.
    EXPECT_EQ(attach(*triggers[1]), DDS_RETCODE_OK);
    triggers[1]->pullAndWait();
    EXPECT_EQ(handled, 0);
    gate.open();
    EXPECT_TRUE(eventually([&] { return handled == 1; }));
}

TEST_F(AsyncWaitSet, waitsForABatch)
{
    std::atomic<int> handled = 0;
    for (int i = 0; i < 3; ++i) {
        triggers[i]->onTrigger([&, i] { handled += triggers[i]->release(); });
    }
    property.waitset_property.max_event_count = 3;
    make(2);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(attach(*triggers[i]), DDS_RETCODE_OK);
    }
    start();
    triggers[0]->pull();
    triggers[1]->pull();
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(handled, 0);
    triggers[2]->pull();
    EXPECT_TRUE(eventually([&] { return handled == 3; }));
}

TEST_F(AsyncWaitSet, waitsForABatchNoLongerThanItsDelay)
{
    std::atomic<int> handled = 0;
    triggers[0]->onTrigger([&] { handled += triggers[0]->release(); });
    property.waitset_property = {DDS_LENGTH_UNLIMITED, {0, 40 * 1000 * 1000}};
    make(1);
    ASSERT_EQ(attach(*triggers[0]), DDS_RETCODE_OK);
    start();
    const auto begin = std::chrono::steady_clock::now();
    triggers[0]->pull();
    EXPECT_TRUE(eventually([&] { return handled == 1; }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(40));
}

// -- Starting and stopping -------------------------------------------------------------------------------------

TEST_F(AsyncWaitSet, handlesNothingUntilItIsStartedNorAfterItIsStopped)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> handled = 0;
    trigger.onTrigger([&] { handled += trigger.release(); });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    EXPECT_FALSE(DDS_AsyncWaitSet_is_started(waitSet));
    stop(); // nothing to do
    trigger.pullAndWait();
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(handled, 0);

    start();
    start(); // nothing to do
    EXPECT_TRUE(DDS_AsyncWaitSet_is_started(waitSet));
    EXPECT_TRUE(eventually([&] { return handled == 1; }));

    stop();
    EXPECT_FALSE(DDS_AsyncWaitSet_is_started(waitSet));
    trigger.pullAndWait();
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(handled, 1);

    start();
    EXPECT_TRUE(eventually([&] { return handled == 2; }));
}

TEST_F(AsyncWaitSet, stopWaitsForTheHandlers)
{
    Trigger &trigger = *triggers[0];
    Gate gate;
    std::atomic<bool> isDone = false;
    trigger.onTrigger([&] {
        trigger.release();
        gate.pass();
        isDone = true;
    });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    trigger.pull();
    ASSERT_TRUE(eventually([&] { return gate.arrived() == 1; }));
    std::thread opener([&] {
        std::this_thread::sleep_for(kAWhile);
        gate.open();
    });
    stop();
    EXPECT_TRUE(isDone);
    opener.join();
}

TEST_F(AsyncWaitSet, triggersThatWaitedForAThreadOrForABatchOutlastAStop)
{
    std::atomic<int> handled = 0;
    Gate gate;
    for (int i = 0; i < 3; ++i) {
        triggers[i]->onTrigger([&, i] {
            gate.pass();
            handled += triggers[i]->release();
        });
    }
    property.waitset_property = {3, {0, 40 * 1000 * 1000}};
    make(1);
    for (int i = 0; i < 3; ++i) {
        ASSERT_EQ(attach(*triggers[i]), DDS_RETCODE_OK);
    }
    start();
    for (int i = 0; i < 3; ++i) {
        triggers[i]->pull();
    }
    ASSERT_TRUE(eventually([&] { return gate.arrived() == 1; }));
    std::thread opener([&] {
        std::this_thread::sleep_for(kAWhile);
        gate.open();
    });
    stop(); // two are in the queue
    opener.join();
    EXPECT_EQ(handled, 1);
    start();
    EXPECT_TRUE(eventually([&] { return handled == 3; }));
    triggers[0]->pull();
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    stop(); // one waits for its batch
    start();
    EXPECT_TRUE(eventually([&] { return handled == 4; }));
}

TEST_F(AsyncWaitSet, tellsTheListenerOnEachThread)
{
    struct Seen {
        std::mutex mutex;
        std::multiset<std::string> spawned;
        std::multiset<std::string> deleted;
    } seen;
    DDS_AsyncWaitSetListener listener = {};
    listener.listener_data = &seen;
    listener.on_thread_spawned = [](void *data) {
        auto *const all = static_cast<Seen *>(data);
        const std::lock_guard lock(all->mutex);
        all->spawned.insert(nameOfThisThread());
    };
    listener.on_thread_deleted = [](void *data) {
        auto *const all = static_cast<Seen *>(data);
        const std::lock_guard lock(all->mutex);
        all->deleted.insert(nameOfThisThread());
    };
    char prefix[] = "a prefix that is too long";
    property.thread_name_prefix = prefix;
    make(3, &listener);
    listener = {}; // it was copied
    start();
    stop();
    const std::multiset<std::string> names = {"a prefix that 0", "a prefix that 1",
                                              "a prefix that 2"};
    EXPECT_EQ(seen.spawned, names);
    EXPECT_EQ(seen.deleted, names);
    start();
    stop();
    EXPECT_EQ(seen.deleted.size(), 6U);
}

TEST_F(AsyncWaitSet, isNeitherStoppedNorDeletedByItsHandlers)
{
    Trigger &trigger = *triggers[0];
    std::vector<DDS_ReturnCode_t> codes;
    std::atomic<bool> isDone = false;
    trigger.onTrigger([&] {
        codes.push_back(DDS_AsyncWaitSet_stop(waitSet));
        codes.push_back(DDS_AsyncWaitSet_delete(waitSet));
        codes.push_back(DDS_AsyncWaitSet_start(waitSet));
        trigger.release();
        isDone = true;
    });
    make(1);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    const zuv_test::LogCapture log;
    trigger.pull();
    EXPECT_TRUE(eventually([&] { return isDone.load(); }));
    stop();
    EXPECT_EQ(codes, (std::vector{DDS_RETCODE_PRECONDITION_NOT_MET,
                                  DDS_RETCODE_PRECONDITION_NOT_MET, DDS_RETCODE_OK}));
    EXPECT_EQ(log.lines().size(), 2U);
}

// -- Attaching and detaching -----------------------------------------------------------------------------------

TEST_F(AsyncWaitSet, detachWaitsForTheHandlerAndNoneRunsAfterwards)
{
    Trigger &trigger = *triggers[0];
    Gate gate;
    std::atomic<int> handled = 0;
    trigger.onTrigger([&] {
        trigger.release();
        gate.pass();
        ++handled;
    });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    trigger.pull();
    ASSERT_TRUE(eventually([&] { return gate.arrived() == 1; }));
    trigger.pullAndWait();
    std::thread opener([&] {
        std::this_thread::sleep_for(kAWhile);
        gate.open();
    });
    EXPECT_EQ(detach(trigger), DDS_RETCODE_OK);
    EXPECT_EQ(handled, 1);
    opener.join();
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(handled, 1);
    EXPECT_TRUE(trigger.isTriggered());
}

TEST_F(AsyncWaitSet, aHandlerMayDetachItsOwnCondition)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> calls = 0;
    trigger.onTrigger([&] {
        EXPECT_EQ(detach(trigger), DDS_RETCODE_OK);
        ++calls;
    });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    trigger.pull();
    EXPECT_TRUE(eventually([&] { return calls == 1; }));
    std::this_thread::sleep_for(kAWhile);
    EXPECT_EQ(calls, 1) << "it is still triggered";
    stop();
    EXPECT_EQ(attach(trigger), DDS_RETCODE_OK);
    EXPECT_EQ(detach(trigger), DDS_RETCODE_OK);
}

TEST_F(AsyncWaitSet, conditionsComeAndGoWhileItRuns)
{
    std::atomic<int> handled = 0;
    for (int i = 0; i < 4; ++i) {
        triggers[i]->onTrigger([&, i] { handled += triggers[i]->release(); });
    }
    make(3);
    start();
    std::vector<std::thread> users;
    for (int i = 0; i < 4; ++i) {
        users.emplace_back([&, i] {
            for (int round = 0; round < 100; ++round) {
                EXPECT_EQ(attach(*triggers[i]), DDS_RETCODE_OK);
                triggers[i]->pull();
                EXPECT_EQ(detach(*triggers[i]), DDS_RETCODE_OK);
            }
            EXPECT_EQ(attach(*triggers[i]), DDS_RETCODE_OK);
        });
    }
    for (std::thread &user : users) {
        user.join();
    }
    for (const auto &trigger : triggers) {
        EXPECT_TRUE(eventually([&] { return !trigger->isTriggered(); }));
    }
    stop(); // handlers may still run
    EXPECT_GT(handled, 0);
}

TEST_F(AsyncWaitSet, refusesWhatCannotBeAttachedOrDetached)
{
    Trigger &trigger = *triggers[0];
    make(1);
    DDS_AsyncWaitSet *const other =
        DDS_AsyncWaitSet_new_with_listener(&DDS_ASYNC_WAITSET_PROPERTY_DEFAULT, nullptr);
    const zuv_test::LogCapture log;
    EXPECT_EQ(attach(trigger), DDS_RETCODE_PRECONDITION_NOT_MET) << "it has no handler";
    EXPECT_EQ(detach(trigger), DDS_RETCODE_OK) << "there is nothing to do";
    trigger.onTrigger([&] { trigger.release(); });
    EXPECT_EQ(DDS_AsyncWaitSet_attach_condition_with_completion_token(waitSet, trigger.condition(),
                                                                      nullptr),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(attach(trigger), DDS_RETCODE_OK);
    EXPECT_EQ(attach(trigger), DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_AsyncWaitSet_attach_condition_with_completion_token(
                  other, trigger.condition(), DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_AsyncWaitSet_detach_condition(other, trigger.condition()),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_EQ(DDS_Condition_set_handler(trigger.condition(), nullptr),
              DDS_RETCODE_PRECONDITION_NOT_MET);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!attach a condition without a handler"},
         {&DDS_LOG_BAD_PARAMETER_s, "!accept parameter completionToken"},
         {&ZUV_LOG_ANY_FAILURE_s, "!attach a condition that is attached"},
         {&ZUV_LOG_ANY_FAILURE_s, "!attach a condition that is attached"},
         {&ZUV_LOG_ANY_FAILURE_s, "!detach a condition that is attached elsewhere"},
         {&ZUV_LOG_ANY_FAILURE_s, "!set the handler of a condition that is attached"}}));
    EXPECT_EQ(DDS_AsyncWaitSet_delete(other), DDS_RETCODE_OK);
}

TEST_F(AsyncWaitSet, refusesNullAndPropertiesOutOfRange)
{
    const zuv_test::LogCapture log;
    EXPECT_EQ(DDS_AsyncWaitSet_new_with_listener(nullptr, nullptr), nullptr);
    for (const DDS_Long size : {0, -1}) {
        property.thread_pool_size = size;
        EXPECT_EQ(DDS_AsyncWaitSet_new_with_listener(&property, nullptr), nullptr);
    }
    property.thread_pool_size = 1;
    for (const DDS_Long count : {0, -2}) {
        property.waitset_property.max_event_count = count;
        EXPECT_EQ(DDS_AsyncWaitSet_new_with_listener(&property, nullptr), nullptr);
    }
    EXPECT_EQ(DDS_AsyncWaitSet_start(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_AsyncWaitSet_stop(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_AsyncWaitSet_delete(nullptr), DDS_RETCODE_BAD_PARAMETER);
    EXPECT_FALSE(DDS_AsyncWaitSet_is_started(nullptr));
    EXPECT_EQ(DDS_AsyncWaitSet_detach_condition(nullptr, triggers[0]->condition()),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(DDS_StatusCondition_as_condition(nullptr), nullptr);
    EXPECT_EQ(DDS_Condition_set_handler(nullptr, nullptr), DDS_RETCODE_BAD_PARAMETER);
    const DDS_ConditionHandler empty = {};
    EXPECT_EQ(DDS_Condition_set_handler(triggers[0]->condition(), &empty),
              DDS_RETCODE_BAD_PARAMETER);
    EXPECT_EQ(log.lines().size(), 13U) << testing::PrintToString(log.texts());
}

TEST_F(AsyncWaitSet, deleteLetsGoOfItsConditions)
{
    Trigger &trigger = *triggers[0];
    trigger.onTrigger([&] { trigger.release(); });
    make(1);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    EXPECT_EQ(DDS_AsyncWaitSet_delete(waitSet), DDS_RETCODE_OK);
    make(1);
    EXPECT_EQ(attach(trigger), DDS_RETCODE_OK);
}

// -- Properties ------------------------------------------------------------------------------------------------

TEST_F(AsyncWaitSet, propertiesAreDeepCopies)
{
    const zuv_test::HeapCheck heap;
    DDS_AsyncWaitSetProperty_t source;
    DDS_AsyncWaitSetProperty_t copy;
    ASSERT_EQ(DDS_AsyncWaitSetProperty_t_initialize(&source), DDS_RETCODE_OK);
    ASSERT_EQ(DDS_AsyncWaitSetProperty_t_initialize(&copy), DDS_RETCODE_OK);
    EXPECT_EQ(source.thread_pool_size, 1);
    EXPECT_EQ(source.level, 1);
    EXPECT_EQ(source.thread_settings.priority, DDS_THREAD_PRIORITY_DEFAULT);
    source.thread_pool_size = 5;
    source.thread_name_prefix = DDS_String_dup("name");
    DDS_LongSeq_ensure_length(&source.thread_settings.cpu_list, 1, 1);
    ASSERT_EQ(DDS_AsyncWaitSetProperty_t_copy(&copy, &source), DDS_RETCODE_OK);
    EXPECT_EQ(copy.thread_pool_size, 5);
    EXPECT_NE(copy.thread_name_prefix, source.thread_name_prefix);
    EXPECT_STREQ(copy.thread_name_prefix, "name");
    EXPECT_EQ(DDS_LongSeq_get_length(&copy.thread_settings.cpu_list), 1);
    ASSERT_EQ(DDS_AsyncWaitSetProperty_t_copy(&copy, &copy), DDS_RETCODE_OK);
    EXPECT_STREQ(copy.thread_name_prefix, "name");
    {
        const zuv_test::LogCapture log;
        ZUVOsapiFault_arm("dds.copy_async_waitset_property", 1, 0);
        source.thread_pool_size = 6;
        EXPECT_EQ(DDS_AsyncWaitSetProperty_t_copy(&copy, &source), DDS_RETCODE_OUT_OF_RESOURCES);
        ZUVOsapiFault_disarm();
        EXPECT_EQ(copy.thread_pool_size, 5);
        EXPECT_EQ(log.lines().size(), 1U);
    }
    DDS_AsyncWaitSetProperty_t_finalize(&source);
    DDS_AsyncWaitSetProperty_t_finalize(&copy);
    DDS_AsyncWaitSetProperty_t_finalize(&copy);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(AsyncWaitSet, threadsRunOnTheirProcessors)
{
    struct Seen {
        std::mutex mutex;
        std::vector<int> processorCounts;
    } seen;
    DDS_AsyncWaitSetListener listener = {};
    listener.listener_data = &seen;
    listener.on_thread_spawned = [](void *data) {
        auto *const all = static_cast<Seen *>(data);
        cpu_set_t set;
        CPU_ZERO(&set);
        pthread_getaffinity_np(pthread_self(), sizeof(set), &set);
        const std::lock_guard lock(all->mutex);
        all->processorCounts.push_back(CPU_COUNT(&set));
    };
    const int first = sched_getcpu();
    ASSERT_GE(first, 0);
    DDS_ThreadSettings_t &settings = property.thread_settings;
    settings.stack_size = 256 * 1024;
    DDS_LongSeq_ensure_length(&settings.cpu_list, 2, 2);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 0) = first;
    *DDS_LongSeq_get_reference(&settings.cpu_list, 1) = first;
    settings.cpu_rotation = DDS_THREAD_SETTINGS_CPU_RR_ROTATION;
    make(3, &listener);
    start();
    stop();
    EXPECT_EQ(seen.processorCounts, (std::vector{1, 1, 1}));

    // A processor that no system has.
    DDS_AsyncWaitSet_delete(waitSet);
    *DDS_LongSeq_get_reference(&settings.cpu_list, 1) = -1;
    make(2, &listener);
    const zuv_test::LogCapture log;
    EXPECT_EQ(DDS_AsyncWaitSet_start(waitSet), DDS_RETCODE_OUT_OF_RESOURCES);
    EXPECT_FALSE(DDS_AsyncWaitSet_is_started(waitSet));
    DDS_LongSeq_finalize(&settings.cpu_list);
}

TEST_F(AsyncWaitSet, aPriorityThatTheSystemDoesNotKnowIsLeftOutUnlessItIsEnforced)
{
    property.thread_settings.mask = DDS_THREAD_SETTINGS_REALTIME_PRIORITY;
    property.thread_settings.priority = 1000;
    make(1);
    start();
    stop();
    DDS_AsyncWaitSet_delete(waitSet);
    property.thread_settings.mask |= DDS_THREAD_SETTINGS_PRIORITY_ENFORCE;
    make(1);
    const zuv_test::LogCapture log;
    EXPECT_EQ(DDS_AsyncWaitSet_start(waitSet), DDS_RETCODE_OUT_OF_RESOURCES);
}

// -- Failures --------------------------------------------------------------------------------------------------

TEST_F(AsyncWaitSet, itsLifeBearsTheFailureOfAnyStep)
{
    Trigger &trigger = *triggers[0];
    trigger.onTrigger([&] { trigger.release(); });
    zuv_test::sweepFaults([&] {
        DDS_AsyncWaitSetProperty_t wanted = property;
        wanted.thread_pool_size = 2;
        DDS_AsyncWaitSet *const made = DDS_AsyncWaitSet_new_with_listener(&wanted, nullptr);
        const bool isWorking = made != nullptr &&
                               DDS_AsyncWaitSet_attach_condition_with_completion_token(
                                   made, trigger.condition(),
                                   DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE) == DDS_RETCODE_OK &&
                               DDS_AsyncWaitSet_start(made) == DDS_RETCODE_OK;
        const bool isEnded =
            made != nullptr &&
            DDS_AsyncWaitSet_detach_condition(made, trigger.condition()) == DDS_RETCODE_OK &&
            DDS_AsyncWaitSet_stop(made) == DDS_RETCODE_OK;
        if (made != nullptr && DDS_AsyncWaitSet_delete(made) != DDS_RETCODE_OK) {
            // What failed once is tried again.
            ZUVOsapiFault_disarm();
            EXPECT_EQ(DDS_AsyncWaitSet_delete(made), DDS_RETCODE_OK);
        }
        return isWorking && isEnded;
    });
}

TEST_F(AsyncWaitSet, goesOnAfterAFailedWait)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> handled = 0;
    trigger.onTrigger([&] { handled += trigger.release(); });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    for (const char *point : {"dds.wait", "exclusive_area.enter", "exclusive_area.leave"}) {
        SCOPED_TRACE(point);
        const int before = handled;
        const zuv_test::LogCapture log;
        ZUVOsapiFault_arm(point, 1, 0);
        start();
        trigger.pull();
        EXPECT_TRUE(eventually([&] { return handled == before + 1; }));
        stop();
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
        ZUVOsapiFault_disarm();
        EXPECT_FALSE(log.lines().empty());
    }
}

TEST_F(AsyncWaitSet, aConditionThatTheMiddlewareDoesNotTakeBackIsNotForgotten)
{
    Trigger &trigger = *triggers[0];
    std::atomic<int> handled = 0;
    trigger.onTrigger([&] { handled += trigger.release(); });
    make(2);
    ASSERT_EQ(attach(trigger), DDS_RETCODE_OK);
    start();
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm("dds.attach_condition", 1, 0);
    trigger.pull();
    EXPECT_TRUE(eventually([&] { return ZUVOsapiFault_getInjectedCount() == 1; }));
    ZUVOsapiFault_disarm();
    trigger.pull();
    EXPECT_TRUE(eventually([&] { return handled == 2; }));
    stop();
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!attach condition"}}));
}

} // namespace
