// Tells what the middleware does not do with a QoS.
#ifndef ZUV_PLATFORM_DDS_QOS_NOTICE_HPP
#define ZUV_PLATFORM_DDS_QOS_NOTICE_HPP

#include "platform/dds/QosTable.hpp"

namespace zuv::dds
{

// One line at warning level for each field that has another value than its default, and no effect: see QosEffect. Each
// field of a kind of record is told once in the life of the process, by the first entity that has it while warnings are
// switched on. Any thread.
void tellWhatHasNoEffect(const QosRecord &table, const void *record);

} // namespace zuv::dds

#endif
