// The ready configurations are valid, tell what they show, and one of them has everything; so has the reference.
#include <filesystem>
#include <regex>

#include <gmock/gmock.h>

#include "SchemaReader.h"
#include "SchemaTest.h"

namespace zuv_test
{
namespace
{

namespace fs = std::filesystem;

class Configurations : public SchemaTest
{
protected:
    // Whole documents; the others are what an update brings.
    static std::vector<fs::path> documents()
    {
        std::vector<fs::path> paths;
        for (const auto &entry : fs::directory_iterator(ZUV_CONFIGURATIONS)) {
            const Tree tree(ZUVXMLUTILSParser_parseFile(entry.path().c_str()));
            if (tree != nullptr &&
                std::string_view("dds") == ZUVXMLUTILSObject_getTagName(tree.get())) {
                paths.push_back(entry.path());
            }
        }
        return paths;
    }
};

TEST_F(Configurations, areValid)
{
    const auto paths = documents();
    EXPECT_GE(paths.size(), 6U);
    for (const auto &path : paths) {
        const Tree tree(ZUVXMLUTILSParser_parseFile(path.c_str()));
        EXPECT_EQ(ZUVXMLUTILSValidator_validate(validator.get(), tree.get()), 1)
            << path << testing::PrintToString(log.texts());
    }
}

TEST_F(Configurations, tellAtTheirTopWhatTheyShow)
{
    for (const auto &path : documents()) {
        std::ifstream stream(path);
        std::string declaration;
        std::string second;
        std::getline(stream, declaration);
        std::getline(stream, second);
        EXPECT_EQ(declaration, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>") << path;
        EXPECT_THAT(second, testing::StartsWith("<!-- ")) << path;
    }
}

class Names
{
public:
    explicit Names(const ZUVXMLUTILSObject *object) { add(object); }

    std::set<std::string> elements;
    std::set<std::string> attributes;

private:
    void add(const ZUVXMLUTILSObject *object)
    {
        elements.insert(ZUVXMLUTILSObject_getTagName(object));
        for (auto *attribute = ZUVXMLUTILSObject_getFirstAttribute(object); attribute != nullptr;
             attribute = ZUVXMLUTILSAttribute_getNext(attribute)) {
            attributes.insert(ZUVXMLUTILSAttribute_getName(attribute));
        }
        for (auto *child = ZUVXMLUTILSObject_getFirstChild(object); child != nullptr;
             child = ZUVXMLUTILSObject_getNextSibling(child)) {
            add(child);
        }
    }
};

TEST_F(Configurations, ofTheCompleteOneHasEveryElementAndAttribute)
{
    const Tree tree(ZUVXMLUTILSParser_parseFile(ZUV_CONFIGURATIONS "/complete.xml"));
    const Names names(tree.get());
    std::set<std::string> elements;
    std::set<std::string> attributes;
    for (const char *const file :
         {"zuv_brel_service.xsd", "definitions/zuv_service_common_definitions.xsd",
          "definitions/zuv_dds_qos_profiles_definitions.xsd",
          "definitions/zuv_dds_profiles_definitions.xsd",
          "definitions/zuv_dds_topic_types_definitions.xsd",
          "definitions/zuv_dist_logger_definitions.xsd"}) {
        const SchemaReader schema(file);
        elements.merge(schema.elements());
        attributes.merge(schema.attributes());
    }
    attributes.erase("unit"); // of a type that no element has
    EXPECT_EQ(names.elements, elements);
    EXPECT_EQ(names.attributes, attributes);
}

// The words in code spans: `like this`.
std::set<std::string> wordsInCode(const std::string &text)
{
    std::set<std::string> words;
    const std::regex span("`([^`\n]+)`");
    const std::regex word("[A-Za-z_]+");
    for (std::sregex_iterator code(text.begin(), text.end(), span), end; code != end; ++code) {
        const std::string content = (*code)[1];
        for (std::sregex_iterator found(content.begin(), content.end(), word); found != end;
             ++found) {
            words.insert(found->str());
        }
    }
    return words;
}

// The policies of QoS have a page of their own.
TEST(Reference, tellsEveryElementAndAttribute)
{
    ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
    std::ifstream stream(ZUV_REFERENCE);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    const std::set<std::string> words = wordsInCode(text);
    for (const char *const file :
         {"zuv_brel_service.xsd", "definitions/zuv_service_common_definitions.xsd",
          "definitions/zuv_dds_profiles_definitions.xsd",
          "definitions/zuv_dds_topic_types_definitions.xsd",
          "definitions/zuv_dist_logger_definitions.xsd"}) {
        const SchemaReader schema(file);
        std::set<std::string> names = schema.elements();
        names.merge(schema.attributes());
        names.erase("unit"); // of a type that no element has
        EXPECT_FALSE(names.empty()) << file;
        for (const auto &name : names) {
            EXPECT_TRUE(words.contains(name)) << name << " of " << file;
        }
    }
    ZUVXMLUTILSGlobals_finalize();
}

} // namespace
} // namespace zuv_test
