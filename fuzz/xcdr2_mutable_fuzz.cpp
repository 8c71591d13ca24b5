// Payloads of mutable structures.
#include "PayloadFuzz.h"
#include "common/ServiceMonitoring.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    zuv_fuzz::feedOneOf({&ZUV_Service_Monitoring_KeyedResource_g_typecode,
                         &ZUV_Service_Monitoring_CountStatus_g_typecode,
                         &ZUV_Service_Monitoring_ProcessPeriodic_g_typecode,
                         &ZUV_Service_Monitoring_ThreadPeriodic_g_typecode,
                         &ZUV_Service_Monitoring_ThreadPoolPeriodic_g_typecode,
                         &ZUV_Service_Monitoring_EntityConfig_g_typecode,
                         &ZUV_Service_Monitoring_EntityEvent_g_typecode},
                        data, size);
    return 0;
}
