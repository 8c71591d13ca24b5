#include "SchemaTest.h"

namespace zuv_test
{
namespace
{

#define SERVICE(CONTENT) "<brel_service name='s'>\n" CONTENT "</brel_service>"

const Documents kRootDocuments[] = {
    {"<dds/>", "<brel/>",
     "line 1: element <brel>: No matching global declaration available for the validation root."},
    {"<dds version='7.7.0'/>", "<dds release='7.7.0'/>",
     "line 1: element <dds>: attribute 'release': The attribute 'release' is not allowed."},
    {"<dds><types/></dds>", "<dds>\n<type/></dds>",
     "line 2: element <type>: This element is not expected."},
    {"<dds><configuration_variables/></dds>", "<dds><configuration_variables name='v'/></dds>",
     "line 1: element <configuration_variables>: attribute 'name': The attribute 'name' is not "
     "allowed."},
    {"<dds><qos_library name='q'/></dds>", "<dds>\n<qos_library/></dds>",
     "line 2: element <qos_library>: The attribute 'name' is required but missing."},
    {"<dds><transformation_library name='l'><transformation_plugin "
     "name='t'><dll/><create_function/>"
     "</transformation_plugin></transformation_library></dds>",
     "<dds>\n<transformation_library/></dds>",
     "line 2: element <transformation_library>: The attribute 'name' is required but missing."},
    {"<dds><adapter_library name='l'><adapter_plugin "
     "name='a'><dll/><create_function/></adapter_plugin>"
     "</adapter_library></dds>",
     "<dds><adapter_library name='l'>\n<plugin name='a'/></adapter_library></dds>",
     "line 2: element <plugin>: This element is not expected."},
    {"<dds><plugin_library name='l'><processor_plugin name='a'><dll/><create_function/>"
     "</processor_plugin><transformation_plugin "
     "name='t'><dll/><create_function/></transformation_plugin>"
     "<java_adapter_plugin name='j'><class_name/></java_adapter_plugin></plugin_library></dds>",
     "<dds>\n<plugin_library name='1'/></dds>",
     "line 2: element <plugin_library>: attribute 'name': '1' is not a valid value of the atomic "
     "type 'xs:NCName'."},
    {"<dds><brel_service name='s'/><brel_service name='s'/></dds>", "<dds>\n<brel_service/></dds>",
     "line 2: element <brel_service>: The attribute 'name' is required but missing."},
    {"<dds><domain_library name='l'><domain name='d' domain_id='3'><register_type name='T' "
     "type_ref='T'/>"
     "<topic name='t' register_type_ref='T'/></domain></domain_library></dds>",
     "<dds><domain_library name='l'>\n<domain name='d' domain_id='three'/></domain_library></dds>",
     "line 2: element <domain>: attribute 'domain_id': 'three' is not a valid value of the atomic "
     "type 'nonNegativeLong'."},
    {"<dds><domain_participant_library name='l'><domain_participant name='p' "
     "domain_ref='l::d'><publisher "
     "name='p'><data_writer name='w' topic_ref='t'/></publisher><subscriber name='s'><data_reader "
     "name='r' "
     "topic_ref='t'/></subscriber></domain_participant></domain_participant_library></dds>",
     "<dds><domain_participant_library name='l'><domain_participant name='p'><publisher name='p'>\n"
     "<data_writer name='w'/></publisher></domain_participant></domain_participant_library></dds>",
     "line 2: element <data_writer>: The attribute 'topic_ref' is required but missing."},
    // In any order
    {"<dds><brel_service name='s'/><types/><configuration_variables/><qos_library "
     "name='q'/><types/></dds>",
     "<dds>text</dds>",
     "line 1: element <dds>: Character content other than whitespace is not allowed because the "
     "content type is 'element-only'."},
};

TEST_F(SchemaTest, knowsTheElementsOfADocument)
{
    check(kRootDocuments);
}

const Documents kServices[] = {
    {SERVICE(""), "<brel_service/>",
     "line 1: element <brel_service>: The attribute 'name' is required but missing."},
    {"<brel_service name='s' enabled='false' group_name='g'/>",
     "<brel_service name='s' group_name='a b'/>",
     "line 1: element <brel_service>: attribute 'group_name': 'a b' is not a valid value of the "
     "atomic type 'xs:NCName'."},
    {SERVICE("<annotation><documentation>d</documentation></annotation>"),
     SERVICE("<annotation>d</annotation>"),
     "line 2: element <annotation>: Character content other than whitespace is not allowed because "
     "the content type is 'element-only'."},
    {SERVICE("<annotation/><administration/><monitoring/><internal_clock>system</internal_clock>"
             "<entity_monitoring/><jvm/><domain_route/><domain_route/>"),
     SERVICE("<monitoring/>\n<administration/>"),
     "line 3: element <administration>: This element is not expected."},
    {SERVICE("<jvm><class_path/></jvm>"), SERVICE("<jvm/>\n<jvm/>"),
     "line 3: element <jvm>: This element is not expected."},
    {SERVICE("<domain_route/>"), SERVICE("<domain_route/>\n<jvm/>"),
     "line 3: element <jvm>: This element is not expected."},
    {SERVICE("<jvm><options/><class_path/></jvm>"), SERVICE("<jvm>\n<dll>jvm.so</dll></jvm>"),
     "line 3: element <dll>: This element is not expected."},
};

TEST_F(SchemaTest, knowsTheSectionsOfAService)
{
    check(kServices);
}

#define ADMINISTRATION(CONTENT) SERVICE("<administration>\n" CONTENT "</administration>")
#define MONITORING(CONTENT) SERVICE("<monitoring>\n" CONTENT "</monitoring>")

const Documents kAdministration[] = {
    {ADMINISTRATION("<enabled>true</enabled>"), ADMINISTRATION("<enabled/>"),
     "line 3: element <enabled>: '' is not a valid value of the atomic type 'xs:boolean'."},
    {ADMINISTRATION("<domain_id>3</domain_id>"), ADMINISTRATION("<domain_id>three</domain_id>"),
     "line 3: element <domain_id>: 'three' is not a valid value of the atomic type "
     "'nonNegativeLong'."},
    {ADMINISTRATION("<distributed_logger/>"),
     ADMINISTRATION("<distributed_logger>1</distributed_logger>"),
     "line 3: element <distributed_logger>: Character content other than whitespace is not allowed "
     "because the content type is 'element-only'."},
    {ADMINISTRATION("<domain_participant_qos/>"),
     ADMINISTRATION("<domain_participant_qos>\n<history/></domain_participant_qos>"),
     "line 4: element <history>: This element is not expected."},
    {ADMINISTRATION("<participant_qos base_name='l::p'/>"),
     ADMINISTRATION("<participant_qos base='l::p'/>"),
     "line 3: element <participant_qos>: attribute 'base': The attribute 'base' is not allowed."},
    {ADMINISTRATION("<publisher_qos/>"),
     ADMINISTRATION("<publisher_qos><history/></publisher_qos>"),
     "line 3: element <history>: This element is not expected."},
    {ADMINISTRATION("<subscriber_qos/>"),
     ADMINISTRATION("<subscriber_qos><history/></subscriber_qos>"),
     "line 3: element <history>: This element is not expected."},
    {ADMINISTRATION("<datareader_qos/>"),
     ADMINISTRATION("<datareader_qos><lifespan/></datareader_qos>"),
     "line 3: element <lifespan>: This element is not expected."},
    {ADMINISTRATION("<datawriter_qos/>"),
     ADMINISTRATION("<datawriter_qos><partition/></datawriter_qos>"),
     "line 3: element <partition>: This element is not expected."},
    {ADMINISTRATION("<memory_management><sample_buffer_trim_to_size>1</sample_buffer_trim_to_size>"
                    "<sample_buffer_min_size>4096</sample_buffer_min_size></memory_management>"),
     ADMINISTRATION("<memory_management><sample_buffer_max_size/></memory_management>"),
     "line 3: element <sample_buffer_max_size>: This element is not expected."},
    {ADMINISTRATION("<save_path>a/b.xml</save_path>"),
     ADMINISTRATION("<save_path><file/></save_path>"),
     "line 3: element <save_path>: Element content is not allowed, because the type definition is "
     "simple."},
    {ADMINISTRATION("<save_on_update>false</save_on_update>"),
     ADMINISTRATION("<save_on_update>never</save_on_update>"),
     "line 3: element <save_on_update>: 'never' is not a valid value of the atomic type "
     "'xs:boolean'."},
    {ADMINISTRATION("<reuse_monitoring_participant>1</reuse_monitoring_participant>"),
     ADMINISTRATION("<reuse_monitoring_participant>2</reuse_monitoring_participant>"),
     "line 3: element <reuse_monitoring_participant>: '2' is not a valid value of the atomic type "
     "'xs:boolean'."},
    // In any number and any order
    {ADMINISTRATION("<save_path/><enabled>1</enabled><enabled>0</enabled>"),
     ADMINISTRATION("<request_topic/>"),
     "line 3: element <request_topic>: This element is not expected."},
    {SERVICE("<administration/>"), SERVICE("<administration shared_participant_ref='p'/>"),
     "line 2: element <administration>: attribute 'shared_participant_ref': The attribute "
     "'shared_participant_ref' is not allowed."},
};

TEST_F(SchemaTest, knowsTheSettingsOfAdministration)
{
    check(kAdministration);
}

const Documents kMonitoring[] = {
    {MONITORING("<enabled>false</enabled>"), MONITORING("<enabled>no</enabled>"),
     "line 3: element <enabled>: 'no' is not a valid value of the atomic type 'xs:boolean'."},
    {MONITORING("<domain_id>0</domain_id>"), MONITORING("<domain_id>-3</domain_id>"),
     "line 3: element <domain_id>: [facet 'minInclusive'] The value '-3' is less than the minimum "
     "value allowed ('0')."},
    {MONITORING("<ignore_initialization_failure>0</ignore_initialization_failure>"),
     MONITORING("<ignore_initialization_failure>-1</ignore_initialization_failure>"),
     "line 3: element <ignore_initialization_failure>: '-1' is not a valid value of the atomic "
     "type 'xs:boolean'."},
    {MONITORING("<status_publication_period><sec>5</sec></status_publication_period>"),
     MONITORING("<status_publication_period>5</status_publication_period>"),
     "line 3: element <status_publication_period>: Character content other than whitespace is not "
     "allowed because the content type is 'element-only'."},
    {MONITORING("<statistics_sampling_period/>"),
     MONITORING("<statistics_sampling_period><msec>5</msec></statistics_sampling_period>"),
     "line 3: element <msec>: This element is not expected."},
    {MONITORING("<domain_participant_qos/>"),
     MONITORING("<domain_participant_qos>p</domain_participant_qos>"),
     "line 3: element <domain_participant_qos>: Character content other than whitespace is not "
     "allowed because the content type is 'element-only'."},
    {MONITORING("<participant_qos/>"), MONITORING("<participant_qos topic_filter='*'/>"),
     "line 3: element <participant_qos>: attribute 'topic_filter': The attribute 'topic_filter' is "
     "not allowed."},
    {MONITORING("<publisher_qos/>"), MONITORING("<publisher_qos topic_filter='*'/>"),
     "line 3: element <publisher_qos>: attribute 'topic_filter': The attribute 'topic_filter' is "
     "not allowed."},
    {MONITORING("<datawriter_qos topic_filter='*'/>"), MONITORING("<datareader_qos/>"),
     "line 3: element <datareader_qos>: This element is not expected."},
    // In any number and any order
    {MONITORING("<publisher_qos/><domain_id>1</domain_id><domain_id>1</domain_id>"),
     MONITORING("<historical_statistics/>"),
     "line 3: element <historical_statistics>: This element is not expected."},
};

TEST_F(SchemaTest, knowsTheSettingsOfMonitoring)
{
    check(kMonitoring);
}

const Documents kEntityMonitoring[] = {
    {SERVICE("<entity_monitoring><enabled>1</enabled><status_publication_period/>"
             "<statistics_sampling_period/></entity_monitoring>"),
     SERVICE("<entity_monitoring><status_publication_period/>\n<enabled>1</enabled></"
             "entity_monitoring>"),
     "line 3: element <enabled>: This element is not expected."},
    {SERVICE(
         "<entity_monitoring><statistics_sampling_period><sec>1</sec></statistics_sampling_period>"
         "</entity_monitoring>"),
     SERVICE("<entity_monitoring><statistics_sampling_period/>\n<status_publication_period/>"
             "</entity_monitoring>"),
     "line 3: element <status_publication_period>: This element is not expected."},
    {SERVICE("<entity_monitoring/>"),
     SERVICE("<entity_monitoring>\n<historical_statistics/></entity_monitoring>"),
     "line 3: element <historical_statistics>: This element is not expected."},
};

TEST_F(SchemaTest, knowsTheSettingsOfEntityMonitoring)
{
    check(kEntityMonitoring);
}

const Documents kDomainRoutes[] = {
    {"<domain_route name='d' enabled='0'/>", "<domain_route id='d'/>",
     "line 1: element <domain_route>: attribute 'id': The attribute 'id' is not allowed."},
    {"<domain_route><entity_monitoring/><session/><participant name='p'/><connection name='c' "
     "plugin_name='l::p'/><session/><participant name='q'/></domain_route>",
     "<domain_route><session/>\n<entity_monitoring/></domain_route>",
     "line 2: element <entity_monitoring>: This element is not expected."},
    {"<domain_route/>", "<domain_route>\n<topic_route/></domain_route>",
     "line 2: element <topic_route>: This element is not expected."},
    {"<participant name='p'><register_type name='T'/><domain_id>1</domain_id><memory_management/>"
     "<domain_participant_qos/><participant_qos/><register_type name='U'/><registered_type "
     "name='V' "
     "type_name='m::V'/><registered_type name='W' type_name='W'/></participant>",
     "<participant name='p'><registered_type name='V' type_name='V'/>\n<domain_id>1</domain_id>"
     "</participant>",
     "line 2: element <domain_id>: This element is not expected."},
    {"<participant name='p'/>", "<participant/>",
     "line 1: element <participant>: The attribute 'name' is required but missing."},
    {"<participant name='p'><registered_type name='V' type_name='V'/></participant>",
     "<participant name='p'>\n<registered_type name='V'/></participant>",
     "line 2: element <registered_type>: The attribute 'type_name' is required but missing."},
    {"<participant name='p'><registered_type name='V' type_name='V'/></participant>",
     "<participant name='p'>\n<registered_type type_name='V'/></participant>",
     "line 2: element <registered_type>: The attribute 'name' is required but missing."},
    {"<participant name='p'/>", "<participant name='p'>\n<process_discovery_events/></participant>",
     "line 2: element <process_discovery_events>: This element is not expected."},
    {"<participant name='p'/>", "<participant name='p' plugin_name='l::p'/>",
     "line 1: element <participant>: attribute 'plugin_name': The attribute 'plugin_name' is not "
     "allowed."},
    {"<connection name='c' plugin_name='l::p'><property/><register_type name='T'/><register_type "
     "name='U'/>"
     "<registered_type name='V' type_name='V'/></connection>",
     "<connection name='c' plugin_name='l::p'><register_type name='T'/>\n<property/></connection>",
     "line 2: element <property>: This element is not expected."},
    {"<connection name='c' plugin_name='l::p'/>", "<connection name='c'/>",
     "line 1: element <connection>: The attribute 'plugin_name' is required but missing."},
    {"<connection name='c' plugin_name='l::p'/>", "<connection plugin_name='l::p'/>",
     "line 1: element <connection>: The attribute 'name' is required but missing."},
    {"<connection name='c' plugin_name='l::p'/>",
     "<connection name='c' plugin_name='l::p'>\n<domain_id>1</domain_id></connection>",
     "line 2: element <domain_id>: This element is not expected."},
};

TEST_F(SchemaTest, knowsDomainRoutesAndTheirConnections)
{
    check(kDomainRoutes);
}

const Documents kSessions[] = {
    {"<session><entity_monitoring/><thread_pool/><auto_configure_publisher_qos>1"
     "</auto_configure_publisher_qos><auto_configure_subscriber_qos>1</"
     "auto_configure_subscriber_qos>"
     "<periodic_action/><property/><publisher_qos/><subscriber_qos/><route/><auto_route/"
     "><topic_route/>"
     "<auto_topic_route/><route/></session>",
     "<session><thread_pool/>\n<entity_monitoring/></session>",
     "line 2: element <entity_monitoring>: This element is not expected."},
    {"<session><subscriber_qos/><publisher_qos/></session>",
     "<session><subscriber_qos/><publisher_qos/>\n<subscriber_qos/></session>",
     "line 2: element <subscriber_qos>: This element is not expected."},
    {"<session><subscriber_qos/></session>", "<session><subscriber_qos/>\n<property/></session>",
     "line 2: element <property>: This element is not expected."},
    {"<session><publisher_qos/></session>", "<session><publisher_qos/>\n<publisher_qos/></session>",
     "line 2: element <publisher_qos>: This element is not expected."},
    {"<session><auto_configure_publisher_qos/></session>",
     "<session><auto_configure_subscriber_qos/>\n<auto_configure_publisher_qos/></session>",
     "line 2: element <auto_configure_publisher_qos>: This element is not expected."},
    {"<session><periodic_action/></session>", "<session><property/>\n<periodic_action/></session>",
     "line 2: element <periodic_action>: This element is not expected."},
    {"<session><thread_pool/></session>", "<session>\n<thread/></session>",
     "line 2: element <thread>: This element is not expected."},
    {"<session name='s' enabled='1'><route/></session>", "<session><route/>\n<property/></session>",
     "line 2: element <property>: This element is not expected."},
};

TEST_F(SchemaTest, knowsTheSettingsOfSessions)
{
    check(kSessions);
}

} // namespace
} // namespace zuv_test
