// What libxml2 and libxslt have to say goes into a problem that the caller reports; nothing is printed, and
// nothing is opened.
#ifndef ZUV_PLATFORM_XMLUTILS_LIBRARY_SCOPE_HPP
#define ZUV_PLATFORM_XMLUTILS_LIBRARY_SCOPE_HPP

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "platform/log/LogMessages.h"
#include "platform/xmlutils/XmlUtilsLog.h"

struct _xmlNode;
struct _xmlError;
struct _xmlParserCtxt;

namespace zuv::xmlutils
{

// The first thing that is wrong with a document. It has room of its own, so that it can be told when there is
// no memory.
class Problem
{
public:
    static constexpr const char *kOutOfMemory = "out of memory";

    // Keep it, unless there is one already. `element` may be empty.
    void set(long line, std::string_view element, std::string_view reason);
    void set(const _xmlNode *node, std::string_view reason);
    // Let the text be the reason, or the further part of it, when it comes in pieces and without a place.
    void append(std::string_view piece);
    void trim();
    void clear() { *this = {}; }

    bool isSet() const { return reason_[0] != '\0'; }
    int line() const { return line_; }
    const char *element() const { return element_; }
    const char *reason() const { return reason_; }

private:
    int line_ = 0;
    char element_[280] = "";
    char reason_[1024] = "";
};

// Let the parser come to its end without reading on.
void stopReading(_xmlParserCtxt *parser, std::string_view bytes);

// Between construction and destruction errors of the libraries on this thread arrive in `problem`. Scopes may
// stand in each other.
class LibraryScope
{
public:
    LibraryScope();
    ~LibraryScope();
    LibraryScope(const LibraryScope &) = delete;
    LibraryScope &operator=(const LibraryScope &) = delete;

    // The innermost one of this thread, or null.
    static LibraryScope *current();

    // True if a library was refused memory since the construction. Then its result is not to be trusted, even
    // when it tells of no error.
    bool isOutOfMemory() const;
    // No error and no want of memory so far; the latter becomes the problem.
    bool isClean();

    Problem problem;
    // The element that it is about, if that stands in a tree.
    const _xmlNode *element = nullptr;
    // The parser to be stopped by its first error, and the bytes that it was given.
    _xmlParserCtxt *parser = nullptr;
    std::string_view bytes;

private:
    LibraryScope *outer_;
    std::uint32_t refusedBefore_;
    void *structuredData_;
    void (*structured_)(void *, struct _xmlError *);
    void *genericData_;
    void (*generic_)(void *, const char *, ...);
};

} // namespace zuv::xmlutils

// One line: the file, the line in it, the element and the reason. The report names the function that the
// caller called.
#define ZUV_XML_REPORT_PROBLEM(SUBMODULE, FILE_NAME, PROBLEM)                                      \
    do {                                                                                           \
        if ((PROBLEM).element()[0] != '\0') {                                                      \
            ZUV_LOG(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, SUBMODULE,                                 \
                    &ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sdss, FILE_NAME, (PROBLEM).line(),           \
                    (PROBLEM).element(), (PROBLEM).reason());                                      \
        } else {                                                                                   \
            ZUV_LOG(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, SUBMODULE,                                 \
                    &ZUVXMLUTILS_LOG_DOCUMENT_FAILURE_sds, FILE_NAME, (PROBLEM).line(),            \
                    (PROBLEM).reason());                                                           \
        }                                                                                          \
    } while (0)

#define ZUV_XML_REPORT(SUBMODULE, ...)                                                             \
    ZUV_LOG(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, SUBMODULE, __VA_ARGS__)

// if (ZUV_XML_IS_NULL(OBJECT, self)) return 0;   True, after the report, for NULL.
#define ZUV_XML_IS_NULL(SUBMODULE, ARGUMENT)                                                       \
    ZUV_PRECONDITION(ZUVXMLUTILS, ZUVXMLUTILS_SUBMODULE_##SUBMODULE, (ARGUMENT) == nullptr,        \
                     #ARGUMENT " == ((void *)0)")

#endif
