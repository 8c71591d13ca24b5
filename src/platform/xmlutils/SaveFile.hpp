// A file that is written beside another one, and then takes its place.
#ifndef ZUV_PLATFORM_XMLUTILS_SAVE_FILE_HPP
#define ZUV_PLATFORM_XMLUTILS_SAVE_FILE_HPP

#include <string_view>

#include "platform/xmlutils/Memory.hpp"

namespace zuv::xmlutils
{

// Operations fail with errno. Each has a fault point: "xmlutils.save.open", "xmlutils.save.write",
// "xmlutils.save.sync", "xmlutils.save.rename".
class SaveFile
{
public:
    // Throws std::bad_alloc.
    explicit SaveFile(const char *target);
    // Throws the new file away unless it has taken its place.
    ~SaveFile();
    SaveFile(const SaveFile &) = delete;
    SaveFile &operator=(const SaveFile &) = delete;

    bool open();
    bool write(std::string_view text);
    // Bring it to the disk and put it in the place of the target.
    bool replace();

    const char *target() const { return target_.c_str(); }

private:
    bool claim();
    bool takePermissions();
    bool syncFolder() const;
    void close();

    HeapString target_;
    HeapString path_; // of the new file; empty when there is none
    int file_ = -1;
};

} // namespace zuv::xmlutils

#endif
