#include <climits>
#include <filesystem>

#include <sys/stat.h>

#include "XmlTest.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/SaveContext.h"

namespace zuv_test
{
namespace
{

struct ContextDeleter {
    void operator()(ZUVXMLUTILSSaveContext *context) const
    {
        ZUVXMLUTILSSaveContext_delete(context);
    }
};
using Context = std::unique_ptr<ZUVXMLUTILSSaveContext, ContextDeleter>;

class XmlSave : public XmlTest
{
protected:
    Context open(std::string_view name)
    {
        return Context(ZUVXMLUTILSSaveContext_newForFile((folder / name).c_str()));
    }

    Folder folder;
};

mode_t permissionsOf(const std::string &path)
{
    struct stat status = {};
    EXPECT_EQ(stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

TEST_F(XmlSave, gathersATextInMemory)
{
    const Context context(ZUVXMLUTILSSaveContext_newForMemory());
    ZUVXMLUTILSSaveContext_print(context.get(), "<%s a=\"%d\">\n", "dds", 1);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getDepth(context.get()), 0);
    ZUVXMLUTILSSaveContext_setDepth(context.get(), 2);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getDepth(context.get()), 2);
    ZUVXMLUTILSSaveContext_indent(context.get());
    const std::string longText(2000, 'x');
    ZUVXMLUTILSSaveContext_print(context.get(), "%s", longText.c_str());
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getText(context.get()), nullptr);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    ZUVXMLUTILSSaveContext_print(context.get(), "too late");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getText(context.get()), "<dds a=\"1\">\n        " + longText);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
}

TEST_F(XmlSave, bearsAnyDepth)
{
    const Context context(ZUVXMLUTILSSaveContext_newForMemory());
    for (const int depth : {INT_MIN, -1, 0}) {
        ZUVXMLUTILSSaveContext_setDepth(context.get(), depth);
        ZUVXMLUTILSSaveContext_indent(context.get());
    }
    ZUVXMLUTILSSaveContext_setDepth(context.get(), INT_MAX);
    ZUVXMLUTILSSaveContext_indent(context.get());
    ASSERT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    EXPECT_EQ(std::string(ZUVXMLUTILSSaveContext_getText(context.get())), std::string(4000, ' '));
}

TEST_F(XmlSave, writesBesideTheTargetAndPutsItInPlaceAtTheEnd)
{
    const std::string path = folder.write("a.xml", "old");
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    const Context context = open("a.xml");
    const std::string part(1000, 'x');
    std::string all;
    for (int index = 0; index < 200; ++index) {
        ZUVXMLUTILSSaveContext_print(context.get(), "%s\n", part.c_str());
        all += part + "\n";
    }
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(folder.fileCount(), 2U);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    EXPECT_EQ(folder.read("a.xml"), all);
    EXPECT_EQ(folder.fileCount(), 1U);
    EXPECT_EQ(permissionsOf(path), 0640U);
    EXPECT_EQ(ZUVXMLUTILSSaveContext_getText(context.get()), nullptr);
}

TEST_F(XmlSave, givesANewFileThePermissionsOfAnyNewFile)
{
    const mode_t before = umask(027);
    const Context context = open("new.xml");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    umask(before);
    EXPECT_EQ(folder.read("new.xml"), "");
    EXPECT_EQ(permissionsOf(folder / "new.xml"), 0640U);
}

TEST_F(XmlSave, throwsAwayWhatWasNotFinished)
{
    folder.write("a.xml", "old");
    Context context = open("a.xml");
    ZUVXMLUTILSSaveContext_print(context.get(), "new");
    context.reset();
    EXPECT_EQ(folder.read("a.xml"), "old");
    EXPECT_EQ(folder.fileCount(), 1U);
}

TEST_F(XmlSave, writesOverWhatAKilledOneHasLeft)
{
    folder.write("a.xml", "old");
    folder.write("a.xml.0.tmp", "half of what was to be saved");
    const Context context = open("a.xml");
    ZUVXMLUTILSSaveContext_print(context.get(), "new");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    EXPECT_EQ(folder.read("a.xml"), "new");
    EXPECT_EQ(folder.fileCount(), 1U);
}

TEST_F(XmlSave, writesToNoFileThatIsSomebodyElses)
{
    folder.write("a.xml", "old");
    const Context first = open("a.xml");
    ZUVXMLUTILSSaveContext_print(first.get(), "first");
    folder.write("precious", "kept");
    std::filesystem::create_symlink("nowhere", folder / "a.xml.1.tmp");
    std::filesystem::create_hard_link(folder / "precious", folder / "a.xml.2.tmp");
    const Context second = open("a.xml");
    ZUVXMLUTILSSaveContext_print(second.get(), "second");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(second.get()), 1);
    EXPECT_EQ(folder.read("a.xml"), "second");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(first.get()), 1);
    EXPECT_EQ(folder.read("a.xml"), "first");
    EXPECT_EQ(folder.read("precious"), "kept");
    EXPECT_EQ(folder.fileCount(), 4U);
}

TEST_F(XmlSave, replacesWhatALinkLeadsTo)
{
    folder.write("real.xml", "old");
    std::filesystem::create_symlink("real.xml", folder / "link.xml");
    const Context context = open("link.xml");
    ZUVXMLUTILSSaveContext_print(context.get(), "new");
    EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 1);
    EXPECT_EQ(folder.read("real.xml"), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.xml"));
}

TEST_F(XmlSave, saysWhyAFileCannotBeMade)
{
    const std::string path = folder / "none/a.xml";
    EXPECT_EQ(ZUVXMLUTILSSaveContext_newForFile(path.c_str()), nullptr);
    EXPECT_EQ(onlyLine(), "!save to '" + path + "': No such file or directory");
    const std::string directory = folder / "";
    EXPECT_EQ(ZUVXMLUTILSSaveContext_newForFile(directory.c_str()), nullptr);
    EXPECT_EQ(log.texts().size(), 1U);
}

TEST_F(XmlSave, leavesTheTargetAloneAfterAnyFailure)
{
    folder.write("a.xml", "old");
    for (const char *point : {"xmlutils.save.open", "xmlutils.save.write", "xmlutils.save.sync",
                              "xmlutils.save.rename"}) {
        SCOPED_TRACE(point);
        ZUVOsapiFault_arm(point, 1, 0);
        Context context = open("a.xml");
        if (context != nullptr) {
            ZUVXMLUTILSSaveContext_print(context.get(), "new");
            EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 0);
            EXPECT_EQ(ZUVXMLUTILSSaveContext_finish(context.get()), 0);
            EXPECT_EQ(ZUVXMLUTILSSaveContext_getText(context.get()), nullptr);
        }
        EXPECT_EQ(ZUVOsapiFault_getInjectedCount(), 1U);
        ZUVOsapiFault_disarm();
        context.reset();
        EXPECT_EQ(onlyLine(), "!save to '" + (folder / "a.xml") + "': Input/output error");
        EXPECT_EQ(folder.read("a.xml"), "old");
        EXPECT_EQ(folder.fileCount(), 1U);
    }
}

} // namespace
} // namespace zuv_test
