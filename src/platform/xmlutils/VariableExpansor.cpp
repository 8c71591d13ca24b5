#include "platform/xmlutils/VariableExpansor.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include <libxml/tree.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Parser.h"
#include "platform/xmlutils/Tree.hpp"

using namespace zuv::xmlutils;

namespace
{

constexpr std::string_view kOpen = kVariableMark;

bool isNameCharacter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
           (character >= '0' && character <= '9') ||
           std::string_view("_-.:").find(character) != std::string_view::npos;
}

bool mayHoldReference(std::string_view text)
{
    return text.find(kOpen) != text.npos;
}

// Replaces the references of one text.
class Expansion
{
public:
    Expansion(ZUVXMLUTILSVariableExpansor &sources, const xmlNode *element, Problem &problem)
        : sources_(sources), element_(element), problem_(problem)
    {
    }

    // False with a problem. Throws std::bad_alloc.
    bool run(std::string_view text, HeapString &result)
    {
        result_ = &result;
        return expand(text);
    }

private:
    // The variables whose values are being expanded, from the inside out.
    struct Active {
        std::string_view name;
        const Active *outer;
    };

    bool fail(std::string_view reason)
    {
        problem_.set(element_, reason);
        return false;
    }

    bool expand(std::string_view text)
    {
        while (!text.empty()) {
            const std::size_t open = std::min(text.find(kOpen), text.size());
            if (!put(text.substr(0, open))) {
                return false;
            }
            text.remove_prefix(open);
            const std::string_view reference = referenceAt(text);
            const bool isReplaced = !reference.empty();
            if (isReplaced ? !replace(reference) : !put(text.substr(0, kOpen.size()))) {
                return false;
            }
            text.remove_prefix(std::min(isReplaced ? reference.size() : kOpen.size(), text.size()));
        }
        return true;
    }

    // "$(NAME)" at the start of the text; empty if there is none.
    static std::string_view referenceAt(std::string_view text)
    {
        if (!text.starts_with(kOpen)) {
            return {};
        }
        std::size_t end = kOpen.size();
        while (end < text.size() && isNameCharacter(text[end])) {
            ++end;
        }
        const bool isReference = end > kOpen.size() && end < text.size() && text[end] == ')';
        return isReference ? text.substr(0, end + 1) : std::string_view();
    }

    bool replace(std::string_view reference)
    {
        const HeapString name(reference.substr(kOpen.size(), reference.size() - kOpen.size() - 1));
        for (const Active *active = active_; active != nullptr; active = active->outer) {
            if (active->name == name) {
                return fail(HeapString("variable '") + name + "' leads back to itself");
            }
        }
        if (++count_ > ZUVXMLUTILS_REPLACEMENT_COUNT_MAX) {
            return fail("more than 10000 variables are to be replaced");
            static_assert(ZUVXMLUTILS_REPLACEMENT_COUNT_MAX == 10000);
        }
        // A reference in the document has its own bytes there; one in a value takes time that no byte stands for.
        constexpr std::size_t kReferenceInValue = 64;
        if (active_ != nullptr && !take(kReferenceInValue)) {
            return false;
        }
        const char *const value = valueOf(name.c_str());
        if (value == nullptr) {
            warn(name);
            return put(reference);
        }
        if (!take(std::strlen(value))) {
            return false;
        }
        if (!mayHoldReference(value)) {
            return put(value);
        }
        // A copy, since the source may be asked again before the value is used up.
        const HeapString copy = value;
        const Active active = {name, active_};
        if (++depth_ > ZUVXMLUTILS_VARIABLE_DEPTH_MAX) {
            return fail("variables lead to each other more than 64 deep");
            static_assert(ZUVXMLUTILS_VARIABLE_DEPTH_MAX == 64);
        }
        active_ = &active;
        const bool isExpanded = expand(copy);
        active_ = active.outer;
        --depth_;
        return isExpanded;
    }

    // Count bytes of values. False with a problem when it is too much.
    bool take(std::size_t size)
    {
        sources_.valueSize += size;
        if (sources_.valueSize > ZUVXMLUTILS_VALUE_SIZE_MAX) {
            return fail("the values of all variables come to more than 33554432 bytes");
            static_assert(ZUVXMLUTILS_VALUE_SIZE_MAX == 33554432);
        }
        return true;
    }

    bool put(std::string_view text)
    {
        if (result_->size() + text.size() > ZUVXMLUTILS_TEXT_LENGTH_MAX) {
            return fail("with its variables replaced a text is longer than 1048576 bytes");
        }
        result_->append(text);
        return true;
    }

    const char *valueOf(const char *name) const
    {
        const auto ask = [name](const void *source, ZUVXMLUTILSVariableExpansorValueFcn function) {
            return function != nullptr ? function(source, name) : nullptr;
        };
        const char *value = ask(sources_.dictionary, sources_.getDictionaryValue);
        if (value == nullptr) {
            value = std::getenv(name);
        }
        return value != nullptr ? value : ask(sources_.defaults, sources_.getDefaultValue);
    }

    void warn(const HeapString &name) const
    {
        if (ZUV_LOG_ENABLED(ZUVXMLUTILS, ZUV_LOG_BIT_WARNING, ZUVXMLUTILS_SUBMODULE_VARIABLE)) {
            const HeapString reason = "variable '" + name + "' is not known";
            ZUV_LOG(ZUVXMLUTILS, ZUV_LOG_BIT_WARNING, ZUVXMLUTILS_SUBMODULE_VARIABLE,
                    &ZUVXMLUTILS_LOG_PARSER_PARSE_WARNING_dss, static_cast<int>(lineOf(element_)),
                    tagOf(element_).data(), reason.c_str());
        }
    }

    ZUVXMLUTILSVariableExpansor &sources_;
    const xmlNode *element_;
    Problem &problem_;
    HeapString *result_ = nullptr;
    const Active *active_ = nullptr;
    int count_ = 0;
    int depth_ = 0;
};

class ElementExpansion
{
public:
    ElementExpansion(ZUVXMLUTILSVariableExpansor &sources, xmlNode *element, Problem &problem)
        : sources_(sources), element_(element), problem_(problem)
    {
    }

    bool run()
    {
        for (xmlAttr *attribute = element_->properties; attribute != nullptr;
             attribute = attribute->next) {
            if (attribute->ns == nullptr && !expandAttribute(attribute)) {
                return false;
            }
        }
        return expandText();
    }

private:
    // False with a problem; `result` is empty for a text that stays as it is.
    bool expand(std::string_view text, HeapString &result)
    {
        if (!mayHoldReference(text)) {
            return true;
        }
        if (!Expansion(sources_, element_, problem_).run(text, result)) {
            return false;
        }
        isChanged_ = result != text;
        return true;
    }

    bool expandAttribute(xmlAttr *attribute)
    {
        HeapString value;
        isChanged_ = false;
        if (!expand(::valueOf(attribute), value)) {
            return false;
        }
        if (!isChanged_) {
            return true;
        }
        const char *const name = reinterpret_cast<const char *>(attribute->name);
        if (std::string_view(name) == "name" && isNameTooLong(value)) {
            problem_.set(element_, "with its variables replaced the element's name has more than "
                                   "255 characters");
            return false;
        }
        const AttributeChange change = {.isFromProgram = isProgramAttribute(attribute),
                                        .isRetired = !sources_.isUnread};
        return isDone(changeAttribute(element_, name, value.c_str(), change));
    }

    bool expandText()
    {
        HeapString text;
        isChanged_ = false;
        if (!expand(contentOf(element_), text)) {
            return false;
        }
        return !isChanged_ || isDone(changeText(element_, text.c_str(), !sources_.isUnread));
    }

    bool isDone(bool hadMemory)
    {
        if (!hadMemory) {
            problem_.set(element_, Problem::kOutOfMemory);
        }
        return hadMemory;
    }

    ZUVXMLUTILSVariableExpansor &sources_;
    xmlNode *element_;
    Problem &problem_;
    bool isChanged_ = false;
};

bool expandElement(ZUVXMLUTILSVariableExpansor &sources, xmlNode *element, Problem &problem)
{
    if (ZUV_OSAPI_FAULT("xmlutils.expand")) {
        problem.set(element, Problem::kOutOfMemory);
        return false;
    }
    const auto onFailure = [&] { problem.set(element, Problem::kOutOfMemory); };
    return withMemory(false, onFailure,
                      [&] { return ElementExpansion(sources, element, problem).run(); });
}

} // namespace

extern "C" {

int ZUVXMLUTILSVariableExpansor_initialize(ZUVXMLUTILSVariableExpansor *self,
                                           const void *dictionary,
                                           ZUVXMLUTILSVariableExpansorValueFcn getDictionaryValue,
                                           const void *defaults,
                                           ZUVXMLUTILSVariableExpansorValueFcn getDefaultValue)
{
    if (ZUV_XML_IS_NULL(VARIABLE, self)) {
        return 0;
    }
    *self = {{self, &ZUVXMLUTILSVariableExpansor_visit},
             dictionary,
             getDictionaryValue,
             defaults,
             getDefaultValue,
             0,
             0};
    return 1;
}

int ZUVXMLUTILSVariableExpansor_visit(void *visitorData, ZUVXMLUTILSObject *object)
{
    if (ZUV_XML_IS_NULL(VARIABLE, visitorData) || ZUV_XML_IS_NULL(VARIABLE, object)) {
        return 0;
    }
    auto &self = *static_cast<ZUVXMLUTILSVariableExpansor *>(visitorData);
    xmlNode *const element = toNode(object);
    if (!documentOf(element)->mayHoldVariables) {
        return 1;
    }
    Problem problem;
    if (!expandElement(self, element, problem)) {
        ZUV_XML_REPORT_PROBLEM(ZUVXMLUTILS_SUBMODULE_VARIABLE, sourceOf(element), problem);
        return 0;
    }
    return 1;
}
}
