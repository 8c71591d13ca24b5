#include "support/Files.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zuv_test
{

std::string contentOf(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TemporaryFolder::TemporaryFolder()
{
    char path[] = "/tmp/zuv-test-XXXXXX";
    if (mkdtemp(path) == nullptr) {
        throw std::runtime_error("no temporary folder");
    }
    path_ = path;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TemporaryFolder::write(std::string_view file, std::string_view content) const
{
    std::ofstream(path(file), std::ios::binary) << content;
    return path(file);
}

std::vector<std::string> TemporaryFolder::files() const
{
    std::vector<std::string> names;
    for (const auto &entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename());
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace zuv_test
