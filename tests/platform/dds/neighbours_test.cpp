// Participants of one process that know each other, and go.
#include <memory>

#include <fastrtps/xmlparser/XMLProfileManager.h>
#include <gtest/gtest.h>

#include "Domain.h"

namespace zuv_test
{
namespace
{

constexpr int kRounds = 40;

DDS_Long readersOf(const Link<AnswerType> &link)
{
    DDS_PublicationMatchedStatus status = {};
    DDS_DataWriter_get_publication_matched_status(link.writer, &status);
    return status.current_count;
}

// Those that stay have not yet heard of it when they go, too.
TEST(Neighbours, mayGoOneRightAfterTheOther)
{
    for (int round = 0; round < kRounds; ++round) {
        auto first = std::make_unique<Link<AnswerType>>();
        auto second = std::make_unique<Link<AnswerType>>();
        ASSERT_TRUE(eventually([&] { return readersOf(*first) == 2 && readersOf(*second) == 2; }));
        write(first->writer, Answer(round));
        first.reset();
        write(second->writer, Answer(round));
        second.reset();
    }
}

// Not by calls from one into the other, whose locks a departing neighbour would leave dangling.
TEST(Neighbours, reachEachOtherThroughTheTransports)
{
    const Link<AnswerType> link;
    EXPECT_EQ(
        eprosima::fastrtps::xmlparser::XMLProfileManager::library_settings().intraprocess_delivery,
        eprosima::fastrtps::INTRAPROCESS_OFF);
}

} // namespace
} // namespace zuv_test
