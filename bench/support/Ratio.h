// What the benchmarks share: samples of a run, and ratios that are printed and held against a limit.
#ifndef ZUV_BENCH_SUPPORT_RATIO_H
#define ZUV_BENCH_SUPPORT_RATIO_H

#include <string>
#include <vector>

namespace bench
{

// Report why nothing can be measured, and end the process.
[[noreturn]] void giveUp(const std::string &why);

// The least of the values that so many percent of them do not exceed; there must be one at least.
double percentile(std::vector<double> values, double percent);
double median(std::vector<double> values);

// Column titles above the lines of printRatio.
void printTitle(const std::string &what, const std::string &ours, const std::string &baseline);
// True if `ours` is at most `limit` times `baseline`.
bool printRatio(const std::string &what, const char *unit, double ours, double baseline,
                double limit);
// True if `ours` is at most `limit`, whatever the baseline.
bool printBound(const std::string &what, const char *unit, double ours, double baseline,
                double limit);

} // namespace bench

#endif
