#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/mavo/String.h"

namespace
{

int signOf(int number)
{
    return (number > 0) - (number < 0);
}

TEST(MavoCompare, ignoresCase)
{
    EXPECT_EQ(MAVOString_iCompare("-HELP", "-help"), 0);
    EXPECT_EQ(MAVOString_iCompare("", ""), 0);
    EXPECT_EQ(signOf(MAVOString_iCompare("abc", "ABD")), -1);
    EXPECT_EQ(signOf(MAVOString_iCompare("abc", "AB")), 1);
    EXPECT_EQ(signOf(MAVOString_iCompare("ab", "ABC")), -1);
}

TEST(MavoCompare, foldsLettersOnly)
{
    EXPECT_NE(MAVOString_iCompare("@[", "`{"), 0); // beside the letters, the same distance apart
    EXPECT_NE(MAVOString_iCompare("\xc4", "\xe4"), 0);
}

TEST(MavoCompare, ordersBytesWithoutSign)
{
    EXPECT_EQ(signOf(MAVOString_iCompare("a", "\xc3\xa4")), -1);
}

TEST(MavoCompare, looksAtNoMoreThanTheLength)
{
    EXPECT_EQ(MAVOString_inCompare("domainId", "DOM", 3), 0);
    EXPECT_NE(MAVOString_inCompare("domainId", "DOM", 4), 0);
    EXPECT_EQ(MAVOString_inCompare("a", "b", 0), 0);
    EXPECT_EQ(MAVOString_inCompare("ab", "ab", 100), 0);
    const char unterminated[2] = {'X', 'y'};
    EXPECT_EQ(MAVOString_inCompare("xyz", unterminated, 2), 0);
}

std::vector<std::string> tokensOf(std::string text, const char *separators)
{
    std::vector<std::string> tokens;
    char *position = nullptr;
    for (char *token = MAVOString_strToken(text.data(), separators, &position); token != nullptr;
         token = MAVOString_strToken(nullptr, separators, &position)) {
        tokens.push_back(token);
    }
    return tokens;
}

using Tokens = std::vector<std::string>;

TEST(MavoToken, cutsAtTheSeparatorsAndDropsEmptyPieces)
{
    EXPECT_EQ(tokensOf("route.a.b", "."), (Tokens{"route", "a", "b"}));
    EXPECT_EQ(tokensOf("..route..a.", "."), (Tokens{"route", "a"}));
    EXPECT_EQ(tokensOf("p[k]", "[]"), (Tokens{"p", "k"}));
    EXPECT_EQ(tokensOf("alone", "."), (Tokens{"alone"}));
}

TEST(MavoToken, thereIsNoneInATextOfSeparators)
{
    EXPECT_EQ(tokensOf("", "."), Tokens{});
    EXPECT_EQ(tokensOf("...", "."), Tokens{});
}

TEST(MavoToken, cutsInPlace)
{
    char text[] = "p[k]";
    char *position = nullptr;
    EXPECT_EQ(MAVOString_strToken(text, "[]", &position), text);
    EXPECT_STREQ(text, "p");
    EXPECT_EQ(MAVOString_strToken(nullptr, "[]", &position), text + 2);
}

TEST(MavoToken, twoTextsCanBeCutInTurn)
{
    char outer[] = "a.b";
    char inner[] = "1 2";
    char *outerPosition = nullptr;
    char *innerPosition = nullptr;
    EXPECT_STREQ(MAVOString_strToken(outer, ".", &outerPosition), "a");
    EXPECT_STREQ(MAVOString_strToken(inner, " ", &innerPosition), "1");
    EXPECT_STREQ(MAVOString_strToken(nullptr, ".", &outerPosition), "b");
    EXPECT_STREQ(MAVOString_strToken(nullptr, " ", &innerPosition), "2");
}

TEST(MavoBoolean, readsItsWordsInAnyCaseWithSpaceAround)
{
    for (const char *text : {"true", "1", "yes", "TRUE", " \n\ttrue\r ", "Yes"}) {
        int value = 7;
        EXPECT_EQ(MAVOString_strToBoolean(text, &value), 1) << text;
        EXPECT_EQ(value, 1) << text;
    }
    for (const char *text : {"false", "0", "no", "False", "  0"}) {
        int value = 7;
        EXPECT_EQ(MAVOString_strToBoolean(text, &value), 1) << text;
        EXPECT_EQ(value, 0) << text;
    }
}

TEST(MavoBoolean, refusesAllElseAndStoresNothing)
{
    for (const char *text : {"", " ", "tru", "truee", "true false", "2", "01", "-1", "on"}) {
        int value = 7;
        EXPECT_EQ(MAVOString_strToBoolean(text, &value), 0) << text;
        EXPECT_EQ(value, 7) << text;
    }
}

} // namespace
