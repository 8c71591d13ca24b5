#include "config/DdsUtils.h"

#include <cstring>

#include "log/Log.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

bool equalTexts(const char *left, const char *right)
{
    return left == right || (left != nullptr && right != nullptr && std::strcmp(left, right) == 0);
}

int32_t poolCount(DDS_Long count)
{
    return count == DDS_LENGTH_UNLIMITED ? ZUV_OSAPI_POOL_UNLIMITED : count;
}

} // namespace

extern "C" {

int BRELUtils_StringSeq_equals(const DDS_StringSeq *a, const DDS_StringSeq *b)
{
    if (IS_NULL(a) || IS_NULL(b)) {
        return 0;
    }
    const DDS_Long length = DDS_StringSeq_get_length(a);
    bool areEqual = length == DDS_StringSeq_get_length(b);
    for (DDS_Long index = 0; areEqual && index < length; ++index) {
        areEqual = equalTexts(DDS_StringSeq_get(a, index), DDS_StringSeq_get(b, index));
    }
    return areEqual;
}

int BRELUtils_isHandleInSequence(const DDS_InstanceHandleSeq *handleSeq,
                                 const DDS_InstanceHandle_t *handle)
{
    if (IS_NULL(handleSeq) || IS_NULL(handle)) {
        return 0;
    }
    const DDS_Long length = DDS_InstanceHandleSeq_get_length(handleSeq);
    for (DDS_Long index = 0; index < length; ++index) {
        const DDS_InstanceHandle_t element = DDS_InstanceHandleSeq_get(handleSeq, index);
        if (DDS_InstanceHandle_equals(&element, handle)) {
            return 1;
        }
    }
    return 0;
}

void BRELUtils_guidToBuiltinTopicKey(ZUV_Service_BuiltinTopicKey *out, const DDS_GUID_t *in)
{
    if (IS_NULL(out) || IS_NULL(in)) {
        return;
    }
    const DDS_Octet *octet = in->value;
    for (DDS_UnsignedLong &word : out->value) {
        word = 0;
        for (size_t count = 0; count < sizeof(word); ++count) {
            word = word << 8 | *octet++;
        }
    }
}

void BRELUtils_allocationSettingsToGrowthProperty(ZUVOsapiPoolGrowthProperty *growth,
                                                  const DDS_AllocationSettings_t *settings)
{
    if (IS_NULL(growth) || IS_NULL(settings)) {
        return;
    }
    *growth = {settings->initial_count, poolCount(settings->max_count),
               poolCount(settings->incremental_count)};
}
}
