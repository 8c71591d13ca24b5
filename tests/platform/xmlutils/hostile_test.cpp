// Documents from strangers: refused at once, with one line, and without touching anything.
#include <cstddef>
#include <cstdio>
#include <functional>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include "XmlTest.h"
#include "platform/xmlutils/Transformer.h"
#include "platform/xmlutils/Validator.h"
#include "support/CpuTime.h"
#include "support/Repeated.h"

namespace zuv_test
{
namespace
{

struct Case {
    const char *name;
    std::function<std::string()> document;
    const char *report;
};

const Case kCases[] = {
    {"doctype", [] { return "<!DOCTYPE dds><dds/>"; },
     "!accept text, line 1: a DOCTYPE is not allowed"},
    {"manyLaughs",
     [] {
         return "<?xml version='1.0'?>\n<!DOCTYPE d [<!ENTITY a 'ha'><!ENTITY b '&a;&a;&a;'>"
                "<!ENTITY c '&b;&b;&b;'>]>\n<d>&c;</d>";
     },
     "!accept text, line 2: a DOCTYPE is not allowed"},
    {"externalEntity",
     [] { return "<!DOCTYPE d [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><d>&x;</d>"; },
     "!accept text, line 1: a DOCTYPE is not allowed"},
    {"externalSubset", [] { return "<!DOCTYPE d SYSTEM 'http://127.0.0.1/d.dtd'><d/>"; },
     "!accept text, line 1: a DOCTYPE is not allowed"},
    {"doctypeWithin", [] { return "<d>\n<!DOCTYPE d></d>"; },
     "!accept text, line 2: a DOCTYPE is not allowed"},
    {"xinclude",
     [] {
         return "<d xmlns:xi='http://www.w3.org/2001/XInclude'>"
                "<xi:include href='/etc/passwd' parse='text'/></d>";
     },
     "!accept text, line 1: element <include>: XInclude is not allowed"},
    {"schemaLocation",
     [] {
         return "<d xmlns:x='http://www.w3.org/2001/XMLSchema-instance'"
                " x:schemaLocation='urn:x http://127.0.0.1/x.xsd'/>";
     },
     "!accept text, line 1: element <d>: the attribute schemaLocation is not allowed"},
    {"nesting", [] { return repeated("<a>", 100000); },
     "!accept text, line 1: element <a>: elements are nested more than 100 deep"},
    {"longText", [] { return "<d>\n<t>" + std::string(kTenMegabytes, 'x') + "</t></d>"; },
     "!accept text, line 2: element <t>: a text, comment or tag is longer than 1048576 bytes"},
    {"longTextOfManyReferences",
     [] { return "<t>" + repeated("&lt;", kTenMegabytes / 4) + "</t>"; },
     "!accept text, line 1: element <t>: a text, comment or tag is longer than 1048576 bytes"},
    {"longTextInManySections",
     [] { return "<t>" + repeated("<![CDATA[<<<<<<<<<<]]>", 200000) + "</t>"; },
     "!accept text, line 1: element <t>: a text is longer than 1048576 bytes"},
    {"longAttribute", [] { return "<d x='" + std::string(kTenMegabytes, 'x') + "'/>"; },
     "!accept text, line 1: element <d>: a text, comment or tag is longer than 1048576 bytes"},
    {"longComment", [] { return "<d><!--" + repeated("<a>", kTenMegabytes / 3) + "--></d>"; },
     "!accept text, line 1: a text, comment or tag is longer than 1048576 bytes"},
    {"manyAttributes",
     [] {
         std::string text = "<d";
         for (int index = 0; index < 100000; ++index) {
             text += " a" + std::to_string(index) + "=''";
         }
         return text + "/>";
     },
     "!accept text, line 1: element <d>: the element has more than 64 attributes"},
    {"utf16", [] { return std::string("\xff\xfe<\0d\0/\0>\0", 10); },
     "!accept text, line 1: the document is not encoded in UTF-8"},
    {"utf16WithoutMark", [] { return std::string("<\0d\0/\0>\0", 8); },
     "!accept text, line 1: the document is not encoded in UTF-8"},
    {"otherEncoding", [] { return "<?xml version='1.0' encoding='UTF-7'?><d/>"; },
     "!accept text, line 1: the document declares another encoding than UTF-8"},
    {"brokenUtf8", [] { return "<d>\n\xc3\x28</d>"; },
     "!accept text, line 2: element <d>: Input is not proper UTF-8, indicate encoding ! Bytes: "
     "0xC3 "
     "0x28 0x3C 0x2F"},
    {"overlongUtf8", [] { return "<d>\xc0\xaf</d>"; },
     "!accept text, line 1: element <d>: Input is not proper UTF-8, indicate encoding ! Bytes: "
     "0xC0 "
     "0xAF 0x3C 0x2F"},
    {"nul", [] { return std::string("<dds>\n\0</dds>", 13); },
     "!accept text, line 2: the document holds a NUL character"},
    {"control", [] { return "<d>\x01</d>"; },
     "!accept text, line 1: element <d>: PCDATA invalid Char value 1"},
    {"longName", [] { return "<d><r name='" + std::string(300, 'n') + "'/></d>"; },
     "!accept text, line 1: element <r>: a name or tag has more than 255 characters"},
    {"longTag", [] { return "<" + std::string(300, 't') + "/>"; },
     "!accept text, line 1: element "
     "<tttttttttttttttttttttttttttttttttttttttttttttttttttttttttttttttt>: a name or tag has more "
     "than 255 characters"},
    {"longAttributeName", [] { return "<d " + std::string(300, 'a') + "='1'/>"; },
     "!accept text, line 1: element <d>: a name or tag has more than 255 characters"},
    {"manyErrors", [] { return "<d>" + repeated("&x;", kTenMegabytes / 3) + "</d>"; },
     "!accept text, line 1: element <d>: a text, comment or tag is longer than 1048576 bytes"},
    {"manyErrorsInTags", [] { return "<d>" + repeated("<a>&x;</a>", kTenMegabytes / 10) + "</d>"; },
     "!accept text, line 1: element <a>: Entity 'x' not defined"},
    {"manyErrorsInComments", [] { return "<d>" + repeated("<!-- -- -->", kTenMegabytes / 11); },
     "!accept text, line 1: element <d>: Double hyphen within comment: <!--"},
    {"manyErrorsInAttributes", [] { return "<d>" + repeated("<a b='<'/>", kTenMegabytes / 10); },
     "!accept text, line 1: element <d>: Unescaped '<' not allowed in attributes values"},
    {"manyBadPrefixes", [] { return "<d>" + repeated("<x:a/>", kTenMegabytes / 6) + "</d>"; },
     "!accept text, line 1: element <d>: Namespace prefix x on a is not defined"},
};

ZUVOsapiHeapStatistics heapStatistics()
{
    ZUVOsapiHeapStatistics now;
    ZUVOsapiHeap_getStatistics(&now);
    return now;
}

// Let the kernel end this process when it opens a file or a socket, or asks for one. False if it cannot.
bool forbidOpening()
{
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (const unsigned number :
         {SYS_open, SYS_openat, SYS_openat2, SYS_creat, SYS_socket, SYS_connect, SYS_stat,
          SYS_access, SYS_newfstatat, SYS_execve, SYS_fork, SYS_vfork}) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, number, 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    const sock_fprog program = {static_cast<unsigned short>(filter.size()), filter.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

class XmlHostile : public XmlTest, public testing::WithParamInterface<Case>
{
};

INSTANTIATE_TEST_SUITE_P(documents, XmlHostile, testing::ValuesIn(kCases),
                         [](const auto &tested) { return std::string(tested.param.name); });

TEST_P(XmlHostile, isRefusedAtOnceWithOneLine)
{
    // Through a file, since a text would end at a NUL.
    const Folder folder;
    const std::string content = GetParam().document();
    const std::string path = folder.write("text", content);
    const ZUVOsapiHeapStatistics before = heapStatistics();
    const double start = cpuMilliseconds();
    EXPECT_EQ(ZUVXMLUTILSParser_parseFile(path.c_str()), nullptr);
    EXPECT_LT(cpuMilliseconds() - start, 100 * kSlowness);
    // The highest mark of the process tells when this document moved it.
    const ZUVOsapiHeapStatistics after = heapStatistics();
    if (after.peakByteCount > before.peakByteCount) {
        EXPECT_LT(after.peakByteCount - before.liveByteCount, 4 * content.size() + 256 * 1024);
    }

    std::string report = GetParam().report;
    report.replace(report.find("text"), 4, path);
    EXPECT_TRUE(log.isExactly(
        {{report.find("element") != report.npos ? &ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss
                                                : &ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sds,
          report},
         {&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, "!load file '" + path + "'"}}));
}

class XmlHostileAll : public XmlTest
{
};

// What a child process does that may not open anything; its status tells how it went.
constexpr int kCannotForbid = 7;

int runWithoutOpening(const std::function<void()> &body)
{
    const pid_t child = fork();
    if (child == 0) {
        if (!forbidOpening()) {
            _exit(kCannotForbid);
        }
        body();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

TEST_F(XmlHostileAll, opensNeitherFilesNorSockets)
{
    const char *const schema =
        "<xs:schema xmlns:xs='http://www.w3.org/2001/XMLSchema'><xs:element name='d'/></xs:schema>";
    ZUVXMLUTILSValidator *const validator = ZUVXMLUTILSValidator_new(&schema, 1);
    const char *const sheet =
        "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
        "<xsl:template match='/'><d><xsl:copy-of select=\"document('http://127.0.0.1/a')\"/>"
        "<xsl:copy-of select=\"document('/etc/passwd')\"/></d></xsl:template></xsl:stylesheet>";
    ZUVXMLUTILSTransformer *const transformer =
        ZUVXMLUTILSTransformer_newFromStringArray(&sheet, 1);
    const int status = runWithoutOpening([&] {
        for (const Case &tested : kCases) {
            ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSParser_parseString(tested.document().c_str()));
        }
        const Tree tree = parse("<d xmlns:x='http://www.w3.org/2001/XMLSchema-instance' "
                                "x:noNamespaceSchemaLocation='http://127.0.0.1/a.xsd'/>");
        ZUVXMLUTILSValidator_validate(validator, tree.get());
        ZUVXMLUTILSParser_freeDom(ZUVXMLUTILSTransformer_transform(transformer, tree.get()));
    });
    ZUVXMLUTILSValidator_delete(validator);
    ZUVXMLUTILSTransformer_delete(transformer);
    if (WIFEXITED(status) && WEXITSTATUS(status) == kCannotForbid) {
        GTEST_SKIP() << "the kernel does not let this process forbid itself system calls";
    }
    EXPECT_EQ(status, 0);
    // The guard itself guards.
    EXPECT_TRUE(WIFSIGNALED(runWithoutOpening([] { fclose(fopen("/dev/null", "r")); })));
}

} // namespace
} // namespace zuv_test
