#include "platform/xmlutils/ChildIndex.hpp"

#include <algorithm>

#include "platform/xmlutils/Tree.hpp"

namespace zuv::xmlutils
{
namespace
{

constexpr std::size_t kFirstSlotCount = 64;

// Positions start in the middle and leave room on both sides. Between two children a new one stands close to
// the one behind it: copies join before their targets, one before the other, and find room a million times.
constexpr std::uint64_t kMiddle = std::uint64_t{1} << 62;
constexpr std::uint64_t kGap = std::uint64_t{1} << 32;
constexpr int kShareOfGap = 16;

std::size_t hashOf(std::string_view text)
{
    return std::hash<std::string_view>()(text);
}

ChildIndex::Place &placeOf(const _xmlNode *child)
{
    return recordOf(child)->place;
}

} // namespace

void NodeTable::add(std::size_t hash, _xmlNode *node)
{
    if ((filledCount_ + 1) * 4 > slots_.size() * 3) {
        grow();
    }
    put(hash, node);
    ++filledCount_;
}

void NodeTable::put(std::size_t hash, _xmlNode *node)
{
    std::size_t at = home(hash);
    while (slots_[at].node != nullptr) {
        at = next(at);
    }
    slots_[at] = {hash, node};
}

void NodeTable::remove(std::size_t hash, const _xmlNode *node)
{
    if (slots_.empty()) {
        return;
    }
    std::size_t at = home(hash);
    while (slots_[at].node != node) {
        if (slots_[at].node == nullptr) {
            return;
        }
        at = next(at);
    }
    // What was put behind it because this slot was taken moves up. A mark in its place would make the way longer
    // with each node of the same hash that comes and goes, as updates do.
    for (std::size_t behind = next(at); slots_[behind].node != nullptr; behind = next(behind)) {
        if (distance(home(slots_[behind].hash), behind) >= distance(at, behind)) {
            slots_[at] = slots_[behind];
            at = behind;
        }
    }
    slots_[at] = {};
    --filledCount_;
}

void NodeTable::grow()
{
    std::size_t size = std::max(slots_.size(), kFirstSlotCount);
    while ((filledCount_ + 1) * 2 > size) {
        size *= 2;
    }
    HeapVector<Slot> old(size);
    old.swap(slots_);
    for (const Slot &slot : old) {
        if (slot.node != nullptr) {
            put(slot.hash, slot.node);
        }
    }
}

ChildIndex::ChildIndex(_xmlNode *parent) : parent_(parent)
{
    std::uint64_t position = kMiddle;
    for (_xmlNode *child = firstChildOf(parent); child != nullptr; child = nextOf(child)) {
        if (needRecord(child) == nullptr) {
            throw std::bad_alloc();
        }
        placeOf(child) = {position, nullptr, nullptr};
        position += kGap;
        addTag(child);
        addName(child);
    }
}

void ChildIndex::add(_xmlNode *child)
{
    if (needRecord(child) == nullptr) {
        throw std::bad_alloc();
    }
    givePosition(child);
    addTag(child);
    addName(child);
}

void ChildIndex::remove(_xmlNode *child)
{
    removeTag(child);
    removeName(child);
}

void ChildIndex::addName(_xmlNode *child)
{
    if (const std::string_view name = nameOf(child); !name.empty()) {
        names_.add(hashOf(name), child);
    }
}

void ChildIndex::removeName(const _xmlNode *child)
{
    if (const std::string_view name = nameOf(child); !name.empty()) {
        names_.remove(hashOf(name), child);
    }
}

void ChildIndex::givePosition(_xmlNode *child)
{
    const _xmlNode *const previous = previousOf(child);
    const _xmlNode *const following = nextOf(child);
    const std::uint64_t low = previous != nullptr ? placeOf(previous).position : 0;
    const std::uint64_t high = following != nullptr ? placeOf(following).position : UINT64_MAX;
    std::uint64_t &position = placeOf(child).position;
    if (previous == nullptr && following == nullptr) {
        position = kMiddle;
    } else if (high - low < 2 * kGap && (previous == nullptr || following == nullptr)) {
        renumber();
    } else if (following == nullptr) {
        position = low + kGap;
    } else if (previous == nullptr) {
        position = high - kGap;
    } else if (high - low < 2) {
        renumber();
    } else {
        position = high - std::max<std::uint64_t>(1, (high - low) >> kShareOfGap);
    }
}

void ChildIndex::renumber()
{
    std::uint64_t position = kMiddle;
    for (_xmlNode *child = firstChildOf(parent_); child != nullptr; child = nextOf(child)) {
        placeOf(child).position = position;
        position += kGap;
    }
}

void ChildIndex::addTag(_xmlNode *child)
{
    const std::string_view tag = tagOf(child);
    auto found = tags_.find(tag);
    if (found == tags_.end()) {
        found = tags_.emplace(HeapString(tag), TagList{}).first;
    }
    TagList &list = found->second;
    Place &place = placeOf(child);

    // Behind which one of its tag does it stand? Mostly behind all or before all.
    _xmlNode *previous = list.last;
    if (list.first != nullptr && place.position < placeOf(list.first).position) {
        previous = nullptr;
    } else if (list.last != nullptr && place.position < placeOf(list.last).position) {
        previous = previousOf(child);
        while (tagOf(previous) != tag) {
            previous = previousOf(previous);
        }
    }
    place.previousOfTag = previous;
    place.nextOfTag = previous != nullptr ? placeOf(previous).nextOfTag : list.first;
    (previous != nullptr ? placeOf(previous).nextOfTag : list.first) = child;
    (place.nextOfTag != nullptr ? placeOf(place.nextOfTag).previousOfTag : list.last) = child;
    ++list.count;
    if (list.last != child) {
        list.ranked = nullptr;
    }
}

void ChildIndex::removeTag(_xmlNode *child)
{
    TagList &list = tags_.find(tagOf(child))->second;
    const Place &place = placeOf(child);
    (place.previousOfTag != nullptr ? placeOf(place.previousOfTag).nextOfTag : list.first) =
        place.nextOfTag;
    (place.nextOfTag != nullptr ? placeOf(place.nextOfTag).previousOfTag : list.last) =
        place.previousOfTag;
    --list.count;
    list.ranked = nullptr;
}

_xmlNode *ChildIndex::findByName(std::string_view name) const
{
    _xmlNode *first = nullptr;
    names_.forEach(hashOf(name), [&](_xmlNode *node) {
        if (nameOf(node) == name &&
            (first == nullptr || placeOf(node).position < placeOf(first).position)) {
            first = node;
        }
    });
    return first;
}

_xmlNode *ChildIndex::findBefore(const _xmlNode *child, std::string_view name) const
{
    _xmlNode *first = nullptr;
    std::uint64_t end = placeOf(child).position;
    names_.forEach(hashOf(name), [&](_xmlNode *node) {
        if (placeOf(node).position < end && nameOf(node) == name) {
            first = node;
            end = placeOf(node).position;
        }
    });
    return first;
}

_xmlNode *ChildIndex::firstOfTag(std::string_view tag) const
{
    const auto found = tags_.find(tag);
    return found != tags_.end() ? found->second.first : nullptr;
}

_xmlNode *ChildIndex::nextOfTag(const _xmlNode *child) const
{
    return placeOf(child).nextOfTag;
}

std::int64_t ChildIndex::countOfTag(std::string_view tag) const
{
    const auto found = tags_.find(tag);
    return found != tags_.end() ? found->second.count : 0;
}

std::int64_t ChildIndex::rankOf(const _xmlNode *child)
{
    TagList &list = tags_.find(tagOf(child))->second;
    if (child == list.last) {
        return list.count - 1;
    }
    std::int64_t steps = 0;
    const _xmlNode *at = child;
    while (at != list.first && at != list.ranked) {
        at = placeOf(at).previousOfTag;
        ++steps;
    }
    list.rank = steps + (at == list.first ? 0 : list.rank);
    list.ranked = child;
    return list.rank;
}

} // namespace zuv::xmlutils
