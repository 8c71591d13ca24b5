#include "SchemaTest.h"

namespace zuv_test
{
namespace
{

#define DR(CONTENT) "<domain_route>\n" CONTENT "</domain_route>"
#define SESSION(CONTENT) "<session>\n" CONTENT "</session>"
#define SERVICE(CONTENT) "<brel_service name='s'>\n" CONTENT "</brel_service>"

// Each type of values, and at its edges.
const Documents kValues[] = {
    // Names
    {"<route name=' a  b '/>",
     "<route name='" /* 256 characters */
     "012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012"
     "3"
     "012345678901234567890123456789012345678901234567890123456789012345678901234567890123456789012"
     "3"
     "01234567890123456789012345678901234567890123456789012345678901234567'/>",
     "line 1: element <route>: a name or tag has more than 255 characters"},
    {"<participant name='p'><register_type "
     "name='0123456789012345678901234567890123456789012345678901"
     "234567890123'/></participant>",
     "<participant name='p'><register_type "
     "name='0123456789012345678901234567890123456789012345678901"
     "2345678901234'/></participant>",
     "line 1: element <register_type>: attribute 'name': [facet 'maxLength'] The value "
     "'01234567890123456789012345678901234567890123456789012345678901234' has a length of '65'; "
     "this exceeds the allowed maximum length of '64'."},
    {"<session><topic_route><input participant=' a::b '/></topic_route></session>",
     "<session><topic_route><input participant='a' connection='b'/></topic_route></session>",
     "line 1: element <input>: attribute 'connection': The attribute 'connection' is not allowed."},
    {"<dds><plugin_library name='a.b-c_1'/></dds>", "<dds>\n<plugin_library name='a::b'/></dds>",
     "line 2: element <plugin_library>: attribute 'name': 'a::b' is not a valid value of the "
     "atomic type 'xs:NCName'."},
    // Patterns
    {"<auto_topic_route_input>\n<allow_topic_name_filter> a*, /b/[0-9]_\n c.d:: "
     "</allow_topic_name_filter>"
     "</auto_topic_route_input>",
     "<auto_topic_route_input>\n<allow_topic_name_filter>a?</allow_topic_name_filter>"
     "</auto_topic_route_input>",
     "line 2: element <allow_topic_name_filter>: [facet 'pattern'] The value 'a?' is not accepted "
     "by the pattern '([a-zA-Z\\d/\\-\\*_\\.:,\\]\\[\\s])+'."},
    {"<auto_topic_route_input><deny_topic_name_filter>*</deny_topic_name_filter></"
     "auto_topic_route_input>",
     "<auto_topic_route_input><deny_topic_name_filter/></auto_topic_route_input>",
     "line 1: element <deny_topic_name_filter>: [facet 'pattern'] The value '' is not accepted by "
     "the pattern '([a-zA-Z\\d/\\-\\*_\\.:,\\]\\[\\s])+'."},
    {"<dds version='7.7.0'/>", "<dds version='10.0.0'/>",
     "line 1: element <dds>: attribute 'version': [facet 'pattern'] The value '10.0.0' is not "
     "accepted by the pattern '[0-9]\\.[0-9]\\.[0-9](\\.[0-9])?'."},
    {"<dds version='6.1.0.2'/>", "<dds version='6.1'/>",
     "line 1: element <dds>: attribute 'version': [facet 'pattern'] The value '6.1' is not "
     "accepted by the pattern '[0-9]\\.[0-9]\\.[0-9](\\.[0-9])?'."},
    {SERVICE("<internal_clock>monotonic,realtime, system</internal_clock>"),
     SERVICE("<internal_clock>monotonic;realtime</internal_clock>"),
     "line 2: element <internal_clock>: [facet 'pattern'] The value 'monotonic;realtime' is not "
     "accepted by the pattern '(realtime|system|monotonic)(,\\s*(realtime|system|monotonic))*'."},
    {SERVICE("<internal_clock>system</internal_clock>"),
     SERVICE("<internal_clock>wall</internal_clock>"),
     "line 2: element <internal_clock>: [facet 'pattern'] The value 'wall' is not accepted by the "
     "pattern '(realtime|system|monotonic)(,\\s*(realtime|system|monotonic))*'."},
    // Numbers
    {SERVICE("<administration><domain_id>2147483647</domain_id></administration>"),
     SERVICE("<administration>\n<domain_id>2147483648</domain_id></administration>"),
     "line 3: element <domain_id>: '2147483648' is not a valid value of the atomic type "
     "'nonNegativeLong'."},
    {SERVICE("<administration><domain_id>0</domain_id></administration>"),
     SERVICE("<administration>\n<domain_id>-1</domain_id></administration>"),
     "line 3: element <domain_id>: [facet 'minInclusive'] The value '-1' is less than the minimum "
     "value allowed ('0')."},
    {"<topic_route><filter_propagation><max_event_count>1</max_event_count></filter_propagation>"
     "</topic_route>",
     "<topic_route><filter_propagation>\n<max_event_count>0</max_event_count></filter_propagation>"
     "</topic_route>",
     "line 2: element <max_event_count>: '0' is not a valid value of the union type "
     "'positiveIntegerUnlimited'."},
    {"<topic_route><filter_propagation><max_event_count>LENGTH_UNLIMITED</max_event_count>"
     "</filter_propagation></topic_route>",
     "<topic_route><filter_propagation><max_event_count>UNLIMITED</max_event_count>"
     "</filter_propagation></topic_route>",
     "line 1: element <max_event_count>: 'UNLIMITED' is not a valid value of the union type "
     "'positiveIntegerUnlimited'."},
    {"<participant name='p'><memory_management><sample_buffer_min_size>0</sample_buffer_min_size>"
     "</memory_management></participant>",
     "<participant "
     "name='p'><memory_management>\n<sample_buffer_min_size>-2</sample_buffer_min_size>"
     "</memory_management></participant>",
     "line 2: element <sample_buffer_min_size>: '-2' is not a valid value of the union type "
     "'nonNegativeIntegerUnlimited'."},
    {"<participant name='p'><memory_management><sample_buffer_min_size>LENGTH_UNLIMITED"
     "</sample_buffer_min_size></memory_management></participant>",
     "<participant name='p'><memory_management><sample_buffer_min_size>1 "
     "KB</sample_buffer_min_size>"
     "</memory_management></participant>",
     "line 1: element <sample_buffer_min_size>: '1 KB' is not a valid value of the union type "
     "'nonNegativeIntegerUnlimited'."},
    {"<session enabled='0'/>", "<session enabled='off'/>",
     "line 1: element <session>: attribute 'enabled': 'off' is not a valid value of the atomic "
     "type 'xs:boolean'."},
    {"<session enabled='true'/>", "<session enabled='TRUE'/>",
     "line 1: element <session>: attribute 'enabled': 'TRUE' is not a valid value of the atomic "
     "type 'xs:boolean'."},
    // Durations
    {SESSION("<periodic_action/>"), SESSION("<periodic_action>5</periodic_action>"),
     "line 2: element <periodic_action>: Character content other than whitespace is not allowed "
     "because the content type is 'element-only'."},
    {SESSION("<periodic_action><nanosec>5</nanosec><sec>-1</sec></periodic_action>"),
     SESSION("<periodic_action><sec>1</sec>\n<sec>2</sec></periodic_action>"),
     "line 3: element <sec>: This element is not expected."},
    {SESSION("<periodic_action><sec>DURATION_INFINITE_SEC</sec><nanosec>DURATION_INFINITE_NSEC</"
             "nanosec>"
             "</periodic_action>"),
     SESSION("<periodic_action><sec>DURATION_INFINITE_NSEC</sec></periodic_action>"),
     "line 2: element <sec>: 'DURATION_INFINITE_NSEC' is not a valid value of the union type "
     "'durationSec'."},
    {SESSION("<periodic_action><sec>DURATION_ZERO_SEC</sec><nanosec>DURATION_ZERO_NSEC</nanosec>"
             "</periodic_action>"),
     SESSION("<periodic_action><nanosec>1.5</nanosec></periodic_action>"),
     "line 2: element <nanosec>: '1.5' is not a valid value of the union type 'durationNanosec'."},
    {SESSION("<periodic_action><nanosec>4294967295</nanosec></periodic_action>"),
     SESSION("<periodic_action><nanosec>4294967296</nanosec></periodic_action>"),
     "line 2: element <nanosec>: '4294967296' is not a valid value of the union type "
     "'durationNanosec'."},
    // Lists
    {SERVICE("<jvm><options><element>-Xmx1g</element><element/></options><class_path/></jvm>"),
     SERVICE("<jvm><options>\n<value>-Xmx1g</value></options></jvm>"),
     "line 3: element <value>: This element is not expected."},
    {"<dds><configuration_variables><value><element><value>v</value><name>n</name></element>"
     "<element><name>m</name></element></value></configuration_variables></dds>",
     "<dds><configuration_variables><value>\n<element><value>v</value></element></value>"
     "</configuration_variables></dds>",
     "line 2: element <element>: Missing child element(s)."},
    {"<dds><configuration_variables><element><name>n</name><value>v</value></element>"
     "</configuration_variables></dds>",
     "<dds><configuration_variables><element><name>n</name></element>\n<value/>"
     "</configuration_variables></dds>",
     "line 2: element <value>: This element is not expected."},
    {SESSION("<property/>"), SESSION("<property><element/></property>"),
     "line 2: element <element>: This element is not expected."},
    {SESSION("<property><value><element/><element><propagate>1</propagate><name>n</name>"
             "<value>v</value></element></value></property>"),
     SESSION(
         "<property><value><element><name>n</name><propagate>maybe</propagate></element></value>"
         "</property>"),
     "line 2: element <propagate>: 'maybe' is not a valid value of the atomic type 'xs:boolean'."},
    {"<topic_route_input "
     "participant='p'><content_filter><expression_parameters><element>1</element>"
     "<element/></expression_parameters></content_filter></topic_route_input>",
     "<topic_route_input "
     "participant='p'><content_filter><expression_parameters><element>1</element>\n"
     "<param>2</param></expression_parameters></content_filter></topic_route_input>",
     "line 2: element <param>: This element is not expected."},
    {"<topic_route_input participant='p'><content_filter><expression_parameters><param>1</param>"
     "</expression_parameters></content_filter></topic_route_input>",
     "<topic_route_input participant='p'><content_filter><expression_parameters>%1"
     "</expression_parameters></content_filter></topic_route_input>",
     "line 1: element <expression_parameters>: Character content other than whitespace is not "
     "allowed because the content type is 'element-only'."},
    // Code
    {"<dds><plugin_library name='l'><adapter_plugin name='a'><create_function>f</create_function>"
     "<property/><dll>d</dll></adapter_plugin></plugin_library></dds>",
     "<dds><plugin_library name='l'>\n<adapter_plugin name='a'><dll>d</dll></adapter_plugin>"
     "</plugin_library></dds>",
     "line 2: element <adapter_plugin>: Missing child element(s)."},
    {"<dds><plugin_library name='l'><processor_plugin name='a'><dll/><create_function/>"
     "</processor_plugin></plugin_library></dds>",
     "<dds><plugin_library name='l'>\n<processor_plugin><dll/><create_function/></processor_plugin>"
     "</plugin_library></dds>",
     "line 2: element <processor_plugin>: The attribute 'name' is required but missing."},
    {"<dds><plugin_library name='l'><java_adapter_plugin name='a'><class_name>a.B</class_name>"
     "</java_adapter_plugin></plugin_library></dds>",
     "<dds><plugin_library name='l'><java_adapter_plugin "
     "name='a'>\n<dll>d</dll></java_adapter_plugin>"
     "</plugin_library></dds>",
     "line 2: element <dll>: This element is not expected."},
    // Types with names
    {"<connection name='c' plugin_name='l::p'><register_type name='T' type_ref='m::T'>"
     "<registered_name>U</registered_name></register_type><register_type name='V'/></connection>",
     "<connection name='c' plugin_name='l::p'>\n<register_type type_ref='m::T'/></connection>",
     "line 2: element <register_type>: The attribute 'name' is required but missing."},
    // Threads
    {SESSION(
         "<thread_pool><cpu_rotation>THREAD_SETTINGS_CPU_RR_ROTATION</cpu_rotation><size>4</size>"
         "<mask>STDIO|FLOATING_POINT</mask><priority>MAX_PRIORITY</priority><cpu_list><element>0"
         "</element></cpu_list><stack_size>-1</stack_size></thread_pool>"),
     SESSION("<thread_pool>\n<size>0</size></thread_pool>"),
     "line 3: element <size>: [facet 'minInclusive'] The value '0' is less than the minimum value "
     "allowed ('1')."},
    {SESSION(
         "<thread_pool><priority>-5</priority><stack_size>THREAD_STACK_SIZE_DEFAULT</stack_size>"
         "</thread_pool>"),
     SESSION("<thread_pool><priority>URGENT</priority></thread_pool>"),
     "line 2: element <priority>: 'URGENT' is not a valid value of the union type "
     "'threadPriority'."},
    {SESSION("<thread_pool><cpu_rotation>0</cpu_rotation></thread_pool>"),
     SESSION("<thread_pool><cpu_rotation>yes</cpu_rotation></thread_pool>"),
     "line 2: element <cpu_rotation>: 'yes' is not a valid value of the union type "
     "'threadCpuRotation'."},
    {SESSION("<thread_pool><priority>DDS_THREAD_PRIORITY_LOW</priority></thread_pool>"),
     SESSION("<thread_pool><cpu_list>0</cpu_list></thread_pool>"),
     "line 2: element <cpu_list>: Character content other than whitespace is not allowed because "
     "the content type is 'element-only'."},
    // Kinds
    {"<topic_route><topic_query_proxy><mode>DISPATCH</mode></topic_query_proxy></topic_route>",
     "<topic_route><topic_query_proxy>\n<mode>dispatch</mode></topic_query_proxy></topic_route>",
     "line 2: element <mode>: [facet 'enumeration'] The value 'dispatch' is not an element of the "
     "set {'DISPATCH', 'PROPAGATION'}."},
    {"<topic_route><topic_query_proxy><mode>PROPAGATION</mode><enabled>1</enabled></"
     "topic_query_proxy>"
     "</topic_route>",
     "<topic_route><topic_query_proxy><mode>NONE</mode></topic_query_proxy></topic_route>",
     "line 1: element <mode>: [facet 'enumeration'] The value 'NONE' is not an element of the set "
     "{'DISPATCH', 'PROPAGATION'}."},
    {"<route_input><creation_mode>IMMEDIATE</creation_mode></route_input>",
     "<route_input><creation_mode>LATER</creation_mode></route_input>",
     "line 1: element <creation_mode>: [facet 'enumeration'] The value 'LATER' is not an element "
     "of the set {'IMMEDIATE', 'ON_DOMAIN_MATCH', 'ON_ROUTE_MATCH', 'ON_DOMAIN_OR_ROUTE_MATCH', "
     "'ON_DOMAIN_AND_ROUTE_MATCH'}."},
    {"<route_input><creation_mode>ON_DOMAIN_MATCH</creation_mode></route_input>",
     "<route_input><creation_mode/></route_input>",
     "line 1: element <creation_mode>: [facet 'enumeration'] The value '' is not an element of the "
     "set {'IMMEDIATE', 'ON_DOMAIN_MATCH', 'ON_ROUTE_MATCH', 'ON_DOMAIN_OR_ROUTE_MATCH', "
     "'ON_DOMAIN_AND_ROUTE_MATCH'}."},
    {"<route_input><creation_mode>ON_ROUTE_MATCH</creation_mode></route_input>",
     "<route_input><creation_mode>on_route_match</creation_mode></route_input>",
     "line 1: element <creation_mode>: [facet 'enumeration'] The value 'on_route_match' is not an "
     "element of the set {'IMMEDIATE', 'ON_DOMAIN_MATCH', 'ON_ROUTE_MATCH', "
     "'ON_DOMAIN_OR_ROUTE_MATCH', 'ON_DOMAIN_AND_ROUTE_MATCH'}."},
    {"<route_input><creation_mode>ON_DOMAIN_OR_ROUTE_MATCH</creation_mode></route_input>",
     "<route_input><creation_mode>ON_ROUTE_OR_DOMAIN_MATCH</creation_mode></route_input>",
     "line 1: element <creation_mode>: [facet 'enumeration'] The value 'ON_ROUTE_OR_DOMAIN_MATCH' "
     "is not an element of the set {'IMMEDIATE', 'ON_DOMAIN_MATCH', 'ON_ROUTE_MATCH', "
     "'ON_DOMAIN_OR_ROUTE_MATCH', 'ON_DOMAIN_AND_ROUTE_MATCH'}."},
    {"<route_input><creation_mode>ON_DOMAIN_AND_ROUTE_MATCH</creation_mode></route_input>",
     "<route_input><creation_mode> ON_DOMAIN_AND_ROUTE_MATCH</creation_mode></route_input>",
     "line 1: element <creation_mode>: [facet 'enumeration'] The value ' "
     "ON_DOMAIN_AND_ROUTE_MATCH' is not an element of the set {'IMMEDIATE', 'ON_DOMAIN_MATCH', "
     "'ON_ROUTE_MATCH', 'ON_DOMAIN_OR_ROUTE_MATCH', 'ON_DOMAIN_AND_ROUTE_MATCH'}."},
};

TEST_F(SchemaTest, holdsEachTypeOfValueToItsForm)
{
    check(kValues);
}

TEST_F(SchemaTest, takesUpToAHundredParameters)
{
    for (const std::string tag : {"element", "param"}) {
        std::string parameters;
        for (int count = 0; count < 100; ++count) {
            parameters += "<" + tag + ">p</" + tag + ">";
        }
        const auto filter = [](const std::string &content) {
            return "<topic_route_input participant='p'><content_filter><expression_parameters>" +
                   content + "</expression_parameters></content_filter></topic_route_input>";
        };
        EXPECT_TRUE(isValid(filter(parameters)));
        EXPECT_FALSE(isValid(filter(parameters + "\n<" + tag + ">p</" + tag + ">")));
        EXPECT_EQ(onlyLine(),
                  "!accept text, line 2: element <" + tag + ">: This element is not expected.");
    }
}

// No element of the language has a data size yet.
TEST_F(SchemaTest, hasDataSizesWithTheirUnits)
{
    const ZUVXMLUTILSProperty root = {"size", "dataSize"};
    const ZUVXMLUTILSPropertyList roots = {&root, 1};
    ASSERT_EQ(ZUVXMLUTILSValidator_addValidationRoots(validator.get(), &roots), 1);
    const Documents sizes[] = {
        {"<size>0</size>", "<size>-1</size>",
         "line 1: element <size>: [facet 'minInclusive'] The value '-1' is less than the minimum "
         "value allowed ('0')."},
        {"<size unit='BYTES'>5</size>", "<size unit='bytes'>5</size>",
         "line 1: element <size>: attribute 'unit': [facet 'enumeration'] The value 'bytes' is not "
         "an element of the set {'BYTES', 'KILOBYTES', 'MEGABYTES', 'GIGABYTES'}."},
        {"<size unit='KILOBYTES'>5</size>", "<size unit=''>5</size>",
         "line 1: element <size>: attribute 'unit': [facet 'enumeration'] The value '' is not an "
         "element of the set {'BYTES', 'KILOBYTES', 'MEGABYTES', 'GIGABYTES'}."},
        {"<size unit='MEGABYTES'>5</size>", "<size unit='MEGABYTES'/>",
         "line 1: element <size>: '' is not a valid value of the atomic type 'nonNegativeLong'."},
        {"<size unit='GIGABYTES'>5</size>", "<size unit='TERABYTES'>5</size>",
         "line 1: element <size>: attribute 'unit': [facet 'enumeration'] The value 'TERABYTES' is "
         "not an element of the set {'BYTES', 'KILOBYTES', 'MEGABYTES', 'GIGABYTES'}."},
    };
    check(sizes);
}

} // namespace
} // namespace zuv_test
