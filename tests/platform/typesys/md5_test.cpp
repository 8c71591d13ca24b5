#include "platform/typesys/Md5.hpp"

#include <cstdio>
#include <string>

#include <gtest/gtest.h>

namespace
{

std::string hexDigestOf(std::string_view text)
{
    zuv::Md5 md5;
    md5.update({reinterpret_cast<const std::uint8_t *>(text.data()), text.size()});
    std::string hex;
    for (const std::uint8_t octet : md5.finish()) {
        char digits[3];
        std::snprintf(digits, sizeof(digits), "%02x", octet);
        hex += digits;
    }
    return hex;
}

} // namespace

// The suite of RFC 1321, A.5.
TEST(Md5, MatchesTheStandardsExamples)
{
    EXPECT_EQ(hexDigestOf(""), "d41d8cd98f00b204e9800998ecf8427e");
    EXPECT_EQ(hexDigestOf("a"), "0cc175b9c0f1b6a831c399e269772661");
    EXPECT_EQ(hexDigestOf("message digest"), "f96b697d7cb7938d525a2f31aaf161d0");
    EXPECT_EQ(hexDigestOf("abcdefghijklmnopqrstuvwxyz"), "c3fcd3d76192e4007dfb496cca67e13b");
    EXPECT_EQ(hexDigestOf("1234567890123456789012345678901234567890123456789012345678901234567890"
                          "1234567890"),
              "57edf4a22be3c955ac49da2e2107b67a");
}

TEST(Md5, PadsEveryLengthAroundABlock)
{
    EXPECT_EQ(hexDigestOf(std::string(55, 'x')), "04364420e25c512fd958a70738aa8f72");
    EXPECT_EQ(hexDigestOf(std::string(56, 'x')), "668a72d5ba17f08e62dabcafad6db14b");
    EXPECT_EQ(hexDigestOf(std::string(64, 'x')), "c1bb4f81d892b2d57947682aeb252456");
}

TEST(Md5, IsTheSamePieceByPiece)
{
    zuv::Md5 md5;
    const std::uint8_t pieces[] = {'a', 'b', 'c'};
    for (const std::uint8_t &piece : pieces) {
        md5.update({&piece, 1});
    }
    zuv::Md5 whole;
    whole.update(pieces);
    EXPECT_EQ(md5.finish(), whole.finish());
}

TEST(MemberId, IsTheMaskedLittleEndianBeginOfTheDigest)
{
    EXPECT_EQ(zuv::memberIdOf("color"), 0x0fa5dd70u); // the example of the type system's standard
    EXPECT_EQ(zuv::memberIdOf("shapesize"), 0x047790dau);
}
