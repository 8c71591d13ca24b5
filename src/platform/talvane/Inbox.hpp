// Where a requester's replies wait for whoever asks for them.
#ifndef ZUV_PLATFORM_TALVANE_INBOX_HPP
#define ZUV_PLATFORM_TALVANE_INBOX_HPP

#include <vector>

#include "EntityImpl.hpp"
#include "HandOffMutex.hpp"

namespace zuv::talvane
{

// Replies are moved here as soon as they arrive, so that the reader's history, which is short and keeps all, never fills
// up and never holds a service's writer. Replies to the requests of others are dropped undecoded. What nobody takes is
// bounded in number and in bytes: the oldest replies give way.
class Inbox final : public zuv::dds::ReaderObserver
{
public:
    static constexpr std::size_t kMaxReplies = 256;
    static constexpr std::size_t kMaxBytes =
        64 * 1024 * 1024; // serialized; one reply may exceed it

    // `writer` is that of the requests.
    Inbox(DDS_DataReader &reader, DDS_DataWriter &writer);
    ~Inbox() override;

    void onDataAvailable(DDS_DataReader &reader) override;

    // Wait until so many replies that were not read are here; to any request for a null `related`.
    bool wait(DDS_Long minCount, const Deadline &deadline, const DDS_SampleIdentity_t *related);

    // What a read or take asks for and gives; see ZUV_Talvane_RequesterUntypedImpl_get_reply_loaned.
    struct Delivery {
        void ***dataPtrArray;
        DDS_Long *dataCount;
        DDS_SampleInfoSeq *infoSeq;
        bool isLoan;
        void *buffer; // of a caller that wants copies
        std::size_t elementSize;
        DDS_Long maxCount; // DDS_LENGTH_UNLIMITED, or what there is room for
        const DDS_SampleIdentity_t *related;
        bool take;
    };
    DDS_ReturnCode_t deliver(const Delivery &delivery);

private:
    struct Reply {
        zuv::dds::HeldSample *sample;
        bool isRead;
    };

    static bool isMine(const void *self, const DDS_SampleInfo &info, std::uint32_t payloadSize);
    bool answers(const Reply &reply, const DDS_SampleIdentity_t *related) const;
    DDS_ReturnCode_t lend(const Delivery &delivery, DDS_Long count);
    DDS_ReturnCode_t copy(const Delivery &delivery, DDS_Long count);
    void markRead(Reply &reply);
    void remove(std::size_t index);
    void dropOldest();

    DDS_DataReader &reader_;
    zuv::dds::SampleStore &store_;
    DDS_GUID_t writer_;

    // Taken while the middleware holds the reader's lock: nobody but its thread, which has that lock already, calls the
    // reader with this one held.
    HandOffMutex mutex_;
    mutable std::condition_variable arrived_; // told before the reply is there, if that is soon
    std::vector<Reply> replies_;              // oldest first
    std::size_t bytes_ = 0;
};

} // namespace zuv::talvane

#endif
