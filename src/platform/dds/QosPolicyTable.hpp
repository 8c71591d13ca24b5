// The policies that the records are made of.
#ifndef ZUV_PLATFORM_DDS_QOS_POLICY_TABLE_HPP
#define ZUV_PLATFORM_DDS_QOS_POLICY_TABLE_HPP

#include "platform/dds/QosTable.hpp"

namespace zuv::dds
{

// OMG DDS 1.4, 2.2.3, in its order; DDS-XTypes 1.3, 7.6.3 for the representation.
extern const QosPolicy kUserData;
extern const QosPolicy kTopicData;
extern const QosPolicy kGroupData;
extern const QosPolicy kDurability;
extern const QosPolicy kDurabilityService;
extern const QosPolicy kPresentation;
extern const QosPolicy kDeadline;
extern const QosPolicy kLatencyBudget;
extern const QosPolicy kOwnership;
extern const QosPolicy kOwnershipStrength;
extern const QosPolicy kLiveliness;
extern const QosPolicy kTimeBasedFilter;
extern const QosPolicy kPartition;
extern const QosPolicy kReliability;
extern const QosPolicy kTransportPriority;
extern const QosPolicy kLifespan;
extern const QosPolicy kDestinationOrder;
extern const QosPolicy kHistory;
extern const QosPolicy kResourceLimits;
extern const QosPolicy kEntityFactory;
extern const QosPolicy kWriterDataLifecycle;
extern const QosPolicy kReaderDataLifecycle;
extern const QosPolicy kRepresentation;

// Beyond the standard.
extern const QosPolicy kProperty;
extern const QosPolicy kParticipantName;
extern const QosPolicy kService;
extern const QosPolicy kParticipantResourceLimits;
extern const QosPolicy kDiscovery;
extern const QosPolicy kTransportBuiltin;
extern const QosPolicy kWriterResourceLimits;
extern const QosPolicy kReaderResourceLimits;
extern const QosPolicy kWriterProtocol;
extern const QosPolicy kReaderProtocol;
extern const QosPolicy kBatch;
extern const QosPolicy kTopicQueryDispatch;

} // namespace zuv::dds

#endif
