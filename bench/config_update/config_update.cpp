// What it costs to change one route of a live service: the snippet, its validation, its record, the merge and the
// end of the update, among few routes and among many.
#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "config/CfgFileElement.h"
#include "config/XmlSupport.h"
#include "config_load/Documents.h"
#include "support/Ratio.h"

namespace
{

constexpr int kFew = 100;
constexpr int kMany = 100000;
constexpr int kUpdates = 400;
constexpr int kRounds = 15;

double cpuMicroseconds()
{
    timespec now = {};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) * 1e-3;
}

class Service
{
public:
    explicit Service(int routeCount)
    {
        ZUV_BrelServiceProperties_initialize(&property_.user_environment);
        property_.skip_default_files = DDS_BOOLEAN_TRUE;
        property_.enforce_xsd_validation = DDS_BOOLEAN_TRUE;
        parser_ = BRELCfgFileParser_new(&property_);
        const std::string document = bench::makeConfiguration(routeCount);
        const char *const piece = document.c_str();
        if (parser_ == nullptr || !BRELCfgFileParser_loadString(parser_, &piece, 1) ||
            BRELCfgFileParser_loadService(parser_, "S") == nullptr) {
            bench::giveUp("the service is refused");
        }
        // From one end of the routes to the other.
        for (int index = 0; index < kFew; ++index) {
            const std::string name = "S::dr::s::r" + std::to_string(index * (routeCount / kFew));
            routes_.push_back(ZUVXMLUTILSObject_lookUp(parser_->_xmlRoot, name.c_str()));
        }
    }
    ~Service() { BRELCfgFileParser_delete(parser_); }
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    // Microseconds of one update.
    double measure()
    {
        const double start = cpuMicroseconds();
        for (int index = 0; index < kUpdates; ++index) {
            update(routes_[static_cast<std::size_t>(index) % routes_.size()], turn_++ % 2 != 0);
        }
        return (cpuMicroseconds() - start) / kUpdates;
    }

private:
    void update(ZUVXMLUTILSObject *route, bool value)
    {
        ZUVXMLUTILSObject *const object = BRELCfgFileParser_parseUpdate(
            parser_, route,
            value ? "<topic_route><route_types>true</route_types></topic_route>"
                  : "<topic_route><route_types>false</route_types></topic_route>");
        int updated = 0;
        if (object == nullptr ||
            !BRELCfgFileElement_update(
                &updated, static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(route)),
                static_cast<BRELCfgFileElement *>(ZUVXMLUTILSObject_getUserData(object)))) {
            bench::giveUp("an update is refused");
        }
        BRELCfgFileParser_deleteEntity(parser_, object);
    }

    ZUV_BrelServiceProperty property_ = {};
    BRELCfgFileParser *parser_;
    std::vector<ZUVXMLUTILSObject *> routes_;
    int turn_ = 0;
};

} // namespace

int main()
{
    if (!BRELCfgFileParser_initializeGlobals()) {
        bench::giveUp("no XML libraries");
    }
    Service few(kFew);
    Service many(kMany);
    std::vector<double> amongFew, amongMany;
    for (int round = 0; round < kRounds; ++round) {
        amongMany.push_back(many.measure());
        amongFew.push_back(few.measure());
    }
    bench::printTitle("update of one route", "100000", "100");
    const bool isGood = bench::printRatio("among so many routes", "us", bench::median(amongMany),
                                          bench::median(amongFew), 1.5);
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
