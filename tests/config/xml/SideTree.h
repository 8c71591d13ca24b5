// The tree of QoS libraries as a text, with everything that it holds.
#ifndef ZUV_TESTS_CONFIG_XML_SIDE_TREE_H
#define ZUV_TESTS_CONFIG_XML_SIDE_TREE_H

#include <string>

#include "platform/ddsxml/QosPrinter.hpp"
#include "platform/ddsxml/XmlObject.hpp"

namespace zuv_test
{

inline std::string describe(const ZUVXMLObject &object)
{
    std::string text(object.tag);
    for (const auto *part : {&object.name, &object.file, &object.text}) {
        text += " '" + std::string(*part) + "'";
    }
    text += " " + std::to_string(object.line);
    for (const ZUVXMLObject::Attribute &attribute : object.attributes) {
        text += " " + std::string(attribute.name) + "=" + std::string(attribute.value);
    }
    if (object.qos != nullptr) {
        text += zuv::ddsxml::printQos(object.qos->table(), object.qos->record());
    }
    if (const ZUV_DL_Options *const options = object.loggerOptions.get()) {
        text += " " + std::to_string(options->enabled) + std::to_string(options->level) +
                std::to_string(options->queueSize) + std::to_string(options->localOutput);
    }
    text += " " + std::to_string(object.children.size()) + "(";
    for (const ZUVXMLObject *child = object.firstChild; child != nullptr; child = child->next) {
        text += describe(*child);
    }
    return text + ")\n";
}

} // namespace zuv_test

#endif
