// Payloads of command replies.
#include "PayloadFuzz.h"
#include "remoteConfig/ServiceAdmin.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    zuv_fuzz::feed(ZUV_Service_Admin_CommandReply_g_typecode, data, size);
    return 0;
}
