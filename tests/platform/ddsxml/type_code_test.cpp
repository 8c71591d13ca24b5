#include "platform/ddsxml/XmlTypeCode.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "XmlTree.h"
#include "support/FaultSweep.h"
#include "support/LogCapture.h"

namespace
{

using zuv_test::LogCapture;

// Types that are defined within "types".
class XmlTypes : public zuv_test::XmlTree
{
protected:
    // Replaces what was defined before.
    void define(const std::string &definitions)
    {
        DDS_XMLParser_free_dom(parser_, root_);
        root_ = ZUVXMLParser_parseFromString(
            parser_, nullptr, ("<dds><types>" + definitions + "</types></dds>").c_str());
        ASSERT_NE(root_, nullptr);
    }

    ZUVXMLObject *element(const char *name) const
    {
        return DDS_XMLObject_lookup(ZUVXMLObject_getFirstChild(root_), name);
    }

    const DDS_TypeCode *typeOf(const char *name) const
    {
        return DDS_XMLTypeCode_get_dds_typecode(element(name));
    }

    // Why the type cannot be made.
    std::string refusal(const std::string &definitions, const char *name = "T")
    {
        const LogCapture log;
        define(definitions);
        EXPECT_EQ(typeOf(name), nullptr) << definitions;
        const std::vector<std::string> texts = log.texts();
        return texts.size() == 1 ? texts[0] : std::to_string(texts.size()) + " lines";
    }

    std::string structRefusal(const std::string &members)
    {
        return refusal("<struct name='T'>" + members + "</struct>");
    }
};

struct Member {
    std::string name;
    DDS_TCKind kind;
    DDS_UnsignedLong id;
    DDS_UnsignedLong length = 0;

    bool operator==(const Member &) const = default;
};

std::vector<Member> membersOf(const DDS_TypeCode *type)
{
    std::vector<Member> members;
    for (DDS_UnsignedLong index = 0; index < DDS_TypeCode_member_count(type, nullptr); ++index) {
        const DDS_TypeCode *content = DDS_TypeCode_member_type(type, index, nullptr);
        members.push_back(
            {DDS_TypeCode_member_name(type, index, nullptr), DDS_TypeCode_kind(content, nullptr),
             DDS_TypeCode_member_id(type, index, nullptr), DDS_TypeCode_length(content, nullptr)});
    }
    return members;
}

const DDS_TypeCode *memberType(const DDS_TypeCode *type, const char *name)
{
    return DDS_TypeCode_member_type(type, DDS_TypeCode_find_member_by_name(type, name, nullptr),
                                    nullptr);
}

TEST_F(XmlTypes, knowThePrimitives)
{
    define(R"(<struct name="T">
        <member name="a" type="boolean"/> <member name="b" type="byte"/>
        <member name="c" type="char8"/>   <member name="d" type="int16"/>
        <member name="e" type="uint16"/>  <member name="f" type="int32"/>
        <member name="g" type="uint32"/>  <member name="h" type="int64"/>
        <member name="i" type="uint64"/>  <member name="j" type="float32"/>
        <member name="k" type="float64"/> <member name="l" type="string"/>
    </struct>)");
    const DDS_TypeCode *type = typeOf("T");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(membersOf(type), (std::vector<Member>{{"a", DDS_TK_BOOLEAN, 0},
                                                    {"b", DDS_TK_OCTET, 1},
                                                    {"c", DDS_TK_CHAR, 2},
                                                    {"d", DDS_TK_SHORT, 3},
                                                    {"e", DDS_TK_USHORT, 4},
                                                    {"f", DDS_TK_LONG, 5},
                                                    {"g", DDS_TK_ULONG, 6},
                                                    {"h", DDS_TK_LONGLONG, 7},
                                                    {"i", DDS_TK_ULONGLONG, 8},
                                                    {"j", DDS_TK_FLOAT, 9},
                                                    {"k", DDS_TK_DOUBLE, 10},
                                                    {"l", DDS_TK_STRING, 11, DDS_UNBOUNDED}}));
    EXPECT_EQ(DDS_TypeCode_kind(type, nullptr), DDS_TK_STRUCT);
    EXPECT_STREQ(DDS_TypeCode_name(type, nullptr), "T");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_EXTENSIBLE_EXTENSIBILITY);
    EXPECT_FALSE(DDS_TypeCode_is_nested(type, nullptr));
    EXPECT_FALSE(DDS_TypeCode_is_autoid_hash(type, nullptr));
    EXPECT_EQ(DDS_TypeCode_allowed_representations(type, nullptr), 5U);
}

TEST_F(XmlTypes, areMadeOnceAndKept)
{
    define("<struct name='T'><member name='x' type='int32'/></struct>");
    const DDS_TypeCode *type = typeOf("T");
    EXPECT_EQ(typeOf("T"), type);
    EXPECT_EQ(typeOf("::T"), type);
}

TEST_F(XmlTypes, haveBoundsSequencesAndArrays)
{
    define(R"(<const name="N" type="int32" value="0x10"/>
        <const name="M" type="uint16" value="N"/>
        <struct name="T">
            <member name="text" type="string" stringMaxLength="7"/>
            <member name="free" type="string" stringMaxLength="-1"/>
            <member name="list" type="int16" sequenceMaxLength="N"/>
            <member name="open" type="string" stringMaxLength="3" sequenceMaxLength="-1"/>
            <member name="grid" type="float32" arrayDimensions="2, M ,3"/>
            <member name="lists" type="byte" sequenceMaxLength="4" arrayDimensions="5"/>
        </struct>)");
    const DDS_TypeCode *type = typeOf("T");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(membersOf(type), (std::vector<Member>{{"text", DDS_TK_STRING, 0, 7},
                                                    {"free", DDS_TK_STRING, 1, DDS_UNBOUNDED},
                                                    {"list", DDS_TK_SEQUENCE, 2, 16},
                                                    {"open", DDS_TK_SEQUENCE, 3, DDS_UNBOUNDED},
                                                    {"grid", DDS_TK_ARRAY, 4, 2},
                                                    {"lists", DDS_TK_ARRAY, 5, 5}}));
    const auto content = [](const DDS_TypeCode *of) {
        return DDS_TypeCode_content_type(of, nullptr);
    };
    EXPECT_EQ(content(memberType(type, "list")), &DDS_g_tc_short);
    EXPECT_EQ(DDS_TypeCode_length(content(memberType(type, "open")), nullptr), 3U);
    const DDS_TypeCode *middle = content(memberType(type, "grid"));
    EXPECT_EQ(DDS_TypeCode_length(middle, nullptr), 16U);
    EXPECT_EQ(DDS_TypeCode_length(content(middle), nullptr), 3U);
    EXPECT_EQ(content(content(middle)), &DDS_g_tc_float);
    const DDS_TypeCode *list = content(memberType(type, "lists"));
    EXPECT_EQ(DDS_TypeCode_kind(list, nullptr), DDS_TK_SEQUENCE);
    EXPECT_EQ(content(list), &DDS_g_tc_octet);
}

TEST_F(XmlTypes, haveMarksIdsAndKindsOfExtension)
{
    define(R"(<struct name="T" extensibility="mutable" nested="true">
            <member name="key" type="int32" key="true" id="10"/>
            <member name="next" type="int32" optional="true"/>
            <member name="plain" type="int32" id="0x5"/>
            <member name="last" type="int32"/>
        </struct>
        <struct name="H" extensibility="final" autoid="hash">
            <member name="color" type="int32"/>
            <member name="given" type="int32" id="3"/>
        </struct>)");
    const DDS_TypeCode *type = typeOf("T");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(membersOf(type), (std::vector<Member>{{"key", DDS_TK_LONG, 10},
                                                    {"next", DDS_TK_LONG, 11},
                                                    {"plain", DDS_TK_LONG, 5},
                                                    {"last", DDS_TK_LONG, 6}}));
    EXPECT_TRUE(DDS_TypeCode_is_member_key(type, 0, nullptr));
    EXPECT_TRUE(DDS_TypeCode_is_member_optional(type, 1, nullptr));
    EXPECT_TRUE(DDS_TypeCode_is_member_required(type, 2, nullptr));
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(type, nullptr), DDS_MUTABLE_EXTENSIBILITY);
    EXPECT_TRUE(DDS_TypeCode_is_nested(type, nullptr));
    const DDS_TypeCode *hashed = typeOf("H");
    EXPECT_EQ(DDS_TypeCode_extensibility_kind(hashed, nullptr), DDS_FINAL_EXTENSIBILITY);
    EXPECT_TRUE(DDS_TypeCode_is_autoid_hash(hashed, nullptr));
    // The example of the standard, DDS-XTypes 1.3, 7.3.1.2.1.1.
    EXPECT_EQ(DDS_TypeCode_member_id(hashed, 0, nullptr), 0x0fa5dd70U);
    EXPECT_EQ(DDS_TypeCode_member_id(hashed, 1, nullptr), 3U);
}

TEST_F(XmlTypes, mayHaveABase)
{
    define(R"(<struct name="Base"><member name="a" type="int32" id="4"/></struct>
        <typedef name="Other" type="nonBasic" nonBasicTypeName="Base"/>
        <valuetype name="Empty" baseType="Other"/>
        <struct name="T" baseType="Empty"><member name="b" type="int32"/></struct>)");
    const DDS_TypeCode *type = typeOf("T");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(membersOf(type), (std::vector<Member>{{"b", DDS_TK_LONG, 5}}));
    const DDS_TypeCode *empty = DDS_TypeCode_concrete_base_type(type, nullptr);
    EXPECT_EQ(empty, typeOf("Empty"));
    EXPECT_EQ(DDS_TypeCode_concrete_base_type(empty, nullptr), typeOf("Base"));
    EXPECT_EQ(DDS_TypeCode_kind(empty, nullptr), DDS_TK_STRUCT);
}

TEST_F(XmlTypes, mayBeEnumerations)
{
    define(R"(<enum name="E" extensibility="final">
            <enumerator name="A"/> <enumerator name="B" value="-3"/>
            <enumerator name="C"/> <enumerator name="D" value="7" defaultLiteral="true"/>
        </enum>
        <enum name="F" bitBound="32"><enumerator name="X" value="2"/></enum>)");
    const DDS_TypeCode *type = typeOf("E");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(DDS_TypeCode_kind(type, nullptr), DDS_TK_ENUM);
    const DDS_Long ordinals[] = {0, -3, -2, 7};
    for (DDS_UnsignedLong index = 0; index < 4; ++index) {
        EXPECT_EQ(DDS_TypeCode_member_ordinal(type, index, nullptr), ordinals[index]);
    }
    EXPECT_EQ(DDS_TypeCode_default_value(type, nullptr).value.signedValue, 7);
    EXPECT_EQ(DDS_TypeCode_default_value(typeOf("F"), nullptr).value.signedValue, 2);
}

TEST_F(XmlTypes, mayBeUnions)
{
    define(R"(<enum name="Kind"><enumerator name="ROUND"/><enumerator name="SQUARE"/></enum>
        <const name="TWO" type="int32" value="2"/>
        <union name="U">
            <discriminator type="nonBasic" nonBasicTypeName="Kind"/>
            <case><caseDiscriminator value="ROUND"/><member name="radius" type="float64"/></case>
            <case><caseDiscriminator value="default"/><member name="side" type="int32" id="9"/></case>
        </union>
        <union name="V">
            <discriminator type="int16"/>
            <case><caseDiscriminator value="1"/><caseDiscriminator value="TWO"/>
                <member name="a" type="string"/></case>
            <case><caseDiscriminator value="-0x1"/><member name="b" type="byte"/></case>
        </union>
        <union name="W">
            <discriminator type="boolean"/>
            <case><caseDiscriminator value="TRUE"/><member name="a" type="string"/></case>
        </union>
        <union name="X">
            <discriminator type="char8"/>
            <case><caseDiscriminator value="'a'"/><caseDiscriminator value="b"/>
                <member name="a" type="string"/></case>
        </union>)");
    const DDS_TypeCode *type = typeOf("U");
    ASSERT_NE(type, nullptr);
    EXPECT_EQ(DDS_TypeCode_kind(type, nullptr), DDS_TK_UNION);
    EXPECT_EQ(DDS_TypeCode_content_type(type, nullptr), typeOf("Kind"));
    EXPECT_EQ(membersOf(type),
              (std::vector<Member>{{"radius", DDS_TK_DOUBLE, 0}, {"side", DDS_TK_LONG, 9}}));
    EXPECT_NE(typeOf("V"), nullptr);
    EXPECT_NE(typeOf("W"), nullptr);
    EXPECT_NE(typeOf("X"), nullptr);
}

// Labels are told by no operation, but they count for equivalence.
TEST_F(XmlTypes, areEquivalentWithEqualLabelsAlone)
{
    const auto unionOf = [](const char *name, const char *label) {
        return std::string("<union name='") + name +
               "'><discriminator type='int32'/><case><caseDiscriminator value='" + label +
               "'/><member name='a' type='int32'/></case></union>";
    };
    define("<const name='ONE' type='int32' value='1'/>" + unionOf("A", "1") + unionOf("B", "ONE") +
           unionOf("C", "2") + unionOf("D", "default"));
    EXPECT_TRUE(DDS_TypeCode_equivalent(typeOf("A"), typeOf("B"), nullptr));
    EXPECT_FALSE(DDS_TypeCode_equivalent(typeOf("A"), typeOf("C"), nullptr));
    EXPECT_FALSE(DDS_TypeCode_equivalent(typeOf("A"), typeOf("D"), nullptr));
}

TEST_F(XmlTypes, mayBeOtherNamesOfTypes)
{
    define(R"(<typedef name="Text" type="string" stringMaxLength="9"/>
        <typedef name="Texts" type="nonBasic" nonBasicTypeName="Text" sequenceMaxLength="2"/>
        <struct name="T"><member name="a" type="nonBasic" nonBasicTypeName="Texts"/></struct>)");
    const DDS_TypeCode *texts = typeOf("Texts");
    ASSERT_NE(texts, nullptr);
    EXPECT_EQ(DDS_TypeCode_kind(texts, nullptr), DDS_TK_ALIAS);
    EXPECT_STREQ(DDS_TypeCode_name(texts, nullptr), "Texts");
    const DDS_TypeCode *list = DDS_TypeCode_resolve_alias(texts);
    EXPECT_EQ(DDS_TypeCode_length(list, nullptr), 2U);
    EXPECT_EQ(DDS_TypeCode_content_type(list, nullptr), typeOf("Text"));
    EXPECT_EQ(memberType(typeOf("T"), "a"), texts);
}

TEST_F(XmlTypes, areFoundInTheirModulesAndInThoseAround)
{
    define(R"(<struct name="P"><member name="outer" type="int32"/></struct>
        <module name="A">
            <struct name="P"><member name="inner" type="int32"/></struct>
            <module name="B">
                <struct name="Near"><member name="p" type="nonBasic" nonBasicTypeName="P"/></struct>
                <struct name="Far"><member name="p" type="nonBasic" nonBasicTypeName="::P"/></struct>
                <struct name="Late"><member name="p" type="nonBasic" nonBasicTypeName="A::C::Q"/></struct>
            </module>
        </module>
        <module name="A"><module name="C">
            <struct name="Q"><member name="n" type="nonBasic" nonBasicTypeName="B::Near"/></struct>
        </module></module>)");
    EXPECT_STREQ(DDS_TypeCode_name(typeOf("A::B::Near"), nullptr), "A::B::Near");
    EXPECT_STREQ(DDS_TypeCode_name(memberType(typeOf("A::B::Near"), "p"), nullptr), "A::P");
    EXPECT_EQ(memberType(typeOf("A::B::Far"), "p"), typeOf("P"));
    const DDS_TypeCode *late = memberType(typeOf("A::B::Late"), "p");
    EXPECT_STREQ(DDS_TypeCode_name(late, nullptr), "A::C::Q");
    EXPECT_EQ(memberType(late, "n"), typeOf("A::B::Near"));
}

TEST_F(XmlTypes, outliveTheElementsThatTheyUse)
{
    define(R"(<struct name="P"><member name="x" type="string" stringMaxLength="5"/></struct>
        <struct name="T"><member name="p" type="nonBasic" nonBasicTypeName="P"/></struct>)");
    const DDS_TypeCode *type = typeOf("T");
    DDS_XMLParser_free_dom(parser_, element("P"));
    const DDS_TypeCode *inner = memberType(type, "p");
    EXPECT_STREQ(DDS_TypeCode_name(inner, nullptr), "P");
    EXPECT_EQ(membersOf(inner), (std::vector<Member>{{"x", DDS_TK_STRING, 0, 5}}));
}

TEST_F(XmlTypes, tellWhereAndWhyTheyAreRefused)
{
    EXPECT_EQ(refusal(R"(<module name="M">
            <struct name="In"><member name="x" type="nix"/></struct>
            <struct name="T"><member name="m" type="nonBasic" nonBasicTypeName="In"/></struct>
        </module>)",
                      "M::T"),
              "!struct 'M::T': member 'm': struct 'M::In': member 'x': unknown type 'nix'");
}

TEST_F(XmlTypes, refuseWrongMembers)
{
    const std::string place = "!struct 'T': member 'x': ";
    const auto member = [this](const std::string &attributes) {
        return structRefusal("<member name='x' " + attributes + "/>");
    };
    EXPECT_EQ(member(""), place + "unknown type");
    EXPECT_EQ(member("type='nonBasic'"), place + "no such type:");
    EXPECT_EQ(member("type='nonBasic' nonBasicTypeName='Q'"), place + "no such type: 'Q'");
    EXPECT_EQ(member("type='string' stringMaxLength='0'"), place + "no length: '0'");
    EXPECT_EQ(member("type='string' stringMaxLength='2147483647'"),
              place + "no length: '2147483647'");
    EXPECT_EQ(member("type='string' stringMaxLength='-2'"), place + "no length: '-2'");
    EXPECT_EQ(member("type='byte' sequenceMaxLength='x1'"),
              place + "no such value or constant: 'x1'");
    EXPECT_EQ(member("type='byte' arrayDimensions='2,-1'"), place + "no length: '-1'");
    EXPECT_EQ(member("type='byte' arrayDimensions='2,,1'"), place + "a value is missing");
    EXPECT_EQ(member("type='byte' id='268435456'"), place + "an id beyond 28 bits");
    EXPECT_EQ(member("type='byte' id='99999999999999999999'"),
              place + "no such value or constant: '99999999999999999999'");
    EXPECT_EQ(member("type='byte' key='perhaps'"), place + "no boolean in key: 'perhaps'");
    EXPECT_EQ(member("type='byte' key='1' optional='1'"), place + "a key that is optional");
    EXPECT_EQ(structRefusal("<member type='byte'/>"), "!struct 'T': member: a name is missing");
    EXPECT_EQ(structRefusal("<member name='a' type='byte'/><member name='a' type='byte'/>"),
              "!struct 'T': member 'a': the name of another one");
    EXPECT_EQ(structRefusal("<member name='a' type='byte'/><member name='b' type='byte' id='0'/>"),
              "!struct 'T': member 'b': the id of another one");
}

TEST_F(XmlTypes, refuseWrongStructures)
{
    EXPECT_EQ(refusal("<struct name='T' extensibility='open'/>"),
              "!struct 'T': unknown extensibility 'open'");
    EXPECT_EQ(refusal("<struct name='T' autoid='x'/>"), "!struct 'T': unknown autoid 'x'");
    EXPECT_EQ(refusal("<struct name='T' baseType='B'/>"), "!struct 'T': no such type: 'B'");
    EXPECT_EQ(
        refusal("<struct name='T' baseType='E'/><enum name='E'><enumerator name='a'/></enum>"),
        "!struct 'T': a base that is no structure: 'E'");
    EXPECT_EQ(refusal("<struct name='T' baseType='B'/><struct name='B' extensibility='final'/>"),
              "!struct 'T': a base of another extensibility: 'B'");
    const std::string base = "<struct name='B'><member name='a' type='byte'/></struct>";
    EXPECT_EQ(
        refusal(base + "<struct name='T' baseType='B'><member name='a' type='byte'/></struct>"),
        "!struct 'T': member 'a': the name of another one");
    EXPECT_EQ(
        refusal(base +
                "<struct name='T' baseType='B'><member name='b' type='byte' id='0'/></struct>"),
        "!struct 'T': member 'b': the id of another one");
    EXPECT_EQ(refusal("<module name='T'/>"), "!no definition of a type: 'module'");
}

TEST_F(XmlTypes, refuseWrongEnumerations)
{
    const auto enumOf = [this](const std::string &enumerators, const std::string &attributes = "") {
        return refusal("<enum name='T' " + attributes + ">" + enumerators + "</enum>");
    };
    EXPECT_EQ(enumOf(""), "!enum 'T': an enumerator is missing");
    EXPECT_EQ(enumOf("<enumerator name='a'/>", "bitBound='16'"),
              "!enum 'T': a bitBound that is not supported: '16'");
    EXPECT_EQ(enumOf("<enumerator name='a'/>", "bitBound='33'"),
              "!enum 'T': a bitBound that is not supported: '33'");
    EXPECT_EQ(enumOf("<enumerator name='a'/><enumerator name='a'/>"),
              "!enum 'T': enumerator 'a': the name of another one");
    EXPECT_EQ(enumOf("<enumerator name='a' value='1'/><enumerator name='b' value='1'/>"),
              "!enum 'T': enumerator 'b': the value of another one");
    EXPECT_EQ(enumOf("<enumerator name='a' value='2147483647'/><enumerator name='b'/>"),
              "!enum 'T': enumerator 'b': a value beyond 32 bits");
    EXPECT_EQ(enumOf("<enumerator name='a' defaultLiteral='1'/>"
                     "<enumerator name='b' defaultLiteral='1'/>"),
              "!enum 'T': enumerator 'b': a second default");
}

TEST_F(XmlTypes, refuseWrongUnions)
{
    const auto unionOf = [this](const std::string &content) {
        return refusal("<union name='T'>" + content + "</union>");
    };
    const std::string byNumber = "<discriminator type='byte'/>";
    const auto caseOf = [](const std::string &label, const std::string &name) {
        return "<case><caseDiscriminator value='" + label + "'/><member name='" + name +
               "' type='byte'/></case>";
    };
    EXPECT_EQ(unionOf(caseOf("1", "a")), "!union 'T': a discriminator is missing");
    EXPECT_EQ(unionOf(byNumber), "!union 'T': a case is missing");
    EXPECT_EQ(unionOf("<discriminator type='float32'/>" + caseOf("1", "a")),
              "!union 'T': discriminator: a type that cannot tell cases apart");
    EXPECT_EQ(unionOf("<discriminator type='byte' key='1'/>" + caseOf("1", "a")),
              "!union 'T': discriminator: a key, which is not supported");
    EXPECT_EQ(unionOf(byNumber + caseOf("1", "a") + caseOf("1", "b")),
              "!union 'T': two cases of one label: '1'");
    EXPECT_EQ(unionOf(byNumber + caseOf("default", "a") + caseOf("default", "b")),
              "!union 'T': two default cases");
    EXPECT_EQ(unionOf(byNumber + "<case><member name='a' type='byte'/></case>"),
              "!union 'T': a case without a label");
    EXPECT_EQ(unionOf(byNumber + "<case><caseDiscriminator value='1'/></case>"),
              "!union 'T': a case needs one member");
    EXPECT_EQ(unionOf(byNumber + caseOf("256", "a")), "!union 'T': no value of its type: '256'");
    EXPECT_EQ(unionOf(byNumber + caseOf("-1", "a")), "!union 'T': no value of its type: '-1'");
    EXPECT_EQ(unionOf("<discriminator type='int64'/>" + caseOf("2147483648", "a")),
              "!union 'T': a label beyond 32 bits: '2147483648'");
    EXPECT_EQ(unionOf("<discriminator type='boolean'/>" + caseOf("maybe", "a")),
              "!union 'T': no such value or constant: 'maybe'");
}

TEST_F(XmlTypes, refuseCyclesAndDepth)
{
    EXPECT_EQ(structRefusal("<member name='x' type='nonBasic' nonBasicTypeName='T' "
                            "sequenceMaxLength='1'/>"),
              "!struct 'T': member 'x': uses itself: 'T'");
    EXPECT_EQ(refusal("<typedef name='T' type='nonBasic' nonBasicTypeName='S'/>"
                      "<typedef name='S' type='nonBasic' nonBasicTypeName='T'/>"),
              "!typedef 'T': typedef 'S': uses itself: 'T'");
    EXPECT_EQ(
        refusal("<const name='A' type='int32' value='B'/><const name='B' type='int32' value='A'/>"
                "<typedef name='T' type='byte' sequenceMaxLength='A'/>"),
        "!typedef 'T': uses itself: 'A'");
    std::string chain = "<struct name='T0'/>";
    for (int number = 1; number <= 100; ++number) {
        chain += "<typedef name='T" + std::to_string(number) +
                 "' type='nonBasic' nonBasicTypeName='T" + std::to_string(number - 1) + "'/>";
    }
    EXPECT_TRUE(refusal(chain, "T100").ends_with("use one another too deep: 'T35'"));
    // The same from below, where each is ready when the next one asks.
    for (int number = 0; number <= 100; ++number) {
        EXPECT_NE(typeOf(("T" + std::to_string(number)).c_str()), nullptr);
    }
}

TEST_F(XmlTypes, aRefusedTypeCanBeAskedForAgain)
{
    define("<struct name='T'><member name='x' type='nonBasic' nonBasicTypeName='Late'/></struct>");
    {
        const LogCapture log;
        EXPECT_EQ(typeOf("T"), nullptr);
        EXPECT_EQ(DDS_XMLTypeCode_get_dds_typecode(nullptr), nullptr);
        EXPECT_EQ(log.texts().size(), 2U);
    }
    ASSERT_NE(ZUVXMLParser_parseFromString(parser_, root_,
                                           "<dds><types><struct name='Late'/></types></dds>"),
              nullptr);
    const LogCapture log;
    EXPECT_EQ(typeOf("T"), nullptr); // in another "types"
}

TEST_F(XmlTypes, everyAllocationMayFail)
{
    zuv_test::sweepFaults([] {
        DDS_XMLParser *parser = DDS_XMLParser_new();
        ZUVXMLObject *root = parser == nullptr
                                 ? nullptr
                                 : ZUVXMLParser_parseFromString(parser, nullptr, R"(<dds><types>
            <const name="N" type="int32" value="3"/>
            <enum name="E"><enumerator name="A"/></enum>
            <module name="M"><struct name="S">
                <member name="a long name of a member that needs memory" type="string" stringMaxLength="N"/>
                <member name="e" type="nonBasic" nonBasicTypeName="E" arrayDimensions="2,2"/>
            </struct></module>
            <union name="U"><discriminator type="nonBasic" nonBasicTypeName="E"/>
                <case><caseDiscriminator value="A"/><member name="s" type="nonBasic" nonBasicTypeName="M::S"/></case>
            </union></types></dds>)");
        bool isMade = false;
        if (root != nullptr) {
            isMade = DDS_XMLTypeCode_get_dds_typecode(
                         DDS_XMLObject_lookup(ZUVXMLObject_getFirstChild(root), "U")) != nullptr;
            DDS_XMLParser_free_dom(parser, root);
        }
        DDS_XMLParser_delete(parser);
        return isMade;
    });
}

// Each uses the one before twice: what is made once is not made again.
TEST_F(XmlTypes, manyTypesAreMadeInTimeAsTheirNumber)
{
    std::string definitions;
    for (int number = 0; number < 2000; ++number) {
        definitions += "<struct name='T" + std::to_string(number) + "'>";
        if (number > 0) {
            definitions += "<member name='a' type='nonBasic' nonBasicTypeName='T" +
                           std::to_string(number - 1) + "'/>";
            definitions += "<member name='b' type='nonBasic' nonBasicTypeName='T" +
                           std::to_string(number - 1) + "'/>";
        }
        definitions += "</struct>";
    }
    define(definitions);
    for (int number = 0; number < 2000; ++number) {
        ASSERT_NE(typeOf(("T" + std::to_string(number)).c_str()), nullptr);
    }
}

// Sixty types of each family use the one before twice: without a bound, comparing them would not end.
TEST_F(XmlTypes, comparisonOfWhatUsesItselfTooOftenGivesUp)
{
    std::string definitions;
    for (const std::string family : {"A", "B"}) {
        definitions += "<struct name='" + family + "0'><member name='x' type='int32'/></struct>";
        for (int number = 1; number < 60; ++number) {
            const std::string before =
                "type='nonBasic' nonBasicTypeName='" + family + std::to_string(number - 1) + "'";
            definitions += "<struct name='" + family + std::to_string(number) +
                           "'><member name='a' " + before + "/><member name='b' " + before +
                           "/></struct>";
        }
    }
    define(definitions);
    for (const std::string number : {"10", "59"}) { // each is ready when the next one asks
        for (int step = 0; step <= std::stoi(number); ++step) {
            typeOf(("A" + std::to_string(step)).c_str());
            typeOf(("B" + std::to_string(step)).c_str());
        }
        DDS_ExceptionCode_t exception = DDS_BAD_PARAM_USER_EXCEPTION_CODE;
        const bool areEquivalent = DDS_TypeCode_equivalent(
            typeOf(("A" + number).c_str()), typeOf(("B" + number).c_str()), &exception);
        EXPECT_EQ(areEquivalent, number == "10");
        EXPECT_EQ(exception,
                  number == "10" ? DDS_NO_EXCEPTION_CODE : DDS_BOUNDS_USER_EXCEPTION_CODE);
    }
}

} // namespace
