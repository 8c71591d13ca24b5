#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "remoteShell/Shell.h"

namespace
{

std::vector<std::string> tokensOf(std::string line)
{
    char *argv[BREL_SHELL_MAX_TOKENS] = {};
    int argc = -1;
    BRELShell_createArgv(line.data(), argv, &argc);
    return {argv, argv + argc};
}

using Tokens = std::vector<std::string>;

TEST(Tokenizer, leavesTheCountAloneWithoutALine)
{
    int argc = 7;
    BRELShell_createArgv(nullptr, nullptr, &argc);
    EXPECT_EQ(argc, 7);
}

TEST(Tokenizer, findsNothingInALineOfBlanks)
{
    EXPECT_EQ(tokensOf(""), Tokens{});
    EXPECT_EQ(tokensOf("  \t \r\n"), Tokens{});
}

TEST(Tokenizer, cutsAtBlanksAndDropsTheNewLine)
{
    EXPECT_EQ(tokensOf("enable S1 x\n"), (Tokens{"enable", "S1", "x"}));
    EXPECT_EQ(tokensOf("  enable\t\tS1  \n"), (Tokens{"enable", "S1"}));
}

TEST(Tokenizer, takesControlCharactersAndDeleteForBlanks)
{
    EXPECT_EQ(tokensOf("a\x01"
                       "b\x1f"
                       "c\x7f"
                       "d\n"),
              (Tokens{"a", "b", "c", "d"}));
}

TEST(Tokenizer, splitsUnquotedTextAtEachHighByte)
{
    EXPECT_EQ(tokensOf("get caf\xc3\xa9s\n"), (Tokens{"get", "caf", "s"}));
    EXPECT_EQ(tokensOf("get \"caf\xc3\xa9 s\"\n"), (Tokens{"get", "caf\xc3\xa9 s"}));
}

TEST(Tokenizer, makesOneTokenOfQuotedText)
{
    EXPECT_EQ(tokensOf("enable \"my service\" x\n"), (Tokens{"enable", "my service", "x"}));
}

TEST(Tokenizer, closesAQuoteOnlyBeforeABlank)
{
    EXPECT_EQ(tokensOf("\"a\"b\"\n"), (Tokens{"a\"b"}));
    EXPECT_EQ(tokensOf("get \"a\""), (Tokens{"get", "a"}));
}

TEST(Tokenizer, keepsAQuoteWithinAnUnquotedToken)
{
    EXPECT_EQ(tokensOf("get a\"b c\"\n"), (Tokens{"get", "a\"b", "c\""}));
}

TEST(Tokenizer, runsAnUnterminatedQuoteToTheEndOfTheLine)
{
    EXPECT_EQ(tokensOf("get \"a b\n"), (Tokens{"get", "a b\n"}));
}

TEST(Tokenizer, startsATokenWithTheSecondOfAnEmptyPairOfQuotes)
{
    EXPECT_EQ(tokensOf("get \"\" x\n"), (Tokens{"get", "\" x\n"}));
}

TEST(Tokenizer, takesTheRestOfTheLineFromEachPrefix)
{
    for (const char *prefix : {"str://", "topic_route.", "auto_topic_route.", "route.",
                               "auto_route.", "domain_route.", "polling_session.", "session."}) {
        const std::string rest = std::string(prefix) + "a \"b\" c\n";
        EXPECT_EQ(tokensOf("get S1 " + rest), (Tokens{"get", "S1", rest}));
    }
}

TEST(Tokenizer, comparesPrefixesWithTheirCase)
{
    EXPECT_EQ(tokensOf("get S1 Session.a b\n"), (Tokens{"get", "S1", "Session.a", "b"}));
}

TEST(Tokenizer, keepsTheNewLineInARestOfLineToken)
{
    EXPECT_EQ(tokensOf("enable S1 domain_route.a b\n"),
              (Tokens{"enable", "S1", "domain_route.a b\n"}));
}

TEST(Tokenizer, neverSplitsTheFirstWord)
{
    EXPECT_EQ(tokensOf("session.x\n"), (Tokens{"session.x"}));
}

TEST(Tokenizer, splitsATokenAtAPrefixInItsMiddleWithoutEndingIt)
{
    EXPECT_EQ(tokensOf("load S1 cfg /tmp/session.xml\n"),
              (Tokens{"load", "S1", "cfg", "/tmp/session.xml\n", "session.xml\n"}));
}

TEST(Tokenizer, findsPrefixesInsideQuotesToo)
{
    EXPECT_EQ(tokensOf("get \"a route.b\" c\n"),
              (Tokens{"get", "a route.b\" c\n", "route.b\" c\n"}));
}

TEST(Tokenizer, keepsAQuoteOpenBehindARestOfLineToken)
{
    // The high byte ends the rest-of-line token; the quote that was opened before still counts.
    EXPECT_EQ(tokensOf("get \"route.b\xc3 c d\n"), (Tokens{"get", "route.b", " c d\n"}));
}

TEST(Tokenizer, endsARestOfLineTokenAtAHighByteAndStartsAfresh)
{
    EXPECT_EQ(tokensOf("get route.a b\xe9 c session.d e\n"),
              (Tokens{"get", "route.a b", "c", "session.d e\n"}));
}

TEST(Tokenizer, doesNotLookForPrefixesWithinARestOfLineToken)
{
    EXPECT_EQ(tokensOf("get topic_route.a session.b\n"),
              (Tokens{"get", "topic_route.a session.b\n"}));
}

TEST(Tokenizer, storesAsManyTokensAsTheVectorHoldsAndCountsTheOthers)
{
    std::string line;
    for (int index = 0; index < 300; ++index) {
        line += "x ";
    }
    // One entry more than the tokenizer may use.
    char guard = '\0';
    std::vector<char *> argv(BREL_SHELL_MAX_TOKENS + 1, &guard);
    int argc = 0;
    BRELShell_createArgv(line.data(), argv.data(), &argc);
    EXPECT_EQ(argc, 300);
    EXPECT_EQ(argv[BREL_SHELL_MAX_TOKENS - 1], line.data() + 2 * (BREL_SHELL_MAX_TOKENS - 1));
    EXPECT_EQ(argv[BREL_SHELL_MAX_TOKENS], &guard);
}

// The rules once more, as they are written down: byte by byte, with two numbers of state. Any line must give
// the same tokens as the tokenizer does.
Tokens tokensByTheRules(std::string line)
{
    static const char *const prefixes[] = {"str://",           "topic_route.", "auto_topic_route.",
                                           "route.",           "auto_route.",  "domain_route.",
                                           "polling_session.", "session."};
    const auto blank = [](signed char byte) { return byte <= 32 || byte == 127; };
    std::vector<std::size_t> starts;
    int state = 0;
    int quoted = 0;
    std::size_t at = 0;
    while (line[at] != '\0') {
        if (state < 2 && !starts.empty()) {
            for (const char *prefix : prefixes) {
                if (line.compare(at, std::string(prefix).size(), prefix) == 0) {
                    starts.push_back(at);
                    state = 2;
                    ++at;
                    break;
                }
            }
        }
        const auto byte = static_cast<signed char>(line[at]);
        if (byte == '"') {
            if (state == 0 && quoted == 0) {
                quoted = 1;
                ++at;
                continue;
            }
            if (state == 1 && quoted == 1 && blank(static_cast<signed char>(line[at + 1]))) {
                line[at++] = '\0';
                quoted = 0;
                state = 0;
                continue;
            }
        }
        if (state == 0) {
            if (!blank(byte) || quoted == 1) {
                starts.push_back(at);
                state = 1;
            }
            ++at;
        } else if ((state == 1 && (!blank(byte) || quoted == 1)) || (state == 2 && byte > 0)) {
            ++at;
        } else {
            line[at++] = '\0';
            state = 0;
        }
    }
    Tokens tokens;
    for (const std::size_t start : starts) {
        tokens.emplace_back(line.c_str() + start);
    }
    return tokens;
}

TEST(Tokenizer, agreesWithTheRulesOnRandomLines)
{
    static const std::string pieces[] = {"a",      " ",    "\"", "route.", "session.",
                                         "str://", "\xe9", "\n", "topic_", "auto_",
                                         ".",      "x=y",  "\t", "\x7f",   "str:/"};
    std::mt19937 random(20240611);
    for (int round = 0; round < 5000; ++round) {
        std::string line;
        for (unsigned count = random() % 24; count > 0; --count) {
            line += pieces[random() % std::size(pieces)];
        }
        ASSERT_EQ(tokensOf(line), tokensByTheRules(line)) << testing::PrintToString(line);
    }
}

} // namespace
