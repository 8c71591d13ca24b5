// Routes and ports have tables of their own: which child stands where, and in which order.
#include <vector>

#include "SchemaTest.h"

namespace zuv_test
{
namespace
{

using std::string;
using std::string_view;

struct Child {
    const char *element; // the least that is valid
    string_view marks;   // one for each parent, in their order: 'x' where it may stand
};

string_view tagOf(string_view element)
{
    return element.substr(1, element.find_first_of(" />") - 1);
}

class SchemaTables : public SchemaTest
{
protected:
    string in(const string &open, const string &content) const
    {
        return open + "\n" + content + "</" + string(tagOf(open)) + ">";
    }
    void expectRefused(const string &document, string_view element, int line)
    {
        EXPECT_FALSE(isValid(document)) << document;
        const string report = "!accept text, line " + std::to_string(line) + ": element <" +
                              string(element) + ">: This element is not expected.";
        EXPECT_EQ(onlyLine().substr(0, report.size()), report) << document;
    }
};

const char *const kRoutes[] = {"<route name='r' enabled='1'>", "<topic_route name='r' enabled='1'>",
                               "<auto_route name='r' enabled='1'>",
                               "<auto_topic_route name='r' enabled='1'>"};
// Updates have no attributes. Those of templates keep their ports.
const char *const kRouteUpdates[] = {"<route_update>", "<topic_route_update>",
                                     "<auto_route_update>", "<auto_topic_route_update>"};

const Child kSettings[] = {
    {"<entity_monitoring/>", "xxxx"},
    {"<route_types>0</route_types>", "xxxx"},
    {"<publish_with_original_info>1</publish_with_original_info>", " x x"},
    {"<publish_with_original_timestamp>1</publish_with_original_timestamp>", "xxxx"},
    {"<propagate_dispose>1</propagate_dispose>", " x x"},
    {"<propagate_unregister>1</propagate_unregister>", " x x"},
    {"<topic_query_proxy/>", " x x"},
    {"<filter_propagation/>", " x x"},
    {"<periodic_action/>", "xxxx"},
    {"<enable_data_on_inputs>0</enable_data_on_inputs>", "xxxx"},
    {"<processor plugin_name='l::p'><property/></processor>", "xxxx"},
};
const Child kPorts[] = {
    {"<dds_input participant='p'/>", "x x "}, {"<input connection='c'/>", "x x "},
    {"<input participant='p'/>", " x x"},     {"<dds_output participant='p'/>", "x x "},
    {"<output connection='c'/>", "x x "},     {"<output participant='p'/>", " x x"},
};

TEST_F(SchemaTables, haveEachSettingOfARouteWhereItBelongs)
{
    for (const auto &parents : {kRoutes, kRouteUpdates}) {
        for (std::size_t index = 0; index < 4; ++index) {
            string all;
            for (const auto &[element, marks] : kSettings) {
                if (marks[index] == 'x') {
                    EXPECT_TRUE(isValid(in(parents[index], element))) << parents[index] << element;
                    all += element;
                } else {
                    expectRefused(in(parents[index], element), tagOf(element), 2);
                }
            }
            EXPECT_TRUE(isValid(in(parents[index], all)));
        }
    }
}

TEST_F(SchemaTables, haveTheSettingsOfARouteInTheirOrderAndOnce)
{
    for (const auto &parents : {kRoutes, kRouteUpdates}) {
        for (std::size_t index = 0; index < 4; ++index) {
            std::vector<string> present;
            for (const auto &[element, marks] : kSettings) {
                if (marks[index] == 'x') {
                    present.emplace_back(element);
                }
            }
            for (std::size_t at = 0; at + 1 < present.size(); ++at) {
                expectRefused(in(parents[index], present[at + 1] + "\n" + present[at]),
                              tagOf(present[at]), 3);
                expectRefused(in(parents[index], present[at] + "\n" + present[at]),
                              tagOf(present[at]), 3);
            }
        }
    }
}

TEST_F(SchemaTables, haveEachPortWhereItBelongs)
{
    for (std::size_t index = 0; index < 4; ++index) {
        for (const auto &[element, marks] : kPorts) {
            const string document = in(kRoutes[index], element);
            EXPECT_EQ(isValid(document), marks[index] == 'x') << document;
            log.clear();
        }
    }
    // An update of a route has no ports, that of a template keeps them.
    expectRefused(in("<route_update>", "<input connection='c'/>"), "input", 2);
    expectRefused(in("<topic_route_update>", "<output participant='p'/>"), "output", 2);
    EXPECT_TRUE(
        isValid("<auto_route_update><dds_input participant='p'/><output/></auto_route_update>"));
    EXPECT_TRUE(
        isValid("<auto_topic_route_update><input><auto_configure_qos>1</auto_configure_qos></input>"
                "</auto_topic_route_update>"));
}

TEST_F(SchemaTables, haveAnyNumberOfPortsInARouteAndOneOfEachSideInATemplate)
{
    EXPECT_TRUE(isValid(
        "<route><output/><input/><dds_output/><dds_input participant='p'/><input/></route>"));
    EXPECT_TRUE(isValid("<topic_route><output/><input participant='p'/><output/></topic_route>"));
    EXPECT_TRUE(isValid("<auto_route><output/></auto_route>"));
    EXPECT_TRUE(isValid("<auto_topic_route><input/></auto_topic_route>"));
    expectRefused("<auto_route><input/>\n<dds_input/></auto_route>", "dds_input", 2);
    expectRefused("<auto_route><output/>\n<input/></auto_route>", "input", 2);
    expectRefused("<auto_route><dds_output/>\n<output/></auto_route>", "output", 2);
    expectRefused("<auto_topic_route><input/>\n<input/></auto_topic_route>", "input", 2);
    expectRefused("<auto_topic_route><output/>\n<input/></auto_topic_route>", "input", 2);
    expectRefused("<topic_route><output/>\n<processor/></topic_route>", "processor", 2);
}

// The tags that are valid on their own; the last two have the same settings.
const char *const kPortRoots[] = {
    "route_input",      "route_output",           "topic_route_input",       "topic_route_output",
    "auto_route_input", "auto_topic_route_input", "auto_topic_route_output", "auto_route_output"};

const Child kPortSettings[] = {
    {"<entity_monitoring/>", "xxxxxxxx"},
    {"<stream_name>s</stream_name>", "xx      "},
    {"<topic_name>t</topic_name>", "  xx    "},
    {"<registered_type_name>T</registered_type_name>", "xxxx    "},
    {"<allow_stream_name_filter>*</allow_stream_name_filter>", "    x  x"},
    {"<deny_stream_name_filter>*</deny_stream_name_filter>", "    x  x"},
    {"<allow_topic_name_filter>*</allow_topic_name_filter>", "     xx "},
    {"<deny_topic_name_filter>*</deny_topic_name_filter>", "     xx "},
    {"<allow_registered_type_name_filter>*</allow_registered_type_name_filter>", "    xxxx"},
    {"<deny_registered_type_name_filter>*</deny_registered_type_name_filter>", "    xxxx"},
    {"<creation_mode>IMMEDIATE</creation_mode>", "xxxxxxxx"},
    {"<property/>", "xx  x  x"},
    {"<propagate_dispose>0</propagate_dispose>", "  x     "},
    {"<propagate_unregister>0</propagate_unregister>", "  x     "},
    {"<on_delete_wait_for_ack_timeout/>", "   x  x "},
    {"<datareader_qos/>", "  x  x  "},
    {"<datawriter_qos/>", "   x  x "},
    {"<auto_configure_qos>1</auto_configure_qos>", "  xx xx "},
    {"<content_filter/>", "  x  x  "},
    {"<transformation plugin_name='l::t'/>", "xxxx    "},
};

TEST_F(SchemaTables, haveEachSettingOfAPortWhereItBelongsInAnyOrder)
{
    for (std::size_t index = 0; index < std::size(kPortRoots); ++index) {
        const string tag = kPortRoots[index];
        const string attributes = tag == "topic_route_input" ? " participant='p'" : "";
        for (const string &open : {"<" + tag + attributes + ">", "<" + tag + "_update>"}) {
            string forward;
            string backward;
            for (const auto &[element, marks] : kPortSettings) {
                if (marks[index] == 'x') {
                    forward = forward + element;
                    backward = element + backward;
                    expectRefused(in(open, element + string("\n") + element), tagOf(element), 3);
                } else {
                    expectRefused(in(open, element), tagOf(element), 2);
                }
            }
            EXPECT_TRUE(isValid(in(open, forward))) << open << forward;
            EXPECT_TRUE(isValid(in(open, backward))) << open << backward;
        }
    }
}

TEST_F(SchemaTables, haveTheAttributesOfEachPort)
{
    const struct {
        const char *tag;
        const char *reference;
        const char *other;
    } ports[] = {
        {"route_input", "connection", "participant"},
        {"route_output", "connection", "participant"},
        {"topic_route_input", "participant", "connection"},
        {"topic_route_output", "participant", "connection"},
        {"auto_route_input", "connection", "participant"},
        {"auto_route_output", "connection", "participant"},
        {"auto_topic_route_input", "participant", "connection"},
        {"auto_topic_route_output", "participant", "connection"},
    };
    for (const auto &[tag, reference, other] : ports) {
        const string begin = "<" + string(tag);
        const string refused = "!accept text, line 1: element <" + string(tag);
        EXPECT_TRUE(isValid(begin + " name='n' " + reference + "='c'/>")) << tag;
        EXPECT_EQ(isValid(begin + "/>"), tag != string("topic_route_input")) << tag;
        log.clear();
        EXPECT_FALSE(isValid(begin + " " + reference + "='c' " + other + "='c'/>")) << tag;
        EXPECT_EQ(onlyLine(), refused + ">: attribute '" + other + "': The attribute '" + other +
                                  "' is not allowed.");
        EXPECT_FALSE(isValid(begin + "_update " + reference + "='c'/>")) << tag;
        EXPECT_EQ(onlyLine(), refused + "_update>: attribute '" + reference + "': The attribute '" +
                                  reference + "' is not allowed.");
    }
}

const Documents kParts[] = {
    {"<topic_route_input participant='p'><content_filter><expression>x</expression><parameter>1"
     "</parameter><parameter>2</parameter></content_filter></topic_route_input>",
     "<topic_route_input participant='p'><content_filter><parameter>1</parameter>\n<expression>x"
     "</expression></content_filter></topic_route_input>",
     "line 2: element <expression>: This element is not expected."},
    {"<topic_route_input participant='p'><content_filter><expression_parameters/></content_filter>"
     "</topic_route_input>",
     "<topic_route_input participant='p'><content_filter><parameter>1</parameter>\n"
     "<expression_parameters/></content_filter></topic_route_input>",
     "line 2: element <expression_parameters>: This element is not expected."},
    {"<topic_route_input participant='p'><content_filter><expression>x</expression>"
     "<expression_parameters><element>1</element></expression_parameters></content_filter>"
     "</topic_route_input>",
     "<topic_route_input participant='p'><content_filter><expression_parameters/>\n"
     "<expression_parameters/></content_filter></topic_route_input>",
     "line 2: element <expression_parameters>: This element is not expected."},
    {"<topic_route_input participant='p'/>", "<topic_route_input/>",
     "line 1: element <topic_route_input>: The attribute 'participant' is required but missing."},
    {"<input_transformation plugin_name='l::t'><property/><output_connection_name>c"
     "</output_connection_name><output_type_name>T</output_type_name></input_transformation>",
     "<input_transformation>\n<input_type_name>T</input_type_name></input_transformation>",
     "line 2: element <input_type_name>: This element is not expected."},
    {"<output_transformation plugin_name='l::t'><property/><input_connection_name>c"
     "</input_connection_name><input_type_name>T</input_type_name></output_transformation>",
     "<output_transformation>\n<output_type_name>T</output_type_name></output_transformation>",
     "line 2: element <output_type_name>: This element is not expected."},
    {"<input_transformation_update name='t' "
     "plugin_name='l::t'><property/></input_transformation_update>",
     "<input_transformation_update plugin='l::t'/>",
     "line 1: element <input_transformation_update>: attribute 'plugin': The attribute 'plugin' is "
     "not "
     "allowed."},
    {"<output_transformation_update "
     "plugin_name='l::t'><input_type_name/></output_transformation_update>",
     "<output_transformation_update enabled='1'/>",
     "line 1: element <output_transformation_update>: attribute 'enabled': The attribute 'enabled' "
     "is not allowed."},
    {"<route><processor name='p'/></route>", "<route>\n<processor enabled='1'/></route>",
     "line 2: element <processor>: attribute 'enabled': The attribute 'enabled' is not allowed."},
    {"<route><processor><property/></processor></route>",
     "<route><processor>\n<element/></processor></route>",
     "line 2: element <element>: This element is not expected."},
    {"<topic_route><topic_query_proxy><enabled>1</enabled></topic_query_proxy></topic_route>",
     "<topic_route>\n<topic_query_proxy enabled='1'/></topic_route>",
     "line 2: element <topic_query_proxy>: attribute 'enabled': The attribute 'enabled' is not "
     "allowed."},
    {"<topic_route><filter_propagation><max_event_delay/><max_event_count>5</max_event_count>"
     "<enabled>1</enabled></filter_propagation></topic_route>",
     "<topic_route><filter_propagation>\n<max_event_delay>5</max_event_delay></filter_propagation>"
     "</topic_route>",
     "line 2: element <max_event_delay>: Character content other than whitespace is not allowed "
     "because the content type is 'element-only'."},
};

TEST_F(SchemaTest, knowsWhatRoutesAndPortsHold)
{
    check(kParts);
}

const Documents kUpdates[] = {
    {"<brel_service_update><administration><save_on_update>1</save_on_update><save_path/></"
     "administration>"
     "<monitoring><publisher_qos/><enabled>1</enabled></monitoring><entity_monitoring/>"
     "</brel_service_update>",
     "<brel_service_update><administration>\n<enabled>1</enabled></administration></"
     "brel_service_update>",
     "line 2: element <enabled>: This element is not expected."},
    {"<brel_service_update/>", "<brel_service_update name='s'/>",
     "line 1: element <brel_service_update>: attribute 'name': The attribute 'name' is not "
     "allowed."},
    {"<brel_service_update/>", "<brel_service_update>\n<domain_route/></brel_service_update>",
     "line 2: element <domain_route>: This element is not expected."},
    {"<brel_service_update/>", "<brel_service_update>\n<jvm/></brel_service_update>",
     "line 2: element <jvm>: This element is not expected."},
    {"<domain_route_update><entity_monitoring/></domain_route_update>",
     "<domain_route_update>\n<session/></domain_route_update>",
     "line 2: element <session>: This element is not expected."},
    {"<domain_route_update/>", "<domain_route_update enabled='1'/>",
     "line 1: element <domain_route_update>: attribute 'enabled': The attribute 'enabled' is not "
     "allowed."},
    {"<participant_update><memory_management/><domain_id>3</domain_id><register_type name='T'/>"
     "<domain_participant_qos/><participant_qos/></participant_update>",
     "<participant_update>\n<registered_type name='T' type_name='T'/></participant_update>",
     "line 2: element <registered_type>: This element is not expected."},
    {"<participant_update/>", "<participant_update name='p'/>",
     "line 1: element <participant_update>: attribute 'name': The attribute 'name' is not "
     "allowed."},
    {"<connection_update><property/><register_type name='T'/></connection_update>",
     "<connection_update>\n<registered_type name='T' type_name='T'/></connection_update>",
     "line 2: element <registered_type>: This element is not expected."},
    {"<connection_update/>", "<connection_update plugin_name='l::p'/>",
     "line 1: element <connection_update>: attribute 'plugin_name': The attribute 'plugin_name' is "
     "not allowed."},
    {"<session_update><entity_monitoring/><thread_pool/><periodic_action/><property/"
     "><subscriber_qos/>"
     "<publisher_qos/></session_update>",
     "<session_update>\n<topic_route/></session_update>",
     "line 2: element <topic_route>: This element is not expected."},
    {"<session_update/>", "<session_update enabled='1'/>",
     "line 1: element <session_update>: attribute 'enabled': The attribute 'enabled' is not "
     "allowed."},
    {"<route_update/>", "<route_update name='r'/>",
     "line 1: element <route_update>: attribute 'name': The attribute 'name' is not allowed."},
    {"<topic_route_update/>", "<topic_route_update enabled='1'/>",
     "line 1: element <topic_route_update>: attribute 'enabled': The attribute 'enabled' is not "
     "allowed."},
    {"<auto_route_update/>", "<auto_route_update enabled='1'/>",
     "line 1: element <auto_route_update>: attribute 'enabled': The attribute 'enabled' is not "
     "allowed."},
    {"<auto_topic_route_update/>", "<auto_topic_route_update name='r'/>",
     "line 1: element <auto_topic_route_update>: attribute 'name': The attribute 'name' is not "
     "allowed."},
};

TEST_F(SchemaTest, limitsUpdatesToSettings)
{
    check(kUpdates);
}

} // namespace
} // namespace zuv_test
