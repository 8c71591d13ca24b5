#include "platform/xmlutils/SaveContext.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <optional>
#include <string_view>

#include "platform/log/LogMessages.h"
#include "platform/osapi/Fault.h"
#include "platform/xmlutils/LibraryScope.hpp"
#include "platform/xmlutils/Memory.hpp"
#include "platform/xmlutils/SaveFile.hpp"
#include "platform/xmlutils/Tree.hpp"

using namespace zuv::xmlutils;

namespace
{

constexpr int kBlanksPerStep = 4;
// Text for a file is gathered up to this size.
constexpr std::size_t kBufferSize = 64 * 1024;
constexpr const char *kOutOfMemory = "out of memory";

} // namespace

struct ZUVXMLUTILSSaveContext {
    HeapString text;
    std::optional<SaveFile> file;
    int depth = 0;
    bool isFinished = false;
    bool isSaved = false;
    const char *failure = nullptr; // the first one; a text that lives as long as the process

    void fail(const char *reason)
    {
        if (failure == nullptr) {
            failure = reason;
        }
    }

    bool takesText() const { return failure == nullptr && !isFinished; }

    void append(std::string_view piece)
    {
        text.append(piece);
        if (file && text.size() >= kBufferSize) {
            flush();
        }
    }

    void flush()
    {
        if (!file->write(text)) {
            fail(strerrordesc_np(errno));
        }
        text.clear();
    }

    void vprint(const char *format, va_list arguments)
    {
        va_list again;
        va_copy(again, arguments);
        char room[512];
        const int length = std::vsnprintf(room, sizeof(room), format, arguments);
        if (length < 0) {
            fail("a text cannot be formatted");
        } else if (static_cast<std::size_t>(length) < sizeof(room)) {
            append({room, static_cast<std::size_t>(length)});
        } else {
            HeapString piece(static_cast<std::size_t>(length), '\0');
            std::vsnprintf(piece.data(), piece.size() + 1, format, again);
            append(piece);
        }
        va_end(again);
    }

    bool save()
    {
        if (file && failure == nullptr) {
            flush();
        }
        if (file && failure == nullptr && !file->replace()) {
            fail(strerrordesc_np(errno));
        }
        return failure == nullptr;
    }
};

namespace
{

void reportFailure(const char *target, const char *reason)
{
    ZUV_LOG_TEMPLATE(ZUVXMLUTILS, ZUV_LOG_BIT_EXCEPTION, ZUVXMLUTILS_SUBMODULE_SAVE,
                     &ZUV_LOG_FAILURE_TEMPLATE, "save to '%s': %s", target, reason);
}

// Throws std::bad_alloc.
ZUVXMLUTILSSaveContext *newForFile(const char *path)
{
    HeapPointer<ZUVXMLUTILSSaveContext> self(heapNew<ZUVXMLUTILSSaveContext>());
    self->file.emplace(path);
    if (!self->file->open()) {
        reportFailure(path, strerrordesc_np(errno));
        return nullptr;
    }
    return self.release();
}

} // namespace

extern "C" {

ZUVXMLUTILSSaveContext *ZUVXMLUTILSSaveContext_newForMemory(void)
{
    return withMemory<ZUVXMLUTILSSaveContext *>(
        nullptr, [] { reportFailure(kNoFile, kOutOfMemory); },
        [] { return heapNew<ZUVXMLUTILSSaveContext>(); });
}

ZUVXMLUTILSSaveContext *ZUVXMLUTILSSaveContext_newForFile(const char *path)
{
    if (ZUV_XML_IS_NULL(SAVE, path)) {
        return nullptr;
    }
    return withMemory<ZUVXMLUTILSSaveContext *>(
        nullptr, [&] { reportFailure(path, kOutOfMemory); }, [&] { return newForFile(path); });
}

void ZUVXMLUTILSSaveContext_delete(ZUVXMLUTILSSaveContext *self)
{
    heapDelete(self);
}

int ZUVXMLUTILSSaveContext_getDepth(const ZUVXMLUTILSSaveContext *self)
{
    return ZUV_XML_IS_NULL(SAVE, self) ? 0 : self->depth;
}

void ZUVXMLUTILSSaveContext_setDepth(ZUVXMLUTILSSaveContext *self, int depth)
{
    if (!ZUV_XML_IS_NULL(SAVE, self)) {
        self->depth = depth;
    }
}

void ZUVXMLUTILSSaveContext_indent(ZUVXMLUTILSSaveContext *self)
{
    // The depth of a document is bounded; that of the context is whatever its user makes it.
    constexpr int kDepthMax = 1000;
    if (!ZUV_XML_IS_NULL(SAVE, self)) {
        ZUVXMLUTILSSaveContext_print(self, "%*s",
                                     kBlanksPerStep * std::clamp(self->depth, 0, kDepthMax), "");
    }
}

void ZUVXMLUTILSSaveContext_print(ZUVXMLUTILSSaveContext *self, const char *format, ...)
{
    if (ZUV_XML_IS_NULL(SAVE, self) || ZUV_XML_IS_NULL(SAVE, format) || !self->takesText()) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    withMemory(
        0, [&] { self->fail(kOutOfMemory); },
        [&] {
            self->vprint(format, arguments);
            return 1;
        });
    va_end(arguments);
}

int ZUVXMLUTILSSaveContext_finish(ZUVXMLUTILSSaveContext *self)
{
    if (ZUV_XML_IS_NULL(SAVE, self)) {
        return 0;
    }
    if (!self->isFinished) {
        self->isFinished = true;
        self->isSaved = withMemory(
            false, [&] { self->fail(kOutOfMemory); }, [&] { return self->save(); });
        if (!self->isSaved) {
            reportFailure(self->file ? self->file->target() : kNoFile, self->failure);
        }
    }
    return self->isSaved;
}

const char *ZUVXMLUTILSSaveContext_getText(const ZUVXMLUTILSSaveContext *self)
{
    if (ZUV_XML_IS_NULL(SAVE, self) || self->file || !self->isSaved) {
        return nullptr;
    }
    return self->text.c_str();
}
}
