// No reply is lost: every fresh shell gets an answer to its first command.
#include <memory>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Session.h"

namespace
{

using namespace zuv_test;
using testing::Optional;
using testing::StartsWith;

constexpr int kShells = 200;
// Shells at a time, so that their waits for discovery overlap.
constexpr int kBatch = 10;

TEST(FreshShells, areAnsweredAll)
{
    Responder service;
    int answered = 0;
    for (int first = 0; first < kShells; first += kBatch) {
        std::vector<std::unique_ptr<Session>> shells;
        for (int index = 0; index < kBatch; ++index) {
            shells.push_back(std::make_unique<Session>(5));
        }
        shells.back()->letDiscover();
        for (int index = 0; index < kBatch; ++index) {
            const std::string name = "n" + std::to_string(first + index);
            const auto answer = shells[static_cast<std::size_t>(index)]->run("get S1 " + name);
            EXPECT_THAT(answer,
                        Optional(StartsWith("Result: S1 got GET_ACTION for 'S1', resource '" +
                                            name + "'")));
            answered += answer && answer->starts_with("Result: ") ? 1 : 0;
        }
        for (const auto &shell : shells) {
            shell->write("exit\n");
        }
        for (const auto &shell : shells) {
            EXPECT_EQ(shell->wait(), 0);
        }
    }
    EXPECT_EQ(answered, kShells);
}

} // namespace
