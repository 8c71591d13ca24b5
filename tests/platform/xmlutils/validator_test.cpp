#include "XmlTest.h"
#include "platform/xmlutils/Validator.h"

namespace zuv_test
{
namespace
{

struct ValidatorDeleter {
    void operator()(ZUVXMLUTILSValidator *validator) const
    {
        ZUVXMLUTILSValidator_delete(validator);
    }
};
using Validator = std::unique_ptr<ZUVXMLUTILSValidator, ValidatorDeleter>;

// In two pieces, with types from two files, one of which includes the other by a name in its own folder.
const char *const kSchema[] = {
    "<?xml version='1.0'?>\n<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n"
    "<xs:include schemaLocation='definitions/common.xsd'/>\n",
    "<xs:complexType name='service'><xs:sequence>\n"
    "<xs:element name='domain_id' type='id' minOccurs='0'/>\n"
    "<xs:element name='route' type='route' minOccurs='0' maxOccurs='unbounded'/>\n"
    "</xs:sequence><xs:attribute name='name' type='xs:string' use='required'/></xs:complexType>\n"
    "<xs:element name='dds'><xs:complexType><xs:sequence>\n"
    "<xs:element name='service' type='service' minOccurs='0' maxOccurs='unbounded'/>\n"
    "</xs:sequence></xs:complexType></xs:element></xs:schema>"};
const char *const kCommon[] = {
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:include schemaLocation='ids.xsd'/>"
    "<xs:complexType name='route'><xs:sequence><xs:element name='topic' type='xs:string'/>"
    "</xs:sequence><xs:attribute name='name' type='xs:string'/></xs:complexType></xs:schema>"};
const char *const kIds[] = {
    "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:simpleType name='id'>"
    "<xs:restriction base='xs:int'><xs:minInclusive value='0'/></xs:restriction></xs:simpleType>"
    "</xs:schema>"};
const ZUVXMLUTILSProperty kRoots[] = {{"service", "service"}, {"service_route", "route"}};
const ZUVXMLUTILSPropertyList kRootList = {kRoots, 2};

class XmlValidator : public XmlTest
{
protected:
    void SetUp() override
    {
        XmlTest::SetUp();
        ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("definitions/common.xsd", kCommon, 1),
                  1);
        ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("definitions/ids.xsd", kIds, 1), 1);
        validator.reset(ZUVXMLUTILSValidator_new(kSchema, 2));
        ASSERT_NE(validator, nullptr);
    }
    void TearDown() override
    {
        validator.reset();
        XmlTest::TearDown();
    }

    int validate(ZUVXMLUTILSObject *object) const
    {
        return ZUVXMLUTILSValidator_validate(validator.get(), object);
    }

    Validator validator;
};

TEST_F(XmlValidator, acceptsWhatFitsAndChangesNothing)
{
    const char *const text = "<dds><service name=\"s\"><domain_id>3</domain_id><route name=\"r\">"
                             "<topic>t</topic></route></service></dds>";
    const Tree tree = parse(text);
    EXPECT_EQ(validate(tree.get()), 1);
    EXPECT_EQ(toText(tree), text);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlValidator, tellsFileLineElementAndReasonOfTheFirstError)
{
    const Folder folder;
    const std::string path = folder.write(
        "c.xml", "<dds>\n<service name='s'>\n<domain_id>-3</domain_id>\n<x/>\n</service>\n</dds>");
    const Tree tree(ZUVXMLUTILSParser_parseFile(path.c_str()));
    EXPECT_EQ(validate(tree.get()), 0);
    EXPECT_TRUE(log.isExactly({{&ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss,
                                "!accept " + path +
                                    ", line 3: element <domain_id>: [facet 'minInclusive'] The "
                                    "value '-3' is less than the "
                                    "minimum value allowed ('0')."}}));
}

TEST_F(XmlValidator, tellsWhatIsWrongWithElementsAndAttributes)
{
    const struct {
        const char *text;
        const char *report;
    } cases[] = {
        {"<dds>\n<other/></dds>",
         "!accept text, line 2: element <other>: This element is not expected. "
         "Expected is ( service )."},
        {"<dds><service/></dds>",
         "!accept text, line 1: element <service>: The attribute 'name' is required but missing."},
        {"<dds><service name='s' x='1'/></dds>",
         "!accept text, line 1: element <service>: attribute 'x': The attribute 'x' is not "
         "allowed."},
        {"<dds><service name='s'>text</service></dds>",
         "!accept text, line 1: element <service>: Character content other than whitespace is not "
         "allowed because the content type is 'element-only'."},
        {"<service name='s'/>",
         "!accept text, line 1: element <service>: No matching global declaration "
         "available for the validation root."},
    };
    for (const auto &[text, report] : cases) {
        SCOPED_TRACE(text);
        const Tree tree = parse(text);
        EXPECT_EQ(validate(tree.get()), 0);
        EXPECT_EQ(onlyLine(), report);
    }
}

TEST_F(XmlValidator, validatesSubtreesByTheirRoots)
{
    const Tree tree = parse("<dds><bad/><service name='s'><route><topic/></route></service></dds>");
    ZUVXMLUTILSObject *const service = at(tree, "s");
    EXPECT_EQ(validate(service), 0);
    log.clear();
    ASSERT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &kRootList), 1);
    EXPECT_EQ(validate(service), 1);
    ZUVXMLUTILSObject *const route = ZUVXMLUTILSObject_getFirstChild(service);
    EXPECT_EQ(validate(route), 0);
    EXPECT_EQ(onlyLine(), "!accept text, line 1: element <route>: No matching global declaration "
                          "available for the validation root.");
    ASSERT_EQ(ZUVXMLUTILSObject_setTagName(route, "service_route"), 1);
    EXPECT_EQ(validate(route), 1);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(XmlValidator, refusesWrongRootsAndStaysAsItWas)
{
    const ZUVXMLUTILSProperty cases[][2] = {{{"a", "service"}, {"b", "none"}},
                                            {{"a", "service"}, {"dds", "service"}},
                                            {{"a", "service"}, {"a", "route"}}};
    for (const auto &roots : cases) {
        const ZUVXMLUTILSPropertyList list = {roots, 2};
        EXPECT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &list), 0);
        EXPECT_EQ(log.texts().size(), 1U);
        log.clear();
        const Tree tree = parse("<a name='x'/>");
        EXPECT_EQ(validate(tree.get()), 0);
        log.clear();
    }
    EXPECT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &kRootList), 1);
}

TEST_F(XmlValidator, refusesSchemasThatAreWrong)
{
    const struct {
        const char *text;
        const char *report;
    } cases[] = {
        {"<schema",
         "!accept schema, line 1: element <schema>: Couldn't find end of Start Tag schema line 1"},
        {"<a/>", "!accept schema, line 0: The XML document 'in_memory_buffer' is not a "
                 "schema document."},
        {"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>\n<xs:element name='a' "
         "type='none'/>"
         "</xs:schema>",
         "!accept schema, line 2: element <element>: element decl. 'a', attribute 'type': The "
         "QName "
         "value 'none' does not resolve to a(n) type definition."},
        {"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:include "
         "schemaLocation='/etc/passwd'/></xs:schema>",
         "!accept schema, line 0: no registered text has the name '/etc/passwd'"},
    };
    for (const auto &[text, report] : cases) {
        SCOPED_TRACE(text);
        EXPECT_EQ(ZUVXMLUTILSValidator_new(&text, 1), nullptr);
        EXPECT_EQ(onlyLine(), report);
    }
}

TEST_F(XmlValidator, findsReplacedAndForgottenTexts)
{
    const char *const other[] = {"<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'>"
                                 "<xs:simpleType name='id'><xs:restriction base='xs:string'/>"
                                 "</xs:simpleType></xs:schema>"};
    ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("definitions/ids.xsd", other, 1), 1);
    const Validator replaced(ZUVXMLUTILSValidator_new(kSchema, 2));
    const Tree tree = parse("<dds><service name='s'><domain_id>x</domain_id></service></dds>");
    EXPECT_EQ(ZUVXMLUTILSValidator_validate(replaced.get(), tree.get()), 1);
    EXPECT_EQ(validate(tree.get()), 0);
    log.clear();
    ZUVXMLUTILSGlobals_unregisterStringResource("definitions/ids.xsd");
    ZUVXMLUTILSGlobals_unregisterStringResource("definitions/ids.xsd");
    EXPECT_EQ(ZUVXMLUTILSValidator_new(kSchema, 2), nullptr);
    EXPECT_EQ(onlyLine(),
              "!accept schema, line 0: no registered text has the name 'definitions/ids.xsd'");
}

TEST_F(XmlValidator, neverFollowsALocationInADocument)
{
    const Tree tree = parse("<dds xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
                            "xsi:noNamespaceSchemaLocation='/etc/passwd'/>");
    EXPECT_EQ(validate(tree.get()), 1);
    EXPECT_TRUE(log.isEmpty());
}

class XmlGlobals : public XmlTest
{
};

TEST_F(XmlGlobals, nest)
{
    ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("definitions/common.xsd", kCommon, 1), 1);
    ASSERT_EQ(ZUVXMLUTILSGlobals_registerStringResource("definitions/ids.xsd", kIds, 1), 1);
    ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
    ZUVXMLUTILSGlobals_finalize();
    EXPECT_NE(Validator(ZUVXMLUTILSValidator_new(kSchema, 2)), nullptr);
    ZUVXMLUTILSGlobals_finalize();
    EXPECT_EQ(ZUVXMLUTILSGlobals_registerStringResource("a", kIds, 1), 0);
    EXPECT_EQ(onlyLine(), "!meet precondition: ZUVXMLUTILSGlobals are not initialized");
    ZUVXMLUTILSGlobals_finalize();
    EXPECT_EQ(onlyLine(), "!meet precondition: ZUVXMLUTILSGlobals are not initialized");
    // The last one has forgotten the texts.
    ASSERT_EQ(ZUVXMLUTILSGlobals_initialize(), 1);
    EXPECT_EQ(ZUVXMLUTILSValidator_new(kSchema, 2), nullptr);
}

} // namespace
} // namespace zuv_test
