#include "ServiceTest.h"

#include <stdexcept>

#include "support/Loopback.h"

namespace zuv_test
{

std::vector<std::string> serviceCommand(const std::vector<std::string> &arguments)
{
    std::vector<std::string> command = {BREL_SERVICE, "-skipDefaultFiles", "-domainId",
                                        std::to_string(loopbackDomainId())};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

RunningService::RunningService(const TemporaryFolder &folder,
                               const std::vector<std::string> &arguments,
                               std::vector<int> ignoredSignals)
    : Process(serviceCommand(arguments),
              {.ignoredSignals = std::move(ignoredSignals), .directory = folder.path()})
{
    if (!waitForOutput("ready\n")) {
        throw std::runtime_error("the service did not start: " + errors());
    }
}

const std::string ServiceTest::kSite = R"(<?xml version="1.0"?>
<dds>
  <brel_service name="bridge">
    <administration>
      <domain_id>0</domain_id>
      <save_path>saved.xml</save_path>
    </administration>
    <domain_route name="dr1">
      <participant name="left"><domain_id>0</domain_id></participant>
      <participant name="right"><domain_id>1</domain_id></participant>
      <session name="s1">
        <topic_route name="square">
          <input name="in" participant="left"><topic_name>Square</topic_name></input>
          <output name="out" participant="right"><topic_name>Square</topic_name></output>
        </topic_route>
        <auto_topic_route name="all">
          <input name="in" participant="left"/>
          <output name="out" participant="right"/>
        </auto_topic_route>
      </session>
    </domain_route>
  </brel_service>
</dds>
)";

const std::string ServiceTest::kSaved = R"(<?xml version="1.0"?>
<dds xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
    <brel_service name="bridge">
        <administration>
            <domain_id>0</domain_id>
            <save_path>saved.xml</save_path>
        </administration>
        <domain_route name="dr1">
            <participant name="left">
                <domain_id>0</domain_id>
            </participant>
            <participant name="right">
                <domain_id>1</domain_id>
            </participant>
            <session name="s1">
                <topic_route name="square">
                    <input name="in" participant="left">
                        <topic_name>Square</topic_name>
                    </input>
                    <output name="out" participant="right">
                        <topic_name>Square</topic_name>
                    </output>
                </topic_route>
                <auto_topic_route name="all">
                    <input name="in" participant="left"/>
                    <output name="out" participant="right"/>
                </auto_topic_route>
            </session>
        </domain_route>
    </brel_service>
</dds>
)";

void ServiceTest::start(const std::string &document, std::vector<std::string> arguments)
{
    folder.write("site.xml", document);
    arguments.insert(arguments.begin(), {"-cfgFile", "site.xml", "-appName", "S1"});
    service = std::make_unique<RunningService>(folder, arguments);
    ProcessOptions options;
    options.directory = folder.path();
    shell = std::make_unique<Session>(10, options);
    shell->letDiscover();
}

std::string ServiceTest::ask(std::string_view line)
{
    return shell->run(line).value_or("(no prompt)");
}

void ServiceTest::refuses(std::string_view line, const std::string &reason)
{
    const std::string before = document();
    const std::string saved = folder.read("saved.xml");
    EXPECT_EQ(ask(line), error(reason)) << line;
    EXPECT_EQ(document(), before) << line;
    EXPECT_EQ(folder.read("saved.xml"), saved) << line;
}

std::string result(const std::string &text)
{
    return "Result: " + text + "\n";
}

std::string error(const std::string &text)
{
    return "Error: " + text + "\n";
}

Client::Client() : client_(BRELRemoteConfigClient_new(loopbackDomainId(), 10))
{
    for (int tries = 0; tries < 500 && !BRELRemoteConfigClient_hasMatchingServer(client_);
         ++tries) {
        usleep(10000);
    }
}

std::string Client::send(ZUV_Service_Admin_CommandActionKind action, std::string identifier,
                         std::string body, const std::string &octets)
{
    ZUV_Service_Admin_CommandReply reply;
    if (!ZUV_Service_Admin_CommandReply_initialize(&reply)) {
        return "(no memory)";
    }
    ZUV_Service_Admin_CommandRequest request = {};
    request.action = action;
    request.resource_identifier = identifier.data();
    request.string_body = body.data();
    DDS_OctetSeq_initialize(&request.octet_body);
    DDS_OctetSeq_from_array(&request.octet_body, reinterpret_cast<const DDS_Octet *>(octets.data()),
                            static_cast<DDS_Long>(octets.size()));
    std::string text = "(none)";
    if (BRELRemoteConfigClient_sendCommandRequest(client_, &reply, "S1", &request, 1)) {
        const bool isDone = reply.retcode == ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE;
        text = isDone ? result(reply.string_body) : error(reply.string_body);
    }
    DDS_OctetSeq_finalize(&request.octet_body);
    ZUV_Service_Admin_CommandReply_finalize(&reply);
    return text;
}

} // namespace zuv_test
