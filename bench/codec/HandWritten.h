// The serialized form of a command request as one would write it by hand for this type alone: the baseline
// that the interpreter is measured against. It makes the same octets, keeps the same bounds, and allocates
// texts and octets the same way.
#ifndef ZUV_BENCH_CODEC_HAND_WRITTEN_H
#define ZUV_BENCH_CODEC_HAND_WRITTEN_H

#include <cstddef>
#include <cstdint>

#include "remoteConfig/ServiceAdmin.h"

namespace hand_written
{

// The size of the payload, or 0 when it does not fit or a text is too long.
std::size_t encode(const ZUV_Service_Admin_CommandRequest &request, std::uint8_t *buffer,
                   std::size_t capacity);

// Into an initialized sample, whose storage is kept where it is large enough.
bool decode(ZUV_Service_Admin_CommandRequest &request, const std::uint8_t *buffer,
            std::size_t size);

} // namespace hand_written

#endif
