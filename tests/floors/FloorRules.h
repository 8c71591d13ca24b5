// The rules by which one file of src/ may include another: arrows run downwards only, and a third party's
// headers stay in the implementation files of the platform rooms.
#ifndef ZUV_TESTS_FLOORS_FLOOR_RULES_H
#define ZUV_TESTS_FLOORS_FLOOR_RULES_H

#include <string>
#include <string_view>
#include <vector>

namespace zuv_test
{

// Check one file. `path` is relative to src/, with "/" between folders; `text` is its content. Returns one
// sentence for each #include line that breaks a rule.
std::vector<std::string> brokenFloorRules(std::string_view path, std::string_view text);

} // namespace zuv_test

#endif
