#include "SchemaTest.h"

namespace zuv_test
{
namespace
{

#define TYPES(CONTENT) "<types>\n" CONTENT "</types>"
#define STRUCT(CONTENT) TYPES("<struct name='S'>\n" CONTENT "</struct>")
#define UNION(CONTENT) TYPES("<union name='U'>\n" CONTENT "</union>")

const Documents kDefinitions[] = {
    {TYPES(""), TYPES("<class name='c'/>"),
     "line 2: element <class>: This element is not expected."},
    {TYPES("<module name='m'><module name='n'><struct name='S'/></module><enum "
           "name='E'><enumerator name='a'/>"
           "</enum></module>"),
     TYPES("<module>\n<struct name='S'/></module>"),
     "line 2: element <module>: The attribute 'name' is required but missing."},
    {TYPES("<module name='m_1'/>"), TYPES("<module name='1m'/>"),
     "line 2: element <module>: attribute 'name': [facet 'pattern'] The value '1m' is not accepted "
     "by the pattern '[A-Za-z_][A-Za-z0-9_]*'."},
    {TYPES("<struct name='S' baseType='::m::B' extensibility='mutable' autoid='hash' "
           "nested='true'/>"),
     TYPES("<struct name='S' extensibility='MUTABLE'/>"),
     "line 2: element <struct>: attribute 'extensibility': [facet 'enumeration'] The value "
     "'MUTABLE' is not an element of the set {'final', 'appendable', 'mutable'}."},
    {TYPES("<valuetype name='V' baseType='W'><member name='a' type='byte'/></valuetype>"),
     TYPES("<valuetype name='V' baseType='a.b'/>"),
     "line 2: element <valuetype>: attribute 'baseType': [facet 'pattern'] The value 'a.b' is not "
     "accepted by the pattern '(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*'."},
    {TYPES("<struct name='S' extensibility='final'/>"), TYPES("<struct/>"),
     "line 2: element <struct>: The attribute 'name' is required but missing."},
    {TYPES("<typedef name='T' type='string' stringMaxLength='16'/>"), TYPES("<typedef name='T'/>"),
     "line 2: element <typedef>: The attribute 'type' is required but missing."},
    {TYPES("<const name='C' type='int32' value='5'/>"), TYPES("<const name='C' type='int32'/>"),
     "line 2: element <const>: The attribute 'value' is required but missing."},
    {TYPES("<const name='C' type='nonBasic' nonBasicTypeName='E' value='a'/>"),
     TYPES("<const type='int32' value='5'/>"),
     "line 2: element <const>: The attribute 'name' is required but missing."},
    {TYPES("<enum name='E' bitBound='16' extensibility='final'><enumerator name='a' "
           "value='-1'/><enumerator "
           "name='b' defaultLiteral='1'/></enum>"),
     TYPES("<enum name='E'/>"), "line 2: element <enum>: Missing child element(s)."},
    {TYPES("<enum name='E' bitBound='32'><enumerator name='a'/></enum>"),
     TYPES("<enum name='E' bitBound='33'><enumerator name='a'/></enum>"),
     "line 2: element <enum>: attribute 'bitBound': [facet 'maxInclusive'] The value '33' is "
     "greater than the maximum value allowed ('32')."},
    {TYPES("<enum name='E'><enumerator name='a' value='2147483647'/></enum>"),
     TYPES("<enum name='E'>\n<enumerator name='a' value='2147483648'/></enum>"),
     "line 3: element <enumerator>: attribute 'value': '2147483648' is not a valid value of the "
     "atomic type 'xs:int'."},
    {UNION("<discriminator type='int32'/><case><caseDiscriminator value='1'/><caseDiscriminator "
           "value='2'/>"
           "<member name='a' type='float64'/></case><case><caseDiscriminator "
           "value='default'/><member name='b' "
           "type='nonBasic' nonBasicTypeName='S' id='7'/></case>"),
     UNION("<discriminator type='int32'/>"), "line 2: element <union>: Missing child element(s)."},
    {UNION("<discriminator type='nonBasic' nonBasicTypeName='E' key='1'/><case><caseDiscriminator "
           "value='a'/>"
           "<member name='a' type='char8'/></case>"),
     UNION("<case><caseDiscriminator value='a'/><member name='a' type='char8'/></case>"),
     "line 3: element <case>: This element is not expected."},
    {UNION("<discriminator type='boolean'/><case><caseDiscriminator value='1'/><member name='a' "
           "type='byte'/>"
           "</case>"),
     UNION("<discriminator type='boolean'/><case>\n<member name='a' type='byte'/></case>"),
     "line 4: element <member>: This element is not expected."},
    {UNION("<discriminator type='uint16'/><case><caseDiscriminator value='1'/><member name='a' "
           "type='byte'/>"
           "</case>"),
     UNION("<discriminator type='uint16'/><case><caseDiscriminator/><member name='a' "
           "type='byte'/></case>"),
     "line 3: element <caseDiscriminator>: The attribute 'value' is required but missing."},
};

TEST_F(SchemaTest, knowsDefinitionsOfTypes)
{
    check(kDefinitions);
}

const Documents kMembers[] = {
    {STRUCT("<member name='a' type='boolean'/><member name='b' type='byte'/><member name='c' "
            "type='char8'/>"
            "<member name='d' type='int16'/><member name='e' type='uint16'/><member name='f' "
            "type='int32'/>"
            "<member name='g' type='uint32'/><member name='h' type='int64'/><member name='i' "
            "type='uint64'/>"
            "<member name='j' type='float32'/><member name='k' type='float64'/><member name='l' "
            "type='string'/>"),
     STRUCT("<member name='a' type='long'/>"),
     "line 3: element <member>: attribute 'type': 'long' is not a valid value of the union type "
     "'allTypeName'."},
    {STRUCT("<member name='a' type='nonBasic' nonBasicTypeName='::m::T'/>"),
     STRUCT("<member name='a' type='nonBasic' nonBasicTypeName='m.T'/>"),
     "line 3: element <member>: attribute 'nonBasicTypeName': [facet 'pattern'] The value 'm.T' is "
     "not accepted by the pattern '(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*'."},
    {STRUCT("<member name='a' type='string' stringMaxLength='255' key='true'/>"),
     STRUCT("<member name='a' type='string' stringMaxLength='0'/>"),
     "line 3: element <member>: attribute 'stringMaxLength': [facet 'pattern'] The value '0' is "
     "not accepted by the pattern '(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*'."},
    {STRUCT("<member name='a' type='string' stringMaxLength='-1' optional='1'/>"),
     STRUCT("<member name='a' type='string' stringMaxLength='-2'/>"),
     "line 3: element <member>: attribute 'stringMaxLength': [facet 'pattern'] The value '-2' is "
     "not accepted by the pattern '(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*'."},
    {STRUCT("<member name='a' type='byte' sequenceMaxLength='m::LENGTH'/>"),
     STRUCT("<member name='a' type='byte' sequenceMaxLength='1.5'/>"),
     "line 3: element <member>: attribute 'sequenceMaxLength': [facet 'pattern'] The value '1.5' "
     "is not accepted by the pattern '(::)?[A-Za-z_][A-Za-z0-9_]*(::[A-Za-z_][A-Za-z0-9_]*)*'."},
    {STRUCT("<member name='a' type='byte' arrayDimensions='2, 3,m::LENGTH'/>"),
     STRUCT("<member name='a' type='byte' arrayDimensions='2,,3'/>"),
     "line 3: element <member>: attribute 'arrayDimensions': [facet 'pattern'] The value '2,,3' is "
     "not accepted by the pattern '([1-9][0-9]*|[A-Za-z_:][A-Za-z0-9_:]*)( ?, "
     "?([1-9][0-9]*|[A-Za-z_:][A-Za-z0-9_:]*))*'."},
    {STRUCT("<member name='a' type='byte' id='268435455'/>"),
     STRUCT("<member name='a' type='byte' id='268435456'/>"),
     "line 3: element <member>: attribute 'id': [facet 'maxInclusive'] The value '268435456' is "
     "greater than the maximum value allowed ('268435455')."},
    {STRUCT("<member name='a' type='byte' key='0'/>"), STRUCT("<member type='byte'/>"),
     "line 3: element <member>: The attribute 'name' is required but missing."},
};

TEST_F(SchemaTest, knowsMembersOfTypes)
{
    check(kMembers);
}

#define PARTICIPANT(CONTENT)                                                                       \
    "<dds><domain_participant_library name='l'><domain_participant name='p'>\n" CONTENT            \
    "</domain_participant></domain_participant_library></dds>"
#define DOMAIN(CONTENT)                                                                            \
    "<dds><domain_library name='l'><domain name='d'>\n" CONTENT "</domain></domain_library></dds>"

const Documents kLibraries[] = {
    {DOMAIN("<topic name='t'><topic_qos/></topic><register_type name='T'/>"), DOMAIN("<topic/>"),
     "line 2: element <topic>: The attribute 'name' is required but missing."},
    {DOMAIN(""), DOMAIN("<publisher name='p'/>"),
     "line 2: element <publisher>: This element is not expected."},
    {"<dds><domain_library name='l'><domain name='d' base_name='l::c'/></domain_library></dds>",
     "<dds><domain_library name='l'>\n<domain/></domain_library></dds>",
     "line 2: element <domain>: The attribute 'name' is required but missing."},
    {"<dds><domain_library name='l'/></dds>", "<dds>\n<domain_library/></dds>",
     "line 2: element <domain_library>: The attribute 'name' is required but missing."},
    {"<dds><domain_participant_library name='l'/></dds>",
     "<dds>\n<domain_participant_library/></dds>",
     "line 2: element <domain_participant_library>: The attribute 'name' is required but missing."},
    {"<dds><domain_participant_library name='l'><domain_participant name='p' base_name='l::q' "
     "domain_id='0'/>"
     "</domain_participant_library></dds>",
     "<dds><domain_participant_library "
     "name='l'>\n<domain_participant/></domain_participant_library></dds>",
     "line 2: element <domain_participant>: The attribute 'name' is required but missing."},
    {PARTICIPANT("<domain_participant_qos/><topic name='t'/><register_type name='T'/>"),
     PARTICIPANT("<data_writer name='w' topic_ref='t'/>"),
     "line 2: element <data_writer>: This element is not expected."},
    {PARTICIPANT(
         "<publisher name='p'><publisher_qos/><data_writer name='w' topic_ref='t'><datawriter_qos/>"
         "</data_writer></publisher>"),
     PARTICIPANT("<publisher/>"),
     "line 2: element <publisher>: The attribute 'name' is required but missing."},
    {PARTICIPANT("<subscriber name='s'><subscriber_qos/><data_reader name='r' "
                 "topic_ref='t'><datareader_qos/>"
                 "</data_reader></subscriber>"),
     PARTICIPANT("<subscriber name='s'>\n<data_reader topic_ref='t'/></subscriber>"),
     "line 3: element <data_reader>: The attribute 'name' is required but missing."},
};

TEST_F(SchemaTest, knowsLibrariesOfDomainsAndParticipants)
{
    check(kLibraries);
}

#define LOGGER(CONTENT)                                                                            \
    "<brel_service name='s'><administration><distributed_logger>\n" CONTENT                        \
    "</distributed_logger></administration></brel_service>"

const Documents kLogger[] = {
    {LOGGER("<local_output>0</local_output><queue_size>1</queue_size><level>FATAL</"
            "level><enabled>1</enabled>"),
     LOGGER("<enabled>1</enabled>\n<enabled>1</enabled>"),
     "line 3: element <enabled>: This element is not expected."},
    {LOGGER("<level>INFORMATION</level>"), LOGGER("<level>DEBUG</level>"),
     "line 2: element <level>: [facet 'enumeration'] The value 'DEBUG' is not an element of the "
     "set {'FATAL', 'EXCEPTION', 'WARNING', 'INFORMATION'}."},
    {LOGGER("<level>EXCEPTION</level>"), LOGGER("<level>8</level>"),
     "line 2: element <level>: [facet 'enumeration'] The value '8' is not an element of the set "
     "{'FATAL', 'EXCEPTION', 'WARNING', 'INFORMATION'}."},
    {LOGGER("<queue_size>2147483647</queue_size>"), LOGGER("<queue_size>0</queue_size>"),
     "line 2: element <queue_size>: [facet 'minInclusive'] The value '0' is less than the minimum "
     "value allowed ('1')."},
    {LOGGER("<level>WARNING</level>"), LOGGER("<local_output>none</local_output>"),
     "line 2: element <local_output>: 'none' is not a valid value of the atomic type "
     "'xs:boolean'."},
};

TEST_F(SchemaTest, knowsTheDistributedLogger)
{
    check(kLogger);
}

} // namespace
} // namespace zuv_test
