#include "platform/mavo/Pattern.h"

#include <algorithm>
#include <string_view>

namespace
{

using std::string_view;

constexpr auto kNone = string_view::npos;

constexpr bool isIn(unsigned char code, unsigned char first, unsigned char last)
{
    return first <= code && code <= last;
}

constexpr bool isLower(unsigned char code)
{
    return isIn(code, 'a', 'z');
}
constexpr bool isUpper(unsigned char code)
{
    return isIn(code, 'A', 'Z');
}
constexpr bool isDigit(unsigned char code)
{
    return isIn(code, '0', '9');
}
constexpr bool isAlpha(unsigned char code)
{
    return isLower(code) || isUpper(code);
}
constexpr bool isAlnum(unsigned char code)
{
    return isAlpha(code) || isDigit(code);
}
constexpr bool isGraph(unsigned char code)
{
    return isIn(code, '!', '~');
}

constexpr struct {
    string_view name;
    bool (*holds)(unsigned char code);
} kClasses[] = {
    {"alnum", isAlnum},
    {"alpha", isAlpha},
    {"blank", [](unsigned char code) { return code == ' ' || code == '\t'; }},
    {"cntrl", [](unsigned char code) { return code < ' ' || code == 0x7f; }},
    {"digit", isDigit},
    {"graph", isGraph},
    {"lower", isLower},
    {"print", [](unsigned char code) { return isIn(code, ' ', '~'); }},
    {"punct", [](unsigned char code) { return isGraph(code) && !isAlnum(code); }},
    {"space", [](unsigned char code) { return code == ' ' || isIn(code, '\t', '\r'); }},
    {"upper", isUpper},
    {"xdigit", [](unsigned char code) { return isDigit(code) || isIn(code | 0x20, 'a', 'f'); }},
};

bool isOfClass(string_view name, unsigned char code)
{
    return std::any_of(std::begin(kClasses), std::end(kClasses),
                       [&](const auto &known) { return known.name == name && known.holds(code); });
}

// The items between brackets, read one by one.
class Bracket
{
public:
    // `items` begins behind the opening bracket.
    explicit Bracket(string_view items) : items_(items) {}

    // Look for `code` among the items. Returns how many characters the items and the closing bracket
    // take, or 0 if there is no closing bracket.
    size_t read(unsigned char code, bool &matches)
    {
        const bool isNegated = !atEnd() && (items_[at_] == '!' || items_[at_] == '^');
        at_ += isNegated;
        bool found = false;
        for (bool isFirst = true; !atEnd(); isFirst = false) {
            if (items_[at_] == ']' && !isFirst) {
                matches = found != isNegated;
                return at_ + 1;
            }
            found = readItem(code) || found;
        }
        return 0;
    }

private:
    bool atEnd() const { return at_ >= items_.size(); }

    // One character, a range of them, or a class such as [:alpha:].
    bool readItem(unsigned char code)
    {
        const string_view rest = items_.substr(at_);
        if (const size_t end = rest.find(":]", 2); rest.substr(0, 2) == "[:" && end != kNone) {
            at_ += end + 2;
            return isOfClass(rest.substr(2, end - 2), code);
        }
        const unsigned char first = readCharacter();
        const bool isRange =
            at_ + 1 < items_.size() && items_[at_] == '-' && items_[at_ + 1] != ']';
        if (!isRange) {
            return code == first;
        }
        ++at_;
        return isIn(code, first, readCharacter());
    }

    unsigned char readCharacter()
    {
        at_ += items_[at_] == '\\' && at_ + 1 < items_.size();
        return static_cast<unsigned char>(items_[at_++]);
    }

    string_view items_;
    size_t at_ = 0;
};

// How many characters at the start of `pattern` stand for one character and match `character`; 0 if they
// do not match, or if there are none.
size_t matchOne(string_view pattern, char character)
{
    if (pattern.empty()) {
        return 0;
    }
    if (pattern[0] == '[') {
        bool matches = false;
        const size_t length =
            Bracket(pattern.substr(1)).read(static_cast<unsigned char>(character), matches);
        if (length != 0) {
            return matches ? length + 1 : 0;
        }
    }
    if (pattern[0] == '\\') {
        return pattern.size() > 1 && pattern[1] == character ? 2 : 0;
    }
    return pattern[0] == '?' || pattern[0] == character ? 1 : 0;
}

// Only the last star is ever tried again: what an earlier one could take more, the last one can take too.
bool matches(string_view text, string_view pattern)
{
    size_t textAt = 0;
    size_t patternAt = 0;
    size_t behindStar = kNone;
    size_t starTakesTo = 0;
    while (textAt < text.size()) {
        if (patternAt < pattern.size() && pattern[patternAt] == '*') {
            behindStar = ++patternAt;
            starTakesTo = textAt;
        } else if (const size_t length = matchOne(pattern.substr(patternAt), text[textAt])) {
            patternAt += length;
            ++textAt;
        } else if (behindStar != kNone) {
            patternAt = behindStar;
            textAt = ++starTakesTo;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', patternAt) == kNone;
}

} // namespace

extern "C" {

int MAVOPattern_matches(const char *text, size_t textLength, const char *pattern,
                        size_t patternLength)
{
    return matches({text, textLength}, {pattern, patternLength});
}
}
