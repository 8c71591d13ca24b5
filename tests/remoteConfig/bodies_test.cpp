#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

// States are measured and not written as long as this is so.
static bool areStatesUnwritable = false;

extern "C" {
DDS_ReturnCode_t __real_ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer(
    char *buffer, unsigned int *length, const ZUV_Service_EntityState *sample);

DDS_ReturnCode_t __wrap_ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer(
    char *buffer, unsigned int *length, const ZUV_Service_EntityState *sample)
{
    return buffer != nullptr && areStatesUnwritable
               ? DDS_RETCODE_ERROR
               : __real_ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer(
                     buffer, length, sample);
}
}

namespace
{

constexpr auto kPaused = ZUV_Service_EntityStateKind_PAUSED;
constexpr auto kInvalid = ZUV_Service_EntityStateKind_INVALID;

class Bodies : public testing::Test
{
protected:
    Bodies()
    {
        BRELLog_setUp();
        EXPECT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply_));
        EXPECT_TRUE(ZUV_Service_Admin_CommandRequest_initialize(&request_));
    }
    ~Bodies() override
    {
        ZUVOsapiFault_disarm();
        ZUV_Service_Admin_CommandRequest_finalize(&request_);
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
    }

    static void setOctets(DDS_OctetSeq &octets, const std::string &bytes)
    {
        ASSERT_TRUE(DDS_OctetSeq_from_array(&octets,
                                            reinterpret_cast<const DDS_Octet *>(bytes.data()),
                                            static_cast<DDS_Long>(bytes.size())));
    }

    // The only line of the log is a failed precondition with this condition.
    void expectPrecondition(const std::string &condition)
    {
        ASSERT_EQ(log_.lines().size(), 1u);
        EXPECT_EQ(log_.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
        EXPECT_NE(log_.lines()[0].text.find("\"" + condition + "\""), std::string::npos)
            << log_.lines()[0].text;
        log_.clear();
    }

    ZUV_Service_Admin_CommandReply reply_;
    ZUV_Service_Admin_CommandRequest request_;
    zuv_test::LogCapture log_;
};

// Schemes.

TEST_F(Bodies, schemeStandsAtTheStartBehindWhiteSpace)
{
    const auto kind = ZUV_BrelServiceAdminSupport_getSchemeKind;
    EXPECT_EQ(kind("  file:///tmp/a.xml"), ZUV_SERVICE_ADMIN_SCHEME_FILE);
    EXPECT_EQ(kind(" \t\n\r\fstr://\"<a/>\""), ZUV_SERVICE_ADMIN_SCHEME_STRING);
    EXPECT_EQ(kind("service://x"), ZUV_SERVICE_ADMIN_SCHEME_SERVICE);
    EXPECT_EQ(kind("\vfile://x"), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    EXPECT_EQ(kind("FILE:///a"), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    EXPECT_EQ(kind("xfile://a"), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    EXPECT_EQ(kind("file:/"), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    EXPECT_EQ(kind(""), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(kind(nullptr), ZUV_SERVICE_ADMIN_SCHEME_OTHER);
    expectPrecondition("stringBody == ((void *)0)");
}

TEST_F(Bodies, schemesHaveTheirLiterals)
{
    const auto name = ZUV_BrelServiceAdminSupport_getSchemeName;
    EXPECT_STREQ(name(ZUV_SERVICE_ADMIN_SCHEME_FILE), "file://");
    EXPECT_STREQ(name(ZUV_SERVICE_ADMIN_SCHEME_STRING), "str://");
    EXPECT_STREQ(name(ZUV_SERVICE_ADMIN_SCHEME_SERVICE), "service://");
    EXPECT_STREQ(name(ZUV_SERVICE_ADMIN_SCHEME_OTHER), "");
    EXPECT_STREQ(name(static_cast<ZUV_BrelServiceAdminSchemeKind>(4)), "");
    EXPECT_STREQ(name(static_cast<ZUV_BrelServiceAdminSchemeKind>(-1)), "");
}

TEST_F(Bodies, contentStandsBehindTheScheme)
{
    const auto content = ZUV_BrelServiceAdminSupport_getBodyContent;
    EXPECT_STREQ(content("  file:///tmp/a.xml"), "/tmp/a.xml");
    EXPECT_STREQ(content("str://\"<a/>\""), "\"<a/>\"");
    EXPECT_STREQ(content("  ENABLED "), "ENABLED ");
    EXPECT_STREQ(content(""), "");
    EXPECT_EQ(content(nullptr), nullptr);
    expectPrecondition("stringBody == ((void *)0)");
}

TEST_F(Bodies, quotesComeOffInlineText)
{
    const auto strip = [](std::string text) {
        const char *const code =
            ZUV_BrelServiceAdminSupport_getXmlCodeFromStringBodyContent(text.data());
        return std::string(code);
    };
    EXPECT_EQ(strip("\"<a/>\"\n"), "<a/>");
    EXPECT_EQ(strip("\"<a b=\"1\"/>\" junk"), "<a b=\"1\"/>");
    EXPECT_EQ(strip("x<a/>\""), "<a/>");
    EXPECT_EQ(strip("<a/>\n"), "<a/>\n");
    EXPECT_EQ(strip("\"<a/>"), "\"<a/>");
    EXPECT_EQ(strip("\"\""), "");
    EXPECT_EQ(strip(""), "");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getXmlCodeFromStringBodyContent(nullptr), nullptr);
    expectPrecondition("stringBodyContent == ((void *)0)");
}

// Names.

TEST_F(Bodies, resourcesAreKnownByTheirNames)
{
    const auto kind = ZUV_ServiceWellKnownResourceKind_fromString;
    EXPECT_EQ(kind(""), ZUV_SERVICE_ENTITY_WELL_KNOWN_RESOURCE);
    EXPECT_EQ(kind("config"), ZUV_SERVICE_CONFIG_WELL_KNOWN_RESOURCE);
    EXPECT_EQ(kind("state"), ZUV_SERVICE_STATE_WELL_KNOWN_RESOURCE);
    EXPECT_EQ(kind("message"), ZUV_SERVICE_MESSAGE_WELL_KNOWN_RESOURCE);
    EXPECT_EQ(kind("State"), ZUV_SERVICE_UNKNOWN_WELL_KNOWN_RESOURCE);
    EXPECT_EQ(kind(nullptr), ZUV_SERVICE_UNKNOWN_WELL_KNOWN_RESOURCE);
    expectPrecondition("kindName == ((void *)0)");
}

TEST_F(Bodies, methodsAreKnownByTheirNames)
{
    const auto kind = ZUV_ServiceCustomMethodKind_fromString;
    EXPECT_EQ(kind(""), ZUV_SERVICE_NONE_CUSTOM_METHOD);
    EXPECT_EQ(kind("announce"), ZUV_SERVICE_ANNOUNCE_CUSTOM_METHOD);
    EXPECT_EQ(kind("save"), ZUV_SERVICE_SAVE_CUSTOM_METHOD);
    EXPECT_EQ(kind("add_peer"), ZUV_SERVICE_ADD_PEER_CUSTOM_METHOD);
    EXPECT_EQ(kind("remove_peer"), ZUV_SERVICE_REMOVE_PEER_CUSTOM_METHOD);
    EXPECT_EQ(kind("peer"), ZUV_SERVICE_UNKNOWN_CUSTOM_METHOD);
    EXPECT_EQ(kind(nullptr), ZUV_SERVICE_UNKNOWN_CUSTOM_METHOD);
    expectPrecondition("methodName == ((void *)0)");
}

// States.

TEST_F(Bodies, statesHaveTheirWords)
{
    const char *const words[] = {"INVALID", "ENABLED", "DISABLED", "STARTED",
                                 "STOPPED", "RUNNING", "PAUSED"};
    for (int value = 0; value < 7; ++value) {
        const auto state = static_cast<ZUV_Service_EntityStateKind>(value);
        EXPECT_STREQ(ZUV_BrelServiceAdminSupport_entityStateToString(state), words[value]);
        ZUV_Service_EntityStateKind read = kInvalid;
        EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromStringBody(words[value], &read), 1);
        EXPECT_EQ(read, state);
    }
}

TEST_F(Bodies, wordsAreReadWholeAndWithoutCase)
{
    ZUV_Service_EntityStateKind state = kPaused;
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromStringBody("enabled", &state), 1);
    EXPECT_EQ(state, ZUV_Service_EntityStateKind_ENABLED);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromStringBody("enabled\n", &state), 0);
    EXPECT_EQ(state, kInvalid);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_GET_FAILURE_s, "!get state from string body"}}));
    log_.clear();
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromStringBody(nullptr, &state), 0);
    expectPrecondition("stringBody == ((void *)0)");
}

TEST_F(Bodies, stateTravelsSerializedInAReply)
{
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInReply(&reply_, kPaused), 1);
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 12);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromReply(&reply_), kPaused);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Bodies, stateTravelsSerializedInARequest)
{
    DDS_String_replace(&request_.string_body, "ENABLED");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInRequest(&request_, kPaused), 1);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_), kPaused);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(Bodies, wordOfARequestWithATagCounts)
{
    setOctets(request_.octet_body, std::string("resource://state") + '\0');
    EXPECT_EQ(DDS_OctetSeq_get_length(&request_.octet_body), 17);
    DDS_String_replace(&request_.string_body, "PAUSED");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_), kPaused);
    // A tag is known by its first octets alone, and need not end in a terminator.
    setOctets(request_.octet_body, "resource://");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_), kPaused);
    EXPECT_TRUE(log_.isEmpty());
    DDS_String_replace(&request_.string_body, "PAUSED\n");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_), kInvalid);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_GET_FAILURE_s, "!get state from string body"},
                                {&ZUV_LOG_GET_FAILURE_s, "!get state from request string body"}}));
}

TEST_F(Bodies, wordCountsWithoutOctets)
{
    DDS_String_replace(&request_.string_body, "running");
    DDS_String_replace(&reply_.string_body, "stopped");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_),
              ZUV_Service_EntityStateKind_RUNNING);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromReply(&reply_),
              ZUV_Service_EntityStateKind_STOPPED);
    EXPECT_TRUE(log_.isEmpty());
    DDS_String_replace(&reply_.string_body, "");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromReply(&reply_), kInvalid);
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_GET_FAILURE_s, "!get state from string body"},
                                {&ZUV_LOG_GET_FAILURE_s, "!get state from reply string body"}}));
}

TEST_F(Bodies, octetsThatAreNoStateAreReported)
{
    setOctets(reply_.octet_body, "not a state");
    setOctets(request_.octet_body, "resource:/");
    DDS_String_replace(&request_.string_body, "PAUSED");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromReply(&reply_), kInvalid);
    EXPECT_TRUE(log_.holds(
        {{&ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, "!deserialize state from octet body"},
         {&ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, "!deserialize state from reply octet body"}}));
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(&request_), kInvalid);
    EXPECT_TRUE(log_.holds(
        {{&ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, "!deserialize state from octet body"},
         {&ZUV_CDR_LOG_DESERIALIZE_FAILURE_s, "!deserialize state from request octet body"}}));
}

TEST_F(Bodies, octetsThatAreNoStateMakeTheStateInvalid)
{
    setOctets(reply_.octet_body, "not a state");
    ZUV_Service_EntityStateKind state = kPaused;
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromOctetBody(&reply_.octet_body, &state), 0);
    EXPECT_EQ(state, kInvalid);
    EXPECT_EQ(log_.texts().back(), "!deserialize state from octet body");
}

TEST_F(Bodies, emptyOctetsLeaveTheStateAlone)
{
    ZUV_Service_EntityStateKind state = kPaused;
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromOctetBody(&reply_.octet_body, &state), 1);
    EXPECT_EQ(state, kPaused);
}

TEST_F(Bodies, stateThatFindsNoMemoryIsReported)
{
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInReply(&reply_, kPaused), 0);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInRequest(&request_, kPaused), 0);
    ZUVOsapiFault_disarm();
    for (const char *sample :
         {"!serialize state in reply octet body", "!serialize state in request octet body"}) {
        EXPECT_TRUE(log_.holds({{&ZUV_LOG_CREATION_FAILURE_s, "!create CDR buffer for state"},
                                {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, sample}}));
    }
    EXPECT_EQ(log_.texts().back(), "!serialize state in request octet body");
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 0);
}

TEST_F(Bodies, stateThatIsNoneIsNotSerialized)
{
    const auto none = static_cast<ZUV_Service_EntityStateKind>(7);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInReply(&reply_, none), 0);
    EXPECT_TRUE(log_.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!an enumeration holds a value that it does not have"},
         {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize ZUV::Service::EntityState"},
         {&ZUV_LOG_GET_FAILURE_s, "!get CDR buffer size for state"},
         {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize state in reply octet body"}}));
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 0);
}

TEST_F(Bodies, stateThatIsMeasuredAndNotWrittenIsReported)
{
    areStatesUnwritable = true;
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInRequest(&request_, kPaused), 0);
    areStatesUnwritable = false;
    EXPECT_TRUE(log_.isExactly(
        {{&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize state in octet body"},
         {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize state in request octet body"}}));
}

TEST_F(Bodies, stateOperationsNeedASample)
{
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInReply(nullptr, kPaused), 0);
    expectPrecondition("reply == ((void *)0)");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInRequest(nullptr, kPaused), 0);
    expectPrecondition("request == ((void *)0)");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromReply(nullptr), kInvalid);
    expectPrecondition("reply == ((void *)0)");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromRequest(nullptr), kInvalid);
    expectPrecondition("request == ((void *)0)");
    ZUV_Service_EntityStateKind state = kPaused;
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromOctetBody(nullptr, &state), 0);
    expectPrecondition("octetBody == ((void *)0)");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStateInOctetBody(nullptr, kPaused), 0);
    expectPrecondition("octetBody == ((void *)0)");
}

TEST_F(Bodies, stateThatIsReadNeedsAPlace)
{
    ASSERT_EQ(ZUV_BrelServiceAdminSupport_setStateInReply(&reply_, kPaused), 1);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromOctetBody(&reply_.octet_body, nullptr), 0);
    expectPrecondition("stateKind == ((void *)0)");
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_getStateFromStringBody("PAUSED", nullptr), 0);
    expectPrecondition("stateKind == ((void *)0)");
}

// Buffers of a reply.

class Buffers : public Bodies
{
protected:
    ~Buffers() override { ZUVOsapiHeap_free(dynamic_); }

    char *get(int preallocatedLength, int requiredLength)
    {
        isReallocated_ = -1;
        return ZUV_BrelServiceAdminSupport_getBufferForContent(preallocated_, preallocatedLength,
                                                               &isReallocated_, &dynamic_,
                                                               &dynamicLength_, requiredLength);
    }

    char preallocated_[100];
    char *dynamic_ = nullptr;
    int dynamicLength_ = 0;
    int isReallocated_ = -1;
};

TEST_F(Buffers, contentThatFitsStaysInThePreallocatedOne)
{
    EXPECT_EQ(get(100, 99), preallocated_);
    EXPECT_EQ(isReallocated_, 0);
    EXPECT_EQ(get(DDS_LENGTH_UNLIMITED, 1000000), preallocated_);
    EXPECT_EQ(dynamic_, nullptr);
}

TEST_F(Buffers, contentOfThePreallocatedLengthTakesTheDynamicOne)
{
    EXPECT_EQ(get(100, 100), dynamic_);
    ASSERT_NE(dynamic_, nullptr);
    EXPECT_EQ(isReallocated_, 1);
    EXPECT_EQ(dynamicLength_, 100);
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(dynamic_), 100u);
}

TEST_F(Buffers, dynamicOneIsKeptAndNeverShrinks)
{
    get(100, 500);
    std::strcpy(dynamic_, "kept");
    char *const before = dynamic_;
    EXPECT_EQ(get(100, 200), before);
    EXPECT_EQ(isReallocated_, 0);
    EXPECT_EQ(dynamicLength_, 500);
    get(100, 600);
    EXPECT_EQ(isReallocated_, 1);
    EXPECT_EQ(dynamicLength_, 600);
    EXPECT_STREQ(dynamic_, "kept");
}

TEST_F(Buffers, dynamicOneWithoutALimitIsUsedAsItIs)
{
    char block[4];
    dynamic_ = block;
    dynamicLength_ = DDS_LENGTH_UNLIMITED;
    EXPECT_EQ(get(100, 1000), block);
    EXPECT_EQ(isReallocated_, 0);
    dynamic_ = nullptr;
}

TEST_F(Buffers, wantOfMemoryIsReportedWithTheLengthAndChangesNothing)
{
    get(100, 200);
    char *const before = dynamic_;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(get(100, 300), nullptr);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(dynamic_, before);
    EXPECT_EQ(dynamicLength_, 200);
    EXPECT_EQ(isReallocated_, 0);
    ASSERT_EQ(log_.lines().size(), 1u);
    EXPECT_EQ(log_.lines()[0].message, &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d);
    EXPECT_NE(log_.lines()[0].text.find("300"), std::string::npos);
}

TEST_F(Buffers, contentThatDoesNotFitNeedsADynamicOneAndItsLength)
{
    const auto buffer = ZUV_BrelServiceAdminSupport_getBufferForContent;
    EXPECT_EQ(buffer(preallocated_, 100, nullptr, nullptr, nullptr, 99), preallocated_);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_EQ(buffer(preallocated_, 100, &isReallocated_, nullptr, &dynamicLength_, 100), nullptr);
    expectPrecondition("dynamicBuffer == ((void *)0)");
    EXPECT_EQ(buffer(preallocated_, 100, &isReallocated_, &dynamic_, nullptr, 100), nullptr);
    expectPrecondition("dynamicBufferLength == ((void *)0)");
    EXPECT_EQ(isReallocated_, 0);
    EXPECT_EQ(dynamic_, nullptr);
    EXPECT_EQ(dynamicLength_, 0);
}

TEST_F(Buffers, bodiesOfAReplyNeedADynamicOneAndItsLength)
{
    const auto setStringBody = ZUV_BrelServiceAdminSupport_setStringBodyBuffer;
    const auto setOctetBody = ZUV_BrelServiceAdminSupport_setOctetBodyContiguousBuffer;
    const char *const stringBody = reply_.string_body;
    EXPECT_EQ(setStringBody(&reply_, 0, nullptr, &dynamicLength_, 10), 0);
    EXPECT_EQ(setStringBody(&reply_, 0, &dynamic_, nullptr, 10), 0);
    EXPECT_EQ(reply_.string_body, stringBody);
    DDS_Octet *octets = nullptr;
    EXPECT_EQ(setOctetBody(&reply_, nullptr, &dynamicLength_, 10), 0);
    EXPECT_EQ(setOctetBody(&reply_, &octets, nullptr, 10), 0);
    EXPECT_EQ(DDS_OctetSeq_get_maximum(&reply_.octet_body), 0);
    const std::string buffer = "!meet precondition: \"dynamicBuffer == ((void *)0)\"";
    const std::string length = "!meet precondition: \"dynamicBufferLength == ((void *)0)\"";
    const std::string string = "!get string body buffer for reply";
    const std::string octet = "!get octet body contiguous buffer for reply";
    EXPECT_EQ(log_.texts(), (std::vector<std::string>{buffer, string, length, string, buffer, octet,
                                                      length, octet}));
}

TEST_F(Buffers, stringBodyGetsRoomForItsTerminator)
{
    char *const own = reply_.string_body;
    char ownBuffer[10] = "";
    reply_.string_body = ownBuffer;
    EXPECT_EQ(
        ZUV_BrelServiceAdminSupport_setStringBodyBuffer(&reply_, 10, &dynamic_, &dynamicLength_, 8),
        1);
    EXPECT_EQ(reply_.string_body, ownBuffer);
    EXPECT_EQ(
        ZUV_BrelServiceAdminSupport_setStringBodyBuffer(&reply_, 10, &dynamic_, &dynamicLength_, 9),
        1);
    EXPECT_EQ(reply_.string_body, dynamic_);
    EXPECT_EQ(dynamicLength_, 10);

    reply_.string_body = ownBuffer;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStringBodyBuffer(&reply_, 10, &dynamic_,
                                                              &dynamicLength_, 90),
              0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(reply_.string_body, ownBuffer);
    EXPECT_EQ(log_.texts().back(), "!get string body buffer for reply");
    log_.clear();

    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setStringBodyBuffer(&reply_, 10, &dynamic_,
                                                              &dynamicLength_, INT32_MAX),
              0);
    ASSERT_EQ(log_.lines().size(), 1u);
    EXPECT_EQ(log_.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
    log_.clear();
    EXPECT_EQ(
        ZUV_BrelServiceAdminSupport_setStringBodyBuffer(nullptr, 10, &dynamic_, &dynamicLength_, 1),
        0);
    expectPrecondition("reply == ((void *)0)");
    reply_.string_body = own;
}

class OctetBuffers : public Bodies
{
protected:
    ~OctetBuffers() override
    {
        if (!DDS_OctetSeq_has_ownership(&reply_.octet_body)) {
            DDS_OctetSeq_unloan(&reply_.octet_body);
        }
        ZUVOsapiHeap_free(dynamic_);
    }

    int set(int requiredLength)
    {
        return ZUV_BrelServiceAdminSupport_setOctetBodyContiguousBuffer(
            &reply_, &dynamic_, &dynamicLength_, requiredLength);
    }

    DDS_Octet *dynamic_ = nullptr;
    int dynamicLength_ = 0;
};

TEST_F(OctetBuffers, octetBodyBorrowsTheDynamicOne)
{
    ASSERT_EQ(set(50), 1);
    EXPECT_EQ(DDS_OctetSeq_get_contiguous_buffer(&reply_.octet_body), dynamic_);
    EXPECT_FALSE(DDS_OctetSeq_has_ownership(&reply_.octet_body));
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 0);
    EXPECT_EQ(DDS_OctetSeq_get_maximum(&reply_.octet_body), 50);
    // A larger answer: the old loan gives way to the grown buffer.
    ASSERT_EQ(set(80), 1);
    EXPECT_EQ(DDS_OctetSeq_get_contiguous_buffer(&reply_.octet_body), dynamic_);
    EXPECT_EQ(DDS_OctetSeq_get_maximum(&reply_.octet_body), 80);
    EXPECT_TRUE(log_.isEmpty());
}

TEST_F(OctetBuffers, octetBodyHasAllOfABufferThatGrewInPlace)
{
    // In steps this small the heap often has room behind the block.
    for (int length = 16; length < 100000; length += 16) {
        ASSERT_EQ(set(length), 1);
        ASSERT_EQ(DDS_OctetSeq_get_maximum(&reply_.octet_body), length);
    }
}

TEST_F(OctetBuffers, octetBodyKeepsABufferThatIsLargeEnough)
{
    ASSERT_EQ(set(50), 1);
    EXPECT_TRUE(DDS_OctetSeq_set_length(&reply_.octet_body, 7));
    ASSERT_EQ(set(40), 1);
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 7);
    ASSERT_EQ(set(50), 1);
    EXPECT_EQ(dynamicLength_, 50);
}

TEST_F(OctetBuffers, wantOfMemoryIsReported)
{
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(set(50), 0);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log_.texts().back(), "!get octet body contiguous buffer for reply");
    EXPECT_EQ(set(50), 1);
}

TEST_F(OctetBuffers, bufferThatCannotBeLentIsReleased)
{
    // A body with octets of its own takes no loan.
    setOctets(reply_.octet_body, "own octets");
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(set(50), 0);
    EXPECT_EQ(dynamic_, nullptr);
    EXPECT_EQ(dynamicLength_, 0);
    EXPECT_EQ(log_.texts().back(), "!loan reply's octet body contiguous buffer");
    EXPECT_TRUE(heap.isBalanced());
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 10);
}

TEST_F(OctetBuffers, bufferOfFormerRepliesIsKeptWhenItCannotBeLent)
{
    ASSERT_EQ(set(50), 1);
    ASSERT_TRUE(DDS_OctetSeq_unloan(&reply_.octet_body));
    DDS_Octet *const former = dynamic_;
    setOctets(reply_.octet_body, "own octets");
    const zuv_test::HeapCheck heap;
    EXPECT_EQ(set(50), 0);
    ASSERT_EQ(dynamic_, former);
    EXPECT_EQ(dynamicLength_, 50);
    EXPECT_EQ(heap.liveBlocks(), 0);
    EXPECT_EQ(log_.texts().back(), "!loan reply's octet body contiguous buffer");
}

TEST_F(OctetBuffers, needAReply)
{
    EXPECT_EQ(ZUV_BrelServiceAdminSupport_setOctetBodyContiguousBuffer(nullptr, &dynamic_,
                                                                       &dynamicLength_, 1),
              0);
    expectPrecondition("reply == ((void *)0)");
}

// Samples of any type in octets.

DDS_Boolean writeFour(char *buffer, DDS_UnsignedLong *size, void *sample)
{
    if (sample == nullptr || (buffer != nullptr && *size < 4)) {
        return DDS_BOOLEAN_FALSE;
    }
    *size = 4;
    if (buffer != nullptr) {
        std::memcpy(buffer, sample, 4);
    }
    return DDS_BOOLEAN_TRUE;
}

// Tells the size and writes nothing.
DDS_Boolean measureFour(char *buffer, DDS_UnsignedLong *size, void *)
{
    *size = 4;
    return buffer == nullptr ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

TEST_F(Bodies, sampleIsSerializedIntoASequence)
{
    ZUV_BrelServiceDataPlugin plugin = {nullptr, writeFour, nullptr};
    char sample[] = "abcd";
    const auto serialize = ZUV_BrelServiceDataPlugin_serializeSampleIntoOctetSequence;
    EXPECT_TRUE(serialize(&reply_.octet_body, &plugin, sample));
    ASSERT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 4);
    EXPECT_EQ(std::memcmp(DDS_OctetSeq_get_contiguous_buffer(&reply_.octet_body), "abcd", 4), 0);
    EXPECT_TRUE(log_.isEmpty());

    EXPECT_FALSE(serialize(&reply_.octet_body, &plugin, nullptr));
    EXPECT_TRUE(log_.isExactly({{&ZUV_LOG_ANY_FAILURE_s, "!get size of CDR-serialized sample"}}));
    log_.clear();

    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_FALSE(serialize(&request_.octet_body, &plugin, sample));
    ZUVOsapiFault_disarm();
    EXPECT_EQ(log_.lines().back().message, &ZUV_LOG_ANY_s);
    EXPECT_EQ(log_.texts().back(), "DDS_OctetSeq_ensure_length");
    log_.clear();

    EXPECT_FALSE(serialize(nullptr, &plugin, sample));
    expectPrecondition("octetSeq == ((void *)0)");
    EXPECT_FALSE(serialize(&reply_.octet_body, nullptr, sample));
    expectPrecondition("dataPlugin == ((void *)0)");
}

TEST_F(Bodies, sampleThatIsMeasuredAndNotWrittenIsAFailure)
{
    ZUV_BrelServiceDataPlugin plugin = {nullptr, measureFour, nullptr};
    char sample[] = "abcd";
    EXPECT_FALSE(ZUV_BrelServiceDataPlugin_serializeSampleIntoOctetSequence(&reply_.octet_body,
                                                                            &plugin, sample));
    EXPECT_TRUE(log_.isEmpty());
}

} // namespace
