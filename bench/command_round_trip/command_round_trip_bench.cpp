// How long a command takes from the client to a service in another process and back, beside an echo of the same octets
// on the middleware alone, with a wait set on both sides and the same transports and QoS. The service is a replier in a
// loop or, where that is said, a whole server with its dispatcher. For a large command the echo has the transports that
// the middleware has by itself.
// Both take turns in short blocks, now one first and now the other, so that they meet the same machine. Its moods and
// the places where processes come to lie sway the slowest hundredth most, so that it is told of all round trips of many
// processes at once.
// command_round_trip_bench [PAIRS [noise]]: how often the services are started anew; with "noise" a second echo stands
// in for the command, which shows how far the ratios swing by themselves. Fails when a ratio is above its limit.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "remoteConfig/RemoteConfigClient.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"
#include "support/BareEndpoints.h"
#include "support/Loopback.h"
#include "support/Process.h"
#include "support/Ratio.h"

namespace
{

using Clock = std::chrono::steady_clock;

constexpr const char *kService = "S1";
constexpr const char *kEntity = "domain_route.dr1::session.s1";
constexpr std::chrono::seconds kPatience{10};

struct Case {
    const char *name;
    unsigned int payloadSize; // of a serialized request
    bench::Transports echoTransports;
    int pairCount; // services that are started anew, of both kinds
    int blockSize; // round trips
    double medianLimit;
    double tailLimit;
    bool isWholeServer = false; // in place of the replier alone
};

constexpr Case kCases[] = {
    {"200 B", 200, bench::Transports::kProfile, 80, 50, 1.10, 1.10},
    {"200 B, server", 200, bench::Transports::kProfile, 40, 50, 1.20, 1.20, true},
    {"32 KiB", 32 * 1024, bench::Transports::kProfile, 160, 50, 1.10, 1.10},
    {"1 MiB, untuned echo", 1024 * 1024, bench::Transports::kUntuned, 16, 10, 0.65, 0.20},
};
// Of each road, for a pair of services.
constexpr int kBlockCount = 20;
constexpr int kWarmUpBlockCount = 2;
// Pairs that may be started in vain.
constexpr int kMaxLostEchoes = 2;
// Round trips at the beginning of a block that do not count: the other road had the processors before.
constexpr int kWarmUpPart = 10; // one of so many

// A service in a process of its own, up to the end of the object.
class Service
{
public:
    explicit Service(const std::vector<std::string> &command) : process_(command)
    {
        if (!process_.waitForOutput("ready\n")) {
            bench::giveUp(command.front() + " did not start: " + process_.errors());
        }
    }

private:
    zuv_test::Process process_;
};

class Commands
{
public:
    Commands(unsigned int payloadSize, bool isWholeServer)
        : service_(command(isWholeServer)),
          client_(BRELRemoteConfigClient_new(zuv_test::loopbackDomainId(),
                                             static_cast<int>(kPatience.count()))),
          reply_(ZUV_Service_Admin_CommandReplyTypeSupport_create_data())
    {
        if (client_ == nullptr || reply_ == nullptr) {
            bench::giveUp("no client");
        }
        request_.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
        request_.resource_identifier = const_cast<char *>(kEntity);
        request_.application_name = const_cast<char *>(kService);
        request_.string_body = const_cast<char *>("");
        body_.assign(payloadSize - requestSize(), 'x');
        request_.string_body = body_.data();
        waitForService();
    }
    ~Commands()
    {
        ZUV_Service_Admin_CommandReplyTypeSupport_delete_data(reply_);
        BRELRemoteConfigClient_delete(client_);
    }
    Commands(const Commands &) = delete;
    Commands &operator=(const Commands &) = delete;

    unsigned int requestSize() const
    {
        unsigned int size = 0;
        ZUV_Service_Admin_CommandRequestPlugin_serialize_to_cdr_buffer(nullptr, &size, &request_);
        return size;
    }
    unsigned int replySize() const
    {
        unsigned int size = 0;
        ZUV_Service_Admin_CommandReplyPlugin_serialize_to_cdr_buffer(nullptr, &size, reply_);
        return size;
    }

    void roundTrip()
    {
        if (!send()) {
            bench::giveUp("a command got no reply");
        }
    }
    // Whether the last reply brought back what was sent.
    bool isIntact() const { return body_ == reply_->string_body; }

private:
    static std::vector<std::string> command(bool isWholeServer)
    {
        const std::string domain = std::to_string(zuv_test::loopbackDomainId());
        if (isWholeServer) {
            return {SERVER_ECHO, domain, kService};
        }
        return {RESPONDER, "-domainId", domain, "-name", kService, "-echo"};
    }

    bool send()
    {
        return BRELRemoteConfigClient_sendCommandRequest(client_, reply_, kService, &request_, 1);
    }

    void waitForService()
    {
        const auto end = Clock::now() + kPatience;
        while (!BRELRemoteConfigClient_hasMatchingServer(client_)) {
            if (Clock::now() > end) {
                bench::giveUp("the service was not found");
            }
        }
        roundTrip();
    }

    Service service_;
    BRELRemoteConfigClient *client_;
    ZUV_Service_Admin_CommandReply *reply_;
    std::string body_;
    ZUV_Service_Admin_CommandRequest request_ = {}; // a description: its texts are borrowed
};

class Echoes
{
public:
    // Echoes of another name do not hear each other.
    Echoes(const char *name, unsigned int requestSize, unsigned int replySize,
           bench::Transports transports)
        : service_(command(name, replySize, transports)),
          endpoints_(zuv_test::loopbackDomainId(), bench::Side::kAsking, transports, name),
          request_(requestSize, 'x'), replySize_(replySize)
    {
        isFound_ = endpoints_.waitForMatch(kPatience) && ask();
    }

    // Of the middleware alone one start in some hundreds is not found, or gets no reply because it found the service before
    // that found it.
    bool isFound() const { return isFound_; }

    void roundTrip()
    {
        if (!ask()) {
            bench::giveUp("a bare sample got no reply");
        }
    }
    bool isIntact() const
    {
        // The middleware fills up to a multiple of four octets.
        return reply_.size() == (replySize_ + 3) / 4 * 4 &&
               std::memcmp(reply_.data(), request_.data(), replySize_) == 0;
    }

private:
    bool ask()
    {
        endpoints_.write(request_);
        return endpoints_.receive(reply_, kPatience);
    }

    static std::vector<std::string> command(const char *name, unsigned int replySize,
                                            bench::Transports transports)
    {
        std::vector<std::string> words = {BARE_ECHO, std::to_string(zuv_test::loopbackDomainId()),
                                          std::to_string(replySize), name};
        if (transports == bench::Transports::kUntuned) {
            words.emplace_back("untuned");
        }
        return words;
    }

    Service service_;
    bench::BareEndpoints endpoints_;
    bench::Octets request_;
    bench::Octets reply_;
    unsigned int replySize_;
    bool isFound_ = false;
};

// Of all round trips that count, in microseconds.
struct Times {
    std::vector<double> ours;
    std::vector<double> bare;
};

template <typename Road>
void measureBlock(Road &road, int count, std::vector<double> &times)
{
    for (int warmUp = 0; warmUp < std::max(1, count / kWarmUpPart); ++warmUp) {
        road.roundTrip();
    }
    for (int index = 0; index < count; ++index) {
        const auto start = Clock::now();
        road.roundTrip();
        times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
    }
    if (!road.isIntact()) {
        bench::giveUp("a reply differs from what was sent");
    }
}

template <typename Road>
void takeTurns(Road &ours, Echoes &bare, int blockSize, Times &times)
{
    Times thrownAway;
    for (int block = 0; block < kWarmUpBlockCount + kBlockCount; ++block) {
        Times &kept = block < kWarmUpBlockCount ? thrownAway : times;
        const bool areOursFirst = block % 2 == 0;
        if (areOursFirst) {
            measureBlock(ours, blockSize, kept.ours);
        }
        measureBlock(bare, blockSize, kept.bare);
        if (!areOursFirst) {
            measureBlock(ours, blockSize, kept.ours);
        }
    }
}

// False, with nothing measured, when an echo was not found.
bool measurePair(const Case &it, bool isNoise, Times &times)
{
    Commands commands(it.payloadSize, it.isWholeServer);
    const unsigned int requestSize = commands.requestSize();
    const unsigned int replySize = commands.replySize();
    Echoes echoes("bare", requestSize, replySize, it.echoTransports);
    if (!echoes.isFound()) {
        return false;
    }
    if (!isNoise) {
        takeTurns(commands, echoes, it.blockSize, times);
        return true;
    }
    Echoes others("other", requestSize, replySize, it.echoTransports);
    if (others.isFound()) {
        takeTurns(others, echoes, it.blockSize, times);
    }
    return others.isFound();
}

bool compare(const Case &it, int pairCount, bool isNoise)
{
    Times times;
    int lostCount = 0;
    for (int pair = 0; pair < pairCount;) {
        if (measurePair(it, isNoise, times)) {
            ++pair;
        } else if (++lostCount > kMaxLostEchoes) {
            bench::giveUp("the bare service was not found");
        }
    }
    const std::string what = it.name;
    const bool isFast = bench::printRatio(what + ", median", "us", bench::median(times.ours),
                                          bench::median(times.bare), it.medianLimit);
    const bool isSteady = bench::printRatio(what + ", p99", "us", bench::percentile(times.ours, 99),
                                            bench::percentile(times.bare, 99), it.tailLimit);
    return isFast && isSteady;
}

} // namespace

int main(int argc, char **argv)
{
    const int pairCount = argc > 1 ? std::max(1, std::atoi(argv[1])) : 0;
    const bool isNoise = argc > 2 && std::strcmp(argv[2], "noise") == 0;
    bench::printTitle("round trip", isNoise ? "other echo" : "command", "echo");
    bool isGood = true;
    for (const Case &it : kCases) {
        isGood = compare(it, pairCount > 0 ? pairCount : it.pairCount, isNoise) && isGood;
    }
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
