#include "platform/xmlutils/UrlGroup.hpp"

namespace zuv::xmlutils
{
namespace
{

constexpr std::string_view kBlanks = " \t\r\n\f";
constexpr std::string_view kFileScheme = "file://";
constexpr std::string_view kTextScheme = "str://\"";

class UrlGroupReader
{
public:
    explicit UrlGroupReader(std::string_view list) : rest_(list) {}

    const char *read(HeapVector<UrlGroup> &groups)
    {
        const char *wrong = nullptr;
        for (skipBlanks(); !rest_.empty() && wrong == nullptr; skipBlanks()) {
            if (take(';')) {
                continue;
            }
            UrlGroup group;
            wrong = take('[') ? readAlternatives(group) : readUrl(group, ";");
            skipBlanks();
            if (wrong == nullptr && !rest_.empty() && rest_.front() != ';') {
                wrong = "groups must be parted by ';'";
            }
            groups.push_back(std::move(group));
        }
        return wrong != nullptr ? wrong : groups.empty() ? "it holds no URL" : nullptr;
    }

private:
    void skipBlanks()
    {
        rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size()));
    }

    bool take(char character)
    {
        const bool isThere = rest_.starts_with(character);
        rest_.remove_prefix(isThere ? 1 : 0);
        return isThere;
    }

    const char *readAlternatives(UrlGroup &group)
    {
        do {
            if (const char *const wrong = readUrl(group, "|]")) {
                return wrong;
            }
            skipBlanks();
        } while (take('|'));
        return take(']') ? nullptr : "']' is missing";
    }

    const char *readUrl(UrlGroup &group, std::string_view ends)
    {
        skipBlanks();
        if (rest_.starts_with(kTextScheme)) {
            return readText(group);
        }
        if (rest_.starts_with(kFileScheme)) {
            rest_.remove_prefix(kFileScheme.size());
        }
        const std::size_t end = std::min(rest_.find_first_of(ends), rest_.size());
        const std::string_view path =
            rest_.substr(0, rest_.substr(0, end).find_last_not_of(kBlanks) + 1);
        rest_.remove_prefix(end);
        if (path.empty()) {
            return "a URL is empty";
        }
        group.push_back({Url::Kind::kFile, path});
        return nullptr;
    }

    // The text may hold quotes; the one that closes it stands before a delimiter.
    const char *readText(UrlGroup &group)
    {
        rest_.remove_prefix(kTextScheme.size());
        for (std::size_t quote = rest_.find('"'); quote != rest_.npos;
             quote = rest_.find('"', quote + 1)) {
            const std::size_t next = rest_.find_first_not_of(kBlanks, quote + 1);
            if (next == rest_.npos || std::string_view(";|]").find(rest_[next]) != rest_.npos) {
                group.push_back({Url::Kind::kText, rest_.substr(0, quote)});
                rest_.remove_prefix(quote + 1);
                return nullptr;
            }
        }
        return "the double quote behind a document is missing";
    }

    std::string_view rest_;
};

} // namespace

const char *readUrlGroups(std::string_view list, HeapVector<UrlGroup> &groups)
{
    return UrlGroupReader(list).read(groups);
}

} // namespace zuv::xmlutils
