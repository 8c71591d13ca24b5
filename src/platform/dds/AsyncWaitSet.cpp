#include "platform/dds/AsyncWaitSet.h"

#include "AsyncWaitSetImpl.hpp"
#include "Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/typesys/String.h"

using zuv::dds::guarded;

const DDS_AsyncWaitSetProperty_t DDS_ASYNC_WAITSET_PROPERTY_DEFAULT = {
    {1, {DDS_DURATION_INFINITE_SEC, DDS_DURATION_INFINITE_NSEC}},
    1,
    {DDS_THREAD_SETTINGS_KIND_MASK_DEFAULT,
     DDS_THREAD_PRIORITY_DEFAULT,
     DDS_THREAD_STACK_SIZE_DEFAULT,
     {},
     DDS_THREAD_SETTINGS_CPU_NO_ROTATION},
    nullptr,
    1,
};

namespace
{

bool isInRange(const DDS_AsyncWaitSetProperty_t &property)
{
    const DDS_Long events = property.waitset_property.max_event_count;
    return property.thread_pool_size > 0 && (events > 0 || events == DDS_LENGTH_UNLIMITED);
}

} // namespace

DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_initialize(DDS_AsyncWaitSetProperty_t *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    *self = DDS_ASYNC_WAITSET_PROPERTY_DEFAULT;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_copy(DDS_AsyncWaitSetProperty_t *self,
                                                 const DDS_AsyncWaitSetProperty_t *source)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(source)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    char *prefix = nullptr;
    DDS_LongSeq processors = DDS_SEQUENCE_INITIALIZER;
    if (ZUV_OSAPI_FAULT("dds.copy_async_waitset_property") ||
        DDS_LongSeq_copy(&processors, &source->thread_settings.cpu_list) == nullptr ||
        (source->thread_name_prefix != nullptr &&
         (prefix = DDS_String_dup(source->thread_name_prefix)) == nullptr)) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "asynchronous wait set property");
        DDS_LongSeq_finalize(&processors);
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    const DDS_AsyncWaitSetProperty_t values = *source; // which may be `self`
    DDS_AsyncWaitSetProperty_t_finalize(self);
    *self = values;
    self->thread_name_prefix = prefix;
    self->thread_settings.cpu_list = processors;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_AsyncWaitSetProperty_t_finalize(DDS_AsyncWaitSetProperty_t *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_String_free(self->thread_name_prefix);
    DDS_LongSeq_finalize(&self->thread_settings.cpu_list);
    *self = {};
    return DDS_RETCODE_OK;
}

DDS_AsyncWaitSet *DDS_AsyncWaitSet_new_with_listener(const DDS_AsyncWaitSetProperty_t *property,
                                                     const DDS_AsyncWaitSetListener *listener)
{
    if (ZUV_DDS_IS_NULL(property)) {
        return nullptr;
    }
    if (!isInRange(*property)) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "property");
        return nullptr;
    }
    return guarded("create asynchronous wait set", static_cast<DDS_AsyncWaitSet *>(nullptr), [&] {
        zuv::dds::HeapOwner<DDS_AsyncWaitSet> self;
        if (!ZUV_OSAPI_FAULT("dds.create_async_waitset")) {
            self.reset(zuv::dds::heapNew<DDS_AsyncWaitSet>("DDS AsyncWaitSet"));
        }
        if (self == nullptr || !self->prepare(*property, listener)) {
            ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "asynchronous wait set");
            return static_cast<DDS_AsyncWaitSet *>(nullptr);
        }
        return self.release();
    });
}

DDS_ReturnCode_t DDS_AsyncWaitSet_delete(DDS_AsyncWaitSet *self)
{
    const DDS_ReturnCode_t code = DDS_AsyncWaitSet_stop(self);
    if (code == DDS_RETCODE_OK) {
        zuv::dds::heapDelete(self);
    }
    return code;
}

DDS_ReturnCode_t DDS_AsyncWaitSet_start(DDS_AsyncWaitSet *self)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return guarded("start asynchronous wait set", DDS_RETCODE_OUT_OF_RESOURCES,
                   [self] { return self->start(); });
}

DDS_ReturnCode_t DDS_AsyncWaitSet_stop(DDS_AsyncWaitSet *self)
{
    return ZUV_DDS_IS_NULL(self) ? DDS_RETCODE_BAD_PARAMETER : self->stop();
}

DDS_Boolean DDS_AsyncWaitSet_is_started(DDS_AsyncWaitSet *self)
{
    return !ZUV_DDS_IS_NULL(self) && self->isStarted() ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}

DDS_ReturnCode_t DDS_AsyncWaitSet_attach_condition_with_completion_token(
    DDS_AsyncWaitSet *self, DDS_Condition *condition,
    DDS_AsyncWaitSetCompletionToken *completionToken)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(condition)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (completionToken != DDS_ASYNC_WAITSET_COMPLETION_TOKEN_IGNORE) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "completionToken");
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return self->attach(*condition);
}

DDS_ReturnCode_t DDS_AsyncWaitSet_detach_condition(DDS_AsyncWaitSet *self, DDS_Condition *condition)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(condition)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return self->detach(*condition);
}
