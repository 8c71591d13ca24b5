// Finding elements by name, with few siblings, which are walked, and with many, which are indexed.
#include <map>
#include <random>

#include "XmlTest.h"
#include "platform/xmlutils/Utils.h"

namespace zuv_test
{
namespace
{

class XmlLookUp : public XmlTest
{
};

std::string routes(int count)
{
    std::string text = "<s>";
    for (int index = 0; index < count; ++index) {
        text += "<route name='r" + std::to_string(index) + "'><in name='i'/></route>";
    }
    return text + "</s>";
}

TEST_F(XmlLookUp, followsNamesFromTheElementOrFromTheRoot)
{
    const Tree tree = parse("<dds><svc name='s'><dr name='d'><x name='s'/></dr></svc></dds>");
    ZUVXMLUTILSObject *const service = ZUVXMLUTILSObject_getFirstChild(tree.get());
    ZUVXMLUTILSObject *const x = at(tree, "s::d::s");
    ASSERT_NE(x, nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(service, "d::s"), x);
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(service, "::s::d::s"), x);
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(x, "::s"), service);
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(x, "::"), tree.get());
    EXPECT_EQ(ZUVXMLUTILSObject_lookUp(x, ""), x);
    for (const char *missing : {"d", "s::", "s::x", "::::s", "s:d", "s::d::s::"}) {
        EXPECT_EQ(ZUVXMLUTILSObject_lookUp(tree.get(), missing), nullptr) << missing;
    }
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlLookUp, findsNamesThatHoldTheSeparator)
{
    const Tree tree =
        parse("<dds><a name='x'/><a name='x::y'><b name='y::z'/><b name='z'/></a></dds>");
    EXPECT_EQ(at(tree, "x::y"), ZUVXMLUTILSObject_lookUpChild(tree.get(), "x::y"));
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(at(tree, "x::y::y::z")), "y::z");
    EXPECT_STREQ(ZUVXMLUTILSObject_getName(at(tree, "x::y::z")), "z");
}

TEST_F(XmlLookUp, doesNotLookThroughElementsWithoutAName)
{
    const Tree tree = parse("<dds><types><t name='x'/></types></dds>");
    EXPECT_EQ(at(tree, "x"), nullptr);
    EXPECT_EQ(ZUVXMLUTILSObject_lookUpChild(tree.get(), ""), nullptr);
}

TEST_F(XmlLookUp, takesTheFirstOfOneName)
{
    for (const int count : {3, 300}) {
        const Tree tree = parse(routes(count));
        const Tree snippet = parse("<route name='r1'/>");
        ASSERT_EQ(ZUVXMLUTILSObject_getLine(at(tree, "r1")), 1);
        const auto *const copy = ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
        EXPECT_EQ(at(tree, "r1"), copy);
    }
}

TEST_F(XmlLookUp, seesOnlySiblingsThatStandBefore)
{
    for (const int count : {5, 500}) {
        SCOPED_TRACE(count);
        const Tree tree = parse(routes(count));
        ZUVXMLUTILSObject *const r3 = at(tree, "r3");
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(r3, "r2"), at(tree, "r2"));
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(r3, "r3"), nullptr);
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(r3, "r4"), nullptr);
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(r3, ""), nullptr);
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(tree.get(), "r1"), nullptr);
        ASSERT_EQ(ZUVXMLUTILSObject_setName(at(tree, "r4"), "r3"), 1);
        const auto *const fifth = ZUVXMLUTILSObject_getNextSibling(r3);
        EXPECT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(fifth, "r3"), r3);
    }
}

TEST_F(XmlLookUp, countsSiblingsOfTheTagThatStandBefore)
{
    std::string text = "<s>";
    for (int index = 0; index < 200; ++index) {
        text += "<a/><b/><b/>";
    }
    const Tree tree = parse(text + "</s>");
    int a = 0;
    int b = 0;
    for (const auto *child = ZUVXMLUTILSObject_getFirstChild(tree.get()); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        int &expected = *ZUVXMLUTILSObject_getTagName(child) == 'a' ? a : b;
        EXPECT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(child), expected++);
    }
    EXPECT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(tree.get()), 0);
}

// What walks say, for comparison with what the index says.
ZUVXMLUTILSObject *walkToName(const ZUVXMLUTILSObject *parent, const std::string &name)
{
    ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChild(parent);
    while (child != nullptr && ZUVXMLUTILSObject_getName(child) != name) {
        child = ZUVXMLUTILSObject_getNextSibling(child);
    }
    return child;
}

ZUVXMLUTILSObject *walkToTag(ZUVXMLUTILSObject *from, const std::string &tag)
{
    while (from != nullptr && ZUVXMLUTILSObject_getTagName(from) != tag) {
        from = ZUVXMLUTILSObject_getNextSibling(from);
    }
    return from;
}

void expectIndexIsRight(const ZUVXMLUTILSObject *parent, int nameCount)
{
    for (int index = 0; index < nameCount; ++index) {
        const std::string name = "n" + std::to_string(index);
        ASSERT_EQ(ZUVXMLUTILSObject_lookUpChild(parent, name.c_str()), walkToName(parent, name));
    }
    std::map<std::string, int> counts;
    std::map<std::string, ZUVXMLUTILSObject *> firstByName;
    for (auto *child = ZUVXMLUTILSObject_getFirstChild(parent); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        const std::string tag = ZUVXMLUTILSObject_getTagName(child);
        const std::string name = ZUVXMLUTILSObject_getName(child);
        ASSERT_EQ(ZUVXMLUTILSObject_getNextSiblingWithTag(child, tag.c_str()),
                  walkToTag(ZUVXMLUTILSObject_getNextSibling(child), tag));
        ASSERT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(child), counts[tag]++);
        if (!name.empty()) {
            ASSERT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(child, name.c_str()),
                      firstByName[name]);
            firstByName.emplace(name, child).first->second =
                firstByName[name] != nullptr ? firstByName[name] : child;
        }
    }
    for (const char *tag : {"a", "b", "c", "d"}) {
        ASSERT_EQ(ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag),
                  walkToTag(ZUVXMLUTILSObject_getFirstChild(parent), tag));
    }
}

TEST_F(XmlLookUp, staysRightThroughAnyChangeOfTheTree)
{
    constexpr int kNames = 40;
    std::mt19937 random(7);
    const auto pick = [&](int count) { return static_cast<int>(random() % count); };
    const Tree tree = parse(routes(30));
    for (int round = 0; round < 3000; ++round) {
        const std::vector<std::string> before = childrenOf(tree.get());
        ZUVXMLUTILSObject *child = ZUVXMLUTILSObject_getFirstChild(tree.get());
        for (int step = pick(static_cast<int>(before.size())); step > 0; --step) {
            child = ZUVXMLUTILSObject_getNextSibling(child);
        }
        const std::string tag(1, static_cast<char>('a' + pick(4)));
        const std::string name = "n" + std::to_string(pick(kNames));
        switch (pick(before.size() < 60 ? 7 : 8)) {
        case 0:
            ZUVXMLUTILSObject_moveToEnd(child);
            break;
        case 1:
            ASSERT_EQ(ZUVXMLUTILSObject_setName(child, name.c_str()), 1);
            break;
        case 2:
            ASSERT_EQ(ZUVXMLUTILSObject_setTagName(child, tag.c_str()), 1);
            break;
        case 3:
            ZUVXMLUTILSObject_removeAttribute(child, "name");
            break;
        case 4: {
            const char *const tags[] = {"d", "b"};
            ZUVXMLUTILSUtils_sortChildren(tree.get(), tags, pick(3));
            break;
        }
        case 7:
            ZUVXMLUTILSParser_freeDom(child);
            break;
        default: {
            const Tree snippet = parse("<" + tag + " name='" + name + "'/>");
            ASSERT_NE(ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get()), nullptr);
        }
        }
        ASSERT_NO_FATAL_FAILURE(expectIndexIsRight(tree.get(), kNames)) << round;
    }
}

TEST_F(XmlLookUp, findsRoomForManyCopiesInFrontOfTheirKind)
{
    constexpr int kCopies = 3000;
    const Tree tree = parse("<s><first/>" + routes(30) + "<route name='x'/></s>");
    const Tree snippet = parse("<route/>");
    for (int index = 0; index < kCopies; ++index) {
        ASSERT_NE(ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get()), nullptr);
    }
    ZUVXMLUTILSObject *const last = at(tree, "x");
    EXPECT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(last), kCopies);
}

} // namespace
} // namespace zuv_test
