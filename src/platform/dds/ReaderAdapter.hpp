// A reader's listener in the middleware: keeps the statuses, calls the user's listener, and tells an observer within
// the platform that data have come.
#ifndef ZUV_PLATFORM_DDS_READER_ADAPTER_HPP
#define ZUV_PLATFORM_DDS_READER_ADAPTER_HPP

#include <memory>
#include <mutex>

#include "platform/dds/DataReader.h"
#include "platform/dds/ReaderObserver.hpp"

namespace eprosima::fastdds::dds
{
class DataReaderListener;
}

namespace zuv::dds
{

class ReaderAdapter
{
public:
    ReaderAdapter(DDS_DataReader &reader, const DDS_DataReaderListener *listener,
                  DDS_StatusMask mask);
    ~ReaderAdapter();
    ReaderAdapter(const ReaderAdapter &) = delete;
    ReaderAdapter &operator=(const ReaderAdapter &) = delete;

    eprosima::fastdds::dds::DataReaderListener *fastListener();
    void setListener(const DDS_DataReaderListener *listener, DDS_StatusMask mask);
    // Once, when the reader is whole: the listener is called from here on, and first for what has happened already.
    void open();
    void setObserver(ReaderObserver *observer);

    DDS_SubscriptionMatchedStatus takeMatchedStatus();
    DDS_RequestedIncompatibleQosStatus takeIncompatibleStatus();

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace zuv::dds

#endif
