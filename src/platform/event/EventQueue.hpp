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

// A heap of small nodes over a table of slots that hold the events. Events that can be compared are found again by a
// hash of what is compared. To add, to move and to take out costs the logarithm of the number of
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

    // When the first event is due; the queue must not be empty.
    ZUVNtpTime firstTime() const { return {nodes_[0].sec, nodes_[0].frac}; }

    // Add an event, or let an equal one take it in. False when there is no memory: nothing has changed then.
    bool add(const Event &event);

    // Take the first event out. Its slot stays reserved until it is put back or released, so that neither can
    // fail.
    Slot takeFirst(Event &event);
    void putBack(Slot slot, const Event &event);
    void release(Slot slot);

private:
    static constexpr uint32_t kNone = UINT32_MAX;

    // What ordering compares and moves. Kept apart from the events, and small, because the time goes into fetching
    // memory once many events wait.
    struct Node {
        int64_t sec;     // of the event's time
        uint64_t number; // of the post
        uint32_t frac;
        Slot slot;
    };

    struct Link {
        uint32_t position; // of the slot's node
        uint32_t next;     // slot in the bucket, or of the free ones
        uint32_t hash;
    };

    static bool isBefore(const Node &left, const Node &right);
    static uint32_t hashOf(const Event &event);

    bool reserveOne();
    bool grow(uint32_t capacity);
    void enter(Slot slot, const Event &event, uint32_t hash);
    bool absorb(const Event &event, uint32_t hash);
    Slot &bucketOf(uint32_t hash) { return buckets_[hash & (capacity_ - 1)]; }
    void putIntoBucket(Slot slot);
    void takeOutOfBucket(Slot slot);

    void place(uint32_t position, const Node &node);
    void moveUp(uint32_t position);
    void moveDown(uint32_t position);

    // Each of `capacity_`, which is 0 or a power of two.
    Event *events_ = nullptr; // by slot
    Link *links_ = nullptr;   // by slot
    Slot *buckets_ = nullptr; // by hash
    Node *nodes_ = nullptr;   // the heap
    uint32_t capacity_ = 0;

    uint32_t used_ = 0; // slots that were ever used
    uint32_t size_ = 0; // nodes
    Slot free_ = kNone;
    uint64_t postCount_ = 0;
};

} // namespace zuv

#endif
