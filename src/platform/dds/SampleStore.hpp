// Samples that leave a reader, or are lent by a writer: where they come from, who holds them, and how they return.
#ifndef ZUV_PLATFORM_DDS_SAMPLE_STORE_HPP
#define ZUV_PLATFORM_DDS_SAMPLE_STORE_HPP

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/dds/RegisteredType.hpp"
#include "platform/dds/SampleInfo.h"

namespace zuv::dds
{

// A sample out of a reader. Whoever holds one has counted himself in; the last one lets it go back to the pool.
struct HeldSample {
    void *data = nullptr;
    DDS_SampleInfo info = {};
    std::uint32_t payloadSize = 0;
    std::uint32_t holders = 0;
    HeldSample *next = nullptr; // in the free list
};

// Samples in the hands of a caller, with the arrays that he sees.
struct Loan {
    HeldSample **samples = nullptr;
    void **data = nullptr;
    DDS_SampleInfo *infos = nullptr;
    DDS_Long capacity = 0;
    DDS_Long length = 0;
    bool isOut = false;
    Loan *next = nullptr; // in the list of all
};

// Its lock is a leaf: no code of others, and nothing of the middleware, is called with it held. Samples, records and
// arrays are kept for reuse, so that a steady stream of samples allocates nothing.
class SampleStore
{
public:
    // Null, after a report, when the type does not attach to the endpoint.
    static std::unique_ptr<SampleStore> make(std::shared_ptr<RegisteredType> type,
                                             ZUVTypeEndpointKind kind, DDS_Long poolBufferMaxSize);
    ~SampleStore();
    SampleStore(const SampleStore &) = delete;
    SampleStore &operator=(const SampleStore &) = delete;

    const RegisteredType &type() const { return *type_; }
    ZUVTypeEndpointData *endpointData() const { return endpointData_; }

    // A sample of the pool, with the values of its last use; null, after a report, without memory.
    void *getData();
    // `payloadSize`: above the pool's bound, the memory behind the sample is released.
    void returnData(void *data, std::uint32_t payloadSize);

    // The same for a writer that lends a sample to be filled, and the end of that: false for a sample that is not lent.
    void *lendData();
    bool endLoanOf(const void *data);

    // A record for `data`, which is held once; null, after a report, without memory: then `data` is back in the pool.
    HeldSample *hold(void *data, const DDS_SampleInfo &info, std::uint32_t payloadSize);
    void addHolder(HeldSample &sample);
    void release(HeldSample &sample);

    // An empty loan with room for `capacity` samples; null, after a report, without memory.
    Loan *openLoan(DDS_Long capacity);
    // Room for more; false, after a report, without memory.
    static bool ensureCapacity(Loan &loan, DDS_Long capacity);
    // Append a sample whose holder the loan becomes; there must be room.
    static void append(Loan &loan, HeldSample &sample);
    // End a loan and release what it holds.
    void closeLoan(Loan &loan);
    // Whether nobody else holds a sample of the loan.
    bool isSoleHolder(const Loan &loan) const;
    // The loan, if it is one of this store and out.
    bool isOut(const Loan *loan) const;
    bool hasLoansOut() const;

    // Payloads that were no valid samples.
    void countRefused() { refusedCount_.fetch_add(1, std::memory_order_relaxed); }
    std::uint64_t refusedCount() const { return refusedCount_.load(std::memory_order_relaxed); }

private:
    SampleStore() = default;

    std::shared_ptr<RegisteredType> type_;
    ZUVTypeEndpointData *endpointData_ = nullptr;
    DDS_Long poolBufferMaxSize_ = DDS_LENGTH_UNLIMITED;
    std::atomic<std::uint64_t> refusedCount_{0};

    mutable std::mutex mutex_;
    HeldSample *freeSamples_ = nullptr;
    Loan *loans_ = nullptr;        // all, in and out
    std::vector<void *> lentData_; // a writer's
    std::atomic<bool> hasLentData_{false};
};

} // namespace zuv::dds

#endif
