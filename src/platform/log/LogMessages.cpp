#include "platform/log/LogMessages.h"

namespace
{
constexpr uint32_t kGeneral = 0x2010000;
constexpr uint32_t kTemplate = 0x2011000;
constexpr uint32_t kOsapi = 0x2020000;
constexpr uint32_t kXmlUtils = 0x2030000;
constexpr uint32_t kXml = 0x2040000;
constexpr uint32_t kCdr = 0x2050000;
constexpr uint32_t kDds = 0x2060000;
} // namespace

extern "C" {

const ZUVLogMessage ZUV_LOG_PRECONDITION_FAILURE_s = {kGeneral + 0, "!meet precondition: %s\n"};
const ZUVLogMessage ZUV_LOG_ANY_s = {kGeneral + 1, "%s\n"};
const ZUVLogMessage ZUV_LOG_ANY_ss = {kGeneral + 2, "%s%s\n"};
const ZUVLogMessage ZUV_LOG_ANY_FAILURE_s = {kGeneral + 3, "!%s\n"};
const ZUVLogMessage ZUV_LOG_ADD_FAILURE_s = {kGeneral + 4, "!add %s\n"};
const ZUVLogMessage ZUV_LOG_ASSERT_FAILURE_s = {kGeneral + 5, "!set %s\n"};
const ZUVLogMessage ZUV_LOG_CREATION_FAILURE_s = {kGeneral + 6, "!create %s\n"};
const ZUVLogMessage ZUV_LOG_DESTRUCTION_FAILURE_s = {kGeneral + 7, "!delete %s\n"};
const ZUVLogMessage ZUV_LOG_GET_FAILURE_s = {kGeneral + 8, "!get %s\n"};
const ZUVLogMessage ZUV_LOG_INIT_FAILURE_s = {kGeneral + 9, "!initialize %s\n"};
const ZUVLogMessage ZUV_LOG_INVALID_s = {kGeneral + 10, "!accept %s: it is not valid\n"};
const ZUVLogMessage ZUV_LOG_BAD_STRING_FORMAT_ss = {kGeneral + 11,
                                                    "!read %s: bad format of '%s'\n"};
const ZUVLogMessage ZUV_LOG_SEMAPHORE_GIVE_FAILURE = {kGeneral + 12, "!give semaphore\n"};
const ZUVLogMessage ZUV_LOG_ENABLE_FAILURE_s = {kGeneral + 13, "!enable %s\n"};

const ZUVLogMessage ZUV_LOG_FAILURE_TEMPLATE = {kTemplate + 0, "!%s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_ALLOCATE_TEMPLATE = {kTemplate + 1, "!allocate %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_COPY_TEMPLATE = {kTemplate + 2, "!copy %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_CREATE_TEMPLATE = {kTemplate + 3, "!create %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_DELETE_TEMPLATE = {kTemplate + 4, "!delete %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_GET_TEMPLATE = {kTemplate + 5, "!get %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_INITIALIZE_TEMPLATE = {kTemplate + 6, "!initialize %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_PARSE_TEMPLATE = {kTemplate + 7, "!parse: %s\n"};
const ZUVLogMessage ZUV_LOG_BAD_PARAMETER_FAILURE_TEMPLATE = {kTemplate + 8,
                                                              "!accept parameter %s\n"};
const ZUVLogMessage ZUV_LOG_CONFIG_FAILURE_TEMPLATE = {kTemplate + 9, "!configure: %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_LOCK_TEMPLATE = {kTemplate + 10, "!lock %s\n"};
const ZUVLogMessage ZUV_LOG_FAILED_TO_FINALIZE_TEMPLATE = {kTemplate + 11, "!finalize %s\n"};

const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_ARRAY_dd = {
    kOsapi + 0, "!allocate array of %d elements of %d bytes: out of memory\n"};
const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRING_d = {
    kOsapi + 1, "!allocate string of %d characters: out of memory\n"};
const ZUVLogMessage ZUV_OSAPI_MEMORY_LOG_OUT_OF_HEAP_STRUCT_d = {
    kOsapi + 2, "!allocate object of %d bytes: out of memory\n"};
const ZUVLogMessage ZUV_OSAPI_UTILITY_LOG_FILE_NOT_FOUND_s = {kOsapi + 3, "!find file '%s'\n"};

const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_ds = {kXmlUtils + 0,
                                                               "!parse line %d: element <%s>\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_FAILURE_dss = {
    kXmlUtils + 1, "!parse line %d: element <%s>: %s\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_PARSE_WARNING_dss = {kXmlUtils + 2,
                                                                "line %d: element <%s>: %s\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ATTR_DEFAULT_VALUE_dss = {
    kXmlUtils + 3, "line %d: attribute '%s' is missing; its default '%s' is used\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_DEPRECATED_TAG_ss = {
    kXmlUtils + 4, "element <%s> is deprecated; use <%s>\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_ALREADY_EXISTS_ds = {
    kXmlUtils + 5, "!add element: line %d already has one with name '%s'\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_NOT_FOUND_s = {kXmlUtils + 6,
                                                                 "!find element '%s'\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_REFERENCE_NOT_FOUND_dss = {
    kXmlUtils + 7, "!resolve reference in line %d: '%s' is no known %s\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_ENTITY_WITH_TAG_NOT_PRESENT_ss = {
    kXmlUtils + 8, "!find element '%s' with tag <%s>\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s = {kXmlUtils + 9, "!load file '%s'\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_PARSER_LOAD_URL_GROUP_s = {kXmlUtils + 10,
                                                               "load URL group '%s'\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_REGISTER_DEFINITION_FAILURE_s = {
    kXmlUtils + 11, "!register schema file '%s'\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_VALIDATOR_VALIDATE_ENTITY_FAILURE_s = {
    kXmlUtils + 12, "!validate element <%s>\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss = {
    kXmlUtils + 13, "!accept %s, line %d: element <%s>: %s\n"};
const ZUVLogMessage ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sds = {kXmlUtils + 14,
                                                            "!accept %s, line %d: %s\n"};

const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FAILURE_ds = {kXml + 0,
                                                          "!parse line %d: element <%s>\n"};
const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FAILURE_dss = {kXml + 1,
                                                           "!parse line %d: element <%s>: %s\n"};
const ZUVLogMessage ZUVXML_LOG_PARSER_PARSE_FILE_FAILURE_s = {kXml + 2, "!parse file '%s'\n"};
const ZUVLogMessage ZUVXML_LOG_PARSER_ILLEGAL_VALUE_ds = {
    kXml + 3, "!parse line %d: illegal value of '%s'\n"};
const ZUVLogMessage ZUVXML_LOG_PARSER_UNEXPECTED_ATTRIBUTE_VALUE_FAILURE_ds = {
    kXml + 4, "!parse line %d: unexpected attribute value '%s'\n"};
const ZUVLogMessage ZUVXML_LOG_PARSER_UNEXPECTED_TAG_FAILURE_ds = {
    kXml + 5, "!parse line %d: unexpected element <%s>\n"};

const ZUVLogMessage ZUV_CDR_LOG_SERIALIZE_FAILURE_s = {kCdr + 0, "!serialize %s\n"};
const ZUVLogMessage ZUV_CDR_LOG_DESERIALIZE_FAILURE_s = {kCdr + 1, "!deserialize %s\n"};

const ZUVLogMessage DDS_LOG_BAD_PARAMETER_s = {kDds + 0, "!accept parameter %s\n"};
const ZUVLogMessage DDS_LOG_SEQUENCE_NOT_OWNER = {kDds + 1,
                                                  "!resize sequence: its buffer is on loan\n"};
const ZUVLogMessage DDS_LOG_SEQUENCE_INSUFFICIENT_SPACE_dd = {
    kDds + 2, "!set sequence length to %d: the maximum is %d\n"};
const ZUVLogMessage DDS_LOG_SEQUENCE_SET_LENGTH_FAILED_sd = {kDds + 3,
                                                             "!set length of sequence %s to %d\n"};
}
