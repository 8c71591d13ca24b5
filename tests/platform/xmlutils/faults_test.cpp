// Every allocation and every fault point fails once, and onward: the outcome is a success or a reported failure
// that leaves everything as it was, nothing leaks, and the next operation works.
#include "XmlTest.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/SaveContext.h"
#include "platform/xmlutils/Transformer.h"
#include "platform/xmlutils/Utils.h"
#include "platform/xmlutils/Validator.h"
#include "platform/xmlutils/VariableExpansor.h"
#include "support/FaultSweep.h"

namespace zuv_test
{
namespace
{

constexpr std::uint32_t kManySteps = 20000;

// Without a LogCapture of its own, since a sweep has one.
class XmlFaults : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1); }
    void TearDown() override
    {
        ZUVXMLUTILSGlobals_finalize();
        EXPECT_TRUE(heap_.isBalanced());
    }

private:
    const HeapCheck heap_;
};

// Without a fault, whatever is armed.
std::string textOf(const ZUVXMLUTILSObject *object)
{
    const int armed = ZUVOsapiFault_g_armed;
    ZUVOsapiFault_g_armed = 0;
    const std::string text = toText(object);
    ZUVOsapiFault_g_armed = armed;
    return text;
}

std::string manyRoutes()
{
    std::string text = "<dds><service name='s'>";
    for (int index = 0; index < 30; ++index) {
        text += "<route name='r" + std::to_string(index) +
                "' x='$(HOME)'>\n<in>a text that is too long to be interned</in></route>";
    }
    return text + "</service></dds>";
}

// What stands beside the globals is made and freed without faults.
TEST(XmlFaultsOfGlobals, areReported)
{
    ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
    ZUVXMLUTILSGlobals_finalize();
    sweepFaults<kManySteps>([] {
        if (!ZUVXMLUTILSGlobals_initialize()) {
            return false;
        }
        ZUVXMLUTILSGlobals_finalize();
        return true;
    });
}

TEST_F(XmlFaults, ofReading)
{
    const std::string text = manyRoutes() + "<!-- c -->";
    sweepFaults<kManySteps>([&] { return parse(text) != nullptr; });
    // More than libxml2 has room for at first.
    const std::string large = "<a>" + std::string(10000, 'x') + "</a>";
    sweepFaults<kManySteps>([&] { return parse(large) != nullptr; });
    const char *const pieces[] = {"<a x='1&lt;2'>", "one text<!-- c -->and another</a>"};
    sweepFaults<kManySteps>(
        [&] { return Tree(ZUVXMLUTILSParser_parseStringArray(pieces, 2)) != nullptr; });
}

TEST_F(XmlFaults, ofReadingFiles)
{
    const Folder folder;
    const std::string a = folder.write("a.xml", "<dds><a name='x'>text</a></dds>");
    const std::string list =
        "[" + folder / "none.xml" + "|" + a + "];str://\"<dds x='1'><b/></dds>\"";
    sweepFaults<kManySteps>(
        [&] { return Tree(ZUVXMLUTILSParser_parseUrlGroupList(list.c_str())) != nullptr; });
}

TEST_F(XmlFaults, ofMerging)
{
    const Tree addition = parse("<dds version='1' other='2'><a name='x'><b>text</b></a><c/></dds>");
    sweepFaults<kManySteps>([&] {
        const Tree root = parse("<dds><c/></dds>");
        if (root == nullptr) {
            return false;
        }
        const std::string before = textOf(root.get());
        const int isMerged = ZUVXMLUTILSParser_mergeRoot(root.get(), addition.get());
        EXPECT_TRUE(isMerged || textOf(root.get()) == before);
        return isMerged != 0;
    });
}

// Changes of a tree that lives through all faults. A change that fails leaves it as it was.
TEST_F(XmlFaults, ofChanges)
{
    using Change = bool (*)(ZUVXMLUTILSObject *);
    const Change changes[] = {
        [](ZUVXMLUTILSObject *x) {
            return ZUVXMLUTILSObject_setAttribute(x, "new", "a value of some length") != 0;
        },
        [](ZUVXMLUTILSObject *x) {
            ZUVXMLUTILSAttribute *former = nullptr;
            const bool isReplaced =
                ZUVXMLUTILSObject_replaceAttribute(x, "x", "a value of some length", &former) != 0;
            if (isReplaced) {
                ZUVXMLUTILSObject_putBackAttribute(x, "x", former);
            }
            return isReplaced;
        },
        [](ZUVXMLUTILSObject *x) { return ZUVXMLUTILSObject_restoreLines(x) != 0; },
        [](ZUVXMLUTILSObject *x) {
            return ZUVXMLUTILSObject_setName(x, "another name of some length") != 0;
        },
        [](ZUVXMLUTILSObject *x) { return ZUVXMLUTILSObject_setTagName(x, "other") != 0; },
        [](ZUVXMLUTILSObject *x) {
            return ZUVXMLUTILSObject_addProcessingInstruction(x, "p", "1") != 0;
        },
        [](ZUVXMLUTILSObject *x) { return ZUVXMLUTILSObject_setUserData(x, x) != 0; },
        [](ZUVXMLUTILSObject *x) { return ZUVXMLUTILSObject_getFullyQualifiedName(x) != nullptr; },
        [](ZUVXMLUTILSObject *x) { return ZUVXMLUTILSObject_copyAsChild(x, x) != nullptr; },
        [](ZUVXMLUTILSObject *x) {
            ZUVXMLUTILSVariableExpansor expansor;
            return ZUVXMLUTILSVariableExpansor_initialize(&expansor, nullptr, nullptr, nullptr,
                                                          nullptr) &&
                   ZUVXMLUTILSVariableExpansor_visit(&expansor, x);
        },
    };
    setenv("HOME", "/somewhere/that/is/long/enough", 1);
    for (std::size_t index = 0; index < std::size(changes); ++index) {
        SCOPED_TRACE(index);
        const Change change = changes[index];
        sweepFaults<kManySteps>([&] {
            const Tree tree = parse(manyRoutes());
            ZUVXMLUTILSObject *const route = tree != nullptr ? at(tree, "s::r20") : nullptr;
            if (route == nullptr) {
                return false;
            }
            const std::string before = textOf(tree.get());
            const bool isChanged = change(route);
            EXPECT_TRUE(isChanged || textOf(tree.get()) == before);
            // Whatever the index has gone through, it finds the others.
            EXPECT_STREQ(ZUVXMLUTILSObject_getName(at(tree, "s::r21")), "r21");
            return isChanged;
        });
    }
}

TEST_F(XmlFaults, ofUpdates)
{
    const Tree update = parse("<service><route name='r3' x='3' new='4'><in>another text that is "
                              "too long</in><out/></route>"
                              "<e>1</e><e>2</e></service>");
    sweepFaults<kManySteps>([&] {
        const Tree tree = parse(manyRoutes());
        ZUVXMLUTILSObject *const service = tree != nullptr ? at(tree, "s") : nullptr;
        if (service == nullptr) {
            return false;
        }
        const std::string before = textOf(tree.get());
        const int isUpdated = ZUVXMLUTILSUtils_updateObject(service, update.get());
        EXPECT_TRUE(isUpdated || textOf(tree.get()) == before);
        const char *const tags[] = {"e", "route"};
        ZUVXMLUTILSUtils_sortChildren(service, tags, 2);
        EXPECT_STREQ(ZUVXMLUTILSObject_getName(at(tree, "s::r21")), "r21");
        return isUpdated != 0;
    });
}

TEST_F(XmlFaults, ofWritingAndSaving)
{
    const Tree tree = parse(manyRoutes());
    sweepFaults<kManySteps>([&] {
        char *const text = ZUVXMLUTILSObject_toString(tree.get());
        const bool isWritten = text != nullptr;
        ZUVOsapiHeap_free(text);
        return isWritten;
    });
    const Folder folder;
    const std::string path = folder.write("a.xml", "old");
    for (const bool toFile : {false, true}) {
        sweepFaults<kManySteps>([&] {
            ZUVXMLUTILSSaveContext *const context =
                toFile ? ZUVXMLUTILSSaveContext_newForFile(path.c_str())
                       : ZUVXMLUTILSSaveContext_newForMemory();
            bool isSaved = false;
            if (context != nullptr) {
                ZUVXMLUTILSSaveContext_print(context, "%s", std::string(70000, 'x').c_str());
                isSaved = ZUVXMLUTILSSaveContext_finish(context) != 0;
            }
            ZUVXMLUTILSSaveContext_delete(context);
            EXPECT_EQ(folder.fileCount(), 1U);
            return isSaved;
        });
    }
}

const char *const kSchema =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:include schemaLocation='a.xsd'/>"
    "<xs:complexType name='t'><xs:choice maxOccurs='unbounded'><xs:element name='a' type='pos'/>"
    "<xs:element name='b' type='xs:string'/></xs:choice><xs:attribute name='x' type='xs:boolean' "
    "use='required'/></xs:complexType><xs:element name='root' type='t'/></xs:schema>";
const char *const kIncluded =
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:simpleType "
    "name='pos'><xs:restriction "
    "base='xs:string'><xs:pattern value='[0-9]+|U'/><xs:maxLength value='9'/></xs:restriction>"
    "</xs:simpleType></xs:schema>";

TEST_F(XmlFaults, ofSchemas)
{
    const Tree tree = parse("<root x='true'><a>12</a><b>x</b><a>U</a></root>");
    const ZUVXMLUTILSProperty root = {"other", "t"};
    const ZUVXMLUTILSPropertyList roots = {&root, 1};
    sweepFaults<kManySteps>([&] {
        if (!ZUVXMLUTILSGlobals_registerStringResource("a.xsd", &kIncluded, 1)) {
            return false;
        }
        ZUVXMLUTILSValidator *const validator = ZUVXMLUTILSValidator_new(&kSchema, 1);
        const bool isValid = validator != nullptr &&
                             ZUVXMLUTILSValidator_addValidationRoots(validator, &roots) &&
                             ZUVXMLUTILSValidator_validate(validator, tree.get());
        ZUVXMLUTILSValidator_delete(validator);
        ZUVXMLUTILSGlobals_unregisterStringResource("a.xsd");
        return isValid;
    });
}

const char *const kSheet =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform' "
    "xmlns:saxon='http://icl.com/saxon' exclude-result-prefixes='saxon'><xsl:output indent='yes'/>"
    "<xsl:param name='P'/><xsl:template match='/*'><out name='{$P}'><xsl:copy-of select='@*'/>"
    "<xsl:apply-templates select='*'/><xsl:if test=\"$P != ''\"><l><xsl:value-of "
    "select='saxon:line-number()'/></l></xsl:if></out></xsl:template>"
    "<xsl:template match='in'><xsl:copy-of select='.'/></xsl:template></xsl:stylesheet>";

TEST_F(XmlFaults, ofTransformations)
{
    const Tree tree = parse(manyRoutes());
    ZUVXMLUTILSObject *const route = at(tree, "s::r3");
    const ZUVXMLUTILSTransformationParameter parameter = {
        "P", "a value of some length", ZUVXMLUTILS_TRANSFORMATION_PARAMETER_STRING};
    sweepFaults<kManySteps>([&] {
        ZUVXMLUTILSTransformer *const transformer =
            ZUVXMLUTILSTransformer_newFromStringArray(&kSheet, 1);
        Tree result;
        if (transformer != nullptr) {
            result.reset(
                ZUVXMLUTILSTransformer_transformWithParams(transformer, route, &parameter, 1));
        }
        ZUVXMLUTILSTransformer_delete(transformer);
        return result != nullptr;
    });
}

} // namespace
} // namespace zuv_test
