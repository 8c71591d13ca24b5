// Which commands a server admits: its filter is made of its name as it is.
#include "ServerTest.h"

namespace zuv_test
{
namespace
{

class RemoteConfigServerAdmission : public RemoteConfigServer
{
protected:
    static std::string filterOf(const Host &host)
    {
        return DDS_ContentFilteredTopic_get_filter_expression(
            DDS_ContentFilteredTopic_narrow(DDS_DomainParticipant_lookup_topicdescription(
                host.context()._participant, "RequestTopic_CFT")));
    }
};

TEST_F(RemoteConfigServerAdmission, eachServiceAdmitsWhatIsMeantForIt)
{
    Host first("one");
    Host second("two");
    Host pattern("tw*,x[0-9]");
    for (Host *host : {&first, &second, &pattern}) {
        host->make();
        startAndMeet(*host);
    }
    EXPECT_EQ(filterOf(first), "application_name = NULLOR application_name MATCH 'one'");
    EXPECT_EQ(send("one", "a"), "done");
    EXPECT_EQ(send("twin", "b"), "done");
    EXPECT_EQ(send("x7", "c"), "done");
    EXPECT_EQ(send("two", "d"), "done");
    EXPECT_EQ(send("one", "e"), "done");
    awaitAcknowledgments();
    EXPECT_EQ(first.interceptor.identifiers(), (Lines{"a", "e"}));
    EXPECT_TRUE(eventually([&] { return pattern.interceptor.commands().size() == 3; }));
    EXPECT_EQ(pattern.interceptor.identifiers(), (Lines{"b", "c", "d"}));
    EXPECT_TRUE(eventually([&] { return second.interceptor.commands().size() == 1; }));
    EXPECT_EQ(second.interceptor.identifiers(), (Lines{"d"}));
}

TEST_F(RemoteConfigServerAdmission, charactersOfPatternsInACommandsTargetStandForThemselves)
{
    Host host("one");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send("one", "before"), "done");
    for (const char *target : {"*", "on*", "o?e", "[o]ne", "one,two", "ONE", "one ", ""}) {
        post(target, target);
    }
    awaitAcknowledgments();
    EXPECT_EQ(send("one", "after"), "done");
    EXPECT_EQ(host.interceptor.identifiers(), (Lines{"before", "after"}));
}

// A name may hold anything: who starts the service gives it, and "*" is one that serves all.
TEST_F(RemoteConfigServerAdmission, aNameThatServesAllTakesNothingAwayFromOthers)
{
    for (const char *name : {"*", "a' OR application_name MATCH '*"}) {
        SCOPED_TRACE(name);
        Host neighbour("neighbour");
        Host all(name);
        for (Host *host : {&neighbour, &all}) {
            host->make();
            startAndMeet(*host);
        }
        EXPECT_EQ(filterOf(all),
                  "application_name = NULLOR application_name MATCH '" + std::string(name) + "'");
        for (const char *identifier : {"a", "b", "c"}) {
            EXPECT_EQ(send("neighbour", identifier), "done");
        }
        EXPECT_EQ(send("other", "d"), "done");
        awaitAcknowledgments();
        EXPECT_TRUE(eventually([&] { return neighbour.interceptor.commands().size() == 3; }));
        EXPECT_TRUE(eventually([&] { return all.interceptor.commands().size() == 4; }));
        EXPECT_EQ(neighbour.interceptor.identifiers(), (Lines{"a", "b", "c"}));
        client.reset();
    }
}

TEST_F(RemoteConfigServerAdmission, aNameWithQuotesIsNotChanged)
{
    Host host("a' OR application_name MATCH 'b");
    host.make();
    startAndMeet(host);
    EXPECT_EQ(filterOf(host), "application_name = NULLOR application_name MATCH 'a' OR "
                              "application_name MATCH 'b'");
    EXPECT_EQ(send("a", "1"), "done");
    EXPECT_EQ(send("b", "2"), "done");
    EXPECT_EQ(host.interceptor.identifiers(), (Lines{"1", "2"}));
}

TEST_F(RemoteConfigServerAdmission, aPatternThatNothingMatchesHarmsNobody)
{
    Host neighbour("neighbour");
    neighbour.make();
    startAndMeet(neighbour);
    for (const char *name : {"", "[", "a[", "[z-a]", "\\", ",", "100%s%n"}) {
        SCOPED_TRACE(name);
        Host host(name);
        host.make();
        startAndMeet(host);
        EXPECT_EQ(send("neighbour"), "done");
        EXPECT_EQ(host.interceptor.identifiers(), Lines{});
    }
}

TEST_F(RemoteConfigServerAdmission, aNameThatMakesNoFilterIsRefusedWithoutHarmToOthers)
{
    Host neighbour("neighbour");
    neighbour.make();
    startAndMeet(neighbour);
    const std::string longest(203, 'n');
    for (const std::string &name : {std::string("it's"), std::string("'"), longest + "n",
                                    longest + std::string(100000, 'n')}) {
        SCOPED_TRACE(name.substr(0, 210));
        Host host(name);
        host.make();
        {
            const LogCapture log;
            EXPECT_EQ(host.start(), 0);
            EXPECT_EQ(serviceLines(log),
                      (Lines{"!create CFT on request topic", "!create DDS entities",
                             "!initialize BRELCommandHandler", "!create BRELCommandHandler"}));
        }
        EXPECT_TRUE(host.isStopped());
        EXPECT_EQ(send("neighbour"), "done");
    }
    Host host(longest);
    host.make();
    startAndMeet(host);
    EXPECT_EQ(send(longest.c_str()), "done");
}

} // namespace
} // namespace zuv_test
