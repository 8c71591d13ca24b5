#include "platform/dds/Entity.h"

#include <fastdds/dds/core/Entity.hpp>
#include <fastdds/dds/core/condition/StatusCondition.hpp>
#include <fastdds/dds/core/status/StatusMask.hpp>
#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "Report.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::toOurs;

namespace zuv::dds
{

void reportAs(const char *function, const ZUVLogMessage &message, const char *argument)
{
    if (ZUV_LOG_ENABLED(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_ENTITY)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, DDS_LOG_MODULE_ID,
                                      DDS_SUBMODULE_ENTITY, __FILE__, __LINE__, function, &message,
                                      argument);
    }
}

} // namespace zuv::dds

namespace
{

fast::StatusCondition &fastCondition(DDS_StatusCondition &condition)
{
    return condition.entity->fastEntity->get_statuscondition();
}

} // namespace

DDS_ReturnCode_t DDS_Entity_enable(DDS_Entity *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    // An enabled one can fail too, so that whoever enables for safety's sake is tested.
    const bool isToFail = ZUV_OSAPI_FAULT("dds.enable");
    if (!isToFail && DDS_Entity_is_enabled(self)) {
        return DDS_RETCODE_OK;
    }
    if (self->factory != nullptr && !DDS_Entity_is_enabled(self->factory)) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "enable an entity whose factory is not enabled");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (!isToFail) {
        code = guarded("enable", DDS_RETCODE_ERROR,
                       [self] { return toOurs(self->fastEntity->enable()); });
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "enable");
    }
    return code;
}

DDS_Boolean DDS_Entity_is_enabled(DDS_Entity *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    // A filtered topic has nothing to enable.
    return self->fastEntity == nullptr || self->fastEntity->is_enabled() ? DDS_BOOLEAN_TRUE
                                                                         : DDS_BOOLEAN_FALSE;
}

DDS_StatusCondition *DDS_Entity_get_statuscondition(DDS_Entity *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return nullptr;
    }
    if (self->fastEntity == nullptr || ZUV_OSAPI_FAULT("dds.get_statuscondition")) {
        ZUV_DDS_REPORT(&ZUV_LOG_GET_FAILURE_s, "status condition");
        return nullptr;
    }
    return &self->condition;
}

DDS_InstanceHandle_t DDS_Entity_get_instance_handle(DDS_Entity *self)
{
    if (ZUV_DDS_IS_NULL(self) || self->fastEntity == nullptr) {
        return DDS_HANDLE_NIL;
    }
    // The middleware's base class does not know the handles of writers and readers.
    if (const auto *writer = dynamic_cast<DDS_DataWriter *>(self)) {
        return toOurs(writer->fast->get_instance_handle());
    }
    if (const auto *reader = dynamic_cast<DDS_DataReader *>(self)) {
        return toOurs(reader->fast->get_instance_handle());
    }
    return toOurs(self->fastEntity->get_instance_handle());
}

// The bits of the middleware's masks are those of the standard.
DDS_ReturnCode_t DDS_StatusCondition_set_enabled_statuses(DDS_StatusCondition *self,
                                                          DDS_StatusMask mask)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_ReturnCode_t code = DDS_RETCODE_ERROR;
    if (!ZUV_OSAPI_FAULT("dds.set_enabled_statuses")) {
        code = toOurs(fastCondition(*self).set_enabled_statuses(fast::StatusMask(mask)));
    }
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "set enabled statuses");
    }
    return code;
}

DDS_StatusMask DDS_StatusCondition_get_enabled_statuses(DDS_StatusCondition *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_STATUS_MASK_NONE;
    }
    return static_cast<DDS_StatusMask>(fastCondition(*self).get_enabled_statuses().to_ulong());
}

DDS_Boolean DDS_StatusCondition_get_trigger_value(DDS_StatusCondition *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    return fastCondition(*self).get_trigger_value() ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_Entity *DDS_StatusCondition_get_entity(DDS_StatusCondition *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->entity;
}
