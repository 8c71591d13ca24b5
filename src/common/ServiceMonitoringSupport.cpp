#include "common/ServiceMonitoringSupport.h"

DDS_TYPED_ENDPOINTS_DEFINE(ZUV_Service_Monitoring_ResourceGuid,
                           ZUV_Service_Monitoring_ResourceGuidSeq)
DDS_TYPED_ENDPOINTS_DEFINE(ZUV_Service_Monitoring_KeyedResource,
                           ZUV_Service_Monitoring_KeyedResourceSeq)
