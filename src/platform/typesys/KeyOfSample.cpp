// Apart from the rest of the codec, whose reading stays one function with all that it calls.
#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/typesys/Codec.h"
#include "platform/typesys/Decoder.hpp"

namespace
{

template <bool Swap>
bool readKeys(const zuv::Program &program, const DDS_Octet *body, std::size_t size, void *sample)
{
    zuv::Marks marks;
    zuv::Decoder<zuv::DecodePass::Check, Swap> checker(body);
    const std::size_t end = checker.check(program, size, marks);
    return end != zuv::kFailed && size - end < zuv::kPayloadAlignment &&
           zuv::Decoder<zuv::DecodePass::Read, Swap>(body).readKeys(program, sample, marks);
}

} // namespace

DDS_Boolean ZUVCodec_deserializeKeyOfSample(const DDS_TypeCode *type, void *sample,
                                            const DDS_Octet *buffer, DDS_UnsignedLong length)
{
    if (!ZUVCodec_hasKey(type)) {
        return DDS_BOOLEAN_FALSE;
    }
    const zuv::Program &program = *zuv::Program::of(type);
    if (!program.isFlat() || sample == nullptr || buffer == nullptr) {
        return ZUVCodec_deserialize(type, sample, buffer, length);
    }
    const bool isRead =
        zuv::withBody(program.encapsulation(), buffer, length,
                      [&](auto swap, const DDS_Octet *body, std::size_t size) {
                          return readKeys<decltype(swap)::value>(program, body, size, sample);
                      });
    if (!isRead) {
        ZUV_LOG(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_TYPES, &ZUV_CDR_LOG_DESERIALIZE_FAILURE_s,
                DDS_TypeCode_name(type, nullptr));
    }
    return isRead ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}
