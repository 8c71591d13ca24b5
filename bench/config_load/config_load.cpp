// What it costs to load a service with many routes: reading, walks, validation and records, against what libxml2
// needs to read and validate the same document, and libyang the same tree.
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

#include <sys/wait.h>
#include <unistd.h>

#include "Documents.h"
#include "Strangers.h"
#include "config/XmlSupport.h"
#include "support/Ratio.h"

namespace
{

using bench::Cost;

constexpr int kRounds = 9;
constexpr int kRepetitions = 5;
constexpr int kCounts[] = {100, 1000, 10000, 100000};

struct OurCost {
    Cost whole;
    double treeBytes = 0;
    double recordBytes = 0;
};

OurCost costOfOurs(const std::string &document)
{
    ZUV_BrelServiceProperty property = {};
    ZUV_BrelServiceProperties_initialize(&property.user_environment);
    property.skip_default_files = DDS_BOOLEAN_TRUE;
    property.enforce_xsd_validation = DDS_BOOLEAN_TRUE;
    BRELCfgFileParser *const parser =
        BRELCfgFileParser_initializeGlobals() ? BRELCfgFileParser_new(&property) : nullptr;
    if (parser == nullptr) {
        bench::giveUp("no parser");
    }
    const char *const piece = document.c_str();
    const bench::Meter meter;
    if (!BRELCfgFileParser_loadString(parser, &piece, 1)) {
        bench::giveUp("the document is refused");
    }
    OurCost cost;
    cost.treeBytes = meter.cost().bytes;
    if (BRELCfgFileParser_loadService(parser, "S") == nullptr) {
        bench::giveUp("the service is refused");
    }
    cost.whole = meter.cost();
    cost.recordBytes = cost.whole.bytes - cost.treeBytes;
    return cost;
}

// In a process of its own, so that each begins with the same heap and libxml2 is its own master.
template <typename Result>
Result measureApart(const std::function<Result()> &measure)
{
    int ends[2];
    if (pipe(ends) != 0) {
        bench::giveUp("no pipe");
    }
    const pid_t child = fork();
    if (child == 0) {
        const Result result = measure();
        const bool isWritten = write(ends[1], &result, sizeof(result)) == sizeof(result);
        _exit(isWritten ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    Result result;
    close(ends[1]);
    const bool isRead = read(ends[0], &result, sizeof(result)) == sizeof(result);
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!isRead) {
        bench::giveUp("a measurement failed");
    }
    return result;
}

// What one round has measured for one count, in seconds.
struct Turn {
    double ours = 0;
    double libxml2 = 0;
    double libyang = 0;
};

struct Row {
    explicit Row(int routeCount)
        : count(routeCount), document(bench::makeConfiguration(routeCount)),
          data(bench::makeData(routeCount))
    {
    }

    int count;
    std::string document;
    std::string data;
    std::vector<Turn> turns; // one of each round
    OurCost ours;
    double libxml2Bytes = 0;
};

// The order turns about from one to the next, and all but the largest are read more often.
Turn takeTurn(Row &row, int round)
{
    const int repetitions = row.count < kCounts[3] ? kRepetitions : 1;
    Turn turn;
    std::array<std::function<void()>, 3> measurements = {
        [&] {
            row.ours = measureApart<OurCost>([&] { return costOfOurs(row.document); });
            turn.ours += row.ours.whole.seconds / repetitions;
        },
        [&] {
            const auto cost =
                measureApart<Cost>([&] { return bench::costOfLibxml2(row.document); });
            turn.libxml2 += cost.seconds / repetitions;
            row.libxml2Bytes = cost.bytes;
        },
        [&] {
            const auto cost = measureApart<Cost>([&] { return bench::costOfLibyang(row.data); });
            turn.libyang += cost.seconds / repetitions;
        },
    };
    if (round % 2 != 0) {
        std::ranges::reverse(measurements);
    }
    for (int repetition = 0; repetition < repetitions; ++repetition) {
        for (const auto &measure : measurements) {
            measure();
        }
        std::ranges::reverse(measurements);
    }
    return turn;
}

// Two times of the same round, which are to be compared. The machine's speed changes from one second to another, and by
// more than what is to be seen; within a round it hurts both.
struct Pair {
    double ours;
    double baseline;

    double ratio() const { return ours / baseline; }
};

// The pair of the middle ratio.
template <typename PairOf>
Pair middle(PairOf &&pairOf)
{
    std::vector<Pair> pairs;
    for (int round = 0; round < kRounds; ++round) {
        pairs.push_back(pairOf(round));
    }
    const auto at = pairs.begin() + kRounds / 2;
    std::nth_element(pairs.begin(), at, pairs.end(), [](const Pair &left, const Pair &right) {
        return left.ratio() < right.ratio();
    });
    return *at;
}

// Per route, in microseconds.
double perRoute(const Row &row, double seconds)
{
    return seconds * 1e6 / row.count;
}

bool printTimes(const std::string &what, const Pair &pair, double limit)
{
    return bench::printRatio(what, "us", pair.ours, pair.baseline, limit);
}

bool printAgainst(const std::vector<Row> &rows, const char *name, double Turn::*baseline,
                  double limit, double limitOfFew)
{
    bool isGood = true;
    bench::printTitle("load, per route", "ours", name);
    for (const Row &row : rows) {
        const Pair pair = middle([&](int round) {
            const Turn &turn = row.turns[round];
            return Pair{perRoute(row, turn.ours), perRoute(row, turn.*baseline)};
        });
        // So few routes say more about what comes once than about routes.
        const double rowLimit = row.count >= 1000 ? limit : limitOfFew;
        isGood &= printTimes(std::to_string(row.count) + " routes", pair, rowLimit);
    }
    return isGood;
}

bool printGrowth(const Row &few, const Row &many)
{
    bench::printTitle("load, per route", std::to_string(many.count), std::to_string(few.count));
    const Pair pair = middle([&](int round) {
        return Pair{perRoute(many, many.turns[round].ours), perRoute(few, few.turns[round].ours)};
    });
    return printTimes("growth", pair, 1.3);
}

bool printHeap(const std::vector<Row> &rows)
{
    bool isGood = true;
    bench::printTitle("heap, per route", "ours", "libxml2");
    for (const Row &row : rows) {
        const std::string name = std::to_string(row.count) + " routes, records aside";
        const double limit = row.count >= 1000 ? 1.3 : 3;
        isGood &= bench::printRatio(name, "B", row.ours.treeBytes / row.count,
                                    row.libxml2Bytes / row.count, limit);
        std::printf("%-42s %11.3f\n", "  records", row.ours.recordBytes / row.count);
    }
    return isGood;
}

} // namespace

int main()
{
    std::vector<Row> rows;
    for (const int count : kCounts) {
        rows.emplace_back(count);
    }
    for (int round = 0; round < kRounds; ++round) {
        for (Row &row : rows) {
            row.turns.push_back(takeTurn(row, round));
        }
    }
    bool isGood = printAgainst(rows, "libxml2", &Turn::libxml2, 1.3, 3);
    isGood &= printAgainst(rows, "libyang", &Turn::libyang, 0.65, 2);
    isGood &= printGrowth(rows[1], rows[3]);
    isGood &= printHeap(rows);
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
