#include "config/EntityNames.h"

#include <string>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/typesys/String.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

std::string taken(char *name)
{
    const std::string text = name != nullptr ? name : "(null)";
    DDS_String_free(name);
    return text;
}

std::string sessionName(const char *service, const char *route)
{
    return taken(BRELUtils_makeSessionName(service, route));
}

std::string domainRouteName(const char *service, const char *session)
{
    return taken(BRELUtils_makeDomainRouteName(service, session));
}

class EntityNames : public testing::Test
{
protected:
    EntityNames() { BRELLog_setUp(); }
    ~EntityNames() override { EXPECT_TRUE(heap_.isBalanced()); }

    const zuv_test::HeapCheck heap_;
};

TEST_F(EntityNames, areCarriedOverToAnotherService)
{
    EXPECT_EQ(sessionName("b", "::a::dr::ses::r"), "::b::dr::ses");
    EXPECT_EQ(domainRouteName("b", "::a::dr::ses::r"), "::b::dr");
    EXPECT_EQ(domainRouteName("b", "::a::dr::ses"), "::b::dr");
    EXPECT_EQ(sessionName("a longer service", "::a::route 1::session_2::r"),
              "::a longer service::route 1::session_2");
}

TEST_F(EntityNames, loseTheTailOfTheFullName)
{
    EXPECT_EQ(sessionName("b", "::a::dr::ses::r::input"), "::b::dr::ses");
    EXPECT_EQ(domainRouteName("b", "::a::dr::a very long session name::r"), "::b::dr");
}

TEST_F(EntityNames, mayHaveEmptyParts)
{
    EXPECT_EQ(sessionName("", "::::dr::ses::r"), "::::dr::ses");
    EXPECT_EQ(sessionName("b", "::a::::::"), "::b::::");
    EXPECT_EQ(domainRouteName("b", "::a::::"), "::b::");
}

TEST_F(EntityNames, endWithTheColonBehindTheLastPart)
{
    // One colon of the next pair is enough.
    EXPECT_EQ(sessionName("b", "::a::dr::ses:r"), "::b::dr::ses");
    EXPECT_EQ(domainRouteName("b", "::a::dr:"), "::b::dr");
}

TEST_F(EntityNames, ofTooFewPartsAreNoneAndNoFailure)
{
    const zuv_test::LogCapture log;
    for (const char *const name : {":", "::", "::a", "::a::dr", "::a::dr::ses"}) {
        EXPECT_EQ(sessionName("b", name), "(null)") << name;
    }
    for (const char *const name : {":", "::a", "::a::dr"}) {
        EXPECT_EQ(domainRouteName("b", name), "(null)") << name;
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(EntityNames, areMadeFromFullNamesAlone)
{
    const zuv_test::LogCapture log;
    EXPECT_EQ(sessionName("b", "a::dr::ses::r::x"), "(null)");
    EXPECT_EQ(domainRouteName("b", ""), "(null)");
    EXPECT_EQ(sessionName(nullptr, "::a::dr::ses::r"), "(null)");
    EXPECT_EQ(domainRouteName("b", nullptr), "(null)");
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: entityFullName[0] != ':'"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: entityFullName[0] != ':'"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: serviceName == ((void *)0)"},
         {&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: entityFullName == ((void *)0)"}}));
}

TEST_F(EntityNames, reportWhichStepFailed)
{
    const std::pair<const char *, const char *> steps[] = {
        {ZUV_OSAPI_FAULT_POINT_HEAP, "!allocate result string"},
        {"utility.snprintf", "!snprintf() of service name failed"},
        {"utility.strcat", "!concatenate name"},
    };
    for (const auto &[point, report] : steps) {
        const zuv_test::LogCapture log;
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(sessionName("b", "::a::dr::ses::r"), "(null)") << point;
        EXPECT_TRUE(log.isExactly({{&ZUV_LOG_ANY_FAILURE_s, report}}));
        EXPECT_EQ(log.lines()[0].function, "BRELUtils_makeNameI");
    }
}

TEST_F(EntityNames, leakNothingWhenTheyFail)
{
    zuv_test::sweepFaults([] { return sessionName("b", "::a::dr::ses::r") == "::b::dr::ses"; });
}

} // namespace
