#include "platform/osapi/HeapAccount.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <mutex>
#include <string_view>

namespace zuv_heap
{
namespace
{

constexpr const char *kOtherTags = "(other tags)";

using Totals = std::array<TagCounters, kTagCount>;

void addAccount(Totals &totals, const Account &account)
{
    for (std::size_t tag = 0; tag < kTagCount; ++tag) {
        totals[tag].add(account.tags[tag]);
    }
}

std::atomic<std::int64_t> g_toldBytes{0};
std::atomic<std::int64_t> g_peakBytes{0};

std::mutex g_mutex;            // guards what follows
Account *g_accounts = nullptr; // of the running threads
Account g_retired;             // of the threads that ended

void noteLiveBytes(std::int64_t live)
{
    std::int64_t peak = g_peakBytes.load(std::memory_order_relaxed);
    while (live > peak &&
           !g_peakBytes.compare_exchange_weak(peak, live, std::memory_order_relaxed)) {
    }
}

// Opens the account of a thread and closes it at the thread's end.
class OwnAccount
{
public:
    OwnAccount()
    {
        const std::lock_guard lock(g_mutex);
        account_.next = g_accounts;
        g_accounts = &account_;
        t_account = &account_;
    }

    ~OwnAccount()
    {
        tellBytes(account_);
        account_.cache.flush();
        const std::lock_guard lock(g_mutex);
        addAccount(g_retired.tags, account_);
        Account **link = &g_accounts;
        while (*link != &account_) {
            link = &(*link)->next;
        }
        *link = account_.next;
        t_account = nullptr;
        s_isGone = true;
    }

    // Set when the thread's account is closed; other destructors of the thread may still release blocks.
    static constinit thread_local bool s_isGone;

private:
    Account account_;
};

constinit thread_local bool OwnAccount::s_isGone = false;

// Count with the account of the threads that ended.
template <typename Count>
void countApart(Count countWith)
{
    const std::lock_guard lock(g_mutex);
    countWith(g_retired);
    tellBytes(g_retired);
}

// Sum up all accounts; `totals` is zero before.
void addAllAccounts(Totals &totals)
{
    const std::lock_guard lock(g_mutex);
    addAccount(totals, g_retired);
    for (const Account *account = g_accounts; account != nullptr; account = account->next) {
        addAccount(totals, *account);
    }
}

} // namespace

constinit thread_local Account *t_account = nullptr;
std::array<std::atomic<const char *>, kTagCount> g_tagNames;

Account *openAccount()
{
    if (!OwnAccount::s_isGone) {
        thread_local OwnAccount own;
    }
    return t_account;
}

void tellBytes(Account &account)
{
    const std::int64_t untold = account.untoldBytes;
    account.untoldBytes = 0;
    noteLiveBytes(g_toldBytes.fetch_add(untold, std::memory_order_relaxed) + untold);
}

void countAllocationApart(std::uint32_t tag, std::size_t size)
{
    countApart([=](Account &account) { countAllocation(account, tag, size); });
}

void countReleaseApart(std::uint32_t tag, std::size_t size)
{
    countApart([=](Account &account) { countRelease(account, tag, size); });
}

std::uint32_t findTagNumber(const char *tag, std::size_t home)
{
    for (std::size_t step = 0; step < kTableSize; ++step) {
        const std::size_t number = (home + step) % kTableSize;
        const char *present = g_tagNames[number].load(std::memory_order_relaxed);
        if (present == nullptr) {
            g_tagNames[number].compare_exchange_strong(present, tag, std::memory_order_relaxed);
        }
        if (present == tag || present == nullptr) { // nullptr: the exchange put ours there
            return static_cast<std::uint32_t>(number);
        }
    }
    g_tagNames[kTableSize].store(kOtherTags, std::memory_order_relaxed);
    return kTableSize;
}

ZUVOsapiHeapStatistics statistics()
{
    Totals totals;
    addAllAccounts(totals);
    ZUVOsapiHeapStatistics sums = {};
    for (const TagCounters &tag : totals) {
        sums.allocationCount += tag.allocations.get();
        sums.liveBlockCount += tag.allocations.get() - tag.releases.get();
        sums.liveByteCount += tag.bytes.get();
    }
    noteLiveBytes(static_cast<std::int64_t>(sums.liveByteCount));
    sums.peakByteCount = static_cast<std::uint64_t>(g_peakBytes.load(std::memory_order_relaxed));
    return sums;
}

void visitTags(ZUVOsapiHeapTagVisitor visitor, void *visitorData)
{
    // Two source files may hold the same text twice: numbers of one text are one tag.
    Totals sums;
    addAllAccounts(sums);
    std::array<const char *, kTagCount> names;
    std::copy(g_tagNames.begin(), g_tagNames.end(), names.begin());
    for (std::size_t first = 0; first < kTagCount; ++first) {
        if (names[first] == nullptr) {
            continue;
        }
        for (std::size_t other = first + 1; other < kTagCount; ++other) {
            if (names[other] != nullptr && std::string_view(names[other]) == names[first]) {
                sums[first].add(sums[other]);
                names[other] = nullptr;
            }
        }
        const TagCounters &sum = sums[first];
        if (sum.allocations.get() != sum.releases.get()) {
            visitor(visitorData, names[first], sum.allocations.get() - sum.releases.get(),
                    sum.bytes.get());
        }
    }
}

} // namespace zuv_heap
