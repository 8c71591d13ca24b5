// The configuration that the service runs: a parser with its tree, and one service in it.
//
// Failures are reported, the cause first, and change nothing. For one thread at a time: an engine, whose sessions read the
// tree as well, takes BRELCfgFileParser_lockXmlDom around each use.
#ifndef ZUV_EXAMPLES_SERVICE_CONFIGURATION_H
#define ZUV_EXAMPLES_SERVICE_CONFIGURATION_H

#include <memory>
#include <optional>
#include <string>

#include "Names.h"
#include "Options.h"
#include "config/CfgFileService.h"

namespace service
{

struct ParserDeleter {
    void operator()(BRELCfgFileParser *parser) const { BRELCfgFileParser_delete(parser); }
};

class Configuration
{
public:
    // Load the standard sources and, behind them, what `body` says: "file://" and a path, "str://" and a document between
    // double quotes, a list of URL groups, or nothing. The service is the one of that name; without a name the only
    // one there is. Null after a report.
    static std::unique_ptr<Configuration> load(const Options &options, std::string body,
                                               const char *serviceName);

    // Only what `load` does before it looks for a service.
    static std::unique_ptr<Configuration> read(const Options &options, std::string body);
    void list() const { BRELCfgFileParser_printAvailableConfig(parser_.get()); }

    BRELCfgFileService &service() const { return *service_; }
    ZUVXMLUTILSObject *xml() const { return service_->xmlObject; }

    // The whole document, as a save writes it, or one element with what is in it.
    std::optional<std::string> document() const;
    std::optional<std::string> text(const ZUVXMLUTILSObject *xml) const;

    // Change an entity as the snippet says, add the entity of the snippet to `parent`, delete an entity.
    bool update(const Entity &target, const std::string &snippet);
    bool create(const Entity &parent, const std::string &snippet, Entity &created);
    void remove(const Entity &entity);

    // Write the document to the path that the administration settings name, unless it could not be loaded again.
    bool save() const;
    const char *savePath() const { return service_->administration.savePath; }

private:
    explicit Configuration(BRELCfgFileParser *parser) : parser_(parser) {}

    bool add(std::string &body);
    bool choose(const char *serviceName);
    bool isLoadable(const std::string &document) const;

    std::unique_ptr<BRELCfgFileParser, ParserDeleter> parser_;
    BRELCfgFileService *service_ = nullptr; // the tree's
};

// The snippet that a body brings: inline, or read from a file. Nothing after a report.
std::optional<std::string> snippetOf(std::string body);

// The tag of a snippet's element; empty after a report.
std::string tagOf(const std::string &snippet);

} // namespace service

#endif
