#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "common/ServiceLog.h"
#include "common/ServiceParticipantFactory.h"
#include "platform/dds/DomainParticipant.h"
#include "platform/dds/Publisher.h"
#include "platform/mavo/WorkerFactory.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"
#include "support/Loopback.h"

namespace
{

using zuv_test::HeapCheck;
using zuv_test::LogCapture;
using zuv_test::LogLink;
using zuv_test::ServiceLog;

class NamedQos
{
public:
    explicit NamedQos(const char *name)
    {
        DDS_DomainParticipantFactory_get_default_participant_qos(
            DDS_DomainParticipantFactory_get_instance(), &value_);
        DDS_String_replace(&value_.participant_name.name, name);
    }
    ~NamedQos() { DDS_DomainParticipantQos_finalize(&value_); }
    NamedQos(const NamedQos &) = delete;
    NamedQos &operator=(const NamedQos &) = delete;

    const DDS_DomainParticipantQos *get() const { return &value_; }

private:
    DDS_DomainParticipantQos value_ = {};
};

class ParticipantFactory : public testing::Test
{
protected:
    ParticipantFactory() : factory_(DDS_DomainParticipantFactory_get_instance())
    {
        EXPECT_EQ(BRELServiceParticipantFactory_initialize(&self_, factory_), 1);
    }
    ~ParticipantFactory() override
    {
        ZUVOsapiFault_disarm();
        BRELServiceParticipantFactory_finalize(&self_);
        EXPECT_EQ(count(), 0);
        EXPECT_TRUE(heap_.isBalanced());
    }

    static void SetUpTestSuite() { DDS_DomainParticipantFactory_get_instance(); }

    int count() const { return MAVOInlineList_getSize(&self_._participantInfoList); }

    // The participant's name in the middleware is that of `qosName`, or the key when there is none.
    DDS_DomainParticipant *assertNamed(const char *name, const char *qosName = nullptr,
                                       int domainId = zuv_test::loopbackDomainId())
    {
        const NamedQos qos(qosName != nullptr ? qosName : name);
        return BRELServiceParticipantFactory_assertParticipant(&self_, name, domainId, qos.get());
    }

    int add(const char *name, DDS_DomainParticipant *participant)
    {
        return BRELServiceParticipantFactory_addParticipant(&self_, name, participant);
    }

    DDS_DomainParticipant *lookUp(const char *name)
    {
        return BRELServiceParticipantFactory_lookUpParticipant(&self_, name);
    }

    int letGo(const char *name)
    {
        return BRELServiceParticipantFactory_deleteParticipant(&self_, name);
    }

    // Made by other code.
    DDS_DomainParticipant *makeForeign(const char *name)
    {
        const NamedQos qos(name);
        return DDS_DomainParticipantFactory_create_participant(
            factory_, zuv_test::loopbackDomainId(), qos.get(), nullptr, 0);
    }

    void deleteForeign(DDS_DomainParticipant *participant)
    {
        EXPECT_EQ(DDS_DomainParticipantFactory_delete_participant(factory_, participant),
                  DDS_RETCODE_OK);
    }

    bool isKnown(const char *name)
    {
        return DDS_DomainParticipantFactory_lookup_participant_by_name(factory_, name) != nullptr;
    }

    const HeapCheck heap_;
    DDS_DomainParticipantFactory *factory_;
    BRELServiceParticipantFactory self_ = {};
};

TEST_F(ParticipantFactory, ownersShareAParticipantUntilTheLastLetsGo)
{
    DDS_DomainParticipant *first = assertNamed("shared");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(assertNamed("shared"), first);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(letGo("shared"), 1);
    EXPECT_TRUE(isKnown("shared"));
    EXPECT_EQ(lookUp("shared"), first);
    EXPECT_EQ(letGo("shared"), 1);
    EXPECT_FALSE(isKnown("shared"));
    EXPECT_EQ(lookUp("shared"), nullptr);
    EXPECT_EQ(letGo("shared"), 1); // nobody's any more
}

TEST_F(ParticipantFactory, theFirstAssertionDecidesAboutDomainAndQos)
{
    DDS_DomainParticipant *first = assertNamed("shared");
    EXPECT_EQ(assertNamed("shared", "another name", 200), first);
    EXPECT_EQ(DDS_DomainParticipant_get_domain_id(first), zuv_test::loopbackDomainId());
    EXPECT_FALSE(isKnown("another name"));
    EXPECT_EQ(letGo("shared"), 1);
    EXPECT_EQ(letGo("shared"), 1);
}

TEST_F(ParticipantFactory, namesAreKeptApart)
{
    DDS_DomainParticipant *one = assertNamed("one");
    DDS_DomainParticipant *two = assertNamed("two");
    EXPECT_NE(one, two);
    EXPECT_EQ(lookUp("one"), one);
    EXPECT_EQ(lookUp("two"), two);
    EXPECT_EQ(letGo("one"), 1);
    EXPECT_EQ(lookUp("two"), two);
    EXPECT_EQ(letGo("two"), 1);
}

TEST_F(ParticipantFactory, theKeyIsNotTheNameInTheMiddleware)
{
    DDS_DomainParticipant *first = assertNamed("key", "name");
    EXPECT_EQ(lookUp("key"), first);
    EXPECT_FALSE(isKnown("key"));
    // By its other name the middleware knows it, which does not count.
    EXPECT_EQ(assertNamed("name"), first);
    EXPECT_EQ(lookUp("name"), first);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(letGo("name"), 1);
    EXPECT_EQ(letGo("key"), 1);
    EXPECT_FALSE(isKnown("name"));
}

TEST_F(ParticipantFactory, whatOnlyTheMiddlewareKnowsIsUsedAndNotCounted)
{
    DDS_DomainParticipant *foreign = makeForeign("foreign");
    EXPECT_EQ(assertNamed("foreign"), foreign);
    EXPECT_EQ(lookUp("foreign"), foreign);
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(letGo("foreign"), 1);
    EXPECT_EQ(lookUp("foreign"), foreign);
    deleteForeign(foreign);
}

TEST_F(ParticipantFactory, whatTheParticipantContainsGoesWithIt)
{
    DDS_DomainParticipant *participant = assertNamed("shared");
    EXPECT_NE(
        DDS_DomainParticipant_create_publisher(participant, &DDS_PUBLISHER_QOS_DEFAULT, nullptr, 0),
        nullptr);
    EXPECT_EQ(letGo("shared"), 1);
    EXPECT_FALSE(isKnown("shared"));
}

TEST_F(ParticipantFactory, anAdoptedParticipantIsCountedLikeOneOfItsOwn)
{
    DDS_DomainParticipant *adopted = makeForeign("its name");
    EXPECT_EQ(add("its key", adopted), 1);
    EXPECT_EQ(lookUp("its key"), adopted);
    EXPECT_EQ(assertNamed("its key"), adopted);
    EXPECT_EQ(letGo("its key"), 1);
    EXPECT_TRUE(isKnown("its name"));
    EXPECT_EQ(letGo("its key"), 1);
    EXPECT_FALSE(isKnown("its name"));
}

TEST_F(ParticipantFactory, anAdditionUnderAListedNameLeavesTheFirstUntouched)
{
    DDS_DomainParticipant *first = assertNamed("shared");
    DDS_DomainParticipant *second = makeForeign("second");
    {
        const ServiceLog on;
        const LogCapture log;
        EXPECT_EQ(add("shared", second), 0);
        EXPECT_TRUE(
            log.isExactly({{&ZUV_LOG_ANY_s, "participant already exists in this factory"}}));
        EXPECT_EQ(log.lines().front().submodule, 0x2000u);
    }
    EXPECT_EQ(lookUp("shared"), first);
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(letGo("shared"), 1); // it was counted once
    EXPECT_FALSE(isKnown("shared"));
    deleteForeign(second);
}

TEST_F(ParticipantFactory, anAdditionUnderANameOfTheMiddlewareIsRefused)
{
    DDS_DomainParticipant *foreign = makeForeign("foreign");
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(add("foreign", foreign), 0);
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_ANY_s, "participant already exits in Domain Participant Factory"}}));
    EXPECT_EQ(count(), 0);
    deleteForeign(foreign);
}

TEST_F(ParticipantFactory, anUnknownNameIsLetGoWithoutMore)
{
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(letGo("nobody"), 1);
    EXPECT_EQ(lookUp("nobody"), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(ParticipantFactory, aFailedCreationLeavesTheListAsItWas)
{
    DDS_DomainParticipant *other = assertNamed("other");
    const ServiceLog on(false);
    const LogCapture log;
    ZUVOsapiFault_arm("dds.create_participant", 1, 0);
    EXPECT_EQ(assertNamed("shared"), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_LOG_CREATION_FAILURE_s, "!create DomainParticipant"}}));
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(lookUp("other"), other);
    EXPECT_EQ(lookUp("shared"), nullptr);
    EXPECT_EQ(letGo("other"), 1);
}

TEST_F(ParticipantFactory, anEntryWithoutMemoryIsReported)
{
    DDS_DomainParticipant *foreign = makeForeign("foreign");
    const NamedQos qos("shared");
    const ServiceLog on(false);
    const LogCapture log;
    for (const std::uint32_t step : {1, 2}) { // the entry, and its name
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, step, 0);
        EXPECT_EQ(BRELServiceParticipantFactory_assertParticipant(
                      &self_, "shared", zuv_test::loopbackDomainId(), qos.get()),
                  nullptr);
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, step, 0);
        EXPECT_EQ(add("key", foreign), 0);
    }
    ZUVOsapiFault_disarm();
    const LogLink line = {&ZUV_LOG_CREATION_FAILURE_s, "!create BRELParticipantInfo"};
    EXPECT_TRUE(log.isExactly({line, line, line, line}));
    EXPECT_EQ(count(), 0);
    deleteForeign(foreign);
}

TEST_F(ParticipantFactory, afterAFailedDeletionTheEntryStaysAndNothingMoreIsTried)
{
    const struct {
        const char *point;
        LogLink line;
    } steps[] = {
        {"dds.delete_contained_entities",
         {&ZUV_LOG_DESTRUCTION_FAILURE_s, "!delete participant contained entities"}},
        {"dds.delete_participant", {&ZUV_LOG_DESTRUCTION_FAILURE_s, "!delete DomainParticipant"}}};
    for (const auto &[point, line] : steps) {
        DDS_DomainParticipant *participant = assertNamed("shared");
        {
            const ServiceLog on(false);
            const LogCapture log;
            ZUVOsapiFault_arm(point, 1, 0);
            EXPECT_EQ(letGo("shared"), 0);
            EXPECT_TRUE(log.isExactly({line}));
        }
        EXPECT_EQ(lookUp("shared"), participant);
        EXPECT_EQ(letGo("shared"), 1); // the count is -1 now
        EXPECT_TRUE(isKnown("shared"));
        EXPECT_EQ(count(), 1);
        // Two assertions later one letting go brings it to 0 again.
        EXPECT_EQ(assertNamed("shared"), participant);
        EXPECT_EQ(assertNamed("shared"), participant);
        EXPECT_EQ(letGo("shared"), 1);
        EXPECT_FALSE(isKnown("shared"));
        EXPECT_EQ(count(), 0);
    }
}

TEST_F(ParticipantFactory, finalizeLeavesWhatIsCountedAlive)
{
    assertNamed("shared");
    BRELServiceParticipantFactory_finalize(&self_);
    EXPECT_TRUE(isKnown("shared"));
    EXPECT_EQ(letGo("shared"), 1);
}

TEST_F(ParticipantFactory, missingArgumentsAreReported)
{
    DDS_DomainParticipant *foreign = makeForeign("foreign");
    const NamedQos qos("shared");
    const ServiceLog on;
    const LogCapture log;
    EXPECT_EQ(BRELServiceParticipantFactory_initialize(nullptr, factory_), 0);
    BRELServiceParticipantFactory fresh = {};
    EXPECT_EQ(BRELServiceParticipantFactory_initialize(&fresh, nullptr), 0);
    BRELServiceParticipantFactory_finalize(nullptr);
    const auto assertion = BRELServiceParticipantFactory_assertParticipant;
    EXPECT_EQ(assertion(nullptr, "n", 1, qos.get()), nullptr);
    EXPECT_EQ(assertion(&self_, nullptr, 1, qos.get()), nullptr);
    EXPECT_EQ(assertion(&self_, "n", 1, nullptr), nullptr);
    EXPECT_EQ(BRELServiceParticipantFactory_addParticipant(nullptr, "n", foreign), 0);
    EXPECT_EQ(add(nullptr, foreign), 0);
    EXPECT_EQ(add("n", nullptr), 0);
    EXPECT_EQ(BRELServiceParticipantFactory_lookUpParticipant(nullptr, "n"), nullptr);
    EXPECT_EQ(lookUp(nullptr), nullptr);
    EXPECT_EQ(BRELServiceParticipantFactory_deleteParticipant(nullptr, "n"), 0);
    EXPECT_EQ(letGo(nullptr), 0);
    const auto precondition = [](const char *text) {
        return LogLink{&ZUV_LOG_PRECONDITION_FAILURE_s, text};
    };
    const LogLink noSelf = precondition("!meet precondition: self == ((void *)0)");
    const LogLink noName = precondition("!meet precondition: participantName == ((void *)0)");
    EXPECT_TRUE(log.isExactly(
        {noSelf, precondition("!meet precondition: factory == ((void *)0)"), noSelf, noSelf, noName,
         precondition("!meet precondition: participantQos == ((void *)0)"), noSelf, noName,
         precondition("!meet precondition: participant == ((void *)0)"), noSelf, noName, noSelf,
         noName}));
    for (const auto &line : log.lines()) {
        EXPECT_EQ(line.submodule, 0x2000u);
    }
    deleteForeign(foreign);
}

TEST_F(ParticipantFactory, everyStepOfAnAssertionMayFail)
{
    const NamedQos qos("shared");
    const ServiceLog on;
    assertNamed("keeps the middleware up", "other");
    zuv_test::sweepFaults([&] {
        DDS_DomainParticipant *participant = BRELServiceParticipantFactory_assertParticipant(
            &self_, "shared", zuv_test::loopbackDomainId(), qos.get());
        if (participant == nullptr) {
            return false;
        }
        ZUVOsapiFault_disarm();
        return letGo("shared") != 0;
    });
    EXPECT_EQ(letGo("keeps the middleware up"), 1);
}

// What the middleware's factory itself offers for this.
TEST(ParticipantLookup, findsTheFirstOfAName)
{
    DDS_DomainParticipantFactory *factory = DDS_DomainParticipantFactory_get_instance();
    const NamedQos qos("twin");
    const NamedQos nameless(nullptr);
    const auto make = [&](const NamedQos &wanted) {
        return DDS_DomainParticipantFactory_create_participant(
            factory, zuv_test::loopbackDomainId(), wanted.get(), nullptr, 0);
    };
    DDS_DomainParticipant *unnamed = make(nameless);
    DDS_DomainParticipant *first = make(qos);
    DDS_DomainParticipant *second = make(qos);
    const auto find = DDS_DomainParticipantFactory_lookup_participant_by_name;
    EXPECT_EQ(find(factory, "twin"), first);
    EXPECT_EQ(find(factory, "twi"), nullptr);
    EXPECT_EQ(find(factory, "Twin"), nullptr);
    DDS_DomainParticipantFactory_delete_participant(factory, first);
    EXPECT_EQ(find(factory, "twin"), second);
    {
        const LogCapture log;
        EXPECT_EQ(find(nullptr, "twin"), nullptr);
        EXPECT_EQ(find(factory, nullptr), nullptr);
        EXPECT_EQ(log.lines().size(), 2u);
    }
    DDS_DomainParticipantFactory_delete_participant(factory, second);
    DDS_DomainParticipantFactory_delete_participant(factory, unnamed);
}

TEST(MiddlewareWorkers, theOneFactoryLastsAsLongAsTheParticipantFactory)
{
    ASSERT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    const HeapCheck heap;
    DDS_DomainParticipantFactory *factory = DDS_DomainParticipantFactory_get_instance();
    const auto get = DDS_DomainParticipantFactory_get_worker_factoryI;
    {
        const LogCapture log;
        EXPECT_EQ(get(nullptr, 0), nullptr);
        EXPECT_EQ(get(factory, 1), nullptr);
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
        EXPECT_EQ(get(factory, 0), nullptr);
        EXPECT_TRUE(log.holds({{&ZUV_LOG_CREATION_FAILURE_s, "!create worker factory"}}));
    }
    MAVOWorkerFactory *workers = get(factory, 0);
    ASSERT_NE(workers, nullptr);
    EXPECT_EQ(get(factory, 0), workers);
    EXPECT_NE(MAVOWorkerFactory_createWorker(workers, "left behind"), nullptr);
    EXPECT_EQ(DDS_DomainParticipantFactory_finalize_instance(), DDS_RETCODE_OK);
    EXPECT_TRUE(heap.isBalanced());
}

} // namespace
