#include "platform/typesys/TypePlugin.h"

#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "TestSamples.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using namespace zuv_test;

constexpr ZUVTypeEndpointInfo kReader = {ZUV_TYPE_ENDPOINT_READER, DDS_LENGTH_UNLIMITED};
constexpr ZUVTypeEndpointInfo kWriter = {ZUV_TYPE_ENDPOINT_WRITER, 64};

class TypePluginTest : public testing::Test
{
protected:
    TypePluginTest() { ZUVSample_getSize(&TestMutable_g_typecode); }

    LogCapture log_;
};

} // namespace

TEST_F(TypePluginTest, HoldsEveryOperationOfAKeyedType)
{
    const HeapCheck heap;
    ZUVTypePlugin *plugin = TestMutablePlugin_new();
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->onParticipantAttached && plugin->onParticipantDetached &&
                plugin->onEndpointAttached && plugin->onEndpointDetached && plugin->copySample &&
                plugin->createSample && plugin->deleteSample && plugin->finalizeOptionalMembers &&
                plugin->instanceToKeyHash && plugin->serializedSampleToKeyHash &&
                plugin->serialize && plugin->deserialize && plugin->getSample &&
                plugin->returnSample && plugin->getSerializedSampleMaxSize &&
                plugin->getSerializedSampleMinSize && plugin->getSerializedSampleSize &&
                plugin->getKeyKind && plugin->getKey && plugin->returnKey &&
                plugin->getSerializedKeyMaxSize && plugin->instanceToKey && plugin->keyToInstance &&
                plugin->serializeKey && plugin->deserializeKey && plugin->deserializeKeySample &&
                plugin->getBuffer && plugin->returnBuffer);
    EXPECT_EQ(plugin->typeCode, &TestMutable_g_typecode);
    EXPECT_STREQ(plugin->typeName, "Test::Mutable");
    EXPECT_EQ(plugin->getKeyKind(), 2);
    TestMutablePlugin_delete(plugin);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(TypePluginTest, HoldsNoKeyOperationsOfATypeWithoutAKey)
{
    ZUVTypePlugin *plugin = TestOlderPlugin_new();
    ASSERT_NE(plugin, nullptr);
    EXPECT_FALSE(plugin->instanceToKeyHash || plugin->serializedSampleToKeyHash || plugin->getKey ||
                 plugin->returnKey || plugin->getSerializedKeyMaxSize || plugin->instanceToKey ||
                 plugin->keyToInstance || plugin->serializeKey || plugin->deserializeKey ||
                 plugin->deserializeKeySample);
    EXPECT_TRUE(plugin->serialize && plugin->deserialize && plugin->getBuffer);
    EXPECT_EQ(plugin->getKeyKind(), 0);
    TestOlderPlugin_delete(plugin);
}

TEST_F(TypePluginTest, HoldsItsOperationsInTheirFixedOrder)
{
    const std::size_t offsets[] = {
        offsetof(ZUVTypePlugin, onParticipantAttached),
        offsetof(ZUVTypePlugin, onParticipantDetached),
        offsetof(ZUVTypePlugin, onEndpointAttached),
        offsetof(ZUVTypePlugin, onEndpointDetached),
        offsetof(ZUVTypePlugin, copySample),
        offsetof(ZUVTypePlugin, createSample),
        offsetof(ZUVTypePlugin, deleteSample),
        offsetof(ZUVTypePlugin, finalizeOptionalMembers),
        offsetof(ZUVTypePlugin, instanceToKeyHash),
        offsetof(ZUVTypePlugin, serializedSampleToKeyHash),
        offsetof(ZUVTypePlugin, serialize),
        offsetof(ZUVTypePlugin, deserialize),
        offsetof(ZUVTypePlugin, getSample),
        offsetof(ZUVTypePlugin, returnSample),
        offsetof(ZUVTypePlugin, getSerializedSampleMaxSize),
        offsetof(ZUVTypePlugin, getSerializedSampleMinSize),
        offsetof(ZUVTypePlugin, getSerializedSampleSize),
        offsetof(ZUVTypePlugin, getKeyKind),
        offsetof(ZUVTypePlugin, getKey),
        offsetof(ZUVTypePlugin, returnKey),
        offsetof(ZUVTypePlugin, getSerializedKeyMaxSize),
        offsetof(ZUVTypePlugin, instanceToKey),
        offsetof(ZUVTypePlugin, keyToInstance),
        offsetof(ZUVTypePlugin, serializeKey),
        offsetof(ZUVTypePlugin, deserializeKey),
        offsetof(ZUVTypePlugin, deserializeKeySample),
        offsetof(ZUVTypePlugin, typeCode),
        offsetof(ZUVTypePlugin, getBuffer),
        offsetof(ZUVTypePlugin, returnBuffer),
        offsetof(ZUVTypePlugin, typeName),
    };
    for (std::size_t i = 0; i < std::size(offsets); ++i) {
        EXPECT_EQ(offsets[i], i * sizeof(void *)) << i;
    }
    EXPECT_EQ(sizeof(ZUVTypePlugin), std::size(offsets) * sizeof(void *));
}

TEST_F(TypePluginTest, IsDescribedByAStaticRecord)
{
    const ZUVTypePluginInfo *info = TestMutable_get_type_plugin_info();
    EXPECT_EQ(info, TestMutable_get_type_plugin_info());
    EXPECT_EQ(info->typeCode, &TestMutable_g_typecode);
    EXPECT_EQ(info->newPlugin, TestMutablePlugin_new);
    EXPECT_EQ(info->deletePlugin, TestMutablePlugin_delete);
    EXPECT_EQ(TestPoint_get_type_plugin_info()->newPlugin, nullptr);
    EXPECT_EQ(TestColor_get_type_plugin_info()->typeCode, &TestColor_g_typecode);
}

TEST_F(TypePluginTest, CountsTheUsersOfAProgram)
{
    DDS_TypeCodeFactory *factory = DDS_TypeCodeFactory_get_instance();
    const auto users = [factory] {
        return DDS_TypeCodeFactory_get_program_user_count(factory, &TestGuidKey_g_typecode);
    };
    const DDS_UnsignedLong before = users();
    ZUVTypeParticipantData *first = TestGuidKeyPlugin_on_participant_attached(nullptr);
    ZUVTypeParticipantData *second = TestGuidKeyPlugin_on_participant_attached(nullptr);
    ASSERT_TRUE(first != nullptr && second != nullptr);
    EXPECT_EQ(users(), before + 2);
    TestGuidKeyPlugin_on_participant_detached(first);
    TestGuidKeyPlugin_on_participant_detached(second);
    TestGuidKeyPlugin_on_participant_detached(nullptr);
    EXPECT_EQ(users(), before);
    DDS_TypeCodeFactory_remove_programs_from_global_list(factory, &TestGuidKey_g_typecode,
                                                         DDS_TYPE_PROGRAMS_ALL);
    EXPECT_EQ(users(), before > 0 ? before - 1 : 0); // never below none
    EXPECT_TRUE(TestGuidKeyPlugin_get_programs());
    EXPECT_FALSE(DDS_TypeCodeFactory_assert_programs_in_global_list(factory, &DDS_g_tc_null,
                                                                    DDS_TYPE_PROGRAMS_ALL));
    EXPECT_FALSE(DDS_TypeCodeFactory_assert_programs_in_global_list(
        nullptr, &TestGuidKey_g_typecode, DDS_TYPE_PROGRAMS_ALL));
}

TEST_F(TypePluginTest, LendsSamplesFromItsPoolWithoutOptionalMembers)
{
    const HeapCheck heap;
    ZUVTypeEndpointData *endpoint = TestMutablePlugin_on_endpoint_attached(nullptr, &kReader);
    ASSERT_NE(endpoint, nullptr);
    auto *sample = static_cast<TestMutable *>(ZUVTypeEndpointData_getSample(endpoint));
    ASSERT_NE(sample, nullptr);
    fill(*sample, false);
    const char *name = sample->name;
    TestMutablePlugin_return_sample(endpoint, sample);
    const HeapCheck again;
    auto *reused = static_cast<TestMutable *>(ZUVTypeEndpointData_getSample(endpoint));
    EXPECT_EQ(reused, sample);
    EXPECT_EQ(again.allocations(), 0u);
    EXPECT_EQ(reused->name, name);
    EXPECT_EQ(reused->note, nullptr);
    EXPECT_EQ(reused->maybe, nullptr);
    TestMutablePlugin_return_sample(endpoint, reused);
    void *key = ZUVTypeEndpointData_getKey(endpoint);
    ASSERT_NE(key, nullptr);
    ZUVTypeEndpointData_returnKey(endpoint, key);
    EXPECT_EQ(ZUVTypeEndpointData_getKey(endpoint), key);
    ZUVTypeEndpointData_returnKey(endpoint, key);
    void *created = ZUVTypeEndpointData_createSample(endpoint);
    ASSERT_NE(created, nullptr);
    ZUVTypeEndpointData_deleteSample(endpoint, created);
    TestMutablePlugin_on_endpoint_detached(endpoint);
    TestMutablePlugin_on_endpoint_detached(nullptr);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(TypePluginTest, KeepsBuffersUpToTheGreatestOfItsPool)
{
    const HeapCheck heap;
    ZUVTypeEndpointData *endpoint = TestMutablePlugin_on_endpoint_attached(nullptr, &kWriter);
    ASSERT_NE(endpoint, nullptr);
    DDS_Octet *small = ZUVTypeEndpointData_getBuffer(endpoint, 64);
    DDS_Octet *large = ZUVTypeEndpointData_getBuffer(endpoint, 65);
    ASSERT_TRUE(small != nullptr && large != nullptr);
    ZUVTypeEndpointData_returnBuffer(endpoint, small);
    ZUVTypeEndpointData_returnBuffer(endpoint, large); // released
    ZUVTypeEndpointData_returnBuffer(endpoint, nullptr);
    const HeapCheck again;
    EXPECT_EQ(ZUVTypeEndpointData_getBuffer(endpoint, 10), small);
    EXPECT_EQ(again.allocations(), 0u);
    ZUVTypeEndpointData_returnBuffer(endpoint, small);
    DDS_Octet *exchanged = ZUVTypeEndpointData_getBuffer(endpoint, 1000); // too large for the kept
    ASSERT_NE(exchanged, nullptr);
    std::memset(exchanged, 1, 1000);
    ZUVTypeEndpointData_returnBuffer(endpoint, exchanged);
    TestMutablePlugin_on_endpoint_detached(endpoint);
    EXPECT_TRUE(heap.isBalanced());
}

TEST_F(TypePluginTest, CopiesSamplesWithAllThatTheyHold)
{
    ZUV_TEST_SAMPLE(TestMutable, sample);
    ZUV_TEST_SAMPLE(TestMutable, copy);
    fill(*sample, false);
    EXPECT_TRUE(TestMutablePlugin_copy_sample(nullptr, &copy, &sample));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &copy));
    EXPECT_NE(copy->note, sample->note);
    EXPECT_NE(copy->maybe, sample->maybe);
    TestMutable_finalize_optional_members(&sample, DDS_BOOLEAN_TRUE);
    EXPECT_TRUE(TestMutablePlugin_copy_sample(nullptr, &copy, &sample));
    EXPECT_EQ(copy->note, nullptr);

    const TestOlder keyless = {1, 2};
    TestOlder other = {3, 4};
    EXPECT_TRUE(TestOlderPlugin_copy_sample(nullptr, &other, &keyless));
    EXPECT_EQ(other.a, 1);
    EXPECT_EQ(other.b, 2);
    EXPECT_TRUE(log_.isEmpty());
    EXPECT_FALSE(TestMutablePlugin_copy_sample(nullptr, nullptr, &sample));
    EXPECT_FALSE(TestOlderPlugin_copy_sample(nullptr, &other, nullptr));
    EXPECT_EQ(log_.lines().size(), 2U);
}

TEST_F(TypePluginTest, SerializesThroughItsRecord)
{
    ZUVTypePlugin *plugin = TestMutablePlugin_new();
    ZUVTypeEndpointData *endpoint = plugin->onEndpointAttached(nullptr, &kWriter);
    ZUV_TEST_SAMPLE(TestMutable, sample);
    ZUV_TEST_SAMPLE(TestMutable, decoded);
    fill(*sample, false);
    const DDS_UnsignedLong size =
        plugin->getSerializedSampleSize(endpoint, DDS_BOOLEAN_TRUE, &sample);
    DDS_Octet *buffer = plugin->getBuffer(endpoint, size);
    DDS_UnsignedLong length = 0;
    ASSERT_TRUE(plugin->serialize(endpoint, &sample, buffer, size, &length));
    EXPECT_EQ(length, size);
    ASSERT_TRUE(plugin->deserialize(endpoint, &decoded, buffer, length));
    EXPECT_TRUE(ZUVSample_equals(sample.type(), &sample, &decoded));

    ZUVKeyHash ofInstance = {};
    ZUVKeyHash ofPayload = {};
    ASSERT_TRUE(plugin->instanceToKeyHash(endpoint, &ofInstance, &sample));
    ASSERT_TRUE(plugin->serializedSampleToKeyHash(endpoint, buffer, length, &ofPayload));
    EXPECT_EQ(std::memcmp(&ofInstance, &ofPayload, sizeof(ofInstance)), 0);
    EXPECT_FALSE(plugin->serializedSampleToKeyHash(nullptr, buffer, length, &ofPayload));
    EXPECT_FALSE(plugin->serializedSampleToKeyHash(endpoint, buffer, 3, &ofPayload));

    ASSERT_TRUE(plugin->serializeKey(endpoint, &sample, buffer, size, &length));
    EXPECT_EQ(length, plugin->getSerializedKeyMaxSize(endpoint, DDS_BOOLEAN_TRUE));
    auto *key = static_cast<TestMutable *>(plugin->getKey(endpoint));
    ASSERT_TRUE(plugin->deserializeKeySample(endpoint, key, buffer, length));
    EXPECT_EQ(key->id, -5);
    plugin->returnKey(endpoint, key);
    plugin->returnBuffer(endpoint, buffer);

    EXPECT_EQ(plugin->getSerializedSampleMaxSize(endpoint, DDS_BOOLEAN_TRUE), 0x7ffffbffu);
    EXPECT_GT(plugin->getSerializedSampleMinSize(endpoint, DDS_BOOLEAN_TRUE), 0u);
    EXPECT_EQ(TestMutablePlugin_get_serialized_key_max_size_for_keyhash(endpoint), 4u);
    EXPECT_EQ(TestPointPlugin_get_serialized_key_max_size(nullptr, DDS_BOOLEAN_TRUE), 0u);
    EXPECT_EQ(TestNamePlugin_get_key_kind(), ZUV_TYPE_KEY_KIND_NONE);
    EXPECT_EQ(TestNamePlugin_get_serialized_sample_max_size(nullptr, DDS_BOOLEAN_FALSE), 13u);
    EXPECT_EQ(TestColorPlugin_get_serialized_sample_max_size(nullptr, DDS_BOOLEAN_FALSE), 4u);
    EXPECT_FALSE(TestPointPlugin_deserialize_key(nullptr, key, buffer, 8));
    plugin->onEndpointDetached(endpoint);
    TestMutablePlugin_delete(plugin);
}

TEST_F(TypePluginTest, PoolsServeSeveralThreads)
{
    ZUVTypeEndpointData *endpoint = TestMutablePlugin_on_endpoint_attached(nullptr, &kWriter);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([endpoint, i] {
            for (int round = 0; round < 500; ++round) {
                auto *sample = static_cast<TestMutable *>(ZUVTypeEndpointData_getSample(endpoint));
                DDS_Octet *buffer = ZUVTypeEndpointData_getBuffer(endpoint, 32);
                sample->id = i;
                std::memset(buffer, i, 32);
                EXPECT_EQ(sample->id, i);
                EXPECT_EQ(buffer[31], i);
                ZUVTypeEndpointData_returnBuffer(endpoint, buffer);
                TestMutablePlugin_return_sample(endpoint, sample);
            }
        });
    }
    for (std::thread &thread : threads) {
        thread.join();
    }
    TestMutablePlugin_on_endpoint_detached(endpoint);
}

TEST_F(TypePluginTest, SurvivesEveryFailedAllocation)
{
    const HeapCheck heap;
    for (std::uint32_t count = 1;; ++count) {
        log_.clear();
        ZUVOsapiFault_arm(nullptr, count, 0);
        ZUVTypePlugin *plugin = TestMutablePlugin_new();
        ZUVTypeParticipantData *participant = TestMutablePlugin_on_participant_attached(nullptr);
        ZUVTypeEndpointData *endpoint =
            TestMutablePlugin_on_endpoint_attached(participant, &kWriter);
        void *sample = endpoint != nullptr ? ZUVTypeEndpointData_getSample(endpoint) : nullptr;
        DDS_Octet *buffer =
            endpoint != nullptr ? ZUVTypeEndpointData_getBuffer(endpoint, 8) : nullptr;
        ZUVOsapiFault_disarm();
        const bool isInjected = ZUVOsapiFault_getInjectedCount() > 0;
        EXPECT_EQ(plugin && participant && endpoint && sample && buffer, !isInjected);
        EXPECT_EQ(log_.lines().empty(), !isInjected);
        if (endpoint != nullptr) {
            ZUVTypeEndpointData_returnBuffer(endpoint, buffer);
            ZUVTypeEndpointData_returnSample(endpoint, sample);
        }
        TestMutablePlugin_on_endpoint_detached(endpoint);
        TestMutablePlugin_on_participant_detached(participant);
        TestMutablePlugin_delete(plugin);
        EXPECT_TRUE(heap.isBalanced());
        if (!isInjected) {
            break;
        }
    }
}
