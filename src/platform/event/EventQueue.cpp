#include "platform/event/EventQueue.hpp"

#include <algorithm>
#include <functional>
#include <string_view>
#include <tuple>
#include <type_traits>

#include "platform/osapi/Heap.h"

namespace zuv
{
namespace
{

constexpr const char *kTag = "ZUVEventActiveGenerator queue";
constexpr uint32_t kFirstCapacity = 16;
constexpr uint32_t kChildren =
    4; // of a node: half the levels of two, and those of one node side by side
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
    ZUVOsapiHeap_free(events_);
    ZUVOsapiHeap_free(links_);
    ZUVOsapiHeap_free(buckets_);
    ZUVOsapiHeap_free(nodes_);
}

bool EventQueue::add(const Event &event)
{
    const uint32_t hash = hashOf(event);
    if (absorb(event, hash)) {
        return true;
    }
    if (!reserveOne()) {
        return false;
    }
    const Slot slot = free_;
    free_ = links_[slot].next;
    enter(slot, event, hash);
    return true;
}

EventQueue::Slot EventQueue::takeFirst(Event &event)
{
    const Slot slot = nodes_[0].slot;
    event = events_[slot];
    if (event.bytesToCompare != 0) {
        takeOutOfBucket(slot);
    }
    --size_;
    if (size_ != 0) {
        place(0, nodes_[size_]);
        moveDown(0);
        // The next one to be taken has waited for long: its memory may come near while this one runs.
        __builtin_prefetch(&events_[nodes_[0].slot]);
        __builtin_prefetch(&events_[nodes_[0].slot].storage);
    }
    return slot;
}

void EventQueue::putBack(Slot slot, const Event &event)
{
    const uint32_t hash = hashOf(event);
    if (absorb(event, hash)) {
        release(slot);
    } else {
        enter(slot, event, hash);
    }
}

void EventQueue::release(Slot slot)
{
    links_[slot].next = free_;
    free_ = slot;
}

// Give a slot that is in no use its event, and both their place in the order.
void EventQueue::enter(Slot slot, const Event &event, uint32_t hash)
{
    events_[slot] = event;
    links_[slot].hash = hash;
    if (event.bytesToCompare != 0) {
        putIntoBucket(slot);
    }
    place(size_, {event.time.sec, postCount_++, event.time.frac, slot});
    moveUp(size_++);
}

// Let an equal event that waits take this one in. False when there is none.
bool EventQueue::absorb(const Event &event, uint32_t hash)
{
    if (event.bytesToCompare == 0 || capacity_ == 0) {
        return false;
    }
    Slot slot = bucketOf(hash);
    while (slot != kNone && (links_[slot].hash != hash || !areEqual(events_[slot], event))) {
        slot = links_[slot].next;
    }
    if (slot == kNone) {
        return false;
    }
    Event &present = events_[slot];
    present.storage = event.storage;
    present.snoozeTime = event.snoozeTime;
    if (ZUVNtpTime_compare(&event.time, &present.time) < 0) {
        present.time = event.time;
        const uint32_t position = links_[slot].position;
        nodes_[position] = {event.time.sec, postCount_++, event.time.frac, slot};
        moveUp(position);
    }
    return true;
}

void EventQueue::putIntoBucket(Slot slot)
{
    Slot &bucket = bucketOf(links_[slot].hash);
    links_[slot].next = bucket;
    bucket = slot;
}

void EventQueue::takeOutOfBucket(Slot slot)
{
    Slot *link = &bucketOf(links_[slot].hash);
    while (*link != slot) {
        link = &links_[*link].next;
    }
    *link = links_[slot].next;
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
    if (capacity > kCapacityMax || !resize(events_, capacity) || !resize(links_, capacity) ||
        !resize(buckets_, capacity) || !resize(nodes_, capacity)) {
        return false;
    }
    capacity_ = capacity;
    std::fill_n(buckets_, capacity, kNone);
    for (uint32_t position = 0; position < size_; ++position) {
        const Slot slot = nodes_[position].slot;
        if (events_[slot].bytesToCompare != 0) {
            putIntoBucket(slot);
        }
    }
    return true;
}

bool EventQueue::isBefore(const Node &left, const Node &right)
{
    return std::tie(left.sec, left.frac, left.number) <
           std::tie(right.sec, right.frac, right.number);
}

uint32_t EventQueue::hashOf(const Event &event)
{
    if (event.bytesToCompare == 0) {
        return 0;
    }
    constexpr uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
    const uint64_t hash = std::hash<std::string_view>{}(comparedBytes(event)) ^
                          reinterpret_cast<uintptr_t>(event.listener) * kGoldenRatio;
    return static_cast<uint32_t>(hash ^ hash >> 32);
}

void EventQueue::place(uint32_t position, const Node &node)
{
    nodes_[position] = node;
    links_[node.slot].position = position;
}

void EventQueue::moveUp(uint32_t position)
{
    const Node node = nodes_[position];
    while (position > 0) {
        const uint32_t parent = (position - 1) / kChildren;
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
        const uint32_t first = kChildren * position + 1;
        if (first >= size_) {
            break;
        }
        Node *const end = nodes_ + std::min(first + kChildren, size_);
        const Node *const child = std::min_element(nodes_ + first, end, isBefore);
        if (!isBefore(*child, node)) {
            break;
        }
        place(position, *child);
        position = static_cast<uint32_t>(child - nodes_);
    }
    place(position, node);
}

} // namespace zuv
