// One member of a serialized sample, found without decoding the sample (XCDR2; DDS-XTypes 1.3, 7.4.3).
#ifndef ZUV_PLATFORM_DDS_PAYLOAD_MEMBER_HPP
#define ZUV_PLATFORM_DDS_PAYLOAD_MEMBER_HPP

#include <cstdint>
#include <span>
#include <string_view>

#include "platform/typesys/TypeCode.h"

namespace zuv::dds
{

struct PayloadMember {
    enum class State {
        kAbsent, // an optional member that is not there, or one that an older sample ends before
        kPresent,
        kInvalid // the payload is not one of the type as far as it was read
    };
    State state = State::kInvalid;
    std::string_view
        text; // of a text that is present, without its terminator; points into the payload
};

// The member `index` of the structure `type`. The payload begins with its encapsulation header. Nothing is read beyond
// its end, whatever it says.
PayloadMember findPayloadMember(const DDS_TypeCode &type, std::uint32_t index,
                                std::span<const std::uint8_t> payload);

} // namespace zuv::dds

#endif
