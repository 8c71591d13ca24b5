#include "config/EntityNames.h"

#include <string_view>

#include "log/Log.h"
#include "log/Report.hpp"
#include "platform/osapi/Utility.h"
#include "platform/typesys/String.h"

#define IS_NULL(ARGUMENT) BREL_IS_NULL(BREL_SUBMODULE_ELEMENTS, ARGUMENT)

namespace
{

using std::string_view;

constexpr string_view kScope = "::";

// Where the colon of this number is; the first one is number 1.
size_t findColon(string_view name, int number)
{
    size_t at = name.find(':');
    for (int passed = 1; passed < number && at != string_view::npos; ++passed) {
        at = name.find(':', at + 1);
    }
    return at;
}

void reportFailure(const brel::Place &place, const char *what)
{
    brel::report(BREL_SUBMODULE_ELEMENTS, ZUV_LOG_ANY_FAILURE_s, what, place);
}

// "::service::" and the start of `rest`, cut where the text of `length` characters ends.
char *makeName(const char *serviceName, const char *rest, size_t length,
               const brel::Place &place = brel::Place::current())
{
    char *name = DDS_String_alloc(length);
    if (name == nullptr) {
        reportFailure(place, "allocate result string");
        return nullptr;
    }
    const size_t size = length + 1;
    if (ZUVOsapiUtility_snprintf(name, size, "::%s::", serviceName) < 0) {
        reportFailure(place, "snprintf() of service name failed");
    } else if (ZUVOsapiUtility_strcat(name, size, rest) == nullptr) {
        reportFailure(place, "concatenate name");
    } else {
        return name;
    }
    DDS_String_free(name);
    return nullptr;
}

} // namespace

extern "C" {

char *BRELUtils_makeNameI(const char *serviceName, const char *entityFullName, int segments)
{
    if (IS_NULL(serviceName) || IS_NULL(entityFullName) ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_ELEMENTS, entityFullName[0] != ':',
                         "entityFullName[0] != ':'")) {
        return nullptr;
    }
    // Each name has two colons before it: "::service" and "::domain_route" make four.
    const string_view whole = entityFullName;
    const size_t last = findColon(whole, 4);
    const size_t end = findColon(whole, 3 + 2 * segments);
    if (end == string_view::npos) {
        return nullptr;
    }
    const size_t begin = last + 1;
    const size_t prefixLength = kScope.size() + string_view(serviceName).size() + kScope.size();
    return makeName(serviceName, entityFullName + begin, prefixLength + end - begin);
}

char *BRELUtils_makeSessionName(const char *serviceName, const char *routeFullName)
{
    return BRELUtils_makeNameI(serviceName, routeFullName, 2);
}

char *BRELUtils_makeDomainRouteName(const char *serviceName, const char *sessionFullName)
{
    return BRELUtils_makeNameI(serviceName, sessionFullName, 1);
}
}
