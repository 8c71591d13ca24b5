/* What the sample operations of a type allocate and release. */
#ifndef ZUV_PLATFORM_TYPESYS_ALLOCATION_PARAMS_H
#define ZUV_PLATFORM_TYPESYS_ALLOCATION_PARAMS_H

#include "platform/typesys/Types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* How a sample is initialized. */
typedef struct DDS_TypeAllocationParams_t {
    /* Give members that are pointers by declaration their target. No type of the system has one today;
     * optional members have a flag of their own. */
    DDS_Boolean allocate_pointers;
    /* Give optional members their storage, with default values, in place of leaving them absent. */
    DDS_Boolean allocate_optional_members;
    /* Give texts their storage: a bounded text room for its bound and the terminator, an unbounded one
     * an empty text. Without it texts are NULL. */
    DDS_Boolean allocate_memory;
} DDS_TypeAllocationParams_t;

/* How a sample is finalized. */
typedef struct DDS_TypeDeallocationParams_t {
    DDS_Boolean delete_pointers;         /* counterpart of allocate_pointers */
    DDS_Boolean delete_optional_members; /* without it optional members stay as they are */
} DDS_TypeDeallocationParams_t;

#define DDS_TYPE_ALLOCATION_PARAMS_INITIALIZER                                                     \
    {                                                                                              \
        DDS_BOOLEAN_TRUE, DDS_BOOLEAN_FALSE, DDS_BOOLEAN_TRUE                                      \
    }
#define DDS_TYPE_DEALLOCATION_PARAMS_INITIALIZER                                                   \
    {                                                                                              \
        DDS_BOOLEAN_TRUE, DDS_BOOLEAN_TRUE                                                         \
    }

/* Pointers yes, optional members no, memory yes. */
extern const DDS_TypeAllocationParams_t DDS_TYPE_ALLOCATION_PARAMS_DEFAULT;
/* Everything is released. */
extern const DDS_TypeDeallocationParams_t DDS_TYPE_DEALLOCATION_PARAMS_DEFAULT;

#ifdef __cplusplus
}
#endif

#endif
