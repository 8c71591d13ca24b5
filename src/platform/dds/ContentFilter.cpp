#include "platform/dds/ContentFilter.hpp"

#include <algorithm>
#include <cctype>

#include "PayloadMember.hpp"
#include "Report.hpp"
#include "platform/mavo/Pattern.h"

namespace zuv::dds
{
namespace
{

constexpr int kGreatestNesting = 64;

bool isWordCharacter(char character)
{
    return std::isalnum(static_cast<unsigned char>(character)) != 0 || character == '_';
}

char lowered(char character)
{
    return static_cast<char>(std::tolower(static_cast<unsigned char>(character)));
}

bool equalsIgnoringCase(std::string_view left, std::string_view right)
{
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char one, char other) { return lowered(one) == lowered(other); });
}

bool matchesAnyOf(std::string_view text, std::string_view patterns)
{
    for (;;) {
        const std::size_t comma = patterns.find(',');
        const std::string_view pattern = patterns.substr(0, comma);
        if (MAVOPattern_matches(text.data(), text.size(), pattern.data(), pattern.size())) {
            return true;
        }
        if (comma == std::string_view::npos) {
            return false;
        }
        patterns.remove_prefix(comma + 1);
    }
}

} // namespace

class FilterParser
{
public:
    FilterParser(const DDS_TypeCode &type, std::string_view expression)
        : type_(type), expression_(expression)
    {
    }

    std::optional<ContentFilter> parse()
    {
        filter_.type_ = &type_;
        const std::optional<std::uint32_t> root = parseExpression(kGreatestNesting);
        skipBlanks();
        if (root && position_ == expression_.size()) {
            return std::move(filter_);
        }
        ZUV_LOG_TEMPLATE(DDS, ZUV_LOG_BIT_EXCEPTION, DDS_SUBMODULE_FILTER,
                         &ZUV_LOG_FAILURE_TEMPLATE,
                         "read the filter expression \"%.*s\" at character %d: %s",
                         static_cast<int>(expression_.size()), expression_.data(),
                         static_cast<int>(position_ + 1),
                         reason_ != nullptr ? reason_ : "more than an expression");
        return std::nullopt;
    }

private:
    using Kind = ContentFilter::Kind;
    using Place = std::optional<std::uint32_t>; // of a node

    Place parseExpression(int nesting) { return parseChain(Kind::kOr, "OR", nesting); }

    Place parseChain(Kind kind, std::string_view keyword, int nesting)
    {
        const auto parseOperand = [&] {
            return kind == Kind::kOr ? parseChain(Kind::kAnd, "AND", nesting)
                                     : parseCondition(nesting);
        };
        Place left = parseOperand();
        while (left && acceptKeyword(keyword)) {
            const Place right = parseOperand();
            if (!right) {
                return std::nullopt;
            }
            left = add({kind, *left, *right, 0, {}});
        }
        return left;
    }

    Place parseCondition(int nesting)
    {
        if (accept('(')) {
            if (nesting == 0) {
                return fail("too many parentheses");
            }
            const Place inner = parseExpression(nesting - 1);
            if (inner && !accept(')')) {
                return fail("\")\" expected");
            }
            return inner;
        }
        const std::optional<std::uint32_t> member = parseMember();
        if (!member) {
            return std::nullopt;
        }
        if (accept('=')) {
            if (acceptNull()) {
                return add({Kind::kIsNull, 0, 0, *member, {}});
            }
            return parseText(Kind::kEquals, *member);
        }
        if (acceptKeyword("MATCH")) {
            return parseText(Kind::kMatches, *member);
        }
        return fail("\"=\" or \"MATCH\" expected");
    }

    std::optional<std::uint32_t> parseMember()
    {
        skipBlanks();
        const std::string name(word());
        const DDS_UnsignedLong member =
            DDS_TypeCode_find_member_by_name(&type_, name.c_str(), nullptr);
        if (name.empty() || member == DDS_MEMBER_INDEX_INVALID) {
            return fail("member of the type expected");
        }
        position_ += name.size();
        return member;
    }

    Place parseText(Kind kind, std::uint32_t member)
    {
        const DDS_TypeCode *const type =
            DDS_TypeCode_resolve_alias(DDS_TypeCode_member_type(&type_, member, nullptr));
        if (DDS_TypeCode_kind(type, nullptr) != DDS_TK_STRING) {
            return fail("a member that is no text cannot be compared with one");
        }
        if (!accept('\'')) {
            return fail("text in \"'\" expected");
        }
        const std::size_t end = expression_.find('\'', position_);
        if (end == std::string_view::npos) {
            return fail("text without an end");
        }
        const Place place =
            add({kind, 0, 0, member, std::string(expression_.substr(position_, end - position_))});
        position_ = end + 1;
        return place;
    }

    void skipBlanks()
    {
        while (position_ < expression_.size() &&
               std::isspace(static_cast<unsigned char>(expression_[position_])) != 0) {
            ++position_;
        }
    }

    // The letters, digits and underscores from here on.
    std::string_view word() const
    {
        std::size_t end = position_;
        while (end < expression_.size() && isWordCharacter(expression_[end])) {
            ++end;
        }
        return expression_.substr(position_, end - position_);
    }

    bool accept(char character)
    {
        skipBlanks();
        if (position_ == expression_.size() || expression_[position_] != character) {
            return false;
        }
        ++position_;
        return true;
    }

    bool acceptKeyword(std::string_view keyword)
    {
        skipBlanks();
        if (!equalsIgnoringCase(word(), keyword)) {
            return false;
        }
        position_ += keyword.size();
        return true;
    }

    // "NULL", also with the next keyword right behind it.
    bool acceptNull()
    {
        constexpr std::string_view kNull = "NULL";
        skipBlanks();
        const std::string_view here = word();
        if (!equalsIgnoringCase(here.substr(0, kNull.size()), kNull)) {
            return false;
        }
        const std::string_view rest = here.substr(kNull.size());
        if (!rest.empty() && !equalsIgnoringCase(rest, "OR") && !equalsIgnoringCase(rest, "AND")) {
            return false;
        }
        position_ += kNull.size();
        return true;
    }

    std::uint32_t add(ContentFilter::Node node)
    {
        filter_.nodes_.push_back(std::move(node));
        return static_cast<std::uint32_t>(filter_.nodes_.size() - 1);
    }

    std::nullopt_t fail(const char *reason)
    {
        if (reason_ == nullptr) {
            reason_ = reason;
        }
        return std::nullopt;
    }

    const DDS_TypeCode &type_;
    const std::string_view expression_;
    std::size_t position_ = 0;
    const char *reason_ = nullptr;
    ContentFilter filter_;
};

std::optional<ContentFilter> ContentFilter::parse(const DDS_TypeCode &type,
                                                  std::string_view expression)
{
    return FilterParser(type, expression).parse();
}

bool ContentFilter::admits(const std::uint8_t *payload, std::uint32_t length) const
{
    return payload != nullptr && admits(nodes_.back(), payload, length);
}

bool ContentFilter::admits(const Node &node, const std::uint8_t *payload,
                           std::uint32_t length) const
{
    if (node.kind == Kind::kOr || node.kind == Kind::kAnd) {
        const bool left = admits(nodes_[node.left], payload, length);
        return left == (node.kind == Kind::kOr) ? left
                                                : admits(nodes_[node.right], payload, length);
    }
    const PayloadMember member = findPayloadMember(*type_, node.member, {payload, length});
    switch (node.kind) {
    case Kind::kIsNull:
        return member.state == PayloadMember::State::kAbsent;
    case Kind::kEquals:
        return member.state == PayloadMember::State::kPresent && member.text == node.text;
    default:
        return member.state == PayloadMember::State::kPresent &&
               matchesAnyOf(member.text, node.text);
    }
}

} // namespace zuv::dds
