// Files of tests.
#ifndef ZUV_TESTS_SUPPORT_FILES_H
#define ZUV_TESTS_SUPPORT_FILES_H

#include <string>
#include <string_view>
#include <vector>

namespace zuv_test
{

// All of a file; empty without one.
std::string contentOf(const std::string &path);

// A folder that is gone with the object.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    std::string path(std::string_view file = "") const { return path_ + "/" + std::string(file); }
    std::string write(std::string_view file, std::string_view content) const;
    std::string read(std::string_view file) const { return contentOf(path(file)); }
    std::vector<std::string> files() const;

private:
    std::string path_;
};

} // namespace zuv_test

#endif
