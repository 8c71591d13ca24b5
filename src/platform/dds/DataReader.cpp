#include "platform/dds/DataReader.h"

#include <algorithm>
#include <cstring>

#include <fastdds/dds/core/LoanableCollection.hpp>
#include <fastdds/dds/subscriber/DataReader.hpp>
#include <fastdds/dds/subscriber/SampleInfo.hpp>

#include "Conversions.hpp"
#include "EntityImpl.hpp"
#include "ReaderAdapter.hpp"
#include "ReaderObserver.hpp"
#include "Report.hpp"
#include "SampleStore.hpp"
#include "platform/osapi/Fault.h"

namespace fast = eprosima::fastdds::dds;
using zuv::dds::guarded;
using zuv::dds::HeldSample;
using zuv::dds::Loan;
using zuv::dds::SampleCell;
using zuv::dds::SampleStore;
using zuv::dds::toFast;
using zuv::dds::toOurs;

namespace zuv::dds
{
namespace
{

// Cells as the middleware wants them: a collection of pointers that owns its elements.
class CellCollection : public fast::LoanableCollection
{
public:
    explicit CellCollection(std::vector<SampleCell> &cells)
    {
        for (SampleCell &cell : cells) {
            pointers_.push_back(&cell);
        }
        elements_ = pointers_.data();
        maximum_ = static_cast<size_type>(pointers_.size());
    }

private:
    void resize(size_type) override {} // never asked to exceed its maximum

    std::vector<void *> pointers_;
};

// What one call hands to the middleware to be filled.
struct Scratch {
    Scratch(SampleStore &store, DDS_Long capacity)
        : cells(static_cast<std::size_t>(capacity)), collection(cells), infos(capacity)
    {
        for (SampleCell &cell : cells) {
            cell.store = &store;
        }
    }

    DDS_Long capacity() const { return static_cast<DDS_Long>(cells.size()); }
    DDS_Long length() const { return collection.length(); }
    void *takeData(DDS_Long index)
    {
        return std::exchange(cells[static_cast<std::size_t>(index)].sample, nullptr);
    }
    std::uint32_t payloadSize(DDS_Long index) const
    {
        return cells[static_cast<std::size_t>(index)].payloadSize;
    }

    std::vector<SampleCell> cells;
    CellCollection collection;
    fast::SampleInfoSeq infos;
};

constexpr DDS_Long kUsualCapacity = 32;

} // namespace

// Scratches kept for reuse; as many as there were calls at once.
class ScratchPool
{
public:
    explicit ScratchPool(SampleStore &store) : store_(store) {}

    std::unique_ptr<Scratch> get(DDS_Long capacity)
    {
        std::unique_ptr<Scratch> scratch;
        {
            const std::lock_guard lock(mutex_);
            if (!free_.empty()) {
                scratch = std::move(free_.back());
                free_.pop_back();
            }
        }
        if (scratch == nullptr || scratch->capacity() < capacity) {
            scratch = std::make_unique<Scratch>(store_, std::max(capacity, kUsualCapacity));
        }
        return scratch;
    }

    void put(std::unique_ptr<Scratch> scratch)
    {
        // Samples that were taken from the store and not handed on: refused ones.
        for (DDS_Long index = 0; index < scratch->capacity(); ++index) {
            if (void *const data = scratch->takeData(index)) {
                store_.returnData(data, scratch->payloadSize(index));
            } else if (index >= scratch->length()) {
                break; // cells are used in order
            }
        }
        scratch->collection.length(0);
        scratch->infos.length(0);
        const std::lock_guard lock(mutex_);
        free_.push_back(std::move(scratch));
    }

private:
    SampleStore &store_;
    std::mutex mutex_; // a leaf
    std::vector<std::unique_ptr<Scratch>> free_;
};

namespace
{

// A scratch for the length of a call.
class BorrowedScratch
{
public:
    BorrowedScratch(DDS_DataReader &reader, DDS_Long capacity)
        : pool_(*reader.scratchPool), scratch_(pool_.get(capacity))
    {
    }
    ~BorrowedScratch() { pool_.put(std::move(scratch_)); }
    BorrowedScratch(const BorrowedScratch &) = delete;
    BorrowedScratch &operator=(const BorrowedScratch &) = delete;
    Scratch *operator->() { return scratch_.get(); }
    Scratch &operator*() { return *scratch_; }

private:
    ScratchPool &pool_;
    std::unique_ptr<Scratch> scratch_;
};

DDS_ReturnCode_t fill(DDS_DataReader &reader, Scratch &scratch, DDS_Long maxSamples,
                      const DDS_ReadRequestI &request)
{
    fast::DataReader &from = *reader.fast;
    const auto sampleStates = static_cast<fast::SampleStateMask>(request.sample_states);
    const auto viewStates = static_cast<fast::ViewStateMask>(request.view_states);
    const auto instanceStates = static_cast<fast::InstanceStateMask>(request.instance_states);
    const auto handle = toFast(request.handle);
    auto &data = scratch.collection;
    auto &infos = scratch.infos;
    switch (request.selection) {
    case DDS_ONE_INSTANCE_SELECTION:
        return toOurs(request.take ? from.take_instance(data, infos, maxSamples, handle,
                                                        sampleStates, viewStates, instanceStates)
                                   : from.read_instance(data, infos, maxSamples, handle,
                                                        sampleStates, viewStates, instanceStates));
    case DDS_NEXT_INSTANCE_SELECTION:
        return toOurs(request.take
                          ? from.take_next_instance(data, infos, maxSamples, handle, sampleStates,
                                                    viewStates, instanceStates)
                          : from.read_next_instance(data, infos, maxSamples, handle, sampleStates,
                                                    viewStates, instanceStates));
    case DDS_ALL_INSTANCES_SELECTION:
        break;
    }
    return toOurs(
        request.take
            ? from.take(data, infos, maxSamples, sampleStates, viewStates, instanceStates)
            : from.read(data, infos, maxSamples, sampleStates, viewStates, instanceStates));
}

// The sample in a cell as one with a holder; null without memory.
HeldSample *holdCell(SampleStore &store, Scratch &scratch, DDS_Long index)
{
    void *data = scratch.takeData(index);
    if (data == nullptr) { // only the info counts
        data = store.getData();
        if (data == nullptr) {
            return nullptr;
        }
    }
    return store.hold(data, toOurs(scratch.infos[index]), scratch.payloadSize(index));
}

DDS_ReturnCode_t lendScratch(DDS_DataReader &reader, Scratch &scratch, void ***dataPtrArray,
                             DDS_Long *dataCount, DDS_SampleInfoSeq &infoSeq)
{
    SampleStore &store = *reader.store;
    Loan *const loan = store.openLoan(scratch.length());
    if (loan == nullptr) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    for (DDS_Long index = 0; index < scratch.length(); ++index) {
        HeldSample *const sample = holdCell(store, scratch, index);
        if (sample == nullptr) {
            store.closeLoan(*loan);
            return DDS_RETCODE_OUT_OF_RESOURCES;
        }
        SampleStore::append(*loan, *sample);
    }
    return lend(reader, *loan, dataPtrArray, dataCount, infoSeq);
}

bool copySample(DDS_DataReader &reader, const void *data, const DDS_SampleInfo &info, void *buffer,
                std::size_t elementSize, DDS_Long index, DDS_SampleInfoSeq &infoSeq)
{
    void *const element =
        static_cast<char *>(buffer) + elementSize * static_cast<std::size_t>(index);
    if (ZUV_OSAPI_FAULT("dds.copy_sample") ||
        (info.valid_data &&
         !reader.topic->type->plugin.copySample(reader.store->endpointData(), element, data)) ||
        !DDS_SampleInfoSeq_set_length(&infoSeq, index + 1)) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILED_TO_COPY_TEMPLATE, "sample of %s",
                                reader.topic->type->name.c_str());
        return false;
    }
    *DDS_SampleInfoSeq_get_reference(&infoSeq, index) = info;
    return true;
}

DDS_ReturnCode_t copyScratch(DDS_DataReader &reader, Scratch &scratch, void *buffer,
                             std::size_t elementSize, DDS_Long *dataCount,
                             DDS_SampleInfoSeq &infoSeq)
{
    for (DDS_Long index = 0; index < scratch.length(); ++index) {
        const SampleCell &cell = scratch.cells[static_cast<std::size_t>(index)];
        if (!copySample(reader, cell.sample, toOurs(scratch.infos[index]), buffer, elementSize,
                        index, infoSeq)) {
            return DDS_RETCODE_ERROR;
        }
        *dataCount = index + 1;
    }
    return DDS_RETCODE_OK;
}

// What a cell asks through to learn whether its sample is wanted.
struct WantedQuestion {
    Scratch &scratch;
    SamplePredicate isWanted;
    const void *context;

    static bool ask(const void *self)
    {
        const auto &question = *static_cast<const WantedQuestion *>(self);
        return question.isWanted(question.context, toOurs(question.scratch.infos[0]),
                                 question.scratch.payloadSize(0));
    }
};

} // namespace

void prepareReader(DDS_DataReader &reader)
{
    reader.scratchPool = std::make_unique<ScratchPool>(*reader.store);
}

void setObserver(DDS_DataReader &reader, ReaderObserver *observer)
{
    reader.adapter->setObserver(observer);
}

SampleStore &storeOf(DDS_DataReader &reader)
{
    return *reader.store;
}

std::uint64_t unreadSampleCount(DDS_DataReader &reader)
{
    return reader.fast->get_unread_count();
}

HeldSample *takeSample(DDS_DataReader &reader, SamplePredicate isWanted, const void *context)
{
    return guarded<HeldSample *>("take a sample", nullptr, [&]() -> HeldSample * {
        BorrowedScratch scratch(reader, 1);
        const WantedQuestion question = {*scratch, isWanted, context};
        SampleCell &cell = scratch->cells.front();
        cell.isWanted = isWanted == nullptr ? nullptr : WantedQuestion::ask;
        cell.context = &question;
        DDS_ReadRequestI request = {};
        request.sample_states = DDS_ANY_SAMPLE_STATE;
        request.view_states = DDS_ANY_VIEW_STATE;
        request.instance_states = DDS_ANY_INSTANCE_STATE;
        request.take = DDS_BOOLEAN_TRUE;
        const DDS_ReturnCode_t code = fill(reader, *scratch, 1, request);
        cell.isWanted = nullptr;
        cell.context = nullptr;
        return code == DDS_RETCODE_OK ? holdCell(*reader.store, *scratch, 0) : nullptr;
    });
}

DDS_ReturnCode_t lend(DDS_DataReader &reader, Loan &loan, void ***dataPtrArray, DDS_Long *dataCount,
                      DDS_SampleInfoSeq &infoSeq)
{
    if (ZUV_OSAPI_FAULT("dds.lend") ||
        !DDS_SampleInfoSeq_loan_contiguous(&infoSeq, loan.infos, loan.length, loan.length)) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "lend the sample infos");
        reader.store->closeLoan(loan);
        return DDS_RETCODE_ERROR;
    }
    DDS_SampleInfoSeq_set_read_tokenI(&infoSeq, &loan, &reader);
    *dataPtrArray = loan.data;
    *dataCount = loan.length;
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t checkReceiver(const DDS_SampleInfoSeq &infoSeq, DDS_Long maximum, bool isOwner,
                               const void *buffer, DDS_Long maxSamples, bool *isLoan)
{
    if (!DDS_SampleInfoSeq_has_ownership(&infoSeq) || (!isOwner && maximum > 0)) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "read into a sequence that holds a loan");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    *isLoan = maximum == 0;
    if (*isLoan && DDS_SampleInfoSeq_get_maximum(&infoSeq) > 0) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "lend infos to a sequence that has its own");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    if (!*isLoan && (maxSamples > maximum || buffer == nullptr)) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "read more samples than the sequence has room for");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    return DDS_RETCODE_OK;
}

bool copyOut(DDS_DataReader &reader, const HeldSample &sample, void *buffer,
             std::size_t elementSize, DDS_Long index, DDS_SampleInfoSeq &infoSeq)
{
    return copySample(reader, sample.data, sample.info, buffer, elementSize, index, infoSeq);
}

} // namespace zuv::dds

using namespace zuv::dds;

DDS_DataReader::DDS_DataReader() = default;
DDS_DataReader::~DDS_DataReader() = default;

namespace
{

// What one call yields at most when nobody says less.
constexpr DDS_Long kGreatestCapacity = 65536;

DDS_Long effectiveMaximum(const DDS_DataReader &reader, DDS_Long wished, bool isLoan,
                          DDS_Long sequenceMaximum)
{
    DDS_Long maximum = isLoan ? kGreatestCapacity : std::min(sequenceMaximum, kGreatestCapacity);
    const auto restrictTo = [&maximum](DDS_Long limit) {
        if (limit > 0) {
            maximum = std::min(maximum, limit);
        }
    };
    restrictTo(reader.qos.value.reader_resource_limits.max_samples_per_read);
    if (!reader.topic->type->hasKey()) { // a limited history never holds more
        restrictTo(reader.qos.value.resource_limits.max_samples);
    }
    return wished < 0 ? maximum : std::min(maximum, wished);
}

DDS_ReturnCode_t readOrTake(DDS_DataReader &self, bool isLoan, void ***dataPtrArray,
                            DDS_Long *dataCount, DDS_SampleInfoSeq &infoSeq, DDS_Long maximum,
                            void *dataBuffer, std::size_t dataSize, const DDS_ReadRequestI &request)
{
    if (maximum == 0) {
        return DDS_RETCODE_NO_DATA;
    }
    BorrowedScratch scratch(self, maximum);
    const DDS_ReturnCode_t code = fill(self, *scratch, maximum, request);
    if (code != DDS_RETCODE_OK) {
        return code;
    }
    return isLoan ? lendScratch(self, *scratch, dataPtrArray, dataCount, infoSeq)
                  : copyScratch(self, *scratch, dataBuffer, dataSize, dataCount, infoSeq);
}

} // namespace

DDS_Entity *DDS_DataReader_as_entity(DDS_DataReader *self)
{
    return self;
}

DDS_Subscriber *DDS_DataReader_get_subscriber(DDS_DataReader *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->subscriber;
}

DDS_TopicDescription *DDS_DataReader_get_topicdescription(DDS_DataReader *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->topic;
}

const char *DDS_DataReader_get_type_nameI(DDS_DataReader *self)
{
    return ZUV_DDS_IS_NULL(self) ? nullptr : self->topic->type->name.c_str();
}

DDS_UnsignedLongLong DDS_DataReader_get_refused_sample_countI(DDS_DataReader *self)
{
    return ZUV_DDS_IS_NULL(self) ? 0 : self->store->refusedCount();
}

DDS_ReturnCode_t DDS_DataReader_get_qos(DDS_DataReader *self, DDS_DataReaderQos *qos)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(qos)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    return DDS_DataReaderQos_copy(qos, &self->qos.value);
}

DDS_ReturnCode_t DDS_DataReader_set_listener(DDS_DataReader *self,
                                             const DDS_DataReaderListener *listener,
                                             DDS_StatusMask mask)
{
    if (ZUV_DDS_IS_NULL(self)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.set_reader_listener")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "set reader listener");
        return DDS_RETCODE_ERROR;
    }
    self->adapter->setListener(listener, mask);
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t
DDS_DataReader_get_subscription_matched_status(DDS_DataReader *self,
                                               DDS_SubscriptionMatchedStatus *status)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(status)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    if (ZUV_OSAPI_FAULT("dds.get_matched_status")) {
        ZUV_DDS_REPORT(&ZUV_LOG_GET_FAILURE_s, "subscription matched status");
        return DDS_RETCODE_ERROR;
    }
    // Clears the condition.
    fast::SubscriptionMatchedStatus seen;
    self->fast->get_subscription_matched_status(seen);
    *status = self->adapter->takeMatchedStatus();
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t
DDS_DataReader_get_requested_incompatible_qos_status(DDS_DataReader *self,
                                                     DDS_RequestedIncompatibleQosStatus *status)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(status)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    fast::RequestedIncompatibleQosStatus seen;
    self->fast->get_requested_incompatible_qos_status(seen);
    *status = self->adapter->takeIncompatibleStatus();
    return DDS_RETCODE_OK;
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_untypedI(
    DDS_DataReader *self, DDS_Boolean *isLoan, void ***dataPtrArray, DDS_Long *dataCount,
    DDS_SampleInfoSeq *infoSeq, DDS_Long /* dataSeqLength */, DDS_Long dataSeqMaximum,
    DDS_Boolean dataSeqHasOwnership, void *dataBuffer, DDS_UnsignedLong dataSize,
    const DDS_ReadRequestI *request)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(isLoan) || ZUV_DDS_IS_NULL(dataPtrArray) ||
        ZUV_DDS_IS_NULL(dataCount) || ZUV_DDS_IS_NULL(infoSeq) || ZUV_DDS_IS_NULL(request)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    *dataCount = 0;
    *dataPtrArray = nullptr;
    bool isLent = true;
    DDS_ReturnCode_t code = checkReceiver(*infoSeq, dataSeqMaximum, dataSeqHasOwnership != 0,
                                          dataBuffer, request->max_samples, &isLent);
    *isLoan = isLent ? DDS_BOOLEAN_TRUE : DDS_BOOLEAN_FALSE;
    if (code == DDS_RETCODE_OK) {
        code = ZUV_OSAPI_FAULT("dds.read_or_take")
                   ? DDS_RETCODE_ERROR
                   : guarded("read or take", DDS_RETCODE_OUT_OF_RESOURCES, [&] {
                         return readOrTake(
                             *self, isLent, dataPtrArray, dataCount, *infoSeq,
                             effectiveMaximum(*self, request->max_samples, isLent, dataSeqMaximum),
                             dataBuffer, dataSize, *request);
                     });
    }
    if (code != DDS_RETCODE_OK && code != DDS_RETCODE_NO_DATA) {
        ZUV_DDS_REPORT_TEMPLATE(&ZUV_LOG_FAILURE_TEMPLATE, "read or take - Return code = %d",
                                static_cast<int>(code));
    }
    return code;
}

DDS_ReturnCode_t DDS_DataReader_read_or_take_next_sample_untypedI(DDS_DataReader *self,
                                                                  void *sample,
                                                                  DDS_SampleInfo *info,
                                                                  DDS_Boolean take)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(info)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    DDS_ReadRequestI request = {};
    request.max_samples = 1;
    request.sample_states = DDS_NOT_READ_SAMPLE_STATE;
    request.view_states = DDS_ANY_VIEW_STATE;
    request.instance_states = DDS_ANY_INSTANCE_STATE;
    request.take = take;
    DDS_SampleInfoSeq infos = DDS_SEQUENCE_INITIALIZER;
    // The caller's info is the one element that the copy goes to.
    DDS_SampleInfoSeq_loan_contiguous(&infos, info, 0, 1);
    DDS_Long count = 0;
    const DDS_ReturnCode_t code =
        guarded("read or take the next sample", DDS_RETCODE_OUT_OF_RESOURCES, [&] {
            void **array = nullptr;
            return readOrTake(*self, false, &array, &count, infos, 1, sample, 0, request);
        });
    DDS_SampleInfoSeq_unloan(&infos);
    return code;
}

DDS_ReturnCode_t DDS_DataReader_return_loan_untypedI(DDS_DataReader *self, void **dataPtrArray,
                                                     DDS_Long dataCount, DDS_SampleInfoSeq *infoSeq)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(infoSeq)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    void *loanToken = nullptr;
    void *readerToken = nullptr;
    DDS_SampleInfoSeq_get_read_tokenI(infoSeq, &loanToken, &readerToken);
    auto *const loan = static_cast<Loan *>(loanToken);
    if (readerToken != self || !self->store->isOut(loan) || loan->data != dataPtrArray ||
        loan->length != dataCount) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "return what is no loan of this reader");
        return DDS_RETCODE_PRECONDITION_NOT_MET;
    }
    DDS_SampleInfoSeq_unloan(infoSeq);
    DDS_SampleInfoSeq_set_read_tokenI(infoSeq, nullptr, nullptr);
    self->store->closeLoan(*loan);
    // Giving back takes no memory. Whatever fails then, nothing stays lent that nobody could return.
    if (ZUV_OSAPI_FAULT("dds.return_loan")) {
        ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "return loan");
        return DDS_RETCODE_ERROR;
    }
    return DDS_RETCODE_OK;
}

DDS_InstanceHandle_t DDS_DataReader_lookup_instance_untyped(DDS_DataReader *self,
                                                            const void *sample)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample)) {
        return DDS_HANDLE_NIL;
    }
    return guarded("look an instance up", DDS_HANDLE_NIL, [&] {
        const SampleCell cell = {const_cast<void *>(sample)};
        return toOurs(self->fast->lookup_instance(&cell));
    });
}

DDS_ReturnCode_t DDS_DataReader_get_key_value_untyped(DDS_DataReader *self, void *sample,
                                                      const DDS_InstanceHandle_t *handle)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(handle)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    const DDS_ReturnCode_t code = keyFromHandle(*self->topic->type, *handle, sample);
    if (code != DDS_RETCODE_OK) {
        ZUV_DDS_REPORT(&ZUV_LOG_GET_FAILURE_s, "key value");
    }
    return code;
}

DDS_ReturnCode_t DDS_DataReader_add_to_remote_writer_queue_untyped(DDS_DataReader *self,
                                                                   const void *sample,
                                                                   const DDS_SampleInfo *info)
{
    if (ZUV_DDS_IS_NULL(self) || ZUV_DDS_IS_NULL(sample) || ZUV_DDS_IS_NULL(info)) {
        return DDS_RETCODE_BAD_PARAMETER;
    }
    ZUV_DDS_REPORT(&ZUV_LOG_ANY_FAILURE_s, "reach the queue of a remote writer");
    return DDS_RETCODE_UNSUPPORTED;
}

DDS_ReturnCode_t DDS_DataReader_is_data_consistent_untyped(DDS_DataReader * /* self */,
                                                           DDS_Boolean *isConsistent,
                                                           const void * /* sample */,
                                                           const DDS_SampleInfo * /* info */)
{
    if (isConsistent != nullptr) {
        *isConsistent = DDS_BOOLEAN_TRUE;
    }
    return DDS_RETCODE_OK;
}
