/* Cyclone DDS topics for peers that say nothing about data representation.
 *
 * Such a peer counts as one of XCDR 1, so an endpoint that offers XCDR 2 alone never matches it. The topics
 * made here let an endpoint announce both, XCDR 1 first, while every sample is written in XCDR 2. */
#ifndef ZUV_TESTS_INTEROP_BOTH_REPRESENTATIONS_H
#define ZUV_TESTS_INTEROP_BOTH_REPRESENTATIONS_H

#include <stdbool.h>

#include <dds/dds.h>

/* As dds_create_topic with no QoS and no listener. */
dds_entity_t createTopicOfBothRepresentations(dds_entity_t participant,
                                              const dds_topic_descriptor_t *descriptor,
                                              const char *name);

/* Set in `qos` what such an endpoint announces. */
void announceBothRepresentations(dds_qos_t *qos);

/* The sample in XCDR 2, little endian, without the encapsulation header. Returns the size, and in `*bytes` a
 * buffer to release with dds_free; 0 when the sample cannot be written. */
size_t serializeXcdr2(const dds_topic_descriptor_t *descriptor, const void *sample,
                      unsigned char **bytes);

#endif
