/* Whether two lists of partitions have something in common (OMG DDS 1.4, 2.2.3.13). */
#ifndef ZUV_CONFIG_PARTITION_MATCH_H
#define ZUV_CONFIG_PARTITION_MATCH_H

#include "platform/typesys/PrimitiveSequences.h"

#ifdef __cplusplus
extern "C" {
#endif

/* The partitions of a stream port that names none: the default partition, whose name is empty. */
extern const DDS_StringSeq BREL_XML_STREAM_PORT_PARTITION_DEFAULT;

/* 1 if a partition on the left matches one on the right, either of them being a name or a pattern; an
 * element may also list several, parted by ",". A sequence without elements stands for the default partition,
 * and so does, for the other side, one of patterns alone. Two sides of patterns alone always match.
 *
 * The sides are not alike in one case: with patterns alone on the left and not on the right, what decides in
 * the end is whether an element on the right that is really there matches the default partition.
 *
 * Neither sequence may be NULL: 0 after a report. A NULL element counts as an empty one. */
int BRELUtils_hasMatchingPartition(const DDS_StringSeq *partitionLeft,
                                   const DDS_StringSeq *partitionRight);

#ifdef __cplusplus
}
#endif

#endif
