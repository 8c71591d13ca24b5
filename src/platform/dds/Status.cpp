#include "platform/dds/Status.h"

#include <cstddef>
#include <iterator>

const char *DDS_QosPolicyId_to_string(DDS_QosPolicyId_t id)
{
    // By number (OMG DDS 1.4, 2.3.3; DDS-XTypes 1.3, 7.6.3).
    static const char *const names[] = {
        "INVALID_QOS_POLICY",
        "USERDATA_QOS_POLICY",
        "DURABILITY_QOS_POLICY",
        "PRESENTATION_QOS_POLICY",
        "DEADLINE_QOS_POLICY",
        "LATENCYBUDGET_QOS_POLICY",
        "OWNERSHIP_QOS_POLICY",
        "OWNERSHIPSTRENGTH_QOS_POLICY",
        "LIVELINESS_QOS_POLICY",
        "TIMEBASEDFILTER_QOS_POLICY",
        "PARTITION_QOS_POLICY",
        "RELIABILITY_QOS_POLICY",
        "DESTINATIONORDER_QOS_POLICY",
        "HISTORY_QOS_POLICY",
        "RESOURCELIMITS_QOS_POLICY",
        "ENTITYFACTORY_QOS_POLICY",
        "WRITERDATALIFECYCLE_QOS_POLICY",
        "READERDATALIFECYCLE_QOS_POLICY",
        "TOPICDATA_QOS_POLICY",
        "GROUPDATA_QOS_POLICY",
        "TRANSPORTPRIORITY_QOS_POLICY",
        "LIFESPAN_QOS_POLICY",
        "DURABILITYSERVICE_QOS_POLICY",
        "DATAREPRESENTATION_QOS_POLICY",
        "TYPE_CONSISTENCY_ENFORCEMENT_QOS_POLICY",
    };
    const auto index = static_cast<std::size_t>(id);
    return index < std::size(names) ? names[index] : "UNKNOWN_QOS_POLICY";
}
