// Cost of the serialized form of command requests, next to hand-written code for the same octets. Prints
// the ratios at the end and fails when one is above its limit.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "HandWritten.h"
#include "platform/typesys/String.h"

namespace
{

using Request = ZUV_Service_Admin_CommandRequest;

constexpr std::size_t kTypicalText = 120;
constexpr std::size_t kLargeBody = 32 * 1024;

Request makeRequest(std::size_t textSize, std::size_t octetCount)
{
    Request request;
    ZUV_Service_Admin_CommandRequest_initialize(&request);
    DDS_String_replace(&request.application_name, "S1");
    request.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
    DDS_String_replace(&request.resource_identifier, "domain_route.dr1::session.s1");
    DDS_String_replace(&request.string_body, std::string(textSize, 'x').c_str());
    const std::vector<DDS_Octet> octets(octetCount, 0x2a);
    DDS_OctetSeq_from_array(&request.octet_body, octets.data(), static_cast<DDS_Long>(octetCount));
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

template <typename Codec>
void encode(benchmark::State &state, std::size_t textSize, std::size_t octetCount)
{
    Request request = makeRequest(textSize, octetCount);
    std::vector<std::uint8_t> buffer(textSize + octetCount + 1024);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Codec::encode(request, buffer.data(), buffer.size()));
        benchmark::ClobberMemory();
    }
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

// Every round decodes into a sample that was just initialized, or into the same one.
template <typename Codec>
void decode(benchmark::State &state, std::size_t textSize, std::size_t octetCount, bool isReused)
{
    Request request = makeRequest(textSize, octetCount);
    std::vector<std::uint8_t> buffer(textSize + octetCount + 1024);
    const std::size_t size = hand_written::encode(request, buffer.data(), buffer.size());
    Request decoded;
    ZUV_Service_Admin_CommandRequest_initialize_ex(&decoded, true, false);
    for (auto _ : state) {
        if (!isReused) {
            ZUV_Service_Admin_CommandRequest_finalize(&decoded);
            ZUV_Service_Admin_CommandRequest_initialize_ex(&decoded, true, false);
        }
        if (!Codec::decode(decoded, buffer.data(), size)) {
            state.SkipWithError("refused");
        }
        benchmark::ClobberMemory();
    }
    ZUV_Service_Admin_CommandRequest_finalize(&decoded);
    ZUV_Service_Admin_CommandRequest_finalize(&request);
}

// Both write the same octets, or no comparison is fair.
bool areSameOctets(std::size_t textSize, std::size_t octetCount)
{
    Request request = makeRequest(textSize, octetCount);
    std::vector<std::uint8_t> ours(textSize + octetCount + 1024);
    std::vector<std::uint8_t> byHand(ours.size());
    const std::size_t size = Interpreted::encode(request, ours.data(), ours.size());
    const bool areSame =
        size > 0 && size == ByHand::encode(request, byHand.data(), byHand.size()) && ours == byHand;
    ZUV_Service_Admin_CommandRequest_finalize(&request);
    return areSame;
}

struct Case {
    std::string name;
    double limit;
};
std::vector<Case> g_cases;

template <typename Run>
void add(const std::string &name, double limit, Run run)
{
    g_cases.push_back({name, limit});
    benchmark::RegisterBenchmark((name + "/by_hand").c_str(),
                                 [run](benchmark::State &state) { run(state, ByHand()); });
    benchmark::RegisterBenchmark((name + "/interpreted").c_str(),
                                 [run](benchmark::State &state) { run(state, Interpreted()); });
}

void addSize(const std::string &name, std::size_t textSize, std::size_t octetCount, double limit)
{
    add("encode_" + name, limit, [=](benchmark::State &state, auto codec) {
        encode<decltype(codec)>(state, textSize, octetCount);
    });
    add("decode_" + name, limit, [=](benchmark::State &state, auto codec) {
        decode<decltype(codec)>(state, textSize, octetCount, false);
    });
    add("decode_reused_" + name, limit, [=](benchmark::State &state, auto codec) {
        decode<decltype(codec)>(state, textSize, octetCount, true);
    });
}

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
        std::printf("\n%-28s %12s %12s %8s %8s\n", "", "by hand ns", "ours ns", "ratio", "limit");
        for (const Case &each : g_cases) {
            const auto byHand = times_.find(each.name + "/by_hand");
            const auto ours = times_.find(each.name + "/interpreted");
            if (byHand == times_.end() || ours == times_.end()) {
                continue; // filtered out
            }
            const double ratio = ours->second / byHand->second;
            isWithinLimits = isWithinLimits && ratio <= each.limit;
            std::printf("%-28s %12.1f %12.1f %8.2f %8.2f%s\n", each.name.c_str(), byHand->second,
                        ours->second, ratio, each.limit, ratio <= each.limit ? "" : "  above");
        }
        return isWithinLimits;
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char **argv)
{
    constexpr double kTypicalLimit = 1.5;
    constexpr double kLargeLimit = 1.2;
    addSize("typical", kTypicalText, 17, kTypicalLimit);
    addSize("32k_text", kLargeBody, 0, kLargeLimit);
    addSize("32k_octets", 0, kLargeBody, kLargeLimit);
    if (!areSameOctets(kTypicalText, 17) || !areSameOctets(kLargeBody, kLargeBody)) {
        std::fputs("the interpreter and the hand-written code write different octets\n", stderr);
        return EXIT_FAILURE;
    }
    benchmark::Initialize(&argc, argv);
    Best reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.report() ? EXIT_SUCCESS : EXIT_FAILURE;
}
