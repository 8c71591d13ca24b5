/* Samples that are known by their type code alone, and their rendering as text. */
#ifndef ZUV_PLATFORM_TYPESYS_DYNAMIC_DATA_H
#define ZUV_PLATFORM_TYPESYS_DYNAMIC_DATA_H

#include "platform/typesys/PrintFormat.h"
#include "platform/typesys/TypeCode.h"

#ifdef __cplusplus
extern "C" {
#endif

/* A sample and its type. One thread at a time works with it. */
typedef struct DDS_DynamicData DDS_DynamicData;

/* A sample of `type` with default values, NULL when there is no memory or the type has no structure in
 * memory. The type must outlive it. Release with DDS_DynamicData_delete; NULL does nothing there. */
DDS_DynamicData *DDS_DynamicData_new(const DDS_TypeCode *type);
void DDS_DynamicData_delete(DDS_DynamicData *self);

/* NULL for NULL. */
const DDS_TypeCode *DDS_DynamicData_get_type(const DDS_DynamicData *self);

/* Read a payload into the sample. DDS_RETCODE_BAD_PARAMETER for NULL, DDS_RETCODE_ERROR for a payload that
 * is no sample of the type. */
DDS_ReturnCode_t DDS_DynamicData_from_cdr_buffer(DDS_DynamicData *self, const char *buffer,
                                                 unsigned int length);

/* Render the sample. With a NULL `text` the size with the terminator goes to `*length`; otherwise `*length`
 * is the capacity on entry, and on return the size. DDS_RETCODE_BAD_PARAMETER for another NULL;
 * DDS_RETCODE_OUT_OF_RESOURCES when the text does not fit, with the size needed in `*length`. */
DDS_ReturnCode_t DDS_DynamicDataFormatter_to_string_w_format(const DDS_DynamicData *self,
                                                             char *text, DDS_UnsignedLong *length,
                                                             const DDS_PrintFormatProperty *format);

#ifdef __cplusplus
}
#endif

#endif
