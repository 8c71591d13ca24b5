#include <map>
#include <string>

#include <gtest/gtest.h>

#include "platform/log/LogMessages.h"
#include "support/MessageShape.h"

namespace
{

const zuv_test::NamedMessage kMessages[] = {
    ZUV_NAMED_MESSAGE(ZUV_LOG_PRECONDITION_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_ANY_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_ANY_ss),
    ZUV_NAMED_MESSAGE(ZUV_LOG_ANY_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_ADD_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_ASSERT_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_CREATION_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_DESTRUCTION_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_GET_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_INIT_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_INVALID_s),
    ZUV_NAMED_MESSAGE(ZUV_LOG_BAD_STRING_FORMAT_ss),
    ZUV_NAMED_MESSAGE(ZUV_LOG_SEMAPHORE_GIVE_FAILURE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILURE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_COPY_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_CREATE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_DELETE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_GET_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_PARSE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_CONFIG_FAILURE_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_LOG_FAILED_TO_LOCK_TEMPLATE),
    ZUV_NAMED_MESSAGE(ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd),
    ZUV_NAMED_MESSAGE(ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d),
    ZUV_NAMED_MESSAGE(ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d),
    ZUV_NAMED_MESSAGE(ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_PARSE_WARNING_dss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_ATTR_DEFAULT_VALUE_dss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_DEPRECATED_TAG_ss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_ENTITY_ALREADY_EXISTS_ds),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_ENTITY_REFERENCE_NOT_FOUND_dss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_PARSER_LOAD_URL_GROUP_s),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_REGISTER_DEFINITION_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_PARSE_FAILURE_ds),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_PARSE_FAILURE_dss),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_PARSE_FILE_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_ILLEGAL_VALUE_ds),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds),
    ZUV_NAMED_MESSAGE(ZUVXML_LOG_PARSER_UNEXPECTED_TAG_FAILURE_ds),
    ZUV_NAMED_MESSAGE(ZUV_CDR_LOG_SERIALIZE_FAILURE_s),
    ZUV_NAMED_MESSAGE(ZUV_CDR_LOG_DESERIALIZE_FAILURE_s),
    ZUV_NAMED_MESSAGE(DDS_LOG_BAD_PARAMETER_s),
    ZUV_NAMED_MESSAGE(DDS_LOG_SEQUENCE_NOT_OWNER),
    ZUV_NAMED_MESSAGE(DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd),
    ZUV_NAMED_MESSAGE(DDS_LOG_SEQUENCE_SET_LENGTH_FAILED_sd),
};

class PlatformMessages : public testing::TestWithParam<zuv_test::NamedMessage>
{
};

INSTANTIATE_TEST_SUITE_P(all, PlatformMessages, testing::ValuesIn(kMessages),
                         [](const auto &tested) { return std::string(tested.param.symbol); });

TEST_P(PlatformMessages, takesTheArgumentsThatItsSymbolLists)
{
    const auto &[symbol, message] = GetParam();
    EXPECT_EQ(zuv_test::argumentsOfFormat(message->format), zuv_test::argumentsOfSymbol(symbol));
}

TEST_P(PlatformMessages, isOneLine)
{
    const std::string format = GetParam().message->format;
    EXPECT_EQ(format.find('\n'), format.size() - 1);
}

TEST_P(PlatformMessages, marksAFailure)
{
    const auto &[symbol, message] = GetParam();
    const bool isFailure = symbol.find("FAIL") != std::string_view::npos;
    if (isFailure) {
        EXPECT_EQ(message->format[0], '!');
    }
    const bool isNote = symbol.starts_with("ZUV_LOG_ANY_s") ||
                        symbol.find("WARNING") != std::string_view::npos ||
                        symbol.find("DEPRECATED") != std::string_view::npos ||
                        symbol.find("DEFAULT") != std::string_view::npos ||
                        symbol.find("LOAD_URL_GROUP") != std::string_view::npos;
    EXPECT_EQ(message->format[0] == '!', !isNote);
}

TEST(PlatformMessageTable, hasNoIdentifierTwice)
{
    std::map<std::uint32_t, std::string_view> symbols;
    for (const auto &[symbol, message] : kMessages) {
        EXPECT_TRUE(symbols.emplace(message->messageId, symbol).second)
            << symbol << " and " << symbols[message->messageId];
    }
}

} // namespace
