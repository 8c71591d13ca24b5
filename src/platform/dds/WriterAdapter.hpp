// A writer's listener in the middleware: keeps the statuses, calls the user's listener, and knows which readers are
// matched.
#ifndef ZUV_PLATFORM_DDS_WRITER_ADAPTER_HPP
#define ZUV_PLATFORM_DDS_WRITER_ADAPTER_HPP

#include <condition_variable>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/dds/DataWriter.h"

namespace eprosima::fastdds::dds
{
class DataWriterListener;
}

namespace zuv::dds
{

class WriterAdapter
{
public:
    WriterAdapter(DDS_DataWriter &writer, const DDS_DataWriterListener *listener,
                  DDS_StatusMask mask);
    ~WriterAdapter();
    WriterAdapter(const WriterAdapter &) = delete;
    WriterAdapter &operator=(const WriterAdapter &) = delete;

    eprosima::fastdds::dds::DataWriterListener *fastListener();
    void setListener(const DDS_DataWriterListener *listener, DDS_StatusMask mask);
    // Once, when the writer is whole: the listener is called from here on, and first for what has happened already.
    void open();

    DDS_PublicationMatchedStatus takeMatchedStatus();
    DDS_OfferedIncompatibleQosStatus takeIncompatibleStatus();

    // Whether a reader of the participant that `guid` belongs to is matched; waits for it if told to.
    bool waitForReaderOf(const DDS_GUID_t &guid, const DDS_Duration_t *maxWait);

private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

} // namespace zuv::dds

#endif
