#include "common/ServiceCommonSupport.h"

DDS_TYPED_ENDPOINTS_DEFINE(ZUV_Service_EntityState, ZUV_Service_EntityStateSeq)
