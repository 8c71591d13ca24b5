// What it costs to load a service with many routes: reading, walks, validation and records, against what libxml2
// needs to read and validate the same document, and libyang the same tree.
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

constexpr int kRounds = 7;
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

struct Row {
    int count;
    double ours;
    double libxml2;
    double libyang;
    double treeBytes;
    double recordBytes;
    double libxml2Bytes;
};

// The middle of several rounds that take turns, each per route.
Row measure(int count)
{
    const std::string document = bench::makeConfiguration(count);
    const std::string data = bench::makeData(count);
    std::vector<double> ours, libxml2, libyang;
    Row row = {};
    for (int round = 0; round < kRounds; ++round) {
        const auto our = measureApart<OurCost>([&] { return costOfOurs(document); });
        const auto xml = measureApart<Cost>([&] { return bench::costOfLibxml2(document); });
        const auto yang = measureApart<Cost>([&] { return bench::costOfLibyang(data); });
        ours.push_back(our.whole.seconds);
        libxml2.push_back(xml.seconds);
        libyang.push_back(yang.seconds);
        row.treeBytes = our.treeBytes / count;
        row.recordBytes = our.recordBytes / count;
        row.libxml2Bytes = xml.bytes / count;
    }
    const auto perRoute = [count](const std::vector<double> &seconds) {
        return bench::median(seconds) * 1e6 / count;
    };
    row.count = count;
    row.ours = perRoute(ours);
    row.libxml2 = perRoute(libxml2);
    row.libyang = perRoute(libyang);
    return row;
}

} // namespace

int main()
{
    std::vector<Row> rows;
    for (const int count : kCounts) {
        rows.push_back(measure(count));
    }
    bool isGood = true;
    bench::printTitle("load, per route", "ours", "libxml2");
    for (const Row &row : rows) {
        const std::string name = std::to_string(row.count) + " routes";
        // So few routes say more about what comes once than about routes.
        const double limit = row.count >= 1000 ? 1.3 : 3;
        isGood &= bench::printRatio(name, "us", row.ours, row.libxml2, limit);
    }
    bench::printTitle("load, per route", "ours", "libyang");
    for (const Row &row : rows) {
        const std::string name = std::to_string(row.count) + " routes";
        const double limit = row.count >= 1000 ? 0.65 : 2;
        isGood &= bench::printRatio(name, "us", row.ours, row.libyang, limit);
    }
    bench::printTitle("load, per route", "100000", "1000");
    isGood &= bench::printRatio("growth", "us", rows[3].ours, rows[1].ours, 1.3);
    bench::printTitle("heap, per route", "ours", "libxml2");
    for (const Row &row : rows) {
        const std::string name = std::to_string(row.count) + " routes, records aside";
        const double limit = row.count >= 1000 ? 1.3 : 3;
        isGood &= bench::printRatio(name, "B", row.treeBytes, row.libxml2Bytes, limit);
        std::printf("%-42s %11.3f\n", "  records", row.recordBytes);
    }
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
