#include "platform/xmlutils/Globals.h"

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <functional>
#include <map>
#include <mutex>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/xmlschemastypes.h>
#include <libxml/xpath.h>
#include <libxslt/transform.h>
#include <libxslt/xslt.h>
#include <libxslt/xsltutils.h>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/Globals.hpp"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/Reader.hpp"

using namespace zuv::xmlutils;

namespace
{

using Resources = std::map<HeapString, HeapString, std::less<>,
                           HeapAllocator<std::pair<const HeapString, HeapString>>>;

struct Globals {
    std::mutex mutex;
    std::atomic<int> users = 0;
    Resources resources;
    bool isMemoryInstalled = false;
    xmlExternalEntityLoader loader = nullptr; // of other users of libxml2 in this process
};

Globals &globals()
{
    static Globals instance;
    return instance;
}

xmlParserInput *openResource(std::string_view name, xmlParserCtxt *parser)
{
    Globals &self = globals();
    const std::lock_guard lock(self.mutex);
    const auto found = self.resources.find(name);
    if (found == self.resources.end()) {
        return nullptr;
    }
    xmlParserInputBuffer *const buffer = xmlParserInputBufferCreateMem(
        found->second.data(), static_cast<int>(found->second.size()), XML_CHAR_ENCODING_NONE);
    if (buffer == nullptr) {
        return nullptr;
    }
    xmlParserInput *const input = xmlNewIOInputStream(parser, buffer, XML_CHAR_ENCODING_NONE);
    if (input == nullptr) {
        xmlFreeParserInputBuffer(buffer);
        return nullptr;
    }
    input->filename = reinterpret_cast<char *>(
        xmlStrdup(reinterpret_cast<const xmlChar *>(found->first.c_str())));
    return input;
}

// Within this room nothing is opened but registered texts.
xmlParserInput *loadEntity(const char *url, const char *id, xmlParserCtxt *parser)
{
    LibraryScope *const scope = LibraryScope::current();
    if (scope == nullptr) {
        return globals().loader(url, id, parser);
    }
    xmlParserInput *const input = url != nullptr ? openResource(url, parser) : nullptr;
    if (input == nullptr) {
        scope->problem.set(0, "", "no registered text has the name '");
        scope->problem.append(url != nullptr ? url : "");
        scope->problem.append("'");
    }
    return input;
}

// What libxslt says without a place.
void collectText(void *, const char *format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    if (LibraryScope *const scope = LibraryScope::current()) {
        char piece[512];
        std::vsnprintf(piece, sizeof(piece), format, arguments);
        scope->problem.append(piece);
    } else {
        std::vfprintf(stderr, format, arguments);
    }
    va_end(arguments);
}

void stop(Globals &self)
{
    xmlSetExternalEntityLoader(self.loader);
    xsltSetGenericErrorFunc(nullptr, nullptr);
    xsltCleanupGlobals();
    xmlCleanupParser();
    self.resources.clear();
}

// What the libraries make at their first use they make here, where a want of memory can be told.
bool start(Globals &self)
{
    if (!self.isMemoryInstalled && !installMemoryFunctions()) {
        return false;
    }
    self.isMemoryInstalled = true;
    const ReserveScope reserve;
    const std::uint32_t refusedBefore = refusedAllocations();
    xmlInitParser();
    {
        const LibraryScope scope;
        xmlSchemaInitTypes();
        xmlXPathInit();
        xsltInit();
    }
    const bool isStarted = refusedAllocations() == refusedBefore;
    self.loader = xmlGetExternalEntityLoader();
    xmlSetExternalEntityLoader(&loadEntity);
    xsltSetGenericErrorFunc(nullptr, &collectText);
    if (!isStarted) {
        stop(self);
    }
    return isStarted;
}

} // namespace

namespace zuv::xmlutils
{

bool areGlobalsInitialized()
{
    return globals().users.load(std::memory_order_relaxed) != 0;
}

} // namespace zuv::xmlutils

extern "C" {

int ZUVXMLUTILSGlobals_initialize(void)
{
    Globals &self = globals();
    const std::lock_guard lock(self.mutex);
    if (self.users == 0 && (ZUV_OSAPI_FAULT("xmlutils.initialize") || !start(self))) {
        ZUV_XML_REPORT(ZUVXMLUTILS_SUBMODULE_PARSER, &ZUV_LOG_INIT_FAILURE_s, "XML libraries");
        return 0;
    }
    ++self.users;
    return 1;
}

void ZUVXMLUTILSGlobals_finalize(void)
{
    if (ZUV_XML_IS_NOT_READY(PARSER)) {
        return;
    }
    Globals &self = globals();
    const std::lock_guard lock(self.mutex);
    if (--self.users == 0) {
        stop(self);
    }
}

int ZUVXMLUTILSGlobals_registerStringResource(const char *name, const char *const *pieces,
                                              int count)
{
    if (ZUV_XML_IS_NOT_READY(VALIDATOR) || ZUV_XML_IS_NULL(VALIDATOR, name) ||
        ZUV_XML_IS_NULL(VALIDATOR, pieces)) {
        return 0;
    }
    const auto onFailure = [&] {
        ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_VALIDATOR,
                         &ZUV_LOG_FAILURE_TEMPLATE, "register text '%s': out of memory", name);
    };
    if (ZUV_OSAPI_FAULT("xmlutils.resource")) {
        onFailure();
        return 0;
    }
    return withMemory(0, onFailure, [&] {
        HeapString key = name;
        HeapString text = joined(pieces, count);
        Globals &self = globals();
        const std::lock_guard lock(self.mutex);
        self.resources.insert_or_assign(std::move(key), std::move(text));
        return 1;
    });
}

void ZUVXMLUTILSGlobals_unregisterStringResource(const char *name)
{
    if (ZUV_XML_IS_NULL(VALIDATOR, name)) {
        return;
    }
    Globals &self = globals();
    const std::lock_guard lock(self.mutex);
    if (const auto found = self.resources.find(std::string_view(name));
        found != self.resources.end()) {
        self.resources.erase(found);
    }
}
}
