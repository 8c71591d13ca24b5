#include "config/PartitionMatch.h"

#include "log/Log.h"
#include "platform/mavo/String.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

constexpr const char *kDefaultPartition = "";
char g_defaultName[] = "";
char *g_defaultNames[] = {g_defaultName};

// Whether the predicate holds for a partition of the sequence. A missing text is the empty one.
template <typename Predicate>
bool anyOf(const DDS_StringSeq &partitions, Predicate predicate)
{
    for (DDS_Long index = 0; index < DDS_StringSeq_get_length(&partitions); ++index) {
        const char *const partition = DDS_StringSeq_get(&partitions, index);
        if (predicate(partition != nullptr ? partition : kDefaultPartition)) {
            return true;
        }
    }
    return false;
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
    const DDS_StringSeq &rights = orDefault(*partitionRight);
    const bool rightPatternsOnly =
        !anyOf(rights, [](const char *right) { return !isPattern(right); });
    bool leftPatternsOnly = true;
    const bool isMatched = anyOf(orDefault(*partitionLeft), [&](const char *left) {
        leftPatternsOnly = leftPatternsOnly && isPattern(left);
        return anyOf(rights, [left](const char *right) { return matches(left, right); }) ||
               (rightPatternsOnly && matches(left, kDefaultPartition));
    });
    if (isMatched) {
        return 1;
    }
    if (!leftPatternsOnly || rightPatternsOnly) {
        return leftPatternsOnly && rightPatternsOnly;
    }
    return anyOf(*partitionRight,
                 [](const char *right) { return matches(right, kDefaultPartition); });
}
}
