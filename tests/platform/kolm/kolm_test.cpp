#include <chrono>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>

#include "platform/kolm/Logger.h"
#include "platform/kolm/Utility.h"
#include "platform/kolm/Version.h"

namespace
{

constexpr int kFreeService = 1; // no room of the system registers this one

TEST(KolmLogger, setsBothMasksOfAService)
{
    static std::uint32_t instrumentation = 0;
    static std::uint32_t submodule = 0;
    ASSERT_EQ(KOLM_Config_Logger_register_service(kFreeService, &instrumentation, &submodule), 1);
    EXPECT_EQ(instrumentation, 0u);
    EXPECT_EQ(submodule, 0u);
    EXPECT_EQ(
        KOLM_Config_Logger_set_verbosity_by_service(kFreeService, KOLM_CONFIG_LOG_VERBOSITY_ERROR),
        1);
    EXPECT_EQ(instrumentation, 3u);
    EXPECT_EQ(submodule, UINT32_MAX);
    EXPECT_EQ(
        KOLM_Config_Logger_set_verbosity_by_service(kFreeService, KOLM_CONFIG_LOG_VERBOSITY_SILENT),
        1);
    EXPECT_EQ(instrumentation, 0u);
}

TEST(KolmLogger, aSecondRegistrationReplacesTheFirst)
{
    static std::uint32_t former[2] = {0, 0};
    static std::uint32_t present[2] = {0, 0};
    ASSERT_EQ(KOLM_Config_Logger_register_service(kFreeService, &former[0], &former[1]), 1);
    ASSERT_EQ(KOLM_Config_Logger_register_service(kFreeService, &present[0], &present[1]), 1);
    KOLM_Config_Logger_set_verbosity_by_service(kFreeService, KOLM_CONFIG_LOG_VERBOSITY_WARNING);
    EXPECT_EQ(former[0], 0u);
    EXPECT_EQ(present[0], 7u);
}

TEST(KolmLogger, refusesWhatIsNoService)
{
    std::uint32_t mask = 0;
    EXPECT_EQ(KOLM_Config_Logger_set_verbosity_by_service(2, KOLM_CONFIG_LOG_VERBOSITY_ERROR), 0);
    for (const int service : {-1, KOLM_CONFIG_LOG_SERVICE_COUNT}) {
        EXPECT_EQ(KOLM_Config_Logger_register_service(service, &mask, &mask), 0);
        EXPECT_EQ(KOLM_Config_Logger_set_verbosity_by_service(service, 0), 0);
    }
    EXPECT_EQ(KOLM_Config_Logger_register_service(2, nullptr, &mask), 0);
    EXPECT_EQ(KOLM_Config_Logger_register_service(2, &mask, nullptr), 0);
}

TEST(KolmVersion, isThatOfTheProduct)
{
    DDS_ProductVersion_t version = {1, 1, 1, 1};
    KOLM_Config_Version_get_product_version(&version);
    EXPECT_EQ(version.major, 7);
    EXPECT_EQ(version.minor, 7);
    EXPECT_EQ(version.release, 0);
    EXPECT_EQ(version.revision, 0);
}

TEST(KolmVersion, asTextHasFourNumbersAndFitsItsBuffer)
{
    char text[DDS_PRODUCT_VERSION_MAX_STRING_SIZE];
    const DDS_ProductVersion_t present = {7, 7, 0, 0};
    EXPECT_EQ(DDS_ProductVersion_to_string(&present, text), text);
    EXPECT_STREQ(text, "7.7.0.0");
    const DDS_ProductVersion_t longest = {255, 255, 255, 255};
    EXPECT_STREQ(DDS_ProductVersion_to_string(&longest, text), "255.255.255.255");
}

class KolmSleep : public testing::Test
{
protected:
    // Milliseconds that a sleep takes.
    static double timeOf(DDS_Duration_t duration)
    {
        const auto start = std::chrono::steady_clock::now();
        KOLM_Utility_sleep(&duration);
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    }
};

TEST_F(KolmSleep, lastsAsLongAsAsked)
{
    EXPECT_GE(timeOf({0, 30000000}), 30.0);
    EXPECT_GE(timeOf({1, 0}), 1000.0);
}

TEST_F(KolmSleep, noTimeAndNegativeTimeReturnAtOnce)
{
    EXPECT_LT(timeOf({0, 0}), 500.0);
    EXPECT_LT(timeOf({-5, 0}), 500.0);
}

TEST_F(KolmSleep, aSignalDoesNotShortenIt)
{
    struct sigaction ignore = {};
    struct sigaction former;
    ignore.sa_handler = [](int) {};
    sigaction(SIGUSR1, &ignore, &former);
    std::thread interrupter([target = pthread_self()] {
        for (int time = 0; time < 5; ++time) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
            pthread_kill(target, SIGUSR1);
        }
    });
    EXPECT_GE(timeOf({0, 100000000}), 100.0);
    interrupter.join();
    sigaction(SIGUSR1, &former, nullptr);
}

} // namespace
