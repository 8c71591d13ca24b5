#include <algorithm>
#include <iterator>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "log/Log.h"
#include "support/MessageShape.h"

namespace
{

struct Expected {
    zuv_test::NamedMessage named;
    std::uint32_t messageId;
    const char *format;
};

// The format of the user's messages before any of them: read before the first test runs.
const std::string g_userFormatAtStart = BREL_LOG_SERVICE_USER_LOG_s.format;

#define MESSAGE(SYMBOL) ZUV_NAMED_MESSAGE(SYMBOL)

const Expected kMessages[] = {
    {MESSAGE(BREL_LOG_ANY_WITH_RETCODE_sd), 35393536, "%s (retcode=%d)\n"},
    {MESSAGE(BREL_LOG_ANY_NOT_FOUND_ss), 35393537, "%s with name=%s not found\n"},
    {MESSAGE(BREL_LOG_ANY_ENTITY_NOT_A_CLASS_sss), 35393538, "entity=%s with name=%s not %s\n"},
    {MESSAGE(BREL_LOG_SERVICE_LOAD_PLUGIN_sddds), 35397632,
     "loaded plug-in=%s, version %d.%d.%d, from library=%s\n"},
    {MESSAGE(BREL_LOG_TOPICROUTE_INIT_FAILURE_s), 35397633, "!initialize route=%s\n"},
    {MESSAGE(BREL_LOG_TOPICROUTE_TYPE_INCONSISTENCY_FAILURE_sss), 35397634,
     "!enable route=%s: input type=%s and output type=%s are inconsistent\n"},
    {MESSAGE(BREL_LOG_TOPICROUTE_PROCESS_FAILURE_s), 35397635, "!forward data on route=%s\n"},
    {MESSAGE(BREL_LOG_STREAMPORT_ON_STREAM_MATCHED_sss), 35397636,
     "%s of route=%s matched stream=%s\n"},
    {MESSAGE(BREL_LOG_STREAMPORT_ON_STREAM_LOST_sss), 35397637, "%s of route=%s lost stream=%s\n"},
    {MESSAGE(BREL_LOG_STREAMPORT_AT_INDEX_NOT_ENABLED_sd), 35397638,
     "%s at index=%d is not enabled\n"},
    {MESSAGE(BREL_LOG_STREAMPORT_GOT_TYPE_sss), 35397639, "%s of stream=%s got type=%s\n"},
    {MESSAGE(BREL_LOG_DOMAINROUTE_STATUS_sdds), 35397640,
     "domain route=%s: first domain=%d, second domain=%d, state=%s\n"},
    {MESSAGE(BREL_LOG_DOMAINROUTE_ATTACH_ROUTE_TO_SESSION_FAILURE), 35397641,
     "!attach route to session\n"},
    {MESSAGE(BREL_LOG_DOMAINROUTE_STREAM_EVENT_sss), 35397642,
     "domain route=%s: event=%s on stream=%s\n"},
    {MESSAGE(BREL_LOG_TYPECODE_INCONSISTENCY_s), 35397643,
     "stream=%s was discovered with another type code: the first one stays in use\n"},
    {MESSAGE(BREL_LOG_TOPICTYPE_INCONSISTENCY_s), 35397644,
     "stream=%s was discovered with another type name: the first one stays in use\n"},
    {MESSAGE(BREL_LOG_TYPEREPR_INCONSISTENCY_s), 35397645,
     "stream=%s was discovered with another type representation: the first one stays in use\n"},
    {MESSAGE(BREL_LOG_ROUTETYPE_INCONSISTENCY_sss), 35397646,
     "route=%s is configured with type=%s, but its stream has type=%s\n"},
    {MESSAGE(BREL_LOG_ADAPTER_NOT_FOUND_FAILURE_s), 35397647, "!find adapter=%s\n"},
    {MESSAGE(BREL_LOG_ATTACH_ADAPTER_FAILURE_s), 35397648, "!attach adapter=%s\n"},
    {MESSAGE(BREL_LOG_TRANSFORMATION_NOT_FOUND_FAILURE_s), 35397649, "!find transformation=%s\n"},
    {MESSAGE(BREL_LOG_TRANSFORMATION_FAILURE_sss), 35397650,
     "!apply transformation=%s from type=%s to type=%s\n"},
    {MESSAGE(BREL_LOG_TRANSFORMATION_GOT_TYPE_ss), 35397651, "transformation=%s got type=%s\n"},
    {MESSAGE(BREL_LOG_PLUGIN_SERVICE_VERSION_MISTMATCH_ss), 35397652,
     "plug-in=%s was built for another version of the service than %s\n"},
    {MESSAGE(BREL_LOG_PLUGIN_VERSION_COMPARE_dddddd), 35397653,
     "plug-in built for version %d.%d.%d, service has version %d.%d.%d\n"},
    {MESSAGE(BREL_LOG_STREAMPORT_CREATE_FAILURE_WITH_STREAM_ss), 35397654,
     "!create %s for stream=%s\n"},
    {MESSAGE(BREL_LOG_TYPECODE_NOT_AVAILABLE_s), 35397655,
     "type code of type=%s is not available\n"},
    {MESSAGE(BREL_LOG_ADAPTER_FAILURE_WITH_PARAM_sdss), 35397656,
     "!complete %s: adapter error=%d (%s), parameter=%s\n"},
    {MESSAGE(BREL_LOG_ENV_FAILURE_sd), 35397657,
     "!complete plug-in operation: %s (native code=%d)\n"},
    {MESSAGE(BREL_LOG_MONITORING_STARTED_d), 35397658, "monitoring enabled on domain=%d\n"},
    {MESSAGE(BREL_LOG_SERVICE_USER_LOG_s), 35397659, ""},
    {MESSAGE(BREL_LOG_PARAMETER_MANAGER_REQUIRED_PARAMETER_s), 35401728,
     "command-line parameter '%s' is required\n"},
    {MESSAGE(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETERS), 35401729, "bad command-line parameters\n"},
    {MESSAGE(BREL_LOG_PARAMETER_MANAGER_BAD_PARAMETER_s), 35401730,
     "bad command-line parameter '%s'\n"},
    {MESSAGE(BREL_LOG_PARAMETER_MANAGER_MISSING_ARGUMENT_s), 35401731,
     "parameter=%s requires argument\n"},
    {MESSAGE(BREL_LOG_PARAMETER_MANAGER_AMBIGUOUS_PARAMETER_s), 35401732,
     "ambiguous parameter prefix=%s. Please specify a longer prefix\n"},
    {MESSAGE(BREL_LOG_CFG_FILE_PARSER_PARSING_FAILURE_s), 35401733,
     "error parsing configuration file '%s'\n"},
    {MESSAGE(BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_sss), 35401734,
     "%s '%s' not found in configuration file '%s'\n"},
    {MESSAGE(BREL_LOG_CFG_FILE_PARSER_SERVICE_NOT_FOUND_s), 35401735,
     "the configuration file must specify at least one %s\n"},
    {MESSAGE(BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd), 35401736,
     "parse warning at line %d: value is too small; minimum allowed value=%d\n"},
    {MESSAGE(BREL_LOG_XML_TRANSF_CONFIGURED_WITH_TYPES_dss), 35401737,
     "line %d: transformation configured with input_type_name=%s, output_type_name=%s}\n"},
    {MESSAGE(BREL_LOG_REMOTE_CONFIG_NOT_CONNECTED), 35405824, "not connected\n"},
    {MESSAGE(BREL_LOG_REMOTE_CONFIG_STARTED_d), 35405825,
     "remote administration enabled on domain=%d\n"},
    {MESSAGE(ZUV_SERVICE_LOG_SERVICE_UNLOADED), 35405826, "service is unloaded\n"},
    {MESSAGE(ZUV_SERVICE_LOG_UNKNOWN_RESOURCE_ss), 35405827,
     "unknown resource=%s. Did you mean '%s'?\n"},
    {MESSAGE(ZUV_SERVICE_LOG_UNSUPPORTED_RESOURCE), 35405828, "unsupported resource\n"},
    {MESSAGE(ZUV_SERVICE_LOG_UNSUPPORTED_STATE_s), 35405829, "unsupported state=%s\n"},
    {MESSAGE(ZUV_SERVICE_LOG_MALFORMED_RESOURCE_IDENTIFIER_s), 35405830,
     "malformed resource identifier '%s'\n"},
    {MESSAGE(ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_s), 35405831,
     "unsupported command=%s\n"},
    {MESSAGE(ZUV_SERVICE_LOG_REMOTE_SERVICE_UNSUPPORTED_COMMAND_ss), 35405832,
     "command=%s not supported for resource=%s\n"},
    {MESSAGE(ZUV_SERVICE_LOG_REMOTE_SERVICE_UNKNOWN_COMMAND_d), 35405833,
     "unknown command action=%d\n"},
    {MESSAGE(ZUV_SERVICE_LOG_REMOTE_SERVICE_COMMAND_FAILURE_s), 35405834,
     "!process remote command: %s\n"},
    {MESSAGE(BREL_LOG_DDS_REQUESTED_DEADLINE_MISSED_sdd), 35409920,
     "[%s] requested deadline missed: total count=%d, change=%d\n"},
    {MESSAGE(BREL_LOG_DDS_REQUESTED_INCOMPATIBLE_QOS_sds), 35409921,
     "[%s] requested incompatible QoS: total count=%d, last policy=%s\n"},
    {MESSAGE(BREL_LOG_DDS_SAMPLE_REJECTED_sddd), 35409922,
     "[%s] sample rejected: total count=%d, change=%d, last reason=%d\n"},
    {MESSAGE(BREL_LOG_DDS_LIVELINESS_CHANGED_sdd), 35409923,
     "[%s] liveliness changed: alive count=%d, not alive count=%d\n"},
    {MESSAGE(BREL_LOG_DDS_SAMPLE_LOST_sddd), 35409924,
     "[%s] sample lost: total count=%d, change=%d, last reason=%d\n"},
    {MESSAGE(BREL_LOG_DDS_SUBSCRIPTION_MATCHED_sdd), 35409925,
     "[%s] subscription matched: current count=%d, change=%d\n"},
    {MESSAGE(BREL_LOG_DDS_UNSUPPORTED_SERVICE_ID_d), 35409926,
     "discovered an endpoint of an unsupported service id=%d\n"},
    {MESSAGE(BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_SUBSET_ssss), 35409927,
     "simple route optimization disabled on route=%s: members of type=%s of output=%s are not all "
     "in type=%s of the input\n"},
    {MESSAGE(BREL_LOG_DDS_NO_ID_DISABLE_SRO_TYPE_NOT_SUBSET_sss), 35409928,
     "simple route optimization disabled: members of type=%s of output=%s are not all in type=%s "
     "of the input\n"},
    {MESSAGE(BREL_LOG_DDS_DISABLE_SRO_TYPE_NOT_AVAILABLE_ss), 35409929,
     "simple route optimization disabled on route=%s: type=%s is not available\n"},
    {MESSAGE(BREL_LOG_DDS_WRITE_METADATA_sxxxxdu), 35409930,
     "[%s] write with original writer=%08x.%08x.%08x.%08x, sequence number high=%d, low=%u\n"},
    {MESSAGE(BREL_LOG_DDS_CONTENT_FILTER_TOPIC_CHANGE_ss), 35409931,
     "content filter of topic=%s changed to '%s'\n"},
    {MESSAGE(BREL_LOG_DDS_NEW_CONTENT_FILTER_MATCHED_s), 35409932,
     "reader with a new content filter matched on topic=%s\n"},
    {MESSAGE(BREL_LOG_BREL_PROCESSOR_WRITE_ERROR_dd), 35454976,
     "!write on output at index=%d: dropped samples count=%d\n"},
};

class ServiceMessages : public testing::TestWithParam<Expected>
{
};

std::string symbolOf(const testing::TestParamInfo<Expected> &tested)
{
    return std::string(tested.param.named.symbol);
}

INSTANTIATE_TEST_SUITE_P(all, ServiceMessages, testing::ValuesIn(kMessages), symbolOf);

class FixedServiceMessages : public testing::TestWithParam<Expected>
{
};

// All but the user's messages: what arguments their format takes is the user's choice at each use.
std::vector<Expected> fixedMessages()
{
    std::vector<Expected> messages;
    std::copy_if(std::begin(kMessages), std::end(kMessages), std::back_inserter(messages),
                 [](const Expected &expected) {
                     return expected.named.message != &BREL_LOG_SERVICE_USER_LOG_s;
                 });
    return messages;
}

INSTANTIATE_TEST_SUITE_P(all, FixedServiceMessages, testing::ValuesIn(fixedMessages()), symbolOf);

TEST_P(ServiceMessages, haveTheirIdentifierAndText)
{
    const auto &[named, messageId, format] = GetParam();
    EXPECT_EQ(named.message->messageId, messageId);
    EXPECT_EQ(named.message == &BREL_LOG_SERVICE_USER_LOG_s ? g_userFormatAtStart
                                                            : named.message->format,
              format);
}

TEST_P(FixedServiceMessages, takeTheArgumentsThatTheirSymbolLists)
{
    const auto &[symbol, message] = GetParam().named;
    const std::string_view listed = message == &BREL_LOG_XML_MIN_ALLOWED_INT_WARNING_sd
                                        ? "dd" // a line and a value, whatever the symbol says
                                        : zuv_test::argumentsOfSymbol(symbol);
    EXPECT_EQ(zuv_test::argumentsOfFormat(message->format), listed);
}

TEST_P(ServiceMessages, markTheirFailures)
{
    const auto &[symbol, message] = GetParam().named;
    if (symbol.find("FAILURE") == std::string_view::npos ||
        message == &BREL_LOG_CFG_FILE_PARSER_PARSING_FAILURE_s) { // worded as it stands
        return;
    }
    EXPECT_EQ(message->format[0], '!');
}

TEST(ServiceMessageTable, isComplete)
{
    int ownCount = 0;
    int protocolCount = 0;
    std::map<std::uint32_t, std::string_view> symbols;
    for (const Expected &expected : kMessages) {
        const auto &[symbol, message] = expected.named;
        EXPECT_TRUE(symbols.emplace(message->messageId, symbol).second)
            << symbol << " and " << symbols[message->messageId];
        ownCount += symbol.starts_with("BREL_LOG_");
        protocolCount += symbol.starts_with("ZUV_SERVICE_LOG_");
    }
    EXPECT_EQ(ownCount, 57);
    EXPECT_EQ(protocolCount, 9);
}

} // namespace
