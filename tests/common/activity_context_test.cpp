#include <string_view>

#include <gtest/gtest.h>

#include "common/ActivityContext.h"
#include "support/MessageShape.h"

namespace
{

struct Row {
    std::string_view symbol;
    const ZUVActivityContextTemplate &activity;
    std::string_view format;
};

#define ROW(SYMBOL, FORMAT)                                                                        \
    {                                                                                              \
#SYMBOL, SYMBOL, FORMAT                                                                    \
    }

const Row kRows[] = {
    ROW(ZUV_SERVICE_ACTIVITY_CREATE, "CREATE"),
    ROW(ZUV_SERVICE_ACTIVITY_DELETE, "DELETE"),
    ROW(ZUV_SERVICE_ACTIVITY_ENABLE, "ENABLE"),
    ROW(ZUV_SERVICE_ACTIVITY_DISABLE, "DISABLE"),
    ROW(ZUV_SERVICE_ACTIVITY_PAUSE, "PAUSE"),
    ROW(ZUV_SERVICE_ACTIVITY_RUN, "RUN"),
    ROW(ZUV_SERVICE_ACTIVITY_ADD_s, "ADD %s"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOVE_s, "REMOVE %s"),
    ROW(ZUV_SERVICE_ACTIVITY_START, "START"),
    ROW(ZUV_SERVICE_ACTIVITY_STOP, "STOP"),
    ROW(ZUV_SERVICE_ACTIVITY_START_s, "START %s"),
    ROW(ZUV_SERVICE_ACTIVITY_STOP_s, "STOP %s"),
    ROW(ZUV_SERVICE_ACTIVITY_PUBLISH_s, "PUBLISH topic=%s"),
    ROW(ZUV_SERVICE_ACTIVITY_PERIODIC_s, "PERIODIC action=%s"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOTE_GET, "REMOTE GET"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOTE_CREATE, "REMOTE CREATE"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOTE_DELETE, "REMOTE DELETE"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOTE_UPDATE, "REMOTE UPDATE"),
    ROW(ZUV_SERVICE_ACTIVITY_REMOTE_UNKNOWN, "REMOTE COMMAND"),
    ROW(ZUV_SERVICE_ACTIVITY_ON_STREAM_DISCOVERED_s, "STREAM_DISCOVERED name=%s"),
    ROW(ZUV_SERVICE_ACTIVITY_ON_STREAM_DISPOSED_s, "STREAM_DISPOSED name=%s"),
    ROW(ZUV_SERVICE_ACTIVITY_RESUME_s, "RESUME %s"),
    ROW(ZUV_SERVICE_ACTIVITY_SUSPEND_s, "SUSPEND %s"),
    ROW(BREL_ACTIVITY_STREAM_DISCOVERED, "STREAM_DISCOVERED"),
    ROW(BREL_ACTIVITY_STREAM_DISPOSED, "STREAM_DISPOSED"),
    ROW(BREL_ACTIVITY_MATCH_STREAM, "MATCH STREAM"),
};

TEST(ActivityContext, eachTemplateHasItsText)
{
    for (const Row &row : kRows) {
        EXPECT_EQ(row.activity.format, row.format) << row.symbol;
    }
}

TEST(ActivityContext, allHaveTheOneIdentifier)
{
    for (const Row &row : kRows) {
        EXPECT_EQ(row.activity.activityId, 35389440u) << row.symbol;
    }
}

TEST(ActivityContext, theSymbolTellsTheArguments)
{
    for (const Row &row : kRows) {
        EXPECT_EQ(zuv_test::argumentsOfSymbol(row.symbol),
                  zuv_test::argumentsOfFormat(row.activity.format))
            << row.symbol;
    }
}

} // namespace
