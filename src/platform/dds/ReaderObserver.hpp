// What the rooms above need of a reader beside the DDS API: word of arriving data before everybody else, and samples
// one by one.
#ifndef ZUV_PLATFORM_DDS_READER_OBSERVER_HPP
#define ZUV_PLATFORM_DDS_READER_OBSERVER_HPP

#include <cstdint>

#include "platform/dds/DataReader.h"
#include "platform/dds/SampleStore.hpp"

namespace zuv::dds
{

class ReaderObserver
{
public:
    virtual ~ReaderObserver() = default;

    // Data have come. Runs on a thread of the middleware, which holds the reader's lock: locks that are taken here must
    // not be held while the reader is called.
    virtual void onDataAvailable(DDS_DataReader &reader) = 0;
};

// Exchange the reader's observer; null takes it away. When the call returns, the former one is not called any more.
// Not from a callback of the reader.
void setObserver(DDS_DataReader &reader, ReaderObserver *observer);

// Whether a sample is wanted, judged by its info. If so, its payload is decoded next.
using SamplePredicate = bool (*)(const void *context, const DDS_SampleInfo &info,
                                 std::uint32_t payloadSize);

// Take the first sample that is left and wanted; those before it that are not are dropped without being decoded. The
// caller is its holder, until he gives it to a loan or releases it in the reader's store. Null when there is none.
HeldSample *takeSample(DDS_DataReader &reader, SamplePredicate isWanted, const void *context);

SampleStore &storeOf(DDS_DataReader &reader);

// Lend the samples of an open loan to the caller of a read or take; `infoSeq` must own its elements and have none. On a
// failure the loan is closed.
DDS_ReturnCode_t lend(DDS_DataReader &reader, Loan &loan, void ***dataPtrArray, DDS_Long *dataCount,
                      DDS_SampleInfoSeq &infoSeq);

// Whether a sequence, told by its parts, is to get a loan (maximum 0) or copies; refuses one that can get neither.
DDS_ReturnCode_t checkReceiver(const DDS_SampleInfoSeq &infoSeq, DDS_Long maximum, bool isOwner,
                               const void *buffer, DDS_Long maxSamples, bool *isLoan);

// Copy a sample into element `index` of the caller's buffer, and its info to the same place of `infoSeq`, which grows
// by one.
bool copyOut(DDS_DataReader &reader, const HeldSample &sample, void *buffer,
             std::size_t elementSize, DDS_Long index, DDS_SampleInfoSeq &infoSeq);

// Samples that nobody has read or taken yet.
std::uint64_t unreadSampleCount(DDS_DataReader &reader);

} // namespace zuv::dds

#endif
