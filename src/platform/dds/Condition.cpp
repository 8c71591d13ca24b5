#include "platform/dds/Condition.h"

#include "EntityImpl.hpp"
#include "Report.hpp"
#include "platform/osapi/Fault.h"

DDS_Condition *DDS_StatusCondition_as_condition(DDS_StatusCondition *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self;
}

DDS_ReturnCode_t DDS_Condition_set_handler(DDS_Condition *self, const DDS_ConditionHandler *handler)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (handler != nullptr && handler->on_condition_triggered == nullptr) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "handler");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (self->dispatcher != nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "set the handler of a condition that is attached");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (ZUV_OSAPI_FAULT("dds.set_handler")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "set condition handler");
        return DDS_RETCODE_ERROR;
    }
    self->handler = handler != nullptr ? *handler : DDS_ConditionHandler{};
    return DDS_RETCODE_OK;
}
