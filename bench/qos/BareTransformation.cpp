#include "BareTransformation.h"

#include <libxml/parser.h>
#include <libxslt/transform.h>
#include <libxslt/xsltInternals.h>

#include "support/Ratio.h"

namespace bench
{
namespace
{

xmlDoc *parse(const std::string &text)
{
    xmlDoc *const document =
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr,
                      XML_PARSE_NOBLANKS | XML_PARSE_NONET | XML_PARSE_BIG_LINES);
    if (document == nullptr) {
        giveUp("a document cannot be read");
    }
    return document;
}

} // namespace

class BareTransformation::Impl
{
public:
    Impl(const std::string &stylesheet, const std::string &element, const char *const *parameters)
        : stylesheet_(xsltParseStylesheetDoc(parse(stylesheet))), element_(parse(element)),
          parameters_(parameters)
    {
        if (stylesheet_ == nullptr) {
            giveUp("the stylesheet cannot be read");
        }
    }
    ~Impl()
    {
        xmlFreeDoc(element_);
        xsltFreeStylesheet(stylesheet_);
    }
    Impl(const Impl &) = delete;
    Impl &operator=(const Impl &) = delete;

    void run()
    {
        xmlDoc *const result =
            xsltApplyStylesheet(stylesheet_, element_, const_cast<const char **>(parameters_));
        if (result == nullptr) {
            giveUp("the stylesheet cannot be applied");
        }
        xmlChar *text = nullptr;
        int length = 0;
        xmlDocDumpMemory(result, &text, &length);
        xmlFreeDoc(parse(std::string(reinterpret_cast<const char *>(text), length)));
        xmlFree(text);
        xmlFreeDoc(result);
    }

private:
    xsltStylesheet *stylesheet_;
    xmlDoc *element_;
    const char *const *parameters_;
};

BareTransformation::BareTransformation(const std::string &stylesheet, const std::string &element,
                                       const char *const *parameters)
    : impl_(std::make_unique<Impl>(stylesheet, element, parameters))
{
}

BareTransformation::~BareTransformation() = default;

void BareTransformation::run()
{
    impl_->run();
}

} // namespace bench
