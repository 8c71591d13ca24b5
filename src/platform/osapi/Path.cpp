#include "platform/osapi/Path.h"

#include <string_view>

#include "platform/osapi/Fault.h"

namespace
{

using std::string_view;

// The path built so far, in the caller's memory.
class Target
{
public:
    Target(char *text, size_t limit) : text_(text), limit_(limit) {}

    bool start(bool isAbsolute)
    {
        root_ = isAbsolute ? 1 : 0;
        return append(isAbsolute ? "/" : "");
    }

    bool add(string_view component)
    {
        if (component.empty() || component == ".") {
            return true;
        }
        if (component == ".." && removableCount_ > 0) {
            remove();
            return true;
        }
        if (component == ".." && root_ != 0) {
            return true;
        }
        removableCount_ += component == ".." ? 0 : 1;
        return (length_ == root_ || append("/")) && append(component);
    }

    bool finish() { return length_ != 0 || append("."); }

private:
    bool append(string_view piece)
    {
        if (piece.size() >= limit_ - length_) {
            return false;
        }
        length_ += piece.copy(text_ + length_, piece.size());
        text_[length_] = '\0';
        return true;
    }

    void remove()
    {
        const size_t slash = string_view(text_, length_).rfind('/');
        length_ = slash == string_view::npos || slash < root_ ? root_ : slash;
        text_[length_] = '\0';
        --removableCount_;
    }

    char *text_;
    size_t limit_;
    size_t length_ = 0;
    size_t root_ = 0;           // length of the "/" that an absolute path begins with
    size_t removableCount_ = 0; // components at the end that a ".." takes away
};

bool normalize(Target target, string_view path)
{
    bool fits = target.start(path.starts_with('/'));
    for (size_t begin = 0; fits && begin < path.size();) {
        const size_t end = path.find('/', begin);
        const size_t length = end == string_view::npos ? path.size() - begin : end - begin;
        fits = target.add(path.substr(begin, length));
        begin += length + 1;
    }
    return fits && target.finish();
}

} // namespace

extern "C" int ZUVOsapiUtility_normalizePath(char *normalized, size_t limit, const char *path)
{
    normalized[0] = '\0';
    if (!ZUV_OSAPI_FAULT("utility.normalize_path") && normalize({normalized, limit}, path)) {
        return 1;
    }
    normalized[0] = '\0';
    return 0;
}
