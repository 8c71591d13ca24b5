#include <chrono>
#include <random>
#include <string>

#include <fnmatch.h>

#include <gtest/gtest.h>

#include "platform/mavo/String.h"

namespace
{

struct Case {
    const char *text;
    const char *pattern;
    bool matches;
};

const Case kCases[] = {
    // Plain text.
    {"", "", true},
    {"a", "", false},
    {"", "a", false},
    {"S1", "S1", true},
    {"S1", "s1", false},
    {"S1", "S", false},
    {"S1", "S12", false},
    // Stars and question marks.
    {"", "*", true},
    {"anything/.at all", "*", true},
    {"S1", "S*", true},
    {"S", "S*", true},
    {"S1", "*1", true},
    {"S1", "*S", false},
    {"abcabd", "*ab?", true},
    {"abcabd", "a**b*d", true},
    {"abcabd", "a*c*c*", false},
    {"aab", "*ab", true},
    {"S1", "S?", true},
    {"S", "S?", false},
    {"", "?", false},
    {"ab", "*?", true},
    // Brackets.
    {"b", "[abc]", true},
    {"d", "[abc]", false},
    {"d", "[!abc]", true},
    {"d", "[^abc]", true},
    {"a", "[!abc]", false},
    {"", "[!abc]", false},
    {"m", "[a-z]", true},
    {"M", "[a-z]", false},
    {"5", "[a-z0-9]", true},
    {"-", "[a-]", true},
    {"-", "[-a]", true},
    {"]", "[]]", true},
    {"a", "[]a]", true},
    {"]", "[!]]", false},
    {"b", "[z-a]", false},
    {"S7x", "S[0-9]*", true},
    {"]", "[\\]]", true},
    {"-", "[a\\-z]", true},
    {"b", "[a\\-z]", false},
    {"*", "[*]", true},
    {"a", "[*]", false},
    {"7", "[[:digit:]]", true},
    {"x", "[[:digit:]x]", true},
    {"x", "[![:digit:]]", true},
    {"y", "[[:nonsense:]]", false},
    // A bracket that nothing closes.
    {"[a", "[a", true},
    {"a", "[a", false},
    {"[", "[", true},
    {"[!", "[!", true},
    {"[a-", "[a-", true},
    // Escapes.
    {"*", "\\*", true},
    {"a", "\\*", false},
    {"\\", "\\\\", true},
    {"a", "\\a", true},
    {"a\\", "a\\", false},
    {"[a]", "\\[a]", true},
    // Bytes above ASCII.
    {"\xc3\xa4", "??", true},
    {"\xff", "[\xf0-\xff]", true},
};

TEST(MavoPattern, matchesAsDescribed)
{
    for (const auto &[text, pattern, matches] : kCases) {
        EXPECT_EQ(MAVOString_matchesPattern(text, pattern), matches) << text << " ~ " << pattern;
    }
}

TEST(MavoPattern, agreesWithThePosixMatcher)
{
    std::mt19937 random(20);
    const std::string textLetters = "ab]-";
    const std::string patternLetters = "ab**??[]!-\\";
    const auto word = [&](const std::string &letters, std::size_t most) {
        std::string made(random() % (most + 1), '?');
        for (char &letter : made) {
            letter = letters[random() % letters.size()];
        }
        return made;
    };
    int matched = 0;
    for (int round = 0; round < 300000; ++round) {
        const std::string text = word(textLetters, 6);
        const std::string pattern = word(patternLetters, 8);
        const bool expected = fnmatch(pattern.c_str(), text.c_str(), 0) == 0;
        ASSERT_EQ(MAVOString_matchesPattern(text.c_str(), pattern.c_str()), expected)
            << text << " ~ " << pattern;
        matched += expected;
    }
    EXPECT_GT(matched, 10000);
}

TEST(MavoPattern, manyStarsDoNotMakeItSlow)
{
    std::string pattern;
    for (int star = 0; star < 50; ++star) {
        pattern += "*a";
    }
    const std::string text(2000, 'a');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(MAVOString_matchesPattern(text.c_str(), (pattern + "*b").c_str()));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
}

TEST(MavoPattern, isKnownByItsCharacters)
{
    for (const char *pattern : {"*", "S?", "a[bc]", "\\\\*", "["}) {
        EXPECT_TRUE(MAVOString_isPattern(pattern)) << pattern;
    }
    for (const char *text : {"", "S1", "a]", "\\*", "a\\?b\\[", "\\"}) {
        EXPECT_FALSE(MAVOString_isPattern(text)) << text;
    }
}

TEST(MavoPatternList, matchesIfOneOfItsPatternsDoes)
{
    EXPECT_TRUE(MAVOString_matchesAnyPattern("S2", "S1,S2", ','));
    EXPECT_TRUE(MAVOString_matchesAnyPattern("S2", "T*,S?", ','));
    EXPECT_FALSE(MAVOString_matchesAnyPattern("S22", "T*,S?", ','));
    EXPECT_FALSE(MAVOString_matchesAnyPattern("S1,S2", "S1,S2", ','));
    EXPECT_FALSE(MAVOString_matchesAnyPattern("S2", "S1, S2", ','));
    EXPECT_TRUE(MAVOString_matchesAnyPattern("S2", "S1|S2", '|'));
}

TEST(MavoPatternList, anEmptyPieceMatchesTheEmptyText)
{
    EXPECT_TRUE(MAVOString_matchesAnyPattern("", "", ','));
    EXPECT_TRUE(MAVOString_matchesAnyPattern("", "a,", ','));
    EXPECT_TRUE(MAVOString_matchesAnyPattern("", ",a", ','));
    EXPECT_FALSE(MAVOString_matchesAnyPattern("", "a", ','));
    EXPECT_FALSE(MAVOString_matchesAnyPattern("a", "", ','));
}

TEST(MavoMatchingElement, eitherSideMayBeThePattern)
{
    EXPECT_TRUE(MAVOString_hasMatchingElement("A*", "A1", ','));
    EXPECT_TRUE(MAVOString_hasMatchingElement("A1", "A*", ','));
    EXPECT_TRUE(MAVOString_hasMatchingElement("A1", "A1", ','));
    EXPECT_FALSE(MAVOString_hasMatchingElement("A1", "B*", ','));
    EXPECT_TRUE(MAVOString_hasMatchingElement("x,A1", "B*,A*", ','));
    EXPECT_FALSE(MAVOString_hasMatchingElement("x,A1", "B*,C*", ','));
}

TEST(MavoMatchingElement, theEmptyElementMatchesItselfAndTheStar)
{
    EXPECT_TRUE(MAVOString_hasMatchingElement("", "", ','));
    EXPECT_TRUE(MAVOString_hasMatchingElement("*", "", ','));
    EXPECT_FALSE(MAVOString_hasMatchingElement("A*", "", ','));
}

TEST(MavoMatchingElement, equalTextsMatchEvenAsMalformedPatterns)
{
    EXPECT_TRUE(MAVOString_hasMatchingElement("a\\", "a\\", ','));
    EXPECT_TRUE(MAVOString_hasMatchingElement("[ab]", "[ab]", ','));
}

} // namespace
