// Samples of the monitoring types: defaults, copies, and the bytes that travel.
#include <cstdio>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "common/ServiceMonitoring.h"
#include "platform/typesys/String.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using testing::Each;
using testing::ElementsAreArray;

using Octets = std::vector<unsigned char>;

// The operations of a type, by its type.
template <typename T>
struct Family;

#define FAMILY(T, SCOPED)                                                                          \
    using T = SCOPED;                                                                              \
    template <>                                                                                    \
    struct Family<T> {                                                                             \
        static constexpr auto getTypeCode = SCOPED##_get_typecode;                                 \
        static constexpr auto initialize = SCOPED##_initialize;                                    \
        static constexpr auto finalize = SCOPED##_finalize;                                        \
        static constexpr auto copy = SCOPED##_copy;                                                \
        static constexpr auto serialize = SCOPED##Plugin_serialize_to_cdr_buffer;                  \
        static constexpr auto deserialize = SCOPED##Plugin_deserialize_from_cdr_buffer;            \
    };

FAMILY(EntityState, ZUV_Service_EntityState)
FAMILY(BuiltinTopicKey, ZUV_Service_BuiltinTopicKey)

FAMILY(ResourceGuid, ZUV_Service_Monitoring_ResourceGuid)
FAMILY(KeyedResource, ZUV_Service_Monitoring_KeyedResource)
FAMILY(StatisticMetrics, ZUV_Service_Monitoring_StatisticMetrics)
FAMILY(StatisticVariable, ZUV_Service_Monitoring_StatisticVariable)
FAMILY(CountStatus, ZUV_Service_Monitoring_CountStatus)
FAMILY(ProcessConfig, ZUV_Service_Monitoring_ProcessConfig)
FAMILY(ProcessPeriodic, ZUV_Service_Monitoring_ProcessPeriodic)
FAMILY(ThreadPeriodic, ZUV_Service_Monitoring_ThreadPeriodic)
FAMILY(ThreadPoolPeriodic, ZUV_Service_Monitoring_ThreadPoolPeriodic)
FAMILY(HostConfig, ZUV_Service_Monitoring_HostConfig)
FAMILY(HostPeriodic, ZUV_Service_Monitoring_HostPeriodic)
FAMILY(NetworkPerformance, ZUV_Service_Monitoring_NetworkPerformance)
FAMILY(EntityConfig, ZUV_Service_Monitoring_EntityConfig)
FAMILY(EntityEvent, ZUV_Service_Monitoring_EntityEvent)

// A sample that owns what it points to.
template <typename T>
struct Sample : T {
    Sample() { EXPECT_TRUE(Family<T>::initialize(this)); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;
    ~Sample() { Family<T>::finalize(this); }
};

template <typename T>
bool areEqual(const T &left, const T &right)
{
    return ZUVSample_equals(Family<T>::getTypeCode(), &left, &right) != 0;
}

// The payload of a sample, empty when it cannot be serialized.
template <typename T>
Octets serialized(const T &sample)
{
    unsigned int length = 0;
    if (!Family<T>::serialize(nullptr, &length, &sample)) {
        return {};
    }
    Octets payload(length);
    EXPECT_TRUE(Family<T>::serialize(reinterpret_cast<char *>(payload.data()), &length, &sample));
    EXPECT_EQ(length, payload.size());
    return payload;
}

template <typename T>
bool deserialize(Sample<T> &sample, const Octets &payload)
{
    return Family<T>::deserialize(&sample, reinterpret_cast<const char *>(payload.data()),
                                  static_cast<unsigned int>(payload.size()));
}

// What another implementation of DDS writes, by name, without the encapsulation header.
std::map<std::string, Octets> readVectors()
{
    std::map<std::string, Octets> vectors;
    std::ifstream file(MONITORING_VECTORS);
    std::string name;
    std::string digits;
    while (file >> name >> digits) {
        for (size_t at = 0; at < digits.size(); at += 2) {
            vectors[name].push_back(
                static_cast<unsigned char>(std::stoul(digits.substr(at, 2), nullptr, 16)));
        }
    }
    EXPECT_FALSE(vectors.empty()) << "no vectors in " << MONITORING_VECTORS;
    return vectors;
}

std::string inHex(const Octets &octets)
{
    std::string digits;
    char two[3];
    for (const unsigned char octet : octets) {
        std::snprintf(two, sizeof(two), "%02x", octet);
        digits += two;
    }
    return digits;
}

template <typename T>
Octets headerFor(size_t bodySize)
{
    const unsigned id = DDS_TypeCode_get_native_encapsulation(Family<T>::getTypeCode(),
                                                              DDS_AUTO_DATA_REPRESENTATION);
    return {static_cast<unsigned char>(id >> 8), static_cast<unsigned char>(id), 0,
            static_cast<unsigned char>((4 - bodySize % 4) % 4)};
}

class MonitoringSample : public testing::Test
{
protected:
    ~MonitoringSample() override { EXPECT_TRUE(heap_.isBalanced()); }

    // The sample is serialized to the vector, read back from it, and copied.
    template <typename T>
    void expectVector(const char *name, const T &sample)
    {
        SCOPED_TRACE(name);
        static const std::map<std::string, Octets> vectors = readVectors();
        ASSERT_EQ(vectors.count(name), 1U);
        const Octets &body = vectors.at(name);
        Octets payload = headerFor<T>(body.size());
        payload.insert(payload.end(), body.begin(), body.end());
        payload.resize(payload.size() + payload[3]);
        EXPECT_EQ(inHex(serialized(sample)), inHex(payload));

        Sample<T> read;
        EXPECT_TRUE(deserialize(read, payload));
        EXPECT_TRUE(areEqual<T>(read, sample));
        Sample<T> copy;
        EXPECT_TRUE(Family<T>::copy(&copy, &sample));
        EXPECT_TRUE(areEqual<T>(copy, sample));
        // Over a sample that holds something already, and from one that does.
        EXPECT_TRUE(Family<T>::copy(&read, &copy));
        EXPECT_TRUE(areEqual<T>(read, sample));
    }

    const zuv_test::HeapCheck heap_;
    StatisticVariable first_ = {{1000, 42, 1.5F, -1, 2, 0.25F}};
    StatisticVariable second_ = {{5000, -1, 0, 0, 3.4028234663852886e+38F, 0}};
};

using MonitoringVector = MonitoringSample;

TEST_F(MonitoringVector, ofTypesThatServicesShare)
{
    expectVector("entity_state", EntityState{ZUV_Service_EntityStateKind_RUNNING});
    expectVector("builtin_topic_key", BuiltinTopicKey{{1, 0x01020304, 0, 0xffffffff}});
}

TEST_F(MonitoringVector, ofResources)
{
    KeyedResource resource;
    for (unsigned char index = 0; index < 16; ++index) {
        resource.object_guid.value[index] = static_cast<unsigned char>(index + 1);
        resource.owner_guid.value[index] = static_cast<unsigned char>(index + 0xf0);
    }
    expectVector("resource_guid", resource.object_guid);
    expectVector("keyed_resource", resource);
}

TEST_F(MonitoringVector, ofVariablesAndCounters)
{
    expectVector("statistic_metrics", first_.publication_period_metrics);
    expectVector("statistic_variable", second_);
    expectVector("count_status", CountStatus{1, -2, 3});
}

TEST_F(MonitoringVector, ofProcesses)
{
    expectVector("process_config", ProcessConfig{0x123456789abcdef0});
    expectVector("process_periodic_bare", ProcessPeriodic{nullptr, nullptr, nullptr, 7});
    expectVector("process_periodic_some", ProcessPeriodic{nullptr, &first_, nullptr, -7});
    expectVector("process_periodic_full", ProcessPeriodic{&first_, &second_, &first_, 7});
}

TEST_F(MonitoringVector, ofThreads)
{
    expectVector("thread_periodic_bare", ThreadPeriodic{5, nullptr});
    expectVector("thread_periodic_full", ThreadPeriodic{5, &first_});

    ThreadPeriodic threads[] = {{1, &first_}, {2, nullptr}, {3, &second_}};
    ZUV_Service_Monitoring_ThreadPeriodicSeq none = DDS_SEQUENCE_INITIALIZER;
    ZUV_Service_Monitoring_ThreadPeriodicSeq three = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Monitoring_ThreadPeriodicSeq_loan_contiguous(&three, threads, 3, 3));
    expectVector("thread_pool_absent", ThreadPoolPeriodic{nullptr});
    expectVector("thread_pool_empty", ThreadPoolPeriodic{&none});
    expectVector("thread_pool_three", ThreadPoolPeriodic{&three});
}

TEST_F(MonitoringVector, ofHostsAndTheNetwork)
{
    char name[] = "host";
    char target[] = "x86_64Linux";
    expectVector("host_config", HostConfig{name, 0x9abcdef0, 1, 2, target});
    expectVector("host_periodic_bare", HostPeriodic{nullptr, nullptr, nullptr, 7});
    expectVector("host_periodic_some", HostPeriodic{&first_, nullptr, &second_, 7});
    expectVector("host_periodic_full", HostPeriodic{&first_, &second_, &first_, 7});
    expectVector("network_performance_bare", NetworkPerformance{nullptr, nullptr, nullptr});
    expectVector("network_performance_some", NetworkPerformance{nullptr, nullptr, &first_});
    expectVector("network_performance_full", NetworkPerformance{&first_, &second_, &first_});
}

TEST_F(MonitoringVector, ofEntities)
{
    char empty[] = "";
    char resource[] = "/services/a/routes/b";
    char configuration[] = "<route name=\"b\"/>";
    expectVector("entity_config_empty", EntityConfig{empty, empty});
    expectVector("entity_config", EntityConfig{resource, configuration});
    expectVector("entity_event", EntityEvent{ZUV_Service_EntityStateKind_PAUSED});
}

// -- Defaults -----------------------------------------------------------------------------------------

TEST_F(MonitoringSample, startsWithZerosEmptyTextsAndAbsentMembers)
{
    const Sample<KeyedResource> resource;
    EXPECT_THAT(resource.object_guid.value, Each(0));
    EXPECT_THAT(resource.owner_guid.value, Each(0));
    const Sample<StatisticMetrics> metrics;
    EXPECT_TRUE(areEqual<StatisticMetrics>(metrics, StatisticMetrics{}));
    const Sample<StatisticVariable> variable;
    EXPECT_TRUE(areEqual<StatisticVariable>(variable, StatisticVariable{}));
    const Sample<CountStatus> count;
    EXPECT_TRUE(areEqual<CountStatus>(count, CountStatus{}));
    const Sample<ProcessConfig> processConfig;
    EXPECT_EQ(processConfig.id, 0U);
    const Sample<ProcessPeriodic> process;
    EXPECT_TRUE(areEqual<ProcessPeriodic>(process, ProcessPeriodic{}));
    const Sample<ThreadPeriodic> thread;
    EXPECT_EQ(thread.id, 0U);
    EXPECT_EQ(thread.cpu_usage_percentage, nullptr);
    const Sample<ThreadPoolPeriodic> pool;
    EXPECT_EQ(pool.threads, nullptr);
    const Sample<HostPeriodic> host;
    EXPECT_TRUE(areEqual<HostPeriodic>(host, HostPeriodic{}));
    const Sample<NetworkPerformance> network;
    EXPECT_TRUE(areEqual<NetworkPerformance>(network, NetworkPerformance{}));
    const Sample<HostConfig> hostConfig;
    EXPECT_STREQ(hostConfig.name, "");
    EXPECT_STREQ(hostConfig.target, "");
    EXPECT_EQ(hostConfig.id, 0U);
    const Sample<EntityConfig> entity;
    EXPECT_STREQ(entity.resource_id, "");
    EXPECT_STREQ(entity.configuration, "");
    const Sample<EntityEvent> event;
    EXPECT_EQ(event.state, ZUV_Service_EntityStateKind_INVALID);
    ZUV_Service_Monitoring_ResourceKindIndex index;
    ASSERT_TRUE(ZUV_Service_Monitoring_ResourceKindIndex_initialize(&index));
    EXPECT_EQ(index, ZUV_Service_Monitoring_ResourceKindIndex_DDS_INDEX);
    ZUV_Service_Monitoring_ResourceKind kind;
    ASSERT_TRUE(ZUV_Service_Monitoring_ResourceKind_initialize(&kind));
    EXPECT_EQ(kind, ZUV_Service_Monitoring_ResourceKind_UNKNOWN);
}

TEST_F(MonitoringSample, hasOptionalMembersIfAskedTo)
{
    const DDS_TypeAllocationParams_t params = {DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE,
                                               DDS_BOOLEAN_TRUE};
    ProcessPeriodic process;
    ASSERT_TRUE(ZUV_Service_Monitoring_ProcessPeriodic_initialize_w_params(&process, &params));
    ASSERT_NE(process.total_memory_kb, nullptr);
    EXPECT_EQ(process.total_memory_kb->publication_period_metrics.count, 0);
    ZUV_Service_Monitoring_ProcessPeriodic_finalize_optional_members(&process, DDS_BOOLEAN_TRUE);
    EXPECT_EQ(process.cpu_usage_percentage, nullptr);
    EXPECT_EQ(process.total_memory_kb, nullptr);
    ZUV_Service_Monitoring_ProcessPeriodic_finalize(&process);

    ThreadPoolPeriodic pool;
    ASSERT_TRUE(ZUV_Service_Monitoring_ThreadPoolPeriodic_initialize_w_params(&pool, &params));
    ASSERT_NE(pool.threads, nullptr);
    EXPECT_EQ(ZUV_Service_Monitoring_ThreadPeriodicSeq_get_length(pool.threads), 0);
    ZUV_Service_Monitoring_ThreadPoolPeriodic_finalize(&pool);
}

TEST_F(MonitoringSample, withoutMemoryHasNoTexts)
{
    HostConfig host;
    ASSERT_TRUE(ZUV_Service_Monitoring_HostConfig_initialize_ex(&host, DDS_BOOLEAN_TRUE,
                                                                DDS_BOOLEAN_FALSE));
    EXPECT_EQ(host.name, nullptr);
    EXPECT_EQ(host.target, nullptr);
    const zuv_test::LogCapture log;
    EXPECT_THAT(serialized(host), testing::IsEmpty()) << "a required text is missing";
    ZUV_Service_Monitoring_HostConfig_finalize(&host);
}

// -- Copies -------------------------------------------------------------------------------------------

TEST_F(MonitoringSample, copyIsDeepAndTakesAbsenceOver)
{
    Sample<ProcessPeriodic> copy;
    const ProcessPeriodic full = {&first_, &second_, nullptr, 7};
    ASSERT_TRUE(ZUV_Service_Monitoring_ProcessPeriodic_copy(&copy, &full));
    EXPECT_NE(copy.cpu_usage_percentage, &first_);
    first_.publication_period_metrics.count = 1;
    EXPECT_EQ(copy.cpu_usage_percentage->publication_period_metrics.count, 42);
    EXPECT_EQ(copy.total_memory_kb, nullptr);

    const ProcessPeriodic other = {nullptr, nullptr, &second_, 8};
    ASSERT_TRUE(ZUV_Service_Monitoring_ProcessPeriodic_copy(&copy, &other));
    EXPECT_EQ(copy.cpu_usage_percentage, nullptr);
    EXPECT_TRUE(areEqual<ProcessPeriodic>(copy, other));
}

TEST_F(MonitoringSample, thatCannotBeCopiedIsWholeAllTheSame)
{
    ThreadPeriodic threads[] = {{1, &first_}, {2, nullptr}, {3, &second_}};
    ZUV_Service_Monitoring_ThreadPeriodicSeq seq = DDS_SEQUENCE_INITIALIZER;
    ASSERT_TRUE(ZUV_Service_Monitoring_ThreadPeriodicSeq_loan_contiguous(&seq, threads, 3, 3));
    const ThreadPoolPeriodic pool = {&seq};
    zuv_test::sweepFaults([&pool] {
        ThreadPoolPeriodic copy;
        bool succeeded = ZUV_Service_Monitoring_ThreadPoolPeriodic_initialize(&copy);
        succeeded = succeeded && ZUV_Service_Monitoring_ThreadPoolPeriodic_copy(&copy, &pool);
        EXPECT_TRUE(!succeeded || areEqual<ThreadPoolPeriodic>(copy, pool));
        ZUV_Service_Monitoring_ThreadPoolPeriodic_finalize(&copy);
        return succeeded;
    });
    char text[] = "text";
    const HostConfig host = {text, 1, 2, 3, text};
    zuv_test::sweepFaults([&host] {
        HostConfig copy;
        bool succeeded = ZUV_Service_Monitoring_HostConfig_initialize(&copy);
        succeeded = succeeded && ZUV_Service_Monitoring_HostConfig_copy(&copy, &host);
        ZUV_Service_Monitoring_HostConfig_finalize(&copy);
        return succeeded;
    });
}

// -- Payloads of other versions -----------------------------------------------------------------------

// Writes a payload member by member, little endian.
class Payload
{
public:
    explicit Payload(unsigned char encapsulation) : octets_{0, encapsulation, 0, 0} {}

    Payload &word(std::uint64_t value, int size = 4)
    {
        for (int count = 0; count < size; ++count, value >>= 8) {
            octets_.push_back(static_cast<unsigned char>(value));
        }
        return *this;
    }
    Payload &longWord(std::uint64_t value) { return word(value, 8); }

    // The octets, padded to a multiple of four.
    Octets take()
    {
        while (octets_.size() % 4 != 0) {
            octets_.push_back(0);
            ++octets_[3];
        }
        return octets_;
    }

private:
    Octets octets_;
};

constexpr unsigned char kDelimited = 9;
constexpr unsigned char kMutable = 11;
// The head of a member: whether it must be understood, the code of its length, its id.
constexpr std::uint32_t kMustUnderstand = 0x80000000;
constexpr std::uint32_t kFourOctets = 0x20000000;
constexpr std::uint32_t kEightOctets = 0x30000000;
constexpr std::uint32_t kLengthFollows = 0x40000000;
constexpr std::uint32_t kUnknown = 0x01234567;

TEST_F(MonitoringSample, skipsMembersThatItDoesNotKnow)
{
    Sample<CountStatus> count;
    ASSERT_TRUE(deserialize(count, Payload(kMutable)
                                       .word(60)
                                       .word(kFourOctets | kUnknown)
                                       .word(99)
                                       .word(kEightOctets | 0x031E4234)
                                       .longWord(1)
                                       .word(kLengthFollows | (kUnknown + 1))
                                       .word(5)
                                       .word(0xffffffff)
                                       .word(0xff) // one octet, three of padding
                                       .word(kEightOctets | 0x0C914CD3)
                                       .longWord(2)
                                       .word(kEightOctets | 0x07CD1434)
                                       .longWord(3)
                                       .take()));
    EXPECT_TRUE(areEqual<CountStatus>(count, CountStatus{1, 2, 3}));
}

TEST_F(MonitoringSample, takesMembersInAnyOrderAndDefaultsForMissingOnes)
{
    Sample<CountStatus> count;
    count.current_count = 77;
    ASSERT_TRUE(deserialize(count, Payload(kMutable)
                                       .word(24)
                                       .word(kEightOctets | 0x07CD1434)
                                       .longWord(3)
                                       .word(kEightOctets | 0x031E4234)
                                       .longWord(1)
                                       .take()));
    EXPECT_TRUE(areEqual<CountStatus>(count, CountStatus{1, 0, 3}));
    ASSERT_TRUE(deserialize(count, Payload(kMutable).word(0).take()));
    EXPECT_TRUE(areEqual<CountStatus>(count, CountStatus{}));
}

TEST_F(MonitoringSample, refusesAnUnknownMemberThatMustBeUnderstood)
{
    const zuv_test::LogCapture log;
    Sample<CountStatus> count;
    count.total_count = 77;
    EXPECT_FALSE(deserialize(count, Payload(kMutable)
                                        .word(20)
                                        .word(kMustUnderstand | kFourOctets | kUnknown)
                                        .word(99)
                                        .word(kEightOctets | 0x031E4234)
                                        .longWord(1)
                                        .take()));
    EXPECT_EQ(count.total_count, 77) << "the sample stays as it was";
}

TEST_F(MonitoringSample, ofAnAppendableTypeBearsNewMembersAndMissingOnes)
{
    Sample<ProcessConfig> process;
    ASSERT_TRUE(
        deserialize(process, Payload(kDelimited).word(12).longWord(5).word(0xffffffff).take()));
    EXPECT_EQ(process.id, 5U);

    Sample<StatisticMetrics> metrics;
    metrics.std_dev = 4;
    ASSERT_TRUE(deserialize(metrics, Payload(kDelimited).word(16).longWord(5).longWord(6).take()));
    EXPECT_TRUE(areEqual<StatisticMetrics>(metrics, StatisticMetrics{5, 6, 0, 0, 0, 0}));
}

TEST_F(MonitoringSample, releasesWhatAPayloadLacks)
{
    Sample<ProcessPeriodic> process;
    ASSERT_TRUE(deserialize(process, serialized(ProcessPeriodic{&first_, &second_, &first_, 1})));
    ASSERT_TRUE(deserialize(process, serialized(ProcessPeriodic{nullptr, &second_, nullptr, 2})));
    EXPECT_EQ(process.cpu_usage_percentage, nullptr);
    EXPECT_EQ(process.total_memory_kb, nullptr);
    EXPECT_TRUE(areEqual<ProcessPeriodic>(process, ProcessPeriodic{nullptr, &second_, nullptr, 2}));
}

TEST_F(MonitoringSample, refusesAPayloadThatLies)
{
    const zuv_test::LogCapture log;
    Sample<EntityEvent> event;
    const auto eventOf = [](std::uint32_t state) {
        return Payload(kMutable).word(8).word(kFourOctets | 0x0E9ED39E).word(state).take();
    };
    EXPECT_TRUE(deserialize(event, eventOf(6)));
    EXPECT_FALSE(deserialize(event, eventOf(7)));
    EXPECT_EQ(event.state, ZUV_Service_EntityStateKind_PAUSED);

    Sample<ProcessConfig> process;
    EXPECT_FALSE(deserialize(process, Payload(kDelimited).word(16).longWord(5).take()));
    Sample<ResourceGuid> guid;
    EXPECT_FALSE(deserialize(guid, Payload(7).longWord(1).word(2).take()));
    Sample<ThreadPoolPeriodic> pool;
    EXPECT_FALSE(deserialize(pool, Payload(kMutable)
                                       .word(12)
                                       .word(kLengthFollows | 0x04FE1909)
                                       .word(4)
                                       .word(0x80000000)
                                       .take()));
}

TEST_F(MonitoringSample, keepsTheBoundsOfItsTexts)
{
    const zuv_test::LogCapture log;
    std::string name(255, 'n');
    std::string longName(256, 'n');
    char empty[] = "";
    EXPECT_FALSE(serialized(HostConfig{name.data(), 1, 2, 3, empty}).empty());
    EXPECT_TRUE(serialized(HostConfig{longName.data(), 1, 2, 3, empty}).empty());
    EXPECT_TRUE(serialized(HostConfig{empty, 1, 2, 3, longName.data()}).empty());
    std::string resource(2048, 'r');
    std::string longResource(2049, 'r');
    EXPECT_FALSE(serialized(EntityConfig{resource.data(), empty}).empty());
    EXPECT_TRUE(serialized(EntityConfig{longResource.data(), empty}).empty());
    std::string configuration(100000, 'x');
    EXPECT_FALSE(serialized(EntityConfig{empty, configuration.data()}).empty());
}

// -- The key of a resource ----------------------------------------------------------------------------

ZUVKeyHash hashOf(const KeyedResource &resource)
{
    ZUVKeyHash hash = {};
    EXPECT_TRUE(
        ZUVCodec_getKeyHash(ZUV_Service_Monitoring_KeyedResource_get_typecode(), &resource, &hash));
    return hash;
}

class ResourceKey : public MonitoringSample
{
protected:
    ResourceKey()
    {
        for (unsigned char index = 0; index < 16; ++index) {
            resource_.object_guid.value[index] = static_cast<unsigned char>(index + 1);
            resource_.owner_guid.value[index] = 0xee;
        }
    }

    KeyedResource resource_;
};

TEST_F(ResourceKey, isTheGuidOfTheObject)
{
    EXPECT_THAT(hashOf(resource_).value, ElementsAreArray(resource_.object_guid.value));
}

TEST_F(ResourceKey, leavesTheOwnerOut)
{
    KeyedResource other = resource_;
    other.owner_guid.value[3] = 0;
    EXPECT_THAT(hashOf(other).value, ElementsAreArray(hashOf(resource_).value));
    other.object_guid.value[15] = 0;
    EXPECT_THAT(hashOf(other).value, testing::Not(ElementsAreArray(hashOf(resource_).value)));
}

TEST_F(ResourceKey, isAllThatIsCopiedBetweenInstanceAndKey)
{
    Sample<KeyedResource> key;
    ASSERT_TRUE(
        ZUV_Service_Monitoring_KeyedResourcePlugin_instance_to_key(nullptr, &key, &resource_));
    EXPECT_THAT(key.object_guid.value, ElementsAreArray(resource_.object_guid.value));
    EXPECT_THAT(key.owner_guid.value, Each(0));

    Sample<KeyedResource> instance;
    instance.owner_guid.value[0] = 5;
    ASSERT_TRUE(
        ZUV_Service_Monitoring_KeyedResourcePlugin_key_to_instance(nullptr, &instance, &key));
    EXPECT_THAT(instance.object_guid.value, ElementsAreArray(resource_.object_guid.value));
    EXPECT_EQ(instance.owner_guid.value[0], 5);
}

TEST_F(ResourceKey, isFoundInAPayload)
{
    ZUVTypePlugin *const plugin = ZUV_Service_Monitoring_KeyedResourcePlugin_new();
    ASSERT_NE(plugin, nullptr);
    ZUVTypeParticipantData *const participant = plugin->onParticipantAttached(nullptr);
    const ZUVTypeEndpointInfo info = {ZUV_TYPE_ENDPOINT_READER, DDS_LENGTH_UNLIMITED};
    ZUVTypeEndpointData *const reader = plugin->onEndpointAttached(participant, &info);
    ASSERT_NE(reader, nullptr);
    const Octets payload = serialized(resource_);
    ZUVKeyHash hash = {};
    EXPECT_TRUE(plugin->serializedSampleToKeyHash(
        reader, payload.data(), static_cast<DDS_UnsignedLong>(payload.size()), &hash));
    EXPECT_THAT(hash.value, ElementsAreArray(resource_.object_guid.value));
    plugin->onEndpointDetached(reader);
    plugin->onParticipantDetached(participant);
    ZUV_Service_Monitoring_KeyedResourcePlugin_delete(plugin);
}

} // namespace
