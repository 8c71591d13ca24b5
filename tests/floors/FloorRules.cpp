#include "FloorRules.h"

#include <algorithm>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <sstream>

namespace zuv_test
{
namespace
{

using Names = std::set<std::string_view>;

// Rooms on the same floor do not see each other.
const std::map<std::string_view, int> kFloors = {
    {"platform/osapi", 0},
    {"platform/log", 1},
    {"platform/kolm", 2},
    {"platform/mavo", 2},
    {"platform/event", 3},
    {"platform/typesys", 3},
    {"platform/xmlutils", 4},
    {"platform/dds", 5},
    {"platform/ddsxml", 6},
    {"platform/talvane", 6},
    {"log", 7},
    {"common", 8},
    {"sdkLib", 8},
    {"config", 9},
    {"remoteConfig", 10},
    {"remoteShell", 11},
};

const Names kCHeaders = {
    "assert.h",     "complex.h",      "ctype.h",      "errno.h",       "fenv.h",
    "float.h",      "inttypes.h",     "iso646.h",     "limits.h",      "locale.h",
    "math.h",       "setjmp.h",       "signal.h",     "stdalign.h",    "stdarg.h",
    "stdatomic.h",  "stdbool.h",      "stddef.h",     "stdint.h",      "stdio.h",
    "stdlib.h",     "stdnoreturn.h",  "string.h",     "tgmath.h",      "threads.h",
    "time.h",       "uchar.h",        "wchar.h",      "wctype.h",      "dirent.h",
    "fcntl.h",      "netdb.h",        "poll.h",       "pthread.h",     "sched.h",
    "semaphore.h",  "strings.h",      "termios.h",    "unistd.h",      "sys/file.h",
    "sys/mman.h",   "sys/resource.h", "sys/socket.h", "sys/stat.h",    "sys/syscall.h",
    "sys/time.h",   "sys/types.h",    "sys/uio.h",    "sys/utsname.h", "sys/wait.h",
    "netinet/in.h", "arpa/inet.h",    "net/if.h",     "ifaddrs.h",
};

const Names kCppHeaders = {
    "algorithm",
    "any",
    "array",
    "atomic",
    "barrier",
    "bit",
    "bitset",
    "cassert",
    "cctype",
    "cerrno",
    "cfenv",
    "cfloat",
    "charconv",
    "chrono",
    "cinttypes",
    "climits",
    "clocale",
    "cmath",
    "compare",
    "complex",
    "concepts",
    "condition_variable",
    "csetjmp",
    "csignal",
    "cstdarg",
    "cstddef",
    "cstdint",
    "cstdio",
    "cstdlib",
    "cstring",
    "ctime",
    "cwchar",
    "cwctype",
    "deque",
    "exception",
    "execution",
    "filesystem",
    "forward_list",
    "fstream",
    "functional",
    "future",
    "initializer_list",
    "iomanip",
    "ios",
    "iosfwd",
    "iostream",
    "istream",
    "iterator",
    "latch",
    "limits",
    "list",
    "locale",
    "map",
    "memory",
    "memory_resource",
    "mutex",
    "new",
    "numbers",
    "numeric",
    "optional",
    "ostream",
    "queue",
    "random",
    "ranges",
    "ratio",
    "regex",
    "scoped_allocator",
    "semaphore",
    "set",
    "shared_mutex",
    "source_location",
    "span",
    "sstream",
    "stack",
    "stdexcept",
    "stop_token",
    "streambuf",
    "string",
    "string_view",
    "system_error",
    "thread",
    "tuple",
    "type_traits",
    "typeindex",
    "typeinfo",
    "unordered_map",
    "unordered_set",
    "utility",
    "valarray",
    "variant",
    "vector",
    "version",
};

constexpr std::string_view kExtensions[] = {".h", ".hpp", ".c", ".cpp"};

enum class Form { quoted, angled, unreadable };

struct Include {
    std::string name;
    Form form;
};

std::string_view folderOf(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return slash == std::string_view::npos ? std::string_view{} : path.substr(0, slash);
}

std::vector<Include> includesOf(std::string_view text)
{
    // In plain sight only: not behind a comment, not by a macro, and in no other directive.
    static const std::regex plain(R"re(^\s*#\s*include\s*(?:"([^"]+)"|<([^>]+)>))re");
    static const std::regex any(R"re(^(?:.*\*/)?\s*#\s*(?:include|import).*)re");
    std::vector<Include> includes;
    std::istringstream lines{std::string(text)};
    for (std::string line; std::getline(lines, line);) {
        std::smatch match;
        if (std::regex_search(line, match, plain)) {
            includes.push_back({match[1].matched ? match[1] : match[2],
                                match[1].matched ? Form::quoted : Form::angled});
        } else if (std::regex_search(line, any)) {
            includes.push_back({line, Form::unreadable});
        }
    }
    return includes;
}

std::optional<std::string> brokenByOwnHeader(std::string_view room, const Include &include)
{
    // A name without a folder is a neighbour in the same room.
    const std::string_view used = folderOf(include.name).empty() ? room : folderOf(include.name);
    if (used == room) {
        return std::nullopt;
    }
    const auto floor = kFloors.find(used);
    if (floor == kFloors.end()) {
        return "which is not of a room";
    }
    if (floor->second >= kFloors.at(room)) {
        return "and that arrow does not run downwards";
    }
    return std::nullopt;
}

std::optional<std::string> brokenBySystemHeader(std::string_view path, const Include &include)
{
    const bool isPublicHeader = path.ends_with(".h");
    if (kCHeaders.contains(include.name) ||
        (!isPublicHeader && kCppHeaders.contains(include.name))) {
        return std::nullopt;
    }
    if (isPublicHeader) {
        return "and a public header may use C and POSIX only";
    }
    if (!path.starts_with("platform/") || !path.ends_with(".cpp")) {
        return "and a third party's header belongs into platform/*/*.cpp";
    }
    return std::nullopt;
}

std::optional<std::string> brokenBy(std::string_view path, std::string_view room,
                                    const Include &include)
{
    switch (include.form) {
    case Form::quoted:
        return brokenByOwnHeader(room, include);
    case Form::angled:
        return brokenBySystemHeader(path, include);
    case Form::unreadable:
        break;
    }
    return "in a form that hides what";
}

} // namespace

std::vector<std::string> brokenFloorRules(std::string_view path, std::string_view text)
{
    const std::vector<Include> includes = includesOf(text);
    if (std::none_of(std::begin(kExtensions), std::end(kExtensions),
                     [=](std::string_view extension) { return path.ends_with(extension); })) {
        return includes.empty()
                   ? std::vector<std::string>{}
                   : std::vector{std::string(path) + " includes, and is no header or source"};
    }
    const std::string_view room = folderOf(path);
    if (!kFloors.contains(room)) {
        return {std::string(path) + " stands in a folder that is no room"};
    }
    std::vector<std::string> broken;
    for (const Include &include : includes) {
        if (const auto rule = brokenBy(path, room, include)) {
            broken.push_back(std::string(path) + " includes " + include.name + ", " + *rule);
        }
    }
    return broken;
}

} // namespace zuv_test
