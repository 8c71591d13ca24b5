// Configurations of any size.
#ifndef ZUV_BENCH_CONFIG_LOAD_DOCUMENTS_H
#define ZUV_BENCH_CONFIG_LOAD_DOCUMENTS_H

#include <string>

namespace bench
{

// One service "S" with a domain route "dr", a session "s", and routes "r0", "r1", … in it.
std::string makeConfiguration(int routeCount);

// The same tree as data of the model below, which has no attributes: they are leaves.
std::string makeData(int routeCount);
extern const char *const kDataModel;

} // namespace bench

#endif
