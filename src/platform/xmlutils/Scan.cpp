#include "platform/xmlutils/Scan.hpp"

#include <algorithm>
#include <cctype>

#include "platform/mavo/String.h"
#include "platform/xmlutils/Parser.h"

namespace zuv::xmlutils
{
namespace
{

constexpr std::size_t kNone = std::string_view::npos;

// A tag of this length has at most as many attributes as are allowed, since one takes at least the five
// characters of ' a=""'.
constexpr std::size_t kSurelyFewAttributes = ZUVXMLUTILS_ATTRIBUTE_COUNT_MAX * 5;
static_assert(kSurelyFewAttributes >= ZUVXMLUTILS_NAME_LENGTH_MAX);

constexpr const char *kTooLong = "a text, comment or tag is longer than 1048576 bytes";
static_assert(ZUVXMLUTILS_TEXT_LENGTH_MAX == 1048576);

class Scan
{
public:
    Scan(std::string_view document, Content &content, Problem &problem)
        : document_(document), content_(content), problem_(problem)
    {
    }

    bool isFine() { return hasRightSize() && isEncodedRight() && hasRightMarkup(); }

private:
    bool refuse(std::size_t at, std::string_view element, std::string_view reason)
    {
        const std::string_view before = document_.substr(0, at);
        problem_.set(1 + std::count(before.begin(), before.end(), '\n'), element, reason);
        return false;
    }

    bool hasRightSize()
    {
        if (document_.empty()) {
            return refuse(0, "", "the document is empty");
        }
        if (document_.size() > ZUVXMLUTILS_DOCUMENT_SIZE_MAX) {
            problem_.set(1, "", "the document is larger than 268435456 bytes");
            static_assert(ZUVXMLUTILS_DOCUMENT_SIZE_MAX == 268435456);
            return false;
        }
        return true;
    }

    bool isEncodedRight()
    {
        constexpr const char *kNotUtf8 = "the document is not encoded in UTF-8";
        const std::string_view start = document_.substr(0, 4);
        if (start.starts_with("\xff\xfe") || start.starts_with("\xfe\xff") ||
            start.find('\0') != kNone) {
            return refuse(0, "", kNotUtf8);
        }
        return isDeclaredRight() ||
               refuse(0, "", "the document declares another encoding than UTF-8");
    }

    // The XML declaration, if there is one, names no encoding, or a right one (XML 1.0, 4.3.3).
    bool isDeclaredRight() const
    {
        constexpr std::string_view kMark = "\xef\xbb\xbf";
        constexpr std::string_view kEncoding = "encoding";
        std::string_view start = document_;
        if (start.starts_with(kMark)) {
            start.remove_prefix(kMark.size());
        }
        if (!start.starts_with("<?xml") || start.size() < 6 ||
            !std::isspace(std::uint8_t(start[5]))) {
            return true;
        }
        start = start.substr(0, start.find('>'));
        const std::size_t encoding = start.find(kEncoding);
        const std::size_t open =
            encoding != kNone ? start.find_first_of("'\"", encoding + kEncoding.size()) : kNone;
        if (open == kNone) {
            return true;
        }
        const std::string_view name = start.substr(open + 1);
        const auto is = [&](std::string_view known) {
            return name.size() > known.size() && name[known.size()] == start[open] &&
                   MAVOString_inCompare(name.data(), known.data(), known.size()) == 0;
        };
        return is("UTF-8") || is("UTF8") || is("US-ASCII");
    }

    bool hasRightMarkup()
    {
        std::size_t at = nextMarkup(0);
        while (at != kNone) {
            const char kind = at + 1 < document_.size() ? document_[at + 1] : '\0';
            at = kind == '!' || kind == '?' ? passOther(at) : passTag(at);
        }
        return !problem_.isSet() && hasRightCharactersUpTo(document_.size());
    }

    std::size_t nextMarkup(std::size_t from) { return ifRight(document_.find('<', from)); }

    // The place, if it is one and the characters before it are right.
    std::size_t ifRight(std::size_t at)
    {
        return at != kNone && hasRightCharactersUpTo(at) ? at : kNone;
    }

    // Look at the characters in blocks, about when their markup is looked at, so that each byte comes from memory
    // once.
    bool hasRightCharactersUpTo(std::size_t end) { return end < seen_ || lookAtBlocksUpTo(end); }

    bool lookAtBlocksUpTo(std::size_t end)
    {
        while (seen_ < document_.size() && seen_ <= end) {
            // Blocks overlap by a character, for the sake of the pair.
            const std::string_view block = document_.substr(seen_, kBlock + 1);
            if (const std::size_t nul = block.find('\0'); nul != kNone) {
                return refuse(seen_ + nul, "", "the document holds a NUL character");
            }
            // As a character reference, and parted by a comment, the sign of a variable looks otherwise.
            content_.variables =
                content_.variables || block.find('$') != kNone || block.find("&#") != kNone;
            seen_ += kBlock;
        }
        return true;
    }

    // The markup behind a comment, CDATA section or processing instruction. None without a problem when it has no end,
    // which is for libxml2 to tell.
    std::size_t passOther(std::size_t at)
    {
        struct Kind {
            std::string_view open;
            std::string_view close;
        };
        static constexpr Kind kKinds[] = {{"<!--", "-->"}, {"<![CDATA[", "]]>"}, {"<?", "?>"}};
        const std::string_view rest = document_.substr(at);
        for (const Kind &kind : kKinds) {
            if (rest.starts_with(kind.open)) {
                const std::size_t end = rest.find(kind.close, kind.open.size());
                if (end != kNone && end > ZUVXMLUTILS_TEXT_LENGTH_MAX) {
                    refuse(at, "", kTooLong);
                    return kNone;
                }
                return end != kNone ? nextMarkup(at + end + kind.close.size()) : kNone;
            }
        }
        refuse(at, "", "a DOCTYPE is not allowed");
        return kNone;
    }

    // The markup behind a tag and the text that follows it.
    std::size_t passTag(std::size_t at)
    {
        const std::size_t next = document_.find('<', at + 1);
        const std::string_view run =
            document_.substr(at + 1, std::min(next, document_.size()) - at - 1);
        if (run.size() > ZUVXMLUTILS_NAME_LENGTH_MAX) {
            content_.longNames = true;
            if (run.size() > kSurelyFewAttributes && !isRightTag(at, run)) {
                return kNone;
            }
        }
        return ifRight(next);
    }

    bool isRightTag(std::size_t at, std::string_view run)
    {
        const std::string_view tag =
            run.substr(0, std::min<std::size_t>(run.find_first_of(" \t\r\n/>"), 64));
        if (run.size() > ZUVXMLUTILS_TEXT_LENGTH_MAX) {
            return refuse(at, tag, kTooLong);
        }
        static_assert(ZUVXMLUTILS_ATTRIBUTE_COUNT_MAX == 64);
        return countAttributes(run) <= ZUVXMLUTILS_ATTRIBUTE_COUNT_MAX ||
               refuse(at, tag, "the element has more than 64 attributes");
    }

    static int countAttributes(std::string_view tag)
    {
        int count = 0;
        std::size_t at = tag.find_first_of("\"'>");
        while (at != kNone && tag[at] != '>') {
            ++count;
            at = tag.find(tag[at], at + 1);
            at = at != kNone ? tag.find_first_of("\"'>", at + 1) : kNone;
        }
        return count;
    }

    static constexpr std::size_t kBlock = 32 * 1024;

    std::string_view document_;
    std::size_t seen_ = 0;
    Content &content_;
    Problem &problem_;
};

} // namespace

bool isWithinLimits(std::string_view document, Content &content, Problem &problem)
{
    return Scan(document, content, problem).isFine();
}

} // namespace zuv::xmlutils
