// A tree of QoS libraries for each test.
#ifndef ZUV_TESTS_PLATFORM_DDSXML_QOS_TREE_H
#define ZUV_TESTS_PLATFORM_DDSXML_QOS_TREE_H

#include <string>

#include "XmlTree.h"
#include "platform/ddsxml/XmlQos.h"
#include "support/LogCapture.h"

namespace zuv_test
{

class QosTree : public XmlTree
{
protected:
    // Let a document join the tree; false if it is refused.
    bool add(const std::string &libraries)
    {
        ZUVXMLObject *const root =
            ZUVXMLParser_parseFromString(parser_, root_, ("<dds>" + libraries + "</dds>").c_str());
        root_ = root == nullptr ? root_ : root;
        return root != nullptr;
    }

    // Why it is refused; "" if it is not.
    std::string refusal(const std::string &libraries)
    {
        LogCapture log;
        if (add(libraries)) {
            return "";
        }
        return log.lines().empty() ? "no report" : log.lines().front().text;
    }

    ZUVXMLObject *element(const std::string &path) const
    {
        return DDS_XMLObject_lookup(root_, path.c_str());
    }

    // The reader QoS of a profile, or of one in a library by its name.
    const DDS_DataReaderQos *readerQos(const std::string &path) const
    {
        ZUVXMLObject *const found = element(path);
        if (found == nullptr) {
            return nullptr;
        }
        ZUVXMLObject *const inner = ZUVXMLObject_getFirstChildWithTag(found, "datareader_qos");
        return DDS_XMLDataReaderQos_get_dds_qos(inner != nullptr ? inner : found);
    }

    static std::string library(const std::string &name, const std::string &content)
    {
        return "<qos_library name=\"" + name + "\">" + content + "</qos_library>";
    }
    static std::string profile(const std::string &attributes, const std::string &content)
    {
        return "<qos_profile " + attributes + ">" + content + "</qos_profile>";
    }
    // A reader QoS with that depth of history.
    static std::string reader(const std::string &attributes, int depth)
    {
        return "<datareader_qos " + attributes + "><history><depth>" + std::to_string(depth) +
               "</depth></history></datareader_qos>";
    }
};

} // namespace zuv_test

#endif
