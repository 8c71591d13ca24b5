// The two samples of the administration protocol and the vocabularies of their bodies.
#include "remoteConfig/ServiceAdmin.h"

#include <cstring>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using Octets = std::vector<std::uint8_t>;
using Request = ZUV_Service_Admin_CommandRequest;
using Reply = ZUV_Service_Admin_CommandReply;

class AdminTypes : public testing::Test
{
protected:
    AdminTypes()
    {
        ZUV_Service_Admin_CommandRequest_initialize(&request_);
        ZUV_Service_Admin_CommandRequest_initialize(&decoded_);
        ZUV_Service_Admin_CommandReply_initialize(&reply_);
    }

    ~AdminTypes() override
    {
        ZUV_Service_Admin_CommandRequest_finalize(&request_);
        ZUV_Service_Admin_CommandRequest_finalize(&decoded_);
        ZUV_Service_Admin_CommandReply_finalize(&reply_);
    }

    void fill()
    {
        request_.instance_id = 0x01020304;
        DDS_String_replace(&request_.application_name, "S1");
        request_.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
        DDS_String_replace(&request_.resource_identifier, "domain_route.dr1");
        DDS_String_replace(&request_.string_body, "ENABLED");
        setTag("resource://state");
    }

    // A resource tag, its terminator included.
    void setTag(const char *tag)
    {
        DDS_OctetSeq_from_array(&request_.octet_body, reinterpret_cast<const DDS_Octet *>(tag),
                                static_cast<DDS_Long>(std::strlen(tag) + 1));
    }

    Octets encode() const
    {
        unsigned int length = 0;
        if (!ZUV_Service_Admin_CommandRequestPlugin_serialize_to_cdr_buffer(nullptr, &length,
                                                                            &request_)) {
            return {};
        }
        Octets payload(length);
        EXPECT_TRUE(ZUV_Service_Admin_CommandRequestPlugin_serialize_to_cdr_buffer(
            reinterpret_cast<char *>(payload.data()), &length, &request_));
        EXPECT_EQ(length, payload.size());
        return payload;
    }

    bool decode(const Octets &payload)
    {
        return ZUV_Service_Admin_CommandRequestPlugin_deserialize_from_cdr_buffer(
            &decoded_, reinterpret_cast<const char *>(payload.data()),
            static_cast<unsigned int>(payload.size()));
    }

    bool isSame() const
    {
        return ZUVSample_equals(&ZUV_Service_Admin_CommandRequest_g_typecode, &request_, &decoded_);
    }

    Request request_;
    Request decoded_;
    Reply reply_;
    zuv_test::LogCapture log_;
};

// The payload of fill(), octet by octet.
const Octets kFilled = {
    0x00, 0x09, 0x00, 0x03,                                    // delimited, three of padding
    0x4d, 0x00, 0x00, 0x00,                                    // size of what follows
    0x04, 0x03, 0x02, 0x01,                                    // instance_id
    0x01, 0x00, 0x00, 0x00,                                    // application_name is present
    0x03, 0x00, 0x00, 0x00, 'S', '1', 0x00, 0x00,              // with its terminator
    0x02, 0x00, 0x00, 0x00,                                    // UPDATE_ACTION
    0x11, 0x00, 0x00, 0x00, 'd', 'o', 'm',  'a',  'i', 'n',    // resource_identifier
    '_',  'r',  'o',  'u',  't', 'e', '.',  'd',  'r', '1', 0, //
    0x00, 0x00, 0x00,                                          //
    0x08, 0x00, 0x00, 0x00, 'E', 'N', 'A',  'B',  'L', 'E',    // string_body
    'D',  0x00,                                                //
    0x11, 0x00, 0x00, 0x00, 'r', 'e', 's',  'o',  'u', 'r',    // octet_body
    'c',  'e',  ':',  '/',  '/', 's', 't',  'a',  't', 'e', 0, //
    0x00, 0x00, 0x00,                                          // padding
};

} // namespace

TEST_F(AdminTypes, StartWithTheirDefaults)
{
    EXPECT_EQ(request_.instance_id, 0);
    EXPECT_EQ(request_.application_name, nullptr);
    EXPECT_EQ(request_.action, ZUV_Service_Admin_CommandActionKind_CREATE_ACTION);
    EXPECT_STREQ(request_.resource_identifier, "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(request_.resource_identifier), 2049u);
    EXPECT_STREQ(request_.string_body, "");
    EXPECT_EQ(DDS_OctetSeq_get_length(&request_.octet_body), 0);
    EXPECT_EQ(reply_.retcode, ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE);
    EXPECT_EQ(reply_.native_retcode, 0);
    EXPECT_STREQ(reply_.string_body, "");
    EXPECT_EQ(DDS_OctetSeq_get_length(&reply_.octet_body), 0);
}

TEST_F(AdminTypes, GiveTheApplicationNameRoomWhenOptionalMembersAreAskedFor)
{
    DDS_TypeAllocationParams_t params = DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
    params.allocate_optional_members = DDS_BOOLEAN_TRUE;
    Request *request = ZUV_Service_Admin_CommandRequestPluginSupport_create_data_w_params(&params);
    ASSERT_NE(request, nullptr);
    EXPECT_STREQ(request->application_name, "");
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(request->application_name), 256u);
    ZUV_Service_Admin_CommandRequestPluginSupport_destroy_data(request);
}

TEST_F(AdminTypes, AreDescribedAsDeclared)
{
    struct Member {
        const char *name;
        DDS_UnsignedLong id;
        bool isKey;
        bool isOptional;
    };
    const Member requestMembers[] = {
        {"instance_id", 0x0FCCAF51, true, false},
        {"application_name", 0x01392C44, false, true},
        {"action", 0x09558C41, false, false},
        {"resource_identifier", 0x091AB1BF, false, false},
        {"string_body", 0x0910C882, false, false},
        {"octet_body", 0x0D4E69ED, false, false},
    };
    const Member replyMembers[] = {
        {"retcode", 0x00708903, false, false},
        {"native_retcode", 0x095D6585, false, false},
        {"string_body", 0x0910C882, false, false},
        {"octet_body", 0x0D4E69ED, false, false},
    };
    const auto expectMembers = [](const DDS_TypeCode *type, const Member *members,
                                  DDS_UnsignedLong count) {
        EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_EXTENSIBLE_EXTENSIBILITY);
        EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr),
                  DDS_XCDR2_DATA_REPRESENTATION_MASK);
        EXPECT_TRUE(DDS_TypeCode_is_autoid_hash(type, nullptr));
        ASSERT_EQ(DDS_TypeCode_member_count(type, nullptr), count);
        for (DDS_UnsignedLong i = 0; i < count; ++i) {
            EXPECT_STREQ(DDS_TypeCode_member_name(type, i, nullptr), members[i].name);
            EXPECT_EQ(DDS_TypeCode_member_id(type, i, nullptr), members[i].id);
            EXPECT_EQ(DDS_TypeCode_is_member_key(type, i, nullptr), members[i].isKey);
            EXPECT_EQ(DDS_TypeCode_is_member_optional(type, i, nullptr), members[i].isOptional);
        }
    };
    const DDS_TypeCode *request = ZUV_Service_Admin_CommandRequest_get_typecode();
    const DDS_TypeCode *reply = ZUV_Service_Admin_CommandReply_get_typecode();
    EXPECT_STREQ(DDS_TypeCode_name(request, nullptr), "ZUV::Service::Admin::CommandRequest");
    EXPECT_STREQ(DDS_TypeCode_name(reply, nullptr), "ZUV::Service::Admin::CommandReply");
    expectMembers(request, requestMembers, 6);
    expectMembers(reply, replyMembers, 4);
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestPlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_USER);
    EXPECT_EQ(ZUV_Service_Admin_CommandReplyPlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_NONE);
}

TEST_F(AdminTypes, IntegersHaveTheirFullRangeAndStartAtZero)
{
    const struct {
        const DDS_TypeCode *type;
        DDS_UnsignedLong member;
    } integers[] = {
        {ZUV_Service_Admin_CommandRequest_get_typecode(), 0}, // instance_id
        {ZUV_Service_Admin_CommandReply_get_typecode(), 1},   // native_retcode
    };
    for (const auto &[type, member] : integers) {
        const auto least = DDS_TypeCode_member_min_value(type, member, nullptr);
        const auto greatest = DDS_TypeCode_member_max_value(type, member, nullptr);
        const auto initial = DDS_TypeCode_member_default_value(type, member, nullptr);
        EXPECT_EQ(least.kind, DDS_TK_LONG);
        EXPECT_EQ(least.value.signedValue, INT32_MIN);
        EXPECT_EQ(greatest.kind, DDS_TK_LONG);
        EXPECT_EQ(greatest.value.signedValue, INT32_MAX);
        EXPECT_EQ(initial.value.signedValue, 0);
    }
}

TEST_F(AdminTypes, EnumerationsHaveTheirNamesAndValues)
{
    const auto namesOf = [](const DDS_TypeCode *type) {
        std::vector<std::string> names;
        for (DDS_UnsignedLong i = 0; i < DDS_TypeCode_member_count(type, nullptr); ++i) {
            EXPECT_EQ(DDS_TypeCode_member_ordinal(type, i, nullptr), static_cast<DDS_Long>(i));
            names.emplace_back(DDS_TypeCode_member_name(type, i, nullptr));
        }
        return names;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(namesOf(ZUV_Service_Admin_CommandActionKind_get_typecode()),
              (Names{"CREATE_ACTION", "GET_ACTION", "UPDATE_ACTION", "DELETE_ACTION"}));
    EXPECT_EQ(namesOf(ZUV_Service_Admin_CommandReplyRetcode_get_typecode()),
              (Names{"OK_RETCODE", "ERROR_RETCODE"}));
}

TEST_F(AdminTypes, AliasesHaveTheirNamesAndBounds)
{
    struct Alias {
        const DDS_TypeCode *type;
        const char *name;
        DDS_TCKind kind;
        DDS_UnsignedLong bound;
    };
    const Alias aliases[] = {
        {ZUV_Service_Admin_EntityName_get_typecode(), "ZUV::Service::Admin::EntityName",
         DDS_TK_STRING, 255},
        {ZUV_Service_Admin_ResourceIdentifier_get_typecode(),
         "ZUV::Service::Admin::ResourceIdentifier", DDS_TK_STRING, 2048},
        {ZUV_Service_Admin_StringBody_get_typecode(), "ZUV::Service::Admin::StringBody",
         DDS_TK_STRING, 2147483647},
        {ZUV_Service_Admin_OctetBody_get_typecode(), "ZUV::Service::Admin::OctetBody",
         DDS_TK_SEQUENCE, 2147483647},
    };
    for (const Alias &alias : aliases) {
        EXPECT_STREQ(DDS_TypeCode_name(alias.type, nullptr), alias.name);
        const DDS_TypeCode *resolved = DDS_TypeCode_resolve_alias(alias.type);
        EXPECT_EQ(DDS_TypeCode_kind(resolved, nullptr), alias.kind);
        EXPECT_EQ(DDS_TypeCode_length(resolved, nullptr), alias.bound);
    }
    EXPECT_EQ(DDS_TypeCode_content_type(ZUV_Service_Admin_EntityName_get_typecode(), nullptr),
              ZUV_Service_BoundedString_get_typecode());

    ZUV_Service_Admin_OctetBody body;
    ASSERT_TRUE(ZUV_Service_Admin_OctetBody_initialize(&body));
    ASSERT_TRUE(DDS_OctetSeq_set_length(&body, 3));
    ASSERT_TRUE(ZUV_Service_Admin_OctetBody_copy(&request_.octet_body, &body));
    EXPECT_EQ(DDS_OctetSeq_get_length(&request_.octet_body), 3);
    ZUV_Service_Admin_OctetBody_finalize(&body);
    EXPECT_EQ(DDS_OctetSeq_get_maximum(&body), 0);
}

TEST_F(AdminTypes, ARequestIsWrittenOctetByOctetAsTheStandardTells)
{
    fill();
    EXPECT_EQ(encode(), kFilled);
    ASSERT_TRUE(decode(kFilled));
    EXPECT_TRUE(isSame());
}

TEST_F(AdminTypes, AReplyIsWrittenOctetByOctetAsTheStandardTells)
{
    reply_.retcode = ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE;
    reply_.native_retcode = -2;
    DDS_String_replace(&reply_.string_body, "no");
    const DDS_Octet octets[] = {7, 8};
    DDS_OctetSeq_from_array(&reply_.octet_body, octets, 2);
    const Octets expected = {0, 9, 0, 2, 0x16, 0,   0, 0, 1, 0, 0, 0, 0xfe, 0xff, 0xff, 0xff,
                             3, 0, 0, 0, 'n',  'o', 0, 0, 2, 0, 0, 0, 7,    8,    0,    0};
    Octets payload(64);
    unsigned int length = static_cast<unsigned int>(payload.size());
    ASSERT_TRUE(ZUV_Service_Admin_CommandReplyPlugin_serialize_to_cdr_buffer(
        reinterpret_cast<char *>(payload.data()), &length, &reply_));
    payload.resize(length);
    EXPECT_EQ(payload, expected);
}

TEST_F(AdminTypes, AnAbsentApplicationNameStaysAbsent)
{
    fill();
    DDS_String_replace(&request_.application_name, nullptr);
    DDS_String_replace(&decoded_.application_name, "left over");
    ASSERT_TRUE(decode(encode()));
    EXPECT_EQ(decoded_.application_name, nullptr);
    EXPECT_TRUE(isSame());
    DDS_String_replace(&request_.application_name, "");
    ASSERT_TRUE(decode(encode()));
    EXPECT_STREQ(decoded_.application_name, ""); // present and empty is not absent
}

TEST_F(AdminTypes, AnIdentifierOfItsBoundIsWrittenALongerOneIsNot)
{
    DDS_String_replace(&request_.resource_identifier, std::string(2048, 'r').c_str());
    ASSERT_TRUE(decode(encode()));
    EXPECT_EQ(std::strlen(decoded_.resource_identifier), 2048u);
    EXPECT_TRUE(log_.isEmpty());
    DDS_String_replace(&request_.resource_identifier, std::string(2049, 'r').c_str());
    EXPECT_TRUE(encode().empty());
    EXPECT_TRUE(log_.isExactly(
        {{&ZUV_LOG_ANY_FAILURE_s, "!a text or sequence is beyond its bound"},
         {&ZUV_CDR_LOG_SERIALIZE_FAILURE_s, "!serialize ZUV::Service::Admin::CommandRequest"}}));
}

TEST_F(AdminTypes, AnApplicationNameOfItsBoundIsWrittenALongerOneIsNot)
{
    DDS_String_replace(&request_.application_name, std::string(255, 'n').c_str());
    EXPECT_TRUE(decode(encode()));
    DDS_String_replace(&request_.application_name, std::string(256, 'n').c_str());
    EXPECT_TRUE(encode().empty());
}

TEST_F(AdminTypes, TextsBeyondTheirBoundAreNotRead)
{
    // The same request with one text too long, its lengths told truly.
    const auto payloadWith = [](std::size_t nameLength, std::size_t identifierLength) {
        Octets payload = {0, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};
        const auto align = [&payload] {
            while (payload.size() % 4 != 0) {
                payload.push_back(0);
            }
        };
        const auto word = [&](std::size_t value) {
            align();
            for (unsigned shift = 0; shift < 32; shift += 8) {
                payload.push_back(static_cast<std::uint8_t>(value >> shift));
            }
        };
        const auto text = [&](std::size_t length) {
            word(length + 1);
            payload.insert(payload.end(), length, 'x');
            payload.push_back(0);
        };
        text(nameLength);
        word(0);
        text(identifierLength);
        text(0);
        word(0);
        const std::size_t size = payload.size() - 8;
        payload[4] = static_cast<std::uint8_t>(size);
        payload[5] = static_cast<std::uint8_t>(size >> 8);
        return payload;
    };
    EXPECT_TRUE(decode(payloadWith(255, 2048)));
    EXPECT_FALSE(decode(payloadWith(256, 2048)));
    EXPECT_FALSE(decode(payloadWith(255, 2049)));
}

TEST_F(AdminTypes, AResourceTagCountsItsTerminator)
{
    setTag("resource://state");
    EXPECT_EQ(DDS_OctetSeq_get_length(&request_.octet_body), 17);
    ASSERT_TRUE(decode(encode()));
    EXPECT_EQ(DDS_OctetSeq_get_length(&decoded_.octet_body), 17);
    EXPECT_STREQ(
        reinterpret_cast<const char *>(DDS_OctetSeq_get_contiguous_buffer(&decoded_.octet_body)),
        "resource://state");
}

TEST_F(AdminTypes, SizesWithoutALimitSaySo)
{
    EXPECT_EQ(ZUV_Service_Admin_CommandRequestPlugin_get_serialized_sample_max_size(
                  nullptr, DDS_BOOLEAN_TRUE),
              0x7ffffbffu);
    EXPECT_EQ(ZUV_Service_Admin_CommandReplyPlugin_get_serialized_sample_max_size(nullptr,
                                                                                  DDS_BOOLEAN_TRUE),
              0x7ffffbffu);
    EXPECT_EQ(
        ZUV_Service_Admin_CommandRequestPlugin_get_serialized_key_max_size_for_keyhash(nullptr),
        4u);
}

TEST_F(AdminTypes, AllRequestsOfAShellAreOneInstance)
{
    fill();
    ZUVKeyHash first = {};
    ZUVKeyHash second = {};
    ASSERT_TRUE(
        ZUVCodec_getKeyHash(&ZUV_Service_Admin_CommandRequest_g_typecode, &request_, &first));
    const DDS_Octet expected[16] = {1, 2, 3, 4};
    EXPECT_EQ(std::memcmp(first.value, expected, sizeof(expected)), 0);
    DDS_String_replace(&request_.string_body, "other");
    request_.action = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;
    ASSERT_TRUE(
        ZUVCodec_getKeyHash(&ZUV_Service_Admin_CommandRequest_g_typecode, &request_, &second));
    EXPECT_EQ(std::memcmp(&first, &second, sizeof(first)), 0);
}

TEST_F(AdminTypes, EveryCutOfAPayloadIsRefused)
{
    for (std::size_t size = 0; size < kFilled.size() - 3; ++size) {
        EXPECT_FALSE(decode(Octets(kFilled.begin(), kFilled.begin() + static_cast<long>(size))))
            << size;
    }
    for (std::size_t size = kFilled.size() - 3; size <= kFilled.size(); ++size) {
        EXPECT_TRUE(decode(Octets(kFilled.begin(), kFilled.begin() + static_cast<long>(size))))
            << size;
    }
}

TEST_F(AdminTypes, EveryChangeOfAnOctetIsRefusedOrStillARequest)
{
    for (std::size_t i = 0; i < kFilled.size(); ++i) {
        for (unsigned value = 0; value < 256; ++value) {
            Octets changed = kFilled;
            changed[i] = static_cast<std::uint8_t>(value);
            if (!decode(changed)) {
                continue;
            }
            ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_copy(&request_, &decoded_)) << i;
            const Octets written = encode();
            ASSERT_FALSE(written.empty()) << i;
            ASSERT_TRUE(decode(written)) << i;
            EXPECT_TRUE(isSame()) << i;
        }
    }
}

TEST_F(AdminTypes, LyingPayloadsAreRefusedWithoutAllocating)
{
    struct Lie {
        const char *what;
        std::size_t offset;
        std::uint32_t word;
    };
    const Lie lies[] = {
        {"size past the end", 4, 0x51},
        {"size of 2^32-1", 4, 0xffffffff},
        {"size that leaves too much behind it", 4, 0x48},
        {"presence neither 0 nor 1", 12, 2},
        {"name longer than the payload", 16, 0x100},
        {"name of 2^31", 16, 0x80000000},
        {"name of no octets", 16, 0},
        {"name without its terminator", 16, 2},
        {"action that does not exist", 24, 4},
        {"action below all", 24, 0xffffffff},
        {"identifier past the end", 28, 0x60},
        {"body of 2^31-1", 52, 0x7fffffff},
        {"octets past the end", 64, 0x12},
        {"octets of 2^31", 64, 0x80000000},
        {"octets of 2^32-1", 64, 0xffffffff},
    };
    for (const Lie &lie : lies) {
        Octets payload = kFilled;
        std::memcpy(payload.data() + lie.offset, &lie.word, sizeof(lie.word));
        const zuv_test::HeapCheck heap;
        EXPECT_FALSE(decode(payload)) << lie.what;
        EXPECT_EQ(heap.allocations(), 0u) << lie.what;
    }
}

TEST_F(AdminTypes, CopyingAndDecodingAgainAllocateNothing)
{
    fill();
    ASSERT_TRUE(decode(kFilled));
    const zuv_test::HeapCheck heap;
    ASSERT_TRUE(ZUVCodec_deserialize(&ZUV_Service_Admin_CommandRequest_g_typecode, &decoded_,
                                     kFilled.data(),
                                     static_cast<DDS_UnsignedLong>(kFilled.size())));
    ASSERT_TRUE(ZUV_Service_Admin_CommandRequest_copy(&decoded_, &request_));
    EXPECT_EQ(heap.allocations(), 0u);
    ASSERT_TRUE(decode(kFilled)); // which releases the optional name first
    EXPECT_EQ(heap.allocations(), 1u);
}

TEST_F(AdminTypes, PooledRequestsHoldNoApplicationName)
{
    const ZUVTypeEndpointInfo info = {ZUV_TYPE_ENDPOINT_READER, 32768};
    ZUVTypePlugin *plugin = ZUV_Service_Admin_CommandRequestPlugin_new();
    ZUVTypeEndpointData *endpoint = plugin->onEndpointAttached(nullptr, &info);
    auto *sample = static_cast<Request *>(plugin->getSample(endpoint));
    ASSERT_TRUE(plugin->deserialize(endpoint, sample, kFilled.data(),
                                    static_cast<DDS_UnsignedLong>(kFilled.size())));
    EXPECT_STREQ(sample->application_name, "S1");
    plugin->returnSample(endpoint, sample);
    EXPECT_EQ(static_cast<Request *>(plugin->getSample(endpoint)), sample);
    EXPECT_EQ(sample->application_name, nullptr);
    plugin->returnSample(endpoint, sample);
    plugin->onEndpointDetached(endpoint);
    ZUV_Service_Admin_CommandRequestPlugin_delete(plugin);
}

// The members of each named sample, as another implementation of the representation serializes them.
TEST_F(AdminTypes, AreTheSameOctetsFromAnotherImplementation)
{
    std::map<std::string, std::string> vectors;
    std::ifstream file(ADMIN_VECTORS);
    for (std::string name, octets; file >> name >> octets;) {
        vectors[name] = octets;
    }
    const auto hexOf = [](const DDS_TypeCode &type, const void *sample) {
        Octets payload(ZUVCodec_getSize(&type, DDS_BOOLEAN_TRUE, sample));
        DDS_UnsignedLong length = 0;
        EXPECT_TRUE(ZUVCodec_serialize(&type, sample, payload.data(),
                                       static_cast<DDS_UnsignedLong>(payload.size()), &length));
        std::string hex;
        for (std::size_t i = 4; i + payload[3] < payload.size(); ++i) {
            constexpr char kDigits[] = "0123456789abcdef";
            hex += kDigits[payload[i] >> 4];
            hex += kDigits[payload[i] & 15];
        }
        return hex;
    };
    const DDS_TypeCode &requestType = ZUV_Service_Admin_CommandRequest_g_typecode;
    const DDS_TypeCode &replyType = ZUV_Service_Admin_CommandReply_g_typecode;

    EXPECT_EQ(hexOf(requestType, &request_), vectors["request_empty"]);
    fill();
    request_.instance_id = 0;
    DDS_String_replace(&request_.resource_identifier, "domain_route.dr1\n");
    EXPECT_EQ(hexOf(requestType, &request_), vectors["request_enable"]);
    request_.instance_id = -2;
    request_.action = ZUV_Service_Admin_CommandActionKind_DELETE_ACTION;
    DDS_String_replace(&request_.resource_identifier, "");
    DDS_String_replace(&request_.string_body, "abc");
    const DDS_Octet octets[] = {1, 2, 3};
    DDS_OctetSeq_from_array(&request_.octet_body, octets, 3);
    EXPECT_EQ(hexOf(requestType, &request_), vectors["request_odd_sizes"]);
    request_.instance_id = 0;
    request_.action = ZUV_Service_Admin_CommandActionKind_GET_ACTION;
    DDS_String_replace(&request_.application_name, std::string(255, 'a').c_str());
    DDS_String_replace(&request_.resource_identifier, std::string(2048, 'r').c_str());
    DDS_String_replace(&request_.string_body, "");
    DDS_OctetSeq_set_length(&request_.octet_body, 0);
    EXPECT_EQ(hexOf(requestType, &request_), vectors["request_bounds"]);

    EXPECT_EQ(hexOf(replyType, &reply_), vectors["reply_empty"]);
    reply_.retcode = ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE;
    reply_.native_retcode = 0x01020304;
    DDS_String_replace(&reply_.string_body, "no such entity");
    setTag("resource://state");
    DDS_OctetSeq_copy(&reply_.octet_body, &request_.octet_body);
    EXPECT_EQ(hexOf(replyType, &reply_), vectors["reply_error"]);
    EXPECT_EQ(vectors.size(), 6u);
}

TEST(AdminVocabulary, HasItsLiterals)
{
    EXPECT_STREQ(ZUV_SERVICE_ADMIN_SCHEME_FILE_NAME, "file://");
    EXPECT_STREQ(ZUV_SERVICE_ADMIN_SCHEME_STRING_NAME, "str://");
    EXPECT_STREQ(ZUV_SERVICE_ADMIN_SCHEME_SERVICE_NAME, "service://");
    EXPECT_STREQ(ZUV_SERVICE_ADMIN_SCHEME_OTHER_NAME, "");
    EXPECT_STREQ(ZUV_SERVICE_ADMIN_SCHEME_RESOURCE_NAME, "resource://");
    EXPECT_EQ(ZUV_SERVICE_ADMIN_SCHEME_OTHER, 3);
}

TEST(AdminVocabulary, HasItsNamesByKind)
{
    const std::vector<std::string> resources(ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES,
                                             ZUV_SERVICE_WELL_KNOWN_RESOURCE_KIND_NAMES +
                                                 ZUV_ServiceWellKnownResourceKind_COUNT);
    EXPECT_EQ(resources, (std::vector<std::string>{"", "config", "state", "message"}));
    EXPECT_EQ(ZUV_SERVICE_UNKNOWN_WELL_KNOWN_RESOURCE, 4);

    const std::vector<std::string> methods(ZUV_SERVICE_CUSTOM_METHOD_NAMES,
                                           ZUV_SERVICE_CUSTOM_METHOD_NAMES +
                                               ZUV_ServiceCustomMethodKind_COUNT);
    EXPECT_EQ(methods,
              (std::vector<std::string>{"", "announce", "save", "add_peer", "remove_peer"}));
    EXPECT_EQ(ZUV_SERVICE_UNKNOWN_CUSTOM_METHOD, 5);

    EXPECT_STREQ(ZUV_SERVICE_ENTITY_STATE_NAMES[ZUV_Service_EntityStateKind_PAUSED], "PAUSED");
    const DDS_TypeCode *states = ZUV_Service_EntityStateKind_get_typecode();
    for (DDS_UnsignedLong i = 0; i < ZUV_SERVICE_ENTITY_STATE_COUNT; ++i) {
        EXPECT_STREQ(ZUV_SERVICE_ENTITY_STATE_NAMES[i],
                     DDS_TypeCode_member_name(states, i, nullptr));
    }
}
