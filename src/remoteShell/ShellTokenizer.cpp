#include <array>
#include <string_view>

#include "remoteShell/Shell.h"

namespace
{

// Where one of these begins, an entity's name or inline text goes on to the end of the line.
constexpr std::array<std::string_view, 8> kRestOfLinePrefixes = {
    "str://",      "topic_route.",  "auto_topic_route.", "route.",
    "auto_route.", "domain_route.", "polling_session.",  "session."};

enum class State { betweenTokens, inToken, inRestOfLine };

// Bytes from 128 up are negative, and so are blanks, as are control characters and the terminator.
bool isBlank(char character)
{
    const auto byte = static_cast<signed char>(character);
    return byte <= 32 || byte == 127;
}

bool startsRestOfLine(const char *text)
{
    // No copy of the text and no length of it: the prefixes are compared up to their own ends.
    for (const std::string_view prefix : kRestOfLinePrefixes) {
        std::size_t matched = 0;
        while (matched < prefix.size() && text[matched] == prefix[matched]) {
            ++matched;
        }
        if (matched == prefix.size()) {
            return true;
        }
    }
    return false;
}

class Tokenizer
{
public:
    Tokenizer(char *line, char **argv, int &argc) : cursor_(line), argv_(argv), argc_(argc) {}

    void run()
    {
        while (*cursor_ != '\0') {
            if (state_ != State::inRestOfLine && argc_ > 0 && startsRestOfLine(cursor_)) {
                beginToken(State::inRestOfLine);
            }
            if (!consumeQuote()) {
                consumeByte();
            }
        }
    }

private:
    // The count goes on where the vector ends, so that the caller sees that tokens are missing.
    void beginToken(State state)
    {
        if (argc_ < BREL_SHELL_MAX_TOKENS) {
            argv_[argc_] = cursor_;
        }
        ++argc_;
        state_ = state;
        ++cursor_;
    }

    void endToken()
    {
        *cursor_++ = '\0';
        state_ = State::betweenTokens;
    }

    // True if the byte is a quote that opens or closes; any other quote is an ordinary byte.
    bool consumeQuote()
    {
        if (*cursor_ != '"') {
            return false;
        }
        if (state_ == State::betweenTokens && !quoted_) {
            quoted_ = true;
            ++cursor_;
            return true;
        }
        if (state_ == State::inToken && quoted_ && isBlank(cursor_[1])) {
            quoted_ = false;
            endToken();
            return true;
        }
        return false;
    }

    void consumeByte()
    {
        switch (state_) {
        case State::betweenTokens:
            if (isBlank(*cursor_) && !quoted_) {
                ++cursor_;
            } else {
                beginToken(State::inToken);
            }
            break;
        case State::inToken:
            if (!isBlank(*cursor_) || quoted_) {
                ++cursor_;
            } else {
                endToken();
            }
            break;
        case State::inRestOfLine:
            // Only a byte of 128 or above ends such a token; the new line stays in it.
            if (static_cast<signed char>(*cursor_) > 0) {
                ++cursor_;
            } else {
                endToken();
            }
            break;
        }
    }

    char *cursor_;
    char **argv_;
    int &argc_;
    State state_ = State::betweenTokens;
    bool quoted_ = false;
};

} // namespace

void BRELShell_createArgv(char *line, char **argv, int *argc)
{
    if (line == nullptr) {
        return;
    }
    *argc = 0;
    Tokenizer(line, argv, *argc).run();
}
