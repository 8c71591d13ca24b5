#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

#include <gtest/gtest.h>

#include "platform/osapi/Fault.h"
#include "platform/osapi/File.h"

namespace
{

class File : public testing::Test
{
protected:
    File() : path_(testing::TempDir() + "zuv_file_test_XXXXXX") { close(mkstemp(path_.data())); }
    ~File() override
    {
        ZUVOsapiFault_disarm();
        std::remove(path_.c_str());
    }

    ZUVOsapiFile *openWith(const std::string &content)
    {
        std::ofstream(path_, std::ios::binary) << content;
        return ZUVOsapiFile_open(path_.c_str());
    }

    std::string path_;
};

TEST_F(File, tellsItsSizeAndReadsFromItsStart)
{
    ZUVOsapiFile *file = openWith(std::string("ab\0cd", 5));
    ASSERT_NE(file, nullptr);
    std::uint64_t size = 0;
    EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 1);
    EXPECT_EQ(size, 5u);
    char buffer[4];
    std::size_t count = 0;
    EXPECT_EQ(ZUVOsapiFile_read(file, buffer, 4, &count), 1);
    EXPECT_EQ(std::string(buffer, count), std::string("ab\0c", 4));
    EXPECT_EQ(ZUVOsapiFile_isAtEnd(file), 0);
    EXPECT_EQ(ZUVOsapiFile_read(file, buffer, 4, &count), 1);
    EXPECT_EQ(std::string(buffer, count), "d");
    EXPECT_EQ(ZUVOsapiFile_isAtEnd(file), 1);
    EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 1);
    EXPECT_EQ(ZUVOsapiFile_isAtEnd(file), 0);
    ZUVOsapiFile_close(file);
}

TEST_F(File, anEmptyFileHasSizeZeroAndEndsAtOnce)
{
    ZUVOsapiFile *file = openWith("");
    std::uint64_t size = 1;
    EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 1);
    EXPECT_EQ(size, 0u);
    char buffer[4];
    std::size_t count = 1;
    EXPECT_EQ(ZUVOsapiFile_read(file, buffer, 4, &count), 1);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(ZUVOsapiFile_isAtEnd(file), 1);
    ZUVOsapiFile_close(file);
}

TEST_F(File, aMissingFileCannotBeOpened)
{
    std::remove(path_.c_str());
    EXPECT_EQ(ZUVOsapiFile_open(path_.c_str()), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(File, aDirectoryCannotBeRead)
{
    ZUVOsapiFile *file = ZUVOsapiFile_open(testing::TempDir().c_str());
    ASSERT_NE(file, nullptr);
    char buffer[4];
    std::size_t count = 1;
    EXPECT_EQ(ZUVOsapiFile_read(file, buffer, 4, &count), 0);
    EXPECT_EQ(count, 0u);
    ZUVOsapiFile_close(file);
}

TEST_F(File, aPipeHasNoSize)
{
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    ZUVOsapiFile *file = ZUVOsapiFile_open(("/dev/fd/" + std::to_string(ends[0])).c_str());
    ASSERT_NE(file, nullptr);
    std::uint64_t size = 77;
    EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 0);
    EXPECT_EQ(size, 77u);
    ZUVOsapiFile_close(file);
    close(ends[0]);
    close(ends[1]);
}

TEST_F(File, eachStepIsAFaultPoint)
{
    ZUVOsapiFile *file = openWith("abc");
    std::uint64_t size = 77;
    for (const char *point : {"file.seek", "file.tell"}) {
        ZUVOsapiFault_arm(point, 1, 0);
        EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 0) << point;
    }
    ZUVOsapiFault_arm("file.seek", 2, 0);
    EXPECT_EQ(ZUVOsapiFile_getSize(file, &size), 0) << "going back";
    EXPECT_EQ(size, 77u);
    ZUVOsapiFault_arm("file.read", 1, 0);
    char buffer[4];
    std::size_t count = 1;
    EXPECT_EQ(ZUVOsapiFile_read(file, buffer, 4, &count), 0);
    EXPECT_EQ(count, 0u);
    ZUVOsapiFile_close(file);
    ZUVOsapiFault_arm("file.open", 1, 0);
    EXPECT_EQ(ZUVOsapiFile_open(path_.c_str()), nullptr);
    ZUVOsapiFile_close(nullptr);
}

} // namespace
