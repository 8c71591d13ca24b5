#include "QosNotice.hpp"

#include <atomic>

#include "platform/log/DDSLog.h"

namespace zuv::dds
{
namespace
{

// A bit for each field of each record, in the order of the table.
constexpr std::size_t kMaxFieldCount = 256;
std::atomic<std::uint64_t> toldFields[kMaxFieldCount / 64];

bool isToldFirst(std::size_t index)
{
    const std::uint64_t bit = std::uint64_t{1} << (index % 64);
    return index >= kMaxFieldCount || (toldFields[index / 64].fetch_or(bit) & bit) == 0;
}

void tell(const QosRecord &table, const QosMember &member, const QosField &field)
{
    ZUV_LOG_PLAIN(
        DDS, ZUV_LOG_BIT_WARNING, DDS_SUBMODULE_ENTITY,
        "%s: %s.%s is kept, and the middleware %s%s%s\n", table.tag, member.policy->tag, field.tag,
        field.effect == QosEffect::kAnnounced ? "does not act on it" : "has no such field",
        field.note[0] != '\0' ? ". " : "", field.note);
}

} // namespace

void tellWhatHasNoEffect(const QosRecord &table, const void *record)
{
    if (!ZUV_LOG_ENABLED(DDS, ZUV_LOG_BIT_WARNING, DDS_SUBMODULE_ENTITY)) {
        return;
    }
    std::size_t index = 0;
    for (const QosRecord *const other : kQosRecords) {
        for (const QosMember &member : other->members) {
            for (const QosField &field : member.policy->fields) {
                const bool hasNoEffect =
                    field.effect == QosEffect::kKept || field.effect == QosEffect::kAnnounced;
                if (other == &table && hasNoEffect && !isQosDefault(record, member, field) &&
                    isToldFirst(index)) {
                    tell(table, member, field);
                }
                ++index;
            }
        }
    }
}

} // namespace zuv::dds
