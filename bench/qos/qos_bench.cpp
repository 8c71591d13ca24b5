// What it costs to make QoS of a configuration's element. First, how the cost depends on the number of profiles that were
// loaded: with 1000 and 10 000 beside 10. Second, the whole way beside the XML libraries alone, which transform the
// same element with the same stylesheet, print the result and parse it. All in turns, in processor time of the thread.
// qos_bench [ROUNDS]; fails when a ratio is above its limit.
#include <cstdlib>
#include <ctime>
#include <memory>
#include <string>
#include <vector>

#include "BareTransformation.h"
#include "config/EmbeddedTexts.h"
#include "config/XmlQos.h"
#include "config/XmlSupport.h"
#include "support/Ratio.h"

namespace
{

constexpr double kProfilesLimit = 1.25;
constexpr double kBareLimit = 2.0;
constexpr int kRounds = 200;
constexpr int kRunsPerRound = 10;
constexpr const char *kTopic = "Square";

const std::string kElement = "<datareader_qos base_name=\"Library::Profile7\"><history>"
                             "<kind>KEEP_ALL_HISTORY_QOS</kind></history><deadline><period>"
                             "<sec>1</sec><nanosec>0</nanosec></period></deadline>"
                             "</datareader_qos>";

std::string documentWith(int profileCount)
{
    std::string text = "<dds><qos_library name=\"Library\">";
    for (int number = 0; number < profileCount; ++number) {
        text += "<qos_profile name=\"Profile" + std::to_string(number) +
                "\"><datareader_qos><history><depth>" + std::to_string(number + 1) +
                "</depth></history></datareader_qos></qos_profile>";
    }
    return text + "</qos_library><port name=\"p\">" + kElement + "</port></dds>";
}

// A configuration with so many profiles, and an element that inherits from one.
class Configuration
{
public:
    explicit Configuration(int profileCount)
    {
        ZUV_BrelServiceProperties_initialize(&property_.user_environment);
        property_.skip_default_files = DDS_BOOLEAN_TRUE;
        parser_ = BRELCfgFileParser_new(&property_);
        const std::string document = documentWith(profileCount);
        const char *const piece = document.c_str();
        if (parser_ == nullptr || !BRELCfgFileParser_loadString(parser_, &piece, 1) ||
            DDS_DataReaderQos_initialize(&qos_) != DDS_RETCODE_OK) {
            bench::giveUp("the configuration cannot be loaded");
        }
        port_ = ZUVXMLUTILSObject_lookUp(parser_->_xmlRoot, "::p");
    }
    ~Configuration()
    {
        DDS_DataReaderQos_finalize(&qos_);
        BRELCfgFileParser_delete(parser_);
        ZUV_BrelServiceProperties_finalize(&property_.user_environment);
    }
    Configuration(const Configuration &) = delete;
    Configuration &operator=(const Configuration &) = delete;

    void run()
    {
        if (!BRELCfgFileParser_getDataReaderQos(&qos_, port_, kTopic) || qos_.history.depth != 8) {
            bench::giveUp("the QoS is wrong");
        }
    }

private:
    ZUV_BrelServiceProperty property_ = {};
    BRELCfgFileParser *parser_ = nullptr;
    ZUVXMLUTILSObject *port_ = nullptr;
    DDS_DataReaderQos qos_ = {};
};

double processorTime()
{
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) * 1e6 + static_cast<double>(now.tv_nsec) * 1e-3;
}

// Microseconds of one run.
template <typename Subject>
double timeOf(Subject &subject)
{
    const double start = processorTime();
    for (int run = 0; run < kRunsPerRound; ++run) {
        subject.run();
    }
    return (processorTime() - start) / kRunsPerRound;
}

std::string stylesheet()
{
    std::string text;
    for (const char *piece : BREL_XSLT_TO_QOS) {
        text += piece;
    }
    return text;
}

bool measure(int rounds)
{
    Configuration few(10), many(1000), most(10000);
    const char *const parameters[] = {"BREL_XMLSUPPORT_QOS_LIBRARY_NAME_PARAM",
                                      "'#zuv.brel_service.qos_library'",
                                      "BREL_XMLSUPPORT_QOS_PROFILE_NAME_PARAM",
                                      "'0x123456789abc'",
                                      "BREL_XMLSUPPORT_QOS_TOPIC_FILTER_NAME_PARAM",
                                      "'Square'",
                                      nullptr};
    bench::BareTransformation bare(stylesheet(), kElement, parameters);
    std::vector<double> fewTimes, manyTimes, mostTimes, bareTimes;
    for (int round = -rounds / 10; round < rounds; ++round) {
        const double times[] = {timeOf(few), timeOf(many), timeOf(most), timeOf(bare)};
        if (round >= 0) { // the first ones warm up
            fewTimes.push_back(times[0]);
            manyTimes.push_back(times[1]);
            mostTimes.push_back(times[2]);
            bareTimes.push_back(times[3]);
        }
    }
    const double base = bench::median(fewTimes);
    bench::printTitle("one QoS of an element, median", "ours", "baseline");
    bool isGood = bench::printRatio("1000 profiles, beside 10", "us", bench::median(manyTimes),
                                    base, kProfilesLimit);
    isGood &= bench::printRatio("10000 profiles, beside 10", "us", bench::median(mostTimes), base,
                                kProfilesLimit);
    isGood &= bench::printRatio("beside transformation and parse alone", "us", base,
                                bench::median(bareTimes), kBareLimit);
    return isGood;
}

} // namespace

int main(int argc, char **argv)
{
    const int rounds = argc > 1 ? std::atoi(argv[1]) : kRounds;
    if (rounds < 10 || !BRELCfgFileParser_initializeGlobals()) {
        bench::giveUp("usage: qos_bench [ROUNDS], from 10");
    }
    const bool isGood = measure(rounds);
    BRELCfgFileParser_finalizeGlobals();
    return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
