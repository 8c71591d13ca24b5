// The sequence of every type of the system.
#include "AllTypes.h"
#include "support/SequenceSuite.h"

std::span<const zuv_test::SequenceType> zuv_test::sequenceTypes()
{
#define ZUV_TEST_SEQUENCE_OF(T) ZUV_TEST_SEQUENCE(T##Seq, T, T##_get_typecode()),
    static const SequenceType types[] = {ZUV_TEST_ALL_TYPES(ZUV_TEST_SEQUENCE_OF)};
    return types;
}
