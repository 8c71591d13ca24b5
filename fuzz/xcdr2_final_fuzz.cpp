// Payloads of final structures.
#include "PayloadFuzz.h"
#include "common/ServiceMonitoring.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    zuv_fuzz::feedOneOf(
        {&ZUV_Service_BuiltinTopicKey_g_typecode, &ZUV_Service_Monitoring_ResourceGuid_g_typecode},
        data, size);
    return 0;
}
