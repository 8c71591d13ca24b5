// Reports about a document name the place that its elements come from.
#include "QosTree.h"
#include "platform/ddsxml/XmlObject.hpp"

namespace
{

class QosPlace : public zuv_test::QosTree
{
protected:
    // What the report says in front of what is wrong.
    std::string placeOf(const std::string &document, const char *file = nullptr, int line = 1)
    {
        zuv_test::LogCapture log;
        EXPECT_EQ(ZUVXMLParser_parseFromPlace(parser_, nullptr, document.c_str(), file, line),
                  nullptr);
        const std::string text = log.lines().empty() ? "" : log.lines().front().text;
        return text.substr(0, text.find(':'));
    }

    const std::string wrong_ = library("l", "<datareader_qos><histroy/></datareader_qos>");
};

TEST_F(QosPlace, isALineOfTheTextItself)
{
    EXPECT_EQ(placeOf("<dds>\n" + wrong_ + "</dds>"), "!read text, line 2");
    EXPECT_EQ(placeOf("<dds>\n\n" + wrong_ + "</dds>", "f.xml", 40), "!read f.xml, line 42");
}

TEST_F(QosPlace, isWhatAnInstructionInFrontSays)
{
    EXPECT_EQ(placeOf("<dds>\n<?zuv-linenumber 70?>\n\n" + wrong_ + "</dds>"),
              "!read text, line 70");
    EXPECT_EQ(placeOf("<dds><?zuv-linenumber 70?><qos_library name='l'>\n\n<datareader_qos>\n"
                      "<history>\n<depth>x</depth></history></datareader_qos></qos_library></dds>"),
              "!read text, line 74")
        << "the innermost element that is wrong";
    EXPECT_EQ(placeOf("<dds><?zuv-linenumber 70?><types/>\n" + wrong_ + "</dds>"),
              "!read text, line 71")
        << "until the next instruction";
    const std::string kEnd = "<?zuv-linenumber END-OF-XML-FRAGMENT?>";
    EXPECT_EQ(placeOf("<dds>\n<?zuv-linenumber 70?><types/>" + kEnd + wrong_ + "</dds>"),
              "!read text, line 2");
    EXPECT_EQ(placeOf("<dds><?zuv-linenumber 70?><types/>" + kEnd + "<?zuv-linenumber 80?>" +
                      wrong_ + kEnd + "</dds>"),
              "!read text, line 80");
    for (const char *none : {"2147483647", "1000000001", "99999999999", "-70", "0", ""}) {
        EXPECT_EQ(
            placeOf("<dds>\n<?zuv-linenumber " + std::string(none) + "?>" + wrong_ + "</dds>"),
            "!read text, line 2")
            << none;
    }
    EXPECT_EQ(placeOf("<dds>\n<qos_library name='l'>\n<?zuv-linenumber 70?><datareader_qos>\n"
                      "<histroy/></datareader_qos></qos_library></dds>"),
              "!read text, line 71")
        << "at any depth";
}

TEST_F(QosPlace, isAFileOfALibraryOfItsOwn)
{
    EXPECT_EQ(placeOf("<dds>\n<qos_library name='l'><?zuv-file g.xml?>\n<datareader_qos><x/>"
                      "</datareader_qos></qos_library></dds>",
                      "f.xml"),
              "!read g.xml, line 3");
    EXPECT_EQ(
        placeOf("<dds><qos_library name='k'><?zuv-file g.xml?></qos_library>" + wrong_ + "</dds>",
                "f.xml"),
        "!read f.xml, line 1");
}

TEST_F(QosPlace, isKeptByWhatJoinsTheTree)
{
    ASSERT_TRUE(add("<?zuv-linenumber 70?>" + library("l", reader("name='q'", 3))));
    ASSERT_TRUE(add("<?zuv-linenumber 80?>" + library("l", reader("name='r'", 3))));
    EXPECT_EQ(element("l::q")->line, 70);
    EXPECT_EQ(element("l::r")->line, 80);
}

} // namespace
