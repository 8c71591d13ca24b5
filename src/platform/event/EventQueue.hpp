// The events that wait, ordered by time and then by post.
#ifndef ZUV_PLATFORM_EVENT_EVENT_QUEUE_HPP
#define ZUV_PLATFORM_EVENT_EVENT_QUEUE_HPP

#include <cstddef>
#include <cstdint>
#include <optional>

#include "platform/event/GeneratorListener.h"

namespace zuv
{

struct Event {
    ZUVNtpTime time = {};
    ZUVNtpTime snoozeTime = {};
    const ZUVEventGeneratorListener *listener = nullptr;
    ZUVEventGeneratorListenerStorage storage = {};
    uint32_t bytesToCompare = 0; // 0 for an event that is like no other
};

// A binary heap of small nodes over a table of slots that hold the events. Events that can be compared are found
// again by a hash of what is compared. To add, to move and to take out costs the logarithm of the number of
// events that wait. For one thread at a time.
class EventQueue
{
public:
    using Slot = uint32_t;

    EventQueue() = default;
    ~EventQueue();
    EventQueue(const EventQueue &) = delete;
    EventQueue &operator=(const EventQueue &) = delete;

    bool isEmpty() const { return size_ == 0; }
    std::size_t size() const { return size_; }

    // The event that comes first; the queue must not be empty. Valid until the queue is changed.
    const Event &first() const { return entries_[nodes_[0].slot].event; }

    // Add an event, or let an equal one take it in. False when there is no memory: nothing has changed then.
    bool add(const Event &event);

    // Take the first event out. Its slot stays reserved until it is put back or released, so that neither can
    // fail.
    Slot takeFirst(Event &event);
    void putBack(Slot slot, const Event &event);
    void release(Slot slot);

private:
    static constexpr uint32_t kNone = UINT32_MAX;

    // Where an event stands in the order. Small, because ordering moves these and nothing else.
    struct Node {
        ZUVNtpTime time;
        Slot slot;
        uint64_t number; // of the post
    };

    struct Entry {
        Event event;
        uint64_t hash;
        uint32_t position; // of its node
        uint32_t next;     // in its bucket, or of the free slots
    };

    static bool isBefore(const Node &left, const Node &right);
    static uint64_t hashOf(const Event &event);

    bool reserveOne();
    bool grow(uint32_t capacity);
    void enter(Slot slot, const Event &event, uint64_t hash);
    bool absorb(const Event &event, uint64_t hash);
    Slot *findBucketLink(Slot slot);

    void place(uint32_t position, const Node &node);
    void moveUp(uint32_t position);
    void moveDown(uint32_t position);

    Entry *entries_ = nullptr;
    Node *nodes_ = nullptr; // the heap: node n has its followers at 2n + 1 and 2n + 2
    uint32_t *buckets_ = nullptr;
    uint32_t capacity_ = 0; // of each of the three; 0 or a power of two
    uint32_t used_ = 0;     // slots that were ever used
    uint32_t size_ = 0;     // nodes
    uint32_t free_ = kNone;
    uint64_t postCount_ = 0;
};

} // namespace zuv

#endif
