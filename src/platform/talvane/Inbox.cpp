#include "Inbox.hpp"

#include <algorithm>
#include <cstring>

#include "platform/osapi/Fault.h"

namespace zuv::talvane
{

using zuv::dds::HeldSample;
using zuv::dds::Loan;
using zuv::dds::SampleStore;

namespace
{

constexpr std::uint32_t kMaxSoonDecoded = 64 * 1024; // octets

} // namespace

Inbox::Inbox(DDS_DataReader &reader, DDS_DataWriter &writer)
    : reader_(reader), store_(zuv::dds::storeOf(reader))
{
    const DDS_InstanceHandle_t handle =
        DDS_Entity_get_instance_handle(DDS_DataWriter_as_entity(&writer));
    std::memcpy(writer_.value, handle.value, sizeof(writer_.value));
    replies_.reserve(kMaxReplies + 1);
    zuv::dds::setObserver(reader_, this);
}

Inbox::~Inbox()
{
    zuv::dds::setObserver(reader_, nullptr);
    for (const Reply &reply : replies_) {
        store_.release(*reply.sample);
    }
}

bool Inbox::isMine(const void *self, const DDS_SampleInfo &info, std::uint32_t payloadSize)
{
    const auto &inbox = *static_cast<const Inbox *>(self);
    const bool isWanted =
        info.valid_data && std::memcmp(info.related_sample_identity.writer_guid.value,
                                       inbox.writer_.value, sizeof(DDS_GUID_t)) == 0;
    // Waking up takes longer than decoding this, and both may happen at once.
    if (isWanted && payloadSize <= kMaxSoonDecoded) {
        inbox.arrived_.notify_all();
    }
    return isWanted;
}

void Inbox::onDataAvailable(DDS_DataReader &reader)
{
    const std::lock_guard lock(mutex_);
    while (HeldSample *const sample = zuv::dds::takeSample(reader, isMine, this)) {
        replies_.push_back({sample, false});
        bytes_ += sample->payloadSize;
        while (replies_.size() > kMaxReplies || (bytes_ > kMaxBytes && replies_.size() > 1)) {
            dropOldest();
        }
        arrived_.notify_all(); // nobody, if all have been told before
    }
}

bool Inbox::answers(const Reply &reply, const DDS_SampleIdentity_t *related) const
{
    return related == nullptr ||
           DDS_SampleIdentity_equals(&reply.sample->info.related_sample_identity, related);
}

bool Inbox::wait(DDS_Long minCount, const Deadline &deadline, const DDS_SampleIdentity_t *related)
{
    std::unique_lock<std::mutex> lock(mutex_);
    return waitUntil(arrived_, lock, deadline, [&] {
        const auto count = std::count_if(replies_.begin(), replies_.end(), [&](const Reply &reply) {
            return !reply.isRead && answers(reply, related);
        });
        return count >= minCount;
    });
}

void Inbox::markRead(Reply &reply)
{
    reply.isRead = true;
    reply.sample->info.sample_state = DDS_READ_SAMPLE_STATE;
}

void Inbox::remove(std::size_t index)
{
    bytes_ -= replies_[index].sample->payloadSize;
    replies_.erase(replies_.begin() + static_cast<std::ptrdiff_t>(index));
}

void Inbox::dropOldest()
{
    HeldSample &sample = *replies_.front().sample;
    remove(0);
    store_.release(sample);
}

DDS_ReturnCode_t Inbox::deliver(const Delivery &delivery)
{
    const std::lock_guard lock(mutex_);
    const auto available = static_cast<DDS_Long>(
        std::count_if(replies_.begin(), replies_.end(),
                      [&](const Reply &reply) { return answers(reply, delivery.related); }));
    const DDS_Long count =
        delivery.maxCount < 0 ? available : std::min(available, delivery.maxCount);
    if (count == 0) {
        return DDS_RETCODE_NO_DATA;
    }
    if (ZUV_OSAPI_FAULT("talvane.deliver")) {
        return DDS_RETCODE_ERROR;
    }
    return delivery.isLoan ? lend(delivery, count) : copy(delivery, count);
}

DDS_ReturnCode_t Inbox::lend(const Delivery &delivery, DDS_Long count)
{
    // With the loan open, nothing can fail any more but the last step, which closes it.
    Loan *const loan = store_.openLoan(count);
    if (loan == nullptr) {
        return DDS_RETCODE_OUT_OF_RESOURCES;
    }
    for (std::size_t index = 0; loan->length < count;) {
        Reply &reply = replies_[index];
        if (!answers(reply, delivery.related)) {
            ++index;
            continue;
        }
        HeldSample &sample = *reply.sample;
        SampleStore::append(*loan, sample);
        if (delivery.take) {
            remove(index); // the loan is its holder now
        } else {
            store_.addHolder(sample);
            markRead(reply);
            ++index;
        }
    }
    return zuv::dds::lend(reader_, *loan, delivery.dataPtrArray, delivery.dataCount,
                          *delivery.infoSeq);
}

DDS_ReturnCode_t Inbox::copy(const Delivery &delivery, DDS_Long count)
{
    DDS_Long copied = 0;
    for (std::size_t index = 0; copied < count;) {
        Reply &reply = replies_[index];
        if (!answers(reply, delivery.related)) {
            ++index;
            continue;
        }
        HeldSample &sample = *reply.sample;
        if (!zuv::dds::copyOut(reader_, sample, delivery.buffer, delivery.elementSize, copied,
                               *delivery.infoSeq)) {
            return DDS_RETCODE_ERROR;
        }
        ++copied;
        *delivery.dataCount = copied;
        if (delivery.take) {
            remove(index);
            store_.release(sample);
        } else {
            markRead(reply);
            ++index;
        }
    }
    return DDS_RETCODE_OK;
}

} // namespace zuv::talvane
