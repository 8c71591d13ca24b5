// Who holds how much of the heap. Counting costs a few plain instructions: each thread counts for itself,
// and the accounts are summed when somebody asks.
#ifndef ZUV_PLATFORM_OSAPI_HEAP_ACCOUNT_HPP
#define ZUV_PLATFORM_OSAPI_HEAP_ACCOUNT_HPP

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "platform/osapi/Heap.h"
#include "platform/osapi/HeapBulk.hpp"
#include "platform/osapi/HeapCache.hpp"

namespace zuv_heap
{

constexpr std::size_t kTagBits = 9;
constexpr std::size_t kTableSize = std::size_t{1} << kTagBits;
constexpr std::size_t kTagCount = kTableSize + 1; // the last one takes what finds no room
static_assert(kTagCount <= kTagFieldMask);

// How far the live bytes of a thread may move before it tells the others, who then see a new peak.
constexpr std::int64_t kUntoldLimit = 4096;

// A counter that one thread writes and any may read.
class Counter
{
public:
    std::uint64_t get() const { return value_.load(std::memory_order_relaxed); }
    void add(std::uint64_t amount) { value_.store(get() + amount, std::memory_order_relaxed); }

private:
    std::atomic<std::uint64_t> value_{0};
};

// Blocks may be released by another thread than the one that allocated them: only the sums over all
// accounts mean something, and they are right modulo 2^64.
struct TagCounters {
    Counter allocations;
    Counter releases;
    Counter bytes;

    void add(const TagCounters &other)
    {
        allocations.add(other.allocations.get());
        releases.add(other.releases.get());
        bytes.add(other.bytes.get());
    }
};

// A thread's own: what it has counted, and the blocks that wait for its next demands.
struct Account {
    std::array<TagCounters, kTagCount> tags;
    std::int64_t untoldBytes = 0;
    Account *next = nullptr;
    BlockCache cache;
    Bulk bulk;
};

// The calling thread's account, from its first block to its end. Looked at for each block: without a call, which
// other models of thread storage need in a shared library.
[[gnu::tls_model("initial-exec")]] extern constinit thread_local Account *t_account;

// Open the account of a thread that has none. Null for a thread that is about to end and has closed its account.
Account *openAccount();
inline Account *ownAccount()
{
    return t_account != nullptr ? t_account : openAccount();
}

void tellBytes(Account &account);
// For a thread without an account.
void countAllocationApart(std::uint32_t tag, std::size_t size);
void countReleaseApart(std::uint32_t tag, std::size_t size);

extern std::array<std::atomic<const char *>, kTagCount> g_tagNames;
std::uint32_t findTagNumber(const char *tag, std::size_t home);

// The number of a tag, found by its pointer. Tags that find no room in the table share the last number.
inline std::uint32_t tagNumber(const char *tag)
{
    constexpr std::uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
    const std::size_t home =
        (reinterpret_cast<std::uintptr_t>(tag) * kGoldenRatio) >> (64 - kTagBits);
    return g_tagNames[home].load(std::memory_order_relaxed) == tag
               ? static_cast<std::uint32_t>(home)
               : findTagNumber(tag, home);
}

inline void moveBytes(Account &account, TagCounters &tag, std::int64_t change)
{
    tag.bytes.add(static_cast<std::uint64_t>(change));
    account.untoldBytes += change;
    if (account.untoldBytes > kUntoldLimit || account.untoldBytes < -kUntoldLimit) [[unlikely]] {
        tellBytes(account);
    }
}

inline void countAllocation(Account &account, std::uint32_t tag, std::size_t size)
{
    account.tags[tag].allocations.add(1);
    moveBytes(account, account.tags[tag], static_cast<std::int64_t>(size));
}

inline void countRelease(Account &account, std::uint32_t tag, std::size_t size)
{
    account.tags[tag].releases.add(1);
    moveBytes(account, account.tags[tag], -static_cast<std::int64_t>(size));
}

inline void countRelease(std::uint32_t tag, std::size_t size)
{
    Account *const account = ownAccount();
    account != nullptr ? countRelease(*account, tag, size) : countReleaseApart(tag, size);
}

ZUVOsapiHeapStatistics statistics();
void visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData);

} // namespace zuv_heap

#endif
