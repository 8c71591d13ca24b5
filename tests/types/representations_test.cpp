// In which representations the types of the system travel, and under which header.
#include <cstring>

#include <gtest/gtest.h>

#include "AllTypes.h"
#include "Payloads.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

constexpr DDS_UnsignedLong kBoth =
    DDS_XCDR_DATA_REPRESENTATION_MASK | DDS_XCDR2_DATA_REPRESENTATION_MASK;

TEST(Representations, OfAStructureAreXcdr2Alone)
{
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_STRUCTURES)) {
        EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr),
                  DDS_XCDR2_DATA_REPRESENTATION_MASK)
            << nameOf(type);
        for (const DDS_DataRepresentationId_t other :
             {DDS_XCDR_DATA_REPRESENTATION, DDS_XML_DATA_REPRESENTATION}) {
            EXPECT_EQ(DDS_TypeCode_get_native_encapsulation(type, other),
                      DDS_ENCAPSULATION_ID_INVALID)
                << nameOf(type);
        }
        EXPECT_EQ(DDS_TypeCode_get_native_encapsulation(type, DDS_XCDR2_DATA_REPRESENTATION),
                  DDS_TypeCode_get_native_encapsulation(type, DDS_AUTO_DATA_REPRESENTATION))
            << nameOf(type);
    }
}

TEST(Representations, OfAliasesAndEnumerationsAreXcdrAndXcdr2)
{
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_ALIASES)) {
        EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr), kBoth) << nameOf(type);
    }
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_ENUMERATIONS)) {
        EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr), kBoth) << nameOf(type);
    }
}

TEST(Representations, ShowInTheHeaderOfEachPayload)
{
    for (const DDS_TypeCode *type : ZUV_TEST_TYPE_CODES(ZUV_TEST_STRUCTURES)) {
        const SamplePointer sample = newSample(type);
        fillSample(type, sample.get(), 1);
        const Octets payload = payloadOf(type, sample.get());
        ASSERT_GE(payload.size(), 8U) << nameOf(type);
        const DDS_ExtensibilityKind extensibility = DDS_TypeCode_extensibility_kind(type, nullptr);
        const int expected = extensibility == DDS_FINAL_EXTENSIBILITY        ? 0x07
                             : extensibility == DDS_EXTENSIBLE_EXTENSIBILITY ? 0x09
                                                                             : 0x0b;
        EXPECT_EQ(payload[0], 0) << nameOf(type);
        EXPECT_EQ(payload[1], expected) << nameOf(type);
        EXPECT_EQ(payload[2], 0) << nameOf(type);
        EXPECT_LT(payload[3], 4) << nameOf(type);
        EXPECT_EQ(payload.size() % 4, 0U) << nameOf(type);
    }
}

TEST(Representations, OfAStructureCannotBeChosenOtherwise)
{
    const LogCapture log;
    const ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_PAUSED};
    char buffer[64];
    for (const DDS_DataRepresentationId_t other :
         {DDS_XCDR_DATA_REPRESENTATION, DDS_XML_DATA_REPRESENTATION}) {
        unsigned int length = sizeof(buffer);
        EXPECT_FALSE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer_ex(buffer, &length,
                                                                              &state, other));
        EXPECT_FALSE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer_ex(nullptr, &length,
                                                                              &state, other));
        EXPECT_EQ(ZUV_Service_EntityStateTypeSupport_serialize_data_to_cdr_buffer_ex(
                      buffer, &length, &state, other),
                  DDS_RETCODE_ERROR);
    }
    EXPECT_EQ(log.lines().size(), 6U);
}

TEST(Representations, PutAnEntityStateIntoTwelveOctets)
{
    const ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_PAUSED};
    for (const DDS_DataRepresentationId_t chosen :
         {DDS_AUTO_DATA_REPRESENTATION, DDS_XCDR2_DATA_REPRESENTATION}) {
        unsigned int length = 0;
        ASSERT_TRUE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer_ex(nullptr, &length,
                                                                             &state, chosen));
        EXPECT_EQ(length, 12U);
        char buffer[12];
        ASSERT_TRUE(ZUV_Service_EntityStatePlugin_serialize_to_cdr_buffer_ex(buffer, &length,
                                                                             &state, chosen));
        const char expected[12] = {0, 9, 0, 0, 4, 0, 0, 0, 6, 0, 0, 0};
        EXPECT_EQ(std::memcmp(buffer, expected, sizeof(expected)), 0);
    }
}

// A state that this version does not know: refused, unless the process is told to bear such.
TEST(Compliance, DecidesWhatBecomesOfAnUnknownState)
{
    const LogCapture log;
    const char unknown[12] = {0, 9, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0};
    const char event[16] = {0, 11, 0, 0, 8, 0, 0, 0, '\x9e', '\xd3', '\x9e', '\x2e', 7, 0, 0, 0};
    const auto read = [&] {
        ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_PAUSED};
        ZUV_Service_Monitoring_EntityEvent other = {ZUV_Service_EntityStateKind_PAUSED};
        const bool isRead = ZUV_Service_EntityStatePlugin_deserialize_from_cdr_buffer(
            &state, unknown, sizeof(unknown));
        EXPECT_EQ(ZUV_Service_Monitoring_EntityEventPlugin_deserialize_from_cdr_buffer(
                      &other, event, sizeof(event)),
                  isRead);
        EXPECT_EQ(state.state, isRead ? ZUV_Service_EntityStateKind_INVALID
                                      : ZUV_Service_EntityStateKind_PAUSED);
        EXPECT_EQ(other.state, state.state);
        return isRead;
    };
    EXPECT_EQ(ZUVXCdrInterpreter_getGlobalXtypeComplianceMask(), 0U);
    EXPECT_FALSE(read());
    ZUVXCdrInterpreter_setGlobalXtypeComplianceMask(ZUV_XTYPE_COMPLIANCE_UNKNOWN_DISCRIMINATOR |
                                                    ZUV_XTYPE_COMPLIANCE_DEFAULT_DISCRIMINATOR);
    EXPECT_FALSE(read());
    ZUVXCdrInterpreter_setGlobalXtypeComplianceMask(ZUV_XTYPE_COMPLIANCE_UNKNOWN_ENUM_VALUE);
    EXPECT_EQ(ZUVXCdrInterpreter_getGlobalXtypeComplianceMask(), 16U);
    EXPECT_TRUE(read());
    // A sample that holds texts is read in two passes.
    ZUV_Service_Admin_CommandReply reply;
    ASSERT_TRUE(ZUV_Service_Admin_CommandReply_initialize(&reply));
    const char other[28] = {0, 9, 0, 0, 20, 0, 0, 0, 9, 0, 0, 0, 5, 0,
                            0, 0, 1, 0, 0,  0, 0, 0, 0, 0, 0, 0, 0, 0};
    EXPECT_TRUE(
        ZUV_Service_Admin_CommandReplyPlugin_deserialize_from_cdr_buffer(&reply, other, 28));
    EXPECT_EQ(reply.retcode, ZUV_Service_Admin_CommandReplyRetcode_OK_RETCODE);
    EXPECT_EQ(reply.native_retcode, 5);
    ZUVXCdrInterpreter_setGlobalXtypeComplianceMask(0);
    EXPECT_FALSE(
        ZUV_Service_Admin_CommandReplyPlugin_deserialize_from_cdr_buffer(&reply, other, 28));
    ZUV_Service_Admin_CommandReply_finalize(&reply);
    EXPECT_FALSE(read());
}

// The same through the plug-in, big endian and back.
TEST(Representations, AreReadInBothByteOrders)
{
    ZUV_Service_EntityState state = {ZUV_Service_EntityStateKind_INVALID};
    const char bigEndian[12] = {0, 8, 0, 0, 0, 0, 0, 4, 0, 0, 0, 6};
    ASSERT_TRUE(ZUV_Service_EntityStatePlugin_deserialize_from_cdr_buffer(&state, bigEndian, 12));
    EXPECT_EQ(state.state, ZUV_Service_EntityStateKind_PAUSED);
}

} // namespace
