/* The name/value list that the configuration hands to plug-ins and adapters.
 *
 * It is short, built once and read afterwards, so it is an array that is searched from its start. A list has
 * no lock: one thread may change it, and none read it meanwhile. A NULL that an operation does not allow is a
 * failed precondition, which is reported. */
#ifndef ZUV_SDK_LIB_PROPERTIES_H
#define ZUV_SDK_LIB_PROPERTIES_H

#include "platform/dds/QosPolicies.h"
#include "platform/typesys/Types.h"
#include "platform/xmlutils/PropertyList.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct ZUV_BrelServiceNameValue {
    char *name;  /* owned by the list */
    void *value; /* a text owned by the list, or a pointer that is borrowed */
} ZUV_BrelServiceNameValue;

typedef struct ZUV_BrelServiceProperties {
    ZUV_BrelServiceNameValue *properties; /* owned; in the order in which they were added */
    int count;
    /* True: the values are texts. It may be cleared on an empty list, for values that are opaque pointers,
     * and must not change while there are entries. */
    DDS_Boolean string_values;
} ZUV_BrelServiceProperties;

/* Make a record, whatever it held, an empty list of texts. False for NULL. */
DDS_Boolean ZUV_BrelServiceProperties_initialize(ZUV_BrelServiceProperties *self);

/* Release the entries and leave the list empty; `string_values` stays. Twice does no harm. `self` must not be
 * NULL. */
void ZUV_BrelServiceProperties_finalize(ZUV_BrelServiceProperties *self);

/* Add an entry at the end, even if there is one of that name. The name is copied; so is the value in a list
 * of texts. No argument may be NULL. False after a report: then the list is as it was. */
DDS_Boolean ZUV_BrelServiceProperties_add(ZUV_BrelServiceProperties *self, const char *name,
                                          const void *value);

/* Add the name and value of `property`, which must not be NULL. */
DDS_Boolean ZUV_BrelServiceProperties_addProperty(ZUV_BrelServiceProperties *self,
                                                  const DDS_Property_t *property);

/* Give the first entry of that name, without regard to case, the value; its name stays as it was. If there is
 * none, add one. With `override` false an entry that exists is left alone, which is success as well. No
 * pointer may be NULL. False after a report: then the list is as it was. */
DDS_Boolean ZUV_BrelServiceProperties_assert_w_override(ZUV_BrelServiceProperties *self,
                                                        const char *name, const void *value,
                                                        DDS_Boolean override);

/* The same with `override` true. */
DDS_Boolean ZUV_BrelServiceProperties_assert(ZUV_BrelServiceProperties *self, const char *name,
                                             const void *value);

/* The first entry of that name without regard to case, or NULL. It stays the list's, and lives until the list
 * changes. Neither argument may be NULL. */
ZUV_BrelServiceNameValue *
ZUV_BrelServiceProperties_lookupProperty(const ZUV_BrelServiceProperties *self, const char *name);

/* The value of the first entry of just that name, or NULL. Case counts here, so that two names which differ
 * in case alone are one entry for _assert and two for this. `self` must not be NULL; a NULL `name` gives NULL.
 * The value lives until the list changes. */
void *ZUV_BrelServiceProperties_lookup_property(const ZUV_BrelServiceProperties *self,
                                                const char *name);

/* The same for names that are compared without their prefix: each one, that of the entry as well as the one
 * asked for, counts from behind the first place where `prefix` stands in it, be that in its middle, and whole
 * if the prefix does not stand in it. Neither `self` nor `prefix` may be NULL; a NULL `name` gives NULL. */
void *ZUV_BrelServiceProperties_lookup_property_with_prefix(const ZUV_BrelServiceProperties *self,
                                                            const char *prefix, const char *name);

/* Make `self` a copy of `other`: the names, and the values in lists of texts, are copied. Returns `self`, or
 * NULL after a report. Two lists of different values cannot be copied: then `self` is as it was. Without
 * memory it is a valid list, with some entries copied. Neither may be NULL.
 *
 * In a list of pointers, names beyond the length of `other` are not released: they belong to whoever still
 * holds them. */
ZUV_BrelServiceProperties *ZUV_BrelServiceProperties_copy(ZUV_BrelServiceProperties *self,
                                                          const ZUV_BrelServiceProperties *other);

/* Whether both lists hold equal names and values at equal places: lists of the same entries in another order
 * are not equal. Case counts; texts are compared by content, pointers by address. Neither may be NULL. */
DDS_Boolean ZUV_BrelServiceProperties_equals(const ZUV_BrelServiceProperties *left,
                                             const ZUV_BrelServiceProperties *right);

/* Add each property of `source` at the end of `dest`, in order. Neither may be NULL. False after a report:
 * then those before the one that failed stay added. */
DDS_Boolean ZUV_BrelServiceProperties_from_xml_property_list(ZUV_BrelServiceProperties *dest,
                                                             const ZUVXMLUTILSPropertyList *source);

#ifdef __cplusplus
}
#endif

#endif
