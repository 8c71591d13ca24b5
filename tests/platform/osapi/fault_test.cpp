#include <vector>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"

namespace
{

class Fault : public testing::Test
{
protected:
    ~Fault() override { ZUVOsapiFault_disarm(); }

    static std::vector<int> passes(const char *point, int count)
    {
        std::vector<int> results;
        for (int pass = 0; pass < count; ++pass) {
            results.push_back(ZUV_OSAPI_FAULT(point));
        }
        return results;
    }
};

using Results = std::vector<int>;

TEST_F(Fault, nothingFailsUnarmed)
{
    EXPECT_EQ(passes("a", 3), (Results{0, 0, 0}));
}

TEST_F(Fault, theNthPassFailsAndNoOther)
{
    ZUVOsapiFault_arm(nullptr, 2, 0);
    EXPECT_EQ(passes("a", 4), (Results{0, 1, 0, 0}));
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1u);
}

TEST_F(Fault, onwardEveryLaterPassFailsToo)
{
    ZUVOsapiFault_arm(nullptr, 2, 1);
    EXPECT_EQ(passes("a", 4), (Results{0, 1, 1, 1}));
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 3u);
}

TEST_F(Fault, aNameRestrictsTheFaultToItsPoints)
{
    ZUVOsapiFault_arm("b", 2, 0);
    EXPECT_EQ(passes("a", 3), (Results{0, 0, 0}));
    EXPECT_EQ(passes("b", 1), (Results{0}));
    EXPECT_EQ(passes("bb", 3), (Results{0, 0, 0}));
    EXPECT_EQ(passes("b", 2), (Results{1, 0}));
}

TEST_F(Fault, withoutANameAllPointsCountTogether)
{
    ZUVOsapiFault_arm(nullptr, 3, 0);
    EXPECT_EQ(passes("a", 2), (Results{0, 0}));
    EXPECT_EQ(passes("b", 1), (Results{1}));
}

TEST_F(Fault, disarmingKeepsTheCounterAndArmingRestartsIt)
{
    ZUVOsapiFault_arm(nullptr, 1, 1);
    passes("a", 2);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(passes("a", 1), (Results{0}));
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 2u);
    ZUVOsapiFault_arm("a", 1, 0);
    EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 0u);
}

TEST_F(Fault, aCountOfZeroMeansTheNextPass)
{
    ZUVOsapiFault_arm("a", 0, 0);
    EXPECT_EQ(passes("a", 2), (Results{1, 0}));
}

} // namespace
