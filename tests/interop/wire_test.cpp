// The octets of a command and of its reply as they go over a socket.
#include <cstdio>
#include <fstream>
#include <map>
#include <regex>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/Session.h"
#include "support/Loopback.h"

namespace
{

using namespace zuv_test;
using testing::StartsWith;

// A sample on the wire; octets in hexadecimal.
struct Sample {
    std::string writer; // its GUID
    unsigned number = 0;
    std::map<std::string, std::string> inlineQos; // values by parameter id
    std::string payload;
};

std::vector<Sample> samplesIn(const std::string &output)
{
    static const std::regex line(
        "data writer=([0-9a-f]{32}) number=([0-9]+) qos=([0-9a-f:,]*) payload=([0-9a-f]*)\n");
    static const std::regex parameter("([0-9a-f]{4}):([0-9a-f]*)");
    std::vector<Sample> samples;
    for (std::sregex_iterator at(output.begin(), output.end(), line), end; at != end; ++at) {
        Sample sample = {(*at)[1], static_cast<unsigned>(std::stoul((*at)[2])), {}, (*at)[4]};
        const std::string qos = (*at)[3];
        for (std::sregex_iterator in(qos.begin(), qos.end(), parameter); in != end; ++in) {
            sample.inlineQos[(*in)[1]] = (*in)[2];
        }
        samples.push_back(sample);
    }
    return samples;
}

// A sample identity as a parameter: the writer, and the number in two little-endian words, the high one first.
std::string identityOf(const Sample &sample)
{
    char text[17];
    std::snprintf(text, sizeof text, "00000000%02x%02x%02x%02x", sample.number & 255U,
                  sample.number >> 8 & 255U, sample.number >> 16 & 255U, sample.number >> 24);
    return sample.writer + text;
}

std::string vectorOf(const std::string &name)
{
    std::ifstream file(VECTORS);
    for (std::string found, octets; file >> found >> octets;) {
        if (found == name) {
            return octets;
        }
    }
    return "no such vector";
}

constexpr const char *kRelatedSampleIdentity = "800f";
constexpr const char *kDelimitedXcdr2 = "0009";

TEST(Wire, carriesACommandInXcdr2AndRelatesTheReplyToItInline)
{
    Process observer({WIRE_OBSERVER, std::to_string(loopbackDomainId())});
    ASSERT_TRUE(observer.waitForOutput("ready\n")) << observer.errors();
    Responder service;
    Session shell(10);
    shell.letDiscover();
    ASSERT_TRUE(shell.run("hello")); // nothing of it goes out
    ASSERT_TRUE(shell.run("get S1")->starts_with("Result: "));
    ASSERT_TRUE(shell.run("enable S1 domain_route.dr1")->starts_with("Result: "));
    for (int count = 0; count < 4; ++count) {
        ASSERT_TRUE(observer.waitForOutput("data ")) << observer.output();
    }
    ASSERT_TRUE(observer.waitForOutput("\n"));

    // Requests come from a writer with a key, replies from one without; each in their order.
    std::vector<Sample> requests, replies;
    for (const Sample &sample : samplesIn(observer.output())) {
        (sample.writer.ends_with("02") ? requests : replies).push_back(sample);
    }
    ASSERT_EQ(requests.size(), 2u) << observer.output();
    ASSERT_EQ(replies.size(), 2u) << observer.output();
    EXPECT_THAT(requests[1].payload,
                StartsWith(kDelimitedXcdr2 + std::string("0003") + vectorOf("request_enable")));
    for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_EQ(requests[index].number, index + 1);
        EXPECT_EQ(requests[index].writer, requests[0].writer);
        EXPECT_EQ(requests[index].inlineQos.count(kRelatedSampleIdentity), 0u);

        EXPECT_THAT(replies[index].writer, testing::EndsWith("03"));
        EXPECT_THAT(replies[index].payload, StartsWith(kDelimitedXcdr2));
        EXPECT_EQ(replies[index].inlineQos[kRelatedSampleIdentity], identityOf(requests[index]));
    }
    observer.closeInput();
    EXPECT_EQ(observer.wait(), 0) << observer.errors();
}

} // namespace
