// MD5 (RFC 1321), at compile time for member ids and at run time for key hashes.
#ifndef ZUV_PLATFORM_TYPESYS_MD5_HPP
#define ZUV_PLATFORM_TYPESYS_MD5_HPP

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace zuv
{

using Md5Digest = std::array<std::uint8_t, 16>;

// Takes octets piece by piece.
class Md5
{
public:
    constexpr void update(std::span<const std::uint8_t> octets)
    {
        for (const std::uint8_t octet : octets) {
            block_[length_++ % kBlockSize] = octet;
            if (length_ % kBlockSize == 0) {
                digestBlock();
            }
        }
    }

    // The digest of all octets so far; the object is used up.
    constexpr Md5Digest finish()
    {
        const std::uint64_t bitCount = length_ * 8;
        constexpr std::uint8_t kMark[] = {0x80};
        constexpr std::uint8_t kZero[] = {0};
        update(kMark);
        while (length_ % kBlockSize != kBlockSize - sizeof(bitCount)) {
            update(kZero);
        }
        for (unsigned shift = 0; shift < 64; shift += 8) {
            const std::uint8_t octet[] = {static_cast<std::uint8_t>(bitCount >> shift)};
            update(octet);
        }
        Md5Digest digest{};
        for (std::size_t i = 0; i < digest.size(); ++i) {
            digest[i] = static_cast<std::uint8_t>(state_[i / 4] >> (8 * (i % 4)));
        }
        return digest;
    }

private:
    static constexpr std::size_t kBlockSize = 64;
    static constexpr std::array<std::uint32_t, 64> kSines = {
        0xd76aa478, 0xe8c7b756, 0x242070db, 0xc1bdceee, 0xf57c0faf, 0x4787c62a, 0xa8304613,
        0xfd469501, 0x698098d8, 0x8b44f7af, 0xffff5bb1, 0x895cd7be, 0x6b901122, 0xfd987193,
        0xa679438e, 0x49b40821, 0xf61e2562, 0xc040b340, 0x265e5a51, 0xe9b6c7aa, 0xd62f105d,
        0x02441453, 0xd8a1e681, 0xe7d3fbc8, 0x21e1cde6, 0xc33707d6, 0xf4d50d87, 0x455a14ed,
        0xa9e3e905, 0xfcefa3f8, 0x676f02d9, 0x8d2a4c8a, 0xfffa3942, 0x8771f681, 0x6d9d6122,
        0xfde5380c, 0xa4beea44, 0x4bdecfa9, 0xf6bb4b60, 0xbebfbc70, 0x289b7ec6, 0xeaa127fa,
        0xd4ef3085, 0x04881d05, 0xd9d4d039, 0xe6db99e5, 0x1fa27cf8, 0xc4ac5665, 0xf4292244,
        0x432aff97, 0xab9423a7, 0xfc93a039, 0x655b59c3, 0x8f0ccc92, 0xffeff47d, 0x85845dd1,
        0x6fa87e4f, 0xfe2ce6e0, 0xa3014314, 0x4e0811a1, 0xf7537e82, 0xbd3af235, 0x2ad7d2bb,
        0xeb86d391};
    static constexpr unsigned kShifts[4][4] = {
        {7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}};

    static constexpr std::uint32_t rotateLeft(std::uint32_t value, unsigned count)
    {
        return (value << count) | (value >> (32 - count));
    }

    constexpr std::uint32_t word(std::size_t index) const
    {
        std::uint32_t value = 0;
        for (std::size_t i = 4; i-- > 0;) {
            value = (value << 8) | block_[4 * index + i];
        }
        return value;
    }

    constexpr void digestBlock()
    {
        auto [a, b, c, d] = state_;
        for (std::uint32_t i = 0; i < 64; ++i) {
            std::uint32_t mixed = 0;
            std::uint32_t source = 0;
            switch (i / 16) {
            case 0:
                mixed = (b & c) | (~b & d);
                source = i;
                break;
            case 1:
                mixed = (d & b) | (~d & c);
                source = (5 * i + 1) % 16;
                break;
            case 2:
                mixed = b ^ c ^ d;
                source = (3 * i + 5) % 16;
                break;
            default:
                mixed = c ^ (b | ~d);
                source = (7 * i) % 16;
                break;
            }
            const std::uint32_t sum = a + mixed + kSines[i] + word(source);
            a = d;
            d = c;
            c = b;
            b += rotateLeft(sum, kShifts[i / 16][i % 4]);
        }
        state_[0] += a;
        state_[1] += b;
        state_[2] += c;
        state_[3] += d;
    }

    std::array<std::uint32_t, 4> state_ = {0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    std::array<std::uint8_t, kBlockSize> block_{};
    std::uint64_t length_ = 0;
};

// The member id that a name gives (DDS-XTypes 1.3, 7.3.1.2.1.1): the digest's first four octets as a
// little-endian number, without its top four bits.
constexpr std::uint32_t memberIdOf(std::string_view name)
{
    Md5 md5;
    for (const char character : name) {
        const std::uint8_t octet[] = {static_cast<std::uint8_t>(character)};
        md5.update(octet);
    }
    const Md5Digest digest = md5.finish();
    std::uint32_t id = 0;
    for (std::size_t i = 4; i-- > 0;) {
        id = (id << 8) | digest[i];
    }
    return id & 0x0fffffffu;
}

} // namespace zuv

#endif
