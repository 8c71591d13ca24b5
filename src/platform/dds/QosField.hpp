// The operations on one field of a policy, which lies at the field's offset in `policy`.
#ifndef ZUV_PLATFORM_DDS_QOS_FIELD_HPP
#define ZUV_PLATFORM_DDS_QOS_FIELD_HPP

#include "platform/dds/QosPolicies.h"
#include "platform/dds/QosTable.hpp"

namespace zuv::dds
{

// Room for the value of any field.
constexpr std::size_t kMaxQosFieldSize = 64;

// Into an empty field; `number` is the default of the kinds that have one.
void setDefault(void *policy, const QosField &field, std::int32_t number);
// Into an empty field. False when there is no memory.
bool copyField(void *policy, const void *source, const QosField &field);
void finalizeField(void *policy, const QosField &field);
bool fieldEquals(const void *left, const void *right, const QosField &field);

void finalizeProperty(DDS_Property_t &property);

} // namespace zuv::dds

#endif
