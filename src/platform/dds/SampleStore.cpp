#include "SampleStore.hpp"

#include <algorithm>
#include <type_traits>

#include "Report.hpp"
#include "platform/osapi/Fault.h"
#include "platform/typesys/Sample.h"

namespace zuv::dds
{
namespace
{

constexpr char kHeldSampleTag[] = "DDS HeldSample";
constexpr char kLoanTag[] = "DDS Loan";

} // namespace

std::unique_ptr<SampleStore> SampleStore::make(std::shared_ptr<RegisteredType> type,
                                               ZUVTypeEndpointKind kind, DDS_Long poolBufferMaxSize)
{
    std::unique_ptr<SampleStore> store(new SampleStore);
    store->type_ = std::move(type);
    store->poolBufferMaxSize_ = poolBufferMaxSize;
    const ZUVTypeEndpointInfo info = {kind, poolBufferMaxSize};
    const ZUVTypePlugin &plugin = store->type_->plugin;
    if (!ZUV_OSAPI_FAULT("dds.attach_endpoint")) {
        store->endpointData_ = plugin.onEndpointAttached(store->type_->participantData, &info);
    }
    if (store->endpointData_ == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_CREATION_FAILURE_s, "endpoint data of the type");
        return nullptr;
    }
    return store;
}

SampleStore::~SampleStore()
{
    while (loans_ != nullptr) {
        Loan *const loan = loans_;
        loans_ = loan->next;
        ZUVOsapiHeap_free(loan->samples);
        ZUVOsapiHeap_free(loan->data);
        ZUVOsapiHeap_free(loan->infos);
        ZUVOsapiHeap_free(loan);
    }
    while (freeSamples_ != nullptr) {
        HeldSample *const sample = freeSamples_;
        freeSamples_ = sample->next;
        ZUVOsapiHeap_free(sample);
    }
    if (endpointData_ != nullptr) {
        for (void *data : lentData_) {
            type_->plugin.returnSample(endpointData_, data);
        }
        type_->plugin.onEndpointDetached(endpointData_);
    }
}

void *SampleStore::getData()
{
    void *const data =
        ZUV_OSAPI_FAULT("dds.get_sample") ? nullptr : type_->plugin.getSample(endpointData_);
    if (data == nullptr) {
        ZUV_DDS_REPORT(&ZUV_LOG_GET_FAILURE_s, "sample of the pool");
    }
    return data;
}

void SampleStore::returnData(void *data, std::uint32_t payloadSize)
{
    if (poolBufferMaxSize_ != DDS_LENGTH_UNLIMITED &&
        payloadSize > static_cast<std::uint32_t>(poolBufferMaxSize_)) {
        const DDS_TypeCode *const typeCode = type_->plugin.typeCode;
        ZUVSample_finalizeEx(typeCode, data, DDS_BOOLEAN_TRUE);
        // Without memory the members stay zeros, which the next use bears.
        ZUVSample_initializeEx(typeCode, data, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE);
    }
    type_->plugin.returnSample(endpointData_, data);
}

void *SampleStore::lendData()
{
    const std::lock_guard lock(mutex_);
    lentData_.reserve(lentData_.size() + 1);
    void *const data = getData();
    if (data != nullptr) {
        lentData_.push_back(data);
        hasLentData_ = true;
    }
    return data;
}

bool SampleStore::endLoanOf(const void *data)
{
    if (!hasLentData_) {
        return false;
    }
    void *lent = nullptr;
    {
        const std::lock_guard lock(mutex_);
        const auto known = std::find(lentData_.begin(), lentData_.end(), data);
        if (known == lentData_.end()) {
            return false;
        }
        lent = *known;
        lentData_.erase(known);
        hasLentData_ = !lentData_.empty();
    }
    returnData(lent, 0);
    return true;
}

HeldSample *SampleStore::hold(void *data, const DDS_SampleInfo &info, std::uint32_t payloadSize)
{
    HeldSample *sample = nullptr;
    {
        const std::lock_guard lock(mutex_);
        if (freeSamples_ != nullptr) {
            sample = freeSamples_;
            freeSamples_ = sample->next;
        }
    }
    if (sample == nullptr) {
        sample = heapNew<HeldSample>(kHeldSampleTag);
        if (sample == nullptr) {
            ZUV_DDS_REPORT(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                           static_cast<int>(sizeof(HeldSample)));
            returnData(data, payloadSize);
            return nullptr;
        }
    }
    *sample = {data, info, payloadSize, 1, nullptr};
    return sample;
}

void SampleStore::addHolder(HeldSample &sample)
{
    const std::lock_guard lock(mutex_);
    ++sample.holders;
}

void SampleStore::release(HeldSample &sample)
{
    {
        const std::lock_guard lock(mutex_);
        if (--sample.holders > 0) {
            return;
        }
    }
    returnData(sample.data, sample.payloadSize);
    const std::lock_guard lock(mutex_);
    sample.next = freeSamples_;
    freeSamples_ = &sample;
}

bool SampleStore::ensureCapacity(Loan &loan, DDS_Long capacity)
{
    if (loan.capacity >= capacity) {
        return true;
    }
    const auto room = static_cast<std::size_t>(capacity);
    const auto reallocate = [room](auto *&array) {
        void *block = array;
        if (!ZUVOsapiHeap_reallocate(&block, room * sizeof(*array), kLoanTag)) {
            return false;
        }
        array = static_cast<std::remove_reference_t<decltype(array)>>(block);
        return true;
    };
    if (!reallocate(loan.samples) || !reallocate(loan.data) || !reallocate(loan.infos)) {
        ZUV_DDS_REPORT(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, static_cast<int>(capacity),
                       static_cast<int>(sizeof(DDS_SampleInfo)));
        return false;
    }
    loan.capacity = capacity;
    return true;
}

Loan *SampleStore::openLoan(DDS_Long capacity)
{
    Loan *loan = nullptr;
    {
        const std::lock_guard lock(mutex_);
        for (loan = loans_; loan != nullptr && loan->isOut; loan = loan->next) {
        }
        if (loan != nullptr) {
            loan->isOut = true;
        }
    }
    if (loan == nullptr) {
        loan = heapNew<Loan>(kLoanTag);
        if (loan == nullptr) {
            ZUV_DDS_REPORT(&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d,
                           static_cast<int>(sizeof(Loan)));
            return nullptr;
        }
        loan->isOut = true;
        const std::lock_guard lock(mutex_);
        loan->next = loans_;
        loans_ = loan;
    }
    loan->length = 0;
    if (!ensureCapacity(*loan, capacity)) {
        closeLoan(*loan);
        return nullptr;
    }
    return loan;
}

void SampleStore::append(Loan &loan, HeldSample &sample)
{
    loan.samples[loan.length] = &sample;
    loan.data[loan.length] = sample.data;
    loan.infos[loan.length] = sample.info;
    ++loan.length;
}

void SampleStore::closeLoan(Loan &loan)
{
    for (DDS_Long index = 0; index < loan.length; ++index) {
        release(*loan.samples[index]);
    }
    const std::lock_guard lock(mutex_);
    loan.length = 0;
    loan.isOut = false;
}

bool SampleStore::isSoleHolder(const Loan &loan) const
{
    const std::lock_guard lock(mutex_);
    return std::all_of(loan.samples, loan.samples + loan.length,
                       [](const HeldSample *sample) { return sample->holders == 1; });
}

bool SampleStore::isOut(const Loan *loan) const
{
    const std::lock_guard lock(mutex_);
    for (const Loan *known = loans_; known != nullptr; known = known->next) {
        if (known == loan) {
            return known->isOut;
        }
    }
    return false;
}

bool SampleStore::hasLoansOut() const
{
    const std::lock_guard lock(mutex_);
    for (const Loan *loan = loans_; loan != nullptr; loan = loan->next) {
        if (loan->isOut) {
            return true;
        }
    }
    return false;
}

} // namespace zuv::dds
