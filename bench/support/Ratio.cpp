#include "Ratio.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace bench
{
namespace
{

constexpr int kNameWidth = 42;

const char *verdict(bool isGood)
{
    return isGood ? "ok" : "ABOVE";
}

} // namespace

void giveUp(const std::string &why)
{
    std::fprintf(stderr, "benchmark: %s\n", why.c_str());
    std::exit(EXIT_FAILURE);
}

double percentile(std::vector<double> values, double percent)
{
    const double rank = std::ceil(percent / 100 * static_cast<double>(values.size()));
    const auto place = values.begin() + static_cast<std::ptrdiff_t>(std::max(rank, 1.0) - 1);
    std::nth_element(values.begin(), place, values.end());
    return *place;
}

double median(std::vector<double> values)
{
    return percentile(std::move(values), 50);
}

void printTitle(const std::string &what, const std::string &ours, const std::string &baseline)
{
    std::printf("%-*s %11s %11s\n", kNameWidth, what.c_str(), ours.c_str(), baseline.c_str());
}

bool printRatio(const std::string &what, const char *unit, double ours, double baseline,
                double limit)
{
    const double ratio = ours / baseline;
    const bool isGood = ratio <= limit;
    std::printf("%-*s %11.3f %11.3f %-3s  ratio %5.3f  limit %4.2f  %s\n", kNameWidth, what.c_str(),
                ours, baseline, unit, ratio, limit, verdict(isGood));
    return isGood;
}

bool printBound(const std::string &what, const char *unit, double ours, double baseline,
                double limit)
{
    const bool isGood = ours <= limit;
    std::printf("%-*s %11.3f %11.3f %-3s  %11s  limit %4.0f  %s\n", kNameWidth, what.c_str(), ours,
                baseline, unit, "", limit, verdict(isGood));
    return isGood;
}

} // namespace bench
