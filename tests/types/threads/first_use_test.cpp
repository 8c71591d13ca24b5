// The first use of a type may come from several threads at once. Each type is used here for the first time in
// the process, by all threads together.
#include <atomic>
#include <barrier>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "types/AllTypes.h"
#include "types/Payloads.h"

namespace
{

using namespace zuv_test;

constexpr int kThreads = 4;

// Run `use` on all threads at the same moment; how often it gave false.
template <typename Use>
int failuresOf(Use use)
{
    std::barrier start(kThreads);
    std::atomic<int> failures{0};
    std::vector<std::jthread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back([&, number] {
            start.arrive_and_wait();
            failures += use(number) ? 0 : 1;
        });
    }
    threads.clear();
    return failures;
}

// A sample of the thread's own goes all ways that a sample can go.
bool useSample(const DDS_TypeCode *type, int number)
{
    const SamplePointer sample = newSample(type);
    const SamplePointer copy = newSample(type);
    const SamplePointer decoded = newSample(type);
    if (sample == nullptr || copy == nullptr || decoded == nullptr) {
        return false;
    }
    fillSample(type, sample.get(), number);
    return ZUVSample_copy(type, copy.get(), sample.get()) &&
           readPayload(type, decoded.get(), payloadOf(type, copy.get())) &&
           ZUVSample_equals(type, sample.get(), decoded.get());
}

TEST(FirstUse, OfATypeMayComeFromManyThreadsAtOnce)
{
#define ZUV_TEST_FIRST_USE(T)                                                                      \
    EXPECT_EQ(failuresOf([](int number) {                                                          \
                  return T##_get_typecode() == &T##_g_typecode &&                                  \
                         useSample(T##_get_typecode(), number) &&                                  \
                         T##_get_sample_access_info() == T##_get_sample_access_info() &&           \
                         T##_get_type_plugin_info()->typeCode == &T##_g_typecode;                  \
              }),                                                                                  \
              0)                                                                                   \
        << #T;
    // Structures first: their members' types are then compiled on the way, by whoever comes first.
    ZUV_TEST_ALL_TYPES(ZUV_TEST_FIRST_USE)
}

TEST(FirstUse, OfProgramsCountsItsUsersWhereverTheyComeFrom)
{
    const DDS_TypeCode *type = ZUV_Service_Admin_CommandRequest_get_typecode();
    DDS_TypeCodeFactory *factory = DDS_TypeCodeFactory_get_instance();
    const DDS_UnsignedLong before = DDS_TypeCodeFactory_get_program_user_count(factory, type);
    EXPECT_EQ(failuresOf([](int) {
                  ZUVTypeParticipantData *data =
                      ZUV_Service_Admin_CommandRequestPlugin_on_participant_attached(nullptr);
                  ZUV_Service_Admin_CommandRequestPlugin_on_participant_detached(data);
                  return data != nullptr;
              }),
              0);
    EXPECT_EQ(DDS_TypeCodeFactory_get_program_user_count(factory, type), before);
}

} // namespace
