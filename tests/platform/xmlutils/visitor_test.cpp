#include "XmlTest.h"
#include "platform/xmlutils/Helper.h"
#include "platform/xmlutils/Visitor.h"

namespace zuv_test
{
namespace
{

struct Visits {
    std::string tags;
    std::string last; // the visit of this tag ends the walk

    static int visit(void *self, ZUVXMLUTILSObject *object)
    {
        auto *visits = static_cast<Visits *>(self);
        const std::string tag = ZUVXMLUTILSObject_getTagName(object);
        visits->tags += tag;
        return tag != visits->last;
    }
};

class XmlVisitor : public XmlTest
{
protected:
    Visits visits;
    const ZUVXMLUTILSVisitor visitor = {&visits, &Visits::visit};
};

TEST_F(XmlVisitor, visitsParentsBeforeChildren)
{
    const Tree tree = parse("<a><b><c/><d/></b><!-- x --><e><f/></e></a>");
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&visitor, tree.get()), 1);
    EXPECT_EQ(visits.tags, "abcdef");
    visits.tags.clear();
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&visitor, ZUVXMLUTILSObject_getFirstChild(tree.get())), 1);
    EXPECT_EQ(visits.tags, "bcd");
}

TEST_F(XmlVisitor, visitsChildrenBeforeParents)
{
    const Tree tree = parse("<a><b><c/><d/></b><e><f/></e></a>");
    EXPECT_EQ(ZUVXMLUTILSVisitor_visitChildrenFirst(&visitor, tree.get()), 1);
    EXPECT_EQ(visits.tags, "cdbfea");
    visits.tags.clear();
    EXPECT_EQ(ZUVXMLUTILSVisitor_visitChildrenFirst(&visitor,
                                                    ZUVXMLUTILSObject_getFirstChild(tree.get())),
              1);
    EXPECT_EQ(visits.tags, "cdb");
}

TEST_F(XmlVisitor, endsWithTheFirstVisitThatFails)
{
    const Tree tree = parse("<a><b><c/><d/></b><e/></a>");
    visits.last = "c";
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&visitor, tree.get()), 0);
    EXPECT_EQ(ZUVXMLUTILSVisitor_visitChildrenFirst(&visitor, tree.get()), 0);
    EXPECT_EQ(visits.tags, "abcc");
    visits = {"", "a"};
    EXPECT_EQ(ZUVXMLUTILSVisitor_visitChildrenFirst(&visitor, tree.get()), 0);
    EXPECT_EQ(visits.tags, "cdbea");
}

TEST_F(XmlVisitor, bearsAVisitThatFreesTheSiblingBefore)
{
    const Tree tree = parse("<a><b><x/></b><c/><d/></a>");
    const auto freePrevious = [](void *, ZUVXMLUTILSObject *object) {
        ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSObject_getPreviousSibling(object));
        return 1;
    };
    const ZUVXMLUTILSVisitor freeing = {nullptr, freePrevious};
    EXPECT_EQ(ZUVXMLUTILSVisitor_visit(&freeing, tree.get()), 1);
    EXPECT_EQ(toText(tree), "<a><d/></a>");
}

TEST(XmlHelper, trimsTheWhiteSpaceOfXml)
{
    const struct {
        const char *text;
        const char *trimmed;
    } cases[] = {{" \t\r\n a b \n", "a b"}, {"a", "a"}, {"", ""}, {" \n", ""}, {"\fa", "\fa"}};
    for (const auto &[text, trimmed] : cases) {
        std::string copy = text;
        EXPECT_STREQ(ZUVXMLHelper_strTrim(copy.data()), trimmed);
    }
    const LogCapture log;
    EXPECT_EQ(ZUVXMLHelper_strTrim(nullptr), nullptr);
    EXPECT_EQ(log.texts(), std::vector<std::string>{"!meet precondition: text == ((void *)0)"});
}

} // namespace
} // namespace zuv_test
