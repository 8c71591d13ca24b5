#include <functional>
#include <mutex>
#include <thread>

#include "../XmlTest.h"
#include "platform/xmlutils/Transformer.h"
#include "platform/xmlutils/Utils.h"
#include "platform/xmlutils/Validator.h"
#include "platform/xmlutils/VariableExpansor.h"

namespace zuv_test
{
namespace
{

constexpr int kThreads = 4;
constexpr int kRounds = 50;

const char *const kSchema =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:include schemaLocation='t.xsd'/>"
    "<xs:element name='a' type='t'/></xs:schema>";
const char *const kTypes =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:simpleType "
    "name='t'><xs:restriction "
    "base='xs:string'><xs:maxLength value='4'/></xs:restriction></xs:simpleType></xs:schema>";
const char *const kSheet =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
    "<xsl:template match='/*'><b><xsl:value-of select='.'/></b></xsl:template></xsl:stylesheet>";

class XmlThreads : public XmlTest
{
protected:
    static void onThreads(const std::function<void(int)> &body)
    {
        std::vector<std::thread> threads;
        for (int index = 0; index < kThreads; ++index) {
            threads.emplace_back(body, index);
        }
        for (std::thread &thread : threads) {
            thread.join();
        }
    }
};

TEST_F(XmlThreads, withTreesAndToolsOfTheirOwnNeedNoTurns)
{
    onThreads([](int) {
        ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
        ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("t.xsd", &kTypes, 1), 1);
        ZUVXMLUTILSValidator *const validator = ZUVXMLUTILSValidator_new(&kSchema, 1);
        ZUVXMLUTILSTransformer *const transformer =
            ZUVXMLUTILSTransformer_newFromStringArray(&kSheet, 1);
        for (int round = 0; round < kRounds; ++round) {
            const Tree tree = parse("<a>text</a>");
            EXPECT_EQ(ZUVXMLUTILSValidator_validate(validator, tree.get()), 1);
            EXPECT_EQ(ZUVXMLUTILSValidator_validate(validator, parse("<a>texts</a>").get()), 0);
            EXPECT_EQ(toText(Tree(ZUVXMLUTILSTransformer_transform(transformer, tree.get()))),
                      "<b>text</b>");
            EXPECT_EQ(parse("<a>"), nullptr);
        }
        ZUVXMLUTILSValidator_delete(validator);
        ZUVXMLUTILSTransformer_delete(transformer);
        ZUVXMLUTILSGlobals_finalize();
    });
    EXPECT_EQ(log.texts().size(), 2U * kThreads * kRounds);
}

TEST_F(XmlThreads, thatShareATreeTakeTurns)
{
    const Tree tree = parse("<dds/>");
    std::mutex mutex;
    onThreads([&](int index) {
        const Tree snippet = parse("<r name='" + std::to_string(index) + "'><x>1</x></r>");
        for (int round = 0; round < kRounds; ++round) {
            const std::lock_guard lock(mutex);
            ZUVXMLUTILSObject *const copy =
                ZUVXMLUTILSObject_copyAsChild(tree.get(), snippet.get());
            ASSERT_NE(copy, nullptr);
            EXPECT_NE(at(tree, std::to_string(index).c_str()), nullptr);
            EXPECT_EQ(ZUVXMLUTILSUtils_updateObject(copy, snippet.get()), 1);
        }
    });
    EXPECT_EQ(childrenOf(tree.get()).size(), std::size_t{kThreads} * kRounds);
}

} // namespace
} // namespace zuv_test
