// The middleware as it is, without anything of ours: what a benchmark holds the shell and the service against.
#ifndef ZUV_BENCH_SUPPORT_BARE_ENDPOINTS_H
#define ZUV_BENCH_SUPPORT_BARE_ENDPOINTS_H

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace bench
{

// A sample: the octets of a whole payload.
using Octets = std::vector<std::uint8_t>;

// All of them stay on this machine.
enum class Transports {
    kProfile, // those of the loopback profile, as everybody's
    kUntuned  // the same kinds, with the sizes that the middleware has by itself
};

enum class Side {
    kAsking,   // writes requests and reads replies
    kAnswering // the other way round
};

// A participant with one writer and one reader, which have the QoS of a command's endpoints. Reading waits on a wait
// set. Endpoints of another name do not match them. Failures end the process. For one thread.
class BareEndpoints
{
public:
    BareEndpoints(int domainId, Side side, Transports transports = Transports::kProfile,
                  const std::string &name = "bare");
    ~BareEndpoints();
    BareEndpoints(const BareEndpoints &) = delete;
    BareEndpoints &operator=(const BareEndpoints &) = delete;

    // Wait until both endpoints have a counterpart. False after the time.
    bool waitForMatch(std::chrono::seconds patience);

    void write(Octets &sample);
    // Wait for a sample and take it. False after the time.
    bool receive(Octets &sample, std::chrono::seconds patience);

private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace bench

#endif
