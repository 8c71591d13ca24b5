#include "sdkLib/Properties.h"

#include <cstring>
#include <span>

#include "log/Log.h"
#include "platform/mavo/String.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"
#include "sdkLib/Report.hpp"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

using brel::Place;
using List = ZUV_BrelServiceProperties;
using Entry = ZUV_BrelServiceNameValue;

constexpr const char *kArrayTag = "service properties";

std::span<Entry> entriesOf(const List &list)
{
    return {list.properties, static_cast<size_t>(list.count)};
}

bool resize(List &self, int count, const Place &place = Place::current())
{
    void *array = self.properties;
    if (ZUVOsapiHeap_reallocate(&array, static_cast<size_t>(count) * sizeof(Entry), kArrayTag) ==
        0) {
        brel::reportFailure(place, ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd, count,
                            static_cast<int>(sizeof(Entry)));
        return false;
    }
    self.properties = static_cast<Entry *>(array);
    return true;
}

bool replaceText(char **text, const char *newText, const Place &place)
{
    if (DDS_String_replace(text, newText) == nullptr && newText != nullptr) {
        brel::reportFailure(place, ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                            static_cast<int>(std::strlen(newText)));
        return false;
    }
    return true;
}

bool replaceValue(const List &list, Entry &entry, const void *value,
                  const Place &place = Place::current())
{
    if (!list.string_values) {
        entry.value = const_cast<void *>(value);
        return true;
    }
    char *text = static_cast<char *>(entry.value);
    const bool isReplaced = replaceText(&text, static_cast<const char *>(value), place);
    entry.value = text;
    return isReplaced;
}

bool fill(const List &list, Entry &entry, const char *name, const void *value,
          const Place &place = Place::current())
{
    return replaceText(&entry.name, name, place) && replaceValue(list, entry, value, place);
}

// A pointer that is borrowed is left alone.
void clear(const List &list, Entry &entry)
{
    DDS_String_free(entry.name);
    if (list.string_values) {
        DDS_String_free(static_cast<char *>(entry.value));
    }
    entry = {};
}

// Fill the slot behind the last entry, which must be there, and count it.
bool append(List &self, const char *name, const void *value, const Place &place = Place::current())
{
    Entry &entry = self.properties[self.count];
    entry = {};
    if (!fill(self, entry, name, value, place)) {
        clear(self, entry);
        return false;
    }
    ++self.count;
    return true;
}

const char *behindPrefix(const char *name, const char *prefix)
{
    const char *const found = std::strstr(name, prefix);
    return found != nullptr ? found + std::strlen(prefix) : name;
}

bool hasEqualValues(const List &list, const Entry &left, const Entry &right)
{
    const bool hasTexts = list.string_values && left.value != nullptr && right.value != nullptr;
    return hasTexts ? std::strcmp(static_cast<const char *>(left.value),
                                  static_cast<const char *>(right.value)) == 0
                    : left.value == right.value;
}

} // namespace

extern "C" {

DDS_Boolean ZUV_BrelServiceProperties_initialize(ZUV_BrelServiceProperties *self)
{
    if (IS_NULL(self)) {
        return DDS_BOOLEAN_FALSE;
    }
    *self = {nullptr, 0, DDS_BOOLEAN_TRUE};
    return DDS_BOOLEAN_TRUE;
}

void ZUV_BrelServiceProperties_finalize(ZUV_BrelServiceProperties *self)
{
    if (IS_NULL(self)) {
        return;
    }
    for (Entry &entry : entriesOf(*self)) {
        clear(*self, entry);
    }
    ZUVOsapiHeap_free(self->properties);
    self->properties = nullptr;
    self->count = 0;
}

DDS_Boolean ZUV_BrelServiceProperties_add(ZUV_BrelServiceProperties *self, const char *name,
                                          const void *value)
{
    if (IS_NULL(self) || IS_NULL(name) || IS_NULL(value)) {
        return DDS_BOOLEAN_FALSE;
    }
    return resize(*self, self->count + 1) && append(*self, name, value);
}

DDS_Boolean ZUV_BrelServiceProperties_addProperty(ZUV_BrelServiceProperties *self,
                                                  const DDS_Property_t *property)
{
    if (IS_NULL(property)) {
        return DDS_BOOLEAN_FALSE;
    }
    return ZUV_BrelServiceProperties_add(self, property->name, property->value);
}

DDS_Boolean ZUV_BrelServiceProperties_assert_w_override(ZUV_BrelServiceProperties *self,
                                                        const char *name, const void *value,
                                                        DDS_Boolean override)
{
    if (IS_NULL(self) || IS_NULL(name) || IS_NULL(value)) {
        return DDS_BOOLEAN_FALSE;
    }
    Entry *const present = ZUV_BrelServiceProperties_lookupProperty(self, name);
    if (present != nullptr) {
        return !override || replaceValue(*self, *present, value);
    }
    if (!ZUV_BrelServiceProperties_add(self, name, value)) {
        ZUV_LOG_TEMPLATE(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS,
                         &ZUV_LOG_ANY_FAILURE_s, "add property=%s", name);
        return DDS_BOOLEAN_FALSE;
    }
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean ZUV_BrelServiceProperties_assert(ZUV_BrelServiceProperties *self, const char *name,
                                             const void *value)
{
    return ZUV_BrelServiceProperties_assert_w_override(self, name, value, DDS_BOOLEAN_TRUE);
}

ZUV_BrelServiceNameValue *
ZUV_BrelServiceProperties_lookupProperty(const ZUV_BrelServiceProperties *self, const char *name)
{
    if (IS_NULL(self) || IS_NULL(name)) {
        return nullptr;
    }
    for (Entry &entry : entriesOf(*self)) {
        if (MAVOString_iCompare(entry.name, name) == 0) {
            return &entry;
        }
    }
    return nullptr;
}

void *ZUV_BrelServiceProperties_lookup_property(const ZUV_BrelServiceProperties *self,
                                                const char *name)
{
    return ZUV_BrelServiceProperties_lookup_property_with_prefix(self, "", name);
}

void *ZUV_BrelServiceProperties_lookup_property_with_prefix(const ZUV_BrelServiceProperties *self,
                                                            const char *prefix, const char *name)
{
    if (IS_NULL(self) || IS_NULL(prefix)) {
        return nullptr;
    }
    if (name == nullptr) {
        return nullptr;
    }
    const char *const asked = behindPrefix(name, prefix);
    for (const Entry &entry : entriesOf(*self)) {
        if (std::strcmp(behindPrefix(entry.name, prefix), asked) == 0) {
            return entry.value;
        }
    }
    return nullptr;
}

ZUV_BrelServiceProperties *ZUV_BrelServiceProperties_copy(ZUV_BrelServiceProperties *self,
                                                          const ZUV_BrelServiceProperties *other)
{
    if (IS_NULL(self) || IS_NULL(other)) {
        return nullptr;
    }
    if ((self->string_values != 0) != (other->string_values != 0)) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ANY_s,
                "cannot copy properties of different value type");
        return nullptr;
    }
    // The count follows each step, so that a list which ran out of memory can still be finalized.
    while (self->string_values && self->count > other->count) {
        clear(*self, self->properties[--self->count]);
    }
    if (!resize(*self, other->count)) {
        return nullptr;
    }
    if (self->count > other->count) {
        self->count = other->count;
    }
    for (int index = 0; index < other->count; ++index) {
        const Entry &source = other->properties[index];
        const bool isCopied = index < self->count
                                  ? fill(*self, self->properties[index], source.name, source.value)
                                  : append(*self, source.name, source.value);
        if (!isCopied) {
            return nullptr;
        }
    }
    return self;
}

DDS_Boolean ZUV_BrelServiceProperties_equals(const ZUV_BrelServiceProperties *left,
                                             const ZUV_BrelServiceProperties *right)
{
    if (IS_NULL(left) || IS_NULL(right)) {
        return DDS_BOOLEAN_FALSE;
    }
    if (left->count != right->count || (left->string_values != 0) != (right->string_values != 0)) {
        return DDS_BOOLEAN_FALSE;
    }
    // By place, not as sets: what a list hands to a plug-in includes its order.
    for (int index = 0; index < left->count; ++index) {
        const Entry &one = left->properties[index];
        const Entry &other = right->properties[index];
        if (std::strcmp(one.name, other.name) != 0 || !hasEqualValues(*left, one, other)) {
            return DDS_BOOLEAN_FALSE;
        }
    }
    return DDS_BOOLEAN_TRUE;
}

DDS_Boolean ZUV_BrelServiceProperties_from_xml_property_list(ZUV_BrelServiceProperties *dest,
                                                             const ZUVXMLUTILSPropertyList *source)
{
    if (IS_NULL(dest) || IS_NULL(source)) {
        return DDS_BOOLEAN_FALSE;
    }
    for (int index = 0; index < source->count; ++index) {
        const ZUVXMLUTILSProperty &property = source->properties[index];
        if (!ZUV_BrelServiceProperties_add(dest, property.name, property.value)) {
            ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ASSERT_FAILURE_s,
                    "user variable");
            return DDS_BOOLEAN_FALSE;
        }
    }
    return DDS_BOOLEAN_TRUE;
}
}
