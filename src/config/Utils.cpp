#include "config/Utils.h"

#include <initializer_list>
#include <string_view>

#include "config/ProductInfo.h"
#include "log/Log.h"
#include "platform/typesys/String.h"

namespace
{

using std::string_view;

constexpr size_t kParticipantNameLimit = 254;

string_view viewOf(const char *text)
{
    return text != nullptr ? text : "";
}

bool replaceName(char **name, std::initializer_list<string_view> pieces)
{
    size_t length = 0;
    for (const string_view piece : pieces) {
        length += piece.size();
    }
    char *text = DDS_String_alloc(length);
    if (text == nullptr) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS,
                &ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d, static_cast<int>(length));
        return false;
    }
    char *end = text;
    for (const string_view piece : pieces) {
        end += piece.copy(end, piece.size());
    }
    *end = '\0';
    DDS_String_free(*name);
    *name = text;
    return true;
}

} // namespace

extern "C" {

int BRELUtils_isSpace(char character)
{
    return string_view(" \f\n\r\t").find(character) != string_view::npos;
}

const char *BRELUtils_removeScopeChars(const char *name)
{
    return viewOf(name).starts_with("::") ? name + 2 : name;
}

int BRELUtils_setParticipantNameWithSeparator(DDS_DomainParticipantQos *qos,
                                              const char *brelServiceName, const char *suffix1,
                                              const char *suffix2, const char *suffixSeparator)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_ELEMENTS, qos == nullptr, "qos == ((void *)0)") ||
        ZUV_PRECONDITION(BREL, BREL_SUBMODULE_ELEMENTS, brelServiceName == nullptr,
                         "brelServiceName == ((void *)0)")) {
        return 0;
    }
    const string_view product = viewOf(BRELProductInfo_get()->productName);
    const string_view service = brelServiceName;
    const string_view first = viewOf(suffix1);
    const string_view second = viewOf(suffix2);
    const string_view separator = viewOf(suffixSeparator);
    char **name = &qos->participant_name.name;

    // The suffixes and the three characters of ": " and "." count even where they are left out.
    const size_t length =
        product.size() + service.size() + first.size() + second.size() + separator.size() + 3;
    if (length > kParticipantNameLimit) {
        return replaceName(name, {product});
    }
    if (first.empty() || second.empty()) {
        return replaceName(name, {product, ": ", service});
    }
    return replaceName(name, {product, ": ", service, ".", first, separator, second});
}

int BRELUtils_setParticipantName(DDS_DomainParticipantQos *qos, const char *brelServiceName,
                                 const char *suffix1, const char *suffix2)
{
    return BRELUtils_setParticipantNameWithSeparator(qos, brelServiceName, suffix1, suffix2,
                                                     nullptr);
}

int BRELUtils_setServiceVersion(DDS_DomainParticipantQos *qos)
{
    if (ZUV_PRECONDITION(BREL, BREL_SUBMODULE_ELEMENTS, qos == nullptr, "qos == ((void *)0)")) {
        return 0;
    }
    if (DDS_PropertyQosPolicyHelper_assert_property(
            &qos->property, BREL_SERVICE_VERSION_PROPERTY_NAME, BRELProductInfo_getVersion(),
            DDS_BOOLEAN_TRUE) != DDS_RETCODE_OK) {
        ZUV_LOG(BREL, ZUV_LOG_BIT_EXCEPTION, BREL_SUBMODULE_ELEMENTS, &ZUV_LOG_ASSERT_FAILURE_s,
                "property " BREL_SERVICE_VERSION_PROPERTY_NAME);
        return 0;
    }
    return 1;
}

const char *BRELUtils_verbosityToString(uint32_t mask)
{
    static constexpr struct {
        uint32_t bit;
        const char *name;
    } kNames[] = {{128, "DEBUG"}, {8, "INFO"}, {4, "WARN"}, {2, "EXCEPTION"}};
    for (const auto &[bit, name] : kNames) {
        if ((mask & bit) != 0) {
            return name;
        }
    }
    return mask != 0 ? "CUSTOM" : "NONE";
}
}
