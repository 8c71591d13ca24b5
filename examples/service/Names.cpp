#include "Names.h"

#include <algorithm>
#include <climits>
#include <numeric>
#include <optional>

#include "Reports.h"
#include "config/XmlCommon.h"

namespace service
{
namespace
{

using Object = ZUVXMLUTILSObject;

constexpr std::string_view kSeparator = "::";
constexpr std::size_t kMostParts = 16;

struct Part {
    std::string_view tag; // empty: any
    std::string name;
};

bool isEntity(const Object *xml)
{
    return BRELCfgFileParser_getEntityKind(xml) != ZUV_BrelServiceEntityKind_OTHER;
}

template <typename Function>
void forEachEntity(Object *parent, const Function &function)
{
    for (Object *child = ZUVXMLUTILSObject_getFirstChild(parent); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        if (isEntity(child)) {
            function(child);
            forEachEntity(child, function);
        }
    }
}

Part toPart(std::string_view text)
{
    const std::size_t dot = text.find('.');
    if (dot != text.npos) {
        const std::string tag(text.substr(0, dot));
        if (BRELCfgFileParser_getEntityKindFromTag(tag.c_str()) !=
            ZUV_BrelServiceEntityKind_OTHER) {
            return {text.substr(0, dot), std::string(text.substr(dot + 1))};
        }
    }
    return {{}, std::string(text)};
}

// Nothing when a part is empty, or there are too many.
std::optional<std::vector<Part>> split(std::string_view identifier)
{
    std::vector<Part> parts;
    for (std::size_t end = 0; end != identifier.npos;) {
        end = identifier.find(kSeparator);
        parts.push_back(toPart(identifier.substr(0, end)));
        if (parts.back().name.empty() || parts.size() > kMostParts) {
            return std::nullopt;
        }
        identifier.remove_prefix(end != identifier.npos ? end + kSeparator.size() : 0);
    }
    return parts;
}

bool fits(const Object *xml, const Part &part)
{
    return (part.tag.empty() || part.tag == ZUVXMLUTILSObject_getTagName(xml)) &&
           part.name == ZUVXMLUTILSObject_getName(xml);
}

std::vector<Object *> findAnywhere(Object *xmlService, const Part &part)
{
    std::vector<Object *> found;
    forEachEntity(xmlService, [&](Object *entity) {
        if (fits(entity, part)) {
            found.push_back(entity);
        }
    });
    return found;
}

// `found` has two at least.
void refuseAmbiguous(const std::string &wanted, const std::vector<Object *> &found)
{
    SERVICE_REFUSAL_TEXT("choose one of %d entities for %s: say %s or %s",
                         static_cast<int>(found.size()), wanted.c_str(), nameOf(found[0]).c_str(),
                         nameOf(found[1]).c_str());
}

bool isIn(const Object *xmlService, const Object *xml)
{
    while (xml != nullptr && xml != xmlService) {
        xml = ZUVXMLUTILSObject_getParent(xml);
    }
    return xml != nullptr;
}

// The first part leads into the service, wherever that is allowed; null when there is nothing of that name.
Object *findFirst(Object *xmlService, const Part &part)
{
    Object *const child = ZUVXMLUTILSObject_lookUpChild(xmlService, part.name.c_str());
    if (child != nullptr && fits(child, part)) {
        return child;
    }
    return fits(xmlService, part) ? xmlService : nullptr;
}

Object *follow(Object *from, const std::vector<Part> &parts, std::size_t first)
{
    for (std::size_t index = first; from != nullptr && index < parts.size(); ++index) {
        from = ZUVXMLUTILSObject_lookUpChild(from, parts[index].name.c_str());
        if (from != nullptr && !fits(from, parts[index])) {
            from = nullptr;
        }
    }
    return from;
}

std::vector<std::string> namesLike(Object *xmlService, const Part &part)
{
    std::vector<std::string> names = {nameOf(xmlService)};
    forEachEntity(xmlService, [&](Object *entity) {
        // In the form that the operator uses.
        names.push_back(part.tag.empty() ? nameOf(entity)
                                         : std::string(ZUVXMLUTILSObject_getTagName(entity)) + "." +
                                               ZUVXMLUTILSObject_getName(entity));
    });
    return names;
}

int distance(std::string_view left, std::string_view right)
{
    std::vector<int> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (const char character : left) {
        int diagonal = row[0]++;
        for (std::size_t j = 0; j < right.size(); ++j) {
            const int replaced = diagonal + (character != right[j] ? 1 : 0);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, diagonal + 1, row[j] + 1});
        }
    }
    return row.back();
}

Entity toEntity(Object *xml)
{
    Entity entity;
    // An empty name is the element itself: only its kind is asked for.
    entity.xml = BRELCfgFileParser_findEntity(xml, &entity.kind, "");
    return entity;
}

} // namespace

Entity find(Object *xmlService, std::string_view identifier)
{
    const std::string wanted(trimmed(identifier));
    if (wanted.empty()) {
        return toEntity(xmlService);
    }
    std::string_view path = wanted;
    const bool isFromTop = path.starts_with(kSeparator);
    path.remove_prefix(isFromTop ? kSeparator.size() : 0);
    const auto parts = split(path);
    if (!parts) {
        SERVICE_REFUSAL(&ZUV_SERVICE_LOG_MALFORMED_RESOURCE_IDENTIFIER_s, wanted.c_str());
        return {};
    }
    // Names may hold separators and dots themselves.
    Object *const literal = ZUVXMLUTILSObject_lookUp(xmlService, wanted.c_str());
    if (literal != nullptr && isIn(xmlService, literal)) {
        return toEntity(literal);
    }
    const Part &first = parts->front();
    Object *start =
        isFromTop ? (fits(xmlService, first) ? xmlService : nullptr) : findFirst(xmlService, first);
    if (start == nullptr && !isFromTop && !first.tag.empty()) {
        const std::vector<Object *> found = findAnywhere(xmlService, first);
        if (found.size() > 1) {
            refuseAmbiguous(wanted, found);
            return {};
        }
        start = found.empty() ? nullptr : found.front();
    }
    if (Object *const xml = follow(start, *parts, 1)) {
        return toEntity(xml);
    }
    SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNKNOWN_RESOURCE_ss, wanted.c_str(),
                    nearest(wanted, namesLike(xmlService, first)).c_str());
    return {};
}

Entity findOnly(Object *xmlService, const char *tag)
{
    std::vector<Object *> found;
    forEachEntity(xmlService, [&](Object *entity) {
        if (std::string_view(tag) == ZUVXMLUTILSObject_getTagName(entity)) {
            found.push_back(entity);
        }
    });
    if (found.size() == 1) {
        return toEntity(found.front());
    }
    if (found.empty()) {
        SERVICE_REFUSAL_TEXT("find an entity of the kind %s in the service", tag);
    } else {
        refuseAmbiguous(tag, found);
    }
    return {};
}

std::string nameOf(const Object *entity)
{
    const char *const name = BRELXmlObject_getFullyQualifiedNameRelativeToService(entity);
    return name != nullptr ? name : "";
}

std::string nearest(std::string_view wanted, const std::vector<std::string> &names)
{
    // What is much longer than a name is like none of them.
    wanted = wanted.substr(0, ZUVXMLUTILS_NAME_LENGTH_MAX);
    std::string best;
    int least = INT_MAX;
    for (const std::string &name : names) {
        const int difference = distance(wanted, name);
        if (difference < least) {
            least = difference;
            best = name;
        }
    }
    return best;
}

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view kBlanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlanks);
    return first == text.npos ? std::string_view{}
                              : text.substr(first, text.find_last_not_of(kBlanks) + 1 - first);
}

} // namespace service
