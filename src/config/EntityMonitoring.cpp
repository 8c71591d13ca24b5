#include "config/EntityMonitoring.h"

#include <algorithm>
#include <iterator>

#include "config/XmlCommon.h"
#include "config/XmlLog.hpp"

namespace
{

using Self = BRELCfgFileEntityMonitoring;
using Statistics = BRELCfgFileMonitoringStatistics;

struct Window {
    const char *tag;
    BRELCfgFileMonitoringStatisticsWindow Statistics::*member;
};
constexpr Window kWindows[] = {
    {"five_second", &Statistics::fiveSecond}, {"one_minute", &Statistics::oneMinute},
    {"five_minute", &Statistics::fiveMinute}, {"one_hour", &Statistics::oneHour},
    {"up_time", &Statistics::uptime},
};

// The flag tells of the child, also of one that cannot be read.
template <typename Value>
bool readChild(const ZUVXMLUTILSObject *parent, const char *tag, DDS_Boolean &present,
               int (*read)(const ZUVXMLUTILSObject *, Value *), Value &value)
{
    const ZUVXMLUTILSObject *const child = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag);
    if (child == nullptr) {
        return true;
    }
    present = DDS_BOOLEAN_TRUE;
    if (!read(child, &value)) {
        BREL_XML_FAILURE(&ZUVXML_LOG_PARSER_PARSE_FAILURE_ds, BREL_XML_PLACE(child));
        return false;
    }
    return true;
}

bool readStatistics(const ZUVXMLUTILSObject *parent, Statistics &statistics)
{
    const ZUVXMLUTILSObject *const child =
        ZUVXMLUTILSObject_getFirstChildWithTag(parent, "historical_statistics");
    if (child == nullptr) {
        return true;
    }
    statistics.present = DDS_BOOLEAN_TRUE;
    return std::all_of(std::begin(kWindows), std::end(kWindows), [&](const Window &window) {
        auto &member = statistics.*window.member;
        return readChild(child, window.tag, member.present, &BRELXmlBoolean_getValue,
                         member.enabled);
    });
}

} // namespace

extern "C" {

int BRELCfgFileEntityMonitoring_initialize(Self *self)
{
    if (BREL_XML_IS_NULL(self)) {
        return 0;
    }
    *self = {};
    self->enabled = DDS_BOOLEAN_TRUE;
    self->publishStatusPeriod = DDS_DURATION_INFINITE;
    self->statsSamplingPeriod = {1, 0};
    return 1;
}

int BRELCfgFileEntityMonitoring_copy(Self *self, const Self *source)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(source)) {
        return 0;
    }
    *self = *source;
    return 1;
}

int BRELCfgFileEntityMonitoring_parse(Self *self, const ZUVXMLUTILSObject *xmlEntityMonitoring)
{
    if (BREL_XML_IS_NULL(self) || BREL_XML_IS_NULL(xmlEntityMonitoring)) {
        return 0;
    }
    const ZUVXMLUTILSObject *const xml = xmlEntityMonitoring;
    return readChild(xml, "enabled", self->enabledPresent, &BRELXmlBoolean_getValue,
                     self->enabled) &&
           readChild(xml, "status_publication_period", self->pubPeriodPresent,
                     &BRELXmlDuration_getValue, self->publishStatusPeriod) &&
           readChild(xml, "statistics_sampling_period", self->statsSamplingPeriodPresent,
                     &BRELXmlDuration_getValue, self->statsSamplingPeriod) &&
           readStatistics(xml, self->statistics);
}

void BRELCfgFileEntityMonitoring_finalize(Self *self)
{
    BREL_XML_IS_NULL(self);
}

int BRELCfgFileMonitoringStatistics_differ(const Statistics *left, const Statistics *right)
{
    if (BREL_XML_IS_NULL(left) || BREL_XML_IS_NULL(right)) {
        return 0;
    }
    return right->present &&
           std::any_of(std::begin(kWindows), std::end(kWindows), [&](const Window &window) {
               const auto &one = left->*window.member;
               const auto &other = right->*window.member;
               return other.present && (one.enabled != 0) != (other.enabled != 0);
           });
}
}
