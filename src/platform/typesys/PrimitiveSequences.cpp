#include "platform/typesys/PrimitiveSequences.h"

#include "platform/typesys/TypeTable.hpp"

namespace
{

constinit const DDS_TypeCode kElementText = {.kind = DDS_TK_STRING,
                                             .length = DDS_UNBOUNDED,
                                             .isLazyText = true,
                                             .slot = &zuv::kSlot<DDS_TK_STRING, -1>};

} // namespace

ZUV_SEQUENCE_DEFINE(DDS_BooleanSeq, DDS_Boolean, NULL)
ZUV_SEQUENCE_DEFINE(DDS_OctetSeq, DDS_Octet, NULL)
ZUV_SEQUENCE_DEFINE(DDS_LongSeq, DDS_Long, NULL)
ZUV_SEQUENCE_DEFINE(DDS_UnsignedLongSeq, DDS_UnsignedLong, NULL)
ZUV_SEQUENCE_DEFINE(DDS_StringSeq, char *, &kElementText)
