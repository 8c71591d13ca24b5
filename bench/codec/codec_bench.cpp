// Cost of the serialized form of command requests, next to hand-written code for the same octets and next to
// another implementation. Prints the ratios at the end and fails when one is above its limit.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "HandWritten.h"
#include "Stranger.h"
#include "platform/typesys/String.h"

namespace
{

using Request = ZUV_Service_Admin_CommandRequest;

constexpr std::size_t kLargeBody = 32 * 1024;
constexpr std::size_t kSpare = 1024; // of a buffer, beyond the bodies
constexpr const char *kName = "S1";
constexpr const char *kIdentifier = "domain_route.dr1::session.s1";

struct Size {
    const char *name;
    std::size_t text;
    std::size_t octets;
    double limit; // of the ratio to hand-written code
};
constexpr Size kSizes[] = {
    {"typical", 120, 17, 1.5},
    {"32k_text", kLargeBody, 0, 1.2},
    {"32k_octets", 0, kLargeBody, 1.2},
};

Request makeRequest(const Size &size)
{
    Request request;
    ZUV_Service_Admin_CommandRequest_initialize(&request);
    DDS_String_replace(&request.application_name, kName);
    request.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
    DDS_String_replace(&request.resource_identifier, kIdentifier);
    DDS_String_replace(&request.string_body, std::string(size.text, 'x').c_str());
    const std::vector<DDS_Octet> octets(size.octets, 0x2a);
    DDS_OctetSeq_from_array(&request.octet_body, octets.data(), static_cast<DDS_Long>(size.octets));
    return request;
}

struct Interpreted {
    static std::size_t encode(const Request &request, std::uint8_t *buffer, std::size_t capacity)
    {
        DDS_UnsignedLong length = 0;
        return ZUVCodec_serialize(&ZUV_Service_Admin_CommandRequest_g_typecode, &request, buffer,
                                  static_cast<DDS_UnsignedLong>(capacity), &length)
                   ? length
                   : 0;
    }
    static bool decode(Request &request, const std::uint8_t *buffer, std::size_t size)
    {
        return ZUVCodec_deserialize(&ZUV_Service_Admin_CommandRequest_g_typecode, &request, buffer,
                                    static_cast<DDS_UnsignedLong>(size));
    }
};

struct ByHand {
    static constexpr auto encode = hand_written::encode;
    static constexpr auto decode = hand_written::decode;
};

std::vector<std::uint8_t> makePayload(const Size &size)
{
    Request request = makeRequest(size);
    std::vector<std::uint8_t> buffer(size.text + size.octets + kSpare);
    buffer.resize(hand_written::encode(request, buffer.data(), buffer.size()));
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    return buffer;
}

template <typename Codec>
void encode(benchmark::State &state, const Size &size)
{
    Request request = makeRequest(size);
    std::vector<std::uint8_t> buffer(size.text + size.octets + kSpare);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Codec::encode(request, buffer.data(), buffer.size()));
        benchmark::ClobberMemory();
    }
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

// Every round decodes into a sample without storage of its own, or into the last one's.
template <typename Codec>
void decode(benchmark::State &state, const Size &size, bool isReused)
{
    const std::vector<std::uint8_t> payload = makePayload(size);
    Request decoded;
    ZUV_Service_Admin_CommandRequest_initialize_ex(&decoded, true, false);
    for (auto _ : state) {
        if (!isReused) {
            ZUV_Service_Admin_CommandRequest_finalize(&decoded);
            ZUV_Service_Admin_CommandRequest_initialize_ex(&decoded, true, false);
        }
        if (!Codec::decode(decoded, payload.data(), payload.size())) {
            state.SkipWithError("refused");
        }
        benchmark::ClobberMemory();
    }
    ZUV_Service_Admin_CommandRequest_finalize(&decoded);
}

// Both write the same octets, or no comparison is fair.
bool areSameOctets(const Size &size)
{
    Request request = makeRequest(size);
    std::vector<std::uint8_t> ours(size.text + size.octets + kSpare);
    ours.resize(Interpreted::encode(request, ours.data(), ours.size()));
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    return !ours.empty() && ours == makePayload(size);
}

// A benchmark, what it is measured against, and the limit of the ratio.
struct Comparison {
    std::string name;
    std::string baseline;
    double limit;
};
std::vector<Comparison> g_comparisons;

template <typename Run>
void add(const std::string &name, Run run)
{
    benchmark::RegisterBenchmark(name.c_str(), run);
}

void addByHand(const Size &size)
{
    const auto both = [&size](const std::string &what, auto run) {
        const std::string name = what + "/" + size.name;
        add(name, [run](benchmark::State &state) { run(state, Interpreted()); });
        add(name + "/by_hand", [run](benchmark::State &state) { run(state, ByHand()); });
        g_comparisons.push_back({name, name + "/by_hand", size.limit});
    };
    both("encode",
         [&size](benchmark::State &state, auto codec) { encode<decltype(codec)>(state, size); });
    both("decode", [&size](benchmark::State &state, auto codec) {
        decode<decltype(codec)>(state, size, false);
    });
    add(std::string("decode_reused/") + size.name,
        [&size](benchmark::State &state) { decode<Interpreted>(state, size, true); });
}

#ifdef ZUV_BENCH_STRANGER

constexpr std::size_t kHeader = 4;
constexpr double kCopyLimit = 1.2;

struct StrangerDeleter {
    void operator()(Stranger *stranger) const { stranger_delete(stranger); }
};

struct StrangersRequest {
    explicit StrangersRequest(const Size &size)
        : text(size.text, 'x'), octets(size.octets, 0x2a),
          stranger(stranger_new(kName, kIdentifier, text.c_str(), octets.data(),
                                static_cast<std::uint32_t>(octets.size())))
    {
    }

    std::string text;
    std::vector<std::uint8_t> octets;
    std::unique_ptr<Stranger, StrangerDeleter> stranger;
};

void strangerEncodes(benchmark::State &state, const Size &size, bool isReused)
{
    const StrangersRequest request(size);
    for (auto _ : state) {
        benchmark::DoNotOptimize(stranger_encode(request.stranger.get(), isReused));
        benchmark::ClobberMemory();
    }
}

void strangerDecodes(benchmark::State &state, const Size &size, bool isReused)
{
    const StrangersRequest request(size);
    std::vector<std::uint8_t> payload = makePayload(size);
    for (auto _ : state) {
        if (!stranger_decode(request.stranger.get(), payload.data() + kHeader,
                             static_cast<std::uint32_t>(payload.size() - kHeader), isReused)) {
            state.SkipWithError("refused");
        }
        benchmark::ClobberMemory();
    }
}

// Our part is measured against a stranger that makes its stream and its sample anew, as it usually does, and
// against one that reuses them. Where the bodies are large both mostly copy.
void addStranger(const Size &size)
{
    const auto against = [&size](const std::string &what, const std::string &how, double limit,
                                 auto run) {
        const std::string baseline = what + "/" + size.name + "/stranger" + how;
        add(baseline, run);
        g_comparisons.push_back({what + "/" + size.name, baseline, limit});
    };
    const bool isLarge = size.text + size.octets >= kLargeBody;
    against("encode", "", isLarge ? kCopyLimit : 0.6,
            [&size](benchmark::State &state) { strangerEncodes(state, size, false); });
    against("encode", "_reused", isLarge ? kCopyLimit : 0.75,
            [&size](benchmark::State &state) { strangerEncodes(state, size, true); });
    against("decode", "", isLarge ? kCopyLimit : 1.0,
            [&size](benchmark::State &state) { strangerDecodes(state, size, false); });
    against("decode_reused", "", isLarge ? kCopyLimit : 0.33,
            [&size](benchmark::State &state) { strangerDecodes(state, size, false); });
    against("decode_reused", "_reused", isLarge ? kCopyLimit : 0.75,
            [&size](benchmark::State &state) { strangerDecodes(state, size, true); });
}

#else

void addStranger(const Size &) {}

#endif

// Keeps the best time of each benchmark: what disturbs a run only ever adds to it.
class Best : public benchmark::ConsoleReporter
{
public:
    void ReportRuns(const std::vector<Run> &runs) override
    {
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                const double time = run.GetAdjustedCPUTime();
                const auto [entry, isNew] = times_.try_emplace(run.run_name.function_name, time);
                entry->second = std::min(entry->second, time);
            }
        }
        ConsoleReporter::ReportRuns(runs);
    }

    bool report() const
    {
        bool isWithinLimits = true;
        std::printf("\n%-26s %10s  %-36s %10s %7s %7s\n", "", "ns", "against", "ns", "ratio",
                    "limit");
        for (const Comparison &each : g_comparisons) {
            const auto ours = times_.find(each.name);
            const auto baseline = times_.find(each.baseline);
            if (ours == times_.end() || baseline == times_.end()) {
                continue; // filtered out
            }
            const double ratio = ours->second / baseline->second;
            isWithinLimits = isWithinLimits && ratio <= each.limit;
            std::printf("%-26s %10.1f  %-36s %10.1f %7.2f %7.2f%s\n", each.name.c_str(),
                        ours->second, each.baseline.c_str(), baseline->second, ratio, each.limit,
                        ratio <= each.limit ? "" : "  above");
        }
        return isWithinLimits;
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char **argv)
{
    for (const Size &size : kSizes) {
        if (!areSameOctets(size)) {
            std::fputs("the interpreter and the hand-written code write different octets\n",
                       stderr);
            return EXIT_FAILURE;
        }
        addByHand(size);
        addStranger(size);
    }
    benchmark::Initialize(&argc, argv);
    Best reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.report() ? EXIT_SUCCESS : EXIT_FAILURE;
}
