// Cost follows the work: what is done to one element takes as long among many as among few.
#include <algorithm>
#include <ctime>

#include "XmlTest.h"
#include "platform/xmlutils/Utils.h"
#include "platform/xmlutils/Validator.h"
#include "platform/xmlutils/VariableExpansor.h"

namespace zuv_test
{
namespace
{

class XmlScale : public XmlTest
{
protected:
    static constexpr int kFew = 200;
    static constexpr int kMany = 40000;

    static Tree makeTree(int count)
    {
        std::string text = "<dds><session name='s'>";
        for (int index = 0; index < count; ++index) {
            text += "<topic_route name='r" + std::to_string(index) + "'><a>1</a></topic_route>";
        }
        return parse(text + "<auto_topic_route name='x'/></session></dds>");
    }

    // The shortest processor time of a repetition, in microseconds.
    template <typename Body>
    static double timeOf(int repetitions, Body &&body)
    {
        double best = 1e9;
        for (int round = 0; round < 20; ++round) {
            timespec start = {};
            timespec end = {};
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &start);
            for (int repetition = 0; repetition < repetitions; ++repetition) {
                body();
            }
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
            best = std::min(best, static_cast<double>(end.tv_sec - start.tv_sec) * 1e6 +
                                      static_cast<double>(end.tv_nsec - start.tv_nsec) / 1e3);
        }
        return best / repetitions;
    }

    // A walk would make it two hundred times as long; caches make it some times.
    template <typename Body>
    static void expectSameCost(Body &&body)
    {
        const Tree few = makeTree(kFew);
        const Tree many = makeTree(kMany);
        const double costAmongFew = timeOf(100, [&] { body(few); });
        const double costAmongMany = timeOf(100, [&] { body(many); });
        EXPECT_LT(costAmongMany, 10 * costAmongFew + 1);
    }
};

TEST_F(XmlScale, lookUpDoesNotWalkSiblings)
{
    expectSameCost([](const Tree &tree) {
        ASSERT_NE(at(tree, "::s::r190"), nullptr);
        ASSERT_EQ(at(tree, "::s::none"), nullptr);
        ASSERT_NE(ZUVXMLUTILSObject_getFirstChildWithTag(at(tree, "s"), "auto_topic_route"),
                  nullptr);
    });
}

// As the temporary elements of updates do.
TEST_F(XmlScale, aNameThatComesAndGoesLeavesNoTrace)
{
    const Tree tree = makeTree(kMany);
    const Tree snippet = parse("<topic_route/>");
    ZUVXMLUTILSObject *const session = at(tree, "s");
    const auto comeAndGo = [&] {
        ZUVXMLUTILSObject *const copy = ZUVXMLUTILSObject_copyAsChild(session, snippet.get());
        ASSERT_EQ(ZUVXMLUTILSObject_setName(copy, "TopicRoute1"), 1);
        ASSERT_EQ(ZUVXMLUTILSObject_lookUpChild(session, "TopicRoute1"), copy);
        ZUVXMLUTILSParser_freeDom(copy);
        ASSERT_EQ(ZUVXMLUTILSObject_lookUpChild(session, "TopicRoute1"), nullptr);
    };
    const double costAtFirst = timeOf(20, comeAndGo);
    for (int count = 0; count < 5000; ++count) {
        comeAndGo();
    }
    EXPECT_LT(timeOf(20, comeAndGo), 5 * costAtFirst + 1);
    // All others are found where they were put.
    for (int index = 0; index < kMany; index += 7) {
        const std::string name = "r" + std::to_string(index);
        ASSERT_STREQ(
            ZUVXMLUTILSObject_getName(ZUVXMLUTILSObject_lookUpChild(session, name.c_str())),
            name.c_str());
    }
}

TEST_F(XmlScale, anUpdateCostsWhatTheSnippetCosts)
{
    expectSameCost([](const Tree &tree) {
        ZUVXMLUTILSObject *const session = at(tree, "s");
        ZUVXMLUTILSObject *const target = at(tree, "s::x");
        const Tree snippet = parse("<auto_topic_route><b>2</b></auto_topic_route>");
        ZUVXMLUTILSObject *const copy = ZUVXMLUTILSObject_copyAsChild(session, snippet.get());
        ASSERT_EQ(ZUVXMLUTILSObject_countPreviousSiblingsWithTag(copy), 0);
        ASSERT_EQ(ZUVXMLUTILSObject_setName(copy, "AutoTopicRoute1"), 1);
        ASSERT_EQ(ZUVXMLUTILSObject_lookUpPreviousSibling(copy, "AutoTopicRoute1"), nullptr);
        ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(target, copy), 1);
        const char *const tags[] = {"b"};
        ZUVXMLUTILSUtils_sortChildren(target, tags, 1);
        ZUVXMLUTILSParser_freeDom(copy);
    });
}

TEST_F(XmlScale, anUpdateOfTheParentOfManyDoesNotWalkThem)
{
    expectSameCost([](const Tree &tree) {
        ZUVXMLUTILSObject *const session = at(tree, "s");
        const Tree snippet = parse("<session><thread_pool><size>3</size></thread_pool></session>");
        ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(session, snippet.get()), 1);
        const char *const tags[] = {"entity_monitoring", "thread_pool"};
        ZUVXMLUTILSUtils_sortChildren(session, tags, 2);
        ASSERT_STREQ(ZUVXMLUTILSObject_getTagName(ZUVXMLUTILSObject_getFirstChild(session)),
                     "thread_pool");
    });
}

TEST_F(XmlScale, aWalkOverAllSiblingsIsLinear)
{
    const auto walk = [](const Tree &tree) {
        for (auto *child = ZUVXMLUTILSObject_getFirstChild(at(tree, "s")); child != nullptr;
             child = ZUVXMLUTILSObject_getNextSibling(child)) {
            const int count = ZUVXMLUTILSObject_countPreviousSiblingsWithTag(child);
            ZUVXMLUTILSObject_setName(child, ("n" + std::to_string(count)).c_str());
            ZUVXMLUTILSObject_lookUpPreviousSibling(child, ZUVXMLUTILSObject_getName(child));
            ZUVXMLUTILSObject_getFullyQualifiedName(child);
        }
    };
    const Tree few = makeTree(kFew);
    const Tree many = makeTree(kMany);
    const double each = timeOf(1, [&] { walk(few); }) / kFew;
    EXPECT_LT(timeOf(1, [&] { walk(many); }) / kMany, 10 * each + 1);
}

} // namespace
} // namespace zuv_test
