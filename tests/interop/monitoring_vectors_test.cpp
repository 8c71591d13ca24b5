// The vectors against which the encoder is tested are what another implementation of DDS writes.
#include <gtest/gtest.h>

#include "shell/Session.h"
#include "support/Process.h"

namespace
{

TEST(Stranger, serializesTheMonitoringModelAsTheVectorsSay)
{
    const zuv_test::ProcessResult result = zuv_test::runProcess({MONITORING_VECTORS_PROGRAM});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.output, zuv_test::contentOf(MONITORING_VECTORS));
}

} // namespace
