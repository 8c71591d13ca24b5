#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/osapi/Fault.h"
#include "platform/osapi/Heap.h"
#include "platform/typesys/String.h"
#include "remoteConfig/AssignmentExpression.h"
#include "support/HeapCheck.h"
#include "support/LogCapture.h"

namespace
{

// What an expression becomes, without the inline form around it; "(null)" for no assignment.
std::string convert(const std::string &expression)
{
    char *const snippet = BRELRemoteConfigClient_convertAssignmentToXmlSnippet(expression.c_str());
    if (snippet == nullptr) {
        return "(null)";
    }
    const std::string text = snippet;
    // The length was computed exactly: not a byte is left over.
    EXPECT_EQ(ZUVOsapiHeap_getBlockSize(snippet), text.size() + 1) << expression;
    DDS_String_free(snippet);
    EXPECT_TRUE(text.starts_with("str://\"") && text.ends_with('"')) << text;
    return text.substr(7, text.size() - 8);
}

TEST(AssignmentExpression, nestsAnElementForEachName)
{
    EXPECT_EQ(convert("topic_route.a.b=1"), "<topic_route><a><b>1</b></a></topic_route>");
    EXPECT_EQ(convert("session=1"), "<session>1</session>");
}

TEST(AssignmentExpression, givesInlineText)
{
    char *const snippet = BRELRemoteConfigClient_convertAssignmentToXmlSnippet("topic_route.a.b=1");
    EXPECT_STREQ(snippet, "str://\"<topic_route><a><b>1</b></a></topic_route>\"");
    DDS_String_free(snippet);
}

TEST(AssignmentExpression, addressesAnEntryOfAPropertyListByItsKey)
{
    EXPECT_EQ(convert("session.p[k]=v"), "<session><p><value><element><name>k</name><value>v</"
                                         "value></element></value></p></session>");
}

TEST(AssignmentExpression, escapesTheValueAlone)
{
    EXPECT_EQ(convert("route.a=<&>'x\"y"), "<route><a>&lt;&amp;&gt;&apos;x&quot;y</a></route>");
    EXPECT_EQ(convert("route.<a>[k&]=v"), "<route><<a>><value><element><name>k&</name><value>v</"
                                          "value></element></value></<a>></route>");
}

TEST(AssignmentExpression, trimsThePathAndKeepsTheBlanksOfTheValue)
{
    EXPECT_EQ(convert("route.a = x<y"), "<route><a> x&lt;y</a></route>");
    EXPECT_EQ(convert("route.a \t\v= x "), "<route><a> x </a></route>");
}

TEST(AssignmentExpression, splitsAtTheFirstEqualSign)
{
    EXPECT_EQ(convert("route.a=b=c"), "<route><a>b=c</a></route>");
    EXPECT_EQ(convert("route.a==c"), "<route><a>=c</a></route>");
}

TEST(AssignmentExpression, blanksTheQuotesAroundTheValue)
{
    EXPECT_EQ(convert("route.x=\"a b\""), "<route><x> a b </x></route>");
    EXPECT_EQ(convert("route.x= \"a\" \n"), "<route><x>  a  \n</x></route>");
    EXPECT_EQ(convert("route.x=\"a"), "<route><x> a</x></route>");
    EXPECT_EQ(convert("route.x=a\""), "<route><x>a </x></route>");
    EXPECT_EQ(convert("route.x=\""), "<route><x> </x></route>");
    EXPECT_EQ(convert("route.x=\"\""), "<route><x>  </x></route>");
    EXPECT_EQ(convert("route.x=a\"b\"c"), "<route><x>a&quot;b&quot;c</x></route>");
}

TEST(AssignmentExpression, keepsAValueOfWhiteSpaceOrNothing)
{
    EXPECT_EQ(convert("route.x=  \n"), "<route><x>  \n</x></route>");
    EXPECT_EQ(convert("route.x="), "<route><x></x></route>");
}

TEST(AssignmentExpression, keepsTheNewLineBehindTheValue)
{
    EXPECT_EQ(convert("route.x=1\n"), "<route><x>1\n</x></route>");
}

TEST(AssignmentExpression, startsWithTheNameOfAnElement)
{
    for (const char *word :
         {"brel_service", "domain_route", "connection", "session", "polling_session", "topic_route",
          "auto_topic_route", "route", "auto_route", "input", "output"}) {
        const std::string name = word;
        EXPECT_EQ(convert(name + ".a=1"), "<" + name + "><a>1</a></" + name + ">");
    }
    EXPECT_EQ(convert("sessions=1"), "<sessions>1</sessions>");
    for (const char *text :
         {"file:///tmp/a.xml", "str://\"<a>=</a>\"", "Route.a=1", " route.a=1", "x=1", ""}) {
        EXPECT_EQ(convert(text), "(null)") << text;
    }
}

TEST(AssignmentExpression, needsAnEqualSign)
{
    EXPECT_EQ(convert("route.x"), "(null)");
}

TEST(AssignmentExpression, dropsEmptyNames)
{
    EXPECT_EQ(convert("route..a=1"), "<route><a>1</a></route>");
    EXPECT_EQ(convert("route.a.=1"), "<route><a>1</a></route>");
}

TEST(AssignmentExpression, takesAPathOf31Names)
{
    std::string path = "route";
    std::string opening = "<route>";
    std::string closing = "</route>";
    for (int count = 1; count < 31; ++count) {
        path += ".n";
        opening += "<n>";
        closing = "</n>" + closing;
    }
    EXPECT_EQ(convert(path + "=1"), opening + "1" + closing);
    EXPECT_EQ(convert(path + ".n=1"), "(null)");
    EXPECT_EQ(convert(path + ".n.n.n=1"), "(null)");
}

TEST(AssignmentExpression, takesAKeyWithADotForNone)
{
    EXPECT_EQ(convert("route.b[x.y]=1"), "<route><b[x><y>1</y></b[x></route>");
}

TEST(AssignmentExpression, takesOnlyTheFirstKeyOfTheLastName)
{
    EXPECT_EQ(convert("route.b[]=1"), "<route><b>1</b></route>");
    EXPECT_EQ(
        convert("route.b[k]junk[l]=1"),
        "<route><b><value><element><name>k</name><value>1</value></element></value></b></route>");
    EXPECT_EQ(convert("route[k].b=1"), "<route[k]><b>1</b></route[k]>");
}

TEST(AssignmentExpression, followsTheProductsTopLevelTag)
{
    EXPECT_STREQ(BRELProductInfo_get()->topLevelTag, "brel_service");
    EXPECT_EQ(
        convert("brel_service.administration.domain_id=7\n"),
        "<brel_service><administration><domain_id>7\n</domain_id></administration></brel_service>");
}

TEST(AssignmentExpression, reportsANullExpression)
{
    BRELLog_setUp();
    zuv_test::LogCapture log;
    EXPECT_EQ(BRELRemoteConfigClient_convertAssignmentToXmlSnippet(nullptr), nullptr);
    ASSERT_EQ(log.lines().size(), 1u);
    EXPECT_EQ(log.lines()[0].message, &ZUV_LOG_PRECONDITION_FAILURE_s);
    EXPECT_NE(log.lines()[0].text.find("\"assignmentExpression == ((void *)0)\""),
              std::string::npos);
}

TEST(AssignmentExpression, reportsWantOfMemoryWithTheLength)
{
    BRELLog_setUp();
    zuv_test::LogCapture log;
    const zuv_test::HeapCheck heap;
    const std::string expression = "route.a=1";
    const std::string snippet = "str://\"<route><a>1</a></route>\"";
    const std::size_t lengths[] = {expression.size(), snippet.size()};
    for (unsigned count = 1; count <= 2; ++count) {
        log.clear();
        ZUVOsapiFault_arm(ZUV_OSAPI_FAULT_POINT_HEAP, count, 0);
        EXPECT_EQ(BRELRemoteConfigClient_convertAssignmentToXmlSnippet(expression.c_str()),
                  nullptr);
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1u);
        ZUVOsapiFault_disarm();
        ASSERT_EQ(log.lines().size(), 1u);
        EXPECT_EQ(log.lines()[0].message, &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d);
        EXPECT_NE(log.lines()[0].text.find(std::to_string(lengths[count - 1])), std::string::npos);
    }
    EXPECT_TRUE(heap.isBalanced());
}

// The length of the whole text as it follows from the parts of an assignment.
std::size_t lengthByTheRule(const std::vector<std::string> &path, const std::string *key,
                            const std::string &value)
{
    std::size_t length = 8 + value.size();
    for (const std::string &name : path) {
        length += 2 * name.size() + 5;
    }
    if (key != nullptr) {
        length += key->size() + 62;
    }
    for (const char character : value) {
        switch (character) {
        case '"':
        case '\'':
            length += 5;
            break;
        case '&':
            length += 4;
            break;
        case '<':
        case '>':
            length += 3;
            break;
        default:
            break;
        }
    }
    return length;
}

TEST(AssignmentExpression, hasTheLengthThatFollowsFromItsParts)
{
    std::mt19937 random(20240612);
    const auto text = [&](const std::string &characters, unsigned most) {
        std::string result;
        for (unsigned count = random() % (most + 1); count > 0; --count) {
            result += characters[random() % characters.size()];
        }
        return result;
    };
    const zuv_test::HeapCheck heap;
    for (int round = 0; round < 5000; ++round) {
        std::vector<std::string> path = {"route"};
        for (unsigned count = random() % 31; count > 0; --count) {
            path.push_back("n" + text("abc_<&'", 9));
        }
        const std::string key = "k" + text("abc&< \"", 9);
        const bool hasKey = random() % 2 == 0;
        // A value with quotes inside only: the outer ones are blanked, which changes no length but the escape.
        const std::string value = "v" + text("ab<>&'\"= \n", 40) + "v";
        std::string expression;
        for (const std::string &name : path) {
            expression += (expression.empty() ? "" : ".") + name;
        }
        expression += (hasKey ? "[" + key + "]" : "") + "=" + value;

        char *const snippet =
            BRELRemoteConfigClient_convertAssignmentToXmlSnippet(expression.c_str());
        ASSERT_NE(snippet, nullptr) << expression;
        ASSERT_EQ(std::string(snippet).size(),
                  lengthByTheRule(path, hasKey ? &key : nullptr, value))
            << expression;
        DDS_String_free(snippet);
    }
    EXPECT_TRUE(heap.isBalanced());
}

} // namespace
