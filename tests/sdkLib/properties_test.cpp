#include "sdkLib/Properties.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "log/Log.h"
#include "platform/typesys/String.h"
#include "support/FaultSweep.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::StrEq;

using NameAndValue = std::pair<const char *, const char *>;

// Owns its entries.
struct List : ZUV_BrelServiceProperties {
    explicit List(std::initializer_list<NameAndValue> entries = {})
    {
        EXPECT_TRUE(ZUV_BrelServiceProperties_initialize(this));
        for (const auto &[name, value] : entries) {
            EXPECT_TRUE(ZUV_BrelServiceProperties_add(this, name, value));
        }
    }
    List(const List &) = delete;
    List &operator=(const List &) = delete;
    ~List() { ZUV_BrelServiceProperties_finalize(this); }

    std::vector<std::pair<std::string, std::string>> texts() const
    {
        std::vector<std::pair<std::string, std::string>> result;
        for (int index = 0; index < count; ++index) {
            result.emplace_back(properties[index].name,
                                static_cast<const char *>(properties[index].value));
        }
        return result;
    }
};

struct PointerList : List {
    explicit PointerList(std::initializer_list<std::pair<const char *, void *>> entries = {})
    {
        string_values = DDS_BOOLEAN_FALSE;
        for (const auto &[name, value] : entries) {
            EXPECT_TRUE(ZUV_BrelServiceProperties_add(this, name, value));
        }
    }
};

const char *valueOf(const List &list, const char *name)
{
    return static_cast<const char *>(ZUV_BrelServiceProperties_lookup_property(&list, name));
}

const char *valueBehindPrefix(const List &list, const char *prefix, const char *name)
{
    return static_cast<const char *>(
        ZUV_BrelServiceProperties_lookup_property_with_prefix(&list, prefix, name));
}

class Properties : public testing::Test
{
protected:
    Properties() { BRELLog_setUp(); }
    ~Properties() override { EXPECT_TRUE(heap_.isBalanced()); }

    const zuv_test::HeapCheck heap_;
    int target_ = 0;
    int otherTarget_ = 0;
};

TEST_F(Properties, startAsAnEmptyListOfTexts)
{
    ZUV_BrelServiceProperties list = {reinterpret_cast<ZUV_BrelServiceNameValue *>(&target_), 7, 0};
    EXPECT_TRUE(ZUV_BrelServiceProperties_initialize(&list));
    EXPECT_EQ(list.properties, nullptr);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.string_values, DDS_BOOLEAN_TRUE);
}

TEST_F(Properties, copyTheirNamesAndTexts)
{
    std::string name = "name";
    std::string value = "value";
    const List list{{name.c_str(), value.c_str()}};
    name = value = "gone";
    EXPECT_THAT(list.texts(), ElementsAre(Pair("name", "value")));
}

TEST_F(Properties, borrowTheirPointers)
{
    PointerList list{{"name", &target_}};
    EXPECT_EQ(list.properties[0].value, &target_);
    EXPECT_EQ(ZUV_BrelServiceProperties_lookup_property(&list, "name"), &target_);
}

TEST_F(Properties, finalizedAreEmptyAndKeepTheirKindOfValues)
{
    PointerList list{{"name", &target_}};
    ZUV_BrelServiceProperties_finalize(&list);
    EXPECT_EQ(list.properties, nullptr);
    EXPECT_EQ(list.count, 0);
    EXPECT_EQ(list.string_values, DDS_BOOLEAN_FALSE);
    ZUV_BrelServiceProperties_finalize(&list);
}

TEST_F(Properties, mayHoldTwoEntriesOfOneName)
{
    const List list{{"name", "first"}, {"name", "second"}};
    EXPECT_EQ(list.count, 2);
    EXPECT_STREQ(valueOf(list, "name"), "first");
    EXPECT_EQ(ZUV_BrelServiceProperties_lookupProperty(&list, "name"), &list.properties[0]);
}

TEST_F(Properties, takeOverAPropertyOfAQos)
{
    List list;
    char name[] = "name";
    char value[] = "value";
    const DDS_Property_t property = {name, value, DDS_BOOLEAN_TRUE};
    EXPECT_TRUE(ZUV_BrelServiceProperties_addProperty(&list, &property));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("name", "value")));

    const zuv_test::LogCapture log;
    const DDS_Property_t unset = {name, nullptr, DDS_BOOLEAN_FALSE};
    EXPECT_FALSE(ZUV_BrelServiceProperties_addProperty(&list, &unset));
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: value == ((void *)0)"}}));
}

// -- Assert -------------------------------------------------------------------------------------------

TEST_F(Properties, assertAddsANameThatIsNotThere)
{
    List list{{"one", "1"}};
    EXPECT_TRUE(ZUV_BrelServiceProperties_assert(&list, "two", "2"));
    EXPECT_TRUE(
        ZUV_BrelServiceProperties_assert_w_override(&list, "three", "3", DDS_BOOLEAN_FALSE));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("one", "1"), Pair("two", "2"), Pair("three", "3")));
}

TEST_F(Properties, assertReplacesTheValueOfANameThatDiffersInCase)
{
    List list{{"Name", "old"}};
    EXPECT_TRUE(ZUV_BrelServiceProperties_assert(&list, "nAME", "much longer than the old value"));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("Name", "much longer than the old value")));
}

TEST_F(Properties, assertReplacesTheFirstOfTwo)
{
    List list{{"name", "first"}, {"NAME", "second"}};
    EXPECT_TRUE(ZUV_BrelServiceProperties_assert(&list, "NAME", "new"));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("name", "new"), Pair("NAME", "second")));
}

TEST_F(Properties, assertReplacesAPointer)
{
    PointerList list{{"name", &target_}};
    EXPECT_TRUE(ZUV_BrelServiceProperties_assert(&list, "Name", &otherTarget_));
    ASSERT_EQ(list.count, 1);
    EXPECT_EQ(list.properties[0].value, &otherTarget_);
}

TEST_F(Properties, assertWithoutOverrideKeepsTheOldValue)
{
    List list{{"name", "old"}};
    EXPECT_TRUE(
        ZUV_BrelServiceProperties_assert_w_override(&list, "NAME", "new", DDS_BOOLEAN_FALSE));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("name", "old")));
}

TEST_F(Properties, assertTellsWhatCouldNotBeAdded)
{
    List list;
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_FALSE(ZUV_BrelServiceProperties_assert(&list, "name", "value"));
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd,
                                "!allocate array of 1 elements of 16 bytes: out of memory"},
                               {&ZUV_LOG_ANY_FAILURE_s, "!add property=name"}}));
    EXPECT_EQ(list.count, 0);
}

TEST_F(Properties, assertThatCannotReplaceKeepsTheOldValue)
{
    List list{{"name", "old"}};
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_FALSE(ZUV_BrelServiceProperties_assert(&list, "name", "a longer value"));
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d,
                                "!allocate string of 14 characters: out of memory"}}));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("name", "old")));
}

// -- Lookups ------------------------------------------------------------------------------------------

TEST_F(Properties, namesThatDifferInCaseAreOneToAssertAndTwoToTheLookup)
{
    const List list{{"Name", "value"}};
    EXPECT_EQ(ZUV_BrelServiceProperties_lookupProperty(&list, "NAME"), &list.properties[0]);
    EXPECT_EQ(valueOf(list, "NAME"), nullptr);
    EXPECT_STREQ(valueOf(list, "Name"), "value");
}

TEST_F(Properties, lookupsFindNothingInAnEmptyList)
{
    const List list;
    EXPECT_EQ(ZUV_BrelServiceProperties_lookupProperty(&list, "name"), nullptr);
    EXPECT_EQ(valueOf(list, "name"), nullptr);
    EXPECT_EQ(valueBehindPrefix(list, "zuv.", "name"), nullptr);
}

TEST_F(Properties, aMissingNameIsFoundNowhere)
{
    const List list{{"name", "value"}};
    const zuv_test::LogCapture log;
    EXPECT_EQ(valueOf(list, nullptr), nullptr);
    EXPECT_EQ(valueBehindPrefix(list, "zuv.", nullptr), nullptr);
    EXPECT_TRUE(log.isEmpty());
}

TEST_F(Properties, thePrefixMayBeMissingOnEitherSide)
{
    const List list{{"zuv.brel_service.path", "long"}, {"other", "short"}};
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.brel_service.", "path"), "long");
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.brel_service.", "zuv.brel_service.path"), "long");
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.brel_service.", "zuv.brel_service.other"), "short");
    EXPECT_EQ(valueBehindPrefix(list, "zuv.brel_service.", "zuv.brel_service."), nullptr);
}

TEST_F(Properties, thePrefixIsFoundInTheMiddleOfANameToo)
{
    const List list{{"my.zuv.path", "middle"}};
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.", "zuv.path"), "middle");
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.", "path"), "middle");
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.", "anything.zuv.path"), "middle");
}

TEST_F(Properties, onlyTheFirstPrefixOfANameIsCut)
{
    const List list{{"zuv.zuv.path", "value"}};
    EXPECT_EQ(valueBehindPrefix(list, "zuv.", "path"), nullptr);
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.", "zuv.zuv.path"), "value");
}

TEST_F(Properties, caseCountsBehindThePrefixAndInIt)
{
    const List list{{"zuv.path", "value"}};
    EXPECT_EQ(valueBehindPrefix(list, "zuv.", "Path"), nullptr);
    EXPECT_EQ(valueBehindPrefix(list, "ZUV.", "path"), nullptr);
}

TEST_F(Properties, theFirstEntryThatIsEqualBehindThePrefixIsFound)
{
    const List list{{"path", "first"}, {"zuv.path", "second"}};
    EXPECT_STREQ(valueBehindPrefix(list, "zuv.", "zuv.path"), "first");
    EXPECT_STREQ(valueOf(list, "zuv.path"), "second");
}

// -- Copies -------------------------------------------------------------------------------------------

TEST_F(Properties, copyIsDeep)
{
    List copy{{"a", "1"}};
    {
        const List source{{"name", "value"}, {"other", "text"}};
        EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &source), &copy);
    }
    EXPECT_THAT(copy.texts(), ElementsAre(Pair("name", "value"), Pair("other", "text")));
}

TEST_F(Properties, copyOfAShorterListReleasesTheSurplus)
{
    List copy{{"a", "1"}, {"b", "2"}, {"c", "3"}};
    const List source{{"name", "value"}};
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &source), &copy);
    EXPECT_THAT(copy.texts(), ElementsAre(Pair("name", "value")));
}

TEST_F(Properties, copyOfAnEmptyListIsEmpty)
{
    List copy{{"a", "1"}};
    const List empty;
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &empty), &copy);
    EXPECT_EQ(copy.count, 0);
    List unused;
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&unused, &empty), &unused);
    EXPECT_EQ(unused.count, 0);
}

TEST_F(Properties, copyOntoItselfChangesNothing)
{
    List list{{"a", "1"}, {"b", "2"}};
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&list, &list), &list);
    EXPECT_THAT(list.texts(), ElementsAre(Pair("a", "1"), Pair("b", "2")));
}

TEST_F(Properties, copyOfPointersCopiesNamesAlone)
{
    PointerList copy{{"a", &target_}};
    const PointerList source{{"name", &otherTarget_}, {"other", &target_}};
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &source), &copy);
    ASSERT_EQ(copy.count, 2);
    EXPECT_STREQ(copy.properties[0].name, "name");
    EXPECT_NE(copy.properties[0].name, source.properties[0].name);
    EXPECT_EQ(copy.properties[0].value, &otherTarget_);
    EXPECT_EQ(copy.properties[1].value, &target_);
}

TEST_F(Properties, copyLeavesTheSurplusNamesOfPointersAlone)
{
    PointerList copy{{"a", &target_}, {"b", &target_}};
    char *const surplusName = copy.properties[1].name;
    const PointerList source{{"name", &otherTarget_}};
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &source), &copy);
    EXPECT_EQ(copy.count, 1);
    EXPECT_THAT(surplusName, StrEq("b"));
    DDS_String_free(surplusName);
}

TEST_F(Properties, copyBetweenTextsAndPointersIsRefused)
{
    List texts{{"name", "value"}};
    PointerList pointers{{"other", &target_}};
    const zuv_test::LogCapture log;
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&texts, &pointers), nullptr);
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&pointers, &texts), nullptr);
    EXPECT_TRUE(
        log.isExactly({{&ZUV_LOG_ANY_s, "cannot copy properties of different value type"},
                       {&ZUV_LOG_ANY_s, "cannot copy properties of different value type"}}));
    EXPECT_THAT(texts.texts(), ElementsAre(Pair("name", "value")));
    ASSERT_EQ(pointers.count, 1);
    EXPECT_EQ(pointers.properties[0].value, &target_);
}

TEST_F(Properties, copyThatCannotResizeReportsIt)
{
    List copy{{"a", "1"}};
    const List source{{"b", "2"}, {"c", "3"}};
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 1, 0);
    EXPECT_EQ(ZUV_BrelServiceProperties_copy(&copy, &source), nullptr);
    EXPECT_TRUE(log.isExactly({{&ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd,
                                "!allocate array of 2 elements of 16 bytes: out of memory"}}));
    EXPECT_THAT(copy.texts(), ElementsAre(Pair("a", "1")));
}

// -- Comparison ---------------------------------------------------------------------------------------

bool areEqual(const List &left, const List &right)
{
    EXPECT_EQ(ZUV_BrelServiceProperties_equals(&left, &right),
              ZUV_BrelServiceProperties_equals(&right, &left));
    return ZUV_BrelServiceProperties_equals(&left, &right);
}

TEST_F(Properties, areEqualWithEqualEntriesAtEqualPlaces)
{
    EXPECT_TRUE(areEqual(List{}, List{}));
    EXPECT_TRUE(areEqual(List{{"a", "1"}, {"b", "2"}}, List{{"a", "1"}, {"b", "2"}}));
    EXPECT_TRUE(areEqual(List{{"a", "1"}, {"a", "1"}}, List{{"a", "1"}, {"a", "1"}}));
}

TEST_F(Properties, inReverseOrderAreNotEqual)
{
    EXPECT_FALSE(areEqual(List{{"a", "1"}, {"b", "2"}}, List{{"b", "2"}, {"a", "1"}}));
}

TEST_F(Properties, thatDifferAnywhereAreNotEqual)
{
    EXPECT_FALSE(areEqual(List{{"a", "1"}}, List{}));
    EXPECT_FALSE(areEqual(List{{"a", "1"}}, List{{"a", "1"}, {"b", "2"}}));
    EXPECT_FALSE(areEqual(List{{"a", "1"}}, List{{"A", "1"}}));
    EXPECT_FALSE(areEqual(List{{"a", "x"}}, List{{"a", "X"}}));
    EXPECT_FALSE(areEqual(List{{"a", "1"}, {"b", "2"}}, List{{"a", "1"}, {"b", "3"}}));
}

TEST_F(Properties, ofTextsAndOfPointersAreNotEqual)
{
    EXPECT_FALSE(areEqual(List{}, PointerList{}));
}

TEST_F(Properties, ofPointersAreComparedByAddress)
{
    char text[] = "text";
    char sameText[] = "text";
    EXPECT_TRUE(areEqual(PointerList{{"a", text}}, PointerList{{"a", text}}));
    EXPECT_FALSE(areEqual(PointerList{{"a", text}}, PointerList{{"a", sameText}}));
}

// -- Variables of an XML document ---------------------------------------------------------------------

TEST_F(Properties, takeOverAListOfVariablesInOrder)
{
    List list{{"one", "1"}};
    const ZUVXMLUTILSProperty variables[] = {{"two", "2"}, {"one", "again"}};
    const ZUVXMLUTILSPropertyList source = {variables, 2};
    EXPECT_TRUE(ZUV_BrelServiceProperties_from_xml_property_list(&list, &source));
    EXPECT_THAT(list.texts(),
                ElementsAre(Pair("one", "1"), Pair("two", "2"), Pair("one", "again")));
    const ZUVXMLUTILSPropertyList none = {nullptr, 0};
    EXPECT_TRUE(ZUV_BrelServiceProperties_from_xml_property_list(&list, &none));
    EXPECT_EQ(list.count, 3);
}

TEST_F(Properties, keepTheVariablesBeforeTheOneThatFailed)
{
    List list;
    const ZUVXMLUTILSProperty variables[] = {{"one", "1"}, {"two", nullptr}, {"three", "3"}};
    const ZUVXMLUTILSPropertyList source = {variables, 3};
    const zuv_test::LogCapture log;
    EXPECT_FALSE(ZUV_BrelServiceProperties_from_xml_property_list(&list, &source));
    EXPECT_TRUE(log.isExactly(
        {{&ZUV_LOG_PRECONDITION_FAILURE_s, "!meet precondition: value == ((void *)0)"},
         {&ZUV_LOG_ASSERT_FAILURE_s, "!set user variable"}}));
    EXPECT_THAT(list.texts(), ElementsAre(Pair("one", "1")));
}

// -- Failures -----------------------------------------------------------------------------------------

TEST_F(Properties, reportEachNullThatIsNotAllowed)
{
    List list;
    List *const none = nullptr;
    const char *const noText = nullptr;
    zuv_test::LogCapture log;
    const auto expect = [&log](bool isRefused, const char *condition) {
        EXPECT_TRUE(isRefused) << condition;
        const auto lines = log.lines();
        ASSERT_EQ(lines.size(), 1U) << condition;
        EXPECT_EQ(lines[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
        EXPECT_EQ(lines[0].text, std::string("!meet precondition: ") + condition);
        EXPECT_EQ(lines[0].level, ZUV_LOG_BIT_FATAL);
        EXPECT_EQ(lines[0].submodule, 0x3000U);
        log.clear();
    };
    expect(!ZUV_BrelServiceProperties_initialize(none), "self == ((void *)0)");
    ZUV_BrelServiceProperties_finalize(none);
    expect(true, "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_add(none, "a", "1"), "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_add(&list, noText, "1"), "name == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_add(&list, "a", noText), "value == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_addProperty(&list, nullptr), "property == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_assert(none, "a", "1"), "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_assert(&list, noText, "1"), "name == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_assert(&list, "a", noText), "value == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_lookupProperty(none, "a"), "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_lookupProperty(&list, noText), "name == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_lookup_property(none, "a"), "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_lookup_property_with_prefix(&list, noText, "a"),
           "prefix == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_copy(none, &list), "self == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_copy(&list, none), "other == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_equals(none, &list), "left == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_equals(&list, none), "right == ((void *)0)");
    expect(!ZUV_BrelServiceProperties_from_xml_property_list(&list, nullptr),
           "source == ((void *)0)");
    const ZUVXMLUTILSPropertyList source = {nullptr, 0};
    expect(!ZUV_BrelServiceProperties_from_xml_property_list(none, &source), "dest == ((void *)0)");
}

TEST_F(Properties, reportOtherFailuresAsExceptions)
{
    List list;
    const zuv_test::LogCapture log;
    ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, 2, 0);
    EXPECT_FALSE(ZUV_BrelServiceProperties_add(&list, "name", "value"));
    const auto lines = log.lines();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].text, "!allocate string of 4 characters: out of memory");
    EXPECT_EQ(lines[0].function, "ZUV_BrelServiceProperties_add");
    EXPECT_EQ(lines[0].level, ZUV_LOG_BIT_EXCEPTION);
    EXPECT_EQ(lines[0].submodule, 0x3000U);
}

TEST_F(Properties, anAddThatFailsLeavesTheListAsItWas)
{
    zuv_test::sweepFaults([] {
        ZUV_BrelServiceProperties list;
        ZUV_BrelServiceProperties_initialize(&list);
        const bool isFirst = ZUV_BrelServiceProperties_add(&list, "one", "1");
        EXPECT_EQ(list.count, isFirst ? 1 : 0);
        const bool isSecond = ZUV_BrelServiceProperties_add(&list, "two", "2");
        EXPECT_EQ(list.count, (isFirst ? 1 : 0) + (isSecond ? 1 : 0));
        EXPECT_EQ(ZUV_BrelServiceProperties_lookupProperty(&list, "two") != nullptr, isSecond);
        ZUV_BrelServiceProperties_finalize(&list);
        return isFirst && isSecond;
    });
}

TEST_F(Properties, anAssertThatFailsLeavesNothingBehind)
{
    zuv_test::sweepFaults([] {
        ZUV_BrelServiceProperties list;
        ZUV_BrelServiceProperties_initialize(&list);
        bool succeeded = true;
        for (const char *value : {"short", "a good deal longer", "short"}) {
            succeeded = ZUV_BrelServiceProperties_assert(&list, "name", value) && succeeded;
        }
        EXPECT_LE(list.count, 1);
        ZUV_BrelServiceProperties_finalize(&list);
        return succeeded;
    });
}

TEST_F(Properties, aCopyThatFailsIsAListAllTheSame)
{
    const List sources[] = {List{}, List{{"a longer name", "a longer value"}},
                            List{{"b", "2"}, {"c", "3"}, {"longer", "longer"}, {"e", "5"}}};
    for (const List &source : sources) {
        zuv_test::sweepFaults([&source] {
            List copy;
            bool succeeded = ZUV_BrelServiceProperties_add(&copy, "a", "1") &&
                             ZUV_BrelServiceProperties_add(&copy, "x", "0");
            succeeded = ZUV_BrelServiceProperties_copy(&copy, &source) && succeeded;
            for (int index = 0; index < copy.count; ++index) {
                EXPECT_NE(copy.properties[index].name, nullptr);
                EXPECT_NE(copy.properties[index].value, nullptr);
            }
            EXPECT_TRUE(!succeeded || areEqual(copy, source));
            return succeeded;
        });
    }
}

TEST_F(Properties, aCopyOfPointersThatFailsIsAListAllTheSame)
{
    const PointerList source{{"a longer name", &target_}, {"b", &otherTarget_}};
    zuv_test::sweepFaults([&source, this] {
        PointerList copy;
        bool succeeded = ZUV_BrelServiceProperties_add(&copy, "a", &target_);
        succeeded = ZUV_BrelServiceProperties_copy(&copy, &source) && succeeded;
        EXPECT_TRUE(!succeeded || areEqual(copy, source));
        return succeeded;
    });
}

TEST_F(Properties, variablesThatCannotBeTakenOverAreReported)
{
    const ZUVXMLUTILSProperty variables[] = {{"one", "1"}, {"two", "2"}};
    zuv_test::sweepFaults([&variables] {
        List list;
        const ZUVXMLUTILSPropertyList source = {variables, 2};
        return ZUV_BrelServiceProperties_from_xml_property_list(&list, &source) != 0;
    });
}

} // namespace
