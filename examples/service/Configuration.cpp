#include "Configuration.h"

#include <cctype>
#include <vector>

#include "Reports.h"
#include "config/CfgFileElement.h"
#include "config/ProductInfo.h"
#include "config/XmlSave.h"
#include "platform/osapi/File.h"
#include "platform/xmlutils/Parser.h"
#include "remoteConfig/RemoteConfigInfrastructure.h"

namespace service
{
namespace
{

using Object = ZUVXMLUTILSObject;

struct TreeDeleter {
    void operator()(Object *tree) const { ZUVXMLUTILSParser_freeDom(tree); }
};
using Tree = std::unique_ptr<Object, TreeDeleter>;

struct SaveContextDeleter {
    void operator()(ZUVXMLUTILSSaveContext *context) const
    {
        ZUVXMLUTILSSaveContext_delete(context);
    }
};
using SaveContext = std::unique_ptr<ZUVXMLUTILSSaveContext, SaveContextDeleter>;

struct FileCloser {
    void operator()(ZUVOsapiFile *file) const { ZUVOsapiFile_close(file); }
};
using File = std::unique_ptr<ZUVOsapiFile, FileCloser>;

// What the function writes into a context; nothing when there is no memory.
template <typename Function>
std::optional<std::string> written(const Function &write)
{
    const SaveContext context(ZUVXMLUTILSSaveContext_newForMemory());
    if (context == nullptr) {
        return std::nullopt;
    }
    write(context.get());
    if (!ZUVXMLUTILSSaveContext_finish(context.get())) {
        return std::nullopt;
    }
    return ZUVXMLUTILSSaveContext_getText(context.get());
}

std::vector<Object *> servicesIn(const Object *root)
{
    const char *const tag = BRELProductInfo_get()->topLevelTag;
    std::vector<Object *> services;
    Object *service = root != nullptr ? ZUVXMLUTILSObject_getFirstChildWithTag(root, tag) : nullptr;
    for (; service != nullptr; service = ZUVXMLUTILSObject_getNextSiblingWithTag(service, tag)) {
        services.push_back(service);
    }
    return services;
}

std::optional<std::string> readFile(const char *path)
{
    const File file(ZUVOsapiFile_open(path));
    std::uint64_t size = 0;
    if (file == nullptr || !ZUVOsapiFile_getSize(file.get(), &size) ||
        size > ZUVXMLUTILS_DOCUMENT_SIZE_MAX) {
        SERVICE_REFUSAL(&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, path);
        return std::nullopt;
    }
    std::string content(size, '\0');
    std::size_t count = 0;
    if (!ZUVOsapiFile_read(file.get(), content.data(), content.size(), &count)) {
        SERVICE_REFUSAL(&ZUVXMLUTILS_LOG_PARSER_LOAD_FILE_s, path);
        return std::nullopt;
    }
    content.resize(count);
    return content;
}

// An assignment at the end of a command line has that line's end behind its value. It is no part of it.
void dropLineEndOfCommand(std::string &snippet)
{
    const std::size_t end = snippet.find('\n');
    if (end != snippet.npos && end == snippet.rfind('\n') &&
        snippet.compare(end + 1, 2, "</") == 0) {
        snippet.erase(end, 1);
    }
}

const char *contentOf(const std::string &body)
{
    return ZUV_BrelServiceAdminSupport_getBodyContent(body.c_str());
}

std::string inlineText(const std::string &body)
{
    std::string content = contentOf(body);
    return ZUV_BrelServiceAdminSupport_getXmlCodeFromStringBodyContent(content.data());
}

// "domain_route" becomes "DomainRoute".
std::string camelCase(const std::string &tag)
{
    std::string name;
    bool isUpper = true;
    for (const char letter : tag) {
        if (letter != '_') {
            name += isUpper ? static_cast<char>(std::toupper(letter)) : letter;
        }
        isUpper = letter == '_';
    }
    return name;
}

// Where the root's tag begins in a document that has been read: behind comments and instructions.
std::size_t rootOf(const std::string &document)
{
    std::size_t at = document.find('<');
    for (;;) {
        if (document.compare(at, 4, "<!--") == 0) {
            at = document.find('<', document.find("-->", at));
        } else if (document.compare(at, 2, "<?") == 0) {
            at = document.find('<', document.find("?>", at));
        } else {
            return at;
        }
    }
}

// The snippet of an entity with a name. Without one of its own the libraries would give it the number that it has among
// its siblings, which may be taken when one in front of the last was deleted: then it gets the next free one.
std::string withName(const Object *parent, std::string snippet)
{
    const Tree tree(ZUVXMLUTILSParser_parseString(snippet.c_str()));
    if (tree == nullptr || ZUVXMLUTILSObject_getAttribute(tree.get(), "name") != nullptr) {
        return snippet;
    }
    const std::string tag = ZUVXMLUTILSObject_getTagName(tree.get());
    int number = 1;
    const Object *sibling = ZUVXMLUTILSObject_getFirstChildWithTag(parent, tag.c_str());
    for (; sibling != nullptr;
         sibling = ZUVXMLUTILSObject_getNextSiblingWithTag(sibling, tag.c_str())) {
        ++number;
    }
    std::string name = camelCase(tag) + std::to_string(number);
    while (ZUVXMLUTILSObject_lookUpChild(parent, name.c_str()) != nullptr) {
        name = camelCase(tag) + std::to_string(++number);
    }
    const std::size_t end = rootOf(snippet) + 1 + tag.size();
    return snippet.insert(end, " name=\"" + name + "\"");
}

} // namespace

std::unique_ptr<Configuration> Configuration::read(const Options &options, std::string body)
{
    std::unique_ptr<Configuration> self(new Configuration(BRELCfgFileParser_newWithParams(
        &options.property, BREL_XML_SUPPORT_SERVICE_KIND, options.executablePath)));
    return self->parser_ != nullptr && self->add(body) ? std::move(self) : nullptr;
}

std::unique_ptr<Configuration> Configuration::load(const Options &options, std::string body,
                                                   const char *serviceName)
{
    std::unique_ptr<Configuration> self = read(options, std::move(body));
    return self != nullptr && self->choose(serviceName) ? std::move(self) : nullptr;
}

bool Configuration::add(std::string &body)
{
    body = trimmed(body);
    if (body.empty()) {
        return true;
    }
    if (ZUV_BrelServiceAdminSupport_getSchemeKind(body.c_str()) ==
        ZUV_SERVICE_ADMIN_SCHEME_STRING) {
        // As one document, whatever stands in it: a URL group could end at a quote within.
        const std::string document = inlineText(body);
        const char *const piece = document.c_str();
        return BRELCfgFileParser_loadString(parser_.get(), &piece, 1) != 0;
    }
    return BRELCfgFileParser_loadUrlGroup(parser_.get(), body.c_str()) != 0;
}

bool Configuration::choose(const char *serviceName)
{
    const std::vector<Object *> services = servicesIn(parser_->_xmlRoot);
    if (serviceName == nullptr && services.size() == 1) {
        serviceName = ZUVXMLUTILSObject_getName(services.front());
    }
    if (serviceName == nullptr) {
        SERVICE_REFUSAL_TEXT("choose one of %d services without its name",
                             static_cast<int>(services.size()));
        return false;
    }
    std::vector<std::string> names;
    for (const Object *service : services) {
        names.push_back(ZUVXMLUTILSObject_getName(service));
        if (names.back() == serviceName) {
            service_ = BRELCfgFileParser_loadService(parser_.get(), serviceName);
            return service_ != nullptr;
        }
    }
    SERVICE_REFUSAL(&ZUV_SERVICE_LOG_UNKNOWN_RESOURCE_ss, serviceName,
                    nearest(serviceName, names).c_str());
    return false;
}

std::optional<std::string> Configuration::document() const
{
    return written([this](ZUVXMLUTILSSaveContext *context) {
        // All services: the target of a save may be the very file that they come from.
        BRELCfgFileParser_saveDocument(parser_->_xmlRoot, context,
                                       BREL_XML_SUPPORT_ALL_SERVICES_SAVE_MODE);
    });
}

std::optional<std::string> Configuration::text(const Object *xml) const
{
    return written([xml](ZUVXMLUTILSSaveContext *context) { BRELXmlObject_save(xml, context); });
}

bool Configuration::update(const Entity &target, const std::string &snippet)
{
    Object *const change =
        BRELCfgFileParser_parseUpdate(parser_.get(), target.xml, snippet.c_str());
    if (change == nullptr) {
        return false;
    }
    // An engine looks at this and lets the running entity act.
    int isUpdated = 0;
    void *const live = ZUVXMLUTILSObject_getUserData(target.xml);
    const void *const wanted = ZUVXMLUTILSObject_getUserData(change);
    const int isDone =
        target.kind == ZUV_BREL_SERVICE_SERVICE_ENTITY
            ? BRELCfgFileService_update(&isUpdated, static_cast<BRELCfgFileService *>(live),
                                        static_cast<const BRELCfgFileService *>(wanted))
            : BRELCfgFileElement_update(&isUpdated, static_cast<BRELCfgFileElement *>(live),
                                        static_cast<const BRELCfgFileElement *>(wanted));
    BRELCfgFileParser_deleteEntity(parser_.get(), change);
    return isDone != 0;
}

bool Configuration::create(const Entity &parent, const std::string &snippet, Entity &created)
{
    Object *const added = BRELCfgFileParser_loadEntity(parser_.get(), parent.xml,
                                                       withName(parent.xml, snippet).c_str());
    if (added != nullptr) {
        created = {added, BRELCfgFileParser_getEntityKind(added)};
    }
    return added != nullptr;
}

void Configuration::remove(const Entity &entity)
{
    BRELCfgFileParser_deleteEntity(parser_.get(), entity.xml);
}

bool Configuration::save() const
{
    if (savePath() == nullptr) {
        SERVICE_REFUSAL_TEXT("save without a save_path in the administration of %s",
                             nameOf(xml()).c_str());
        return false;
    }
    const std::optional<std::string> text = document();
    if (!text || !isLoadable(*text)) {
        return false;
    }
    const SaveContext file(ZUVXMLUTILSSaveContext_newForFile(savePath()));
    if (file == nullptr) {
        return false;
    }
    ZUVXMLUTILSSaveContext_print(file.get(), "%s", text->c_str());
    return ZUVXMLUTILSSaveContext_finish(file.get()) != 0;
}

// Texts are written without escapes, so that one with "&" or "<" in it makes a document that nobody can read.
bool Configuration::isLoadable(const std::string &document) const
{
    const Tree tree(ZUVXMLUTILSParser_parseString(document.c_str()));
    return tree != nullptr &&
           (!parser_->property->enforce_xsd_validation ||
            ZUVXMLUTILSValidator_validate(BRELCfgFileParser_getDefaultValidator(parser_.get()),
                                          tree.get()));
}

std::optional<std::string> snippetOf(std::string body)
{
    body = trimmed(body);
    switch (ZUV_BrelServiceAdminSupport_getSchemeKind(body.c_str())) {
    case ZUV_SERVICE_ADMIN_SCHEME_STRING: {
        std::string snippet = inlineText(body);
        dropLineEndOfCommand(snippet);
        return snippet;
    }
    case ZUV_SERVICE_ADMIN_SCHEME_FILE:
    case ZUV_SERVICE_ADMIN_SCHEME_OTHER:
        return readFile(contentOf(body));
    default:
        SERVICE_REFUSAL_TEXT("read %s: only file:// and str:// are known", body.c_str());
        return std::nullopt;
    }
}

std::string tagOf(const std::string &snippet)
{
    const Tree tree(ZUVXMLUTILSParser_parseString(snippet.c_str()));
    return tree != nullptr ? ZUVXMLUTILSObject_getTagName(tree.get()) : "";
}

} // namespace service
