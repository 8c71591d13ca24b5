#include "config/PartitionMatch.h"

#include <algorithm>
#include <ranges>

#include "log/Log.h"
#include "platform/mavo/String.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

constexpr const char *kDefaultPartition = "";
char g_defaultName[] = "";
char *g_defaultNames[] = {g_defaultName};

auto elementsOf(const DDS_StringSeq &partitions)
{
    return std::views::iota(0, DDS_StringSeq_get_length(&partitions)) |
           std::views::transform([&partitions](DDS_Long index) -> const char * {
               const char *const element = DDS_StringSeq_get(&partitions, index);
               return element != nullptr ? element : "";
           });
}

const DDS_StringSeq &orDefault(const DDS_StringSeq &partitions)
{
    return DDS_StringSeq_get_length(&partitions) != 0 ? partitions
                                                      : BREL_XML_STREAM_PORT_PARTITION_DEFAULT;
}

bool isPattern(const char *partition)
{
    return MAVOString_isPattern(partition) != 0;
}

bool matches(const char *left, const char *right)
{
    return MAVOString_hasMatchingElement(left, right, ',') != 0;
}

} // namespace

extern "C" {

const DDS_StringSeq BREL_XML_STREAM_PORT_PARTITION_DEFAULT = {
    ._contiguous_buffer = g_defaultNames,
    ._discontiguous_buffer = nullptr,
    ._read_token1 = nullptr,
    ._read_token2 = nullptr,
    ._maximum = 1,
    ._length = 1,
    ._sequence_init = DDS_SEQUENCE_MAGIC_NUMBER,
    ._owned = DDS_BOOLEAN_FALSE,
    ._elementAllocParams = DDS_TYPE_ALLOCATION_PARAMS_INITIALIZER,
    ._absolute_maximum = DDS_SEQUENCE_ABSOLUTE_MAXIMUM,
    ._elementDeallocParams = DDS_TYPE_DEALLOCATION_PARAMS_INITIALIZER};

int BRELUtils_hasMatchingPartition(const DDS_StringSeq *partitionLeft,
                                   const DDS_StringSeq *partitionRight)
{
    if (IS_NULL(partitionLeft) || IS_NULL(partitionRight)) {
        return 0;
    }
    const auto lefts = elementsOf(orDefault(*partitionLeft));
    const auto rights = elementsOf(orDefault(*partitionRight));
    const bool rightPatternsOnly = std::ranges::all_of(rights, isPattern);
    bool leftPatternsOnly = true;
    for (const char *const left : lefts) {
        leftPatternsOnly = leftPatternsOnly && isPattern(left);
        if (std::ranges::any_of(rights, [left](auto right) { return matches(left, right); }) ||
            (rightPatternsOnly && matches(left, kDefaultPartition))) {
            return 1;
        }
    }
    if (!leftPatternsOnly || rightPatternsOnly) {
        return leftPatternsOnly && rightPatternsOnly;
    }
    return std::ranges::any_of(elementsOf(*partitionRight),
                               [](auto right) { return matches(right, kDefaultPartition); });
}
}
