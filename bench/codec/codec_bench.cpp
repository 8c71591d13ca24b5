// Cost of the serialized form of the samples of each topic type, next to hand-written code for the same octets
// and next to another implementation. Prints the ratios at the end and fails when one is above its limit.
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

using Octets = std::vector<std::uint8_t>;

constexpr std::size_t kLargeBody = 32 * 1024;
constexpr std::size_t kSpare = 1024; // of a buffer, beyond the bodies

// A benchmark, what it is measured against, and the limit of the ratio; 0 for none.
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

template <typename Run>
void addAgainst(const std::string &name, const std::string &baseline, double limit, Run run)
{
    add(name + "/" + baseline, run);
    g_comparisons.push_back({name, name + "/" + baseline, limit});
}

// -- The types ----------------------------------------------------------------------------------------

template <typename T>
struct Type;

#define ZUV_BENCH_TYPE(T, STRANGER)                                                                \
    template <>                                                                                    \
    struct Type<T> {                                                                               \
        static const DDS_TypeCode *code() { return &T##_g_typecode; }                              \
        static constexpr auto initialize = T##_initialize_ex;                                      \
        static constexpr auto finalize = T##_finalize;                                             \
        static constexpr StrangerType kStranger = STRANGER;                                        \
    };

ZUV_BENCH_TYPE(ZUV_Service_Admin_CommandRequest, STRANGER_COMMAND_REQUEST)
ZUV_BENCH_TYPE(ZUV_Service_Admin_CommandReply, STRANGER_COMMAND_REPLY)
ZUV_BENCH_TYPE(ZUV_Service_EntityState, STRANGER_ENTITY_STATE)
ZUV_BENCH_TYPE(ZUV_Service_Monitoring_ResourceGuid, STRANGER_RESOURCE_GUID)
ZUV_BENCH_TYPE(ZUV_Service_Monitoring_KeyedResource, STRANGER_KEYED_RESOURCE)

struct Bodies {
    std::size_t text = 0;
    std::size_t octets = 0;
};

void fillBodies(char *&text, DDS_OctetSeq &octets, const Bodies &bodies)
{
    DDS_String_replace(&text, std::string(bodies.text, 'x').c_str());
    const Octets values(bodies.octets, 0x2a);
    DDS_OctetSeq_from_array(&octets, values.data(), static_cast<DDS_Long>(values.size()));
}

void fill(ZUV_Service_Admin_CommandRequest &request, const Bodies &bodies)
{
    DDS_String_replace(&request.application_name, "S1");
    request.action = ZUV_Service_Admin_CommandActionKind_UPDATE_ACTION;
    DDS_String_replace(&request.resource_identifier, "domain_route.dr1::session.s1");
    fillBodies(request.string_body, request.octet_body, bodies);
}

void fill(ZUV_Service_Admin_CommandReply &reply, const Bodies &bodies)
{
    reply.retcode = ZUV_Service_Admin_CommandReplyRetcode_ERROR_RETCODE;
    reply.native_retcode = 7;
    fillBodies(reply.string_body, reply.octet_body, bodies);
}

void fill(ZUV_Service_EntityState &state, const Bodies &)
{
    state.state = ZUV_Service_EntityStateKind_RUNNING;
}

void fill(ZUV_Service_Monitoring_ResourceGuid &guid, const Bodies &)
{
    std::memset(guid.value, 0x2a, sizeof(guid.value));
}

void fill(ZUV_Service_Monitoring_KeyedResource &resource, const Bodies &bodies)
{
    fill(resource.object_guid, bodies);
    fill(resource.owner_guid, bodies);
}

// -- What is measured ---------------------------------------------------------------------------------

template <typename T>
struct Interpreted {
    static std::size_t encode(const T &sample, std::uint8_t *buffer, std::size_t capacity)
    {
        DDS_UnsignedLong length = 0;
        return ZUVCodec_serialize(Type<T>::code(), &sample, buffer,
                                  static_cast<DDS_UnsignedLong>(capacity), &length)
                   ? length
                   : 0;
    }
    static bool decode(T &sample, const std::uint8_t *buffer, std::size_t size)
    {
        return ZUVCodec_deserialize(Type<T>::code(), &sample, buffer,
                                    static_cast<DDS_UnsignedLong>(size));
    }
};

template <typename T>
struct ByHand {
    static std::size_t encode(const T &sample, std::uint8_t *buffer, std::size_t capacity)
    {
        return hand_written::encode(sample, buffer, capacity);
    }
    static bool decode(T &sample, const std::uint8_t *buffer, std::size_t size)
    {
        return hand_written::decode(sample, buffer, size);
    }
};

template <typename T>
struct Sample {
    Sample() { Type<T>::initialize(&value, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE); }
    ~Sample() { Type<T>::finalize(&value); }
    Sample(const Sample &) = delete;
    Sample &operator=(const Sample &) = delete;

    // Without storage of its own again.
    void renew()
    {
        Type<T>::finalize(&value);
        Type<T>::initialize(&value, DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE);
    }

    T value;
};

template <typename T, typename Codec>
Octets makePayload(const Bodies &bodies)
{
    Sample<T> sample;
    fill(sample.value, bodies);
    Octets buffer(bodies.text + bodies.octets + kSpare);
    buffer.resize(Codec::encode(sample.value, buffer.data(), buffer.size()));
    return buffer;
}

template <typename T, typename Codec>
void encode(benchmark::State &state, const Bodies &bodies)
{
    Sample<T> sample;
    fill(sample.value, bodies);
    Octets buffer(bodies.text + bodies.octets + kSpare);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Codec::encode(sample.value, buffer.data(), buffer.size()));
        benchmark::ClobberMemory();
    }
}

// Every round decodes into a sample without storage of its own, or into the last one's.
template <typename T, typename Codec>
void decode(benchmark::State &state, const Bodies &bodies, bool isReused)
{
    const Octets payload = makePayload<T, ByHand<T>>(bodies);
    Sample<T> decoded;
    for (auto _ : state) {
        if (!isReused) {
            decoded.renew();
        }
        if (!Codec::decode(decoded.value, payload.data(), payload.size())) {
            state.SkipWithError("refused");
        }
        benchmark::ClobberMemory();
    }
}

// Limits of the ratios to hand-written code and to the stranger; 0 for none.
struct Limits {
    double byHand;
    double stranger;       // both allocate
    double strangerReused; // our sample or buffer is reused, and the stranger's is not
    double bothReused;
};

// All of it hangs on how fast memory is copied.
constexpr Limits kLarge = {1.2, 1.2, 1.2, 1.2};

template <typename T>
void addByHand(const std::string &row, const Bodies &bodies, const Limits &limits)
{
    const auto encoding = [bodies](auto codec) {
        return [bodies](benchmark::State &state) { encode<T, decltype(codec)>(state, bodies); };
    };
    const auto decoding = [bodies](auto codec, bool isReused) {
        return [bodies, isReused](benchmark::State &state) {
            decode<T, decltype(codec)>(state, bodies, isReused);
        };
    };
    add("encode/" + row, encoding(Interpreted<T>()));
    addAgainst("encode/" + row, "by_hand", limits.byHand, encoding(ByHand<T>()));
    add("decode/" + row, decoding(Interpreted<T>(), false));
    addAgainst("decode/" + row, "by_hand", limits.byHand, decoding(ByHand<T>(), false));
    add("decode_reused/" + row, decoding(Interpreted<T>(), true));
    addAgainst("decode_reused/" + row, "by_hand", 0, decoding(ByHand<T>(), true));
}

#ifdef ZUV_BENCH_STRANGER

constexpr std::size_t kHeader = 4;

struct StrangerDeleter {
    void operator()(Stranger *stranger) const { stranger_delete(stranger); }
};

template <typename T>
struct Strangers {
    explicit Strangers(const Bodies &bodies)
        : payload(makePayload<T, ByHand<T>>(bodies)),
          size(static_cast<std::uint32_t>(payload.size() - kHeader - payload[3])),
          stranger(stranger_new(Type<T>::kStranger, octets(), size))
    {
    }

    std::uint8_t *octets() { return payload.data() + kHeader; }

    Octets payload;
    std::uint32_t size;
    std::unique_ptr<Stranger, StrangerDeleter> stranger;
};

template <typename T>
void strangerEncodes(benchmark::State &state, const Bodies &bodies, bool isReused)
{
    const Strangers<T> strangers(bodies);
    const std::uint8_t *octets = nullptr;
    for (auto _ : state) {
        benchmark::DoNotOptimize(stranger_encode(strangers.stranger.get(), isReused, &octets));
        benchmark::ClobberMemory();
    }
}

template <typename T>
void strangerDecodes(benchmark::State &state, const Bodies &bodies, bool isReused)
{
    Strangers<T> strangers(bodies);
    for (auto _ : state) {
        if (!stranger_decode(strangers.stranger.get(), strangers.octets(), strangers.size,
                             isReused)) {
            state.SkipWithError("refused");
        }
        benchmark::ClobberMemory();
    }
}

// Ours against a stranger that makes its stream and its sample anew, as it usually does, and against one that
// reuses them.
template <typename T>
void addStranger(const std::string &row, const Bodies &bodies, const Limits &limits)
{
    const auto encoding = [bodies](bool isReused) {
        return [=](benchmark::State &state) { strangerEncodes<T>(state, bodies, isReused); };
    };
    const auto decoding = [bodies](bool isReused) {
        return [=](benchmark::State &state) { strangerDecodes<T>(state, bodies, isReused); };
    };
    addAgainst("encode/" + row, "stranger", limits.stranger, encoding(false));
    addAgainst("encode/" + row, "stranger_reused", limits.bothReused, encoding(true));
    addAgainst("decode/" + row, "stranger", limits.stranger, decoding(false));
    addAgainst("decode_reused/" + row, "stranger_reused", limits.bothReused, decoding(true));
    g_comparisons.push_back(
        {"decode_reused/" + row, "decode/" + row + "/stranger", limits.strangerReused});
}

template <typename T>
bool writesTheSame(const Bodies &bodies, const Octets &payload)
{
    const Strangers<T> strangers(bodies);
    const std::uint8_t *octets = nullptr;
    return strangers.stranger != nullptr &&
           stranger_encode(strangers.stranger.get(), false, &octets) == strangers.size &&
           std::equal(octets, octets + strangers.size, payload.begin() + kHeader);
}

#else

template <typename T>
void addStranger(const std::string &, const Bodies &, const Limits &)
{
}

template <typename T>
bool writesTheSame(const Bodies &, const Octets &)
{
    return true;
}

#endif

// False, after a report, when not all write the same octets: then no comparison is fair.
template <typename T>
bool addRow(const std::string &row, const Bodies &bodies, const Limits &limits)
{
    const Octets payload = makePayload<T, Interpreted<T>>(bodies);
    if (payload.empty() || payload != makePayload<T, ByHand<T>>(bodies) ||
        !writesTheSame<T>(bodies, payload)) {
        std::fprintf(stderr, "%s: not all write the same octets\n", row.c_str());
        return false;
    }
    addByHand<T>(row, bodies, limits);
    addStranger<T>(row, bodies, limits);
    return true;
}

bool addRows()
{
    using Request = ZUV_Service_Admin_CommandRequest;
    using Reply = ZUV_Service_Admin_CommandReply;
    constexpr Limits kBodies = {1.5, 0.6, 0.33, 0.75};
    constexpr Limits kFixed = {0, 0.6, 0.33, 0}; // a few octets, and nothing is allocated
    constexpr Bodies kTypical = {120, 17};
    constexpr Bodies kText = {kLargeBody, 0};
    constexpr Bodies kOctets = {0, kLargeBody};
    return addRow<Request>("request", kTypical, kBodies) &&
           addRow<Request>("request_32k_text", kText, kLarge) &&
           addRow<Request>("request_32k_octets", kOctets, kLarge) &&
           addRow<Reply>("reply", kTypical, kBodies) &&
           addRow<Reply>("reply_32k_text", kText, kLarge) &&
           addRow<Reply>("reply_32k_octets", kOctets, kLarge) &&
           addRow<ZUV_Service_EntityState>("entity_state", {}, kFixed) &&
           addRow<ZUV_Service_Monitoring_ResourceGuid>("resource_guid", {}, kFixed) &&
           addRow<ZUV_Service_Monitoring_KeyedResource>("keyed_resource", {}, kFixed);
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
        std::printf("\n%-34s %10s  %-44s %10s %7s %7s\n", "", "ns", "against", "ns", "ratio",
                    "limit");
        for (const Comparison &each : g_comparisons) {
            const auto ours = times_.find(each.name);
            const auto baseline = times_.find(each.baseline);
            if (ours == times_.end() || baseline == times_.end()) {
                continue; // filtered out
            }
            const double ratio = ours->second / baseline->second;
            const bool isWithin = each.limit == 0 || ratio <= each.limit;
            isWithinLimits = isWithinLimits && isWithin;
            std::printf("%-34s %10.1f  %-44s %10.1f %7.2f ", each.name.c_str(), ours->second,
                        each.baseline.c_str(), baseline->second, ratio);
            if (each.limit != 0) {
                std::printf("%7.2f%s", each.limit, isWithin ? "" : "  above");
            }
            std::putchar('\n');
        }
        return isWithinLimits;
    }

private:
    std::map<std::string, double> times_;
};

} // namespace

int main(int argc, char **argv)
{
    if (!addRows()) {
        return EXIT_FAILURE;
    }
    benchmark::Initialize(&argc, argv);
    Best reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return reporter.report() ? EXIT_SUCCESS : EXIT_FAILURE;
}
