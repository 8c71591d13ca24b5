// Finds the children of one element by name and by tag without walking them.
#ifndef ZUV_PLATFORM_XMLUTILS_CHILD_INDEX_HPP
#define ZUV_PLATFORM_XMLUTILS_CHILD_INDEX_HPP

#include <cstdint>
#include <functional>
#include <string_view>
#include <unordered_map>

#include "platform/xmlutils/Memory.hpp"

struct _xmlNode;

namespace zuv::xmlutils
{

// Nodes by a hash. Open addressing: 16 bytes a slot, at most three quarters of them in use.
class NodeTable
{
public:
    void add(std::size_t hash, _xmlNode *node);
    void remove(std::size_t hash, const _xmlNode *node);

    // `visit` gets each node that was added with this hash.
    template <typename Visit>
    void forEach(std::size_t hash, Visit &&visit) const
    {
        if (slots_.empty()) {
            return;
        }
        for (std::size_t at = home(hash); slots_[at].node != nullptr; at = next(at)) {
            if (slots_[at].hash == hash) {
                visit(slots_[at].node);
            }
        }
    }

private:
    struct Slot {
        std::size_t hash = 0;
        _xmlNode *node = nullptr;
    };

    std::size_t home(std::size_t hash) const { return hash & (slots_.size() - 1); }
    std::size_t next(std::size_t at) const { return (at + 1) & (slots_.size() - 1); }
    // How many steps of next() lead from the one slot to the other.
    std::size_t distance(std::size_t from, std::size_t to) const
    {
        return (to - from) & (slots_.size() - 1);
    }
    void put(std::size_t hash, _xmlNode *node);
    void grow();

    HeapVector<Slot> slots_; // as many as a power of two
    std::size_t filledCount_ = 0;
};

class ChildIndex
{
public:
    // Where a child stands among its siblings. Part of each child's record.
    struct Place {
        std::uint64_t position = 0; // grows from the first child to the last
        _xmlNode *previousOfTag = nullptr;
        _xmlNode *nextOfTag = nullptr;
    };

    // Fewer children are walked.
    static constexpr int kWorthwhile = 24;

    // Index the children of `parent`. Throws std::bad_alloc.
    explicit ChildIndex(_xmlNode *parent);

    // The child has just been put into the list of children. Throws std::bad_alloc; then the index is of no
    // use any more.
    void add(_xmlNode *child);
    // The child is about to leave the list, or to change its tag.
    void remove(_xmlNode *child);
    // The same for the name alone.
    void addName(_xmlNode *child);
    void removeName(const _xmlNode *child);

    // The first child of the name; null if there is none.
    _xmlNode *findByName(std::string_view name) const;
    // The first sibling of the name that stands before the child.
    _xmlNode *findBefore(const _xmlNode *child, std::string_view name) const;
    _xmlNode *firstOfTag(std::string_view tag) const;
    // The next sibling of the same tag.
    _xmlNode *nextOfTag(const _xmlNode *child) const;
    std::int64_t countOfTag(std::string_view tag) const;
    // How many siblings of the same tag stand before the child.
    std::int64_t rankOf(const _xmlNode *child);

private:
    struct TagList {
        _xmlNode *first = nullptr;
        _xmlNode *last = nullptr;
        std::int64_t count = 0;
        // A child whose rank is known, so that asking for one rank after the other walks no more than once.
        const _xmlNode *ranked = nullptr;
        std::int64_t rank = 0;
    };
    struct TextHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };
    using Tags = std::unordered_map<HeapString, TagList, TextHash, std::equal_to<>,
                                    HeapAllocator<std::pair<const HeapString, TagList>>>;

    void addTag(_xmlNode *child);
    void removeTag(_xmlNode *child);
    void givePosition(_xmlNode *child);
    void renumber();

    _xmlNode *parent_;
    NodeTable names_;
    Tags tags_;
};

} // namespace zuv::xmlutils

#endif
