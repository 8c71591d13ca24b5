// Gives every file of the named folders to the fuzz target, in the order of their names. For builds without
// libFuzzer: the corpus is then a plain test, under whatever sanitizer the build has.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace
{

std::vector<std::filesystem::path> filesIn(const char *folder)
{
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::recursive_directory_iterator(folder)) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    const std::vector<char> bytes{std::istreambuf_iterator<char>(stream), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size());
}

} // namespace

int main(int argc, char **argv)
{
    std::size_t count = 0;
    for (int index = 1; index < argc; ++index) {
        for (const auto &file : filesIn(argv[index])) {
            // Named before it runs, so that a crash tells which input made it.
            std::fprintf(stderr, "%s\n", file.c_str());
            replay(file);
            ++count;
        }
    }
    std::printf("%zu inputs replayed\n", count);
    return count > 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
