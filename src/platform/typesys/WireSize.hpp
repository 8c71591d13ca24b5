// The greatest and the least size that samples of a type have on the wire.
#ifndef ZUV_PLATFORM_TYPESYS_WIRE_SIZE_HPP
#define ZUV_PLATFORM_TYPESYS_WIRE_SIZE_HPP

#include <cstdint>
#include <span>

#include "platform/typesys/Program.hpp"

namespace zuv
{

// Octets without an encapsulation header; more than any payload may have if there is no limit.
std::uint64_t greatestSize(const Program &program);
std::uint64_t greatestSize(std::span<const Op> ops);
std::uint64_t leastSize(const Program &program);

} // namespace zuv

#endif
