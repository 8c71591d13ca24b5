#include "platform/mavo/String.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/mavo/Pattern.h"

namespace
{

constexpr std::string_view kSpace = " \t\n\v\f\r";

char lower(char character)
{
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a')
                                                : character;
}

std::string_view trimmed(std::string_view text)
{
    const size_t start = std::min(text.find_first_not_of(kSpace), text.size());
    text.remove_prefix(start);
    return text.substr(0, text.find_last_not_of(kSpace) + 1);
}

bool matches(std::string_view text, std::string_view pattern)
{
    return MAVOPattern_matches(text.data(), text.size(), pattern.data(), pattern.size()) != 0;
}

// Call `test` with each element of a list until it holds for one.
template <typename Test>
bool anyElement(std::string_view list, char separator, Test test)
{
    for (;;) {
        const size_t end = list.find(separator);
        if (test(list.substr(0, end))) {
            return true;
        }
        if (end == std::string_view::npos) {
            return false;
        }
        list.remove_prefix(end + 1);
    }
}

} // namespace

extern "C" {

int MAVOString_inCompare(const char *left, const char *right, size_t length)
{
    for (size_t index = 0; index < length; ++index) {
        const auto l = static_cast<unsigned char>(lower(left[index]));
        const auto r = static_cast<unsigned char>(lower(right[index]));
        if (l != r) {
            return l < r ? -1 : 1;
        }
        if (l == '\0') {
            return 0;
        }
    }
    return 0;
}

int MAVOString_iCompare(const char *left, const char *right)
{
    return MAVOString_inCompare(left, right, SIZE_MAX);
}

char *MAVOString_strToken(char *text, const char *separators, char **position)
{
    return strtok_r(text, separators, position);
}

int MAVOString_strToBoolean(const char *text, int *value)
{
    static constexpr struct {
        std::string_view word;
        int value;
    } kWords[] = {{"true", 1}, {"1", 1}, {"yes", 1}, {"false", 0}, {"0", 0}, {"no", 0}};
    const std::string_view word = trimmed(text);
    for (const auto &known : kWords) {
        if (word.size() == known.word.size() &&
            MAVOString_inCompare(word.data(), known.word.data(), word.size()) == 0) {
            *value = known.value;
            return 1;
        }
    }
    return 0;
}

int MAVOString_isPattern(const char *text)
{
    for (; *text != '\0'; ++text) {
        if (*text == '\\' && text[1] != '\0') {
            ++text;
        } else if (*text == '*' || *text == '?' || *text == '[') {
            return 1;
        }
    }
    return 0;
}

int MAVOString_matchesPattern(const char *text, const char *pattern)
{
    return matches(text, pattern);
}

int MAVOString_matchesAnyPattern(const char *text, const char *patternList, char separator)
{
    return anyElement(patternList, separator,
                      [text](std::string_view pattern) { return matches(text, pattern); });
}

int MAVOString_hasMatchingElement(const char *left, const char *right, char separator)
{
    return anyElement(left, separator, [=](std::string_view l) {
        return anyElement(right, separator, [l](std::string_view r) {
            return l == r || matches(l, r) || matches(r, l);
        });
    });
}
}
