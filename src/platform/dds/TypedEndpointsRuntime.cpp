#include "platform/dds/TypedEndpointsRuntime.h"

#include "EntityImpl.hpp"
#include "Report.hpp"
#include "platform/dds/DomainParticipant.h"
#include "platform/osapi/Fault.h"
#include "platform/typesys/Sample.h"

namespace
{

// Whether an endpoint's type is `type`, after a report when it is not.
bool isOfType(const zuv::dds::RegisteredType &registered, const DDS_TypeCode *type)
{
    if (registered.plugin.typeCode == type) {
        return true;
    }
    ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "narrow an endpoint of %s",
                            registered.name.c_str());
    return false;
}

// Hand what a read or take yielded over to the caller's sequence.
DDS_ReturnCode_t loanOrCopy(DDS_DataReader *self, DDS_ReturnCode_t code, bool isLoan, void **data,
                            DDS_Long count, ZUVSequence *samples, const ZUVSequenceElement &element,
                            DDS_SampleInfoSeq *infos)
{
    if (code == DDS_RETCODE_NO_DATA) {
        ZUVSequence_setLength(samples, &element, 0);
        return code;
    }
    if (code != DDS_RETCODE_OK) {
        return code;
    }
    if (isLoan) {
        if (!ZUVSequence_loanDiscontiguous(samples, data, count, count)) {
            DDS_DataReader_return_loan_untypedI(self, data, count, infos);
            return DDS_RETCODE_ERROR;
        }
        return code;
    }
    return ZUVSequence_setLength(samples, &element, count) ? DDS_RETCODE_OK : DDS_RETCODE_ERROR;
}

} // namespace

DDS_ReturnCode_t DDS_TypeSupport_register_typeI(DDS_DomainParticipant *participant,
                                                const char *typeName,
                                                struct ZUVTypePlugin *(*newPlugin)(void),
                                                void (*deletePlugin)(struct ZUVTypePlugin *))
{
    if (ZUV_DDS_IS_NULL(participant)) {
        return DDS_RETCODE_ERROR;
    }
    ZUVTypePlugin *const plugin = ZUV_OSAPI_FAULT("dds.new_plugin") ? nullptr : newPlugin();
    if (plugin == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "type plug-in");
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    const DDS_ReturnCode_t code =
        DDS_DomainParticipant_register_type(participant, typeName, plugin);
    deletePlugin(plugin);
    return code;
}

DDS_ReturnCode_t DDS_TypeSupport_codeI(DDS_Boolean success)
{
    return success ? DDS_RETCODE_OK : DDS_RETCODE_ERROR;
}

DDS_ReturnCode_t DDS_TypeSupport_delete_dataI(const DDS_TypeCode *type, void *sample,
                                              DDS_Boolean deletePointers)
{
    if (ZUV_DDS_IS_NULL(sample)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    ZUVSample_deleteEx(type, sample, deletePointers);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_TypeSupport_delete_data_w_paramsI(const DDS_TypeCode *type, void *sample,
                                                       const DDS_TypeDeallocationParams_t *params)
{
    if (ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    ZUVSample_deleteWithParams(type, sample, params);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_TypeSupport_finalize_dataI(const DDS_TypeCode *type, void *sample,
                                                DDS_Boolean deletePointers)
{
    if (ZUV_DDS_IS_NULL(sample)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    ZUVSample_finalizeEx(type, sample, deletePointers);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_TypeSupport_finalize_data_w_paramsI(const DDS_TypeCode *type, void *sample,
                                                         const DDS_TypeDeallocationParams_t *params)
{
    if (ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(params)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    ZUVSample_finalizeWithParams(type, sample, params);
    return DDS_RETCODE_OK;
}

DDS_DataWriter *DDS_DataWriter_narrowI(DDS_DataWriter *writer, const DDS_TypeCode *type)
{
    if (ZUV_DDS_IS_NULL(writer)) {
        return nullptr;
    }
    return isOfType(*writer->topic->type, type) ? writer : nullptr;
}

DDS_DataReader *DDS_DataReader_narrowI(DDS_DataReader *reader, const DDS_TypeCode *type)
{
    if (ZUV_DDS_IS_NULL(reader)) {
        return nullptr;
    }
    return isOfType(*reader->topic->type, type) ? reader : nullptr;
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_sequenceI(
    DDS_DataReader *self, ZUVSequence *samples, DDS_UnsignedLong elementSize,
    const DDS_TypeCode *type, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,
    DDS_SampleStateMask sampleStates, DDS_ViewStateMask viewStates,
    DDS_InstanceStateMask instanceStates, DDS_InstanceSelectionKindI selection,
    const DDS_InstanceHandle_t *handle, DDS_Boolean take)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(samples) || ZUV_DDS_IS_NULL(infos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_ReadRequestI request = {maxSamples, sampleStates,
                                      viewStates, instanceStates,
                                      selection,  handle == nullptr ? DDS_HANDLE_NIL : *handle,
                                      take};
    DDS_Boolean isLoan = DDS_BOOLEAN_TRUE;
    void **data = nullptr;
    DDS_Long count = 0;
    const DDS_ReturnCode_t code = DDS_DataReader_read_or_take_untypedI(
        self, &isLoan, &data, &count, infos, ZUVSequence_getLength(samples),
        ZUVSequence_getMaximum(samples), ZUVSequence_hasOwnership(samples),
        ZUVSequence_getContiguousBuffer(samples), elementSize, &request);
    const ZUVSequenceElement element = {elementSize, type};
    return loanOrCopy(self, code, isLoan != 0, data, count, samples, element, infos);
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_sequence_w_conditionI(
    DDS_DataReader *self, ZUVSequence *samples, DDS_UnsignedLong elementSize,
    const DDS_TypeCode *type, DDS_SampleInfoSeq *infos, DDS_Long maxSamples,
    DDS_InstanceSelectionKindI selection, const DDS_InstanceHandle_t *handle,
    DDS_ReadCondition *condition, DDS_Boolean take)
{
    if (condition != nullptr) {
        ZUV_DDS_REPORT(&DDS_LOG_BAD_PARAMETER_s, "condition");
        return DDS_RETCODE_UNSUPPORTED;
    }
    return DDS_DataReader_read_or_take_sequenceI(
        self, samples, elementSize, type, infos, maxSamples, DDS_ANY_SAMPLE_STATE,
        DDS_ANY_VIEW_STATE, DDS_ANY_INSTANCE_STATE, selection, handle, take);
}

DDS_ReturnCode_t DDS_DataReader_return_loan_sequenceI(DDS_DataReader *self, ZUVSequence *samples,
                                                      DDS_SampleInfoSeq *infos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(samples) || ZUV_DDS_IS_NULL(infos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUVSequence_hasOwnership(samples) && DDS_SampleInfoSeq_has_ownership(infos)) {
        return DDS_RETCODE_OK;
    }
    const DDS_ReturnCode_t code = DDS_DataReader_return_loan_untypedI(
        self, ZUVSequence_getDiscontiguousBuffer(samples), ZUVSequence_getLength(samples), infos);
    if (code == DDS_RETCODE_OK) {
        ZUVSequence_unloan(samples);
    }
    return code;
}
