// Memory for the time when there is none.
#ifndef ZUV_PLATFORM_XMLUTILS_RESERVE_HPP
#define ZUV_PLATFORM_XMLUTILS_RESERVE_HPP

#include <array>
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
    bool holds(const void *block) const
    {
        const auto address = reinterpret_cast<std::uintptr_t>(block);
        return address - begin_ < kSize;
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

    std::mutex mutex_;
    std::uintptr_t begin_ = 0;
    std::size_t used_ = 0;
    std::size_t liveCount_ = 0;
    std::array<Block *, kClassCount> free_ = {}; // by the power of two that the size is
};

} // namespace zuv::xmlutils

#endif
