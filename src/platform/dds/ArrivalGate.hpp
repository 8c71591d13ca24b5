// What arrives for a participant before it can take it in.
//
// The middleware opens the sockets of a new participant, announces it, and only then connects the sockets with what
// reads from them. A peer that is quick answers in between; the answer was dropped, and as a peer answers a newcomer
// once, nothing was found until the peer's next periodic announcement. Behind a gate the threads of the sockets wait with
// what they have received, and the rest waits in the sockets' buffers, in order, until the participant is made.
#ifndef ZUV_PLATFORM_DDS_ARRIVAL_GATE_HPP
#define ZUV_PLATFORM_DDS_ARRIVAL_GATE_HPP

#include <atomic>
#include <memory>

namespace eprosima::fastdds::dds
{
class TransportConfigQos;
}

namespace zuv::dds
{

// Open once and for all. Any thread.
class ArrivalGate
{
public:
    void open()
    {
        isOpen_ = true;
        isOpen_.notify_all();
    }
    void pass() const { isOpen_.wait(false); }

private:
    std::atomic<bool> isOpen_{false};
};

// Put a gate behind the UDP transports of a participant that is to be made. They remain what they are in all else, also
// in type. Transports of other kinds, and those that the middleware chooses itself, are left as they are. The gate must be
// opened when the participant has been made; a transport that ends opens it itself.
std::shared_ptr<ArrivalGate> putGateBehind(eprosima::fastdds::dds::TransportConfigQos &transports);

} // namespace zuv::dds

#endif
