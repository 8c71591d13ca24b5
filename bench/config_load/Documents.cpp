#include "Documents.h"

namespace bench
{
namespace
{

struct Shape {
    const char *start;
    const char *routeStart;  // before the number
    const char *routeMiddle; // behind it
    const char *inputType;   // behind the number of the topic
    const char *end;         // of the route, behind the number of the topic
    const char *close;
};

std::string make(const Shape &shape, int routeCount)
{
    std::string text = shape.start;
    for (int index = 0; index < routeCount; ++index) {
        const std::string number = std::to_string(index);
        text += shape.routeStart + number + shape.routeMiddle + number + shape.inputType + number +
                shape.end;
    }
    return text + shape.close;
}

} // namespace

std::string makeConfiguration(int routeCount)
{
    return make({"<?xml version=\"1.0\"?>\n"
                 "<dds version=\"7.7.0\">\n"
                 "    <brel_service name=\"S\" enabled=\"true\">\n"
                 "        <domain_route name=\"dr\">\n"
                 "            <participant name=\"p1\">\n"
                 "                <domain_id>1</domain_id>\n"
                 "            </participant>\n"
                 "            <participant name=\"p2\">\n"
                 "                <domain_id>2</domain_id>\n"
                 "            </participant>\n"
                 "            <session name=\"s\">\n",
                 "                <topic_route name=\"r",
                 "\" enabled=\"true\">\n"
                 "                    <route_types>true</route_types>\n"
                 "                    <input participant=\"p1\">\n"
                 "                        <topic_name>T",
                 "</topic_name>\n"
                 "                        <registered_type_name>ShapeType</registered_type_name>\n"
                 "                    </input>\n"
                 "                    <output participant=\"p2\">\n"
                 "                        <topic_name>U",
                 "</topic_name>\n"
                 "                        <registered_type_name>ShapeType</registered_type_name>\n"
                 "                    </output>\n"
                 "                </topic_route>\n",
                 "            </session>\n"
                 "        </domain_route>\n"
                 "    </brel_service>\n"
                 "</dds>\n"},
                routeCount);
}

std::string makeData(int routeCount)
{
    return make({"<dds xmlns=\"urn:bench\">\n"
                 "    <version>7.7.0</version>\n"
                 "    <brel_service>\n"
                 "        <name>S</name>\n"
                 "        <enabled>true</enabled>\n"
                 "        <domain_route>\n"
                 "            <name>dr</name>\n"
                 "            <participant>\n"
                 "                <name>p1</name>\n"
                 "                <domain_id>1</domain_id>\n"
                 "            </participant>\n"
                 "            <participant>\n"
                 "                <name>p2</name>\n"
                 "                <domain_id>2</domain_id>\n"
                 "            </participant>\n"
                 "            <session>\n"
                 "                <name>s</name>\n",
                 "                <topic_route>\n"
                 "                    <name>r",
                 "</name>\n"
                 "                    <enabled>true</enabled>\n"
                 "                    <route_types>true</route_types>\n"
                 "                    <input>\n"
                 "                        <participant>p1</participant>\n"
                 "                        <topic_name>T",
                 "</topic_name>\n"
                 "                        <registered_type_name>ShapeType</registered_type_name>\n"
                 "                    </input>\n"
                 "                    <output>\n"
                 "                        <participant>p2</participant>\n"
                 "                        <topic_name>U",
                 "</topic_name>\n"
                 "                        <registered_type_name>ShapeType</registered_type_name>\n"
                 "                    </output>\n"
                 "                </topic_route>\n",
                 "            </session>\n"
                 "        </domain_route>\n"
                 "    </brel_service>\n"
                 "</dds>\n"},
                routeCount);
}

const char *const kDataModel =
    "module bench { yang-version 1.1; namespace 'urn:bench'; prefix b;\n"
    "grouping entity { leaf name { type string { length '1..255'; } }\n"
    "                  leaf enabled { type boolean; default true; } }\n"
    "grouping port { leaf participant { type string; mandatory true; }\n"
    "                leaf topic_name { type string; } leaf registered_type_name { type string; } "
    "}\n"
    "container dds {\n"
    " leaf version { type string { pattern '[0-9]\\.[0-9]\\.[0-9](\\.[0-9])?'; } }\n"
    " list brel_service { key name; uses entity;\n"
    "  list domain_route { key name; uses entity;\n"
    "   list participant { key name; leaf name { type string; } leaf domain_id { type uint32; } }\n"
    "   list session { key name; uses entity;\n"
    "    list topic_route { key name; uses entity; leaf route_types { type boolean; }\n"
    "     container input { uses port; } container output { uses port; } } } } } } }\n";

} // namespace bench
