// Lets one fallible step after the other of a piece of code fail.
#ifndef ZUV_TESTS_SUPPORT_FAULT_SWEEP_H
#define ZUV_TESTS_SUPPORT_FAULT_SWEEP_H

#include <cstdint>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace zuv_test
{

// Run `body` with the first step failing, then with the second, and so on until none is left; and all that
// again with each later step failing as well. `body` makes what it needs, releases it, and returns whether the
// operation under test succeeded. A failure must have been reported, nothing may stay allocated, and a run
// without a fault afterwards must succeed. No LogCapture may live meanwhile. `kLimit` steps must be enough.
template <std::uint32_t kLimit = 1000, typename Body>
void sweepFaults(Body body)
{
    for (const int onward : {0, 1}) {
        std::uint32_t injected = 1;
        std::uint32_t count = 0;
        while (injected != 0 && ++count < kLimit) {
            SCOPED_TRACE(testing::Message() << "step " << count << (onward ? " and onward" : ""));
            const LogCapture log;
            const HeapCheck heap;
            ZUVOsapiFault_arm(nullptr, count, onward);
            const bool succeeded = body();
            injected = ZUVOsapiFault_getInjectedCount();
            ZUVOsapiFault_disarm();
            EXPECT_TRUE(succeeded || injected != 0) << "failed without a fault";
            EXPECT_TRUE(succeeded || !log.texts().empty()) << "failed without a report";
            EXPECT_TRUE(heap.isBalanced());
            EXPECT_TRUE(body()) << "does not recover";
        }
        EXPECT_GT(count, 1U) << "there was no step to fail";
        EXPECT_LT(count, kLimit);
    }
}

} // namespace zuv_test

#endif
