// Payloads of appendable structures.
#include "PayloadFuzz.h"
#include "common/ServiceMonitoring.h"
#include "remoteConfig/ServiceAdmin.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    zuv_fuzz::feedOneOf(
        {&ZUV_Service_Admin_CommandRequest_g_typecode, &ZUV_Service_Admin_CommandReply_g_typecode,
         &ZUV_Service_EntityState_g_typecode, &ZUV_Service_Monitoring_StatisticMetrics_g_typecode,
         &ZUV_Service_Monitoring_StatisticVariable_g_typecode,
         &ZUV_Service_Monitoring_ProcessConfig_g_typecode,
         &ZUV_Service_Monitoring_HostPeriodic_g_typecode,
         &ZUV_Service_Monitoring_HostConfig_g_typecode,
         &ZUV_Service_Monitoring_NetworkPerformance_g_typecode},
        data, size);
    return 0;
}
