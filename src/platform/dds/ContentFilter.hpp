// Content filter expressions: which samples of a topic a reader wants.
//
//   expression  = conjunction { "OR" conjunction }
//   conjunction = condition { "AND" condition }
//   condition   = "(" expression ")"
//               | member "=" "NULL"
//               | member "=" text
//               | member "MATCH" text
//   member      = a member of the topic's type; for a text, one that is a text
//   text        = "'" characters but "'" "'"
//
// Keywords are read without regard to case. "NULL" needs no blank behind it: "a = NULLOR b = 'x'" is "a = NULL OR
// b = 'x'".
//
// "a = NULL" admits a sample whose member a is absent. "a = 'x'" and "a MATCH 'p'" admit one whose member is there and
// equals the text, or matches it as a pattern; the text may be several patterns, parted by commas. The pattern is always
// the text of the expression: characters of the sample's value stand for themselves. Patterns are those of
// MAVOString_matchesPattern.
//
// The text of an expression that stands for a name is taken as it is: a "'" in the name ends the text, and what is behind
// it is read as expression, or refused.
#ifndef ZUV_PLATFORM_DDS_CONTENT_FILTER_HPP
#define ZUV_PLATFORM_DDS_CONTENT_FILTER_HPP

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/typesys/TypeCode.h"

namespace zuv::dds
{

// Never changes once made: any number of threads may ask it.
class ContentFilter
{
public:
    // Nothing, after a report that quotes the expression and tells the place, when it cannot be read.
    static std::optional<ContentFilter> parse(const DDS_TypeCode &type,
                                              std::string_view expression);

    // Whether the sample in a payload is wanted. A payload that is not one of the type is not.
    bool admits(const std::uint8_t *payload, std::uint32_t length) const;

private:
    friend class FilterParser;

    enum class Kind { kOr, kAnd, kIsNull, kEquals, kMatches };
    struct Node {
        Kind kind;
        std::uint32_t left = 0; // of OR and AND: places in the list
        std::uint32_t right = 0;
        std::uint32_t member = 0; // of the others
        std::string text;
    };

    bool admits(const Node &node, const std::uint8_t *payload, std::uint32_t length) const;

    const DDS_TypeCode *type_ = nullptr;
    std::vector<Node> nodes_; // the root is the last
};

} // namespace zuv::dds

#endif
