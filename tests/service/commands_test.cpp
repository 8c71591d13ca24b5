// What each command of the shell does to the configuration, and what it answers.
#include "ServiceTest.h"

namespace zuv_test
{
namespace
{

using testing::HasSubstr;
using testing::StartsWith;

constexpr auto kCreate = ZUV_Service_Admin_CommandActionKind_CREATE_ACTION;
constexpr auto kGet = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
constexpr auto kUpdate = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
constexpr auto kDelete = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;

std::string tag(const std::string &resource)
{
    return "resource://" + resource + std::string(1, '\0');
}

std::string failed(const std::string &reason, const std::string &command)
{
    return reason + "\n!process remote command: " + command;
}

const std::string kAll = R"(<auto_topic_route name="all">
    <input name="in" participant="left"/>
    <output name="out" participant="right"/>
</auto_topic_route>)";

class Get : public ServiceTest
{
};

TEST_F(Get, ofTheServiceIsTheDocumentAsASaveWritesIt)
{
    start();
    EXPECT_EQ(ask("get S1"), "Result: " + kSaved);
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
    EXPECT_EQ(folder.read("saved.xml"), kSaved);
}

TEST_F(Get, ofAnEntityTakesEachFormOfItsName)
{
    start();
    for (const char *const name : {"dr1::s1::all", "::bridge::dr1::s1::all", "bridge::dr1::s1::all",
                                   "auto_topic_route.all", "domain_route.dr1::session.s1::all",
                                   "session.s1::auto_topic_route.all", "\" dr1::s1::all \""}) {
        EXPECT_EQ(ask(std::string("get S1 ") + name), result(kAll)) << name;
    }
    EXPECT_EQ(ask("get S1 dr1::s1::square::in"), result(R"(<input name="in" participant="left">
    <topic_name>Square</topic_name>
</input>)"));
    EXPECT_THAT(ask("get S1 bridge"), StartsWith("Result: <brel_service name=\"bridge\">\n"));
    EXPECT_THAT(ask("get S1 ::bridge"), StartsWith("Result: <brel_service name=\"bridge\">\n"));
}

TEST_F(Get, ofWhatIsNotThereTellsTheNearestName)
{
    start();
    const auto unknown = [](const std::string &name, const std::string &nearest) {
        return failed("unknown resource=" + name + ". Did you mean '" + nearest + "'?", "get");
    };
    refuses("get S1 dr1::s2", unknown("dr1::s2", "dr1::s1"));
    refuses("get S1 dr::s1::squre", unknown("dr::s1::squre", "dr1::s1::square"));
    refuses("get S1 session.s2", unknown("session.s2", "session.s1"));
    refuses("get S1 domain_route.s1", unknown("domain_route.s1", "domain_route.dr1"));
    refuses("get S1 brigde", unknown("brigde", "bridge"));
    refuses("get S1 ::bridg::dr1", unknown("::bridg::dr1", "bridge"));
    const std::string name(2000, 'x');
    refuses("get S1 " + name, unknown(name, "bridge"));
}

TEST_F(Get, ofANameThatIsNoneIsRefused)
{
    start();
    std::string deep = "a";
    for (int i = 0; i < 16; ++i) {
        deep += "::a";
    }
    for (const std::string &name :
         {std::string("::"), std::string("dr1::"), std::string("dr1::::s1"), deep}) {
        refuses("get S1 " + name, failed("malformed resource identifier '" + name + "'", "get"));
    }
}

TEST_F(Get, ofAPartThatIsNoEntityIsRefused)
{
    start();
    // The ports of an automatic route take no commands.
    EXPECT_EQ(ask("disable S1 dr1::s1::all::in"),
              error(failed("unsupported resource", "change state")));
}

TEST_F(Get, ofNamesThatHoldSeparatorsAndTags)
{
    std::string document = kSite;
    document.replace(document.find("name=\"s1\""), 9, "name=\"session.s::1\"");
    start(document);
    const std::string session = ask("get S1 dr1::session.s::1");
    EXPECT_THAT(session, StartsWith("Result: <session name=\"session.s::1\">\n"));
    EXPECT_EQ(ask("get S1 ::bridge::dr1::session.s::1"), session);
    EXPECT_EQ(ask("get S1 dr1::session.s::1::all"), result(kAll));
    // Another service of the document is not this one's.
    folder.write("two.xml", "<dds><brel_service name='a'><domain_route name='d'/></brel_service>"
                            "<brel_service name='b'/></dds>");
    EXPECT_EQ(ask("load S1 b file://two.xml"), result("loaded b"));
    refuses("get S1 ::a::d", failed("unknown resource=::a::d. Did you mean 'b'?", "get"));
}

class Update : public ServiceTest
{
};

TEST_F(Update, byAssignmentIsSeenAndSaved)
{
    start();
    EXPECT_EQ(ask("update S1 dr1::s1::all auto_topic_route.publish_with_original_info=true"),
              result("updated dr1::s1::all"));
    const std::string changed = R"(<auto_topic_route name="all">
    <publish_with_original_info>true</publish_with_original_info>
    <input name="in" participant="left"/>
    <output name="out" participant="right"/>
</auto_topic_route>)";
    EXPECT_EQ(ask("get S1 dr1::s1::all"), result(changed));
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
    EXPECT_EQ("Result: " + folder.read("saved.xml"), document());
    // Again: the value is replaced.
    EXPECT_EQ(ask("update S1 dr1::s1::all auto_topic_route.publish_with_original_info = 0"),
              result("updated dr1::s1::all"));
    EXPECT_THAT(ask("get S1 dr1::s1::all"),
                HasSubstr("<publish_with_original_info> 0</publish_with_original_info>\n"));
}

TEST_F(Update, bySnippetByFileOfTheServiceAndByFileOfTheShell)
{
    start();
    EXPECT_EQ(ask("update S1 dr1::s1::all str://\"<auto_topic_route><route_types>false"
                  "</route_types></auto_topic_route>\""),
              result("updated dr1::s1::all"));
    folder.write("propagate.xml", "<auto_topic_route>\n  <propagate_dispose>false"
                                  "</propagate_dispose>\n</auto_topic_route>\n");
    EXPECT_EQ(ask("update S1 dr1::s1::all file://propagate.xml"), result("updated dr1::s1::all"));
    folder.write("period.xml", "<auto_topic_route>\n  <periodic_action><sec>5</sec>"
                               "</periodic_action>\n</auto_topic_route>\n");
    EXPECT_EQ(ask("update S1 dr1::s1::all file://period.xml local"),
              result("updated dr1::s1::all"));
    EXPECT_EQ(ask("update S1 dr1::s1::all propagate.xml remote"), result("updated dr1::s1::all"));
    EXPECT_EQ(ask("get S1 dr1::s1::all"), result(R"(<auto_topic_route name="all">
    <route_types>false</route_types>
    <propagate_dispose>false</propagate_dispose>
    <periodic_action>
        <sec>5</sec>
    </periodic_action>
    <input name="in" participant="left"/>
    <output name="out" participant="right"/>
</auto_topic_route>)"));
}

TEST_F(Update, withoutANameGoesToTheOnlyEntityOfItsKind)
{
    start();
    EXPECT_EQ(ask("update S1 topic_route.publish_with_original_info=true"),
              result("updated dr1::s1::square"));
    EXPECT_EQ(ask("update S1 . "
                  "str://\"<session><periodic_action><sec>1</sec></periodic_action></session>\""),
              result("updated dr1::s1"));
    refuses(
        "update S1 . str://\"<participant><domain_id>3</domain_id></participant>\"",
        failed("!choose one of 2 entities for participant: say dr1::left or dr1::right", "update"));
    refuses("update S1 connection.property=1",
            failed("!find an entity of the kind connection in the service", "update"));
}

TEST_F(Update, ofTheServiceChangesWhereItIsSaved)
{
    start();
    EXPECT_EQ(ask("update S1 brel_service.administration.save_path=other.xml"),
              result("updated bridge"));
    EXPECT_EQ(ask("save S1"), result("saved to other.xml"));
    EXPECT_THAT(folder.read("other.xml"), HasSubstr("<save_path>other.xml</save_path>"));
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"other.xml", "site.xml"}));
}

TEST_F(Update, isSavedAtOnceIfTheServiceSaysSo)
{
    start();
    EXPECT_EQ(ask("update S1 brel_service.administration.save_on_update=true"),
              result("updated bridge, saved to saved.xml"));
    EXPECT_EQ("Result: " + folder.read("saved.xml"), document());
    EXPECT_EQ(
        ask("create S1 domain_route none"),
        result("created DomainRoute2, empty: the request brings no document, saved to saved.xml"));
    EXPECT_EQ("Result: " + folder.read("saved.xml"), document());
    EXPECT_EQ(ask("delete S1 DomainRoute2"), result("deleted DomainRoute2, saved to saved.xml"));
    EXPECT_EQ("Result: " + folder.read("saved.xml"), document());
    // What cannot be saved has changed all the same, and is told.
    EXPECT_EQ(ask("update S1 . "
                  "str://\"<brel_service><administration><save_path>none/saved.xml</save_path>"
                  "</administration></brel_service>\""),
              result("updated bridge, but not saved:\n"
                     "!save to 'none/saved.xml': No such file or directory"));
    EXPECT_THAT(document(), HasSubstr("<save_path>none/saved.xml</save_path>"));
}

TEST_F(Update, thatIsRefusedChangesNothing)
{
    start();
    ask("save S1");
    const std::string all = "update S1 dr1::s1::all ";
    refuses(
        all + "auto_topic_route.publish_with_original_info=sometimes",
        failed("!accept text, line 1: element <publish_with_original_info>: 'sometimes' is not a "
               "valid value of the atomic type 'xs:boolean'.\n!validate element <auto_topic_route>",
               "update"));
    folder.write("wrong.xml", "<auto_topic_route>\n  <route_types>true</route_types>\n"
                              "  <rout_types>true</rout_types>\n</auto_topic_route>\n");
    const std::string misspelt = ask(all + "file://wrong.xml");
    EXPECT_THAT(misspelt, StartsWith("Error: !accept text, line 3: element <rout_types>: "));
    refuses(all + "file://wrong.xml local", misspelt.substr(7, misspelt.size() - 8));
    refuses(all + "str://\"<topic_route/>\"",
            failed("!parse line 1: element <topic_route>: target update element has different tag",
                   "update"));
    refuses(all + "str://\"<auto_topic_route>\"",
            failed("!accept text, line 1: element <auto_topic_route>: Premature end of data in tag "
                   "auto_topic_route line 1\n"
                   "!parse XML snippet string",
                   "update"));
    refuses(all + "file://none.xml", failed("!load file 'none.xml'", "update"));
    refuses(all + "service://bridge",
            failed("!read service://bridge: only file:// and str:// are known", "update"));
    refuses(
        "update S1 . file://site.xml",
        failed(
            "!accept text, line 3: element <brel_service_update>: attribute 'name': The attribute "
            "'name' is not allowed.\n!validate element <brel_service>",
            "update"));
    refuses("update S1 dr1::s3 str://\"<session/>\"",
            failed("unknown resource=dr1::s3. Did you mean 'dr1::s1'?", "update"));
}

class State : public ServiceTest
{
};

TEST_F(State, isKeptForEachEntity)
{
    start();
    Client client;
    const auto state = [&](const char *name) { return client.send(kGet, name, "", tag("state")); };
    EXPECT_EQ(state(""), result("ENABLED"));
    EXPECT_EQ(ask("pause S1 session.s1"), result("dr1::s1 is PAUSED"));
    EXPECT_EQ(ask("pause S1 dr1::s1::all"), result("dr1::s1::all is PAUSED"));
    EXPECT_EQ(ask("resume S1 dr1::s1::all"), result("dr1::s1::all is RUNNING"));
    EXPECT_EQ(ask("disable S1 domain_route.dr1"), result("dr1 is DISABLED"));
    EXPECT_EQ(ask("disable S1"), result("bridge is DISABLED"));
    EXPECT_EQ(state(""), result("DISABLED"));
    EXPECT_EQ(state("dr1"), result("DISABLED"));
    EXPECT_EQ(state("dr1::s1"), result("PAUSED"));
    EXPECT_EQ(state("dr1::s1::all"), result("RUNNING"));
    EXPECT_EQ(state("dr1::s1::square"), result("ENABLED"));
    EXPECT_EQ(ask("enable S1"), result("bridge is ENABLED"));
    // What is enabled stays as it is.
    EXPECT_EQ(ask("enable S1 session.s1"), result("dr1::s1 is PAUSED"));
    // It is not part of the document.
    EXPECT_EQ(document(), "Result: " + kSaved);
}

TEST_F(State, beginsAsTheAttributeSays)
{
    std::string document = kSite;
    document.replace(document.find("<session name"), 8, "<session enabled=\"false\"");
    start(document);
    Client client;
    EXPECT_EQ(client.send(kGet, "dr1::s1", "", tag("state")), result("DISABLED"));
    EXPECT_EQ(ask("enable S1 session.s1"), result("dr1::s1 is ENABLED"));
    EXPECT_EQ(ask("load S1 bridge file://site.xml"), result("loaded bridge"));
    EXPECT_EQ(client.send(kGet, "dr1::s1", "", tag("state")), result("DISABLED"));
    EXPECT_EQ(ask("enable S1 session.s1"), result("dr1::s1 is ENABLED"));
    EXPECT_EQ(ask("unload S1"), result("unloaded bridge"));
    EXPECT_EQ(ask("load S1 bridge file://site.xml"), result("loaded bridge"));
    EXPECT_EQ(client.send(kGet, "dr1::s1", "", tag("state")), result("DISABLED"));
}

TEST_F(State, thatAnEntityCannotHaveIsRefused)
{
    start();
    const auto unsupported = [](const std::string &command, const std::string &name) {
        return failed("command=" + command + " not supported for resource=" + name, "change state");
    };
    refuses("pause S1", unsupported("pause", "bridge"));
    refuses("resume S1 domain_route.dr1", unsupported("resume", "dr1"));
    refuses("enable S1 dr1::left", unsupported("enable", "dr1::left"));
    refuses("disable S1 dr1::s1::square::in", unsupported("disable", "dr1::s1::square::in"));
    EXPECT_EQ(ask("disable S1 session.s1"), result("dr1::s1 is DISABLED"));
    refuses("pause S1 session.s1",
            failed("!pause dr1::s1: it is disabled\nunsupported state=PAUSED", "change state"));
    Client client;
    EXPECT_EQ(client.send(kUpdate, "dr1", "STARTED", tag("state")),
              error(failed("unsupported state=STARTED", "change state")));
    EXPECT_THAT(client.send(kUpdate, "dr1", "SLEEPING", tag("state")),
                HasSubstr("unsupported state=SLEEPING\n"));
    EXPECT_THAT(client.send(kUpdate, "dr1", "", "octets that are no state"),
                HasSubstr("unsupported state=\n"));
    EXPECT_EQ(client.send(kGet, "dr1::s1", "", tag("state")), result("DISABLED"));
}

class Create : public ServiceTest
{
};

TEST_F(Create, byTheShellMakesAnEmptyEntity)
{
    start();
    EXPECT_EQ(ask("create S1 domain_route file://any.xml"),
              result("created DomainRoute2, empty: the request brings no document"));
    EXPECT_EQ(ask("get S1 DomainRoute2"), result("<domain_route name=\"DomainRoute2\"/>"));
    EXPECT_EQ(ask("create S1 session dr1 file://any.xml"),
              result("created dr1::Session2, empty: the request brings no document"));
    refuses("create S1 topic_route dr1::s1 file://any.xml",
            failed("!create an entity in dr1::s1: the request brings no document", "create"));
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
}

TEST_F(Create, withADocumentMakesThatEntity)
{
    start();
    Client client;
    const std::string route = "<topic_route name='circle'><input participant='left'/>"
                              "<output participant='right'/></topic_route>";
    EXPECT_EQ(client.send(kCreate, "dr1::s1", "str://\"" + route + "\""),
              result("created dr1::s1::circle"));
    EXPECT_EQ(ask("get S1 dr1::s1::circle"), result(R"(<topic_route name="circle">
    <input participant="left" name="Input1"/>
    <output participant="right" name="Output1"/>
</topic_route>)"));
    EXPECT_EQ(ask("pause S1 dr1::s1::circle"), result("dr1::s1::circle is PAUSED"));
    const std::string before = document();
    EXPECT_EQ(client.send(kCreate, "dr1::s1", "str://\"" + route + "\""),
              error(failed("!add element: line 1 already has one with name 'circle'\n"
                           "!initialize initialize extensions",
                           "create")));
    EXPECT_EQ(client.send(kCreate, "", "str://\"" + route + "\""),
              error(failed("command=create not supported for resource=bridge", "create")));
    EXPECT_THAT(client.send(kCreate, "dr1::s1", "str://\"<topic_route><inputt/></topic_route>\""),
                StartsWith("Error: !accept text, line 1: element <inputt>"));
    EXPECT_EQ(document(), before);
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
}

TEST_F(Create, passesOverNumbersThatAreTaken)
{
    start();
    const auto created = [](const std::string &name) {
        return result("created " + name + ", empty: the request brings no document");
    };
    EXPECT_EQ(ask("create S1 session dr1 x"), created("dr1::Session2"));
    EXPECT_EQ(ask("create S1 session dr1 x"), created("dr1::Session3"));
    EXPECT_EQ(ask("create S1 session dr1 x"), created("dr1::Session4"));
    EXPECT_EQ(ask("delete S1 dr1::Session2"), result("deleted dr1::Session2"));
    EXPECT_EQ(ask("create S1 session dr1 x"), created("dr1::Session5"));
    EXPECT_EQ(ask("delete S1 dr1::Session3"), result("deleted dr1::Session3"));
    EXPECT_EQ(ask("delete S1 dr1::Session4"), result("deleted dr1::Session4"));
    EXPECT_EQ(ask("create S1 session dr1 x"), created("dr1::Session3"));
    Client client;
    const std::string routes[] = {"str://\"<auto_topic_route><input participant='left'/>"
                                  "<output participant='right'/></auto_topic_route>\"",
                                  "str://\"<auto_topic_route name='AutoTopicRoute4'><input "
                                  "participant='left'/><output participant='right'/>"
                                  "</auto_topic_route>\""};
    EXPECT_EQ(client.send(kCreate, "dr1::s1", routes[1]),
              result("created dr1::s1::AutoTopicRoute4"));
    EXPECT_EQ(client.send(kCreate, "dr1::s1", routes[0]),
              result("created dr1::s1::AutoTopicRoute3"));
    EXPECT_EQ(client.send(kCreate, "dr1::s1", routes[0]),
              result("created dr1::s1::AutoTopicRoute5"));
    EXPECT_EQ(client.send(kCreate, "dr1::s1",
                          "str://\"<!-- an <auto_topic_route> --><?note <auto_topic_route?>"
                          "<auto_topic_route><input participant='left'/>"
                          "<output participant='right'/></auto_topic_route>\""),
              result("created dr1::s1::AutoTopicRoute6"));
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
}

class Delete : public ServiceTest
{
};

TEST_F(Delete, takesTheEntityWithItsStateAway)
{
    start();
    EXPECT_EQ(ask("pause S1 dr1::s1::all"), result("dr1::s1::all is PAUSED"));
    EXPECT_EQ(ask("delete S1 dr1::s1::all"), result("deleted dr1::s1::all"));
    EXPECT_THAT(ask("get S1 dr1::s1::all"), StartsWith("Error: unknown resource=dr1::s1::all."));
    Client client;
    EXPECT_EQ(client.send(kCreate, "dr1::s1", "str://\"" + kAll + "\""),
              result("created dr1::s1::all"));
    EXPECT_EQ(client.send(kGet, "dr1::s1::all", "", tag("state")), result("ENABLED"));
    EXPECT_EQ(ask("delete S1 session.s1"), result("deleted dr1::s1"));
    EXPECT_EQ(ask("delete S1 domain_route.dr1"), result("deleted dr1"));
    EXPECT_EQ(ask("get S1 bridge"), result(R"(<brel_service name="bridge">
    <administration>
        <domain_id>0</domain_id>
        <save_path>saved.xml</save_path>
    </administration>
</brel_service>)"));
    EXPECT_EQ(ask("save S1"), result("saved to saved.xml"));
}

TEST_F(Delete, ofWhatDoesNotGoAloneIsRefused)
{
    start();
    for (const std::string &name :
         {std::string("dr1::left"), std::string("dr1::s1::square::in"), std::string("bridge")}) {
        refuses("delete S1 " + name,
                failed("command=delete not supported for resource=" + name, "delete"));
    }
}

class Save : public ServiceTest
{
};

TEST_F(Save, withoutAPathIsRefused)
{
    std::string document = kSite;
    document.replace(document.find("<save_path>saved.xml</save_path>"), 32, "");
    start(document);
    refuses("save S1", failed("!save without a save_path in the administration of bridge", "save"));
}

TEST_F(Save, ofATextThatNobodyCouldReadKeepsTheFormerFile)
{
    start();
    ask("save S1");
    EXPECT_EQ(ask("update S1 . str://\"<input><topic_name>x</topic_name></input>\"").substr(0, 6),
              "Error:");
    EXPECT_EQ(ask("update S1 dr1::s1::square::in input.content_filter.expression=\"x&y\""),
              result("updated dr1::s1::square::in"));
    EXPECT_THAT(ask("save S1"), StartsWith("Error: !accept text, line "));
    EXPECT_EQ(folder.read("saved.xml"), kSaved);
    EXPECT_EQ(folder.files(), (std::vector<std::string>{"saved.xml", "site.xml"}));
}

TEST_F(Save, toAPlaceThatIsNotThereIsRefused)
{
    start();
    EXPECT_EQ(ask("update S1 brel_service.administration.save_path=none/saved.xml"),
              result("updated bridge"));
    refuses("save S1", failed("!save to 'none/saved.xml': No such file or directory", "save"));
}

class Load : public ServiceTest
{
};

TEST_F(Load, takesThePlaceOfWhatIsLoaded)
{
    start();
    EXPECT_EQ(ask("pause S1 session.s1"), result("dr1::s1 is PAUSED"));
    folder.write("next.xml", "<dds><brel_service name='a'/><brel_service name='next'>"
                             "<domain_route name='here'/></brel_service></dds>");
    EXPECT_EQ(ask("load S1 next file://next.xml"), result("loaded next"));
    EXPECT_EQ(ask("get S1 next"), result(R"(<brel_service name="next">
    <domain_route name="here"/>
</brel_service>)"));
    refuses("save S1", failed("!save without a save_path in the administration of next", "save"));
    EXPECT_EQ(ask("load S1 bridge file://site.xml local"), result("loaded bridge"));
    EXPECT_EQ(document(), "Result: " + kSaved);
    EXPECT_EQ(ask("load S1 bridge [file://none.xml|site.xml]"), result("loaded bridge"));
    EXPECT_EQ(document(), "Result: " + kSaved);
}

TEST_F(Load, thatFailsKeepsWhatIsLoaded)
{
    start();
    ask("update S1 topic_route.publish_with_original_info=true");
    refuses("load S1 bridg file://site.xml",
            failed("unknown resource=bridg. Did you mean 'bridge'?", "load"));
    refuses("load S1 bridge file://none.xml",
            failed("!find file 'none.xml'\n!parse URL group", "load"));
    folder.write("wrong.xml",
                 "<dds>\n<brel_service name='bridge'>\n<domain_rout/>\n</brel_service></dds>");
    const std::string wrong = ask("load S1 bridge file://wrong.xml");
    EXPECT_THAT(wrong, StartsWith("Error: !accept wrong.xml, line 3: element <domain_rout>: "));
    refuses("load S1 bridge file://wrong.xml", wrong.substr(7, wrong.size() - 8));
    EXPECT_THAT(document(), HasSubstr("<publish_with_original_info>true<"));
}

TEST_F(Load, isWhatAServiceNeedsThatIsUnloaded)
{
    start();
    EXPECT_EQ(ask("unload S1"), result("unloaded bridge"));
    for (const char *const line :
         {"get S1", "get S1 dr1", "update S1 . file://site.xml", "enable S1", "save S1",
          "create S1 domain_route x", "delete S1 dr1", "unload S1"}) {
        EXPECT_EQ(ask(line), error("service is unloaded")) << line;
    }
    EXPECT_EQ(ask("load S1 nothing file://site.xml"),
              error(failed("unknown resource=nothing. Did you mean 'bridge'?", "load")));
    EXPECT_EQ(ask("get S1"), error("service is unloaded"));
    EXPECT_EQ(ask("load S1 bridge file://site.xml"), result("loaded bridge"));
    EXPECT_EQ(document(), "Result: " + kSaved);
    // Without a document: the one that the service began with.
    Client client;
    EXPECT_EQ(client.send(kCreate, "", "", tag("state")), result("loaded bridge"));
}

class Commands : public ServiceTest
{
};

TEST_F(Commands, thatAreUnknownAreRefused)
{
    start();
    refuses("add_peer S1 dr1::left 127.0.0.1", "unsupported command=add_peer");
    Client client;
    EXPECT_EQ(client.send(kGet, "", "", tag("message")), error("unsupported command=message"));
    EXPECT_EQ(client.send(kDelete, "dr1", "", tag("state")), error("unsupported command=state"));
}

} // namespace
} // namespace zuv_test
