// The serialized form of each type of a topic as one would write it by hand for this type alone: the baseline
// that the interpreter is measured against. It makes the same octets, keeps the same bounds, and allocates
// texts and octets the same way.
#ifndef ZUV_BENCH_CODEC_HAND_WRITTEN_H
#define ZUV_BENCH_CODEC_HAND_WRITTEN_H

#include <cstddef>
#include <cstdint>

#include "common/ServiceMonitoring.h"
#include "remoteConfig/ServiceAdmin.h"

namespace hand_written
{

// The size of the payload, or 0 when it does not fit or a member holds what it may not.
std::size_t encode(const ZUV_Service_Admin_CommandRequest &request, std::uint8_t *buffer,
                   std::size_t capacity);
std::size_t encode(const ZUV_Service_Admin_CommandReply &reply, std::uint8_t *buffer,
                   std::size_t capacity);
std::size_t encode(const ZUV_Service_EntityState &state, std::uint8_t *buffer,
                   std::size_t capacity);
std::size_t encode(const ZUV_Service_Monitoring_ResourceGuid &guid, std::uint8_t *buffer,
                   std::size_t capacity);
std::size_t encode(const ZUV_Service_Monitoring_KeyedResource &resource, std::uint8_t *buffer,
                   std::size_t capacity);

// Into an initialized sample, whose storage is kept where it is large enough. The mutable type is read in the
// order of its declaration alone, which is what its writers write.
bool decode(ZUV_Service_Admin_CommandRequest &request, const std::uint8_t *buffer,
            std::size_t size);
bool decode(ZUV_Service_Admin_CommandReply &reply, const std::uint8_t *buffer, std::size_t size);
bool decode(ZUV_Service_EntityState &state, const std::uint8_t *buffer, std::size_t size);
bool decode(ZUV_Service_Monitoring_ResourceGuid &guid, const std::uint8_t *buffer,
            std::size_t size);
bool decode(ZUV_Service_Monitoring_KeyedResource &resource, const std::uint8_t *buffer,
            std::size_t size);

} // namespace hand_written

#endif
