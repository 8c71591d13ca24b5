// Keeps word of data from a reader's listener until the requester or replier around the reader is whole.
#ifndef ZUV_PLATFORM_TALVANE_LISTENER_GATE_HPP
#define ZUV_PLATFORM_TALVANE_LISTENER_GATE_HPP

#include <atomic>

#include "platform/dds/DataReader.h"

namespace zuv::talvane
{

// The listener is called as often as data came, and by one thread at a time. It never waits for another thread:
// the middleware's holds the reader's lock.
class ListenerGate
{
public:
    explicit ListenerGate(const DDS_DataReaderListener &listener) : listener_(listener) {}
    ListenerGate(const ListenerGate &) = delete;
    ListenerGate &operator=(const ListenerGate &) = delete;

    // What the reader is made with. The gate must outlive it.
    DDS_DataReaderListener readerListener()
    {
        DDS_DataReaderListener listener = {};
        listener.listener_data = this;
        listener.on_data_available = [](void *self, DDS_DataReader *reader) {
            static_cast<ListenerGate *>(self)->ring(reader);
        };
        return listener;
    }

    // Once. What came before is told on this thread, and with it what comes meanwhile.
    void open(DDS_DataReader *reader)
    {
        if (untold_.fetch_sub(1) > 1) {
            tell(reader);
        }
    }

private:
    void ring(DDS_DataReader *reader)
    {
        if (untold_.fetch_add(1) == 0) {
            tell(reader);
        }
    }

    void tell(DDS_DataReader *reader)
    {
        do {
            listener_.on_data_available(listener_.listener_data, reader);
        } while (untold_.fetch_sub(1) > 1);
    }

    const DDS_DataReaderListener listener_;
    std::atomic<int> untold_{1}; // times that data came, and one more while the gate is closed
};

} // namespace zuv::talvane

#endif
