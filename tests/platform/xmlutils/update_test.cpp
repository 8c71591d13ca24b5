// Merging a snippet into a live element, and putting children into order.
#include "XmlTest.h"
#include "platform/xmlutils/Utils.h"

namespace zuv_test
{
namespace
{

class XmlUpdate : public XmlTest
{
protected:
    // `live` changed by `update`, as text.
    std::string updated(const std::string &live, const std::string &update)
    {
        const Tree target = parse(live);
        const Tree source = parse(update);
        const std::string before = toText(source);
        EXPECT_EQ(ZUVXMLUTILSUtils_updateObject(target.get(), source.get()), 1);
        EXPECT_EQ(toText(source), before);
        return toText(target);
    }
};

TEST_F(XmlUpdate, replacesTextsAndLeavesWhatIsNotMentioned)
{
    EXPECT_EQ(updated("<r><a>1</a><b>2</b></r>", "<r><b>3</b></r>"), "<r><a>1</a><b>3</b></r>");
    EXPECT_EQ(updated("<r><a>1</a></r>", "<r><a/></r>"), "<r><a/></r>");
    EXPECT_EQ(updated("<r><a/></r>", "<r><a>1</a></r>"), "<r><a>1</a></r>");
    EXPECT_EQ(updated("<r>1</r>", "<r>2</r>"), "<r>2</r>");
    EXPECT_EQ(updated("<r><a>1</a></r>", "<r/>"), "<r><a>1</a></r>");
}

TEST_F(XmlUpdate, goesDownIntoElements)
{
    EXPECT_EQ(updated("<r><q><h><kind>X</kind><depth>1</depth></h><d>5</d></q></r>",
                      "<r><q><h><depth>9</depth></h></q></r>"),
              "<r><q><h><kind>X</kind><depth>9</depth></h><d>5</d></q></r>");
    EXPECT_EQ(updated("<r><m><e>1</e></m></r>", "<r><m/></r>"), "<r><m><e>1</e></m></r>");
    EXPECT_EQ(updated("<r><m>text</m></r>", "<r><m><e>1</e></m></r>"), "<r><m><e>1</e></m></r>");
}

TEST_F(XmlUpdate, addsWhatIsNewBesideWhatTheUpdateSaysItStandsBeside)
{
    EXPECT_EQ(updated("<r><a/><c/></r>", "<r><d/></r>"), "<r><a/><c/><d/></r>");
    EXPECT_EQ(updated("<r><a/><c/></r>", "<r><b/><c/></r>"), "<r><a/><b/><c/></r>");
    EXPECT_EQ(updated("<r><a/><c/></r>", "<r><a/><b1/><b2/></r>"), "<r><a/><b1/><b2/><c/></r>");
    EXPECT_EQ(updated("<r/>", "<r><b1/><b2/></r>"), "<r><b1/><b2/></r>");
}

TEST_F(XmlUpdate, matchesByNameAndByTheChildName)
{
    EXPECT_EQ(updated("<r><t name='1'>a</t><t name='2'>b</t></r>", "<r><t name='2'>c</t></r>"),
              "<r><t name=\"1\">a</t><t name=\"2\">c</t></r>");
    EXPECT_EQ(updated("<r><t name='1'>a</t></r>", "<r><t name='2'>c</t></r>"),
              "<r><t name=\"1\">a</t><t name=\"2\">c</t></r>");
    EXPECT_EQ(updated("<p><value><element><name>a</name><value>1</value></element></value></p>",
                      "<p><value><element><name>b</name><value>2</value></element>"
                      "<element><name>a</name><value>3</value></element></value></p>"),
              "<p><value><element><name>b</name><value>2</value></element>"
              "<element><name>a</name><value>3</value></element></value></p>");
}

TEST_F(XmlUpdate, replacesListsAsAWhole)
{
    EXPECT_EQ(updated("<p><e>1</e><e>2</e><e>3</e></p>", "<p><e>9</e></p>"), "<p><e>9</e></p>");
    EXPECT_EQ(updated("<p><a/><e>1</e><z/></p>", "<p><e>7</e><e>8</e></p>"),
              "<p><a/><e>7</e><e>8</e><z/></p>");
    EXPECT_EQ(updated("<p><e>1</e></p>", "<p><e>2</e></p>"), "<p><e>2</e></p>");
    EXPECT_EQ(updated("<p><e name='k'>1</e><e>2</e><e>3</e></p>", "<p><e>8</e><e>9</e></p>"),
              "<p><e name=\"k\">1</e><e>8</e><e>9</e></p>");
}

TEST_F(XmlUpdate, takesTheFirstOfTheTagForAnElementWithoutAName)
{
    EXPECT_EQ(updated("<r><in name='1'>a</in><in name='2'>b</in></r>", "<r><in>c</in></r>"),
              "<r><in name=\"1\">c</in><in name=\"2\">b</in></r>");
}

TEST_F(XmlUpdate, neverAddsALiveEntityAgainUnderAnotherName)
{
    const Tree live = parse("<r><in name='1'>a</in></r>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(at(live, "1"), &log), 1);
    const Tree update = parse("<r><in name='2'>b</in></r>");
    ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(live.get(), update.get()), 1);
    EXPECT_EQ(toText(live), "<r><in name=\"1\">b</in></r>");
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(at(live, "1")), &log);
}

TEST_F(XmlUpdate, mergesAttributesOfChildrenButNoNamesAndNotItsOwn)
{
    EXPECT_EQ(updated("<r x='1'><q name='a' t='1' u='1'/></r>",
                      "<r x='2' y='2'><q name='a' t='2' v='2'/></r>"),
              "<r x=\"1\"><q name=\"a\" t=\"2\" u=\"1\" v=\"2\"/></r>");
}

TEST_F(XmlUpdate, leavesWhatTheProgramHasSet)
{
    const Tree live = parse("<r><in>a</in></r>");
    const Tree update = parse("<r><in doc='1'>b</in><new doc='1'/></r>");
    for (auto *child = ZUVXMLUTILSObject_getFirstChild(update.get()); child != nullptr;
         child = ZUVXMLUTILSObject_getNextSibling(child)) {
        ASSERT_EQ(ZUVXMLUTILSObject_setAttribute(child, "target", "0x1"), 1);
        ASSERT_EQ(ZUVXMLUTILSObject_setName(child, "Auto1"), 1);
    }
    ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(live.get(), update.get()), 1);
    EXPECT_EQ(toText(live), "<r><in doc=\"1\">b</in><new doc=\"1\"/></r>");
}

TEST_F(XmlUpdate, leavesCommentsInstructionsAndUserData)
{
    const Tree live = parse("<r><!-- c --><?p 0?><a>1</a></r>");
    ASSERT_EQ(ZUVXMLUTILSObject_setUserData(live.get(), &log), 1);
    const Tree update = parse("<r><?p 1?><!-- d --><a>2</a></r>");
    ASSERT_EQ(ZUVXMLUTILSUtils_updateObject(live.get(), update.get()), 1);
    EXPECT_EQ(toText(live), "<r><!-- c --><?p 0?><a>2</a></r>");
    EXPECT_EQ(ZUVXMLUTILSObject_getUserData(live.get()), &log);
}

TEST_F(XmlUpdate, refusesAnotherTag)
{
    const Tree live = parse("<r><a>1</a></r>");
    const Tree update = parse("<s><a>2</a></s>");
    EXPECT_EQ(ZUVXMLUTILSUtils_updateObject(live.get(), update.get()), 0);
    EXPECT_EQ(onlyLine(),
              "!accept text, line 1: element <s>: the element that it changes has another tag");
    EXPECT_EQ(toText(live), "<r><a>1</a></r>");
}

TEST_F(XmlUpdate, changesTheSameWayAmongManyChildren)
{
    std::string live = "<s>";
    std::string expected = "<s>";
    for (int index = 0; index < 100; ++index) {
        const std::string name = "<t name=\"" + std::to_string(index) + "\">";
        live += name + "a</t>";
        expected += name + (index == 50 ? "b</t><new/>" : "a</t>");
    }
    EXPECT_EQ(updated(live + "</s>", "<s><t name='50'>b</t><new/></s>"), expected + "</s>");
}

class XmlSort : public XmlTest
{
protected:
    std::string sorted(const std::string &text, const std::vector<const char *> &tags)
    {
        const Tree tree = parse(text);
        ZUVXMLUTILSUtils_sortChildren(tree.get(), tags.data(), static_cast<int>(tags.size()));
        return toText(tree);
    }
};

TEST_F(XmlSort, putsListedTagsFirstAndKeepsTheOrderAmongEquals)
{
    EXPECT_EQ(sorted("<s><r name='1'/><b/><r name='2'/><a name='1'/><a name='2'/></s>", {"a", "b"}),
              "<s><a name=\"1\"/><a name=\"2\"/><b/><r name=\"1\"/><r name=\"2\"/></s>");
    EXPECT_EQ(sorted("<s><r/><b/></s>", {"a", "b"}), "<s><b/><r/></s>");
    EXPECT_EQ(sorted("<s><r/><b/></s>", {"x"}), "<s><r/><b/></s>");
    EXPECT_EQ(sorted("<s><r/><b/></s>", {}), "<s><r/><b/></s>");
    EXPECT_EQ(sorted("<s/>", {"a"}), "<s/>");
}

TEST_F(XmlSort, keepsTheAnnotationInFront)
{
    EXPECT_EQ(sorted("<s><annotation/><r/><a/></s>", {"a"}), "<s><annotation/><a/><r/></s>");
    EXPECT_EQ(sorted("<s><r/><annotation/></s>", {"a"}), "<s><annotation/><r/></s>");
}

TEST_F(XmlSort, sortsAmongManyChildrenToo)
{
    std::string rest;
    for (int index = 0; index < 100; ++index) {
        rest += "<r/>";
    }
    EXPECT_EQ(sorted("<s>" + rest + "<b/><a/></s>", {"a", "b"}), "<s><a/><b/>" + rest + "</s>");
}

class XmlProperty : public XmlTest
{
};

TEST_F(XmlProperty, isFoundByItsName)
{
    for (const char *text :
         {"<p><value><element><name>a</name></element><element><name>b</name><value>2</value>"
          "</element></value></p>",
          "<p><element><name>a</name></element><element><name>b</name><value>2</value></element></"
          "p>"}) {
        const Tree tree = parse(text);
        const auto *const element = ZUVXMLUTILSUtils_lookUpProperty(tree.get(), "b");
        ASSERT_NE(element, nullptr);
        EXPECT_EQ(toText(element), "<element><name>b</name><value>2</value></element>");
        EXPECT_EQ(ZUVXMLUTILSUtils_lookUpProperty(tree.get(), "B"), nullptr);
    }
    EXPECT_EQ(ZUVXMLUTILSUtils_lookUpProperty(parse("<p/>").get(), "a"), nullptr);
    EXPECT_EQ(ZUVXMLUTILSUtils_lookUpProperty(parse("<p><value/></p>").get(), "a"), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

} // namespace
} // namespace zuv_test
