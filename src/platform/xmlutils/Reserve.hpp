// Memory for the time when there is none.
#ifndef ZUV_PLATFORM_XMLUTILS_RESERVE_HPP
#define ZUV_PLATFORM_XMLUTILS_RESERVE_HPP

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>

namespace zuv::xmlutils
{

// Blocks of a region that takes addresses from the start of the process, and pages when it is drawn on. Any
// thread. Large enough for what the largest schema and a transformation need at one time; when it is used up, it
// refuses like any heap.
class Reserve
{
public:
    static constexpr std::size_t kSize = 32 * 1024 * 1024;

    static Reserve &instance();

    void *allocate(std::size_t size);
    void free(void *block);
    // Without a call: it is asked for each block that libxml2 gives back. Nothing is held before the first use.
    static bool holds(const void *block)
    {
        const auto address = reinterpret_cast<std::uintptr_t>(block);
        const std::uintptr_t begin = s_begin.load(std::memory_order_relaxed);
        return begin != 0 && address - begin < kSize;
    }
    static std::size_t sizeOf(const void *block);

private:
    struct alignas(16) Block {
        std::size_t size;
        Block *next; // of the free ones
    };
    static constexpr std::size_t kClassCount = 32;

    Reserve();
    static std::size_t classOf(std::size_t size);

    static inline std::atomic<std::uintptr_t> s_begin = 0;

    std::mutex mutex_;
    std::size_t used_ = 0;
    std::size_t liveCount_ = 0;
    std::array<Block *, kClassCount> free_ = {}; // by the power of two that the size is
};

} // namespace zuv::xmlutils

#endif
