#include <algorithm>
#include <cstdint>
#include <map>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/event/EventQueue.hpp"
#include "platform/osapi/Fault.h"
#include "support/HeapCheck.h"

namespace
{

using zuv::Event;
using zuv::EventQueue;

constexpr ZUVEventGeneratorListener kListener = {nullptr};
constexpr ZUVEventGeneratorListener kOther = {nullptr};

void *asField(std::uintptr_t number)
{
    return reinterpret_cast<void *>(number);
}

// `subject` is in the first field, `detail` in the second.
Event eventAt(int64_t sec, std::uintptr_t subject = 0, uint32_t bytesToCompare = 0,
              std::uintptr_t detail = 0)
{
    Event event = {{sec, 0}, {}, &kListener, {}, bytesToCompare};
    event.storage.field[0] = asField(subject);
    event.storage.field[1] = asField(detail);
    return event;
}

std::uintptr_t subjectOf(const Event &event)
{
    return reinterpret_cast<std::uintptr_t>(event.storage.field[0]);
}

Event takeFirst(EventQueue &queue)
{
    Event event;
    queue.release(queue.takeFirst(event));
    return event;
}

using Drained = std::vector<std::pair<int64_t, std::uintptr_t>>;

Drained drain(EventQueue &queue)
{
    Drained drained;
    while (!queue.isEmpty()) {
        const Event event = takeFirst(queue);
        drained.emplace_back(event.time.sec, subjectOf(event));
    }
    return drained;
}

TEST(EventQueue, yieldsTheEarliestFirst)
{
    EventQueue queue;
    EXPECT_TRUE(queue.isEmpty());
    for (const int64_t sec : {5, 1, 4, -2, 3}) {
        EXPECT_TRUE(queue.add(eventAt(sec)));
    }
    EXPECT_EQ(queue.firstTime().sec, -2);
    EXPECT_EQ(drain(queue), (Drained{{-2, 0}, {1, 0}, {3, 0}, {4, 0}, {5, 0}}));
}

TEST(EventQueue, equalTimesKeepTheOrderOfAdding)
{
    EventQueue queue;
    for (std::uintptr_t number = 0; number < 100; ++number) {
        ASSERT_TRUE(queue.add(eventAt(7, number)));
    }
    for (std::uintptr_t number = 0; number < 100; ++number) {
        ASSERT_EQ(subjectOf(takeFirst(queue)), number);
    }
}

TEST(EventQueue, whatIsPutBackGoesBehindItsEquals)
{
    EventQueue queue;
    queue.add(eventAt(7, 1));
    queue.add(eventAt(7, 2));
    Event event;
    const EventQueue::Slot slot = queue.takeFirst(event);
    queue.putBack(slot, event);
    EXPECT_EQ(drain(queue), (Drained{{7, 2}, {7, 1}}));
}

TEST(EventQueue, withoutBytesToCompareEveryEventStandsForItself)
{
    EventQueue queue;
    queue.add(eventAt(7, 1));
    queue.add(eventAt(7, 1));
    EXPECT_EQ(queue.size(), 2u);
}

TEST(EventQueue, anEqualEventIsTakenInAtTheEarlierTime)
{
    EventQueue queue;
    queue.add(eventAt(6, 9));
    queue.add(eventAt(7, 1, 8, 11));
    queue.add(eventAt(5, 1, 8, 12));
    queue.add(eventAt(8, 1, 8, 13));
    ASSERT_EQ(queue.size(), 2u);
    const Event event = takeFirst(queue);
    EXPECT_EQ(event.time.sec, 5);
    EXPECT_EQ(subjectOf(event), 1u);
    EXPECT_EQ(event.storage.field[1], asField(13)); // of the last post
    EXPECT_EQ(drain(queue), (Drained{{6, 9}}));
}

TEST(EventQueue, equalMeansTheSameListenerBytesAndNumberOfThem)
{
    EventQueue queue;
    queue.add(eventAt(1, 1, 8, 11));
    queue.add(eventAt(2, 2, 8, 11));
    queue.add(eventAt(3, 1, 16, 11));
    queue.add(eventAt(4, 1, 16, 12));
    queue.add(eventAt(5, 1, 0, 11));
    Event event = eventAt(6, 1, 8, 11);
    event.listener = &kOther;
    queue.add(event);
    EXPECT_EQ(queue.size(), 6u);
}

TEST(EventQueue, whatHasBeenTakenOutIsNoEqualAnyMore)
{
    EventQueue queue;
    queue.add(eventAt(1, 1, 8));
    Event event;
    const EventQueue::Slot slot = queue.takeFirst(event);
    queue.add(eventAt(2, 1, 8));
    EXPECT_EQ(queue.size(), 1u);
    queue.putBack(slot, event); // meets its equal
    EXPECT_EQ(drain(queue), (Drained{{1, 1}}));
}

TEST(EventQueue, anEqualEventIsFoundAfterGrowth)
{
    EventQueue queue;
    for (std::uintptr_t subject = 0; subject < 1000; ++subject) {
        ASSERT_TRUE(queue.add(eventAt(static_cast<int64_t>(subject), subject, 8)));
    }
    for (std::uintptr_t subject = 0; subject < 1000; ++subject) {
        ASSERT_TRUE(queue.add(eventAt(2000, subject, 8)));
    }
    EXPECT_EQ(queue.size(), 1000u);
}

TEST(EventQueue, staysAsItWasWithoutMemory)
{
    const zuv_test::HeapCheck heap;
    {
        EventQueue queue;
        uint32_t added = 0;
        // Each growth needs three blocks, any of which may be refused.
        for (uint32_t step = 0; step < 400; ++step) {
            ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, step % 3 + 1, 0);
            const bool isAdded = queue.add(eventAt(step, step, 8));
            EXPECT_EQ(isAdded, ZUVOsapiFault_getInjectedCount() == 0);
            ZUVOsapiFault_disarm();
            if (!isAdded) {
                EXPECT_EQ(queue.size(), added);
                EXPECT_TRUE(queue.add(eventAt(step, step, 8)));
            }
            ++added;
        }
        Drained expected;
        for (uint32_t step = 0; step < 400; ++step) {
            expected.emplace_back(step, step);
        }
        EXPECT_EQ(drain(queue), expected);
    }
    EXPECT_TRUE(heap.isBalanced());
}

TEST(EventQueue, whatIsTakenOutCanBePutBackWithoutMemory)
{
    EventQueue queue;
    for (std::uintptr_t subject = 0; subject < 16; ++subject) {
        queue.add(eventAt(1, subject));
    }
    Event event;
    const EventQueue::Slot slot = queue.takeFirst(event);
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 1);
    EXPECT_FALSE(queue.add(eventAt(1)));
    queue.putBack(slot, event);
    ZUVOsapiFault_disarm();
    EXPECT_EQ(queue.size(), 16u);
}

// The queue against a plain model: a map by time and post, and a linear search for the equal event.
TEST(EventQueue, agreesWithAPlainModel)
{
    using Key = std::pair<int64_t, uint64_t>;
    struct Known {
        std::uintptr_t subject;
        bool isCompared;
    };
    EventQueue queue;
    std::map<Key, Known> model;
    uint64_t posts = 0;
    std::mt19937 random(7);

    const auto post = [&](int64_t time, const Known &known) {
        const auto equal = std::find_if(model.begin(), model.end(), [&](const auto &entry) {
            return known.isCompared && entry.second.isCompared &&
                   entry.second.subject == known.subject;
        });
        if (equal != model.end() && equal->first.first <= time) {
            return;
        }
        if (equal != model.end()) {
            model.erase(equal);
        }
        model.emplace(Key{time, posts++}, known);
    };
    for (int round = 0; round < 20000; ++round) {
        const int64_t time = static_cast<int64_t>(random() % 50);
        const Known known = {random() % 300, random() % 2 == 0};
        switch (model.empty() ? 0 : random() % 3) {
        case 0: // more often than taken out
        case 1:
            post(time, known);
            ASSERT_TRUE(queue.add(eventAt(time, known.subject, known.isCompared ? 8 : 0)));
            break;
        default: {
            Event event;
            const EventQueue::Slot slot = queue.takeFirst(event);
            const auto [key, first] = *model.begin();
            model.erase(model.begin());
            ASSERT_EQ(event.time.sec, key.first);
            ASSERT_EQ(subjectOf(event), first.subject);
            if (random() % 2 == 0) {
                event.time.sec = time;
                queue.putBack(slot, event);
                post(time, first);
            } else {
                queue.release(slot);
            }
        }
        }
        ASSERT_EQ(queue.size(), model.size());
    }
}

} // namespace
