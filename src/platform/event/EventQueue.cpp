#include "platform/event/EventQueue.hpp"

#include <algorithm>
#include <cstring>
#include <functional>
#include <string_view>
#include <type_traits>

#include "platform/osapi/Heap.h"

namespace zuv
{
namespace
{

constexpr const char *kTag = "ZUVEventActiveGenerator queue";
constexpr uint32_t kFirstCapacity = 16;
constexpr uint32_t kCapacityMax = uint32_t{1} << 30;

std::string_view comparedBytes(const Event &event)
{
    return {reinterpret_cast<const char *>(&event.storage), event.bytesToCompare};
}

bool areEqual(const Event &left, const Event &right)
{
    return left.listener == right.listener && comparedBytes(left) == comparedBytes(right);
}

template <typename T>
bool resize(T *&array, uint32_t count)
{
    static_assert(std::is_trivially_copyable_v<T>);
    void *block = array;
    if (ZUVOsapiHeap_reallocate(&block, count * sizeof(T), kTag) == 0) {
        return false;
    }
    array = static_cast<T *>(block);
    return true;
}

} // namespace

EventQueue::~EventQueue()
{
    ZUVOsapiHeap_free(entries_);
    ZUVOsapiHeap_free(nodes_);
    ZUVOsapiHeap_free(buckets_);
}

bool EventQueue::add(const Event &event)
{
    const uint64_t hash = hashOf(event);
    if (absorb(event, hash)) {
        return true;
    }
    if (!reserveOne()) {
        return false;
    }
    const Slot slot = free_;
    free_ = entries_[slot].next;
    enter(slot, event, hash);
    return true;
}

EventQueue::Slot EventQueue::takeFirst(Event &event)
{
    const Slot slot = nodes_[0].slot;
    event = entries_[slot].event;
    if (event.bytesToCompare != 0) {
        *findBucketLink(slot) = entries_[slot].next;
    }
    --size_;
    if (size_ != 0) {
        place(0, nodes_[size_]);
        moveDown(0);
    }
    return slot;
}

void EventQueue::putBack(Slot slot, const Event &event)
{
    const uint64_t hash = hashOf(event);
    if (absorb(event, hash)) {
        release(slot);
    } else {
        enter(slot, event, hash);
    }
}

void EventQueue::release(Slot slot)
{
    entries_[slot].next = free_;
    free_ = slot;
}

// Give a slot that is in no use its event, and both their place in the order.
void EventQueue::enter(Slot slot, const Event &event, uint64_t hash)
{
    Entry &entry = entries_[slot];
    entry.event = event;
    entry.hash = hash;
    if (event.bytesToCompare != 0) {
        uint32_t &bucket = buckets_[hash & (capacity_ - 1)];
        entry.next = bucket;
        bucket = slot;
    }
    place(size_, {event.time, slot, postCount_++});
    moveUp(size_++);
}

// Let an equal event that waits take this one in. False when there is none.
bool EventQueue::absorb(const Event &event, uint64_t hash)
{
    if (event.bytesToCompare == 0 || capacity_ == 0) {
        return false;
    }
    uint32_t slot = buckets_[hash & (capacity_ - 1)];
    while (slot != kNone &&
           (entries_[slot].hash != hash || !areEqual(entries_[slot].event, event))) {
        slot = entries_[slot].next;
    }
    if (slot == kNone) {
        return false;
    }
    Event &present = entries_[slot].event;
    present.storage = event.storage;
    present.snoozeTime = event.snoozeTime;
    if (ZUVNtpTime_compare(&event.time, &present.time) < 0) {
        present.time = event.time;
        const uint32_t position = entries_[slot].position;
        nodes_[position].time = event.time;
        nodes_[position].number = postCount_++;
        moveUp(position);
    }
    return true;
}

// Where the bucket names the slot, or its neighbour does.
EventQueue::Slot *EventQueue::findBucketLink(Slot slot)
{
    uint32_t *link = &buckets_[entries_[slot].hash & (capacity_ - 1)];
    while (*link != slot) {
        link = &entries_[*link].next;
    }
    return link;
}

// See to it that a slot is free.
bool EventQueue::reserveOne()
{
    if (free_ != kNone) {
        return true;
    }
    if (used_ == capacity_ && !grow(std::max(2 * capacity_, kFirstCapacity))) {
        return false;
    }
    release(used_++);
    return true;
}

// What has grown already when there is no more memory does no harm.
bool EventQueue::grow(uint32_t capacity)
{
    if (capacity > kCapacityMax || !resize(entries_, capacity) || !resize(nodes_, capacity) ||
        !resize(buckets_, capacity)) {
        return false;
    }
    capacity_ = capacity;
    std::fill_n(buckets_, capacity, kNone);
    for (uint32_t position = 0; position < size_; ++position) {
        const Slot slot = nodes_[position].slot;
        Entry &entry = entries_[slot];
        if (entry.event.bytesToCompare != 0) {
            uint32_t &bucket = buckets_[entry.hash & (capacity_ - 1)];
            entry.next = bucket;
            bucket = slot;
        }
    }
    return true;
}

bool EventQueue::isBefore(const Node &left, const Node &right)
{
    const int order = ZUVNtpTime_compare(&left.time, &right.time);
    return order != 0 ? order < 0 : left.number < right.number;
}

uint64_t EventQueue::hashOf(const Event &event)
{
    if (event.bytesToCompare == 0) {
        return 0;
    }
    constexpr uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
    return std::hash<std::string_view>{}(comparedBytes(event)) ^
           reinterpret_cast<uintptr_t>(event.listener) * kGoldenRatio;
}

void EventQueue::place(uint32_t position, const Node &node)
{
    nodes_[position] = node;
    entries_[node.slot].position = position;
}

void EventQueue::moveUp(uint32_t position)
{
    const Node node = nodes_[position];
    while (position > 0) {
        const uint32_t parent = (position - 1) / 2;
        if (!isBefore(node, nodes_[parent])) {
            break;
        }
        place(position, nodes_[parent]);
        position = parent;
    }
    place(position, node);
}

void EventQueue::moveDown(uint32_t position)
{
    const Node node = nodes_[position];
    for (;;) {
        uint32_t child = 2 * position + 1;
        if (child >= size_) {
            break;
        }
        if (child + 1 < size_ && isBefore(nodes_[child + 1], nodes_[child])) {
            ++child;
        }
        if (!isBefore(nodes_[child], node)) {
            break;
        }
        place(position, nodes_[child]);
        position = child;
    }
    place(position, node);
}

} // namespace zuv
