// A QoS record of any kind, which an element of the tree holds.
#ifndef ZUV_PLATFORM_DDSXML_QOS_VALUE_HPP
#define ZUV_PLATFORM_DDSXML_QOS_VALUE_HPP

#include <cstdint>
#include <new>

#include "platform/dds/QosTable.hpp"
#include "platform/xmlutils/Memory.hpp"

namespace zuv::ddsxml
{

class QosValue
{
public:
    // With the default values. Throws std::bad_alloc.
    explicit QosValue(const dds::QosRecord &table)
        : table_(table), memory_(table.size / sizeof(std::uint64_t) + 1)
    {
        dds::setQosDefaults(table_, record());
    }
    // A copy.
    explicit QosValue(const QosValue &other) : QosValue(other.table_)
    {
        if (!dds::copyQos(table_, record(), other.record())) {
            dds::finalizeQos(table_, record());
            throw std::bad_alloc();
        }
    }
    ~QosValue() { dds::finalizeQos(table_, record()); }
    QosValue &operator=(const QosValue &) = delete;

    const dds::QosRecord &table() const { return table_; }
    void *record() { return memory_.data(); }
    const void *record() const { return memory_.data(); }

private:
    const dds::QosRecord &table_;
    xmlutils::HeapVector<std::uint64_t> memory_;
};

} // namespace zuv::ddsxml

#endif
