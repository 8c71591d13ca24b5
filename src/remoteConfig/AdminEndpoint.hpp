// The mechanics that the administration requester and replier share: what each does with the samples that
// the untyped endpoint yields. Only the types, the getter and the texts of the reports differ.
#ifndef ZUV_REMOTE_CONFIG_ADMIN_ENDPOINT_HPP
#define ZUV_REMOTE_CONFIG_ADMIN_ENDPOINT_HPP

#include <initializer_list>

#include "platform/log/DDSLog.h"
#include "platform/log/LogMessages.h"
#include "platform/talvane/Entity.h"
#include "platform/typesys/Sample.h"
#include "remoteConfig/ServiceAdminSupport.h"

namespace admin_endpoint
{

// The operations of the type that an endpoint reads.
struct RequestType {
    using Sample = ZUV_Service_Admin_CommandRequest;
    using Sequence = ZUV_Service_Admin_CommandRequestSeq;
    static constexpr auto getTypeCode = ZUV_Service_Admin_CommandRequest_get_typecode;
    static constexpr auto copyData = ZUV_Service_Admin_CommandRequestTypeSupport_copy_data;
    static constexpr auto getLength = ZUV_Service_Admin_CommandRequestSeq_get_length;
    static constexpr auto setLength = ZUV_Service_Admin_CommandRequestSeq_set_length;
    static constexpr auto getMaximum = ZUV_Service_Admin_CommandRequestSeq_get_maximum;
    static constexpr auto hasOwnership = ZUV_Service_Admin_CommandRequestSeq_has_ownership;
    static constexpr auto getBuffer = ZUV_Service_Admin_CommandRequestSeq_get_contiguous_bufferI;
    static constexpr auto loan = ZUV_Service_Admin_CommandRequestSeq_loan_discontiguous;
    static constexpr auto narrow = ZUV_Service_Admin_CommandRequestDataReader_narrow;
    static constexpr auto returnLoan = ZUV_Service_Admin_CommandRequestDataReader_return_loan;
};

struct ReplyType {
    using Sample = ZUV_Service_Admin_CommandReply;
    using Sequence = ZUV_Service_Admin_CommandReplySeq;
    static constexpr auto getTypeCode = ZUV_Service_Admin_CommandReply_get_typecode;
    static constexpr auto copyData = ZUV_Service_Admin_CommandReplyTypeSupport_copy_data;
    static constexpr auto getLength = ZUV_Service_Admin_CommandReplySeq_get_length;
    static constexpr auto setLength = ZUV_Service_Admin_CommandReplySeq_set_length;
    static constexpr auto getMaximum = ZUV_Service_Admin_CommandReplySeq_get_maximum;
    static constexpr auto hasOwnership = ZUV_Service_Admin_CommandReplySeq_has_ownership;
    static constexpr auto getBuffer = ZUV_Service_Admin_CommandReplySeq_get_contiguous_bufferI;
    static constexpr auto loan = ZUV_Service_Admin_CommandReplySeq_loan_discontiguous;
    static constexpr auto narrow = ZUV_Service_Admin_CommandReplyDataReader_narrow;
    static constexpr auto returnLoan = ZUV_Service_Admin_CommandReplyDataReader_return_loan;
};

// What a getter yields.
struct Samples {
    void **data = nullptr;
    DDS_Long count = 0;
    DDS_Boolean isLoan = DDS_BOOLEAN_TRUE;
};

// Where the caller wants copies: the parts of a sequence. Without a buffer the samples come on loan.
struct Destination {
    void *buffer = nullptr;
    DDS_Long length = 0;
    DDS_Long maximum = 0;
    DDS_Boolean hasOwnership = DDS_BOOLEAN_TRUE;
};

// What the reports of an operation name as their function: the operation that the caller called. A default
// argument of this value is the name of the function that leaves it out.
#define ZUV_CALLING_FUNCTION __builtin_FUNCTION()

inline void report(const ZUVLogMessage &message, const char *text,
                   const char *function = ZUV_CALLING_FUNCTION)
{
    if (ZUV_LOG_ENABLED(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_API)) {
        ZUVLogMessage_printWithParams(ZUV_LOG_BIT_EXCEPTION, DDS_LOG_MODULE_ID, DDS_SUBMODULE_API,
                                      __FILE__, __LINE__, function, &message, text);
    }
}

// Report a code under `text` unless it is the expected one or a success, and return it.
inline DDS_ReturnCode_t reported(DDS_ReturnCode_t code, DDS_ReturnCode_t expected, const char *text,
                                 const char *function = ZUV_CALLING_FUNCTION)
{
    if (code != DDS_RETCODE_OK && code != expected) {
        report(ZUV_LOG_ANY_FAILURE_s, text, function);
    }
    return code;
}

struct Argument {
    const void *value;
    const char *name;
};

// True, after a report of the first one, if one of the arguments is NULL.
inline bool isAnyMissing(std::initializer_list<Argument> arguments,
                         const char *function = ZUV_CALLING_FUNCTION)
{
    for (const Argument &argument : arguments) {
        if (argument.value == nullptr) {
            report(DDS_LOG_BAD_PARAMETER_s, argument.name, function);
            return true;
        }
    }
    return false;
}

// Get one sample with `get`(samples, destination, infos, maximum count) and copy it. Out of one that is taken and that nobody
// else sees the bodies are moved: it goes back to its pool with those that the caller's sample had.
template <typename Type, typename Get>
DDS_ReturnCode_t getSample(ZUV_Talvane_EntityUntypedImpl *impl, Get get,
                           typename Type::Sample *sample, DDS_SampleInfo *info, DDS_Boolean take,
                           const char *function)
{
    info->valid_data = DDS_BOOLEAN_FALSE;
    Samples samples;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    DDS_ReturnCode_t code = get(samples, Destination(), &infos, 1);
    if (code != DDS_RETCODE_OK) {
        return reported(code, DDS_RETCODE_NO_DATA, "get sample", function);
    }
    const bool mayMove =
        take != 0 && ZUV_Talvane_EntityUntypedImpl_is_sole_holderI(impl, &infos) != 0;
    auto *const got = static_cast<typename Type::Sample *>(samples.data[0]);
    code = mayMove ? DDS_TypeSupport_codeI(ZUVSample_handOver(Type::getTypeCode(), sample, got))
                   : Type::copyData(sample, got);
    if (code != DDS_RETCODE_OK) {
        report(ZUV_LOG_ANY_FAILURE_s, "copy sample", function);
    } else if (DDS_SampleInfoSeq_get_length(&infos) > 0) {
        *info = DDS_SampleInfoSeq_get(&infos, 0);
    }
    ZUV_Talvane_EntityUntypedImpl_return_loan(impl, samples.data, samples.count, &infos);
    return code;
}

// Complete the caller's sequence after a get: put a loan into it, or set its length for copies.
template <typename Type>
DDS_ReturnCode_t loanOrCopySamples(ZUV_Talvane_EntityUntypedImpl *impl, DDS_ReturnCode_t code,
                                   typename Type::Sequence *sequence, const Samples &samples,
                                   DDS_SampleInfoSeq *infos)
{
    if (code == DDS_RETCODE_NO_DATA) {
        Type::setLength(sequence, 0);
        return code;
    }
    if (code != DDS_RETCODE_OK) {
        return code;
    }
    if (!samples.isLoan) {
        return Type::setLength(sequence, samples.count) ? DDS_RETCODE_OK : DDS_RETCODE_ERROR;
    }
    if (!Type::loan(sequence, reinterpret_cast<typename Type::Sample **>(samples.data),
                    samples.count, samples.count)) {
        ZUV_Talvane_EntityUntypedImpl_return_loan(impl, samples.data, samples.count, infos);
        return DDS_RETCODE_ERROR;
    }
    return DDS_RETCODE_OK;
}

// Get samples for the caller's sequence, which is to be completed then.
template <typename Type, typename Get>
DDS_ReturnCode_t getSamples(Get get, Samples &samples, typename Type::Sequence *sequence,
                            DDS_SampleInfoSeq *infos, DDS_Long maxCount)
{
    const Destination destination = {Type::getBuffer(sequence), Type::getLength(sequence),
                                     Type::getMaximum(sequence), Type::hasOwnership(sequence)};
    return get(samples, destination, infos, maxCount);
}

// The two steps of a receive operation. `wait` and `take` give return codes.
template <typename Wait, typename Take>
DDS_ReturnCode_t receive(Wait wait, const char *waitFailure, Take take, const char *takeFailure,
                         const char *function = ZUV_CALLING_FUNCTION)
{
    const DDS_ReturnCode_t code = reported(wait(), DDS_RETCODE_TIMEOUT, waitFailure, function);
    return code != DDS_RETCODE_OK ? code
                                  : reported(take(), DDS_RETCODE_NO_DATA, takeFailure, function);
}

// The typed form of an endpoint's writer or reader. NULL after a report.
template <typename Entity, typename Narrow>
auto narrowEntity(Entity *entity, Narrow narrow, const char *what,
                  const char *function = ZUV_CALLING_FUNCTION) -> decltype(narrow(entity))
{
    if (entity == nullptr) {
        report(ZUV_LOG_GET_FAILURE_s, what, function);
        return nullptr;
    }
    return narrow(entity);
}

template <typename Type>
DDS_ReturnCode_t returnLoan(ZUV_Talvane_EntityUntypedImpl *impl, typename Type::Sequence *sequence,
                            DDS_SampleInfoSeq *infos, const char *function = ZUV_CALLING_FUNCTION)
{
    auto *const reader = narrowEntity(ZUV_Talvane_EntityUntypedImpl_get_datareader(impl),
                                      Type::narrow, "reader to return loan", function);
    return reader == nullptr ? DDS_RETCODE_ERROR
                             : reported(Type::returnLoan(reader, sequence, infos), DDS_RETCODE_OK,
                                        "return loan", function);
}

} // namespace admin_endpoint

#endif
