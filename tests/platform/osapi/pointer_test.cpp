#include "platform/osapi/Pointer.h"

#include <cstdint>
#include <cstdio>

#include <gtest/gtest.h>

namespace
{

TEST(PointerFromText, isTheOneThatWasPrinted)
{
    int target = 0;
    char text[32];
    for (void *const pointer :
         {static_cast<void *>(&target), reinterpret_cast<void *>(&std::printf),
          reinterpret_cast<void *>(UINTPTR_MAX), reinterpret_cast<void *>(1), (void *)nullptr}) {
        std::snprintf(text, sizeof(text), "%p", pointer);
        EXPECT_EQ(ZUVOsapiUtility_strtoptr(text), pointer) << text;
    }
}

TEST(PointerFromText, isNullForAnythingElse)
{
    for (const char *const text : {"", "0x", "1234", "0x12g", "0x12 ", " 0x12", "-0x12", "0x-12",
                                   "0x0x12", "(nil)", "0x10000000000000000"}) {
        EXPECT_EQ(ZUVOsapiUtility_strtoptr(text), nullptr) << text;
    }
    EXPECT_EQ(ZUVOsapiUtility_strtoptr(nullptr), nullptr);
}

} // namespace
