#include "platform/dds/DataWriter.h"

#include <chrono>
#include <cstring>

#include <fastdds/dds/publisher/DataWriter.hpp>
#include <fastdds/rtps/common/WriteParams.h>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "Report.hpp"
#include "SampleStore.hpp"
#include "WriterAdapter.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
namespace rtps = eprosima::fastrtps::rtps;
using zuv::dds::guarded;
using zuv::dds::SampleCell;
using zuv::dds::toFast;
using zuv::dds::toOurs;

namespace
{

bool isTimeSet(const DDS_Time_t &time)
{
    return time.sec != DDS_TIME_INVALID_SEC || time.nanosec != DDS_TIME_INVALID_NSEC;
}

// The middleware's copy of a sample to write. It is not changed, though the types say nothing of it.
SampleCell cellOf(const void *sample)
{
    return SampleCell{const_cast<void *>(sample)};
}

// The instance of a sample, or nil for a type without a key.
DDS_InstanceHandle_t instanceOf(const zuv::dds::RegisteredType &type, const void *sample)
{
    DDS_InstanceHandle_t handle = DDS_HANDLE_NIL;
    ZUVKeyHash hash;
    if (type.hasKey() && type.plugin.instanceToKeyHash(nullptr, &hash, sample)) {
        std::memcpy(handle.value, hash.value, sizeof(handle.value));
        handle.isValid = DDS_BOOLEAN_TRUE;
    }
    return handle;
}

// 1 if the handle is nil or that of the sample.
bool isInstanceOf(const DDS_DataWriter &writer, const void *sample,
                  const DDS_InstanceHandle_t &handle)
{
    if (!handle.isValid) {
        return true;
    }
    const DDS_InstanceHandle_t actual = instanceOf(*writer.topic->type, sample);
    return DDS_InstanceHandle_equals(&actual, &handle);
}

// Hand the sample to the middleware, which waits for room in a full history. When all that it holds is acknowledged at
// once, the middleware's wait ends early and without room taken, so it is asked again.
DDS_ReturnCode_t writeWithRoom(DDS_DataWriter &self, const void *sample,
                               rtps::WriteParams &fastParams)
{
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    const std::chrono::nanoseconds allowed(
        DDS_Duration_to_nanoseconds(&self.qos.value.reliability.max_blocking_time));
    do {
        SampleCell cell = cellOf(sample);
        if (self.fast->write(&cell, fastParams)) {
            return DDS_RETCODE_OK;
        }
        if (!cell.isSerialized) {
            return DDS_RETCODE_ERROR;
        }
    } while (Clock::now() - start < allowed);
    return DDS_RETCODE_TIMEOUT;
}

DDS_ReturnCode_t writeSample(DDS_DataWriter &self, const void *sample, DDS_WriteParams_t &params)
{
    if (!self.fast->is_enabled()) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    if (!isInstanceOf(self, sample, params.handle)) {
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (ZUV_OSAPI_FAULT("dds.write")) {
        return DDS_RETCODE_ERROR;
    }
    rtps::WriteParams fastParams;
    fastParams.related_sample_identity(toFast(params.related_sample_identity));
    if (isTimeSet(params.source_timestamp)) {
        fastParams.source_timestamp(toFast(params.source_timestamp));
    }
    const DDS_ReturnCode_t code = writeWithRoom(self, sample, fastParams);
    if (code == DDS_RETCODE_OK && params.replace_auto) {
        params.identity = toOurs(fastParams.sample_identity());
    }
    return code;
}

// What goes out about an instance rather than as a sample.
enum class InstanceChange { kUnregister, kDispose };

DDS_ReturnCode_t changeInstance(DDS_DataWriter &self, const void *instance,
                                const DDS_WriteParams_t &params, InstanceChange change)
{
    if (!self.fast->is_enabled()) {
        return DDS_RETCODE_NOT_ENABLED;
    }
    if (!self.topic->type->hasKey()) {
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (instance == nullptr && !params.handle.isValid) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (instance != nullptr && !isInstanceOf(self, instance, params.handle)) {
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (ZUV_OSAPI_FAULT("dds.change_instance")) {
        return DDS_RETCODE_ERROR;
    }
    const DDS_InstanceHandle_t handle =
        params.handle.isValid ? params.handle : instanceOf(*self.topic->type, instance);
    SampleCell cell = cellOf(instance);
    const rtps::InstanceHandle_t fastHandle = toFast(handle);
    const bool isTimed = isTimeSet(params.source_timestamp);
    const eprosima::fastrtps::Time_t time(params.source_timestamp.sec,
                                          params.source_timestamp.nanosec);
    if (change == InstanceChange::kDispose) {
        return toOurs(isTimed ? self.fast->dispose_w_timestamp(&cell, fastHandle, time)
                              : self.fast->dispose(&cell, fastHandle));
    }
    return toOurs(isTimed ? self.fast->unregister_instance_w_timestamp(&cell, fastHandle, time)
                          : self.fast->unregister_instance(&cell, fastHandle));
}

DDS_WriteParams_t paramsOf(const DDS_InstanceHandle_t *handle, const DDS_Time_t *timestamp)
{
    DDS_WriteParams_t params = DDS_WRITEPARAMS_DEFAULT;
    if (handle != nullptr) {
        params.handle = *handle;
    }
    if (timestamp != nullptr) {
        params.source_timestamp = *timestamp;
    }
    return params;
}

DDS_ReturnCode_t reported(DDS_ReturnCode_t code, const char *what)
{
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "%s - Return code = %d", what,
                                static_cast<int>(code));
    }
    return code;
}

} // namespace

DDS_Entity *DDS_DataWriter_as_entity(DDS_DataWriter *self)
{
    return self;
}

DDS_Publisher *DDS_DataWriter_get_publisher(DDS_DataWriter *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->publisher;
}

DDS_Topic *DDS_DataWriter_get_topic(DDS_DataWriter *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->topic;
}

const char *DDS_DataWriter_get_type_nameI(DDS_DataWriter *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->topic->type->name.c_str();
}

DDS_ReturnCode_t DDS_DataWriter_get_qos(DDS_DataWriter *self, DDS_DataWriterQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_DataWriterQos_copy(qos, &self->qos.value);
}

DDS_ReturnCode_t DDS_DataWriter_set_listener(DDS_DataWriter *self,
                                             const DDS_DataWriterListener *listener,
                                             DDS_StatusMask mask)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.set_writer_listener")) {
        return reported(DDS_RETCODE_ERROR, "set writer listener");
    }
    self->adapter->setListener(listener, mask);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_DataWriter_get_publication_matched_status(DDS_DataWriter *self,
                                                               DDS_PublicationMatchedStatus *status)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(status)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.get_matched_status")) {
        return reported(DDS_RETCODE_ERROR, "get publication matched status");
    }
    // Clears the condition.
    fast::PublicationMatchedStatus seen;
    self->fast->get_publication_matched_status(seen);
    *status = self->adapter->takeMatchedStatus();
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t
DDS_DataWriter_get_offered_incompatible_qos_status(DDS_DataWriter *self,
                                                   DDS_OfferedIncompatibleQosStatus *status)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(status)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    fast::OfferedIncompatibleQosStatus seen;
    self->fast->get_offered_incompatible_qos_status(seen);
    *status = self->adapter->takeIncompatibleStatus();
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_DataWriter_wait_for_acknowledgments(DDS_DataWriter *self,
                                                         const DDS_Duration_t *maxWait)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(maxWait)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const eprosima::fastrtps::Duration_t wait =
        DDS_Duration_is_infinite(maxWait)
            ? eprosima::fastrtps::c_TimeInfinite
            : eprosima::fastrtps::Duration_t(maxWait->sec, maxWait->nanosec);
    const DDS_ReturnCode_t code = toOurs(self->fast->wait_for_acknowledgments(wait));
    // The middleware says "error" when the time is over.
    return code == DDS_RETCODE_ERROR ? DDS_RETCODE_TIMEOUT : code;
}

DDS_ReturnCode_t DDS_DataWriter_write_w_params_untyped(DDS_DataWriter *self, const void *sample,
                                                       DDS_WriteParams_t *params)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_ReturnCode_t code =
        guarded("write", DDS_RETCODE_ERROR, [&] { return writeSample(*self, sample, *params); });
    if (code == DDS_RETCODE_OK) {
        self->store->endLoanOf(sample);
    }
    return reported(code, "write");
}

DDS_ReturnCode_t DDS_DataWriter_write_w_timestamp_untyped(DDS_DataWriter *self, const void *sample,
                                                          const DDS_InstanceHandle_t *handle,
                                                          const DDS_Time_t *timestamp)
{
    DDS_WriteParams_t params = paramsOf(handle, timestamp);
    return DDS_DataWriter_write_w_params_untyped(self, sample, &params);
}

DDS_InstanceHandle_t DDS_DataWriter_register_instance_w_params_untyped(DDS_DataWriter *self,
                                                                       const void *instance,
                                                                       DDS_WriteParams_t *params)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(instance) || ZUV_DDS_IS_NULL(params)) {
        return DDS_HANDLE_NIL;
    }
    if (!self->topic->type->hasKey()) {
        return DDS_HANDLE_NIL;
    }
    const DDS_InstanceHandle_t handle = guarded("register instance", DDS_HANDLE_NIL, [&] {
        if (ZUV_OSAPI_FAULT("dds.register_instance")) {
            return DDS_HANDLE_NIL;
        }
        SampleCell cell = cellOf(instance);
        return toOurs(isTimeSet(params->source_timestamp)
                          ? self->fast->register_instance_w_timestamp(
                                &cell, eprosima::fastrtps::Time_t(params->source_timestamp.sec,
                                                                  params->source_timestamp.nanosec))
                          : self->fast->register_instance(&cell));
    });
    if (!handle.isValid) {
        reported(DDS_RETCODE_ERROR, "register instance");
    }
    return handle;
}

DDS_InstanceHandle_t
DDS_DataWriter_register_instance_w_timestamp_untyped(DDS_DataWriter *self, const void *instance,
                                                     const DDS_Time_t *timestamp)
{
    DDS_WriteParams_t params = paramsOf(nullptr, timestamp);
    return DDS_DataWriter_register_instance_w_params_untyped(self, instance, &params);
}

DDS_ReturnCode_t DDS_DataWriter_unregister_instance_w_params_untyped(DDS_DataWriter *self,
                                                                     const void *instance,
                                                                     DDS_WriteParams_t *params)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return reported(guarded("unregister instance", DDS_RETCODE_ERROR,
                            [&] {
                                return changeInstance(*self, instance, *params,
                                                      InstanceChange::kUnregister);
                            }),
                    "unregister instance");
}

DDS_ReturnCode_t
DDS_DataWriter_unregister_instance_w_timestamp_untyped(DDS_DataWriter *self, const void *instance,
                                                       const DDS_InstanceHandle_t *handle,
                                                       const DDS_Time_t *timestamp)
{
    DDS_WriteParams_t params = paramsOf(handle, timestamp);
    return DDS_DataWriter_unregister_instance_w_params_untyped(self, instance, &params);
}

DDS_ReturnCode_t DDS_DataWriter_dispose_w_params_untyped(DDS_DataWriter *self, const void *instance,
                                                         DDS_WriteParams_t *params)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return reported(
        guarded("dispose", DDS_RETCODE_ERROR,
                [&] { return changeInstance(*self, instance, *params, InstanceChange::kDispose); }),
        "dispose");
}

DDS_ReturnCode_t DDS_DataWriter_dispose_w_timestamp_untyped(DDS_DataWriter *self,
                                                            const void *instance,
                                                            const DDS_InstanceHandle_t *handle,
                                                            const DDS_Time_t *timestamp)
{
    DDS_WriteParams_t params = paramsOf(handle, timestamp);
    return DDS_DataWriter_dispose_w_params_untyped(self, instance, &params);
}

DDS_ReturnCode_t DDS_DataWriter_get_loan_untyped(DDS_DataWriter *self, void **sample)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    *sample = guarded<void *>("get loan", nullptr, [self] { return self->store->lendData(); });
    return *sample == nullptr ? reported(DDS_RETCODE_OUT_OF_RESOURCES, "get loan") : DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_DataWriter_discard_loan_untyped(DDS_DataWriter *self, void *sample)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return self->store->endLoanOf(sample)
               ? DDS_RETCODE_OK
               : reported(DDS_RETCODE_PRECONDITION_NOT_MET, "discard what is not on loan");
}

DDS_InstanceHandle_t DDS_DataWriter_lookup_instance_untyped(DDS_DataWriter *self,
                                                            const void *sample)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample)) {
        return DDS_HANDLE_NIL;
    }
    return instanceOf(*self->topic->type, sample);
}

DDS_ReturnCode_t DDS_DataWriter_get_key_value_untyped(DDS_DataWriter *self, void *sample,
                                                      const DDS_InstanceHandle_t *handle)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(handle)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return reported(zuv::dds::keyFromHandle(*self->topic->type, *handle, sample), "get key value");
}

DDS_Boolean DDS_DataWriter_wait_for_reader_of_participantI(DDS_DataWriter *self,
                                                           const DDS_GUID_t *guid,
                                                           const DDS_Duration_t *maxWait)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(guid)) {
        return DDS_BOOLEAN_FALSE;
    }
    return self->adapter->waitForReaderOf(*guid, maxWait) ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
}
