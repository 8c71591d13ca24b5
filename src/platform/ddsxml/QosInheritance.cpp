#include "platform/ddsxml/QosInheritance.hpp"

#include <algorithm>

#include "platform/mavo/Pattern.h"

namespace zuv::ddsxml
{
namespace
{

using xmlutils::HeapString;

constexpr std::string_view kProfileTag = "qos_profile";
constexpr std::string_view kLibraryTag = "qos_library";
constexpr std::string_view kBlanks = " \t\r\n";

std::string_view trimmed(std::string_view text)
{
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

// Null without the attribute.
const char *attributeOf(const ZUVXMLObject &element, const char *name)
{
    return ZUVXMLObject_getAttribute(&element, name);
}

template <typename Test>
bool testItems(std::string_view list, bool isAny, Test &&test)
{
    for (bool isLast = false; !isLast;) {
        const std::size_t end = list.find(',');
        if (test(trimmed(list.substr(0, end))) == isAny) {
            return isAny;
        }
        isLast = end == list.npos;
        list.remove_prefix(isLast ? list.size() : end + 1);
    }
    return !isAny;
}

bool coversPattern(std::string_view wider, std::string_view narrower)
{
    constexpr std::string_view kWildcards = "*?[\\";
    const bool isName = narrower.find_first_of(kWildcards) == narrower.npos;
    // With stars alone, each letter of the wider one meets the same letter, so that the letters under its stars may
    // be a pattern.
    const bool hasOnlyStars = wider.find_first_of("?[\\") == wider.npos;
    return wider == narrower ||
           ((isName || hasOnlyStars) &&
            MAVOPattern_matches(narrower.data(), narrower.size(), wider.data(), wider.size()) != 0);
}

// A QoS that waits for its base.
struct Waiting {
    const ZUVXMLObject *element;
    const Waiting *outer;
};

class Resolver
{
public:
    Resolver(ZUVXMLObject &document, const ZUVXMLObject *tree) : document_(document), tree_(tree) {}

    void resolveAll()
    {
        forEachInLibraries([this](ZUVXMLObject &child) {
            if (child.tag == kProfileTag) {
                checkBases(child);
            }
        });
        forEachInLibraries([this](ZUVXMLObject &child) {
            if (child.tag != kProfileTag) {
                resolveIfQos(child);
                return;
            }
            for (ZUVXMLObject *qos = child.firstChild; qos != nullptr; qos = qos->next) {
                resolveIfQos(*qos);
            }
        });
    }

private:
    template <typename Visit>
    void forEachInLibraries(Visit &&visit)
    {
        for (ZUVXMLObject *library = document_.firstChild; library != nullptr;
             library = library->next) {
            if (library->tag != kLibraryTag) {
                continue;
            }
            for (ZUVXMLObject *child = library->firstChild; child != nullptr; child = child->next) {
                visit(*child);
            }
        }
    }

    void resolveIfQos(ZUVXMLObject &element)
    {
        if (const dds::QosRecord *const table = qosTableOf(element.tag)) {
            valueOf(element, *table, nullptr);
        }
    }

    [[noreturn]] static void refuse(const ZUVXMLObject &element, std::string_view what)
    {
        refuse(element, what, element);
    }
    // `culprit` is the element that says it.
    [[noreturn]] static void refuse(const ZUVXMLObject &element, std::string_view what,
                                    const ZUVXMLObject &culprit)
    {
        HeapString reason(element.tag);
        reason.append(" ").append(fullNameOf(element)).append(": ").append(what);
        throw BadQos{std::move(reason), &culprit};
    }

    // The profile that the profile names as its base, or null.
    const ZUVXMLObject *baseProfileOf(const ZUVXMLObject &profile) const
    {
        const char *const name = attributeOf(profile, "base_name");
        if (name == nullptr) {
            return nullptr;
        }
        const ZUVXMLObject &base = find(profile, name);
        if (base.tag != kProfileTag) {
            refuse(profile, HeapString("the base '").append(name).append("' is no profile"));
        }
        return &base;
    }

    // The bases of a profile must be there, and may not lead back.
    void checkBases(const ZUVXMLObject &profile) const
    {
        xmlutils::HeapVector<const ZUVXMLObject *> row = {&profile};
        while (const ZUVXMLObject *const base = baseProfileOf(*row.back())) {
            const auto start = std::find(row.begin(), row.end(), base);
            if (start != row.end()) {
                HeapString path;
                for (auto step = start; step != row.end(); ++step) {
                    path.append(fullNameOf(**step)).append(" -> ");
                }
                refuseCircle(*base, path.append(fullNameOf(*base)));
            }
            if (row.size() == kMaxInheritanceDepth) {
                refuse(profile, "too many bases in a row");
            }
            row.push_back(base);
        }
    }

    [[noreturn]] static void refuseCircle(const ZUVXMLObject &element, const HeapString &path)
    {
        refuse(element, HeapString("its bases go round in a circle: ").append(path));
    }

    // The element that a base name leads to.
    ZUVXMLObject &find(const ZUVXMLObject &from, std::string_view name) const
    {
        const HeapString path(trimmed(name));
        if (!path.starts_with("::")) {
            const ZUVXMLObject *library = &from;
            while (library->parent != nullptr && library->tag != kLibraryTag) {
                library = library->parent;
            }
            for (const ZUVXMLObject *root :
                 {tree_, static_cast<const ZUVXMLObject *>(&document_)}) {
                const ZUVXMLObject *const own =
                    root == nullptr ? nullptr : root->findByName(library->name);
                if (ZUVXMLObject *const found =
                        own == nullptr ? nullptr : DDS_XMLObject_lookup(own, path.c_str())) {
                    return *found;
                }
            }
        }
        for (const ZUVXMLObject *root : {tree_, static_cast<const ZUVXMLObject *>(&document_)}) {
            if (ZUVXMLObject *const found =
                    root == nullptr ? nullptr : DDS_XMLObject_lookup(root, path.c_str())) {
                return *found;
            }
        }
        refuse(from, HeapString("the base '").append(path).append("' is not there"));
    }

    // Of a profile and its bases, the QoS for a topic filter; null if they have none.
    const QosValue *valueIn(const ZUVXMLObject &profile, const dds::QosRecord &table,
                            const char *filter, const Waiting *waiting)
    {
        for (const ZUVXMLObject *base = &profile; base != nullptr; base = baseProfileOf(*base)) {
            for (ZUVXMLObject *child = base->firstChild; child != nullptr; child = child->next) {
                const char *const wider = attributeOf(*child, "topic_filter");
                if (qosTableOf(child->tag) == &table &&
                    (wider == nullptr || coversFilter(wider, filter))) {
                    return &valueOf(*child, table, waiting);
                }
            }
        }
        return nullptr;
    }

    const QosValue *baseOf(const ZUVXMLObject &element, const dds::QosRecord &table,
                           const Waiting *waiting)
    {
        const char *const ownFilter = attributeOf(element, "topic_filter");
        const char *const filter = ownFilter == nullptr ? "*" : ownFilter;
        if (const char *const name = attributeOf(element, "base_name")) {
            ZUVXMLObject &base = find(element, name);
            if (base.tag == kProfileTag) {
                return valueIn(base, table, filter, waiting);
            }
            if (qosTableOf(base.tag) != &table) {
                refuse(element, HeapString("the base '")
                                    .append(name)
                                    .append("' is neither a profile nor of this kind"));
            }
            return &valueOf(base, table, waiting);
        }
        const bool isInProfile = element.parent->tag == kProfileTag;
        const ZUVXMLObject *const profile = isInProfile ? baseProfileOf(*element.parent) : nullptr;
        return profile == nullptr ? nullptr : valueIn(*profile, table, filter, waiting);
    }

    static void checkCircle(const ZUVXMLObject &element, const Waiting *waiting)
    {
        HeapString path = fullNameOf(element);
        std::size_t depth = 0;
        for (const Waiting *one = waiting; one != nullptr; one = one->outer) {
            path.insert(0, fullNameOf(*one->element).append(" -> "));
            if (one->element == &element) {
                refuseCircle(element, path);
            }
            if (++depth == kMaxInheritanceDepth) {
                refuse(element, "too many bases in a row");
            }
        }
    }

    const QosValue &valueOf(ZUVXMLObject &element, const dds::QosRecord &table,
                            const Waiting *waiting)
    {
        if (element.qos != nullptr) {
            return *element.qos;
        }
        if (waiting != nullptr) {
            checkCircle(element, waiting);
        }
        const Waiting self = {&element, waiting};
        const QosValue *const base = baseOf(element, table, &self);
        xmlutils::HeapPointer<QosValue> value(base != nullptr ? xmlutils::heapNew<QosValue>(*base)
                                                              : xmlutils::heapNew<QosValue>(table));
        try {
            readQos(table, element, value->record());
        } catch (const BadQos &bad) {
            refuse(element, bad.reason, *bad.element);
        }
        element.qos = std::move(value);
        return *element.qos;
    }

    ZUVXMLObject &document_;
    const ZUVXMLObject *tree_;
};

} // namespace

void resolveQos(ZUVXMLObject &document, const ZUVXMLObject *tree)
{
    Resolver(document, tree).resolveAll();
}

const dds::QosRecord *qosTableOf(std::string_view tag)
{
    if (tag == "participant_qos") { // as it was called before
        return &dds::kDomainParticipantQosRecord;
    }
    const auto found = std::find_if(dds::kQosRecords.begin(), dds::kQosRecords.end(),
                                    [tag](const dds::QosRecord *one) { return tag == one->tag; });
    return found == dds::kQosRecords.end() ? nullptr : *found;
}

bool coversFilter(std::string_view wider, std::string_view narrower)
{
    return testItems(narrower, false, [wider](std::string_view item) {
        return testItems(wider, true,
                         [item](std::string_view pattern) { return coversPattern(pattern, item); });
    });
}

HeapString fullNameOf(const ZUVXMLObject &element)
{
    HeapString name;
    for (const ZUVXMLObject *one = &element; one->parent != nullptr; one = one->parent) {
        if (!one->name.empty()) {
            name.insert(0, HeapString("::").append(one->name));
        }
    }
    return name.empty() ? HeapString("::") : name;
}

} // namespace zuv::ddsxml
